#include "interpreter/js/scriptobject/jsutils.h"

#include "engine/interpreter.h"
#include "engine/list.h"

#include <QDateTime>

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

bool hasArguments(KJS::ExecState* exec, const KJS::List& args, int count, const char* usage)
{
    if (args.size() != count)
        syntaxError(exec, usage);
    return args.size() == count;
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

KJS::Value dateValue(KJS::ExecState* exec, const QDateTime& value)
{
    const QDate date = value.date();
    const QTime time = value.time();
    const KJS::List fields{KJS::Number(date.year()),   KJS::Number(date.month() - 1),
                           KJS::Number(date.day()),    KJS::Number(time.hour()),
                           KJS::Number(time.minute()), KJS::Number(time.second()),
                           KJS::Number(time.msec())};
    return exec->interpreter()->builtinDate().construct(exec, fields);
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

} // namespace Torvix
