#pragma once

#include "LocalHttpServer.h"

#include <string>
#include <vector>

// What a crawl of the WebTestSite with the web rules must find, every URL absolute (with
// the ports of this run). Kinds: "page", "resource", "external". Statuses as the command line
// prints them: "404", "refused".
struct WebSiteTruth {
    struct Broken {
        std::string url;
        std::string status;
        std::string kind;
        std::string sourceUrl;
        std::string anchor; // the link's text ("" for resources without one)
        std::string tag;    // "a", "img", "link", "style"...
    };
    struct External {
        std::string url;
        std::string verdict; // "ok", "broken", "blocked", "robots"
        std::string status;  // "200", "404", "refused"...; "" when never asked (robots)
        std::string sourceUrl;
    };
    struct RobotsSkip {
        std::string url;
        std::string rule; // as robots.txt writes it: "Disallow: /private/"
        std::string kind;
        std::string sourceUrl;
    };
    struct BrokenFragment {
        std::string url; // the target page, without the fragment
        std::string fragment;
        std::string sourceUrl;
    };

    std::vector<Broken> broken;            // every broken page, resource and external link
    std::vector<External> externals;       // every external link and its verdict
    std::vector<RobotsSkip> robots;        // URLs not asked because of a robots.txt
    std::vector<BrokenFragment> fragments; // links to a fragment the target lacks
    // Internal URLs that answer well (pages and resources) and must never be called broken.
    std::vector<std::string> okInternal;
    // Pages of the site a web crawl reads (and so asks for with GET).
    std::vector<std::string> crawledPages;
    // Links whose scheme is not http or https: kept, never asked, never broken.
    std::vector<std::string> notChecked;
    // Paths on the site robots.txt closes to Quillmere, answered 200 by the server so that
    // --ignore-robots finds them whole.
    std::vector<std::string> robotsClosedPaths;
};

// A test site over three loopback hosts, for the web rules' end-to-end tests:
//   site()      127.0.0.1: every link kind a browser follows or loads, a <base href>, srcset
//               URLs holding commas, links of other schemes, blanks around and inside an
//               href, fragments present and missing, a robots.txt with a Quillmere group and
//               a "*" group (ties, "$"), redirects, a page over 1 MiB whose links come last,
//               broken pages and resources;
//   external()  127.0.0.2: answers 200, 404, 401, 403, 429, 999, 405 to HEAD but 200 to GET,
//               a challenge page, a redirect back to the site; no robots.txt;
//   robotsHost() 127.0.0.3: a robots.txt closing /private/ to every crawler;
//   refusedUrl() a port on 127.0.0.1 where nothing listens.
// truth() says what a web crawl from startUrl() must report.
class WebTestSite {
public:
    WebTestSite();
    ~WebTestSite();
    WebTestSite(const WebTestSite&) = delete;
    WebTestSite& operator=(const WebTestSite&) = delete;

    // Starts the three servers and builds the pages (they hold the servers' ports).
    bool start();
    void stop();

    LocalHttpServer& site() { return site_; }
    LocalHttpServer& external() { return external_; }
    LocalHttpServer& robotsHost() { return robotsHost_; }

    std::string startUrl() const { return site_.url("/"); }
    std::string refusedUrl(const std::string& path) const;
    const WebSiteTruth& truth() const { return truth_; }

    // Requests a server received for a path (any method, any query).
    static int hits(const LocalHttpServer& server, const std::string& path, const std::string& method = "");

private:
    void buildSite();
    void buildExternal();
    void buildRobotsHost();

    LocalHttpServer site_;
    LocalHttpServer external_;
    LocalHttpServer robotsHost_;
    int refusedFd_ = -1;
    int refusedPort_ = 0;
    WebSiteTruth truth_;
};
