#include "interpreter/js/bridge/jsscriptargument.h"

#include "engine/execstate.h"
#include "engine/object.h"
#include "engine/reference.h"
#include "interpreter/base/nativescriptobject.h"
#include "interpreter/js/bridge/jsapplicationcontext.h"
#include "interpreter/js/bridge/jsnativeobject.h"
#include "interpreter/js/bridge/jsobject.h"
#include "interpreter/js/bridge/jstestdatarecord.h"
#include "interpreter/js/scriptobject/jsutils.h"
#include "objectmodel/class.h"
#include "objectmodel/object.h"
#include "objectmodel/propertyvalue.h"

#include <QDebug>
#include <QRegularExpression>

#include <cmath>

namespace Torvix {

namespace {

/** ECMA-262's pattern as that of QRegularExpression: the two differ in how characters are written. */
QString patternOfRegExp(const QString& source, const QString& flags)
{
    static const QRegularExpression different(
        QStringLiteral(R"(\\u\{([0-9A-Fa-f]+)\}|\\u([0-9A-Fa-f]{4})|\\.|\[\^\])"));
    QString pattern = flags.contains(QLatin1Char('i')) ? QStringLiteral("(?i)") : QString();
    int done = 0;
    for (auto matches = different.globalMatch(source); matches.hasNext();) {
        const QRegularExpressionMatch match = matches.next();
        pattern += source.midRef(done, match.capturedStart() - done);
        const QString code = match.captured(1) + match.captured(2);
        if (!code.isEmpty())
            pattern += QStringLiteral("\\x{%1}").arg(code);
        else
            pattern +=
                match.captured() == QLatin1String("[^]") ? QStringLiteral("[\\s\\S]") : match.captured();
        done = match.capturedEnd();
    }
    return pattern + source.midRef(done);
}

} // namespace

JSScriptArgument::JSScriptArgument(KJS::ExecState* exec, const KJS::Value& value)
    : m_exec(exec)
    , m_value(value)
{
}

JSScriptArgument::~JSScriptArgument() = default;

QString JSScriptArgument::typeName() const
{
    return nameOfType(m_exec, m_value);
}

bool JSScriptArgument::isBoolean() const
{
    return m_value.type() == KJS::BooleanType;
}

bool JSScriptArgument::isNumber() const
{
    return m_value.type() == KJS::NumberType;
}

bool JSScriptArgument::isInteger() const
{
    if (!isNumber())
        return false;
    return double(m_value.toIntegerSimplistic(m_exec)) == m_value.toNumber(m_exec);
}

bool JSScriptArgument::isString() const
{
    return m_value.type() == KJS::StringType;
}

bool JSScriptArgument::isStringLike() const
{
    return true;
}

bool JSScriptArgument::isObject() const
{
    return isTorvixObject(m_exec, m_value);
}

bool JSScriptArgument::isClass() const
{
    return isTorvixClass(m_exec, m_value);
}

bool JSScriptArgument::isCallable() const
{
    return false;
}

bool JSScriptArgument::isList() const
{
    return m_value.isObject() && KJS::Object::dynamicCast(m_value).className() == "Array";
}

bool JSScriptArgument::isMap() const
{
    return m_value.isObject() && KJS::Object::dynamicCast(m_value).className() == "Object";
}

bool JSScriptArgument::isNative(void* type) const
{
    const KJS::ClassInfo* info = JsNativeTypePrototypeImp::getBaseTypeInfo(m_exec, type);
    return info && KJS::Object::dynamicCast(m_value).inherits(info);
}

bool JSScriptArgument::toBoolean() const
{
    return m_value.toBoolean(m_exec);
}

double JSScriptArgument::toDouble() const
{
    return m_value.toNumber(m_exec);
}

int JSScriptArgument::toInteger() const
{
    return m_value.toIntegerSimplistic(m_exec);
}

QString JSScriptArgument::toString() const
{
    return m_value.toString(m_exec).qstring();
}

SharedPtr<Object> JSScriptArgument::toObject() const
{
    return jsUnWrap(m_exec, m_value);
}

const Class* JSScriptArgument::toClass() const
{
    return jsUnWrapClass(m_exec, m_value);
}

ScriptArgument::List JSScriptArgument::toList() const
{
    const KJS::Object array = KJS::Object::dynamicCast(m_value);
    if (array.isNull())
        return List();
    const unsigned length = array.get(m_exec, "length").toUInt32(m_exec);
    List list;
    for (unsigned index = 0; index < length; ++index) {
        const KJS::Value element = array.get(m_exec, index);
        // Given up as a whole: a list that is cut short would pass for all of it.
        if (element.isUndefined())
            return List();
        list.push_back(new JSScriptArgument(m_exec, element));
    }
    return list;
}

ScriptArgument::Map JSScriptArgument::toMap() const
{
    const KJS::Object object = KJS::Object::dynamicCast(m_value);
    if (object.isNull())
        return Map();
    Map map;
    for (const KJS::Reference& reference : object.propList(m_exec, true)) {
        const KJS::Value value = reference.getValue(m_exec);
        if (value.isUndefined())
            return Map();
        map[reference.getPropertyName(m_exec).qstring()] = new JSScriptArgument(m_exec, value);
    }
    return map;
}

SharedPtr<NativeScriptObject> JSScriptArgument::toNative(void* type) const
{
    if (!isNative(type))
        return nullptr;
    auto* wrapper = dynamic_cast<JsNativeObjectImp*>(KJS::Object::dynamicCast(m_value).imp());
    return wrapper ? wrapper->object() : nullptr;
}

const TestDataRecord* JSScriptArgument::toTestDataRecord() const
{
    return unwrapTestDataRecord(m_value);
}

SharedPtr<ApplicationContext> JSScriptArgument::toApplicationContext() const
{
    return unwrapAppContext(m_value);
}

SharedPtr<Object> JSScriptArgument::convertToArgument(const Argument&) const
{
    qWarning("JSScriptArgument::convertToArgument() not implemented, yet");
    return nullptr;
}

SharedPtr<ScriptArgument> JSScriptArgument::invoke(const List&, QString*) const
{
    return nullptr;
}

QString JSScriptArgument::regularExpression() const
{
    const KJS::Object object = KJS::Object::dynamicCast(m_value);
    if (object.isNull() || object.className() != "RegExp")
        return QString();
    return patternOfRegExp(object.get(m_exec, "source").toString(m_exec).qstring(),
                           object.get(m_exec, "flags").toString(m_exec).qstring());
}

PropertyValue JSScriptArgument::toPropertyValue() const
{
    if (!isMap())
        return ScriptArgument::toPropertyValue();
    const Map map = toMap();
    const auto wildcard = map.find(QStringLiteral("wildcardPattern"));
    if (wildcard != map.end())
        return PropertyValue(wildcard->second->toString(), PropertyValue::Wildcard, PropertyValue::String);
    const auto regex = map.find(QStringLiteral("regexPattern"));
    if (regex != map.end())
        return PropertyValue(regex->second->toString(), PropertyValue::RegularExpression,
                             PropertyValue::String);
    return ScriptArgument::toPropertyValue();
}

} // namespace Torvix
