#pragma once

#include "xpath/documentorder.h"
#include "xpath/nodeset.h"

#include <memory>
#include <string>

namespace Torvix {

/** The kinds of an expression_result. Integers are a kind of their own, unlike in XPath 1.0. */
enum e_expression_type {
    e_bool = 0,
    e_string = 1,
    e_int = 2,
    e_double = 3,
    e_node_set = 4,
    e_invalid = 5,
};

/**
 * A value of an expression. The default is the result of a failure: the invalid kind, which converts to
 * false, the empty string and 0.
 *
 * The conversions are not all those of XPath 1.0:
 * - The string of a node is its TinyXML value, so that of an element is its tag name; of a node set it
 *   is that of its first node in document order.
 * - The boolean of a double is true exactly when the value is 0.
 * - Strings that are no number convert to 0; leading digits count.
 */
class expression_result
{
public:
    expression_result() = default;
    explicit expression_result(bool o_value) : e_type(e_bool), o_content(o_value) {}
    explicit expression_result(std::string S_value) : e_type(e_string), S_content(std::move(S_value)) {}
    explicit expression_result(int i_value) : e_type(e_int), i_content(i_value) {}
    explicit expression_result(double d_value) : e_type(e_double), d_content(d_value) {}
    expression_result(node_set ns_value, std::shared_ptr<document_order> order)
        : e_type(e_node_set)
        , ns_content(std::move(ns_value))
        , do_order(std::move(order))
    {
    }
    expression_result(const char*) = delete; // it would be taken for a boolean

    e_expression_type e_get_type() const { return e_type; }

    bool o_get_bool() const;
    std::string S_get_string() const;
    /** Doubles are truncated; what does not fit into 32 bits gives the nearest integer that does. */
    int i_get_int() const;
    double d_get_double() const;

    /** The node set; an empty one if the value is none. */
    const node_set& ns_get_node_set() const { return ns_content; }
    node_set ns_take_node_set() { return std::move(ns_content); }

private:
    unsigned u_first_in_document() const;

    e_expression_type e_type = e_invalid;
    bool o_content = false;
    int i_content = 0;
    double d_content = 0;
    std::string S_content;
    node_set ns_content;
    std::shared_ptr<document_order> do_order;
};

/** The leading number of a text in the form of the C locale, as atof() reads it; 0 without one. */
double atof_locale_c(const std::string& S_text);

/** The leading decimal integer of a text; 0 without one, the nearest that fits beyond 32 bits. */
int i_read_decimal(const std::string& S_text);

/** Towards zero; the nearest integer that fits beyond 32 bits, and 0 for what is not a number. */
int i_truncate(double d_value);

} // namespace Torvix
