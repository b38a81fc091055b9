#include "agent/reflection/globalclass.h"

#include "agent/input/actions.h"
#include "agent/reflection/bind.h"

#include <QApplication>

namespace Torvix::Agent {

template <>
struct TypeName<GlobalFunctions>
{
    static QByteArray get() { return globalClassName; }
};

void bindGlobalClass(Registry& registry)
{
    Bind<GlobalFunctions>(registry).staticProperty(
        "qApp", +[] { return QCoreApplication::instance(); });
    bindActions(registry);
}

} // namespace Torvix::Agent
