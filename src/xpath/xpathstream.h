#pragma once

#include "xpath/bytestream.h"
#include "xpath/tokensyntaxdecoder.h"

#include <string_view>

namespace Torvix {

class xpath_stream;

/** The tokens of an xpath_stream. What is recognised goes to that stream. */
class token_redef : public token_syntax_decoder
{
public:
    explicit token_redef(xpath_stream& owner) : xs_owner(owner) {}

protected:
    void v_action(xpath_construct xc_rule, unsigned u_sub, unsigned u_variable,
                  std::string_view S_literal) override;
    int i_get_action_counter() override;

private:
    xpath_stream& xs_owner;
};

/** An expression with its lexer and its tokens. */
class xpath_stream : public byte_stream
{
public:
    explicit xpath_stream(const char* expression);
    virtual ~xpath_stream() = default;

protected:
    friend class token_redef;

    /** Receives each construct in postfix order; see token_syntax_decoder. */
    virtual void v_action(xpath_construct xc_rule, unsigned u_sub, unsigned u_variable,
                          std::string_view S_literal) = 0;
    virtual int i_get_action_counter() = 0;

    /** Cuts the text into tokens. Throws syntax_error for a literal without its end. */
    void v_lexico_decode();

    token_redef tr_tokens;

private:
    void v_lex_name();
    void v_lex_number();
    void v_lex_literal();
};

} // namespace Torvix
