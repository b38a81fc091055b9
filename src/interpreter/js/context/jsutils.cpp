#include "interpreter/js/context/jsutils.h"

#include "engine/interpreter.h"
#include "engine/list.h"
#include "interpreter/js/bridge/jsconvert.h"
#include "interpreter/js/bridge/jsobject.h"
#include "interpreter/js/context/jsscriptargument.h"
#include "objectmodel/class.h"
#include "objectmodel/inspector.h"
#include "objectmodel/object.h"

namespace Torvix {

KJS::Value argError(KJS::ExecState* exec, KJS::ErrorType type, const QString& message)
{
    const KJS::Object error = KJS::Error::create(exec, type, message, -1, -1);
    exec->setException(error);
    return error;
}

void raiseJSException(KJS::ExecState* exec, KJS::ErrorType type, const QString& message)
{
    argError(exec, type, message);
}

KJS::Object emptyArray(KJS::ExecState* exec)
{
    return exec->interpreter()->builtinArray().construct(exec, KJS::List::empty());
}

KJS::Object arrayFromQStringList(KJS::ExecState* exec, const QStringList& list)
{
    KJS::Object array = emptyArray(exec);
    unsigned index = 0;
    for (const QString& text : list)
        array.put(exec, index++, KJS::String(text));
    return array;
}

namespace {

/** Class of an object that is no function; that of a script class comes from its constructor. */
QString objectTypeName(KJS::ExecState* exec, const KJS::Object& object)
{
    const KJS::Object constructor = KJS::Object::dynamicCast(object.get(exec, "constructor"));
    if (!constructor.isNull()) {
        const KJS::Value name = constructor.get(exec, "name");
        if (!name.isUndefined())
            return name.toString(exec).qstring();
    }
    return object.className().qstring();
}

} // namespace

QString nameOfType(KJS::ExecState* exec, const KJS::Value& value)
{
    switch (value.dispatchType()) {
    case KJS::UndefinedType:
        return QStringLiteral("Undefined");
    case KJS::NullType:
        return QStringLiteral("Null");
    case KJS::BooleanType:
        return QStringLiteral("Boolean");
    case KJS::StringType:
        return QStringLiteral("String");
    case KJS::NumberType:
        return QStringLiteral("Number");
    case KJS::ObjectType: {
        const KJS::Object object = KJS::Object::dynamicCast(value);
        return object.implementsCall() ? QStringLiteral("function") : objectTypeName(exec, object);
    }
    default:
        return QString();
    }
}

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
    const SharedPtr<Object> text = convertTo(object, stringClass, false);
    if (!text)
        return false;
    *out = text->toString();
    return true;
}

bool checkSingleArg(KJS::ExecState* exec, const KJS::List& args, const char* name)
{
    if (args.size() == 1)
        return true;
    argError(exec, KJS::SyntaxError,
             QStringLiteral("Expected exactly a single argument in call to %1()").arg(QLatin1String(name)));
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
    argError(exec, KJS::GeneralError,
             QStringLiteral("%1() takes a string argument").arg(QLatin1String(name)));
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
        *out = object->realName();
        return true;
    }
    argError(exec, KJS::TypeError, QStringLiteral("Invalid argument type"));
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
    argError(exec, KJS::TypeError, QStringLiteral("Invalid argument type"));
    return nullptr;
}

} // namespace Torvix
