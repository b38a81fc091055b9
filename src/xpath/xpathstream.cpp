#include "xpath/xpathstream.h"

#include "xpath/xpatherrors.h"

namespace Torvix {

namespace {

bool o_is_name_byte(char c_byte)
{
    switch (lex_get_class(c_byte)) {
    case lex_bchar:
    case lex_digit:
    case lex_dot:
    case lex_minus:
    case lex_under:
    case lex_extend:
        return true;
    default:
        return false;
    }
}

} // namespace

void token_redef::v_action(xpath_construct xc_rule, unsigned u_sub, unsigned u_variable,
                           std::string_view S_literal)
{
    xs_owner.v_action(xc_rule, u_sub, u_variable, S_literal);
}

int token_redef::i_get_action_counter()
{
    return xs_owner.i_get_action_counter();
}

xpath_stream::xpath_stream(const char* expression) : byte_stream(expression), tr_tokens(*this) {}

void xpath_stream::v_lexico_decode()
{
    while (o_is_valid()) {
        const lexico lex_class = lex_get_class(c_peek());
        switch (lex_class) {
        case lex_bchar:
        case lex_under:
            v_lex_name();
            break;
        case lex_digit:
            v_lex_number();
            break;
        case lex_dquote:
        case lex_squote:
            v_lex_literal();
            break;
        default:
            tr_tokens.v_add_token(lex_class, S_forward(1));
        }
    }
}

void xpath_stream::v_lex_name()
{
    size_t u_size = 1;
    while (o_is_name_byte(c_peek(u_size)))
        u_size++;
    const std::string_view S_name = S_forward(u_size);
    tr_tokens.v_add_token(lex_test_id(S_name, c_peek()), S_name);
}

void xpath_stream::v_lex_number()
{
    size_t u_size = 1;
    while (lex_get_class(c_peek(u_size)) == lex_digit)
        u_size++;
    if (lex_get_class(c_peek(u_size)) == lex_dot) {
        do
            u_size++;
        while (lex_get_class(c_peek(u_size)) == lex_digit);
    }
    tr_tokens.v_add_token(lex_number, S_forward(u_size));
}

void xpath_stream::v_lex_literal()
{
    const char c_quote = c_peek();
    S_forward(1);
    size_t u_size = 0;
    while (c_peek(u_size) != c_quote) {
        if (c_peek(u_size) == '\0')
            throw syntax_error("literal without its end");
        u_size++;
    }
    tr_tokens.v_add_token(lex_literal, S_forward(u_size));
    S_forward(1);
}

} // namespace Torvix
