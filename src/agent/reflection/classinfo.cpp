#include "agent/reflection/classinfo.h"

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

} // namespace Torvix::Agent
