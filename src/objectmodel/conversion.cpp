#include "objectmodel/classmembers.h"
#include "objectmodel/inspector.h"
#include "protocol/membermessages.h"

namespace Torvix {

namespace {

using Protocol::Value;

/** A number or boolean as another built-in type; null when the target is none of them. */
SharedPtr<Object> convertBuiltin(const SharedPtr<Object>& object, int target)
{
    const Inspector* inspector = Inspector::self();
    switch (target) {
    case Protocol::UIntClass:
        return inspector->createUInt(quint32(object->toInt64()));
    case Protocol::IntClass:
        return inspector->createInteger(object->toInt());
    case Protocol::ShortClass:
        return inspector->createShort(object->toInt());
    case Protocol::Int64Class:
        return inspector->createInt64(object->toInt64());
    case Protocol::DoubleClass:
        return inspector->createDouble(object->toDouble());
    case Protocol::BoolClass:
        return inspector->createBoolean(object->toBool());
    case Protocol::StringClass:
        return inspector->createString(object->toString());
    default:
        return nullptr;
    }
}

Result<SharedPtr<Object>> objectByName(const QString& name, const Class* target)
{
    const Result<SharedPtr<Object>> found = Inspector::self()->findObject(name);
    if (!found || found->objectClass()->inheritanceDepth(target) >= 0)
        return found;
    return Failure{QStringLiteral("%1 names a %2, not a %3").arg(name, found->className(), target->name())};
}

/** The application that both are of; a value that lives here is of any. */
ApplicationModel* applicationOf(const SharedPtr<Object>& object, const Class* target)
{
    if (ApplicationModel* application = object->objectClass()->application())
        return application;
    return target->application() ? target->application() : Inspector::self()->current();
}

} // namespace

bool Class::isNumber() const
{
    return m_id == Protocol::DoubleClass || m_id == Protocol::Int64Class ||
           (m_id >= 0 && m_id <= Protocol::ShortClass);
}

bool Class::canCastTo(const Class* target, bool, bool, int depth) const
{
    if (!target || depth > 1)
        return false;
    if (inheritanceDepth(target) >= 0)
        return true;
    return target->isNumber() && (isNumber() || m_id == Protocol::BoolClass);
}

bool Class::canConvertTo(const Class* target, bool sourceIndirect, bool targetIndirect, int depth) const
{
    if (!target || depth > 1)
        return false;
    if (canCastTo(target, sourceIndirect, targetIndirect, depth))
        return true;
    if (target->m_id == Protocol::StringClass && (isNumber() || m_id == Protocol::BoolClass))
        return true;
    if (m_id == Protocol::StringClass && target->isIdentity())
        return true;
    // A literal 0 stands for a null pointer; convertObject() refuses other numbers.
    if (m_id == Protocol::DoubleClass && targetIndirect && target->isIdentity())
        return true;
    return members().convertibleTo.contains(target->m_id) || target->members().convertibleFrom.contains(m_id);
}

Result<SharedPtr<Object>> Class::convertObject(const SharedPtr<Object>& object, const Class* target,
                                               bool indirect) const
{
    if (!object || !target)
        return Failure{QStringLiteral("A value is missing")};
    if (inheritanceDepth(target) >= 0)
        return object;
    if (object->isNull() && target->isIdentity() && target->inheritanceDepth(this) >= 0)
        return target->createNull();
    const bool sourceIndirect = object->objectAttribute().isIndirect();
    if (!canConvertTo(target, sourceIndirect, indirect, 0))
        return Failure{QStringLiteral("A %1 cannot be converted to %2").arg(name(), target->name())};
    if (isNumber() || m_id == Protocol::BoolClass)
        if (SharedPtr<Object> converted = convertBuiltin(object, target->m_id))
            return converted;
    if (isNumber() && target->isIdentity() && object->toDouble() == 0)
        return target->createNull();
    if (m_id == Protocol::StringClass && target->isIdentity())
        return objectByName(object->toString(), target);
    ApplicationModel* application = applicationOf(object, target);
    if (!application)
        return Inspector::noApplication();
    return application->convert(object, target);
}

} // namespace Torvix
