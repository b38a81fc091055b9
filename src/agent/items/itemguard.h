#pragma once

#include "agent/reflection/value.h"

#include <functional>

namespace Torvix::Agent {

/**
 * Tells whether an item of an item widget or of a standard model is still there, without touching
 * it: items have no destruction signal, so their owner is asked whether it still holds that address.
 *
 * Null for pointers about which nothing can be told; those count as alive.
 */
std::function<bool()> itemGuard(const Value& value);

} // namespace Torvix::Agent
