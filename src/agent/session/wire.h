#pragma once

#include "agent/reflection/classinfo.h"
#include "agent/session/objecttable.h"
#include "protocol/classmessages.h"

namespace Torvix::Agent {

/** The wire's class id for a class or built-in type; unknown value types become classes without members. */
int classIdOf(const QByteArray& typeName);

/** The wire's id for a built-in type, -1 for every other. */
int builtinClassId(const QByteArray& typeName);

/** The reverse of classIdOf() for built-in types too; empty when unknown. */
QByteArray classNameOf(int classId);

/** An object or a value as a reference that `table` holds. */
Protocol::ObjectRef toReference(const Value& value, ObjectTable& table);

/** Numbers, booleans, texts, lists and maps go as they are; everything else as a reference. */
Protocol::Value toWire(const Value& value, ObjectTable& table);

/** Throws when a reference in it is not held or its object is gone. */
Value fromWire(const Protocol::Value& value, ObjectTable& table);
std::vector<Value> fromWire(const QVector<Protocol::Value>& values, ObjectTable& table);

/** The class and all its superclasses. */
Protocol::ClassReply describe(const ClassInfo& info);

} // namespace Torvix::Agent
