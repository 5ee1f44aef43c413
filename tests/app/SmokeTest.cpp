#include "AppTestSupport.h"

using namespace apptest;

TEST(Smoke, LaunchesAndCrawls)
{
    LocalHttpServer server;
    server.setPage("/index.html", "<html><head><title>Home</title></head><body><a href='a.html'>A</a></body></html>");
    server.setPage("/", "<html><head><title>Home</title></head><body><a href='a.html'>A</a></body></html>");
    server.setPage("/a.html", "<html><head><title>A</title></head><body><a href='/'>home</a></body></html>");
    ASSERT_TRUE(server.start());
    LaunchedApp app;
    app.createAndShowProject("site", q(server.baseUrl()));
    ASSERT_TRUE(app.crawlThroughStartButton());
    EXPECT_GE(app.documentsView()->numberOfRowsInTableView(), 2);
}
