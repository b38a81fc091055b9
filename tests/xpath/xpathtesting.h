#pragma once

#include "xpath/xpathprocessor.h"

#include <string>
#include <vector>

/** Without white space between elements, which TinyXML drops and others keep. */
inline const char* const shopText =
    "<shop id='r'><!--first--><item id='i1' kind='tea' price='2.5'>Green<b id='b1'>bold</b>tail</item>"
    "<box id='x1'><item id='i2' kind='cup' price='10'/><item id='i3' kind='pot' price='7'>"
    "<part id='p1'>lid</part><part id='p2'>can</part></item><note id='o1'>a b</note></box>"
    "<item id='i4' kind='tea' price='4'><!--second--></item><text id='t1'>T</text></shop>";

/** A parsed document that must be well formed. */
class ParsedDocument
{
public:
    explicit ParsedDocument(const std::string& text)
    {
        m_document.Parse(text.c_str());
        EXPECT_FALSE(m_document.Error()) << m_document.ErrorDesc();
    }
    const TiXmlElement* root() const { return m_document.RootElement(); }
    const TiXmlDocument& document() const { return m_document; }

private:
    TiXmlDocument m_document;
};

inline std::string describeEntry(const Torvix::node_set& set, unsigned index)
{
    if (const TiXmlAttribute* attribute = set.XAp_get_attribute(index))
        return "@" + attribute->NameTStr() + "=" + attribute->ValueStr();
    const TiXmlNode* node = set.XNp_get_node(index);
    if (const TiXmlElement* element = node->ToElement()) {
        const char* id = element->Attribute("id");
        return id ? id : "<" + element->ValueStr() + ">";
    }
    if (node->ToDocument())
        return "document";
    return (node->ToText()      ? "'"
            : node->ToComment() ? "#"
                                : "?") +
           node->ValueStr() + (node->ToText() ? "'" : "");
}

/** A result with its kind: true, 'text', 12, 1.5d, {i1 i2 @kind=tea}, or the failure. */
inline std::string describe(Torvix::xpath_processor& processor)
{
    const Torvix::expression_result result = processor.er_compute_xpath();
    switch (result.e_get_type()) {
    case Torvix::e_bool:
    case Torvix::e_int:
        return result.S_get_string();
    case Torvix::e_string:
        return "'" + result.S_get_string() + "'";
    case Torvix::e_double:
        return result.S_get_string() + "d";
    case Torvix::e_node_set: {
        std::string text;
        for (unsigned i = 0; i < result.ns_get_node_set().u_get_nb_node_in_set(); i++)
            text += (i ? " " : "") + describeEntry(result.ns_get_node_set(), i);
        return "{" + text + "}";
    }
    case Torvix::e_invalid:
        break;
    }
    static const char* const errors[] = {"no error", "syntax", "overflow", "execution", "stack"};
    return errors[processor.e_get_error()];
}

inline std::string evaluate(const TiXmlNode* base, const std::string& expression)
{
    Torvix::xpath_processor processor(base, expression.c_str());
    return describe(processor);
}

struct ExpressionCase
{
    std::string expression;
    std::string expected;
};

inline void expectAll(const TiXmlNode* base, const std::vector<ExpressionCase>& cases)
{
    for (const ExpressionCase& c : cases)
        EXPECT_EQ(c.expected, evaluate(base, c.expression)) << c.expression;
}
