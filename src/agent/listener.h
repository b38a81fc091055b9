#pragma once

#include <QString>

namespace Torvix::Agent {

/**
 * A listening socket at a path (mode 0600) or at `host:port` (loopback addresses only).
 * @return its descriptor, -1 with the reason in `*error`
 */
int listenOn(const QString& address, QString* error);

/** The next connection, not blocking; -1 when there is none. */
int acceptFrom(int listener);

/** Writes the token's digits where only this user can read them. */
bool writeTokenFile(const QString& path, const QByteArray& text);

} // namespace Torvix::Agent
