#pragma once

#include "support/LocalHttpServer.h"

#include <chrono>
#include <string>
#include <thread>

// A site of some forty documents whose pages answer after a pause, so that a crawl of it
// can be interrupted at many moments: pages linking to each other with many anchors, a 404,
// a redirect to a page analysed earlier, a directory redirected to its "/" form, a page
// marked noindex, one canonical elsewhere, one noindex and nofollow, and pictures (which the
// vacuum takes off the links-sent counts).
class SlowTestSite {
public:
    static constexpr int kPages = 24;
    static constexpr int kPictures = 12;

    static void serve(LocalHttpServer& server, int pageMilliseconds)
    {
        auto html = [pageMilliseconds](std::string body, int status = 200) {
            return [pageMilliseconds, body, status](const HttpRequest&, HttpResponse& response) {
                std::this_thread::sleep_for(std::chrono::milliseconds(pageMilliseconds));
                response.status = status;
                response.setContent(body, "text/html; charset=utf-8");
            };
        };
        std::string home;
        for (int n = 1; n <= kPages; ++n)
            home += link(pagePath(n), "Page " + std::to_string(n));
        for (int n = 1; n <= kPictures; ++n)
            home += link(picturePath(n), "Picture " + std::to_string(n));
        home += link("/old.html", "Old") + link("/gone.html", "Gone") + link("/dir", "Directory");
        server.route("/", html(page("Home", home)));
        for (int n = 1; n <= kPages; ++n) {
            std::string body = link("/", "home");
            for (int k = 1; k <= 10; ++k)
                body += link(pagePath((n + k * 5) % kPages + 1), "see " + std::to_string(k));
            for (int k = 0; k < 3; ++k)
                body += link(picturePath((n + k * 4) % kPictures + 1), "picture " + std::to_string(k));
            std::string head;
            if (n == 5)
                head = "<meta name=\"robots\" content=\"noindex\">";
            if (n == 6)
                head = "<link rel=\"canonical\" href=\"http://elsewhere.example/six\">";
            if (n == 7)
                head = "<meta name=\"robots\" content=\"noindex, nofollow\">";
            server.route(pagePath(n), html(page("Page " + std::to_string(n), body, head)));
        }
        server.route("/gone.html", html(page("Not here", link("/", "home")), 404));
        server.setRedirect("/old.html", "/p3.html");
        server.setRedirect("/dir", "/dir/");
        server.route("/dir/", html(page("Directory", link("/dir/a.html", "A") + link("/", "home"))));
        server.route("/dir/a.html", html(page("Directory A", link("/dir/", "up") + link(pagePath(1), "one"))));
        for (int n = 1; n <= kPictures; ++n)
            server.setPage(picturePath(n), "\x89PNG picture " + std::to_string(n), "image/png");
    }

    static std::string pagePath(int n) { return "/p" + std::to_string(n) + ".html"; }
    static std::string picturePath(int n) { return "/img/" + std::to_string(n) + ".png"; }

private:
    static std::string link(const std::string& href, const std::string& anchor)
    {
        return "<a href=\"" + href + "\">" + anchor + "</a> ";
    }
    static std::string page(const std::string& title, const std::string& body, const std::string& head = "")
    {
        return "<html><head><title>" + title + "</title>" + head + "</head><body>" + body + "</body></html>";
    }
};
