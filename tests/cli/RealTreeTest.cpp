// The web rules on a real HTML tree, the PostgreSQL manual Debian ships: the broken pages and
// resources a crawl reports are those bench/disk_links.py, an independent model reading the
// files on disk, finds truly broken; and so are the broken fragments.
#include "support/CliRunner.h"
#include "support/LocalHttpServer.h"

#include "CsvParser.h"

#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QTemporaryDir>
#include <QUrl>

#include <gtest/gtest.h>

#include <set>
#include <string>
#include <utility>

namespace {

const char* const kTree = "/usr/share/doc/postgresql-doc-15/html";

// One form for one target, whichever way its escapes were written.
std::string key(const QString& url)
{
    return QUrl::fromPercentEncoding(url.trimmed().toUtf8()).toStdString();
}

std::string describe(const std::set<std::string>& items)
{
    std::string out;
    for (const std::string& item : items)
        out += "\n  " + item;
    return out;
}

struct Truth {
    std::set<std::string> broken;
    std::set<std::string> brokenFrom; // "target <- source"
    std::set<std::string> fragments;  // "target#fragment"
    int pages = 0;
};

// bench/disk_links.py's verdict on the tree served at base.
Truth diskModel(const QString& tree, const QString& base, const QString& output)
{
    Truth truth;
    QProcess python;
    python.start(QStringLiteral("python3"), {QStringLiteral(QUILLMERE_SOURCE_DIR "/bench/disk_links.py"), tree, base,
                                             QStringLiteral("-o"), output});
    const bool finished = python.waitForFinished(240000);
    EXPECT_TRUE(finished && python.exitCode() == 0) << python.readAllStandardError().toStdString();
    QFile file(output);
    if (!file.open(QIODevice::ReadOnly))
        return truth;
    const QJsonObject root = QJsonDocument::fromJson(file.readAll()).object();
    truth.pages = root["pages"].toInt();
    for (const QJsonValue& value : root["broken"].toArray()) {
        const QJsonObject b = value.toObject();
        truth.broken.insert(key(b["url"].toString()));
        for (const QJsonValue& from : b["linkedFrom"].toArray())
            truth.brokenFrom.insert(key(b["url"].toString()) + " <- " + key(from.toObject()["url"].toString()));
    }
    for (const QJsonValue& value : root["fragments"].toArray()) {
        const QJsonObject f = value.toObject();
        truth.fragments.insert(key(f["url"].toString()) + "#" + f["fragment"].toString().toStdString());
    }
    return truth;
}

QList<QStringList> csvRecords(const QString& text)
{
    QString error;
    const QList<QStringList> records = CsvParser::parse(text, &error);
    EXPECT_TRUE(error.isEmpty()) << error.toStdString();
    return records;
}

int column(const QStringList& header, const char* name)
{
    const int at = int(header.indexOf(QString::fromLatin1(name)));
    EXPECT_GE(at, 0) << name << " not in " << header.join(',').toStdString();
    return at;
}

} // namespace

TEST(RealTree, BrokenLinksOfThePostgreSqlManualAreTheTrueOnes)
{
    if (!QFileInfo::exists(QString::fromLatin1(kTree) + "/index.html"))
        GTEST_SKIP() << kTree << " is missing (package postgresql-doc-15)";
    LocalHttpServer server;
    server.serveDirectory("/", kTree);
    ASSERT_TRUE(server.start());
    const QString base = QString::fromStdString(server.url("/"));
    QTemporaryDir dir;
    ASSERT_TRUE(dir.isValid());

    const Truth truth = diskModel(kTree, base, dir.filePath("truth.json"));
    ASSERT_GT(truth.pages, 1000);

    const CliResult crawl = runCli({"crawl-url", base, "--name", "manual", "--rules", "web", "--no-external"},
                                   dir.path(), 280000);
    ASSERT_EQ(crawl.exitCode, 0) << crawl.err.toStdString();

    const CliResult broken = runCli({"broken", "manual", "--format", "csv"}, dir.path());
    ASSERT_EQ(broken.exitCode, 0) << broken.err.toStdString();
    const QList<QStringList> records = csvRecords(broken.out);
    ASSERT_FALSE(records.isEmpty());
    const int url = column(records[0], "url"), source = column(records[0], "sourceUrl"),
              kind = column(records[0], "kind");
    ASSERT_TRUE(url >= 0 && source >= 0 && kind >= 0);
    std::set<std::string> reported, reportedFrom;
    for (int i = 1; i < records.size(); ++i) {
        if (records[i][kind] != QLatin1String("page") && records[i][kind] != QLatin1String("resource"))
            continue;
        reported.insert(key(records[i][url]));
        reportedFrom.insert(key(records[i][url]) + " <- " + key(records[i][source]));
    }
    std::set<std::string> wrong, missed;
    for (const std::string& u : reported)
        if (!truth.broken.count(u))
            wrong.insert(u);
    for (const std::string& u : truth.broken)
        if (!reported.count(u))
            missed.insert(u);
    EXPECT_TRUE(wrong.empty()) << "reported broken wrongly:" << describe(wrong);
    EXPECT_TRUE(missed.empty()) << "missed:" << describe(missed);
    std::set<std::string> wrongFrom, missedFrom;
    for (const std::string& pair : reportedFrom)
        if (!truth.brokenFrom.count(pair))
            wrongFrom.insert(pair);
    for (const std::string& pair : truth.brokenFrom)
        if (!reportedFrom.count(pair))
            missedFrom.insert(pair);
    EXPECT_TRUE(wrongFrom.empty()) << "links reported broken wrongly:" << describe(wrongFrom);
    EXPECT_TRUE(missedFrom.empty()) << "broken links missed:" << describe(missedFrom);

    const CliResult fragments = runCli({"fragments", "manual", "--format", "csv"}, dir.path());
    ASSERT_EQ(fragments.exitCode, 0) << fragments.err.toStdString();
    const QList<QStringList> fragmentRecords = csvRecords(fragments.out);
    ASSERT_FALSE(fragmentRecords.isEmpty());
    const int fragmentUrl = column(fragmentRecords[0], "url"), fragment = column(fragmentRecords[0], "fragment");
    ASSERT_TRUE(fragmentUrl >= 0 && fragment >= 0);
    std::set<std::string> reportedFragments;
    for (int i = 1; i < fragmentRecords.size(); ++i)
        reportedFragments.insert(key(fragmentRecords[i][fragmentUrl]) + "#" +
                                 fragmentRecords[i][fragment].toStdString());
    EXPECT_EQ(reportedFragments, truth.fragments);
}
