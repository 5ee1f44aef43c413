#include "store/LinkHeaders.h"

#include "QuillmereRecordsTestSupport.h"

namespace {

class LinkHeadersTest : public RecordsFixture {};

LinkHeaders headersOfType(const QString& contentType)
{
    return LinkHeaders(QStringLiteral("http://example.com/"), contentType, 0, 0, nullptr);
}

LinkHeaders headersOfLength(std::optional<qint64> length)
{
    return LinkHeaders(QStringLiteral("http://example.com/"), QStringLiteral("text/html"), length, 0, nullptr);
}

TEST_F(LinkHeadersTest, CreateStoresTheRowAndAnswersTheValuesGiven)
{
    auto headers = LinkHeaders::createLinkHeadersWithURL(QStringLiteral("http://example.com/a"),
                                                         QStringLiteral("text/html; charset=utf-8"), 5120, 4096, project);
    ASSERT_TRUE(headers);
    EXPECT_EQ(headers->url(), QStringLiteral("http://example.com/a"));
    EXPECT_EQ(headers->contentType(), QStringLiteral("text/html; charset=utf-8"));
    EXPECT_EQ(headers->contentLength(), 5120);
    EXPECT_EQ(headers->downloadedLength(), 4096);
    EXPECT_EQ(headers->project().lock(), project);
    EXPECT_EQ(queryText("select url from LinkHeaders"), QStringLiteral("http://example.com/a"));
    EXPECT_EQ(queryText("select content_type from LinkHeaders"), QStringLiteral("text/html; charset=utf-8"));
    EXPECT_EQ(queryInt("select content_length from LinkHeaders"), 5120);
    EXPECT_EQ(queryInt("select downloaded_length from LinkHeaders"), 4096);
}

TEST_F(LinkHeadersTest, GetAnswersTheRecordedRowOrNil)
{
    ASSERT_TRUE(LinkHeaders::createLinkHeadersWithURL(QStringLiteral("http://example.com/a"), QStringLiteral("image/png"),
                                                      300, 200, project));
    auto found = LinkHeaders::getLinkHeadersWithURL(QStringLiteral("http://example.com/a"), project);
    ASSERT_TRUE(found);
    EXPECT_EQ(found->url(), QStringLiteral("http://example.com/a"));
    EXPECT_EQ(found->contentType(), QStringLiteral("image/png"));
    EXPECT_EQ(found->contentLength(), 300);
    EXPECT_EQ(found->downloadedLength(), 200);
    EXPECT_EQ(found->project().lock(), project);
    EXPECT_FALSE(found->isContentTypeHTML());
    EXPECT_FALSE(LinkHeaders::getLinkHeadersWithURL(QStringLiteral("http://example.com/a/"), project));
    EXPECT_FALSE(LinkHeaders::getLinkHeadersWithURL(QStringLiteral("http://example.com/b"), project));
}

TEST_F(LinkHeadersTest, TwoCreatesForOneURLLeaveTwoRowsAndGetAnswersOneOfThem)
{
    const QString url = QStringLiteral("http://example.com/dup");
    ASSERT_TRUE(LinkHeaders::createLinkHeadersWithURL(url, QStringLiteral("text/html"), 1, 1, project));
    ASSERT_TRUE(LinkHeaders::createLinkHeadersWithURL(url, QStringLiteral("text/plain"), 2, 2, project));
    EXPECT_EQ(queryInt("select count(*) from LinkHeaders where url='http://example.com/dup'"), 2);
    auto found = LinkHeaders::getLinkHeadersWithURL(url, project);
    ASSERT_TRUE(found);
    EXPECT_TRUE(found->contentType() == QStringLiteral("text/html") || found->contentType() == QStringLiteral("text/plain"));
}

TEST_F(LinkHeadersTest, MissingLengthsAreStoredAsZeroAndKeptMissingInTheRecord)
{
    auto headers = LinkHeaders::createLinkHeadersWithURL(QStringLiteral("http://example.com/a"), QStringLiteral("text/html"),
                                                         std::nullopt, std::nullopt, project);
    ASSERT_TRUE(headers);
    EXPECT_FALSE(headers->contentLength().has_value());
    EXPECT_FALSE(headers->downloadedLength().has_value());
    EXPECT_EQ(queryInt("select content_length from LinkHeaders"), 0);
    EXPECT_EQ(queryInt("select downloaded_length from LinkHeaders"), 0);
    EXPECT_FALSE(headers->isContentLengthToBig());
    auto found = LinkHeaders::getLinkHeadersWithURL(QStringLiteral("http://example.com/a"), project);
    ASSERT_TRUE(found);
    EXPECT_EQ(found->contentLength(), 0);
}

TEST_F(LinkHeadersTest, LengthsWrapAt32BitsOnTheWayIn)
{
    const qint64 big = 2147483648LL; // 2^31
    auto headers = LinkHeaders::createLinkHeadersWithURL(QStringLiteral("http://example.com/big"),
                                                         QStringLiteral("video/mp4"), big, big + 5, project);
    ASSERT_TRUE(headers);
    EXPECT_EQ(headers->contentLength(), big);
    EXPECT_TRUE(headers->isContentLengthToBig());
    auto found = LinkHeaders::getLinkHeadersWithURL(QStringLiteral("http://example.com/big"), project);
    ASSERT_TRUE(found);
    EXPECT_EQ(found->contentLength(), -2147483648LL);
    EXPECT_EQ(found->downloadedLength(), -2147483643LL);
    EXPECT_FALSE(found->isContentLengthToBig());
}

TEST_F(LinkHeadersTest, ANullURLOrContentTypeAnswersNilWithoutTrace)
{
    TraceCapture trace;
    EXPECT_FALSE(LinkHeaders::createLinkHeadersWithURL(QStringLiteral("http://example.com/a"), QString(), 1, 1, project));
    EXPECT_FALSE(LinkHeaders::createLinkHeadersWithURL(QString(), QStringLiteral("text/html"), 1, 1, project));
    EXPECT_TRUE(trace.lines().empty());
    EXPECT_EQ(queryInt("select count(*) from LinkHeaders"), 0);
}

TEST_F(LinkHeadersTest, IsContentTypeHTML)
{
    EXPECT_TRUE(headersOfType(QStringLiteral("TEXT/HTML; charset=ISO-8859-1")).isContentTypeHTML());
    EXPECT_TRUE(headersOfType(QStringLiteral("text/html")).isContentTypeHTML());
    EXPECT_TRUE(headersOfType(QStringLiteral("application/x-text/html-fragment")).isContentTypeHTML());
    EXPECT_TRUE(headersOfType(QStringLiteral("Text/Html")).isContentTypeHTML());
    EXPECT_FALSE(headersOfType(QStringLiteral("application/xhtml+xml")).isContentTypeHTML());
    EXPECT_FALSE(headersOfType(QStringLiteral("text/plain")).isContentTypeHTML());
    EXPECT_FALSE(headersOfType(QStringLiteral("text/htm")).isContentTypeHTML());
    EXPECT_FALSE(headersOfType(QStringLiteral("")).isContentTypeHTML());
    // No content type at all counts as HTML.
    EXPECT_TRUE(headersOfType(QString()).isContentTypeHTML());
}

TEST_F(LinkHeadersTest, IsContentLengthToBigAboveOneMebibyte)
{
    EXPECT_FALSE(headersOfLength(1048576).isContentLengthToBig());
    EXPECT_TRUE(headersOfLength(1048577).isContentLengthToBig());
    EXPECT_FALSE(headersOfLength(0).isContentLengthToBig());
    EXPECT_FALSE(headersOfLength(-5).isContentLengthToBig());
    EXPECT_FALSE(headersOfLength(std::nullopt).isContentLengthToBig());
    EXPECT_TRUE(headersOfLength(5000000000LL).isContentLengthToBig());
}

TEST_F(LinkHeadersTest, DescriptionPrintsTheFieldsAndNullForMissingValues)
{
    LinkHeaders full(QStringLiteral("http://example.com/a"), QStringLiteral("text/html"), 10, 20, project);
    EXPECT_EQ(full.description(), QStringLiteral("LinkHeaders (url::http://example.com/a) (contentType::text/html) "
                                                 "(contentLength::10) (downloadedLength::20)"));
    LinkHeaders bare(QString(), QString(), std::nullopt, std::nullopt, nullptr);
    EXPECT_EQ(bare.description(), QStringLiteral("LinkHeaders (url::(null)) (contentType::(null)) "
                                                 "(contentLength::(null)) (downloadedLength::(null))"));
}

TEST_F(LinkHeadersTest, LinkHeadersFromStatementReadsTheCurrentRow)
{
    exec("insert into LinkHeaders(url,content_type,content_length,downloaded_length) values('u','t',null,7)");
    sqlite3_stmt* stmt = nullptr;
    ASSERT_EQ(sqlite3_prepare_v2(db(), "select url,content_type,content_length,downloaded_length from LinkHeaders", -1,
                                 &stmt, nullptr),
              SQLITE_OK);
    ASSERT_EQ(sqlite3_step(stmt), SQLITE_ROW);
    auto headers = LinkHeaders::linkHeadersFromStatement(stmt, project);
    sqlite3_finalize(stmt);
    ASSERT_TRUE(headers);
    EXPECT_EQ(headers->url(), QStringLiteral("u"));
    EXPECT_EQ(headers->contentType(), QStringLiteral("t"));
    EXPECT_EQ(headers->contentLength(), 0); // a NULL length reads as 0
    EXPECT_EQ(headers->downloadedLength(), 7);
}

TEST_F(LinkHeadersTest, AMissingTableGivesNilWithTraces)
{
    replaceDatabaseWithTablesOnly({"Page", "Links", "DownloaderQueue"});
    TraceCapture trace;
    EXPECT_FALSE(LinkHeaders::createLinkHeadersWithURL(QStringLiteral("http://example.com/a"), QStringLiteral("text/html"),
                                                       1, 1, project));
    EXPECT_FALSE(LinkHeaders::getLinkHeadersWithURL(QStringLiteral("http://example.com/a"), project));
    EXPECT_TRUE(traced(trace, "createLinkHeadersWithURL Error::no such table: LinkHeaders"));
    EXPECT_TRUE(traced(trace, "getLinkHeadersWithURL Error::no such table: LinkHeaders"));
}

TEST_F(LinkHeadersTest, AFileThatIsNotADatabaseOrANullHandleGivesNilWithTraces)
{
    replaceDatabaseWithGarbage();
    {
        TraceCapture trace;
        EXPECT_FALSE(LinkHeaders::createLinkHeadersWithURL(QStringLiteral("http://example.com/a"),
                                                           QStringLiteral("text/html"), 1, 1, project));
        EXPECT_FALSE(LinkHeaders::getLinkHeadersWithURL(QStringLiteral("http://example.com/a"), project));
        EXPECT_TRUE(traced(trace, "createLinkHeadersWithURL Error::file is not a database"));
        EXPECT_TRUE(traced(trace, "getLinkHeadersWithURL Error::file is not a database"));
    }
    useNullHandle();
    {
        TraceCapture trace;
        EXPECT_FALSE(LinkHeaders::getLinkHeadersWithURL(QStringLiteral("http://example.com/a"), project));
        EXPECT_TRUE(traced(trace, "getLinkHeadersWithURL Error::"));
    }
}

} // namespace
