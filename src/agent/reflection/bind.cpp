#include "agent/reflection/bind.h"

namespace Torvix::Agent {

void addOverloads(std::vector<MethodInfo>& to, const MethodInfo& method,
                  const std::vector<Value>& defaultValues)
{
    to.push_back(method);
    for (std::size_t left = 1; left <= defaultValues.size(); ++left) {
        MethodInfo shorter = method;
        shorter.arguments.resize(method.arguments.size() - left);
        const std::vector<Value> filled(defaultValues.end() - std::ptrdiff_t(left), defaultValues.end());
        shorter.invoke = [invoke = method.invoke, filled](Value& self, const std::vector<Value>& given) {
            std::vector<Value> all = given;
            all.insert(all.end(), filled.begin(), filled.end());
            return invoke(self, all);
        };
        to.push_back(std::move(shorter));
    }
}

} // namespace Torvix::Agent
