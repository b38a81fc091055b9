#include "agent/items/target.h"
#include "agent/lookup/namegenerator.h"
#include "agent/lookup/namematcher.h"
#include "agent/lookup/objecttree.h"
#include "agent/reflection/error.h"
#include "agent/requests/requests.h"
#include "agent/requests/screenshot.h"
#include "agent/session/dispatcher.h"
#include "agent/session/wire.h"
#include "protocol/lookupmessages.h"
#include "protocol/screenmessages.h"

namespace Torvix::Agent {

using namespace Protocol;

namespace {

ObjectRef referTo(QObject* object, Session& session)
{
    return object ? toReference(Value::ofObject(object), session.objects()) : ObjectRef();
}

template <class List>
ObjectsReply referToAll(const List& objects, Session& session)
{
    ObjectsReply reply;
    reply.objects.reserve(int(objects.size()));
    for (QObject* object : objects)
        reply.objects.append(referTo(object, session));
    return reply;
}

} // namespace

void registerTreeRequests(Dispatcher& dispatcher)
{
    dispatcher.on<Find>([](Session& session, const Find& request) {
        NameMatcher matcher(request.name);
        QObject* found = matcher.findFirst();
        if (!found)
            throw Error(QStringLiteral("Object %1 not found. %2")
                            .arg(NameMatcher::toText(request.name), matcher.nearestMiss()),
                        ErrorClass::NotFound);
        return ObjectReply{referTo(found, session)};
    });
    dispatcher.on<FindAll>([](Session& session, const FindAll& request) {
        return referToAll(NameMatcher(request.name).findAll(), session);
    });
    dispatcher.on<RealName>([](Session& session, const RealName& request) {
        return NameReply{realNameOf(session.objects().objectAt(request.object))};
    });
    dispatcher.on<Children>([](Session& session, const Children& request) {
        return referToAll(childrenOf(session.objects().objectAt(request.object)), session);
    });
    dispatcher.on<Parent>([](Session& session, const Parent& request) {
        return ObjectReply{referTo(parentOf(session.objects().objectAt(request.object)), session)};
    });
    dispatcher.on<TopLevels>(
        [](Session& session, const TopLevels&) { return referToAll(topLevelObjects(), session); });
    dispatcher.on<GlobalBounds>([](Session& session, const GlobalBounds& request) {
        const QRect bounds = globalBounds(session.objects().at(request.object));
        return RectReply{bounds.x(), bounds.y(), bounds.width(), bounds.height()};
    });
    dispatcher.on<ObjectAt>([](Session& session, const ObjectAt& request) {
        return ObjectReply{referTo(objectAt(QPoint(request.x, request.y)), session)};
    });
    dispatcher.on<Screenshot>([](Session& session, const Screenshot& request) {
        const Value target = request.object ? session.objects().at(request.object) : Value();
        return ImageReply{screenshot(target, request.area)};
    });
    dispatcher.on<Highlight>([](Session& session, const Highlight& request) {
        highlight(session.objects().at(request.object), request.durationMs);
        return Empty();
    });
}

} // namespace Torvix::Agent
