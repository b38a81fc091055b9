#include "xpath/xpathaxes.h"

#include "xpath/xpatherrors.h"

namespace Torvix {

namespace {

// Marks of a node in one step.
constexpr unsigned char walked = 1;      // it was walked over, and taken if it matches
constexpr unsigned char beyond_done = 2; // so was all that the axis holds behind it

bool o_has_type(const TiXmlNode* XNp_node, TiXmlNode::NodeType type)
{
    return XNp_node->Type() == type;
}

} // namespace

bool node_test::o_matches_name(std::string_view S_tested) const
{
    if (lex_form == lex_ncname)
        return S_tested == S_name;
    return lex_form == lex_star || S_tested.substr(0, S_name.size()) == S_name;
}

bool node_test::o_matches(const TiXmlNode* XNp_node) const
{
    switch (lex_form) {
    case lex_node:
        return true;
    case lex_comment:
        return o_has_type(XNp_node, TiXmlNode::TINYXML_COMMENT);
    case lex_text:
        return o_has_type(XNp_node, TiXmlNode::TINYXML_TEXT);
    default:
        return o_is_element(XNp_node) && o_matches_name(XNp_node->ValueStr());
    }
}

bool node_test::o_matches(const TiXmlAttribute* XAp_attribute) const
{
    switch (lex_form) {
    case lex_node:
        return true;
    case lex_comment:
    case lex_text:
        return false;
    default:
        return o_matches_name(XAp_attribute->NameTStr());
    }
}

axis_walker::axis axis_walker::v_axis_of(lexico lex_axis)
{
    switch (lex_axis) {
    case lex_ancestor:
        return &axis_walker::v_ancestor;
    case lex_ancestor_or_self:
        return &axis_walker::v_ancestor_or_self;
    case lex_attribute:
        return &axis_walker::v_attribute;
    case lex_child:
        return &axis_walker::v_child;
    case lex_descendant:
        return &axis_walker::v_descendant;
    case lex_descendant_or_self:
        return &axis_walker::v_descendant_or_self;
    case lex_following:
        return &axis_walker::v_following;
    case lex_following_sibling:
        return &axis_walker::v_following_sibling;
    case lex_parent:
        return &axis_walker::v_parent;
    case lex_preceding:
        return &axis_walker::v_preceding;
    case lex_preceding_sibling:
        return &axis_walker::v_preceding_sibling;
    case lex_self:
        return &axis_walker::v_self;
    default:
        throw error_not_yet();
    }
}

axis_walker::axis_walker(lexico lex_axis, const node_test& nt_test, const TiXmlNode* XNp_top,
                         unsigned u_sources)
    : nt_wanted(nt_test)
    , XNp_root(XNp_top)
    , o_several(u_sources > 1)
    , v_axis(v_axis_of(lex_axis))
{
    if (nt_test.lex_form == lex_processing_instruction)
        throw error_not_yet();
}

/** False if all that the axis holds behind the node has been walked over. */
bool axis_walker::o_enter(const TiXmlNode* XNp_source)
{
    if (!o_several)
        return true;
    unsigned char& mark = marks[XNp_source];
    if (mark & beyond_done)
        return false;
    mark |= beyond_done;
    return true;
}

/** To be called for each node on the way; the walk goes on behind it only if the answer says so. */
axis_walker::visit axis_walker::v_visit(const TiXmlNode* XNp_node)
{
    if (!o_several)
        return {true, true};
    unsigned char& mark = marks[XNp_node];
    const visit before = {!(mark & walked), !(mark & beyond_done)};
    mark = walked | beyond_done;
    return before;
}

void axis_walker::v_take(const TiXmlNode* XNp_node)
{
    if (nt_wanted.o_matches(XNp_node))
        ns_found.v_append_node(XNp_node);
}

void axis_walker::v_ancestor(const TiXmlNode* XNp_node)
{
    if (XNp_node == XNp_root || !o_enter(XNp_node))
        return;
    for (const TiXmlNode* XNp_up = XNp_node->Parent(); XNp_up && XNp_up != XNp_root;
         XNp_up = XNp_up->Parent()) {
        const visit reached = v_visit(XNp_up);
        if (reached.o_is_new)
            v_take(XNp_up);
        if (!reached.o_go_on)
            return;
    }
}

void axis_walker::v_ancestor_or_self(const TiXmlNode* XNp_node)
{
    for (const TiXmlNode* XNp_up = XNp_node; XNp_up && XNp_up != XNp_root; XNp_up = XNp_up->Parent()) {
        const visit reached = v_visit(XNp_up);
        if (reached.o_is_new)
            v_take(XNp_up);
        if (!reached.o_go_on)
            return;
    }
}

void axis_walker::v_attribute(const TiXmlNode* XNp_node)
{
    const TiXmlElement* XEp_element = XNp_node->ToElement();
    const TiXmlAttribute* XAp_attribute = XEp_element ? XEp_element->FirstAttribute() : nullptr;
    for (; XAp_attribute; XAp_attribute = XAp_attribute->Next()) {
        if (nt_wanted.o_matches(XAp_attribute))
            ns_found.v_append_attribute(XAp_attribute);
    }
}

void axis_walker::v_child(const TiXmlNode* XNp_node)
{
    for (const TiXmlNode* XNp_child = XNp_node->FirstChild(); XNp_child; XNp_child = XNp_child->NextSibling())
        v_take(XNp_child);
}

template <class Take>
void axis_walker::v_walk_below(const TiXmlNode* XNp_top, Take v_take_node)
{
    const TiXmlNode* XNp_node = XNp_next_in_tree(XNp_top, XNp_top);
    while (XNp_node) {
        const visit reached = v_visit(XNp_node);
        if (reached.o_is_new)
            v_take_node(XNp_node);
        XNp_node = reached.o_go_on ? XNp_next_in_tree(XNp_node, XNp_top) : XNp_next_behind(XNp_node, XNp_top);
    }
}

void axis_walker::v_descendant(const TiXmlNode* XNp_node)
{
    if (o_enter(XNp_node))
        v_walk_below(XNp_node, [this](const TiXmlNode* XNp_found) { v_take(XNp_found); });
}

void axis_walker::v_descendant_or_self(const TiXmlNode* XNp_node)
{
    // The root is none of its own, but it may lie below another node.
    if (XNp_node == XNp_root) {
        v_descendant(XNp_node);
        return;
    }
    const visit reached = v_visit(XNp_node);
    if (reached.o_is_new)
        v_take(XNp_node);
    if (reached.o_go_on)
        v_walk_below(XNp_node, [this](const TiXmlNode* XNp_found) { v_take(XNp_found); });
}

void axis_walker::v_add_elements_from(const TiXmlNode* XNp_node)
{
    const visit reached = v_visit(XNp_node);
    if (reached.o_is_new)
        ns_found.v_append_node(XNp_node);
    if (!reached.o_go_on)
        return;
    v_walk_below(XNp_node, [this](const TiXmlNode* XNp_found) {
        if (o_is_element(XNp_found))
            ns_found.v_append_node(XNp_found);
    });
}

/** A node may come here as a sibling and as a child, hence the checked additions. */
void axis_walker::v_take_with_children(const TiXmlNode* XNp_node)
{
    if (nt_wanted.o_matches(XNp_node))
        ns_found.v_add_node_in_set(XNp_node);
    for (const TiXmlNode* XNp_child = XNp_node->FirstChild(); XNp_child;
         XNp_child = XNp_child->NextSibling()) {
        if (nt_wanted.o_matches(XNp_child))
            ns_found.v_add_node_in_set(XNp_child);
    }
}

/** Takes the siblings on one side of a node, from the nearest on. */
template <class Take>
void axis_walker::v_walk_siblings(const TiXmlNode* XNp_node, sibling_step XNp_next, Take v_take_node)
{
    for (const TiXmlNode* XNp_sibling = (XNp_node->*XNp_next)(); XNp_sibling;
         XNp_sibling = (XNp_sibling->*XNp_next)()) {
        const visit reached = v_visit(XNp_sibling);
        if (reached.o_is_new)
            v_take_node(XNp_sibling);
        if (!reached.o_go_on)
            return;
    }
}

/** One level of children only, but at each ancestor; both are intended. */
void axis_walker::v_following(const TiXmlNode* XNp_node)
{
    const TiXmlNode* XNp_level = XNp_node;
    while (XNp_level && o_enter(XNp_level)) {
        v_walk_siblings(XNp_level, &TiXmlNode::NextSibling,
                        [this](const TiXmlNode* XNp_found) { v_take_with_children(XNp_found); });
        XNp_level = XNp_level->Parent();
        if (XNp_level && !o_is_element(XNp_level))
            return;
    }
}

/** One level of children only, and unlike `following` not at the ancestors; both are intended. */
void axis_walker::v_preceding(const TiXmlNode* XNp_node)
{
    if (o_enter(XNp_node)) {
        v_walk_siblings(XNp_node, &TiXmlNode::PreviousSibling,
                        [this](const TiXmlNode* XNp_found) { v_take_with_children(XNp_found); });
    }
}

void axis_walker::v_following_sibling(const TiXmlNode* XNp_node)
{
    if (o_enter(XNp_node)) {
        v_walk_siblings(XNp_node, &TiXmlNode::NextSibling,
                        [this](const TiXmlNode* XNp_found) { v_take(XNp_found); });
    }
}

void axis_walker::v_preceding_sibling(const TiXmlNode* XNp_node)
{
    if (o_enter(XNp_node)) {
        v_walk_siblings(XNp_node, &TiXmlNode::PreviousSibling,
                        [this](const TiXmlNode* XNp_found) { v_take(XNp_found); });
    }
}

void axis_walker::v_parent(const TiXmlNode* XNp_node)
{
    const TiXmlNode* XNp_parent = XNp_node->Parent();
    if (XNp_parent && v_visit(XNp_parent).o_is_new)
        v_take(XNp_parent);
}

void axis_walker::v_self(const TiXmlNode* XNp_node)
{
    if (XNp_node != XNp_root)
        v_take(XNp_node);
}

} // namespace Torvix
