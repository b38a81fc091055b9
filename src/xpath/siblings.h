#pragma once

#include <unordered_map>

#include <tinyxml.h>

namespace Torvix {

/** Places of elements among the child elements of their parents. The tree must not change meanwhile. */
class sibling_index
{
public:
    /**
     * The place of an element, from 1, among its parent's child elements, or only those of its own name.
     * Takes a time that does not grow with the number of siblings, but for the first one of a parent.
     */
    int i_xml_cardinality(const TiXmlElement* XEp_element, bool o_by_name);

    /** The number of child elements of an element's parent. */
    int i_family_size(const TiXmlElement* XEp_element);

private:
    struct place
    {
        int i_of_all;
        int i_of_name;
    };

    void v_count_family(const TiXmlNode* XNp_parent);

    // Filled for whole families at a time.
    std::unordered_map<const TiXmlElement*, place> places;
    std::unordered_map<const TiXmlNode*, int> sizes;
};

} // namespace Torvix
