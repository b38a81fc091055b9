#include "xpath/documentorder.h"

#include "xpath/nodeset.h"

#include <limits>

namespace Torvix {

void document_order::v_walk()
{
    unsigned u_next = 0;
    for (const TiXmlNode* XNp_node = XNp_root; XNp_node; XNp_node = XNp_next_in_tree(XNp_node, XNp_root)) {
        ranks.emplace(XNp_node, u_next++);
        const TiXmlElement* XEp_element = XNp_node->ToElement();
        const TiXmlAttribute* XAp_attribute = XEp_element ? XEp_element->FirstAttribute() : nullptr;
        for (; XAp_attribute; XAp_attribute = XAp_attribute->Next())
            ranks.emplace(XAp_attribute, u_next++);
    }
}

unsigned document_order::u_rank(const TiXmlBase* XBp_base) const
{
    const auto found = ranks.find(XBp_base);
    return found == ranks.end() ? std::numeric_limits<unsigned>::max() : found->second;
}

int document_order::i_compare_node_in_tree(const TiXmlBase* XBp_first, const TiXmlBase* XBp_second)
{
    if (ranks.empty() && XNp_root)
        v_walk();
    const unsigned u_first = u_rank(XBp_first);
    const unsigned u_second = u_rank(XBp_second);
    return u_first < u_second ? -1 : u_first > u_second;
}

} // namespace Torvix
