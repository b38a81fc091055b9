#include "xpath/xpathprocessor.h"

#include "xpath/xpatherrors.h"

namespace Torvix {

xpath_processor::xpath_processor(const TiXmlNode* base, const char* expression) : xpath_stream(expression)
{
    if (!base || !expression)
        return;
    XNp_base = base;
    XNp_root = base->Parent();
}

const expression_result& xpath_processor::er_evaluate()
{
    if (o_evaluated)
        return er_result;
    o_evaluated = true;
    try {
        v_run();
        if (xs_stack.u_get_size() == 1)
            er_result = xs_stack.er_pop();
        else
            e_error_state = e_error_stack;
    } catch (const syntax_error&) {
        e_error_state = e_error_syntax;
    } catch (const syntax_overflow&) {
        e_error_state = e_error_overflow;
    } catch (const execution_error&) {
        e_error_state = e_error_execution;
    }
    return er_result;
}

void xpath_processor::v_run()
{
    if (!XNp_root)
        throw execution_error(execution_error::no_parent);
    do_order = std::make_shared<document_order>(XNp_root);
    XEp_context = XNp_base->ToElement();
    v_lexico_decode();
    tr_tokens.v_tokenize_expression();
    tr_tokens.v_syntax_decode();
    as_action_store.v_set_position(as_action_store.i_get_size() - 1);
    v_execute_one(xpath_expr, false);
}

void xpath_processor::v_action(xpath_construct xc_rule, unsigned u_sub, unsigned u_variable,
                               std::string_view S_literal)
{
    as_action_store.v_add({xc_rule, u_sub, u_variable, S_literal});
}

int xpath_processor::i_get_action_counter()
{
    return as_action_store.i_get_size();
}

expression_result xpath_processor::er_compute_xpath()
{
    return er_evaluate();
}

std::string xpath_processor::S_compute_xpath()
{
    return er_evaluate().S_get_string();
}

int xpath_processor::i_compute_xpath()
{
    return er_evaluate().i_get_int();
}

double xpath_processor::d_compute_xpath()
{
    return er_evaluate().d_get_double();
}

bool xpath_processor::o_compute_xpath()
{
    return er_evaluate().o_get_bool();
}

unsigned xpath_processor::u_compute_xpath_node_set()
{
    return er_evaluate().ns_get_node_set().u_get_nb_node_in_set();
}

void xpath_processor::v_get_xpath_base(unsigned u_index, const TiXmlBase*& XBp_base,
                                       bool& o_is_attribute) const
{
    const node_set& ns_found = er_result.ns_get_node_set();
    const bool o_there = u_index < ns_found.u_get_nb_node_in_set();
    XBp_base = o_there ? ns_found.XBp_get_base(u_index) : nullptr;
    o_is_attribute = o_there && ns_found.o_is_attribute(u_index);
}

const TiXmlNode* xpath_processor::XNp_get_xpath_node(unsigned u_index) const
{
    const node_set& ns_found = er_result.ns_get_node_set();
    return u_index < ns_found.u_get_nb_node_in_set() ? ns_found.XNp_get_node(u_index) : nullptr;
}

const TiXmlAttribute* xpath_processor::XAp_get_xpath_attribute(unsigned u_index) const
{
    const node_set& ns_found = er_result.ns_get_node_set();
    return u_index < ns_found.u_get_nb_node_in_set() ? ns_found.XAp_get_attribute(u_index) : nullptr;
}

} // namespace Torvix
