#include "html/WebLinkExtractor.h"
#include "html/WebUrl.h"

#include <QStringList>

#include <gtest/gtest.h>

namespace {

const QUrl kPage(QStringLiteral("http://example.com/dir/page.html"));

WebPageScan scan(const QByteArray& html, const QUrl& page = kPage)
{
    return WebLinkExtractor::scan(html, page);
}

// Each link as "tag attribute url", in document order.
QStringList described(const WebPageScan& page)
{
    QStringList lines;
    for (const WebLinkFound& link : page.links)
        lines.append(link.tag + u' ' + link.attribute + u' ' + link.url.toString(QUrl::FullyEncoded));
    return lines;
}

QStringList urls(const WebPageScan& page)
{
    QStringList list;
    for (const WebLinkFound& link : page.links)
        list.append(link.url.toString(QUrl::FullyEncoded));
    return list;
}

TEST(WebLinkExtractorTest, AnchorHrefIsANavigationalLinkWithItsText)
{
    const WebPageScan page = scan("<html><body><p>See <a href='other.html' rel='Next'>the other page</a>.</p></body></html>");
    ASSERT_EQ(page.links.size(), 1);
    const WebLinkFound& link = page.links.front();
    EXPECT_EQ(link.tag, QStringLiteral("a"));
    EXPECT_EQ(link.attribute, QStringLiteral("href"));
    EXPECT_EQ(link.raw, QStringLiteral("other.html"));
    EXPECT_EQ(link.url, QUrl(QStringLiteral("http://example.com/dir/other.html")));
    EXPECT_EQ(link.text, QStringLiteral("the other page"));
    EXPECT_EQ(link.rel, QStringLiteral("next"));
    EXPECT_TRUE(link.navigational);
    EXPECT_FALSE(link.nofollow);
}

TEST(WebLinkExtractorTest, AreaHrefTakesItsAltAsText)
{
    const WebPageScan page = scan("<map name=m><area shape=rect coords='0,0,1,1' href='/zone' alt=' North  zone '></map>");
    ASSERT_EQ(described(page), QStringList{QStringLiteral("area href http://example.com/zone")});
    EXPECT_EQ(page.links.front().text, QStringLiteral("North zone"));
    EXPECT_TRUE(page.links.front().navigational);
}

TEST(WebLinkExtractorTest, LinkHrefOfEveryRelIsALinkButCanonical)
{
    const WebPageScan page = scan("<head><link rel=stylesheet href=style.css title='Main style'>"
                                  "<link rel='preload icon' href='/favicon.ico'>"
                                  "<link rel=canonical href='/first'><link rel='Canonical' href='/last'></head>");
    EXPECT_EQ(described(page), (QStringList{QStringLiteral("link href http://example.com/dir/style.css"),
                                            QStringLiteral("link href http://example.com/favicon.ico")}));
    EXPECT_EQ(page.links[0].rel, QStringLiteral("stylesheet"));
    EXPECT_EQ(page.links[0].text, QStringLiteral("Main style"));
    EXPECT_EQ(page.links[1].rel, QStringLiteral("preload icon"));
    EXPECT_FALSE(page.links[0].navigational);
    EXPECT_EQ(page.canonical, QUrl(QStringLiteral("http://example.com/last")));
}

TEST(WebLinkExtractorTest, NoCanonicalLeavesItInvalid)
{
    EXPECT_FALSE(scan("<link rel=next href=2.html>").canonical.isValid());
}

TEST(WebLinkExtractorTest, ImageSrcAndSrcsetTakeTheAlt)
{
    const WebPageScan page = scan("<img src='a.png' srcset='b.png 2x, c.png 3x' alt='A  picture'>");
    EXPECT_EQ(described(page), (QStringList{QStringLiteral("img src http://example.com/dir/a.png"),
                                            QStringLiteral("img srcset http://example.com/dir/b.png"),
                                            QStringLiteral("img srcset http://example.com/dir/c.png")}));
    for (const WebLinkFound& link : page.links) {
        EXPECT_EQ(link.text, QStringLiteral("A picture"));
        EXPECT_FALSE(link.navigational);
    }
}

TEST(WebLinkExtractorTest, SourceSrcAndSrcset)
{
    const WebPageScan page = scan("<picture><source srcset='wide.webp 800w, narrow.webp 400w' media='(min-width: 600px)'>"
                                  "<img src=fallback.jpg></picture><video><source src='clip.mp4' type=video/mp4></video>");
    EXPECT_EQ(described(page), (QStringList{QStringLiteral("source srcset http://example.com/dir/wide.webp"),
                                            QStringLiteral("source srcset http://example.com/dir/narrow.webp"),
                                            QStringLiteral("img src http://example.com/dir/fallback.jpg"),
                                            QStringLiteral("source src http://example.com/dir/clip.mp4")}));
}

TEST(WebLinkExtractorTest, ScriptSrc)
{
    const WebPageScan page = scan("<script src='/js/app.js' title='App'></script><script>var a = '<a href=no.html>';</script>");
    EXPECT_EQ(described(page), QStringList{QStringLiteral("script src http://example.com/js/app.js")});
    EXPECT_EQ(page.links.front().text, QStringLiteral("App"));
    EXPECT_FALSE(page.links.front().navigational);
}

TEST(WebLinkExtractorTest, IframeSrcIsNavigational)
{
    const WebPageScan page = scan("<iframe src='frame.html' title='Embedded  map'></iframe>");
    ASSERT_EQ(described(page), QStringList{QStringLiteral("iframe src http://example.com/dir/frame.html")});
    EXPECT_TRUE(page.links.front().navigational);
    EXPECT_EQ(page.links.front().text, QStringLiteral("Embedded map"));
}

TEST(WebLinkExtractorTest, FrameSrcIsNavigational)
{
    const WebPageScan page = scan("<frameset cols='50%,50%'><frame src='left.html'><frame src='right.html'></frameset>");
    EXPECT_EQ(described(page), (QStringList{QStringLiteral("frame src http://example.com/dir/left.html"),
                                            QStringLiteral("frame src http://example.com/dir/right.html")}));
    EXPECT_TRUE(page.links[0].navigational);
    EXPECT_TRUE(page.links[1].navigational);
}

TEST(WebLinkExtractorTest, EmbedSrc)
{
    EXPECT_EQ(described(scan("<embed src='movie.swf' type='application/x-shockwave-flash'>")),
              QStringList{QStringLiteral("embed src http://example.com/dir/movie.swf")});
}

TEST(WebLinkExtractorTest, VideoSrcAndPoster)
{
    EXPECT_EQ(described(scan("<video src='movie.webm' poster='poster.jpg' controls></video>")),
              (QStringList{QStringLiteral("video src http://example.com/dir/movie.webm"),
                           QStringLiteral("video poster http://example.com/dir/poster.jpg")}));
}

TEST(WebLinkExtractorTest, AudioSrc)
{
    EXPECT_EQ(described(scan("<audio src='/sound.ogg'></audio>")),
              QStringList{QStringLiteral("audio src http://example.com/sound.ogg")});
}

TEST(WebLinkExtractorTest, TrackSrc)
{
    EXPECT_EQ(described(scan("<video src=v.mp4><track kind=subtitles src='subs/fr.vtt' srclang=fr></video>")),
              (QStringList{QStringLiteral("video src http://example.com/dir/v.mp4"),
                           QStringLiteral("track src http://example.com/dir/subs/fr.vtt")}));
}

TEST(WebLinkExtractorTest, InputSrcOnlyForTypeImage)
{
    EXPECT_EQ(described(scan("<form><input type=IMAGE src='go.png'><input type=text src='not.png'><input src='nor.png'></form>")),
              QStringList{QStringLiteral("input src http://example.com/dir/go.png")});
}

TEST(WebLinkExtractorTest, ObjectData)
{
    EXPECT_EQ(described(scan("<object data='doc.pdf' type='application/pdf'></object>")),
              QStringList{QStringLiteral("object data http://example.com/dir/doc.pdf")});
}

TEST(WebLinkExtractorTest, MetaRefreshTargetIsNavigational)
{
    const WebPageScan page = scan("<head><meta http-equiv='Refresh' content='5; url=next.html'></head>");
    ASSERT_EQ(described(page), QStringList{QStringLiteral("meta content http://example.com/dir/next.html")});
    EXPECT_TRUE(page.links.front().navigational);
    EXPECT_EQ(page.links.front().raw, QStringLiteral("next.html"));
}

TEST(WebLinkExtractorTest, MetaRefreshForms)
{
    const struct {
        const char* content;
        const char* target; // null: no link
    } cases[] = {
        {"5; url=target", "http://example.com/dir/target"},
        {"0;URL='x'", "http://example.com/dir/x"},
        {"0; URL=\"/quoted.html\" ", "http://example.com/quoted.html"},
        {"3, next.html", "http://example.com/dir/next.html"},
        {"1 url = spaced.html", "http://example.com/dir/spaced.html"},
        {"0;url=http://other.example/", "http://other.example/"},
        {"2.5;urlish.html", "http://example.com/dir/urlish.html"},
        {"0; 'single.html", "http://example.com/dir/single.html"},
        {"5", nullptr},
        {"5;", nullptr},
        {"soon; url=x", nullptr},
        {"5x; url=x", nullptr},
    };
    for (const auto& c : cases) {
        const QByteArray html = "<meta http-equiv=refresh content=\"" + QByteArray(c.content).replace('"', "&quot;") + "\">";
        const WebPageScan page = scan(html);
        if (!c.target) {
            EXPECT_TRUE(page.links.isEmpty()) << c.content;
            continue;
        }
        EXPECT_EQ(urls(page), QStringList{QString::fromUtf8(c.target)}) << c.content;
    }
}

TEST(WebLinkExtractorTest, StyleAttributeUrlForms)
{
    const WebPageScan page = scan("<div style=\"background: url(a.png) ; border-image: URL( 'b.png' ) ; "
                                  "list-style: url(&quot;c.png&quot;); content: 'url(not.png)' /* url(nor.png) */\" "
                                  "title='Banner'></div>");
    EXPECT_EQ(described(page), (QStringList{QStringLiteral("div style http://example.com/dir/a.png"),
                                            QStringLiteral("div style http://example.com/dir/b.png"),
                                            QStringLiteral("div style http://example.com/dir/c.png")}));
    EXPECT_EQ(page.links.front().text, QStringLiteral("Banner"));
}

TEST(WebLinkExtractorTest, StyleBlockUrlsAndImports)
{
    const WebPageScan page = scan("<style>@import \"base.css\";\n@import url(print.css) print;\n@IMPORT 'single.css';\n"
                                  "body { background: url('/bg.png') }\n.x { background-image: url(\"x\\ y.png\") }\n"
                                  "/* url(comment.png) */ .y:after { content: \"url(text.png)\" }\n"
                                  ".bad { background: url(a b.png) } .empty { background: url() }</style>");
    EXPECT_EQ(described(page), (QStringList{QStringLiteral("style  http://example.com/dir/base.css"),
                                            QStringLiteral("style  http://example.com/dir/print.css"),
                                            QStringLiteral("style  http://example.com/dir/single.css"),
                                            QStringLiteral("style  http://example.com/bg.png"),
                                            QStringLiteral("style  http://example.com/dir/x%20y.png")}));
    for (const WebLinkFound& link : page.links)
        EXPECT_TRUE(link.text.isEmpty());
}

TEST(WebLinkExtractorTest, FirstBaseHrefIsTheBaseOfEveryLinkEvenThoseBeforeIt)
{
    const WebPageScan page = scan("<head><link rel=stylesheet href='s.css'><base target=_blank>"
                                  "<base href='/other/sub/'><base href='http://ignored.example/'></head>"
                                  "<body><a href='x.html'>x</a><a href='#top'>top</a></body>",
                                  QUrl(QStringLiteral("http://example.com/dir/page.html")));
    EXPECT_EQ(page.base, QUrl(QStringLiteral("http://example.com/other/sub/")));
    EXPECT_EQ(urls(page), (QStringList{QStringLiteral("http://example.com/other/sub/s.css"),
                                       QStringLiteral("http://example.com/other/sub/x.html"),
                                       QStringLiteral("http://example.com/other/sub/#top")}));
}

TEST(WebLinkExtractorTest, WithoutBaseThePageIsTheBase)
{
    const WebPageScan page = scan("<a href=x>x</a>", QUrl(QStringLiteral("HTTP://Example.com:80/dir/page.html")));
    EXPECT_EQ(page.base, QUrl(QStringLiteral("http://example.com/dir/page.html")));
    EXPECT_EQ(urls(page), QStringList{QStringLiteral("http://example.com/dir/x")});
}

TEST(WebLinkExtractorTest, SrcsetUrlsMayHoldCommas)
{
    const WebPageScan page = scan("<img srcset='a,b.jpg 1x, c.jpg 2x'>"
                                  "<img srcset='d.jpg,e.jpg'><img srcset='f.jpg, g.jpg 2x'>"
                                  "<img srcset='h.jpg 1x 2x, i.jpg 100w, j.jpg 2q, k.jpg 50w 60h, "
                                  "l.jpg (x, y) 1.5x,m.jpg'>");
    EXPECT_EQ(urls(page), (QStringList{QStringLiteral("http://example.com/dir/a,b.jpg"),
                                       QStringLiteral("http://example.com/dir/c.jpg"),
                                       QStringLiteral("http://example.com/dir/d.jpg,e.jpg"),
                                       QStringLiteral("http://example.com/dir/f.jpg"),
                                       QStringLiteral("http://example.com/dir/g.jpg"),
                                       QStringLiteral("http://example.com/dir/i.jpg"),
                                       QStringLiteral("http://example.com/dir/k.jpg"),
                                       QStringLiteral("http://example.com/dir/m.jpg")}));
}

TEST(WebLinkExtractorTest, AnchorTextGathersNestedMarkupWithBlanksCollapsed)
{
    const WebPageScan page = scan("<a href=1>\n  Hello <b>big</b>\n\t<i>wide <span>world</span></i>  </a>"
                                  "<a href=2><img src=logo.png alt=' Company  logo '></a>"
                                  "<a href=3><img src=x.png><img src=y.png alt='Second'></a>"
                                  "<a href=4>Text <img src=z.png alt='ignored'></a>"
                                  "<a href=5></a>");
    QStringList texts;
    for (const WebLinkFound& link : page.links) {
        if (link.tag == u"a")
            texts.append(link.text);
    }
    EXPECT_EQ(texts, (QStringList{QStringLiteral("Hello big wide world"), QStringLiteral("Company logo"),
                                  QStringLiteral("Second"), QStringLiteral("Text"), QString()}));
}

TEST(WebLinkExtractorTest, BlockElementsInAnAnchorSeparateItsWords)
{
    const WebPageScan page = scan("<a href=card><h3>Title</h3><p>Summary<br>more</p><span>in</span><b>line</b></a>");
    ASSERT_EQ(page.links.size(), 1);
    EXPECT_EQ(page.links.front().text, QStringLiteral("Title Summary more inline"));
}

TEST(WebLinkExtractorTest, AnchorTextIsCutAtTwoHundredCharacters)
{
    const QByteArray words = QByteArray("word ").repeated(100);
    const WebPageScan page = scan("<a href=long>" + words + "</a>");
    ASSERT_EQ(page.links.size(), 1);
    EXPECT_EQ(page.links.front().text.size(), 199); // 40 words and the 39 spaces between them
    EXPECT_TRUE(page.links.front().text.startsWith(u"word word"));
    EXPECT_TRUE(page.links.front().text.endsWith(u"word"));
}

TEST(WebLinkExtractorTest, MissingTextsAreEmptyNotNull)
{
    const WebPageScan page = scan("<a href=x></a><img src=i.png><style>p { background: url(b.png) }</style>");
    EXPECT_FALSE(page.title.isNull());
    EXPECT_TRUE(page.title.isEmpty());
    ASSERT_EQ(page.links.size(), 3);
    for (const WebLinkFound& link : page.links) {
        EXPECT_FALSE(link.text.isNull()) << link.tag.toStdString();
        EXPECT_TRUE(link.text.isEmpty()) << link.tag.toStdString();
        EXPECT_FALSE(link.rel.isNull()) << link.tag.toStdString();
        EXPECT_FALSE(link.raw.isNull()) << link.tag.toStdString();
    }
}

TEST(WebLinkExtractorTest, IdsAndAnchorNamesAreFragmentTargets)
{
    const WebPageScan page = scan("<h1 id='Top'>T</h1><a name='chapter-1'>C</a><div id=\"caf\xc3\xa9\"><p id=''>"
                                  "<span name='not-a'>s</span><a id='both' name='named'>b</a>");
    EXPECT_EQ(page.fragmentIds, (QSet<QString>{QStringLiteral("Top"), QStringLiteral("chapter-1"), QStringLiteral("caf\u00e9"),
                                               QStringLiteral("both"), QStringLiteral("named")}));
    EXPECT_TRUE(page.links.isEmpty());
}

TEST(WebLinkExtractorTest, AByteOrderMarkAtTheStartOfAnAttributeIsPartOfItsValue)
{
    // A value that is only U+FEFF is an id all the same; one that starts with it keeps it.
    const WebPageScan page = scan("<p id=\xef\xbb\xbf>p</p><p id='\xef\xbb\xbf\xef\xbb\xbfx'>q</p>"
                                  "<a name='\xef\xbb\xbfn'>n</a>");
    EXPECT_EQ(page.fragmentIds, (QSet<QString>{QString(QChar(0xFEFF)), QString(QChar(0xFEFF)) + QChar(0xFEFF) + u'x',
                                               QString(QChar(0xFEFF)) + u'n'}));
}

TEST(WebLinkExtractorTest, NofollowIsAnyRelToken)
{
    const WebPageScan page = scan("<a href=1 rel='noopener nofollow'>1</a><a href=2 rel=' NoFollow '>2</a>"
                                  "<a href=3 rel='nofollowed'>3</a><a href=4>4</a><area href=5 rel='nofollow'>"
                                  "<link rel='nofollow alternate' href=6>");
    ASSERT_EQ(page.links.size(), 6);
    EXPECT_TRUE(page.links[0].nofollow);
    EXPECT_EQ(page.links[0].rel, QStringLiteral("noopener nofollow"));
    EXPECT_TRUE(page.links[1].nofollow);
    EXPECT_EQ(page.links[1].rel, QStringLiteral("nofollow"));
    EXPECT_FALSE(page.links[2].nofollow);
    EXPECT_FALSE(page.links[3].nofollow);
    EXPECT_TRUE(page.links[4].nofollow);
    EXPECT_TRUE(page.links[5].nofollow);
}

TEST(WebLinkExtractorTest, RobotsMetaDirectives)
{
    const auto flags = [](const char* meta) {
        const WebPageScan page = scan(QByteArray("<head>") + meta + "</head>");
        return std::make_pair(page.noIndex, page.noFollow);
    };
    EXPECT_EQ(flags("<meta name=robots content='index, follow'>"), std::make_pair(false, false));
    EXPECT_EQ(flags("<meta name=ROBOTS content='NOINDEX,NOFOLLOW'>"), std::make_pair(true, true));
    EXPECT_EQ(flags("<meta name='Robots' content='noindex'>"), std::make_pair(true, false));
    EXPECT_EQ(flags("<meta name=robots content='nofollow'>"), std::make_pair(false, true));
    EXPECT_EQ(flags("<meta name=robots content='None'>"), std::make_pair(true, true));
    EXPECT_EQ(flags("<meta name=robots content='noindex nofollow'>"), std::make_pair(true, true));
    EXPECT_EQ(flags("<meta name=robots content='noindex'><meta name=robots content='nofollow'>"), std::make_pair(true, true));
    EXPECT_EQ(flags("<meta name=googlebot content='noindex, nofollow'>"), std::make_pair(false, false));
    EXPECT_EQ(flags("<meta name=quillmere content='noindex, nofollow'>"), std::make_pair(false, false));
    EXPECT_EQ(flags("<meta name=robots content='noindexing, nofollowing'>"), std::make_pair(false, false));
}

TEST(WebLinkExtractorTest, TitleIsTheFirstOneCollapsed)
{
    EXPECT_EQ(scan("<svg><title>Icon</title></svg><title>\n  The   page\ttitle </title><title>Second</title>").title,
              QStringLiteral("The page title"));
    EXPECT_EQ(scan("<p>no title</p>").title, QString());
}

TEST(WebLinkExtractorTest, EmptyHrefAndBareHashAreLinksToThePageItself)
{
    const WebPageScan page = scan("<a href=''>self</a><a href='#'>top</a><a href='  '>blank</a><area href='' alt=a>"
                                  "<img src=''><img src='  '><script src=''></script><link rel=icon href=''><a>no href</a>",
                                  QUrl(QStringLiteral("http://example.com/dir/page.html?q=1")));
    EXPECT_EQ(described(page), (QStringList{QStringLiteral("a href http://example.com/dir/page.html?q=1"),
                                            QStringLiteral("a href http://example.com/dir/page.html?q=1#"),
                                            QStringLiteral("a href http://example.com/dir/page.html?q=1"),
                                            QStringLiteral("area href http://example.com/dir/page.html?q=1")}));
    EXPECT_EQ(page.links[0].raw, QStringLiteral(""));
    EXPECT_FALSE(page.links[0].raw.isNull());
}

TEST(WebLinkExtractorTest, OtherSchemesAreKeptWithTheirScheme)
{
    const WebPageScan page = scan("<a href='mailto:someone@example.com'>m</a><a href='tel:+331234'>t</a>"
                                  "<a href='javascript:void(0)'>j</a><img src='data:image/png;base64,iVBORw0KGgo='>"
                                  "<a href='http://[broken'>b</a>");
    ASSERT_EQ(page.links.size(), 5);
    EXPECT_EQ(WebUrl::schemeOf(page.links[0].url), QStringLiteral("mailto"));
    EXPECT_EQ(WebUrl::schemeOf(page.links[1].url), QStringLiteral("tel"));
    EXPECT_EQ(WebUrl::schemeOf(page.links[2].url), QStringLiteral("javascript"));
    EXPECT_EQ(WebUrl::schemeOf(page.links[3].url), QStringLiteral("data"));
    for (int i = 0; i < 4; ++i)
        EXPECT_FALSE(WebUrl::isFetchable(page.links[i].url)) << i;
    EXPECT_FALSE(page.links[4].url.isValid());
    EXPECT_EQ(page.links[4].raw, QStringLiteral("http://[broken"));
}

TEST(WebLinkExtractorTest, ReferencesAreCleanedLikeBrowsersDo)
{
    const WebPageScan page = scan("<a href=' \n/path/\tto/\r\npage.html  '>x</a><a href='/caf\xc3\xa9 menu.html'>y</a>");
    EXPECT_EQ(page.links[0].raw, QStringLiteral("/path/to/page.html"));
    EXPECT_EQ(urls(page), (QStringList{QStringLiteral("http://example.com/path/to/page.html"),
                                       QStringLiteral("http://example.com/caf%C3%A9%20menu.html")}));
}

TEST(WebLinkExtractorTest, LinksAfterTheEndOfTheRootElementAreFound)
{
    // Browsers put what follows </html> into the body; libxml2 alone stops reading there.
    const WebPageScan page = scan("<html><body><a href=1>one</a></body></HTML ><script src=late.js></script>"
                                  "<html><body><a href=2>two</a></body></html>\n<a href=3>three</a></html");
    EXPECT_EQ(urls(page), (QStringList{QStringLiteral("http://example.com/dir/1"), QStringLiteral("http://example.com/dir/late.js"),
                                       QStringLiteral("http://example.com/dir/2"), QStringLiteral("http://example.com/dir/3")}));
}

TEST(WebLinkExtractorTest, EndOfRootCutByAChunkBoundaryIsStillSeen)
{
    for (qsizetype cut = 0; cut < 8; ++cut) {
        // The "</html>" begins `cut` bytes before the first chunk's end.
        QByteArray html("<html><body><a href=first>first</a>");
        html.append(QByteArray(WebLinkExtractor::kChunkSize - cut - html.size(), ' '));
        html.append("</html><a href=after>after</a>");
        EXPECT_EQ(urls(scan(html)), (QStringList{QStringLiteral("http://example.com/dir/first"),
                                                 QStringLiteral("http://example.com/dir/after")}))
            << cut;
    }
}

TEST(WebLinkExtractorTest, LinksAtTheEndOfATwentyMebibytePageAreFound)
{
    QByteArray html("<html><head><title>Big</title></head><body>");
    const QByteArray paragraph("<p class=filler>Lorem ipsum dolor sit amet, <b>consectetur</b> adipiscing elit.</p>\n");
    html.reserve(21 * 1024 * 1024);
    while (html.size() < 20 * 1024 * 1024)
        html.append(paragraph);
    html.append("<a href='/end-1.html'>end one</a><img src='/end.png'><a href='/end-2.html'>end two</a></body></html>");
    ASSERT_GE(html.size(), 20 * 1024 * 1024);
    const WebPageScan page = scan(html);
    EXPECT_EQ(page.title, QStringLiteral("Big"));
    EXPECT_EQ(described(page), (QStringList{QStringLiteral("a href http://example.com/end-1.html"),
                                            QStringLiteral("img src http://example.com/end.png"),
                                            QStringLiteral("a href http://example.com/end-2.html")}));
    EXPECT_EQ(page.links.back().text, QStringLiteral("end two"));
}

TEST(WebLinkExtractorTest, Latin1PageDeclaredByMetaCharsetReadsItsNonAsciiHref)
{
    const QByteArray html("<html><head><meta charset=\"ISO-8859-1\"><title>Caf\xe9</title></head>"
                          "<body><a href=\"caf\xe9.html\">Caf\xe9 cr\xe8me</a></body></html>");
    const WebPageScan page = scan(html);
    EXPECT_EQ(page.title, QStringLiteral("Caf\u00e9"));
    ASSERT_EQ(page.links.size(), 1);
    EXPECT_EQ(page.links.front().raw, QStringLiteral("caf\u00e9.html"));
    EXPECT_EQ(page.links.front().text, QStringLiteral("Caf\u00e9 cr\u00e8me"));
    EXPECT_EQ(page.links.front().url.toString(QUrl::FullyEncoded), QStringLiteral("http://example.com/dir/caf%C3%A9.html"));
}

TEST(WebLinkExtractorTest, CharsetDeclaredByHttpEquivContentType)
{
    const WebPageScan page = scan("<!-- <meta charset=utf-8> --><meta http-equiv='Content-Type' content='text/html; charset=windows-1252'>"
                                  "<a href='\x80.html'>euro</a>");
    ASSERT_EQ(page.links.size(), 1);
    EXPECT_EQ(page.links.front().raw, QStringLiteral("\u20ac.html"));
}

TEST(WebLinkExtractorTest, UndeclaredPageIsUtf8AndABadByteSpoilsOnlyItself)
{
    // libxml2 left alone would read the whole page as Latin-1 from the first bad byte.
    const WebPageScan page = scan("<a href='caf\xc3\xa9.html'>caf\xc3\xa9</a> \xe9 <a href='cr\xc3\xa8me.html'>cr\xc3\xa8me</a>"
                                  "<a href='bad\xe9.html'>bad</a>");
    ASSERT_EQ(page.links.size(), 3);
    EXPECT_EQ(page.links[0].raw, QStringLiteral("caf\u00e9.html"));
    EXPECT_EQ(page.links[1].raw, QStringLiteral("cr\u00e8me.html"));
    EXPECT_EQ(page.links[1].text, QStringLiteral("cr\u00e8me"));
    EXPECT_EQ(page.links[2].raw, QStringLiteral("bad\ufffd.html"));
    EXPECT_EQ(page.links[2].url.toString(QUrl::FullyEncoded), QStringLiteral("http://example.com/dir/bad%EF%BF%BD.html"));
}

TEST(WebLinkExtractorTest, CharsetMetaInTheBodyChangesNothing)
{
    // Neither the scan of the head nor libxml2, which would switch to Latin-1 at this <meta>.
    const WebPageScan page = scan("<html><head><title>t</title></head><body><p>caf\xc3\xa9</p>"
                                  "<meta charset=iso-8859-1><a href='caf\xc3\xa9.html'>caf\xc3\xa9</a></body></html>");
    ASSERT_EQ(page.links.size(), 1);
    EXPECT_EQ(page.links.front().raw, QStringLiteral("caf\u00e9.html"));
    EXPECT_EQ(page.links.front().text, QStringLiteral("caf\u00e9"));
}

TEST(WebLinkExtractorTest, ZeroBytesReadAsReplacementCharacters)
{
    const char html[] = "<p>\0</p><a href='a\0b.html'>x\0y</a><a href='after.html'>after</a>";
    const WebPageScan page = scan(QByteArray(html, sizeof html - 1));
    ASSERT_EQ(page.links.size(), 2);
    EXPECT_EQ(page.links[0].raw, QStringLiteral("a\ufffdb.html"));
    EXPECT_EQ(page.links[0].text, QStringLiteral("x\ufffdy"));
    EXPECT_EQ(page.links[1].raw, QStringLiteral("after.html"));
}

TEST(WebLinkExtractorTest, ShiftJisPageDeclaredByMetaCharset)
{
    const WebPageScan page = scan("<meta charset='Shift_JIS'><a href='\x82\xa0.html'>\x82\xa0</a>");
    ASSERT_EQ(page.links.size(), 1);
    EXPECT_EQ(page.links.front().raw, QStringLiteral("\u3042.html"));
    EXPECT_EQ(page.links.front().url.toString(QUrl::FullyEncoded), QStringLiteral("http://example.com/dir/%E3%81%82.html"));
}

TEST(WebLinkExtractorTest, Utf16PageWithAByteOrderMark)
{
    const QString text = QStringLiteral("<meta charset=iso-8859-1><a href='caf\u00e9.html'>caf\u00e9</a>");
    QByteArray html("\xff\xfe");
    for (QChar c : text) {
        html.append(static_cast<char>(c.unicode() & 0xff));
        html.append(static_cast<char>(c.unicode() >> 8));
    }
    const WebPageScan page = scan(html);
    ASSERT_EQ(page.links.size(), 1);
    EXPECT_EQ(page.links.front().raw, QStringLiteral("caf\u00e9.html"));
}

TEST(WebLinkExtractorTest, TransportCharsetComesBeforeTheMeta)
{
    const QByteArray html("<meta charset=utf-8><a href='caf\xe9.html'>x</a>");
    const WebPageScan page = WebLinkExtractor::scan(html, kPage, QByteArrayLiteral("ISO-8859-1"));
    ASSERT_EQ(page.links.size(), 1);
    EXPECT_EQ(page.links.front().raw, QStringLiteral("caf\u00e9.html"));
}

TEST(WebLinkExtractorTest, EmptyAndBrokenPagesGiveNothing)
{
    for (const QByteArray& html : {QByteArray(), QByteArray(""), QByteArray("\0\0\0", 3),
                                   QByteArray("<<<>>>&&&;</a></b>")}) {
        const WebPageScan page = scan(html);
        EXPECT_TRUE(page.links.isEmpty());
        EXPECT_EQ(page.base, kPage);
    }
}

} // namespace
