#include "xpath/expressionresult.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <locale.h>

namespace Torvix {

namespace {

/** As printf's "%f" in the C locale, without trailing zeros and point. */
std::string S_format(double d_value)
{
    char buffer[512]; // the longest double has 309 digits before its point
    const auto end = std::to_chars(buffer, buffer + sizeof buffer, d_value, std::chars_format::fixed, 6);
    std::string S_text(buffer, end.ptr);
    const size_t u_point = S_text.find('.');
    if (u_point == std::string::npos)
        return S_text;
    S_text.erase(S_text.find_last_not_of('0') + 1);
    if (S_text.size() == u_point + 1)
        S_text.pop_back();
    return S_text;
}

} // namespace

double atof_locale_c(const std::string& S_text)
{
    static const locale_t c_locale = newlocale(LC_ALL_MASK, "C", nullptr);
    return strtod_l(S_text.c_str(), nullptr, c_locale);
}

int i_read_decimal(const std::string& S_text)
{
    const long l_value = std::strtol(S_text.c_str(), nullptr, 10);
    using limits = std::numeric_limits<int>;
    return static_cast<int>(std::clamp<long>(l_value, limits::min(), limits::max()));
}

int i_truncate(double d_value)
{
    using limits = std::numeric_limits<int>;
    if (std::isnan(d_value))
        return 0;
    return static_cast<int>(std::clamp<double>(d_value, limits::min(), limits::max()));
}

bool expression_result::o_get_bool() const
{
    switch (e_type) {
    case e_bool:
        return o_content;
    case e_string:
        return !S_content.empty();
    case e_int:
        return i_content != 0;
    case e_double:
        return d_content == 0; // the reverse of the standard's; intended
    case e_node_set:
        return !ns_content.o_is_empty();
    case e_invalid:
        break;
    }
    return false;
}

std::string expression_result::S_get_string() const
{
    switch (e_type) {
    case e_bool:
        return o_content ? "true" : "false";
    case e_string:
        return S_content;
    case e_int:
        return std::to_string(i_content);
    case e_double:
        return S_format(d_content);
    case e_node_set:
        return ns_content.o_is_empty() ? std::string() : ns_content.S_get_value(u_first_in_document());
    case e_invalid:
        break;
    }
    return {};
}

int expression_result::i_get_int() const
{
    switch (e_type) {
    case e_bool:
        return o_content;
    case e_int:
        return i_content;
    case e_double:
        return i_truncate(d_content);
    case e_string:
    case e_node_set:
        return i_read_decimal(S_get_string());
    case e_invalid:
        break;
    }
    return 0;
}

double expression_result::d_get_double() const
{
    switch (e_type) {
    case e_bool:
        return o_content;
    case e_int:
        return i_content;
    case e_double:
        return d_content;
    case e_string:
    case e_node_set:
        return atof_locale_c(S_get_string());
    case e_invalid:
        break;
    }
    return 0;
}

/** The index of the entry that comes first in the document. The set is not empty. */
unsigned expression_result::u_first_in_document() const
{
    unsigned u_first = 0;
    for (unsigned u_index = 1; u_index < ns_content.u_get_nb_node_in_set(); u_index++) {
        if (do_order->i_compare_node_in_tree(ns_content.XBp_get_base(u_index),
                                             ns_content.XBp_get_base(u_first)) < 0)
            u_first = u_index;
    }
    return u_first;
}

} // namespace Torvix
