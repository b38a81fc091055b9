#pragma once

#include "xpath/lexico.h"

#include <cstddef>
#include <string_view>
#include <vector>

namespace Torvix {

/** A piece of the expression with its class. The text belongs to the byte_stream. */
struct token
{
    std::string_view S_literal;
    lexico lex_class = lex_null;
};

/** The tokens of an expression, ended by a token of class 0, with a read position. */
class token_list
{
public:
    token_list() : tokens(1) {}

    void v_add_token(lexico lex_class, std::string_view S_literal);

    /** Removes the spaces and joins the two-character tokens. */
    void v_tokenize_expression();

    /** The token `u_ahead` tokens behind the read position; the ending one past the end. */
    const token& tok_peek(size_t u_ahead = 0) const
    {
        return tokens[u_ahead < tokens.size() - u_position ? u_position + u_ahead : tokens.size() - 1];
    }
    lexico lex_peek(size_t u_ahead = 0) const { return tok_peek(u_ahead).lex_class; }

    /** Steps over a token, but never over the ending one. */
    void v_forward()
    {
        if (u_position + 1 < tokens.size())
            u_position++;
    }
    /** Whether nothing, no blank either, stands between a token ahead and the one behind it. */
    bool o_is_adjacent(size_t u_ahead) const
    {
        const std::string_view S_first = tok_peek(u_ahead).S_literal;
        return S_first.data() + S_first.size() == tok_peek(u_ahead + 1).S_literal.data();
    }

    /** The text of the expression from a token to the last one that was stepped over. */
    std::string_view S_text_from(size_t u_first) const
    {
        const char* first = tokens[u_first].S_literal.data();
        const std::string_view S_last = tokens[u_position - 1].S_literal;
        return {first, static_cast<size_t>(S_last.data() + S_last.size() - first)};
    }

    size_t u_get_position() const { return u_position; }
    void v_set_position(size_t u_new) { u_position = u_new; }

private:
    std::vector<token> tokens;
    size_t u_position = 0;
};

} // namespace Torvix
