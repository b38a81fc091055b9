#include "xpath/nodeset.h"

#include "xpath/documentorder.h"

#include <algorithm>

namespace Torvix {

const TiXmlNode* node_set::XNp_get_node(unsigned u_index) const
{
    const entry& wanted = entries[u_index];
    return wanted.o_attribute ? nullptr : static_cast<const TiXmlNode*>(wanted.XBp_base);
}

const TiXmlAttribute* node_set::XAp_get_attribute(unsigned u_index) const
{
    const entry& wanted = entries[u_index];
    return wanted.o_attribute ? static_cast<const TiXmlAttribute*>(wanted.XBp_base) : nullptr;
}

const std::string& node_set::S_get_value(unsigned u_index) const
{
    const entry& wanted = entries[u_index];
    return wanted.o_attribute ? static_cast<const TiXmlAttribute*>(wanted.XBp_base)->ValueStr()
                              : static_cast<const TiXmlNode*>(wanted.XBp_base)->ValueStr();
}

void node_set::v_append(const entry& added)
{
    if (!members.empty())
        members.insert(added.XBp_base);
    entries.push_back(added);
}

void node_set::v_add_base_in_set(const TiXmlBase* XBp_base, bool o_attribute)
{
    if (members.empty()) {
        for (const entry& present : entries)
            members.insert(present.XBp_base);
    }
    if (members.insert(XBp_base).second)
        entries.push_back({XBp_base, o_attribute});
}

void node_set::v_add_set(const node_set& other)
{
    for (const entry& added : other.entries)
        v_add_base_in_set(added.XBp_base, added.o_attribute);
}

void node_set::v_copy_selected_node_recursive_root_only(const TiXmlNode* XNp_root, const TiXmlNode* XNp_base)
{
    v_append_node(XNp_root);
    for (const TiXmlNode* XNp_node = XNp_base; XNp_node; XNp_node = XNp_next_in_tree(XNp_node, XNp_base)) {
        const TiXmlElement* XEp_element = XNp_node->ToElement();
        if (!XEp_element)
            continue;
        v_append_node(XEp_element);
        const TiXmlAttribute* XAp_attribute = XEp_element->FirstAttribute();
        for (; XAp_attribute; XAp_attribute = XAp_attribute->Next())
            v_append_attribute(XAp_attribute);
    }
}

void node_set::v_document_sort(const TiXmlNode* XNp_root)
{
    document_order order(XNp_root);
    std::stable_sort(entries.begin(), entries.end(), [&order](const entry& first, const entry& second) {
        return order.i_compare_node_in_tree(first.XBp_base, second.XBp_base) < 0;
    });
}

std::string node_set::S_get_string_value() const
{
    std::string S_value;
    for (unsigned u_index = 0; u_index < entries.size(); u_index++) {
        const TiXmlNode* XNp_node = XNp_get_node(u_index);
        if (XNp_node && XNp_node->ToText())
            S_value += XNp_node->ValueStr();
    }
    return S_value;
}

const TiXmlNode* XNp_next_behind(const TiXmlNode* XNp_node, const TiXmlNode* XNp_top)
{
    while (XNp_node != XNp_top) {
        if (const TiXmlNode* XNp_sibling = XNp_node->NextSibling())
            return XNp_sibling;
        XNp_node = XNp_node->Parent();
    }
    return nullptr;
}

const TiXmlNode* XNp_next_in_tree(const TiXmlNode* XNp_node, const TiXmlNode* XNp_top)
{
    const TiXmlNode* XNp_child = XNp_node->FirstChild();
    return XNp_child ? XNp_child : XNp_next_behind(XNp_node, XNp_top);
}

} // namespace Torvix
