// The interface, failures and limits.
#include <gtest/gtest.h>

#include "xpath/xpathstatic.h"
#include "xpath/xpathtesting.h"

#include <clocale>

namespace {

using namespace Torvix;

std::string repeated(const std::string& text, int times)
{
    std::string all;
    for (int i = 0; i < times; i++)
        all += text;
    return all;
}

TEST(XPathProcessor, GivesTheEntriesOfANodeSet)
{
    const ParsedDocument shop(shopText);
    xpath_processor processor(shop.root(), "item/@kind|//part");
    EXPECT_EQ(nullptr, processor.XNp_get_xpath_node(0));
    ASSERT_EQ(4u, processor.u_compute_xpath_node_set());
    ASSERT_NE(nullptr, processor.XAp_get_xpath_attribute(0));
    EXPECT_STREQ("tea", processor.XAp_get_xpath_attribute(0)->Value());
    EXPECT_EQ(nullptr, processor.XNp_get_xpath_node(0));
    EXPECT_EQ(nullptr, processor.XAp_get_xpath_attribute(2));
    EXPECT_STREQ("p1", processor.XNp_get_xpath_node(2)->ToElement()->Attribute("id"));

    const TiXmlBase* base = nullptr;
    bool isAttribute = false;
    processor.v_get_xpath_base(1, base, isAttribute);
    EXPECT_TRUE(isAttribute);
    EXPECT_EQ(processor.XAp_get_xpath_attribute(1), base);
    processor.v_get_xpath_base(3, base, isAttribute);
    EXPECT_FALSE(isAttribute);
    EXPECT_EQ(processor.XNp_get_xpath_node(3), base);
    processor.v_get_xpath_base(4, base, isAttribute);
    EXPECT_EQ(nullptr, base);
    EXPECT_EQ(nullptr, processor.XNp_get_xpath_node(4));
    EXPECT_EQ(nullptr, processor.XAp_get_xpath_attribute(4));
    // Asking again gives the same.
    EXPECT_EQ(4u, processor.u_compute_xpath_node_set());
    EXPECT_EQ("tea", processor.S_compute_xpath());
}

TEST(XPathProcessor, ConvertsItsResult)
{
    const ParsedDocument shop(shopText);
    struct
    {
        const char* expression;
        bool asBool;
        std::string asString;
        int asInt;
        double asDouble;
    } const cases[] = {
        {"true()", true, "true", 1, 1},
        {"false()", false, "false", 0, 0},
        {"'-7.5x'", true, "-7.5x", -7, -7.5},
        {"''", false, "", 0, 0},
        {"'99999999999'", true, "99999999999", 2147483647, 99999999999.0},
        {"42", true, "42", 42, 42},
        {"0", false, "0", 0, 0},
        {"2.75", false, "2.75", 2, 2.75},
        {"-2.75", false, "-2.75", -2, -2.75},
        {"0.0", true, "0", 0, 0},
        {"1000000000000.5", false, "1000000000000.5", 2147483647, 1000000000000.5},
        {"//item/@price", true, "2.5", 2, 2.5},
        {"//box", true, "box", 0, 0},
        {"//none", false, "", 0, 0},
        {"//", false, "", 0, 0},
    };
    for (const auto& c : cases) {
        xpath_processor processor(shop.root(), c.expression);
        EXPECT_EQ(c.asBool, processor.o_compute_xpath()) << c.expression;
        EXPECT_EQ(c.asString, processor.S_compute_xpath()) << c.expression;
        EXPECT_EQ(c.asInt, processor.i_compute_xpath()) << c.expression;
        EXPECT_EQ(c.asDouble, processor.d_compute_xpath()) << c.expression;
    }
}

TEST(XPathProcessor, FreeFunctionsGiveOneValueAndWhetherItIsOne)
{
    const ParsedDocument shop(shopText);
    const TiXmlElement* root = shop.root();
    EXPECT_EQ(4, i_xpath_int(root, "count(//item)"));
    EXPECT_EQ(0.25, d_xpath_double(root, "1 div 4"));
    EXPECT_TRUE(o_xpath_bool(root, "//item"));
    EXPECT_EQ("tea", S_xpath_string(root, "item/@kind"));
    EXPECT_EQ(root->FirstChildElement("box"), XNp_xpath_node(root, "box"));
    EXPECT_EQ(nullptr, XNp_xpath_node(root, "@id"));
    EXPECT_STREQ("r", XAp_xpath_attribute(root, "@id")->Value());
    EXPECT_EQ(nullptr, XAp_xpath_attribute(root, "box"));
    EXPECT_EQ(0, i_xpath_int(root, "1 div 0"));

    int i = 9;
    double d = 9;
    bool b = true;
    std::string s = "9";
    const TiXmlNode* node = root;
    const TiXmlAttribute* attribute = root->FirstAttribute();
    EXPECT_TRUE(o_xpath_int(root, "3", i) && i == 3);
    EXPECT_TRUE(o_xpath_double(root, "1.5", d) && d == 1.5);
    EXPECT_TRUE(o_xpath_bool(root, "1=2", b) && !b);
    EXPECT_TRUE(o_xpath_string(root, "'x'", s) && s == "x");
    EXPECT_TRUE(o_xpath_node(root, "//none", node) && !node);
    EXPECT_TRUE(o_xpath_attribute(root, "//none", attribute) && !attribute);
    b = true;
    EXPECT_FALSE(o_xpath_int(root, "(", i) || i);
    EXPECT_FALSE(o_xpath_double(root, "(", d) || d != 0);
    EXPECT_FALSE(o_xpath_bool(root, "(", b) || b);
    EXPECT_FALSE(o_xpath_string(root, "(", s) || !s.empty());
    EXPECT_FALSE(o_xpath_node(root, "(", node) || node);
    EXPECT_FALSE(o_xpath_attribute(root, "(", attribute) || attribute);
}

TEST(XPathProcessor, ReportsWhyThereIsNoResult)
{
    const ParsedDocument shop(shopText);
    const TiXmlNode* comment = shop.root()->FirstChild();
    const TiXmlElement detached("alone");
    EXPECT_EQ("execution", evaluate(nullptr, "1"));
    EXPECT_EQ("execution", evaluate(&detached, "1"));
    EXPECT_EQ("execution", describe(*std::make_unique<xpath_processor>(shop.root(), nullptr)));
    EXPECT_EQ("syntax", evaluate(shop.root(), ""));
    EXPECT_EQ("syntax", evaluate(shop.root(), "  "));
    EXPECT_FALSE(xpath_processor(shop.root(), "").o_is_valid());
    EXPECT_TRUE(xpath_processor(shop.root(), "x").o_is_valid());
    // A base that is no element is no context.
    for (const char* needy : {".", "item", "position()", "last()", "name()", "text ()"})
        EXPECT_EQ("execution", evaluate(comment, needy)) << needy;
    EXPECT_EQ("{i1 i4}", evaluate(comment, "/item"));
    EXPECT_EQ("3", evaluate(comment, "1 + 2"));
    EXPECT_EQ("{b1}", evaluate(comment, "/item[position()=1]/b"));
}

TEST(XPathProcessor, DoesNotDependOnTheLocale)
{
    const ParsedDocument shop(shopText);
    for (const char* name : {"de_DE.UTF-8", "fr_FR.UTF-8", "C.UTF-8"}) {
        if (!std::setlocale(LC_ALL, name))
            continue;
        EXPECT_EQ("1.5d", evaluate(shop.root(), "'1.5' * 1.0"));
        EXPECT_EQ("'2.5'", evaluate(shop.root(), "concat(2.5, '')"));
    }
    std::setlocale(LC_ALL, "C");
}

TEST(XPathLimits, ExpressionsOfAReasonableSizeAreEvaluated)
{
    const ParsedDocument shop(shopText);
    expectAll(shop.root(), {
                               {"0" + repeated("+1", 500), "500"},
                               {repeated("(", 100) + "1" + repeated(")", 100), "1"},
                               {"//item" + repeated("[@price", 50) + repeated("]", 50), "{}"},
                               {"/shop" + repeated("/.", 500), "{r}"},
                               {repeated("not(", 100) + "1=1" + repeated(")", 100), "true"},
                               {"'" + repeated("x", 100000) + "' = 'y'", "false"},
                           });
}

TEST(XPathLimits, LongAndDeepExpressionsOverflowTheDecoderAndNothingElse)
{
    const ParsedDocument shop(shopText);
    for (const std::string& expression :
         {"0" + repeated("+1", 20000), repeated("(", 20000), repeated("(", 5000) + "1" + repeated(")", 5000),
          repeated("-", 20000) + "1", repeated("not(", 9000), repeated("item[", 20000),
          "." + repeated("/..", 20000), "item" + repeated("[1]", 20000), repeated("-(", 3000000),
          "concat(1" + repeated(",1", 20000) + ")", "1" + repeated("=1", 20000)})
        EXPECT_EQ("overflow", evaluate(shop.root(), expression)) << expression.substr(0, 20);
    EXPECT_EQ("-1", evaluate(shop.root(), repeated("-", 9001) + "1"));
}

TEST(XPathLimits, WideAndDeepDocumentsAreWalkedWithoutRecursion)
{
    TiXmlDocument document;
    TiXmlNode* node = document.LinkEndChild(new TiXmlElement("r"));
    const TiXmlNode* root = node;
    constexpr int depth = 50000;
    for (int i = 0; i < depth; i++)
        node = node->LinkEndChild(new TiXmlElement("a"));
    EXPECT_EQ("50000", evaluate(root, "count(//a)"));
    EXPECT_EQ("49999", evaluate(root, "count(//a//a)"));
    EXPECT_EQ("50001", evaluate(root, "count(//a/ancestor-or-self::*)"));
    EXPECT_EQ("50000", evaluate(root, "count(//a/descendant-or-self::a)"));
    EXPECT_EQ("'a'", evaluate(root, "concat(//a, '')"));
    // The document's own destructor would recurse: take it apart from the bottom.
    while (node->Parent() != &document) {
        TiXmlNode* parent = node->Parent();
        parent->RemoveChild(node);
        node = parent;
    }
}

TEST(XPathNodeSet, SortsAndConcatenates)
{
    const ParsedDocument shop(shopText);
    xpath_processor processor(shop.root(), "//part/text()|item/node()|//part/@id|//part");
    node_set set = processor.er_compute_xpath().ns_get_node_set();
    EXPECT_EQ("lidcanGreentail", set.S_get_string_value());
    set.v_document_sort(&shop.document());
    std::string order;
    for (unsigned i = 0; i < set.u_get_nb_node_in_set(); i++)
        order += describeEntry(set, i) + " ";
    EXPECT_EQ("'Green' b1 'tail' p1 @id=p1 'lid' p2 @id=p2 'can' #second ", order);
    EXPECT_EQ("Greentaillidcan", set.S_get_string_value());

    const unsigned size = set.u_get_nb_node_in_set();
    set.v_add_node_in_set(set.XNp_get_node(1));
    set.v_add_attribute_in_set(set.XAp_get_attribute(4));
    EXPECT_EQ(size, set.u_get_nb_node_in_set());
    set.v_add_node_in_set(shop.root());
    EXPECT_EQ(size + 1, set.u_get_nb_node_in_set());
}

} // namespace
