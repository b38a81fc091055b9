#pragma once

#include "protocol/codec.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

/**
 * How a connection begins.
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

} // namespace Torvix::Protocol
