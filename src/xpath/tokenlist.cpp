#include "xpath/tokenlist.h"

namespace Torvix {

namespace {

struct joined_token
{
    lexico lex_first, lex_second, lex_joined;
};

constexpr joined_token joined_tokens[] = {
    {lex_slash, lex_slash, lex_2_slash}, {lex_dot, lex_dot, lex_2_dot},
    {lex_colon, lex_colon, lex_2_colon}, {lex_exclam, lex_equal, lex_not_equal},
    {lex_lt, lex_equal, lex_lt_equal},   {lex_gt, lex_equal, lex_gt_equal},
};

/** The class of the two together, or lex_null if they stay two. */
lexico lex_join(lexico lex_first, lexico lex_second)
{
    for (const joined_token& joined : joined_tokens) {
        if (joined.lex_first == lex_first && joined.lex_second == lex_second)
            return joined.lex_joined;
    }
    return lex_null;
}

} // namespace

void token_list::v_add_token(lexico lex_class, std::string_view S_literal)
{
    tokens.back() = {S_literal, lex_class};
    tokens.emplace_back();
}

void token_list::v_tokenize_expression()
{
    size_t u_kept = 0;
    for (size_t u_read = 0; u_read < tokens.size(); u_read++) {
        token current = tokens[u_read];
        if (current.lex_class == lex_space)
            continue;
        const lexico lex_joined =
            u_read + 1 < tokens.size() ? lex_join(current.lex_class, tokens[u_read + 1].lex_class) : lex_null;
        if (lex_joined != lex_null) {
            current = {std::string_view(current.S_literal.data(), 2), lex_joined};
            u_read++;
        }
        tokens[u_kept++] = current;
    }
    tokens.resize(u_kept);
    u_position = 0;
}

} // namespace Torvix
