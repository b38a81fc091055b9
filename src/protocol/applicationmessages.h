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
 *
 * Test data files, their names relative to the application's current folder: "testDataExists" (name)
 * answers a Bool, "testDataRemove" (name) nothing. Contents are texts in base64 (RFC 4648):
 * "testDataRead" (name, offset) answers a piece, empty at the end; "testDataWrite" (name, offset,
 * piece, whether it is the last) answers the absolute path; the file is there with the last piece.
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

} // namespace Torvix::Protocol
