#pragma once

#include "engine/error.h"
#include "engine/object.h"
#include "engine/value.h"
#include "shared/base/sharedptr.h"

#include <QString>
#include <QStringList>

/**
 * What every hand-written script function uses: raising errors, checking arguments, making arrays.
 *
 * A helper that fails has set the exception of the execution state before it returns; the caller
 * then returns at once.
 */
namespace Torvix {

class Object;

/** Makes an error and the pending exception of it. Its position is unknown: the engine fills in that of the
 * running statement. The result is what the failing function returns. */
KJS::Value argError(KJS::ExecState* exec, KJS::ErrorType type, const QString& message);
/** The same without a result. */
void raiseJSException(KJS::ExecState* exec, KJS::ErrorType type, const QString& message);

/** A new script array without elements. */
KJS::Object emptyArray(KJS::ExecState* exec);
/** A new script array of strings in the list's order. */
KJS::Object arrayFromQStringList(KJS::ExecState* exec, const QStringList& list);

/** Name of a value's type as messages show it: "Undefined", "Null", "Boolean", "String", "Number",
 *  "function", or an object's class, that of its script constructor when there is one. */
QString nameOfType(KJS::ExecState* exec, const KJS::Value& value);

/** True for a map, which stands for a real name. */
bool isObjectNameType(KJS::ExecState* exec, const KJS::Value& value);
/** The name's text: the real name of a map, otherwise the value as a string. */
QString toObjectNameType(KJS::ExecState* exec, const KJS::Value& value);

/** Takes a single string, or as first argument an object that the object model can turn into a
 *  string. `name` is the function's name for the message. */
bool parseArg(KJS::ExecState* exec, const KJS::List& args, const char* name, QString* out);
/** The same, with a map as first argument taken as a real name. */
bool parseObjectNameArg(KJS::ExecState* exec, const KJS::List& args, const char* name, QString* out);
/** Takes exactly one string or wrapped object; of an object, its real name. */
bool qstrFromStringOrObjectArg(KJS::ExecState* exec, const KJS::List& args, const char* name, QString* out);
/** Takes exactly one value that is or can become an object of the application; null on failure. */
SharedPtr<Object> unwrapSingleArg(KJS::ExecState* exec, const KJS::List& args, const char* name);

} // namespace Torvix
