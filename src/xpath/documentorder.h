#pragma once

#include <unordered_map>

#include <tinyxml.h>

namespace Torvix {

/**
 * The order in which a walk through a tree meets its nodes: an element, its attributes, its children.
 * The walk is made once, when the first comparison asks for it; the tree must not change afterwards.
 */
class document_order
{
public:
    explicit document_order(const TiXmlNode* XNp_top) : XNp_root(XNp_top) {}

    /** Below 0 if the first is met first, above 0 if the second is, 0 if neither lies in the tree. */
    int i_compare_node_in_tree(const TiXmlBase* XBp_first, const TiXmlBase* XBp_second);

private:
    void v_walk();
    unsigned u_rank(const TiXmlBase* XBp_base) const;

    const TiXmlNode* XNp_root;
    std::unordered_map<const TiXmlBase*, unsigned> ranks;
};

} // namespace Torvix
