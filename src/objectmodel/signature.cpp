#include "objectmodel/signature.h"

#include "objectmodel/class.h"

#include <QStringList>

namespace Torvix {

Argument::Argument(const QString& name, const Class* type, ObjectAttribute attribute, const Enum* enumeration)
    : m_name(name)
    , m_type(type)
    , m_attribute(attribute)
    , m_enumeration(enumeration)
{
}

Argument::Argument(const QString& name, const Class* type, ObjectAttribute attribute, const Class* enumOwner,
                   const QString& enumName, const QString& defaultValue)
    : m_name(name)
    , m_type(type)
    , m_attribute(attribute)
    , m_enumOwner(enumOwner)
    , m_enumName(enumName)
    , m_defaultValue(defaultValue)
{
}

const Enum* Argument::enumeration() const
{
    if (!m_enumeration && m_enumOwner)
        m_enumeration = m_enumOwner->enumerator(m_enumName);
    return m_enumeration;
}

QString Argument::toString() const
{
    if (!m_type)
        return QStringLiteral("void");
    QString text = m_type->name();
    if (m_enumOwner)
        text = m_enumOwner->name() + QLatin1String("::") + m_enumName;
    else if (m_enumeration)
        text = m_enumeration->name();
    if (m_attribute.has(ObjectAttribute::Constant))
        text.prepend(QLatin1String("const "));
    if (m_attribute.isIndirect())
        text.append(m_type->isIdentity() ? QLatin1Char('*') : QLatin1Char('&'));
    if (m_attribute.has(ObjectAttribute::List))
        text.append(QLatin1String("[]"));
    return text;
}

QString Signature::toString() const
{
    QStringList types;
    for (const Argument& argument : m_arguments)
        types.append(argument.toString());
    return QLatin1Char('(') + types.join(QLatin1String(", ")) + QLatin1Char(')');
}

} // namespace Torvix
