// Every numeric option has a range: a value below or above it, or one that is no number, NaN
// or infinite, is refused with a message naming the option (or the value) and status 2,
// before anything is crawled or created.

#include "support/CliRunner.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

struct NumericOption {
    QStringList command; // the command up to the option
    QString option;
    QString below;
    QString above;
    QString mentioned; // what the message must name; empty: the option itself
};

class NumericOptions : public ::testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_EQ(runCli({"new", "site", "http://127.0.0.1:9/"}, dir.path()).exitCode, 0);
    }
    void expectRefused(const NumericOption& o)
    {
        for (const QString& bad : {o.below, o.above, QStringLiteral("many"), QStringLiteral("nan"),
                                   QStringLiteral("NaN"), QStringLiteral("inf"), QStringLiteral("-inf"),
                                   QStringLiteral("")}) {
            const CliResult r = runCli(o.command + QStringList{o.option, bad}, dir.path(), 20000);
            EXPECT_EQ(r.exitCode, 2) << o.option.toStdString() << " " << bad.toStdString() << ": "
                                     << r.err.toStdString();
            const QString mentioned = o.mentioned.isEmpty() ? o.option : o.mentioned.arg(bad);
            EXPECT_TRUE(r.err.contains(mentioned)) << o.option.toStdString() << " " << bad.toStdString() << ": "
                                                   << r.err.toStdString();
            EXPECT_TRUE(r.out.isEmpty()) << r.out.toStdString();
        }
    }
    QTemporaryDir dir;
};

TEST_F(NumericOptions, CrawlTimeout)
{
    expectRefused({{"crawl", "site", "--restart"}, "--timeout", "0.01", "86401", {}});
}

TEST_F(NumericOptions, CrawlMaxTransferTime)
{
    expectRefused({{"crawl", "site", "--restart"}, "--max-transfer-time", "0.5", "86401", {}});
}

TEST_F(NumericOptions, CrawlUrlMaxTransferTime)
{
    expectRefused({{"crawl-url", "http://127.0.0.1:9/"}, "--max-transfer-time", "0", "1e9", {}});
    EXPECT_EQ(runCli({"projects"}, dir.path()).out.count("127.0.0.1"), 1) << "a refused crawl-url made a project";
}

TEST_F(NumericOptions, CrawlParallel)
{
    expectRefused({{"crawl", "site", "--restart"}, "--parallel", "0", "65", {}});
}

TEST_F(NumericOptions, CrawlMaxRate)
{
    expectRefused({{"crawl", "site", "--restart"}, "--max-rate", "1e-9", "1e6", {}});
}

TEST_F(NumericOptions, NewDepthAndPages)
{
    expectRefused({{"new", "other", "http://127.0.0.1:9/"}, "--depth", "-2", "2147483648", "'%1'"});
    expectRefused({{"new", "other", "http://127.0.0.1:9/"}, "--pages", "-2", "99999999999", "'%1'"});
    EXPECT_FALSE(runCli({"projects"}, dir.path()).out.contains("other"));
}

TEST_F(NumericOptions, DemoPort)
{
    expectRefused({{"demo"}, "--port", "0", "65536", {}});
}

TEST_F(NumericOptions, ValuesAtTheBoundsAreTaken)
{
    // The bounds themselves are in range: the crawl of a closed port ends at once.
    const CliResult r = runCli({"crawl", "site", "--restart", "--timeout", "0.1", "--max-transfer-time", "1",
                                "--parallel", "64", "--max-rate", "1000"},
                               dir.path(), 60000);
    EXPECT_EQ(r.exitCode, 0) << r.err.toStdString();
    const CliResult slow = runCli({"crawl", "site", "--restart", "--max-rate", "0.5", "--timeout", "86400",
                                   "--max-transfer-time", "86400", "--parallel", "1"},
                                  dir.path(), 60000);
    EXPECT_EQ(slow.exitCode, 0) << slow.err.toStdString();
}

} // namespace
