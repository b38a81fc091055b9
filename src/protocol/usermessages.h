#pragma once

#include "protocol/message.h"
#include "protocol/namecondition.h"
#include "protocol/value.h"

#include <QString>
#include <QStringList>
#include <QVector>

/** What the user does in the application: picking objects and recording. */
namespace Torvix::Protocol {

/** While on, the next click of the user picks an object (pushed as Picked) and does nothing else. */
struct Pick
{
    static constexpr auto number = RequestNumber::Pick;
    using Reply = Empty;
    bool on = true;
    TORVIX_WIRE_FIELDS(on)
};

struct Picked
{
    static constexpr auto number = PushNumber::Picked;
    ObjectRef object;
    TORVIX_WIRE_FIELDS(object)
};

/** While on, what the user does is pushed as EventCaptured. */
struct Record
{
    static constexpr auto number = RequestNumber::Record;
    using Reply = Empty;
    bool on = true;
    TORVIX_WIRE_FIELDS(on)
};

enum class CapturedArgKind { Plain = 0, Constructed = 1, Enumeration = 2, Last = Enumeration };

struct CapturedArg
{
    CapturedArgKind kind = CapturedArgKind::Plain;
    QString name;
    /** Of a constructed object: its class and members. */
    int classId = VoidClass;
    QVector<CapturedArg> arguments;
    QString value;
    /** Of a plain value: 4 for a text. */
    int valueType = IntClass;
    QString enumName;
    QStringList flags;
    TORVIX_WIRE_FIELDS(kind, name, classId, arguments, value, valueType, enumName, flags)
};

enum class CapturedKind { SendEvent = 0, MethodCall = 1, Comment = 2, FunctionCall = 3, Last = FunctionCall };

/** One action of the user, as a script would repeat it. */
struct EventCaptured
{
    static constexpr auto number = PushNumber::EventCaptured;
    CapturedKind kind = CapturedKind::FunctionCall;
    QString eventName;
    /** Function or method, such as `mouseClick` or `type`. */
    QString methodName;
    NameConditions objectName;
    /** Path of the item in the view, empty when none. */
    QStringList itemPath;
    QVector<CapturedArg> arguments;
    /** Milliseconds since midnight, and since the action before. */
    int timeMs = 0;
    int delayMs = 0;
    TORVIX_WIRE_FIELDS(kind, eventName, methodName, objectName, itemPath, arguments, timeMs, delayMs)
};

} // namespace Torvix::Protocol
