#include "agent/input/inputqueue.h"
#include "agent/reflection/conversions.h"
#include "agent/reflection/error.h"
#include "agent/reflection/registry.h"
#include "agent/requests/inputrequests.h"
#include "agent/requests/requests.h"
#include "agent/requests/runningcalls.h"
#include "agent/session/dispatcher.h"
#include "agent/session/wire.h"
#include "protocol/membermessages.h"

namespace Torvix::Agent {

using namespace Protocol;

namespace {

const Agent::ClassInfo& classOf(int id)
{
    if (const Agent::ClassInfo* info = Registry::instance().byId(id))
        return *info;
    throw Error(QStringLiteral("there is no class with the number %1").arg(id), ErrorClass::NoSuchObject);
}

template <class Member>
const Member& memberAt(const std::vector<Member>& members, int index, const Agent::ClassInfo& info)
{
    if (index >= 0 && index < int(members.size()))
        return members[std::size_t(index)];
    throw Error(QStringLiteral("the class %1 has no member with the number %2")
                    .arg(QString::fromLatin1(info.name))
                    .arg(index),
                ErrorClass::NoSuchObject);
}

/** `this` of a call; a copy, so that the object may be released or destroyed meanwhile. */
Value selfOf(Session& session, qint64 object)
{
    return object ? session.objects().usableAt(object) : Value();
}

/** Gives a value that a method has changed back to its reference. */
void keepChange(Session& session, qint64 object, const Value& self)
{
    if (object && self.kind == Value::Kind::Data && session.isOpen())
        session.objects().at(object).data = self.data;
}

const QByteArray& noValue()
{
    static const QByteArray body = encode(ValueReply());
    return body;
}

void getProperty(Session& session, const GetProperty& request, Responder& responder)
{
    const Agent::ClassInfo& info = classOf(request.classId);
    const Agent::PropertyInfo& property = memberAt(info.properties, request.index, info);
    if (!property.isReadable)
        throw Error(
            QStringLiteral("the property '%1' cannot be read").arg(QString::fromLatin1(property.name)));
    Value self = selfOf(session, request.object);
    const RunningCall running(responder, QByteArray());
    responder.reply(encode(ValueReply{toWire(property.get(self), session.objects())}));
}

/** A getter that fails, or an object that a getter has destroyed, leaves its value out. */
PropertyResult readOne(Session& session, const PropertyKey& key, Value& self)
{
    try {
        const Agent::ClassInfo& info = classOf(key.classId);
        const Agent::PropertyInfo& property = memberAt(info.properties, key.index, info);
        if (property.isReadable && (!self.isObject() || !self.isNull()))
            return {true, toWire(property.get(self), session.objects())};
    } catch (const Error&) {
    }
    return {};
}

void getProperties(Session& session, const GetProperties& request, Responder& responder)
{
    Value self = selfOf(session, request.object);
    PropertiesReply reply;
    reply.results.resize(request.properties.size());
    // Where one getter does not come back, the others' values are worth having.
    const RunningCall running(responder, [&reply] { return encode(reply); });
    for (int i = 0; i < request.properties.size() && !responder.isAnswered(); ++i)
        reply.results[i] = readOne(session, request.properties[i], self);
    responder.reply(encode(reply));
}

void setProperty(Session& session, const SetProperty& request, Responder& responder)
{
    const Agent::ClassInfo& info = classOf(request.classId);
    const Agent::PropertyInfo& property = memberAt(info.properties, request.index, info);
    if (!property.isWritable || !property.set)
        throw Error(
            QStringLiteral("the property '%1' cannot be written").arg(QString::fromLatin1(property.name)));
    Value self = selfOf(session, request.object);
    const Value value = fromWire(request.value, session.objects());
    const RunningCall running(responder, encode(Empty()));
    property.set(self, value);
    keepChange(session, request.object, self);
    responder.reply(encode(Empty()));
}

bool returnsNothing(const Agent::MethodInfo& method)
{
    return method.result.name == "void" && !(method.result.flags & TypeUse::Pointer);
}

std::vector<Value> argumentsOf(Session& session, const QVector<Protocol::Value>& given,
                               const Agent::MethodInfo& method)
{
    if (given.size() != int(method.arguments.size()))
        throw Error(QStringLiteral("%1 takes %2 arguments, %3 were given")
                        .arg(QString::fromLatin1(method.signature()))
                        .arg(method.arguments.size())
                        .arg(given.size()));
    return fromWire(given, session.objects());
}

void callMethod(Session& session, const CallMethod& request, Responder& responder)
{
    const Agent::ClassInfo& info = classOf(request.classId);
    const Agent::MethodInfo& method = memberAt(info.methods, request.index, info);
    Value self = selfOf(session, request.object);
    const std::vector<Value> arguments = argumentsOf(session, request.arguments, method);
    const RunningCall running(responder, returnsNothing(method) ? noValue() : QByteArray());
    const quint64 inputBefore = InputQueue::instance().posted();
    const Value result = method.invoke(self, arguments);
    keepChange(session, request.object, self);
    const QByteArray body = encode(ValueReply{toWire(result, session.objects())});
    // An action is answered when the application has had its input.
    if (InputQueue::instance().posted() != inputBefore)
        replyAfterInput(responder, body);
    else
        responder.reply(body);
}

ValueReply construct(Session& session, const Construct& request)
{
    const Agent::ClassInfo& info = classOf(request.classId);
    const Agent::MethodInfo& constructor = memberAt(info.constructors, request.index, info);
    Value none;
    const Value made = constructor.invoke(none, argumentsOf(session, request.arguments, constructor));
    return ValueReply{toWire(made, session.objects())};
}

} // namespace

void registerMemberRequests(Dispatcher& dispatcher)
{
    dispatcher.onDeferred<GetProperty>(getProperty);
    dispatcher.onDeferred<GetProperties>(getProperties);
    dispatcher.onDeferred<SetProperty>(setProperty);
    dispatcher.onDeferred<CallMethod>(callMethod);
    dispatcher.on<Construct>(construct);
    dispatcher.on<Convert>([](Session& session, const Convert& request) {
        const Value value = fromWire(request.value, session.objects());
        Protocol::Value converted =
            toWire(convertValue(value, classNameOf(request.classId)), session.objects());
        // A cast keeps the object but shows it as the class that was asked for.
        if (converted.kind == Protocol::Value::Kind::Object)
            converted.object.classId = request.classId;
        return ValueReply{converted};
    });
    dispatcher.on<Compare>([](Session& session, const Compare& request) {
        return FlagReply{
            isSame(fromWire(request.first, session.objects()), fromWire(request.second, session.objects()))};
    });
    dispatcher.on<ToText>([](Session& session, const ToText& request) {
        return TextReply{session.objects().usableAt(request.object).toText()};
    });
    dispatcher.on<Release>([](Session& session, const Release& request) {
        for (const ReleasedRef& released : request.objects)
            session.objects().release(released.object, released.count);
        return Empty();
    });
}

} // namespace Torvix::Agent
