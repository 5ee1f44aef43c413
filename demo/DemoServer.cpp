#include "demo/DemoServer.h"

#include <QFile>
#include <QFileInfo>

#include <httplib.h>

#include <chrono>
#include <thread>

struct DemoServer::Impl {
    httplib::Server server;
    std::thread thread;
};

namespace {
QString contentTypeFor(const QString& path)
{
    if (path.endsWith(QLatin1String(".html")))
        return QStringLiteral("text/html; charset=utf-8");
    if (path.endsWith(QLatin1String(".png")))
        return QStringLiteral("image/png");
    if (path.endsWith(QLatin1String(".txt")))
        return QStringLiteral("text/plain; charset=utf-8");
    return QStringLiteral("application/octet-stream");
}
} // namespace

DemoServer::DemoServer() : impl_(std::make_unique<Impl>()) {}

DemoServer::~DemoServer()
{
    stop();
}

QString DemoServer::baseURL() const
{
    return QStringLiteral("http://127.0.0.1:%1").arg(port_);
}

bool DemoServer::start(int port)
{
    httplib::Server& server = impl_->server;
    server.Get(".*", [this](const httplib::Request& request, httplib::Response& response) {
        const QString path = QString::fromStdString(request.path);
        if (path == QLatin1String("/old-page.html")) {
            response.set_redirect("/blog/index.html", 301);
            return;
        }
        QString resource = QStringLiteral(":/demo-site") + path;
        QFileInfo info(resource);
        if (info.isDir()) {
            if (!path.endsWith(QLatin1Char('/'))) {
                response.set_redirect(request.path + "/", 301);
                return;
            }
            resource += QStringLiteral("index.html");
        }
        QFile file(resource);
        if (path.contains(QLatin1String("..")) || !file.open(QIODevice::ReadOnly)) {
            response.status = 404;
            response.set_content("<html><head><title>404 Not Found</title></head><body><h1>Not Found</h1></body></html>",
                                 "text/html; charset=utf-8");
            return;
        }
        QByteArray body = file.readAll();
        const QString type = contentTypeFor(resource);
        if (type.startsWith(QLatin1String("text/html")))
            body.replace("DEMO_HOST", QStringLiteral("127.0.0.1:%1").arg(port_).toUtf8());
        response.set_content(body.toStdString(), type.toStdString());
    });
    if (port > 0)
        port_ = server.bind_to_port("127.0.0.1", port) ? port : 0;
    else
        port_ = server.bind_to_any_port("127.0.0.1");
    if (port_ <= 0)
        return false;
    impl_->thread = std::thread([&server] { server.listen_after_bind(); });
    // A stop asked before the server runs would be lost and leave its thread listening for
    // ever: it runs before start answers.
    for (int waited = 0; !server.is_running() && waited < 5000; ++waited)
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    return true;
}

void DemoServer::stop()
{
    if (impl_->thread.joinable()) {
        impl_->server.stop();
        impl_->thread.join();
    }
}
