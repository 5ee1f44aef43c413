#include "WebTestSite.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

namespace {

std::string html(const std::string& title, const std::string& body, const std::string& head = "")
{
    return "<!DOCTYPE html>\n<html><head><meta charset=\"utf-8\"><title>" + title + "</title>" + head +
           "</head>\n<body>\n" + body + "\n</body></html>\n";
}

// A page with no links of its own: whether a crawl reads it or only checks it changes nothing.
std::string leaf(const std::string& title)
{
    return html(title, "<h1 id=\"" + title + "\">" + title + "</h1>");
}

const std::string kPng("\x89PNG\r\n\x1a\n\0\0\0\rIHDR", 16);

} // namespace

WebTestSite::WebTestSite() : site_("127.0.0.1"), external_("127.0.0.2"), robotsHost_("127.0.0.3") {}

WebTestSite::~WebTestSite()
{
    stop();
}

bool WebTestSite::start()
{
    // Bound but never listening: a connection there is refused, and no one else takes the port.
    refusedFd_ = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t length = sizeof address;
    if (refusedFd_ < 0 || ::bind(refusedFd_, reinterpret_cast<sockaddr*>(&address), sizeof address) != 0 ||
        ::getsockname(refusedFd_, reinterpret_cast<sockaddr*>(&address), &length) != 0)
        return false;
    refusedPort_ = ntohs(address.sin_port);
    if (!site_.start() || !external_.start() || !robotsHost_.start())
        return false;
    truth_ = {};
    buildSite();
    buildExternal();
    buildRobotsHost();
    return true;
}

void WebTestSite::stop()
{
    site_.stop();
    external_.stop();
    robotsHost_.stop();
    if (refusedFd_ >= 0) {
        ::close(refusedFd_);
        refusedFd_ = -1;
    }
}

std::string WebTestSite::refusedUrl(const std::string& path) const
{
    return "http://127.0.0.1:" + std::to_string(refusedPort_) + path;
}

int WebTestSite::hits(const LocalHttpServer& server, const std::string& path, const std::string& method)
{
    int count = 0;
    for (const HttpRequest& r : server.requests())
        if (r.path == path && (method.empty() || r.method == method))
            ++count;
    return count;
}

void WebTestSite::buildSite()
{
    LocalHttpServer& s = site_;
    const auto u = [&](const std::string& path) { return s.url(path); };
    const std::string ext = external_.baseUrl();
    const std::string ext3 = robotsHost_.baseUrl();
    WebSiteTruth& t = truth_;
    const auto page = [&](const std::string& path, const std::string& body) {
        s.setPage(path, body);
        t.okInternal.push_back(u(path));
    };
    const auto crawled = [&](const std::string& path, const std::string& body) {
        page(path, body);
        t.crawledPages.push_back(u(path));
    };
    const auto resource = [&](const std::string& path, const std::string& body) {
        s.setPage(path, body, LocalHttpServer::contentTypeFor(path));
        t.okInternal.push_back(u(path));
    };

    // The group naming Quillmere (in another case) is the one that applies; the "*" group,
    // which closes everything, must not. Allow wins a tie; "$" anchors the end.
    s.setPage("/robots.txt",
              "# test site\n"
              "User-agent: quillmere\n"
              "Disallow: /private/\n"
              "Allow: /private/open.html\n"
              "Disallow: /*.cgi$\n"
              "Disallow: /tie/\n"
              "Allow: /tie/\n"
              "\n"
              "User-agent: *\n"
              "Disallow: /\n",
              "text/plain");

    // Home: blanks around and inside hrefs, a broken page, an external link also linked from
    // external.html (one check for both), the two fragments that always exist, and a page met
    // first through <link rel=next> (not followed), then through <a> (followed): it is crawled.
    crawled("/", html("Home",
                      "<a name=\"top\"></a>\n"
                      "<a href=\"  kinds.html\n\">Every kind</a>\n"
                      "<a href=\"base/page.html\">Base</a>\n"
                      "<a href=\"fragments.html\">Fragments</a>\n"
                      "<a href=\"schemes.html\">Schemes</a>\n"
                      "<a href=\"redi\nrects.html\">Redirects</a>\n"
                      "<a href=\"big.html\">Big</a>\n"
                      "<a href=\"\texternal.html\">External</a>\n"
                      "<a href=\"robots.html\">Robots</a>\n"
                      "<a href=\"frames.html\">Frames</a>\n"
                      "<a href=\"missing-page.html\">Missing page</a>\n"
                      "<a href=\"" + ext + "/ok.html\">Fine external</a>\n"
                      "<a href=\"#\">Here</a> <a href=\"#top\">Top</a>\n"
                      "<a href=\"chapter.html\">Chapter</a>\n",
                      "<link rel=\"next\" href=\"chapter.html\">"));
    t.broken.push_back({u("/missing-page.html"), "404", "page", u("/"), "Missing page", "a"});
    crawled("/chapter.html", html("Chapter", "<a href=\"chapter-missing.html\">Chapter missing</a>\n"));
    t.broken.push_back({u("/chapter-missing.html"), "404", "page", u("/chapter.html"), "Chapter missing", "a"});

    // Every kind of link, each to something that exists, but three resources.
    crawled("/kinds.html",
            html("Kinds",
                 "<map name=\"m\"><area href=\"area-target.html\" alt=\"Area\" shape=\"rect\" coords=\"0,0,1,1\"></map>\n"
                 "<img src=\"img/logo.png\" alt=\"Logo\" usemap=\"#m\">\n"
                 "<img src=\"img/missing.png\" alt=\"Missing image\">\n"
                 "<img src=\"img/fallback.png\" srcset=\"img/a,1.png 1x, img/b,2.png 2x\" alt=\"Commas\">\n"
                 "<picture><source srcset=\"img/wide.webp 800w,img/narrow.webp 400w\" type=\"image/webp\">"
                 "<img src=\"img/pic.jpg\" alt=\"Picture\"></picture>\n"
                 "<video src=\"media/clip.mp4\" poster=\"img/poster.jpg\">"
                 "<source src=\"media/clip.webm\" type=\"video/webm\"></video>\n"
                 "<audio src=\"media/sound.mp3\"></audio>\n"
                 "<script src=\"js/app.js\"></script>\n"
                 "<iframe src=\"frame.html\"></iframe>\n"
                 "<embed src=\"media/anim.svg\">\n"
                 "<object data=\"docs/paper.pdf\"></object>\n"
                 "<div style=\"background-image: url('img/style-bg.png')\">styled</div>\n"
                 "<p>See <a href=\"area-target.html\">the area target</a>.</p>\n",
                 "<link rel=\"stylesheet\" href=\"css/site.css\">"
                 "<link rel=\"stylesheet\" href=\"css/missing.css\">"
                 "<link rel=\"icon\" href=\"favicon.ico\">"
                 "<link rel=\"alternate\" type=\"application/rss+xml\" href=\"feed.xml\">"
                 "<link rel=\"prev\" href=\"prev.html\"><link rel=\"next\" href=\"next.html\">"
                 "<meta http-equiv=\"refresh\" content=\"300; url=refreshed.html\">"
                 "<style>body { background: url(\"img/block-bg.png\"); }\n"
                 ".x { background: url(img/missing-bg.png) }\n@import \"css/imported.css\";</style>"));
    for (const char* path : {"/img/logo.png", "/img/fallback.png", "/img/a,1.png", "/img/b,2.png", "/img/wide.webp",
                             "/img/narrow.webp", "/img/pic.jpg", "/img/poster.jpg", "/img/style-bg.png",
                             "/img/block-bg.png", "/favicon.ico"})
        resource(path, kPng);
    resource("/media/clip.mp4", "mp4");
    resource("/media/clip.webm", "webm");
    resource("/media/sound.mp3", "mp3");
    resource("/media/anim.svg", "<svg xmlns=\"http://www.w3.org/2000/svg\"/>");
    resource("/js/app.js", "var x = 1;\n");
    resource("/docs/paper.pdf", "%PDF-1.4\n");
    resource("/css/site.css", "body { color: black; }\n");
    resource("/css/imported.css", "p { margin: 0; }\n");
    resource("/feed.xml", "<?xml version=\"1.0\"?><rss/>");
    page("/area-target.html", leaf("area"));
    page("/frame.html", leaf("frame"));
    page("/prev.html", leaf("prev"));
    page("/next.html", leaf("next"));
    page("/refreshed.html", leaf("refreshed"));
    t.broken.push_back({u("/img/missing.png"), "404", "resource", u("/kinds.html"), "Missing image", "img"});
    t.broken.push_back({u("/css/missing.css"), "404", "resource", u("/kinds.html"), "", "link"});
    t.broken.push_back({u("/img/missing-bg.png"), "404", "resource", u("/kinds.html"), "", "style"});

    crawled("/frames.html", "<!DOCTYPE html><html><head><title>Frames</title></head>"
                            "<frameset cols=\"50%,50%\"><frame src=\"frame-a.html\"><frame src=\"frame-b.html\">"
                            "</frameset></html>");
    page("/frame-a.html", leaf("frame-a"));
    page("/frame-b.html", leaf("frame-b"));

    // <base href>: links resolve against /deep/dir/, not against /base/.
    crawled("/base/page.html", html("Base",
                                    "<a href=\"target.html\">Based target</a>\n"
                                    "<img src=\"../pic.png\" alt=\"Based picture\">\n"
                                    "<a href=\"/rooted.html\">Rooted</a>\n",
                                    "<base href=\"/deep/dir/\">"));
    page("/deep/dir/target.html", leaf("based"));
    resource("/deep/pic.png", kPng);
    page("/rooted.html", leaf("rooted"));

    // Fragments: present as an id, as <a name>, on the page itself; missing on another page
    // and on the page itself.
    crawled("/fragments.html", html("Fragments",
                                    "<h2 id=\"local-id\">Local</h2>\n"
                                    "<a href=\"target.html#present-id\">Present id</a>\n"
                                    "<a href=\"target.html#named\">Named</a>\n"
                                    "<a href=\"target.html#absent\">Absent</a>\n"
                                    "<a href=\"#local-id\">Local id</a>\n"
                                    "<a href=\"#local-missing\">Local missing</a>\n"
                                    "<a href=\"#\">Hash</a> <a href=\"#top\">Top</a>\n"));
    crawled("/target.html", html("Target",
                                 "<h2 id=\"present-id\">Present</h2>\n<p><a name=\"named\">Named anchor</a></p>\n"));
    t.fragments.push_back({u("/target.html"), "absent", u("/fragments.html")});
    t.fragments.push_back({u("/fragments.html"), "local-missing", u("/fragments.html")});

    // Other schemes: kept, never asked. The ftp URL names the refused port, so even a wrong
    // attempt would not reach anything.
    const std::string ftp = "ftp://127.0.0.1:" + std::to_string(refusedPort_) + "/file.txt";
    t.notChecked = {"mailto:someone@example.com", "tel:+15555550100", "javascript:void(0)", ftp,
                    "news:comp.lang.c", "data:text/plain;base64,SGk="};
    crawled("/schemes.html", html("Schemes",
                                  "<a href=\"mailto:someone@example.com\">Mail</a>\n"
                                  "<a href=\"tel:+15555550100\">Phone</a>\n"
                                  "<a href=\"javascript:void(0)\">Script</a>\n"
                                  "<a href=\"" + ftp + "\">FTP</a>\n"
                                  "<a href=\"news:comp.lang.c\">News</a>\n"
                                  "<a href=\"data:text/plain;base64,SGk=\">Data</a>\n"
                                  "<img src=\"data:image/gif;base64,R0lGODlhAQABAAAAACw=\" alt=\"Inline\">\n"));

    // Redirects: within the site, from the site to another host, and (on external.html) from
    // another host back to the site.
    crawled("/redirects.html", html("Redirects",
                                    "<a href=\"redirect/internal\">Internal redirect</a>\n"
                                    "<a href=\"redirect/external\">External redirect</a>\n"));
    s.setRedirect("/redirect/internal", "/redirected.html", 301);
    s.setRedirect("/redirect/external", ext3 + "/landing.html", 302);
    page("/redirected.html", leaf("redirected"));
    t.okInternal.push_back(u("/redirect/internal"));
    t.okInternal.push_back(u("/redirect/external"));

    // Over 1 MiB, its links at the very end.
    {
        std::string filler;
        const std::string line = "<p>Filler text that a crawler must read through before the links at the end.</p>\n";
        while (filler.size() < 1536 * 1024)
            filler += line;
        crawled("/big.html", html("Big", filler +
                                             "<a href=\"after-big.html\">After big</a>\n"
                                             "<a href=\"big-missing.html\">Big missing</a>\n"));
        page("/after-big.html", leaf("after-big"));
        t.broken.push_back({u("/big-missing.html"), "404", "page", u("/big.html"), "Big missing", "a"});
    }

    // robots.txt: closed, opened by a longer Allow, opened by a tie, closed by "$" only
    // without a query.
    crawled("/robots.html", html("Robots",
                                 "<a href=\"private/secret.html\">Secret</a>\n"
                                 "<a href=\"private/open.html\">Open</a>\n"
                                 "<a href=\"tie/page.html\">Tie</a>\n"
                                 "<a href=\"search.cgi\">Search</a>\n"
                                 "<a href=\"search.cgi?q=1\">Search query</a>\n"));
    s.setPage("/private/secret.html", leaf("secret"));
    s.setPage("/search.cgi", leaf("search"));
    t.robotsClosedPaths = {"/private/secret.html", "/search.cgi"};
    page("/private/open.html", leaf("open"));
    page("/tie/page.html", leaf("tie"));
    t.okInternal.push_back(u("/search.cgi?q=1"));
    t.robots.push_back({u("/private/secret.html"), "Disallow: /private/", "page", u("/robots.html")});
    t.robots.push_back({u("/search.cgi"), "Disallow: /*.cgi$", "page", u("/robots.html")});

    // External links of every verdict.
    crawled("/external.html", html("External",
                                   "<a href=\"" + ext + "/ok.html\">Fine external</a>\n"
                                   "<a href=\"" + ext + "/not-found.html\">Gone external</a>\n"
                                   "<a href=\"" + ext + "/unauthorized\">Unauthorized</a>\n"
                                   "<a href=\"" + ext + "/forbidden\">Forbidden</a>\n"
                                   "<a href=\"" + ext + "/rate-limited\">Rate limited</a>\n"
                                   "<a href=\"" + ext + "/status-999\">Status 999</a>\n"
                                   "<a href=\"" + ext + "/challenge\">Challenge</a>\n"
                                   "<a href=\"" + ext + "/no-head\">No HEAD</a>\n"
                                   "<a href=\"" + ext + "/to-site\">Back to the site</a>\n"
                                   "<a href=\"" + ext3 + "/public.html\">Public</a>\n"
                                   "<a href=\"" + ext3 + "/private/closed.html\">Closed</a>\n"
                                   "<a href=\"" + refusedUrl("/refused.html") + "\">Refused</a>\n"));
    page("/from-external.html", leaf("from-external"));
    const std::string e = u("/external.html");
    t.externals = {
        {ext + "/ok.html", "ok", "200", e},
        {ext + "/not-found.html", "broken", "404", e},
        {ext + "/unauthorized", "blocked", "401", e},
        {ext + "/forbidden", "blocked", "403", e},
        {ext + "/rate-limited", "blocked", "429", e},
        {ext + "/status-999", "blocked", "999", e},
        {ext + "/challenge", "blocked", "503", e},
        {ext + "/no-head", "ok", "200", e},
        {ext + "/to-site", "ok", "200", e},
        {ext3 + "/public.html", "ok", "200", e},
        {ext3 + "/private/closed.html", "robots", "", e},
        {refusedUrl("/refused.html"), "broken", "refused", e},
    };
    t.broken.push_back({ext + "/not-found.html", "404", "external", e, "Gone external", "a"});
    t.broken.push_back({refusedUrl("/refused.html"), "refused", "external", e, "Refused", "a"});
    t.robots.push_back({ext3 + "/private/closed.html", "Disallow: /private/", "external", e});
}

void WebTestSite::buildExternal()
{
    LocalHttpServer& x = external_;
    x.setPage("/ok.html", leaf("ok"));
    x.setPage("/not-found.html", leaf("not found"), "text/html", 404);
    x.setPage("/unauthorized", leaf("unauthorized"), "text/html", 401);
    x.setPage("/forbidden", leaf("forbidden"), "text/html", 403);
    x.setPage("/rate-limited", leaf("slow down"), "text/html", 429);
    x.setPage("/status-999", leaf("request denied"), "text/html", 999);
    // What a bot wall sends: not an error page, a page to solve, told by its header.
    x.route("/challenge", [](const HttpRequest&, HttpResponse& response) {
        response.status = 503;
        response.setHeader("cf-mitigated", "challenge");
        response.setContent(html("Just a moment...", "<p>Checking your browser</p>"), "text/html");
    });
    // A server that knows GET only.
    x.route("/no-head", [](const HttpRequest& request, HttpResponse& response) {
        if (request.method == "HEAD") {
            response.status = 405;
            response.setHeader("Allow", "GET");
            return;
        }
        response.setContent(leaf("get only"), "text/html");
    });
    x.setRedirect("/to-site", site_.url("/from-external.html"), 301);
}

void WebTestSite::buildRobotsHost()
{
    LocalHttpServer& r = robotsHost_;
    r.setPage("/robots.txt", "User-agent: *\nDisallow: /private/\n", "text/plain");
    r.setPage("/public.html", leaf("public"));
    r.setPage("/private/closed.html", leaf("closed"));
    r.setPage("/landing.html", leaf("landing"));
}
