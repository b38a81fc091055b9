// The executor: walks the actions backwards, operations before their operands.
#include "xpath/xpathprocessor.h"

#include "xpath/xpathaxes.h"
#include "xpath/xpatherrors.h"

namespace Torvix {

/**
 * Executes the construct at the position, which must be `xc_rule` unless that is xpath_expr, and leaves
 * the position before its first action. With `o_skip` it only does the latter.
 */
void xpath_processor::v_execute_one(xpath_construct xc_rule, bool o_skip)
{
    const int i_action = as_action_store.i_get_position();
    if (!as_action_store.o_has(i_action))
        throw execution_error(execution_error::broken_store);
    const action_item& ai_current = as_action_store.ai_get(i_action);
    if (xc_rule != xpath_expr && xc_rule != ai_current.xc_rule)
        throw execution_error(execution_error::broken_store);
    as_action_store.v_set_position(i_action - 1);

    switch (ai_current.xc_rule) {
    case xpath_or_expr:
    case xpath_and_expr:
    case xpath_equality_expr:
    case xpath_relational_expr:
    case xpath_additive_expr:
    case xpath_multiplicative_expr:
    case xpath_union_expr:
        v_execute_one(xpath_expr, o_skip);
        v_execute_one(xpath_expr, o_skip);
        if (!o_skip)
            v_execute_binary(ai_current);
        break;
    case xpath_unary_expr:
        v_execute_one(xpath_expr, o_skip);
        if (!o_skip)
            v_execute_minus();
        break;
    case xpath_primary_expr:
        if (!o_skip)
            v_execute_primary(ai_current);
        break;
    case xpath_function_call:
        for (unsigned u_argument = 0; u_argument < ai_current.u_variable; u_argument++)
            v_execute_one(xpath_expr, o_skip);
        if (!o_skip)
            v_execute_function(ai_current.S_literal, ai_current.u_variable);
        break;
    case xpath_absolute_location_path:
        if (ai_current.u_sub && o_skip)
            v_execute_one(xpath_relative_location_path, true);
        else if (!o_skip)
            v_execute_absolute_path(i_action, ai_current.u_sub, false);
        break;
    case xpath_abbreviated_absolute_location_path:
        if (o_skip)
            v_execute_one(xpath_relative_location_path, true);
        else
            v_execute_absolute_path(i_action, true, true);
        break;
    case xpath_relative_location_path:
        if (o_skip)
            as_action_store.v_set_position(static_cast<int>(ai_current.u_variable) - 1);
        else
            v_execute_relative_path(i_action, e_start_context);
        break;
    case xpath_predicate:
        // Only passed over here; o_check_predicate() evaluates what is in it, once for each element.
        as_action_store.v_set_position(static_cast<int>(ai_current.u_variable) - 1);
        break;
    case xpath_path_expr:
        v_execute_path_expr(ai_current, o_skip);
        break;
    case xpath_filter_expr:
        v_execute_filter(ai_current, o_skip);
        break;
    case xpath_variable_reference:
        if (!o_skip)
            throw execution_error(execution_error::variable);
        break;
    default:
        throw execution_error(execution_error::broken_store);
    }
}

void xpath_processor::v_execute_primary(const action_item& ai_value)
{
    std::string S_text(ai_value.S_literal);
    if (ai_value.u_sub == lex_literal)
        xs_stack.v_push(expression_result(std::move(S_text)));
    else if (S_text.find('.') != std::string::npos)
        xs_stack.v_push(expression_result(atof_locale_c(S_text)));
    else
        xs_stack.v_push(expression_result(i_read_decimal(S_text)));
}

void xpath_processor::v_execute_absolute_path(int i_action, bool o_with_relative, bool o_everywhere)
{
    // "/" alone pushes nothing, and so makes the whole evaluation fail. This is intended.
    if (o_with_relative)
        v_execute_relative_path(i_action - 1, o_everywhere ? e_start_everywhere : e_start_root);
}

/** Runs the steps of a path from the first to the last. */
void xpath_processor::v_execute_relative_path(int i_path, e_start e_state)
{
    const action_item& ai_path = as_action_store.ai_get(i_path);
    std::vector<int> steps(ai_path.u_sub);
    int i_step = i_path - 1;
    for (auto last = steps.rbegin(); last != steps.rend(); ++last) {
        *last = i_step;
        i_step = static_cast<int>(as_action_store.ai_get(i_step).u_variable) - 1;
    }
    for (int i_each : steps) {
        v_execute_step(i_each, e_state);
        e_state = e_start_stack;
    }
    as_action_store.v_set_position(i_step);
}

/** A path that goes on from the nodes of a filter expression. */
void xpath_processor::v_execute_path_expr(const action_item& ai_path, bool o_skip)
{
    const int i_path = as_action_store.i_get_position();
    v_execute_one(xpath_relative_location_path, true);
    v_execute_one(xpath_expr, o_skip);
    if (o_skip)
        return;
    const int i_behind = as_action_store.i_get_position();
    if (ai_path.u_sub == lex_2_slash) {
        const node_set ns_start_nodes = ns_pop();
        xs_stack.v_push(expression_result(ns_elements_from(ns_start_nodes), do_order));
    }
    v_execute_relative_path(i_path, e_start_stack);
    as_action_store.v_set_position(i_behind);
}

void xpath_processor::v_execute_filter(const action_item& ai_filter, bool o_skip)
{
    const int i_last = as_action_store.i_get_position();
    for (unsigned u_predicate = 0; u_predicate < ai_filter.u_sub; u_predicate++)
        v_execute_one(xpath_predicate, true);
    v_execute_one(xpath_expr, o_skip);
    if (o_skip)
        return;
    const int i_behind = as_action_store.i_get_position();
    node_set ns_nodes = ns_pop();
    v_apply_predicates(ns_nodes, i_last, ai_filter.u_sub, false);
    xs_stack.v_push(expression_result(std::move(ns_nodes), do_order));
    as_action_store.v_set_position(i_behind);
}

node_set xpath_processor::ns_pop()
{
    expression_result er_nodes = xs_stack.er_pop();
    if (er_nodes.e_get_type() != e_node_set)
        throw execution_error(execution_error::no_node_set);
    return er_nodes.ns_take_node_set();
}

/** The nodes that a step starts from. */
node_set xpath_processor::ns_start(e_start e_state)
{
    node_set ns_nodes;
    switch (e_state) {
    case e_start_root:
        ns_nodes.v_append_node(XNp_root);
        break;
    case e_start_everywhere:
        ns_nodes.v_copy_selected_node_recursive_root_only(XNp_root, XNp_base);
        break;
    case e_start_context:
        ns_nodes.v_append_node(XEp_need_context());
        break;
    case e_start_stack:
        return ns_pop();
    }
    return ns_nodes;
}

/** What "//" leads to from each node: itself and the elements below it. */
node_set xpath_processor::ns_elements_from(const node_set& ns_nodes) const
{
    axis_walker walker(lex_self, {lex_node, {}}, XNp_root, ns_nodes.u_get_nb_node_in_set());
    for (unsigned u_index = 0; u_index < ns_nodes.u_get_nb_node_in_set(); u_index++) {
        if (const TiXmlNode* XNp_node = ns_nodes.XNp_get_node(u_index))
            walker.v_add_elements_from(XNp_node);
    }
    return walker.ns_take();
}

void xpath_processor::v_execute_step(int i_step, e_start e_state)
{
    const action_item& ai_step = as_action_store.ai_get(i_step);
    const node_set ns_from = ns_start(e_state);
    if (ai_step.xc_rule == xpath_abbreviated_step) {
        xs_stack.v_push(expression_result(ns_elements_from(ns_from), do_order));
        return;
    }
    const int i_axis = static_cast<int>(ai_step.u_variable);
    const action_item& ai_test = as_action_store.ai_get(i_axis + 1);
    const node_test nt_test = {static_cast<lexico>(ai_test.u_sub), ai_test.S_literal};
    axis_walker walker(static_cast<lexico>(as_action_store.ai_get(i_axis).u_sub), nt_test, XNp_root,
                       ns_from.u_get_nb_node_in_set());
    for (unsigned u_index = 0; u_index < ns_from.u_get_nb_node_in_set(); u_index++) {
        // Intended: no step goes on from an attribute.
        if (const TiXmlNode* XNp_node = ns_from.XNp_get_node(u_index))
            walker.v_add_from(XNp_node);
    }
    node_set ns_found = walker.ns_take();
    v_apply_predicates(ns_found, i_step - 1, ai_step.u_sub, nt_test.o_is_name());
    xs_stack.v_push(expression_result(std::move(ns_found), do_order));
}

/** Applies predicates, of which the last one's action is at `i_last`, from the first to the last. */
void xpath_processor::v_apply_predicates(node_set& ns_nodes, int i_last, unsigned u_predicates,
                                         bool o_by_name)
{
    std::vector<int> predicates(u_predicates);
    for (auto last = predicates.rbegin(); last != predicates.rend(); ++last) {
        *last = i_last;
        i_last = static_cast<int>(as_action_store.ai_get(i_last).u_variable) - 1;
    }
    for (int i_predicate : predicates) {
        ns_nodes.v_filter([this, &ns_nodes, i_predicate, o_by_name](unsigned u_index) {
            const TiXmlNode* XNp_node = ns_nodes.XNp_get_node(u_index);
            const TiXmlElement* XEp_element = XNp_node ? XNp_node->ToElement() : nullptr;
            return XEp_element && o_check_predicate(XEp_element, i_predicate, o_by_name);
        });
    }
}

bool xpath_processor::o_check_predicate(const TiXmlElement* XEp_element, int i_predicate, bool o_by_name)
{
    const TiXmlElement* const XEp_outer = XEp_context;
    const bool o_outer_by_name = o_context_by_name;
    const unsigned u_size = xs_stack.u_get_size();
    XEp_context = XEp_element;
    o_context_by_name = o_by_name;
    as_action_store.v_set_position(i_predicate - 1);
    v_execute_one(xpath_expr, false);
    XEp_context = XEp_outer;
    o_context_by_name = o_outer_by_name;

    if (xs_stack.u_get_size() != u_size + 1)
        throw execution_error(execution_error::empty_stack);
    const expression_result er_value = xs_stack.er_pop();
    if (er_value.e_get_type() == e_int || er_value.e_get_type() == e_double)
        return er_value.i_get_int() == si_siblings.i_xml_cardinality(XEp_element, o_by_name);
    return er_value.o_get_bool();
}

} // namespace Torvix
