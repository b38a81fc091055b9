#pragma once

#include "protocol/codec.h"
#include "protocol/frame.h"

#include <QString>

/**
 * What the runner and the agent in the application under test say to each other.
 *
 * | header                | messages                                                         |
 * | --------------------- | ---------------------------------------------------------------- |
 * | greeting.h            | how a connection begins                                          |
 * | classmessages.h       | descriptions of classes                                          |
 * | membermessages.h      | properties, methods, constructors, values, references            |
 * | lookupmessages.h      | objects by name (namecondition.h), in the tree, on the screen    |
 * | waitmessages.h        | waiting for objects and items                                    |
 * | screenmessages.h      | bounds, pictures, highlights                                     |
 * | eventmessages.h       | event handlers, events and input                                 |
 * | usermessages.h        | picking and recording                                            |
 * | applicationmessages.h | the application as a whole                                       |
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
 *                   of the message with that number, in its order. protocol/codec.h says how each
 *                   type of field is written.
 *
 * A frame that breaks these rules (length, kind, an item that is not well formed, a body that is
 * not the structure of its number) ends the connection; nothing else is harmed. A request number
 * that the agent does not know is answered with ErrorClass::UnknownRequest.
 *
 * ## Order and re-entry
 *
 * Only the runner sends requests, only the agent pushes. The agent handles requests in order, but
 * goes on reading while the application is in a nested event loop (a modal dialog): a reply may
 * then overtake an earlier one. Pushes keep their order among each other, and a push that is sent
 * before a reply belongs before it. A request whose call opened a modal dialog is answered with
 * ErrorClass::Blocked within half a second where a value was asked for; a click or a method
 * without result is answered as done.
 */
namespace Torvix::Protocol {

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
    GetProperties = 18,
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
    EnvironmentVariable = 51
};

enum class PushNumber : quint16 {
    ObjectsDestroyed = 1,
    EventHandled = 2,
    EventCaptured = 3,
    GoingDown = 4,
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
