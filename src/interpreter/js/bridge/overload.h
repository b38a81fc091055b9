#pragma once

#include "engine/list.h"
#include "engine/value.h"
#include "interpreter/base/interpreter.h"
#include "objectmodel/signature.h"

#include <QString>

#include <vector>

/** Which overload of the application a script call means. */
namespace Torvix {

class Class;

/**
 * How well a value fits an argument, 0 (not at all) to 100 (exactly).
 *
 * Integers prefer integer arguments over doubles (98) and booleans (99), a subclass loses one point a
 * step up to the argument's class, a conversion costs more.
 */
int matchFactor(KJS::ExecState* exec, const KJS::Value& value, const Argument& argument);

/**
 * Chooses among the overloads of `name`, each with the class that declares it, for a call on `cls`,
 * and converts the arguments.
 *
 * @return the overload's index with `objects` filled; -1 with the exception set when none matches,
 *         when several match equally well, or when an argument cannot be converted
 */
int findMatch(KJS::ExecState* exec, const KJS::List& args, const Class* cls,
              const std::vector<const Signature*>& signatures, const std::vector<const Class*>& classes,
              const QString& name, ObjectList* objects);

/** What each element of an argument that takes a sequence has to be. */
Argument elementOf(const Argument& list);

/** A value's type for messages: its primitive type, or the class name of an object. */
QString plainTypeName(KJS::ExecState* exec, const KJS::Value& value);

} // namespace Torvix
