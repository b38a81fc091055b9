#include "objectmodel/applicationmodel.h"
#include "objectmodel/inspector.h"
#include "protocol/membermessages.h"

namespace Torvix {

namespace {

using Protocol::Value;
using Protocol::ValueReply;

/** The application that a member belongs to; a built-in type has no members that could be called. */
Result<ApplicationModel*> applicationOf(const Member* member)
{
    if (ApplicationModel* application = member->declaringClass()->application())
        return application;
    return Failure{
        QStringLiteral("%1 has no members in an application").arg(member->declaringClass()->name())};
}

/** The id of the object that a member is used on, 0 for a static one. */
Result<qint64> targetId(ApplicationModel* application, const QString& member, bool isStatic,
                        const SharedPtr<Object>& target)
{
    if (isStatic)
        return 0;
    if (!target)
        return Failure{QStringLiteral("%1 needs an object: it is not static").arg(member)};
    if (target->isNull())
        return Failure{QStringLiteral("%1 cannot be used on a null %2").arg(member, target->className())};
    return application->remoteId(target);
}

Result<QVector<Value>> wireArguments(ApplicationModel* application, const Signature& signature,
                                     const ObjectList& arguments)
{
    if (arguments.size() != signature.count())
        return Failure{
            QStringLiteral("%1 arguments are needed, not %2").arg(signature.count()).arg(arguments.size())};
    QVector<Value> values;
    for (const SharedPtr<Object>& argument : arguments) {
        const Result<Value> value = application->toWire(argument);
        if (!value)
            return value.failure();
        values.append(*value);
    }
    return values;
}

/** Asks for a value with a request whose other fields are filled. */
template <class Request>
Result<SharedPtr<Object>> askForValue(ApplicationModel* application, const Member* member, Request request)
{
    request.classId = member->declaringClass()->id();
    request.index = member->index();
    return application->call(request).then(
        [application](const ValueReply& reply) { return application->makeObject(reply.value); });
}

} // namespace

Property::Property(const Class* declaringClass, int index, const Argument& type, int flags)
    : Member(declaringClass, index)
    , m_type(type)
    , m_flags(flags)
{
}

Result<SharedPtr<Object>> Property::get(const SharedPtr<Object>& object) const
{
    const Result<ApplicationModel*> application = applicationOf(this);
    if (!application)
        return application.failure();
    const Result<qint64> target = targetId(*application, name(), isStatic(), object);
    if (!target)
        return target.failure();
    Protocol::GetProperty request;
    request.object = *target;
    return askForValue(*application, this, request);
}

QVector<const Property*> Property::readable(const Class* objectClass)
{
    QVector<const Property*> found;
    for (int index = 0; index < objectClass->numProperties(); ++index)
        if (objectClass->property(index)->isReadable())
            found.append(objectClass->property(index));
    return found;
}

Result<ObjectList> Property::getAll(const SharedPtr<Object>& object,
                                    const QVector<const Property*>& properties)
{
    if (properties.isEmpty())
        return ObjectList();
    const Result<ApplicationModel*> application = applicationOf(properties.first());
    if (!application)
        return application.failure();
    const Result<qint64> target = targetId(*application, QStringLiteral("Reading properties"), false, object);
    if (!target)
        return target.failure();
    Protocol::GetProperties request;
    request.object = *target;
    for (const Property* property : properties)
        request.properties.append({property->declaringClass()->id(), property->index()});
    const Result<Protocol::PropertiesReply> reply = (*application)->call(request);
    if (!reply)
        return reply.failure();
    ObjectList values(properties.size());
    for (int i = 0; i < qMin(values.size(), reply->results.size()); ++i)
        if (reply->results[i].isRead)
            values[i] = (*application)->makeObject(reply->results[i].value);
    return values;
}

Result<void> Property::set(const SharedPtr<Object>& object, const SharedPtr<Object>& value) const
{
    const Result<ApplicationModel*> application = applicationOf(this);
    if (!application)
        return application;
    const Result<qint64> target = targetId(*application, name(), isStatic(), object);
    if (!target)
        return target;
    const Result<Value> wireValue = (*application)->toWire(value);
    if (!wireValue)
        return wireValue;
    Protocol::SetProperty request;
    request.object = *target;
    request.value = *wireValue;
    request.classId = declaringClass()->id();
    request.index = index();
    return (*application)->call(request);
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

Result<SharedPtr<Object>> Method::invoke(const SharedPtr<Object>& target, const ObjectList& arguments) const
{
    const Result<ApplicationModel*> application = applicationOf(this);
    if (!application)
        return application.failure();
    const Result<qint64> id = targetId(*application, m_name + QLatin1String("()"), isStatic(), target);
    if (!id)
        return id.failure();
    const Result<QVector<Value>> values = wireArguments(*application, m_signature, arguments);
    if (!values)
        return values.failure();
    Protocol::CallMethod request;
    request.object = *id;
    request.arguments = *values;
    return askForValue(*application, this, request);
}

Constructor::Constructor(const Class* declaringClass, int index, const Signature& signature)
    : Member(declaringClass, index)
    , m_signature(signature)
{
}

Result<SharedPtr<Object>> Constructor::construct(const ObjectList& arguments) const
{
    const Result<ApplicationModel*> application = applicationOf(this);
    if (!application)
        return application.failure();
    const Result<QVector<Value>> values = wireArguments(*application, m_signature, arguments);
    if (!values)
        return values.failure();
    Protocol::Construct request;
    request.arguments = *values;
    return askForValue(*application, this, request);
}

} // namespace Torvix
