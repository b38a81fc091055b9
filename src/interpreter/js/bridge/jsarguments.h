#pragma once

#include "engine/value.h"
#include "shared/base/sharedptr.h"

#include <QString>

namespace KJS {
class ExecState;
class List;
} // namespace KJS

/**
 * Checks of the arguments of script functions that take objects of the application or their names.
 *
 * A helper that fails has set the exception of the execution state before it returns; the caller
 * then returns at once.
 */
namespace Torvix {

class Object;

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
