#include "objectmodel/namespace.h"

#include "objectmodel/applicationmodel.h"

namespace Torvix {

Namespace::Namespace(ApplicationModel* application, const QString& name, const Namespace* parent)
    : m_application(application)
    , m_name(name)
    , m_parent(parent)
{
}

QString Namespace::simpleName() const
{
    const int separator = m_name.lastIndexOf(QLatin1String("::"));
    return separator < 0 ? m_name : m_name.mid(separator + 2);
}

QString Namespace::qualified(const QString& name) const
{
    return isGlobal() ? name : m_name + QLatin1String("::") + name;
}

const Class* Namespace::getClass(const QString& name) const
{
    return m_application ? m_application->classByName(qualified(name)) : nullptr;
}

const Namespace* Namespace::getNamespace(const QString& name) const
{
    return m_application ? m_application->namespaceByName(qualified(name)) : nullptr;
}

} // namespace Torvix
