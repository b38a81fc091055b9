#pragma once

#include "agent/reflection/value.h"

#include <QByteArrayList>

namespace Torvix::Agent {

/** Classes whose values convert to `className`, apart from its own and its subclasses. */
QByteArrayList convertibleFrom(const QByteArray& className);

/** Classes to which values of `className` convert, apart from its own and its superclasses. */
QByteArrayList convertibleTo(const QByteArray& className);

/** A conversion that the two lists announce, or a cast along the inheritance. Throws otherwise. */
Value convertValue(const Value& value, const QByteArray& className);

/** The same object, or equal values. */
bool isSame(const Value& first, const Value& second);

} // namespace Torvix::Agent
