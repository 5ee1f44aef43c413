#include "html/WebUrl.h"

#include <gtest/gtest.h>

#include <ostream>

namespace {

const QUrl kRfcBase(QStringLiteral("http://a/b/c/d;p?q"));

struct Example {
    const char* reference;
    const char* expected;
};

void PrintTo(const Example& e, std::ostream* os)
{
    *os << '"' << e.reference << "\" -> " << e.expected;
}

QString resolved(const QUrl& base, const QString& reference)
{
    return WebUrl::resolve(base, reference).toString(QUrl::FullyEncoded);
}

QString resolved(const char* base, const char* reference)
{
    return resolved(QUrl(QString::fromUtf8(base)), QString::fromUtf8(reference));
}

QString normal(const char* url)
{
    return WebUrl::normalized(QUrl(QString::fromUtf8(url))).toString(QUrl::FullyEncoded);
}

// RFC 3986 5.4.1, the results of a strict parser. The one difference is "//g": an http URL
// with an empty path is given the path "/" by normalisation.
class WebUrlNormalExample : public testing::TestWithParam<Example> {};

TEST_P(WebUrlNormalExample, ResolvesAsTheRfcSays)
{
    EXPECT_EQ(resolved(kRfcBase, QString::fromUtf8(GetParam().reference)), QString::fromUtf8(GetParam().expected));
}

INSTANTIATE_TEST_SUITE_P(Rfc3986, WebUrlNormalExample,
                         testing::Values(Example{"g:h", "g:h"},
                                         Example{"g", "http://a/b/c/g"},
                                         Example{"./g", "http://a/b/c/g"},
                                         Example{"g/", "http://a/b/c/g/"},
                                         Example{"/g", "http://a/g"},
                                         Example{"//g", "http://g/"},
                                         Example{"?y", "http://a/b/c/d;p?y"},
                                         Example{"g?y", "http://a/b/c/g?y"},
                                         Example{"#s", "http://a/b/c/d;p?q#s"},
                                         Example{"g#s", "http://a/b/c/g#s"},
                                         Example{"g?y#s", "http://a/b/c/g?y#s"},
                                         Example{";x", "http://a/b/c/;x"},
                                         Example{"g;x", "http://a/b/c/g;x"},
                                         Example{"g;x?y#s", "http://a/b/c/g;x?y#s"},
                                         Example{"", "http://a/b/c/d;p?q"},
                                         Example{".", "http://a/b/c/"},
                                         Example{"./", "http://a/b/c/"},
                                         Example{"..", "http://a/b/"},
                                         Example{"../", "http://a/b/"},
                                         Example{"../g", "http://a/b/g"},
                                         Example{"../..", "http://a/"},
                                         Example{"../../", "http://a/"},
                                         Example{"../../g", "http://a/g"}));

// RFC 3986 5.4.2; "http:g" is tested on its own below, where browsers and strict parsers differ.
class WebUrlAbnormalExample : public testing::TestWithParam<Example> {};

TEST_P(WebUrlAbnormalExample, ResolvesAsTheRfcSays)
{
    EXPECT_EQ(resolved(kRfcBase, QString::fromUtf8(GetParam().reference)), QString::fromUtf8(GetParam().expected));
}

INSTANTIATE_TEST_SUITE_P(Rfc3986, WebUrlAbnormalExample,
                         testing::Values(Example{"../../../g", "http://a/g"},
                                         Example{"../../../../g", "http://a/g"},
                                         Example{"/./g", "http://a/g"},
                                         Example{"/../g", "http://a/g"},
                                         Example{"g.", "http://a/b/c/g."},
                                         Example{".g", "http://a/b/c/.g"},
                                         Example{"g..", "http://a/b/c/g.."},
                                         Example{"..g", "http://a/b/c/..g"},
                                         Example{"./../g", "http://a/b/g"},
                                         Example{"./g/.", "http://a/b/c/g/"},
                                         Example{"g/./h", "http://a/b/c/g/h"},
                                         Example{"g/../h", "http://a/b/c/h"},
                                         Example{"g;x=1/./y", "http://a/b/c/g;x=1/y"},
                                         Example{"g;x=1/../y", "http://a/b/c/y"},
                                         Example{"g?y/./x", "http://a/b/c/g?y/./x"},
                                         Example{"g?y/../x", "http://a/b/c/g?y/../x"},
                                         Example{"g#s/./x", "http://a/b/c/g#s/./x"},
                                         Example{"g#s/../x", "http://a/b/c/g#s/../x"}));

TEST(WebUrlTest, SameSpecialSchemeWithoutSlashesIsRelativeAsInBrowsers)
{
    // A strict parser keeps "http:g"; browsers read it against an http base as "g".
    EXPECT_EQ(resolved(kRfcBase, QStringLiteral("http:g")), QStringLiteral("http://a/b/c/g"));
    EXPECT_EQ(resolved(kRfcBase, QStringLiteral("HTTP:g")), QStringLiteral("http://a/b/c/g"));
    EXPECT_EQ(resolved(kRfcBase, QStringLiteral("http:/g")), QStringLiteral("http://a/g"));
    EXPECT_EQ(resolved(kRfcBase, QStringLiteral("http:?y")), QStringLiteral("http://a/b/c/d;p?y"));
}

TEST(WebUrlTest, OtherSpecialSchemeWithoutSlashesNamesAHost)
{
    EXPECT_EQ(resolved(kRfcBase, QStringLiteral("https:example.com/x")), QStringLiteral("https://example.com/x"));
    EXPECT_EQ(resolved(kRfcBase, QStringLiteral("http:///example.com/x")), QStringLiteral("http://example.com/x"));
    EXPECT_EQ(resolved(kRfcBase, QStringLiteral("///example.com/x")), QStringLiteral("http://example.com/x"));
}

TEST(WebUrlTest, BackslashesInSpecialUrlsAreSlashes)
{
    EXPECT_EQ(resolved(kRfcBase, QStringLiteral("g\\h")), QStringLiteral("http://a/b/c/g/h"));
    EXPECT_EQ(resolved(kRfcBase, QStringLiteral("\\\\example.com\\x")), QStringLiteral("http://example.com/x"));
    // Not in the query, nor in a scheme that is not special.
    EXPECT_EQ(resolved(kRfcBase, QStringLiteral("g?a\\b")), QStringLiteral("http://a/b/c/g?a%5Cb"));
    EXPECT_EQ(resolved(kRfcBase, QStringLiteral("mailto:a\\b")), QStringLiteral("mailto:a%5Cb"));
}

TEST(WebUrlTest, CleanReferenceStripsBlanksAtTheEndsAndRemovesTabsAndNewlinesInside)
{
    EXPECT_EQ(WebUrl::cleanReference(QStringLiteral(" https://x/ ")), QStringLiteral("https://x/"));
    EXPECT_EQ(WebUrl::cleanReference(QStringLiteral("\t\n\f\r page.html \r\n")), QStringLiteral("page.html"));
    EXPECT_EQ(WebUrl::cleanReference(QStringLiteral("ht\ntp://ex\tam\rple.com/")), QStringLiteral("http://example.com/"));
    // A space or a form feed inside stays (it is encoded on resolution).
    EXPECT_EQ(WebUrl::cleanReference(QStringLiteral("a b\fc")), QStringLiteral("a b\fc"));
    EXPECT_EQ(WebUrl::cleanReference(QStringLiteral(" \t ")), QString());
    EXPECT_EQ(WebUrl::cleanReference(QStringLiteral("plain")), QStringLiteral("plain"));
}

TEST(WebUrlTest, ResolveCleansTheReferenceFirst)
{
    EXPECT_EQ(resolved(kRfcBase, QStringLiteral(" https://x/ ")), QStringLiteral("https://x/"));
    EXPECT_EQ(resolved(kRfcBase, QStringLiteral("ht\ntp://example.com/p\ta\rge")), QStringLiteral("http://example.com/page"));
    EXPECT_EQ(resolved(kRfcBase, QStringLiteral("  ../g\n")), QStringLiteral("http://a/b/g"));
    EXPECT_EQ(resolved(kRfcBase, QStringLiteral(" \n ")), QStringLiteral("http://a/b/c/d;p?q"));
}

TEST(WebUrlTest, ReferenceThatMakesNoUrlIsInvalid)
{
    EXPECT_FALSE(WebUrl::resolve(kRfcBase, QStringLiteral("http://[bad")).isValid());
    EXPECT_FALSE(WebUrl::resolve(kRfcBase, QStringLiteral("https:")).isValid());
    EXPECT_FALSE(WebUrl::resolve(QUrl(), QStringLiteral("g")).isValid());
}

TEST(WebUrlTest, RelativeReferenceAgainstAnOpaqueBaseMakesNoUrlButAFragmentDoes)
{
    const QUrl base(QStringLiteral("mailto:someone@example.com"));
    EXPECT_FALSE(WebUrl::resolve(base, QStringLiteral("g")).isValid());
    EXPECT_EQ(resolved(base, QStringLiteral("#top")), QStringLiteral("mailto:someone@example.com#top"));
}

TEST(WebUrlTest, NormalisationLowersSchemeAndHostAndDropsDefaultPorts)
{
    EXPECT_EQ(normal("HTTP://WWW.Example.COM:80/Path"), QStringLiteral("http://www.example.com/Path"));
    EXPECT_EQ(normal("https://Example.com:443/"), QStringLiteral("https://example.com/"));
    EXPECT_EQ(normal("http://example.com:443/"), QStringLiteral("http://example.com:443/"));
    EXPECT_EQ(normal("https://example.com:80/"), QStringLiteral("https://example.com:80/"));
    EXPECT_EQ(normal("http://example.com:8080"), QStringLiteral("http://example.com:8080/"));
}

TEST(WebUrlTest, NormalisationGivesAnEmptyHttpPathASlash)
{
    EXPECT_EQ(normal("http://example.com"), QStringLiteral("http://example.com/"));
    EXPECT_EQ(normal("https://example.com?q=1"), QStringLiteral("https://example.com/?q=1"));
    EXPECT_EQ(resolved(kRfcBase, QStringLiteral("HTTPS://Example.com")), QStringLiteral("https://example.com/"));
}

TEST(WebUrlTest, NormalisationRemovesDotSegments)
{
    EXPECT_EQ(normal("http://example.com/a/./b/../c"), QStringLiteral("http://example.com/a/c"));
    EXPECT_EQ(normal("http://example.com/../../x"), QStringLiteral("http://example.com/x"));
    // Escaped dots are dots once their escapes are decoded.
    EXPECT_EQ(resolved(kRfcBase, QStringLiteral("x/%2e%2E/y")), QStringLiteral("http://a/b/c/y"));
}

TEST(WebUrlTest, NormalisationDecodesUnreservedEscapesAndUppersTheHexOfOthers)
{
    EXPECT_EQ(normal("http://example.com/%7Euser/%41%2d%5f%2e"), QStringLiteral("http://example.com/~user/A-_."));
    EXPECT_EQ(normal("http://example.com/a%2fb%3a?x=%7e%2f#f%7e%3f"), QStringLiteral("http://example.com/a%2Fb%3A?x=~%2F#f~%3F"));
    EXPECT_EQ(resolved(kRfcBase, QStringLiteral("/%7euser/%c3%a9")), QStringLiteral("http://a/~user/%C3%A9"));
}

TEST(WebUrlTest, NonAsciiPathIsEncodedAsUtf8AndIdnHostsAsAce)
{
    EXPECT_EQ(resolved(kRfcBase, QStringLiteral("/caf\u00e9 cr\u00e8me")), QStringLiteral("http://a/caf%C3%A9%20cr%C3%A8me"));
    EXPECT_EQ(resolved(kRfcBase, QStringLiteral("http://b\u00fccher.example/\u00e4")),
              QStringLiteral("http://xn--bcher-kva.example/%C3%A4"));
    EXPECT_EQ(resolved(kRfcBase, QStringLiteral("http://B\u00dcCHER.example/")), QStringLiteral("http://xn--bcher-kva.example/"));
}

TEST(WebUrlTest, NormalisedIsStable)
{
    for (const char* url : {"HTTP://A:80/b/../%7e?q=%7e#%7e", "mailto:Joe@Example.com", "http://b\xc3\xbc" "cher.example/%e4"}) {
        const QUrl once = WebUrl::normalized(QUrl(QString::fromUtf8(url)));
        EXPECT_EQ(WebUrl::normalized(once), once) << url;
    }
}

TEST(WebUrlTest, IdentityIsOneStringForOneDocumentWithoutTheFragment)
{
    const QString identity = WebUrl::identity(QUrl(QStringLiteral("http://example.com/a/b?x=1&y=2")));
    EXPECT_EQ(identity, QStringLiteral("http://example.com/a/b?x=1&y=2"));
    for (const char* other : {"HTTP://Example.COM:80/a/b?x=1&y=2", "http://example.com/a/./c/../b?x=1&y=2#part",
                              "http://example.com/%61/b?x=1&y=2#", "http://example.com/a/b?x=%31&y=2"}) {
        EXPECT_EQ(WebUrl::identity(QUrl(QString::fromUtf8(other))), identity) << other;
    }
    // Every resolution of the same target gives the same identity.
    const QUrl page(QStringLiteral("http://example.com/a/index.html"));
    EXPECT_EQ(WebUrl::identity(WebUrl::resolve(page, QStringLiteral("b?x=1&y=2#top"))), identity);
    EXPECT_EQ(WebUrl::identity(WebUrl::resolve(page, QStringLiteral("../a/b?x=1&y=2"))), identity);
}

TEST(WebUrlTest, IdentityKeepsTheQueryAsWritten)
{
    EXPECT_NE(WebUrl::identity(QUrl(QStringLiteral("http://example.com/?b=2&a=1"))),
              WebUrl::identity(QUrl(QStringLiteral("http://example.com/?a=1&b=2"))));
    EXPECT_EQ(WebUrl::identity(QUrl(QStringLiteral("http://example.com/?b=2&a=1"))), QStringLiteral("http://example.com/?b=2&a=1"));
    EXPECT_NE(WebUrl::identity(QUrl(QStringLiteral("http://example.com/?"))),
              WebUrl::identity(QUrl(QStringLiteral("http://example.com/"))));
    EXPECT_TRUE(WebUrl::identity(QUrl()).isEmpty());
}

TEST(WebUrlTest, FragmentOfIsDecodedNullWithoutOneAndEmptyForABareHash)
{
    EXPECT_TRUE(WebUrl::fragmentOf(WebUrl::resolve(kRfcBase, QStringLiteral("g"))).isNull());
    const QString bare = WebUrl::fragmentOf(WebUrl::resolve(kRfcBase, QStringLiteral("g#")));
    EXPECT_FALSE(bare.isNull());
    EXPECT_TRUE(bare.isEmpty());
    EXPECT_EQ(WebUrl::fragmentOf(WebUrl::resolve(kRfcBase, QStringLiteral("#top"))), QStringLiteral("top"));
    EXPECT_EQ(WebUrl::fragmentOf(WebUrl::resolve(kRfcBase, QStringLiteral("#caf%C3%A9%20au%20lait"))),
              QStringLiteral("caf\u00e9 au lait"));
    EXPECT_EQ(WebUrl::fragmentOf(WebUrl::resolve(kRfcBase, QStringLiteral("#caf\u00e9"))), QStringLiteral("caf\u00e9"));
}

TEST(WebUrlTest, OtherSchemesResolveToThemselvesAndAreNotFetchable)
{
    const QUrl page(QStringLiteral("https://example.com/dir/page.html"));
    for (const char* reference : {"mailto:Joe@Example.com", "tel:+33-1-23-45-67-89", "javascript:void(0)",
                                  "data:text/plain,a/../b", "ftp://ftp.example.com/file.txt", "news:comp.lang.c"}) {
        const QUrl url = WebUrl::resolve(page, QString::fromUtf8(reference));
        EXPECT_TRUE(url.isValid()) << reference;
        EXPECT_EQ(url.toString(QUrl::FullyEncoded), QString::fromUtf8(reference)) << reference;
        EXPECT_FALSE(WebUrl::isFetchable(url)) << reference;
    }
    EXPECT_EQ(WebUrl::schemeOf(WebUrl::resolve(page, QStringLiteral("MAILTO:x@example.com"))), QStringLiteral("mailto"));
    EXPECT_EQ(WebUrl::schemeOf(WebUrl::resolve(page, QStringLiteral("tel:1"))), QStringLiteral("tel"));
    EXPECT_EQ(WebUrl::schemeOf(QUrl(QStringLiteral("relative/path"))), QString());
}

TEST(WebUrlTest, FetchableIsHttpOrHttpsWithAHost)
{
    EXPECT_TRUE(WebUrl::isFetchable(QUrl(QStringLiteral("http://example.com/"))));
    EXPECT_TRUE(WebUrl::isFetchable(QUrl(QStringLiteral("HTTPS://example.com/x"))));
    EXPECT_FALSE(WebUrl::isFetchable(QUrl(QStringLiteral("http:/no-host"))));
    EXPECT_FALSE(WebUrl::isFetchable(QUrl(QStringLiteral("file:///etc/passwd"))));
    EXPECT_FALSE(WebUrl::isFetchable(QUrl()));
}

TEST(WebUrlTest, SchemeRelativeReferenceTakesTheBaseScheme)
{
    EXPECT_EQ(resolved("https://example.com/a/b", "//cdn.example.net/x.js"), QStringLiteral("https://cdn.example.net/x.js"));
    EXPECT_EQ(resolved("http://example.com/a/b", "//cdn.example.net"), QStringLiteral("http://cdn.example.net/"));
}

TEST(WebUrlTest, SameOriginComparesSchemeHostAndPortWithDefaults)
{
    const QUrl a(QStringLiteral("http://example.com/a"));
    EXPECT_TRUE(WebUrl::isSameOrigin(a, QUrl(QStringLiteral("http://EXAMPLE.com:80/other?q#f"))));
    EXPECT_TRUE(WebUrl::isSameOrigin(QUrl(QStringLiteral("https://example.com:443/")), QUrl(QStringLiteral("https://example.com/x"))));
    EXPECT_FALSE(WebUrl::isSameOrigin(a, QUrl(QStringLiteral("https://example.com/a"))));
    EXPECT_FALSE(WebUrl::isSameOrigin(a, QUrl(QStringLiteral("http://www.example.com/a"))));
    EXPECT_FALSE(WebUrl::isSameOrigin(a, QUrl(QStringLiteral("http://example.com:8080/a"))));
    EXPECT_FALSE(WebUrl::isSameOrigin(QUrl(QStringLiteral("mailto:a@example.com")), QUrl(QStringLiteral("mailto:a@example.com"))));
    EXPECT_FALSE(WebUrl::isSameOrigin(QUrl(), QUrl()));
}

} // namespace
