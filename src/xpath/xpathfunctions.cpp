// The function library.
#include "xpath/xpathprocessor.h"

#include "xpath/xpatherrors.h"

#include <array>
#include <cmath>
#include <limits>

namespace Torvix {

struct xpath_processor::function
{
    std::string_view S_name;
    unsigned u_min_arguments, u_max_arguments;
    expression_result (xpath_processor::*er_call)(arguments&);
};

namespace {

constexpr unsigned u_any = std::numeric_limits<unsigned>::max();

/** What ceiling() and floor() have in common: doubles and booleans become integers, the rest is 0. */
expression_result er_round(const expression_result& er_value, double (*d_round)(double))
{
    switch (er_value.e_get_type()) {
    case e_int:
    case e_bool:
        return expression_result(er_value.i_get_int());
    case e_double:
        return expression_result(i_truncate(d_round(er_value.d_get_double())));
    default:
        return expression_result(0);
    }
}

bool o_is_blank(char c_byte)
{
    return c_byte == ' ' || c_byte == '\t'; // not line ends; intended
}

} // namespace

const xpath_processor::function xpath_processor::functions[] = {
    {"ceiling", 1, 1, &xpath_processor::er_function_ceiling},
    {"concat", 1, u_any, &xpath_processor::er_function_concat},
    {"contains", 2, 2, &xpath_processor::er_function_contains},
    {"count", 1, u_any, &xpath_processor::er_function_count},
    {"false", 0, 0, &xpath_processor::er_function_false},
    {"floor", 1, 1, &xpath_processor::er_function_floor},
    {"last", 0, 0, &xpath_processor::er_function_last},
    {"name", 0, 1, &xpath_processor::er_function_name},
    {"normalize-space", 1, 1, &xpath_processor::er_function_normalize_space},
    {"not", 1, 1, &xpath_processor::er_function_not},
    {"position", 0, 0, &xpath_processor::er_function_position},
    {"starts-with", 2, 2, &xpath_processor::er_function_starts_with},
    {"string-length", 1, 1, &xpath_processor::er_function_string_length},
    {"substring", 2, 3, &xpath_processor::er_function_substring},
    {"sum", 1, 1, &xpath_processor::er_function_sum},
    {"text", 0, 0, &xpath_processor::er_function_text},
    {"translate", 3, 3, &xpath_processor::er_function_translate},
    {"true", 0, 0, &xpath_processor::er_function_true},
};

void xpath_processor::v_execute_function(std::string_view S_name, unsigned u_arguments)
{
    for (const function& known : functions) {
        if (known.S_name != S_name)
            continue;
        if (u_arguments < known.u_min_arguments || u_arguments > known.u_max_arguments)
            throw execution_error(execution_error::wrong_argument_count);
        arguments args;
        for (unsigned u_index = 0; u_index < u_arguments; u_index++)
            args.push_back(xs_stack.er_pop());
        xs_stack.v_push((this->*known.er_call)(args));
        return;
    }
    throw execution_error(execution_error::unknown_function);
}

const TiXmlElement* xpath_processor::XEp_need_context() const
{
    if (!XEp_context)
        throw execution_error(execution_error::no_context);
    return XEp_context;
}

expression_result xpath_processor::er_function_ceiling(arguments& args)
{
    return er_round(args[0], [](double d_value) { return std::ceil(d_value); });
}

expression_result xpath_processor::er_function_concat(arguments& args)
{
    std::string S_joined;
    for (const expression_result& er_part : args)
        S_joined += er_part.S_get_string();
    return expression_result(std::move(S_joined));
}

expression_result xpath_processor::er_function_contains(arguments& args)
{
    return expression_result(args[0].S_get_string().find(args[1].S_get_string()) != std::string::npos);
}

expression_result xpath_processor::er_function_count(arguments& args)
{
    return expression_result(static_cast<int>(args[0].ns_get_node_set().u_get_nb_node_in_set()));
}

expression_result xpath_processor::er_function_false(arguments&)
{
    return expression_result(false);
}

expression_result xpath_processor::er_function_floor(arguments& args)
{
    return er_round(args[0], [](double d_value) { return std::floor(d_value); });
}

/** All child elements of the parent, whatever their names; intended. */
expression_result xpath_processor::er_function_last(arguments&)
{
    return expression_result(si_siblings.i_family_size(XEp_need_context()));
}

expression_result xpath_processor::er_function_name(arguments& args)
{
    if (args.empty())
        return expression_result(XEp_need_context()->ValueStr());
    const node_set& ns_nodes = args[0].ns_get_node_set();
    if (ns_nodes.o_is_empty())
        return expression_result(std::string());
    if (const TiXmlAttribute* XAp_attribute = ns_nodes.XAp_get_attribute(0))
        return expression_result(XAp_attribute->NameTStr());
    return expression_result(o_is_element(ns_nodes.XNp_get_node(0)) ? ns_nodes.S_get_value(0)
                                                                    : std::string());
}

expression_result xpath_processor::er_function_normalize_space(arguments& args)
{
    std::string S_normal;
    bool o_after_blank = false;
    for (char c_byte : args[0].S_get_string()) {
        if (!o_is_blank(c_byte)) {
            if (o_after_blank && !S_normal.empty())
                S_normal += ' ';
            S_normal += c_byte;
        }
        o_after_blank = o_is_blank(c_byte);
    }
    return expression_result(std::move(S_normal));
}

expression_result xpath_processor::er_function_not(arguments& args)
{
    return expression_result(!args[0].o_get_bool());
}

expression_result xpath_processor::er_function_position(arguments&)
{
    return expression_result(si_siblings.i_xml_cardinality(XEp_need_context(), o_context_by_name));
}

expression_result xpath_processor::er_function_starts_with(arguments& args)
{
    const std::string S_start = args[1].S_get_string();
    return expression_result(args[0].S_get_string().compare(0, S_start.size(), S_start) == 0);
}

expression_result xpath_processor::er_function_string_length(arguments& args)
{
    return expression_result(static_cast<int>(args[0].S_get_string().size()));
}

/** Without the standard's rounding, and without its shift for a start before the text; intended. */
expression_result xpath_processor::er_function_substring(arguments& args)
{
    const std::string S_text = args[0].S_get_string();
    const int i_start = args[1].i_get_int();
    const int i_length = args.size() > 2 ? args[2].i_get_int() : std::numeric_limits<int>::max();
    if (i_start < 1 || static_cast<size_t>(i_start) > S_text.size() || i_length < 0)
        return expression_result(std::string());
    return expression_result(S_text.substr(static_cast<size_t>(i_start) - 1, static_cast<size_t>(i_length)));
}

expression_result xpath_processor::er_function_sum(arguments& args)
{
    if (args[0].e_get_type() != e_node_set)
        throw execution_error(execution_error::no_node_set);
    const node_set& ns_nodes = args[0].ns_get_node_set();
    unsigned u_sum = 0; // of integers, modulo 2 to the 32nd
    double d_sum = 0;
    bool o_double = false;
    for (unsigned u_index = 0; u_index < ns_nodes.u_get_nb_node_in_set(); u_index++) {
        const std::string& S_value = ns_nodes.S_get_value(u_index);
        u_sum += static_cast<unsigned>(i_read_decimal(S_value));
        d_sum += atof_locale_c(S_value);
        o_double = o_double || S_value.find('.') != std::string::npos;
    }
    return o_double ? expression_result(d_sum) : expression_result(static_cast<int>(u_sum));
}

expression_result xpath_processor::er_function_text(arguments&)
{
    std::string S_text;
    for (const TiXmlNode* XNp_child = XEp_need_context()->FirstChild(); XNp_child;
         XNp_child = XNp_child->NextSibling()) {
        if (XNp_child->ToText())
            S_text += XNp_child->ValueStr();
    }
    return expression_result(std::move(S_text));
}

expression_result xpath_processor::er_function_translate(arguments& args)
{
    const std::string S_from = args[1].S_get_string();
    const std::string S_to = args[2].S_get_string();
    constexpr int i_keep = -1;
    constexpr int i_remove = -2;
    std::array<int, 256> map;
    map.fill(i_keep);
    for (size_t u_index = S_from.size(); u_index-- > 0;) // backwards, since the first mention counts
        map[static_cast<unsigned char>(S_from[u_index])] =
            u_index < S_to.size() ? S_to[u_index] & 0xff : i_remove;
    std::string S_translated;
    for (char c_byte : args[0].S_get_string()) {
        const int i_byte = map[static_cast<unsigned char>(c_byte)];
        if (i_byte != i_remove)
            S_translated += i_byte == i_keep ? c_byte : static_cast<char>(i_byte);
    }
    return expression_result(std::move(S_translated));
}

expression_result xpath_processor::er_function_true(arguments&)
{
    return expression_result(true);
}

} // namespace Torvix
