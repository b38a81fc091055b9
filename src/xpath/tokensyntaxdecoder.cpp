#include "xpath/tokensyntaxdecoder.h"

#include "xpath/xpatherrors.h"

namespace Torvix {

namespace {

/** Bounds the length of an expression as well as its depth; look-ahead counts too. */
constexpr unsigned u_max_recursion = 10000;

/** A level of the grammar with operators between operands of the next level. */
struct binary_level
{
    xpath_construct xc_level;
    xpath_construct xc_operand;
    lexico operators[4]; // the rest is lex_null
};

constexpr binary_level binary_levels[] = {
    {xpath_or_expr, xpath_and_expr, {lex_or}},
    {xpath_and_expr, xpath_equality_expr, {lex_and}},
    {xpath_equality_expr, xpath_relational_expr, {lex_equal, lex_not_equal}},
    {xpath_relational_expr, xpath_additive_expr, {lex_lt, lex_gt, lex_lt_equal, lex_gt_equal}},
    {xpath_additive_expr, xpath_multiplicative_expr, {lex_plus, lex_minus}},
    {xpath_multiplicative_expr, xpath_unary_expr, {lex_star, lex_div, lex_mod}},
    {xpath_union_expr, xpath_path_expr, {lex_orchar}},
};

const binary_level& level_of(xpath_construct xc_rule)
{
    for (const binary_level& level : binary_levels) {
        if (level.xc_level == xc_rule)
            return level;
    }
    throw syntax_error("no such level");
}

bool o_is_operator(const binary_level& level, lexico lex_token)
{
    for (lexico lex_operator : level.operators) {
        if (lex_operator == lex_token && lex_token != lex_null)
            return true;
    }
    return false;
}

} // namespace

void token_syntax_decoder::v_syntax_decode()
{
    u_nb_recursion = 0;
    if (!o_recognize(xpath_expr, true))
        throw syntax_error("main level");
}

bool token_syntax_decoder::o_accept(lexico lex_token)
{
    if (lex_peek() != lex_token)
        return false;
    v_forward();
    return true;
}

void token_syntax_decoder::v_record(bool o_final, xpath_construct xc_rule, unsigned u_sub,
                                    unsigned u_variable, std::string_view S_literal)
{
    if (o_final)
        v_action(xc_rule, u_sub, u_variable, S_literal);
}

bool token_syntax_decoder::o_recognize(xpath_construct xc_rule, bool o_final)
{
    if (++u_nb_recursion > u_max_recursion)
        throw syntax_overflow();
    switch (xc_rule) {
    case xpath_expr:
    case xpath_predicate_expr:
    case xpath_argument:
        return o_recognize(xpath_or_expr, o_final);
    case xpath_or_expr:
    case xpath_and_expr:
    case xpath_equality_expr:
    case xpath_relational_expr:
    case xpath_additive_expr:
    case xpath_multiplicative_expr:
    case xpath_union_expr:
        return o_recognize_binary(xc_rule, o_final);
    case xpath_unary_expr:
        return o_recognize_unary(o_final);
    case xpath_path_expr:
        return o_recognize_path(o_final);
    case xpath_filter_expr:
        return o_recognize_filter(o_final);
    case xpath_primary_expr:
        return o_recognize_primary(o_final);
    case xpath_function_call:
        return o_recognize_function_call(o_final);
    case xpath_variable_reference:
        return o_recognize_variable(o_final);
    case xpath_location_path:
        return o_recognize_location_path(o_final);
    case xpath_absolute_location_path:
        return o_recognize_absolute(o_final);
    case xpath_abbreviated_absolute_location_path:
        return o_recognize_abbreviated_absolute(o_final);
    case xpath_relative_location_path:
        return o_recognize_relative(o_final);
    case xpath_step:
        return o_recognize_step(o_final);
    case xpath_abbreviated_step:
        return o_recognize_abbreviated_step(o_final);
    case xpath_axis_specifier:
        return o_recognize_axis_specifier(o_final);
    case xpath_axis_name:
        if (!o_is_axis(lex_peek()))
            return false;
        v_forward();
        return true;
    case xpath_node_test:
        return o_recognize_node_test(o_final);
    case xpath_name_test:
        return o_recognize_name_test(o_final);
    case xpath_predicate:
        return o_recognize_predicate(o_final);
    case xpath_xml_q_name:
        return o_recognize_q_name(o_final);
    case xpath_xml_prefix:
    case xpath_xml_local_part:
        return o_accept(lex_ncname);
    }
    return false;
}

bool token_syntax_decoder::o_recognize_binary(xpath_construct xc_rule, bool o_final)
{
    const binary_level& level = level_of(xc_rule);
    if (!o_recognize(level.xc_operand, o_final))
        return false;
    while (o_is_operator(level, lex_peek())) {
        const lexico lex_operator = lex_peek();
        v_forward();
        if (!o_recognize(level.xc_operand, o_final))
            return false;
        v_record(o_final, xc_rule, lex_operator);
    }
    return true;
}

bool token_syntax_decoder::o_recognize_unary(bool o_final)
{
    if (!o_accept(lex_minus))
        return o_recognize(xpath_union_expr, o_final);
    if (!o_recognize(xpath_unary_expr, o_final))
        return false;
    v_record(o_final, xpath_unary_expr, lex_minus);
    return true;
}

bool token_syntax_decoder::o_recognize_path(bool o_final)
{
    if (!o_is_filter_ahead())
        return o_recognize(xpath_location_path, o_final);
    if (!o_recognize(xpath_filter_expr, o_final))
        return false;
    const lexico lex_separator = lex_peek();
    if (lex_separator != lex_slash && lex_separator != lex_2_slash)
        return true;
    v_forward();
    if (!o_recognize(xpath_relative_location_path, o_final))
        return false;
    v_record(o_final, xpath_path_expr, lex_separator);
    return true;
}

/** Whether a primary expression begins here; what else may begin is a location path. */
bool token_syntax_decoder::o_is_filter_ahead()
{
    switch (lex_peek()) {
    case lex_dollar:
    case lex_oparen:
    case lex_literal:
    case lex_number:
        return true;
    case lex_ncname: {
        const size_t u_start = u_get_position();
        const bool o_call = o_recognize(xpath_xml_q_name, false) && lex_peek() == lex_oparen;
        v_set_position(u_start);
        return o_call;
    }
    default:
        return false;
    }
}

bool token_syntax_decoder::o_recognize_filter(bool o_final)
{
    if (!o_recognize(xpath_primary_expr, o_final))
        return false;
    unsigned u_predicates = 0;
    for (; lex_peek() == lex_obrack; u_predicates++) {
        if (!o_recognize(xpath_predicate, o_final))
            return false;
    }
    if (u_predicates > 0)
        v_record(o_final, xpath_filter_expr, u_predicates);
    return true;
}

bool token_syntax_decoder::o_recognize_primary(bool o_final)
{
    const token& first = tok_peek();
    switch (first.lex_class) {
    case lex_dollar:
        return o_recognize(xpath_variable_reference, o_final);
    case lex_oparen:
        v_forward();
        return o_recognize(xpath_expr, o_final) && o_accept(lex_cparen);
    case lex_literal:
    case lex_number:
        v_forward();
        v_record(o_final, xpath_primary_expr, first.lex_class, 0, first.S_literal);
        return true;
    default:
        return o_recognize(xpath_function_call, o_final);
    }
}

bool token_syntax_decoder::o_recognize_function_call(bool o_final)
{
    const size_t u_start = u_get_position();
    if (!o_recognize(xpath_xml_q_name, o_final))
        return false;
    const std::string_view S_name = S_text_from(u_start);
    unsigned u_arguments = 0;
    if (!o_accept(lex_oparen))
        return false;
    if (!o_accept(lex_cparen)) {
        do {
            if (!o_recognize(xpath_argument, o_final))
                return false;
            u_arguments++;
        } while (o_accept(lex_comma));
        if (!o_accept(lex_cparen))
            return false;
    }
    v_record(o_final, xpath_function_call, 0, u_arguments, S_name);
    return true;
}

bool token_syntax_decoder::o_recognize_variable(bool o_final)
{
    if (!o_accept(lex_dollar))
        return false;
    const size_t u_start = u_get_position();
    if (!o_recognize(xpath_xml_q_name, o_final))
        return false;
    v_record(o_final, xpath_variable_reference, 0, 0, S_text_from(u_start));
    return true;
}

bool token_syntax_decoder::o_recognize_location_path(bool o_final)
{
    switch (lex_peek()) {
    case lex_slash:
        return o_recognize(xpath_absolute_location_path, o_final);
    case lex_2_slash:
        return o_recognize(xpath_abbreviated_absolute_location_path, o_final);
    default:
        return o_recognize(xpath_relative_location_path, o_final);
    }
}

bool token_syntax_decoder::o_recognize_absolute(bool o_final)
{
    if (!o_accept(lex_slash))
        return false;
    const bool o_with_relative = o_is_step_ahead();
    if (o_with_relative && !o_recognize(xpath_relative_location_path, o_final))
        return false;
    v_record(o_final, xpath_absolute_location_path, o_with_relative);
    return true;
}

bool token_syntax_decoder::o_recognize_abbreviated_absolute(bool o_final)
{
    if (!o_accept(lex_2_slash) || !o_recognize(xpath_relative_location_path, o_final))
        return false;
    v_record(o_final, xpath_abbreviated_absolute_location_path);
    return true;
}

/** Whether something begins here that can only be a step, well formed or not. */
bool token_syntax_decoder::o_is_step_ahead() const
{
    switch (lex_peek()) {
    case lex_ncname:
    case lex_star:
    case lex_at:
    case lex_dot:
    case lex_2_dot:
        return true;
    default:
        return o_is_axis(lex_peek()) || o_is_node_type(lex_peek());
    }
}

bool token_syntax_decoder::o_recognize_relative(bool o_final)
{
    const unsigned u_first = u_counter();
    unsigned u_steps = 0;
    for (;;) {
        if (!o_recognize(xpath_step, o_final))
            return false;
        u_steps++;
        if (o_accept(lex_2_slash)) {
            v_record(o_final, xpath_abbreviated_step, lex_2_slash, u_counter());
            u_steps++;
        } else if (!o_accept(lex_slash)) {
            break;
        }
    }
    v_record(o_final, xpath_relative_location_path, u_steps, u_first);
    return true;
}

bool token_syntax_decoder::o_recognize_step(bool o_final)
{
    if (lex_peek() == lex_dot || lex_peek() == lex_2_dot)
        return o_recognize(xpath_abbreviated_step, o_final);
    const unsigned u_first = u_counter();
    if (!o_recognize(xpath_axis_specifier, o_final) || !o_recognize(xpath_node_test, o_final))
        return false;
    unsigned u_predicates = 0;
    for (; lex_peek() == lex_obrack; u_predicates++) {
        if (!o_recognize(xpath_predicate, o_final))
            return false;
    }
    v_record(o_final, xpath_step, u_predicates, u_first);
    return true;
}

/** "." is self::node() and ".." is parent::node(). */
bool token_syntax_decoder::o_recognize_abbreviated_step(bool o_final)
{
    const unsigned u_first = u_counter();
    const lexico lex_axis = lex_peek() == lex_dot ? lex_self : lex_parent;
    v_forward();
    v_record(o_final, xpath_axis_specifier, lex_axis);
    v_record(o_final, xpath_node_test, lex_node);
    v_record(o_final, xpath_step, 0, u_first);
    return true;
}

bool token_syntax_decoder::o_recognize_axis_specifier(bool o_final)
{
    lexico lex_axis = lex_child;
    if (o_accept(lex_at)) {
        lex_axis = lex_attribute;
    } else if (o_is_axis(lex_peek())) {
        lex_axis = lex_peek();
        if (!o_recognize(xpath_axis_name, o_final) || !o_accept(lex_2_colon))
            return false;
    }
    v_record(o_final, xpath_axis_specifier, lex_axis);
    return true;
}

bool token_syntax_decoder::o_recognize_node_test(bool o_final)
{
    const lexico lex_type = lex_peek();
    if (!o_is_node_type(lex_type))
        return o_recognize(xpath_name_test, o_final);
    v_forward();
    if (!o_accept(lex_oparen))
        return false;
    if (lex_type == lex_processing_instruction)
        o_accept(lex_literal);
    if (!o_accept(lex_cparen))
        return false;
    v_record(o_final, xpath_node_test, lex_type);
    return true;
}

bool token_syntax_decoder::o_recognize_name_test(bool o_final)
{
    const size_t u_start = u_get_position();
    lexico lex_form = lex_ncname;
    if (o_accept(lex_star)) {
        lex_form = lex_star;
    } else if (lex_peek() == lex_ncname && o_is_adjacent(0) && lex_peek(1) == lex_colon && o_is_adjacent(1) &&
               lex_peek(2) == lex_star) {
        // The prefix and its colon stay as the text that a name has to begin with.
        lex_form = lex_colon;
        v_forward();
        v_forward();
    } else if (!o_recognize(xpath_xml_q_name, o_final)) {
        return false;
    }
    v_record(o_final, xpath_node_test, lex_form, 0, S_text_from(u_start));
    if (lex_form == lex_colon)
        v_forward();
    return true;
}

bool token_syntax_decoder::o_recognize_predicate(bool o_final)
{
    const unsigned u_first = u_counter();
    if (!o_accept(lex_obrack) || !o_recognize(xpath_predicate_expr, o_final) || !o_accept(lex_cbrack))
        return false;
    v_record(o_final, xpath_predicate, 0, u_first);
    return true;
}

bool token_syntax_decoder::o_recognize_q_name(bool o_final)
{
    const bool o_prefixed = lex_peek() == lex_ncname && o_is_adjacent(0) && lex_peek(1) == lex_colon &&
                            o_is_adjacent(1) && lex_peek(2) == lex_ncname;
    if (!o_prefixed)
        return o_recognize(xpath_xml_local_part, o_final);
    return o_recognize(xpath_xml_prefix, o_final) && o_accept(lex_colon) &&
           o_recognize(xpath_xml_local_part, o_final);
}

} // namespace Torvix
