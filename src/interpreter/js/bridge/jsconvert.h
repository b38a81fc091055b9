#pragma once

#include "engine/list.h"
#include "engine/value.h"
#include "interpreter/base/interpreter.h"
#include "shared/base/sharedptr.h"

#include <QString>

/** Values across the bridge: script to object model, object model to script. */
namespace Torvix {

class Class;
class Object;
class Signature;

/** The object for a script value; `cls` is the class that is wanted and may be null. Null for a value that
 *  cannot be converted; no exception is raised then. */
SharedPtr<Object> jsToObject(KJS::ExecState* exec, const KJS::Value& value, const Class* cls);

/** The script value of an object: built-in types become primitives, arrays and maps become script
 *  arrays and objects, everything else a wrapper. The object must not be null. */
KJS::Value jsNatify(KJS::ExecState* exec, SharedPtr<Object> object);
/** The same, as the result of a call. */
KJS::Value jsValueOf(KJS::ExecState* exec, SharedPtr<Object> object);
/** The object's text. */
KJS::Value jsToString(KJS::ExecState* exec, SharedPtr<Object> object);
/** Text of a value. */
QString QStrFromObj(KJS::ExecState* exec, const KJS::Value& value);

/** The object as one of another class, or null. `indirect` asks for a pointer or reference. */
Result<SharedPtr<Object>> convertTo(SharedPtr<Object> object, const Class* target, bool indirect);

/** Appends an object for each argument of the signature. False with the exception set on failure;
 *  what was converted until then stays in the list. */
bool jsConvertArgs(KJS::ExecState* exec, ObjectList* objects, const KJS::List& args,
                   const Signature& signature);

bool isKJSArray(const KJS::Value& value);
/** True for a plain script object that stands for a map. */
bool isKJSMap(const KJS::Value& value, const KJS::ExecState* exec);

} // namespace Torvix
