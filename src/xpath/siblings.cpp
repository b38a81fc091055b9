#include "xpath/siblings.h"

#include "xpath/nodeset.h"

#include <string_view>

namespace Torvix {

namespace {

/** So many siblings are counted anew each time, which costs less than remembering their places. */
constexpr int i_small_family = 16;

} // namespace

int sibling_index::i_xml_cardinality(const TiXmlElement* XEp_element, bool o_by_name)
{
    int i_place = 1;
    int i_seen = 0;
    const TiXmlNode* XNp_sibling = XEp_element->PreviousSibling();
    for (; XNp_sibling && i_seen < i_small_family; i_seen++) {
        i_place +=
            o_is_element(XNp_sibling) && (!o_by_name || XNp_sibling->ValueStr() == XEp_element->ValueStr());
        XNp_sibling = XNp_sibling->PreviousSibling();
    }
    if (!XNp_sibling)
        return i_place;

    auto found = places.find(XEp_element);
    if (found == places.end()) {
        v_count_family(XEp_element->Parent());
        found = places.find(XEp_element);
    }
    return o_by_name ? found->second.i_of_name : found->second.i_of_all;
}

int sibling_index::i_family_size(const TiXmlElement* XEp_element)
{
    const TiXmlNode* XNp_parent = XEp_element->Parent();
    const auto known = sizes.find(XNp_parent);
    if (known != sizes.end())
        return known->second;
    int i_size = 0;
    for (const TiXmlNode* XNp_child = XNp_parent->FirstChild(); XNp_child;
         XNp_child = XNp_child->NextSibling())
        i_size += o_is_element(XNp_child);
    sizes.emplace(XNp_parent, i_size);
    return i_size;
}

void sibling_index::v_count_family(const TiXmlNode* XNp_parent)
{
    std::unordered_map<std::string_view, int> names;
    int i_all = 0;
    for (const TiXmlNode* XNp_child = XNp_parent->FirstChild(); XNp_child;
         XNp_child = XNp_child->NextSibling()) {
        if (const TiXmlElement* XEp_child = XNp_child->ToElement())
            places[XEp_child] = {++i_all, ++names[XEp_child->ValueStr()]};
    }
}

} // namespace Torvix
