#include "objectmodel/applicationmodel.h"
#include "objectmodel/inspector.h"
#include "protocol/membermessages.h"

namespace Torvix {

namespace {

/** The application that a member belongs to; a built-in type has no members that could be called. */
ApplicationModel* applicationOf(const Member* member)
{
    ApplicationModel* application = member->declaringClass()->application();
    if (!application)
        Inspector::self()->setLastError(
            QStringLiteral("%1 has no members in an application").arg(member->declaringClass()->name()));
    return application;
}

/** The id of the object that a member is used on, 0 for a static one. */
bool targetId(ApplicationModel* application, const QString& member, bool isStatic,
              const SharedPtr<Object>& target, qint64* id)
{
    *id = 0;
    if (isStatic)
        return true;
    if (!target) {
        Inspector::self()->setLastError(QStringLiteral("%1 needs an object: it is not static").arg(member));
        return false;
    }
    if (target->isNull()) {
        Inspector::self()->setLastError(
            QStringLiteral("%1 cannot be used on a null %2").arg(member, target->className()));
        return false;
    }
    return application->remoteId(target, id);
}

bool wireArguments(ApplicationModel* application, const Signature& signature, const ObjectList& arguments,
                   QVector<Protocol::Value>* values)
{
    if (arguments.size() != signature.count()) {
        Inspector::self()->setLastError(
            QStringLiteral("%1 arguments are needed, not %2").arg(signature.count()).arg(arguments.size()));
        return false;
    }
    values->resize(arguments.size());
    for (int i = 0; i < arguments.size(); ++i)
        if (!application->toWire(arguments[i], &(*values)[i]))
            return false;
    return true;
}

} // namespace

Property::Property(const Class* declaringClass, int index, const Argument& type, int flags)
    : Member(declaringClass, index)
    , m_type(type)
    , m_flags(flags)
{
}

SharedPtr<Object> Property::get(const SharedPtr<Object>& object) const
{
    ApplicationModel* application = applicationOf(this);
    Protocol::GetProperty request;
    if (!application || !targetId(application, name(), isStatic(), object, &request.object))
        return nullptr;
    request.classId = declaringClass()->id();
    request.index = index();
    Protocol::ValueReply reply;
    if (!application->call(request, &reply))
        return nullptr;
    return application->makeObject(reply.value);
}

QVector<const Property*> Property::readable(const Class* objectClass)
{
    QVector<const Property*> found;
    for (int index = 0; index < objectClass->numProperties(); ++index)
        if (objectClass->property(index)->isReadable())
            found.append(objectClass->property(index));
    return found;
}

ObjectList Property::getAll(const SharedPtr<Object>& object, const QVector<const Property*>& properties)
{
    ObjectList values(properties.size());
    ApplicationModel* application = properties.isEmpty() ? nullptr : applicationOf(properties.first());
    Protocol::GetProperties request;
    if (!application ||
        !targetId(application, QStringLiteral("Reading properties"), false, object, &request.object))
        return values;
    for (const Property* property : properties)
        request.properties.append({property->declaringClass()->id(), property->index()});
    Protocol::PropertiesReply reply;
    if (!application->call(request, &reply))
        return values;
    for (int i = 0; i < qMin(values.size(), reply.results.size()); ++i)
        if (reply.results[i].isRead)
            values[i] = application->makeObject(reply.results[i].value);
    return values;
}

bool Property::set(const SharedPtr<Object>& object, const SharedPtr<Object>& value) const
{
    ApplicationModel* application = applicationOf(this);
    Protocol::SetProperty request;
    if (!application || !targetId(application, name(), isStatic(), object, &request.object) ||
        !application->toWire(value, &request.value))
        return false;
    request.classId = declaringClass()->id();
    request.index = index();
    return application->call(request);
}

Method::Method(const Class* declaringClass, int index, const QString& name, const Argument& result,
               const Signature& signature, int flags, const QString& deprecation)
    : Member(declaringClass, index)
    , m_name(name)
    , m_result(result)
    , m_signature(signature)
    , m_flags(flags)
    , m_deprecation(deprecation)
{
}

SharedPtr<Object> Method::invoke(const SharedPtr<Object>& target, const ObjectList& arguments) const
{
    ApplicationModel* application = applicationOf(this);
    Protocol::CallMethod request;
    if (!application ||
        !targetId(application, m_name + QLatin1String("()"), isStatic(), target, &request.object) ||
        !wireArguments(application, m_signature, arguments, &request.arguments))
        return nullptr;
    request.classId = declaringClass()->id();
    request.index = index();
    Protocol::ValueReply reply;
    if (!application->call(request, &reply))
        return nullptr;
    return application->makeObject(reply.value);
}

Constructor::Constructor(const Class* declaringClass, int index, const Signature& signature)
    : Member(declaringClass, index)
    , m_signature(signature)
{
}

SharedPtr<Object> Constructor::construct(const ObjectList& arguments) const
{
    ApplicationModel* application = applicationOf(this);
    Protocol::Construct request;
    if (!application || !wireArguments(application, m_signature, arguments, &request.arguments))
        return nullptr;
    request.classId = declaringClass()->id();
    request.index = index();
    Protocol::ValueReply reply;
    if (!application->call(request, &reply))
        return nullptr;
    return application->makeObject(reply.value);
}

} // namespace Torvix
