#pragma once

#include "protocol/value.h"

namespace Torvix::Agent {

/**
 * The functions that clients call by name, see Protocol::RemoteCall. Throws an Error for a name that
 * there is not, and for arguments that do not fit.
 */
Protocol::Value callRemoteFunction(const QString& function, const QVector<Protocol::Value>& arguments);

} // namespace Torvix::Agent
