#pragma once

#include "engine/error.h"
#include "engine/object.h"
#include "engine/value.h"

#include <QString>
#include <QStringList>

class QDateTime;

/** What every hand-written script function uses: raising errors, making arrays and dates. */
namespace Torvix {

/** Makes an error and the pending exception of it. Its position is unknown: the engine fills in that of the
 * running statement. The result is what the failing function returns. */
KJS::Value argError(KJS::ExecState* exec, KJS::ErrorType type, const QString& message);
/** The same without a result. */
void raiseJSException(KJS::ExecState* exec, KJS::ErrorType type, const QString& message);

// argError() by class of error.
inline KJS::Value generalError(KJS::ExecState* exec, const QString& message)
{
    return argError(exec, KJS::GeneralError, message);
}
inline KJS::Value rangeError(KJS::ExecState* exec, const QString& message)
{
    return argError(exec, KJS::RangeError, message);
}
inline KJS::Value referenceError(KJS::ExecState* exec, const QString& message)
{
    return argError(exec, KJS::ReferenceError, message);
}
inline KJS::Value syntaxError(KJS::ExecState* exec, const QString& message)
{
    return argError(exec, KJS::SyntaxError, message);
}
inline KJS::Value typeError(KJS::ExecState* exec, const QString& message)
{
    return argError(exec, KJS::TypeError, message);
}

/** Whether there are that many arguments; otherwise a SyntaxError of that text is set. */
bool hasArguments(KJS::ExecState* exec, const KJS::List& args, int count, const char* usage);

/** A new script array without elements. */
KJS::Object emptyArray(KJS::ExecState* exec);
/** A new script array of strings in the list's order. */
KJS::Object arrayFromQStringList(KJS::ExecState* exec, const QStringList& list);

/** A script date with the fields of the given time, in whatever zone it is. */
KJS::Value dateValue(KJS::ExecState* exec, const QDateTime& value);

/** Name of a value's type as messages show it: "Undefined", "Null", "Boolean", "String", "Number",
 *  "function", or an object's class, that of its script constructor when there is one. */
QString nameOfType(KJS::ExecState* exec, const KJS::Value& value);

} // namespace Torvix
