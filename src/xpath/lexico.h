#pragma once

#include <string_view>

namespace Torvix {

/** The class of a character or of a token. */
enum lexico {
    lex_null = 0,
    lex_none,
    lex_space,
    lex_digit,
    lex_bchar,
    lex_extend,
    lex_slash,
    lex_at,
    lex_dot,
    lex_minus,
    lex_under,
    lex_colon,
    lex_semi_colon,
    lex_dquote,
    lex_squote,
    lex_dollar,
    lex_oparen,
    lex_cparen,
    lex_star,
    lex_plus,
    lex_comma,
    lex_lt,
    lex_gt,
    lex_equal,
    lex_obrack,
    lex_cbrack,
    lex_orchar,
    lex_exclam,
    lex_ncname,
    lex_number,
    lex_literal,
    lex_2_colon,
    lex_2_slash,
    lex_2_dot,
    lex_not_equal,
    lex_lt_equal,
    lex_gt_equal,
    lex_or,
    lex_and,
    lex_mod,
    lex_div,
    lex_ancestor,
    lex_ancestor_or_self,
    lex_attribute,
    lex_child,
    lex_descendant,
    lex_descendant_or_self,
    lex_following,
    lex_following_sibling,
    lex_namespace,
    lex_parent,
    lex_preceding,
    lex_preceding_sibling,
    lex_self,
    lex_processing_instruction,
    lex_comment,
    lex_node,
    lex_text,
};

/** The class of a byte of the expression: one of the first 28. */
lexico lex_get_class(char c_byte);

/**
 * The keyword that a name is, or lex_ncname. Every name that is spelt like a keyword is that keyword,
 * wherever it stands; so no element named "child" or "or" can be addressed. This is intended. "text"
 * alone is a keyword only before an opening parenthesis.
 */
lexico lex_test_id(std::string_view S_name, char c_next);

inline bool o_is_axis(lexico lex_token)
{
    return lex_token >= lex_ancestor && lex_token <= lex_self;
}

inline bool o_is_node_type(lexico lex_token)
{
    return lex_token >= lex_processing_instruction && lex_token <= lex_text;
}

} // namespace Torvix
