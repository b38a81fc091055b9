#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace Torvix {

/** The text of an expression, with a read cursor. The text ends at its first zero byte. */
class byte_stream
{
public:
    /** A null expression is an empty one. */
    explicit byte_stream(const char* expression) : S_expression(expression ? expression : "") {}
    byte_stream(const byte_stream&) = delete;
    byte_stream& operator=(const byte_stream&) = delete;

    /** True while the cursor is short of the end; false from the start for an empty expression. */
    bool o_is_valid() const { return u_cursor < S_expression.size(); }

    /** The byte `u_ahead` bytes behind the cursor; 0 past the end. */
    char c_peek(size_t u_ahead = 0) const
    {
        return u_ahead < S_expression.size() - u_cursor ? S_expression[u_cursor + u_ahead] : '\0';
    }

    /** Moves the cursor over `u_count` bytes, which must be there, and gives them. */
    std::string_view S_forward(size_t u_count)
    {
        const std::string_view S_passed = std::string_view(S_expression).substr(u_cursor, u_count);
        u_cursor += S_passed.size();
        return S_passed;
    }

private:
    const std::string S_expression;
    size_t u_cursor = 0;
};

} // namespace Torvix
