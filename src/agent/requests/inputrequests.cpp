#include "agent/requests/inputrequests.h"

#include "agent/events/picker.h"
#include "agent/input/inputqueue.h"
#include "agent/input/keytext.h"
#include "agent/input/synthesizer.h"
#include "agent/items/target.h"
#include "agent/lookup/objecttree.h"
#include "agent/reflection/error.h"
#include "agent/reflection/registry.h"
#include "agent/requests/requests.h"
#include "agent/requests/runningcalls.h"
#include "agent/session/wire.h"
#include "protocol/eventmessages.h"
#include "protocol/usermessages.h"

#include <QCoreApplication>
#include <QEvent>
#include <QWidget>
#include <QWindow>

namespace Torvix::Agent {

using namespace Protocol;

namespace {

Input::Place placeOf(Session& session, const MouseAction& request)
{
    const QPoint position(request.x, request.y);
    const bool hasPosition = request.flags & MouseHasPosition;
    if (request.flags & MouseHasObject)
        return placeIn(session.objects().at(request.object), hasPosition ? &position : nullptr);
    const QPoint global = hasPosition ? position : Input::pointerPosition();
    QObject* object = objectAt(global);
    if (!object)
        throw Error(QStringLiteral("there is no widget at %1, %2").arg(global.x()).arg(global.y()));
    const QPoint local = object->isWidgetType() ? static_cast<QWidget*>(object)->mapFromGlobal(global)
                                                : static_cast<QWindow*>(object)->mapFromGlobal(global);
    return placeIn(Value::ofObject(object), &local);
}

void mouseAction(Session& session, const MouseAction& request, const Responder& responder)
{
    const Input::Place place = placeOf(session, request);
    const Qt::KeyboardModifiers modifiers =
        request.flags & MouseHasModifiers ? modifiersOf(request.modifiers) : Qt::KeyboardModifiers();
    const Qt::MouseButton button =
        request.flags & MouseHasButton ? Input::mouseButtonOf(request.button) : Qt::LeftButton;
    switch (request.kind) {
    case MouseActionKind::Move:
        Input::mouseMove(place, modifiers);
        break;
    case MouseActionKind::Press:
        Input::mousePress(place, button, modifiers);
        break;
    case MouseActionKind::Release:
        Input::mouseRelease(place, button, modifiers);
        break;
    }
    replyAfterInput(responder, encode(Empty()));
}

/** The constructor that takes that many arguments. */
const Agent::MethodInfo& constructorFor(const Agent::ClassInfo& info, int count)
{
    for (const Agent::MethodInfo& constructor : info.constructors)
        if (int(constructor.arguments.size()) == count)
            return constructor;
    throw Error(
        QStringLiteral("%1 cannot be made from %2 arguments").arg(QString::fromLatin1(info.name)).arg(count));
}

void sendEvent(Session& session, const SendEvent& request, const Responder& responder)
{
    const Agent::ClassInfo* info = Registry::instance().byId(request.eventClassId);
    if (!info || !Registry::instance().inherits(info->name, "QEvent"))
        throw Error(QStringLiteral("an event class is needed"), ErrorClass::NoSuchObject);
    QObject* target = session.objects().objectAt(request.target);
    Value none;
    const Value event = constructorFor(*info, request.arguments.size())
                            .invoke(none, fromWire(request.arguments, session.objects()));
    // In a turn of its own, so that an event that opens a dialog is answered as done.
    InputQueue::instance().postOnce([guard = QPointer<QObject>(target), event] {
        if (guard)
            QCoreApplication::sendEvent(guard, static_cast<QEvent*>(event.address()));
    });
    replyAfterInput(responder, encode(Empty()));
}

} // namespace

void replyAfterInput(const Responder& responder, const QByteArray& body)
{
    InputQueue::instance().whenDone([responder = Responder(responder), body](const QString& error) mutable {
        if (error.isEmpty())
            responder.reply(body);
        else
            responder.fail(ErrorClass::Failed, error);
    });
}

void registerInputRequests(Dispatcher& dispatcher)
{
    dispatcher.onDeferred<MouseAction>(mouseAction);
    dispatcher.onDeferred<SendEvent>(sendEvent);
    dispatcher.on<Pick>([](Session& session, const Pick& request) {
        Picker::instance().set(request.on ? session.shared_from_this() : nullptr);
        return Empty();
    });
}

} // namespace Torvix::Agent
