#pragma once

#include <cstddef>
#include <string>
#include <unordered_set>
#include <vector>

#include <tinyxml.h>

namespace Torvix {

/**
 * Nodes and attributes of one document, each at most once, in the order in which they were added. That
 * is the order of the steps of an expression, not the order of the document. The nodes belong to their
 * document, which has to outlive the set.
 */
class node_set
{
public:
    unsigned u_get_nb_node_in_set() const { return static_cast<unsigned>(entries.size()); }
    bool o_is_empty() const { return entries.empty(); }

    /** The entry of an index below u_get_nb_node_in_set(). */
    const TiXmlBase* XBp_get_base(unsigned u_index) const { return entries[u_index].XBp_base; }
    bool o_is_attribute(unsigned u_index) const { return entries[u_index].o_attribute; }
    /** Null if the entry is an attribute. */
    const TiXmlNode* XNp_get_node(unsigned u_index) const;
    /** Null if the entry is a node. */
    const TiXmlAttribute* XAp_get_attribute(unsigned u_index) const;

    /** The value of an attribute; of an element its tag name, of any other node its text. */
    const std::string& S_get_value(unsigned u_index) const;

    /** Adds an entry unless it is there. Takes the same time for a set of any size. */
    void v_add_base_in_set(const TiXmlBase* XBp_base, bool o_attribute);
    void v_add_node_in_set(const TiXmlNode* XNp_node) { v_add_base_in_set(XNp_node, false); }
    void v_add_attribute_in_set(const TiXmlAttribute* XAp_attribute)
    {
        v_add_base_in_set(XAp_attribute, true);
    }
    void v_add_set(const node_set& other);

    /** Adds an entry that the caller knows not to be there. */
    void v_append_node(const TiXmlNode* XNp_node) { v_append({XNp_node, false}); }
    void v_append_attribute(const TiXmlAttribute* XAp_attribute) { v_append({XAp_attribute, true}); }

    /**
     * Adds what a path after "//" begins with: the root, then the base and every element below it, each
     * followed by its attributes. The set must be empty.
     */
    void v_copy_selected_node_recursive_root_only(const TiXmlNode* XNp_root, const TiXmlNode* XNp_base);

    /** Removes the entries for which `keep(index)` is false. */
    template <class Keep>
    void v_filter(Keep keep)
    {
        size_t u_kept = 0;
        for (unsigned u_index = 0; u_index < entries.size(); u_index++) {
            if (keep(u_index))
                entries[u_kept++] = entries[u_index];
        }
        entries.resize(u_kept);
        members.clear();
    }

    /** Puts the entries into document order, attributes between their element and its children. */
    void v_document_sort(const TiXmlNode* XNp_root);

    /** The values of the text nodes in the set, one behind the other. */
    std::string S_get_string_value() const;

private:
    struct entry
    {
        const TiXmlBase* XBp_base;
        bool o_attribute;
    };

    void v_append(const entry& added);

    std::vector<entry> entries;
    // The bases of the entries. Empty until the first addition that has to look for a duplicate.
    std::unordered_set<const TiXmlBase*> members;
};

/** The next node in document order inside the tree below `XNp_top`; null behind the last. */
const TiXmlNode* XNp_next_in_tree(const TiXmlNode* XNp_node, const TiXmlNode* XNp_top);

/** The same, but passing over what lies below the node. */
const TiXmlNode* XNp_next_behind(const TiXmlNode* XNp_node, const TiXmlNode* XNp_top);

inline bool o_is_element(const TiXmlNode* XNp_node)
{
    return XNp_node->Type() == TiXmlNode::TINYXML_ELEMENT;
}

} // namespace Torvix
