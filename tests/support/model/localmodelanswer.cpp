#include "protocol/applicationmessages.h"
#include "protocol/classmessages.h"
#include "protocol/eventmessages.h"
#include "protocol/lookupmessages.h"
#include "protocol/waitmessages.h"
#include "support/model/localmodelstate.h"

namespace Torvix {

using namespace Protocol;

template <class Request>
void LocalModel::Answer::answer(const QByteArray& body)
{
    Request request;
    typename Request::Reply reply;
    if (!decode(body, &request))
        fail(ErrorClass::Malformed, QStringLiteral("a request that cannot be read"));
    else if (handle(request, &reply))
        *m_reply = encode(reply);
}

void LocalModel::Answer::give(RequestNumber number, const QByteArray& body)
{
    switch (number) {
    case RequestNumber::Ping:
        return answer<Ping>(body);
    case RequestNumber::ClassById:
        return answer<ClassById>(body);
    case RequestNumber::ClassByName:
        return answer<ClassByName>(body);
    case RequestNumber::GlobalClass:
        return answer<GlobalClass>(body);
    case RequestNumber::NamespaceByName:
        return answer<NamespaceByName>(body);
    case RequestNumber::GetProperty:
        return answer<GetProperty>(body);
    case RequestNumber::GetProperties:
        return answer<GetProperties>(body);
    case RequestNumber::SetProperty:
        return answer<SetProperty>(body);
    case RequestNumber::CallMethod:
        return answer<CallMethod>(body);
    case RequestNumber::Construct:
        return answer<Construct>(body);
    case RequestNumber::Convert:
        return answer<Convert>(body);
    case RequestNumber::Compare:
        return answer<Compare>(body);
    case RequestNumber::ToText:
        return answer<ToText>(body);
    case RequestNumber::Find:
        return answer<Find>(body);
    case RequestNumber::FindAll:
        return answer<FindAll>(body);
    case RequestNumber::WaitFor:
        return answer<WaitFor>(body);
    case RequestNumber::RealName:
        return answer<RealName>(body);
    case RequestNumber::RemoteCall:
        return answer<RemoteCall>(body);
    case RequestNumber::InstallHandler:
        return answer<InstallHandler>(body);
    case RequestNumber::UninstallHandler:
        return answer<UninstallHandler>(body);
    default:
        fail(ErrorClass::UnknownRequest,
             QStringLiteral("a local model has no answer to request %1").arg(int(number)));
    }
}

bool LocalModel::Answer::fail(ErrorClass errorClass, const QString& text)
{
    m_error->kind = LinkError::Answered;
    m_error->errorClass = errorClass;
    m_error->text = text;
    return false;
}

bool LocalModel::Answer::finish(const Outcome& outcome, ValueReply* reply)
{
    if (outcome.failed)
        return fail(ErrorClass::Failed, outcome.error);
    reply->value = m_state->sent(outcome.value);
    return true;
}

bool LocalModel::Answer::isUsable(qint64 object)
{
    const ObjectData* target = m_state->object(object);
    if (object == 0 || (target && target->isAlive))
        return true;
    return target ? fail(ErrorClass::Destroyed, QStringLiteral("The object has been destroyed"))
                  : fail(ErrorClass::NoSuchObject, QStringLiteral("There is no object %1").arg(object));
}

// -- classes

ClassReply LocalModel::Answer::describe(ClassData* described)
{
    ClassReply reply;
    QVector<ClassData*> open;
    if (described)
        open.append(described);
    for (int i = 0; i < open.size(); ++i) {
        reply.classes.append(open[i]->info);
        for (const ClassLink& link : qAsConst(open[i]->info.superClasses))
            if (!open.contains(m_state->classById(link.id)))
                open.append(m_state->classById(link.id));
    }
    for (const auto& entry : m_state->classes)
        reply.mentioned.append(entry->info.self);
    return reply;
}

bool LocalModel::Answer::inherits(int classId, int ancestor)
{
    if (classId == ancestor)
        return true;
    const ClassData* data = m_state->classById(classId);
    for (int i = 0; data && i < data->info.superClasses.size(); ++i)
        if (inherits(data->info.superClasses[i].id, ancestor))
            return true;
    return false;
}

bool LocalModel::Answer::handle(const Ping&, Empty*)
{
    return true;
}

bool LocalModel::Answer::handle(const ClassById& request, ClassReply* reply)
{
    *reply = describe(m_state->classById(request.id));
    return true;
}

bool LocalModel::Answer::handle(const ClassByName& request, ClassReply* reply)
{
    *reply = describe(m_state->classByName(request.name));
    return true;
}

bool LocalModel::Answer::handle(const GlobalClass&, ClassReply* reply)
{
    *reply = describe(m_state->classById(m_state->globalClass));
    return true;
}

bool LocalModel::Answer::handle(const NamespaceByName& request, NamespaceReply* reply)
{
    reply->name = request.name;
    for (const auto& entry : m_state->classes) {
        const QString& inside = entry->info.namespaceName;
        reply->found =
            reply->found || inside == request.name || inside.startsWith(request.name + QLatin1String("::"));
    }
    return true;
}

// -- members

bool LocalModel::Answer::handle(const GetProperty& request, ValueReply* reply)
{
    const ClassData* data = m_state->classById(request.classId);
    if (!isUsable(request.object))
        return false;
    if (!data || request.index < 0 || request.index >= data->getters.size() || !data->getters[request.index])
        return fail(ErrorClass::NoSuchObject, QStringLiteral("There is no such property"));
    return finish(data->getters[request.index](request.object), reply);
}

bool LocalModel::Answer::handle(const GetProperties& request, PropertiesReply* reply)
{
    for (const PropertyKey& key : request.properties) {
        ValueReply value;
        const bool isRead = handle(GetProperty{request.object, key.classId, key.index}, &value);
        reply->results.append({isRead, value.value});
    }
    *m_error = LinkError();
    return true;
}

bool LocalModel::Answer::handle(const SetProperty& request, Empty*)
{
    const ClassData* data = m_state->classById(request.classId);
    ValueReply ignored;
    if (!isUsable(request.object))
        return false;
    if (!data || request.index < 0 || request.index >= data->setters.size() || !data->setters[request.index])
        return fail(ErrorClass::NoSuchObject, QStringLiteral("There is no such property to set"));
    return finish(data->setters[request.index](request.object, request.value), &ignored);
}

bool LocalModel::Answer::handle(const CallMethod& request, ValueReply* reply)
{
    const ClassData* data = m_state->classById(request.classId);
    if (!isUsable(request.object))
        return false;
    if (!data || request.index < 0 || request.index >= data->calls.size())
        return fail(ErrorClass::NoSuchObject, QStringLiteral("There is no such method"));
    return finish(data->calls[request.index](request.object, request.arguments), reply);
}

bool LocalModel::Answer::handle(const Construct& request, ValueReply* reply)
{
    const ClassData* data = m_state->classById(request.classId);
    if (!data || request.index < 0 || request.index >= data->constructors.size())
        return fail(ErrorClass::NoSuchObject, QStringLiteral("There is no such constructor"));
    return finish(data->constructors[request.index](0, request.arguments), reply);
}

bool LocalModel::Answer::handle(const Convert& request, ValueReply* reply)
{
    const int source = request.value.classId();
    ObjectData* target = m_state->object(request.value.object.id);
    if (target && inherits(target->ref.classId, request.classId))
        return finish(request.value, reply);
    const ClassData* from = m_state->classById(source);
    const ClassData* to = m_state->classById(request.classId);
    if (from && from->conversionsTo.contains(request.classId))
        return finish(from->conversionsTo[request.classId](request.value.object.id, {request.value}), reply);
    if (to && to->conversionsFrom.contains(source))
        return finish(to->conversionsFrom[source](0, {request.value}), reply);
    return fail(ErrorClass::BadValue, QStringLiteral("The value cannot be converted"));
}

bool LocalModel::Answer::handle(const Compare& request, FlagReply* reply)
{
    reply->flag = request.first.object.id == request.second.object.id;
    return true;
}

bool LocalModel::Answer::handle(const ToText& request, TextReply* reply)
{
    if (!isUsable(request.object))
        return false;
    const ObjectData* target = m_state->object(request.object);
    const ClassData* data = m_state->classById(target->ref.classId);
    reply->text = data ? data->info.self.name + QLatin1Char(' ') + target->name : target->name;
    return true;
}

// -- look-up

bool LocalModel::Answer::matches(const ObjectData& object, const NameConditions& name)
{
    const ClassData* data = m_state->classById(object.ref.classId);
    if (!object.isAlive || !data || !(data->info.flags & IdentityClass))
        return false;
    for (const NameCondition& condition : name) {
        if (condition.property == QLatin1String("type") && condition.text != data->info.self.name)
            return false;
        if (condition.property == QLatin1String("name") && condition.text != object.name)
            return false;
    }
    return true;
}

QVector<ObjectRef> LocalModel::Answer::allMatches(const NameConditions& name)
{
    QVector<ObjectRef> found;
    for (const ObjectData& object : m_state->objects)
        if (matches(object, name))
            found.append(object.ref);
    for (const NameCondition& condition : name)
        if (condition.property == QLatin1String("occurrence"))
            found = found.mid(condition.text.toInt() - 1, 1);
    for (const ObjectRef& ref : qAsConst(found))
        m_state->sent(Value::ofObject(ref));
    return found;
}

bool LocalModel::Answer::handle(const Find& request, ObjectReply* reply)
{
    const QVector<ObjectRef> found = allMatches(request.name);
    for (int i = 1; i < found.size(); ++i)
        --m_state->object(found[i].id)->references;
    if (found.isEmpty())
        return fail(ErrorClass::NotFound, QStringLiteral("No object has that name"));
    reply->object = found.first();
    return true;
}

bool LocalModel::Answer::handle(const FindAll& request, ObjectsReply* reply)
{
    reply->objects = allMatches(request.name);
    return true;
}

bool LocalModel::Answer::handle(const WaitFor& request, WaitReply* reply)
{
    ObjectReply found;
    Find find;
    find.name = request.name;
    if (handle(find, &found)) {
        reply->object = found.object;
        return true;
    }
    *m_error = LinkError();
    reply->failed = WaitExists;
    return true;
}

bool LocalModel::Answer::handle(const RealName& request, NameReply* reply)
{
    if (!isUsable(request.object))
        return false;
    const ObjectData* target = m_state->object(request.object);
    NameCondition type;
    type.property = QStringLiteral("type");
    type.text = m_state->classById(target->ref.classId)->info.self.name;
    NameCondition name;
    name.property = QStringLiteral("name");
    name.text = target->name;
    reply->name = {type, name};
    return true;
}

bool LocalModel::Answer::handle(const RemoteCall& request, ValueReply* reply)
{
    if (request.function != QLatin1String("addToObjectMap"))
        return fail(ErrorClass::Failed, QStringLiteral("There is no function %1").arg(request.function));
    reply->value = Value();
    return true;
}

bool LocalModel::Answer::handle(const InstallHandler& request, Empty*)
{
    return isUsable(request.object);
}

bool LocalModel::Answer::handle(const UninstallHandler& request, Empty*)
{
    return isUsable(request.object);
}

} // namespace Torvix
