#include "xpath/lexico.h"

#include <array>

namespace Torvix {

namespace {

struct byte_class
{
    const char* bytes;
    lexico lex_class;
};

constexpr byte_class byte_classes[] = {
    {"\t\n\r ", lex_space}, {"0123456789", lex_digit},
    {"/", lex_slash},       {"@", lex_at},
    {".", lex_dot},         {"-", lex_minus},
    {"_", lex_under},       {":", lex_colon},
    {";", lex_semi_colon},  {"\"", lex_dquote},
    {"'", lex_squote},      {"$", lex_dollar},
    {"(", lex_oparen},      {")", lex_cparen},
    {"*", lex_star},        {"+", lex_plus},
    {",", lex_comma},       {"<", lex_lt},
    {">", lex_gt},          {"=", lex_equal},
    {"[", lex_obrack},      {"]", lex_cbrack},
    {"|", lex_orchar},      {"!", lex_exclam},
};

/** In UTF-8 the base characters above 191 begin a character of several bytes, so that only its first byte
 * counts. */
constexpr bool o_is_base_char(unsigned u_byte)
{
    return (u_byte >= 'A' && u_byte <= 'Z') || (u_byte >= 'a' && u_byte <= 'z') ||
           (u_byte >= 192 && u_byte != 215 && u_byte != 247);
}

constexpr std::array<lexico, 256> class_table()
{
    std::array<lexico, 256> table{};
    for (unsigned u_byte = 1; u_byte < 256; u_byte++)
        table[u_byte] = o_is_base_char(u_byte) ? lex_bchar : u_byte == 183 ? lex_extend : lex_none;
    for (const byte_class& entry : byte_classes) {
        for (const char* c = entry.bytes; *c; c++)
            table[static_cast<unsigned char>(*c)] = entry.lex_class;
    }
    return table;
}

constexpr std::array<lexico, 256> byte_table = class_table();

struct keyword
{
    std::string_view S_text;
    lexico lex_class;
};

constexpr keyword keywords[] = {
    {"or", lex_or},
    {"and", lex_and},
    {"mod", lex_mod},
    {"div", lex_div},
    {"ancestor", lex_ancestor},
    {"ancestor-or-self", lex_ancestor_or_self},
    {"attribute", lex_attribute},
    {"child", lex_child},
    {"descendant", lex_descendant},
    {"descendant-or-self", lex_descendant_or_self},
    {"following", lex_following},
    {"following-sibling", lex_following_sibling},
    {"namespace", lex_namespace},
    {"parent", lex_parent},
    {"preceding", lex_preceding},
    {"preceding-sibling", lex_preceding_sibling},
    {"self", lex_self},
    {"processing-instruction", lex_processing_instruction},
    {"comment", lex_comment},
    {"node", lex_node},
    {"text", lex_text},
};

} // namespace

lexico lex_get_class(char c_byte)
{
    return byte_table[static_cast<unsigned char>(c_byte)];
}

lexico lex_test_id(std::string_view S_name, char c_next)
{
    for (const keyword& word : keywords) {
        if (word.S_text == S_name && (word.lex_class != lex_text || c_next == '('))
            return word.lex_class;
    }
    return lex_ncname;
}

} // namespace Torvix
