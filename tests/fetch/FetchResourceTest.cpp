#include "fetch/SynchronizedWebCall.h"

#include "FetchTestSupport.h"

#include <gtest/gtest.h>

#include <chrono>
#include <thread>

using namespace fetchtest;

namespace {

// Waits for the server side to settle (its connection threads end a moment after the
// answer has gone) and answers the last counts seen.
std::pair<int, int> settledCounts(int fdLimit, int threadLimit)
{
    std::pair<int, int> counts;
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(5);
    do {
        counts = {openFileDescriptorCount(), threadCount()};
        if (counts.first <= fdLimit && counts.second <= threadLimit)
            break;
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
    } while (std::chrono::steady_clock::now() < deadline);
    return counts;
}

} // namespace

TEST(FetchResources, AThousandFetchesLeaveNoThreadOrDescriptorBehind)
{
    LocalHttpServer server;
    ASSERT_TRUE(server.start());
    server.setPage("/page.html", "<html><body>page</body></html>");
    server.setRedirect("/moved", "/page.html");
    server.setPage("/image.png", "PNG", "image/png");
    RefusingPort refusing;

    SynchronizedWebCall call;
    // One warm-up round so that one-time allocations (libcurl's global state) are counted
    // in the baseline.
    ASSERT_FALSE(call.getURL(q(server.url("/page.html")), QStringList{"text/html"}).isNull());
    const auto [fdsBefore, threadsBefore] = settledCounts(1 << 20, 1 << 20);

    int usable = 0;
    for (int i = 0; i < 1000; ++i) {
        QString url;
        switch (i % 4) {
        case 0: url = q(server.url("/page.html")); break;
        case 1: url = q(server.url("/moved")); break;
        case 2: url = q(server.url("/image.png")); break;
        default: url = q(refusing.url("/x")); break;
        }
        if (!call.getURL(url, QStringList{"text/html"}).isNull())
            ++usable;
    }
    EXPECT_EQ(usable, 500);

    const auto [fdsAfter, threadsAfter] = settledCounts(fdsBefore, threadsBefore);
    EXPECT_LE(fdsAfter, fdsBefore);
    EXPECT_LE(threadsAfter, threadsBefore);
}
