#include "html/HTMLNode.h"
#include "html/HTMLParser.h"

#include <libxml/tree.h>

#include <gtest/gtest.h>

#include <ostream>

namespace {

HTMLNodePtr bodyOf(const char* html)
{
    HTMLParserPtr parser = HTMLParser::initWithData(QByteArray(html), nullptr);
    return parser->body();
}

TEST(HTMLNodeTest, ContentsIsNullWhenTheFirstChildIsAnImage)
{
    HTMLNodePtr body = bodyOf("<a href=\"/x\"><img src=\"i.png\">Text after</a>");
    HTMLNodePtr anchor = body->findChildTag(QStringLiteral("a"));
    ASSERT_TRUE(anchor);
    EXPECT_TRUE(anchor->contents().isNull());
    EXPECT_EQ(anchor->allContents(), QStringLiteral("Text after"));
}

TEST(HTMLNodeTest, ContentsIsTheFirstChildTextOnly)
{
    HTMLNodePtr p = bodyOf("<p>Hello <b>bold</b> tail</p>")->findChildTag(QStringLiteral("p"));
    EXPECT_EQ(p->contents(), QStringLiteral("Hello "));
    EXPECT_EQ(p->allContents(), QStringLiteral("Hello bold tail"));
}

TEST(HTMLNodeTest, ContentsOfEmptyElementIsNull)
{
    HTMLNodePtr p = bodyOf("<p></p><p>x</p>")->findChildTag(QStringLiteral("p"));
    EXPECT_TRUE(p->contents().isNull());
    EXPECT_EQ(p->allContents(), QStringLiteral(""));
    EXPECT_FALSE(p->allContents().isNull());
}

TEST(HTMLNodeTest, MissingAttributeIsNull)
{
    HTMLNodePtr anchor = bodyOf("<a name=\"top\">x</a>")->findChildTag(QStringLiteral("a"));
    EXPECT_TRUE(anchor->getAttributeNamed(QStringLiteral("href")).isNull());
    EXPECT_EQ(anchor->getAttributeNamed(QStringLiteral("name")), QStringLiteral("top"));
}

TEST(HTMLNodeTest, EmptyAttributeIsEmptyAndValuelessAttributeIsNull)
{
    HTMLNodePtr body = bodyOf("<img id=\"a\" alt=\"\"><img id=\"b\" alt>");
    const QList<HTMLNodePtr> images = body->findChildTags(QStringLiteral("img"));
    ASSERT_EQ(images.size(), 2);
    const QString emptyAlt = images[0]->getAttributeNamed(QStringLiteral("alt"));
    EXPECT_TRUE(emptyAlt.isEmpty());
    EXPECT_FALSE(emptyAlt.isNull());
    EXPECT_TRUE(images[1]->getAttributeNamed(QStringLiteral("alt")).isNull());
}

TEST(HTMLNodeTest, AttributeNamesAreCaseSensitiveAfterParsing)
{
    // The parser lower-cases attribute names.
    HTMLNodePtr anchor = bodyOf("<a HREF=\"/x\">x</a>")->findChildTag(QStringLiteral("a"));
    EXPECT_EQ(anchor->getAttributeNamed(QStringLiteral("href")), QStringLiteral("/x"));
    EXPECT_TRUE(anchor->getAttributeNamed(QStringLiteral("HREF")).isNull());
}

TEST(HTMLNodeTest, AttributeEntitiesAreDecoded)
{
    HTMLNodePtr anchor = bodyOf("<a href=\"/p?a=1&amp;b=2\" title=\"caf&eacute;\">x</a>")->findChildTag(QStringLiteral("a"));
    EXPECT_EQ(anchor->getAttributeNamed(QStringLiteral("href")), QStringLiteral("/p?a=1&b=2"));
    EXPECT_EQ(anchor->getAttributeNamed(QStringLiteral("title")), QStringLiteral("caf\u00e9"));
}

TEST(HTMLNodeTest, FindChildTagsOnPageWithoutLinksIsEmpty)
{
    HTMLNodePtr body = bodyOf("<p>No links here</p>");
    EXPECT_TRUE(body->findChildTags(QStringLiteral("a")).isEmpty());
    EXPECT_FALSE(body->findChildTag(QStringLiteral("a")));
}

TEST(HTMLNodeTest, TagNamesAreLowerCasedAndComparedExactly)
{
    HTMLNodePtr body = bodyOf("<A HREF=\"/x\">x</A>");
    EXPECT_TRUE(body->findChildTag(QStringLiteral("a")));
    EXPECT_FALSE(body->findChildTag(QStringLiteral("A")));
}

TEST(HTMLNodeTest, SearchIsDepthFirstInDocumentOrder)
{
    HTMLNodePtr body = bodyOf("<div id=\"d1\"><p id=\"p1\"><span><b id=\"b1\"></b></span></p><b id=\"b2\"></b></div>"
                              "<b id=\"b3\"></b>");
    const QList<HTMLNodePtr> bolds = body->findChildTags(QStringLiteral("b"));
    ASSERT_EQ(bolds.size(), 3);
    EXPECT_EQ(bolds[0]->getAttributeNamed(QStringLiteral("id")), QStringLiteral("b1"));
    EXPECT_EQ(bolds[1]->getAttributeNamed(QStringLiteral("id")), QStringLiteral("b2"));
    EXPECT_EQ(bolds[2]->getAttributeNamed(QStringLiteral("id")), QStringLiteral("b3"));
    EXPECT_EQ(body->findChildTag(QStringLiteral("b"))->getAttributeNamed(QStringLiteral("id")), QStringLiteral("b1"));
}

TEST(HTMLNodeTest, SearchStartsBelowTheNode)
{
    HTMLNodePtr div = bodyOf("<div><p>x</p></div>")->findChildTag(QStringLiteral("div"));
    EXPECT_FALSE(div->findChildTag(QStringLiteral("div")));
    EXPECT_TRUE(div->findChildTag(QStringLiteral("p")));
}

TEST(HTMLNodeTest, FindByAttributeExactOrPartial)
{
    HTMLNodePtr body = bodyOf("<div class=\"menu main\" id=\"m\"><span class=\"item\">a</span>"
                              "<span class=\"item selected\">b</span><span class=\"Item\">c</span></div>");
    EXPECT_FALSE(body->findChildWithAttribute(QStringLiteral("class"), QStringLiteral("menu"), false));
    HTMLNodePtr menu = body->findChildWithAttribute(QStringLiteral("class"), QStringLiteral("menu"), true);
    ASSERT_TRUE(menu);
    EXPECT_EQ(menu->getAttributeNamed(QStringLiteral("id")), QStringLiteral("m"));

    EXPECT_EQ(body->findChildrenWithAttribute(QStringLiteral("class"), QStringLiteral("item"), false).size(), 1);
    // Partial matching is a case-sensitive substring search.
    const QList<HTMLNodePtr> partial =
        body->findChildrenWithAttribute(QStringLiteral("class"), QStringLiteral("item"), true);
    ASSERT_EQ(partial.size(), 2);
    EXPECT_EQ(partial[1]->contents(), QStringLiteral("b"));
    EXPECT_TRUE(body->findChildrenWithAttribute(QStringLiteral("rel"), QStringLiteral("x"), true).isEmpty());
}

TEST(HTMLNodeTest, FindByClassIsExact)
{
    HTMLNodePtr body = bodyOf("<p class=\"note\">1</p><p class=\"note big\">2</p><p class=\"note\">3</p>");
    ASSERT_TRUE(body->findChildOfClass(QStringLiteral("note")));
    EXPECT_EQ(body->findChildOfClass(QStringLiteral("note"))->contents(), QStringLiteral("1"));
    const QList<HTMLNodePtr> notes = body->findChildrenOfClass(QStringLiteral("note"));
    ASSERT_EQ(notes.size(), 2);
    EXPECT_EQ(notes[1]->contents(), QStringLiteral("3"));
    EXPECT_EQ(notes[0]->className(), QStringLiteral("note"));
    EXPECT_FALSE(body->findChildOfClass(QStringLiteral("big")));
}

TEST(HTMLNodeTest, OnlyTheFirstAttributeOfANameIsExamined)
{
    // The HTML parser drops repeated attributes, so build the element by hand.
    xmlDocPtr doc = xmlNewDoc(BAD_CAST "1.0");
    xmlNodePtr root = xmlNewNode(nullptr, BAD_CAST "div");
    xmlDocSetRootElement(doc, root);
    xmlNodePtr child = xmlNewChild(root, nullptr, BAD_CAST "span", nullptr);
    xmlNewProp(child, BAD_CAST "class", BAD_CAST "first");
    xmlNewProp(child, BAD_CAST "class", BAD_CAST "second");
    HTMLNodePtr handle = HTMLNode::initWithXMLNode(root);
    EXPECT_TRUE(handle->findChildOfClass(QStringLiteral("first")));
    EXPECT_FALSE(handle->findChildOfClass(QStringLiteral("second")));
    EXPECT_EQ(HTMLNode::initWithXMLNode(child)->className(), QStringLiteral("first"));
    xmlFreeDoc(doc);
}

struct NodeTypeCase {
    const char* name;
    int expected;
};

void PrintTo(const NodeTypeCase& c, std::ostream* os)
{
    *os << "\"" << c.name << "\"";
}

class NodeTypeTest : public ::testing::TestWithParam<NodeTypeCase> {};

TEST_P(NodeTypeTest, FromName)
{
    xmlNodePtr element = xmlNewNode(nullptr, BAD_CAST GetParam().name);
    EXPECT_EQ(static_cast<int>(HTMLNode::initWithXMLNode(element)->nodetype()), GetParam().expected)
        << GetParam().name;
    xmlFreeNode(element);
}

INSTANTIATE_TEST_SUITE_P(Names, NodeTypeTest,
                         ::testing::Values(NodeTypeCase{"a", 0}, NodeTypeCase{"text", 1}, NodeTypeCase{"div", 2},
                                           NodeTypeCase{"code", 3}, NodeTypeCase{"span", 4}, NodeTypeCase{"p", 5},
                                           NodeTypeCase{"li", 6}, NodeTypeCase{"ul", 7}, NodeTypeCase{"image", 8},
                                           NodeTypeCase{"ol", 9}, NodeTypeCase{"strong", 10},
                                           NodeTypeCase{"pre", 11}, NodeTypeCase{"blockquote", 12},
                                           NodeTypeCase{"img", 2}, NodeTypeCase{"A", 2}, NodeTypeCase{"", 2}));

TEST(HTMLNodeTest, NodeTypeOfParsedNodes)
{
    HTMLNodePtr p = bodyOf("<p>text<img src=x></p>")->findChildTag(QStringLiteral("p"));
    EXPECT_EQ(p->nodetype(), HTMLParagraphNode);
    const QList<HTMLNodePtr> children = p->children();
    ASSERT_EQ(children.size(), 2);
    EXPECT_EQ(children[0]->nodetype(), HTMLTextNode);
    EXPECT_EQ(children[1]->nodetype(), HTMLUnknownNode);
    EXPECT_EQ(children[1]->tagName(), QStringLiteral("img"));
}

TEST(HTMLNodeTest, Navigation)
{
    HTMLNodePtr ul = bodyOf("<ul><li>1</li><li>2</li><li>3</li></ul>")->findChildTag(QStringLiteral("ul"));
    HTMLNodePtr first = ul->firstChild();
    ASSERT_TRUE(first && first->node());
    EXPECT_EQ(first->contents(), QStringLiteral("1"));
    HTMLNodePtr second = first->nextSibling();
    EXPECT_EQ(second->contents(), QStringLiteral("2"));
    EXPECT_EQ(second->previousSibling()->contents(), QStringLiteral("1"));
    EXPECT_EQ(second->parent()->tagName(), QStringLiteral("ul"));
    EXPECT_EQ(ul->children().size(), 3);
}

TEST(HTMLNodeTest, NavigationPastTheEndGivesAHandleOnNothing)
{
    HTMLNodePtr li = bodyOf("<ul><li>only</li></ul>")->findChildTag(QStringLiteral("li"));
    HTMLNodePtr next = li->nextSibling();
    ASSERT_TRUE(next);
    EXPECT_EQ(next->node(), nullptr);
    EXPECT_TRUE(next->tagName().isNull());
    EXPECT_TRUE(next->contents().isNull());
    EXPECT_TRUE(next->allContents().isNull());
    EXPECT_TRUE(next->rawContents().isNull());
    EXPECT_TRUE(next->getAttributeNamed(QStringLiteral("id")).isNull());
    EXPECT_TRUE(next->className().isNull());
    EXPECT_EQ(next->nodetype(), HTMLUnknownNode);
    EXPECT_TRUE(next->children().isEmpty());
    EXPECT_FALSE(next->findChildTag(QStringLiteral("a")));
    EXPECT_TRUE(next->findChildTags(QStringLiteral("a")).isEmpty());
    EXPECT_FALSE(next->findChildOfClass(QStringLiteral("x")));
    ASSERT_TRUE(next->parent());
    EXPECT_EQ(next->parent()->node(), nullptr);
    EXPECT_EQ(next->firstChild()->node(), nullptr);
    EXPECT_EQ(next->nextSibling()->node(), nullptr);
    EXPECT_EQ(next->previousSibling()->node(), nullptr);
    EXPECT_EQ(li->previousSibling()->node(), nullptr);
    EXPECT_EQ(li->firstChild()->firstChild()->node(), nullptr);
}

TEST(HTMLNodeTest, RawContentsSerialisesTheNode)
{
    HTMLNodePtr p = bodyOf("<p class=\"c\">Caf\xc3\xa9 <b>bold</b></p>")->findChildTag(QStringLiteral("p"));
    EXPECT_EQ(p->rawContents(), QStringLiteral("<p class=\"c\">Caf\u00e9 <b>bold</b></p>"));
}

TEST(HTMLNodeTest, DescriptionRepeatsTheOpeningFormAtTheEnd)
{
    HTMLNodePtr p = bodyOf("<p>Hi<b>x</b></p>")->findChildTag(QStringLiteral("p"));
    EXPECT_EQ(p->description(), QStringLiteral("<p>Hi\n"
                                               "<text>(null)\n"
                                               "<text>\n"
                                               "<b>x\n"
                                               "<text>(null)\n"
                                               "<text>\n"
                                               "<b>\n"
                                               "<p>\n"));
}

TEST(HTMLNodeTest, AppendChildContentsWalksSiblingsAndDescendants)
{
    HTMLNodePtr div = bodyOf("<div><p>one <i>two</i></p><p>three</p></div>")->findChildTag(QStringLiteral("div"));
    QString text = QStringLiteral(">");
    div->appendChildContentsToString(text, div->node()->children);
    EXPECT_EQ(text, QStringLiteral(">one twothree"));
    QString fromSecond;
    div->appendChildContentsToString(fromSecond, div->node()->children->next);
    EXPECT_EQ(fromSecond, QStringLiteral("three"));
    div->appendChildContentsToString(fromSecond, nullptr);
    EXPECT_EQ(fromSecond, QStringLiteral("three"));
}

TEST(HTMLNodeTest, InvalidUtf8TextIsReadByteByByte)
{
    HTMLNodePtr p = bodyOf("<p>caf\xe9</p>")->findChildTag(QStringLiteral("p"));
    EXPECT_EQ(p->contents(), QStringLiteral("caf\u00c8"));
}

TEST(HTMLNodeTest, HandleOnNullPointer)
{
    HTMLNodePtr none = HTMLNode::initWithXMLNode(nullptr);
    EXPECT_TRUE(none->tagName().isNull());
    EXPECT_TRUE(none->contents().isNull());
    EXPECT_TRUE(none->allContents().isNull());
    EXPECT_EQ(none->nodetype(), HTMLUnknownNode);
    EXPECT_EQ(none->description(), QStringLiteral("<(null)>(null)\n<(null)>\n"));
    QString text;
    none->appendChildContentsToString(text, nullptr);
    EXPECT_TRUE(text.isEmpty());
}

} // namespace
