#include "html/WebSaxHandler.h"

#include "html/WebCssUrls.h"
#include "html/WebRefresh.h"
#include "html/WebSrcset.h"
#include "html/WebUrl.h"

#include <algorithm>
#include <cstring>
#include <iterator>
#include <string_view>

namespace {

bool is(const char* name, const char* expected)
{
    return std::strcmp(name, expected) == 0;
}

// Elements that stand apart from the text around them, as a browser shows them: their
// boundaries separate words in an anchor's text ("<h3>Title</h3><p>Summary</p>").
bool separatesWords(const char* name)
{
    static constexpr std::string_view kSeparating[] = {
        "address", "article", "aside", "blockquote", "br", "dd", "details", "div", "dl", "dt", "figcaption",
        "figure", "footer", "h1", "h2", "h3", "h4", "h5", "h6", "header", "hr", "li", "main", "nav", "ol", "p",
        "pre", "section", "summary", "table", "td", "th", "tr", "ul"};
    return std::binary_search(std::begin(kSeparating), std::end(kSeparating), std::string_view(name));
}

// The value of an attribute ("" for one written without a value), or null when absent.
// libxml2 gives names in lower case and keeps the first of two equal ones, as browsers do.
const char* attributeOf(const char* const* attributes, const char* name)
{
    if (!attributes)
        return nullptr;
    for (qsizetype i = 0; attributes[i]; i += 2) {
        if (is(attributes[i], name))
            return attributes[i + 1] ? attributes[i + 1] : "";
    }
    return nullptr;
}

QString text(const char* utf8)
{
    if (!utf8)
        return QString();
    // Qt's decoding drops a byte order mark at the start of what it decodes; in an attribute
    // it is a character of the value (an id that is only U+FEFF is still an id).
    QString marks;
    while (std::strncmp(utf8, "\xEF\xBB\xBF", 3) == 0) {
        marks.append(QChar(0xFEFF));
        utf8 += 3;
    }
    return marks.isEmpty() ? QString::fromUtf8(utf8) : marks + QString::fromUtf8(utf8);
}

bool equalsCaseless(const char* value, const char* expected)
{
    if (!value)
        return false;
    for (; *value && *expected; ++value, ++expected) {
        char c = *value;
        if (c >= 'A' && c <= 'Z')
            c = static_cast<char>(c + ('a' - 'A'));
        if (c != *expected)
            return false;
    }
    return *value == *expected;
}

// Text that names a link other than by its content: alt or title, collapsed and cut.
QString label(const char* value)
{
    return value ? CollapsedText::of(text(value), WebSaxHandler::kTextLimit) : QString();
}

} // namespace

htmlSAXHandler WebSaxHandler::callbacks()
{
    htmlSAXHandler sax;
    std::memset(&sax, 0, sizeof sax);
    sax.startElement = onStartElement;
    sax.endElement = onEndElement;
    sax.characters = onCharacters;
    sax.ignorableWhitespace = onCharacters;
    sax.cdataBlock = onRawText;
    return sax;
}

void WebSaxHandler::onStartElement(void* context, const xmlChar* name, const xmlChar** attributes)
{
    static_cast<WebSaxHandler*>(context)->startElement(reinterpret_cast<const char*>(name),
                                                       reinterpret_cast<const char* const*>(attributes));
}

void WebSaxHandler::onEndElement(void* context, const xmlChar* name)
{
    static_cast<WebSaxHandler*>(context)->endElement(reinterpret_cast<const char*>(name));
}

void WebSaxHandler::onCharacters(void* context, const xmlChar* bytes, int length)
{
    static_cast<WebSaxHandler*>(context)->characters(reinterpret_cast<const char*>(bytes), length);
}

void WebSaxHandler::onRawText(void* context, const xmlChar* bytes, int length)
{
    static_cast<WebSaxHandler*>(context)->rawText(reinterpret_cast<const char*>(bytes), length);
}

const QString& WebSaxHandler::interned(const QString& text)
{
    auto found = interned_.constFind(text);
    if (found == interned_.constEnd())
        found = interned_.insert(text, text);
    return found.value();
}

const QString& WebSaxHandler::interned(const char* utf8)
{
    return interned(QString::fromUtf8(utf8));
}

void WebSaxHandler::addLink(const char* tag, const char* attribute, const QString& value, const QString& linkText,
                            const QString& rel, bool navigational)
{
    WebLinkFound link;
    link.raw = WebUrl::cleanReference(value);
    const bool selfLink = (is(tag, "a") || is(tag, "area")) && is(attribute, "href");
    if (link.raw.isEmpty() && !selfLink)
        return;
    if (link.raw.isNull())
        link.raw = QStringLiteral("");
    link.tag = interned(tag);
    link.attribute = interned(attribute);
    link.text = linkText;
    link.rel = rel.isEmpty() ? rel : interned(rel);
    link.nofollow = rel.split(u' ').contains(QStringLiteral("nofollow"));
    link.navigational = navigational;
    scan.links.append(std::move(link));
}

void WebSaxHandler::addStyleLinks(const char* tag, const char* attribute, const QString& css, const QString& linkText)
{
    if (!css.contains(u'(') && !css.contains(u'@'))
        return;
    for (const QString& url : WebCssUrls::urls(css))
        addLink(tag, attribute, url, linkText);
}

void WebSaxHandler::openAnchor(const char* tag, const char* const* attributes)
{
    closeAnchor();
    const char* href = attributeOf(attributes, "href");
    if (!href)
        return;
    const QString rel = CollapsedText::of(text(attributeOf(attributes, "rel"))).toLower();
    const qsizetype before = scan.links.size();
    addLink(tag, "href", text(href), QString(), rel, true);
    if (scan.links.size() > before)
        anchor_ = before;
}

void WebSaxHandler::closeAnchor()
{
    if (anchor_ < 0)
        return;
    QString anchor = anchorText_.text();
    if (anchor.isEmpty())
        anchor = anchorImageAlt_;
    scan.links[anchor_].text = anchor;
    anchor_ = -1;
    anchorText_.clear();
    anchorImageAlt_.clear();
}

void WebSaxHandler::readMeta(const char* const* attributes)
{
    const char* content = attributeOf(attributes, "content");
    if (!content)
        return;
    if (equalsCaseless(attributeOf(attributes, "name"), "robots")) {
        // Some pages separate the directives with blanks instead of commas.
        QString directives = text(content).toLower();
        for (QChar& c : directives) {
            if (c.isSpace())
                c = u',';
        }
        for (QStringView directive : QStringView(directives).tokenize(u',', Qt::SkipEmptyParts)) {
            if (directive == u"noindex" || directive == u"none")
                scan.noIndex = true;
            if (directive == u"nofollow" || directive == u"none")
                scan.noFollow = true;
        }
    }
    if (equalsCaseless(attributeOf(attributes, "http-equiv"), "refresh")) {
        const QString target = WebRefresh::target(text(content));
        if (!target.isNull())
            addLink("meta", "content", target, label(attributeOf(attributes, "title")), QString(), true);
    }
}

void WebSaxHandler::startElement(const char* name, const char* const* attributes)
{
    if (!name)
        return;
    if (attributes) {
        for (qsizetype i = 0; attributes[i]; i += 2) {
            if (is(attributes[i], "id") && attributes[i + 1] && *attributes[i + 1])
                scan.fragmentIds.insert(text(attributes[i + 1]));
        }
    }
    if (anchor_ >= 0 && separatesWords(name))
        anchorText_.append(u" ");
    const char* title = attributeOf(attributes, "title");
    auto source = [&](const char* attribute, bool navigational = false) {
        if (const char* value = attributeOf(attributes, attribute))
            addLink(name, attribute, text(value), label(title), QString(), navigational);
    };
    auto srcset = [&](const QString& linkText) {
        if (const char* value = attributeOf(attributes, "srcset")) {
            for (const QString& url : WebSrcset::urls(text(value)))
                addLink(name, "srcset", url, linkText);
        }
    };

    switch (name[0]) {
    case 'a':
        if (is(name, "a")) {
            const char* anchorName = attributeOf(attributes, "name");
            if (anchorName && *anchorName)
                scan.fragmentIds.insert(text(anchorName));
            openAnchor(name, attributes);
        } else if (is(name, "area")) {
            if (const char* href = attributeOf(attributes, "href")) {
                const QString rel = CollapsedText::of(text(attributeOf(attributes, "rel"))).toLower();
                addLink(name, "href", text(href), label(attributeOf(attributes, "alt")), rel, true);
            }
        } else if (is(name, "audio")) {
            source("src");
        }
        break;
    case 'b':
        if (is(name, "base") && baseHref.isNull()) {
            if (const char* href = attributeOf(attributes, "href")) {
                const QString value = text(href);
                baseHref = value.isNull() ? QStringLiteral("") : value;
            }
        }
        break;
    case 'e':
        if (is(name, "embed"))
            source("src");
        break;
    case 'f':
        if (is(name, "frame"))
            source("src", true);
        break;
    case 'i':
        if (is(name, "img")) {
            const QString alt = label(attributeOf(attributes, "alt"));
            if (const char* value = attributeOf(attributes, "src"))
                addLink(name, "src", text(value), alt);
            srcset(alt);
            if (anchor_ >= 0 && anchorImageAlt_.isEmpty())
                anchorImageAlt_ = alt;
        } else if (is(name, "iframe")) {
            source("src", true);
        } else if (is(name, "input") && equalsCaseless(attributeOf(attributes, "type"), "image")) {
            source("src");
        }
        break;
    case 'l':
        if (is(name, "link")) {
            const char* href = attributeOf(attributes, "href");
            if (!href)
                break;
            const QString rel = CollapsedText::of(text(attributeOf(attributes, "rel"))).toLower();
            if (rel.split(u' ').contains(QStringLiteral("canonical"))) {
                const QString cleaned = WebUrl::cleanReference(text(href));
                if (!cleaned.isEmpty())
                    canonicalHref = cleaned;
            } else {
                addLink(name, "href", text(href), label(title), rel);
            }
        }
        break;
    case 'm':
        if (is(name, "meta"))
            readMeta(attributes);
        break;
    case 'o':
        if (is(name, "object"))
            source("data");
        break;
    case 's':
        if (is(name, "script")) {
            source("src");
        } else if (is(name, "source")) {
            source("src");
            srcset(label(title));
        } else if (is(name, "style")) {
            inStyle_ = true;
            style_.clear();
        } else if (is(name, "svg")) {
            ++svgDepth_;
        }
        break;
    case 't':
        if (is(name, "track")) {
            source("src");
        } else if (is(name, "title") && !titleSeen_ && !inTitle_ && svgDepth_ == 0) {
            inTitle_ = true;
        }
        break;
    case 'v':
        if (is(name, "video")) {
            source("src");
            source("poster");
        }
        break;
    default:
        break;
    }

    if (const char* style = attributeOf(attributes, "style"))
        addStyleLinks(name, "style", text(style), label(title));
}

void WebSaxHandler::endElement(const char* name)
{
    if (!name)
        return;
    if (anchor_ >= 0 && separatesWords(name))
        anchorText_.append(u" ");
    if (is(name, "a")) {
        closeAnchor();
    } else if (is(name, "title")) {
        if (inTitle_) {
            inTitle_ = false;
            titleSeen_ = true;
            scan.title = title_.text();
        }
    } else if (is(name, "style")) {
        if (inStyle_) {
            inStyle_ = false;
            addStyleLinks("style", "", style_, QString());
            style_.clear();
        }
    } else if (is(name, "svg")) {
        if (svgDepth_ > 0)
            --svgDepth_;
    }
}

void WebSaxHandler::characters(const char* bytes, int length)
{
    const bool forAnchor = anchor_ >= 0 && !anchorText_.isFull();
    if (!forAnchor && !inTitle_)
        return;
    const QString piece = QString::fromUtf8(bytes, length);
    if (forAnchor)
        anchorText_.append(piece);
    if (inTitle_)
        title_.append(piece);
}

void WebSaxHandler::rawText(const char* bytes, int length)
{
    if (inStyle_)
        style_.append(QString::fromUtf8(bytes, length));
}

void WebSaxHandler::finish()
{
    closeAnchor();
    if (inTitle_) {
        inTitle_ = false;
        titleSeen_ = true;
        scan.title = title_.text();
    }
    if (inStyle_) {
        inStyle_ = false;
        addStyleLinks("style", "", style_, QString());
    }
}
