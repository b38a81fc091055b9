#pragma once

#include "protocol/membermessages.h"

#include <QString>
#include <QVector>

/** The application as a whole. */
namespace Torvix::Protocol {

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

} // namespace Torvix::Protocol
