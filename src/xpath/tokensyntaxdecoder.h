#pragma once

#include "xpath/construct.h"
#include "xpath/tokenlist.h"

#include <string_view>

namespace Torvix {

/**
 * Recursive descent over the tokens. What it recognises it records with v_action(), operands before
 * their operation:
 *
 * | construct | sub-form | variable | literal |
 * |---|---|---|---|
 * | primary expression | lex_literal or lex_number | | the text |
 * | function call | | number of arguments | the name |
 * | variable reference | | | the name |
 * | or ... multiplicative, union | the operator's lexico | | |
 * | unary expression | lex_minus | | |
 * | axis specifier | the axis' lexico, lex_child if none is written | | |
 * | node test | lex_star, lex_ncname, lex_colon ("prefix:*") or the node type's lexico | | the name |
 * | predicate | | counter of its first action | |
 * | step | number of predicates | counter of its first action | |
 * | abbreviated step ("//" between steps) | lex_2_slash | its own counter | |
 * | relative path | number of steps | counter of its first action | |
 * | absolute path | 1 if a relative path follows "/", otherwise 0 | | |
 * | abbreviated absolute path | | | |
 * | filter expression | number of predicates | | |
 * | path expression | lex_slash or lex_2_slash, between the filter expression and the path | | |
 *
 * A level of the grammar that has no operator of its own records nothing.
 */
class token_syntax_decoder : public token_list
{
public:
    virtual ~token_syntax_decoder() = default;

    /** Throws syntax_error or syntax_overflow. Tokens behind the top construct are left alone. */
    void v_syntax_decode();

protected:
    /** Called for each construct in postfix order. */
    virtual void v_action(xpath_construct xc_rule, unsigned u_sub, unsigned u_variable,
                          std::string_view S_literal) = 0;
    /** The number of actions so far. */
    virtual int i_get_action_counter() = 0;

private:
    bool o_recognize(xpath_construct xc_rule, bool o_final);
    bool o_recognize_binary(xpath_construct xc_rule, bool o_final);
    bool o_recognize_unary(bool o_final);
    bool o_recognize_path(bool o_final);
    bool o_recognize_filter(bool o_final);
    bool o_recognize_primary(bool o_final);
    bool o_recognize_function_call(bool o_final);
    bool o_recognize_variable(bool o_final);
    bool o_recognize_location_path(bool o_final);
    bool o_recognize_absolute(bool o_final);
    bool o_recognize_abbreviated_absolute(bool o_final);
    bool o_recognize_relative(bool o_final);
    bool o_recognize_step(bool o_final);
    bool o_recognize_abbreviated_step(bool o_final);
    bool o_recognize_axis_specifier(bool o_final);
    bool o_recognize_node_test(bool o_final);
    bool o_recognize_name_test(bool o_final);
    bool o_recognize_predicate(bool o_final);
    bool o_recognize_q_name(bool o_final);

    bool o_is_filter_ahead();
    bool o_is_step_ahead() const;
    bool o_accept(lexico lex_token);
    void v_record(bool o_final, xpath_construct xc_rule, unsigned u_sub = 0, unsigned u_variable = 0,
                  std::string_view S_literal = {});
    unsigned u_counter() { return static_cast<unsigned>(i_get_action_counter()); }

    unsigned u_nb_recursion = 0;
};

} // namespace Torvix
