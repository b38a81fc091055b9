#include "interpreter/js/bridge/jsarguments.h"

#include "engine/list.h"
#include "interpreter/js/bridge/jsconvert.h"
#include "interpreter/js/bridge/jsobject.h"
#include "interpreter/js/bridge/jsscriptargument.h"
#include "interpreter/js/scriptobject/jsutils.h"
#include "objectmodel/class.h"
#include "objectmodel/inspector.h"
#include "objectmodel/object.h"

namespace Torvix {

bool isObjectNameType(KJS::ExecState* exec, const KJS::Value& value)
{
    return JSScriptArgument(exec, value).isMap();
}

QString toObjectNameType(KJS::ExecState* exec, const KJS::Value& value)
{
    const JSScriptArgument argument(exec, value);
    return argument.isMap() ? argument.toRealName() : argument.toString();
}

namespace {

/** The object's text when the object model can make a string of it. */
bool stringFromObject(const SharedPtr<Object>& object, QString* out)
{
    if (!object)
        return false;
    const Class* stringClass = Inspector::self()->classById(Protocol::StringClass);
    const bool indirect = object->objectAttribute().isIndirect();
    if (!object->objectClass()->canConvertTo(stringClass, indirect, false, 1))
        return false;
    const SharedPtr<Object> text = convertTo(object, stringClass, false).orNothing();
    if (!text)
        return false;
    *out = text->toString();
    return true;
}

bool checkSingleArg(KJS::ExecState* exec, const KJS::List& args, const char* name)
{
    if (args.size() == 1)
        return true;
    syntaxError(
        exec, QStringLiteral("Expected exactly a single argument in call to %1()").arg(QLatin1String(name)));
    return false;
}

} // namespace

bool parseArg(KJS::ExecState* exec, const KJS::List& args, const char* name, QString* out)
{
    const KJS::Value value = args.at(0);
    if (args.size() == 1 && value.type() == KJS::StringType) {
        *out = value.toString(exec).qstring();
        return true;
    }
    if (stringFromObject(jsUnWrap(exec, value), out))
        return true;
    generalError(exec, QStringLiteral("%1() takes a string argument").arg(QLatin1String(name)));
    return false;
}

bool parseObjectNameArg(KJS::ExecState* exec, const KJS::List& args, const char* name, QString* out)
{
    const KJS::Value value = args.at(0);
    if (!isObjectNameType(exec, value))
        return parseArg(exec, args, name, out);
    *out = toObjectNameType(exec, value);
    return true;
}

bool qstrFromStringOrObjectArg(KJS::ExecState* exec, const KJS::List& args, const char* name, QString* out)
{
    if (!checkSingleArg(exec, args, name))
        return false;
    const KJS::Value value = args.at(0);
    if (value.type() == KJS::StringType) {
        *out = value.toString(exec).qstring();
        return true;
    }
    if (const SharedPtr<Object> object = jsUnWrap(exec, value)) {
        *out = object->realName().orNothing();
        return true;
    }
    typeError(exec, QStringLiteral("Invalid argument type"));
    return false;
}

SharedPtr<Object> unwrapSingleArg(KJS::ExecState* exec, const KJS::List& args, const char* name)
{
    if (!checkSingleArg(exec, args, name))
        return nullptr;
    const KJS::Value value = args.at(0);
    if (const SharedPtr<Object> object = jsUnWrap(exec, value))
        return object;
    if (const SharedPtr<Object> object = jsToObject(exec, value, nullptr))
        return object;
    typeError(exec, QStringLiteral("Invalid argument type"));
    return nullptr;
}

} // namespace Torvix
