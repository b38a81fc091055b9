#pragma once

#include "protocol/frame.h"
#include "protocol/value.h"

#include <QStringList>

/**
 * Every message between the runner and the agent in the application under test.
 *
 * ## Bytes
 *
 * Both directions are a sequence of frames. All numbers are big endian.
 *
 *     offset  size  content
 *     0       4     n: bytes that follow, 7 to 64 MiB (to 4096 before both have greeted)
 *     4       1     kind: 1 hello, 2 request, 3 reply, 4 error, 5 push
 *     5       4     id: of a request, chosen by the runner; a reply or error repeats it;
 *                   0 in a request: no reply is wanted; 0 in a hello and a push
 *     9       2     number: of a request RequestNumber, repeated in its reply; of an error
 *                   ErrorClass; of a push PushNumber; of a hello 0
 *     11      n-7   body: exactly one CBOR item (RFC 8949): an array with one item for each field
 *                   of the structure below, in its order. protocol/codec.h says how each type of
 *                   field is written.
 *
 * A frame that breaks these rules (length, kind, an item that is not well formed, a body that is
 * not the structure of its number) ends the connection; nothing else is harmed. A request number
 * that the agent does not know is answered with ErrorClass::UnknownRequest.
 *
 * ## Greeting
 *
 * The side that connected sends Hello first, with the token. The other side compares it in
 * constant time and closes the connection without a word when it differs; otherwise it answers
 * with a Hello whose token is empty. Other frames before that close the connection. The major
 * version must be the same on both sides, else the connection is closed after an Error frame (id
 * 0, ErrorClass::Refused) with a text that says both versions. A higher minor version only adds
 * requests and pushes.
 *
 * - Started by us: the agent connects to the socket that TORVIX_AGENT_SOCKET names (a path; or
 *   `host:port` on loopback), with the token of TORVIX_AGENT_TOKEN (32 hexadecimal digits).
 *   Programs that the application starts inherit both and connect as well.
 * - Attach: an application started with TORVIX_AGENT_LISTEN (a path, or `host:port`) waits there.
 *   The token is that of TORVIX_AGENT_TOKEN; where that is unset and the address is a path, the
 *   agent makes one and writes its 32 digits to `<path>.token` (mode 0600). The socket has mode
 *   0600. One runner at a time; the agent waits for the next when one has gone.
 *
 * ## Order and re-entry
 *
 * Only the runner sends requests, only the agent pushes. The agent handles requests in order, but
 * goes on reading while the application is in a nested event loop (a modal dialog): a reply may
 * then overtake an earlier one. Pushes keep their order among each other, and a push that is sent
 * before a reply belongs before it. A request whose call opened a modal dialog is answered with
 * ErrorClass::Blocked within half a second where a value was asked for; a click or a method
 * without result is answered as done.
 *
 * ## Class descriptions
 *
 * Members are addressed by the class that declares them and their position in its description, so
 * that a description never changes once it was sent. Inherited members are not repeated.
 */
namespace Torvix::Protocol {

constexpr int majorVersion = 1;
constexpr int minorVersion = 0;
constexpr int tokenSize = 16;

enum class Role { Runner = 1, Agent = 2, Last = Agent };

struct Hello
{
    /** Always "torvix". */
    QString magic = QStringLiteral("torvix");
    int major = majorVersion;
    int minor = minorVersion;
    Role role = Role::Runner;
    /** tokenSize bytes from the side that connected, else empty. */
    QByteArray token;
    /** Of the sending process; the rest is empty when a runner sends. */
    qint64 pid = 0;
    QString applicationName;
    QString executable;
    QStringList arguments;
    QString workingDirectory;
    QString qtVersion;
    QString osName;
    TORVIX_WIRE_FIELDS(magic, major, minor, role, token, pid, applicationName, executable, arguments,
                       workingDirectory, qtVersion, osName)
};

enum class RequestNumber : quint16 {
    Ping = 1,
    ClassById = 2,
    ClassByName = 3,
    NamespaceByName = 4,
    GlobalClass = 5,
    GetProperty = 10,
    SetProperty = 11,
    CallMethod = 12,
    Construct = 13,
    Convert = 14,
    Compare = 15,
    ToText = 16,
    Release = 17,
    Find = 20,
    FindAll = 21,
    RealName = 22,
    Children = 23,
    Parent = 24,
    TopLevels = 25,
    FindItem = 26,
    ObjectAt = 27,
    WaitFor = 28,
    GlobalBounds = 30,
    Screenshot = 31,
    Highlight = 32,
    Pick = 33,
    InstallHandler = 40,
    UninstallHandler = 41,
    SendEvent = 42,
    MouseAction = 43,
    Record = 44,
    RemoteCall = 50,
    EnvironmentVariable = 51,
    Batch = 52
};

enum class PushNumber : quint16 {
    ObjectsDestroyed = 1,
    EventHandled = 2,
    EventCaptured = 3,
    GoingDown = 4,
    Output = 5,
    ClassesChanged = 6,
    Picked = 7
};

/** Why a request failed; the body of an error frame is ErrorText. */
enum class ErrorClass : quint16 {
    /** The operation itself failed. */
    Failed = 1,
    UnknownRequest = 2,
    /** The body of a request was no such structure (sent before the connection is closed). */
    Malformed = 3,
    /** An id, class or member that the agent never gave out or that was released. */
    NoSuchObject = 4,
    /** The object was there and has been destroyed. */
    Destroyed = 5,
    /** A look-up found nothing; the text says what came closest. */
    NotFound = 6,
    /** A value that cannot become the type that is needed. */
    BadValue = 7,
    /** The application is in a modal dialog that the call itself opened. */
    Blocked = 8,
    /** The greeting was refused. */
    Refused = 9,
    Last = Refused
};

struct ErrorText
{
    QString text;
    TORVIX_WIRE_FIELDS(text)
};

// ---------------------------------------------------------------------------------------------
// Descriptions of classes

/** A class that is mentioned; its description is fetched when its members are needed. */
struct ClassLink
{
    int id = VoidClass;
    /** With its namespaces: `Ns::Thing`. */
    QString name;
    TORVIX_WIRE_FIELDS(id, name)
};

/** The type of an argument, a property or a result. */
struct TypeInfo
{
    int classId = VoidClass;
    Attribute attribute;
    /** An enumerated type has class id 1, and names the class that declares it, else -1 and "". */
    int enumClassId = -1;
    QString enumName;
    TORVIX_WIRE_FIELDS(classId, attribute, enumClassId, enumName)
};

struct ArgumentInfo
{
    QString name;
    TypeInfo type;
    /** As C++ writes it, to show only: an overload with defaults is listed once for each count. */
    QString defaultValue;
    TORVIX_WIRE_FIELDS(name, type, defaultValue)
};

enum PropertyFlag : quint32 { ReadableProperty = 1, WritableProperty = 2, StaticProperty = 4 };

struct PropertyInfo
{
    QString name;
    TypeInfo type;
    quint32 flags = ReadableProperty;
    TORVIX_WIRE_FIELDS(name, type, flags)
};

enum MethodFlag : quint32 { StaticMethod = 1 };

struct MethodInfo
{
    QString name;
    TypeInfo result;
    QVector<ArgumentInfo> arguments;
    quint32 flags = 0;
    /** Why the method should not be used any more; empty when it may be. */
    QString deprecation;
    TORVIX_WIRE_FIELDS(name, result, arguments, flags, deprecation)
};

struct ConstructorInfo
{
    QVector<ArgumentInfo> arguments;
    TORVIX_WIRE_FIELDS(arguments)
};

struct EnumKey
{
    QString name;
    int value = 0;
    TORVIX_WIRE_FIELDS(name, value)
};

struct EnumInfo
{
    QString name;
    bool isFlag = false;
    QVector<EnumKey> keys;
    TORVIX_WIRE_FIELDS(name, isFlag, keys)
};

enum ClassFlag : quint32 {
    /** Objects with an identity and a name (QObject); otherwise a value type. */
    IdentityClass = 1
};

struct ClassInfo
{
    ClassLink self;
    /** Of the namespace, "" for the global one. */
    QString namespaceName;
    quint32 flags = 0;
    /** Direct superclasses, the chief one first. */
    QVector<ClassLink> superClasses;
    QVector<PropertyInfo> properties;
    QVector<MethodInfo> methods;
    QVector<ConstructorInfo> constructors;
    QVector<EnumInfo> enumerators;
    /** Ids of classes whose values convert to this class, and into which its values convert. */
    QVector<int> convertibleFrom;
    QVector<int> convertibleTo;
    TORVIX_WIRE_FIELDS(self, namespaceName, flags, superClasses, properties, methods, constructors,
                       enumerators, convertibleFrom, convertibleTo)
};

/** The class that was asked for first, then all its superclasses; empty when there is none. */
struct ClassReply
{
    QVector<ClassInfo> classes;
    /** Names of all classes that the descriptions mention by id only. */
    QVector<ClassLink> mentioned;
    TORVIX_WIRE_FIELDS(classes, mentioned)
};

struct ClassById
{
    static constexpr auto number = RequestNumber::ClassById;
    using Reply = ClassReply;
    int id = 0;
    TORVIX_WIRE_FIELDS(id)
};

struct ClassByName
{
    static constexpr auto number = RequestNumber::ClassByName;
    using Reply = ClassReply;
    QString name;
    TORVIX_WIRE_FIELDS(name)
};

/** The class whose members are global functions, properties and constants; empty when none. */
struct GlobalClass : Empty
{
    static constexpr auto number = RequestNumber::GlobalClass;
    using Reply = ClassReply;
};

struct NamespaceReply
{
    bool found = false;
    QString name;
    TORVIX_WIRE_FIELDS(found, name)
};

/** Found when some known class lies in it or below it. */
struct NamespaceByName
{
    static constexpr auto number = RequestNumber::NamespaceByName;
    using Reply = NamespaceReply;
    QString name;
    TORVIX_WIRE_FIELDS(name)
};

// ---------------------------------------------------------------------------------------------
// Members, values, references

struct ValueReply
{
    Value value;
    TORVIX_WIRE_FIELDS(value)
};

/** `object` 0 for a static property; `index` counts in the properties of `classId` itself. */
struct GetProperty
{
    static constexpr auto number = RequestNumber::GetProperty;
    using Reply = ValueReply;
    qint64 object = 0;
    int classId = 0;
    int index = 0;
    TORVIX_WIRE_FIELDS(object, classId, index)
};

struct SetProperty
{
    static constexpr auto number = RequestNumber::SetProperty;
    using Reply = Empty;
    qint64 object = 0;
    int classId = 0;
    int index = 0;
    Value value;
    TORVIX_WIRE_FIELDS(object, classId, index, value)
};

/** `object` 0 for a static method; the arguments are already those of the overload. */
struct CallMethod
{
    static constexpr auto number = RequestNumber::CallMethod;
    using Reply = ValueReply;
    qint64 object = 0;
    int classId = 0;
    int index = 0;
    QVector<Value> arguments;
    TORVIX_WIRE_FIELDS(object, classId, index, arguments)
};

struct Construct
{
    static constexpr auto number = RequestNumber::Construct;
    using Reply = ValueReply;
    int classId = 0;
    int index = 0;
    QVector<Value> arguments;
    TORVIX_WIRE_FIELDS(classId, index, arguments)
};

/** A conversion that the class descriptions announce, and a cast to a sub- or superclass. */
struct Convert
{
    static constexpr auto number = RequestNumber::Convert;
    using Reply = ValueReply;
    Value value;
    int classId = 0;
    TORVIX_WIRE_FIELDS(value, classId)
};

struct FlagReply
{
    bool flag = false;
    TORVIX_WIRE_FIELDS(flag)
};

/** The same QObject, or equal values. */
struct Compare
{
    static constexpr auto number = RequestNumber::Compare;
    using Reply = FlagReply;
    Value first;
    Value second;
    TORVIX_WIRE_FIELDS(first, second)
};

struct TextReply
{
    QString text;
    TORVIX_WIRE_FIELDS(text)
};

/** A text for people: a value's parts, or the class and object name of a QObject. */
struct ToText
{
    static constexpr auto number = RequestNumber::ToText;
    using Reply = TextReply;
    qint64 object = 0;
    TORVIX_WIRE_FIELDS(object)
};

struct ReleasedRef
{
    qint64 object = 0;
    /** How many of the references that the agent counted are given back. */
    qint64 count = 1;
    TORVIX_WIRE_FIELDS(object, count)
};

/** Sent with request id 0. Unknown ids are ignored. */
struct Release
{
    static constexpr auto number = RequestNumber::Release;
    using Reply = Empty;
    QVector<ReleasedRef> objects;
    TORVIX_WIRE_FIELDS(objects)
};

// ---------------------------------------------------------------------------------------------
// Names, look-up, waiting

enum class Match { Exact = 0, RegularExpression = 1, Wildcard = 2, Last = Wildcard };

/**
 * One condition of a real name. The property's value is compared as text: booleans as `true` and
 * `false`, numbers without superfluous digits, an enumeration by its key or number. A regular
 * expression (QRegularExpression, Unicode) and a wildcard (`*`, `?`, `[...]`) match the whole text.
 *
 * Keys with a meaning of their own: `type` the class name as the object itself has it, `name` the
 * object name, `visible`, `occurrence` (the n-th match from 1, in tree order), and the nested
 * `window` (the top-level window), `container` (an ancestor), `buddy` (the widget of a label).
 */
struct NameCondition
{
    QString property;
    Match match = Match::Exact;
    QString text;
    /** Of a nested name; then match and text are not used. */
    bool isNested = false;
    QVector<NameCondition> nested;
    TORVIX_WIRE_FIELDS(property, match, text, isNested, nested)
};

/** A real name: all conditions must hold. */
using NameConditions = QVector<NameCondition>;

struct ObjectReply
{
    /** Null reference (id 0) when there is none. */
    ObjectRef object;
    TORVIX_WIRE_FIELDS(object)
};

struct ObjectsReply
{
    QVector<ObjectRef> objects;
    TORVIX_WIRE_FIELDS(objects)
};

/** The first match in tree order. ErrorClass::NotFound with the nearest miss otherwise. */
struct Find
{
    static constexpr auto number = RequestNumber::Find;
    using Reply = ObjectReply;
    NameConditions name;
    TORVIX_WIRE_FIELDS(name)
};

struct FindAll
{
    static constexpr auto number = RequestNumber::FindAll;
    using Reply = ObjectsReply;
    NameConditions name;
    TORVIX_WIRE_FIELDS(name)
};

struct NameReply
{
    NameConditions name;
    TORVIX_WIRE_FIELDS(name)
};

/** A name that finds exactly this object now, as short as the agent can make it. */
struct RealName
{
    static constexpr auto number = RequestNumber::RealName;
    using Reply = NameReply;
    qint64 object = 0;
    TORVIX_WIRE_FIELDS(object)
};

struct Children
{
    static constexpr auto number = RequestNumber::Children;
    using Reply = ObjectsReply;
    qint64 object = 0;
    TORVIX_WIRE_FIELDS(object)
};

struct Parent
{
    static constexpr auto number = RequestNumber::Parent;
    using Reply = ObjectReply;
    qint64 object = 0;
    TORVIX_WIRE_FIELDS(object)
};

struct TopLevels : Empty
{
    static constexpr auto number = RequestNumber::TopLevels;
    using Reply = ObjectsReply;
};

enum WaitCondition : quint32 {
    WaitExists = 1,
    WaitVisible = 2,
    WaitEnabled = 4,
    /** Its bounds did not change between two rounds of the event loop. */
    WaitStable = 8,
    /** No modal window shuts it off from input. */
    WaitNotBlocked = 16,
    WaitReady = WaitExists | WaitVisible | WaitEnabled | WaitStable | WaitNotBlocked
};

struct WaitReply
{
    /** The last object that matched the name, also when a condition failed; else null. */
    ObjectRef object;
    /** WaitCondition bits that did not hold at the timeout; 0 for success. */
    quint32 failed = 0;
    /** For people, when something failed: the nearest miss, or what stands in the way. */
    QString explanation;
    TORVIX_WIRE_FIELDS(object, failed, explanation)
};

/** Answered as soon as all conditions hold, at the latest after the timeout. */
struct WaitFor
{
    static constexpr auto number = RequestNumber::WaitFor;
    using Reply = WaitReply;
    NameConditions name;
    quint32 conditions = WaitReady;
    int timeoutMs = 0;
    TORVIX_WIRE_FIELDS(name, conditions, timeoutMs)
};

/**
 * An item of a view, menu, menu bar, tab bar or combo box: by the texts from the top level down,
 * or, with an empty path, by row and column from 0. Waits like WaitFor.
 */
struct FindItem
{
    static constexpr auto number = RequestNumber::FindItem;
    using Reply = WaitReply;
    qint64 container = 0;
    QStringList path;
    int row = -1;
    int column = -1;
    int timeoutMs = 0;
    TORVIX_WIRE_FIELDS(container, path, row, column, timeoutMs)
};

/** The topmost visible widget at a global position in device-independent pixels. */
struct ObjectAt
{
    static constexpr auto number = RequestNumber::ObjectAt;
    using Reply = ObjectReply;
    int x = 0;
    int y = 0;
    TORVIX_WIRE_FIELDS(x, y)
};

// ---------------------------------------------------------------------------------------------
// What is on the screen

/** Global position and size in device-independent pixels. */
struct RectReply
{
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;
    TORVIX_WIRE_FIELDS(x, y, width, height)
};

struct GlobalBounds
{
    static constexpr auto number = RequestNumber::GlobalBounds;
    using Reply = RectReply;
    qint64 object = 0;
    TORVIX_WIRE_FIELDS(object)
};

enum class ScreenshotArea { Object = 0, Window = 1, Screen = 2, Last = Screen };

/** Text in a PNG file: pixels of the device for one of the desktop; missing where that is 1. */
constexpr char pixelRatioKey[] = "devicePixelRatio";

struct ImageReply
{
    /** A PNG file in the pixels of the device, which on a scaled desktop are more than it has. */
    QByteArray png;
    TORVIX_WIRE_FIELDS(png)
};

struct Screenshot
{
    static constexpr auto number = RequestNumber::Screenshot;
    using Reply = ImageReply;
    /** Not used for Screen. */
    qint64 object = 0;
    ScreenshotArea area = ScreenshotArea::Object;
    TORVIX_WIRE_FIELDS(object, area)
};

struct Highlight
{
    static constexpr auto number = RequestNumber::Highlight;
    using Reply = Empty;
    qint64 object = 0;
    int durationMs = 1000;
    TORVIX_WIRE_FIELDS(object, durationMs)
};

/** While on, the next click of the user picks an object (pushed as Picked) and does nothing else. */
struct Pick
{
    static constexpr auto number = RequestNumber::Pick;
    using Reply = Empty;
    bool on = true;
    TORVIX_WIRE_FIELDS(on)
};

// ---------------------------------------------------------------------------------------------
// Events and input

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

/** While on, what the user does is pushed as EventCaptured. */
struct Record
{
    static constexpr auto number = RequestNumber::Record;
    using Reply = Empty;
    bool on = true;
    TORVIX_WIRE_FIELDS(on)
};

// ---------------------------------------------------------------------------------------------
// The rest

struct Ping : Empty
{
    static constexpr auto number = RequestNumber::Ping;
    using Reply = Empty;
};

/**
 * Functions by name, for what has no request of its own: "classNames" lists the known classes;
 * "addToObjectMap" (real name as text, symbolic name) tells of a new entry of the runner's object map.
 * The agent takes no notice of it: it names objects by real names only, also while it records.
 */
struct RemoteCall
{
    static constexpr auto number = RequestNumber::RemoteCall;
    using Reply = ValueReply;
    QString function;
    QVector<Value> arguments;
    TORVIX_WIRE_FIELDS(function, arguments)
};

struct EnvironmentVariable
{
    static constexpr auto number = RequestNumber::EnvironmentVariable;
    using Reply = TextReply;
    QString name;
    TORVIX_WIRE_FIELDS(name)
};

struct BatchItem
{
    int request = 0;
    QByteArray body;
    TORVIX_WIRE_FIELDS(request, body)
};

struct BatchResult
{
    /** 0 for success, else an ErrorClass; the body is then an ErrorText. */
    int error = 0;
    QByteArray body;
    TORVIX_WIRE_FIELDS(error, body)
};

struct BatchReply
{
    QVector<BatchResult> results;
    TORVIX_WIRE_FIELDS(results)
};

/**
 * Several requests in one round trip, answered in order; one that fails does not stop the rest.
 * Not allowed in it: Batch, WaitFor and FindItem with a timeout.
 */
struct Batch
{
    static constexpr auto number = RequestNumber::Batch;
    using Reply = BatchReply;
    QVector<BatchItem> requests;
    TORVIX_WIRE_FIELDS(requests)
};

// ---------------------------------------------------------------------------------------------
// Pushes

/** Ids that are dead from now on; sent before anything that was caused by it. */
struct ObjectsDestroyed
{
    static constexpr auto number = PushNumber::ObjectsDestroyed;
    QVector<qint64> objects;
    TORVIX_WIRE_FIELDS(objects)
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

/** The application leaves its event loop for good; the connection ends soon. */
struct GoingDown
{
    static constexpr auto number = PushNumber::GoingDown;
    QString reason;
    TORVIX_WIRE_FIELDS(reason)
};

enum class OutputStream { StandardOutput = 1, StandardError = 2, Last = StandardError };

/** A message of the application's own logging, where its streams cannot be captured (attach). */
struct Output
{
    static constexpr auto number = PushNumber::Output;
    OutputStream stream = OutputStream::StandardError;
    QString text;
    TORVIX_WIRE_FIELDS(stream, text)
};

/** Classes that were not there before: names that were unknown may be known now. */
struct ClassesChanged : Empty
{
    static constexpr auto number = PushNumber::ClassesChanged;
};

struct Picked
{
    static constexpr auto number = PushNumber::Picked;
    ObjectRef object;
    TORVIX_WIRE_FIELDS(object)
};

// ---------------------------------------------------------------------------------------------
// Frames of messages

template <class Request>
Frame requestFrame(quint32 id, const Request& request)
{
    return {FrameKind::Request, id, quint16(Request::number), encode(request)};
}

template <class Request>
Frame replyFrame(quint32 id, const typename Request::Reply& reply)
{
    return {FrameKind::Reply, id, quint16(Request::number), encode(reply)};
}

inline Frame errorFrame(quint32 id, ErrorClass error, const QString& text)
{
    return {FrameKind::Error, id, quint16(error), encode(ErrorText{text})};
}

template <class Push>
Frame pushFrame(const Push& push)
{
    return {FrameKind::Push, 0, quint16(Push::number), encode(push)};
}

} // namespace Torvix::Protocol
