#pragma once

#include "xpath/construct.h"

#include <string_view>
#include <vector>

namespace Torvix {

/** One construct of the expression. The text belongs to the byte_stream. */
struct action_item
{
    xpath_construct xc_rule;
    unsigned u_sub;
    unsigned u_variable;
    std::string_view S_literal;
};

/** The constructs of the expression in postfix order, and the position of the executor among them. */
class action_store
{
public:
    void v_add(const action_item& item)
    {
        if (items.size() == items.capacity())
            items.reserve(items.size() + 100);
        items.push_back(item);
    }
    int i_get_size() const { return static_cast<int>(items.size()); }
    bool o_has(int i_index) const { return i_index >= 0 && i_index < i_get_size(); }
    const action_item& ai_get(int i_index) const { return items[static_cast<size_t>(i_index)]; }

    /** What the executor reads next; -1 when it is through. */
    int i_get_position() const { return i_position; }
    void v_set_position(int i_new) { i_position = i_new; }

private:
    std::vector<action_item> items;
    int i_position = -1;
};

} // namespace Torvix
