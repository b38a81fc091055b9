// The operators.
#include "xpath/xpathprocessor.h"

#include "xpath/xpatherrors.h"

#include <cmath>

namespace Torvix {

namespace {

constexpr double d_smallest_divisor = 1e-6;

/** Integer arithmetic stays in 32 bits: what does not fit wraps around. */
int i_wrap(long long ll_value)
{
    return static_cast<int>(static_cast<unsigned>(ll_value));
}

bool o_is_number(const expression_result& er_value)
{
    return er_value.e_get_type() == e_int || er_value.e_get_type() == e_double;
}

template <class Number>
bool o_compare(Number left, Number right, lexico lex_operator)
{
    switch (lex_operator) {
    case lex_lt:
        return left < right;
    case lex_gt:
        return left > right;
    case lex_lt_equal:
        return left <= right;
    default:
        return left >= right;
    }
}

/** Whether some node of the set equals a value that is no node set. */
bool o_some_node_equals(const node_set& ns_nodes, const expression_result& er_value)
{
    const bool o_as_integer = o_is_number(er_value);
    const std::string S_value = o_as_integer ? std::string() : er_value.S_get_string();
    const int i_value = o_as_integer ? er_value.i_get_int() : 0;
    for (unsigned u_index = 0; u_index < ns_nodes.u_get_nb_node_in_set(); u_index++) {
        const std::string& S_node = ns_nodes.S_get_value(u_index);
        if (o_as_integer ? i_read_decimal(S_node) == i_value : S_node == S_value)
            return true;
    }
    return false;
}

bool o_equal(const expression_result& er_left, const expression_result& er_right)
{
    const bool o_left_set = er_left.e_get_type() == e_node_set;
    const bool o_right_set = er_right.e_get_type() == e_node_set;
    if (o_left_set && o_right_set)
        throw error_not_yet();
    if (er_left.e_get_type() == e_bool || er_right.e_get_type() == e_bool)
        return er_left.o_get_bool() == er_right.o_get_bool();
    if (o_left_set)
        return o_some_node_equals(er_left.ns_get_node_set(), er_right);
    if (o_right_set)
        return o_some_node_equals(er_right.ns_get_node_set(), er_left);
    if (o_is_number(er_left) || o_is_number(er_right))
        return er_left.d_get_double() == er_right.d_get_double();
    return er_left.S_get_string() == er_right.S_get_string();
}

bool o_related(const expression_result& er_left, const expression_result& er_right, lexico lex_operator)
{
    if (er_left.e_get_type() == e_double || er_right.e_get_type() == e_double)
        return o_compare(er_left.d_get_double(), er_right.d_get_double(), lex_operator);
    return o_compare(er_left.i_get_int(), er_right.i_get_int(), lex_operator);
}

double d_arithmetic(double d_left, double d_right, lexico lex_operator)
{
    switch (lex_operator) {
    case lex_plus:
        return d_left + d_right;
    case lex_minus:
        return d_left - d_right;
    default:
        return d_left * d_right;
    }
}

int i_arithmetic(long long ll_left, long long ll_right, lexico lex_operator)
{
    switch (lex_operator) {
    case lex_plus:
        return i_wrap(ll_left + ll_right);
    case lex_minus:
        return i_wrap(ll_left - ll_right);
    default:
        return i_wrap(ll_left * ll_right);
    }
}

expression_result er_divide(const expression_result& er_left, const expression_result& er_right)
{
    const double d_divisor = er_right.d_get_double();
    if (std::fabs(d_divisor) < d_smallest_divisor)
        throw execution_error(execution_error::division_by_zero);
    return expression_result(er_left.d_get_double() / d_divisor);
}

expression_result er_modulo(const expression_result& er_left, const expression_result& er_right,
                            bool o_double)
{
    const long long ll_divisor = er_right.i_get_int();
    if (ll_divisor == 0)
        throw execution_error(execution_error::division_by_zero);
    const int i_rest = i_wrap(er_left.i_get_int() % ll_divisor);
    return o_double ? expression_result(static_cast<double>(i_rest)) : expression_result(i_rest);
}

expression_result er_arithmetic(const expression_result& er_left, const expression_result& er_right,
                                lexico lex_operator)
{
    const bool o_double = er_left.e_get_type() == e_double || er_right.e_get_type() == e_double;
    if (lex_operator == lex_div)
        return er_divide(er_left, er_right);
    if (lex_operator == lex_mod)
        return er_modulo(er_left, er_right, o_double);
    if (o_double)
        return expression_result(d_arithmetic(er_left.d_get_double(), er_right.d_get_double(), lex_operator));
    return expression_result(i_arithmetic(er_left.i_get_int(), er_right.i_get_int(), lex_operator));
}

} // namespace

void xpath_processor::v_execute_binary(const action_item& ai_operation)
{
    // The right operand was executed first.
    expression_result er_left = xs_stack.er_pop();
    const expression_result er_right = xs_stack.er_pop();
    const auto lex_operator = static_cast<lexico>(ai_operation.u_sub);
    switch (lex_operator) {
    case lex_or:
        xs_stack.v_push(expression_result(er_left.o_get_bool() || er_right.o_get_bool()));
        break;
    case lex_and:
        xs_stack.v_push(expression_result(er_left.o_get_bool() && er_right.o_get_bool()));
        break;
    case lex_equal:
    case lex_not_equal:
        xs_stack.v_push(expression_result(o_equal(er_left, er_right) == (lex_operator == lex_equal)));
        break;
    case lex_lt:
    case lex_gt:
    case lex_lt_equal:
    case lex_gt_equal:
        xs_stack.v_push(expression_result(o_related(er_left, er_right, lex_operator)));
        break;
    case lex_orchar: {
        if (er_left.e_get_type() != e_node_set || er_right.e_get_type() != e_node_set)
            throw execution_error(execution_error::no_node_set);
        node_set ns_both = er_left.ns_take_node_set();
        ns_both.v_add_set(er_right.ns_get_node_set());
        xs_stack.v_push(expression_result(std::move(ns_both), do_order));
        break;
    }
    default:
        xs_stack.v_push(er_arithmetic(er_left, er_right, lex_operator));
    }
}

void xpath_processor::v_execute_minus()
{
    const expression_result er_value = xs_stack.er_pop();
    if (er_value.e_get_type() == e_double)
        xs_stack.v_push(expression_result(-er_value.d_get_double()));
    else
        xs_stack.v_push(expression_result(i_wrap(-static_cast<long long>(er_value.i_get_int()))));
}

} // namespace Torvix
