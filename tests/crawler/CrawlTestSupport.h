#pragma once
// Shared pieces of the crawler tests: a delegate that keeps the records as the main window
// does and logs every call in order, a runner that spins the main event loop while an
// operation works on its queue, a small local web site, and raw readers of the crawl
// database.

#include "crawler/CrawlRecordKeeper.h"
#include "crawler/DownloaderDelegate.h"
#include "crawler/DownloaderOperationLibXML.h"
#include "crawler/MainThread.h"
#include "crawler/OperationQueue.h"
#include "crawler/VacuumCleanerDelegate.h"
#include "crawler/VacuumCleanerOperation.h"
#include "base/DebugTrace.h"
#include "store/Localization.h"
#include "store/Project.h"
#include "store/QuillmerePage.h"
#include "support/LocalHttpServer.h"
#include "support/TestApp.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QString>
#include <QTimer>

#include <gtest/gtest.h>
#include <sqlite3.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <functional>
#include <initializer_list>
#include <memory>
#include <mutex>
#include <optional>
#include <ostream>
#include <set>
#include <string>
#include <vector>

namespace crawltest {

inline QString q(const std::string& s)
{
    return QString::fromStdString(s);
}

inline std::string s(const QString& text)
{
    return text.toStdString();
}

using Lines = std::vector<std::string>;

// The expected lines of a log, in order.
template <typename... A>
Lines lines(A&&... a)
{
    return Lines{std::string(std::forward<A>(a))...};
}

// The expected rows of a table, in order.
template <typename T, typename... R>
std::vector<T> rowsOf(T first, R... rest)
{
    return std::vector<T>{first, rest...};
}

// ---------------------------------------------------------------------------------------
// The recording delegate.

// Keeps the crawl database as the main window does (through CrawlRecordKeeper) and logs
// every call, with its arguments, in the order of arrival. URLs under `urlBase` are logged
// as "~" followed by their path ("~/a.html"), anything else in full.
class RecordingDelegate : public DownloaderDelegate, public VacuumCleanerDelegate {
public:
    RecordingDelegate(std::shared_ptr<Project> project, std::string urlBase)
        : keeper_(std::move(project)), urlBase_(std::move(urlBase))
    {
    }

    // Called after every logged call (main thread), with the line just logged.
    std::function<void(const std::string&)> onCall;

    CrawlRecordKeeper& keeper() { return keeper_; }

    std::vector<std::string> calls() const
    {
        std::lock_guard lock(mutex_);
        return calls_;
    }
    // Any thread: adds a line of the test's own (a trace line, a marker).
    void note(const std::string& line)
    {
        std::lock_guard lock(mutex_);
        calls_.push_back(line);
    }
    void clear()
    {
        std::lock_guard lock(mutex_);
        calls_.clear();
    }

    std::string u(const QString& url) const
    {
        if (url.isNull())
            return "(null)";
        const std::string text = s(url);
        if (!urlBase_.empty() && text.rfind(urlBase_, 0) == 0)
            return "~" + text.substr(urlBase_.size());
        return text;
    }
    std::string p(const QuillmerePagePtr& page) const { return page ? u(page->url()) : std::string("(no page)"); }

    // DownloaderDelegate
    void downloaderDidStart() override
    {
        keeper_.crawlDidStart();
        log("downloaderDidStart");
    }
    void downloaderDidEnd() override
    {
        keeper_.crawlDidEnd(nullptr, nullptr);
        log("downloaderDidEnd");
    }
    void downloaderEndWithError(const QString& error) override { log("downloaderEndWithError(" + s(error) + ")"); }
    // Not logged: when commits fall depends on the clock.
    void crawlDidCommit() override { keeper_.crawlDidCommit(); }
    void downloadPageDidStartWithURL(const QString& url, qint32 depth) override
    {
        keeper_.pageDidStart(url, depth);
        log("downloadPageDidStart(" + u(url) + ", " + std::to_string(depth) + ")");
    }
    void downloadPageDidEndWithURL(const QString& url, qint32 depth) override
    {
        log("downloadPageDidEnd(" + u(url) + ", " + std::to_string(depth) + ")");
    }
    QuillmerePagePtr foundPageWithPath(const QString& path, const QString& name, const QString& title,
                                       const QString& url, qint32 depth) override
    {
        QuillmerePagePtr page = keeper_.foundPageWithPath(path, name, title, url, depth);
        log("foundPage(" + s(path) + ", " + s(name) + ", " + s(title) + ", " + u(url) + ", " + std::to_string(depth)
            + ")");
        return page;
    }
    void updatePage(const QuillmerePagePtr& page, const QString& title) override
    {
        keeper_.updatePage(page, title);
        log("updatePage(" + p(page) + ", " + s(title) + ")");
    }
    bool foundLinkWithPath(const QString& path, const QString& name, const QString& anchor, const QString& url,
                           qint32 depth, const QuillmerePagePtr& page) override
    {
        const bool made = keeper_.foundLinkWithPath(path, name, anchor, url, depth, page);
        log("foundLinkWithPath(" + s(path) + ", " + s(name) + ", " + s(anchor) + ", " + u(url) + ", "
            + std::to_string(depth) + ", " + p(page) + ")");
        return made;
    }
    bool foundLinkWithPage(const QuillmerePagePtr& pageTo, const QString& anchor,
                           const QuillmerePagePtr& page) override
    {
        const bool made = keeper_.foundLinkWithPage(pageTo, anchor, page);
        log("foundLinkWithPage(" + p(pageTo) + ", " + s(anchor) + ", " + p(page) + ")");
        return made;
    }
    QuillmerePagePtr getPageFromURL(const QString& url) override
    {
        QuillmerePagePtr page = keeper_.getPageFromURL(url);
        log("getPageFromURL(" + u(url) + ")");
        return page;
    }
    void initLinkProgressWithMaxValue(qint32 linkCountMax) override
    {
        log("initLinkProgress(" + std::to_string(linkCountMax) + ")");
    }
    void setLinkProgressWithValue(qint32 value, qint32 maxValue) override
    {
        log("setLinkProgress(" + std::to_string(value) + ", " + std::to_string(maxValue) + ")");
    }
    void setWaitingQueueCount(qint32 waitingCount, qint32 doneCount) override
    {
        log("setWaitingQueueCount(" + std::to_string(waitingCount) + ", " + std::to_string(doneCount) + ")");
    }
    void downloadPageWasAbandonedWithURL(const QString& url, qint32 depth) override
    {
        keeper_.pageWasAbandoned();
        log("downloadPageWasAbandoned(" + u(url) + ", " + std::to_string(depth) + ")");
    }

    // VacuumCleanerDelegate
    void vacuumCleanerDidStart() override { log("vacuumCleanerDidStart"); }
    void vacuumProgressIndex(qint32 currentIndex, qint32 maxIndex) override
    {
        log("vacuumProgressIndex(" + std::to_string(currentIndex) + ", " + std::to_string(maxIndex) + ")");
    }
    void vacuumingPage(const QuillmerePagePtr& page) override { log("vacuumingPage(" + p(page) + ")"); }
    void vacuumCleanerDidEnd() override { log("vacuumCleanerDidEnd"); }

private:
    void log(const std::string& line)
    {
        EXPECT_TRUE(MainThread::isMainThread()) << line << " arrived outside the main thread";
        {
            std::lock_guard lock(mutex_);
            calls_.push_back(line);
        }
        if (onCall)
            onCall(line);
    }

    CrawlRecordKeeper keeper_;
    std::string urlBase_;
    mutable std::mutex mutex_;
    std::vector<std::string> calls_;
};

// The line at `index`, counted from the end when negative; "(no such line)" when out of
// range.
inline std::string lineAt(const Lines& all, long index)
{
    const long size = long(all.size());
    const long i = index < 0 ? size + index : index;
    return (i >= 0 && i < size) ? all[size_t(i)] : std::string("(no such line)");
}

// The last element; a failure and an empty value when there is none.
template <typename T>
T lastOf(const std::vector<T>& all)
{
    if (all.empty()) {
        ADD_FAILURE() << "empty list";
        return T{};
    }
    return all.back();
}

// The name of a logged call: the text before "(".
inline std::string callName(const std::string& line)
{
    return line.substr(0, line.find('('));
}

// The lines whose call name is one of `names`, in order.
inline std::vector<std::string> only(const std::vector<std::string>& lines, std::initializer_list<std::string> names)
{
    const std::set<std::string> wanted(names);
    std::vector<std::string> out;
    for (const auto& line : lines)
        if (wanted.count(callName(line)))
            out.push_back(line);
    return out;
}

// The lines whose call name is none of `names`, in order.
inline std::vector<std::string> without(const std::vector<std::string>& lines,
                                        std::initializer_list<std::string> names)
{
    const std::set<std::string> unwanted(names);
    std::vector<std::string> out;
    for (const auto& line : lines)
        if (!unwanted.count(callName(line)))
            out.push_back(line);
    return out;
}

// The lines from the first one equal to `from` up to, not including, the first later one
// that starts with `until` (to the end when there is none).
inline std::vector<std::string> slice(const std::vector<std::string>& lines, const std::string& from,
                                      const std::string& until)
{
    auto begin = std::find(lines.begin(), lines.end(), from);
    if (begin == lines.end())
        return {};
    auto end = std::find_if(begin + 1, lines.end(), [&](const std::string& l) { return l.rfind(until, 0) == 0; });
    return std::vector<std::string>(begin, end);
}

// ---------------------------------------------------------------------------------------
// Running operations.

// Spins the main event loop until `done` answers true or the time runs out; answers done().
inline bool spinUntil(const std::function<bool()>& done, int timeoutMs)
{
    QEventLoop loop;
    QTimer poll;
    QObject::connect(&poll, &QTimer::timeout, &loop, [&] {
        if (done())
            loop.quit();
    });
    QTimer::singleShot(timeoutMs, &loop, [&] { loop.quit(); });
    poll.start(5);
    if (!done())
        loop.exec();
    return done();
}

// Adds the operation to the queue and runs the main event loop (where the delegate calls
// arrive) until the operation has finished. A crawl still running at the time-out is asked
// to stop; answers whether the operation finished in time.
inline bool runOperation(OperationQueue& queue, const std::shared_ptr<Operation>& operation, int timeoutMs = 30000)
{
    struct State {
        QEventLoop* loop = nullptr;
        std::atomic<bool> finished{false};
    };
    auto state = std::make_shared<State>();
    QEventLoop loop;
    state->loop = &loop;
    operation->setCompletionBlock([state] {
        state->finished.store(true);
        MainThread::post([state] {
            if (state->loop)
                state->loop->quit();
        });
    });
    QTimer::singleShot(timeoutMs, &loop, [&] { loop.quit(); });
    queue.addOperation(operation);
    loop.exec();
    state->loop = nullptr;
    if (state->finished.load())
        return true;
    ADD_FAILURE() << "the operation did not finish within " << timeoutMs << " ms";
    if (auto crawl = std::dynamic_pointer_cast<DownloaderOperationLibXML>(operation))
        crawl->setCanContinue(false);
    // Let it end: its calls wait for this thread.
    spinUntil([state] { return state->finished.load(); }, 30000);
    return false;
}

// Sends the debug trace lines that contain `needle` to the delegate's log as "trace:<line>"
// while it lives.
class TraceToLog {
public:
    TraceToLog(RecordingDelegate& delegate, std::string needle)
    {
        setDebugTraceSink([&delegate, needle](const std::string& line) {
            if (line.find(needle) != std::string::npos)
                delegate.note("trace:" + line);
        });
    }
    ~TraceToLog() { setDebugTraceSink({}); }
};

// An expected log as this build writes it: where the debug trace is compiled out (release
// builds) its "trace:" lines cannot be there, and the calls around them are checked alone.
inline Lines traced(Lines expected)
{
    if (!kDebugTraceEnabled)
        std::erase_if(expected, [](const std::string& line) { return line.rfind("trace:", 0) == 0; });
    return expected;
}

// ---------------------------------------------------------------------------------------
// The local web site.

inline std::string anchor(const std::string& href, const std::string& text, const std::string& extra = "")
{
    return "<a href=\"" + href + "\"" + (extra.empty() ? "" : " " + extra) + ">" + text + "</a>";
}

class Site {
public:
    Site() { started_ = server.start(); }
    bool started() const { return started_; }

    std::string base() const { return server.baseUrl(); }
    // The full URL of a path, as the crawler writes it.
    QString U(const std::string& path) const { return q(server.url(path)); }

    // An HTML page with a title (omitted when `title` is null), extra head content and body.
    void page(const std::string& path, const std::optional<std::string>& title, const std::string& body,
              const std::string& head = "", const std::string& contentType = "text/html; charset=utf-8")
    {
        std::string html = "<html><head>";
        if (title)
            html += "<title>" + *title + "</title>";
        html += head + "</head><body>" + body + "</body></html>";
        server.setPage(path, html, contentType);
    }
    void raw(const std::string& path, const std::string& content, const std::string& contentType, int status = 200)
    {
        server.setPage(path, content, contentType, status);
    }
    void redirect(const std::string& path, const std::string& location, int status = 301)
    {
        server.setRedirect(path, location, status);
    }

    // GET requests received for a decoded path.
    int hits(const std::string& path) const
    {
        int n = 0;
        for (const auto& request : server.requests())
            if (request.path == path)
                ++n;
        return n;
    }
    std::vector<std::string> requestedPaths() const
    {
        std::vector<std::string> out;
        for (const auto& request : server.requests())
            out.push_back(request.path);
        return out;
    }

    LocalHttpServer server;

private:
    bool started_ = false;
};

// ---------------------------------------------------------------------------------------
// Rows of the crawl database, read with plain SQL.

struct PageRow {
    qint64 idt = 0;
    std::string path, page, title, url;
    qint64 noIndex = 0, noFollow = 0, canonical = 0, in = 0, out = 0, depth = 0;
    double weight = 0.0;
};

struct LinkRow {
    std::string source, target, anchor;
    qint64 counter = 0;
    bool operator==(const LinkRow& o) const
    {
        return source == o.source && target == o.target && anchor == o.anchor && counter == o.counter;
    }
};
inline void PrintTo(const LinkRow& l, std::ostream* os)
{
    *os << "{" << l.source << " -> " << l.target << ", \"" << l.anchor << "\", " << l.counter << "}";
}

struct QueueRow {
    std::string url, path, name;
    qint64 depth = 0;
    qint64 done = 0;
    bool operator==(const QueueRow& o) const
    {
        return url == o.url && path == o.path && name == o.name && depth == o.depth && done == o.done;
    }
};
inline void PrintTo(const QueueRow& r, std::ostream* os)
{
    *os << "{" << r.url << ", " << r.path << ", " << r.name << ", depth " << r.depth << ", done " << r.done << "}";
}

struct HeaderRow {
    std::string url, contentType;
    std::optional<qint64> contentLength, downloadedLength;
};

class Db {
public:
    Db(std::shared_ptr<Project> project, std::string urlBase) : project_(std::move(project)), base_(std::move(urlBase))
    {
    }

    sqlite3* handle() const { return project_->sqlite3Database(); }

    std::string u(const std::string& url) const
    {
        return (!base_.empty() && url.rfind(base_, 0) == 0) ? "~" + url.substr(base_.size()) : url;
    }

    // Every row of a query, each column as text ("NULL" for a null).
    std::vector<std::vector<std::string>> rows(const std::string& sql) const
    {
        std::vector<std::vector<std::string>> out;
        sqlite3_stmt* stmt = nullptr;
        if (sqlite3_prepare_v2(handle(), sql.c_str(), -1, &stmt, nullptr) != SQLITE_OK) {
            ADD_FAILURE() << sql << ": " << sqlite3_errmsg(handle());
            return out;
        }
        while (sqlite3_step(stmt) == SQLITE_ROW) {
            std::vector<std::string> row;
            for (int i = 0; i < sqlite3_column_count(stmt); ++i) {
                const unsigned char* text = sqlite3_column_text(stmt, i);
                row.push_back(sqlite3_column_type(stmt, i) == SQLITE_NULL ? "NULL"
                                                                          : reinterpret_cast<const char*>(text));
            }
            out.push_back(row);
        }
        sqlite3_finalize(stmt);
        return out;
    }

    qint64 count(const std::string& table) const
    {
        const auto r = rows("select count(*) from " + table);
        return r.empty() ? -1 : std::stoll(r[0][0]);
    }

    std::vector<PageRow> pages() const
    {
        std::vector<PageRow> out;
        sqlite3_stmt* stmt = nullptr;
        const char* sql = "select idt,path,page,title,url,is_no_index,is_no_follow,is_canonical,in_link_count,"
                          "out_link_count,depth,weight from Page order by idt";
        if (sqlite3_prepare_v2(handle(), sql, -1, &stmt, nullptr) != SQLITE_OK) {
            ADD_FAILURE() << sqlite3_errmsg(handle());
            return out;
        }
        auto text = [&](int i) {
            const unsigned char* t = sqlite3_column_text(stmt, i);
            return t ? std::string(reinterpret_cast<const char*>(t)) : std::string("NULL");
        };
        while (sqlite3_step(stmt) == SQLITE_ROW) {
            PageRow r;
            r.idt = sqlite3_column_int64(stmt, 0);
            r.path = text(1);
            r.page = text(2);
            r.title = text(3);
            r.url = u(text(4));
            r.noIndex = sqlite3_column_int64(stmt, 5);
            r.noFollow = sqlite3_column_int64(stmt, 6);
            r.canonical = sqlite3_column_int64(stmt, 7);
            r.in = sqlite3_column_int64(stmt, 8);
            r.out = sqlite3_column_int64(stmt, 9);
            r.depth = sqlite3_column_int64(stmt, 10);
            r.weight = sqlite3_column_double(stmt, 11);
            out.push_back(r);
        }
        sqlite3_finalize(stmt);
        return out;
    }

    // The page stored under exactly this URL ("~/x" for a path of the site).
    std::optional<PageRow> page(const std::string& url) const
    {
        for (const auto& r : pages())
            if (r.url == url)
                return r;
        return std::nullopt;
    }

    // The same, or a failure and an empty row ("(missing)" title) when there is none.
    PageRow at(const std::string& url) const
    {
        if (auto row = page(url))
            return *row;
        ADD_FAILURE() << "no page record for " << url;
        PageRow missing;
        missing.title = "(missing)";
        return missing;
    }

    std::vector<std::string> pageUrls() const
    {
        std::vector<std::string> out;
        for (const auto& r : pages())
            out.push_back(r.url);
        return out;
    }

    // Links in insertion order, their ends given by page URL.
    std::vector<LinkRow> links() const
    {
        std::vector<LinkRow> out;
        for (const auto& r : rows("select S.url, T.url, L.anchor, L.counter from Links L left join Page S on "
                                  "S.idt = L.idt_source left join Page T on T.idt = L.idt_page order by L.rowid")) {
            out.push_back(LinkRow{u(r[0]), u(r[1]), r[2], std::stoll(r[3])});
        }
        return out;
    }

    std::vector<QueueRow> queue() const
    {
        std::vector<QueueRow> out;
        for (const auto& r : rows("select url, path, document_name, depth, perform_done from DownloaderQueue "
                                  "order by idt"))
            out.push_back(QueueRow{u(r[0]), r[1], r[2], std::stoll(r[3]), r[4] == "NULL" ? 0 : std::stoll(r[4])});
        return out;
    }
    std::vector<std::string> waitingUrls() const
    {
        std::vector<std::string> out;
        for (const auto& r : queue())
            if (!r.done)
                out.push_back(r.url);
        return out;
    }

    std::vector<HeaderRow> headers() const
    {
        std::vector<HeaderRow> out;
        for (const auto& r : rows("select url, content_type, content_length, downloaded_length from LinkHeaders "
                                  "order by rowid")) {
            HeaderRow h{u(r[0]), r[1], std::nullopt, std::nullopt};
            if (r[2] != "NULL")
                h.contentLength = std::stoll(r[2]);
            if (r[3] != "NULL")
                h.downloadedLength = std::stoll(r[3]);
            out.push_back(h);
        }
        return out;
    }
    std::optional<HeaderRow> header(const std::string& url) const
    {
        for (const auto& h : headers())
            if (h.url == url)
                return h;
        return std::nullopt;
    }

    HeaderRow headerAt(const std::string& url) const
    {
        if (auto row = header(url))
            return *row;
        ADD_FAILURE() << "no header record for " << url;
        return HeaderRow{url, "(missing)", std::nullopt, std::nullopt};
    }

    // The whole database as text, to show that something changed nothing.
    std::vector<std::vector<std::string>> snapshot() const
    {
        std::vector<std::vector<std::string>> all;
        for (const char* sql : {"select * from Page order by idt", "select * from Links order by rowid",
                                "select * from DownloaderQueue order by idt",
                                "select * from LinkHeaders order by rowid"}) {
            for (auto& r : rows(sql))
                all.push_back(r);
            all.push_back({"--"});
        }
        return all;
    }

private:
    std::shared_ptr<Project> project_;
    std::string base_;
};

// ---------------------------------------------------------------------------------------
// The fixture: a temporary application, a local site, a project on it, the recording
// delegate and a serial operation queue.

class CrawlFixture : public ::testing::Test {
protected:
    void SetUp() override { ASSERT_TRUE(site.started()); }

    void TearDown() override
    {
        queue.reset();
        if (project)
            project->closeSQLiteDatabase();
    }

    // A new project whose start URL is the site's `startPath`.
    void makeProject(const std::string& startPath = "/", qint32 limitDepth = -1, qint32 limitPageCount = -1)
    {
        makeProjectWithURL(site.U(startPath), limitDepth, limitPageCount);
    }
    void makeProjectWithURL(const QString& url, qint32 limitDepth = -1, qint32 limitPageCount = -1)
    {
        project = Project::createProjectWithName(QStringLiteral("site"), url, limitDepth, limitPageCount);
        ASSERT_TRUE(project);
        ASSERT_NE(project->sqlite3Database(), nullptr);
        newDelegate();
        db = std::make_unique<Db>(project, site.base());
    }
    // A fresh delegate, as when the window starts another crawl.
    void newDelegate() { delegate = std::make_shared<RecordingDelegate>(project, site.base()); }

    // A crawl from the start URL (the start entry is queued), run to its end.
    std::shared_ptr<DownloaderOperationLibXML> crawl()
    {
        operation = DownloaderOperationLibXML::initWithProject(project, delegate);
        operation->setParallelFetches(parallelFetches);
        EXPECT_TRUE(runOperation(*queue, operation));
        return operation;
    }
    // A run in continue mode over the waiting entries.
    std::shared_ptr<DownloaderOperationLibXML> resume()
    {
        operation = DownloaderOperationLibXML::initForContinueWithProject(project, delegate);
        operation->setParallelFetches(parallelFetches);
        EXPECT_TRUE(runOperation(*queue, operation));
        return operation;
    }
    void vacuum()
    {
        auto cleaner = VacuumCleanerOperation::initWithProject(project, delegate);
        EXPECT_TRUE(runOperation(*queue, cleaner));
    }

    std::string u(const std::string& path) const { return "~" + path; }
    static QString errorTitle() { return Localization::localizedString("ErrorContentType"); }

    TestApp app;
    Site site;
    std::shared_ptr<Project> project;
    std::shared_ptr<RecordingDelegate> delegate;
    std::unique_ptr<Db> db;
    std::shared_ptr<DownloaderOperationLibXML> operation;
    std::unique_ptr<OperationQueue> queue = std::make_unique<OperationQueue>();
    // These tests follow each request the crawl makes: one at a time, as each page's turn
    // comes. The fetching ahead has tests of its own.
    int parallelFetches = 1;
};

} // namespace crawltest
