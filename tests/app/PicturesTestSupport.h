#pragma once
// Pieces shared by the tests of the page panel, the safe preview, the crawl map and the
// charts: a site with a redirect, a missing page and a page that calls another host, crawled
// through the window.

#include "ListsTestSupport.h"

#include "app/PreviewTabs.h"

#include <algorithm>
#include <string>

namespace apptest {

// The site, on 127.0.0.1:
//   /            "Accueil" -> a.html "Alpha", old.html "Ancienne", missing.html "Perdu", safe.html "Sûre"
//   /a.html      "Alpha"   -> b.html "B depuis A", / "Retour"
//   /b.html      "Bravo"   -> a.html "A depuis B"
//   /old.html    301 to /new.html ("Nouvelle")
//   /missing.html answered 404
//   /safe.html   "Sûre": an image of the site, an image of the other host, and a script that
//                would rename the page and ask the site for /script-ran.png
// and the other host, on 127.0.0.2, which serves /ext.png.
class PicturesSite {
public:
    PicturesSite() : other("127.0.0.2")
    {
        const bool otherStarted = other.start();
        other.setPage("/ext.png", "png", "image/png");
        page("/", "Accueil",
             "<a href='a.html'>Alpha</a> <a href='old.html'>Ancienne</a> <a href='missing.html'>Perdu</a>"
             " <a href='safe.html'>Sûre</a>");
        page("/a.html", "Alpha", "<a href='b.html'>B depuis A</a> <a href='/'>Retour</a>");
        page("/b.html", "Bravo", "<a href='a.html'>A depuis B</a>");
        server.setRedirect("/old.html", "/new.html", 301);
        page("/new.html", "Nouvelle", "<p>ici</p>");
        server.setPage("/missing.html", "<html><body>Not here</body></html>", "text/html; charset=utf-8", 404);
        page("/safe.html", "Sûre",
             "<img src='local.png'> <img src='" + other.url("/ext.png")
                 + "'> <script>document.title = 'ran'; new Image().src = '/script-ran.png';</script>");
        server.setPage("/local.png", "png", "image/png");
        server.setPage("/script-ran.png", "png", "image/png");
        started = otherStarted && server.start();
    }

    QString base() const { return q(server.baseUrl()); }
    QString U(const std::string& path) const { return q(server.url(path)); }

    // Requests the site received for a path.
    static size_t requestsFor(const LocalHttpServer& on, const std::string& path)
    {
        const auto all = on.requests();
        return size_t(std::count_if(all.begin(), all.end(), [&](const HttpRequest& r) { return r.path == path; }));
    }

    LocalHttpServer server;
    LocalHttpServer other;
    bool started = false;

private:
    void page(const std::string& path, const std::string& title, const std::string& body)
    {
        server.setPage(path, "<html><head><title>" + title + "</title></head><body>" + body + "</body></html>");
    }
};

// The launched application with the site crawled through the start button, its window
// shown large enough for the preview's pane to hold a map.
struct CrawledPicturesSite {
    PicturesSite site;
    LaunchedApp app;
    ProjectPtr project;
    bool crawled = false;

    CrawledPicturesSite()
    {
        if (!site.started)
            return;
        app.window()->resize(1200, 1000);
        app.window()->show();
        project = app.createAndShowProject("pictures", site.base());
        crawled = app.crawlThroughStartButton(20000);
    }

    PreviewTabs* tabs() const { return app.controller()->previewTabs(); }

    // Selects, with the mouse, the documents list's row of that page; false when it is not listed.
    bool selectDocument(const QString& url)
    {
        DocumentsView* documents = app.documentsView();
        const int row = rowOfURL(documents->arrayOfPages(), url);
        if (row < 0)
            return false;
        documents->documentsTableView()->scrollTo(documents->documentsTableView()->model()->index(row, 0));
        clickRow(documents->documentsTableView(), row);
        return documents->selectedRow() == row;
    }
};

} // namespace apptest
