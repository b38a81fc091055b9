#pragma once

#include "protocol/message.h"
#include "protocol/value.h"

#include <QString>
#include <QVector>

/** Events that the application gets: handlers for them, and events and input that a test sends. */
namespace Torvix::Protocol {

enum class HandlerScope { Global = 0, Object = 1, Type = 2, Last = Type };

/** Fails for an unknown event name, naming those that there are. */
struct InstallHandler
{
    static constexpr auto number = RequestNumber::InstallHandler;
    using Reply = Empty;
    HandlerScope scope = HandlerScope::Global;
    qint64 object = 0;
    QString typeName;
    QString eventName;
    /** Sent back with each event; means nothing to the agent. */
    QString handler;
    TORVIX_WIRE_FIELDS(scope, object, typeName, eventName, handler)
};

/** Fails when there is no such handler. */
struct UninstallHandler
{
    static constexpr auto number = RequestNumber::UninstallHandler;
    using Reply = Empty;
    HandlerScope scope = HandlerScope::Global;
    qint64 object = 0;
    QString typeName;
    QString eventName;
    QString handler;
    TORVIX_WIRE_FIELDS(scope, object, typeName, eventName, handler)
};

/** An event for which InstallHandler asked. The application does not wait for the handler. */
struct EventHandled
{
    static constexpr auto number = PushNumber::EventHandled;
    QString handler;
    QString eventName;
    /** The object that got the event. Counts as a reference, as do those in the arguments. */
    ObjectRef object;
    QVector<Value> arguments;
    TORVIX_WIRE_FIELDS(handler, eventName, object, arguments)
};

/** An event of a class that the agent registers, made with its constructor's arguments. */
struct SendEvent
{
    static constexpr auto number = RequestNumber::SendEvent;
    using Reply = Empty;
    int eventClassId = 0;
    qint64 target = 0;
    QVector<Value> arguments;
    TORVIX_WIRE_FIELDS(eventClassId, target, arguments)
};

enum MouseActionFlag : quint32 {
    MouseHasObject = 1,
    MouseHasModifiers = 2,
    MouseHasButton = 4,
    MouseHasPosition = 8
};
enum class MouseActionKind { Move = 0, Press = 1, Release = 2, Last = Release };

/**
 * A part of a click. The flags say what is given: without an object the position is global (as is
 * the pointer's last one without a position); without a position the object's centre.
 */
struct MouseAction
{
    static constexpr auto number = RequestNumber::MouseAction;
    using Reply = Empty;
    MouseActionKind kind = MouseActionKind::Move;
    quint32 flags = 0;
    qint64 object = 0;
    int x = 0;
    int y = 0;
    /** As scripts name them: 1 left, 2 middle, 4 right, ... (shared/input). */
    int button = 1;
    int modifiers = 0;
    TORVIX_WIRE_FIELDS(kind, flags, object, x, y, button, modifiers)
};

} // namespace Torvix::Protocol
