#include "agent/classinfo.h"

#include <algorithm>

namespace Torvix::Agent {

QByteArray MethodInfo::signature() const
{
    QByteArray text = name + '(';
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        if (i)
            text += ", ";
        text += arguments[i].type.toCpp();
    }
    return text + ')';
}

const PropertyInfo* ClassInfo::property(const QByteArray& propertyName) const
{
    const auto found = std::find_if(properties.begin(), properties.end(),
                                    [&](const PropertyInfo& p) { return p.name == propertyName; });
    return found == properties.end() ? nullptr : &*found;
}

} // namespace Torvix::Agent
