#pragma once

#include "xpath/expressionresult.h"
#include "xpath/xpatherrors.h"

#include <utility>
#include <vector>

namespace Torvix {

/** The operands of an evaluation. */
class xpath_stack
{
public:
    void v_push(expression_result er_value) { values.push_back(std::move(er_value)); }

    /** Throws execution_error if there is nothing. */
    expression_result er_pop()
    {
        if (values.empty())
            throw execution_error(execution_error::empty_stack);
        expression_result er_value = std::move(values.back());
        values.pop_back();
        return er_value;
    }
    unsigned u_get_size() const { return static_cast<unsigned>(values.size()); }

private:
    std::vector<expression_result> values;
};

} // namespace Torvix
