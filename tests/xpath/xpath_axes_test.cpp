// The axes share what they have walked over. Held against their plain definitions, node by node, over
// random trees and random sets of nodes to start from.
#include "xpath/xpathaxes.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <vector>

namespace {

using namespace Torvix;
using Nodes = std::vector<const TiXmlNode*>;

constexpr TiXmlNode::NodeType elementType = TiXmlNode::TINYXML_ELEMENT;

Nodes children(const TiXmlNode* node)
{
    Nodes all;
    for (const TiXmlNode* child = node->FirstChild(); child; child = child->NextSibling())
        all.push_back(child);
    return all;
}

void append(Nodes& all, const Nodes& more)
{
    all.insert(all.end(), more.begin(), more.end());
}

/** The nodes below a node in document order. */
Nodes below(const TiXmlNode* node)
{
    Nodes all;
    for (const TiXmlNode* child : children(node)) {
        all.push_back(child);
        append(all, below(child));
    }
    return all;
}

Nodes ancestors(const TiXmlNode* node, const TiXmlNode* root)
{
    Nodes all;
    for (; node != root && node->Parent() && node->Parent() != root; node = node->Parent())
        all.push_back(node->Parent());
    return all;
}

Nodes siblings(const TiXmlNode* node, bool following)
{
    Nodes all;
    while ((node = following ? node->NextSibling() : node->PreviousSibling()))
        all.push_back(node);
    return all;
}

Nodes withChildren(const Nodes& nodes)
{
    Nodes all;
    for (const TiXmlNode* node : nodes) {
        all.push_back(node);
        append(all, children(node));
    }
    return all;
}

Nodes withSelf(const TiXmlNode* node, const TiXmlNode* root, const Nodes& rest)
{
    Nodes all;
    if (node != root)
        all.push_back(node);
    append(all, rest);
    return all;
}

/** What an axis holds for one node, in its order. */
Nodes axisOf(lexico axis, const TiXmlNode* node, const TiXmlNode* root)
{
    switch (axis) {
    case lex_ancestor:
        return ancestors(node, root);
    case lex_ancestor_or_self:
        return withSelf(node, root, ancestors(node, root));
    case lex_child:
        return children(node);
    case lex_descendant:
        return below(node);
    case lex_descendant_or_self:
        return withSelf(node, root, below(node));
    case lex_following: {
        Nodes all = withChildren(siblings(node, true));
        for (node = node->Parent(); node && node->Type() == elementType; node = node->Parent())
            append(all, withChildren(siblings(node, true)));
        return all;
    }
    case lex_following_sibling:
        return siblings(node, true);
    case lex_parent:
        return node->Parent() ? Nodes{node->Parent()} : Nodes{};
    case lex_preceding:
        return withChildren(siblings(node, false));
    case lex_preceding_sibling:
        return siblings(node, false);
    default:
        return withSelf(node, root, {});
    }
}

void grow(TiXmlNode* parent, int depth, std::mt19937& random)
{
    for (unsigned count = random() % 4; count > 0; count--) {
        switch (random() % 6) {
        case 0:
            parent->LinkEndChild(new TiXmlText("t"));
            break;
        case 1:
            parent->LinkEndChild(new TiXmlComment("c"));
            break;
        default: {
            TiXmlNode* child = parent->LinkEndChild(new TiXmlElement(random() % 2 ? "a" : "b"));
            if (depth > 0)
                grow(child, depth - 1, random);
        }
        }
    }
}

TEST(XPathAxes, GiveWhatTheirDefinitionsGiveInTheSameOrder)
{
    std::mt19937 random(20240607);
    const node_test tests[] = {
        {lex_star, "*"}, {lex_ncname, "a"}, {lex_node, {}}, {lex_text, {}}, {lex_comment, {}}};
    for (int round = 0; round < 300; round++) {
        TiXmlDocument document;
        TiXmlNode* base = document.LinkEndChild(new TiXmlElement("r"));
        grow(base, 4, random);
        Nodes everything = below(&document);
        everything.push_back(&document);
        // The root may also be an element, when the base is one further down.
        const TiXmlNode* root = random() % 4 ? &document : everything[random() % everything.size()];
        std::shuffle(everything.begin(), everything.end(), random);
        everything.resize(1 + random() % everything.size());

        for (lexico axis : {lex_ancestor, lex_ancestor_or_self, lex_child, lex_descendant,
                            lex_descendant_or_self, lex_following, lex_following_sibling, lex_parent,
                            lex_preceding, lex_preceding_sibling, lex_self}) {
            const node_test& test = tests[random() % 5];
            node_set expected;
            axis_walker walker(axis, test, root, static_cast<unsigned>(everything.size()));
            for (const TiXmlNode* source : everything) {
                walker.v_add_from(source);
                for (const TiXmlNode* node : axisOf(axis, source, root)) {
                    if (test.o_matches(node))
                        expected.v_add_node_in_set(node);
                }
            }
            const node_set found = walker.ns_take();
            ASSERT_EQ(expected.u_get_nb_node_in_set(), found.u_get_nb_node_in_set()) << axis << " " << round;
            for (unsigned i = 0; i < found.u_get_nb_node_in_set(); i++)
                ASSERT_EQ(expected.XBp_get_base(i), found.XBp_get_base(i)) << axis << " " << round;
        }
    }
}

} // namespace
