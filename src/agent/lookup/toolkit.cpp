#include "agent/lookup/toolkit.h"

#include <algorithm>

namespace Torvix::Agent {

static std::vector<std::unique_ptr<Toolkit>>& toolkits()
{
    static std::vector<std::unique_ptr<Toolkit>> all;
    return all;
}

void Toolkit::add(std::unique_ptr<Toolkit> toolkit)
{
    toolkits().push_back(std::move(toolkit));
}

const std::vector<std::unique_ptr<Toolkit>>& Toolkit::all()
{
    return toolkits();
}

const Toolkit* Toolkit::of(const QObject* object)
{
    const auto& all = toolkits();
    const auto found =
        std::find_if(all.begin(), all.end(), [object](const auto& each) { return each->shows(object); });
    return found == all.end() ? nullptr : found->get();
}

} // namespace Torvix::Agent
