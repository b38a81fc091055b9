#pragma once

#include "xpath/lexico.h"
#include "xpath/nodeset.h"

#include <string_view>
#include <unordered_map>

namespace Torvix {

/** What a step takes of its axis. */
struct node_test
{
    /** lex_star, lex_ncname, lex_colon (a prefix, with its colon in S_name), or a node type. */
    lexico lex_form;
    std::string_view S_name;

    bool o_is_name() const { return lex_form == lex_ncname; }
    bool o_matches(const TiXmlNode* XNp_node) const;
    bool o_matches(const TiXmlAttribute* XAp_attribute) const;

private:
    bool o_matches_name(std::string_view S_tested) const;
};

/**
 * Collects what one step adds for each node that it starts from. The axes of one step share what they
 * have walked over, so that a step takes a time linear in the size of the tree.
 */
class axis_walker
{
public:
    /** Throws error_not_yet for what is not offered. `u_sources` is how many nodes will be given. */
    axis_walker(lexico lex_axis, const node_test& nt_test, const TiXmlNode* XNp_root, unsigned u_sources);

    void v_add_from(const TiXmlNode* XNp_node) { (this->*v_axis)(XNp_node); }

    /** What "//" between two steps adds: the node and all elements below it. */
    void v_add_elements_from(const TiXmlNode* XNp_node);

    node_set ns_take() { return std::move(ns_found); }

private:
    using axis = void (axis_walker::*)(const TiXmlNode*);
    using sibling_step = const TiXmlNode* (TiXmlNode::*)() const;
    struct visit
    {
        bool o_is_new; ///< the node has not been walked over in this step
        bool o_go_on;  ///< what the axis holds behind the node has not been, either
    };

    static axis v_axis_of(lexico lex_axis);
    bool o_enter(const TiXmlNode* XNp_source);
    visit v_visit(const TiXmlNode* XNp_node);
    void v_take(const TiXmlNode* XNp_node);

    void v_ancestor(const TiXmlNode* XNp_node);
    void v_ancestor_or_self(const TiXmlNode* XNp_node);
    void v_attribute(const TiXmlNode* XNp_node);
    void v_child(const TiXmlNode* XNp_node);
    void v_descendant(const TiXmlNode* XNp_node);
    void v_descendant_or_self(const TiXmlNode* XNp_node);
    void v_following(const TiXmlNode* XNp_node);
    void v_following_sibling(const TiXmlNode* XNp_node);
    void v_parent(const TiXmlNode* XNp_node);
    void v_preceding(const TiXmlNode* XNp_node);
    void v_preceding_sibling(const TiXmlNode* XNp_node);
    void v_self(const TiXmlNode* XNp_node);

    template <class Take>
    void v_walk_below(const TiXmlNode* XNp_top, Take v_take_node);
    template <class Take>
    void v_walk_siblings(const TiXmlNode* XNp_node, sibling_step XNp_next, Take v_take_node);
    void v_take_with_children(const TiXmlNode* XNp_node);

    const node_test nt_wanted;
    const TiXmlNode* const XNp_root;
    const bool o_several;
    const axis v_axis;
    node_set ns_found;
    std::unordered_map<const TiXmlNode*, unsigned char> marks;
};

} // namespace Torvix
