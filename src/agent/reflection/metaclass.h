#pragma once

#include "agent/reflection/classinfo.h"

#include <QMetaMethod>
#include <QMetaProperty>

namespace Torvix::Agent {

/** Adds what `info.metaObject` itself declares: properties, slots, invokables, signals, enums. */
void addMetaMembers(ClassInfo& info);

/** A property's value as scripts see it: enums carry their name, QVariants their content. */
Value readProperty(const QMetaProperty& property, QObject* object);

/** Throws when the value doesn't convert or the property refuses it. */
void writeProperty(const QMetaProperty& property, QObject* object, const Value& value);

/**
 * Calls a slot, invokable or signal in place. Throws when an argument doesn't convert.
 * @param info its description, which says what the types are
 */
Value invokeMethod(const QMetaMethod& method, const MethodInfo& info, QObject* object,
                   const std::vector<Value>& arguments);

} // namespace Torvix::Agent
