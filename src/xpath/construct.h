#pragma once

namespace Torvix {

/**
 * The constructs of the grammar. The numbers are those of the productions in XML Path Language (XPath)
 * Version 1.0; those from 206 on stand for the productions 6 to 8 of Namespaces in XML.
 */
enum xpath_construct {
    xpath_location_path = 1,
    xpath_absolute_location_path = 2,
    xpath_relative_location_path = 3,
    xpath_step = 4,
    xpath_axis_specifier = 5,
    xpath_axis_name = 6,
    xpath_node_test = 7,
    xpath_predicate = 8,
    xpath_predicate_expr = 9,
    xpath_abbreviated_absolute_location_path = 10,
    xpath_abbreviated_step = 12,
    xpath_expr = 14,
    xpath_primary_expr = 15,
    xpath_function_call = 16,
    xpath_argument = 17,
    xpath_union_expr = 18,
    xpath_path_expr = 19,
    xpath_filter_expr = 20,
    xpath_or_expr = 21,
    xpath_and_expr = 22,
    xpath_equality_expr = 23,
    xpath_relational_expr = 24,
    xpath_additive_expr = 25,
    xpath_multiplicative_expr = 26,
    xpath_unary_expr = 27,
    xpath_variable_reference = 36,
    xpath_name_test = 37,
    xpath_xml_q_name = 206,
    xpath_xml_prefix = 207,
    xpath_xml_local_part = 208,
};

} // namespace Torvix
