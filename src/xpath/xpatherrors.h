#pragma once

#include <exception>
#include <string>

namespace Torvix {

/** The expression is not in the language. Never leaves xpath_processor. */
class syntax_error : public std::exception
{
public:
    /** `text` names the place; what is beyond 200 bytes is cut. */
    explicit syntax_error(const char* text) : S_message(text, 0, 200) {}
    const char* what() const noexcept override { return S_message.c_str(); }

private:
    std::string S_message;
};

/** The expression is too long or too deep to be decoded. Never leaves xpath_processor. */
class syntax_overflow : public std::exception
{
public:
    const char* what() const noexcept override { return "too many syntax steps"; }
};

/** The expression cannot be evaluated over this document. Never leaves xpath_processor. */
class execution_error : public std::exception
{
public:
    enum code {
        unfinished = -2,
        broken_store = 1,
        empty_stack,
        no_parent,
        no_context,
        no_node_set,
        unknown_function,
        wrong_argument_count,
        division_by_zero,
        variable,
    };

    explicit execution_error(code i_reason) : i_error_code(i_reason) {}
    int i_get_error_code() const { return i_error_code; }
    const char* what() const noexcept override { return "the expression cannot be evaluated"; }

private:
    int i_error_code;
};

/** The expression asks for something that this evaluator does not offer. */
class error_not_yet : public execution_error
{
public:
    error_not_yet() : execution_error(unfinished) {}
    const char* what() const noexcept override { return "not offered"; }
};

} // namespace Torvix
