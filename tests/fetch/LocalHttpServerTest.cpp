// The test servers themselves: other loopback addresses, and files served from a directory.
#include "support/LocalHttpServer.h"
#include "support/RawAnswer.h"

#include <gtest/gtest.h>

#include <QTemporaryDir>

#include <filesystem>
#include <fstream>
#include <string>

namespace {

RawAnswer get(const LocalHttpServer& server, const std::string& target)
{
    return ask(server.address(), server.port(), "GET", target);
}

void writeFile(const std::filesystem::path& path, const std::string& content)
{
    std::filesystem::create_directories(path.parent_path());
    std::ofstream(path, std::ios::binary) << content;
}

} // namespace

TEST(LocalHttpServerTest, ListensOnAnotherLoopbackAddressAndOnlyThere)
{
    LocalHttpServer other("127.0.0.2");
    other.setPage("/", "<p>two</p>");
    ASSERT_TRUE(other.start());
    EXPECT_EQ(other.address(), "127.0.0.2");
    EXPECT_EQ(other.baseUrl(), "http://127.0.0.2:" + std::to_string(other.port()));

    const RawAnswer answer = ask("127.0.0.2", other.port(), "GET", "/");
    EXPECT_EQ(answer.status, 200);
    EXPECT_EQ(answer.body, "<p>two</p>");
    // Bound to 127.0.0.2 alone: the same port on 127.0.0.1 is another socket (nothing there).
    EXPECT_EQ(ask("127.0.0.1", other.port(), "GET", "/").status, 0);
    ASSERT_EQ(other.requests().size(), 1u);
    EXPECT_EQ(other.requests()[0].header("Host"), "127.0.0.2");
}

TEST(LocalHttpServerTest, ThreeAddressesServeSideBySide)
{
    LocalHttpServer one, two("127.0.0.2"), three("127.0.0.3");
    one.setPage("/who", "one", "text/plain");
    two.setPage("/who", "two", "text/plain");
    three.setPage("/who", "three", "text/plain");
    ASSERT_TRUE(one.start());
    ASSERT_TRUE(two.start());
    ASSERT_TRUE(three.start());
    EXPECT_EQ(one.address(), "127.0.0.1");
    EXPECT_EQ(one.baseUrl().rfind("http://127.0.0.1:", 0), 0u);
    EXPECT_EQ(get(one, "/who").body, "one");
    EXPECT_EQ(get(two, "/who").body, "two");
    EXPECT_EQ(get(three, "/who").body, "three");
}

TEST(LocalHttpServerTest, AnAddressThatIsNotOneDoesNotStart)
{
    LocalHttpServer bad("not-an-address");
    EXPECT_FALSE(bad.start());
}

TEST(LocalHttpServerTest, ServesADirectoryWithContentTypesIndexesAndNotFound)
{
    QTemporaryDir dir;
    ASSERT_TRUE(dir.isValid());
    const std::filesystem::path root = dir.path().toStdString();
    writeFile(root / "index.html", "<h1>home</h1>");
    writeFile(root / "a" / "page.html", "<p>page</p>");
    writeFile(root / "a" / "style.css", "body{}");
    writeFile(root / "a" / "app.js", "1;");
    writeFile(root / "a" / "pic.PNG", std::string("\x89PNG\r\n\x1a\n\0\0", 10));
    writeFile(root / "a" / "photo.jpg", "jpg");
    writeFile(root / "a" / "anim.gif", "gif");
    writeFile(root / "a" / "logo.svg", "<svg/>");
    writeFile(root / "a" / "notes.txt", "notes");
    writeFile(root / "a" / "paper.pdf", "%PDF");
    writeFile(root / "a" / "blob.weird", "?");
    writeFile(root / "a" / "café x.html", "<p>accent</p>");
    std::filesystem::create_directories(root / "empty");
    writeFile(root / "sub" / "index.html", "<p>sub</p>");

    LocalHttpServer server;
    server.serveDirectory("/docs/", root.string());
    server.setPage("/docs/a/page.html", "<p>route</p>");
    ASSERT_TRUE(server.start());

    const auto typeOf = [&](const std::string& target) {
        const RawAnswer a = get(server, target);
        const size_t at = a.head.find("Content-Type: ");
        return at == std::string::npos ? std::string() : a.head.substr(at + 14, a.head.find("\r\n", at) - at - 14);
    };

    RawAnswer home = get(server, "/docs/");
    EXPECT_EQ(home.status, 200);
    EXPECT_EQ(home.body, "<h1>home</h1>");
    EXPECT_EQ(typeOf("/docs/"), "text/html; charset=utf-8");
    EXPECT_EQ(typeOf("/docs/a/style.css"), "text/css");
    EXPECT_EQ(typeOf("/docs/a/app.js"), "text/javascript");
    EXPECT_EQ(typeOf("/docs/a/pic.PNG"), "image/png");
    EXPECT_EQ(typeOf("/docs/a/photo.jpg"), "image/jpeg");
    EXPECT_EQ(typeOf("/docs/a/anim.gif"), "image/gif");
    EXPECT_EQ(typeOf("/docs/a/logo.svg"), "image/svg+xml");
    EXPECT_EQ(typeOf("/docs/a/notes.txt"), "text/plain; charset=utf-8");
    EXPECT_EQ(typeOf("/docs/a/paper.pdf"), "application/pdf");
    EXPECT_EQ(typeOf("/docs/a/blob.weird"), "application/octet-stream");
    EXPECT_EQ(get(server, "/docs/a/pic.PNG").body.size(), 10u);

    // An exact route wins over the directory.
    EXPECT_EQ(get(server, "/docs/a/page.html").body, "<p>route</p>");
    // Percent-escapes are decoded before the file is looked for; the query is not part of it.
    EXPECT_EQ(get(server, "/docs/a/caf%C3%A9%20x.html?x=1").body, "<p>accent</p>");
    // A directory's index.html; a directory without one, a missing file: 404.
    EXPECT_EQ(get(server, "/docs/sub/").body, "<p>sub</p>");
    EXPECT_EQ(get(server, "/docs/empty/").status, 404);
    EXPECT_EQ(get(server, "/docs/a/missing.html").status, 404);
    EXPECT_EQ(get(server, "/elsewhere.html").status, 404);
    // A directory without its final slash is sent to it.
    const RawAnswer bare = get(server, "/docs/sub");
    EXPECT_EQ(bare.status, 301);
    EXPECT_NE(bare.head.find("Location: /docs/sub/\r\n"), std::string::npos) << bare.head;
    const RawAnswer rootBare = get(server, "/docs");
    EXPECT_EQ(rootBare.status, 301);
    EXPECT_NE(rootBare.head.find("Location: /docs/\r\n"), std::string::npos) << rootBare.head;
    // No way out of the directory.
    writeFile(root.parent_path() / (root.filename().string() + "-outside.html"), "secret");
    EXPECT_EQ(get(server, "/docs/../" + root.filename().string() + "-outside.html").status, 404);
    EXPECT_EQ(get(server, "/docs/a/%2E%2E/%2E%2E/" + root.filename().string() + "-outside.html").status, 404);
    std::filesystem::remove(root.parent_path() / (root.filename().string() + "-outside.html"));
    // HEAD: the head alone.
    const RawAnswer head = ask("127.0.0.1", server.port(), "HEAD", "/docs/a/notes.txt");
    EXPECT_EQ(head.status, 200);
    EXPECT_NE(head.head.find("Content-Length: 5\r\n"), std::string::npos);
    EXPECT_EQ(head.body, "");
}

TEST(LocalHttpServerTest, TheLongerPrefixWins)
{
    QTemporaryDir outer, inner;
    ASSERT_TRUE(outer.isValid() && inner.isValid());
    writeFile(std::filesystem::path(outer.path().toStdString()) / "x" / "f.txt", "outer");
    writeFile(std::filesystem::path(inner.path().toStdString()) / "f.txt", "inner");
    LocalHttpServer server;
    server.serveDirectory("/", outer.path().toStdString());
    server.serveDirectory("/x/", inner.path().toStdString());
    ASSERT_TRUE(server.start());
    EXPECT_EQ(get(server, "/x/f.txt").body, "inner");
}

TEST(LocalHttpServerTest, ContentTypesByExtension)
{
    EXPECT_EQ(LocalHttpServer::contentTypeFor("a.htm"), "text/html; charset=utf-8");
    EXPECT_EQ(LocalHttpServer::contentTypeFor("dir.d/noext"), "application/octet-stream");
    EXPECT_EQ(LocalHttpServer::contentTypeFor("x.JPEG"), "image/jpeg");
}
