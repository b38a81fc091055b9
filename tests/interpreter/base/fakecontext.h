#pragma once

#include "interpreter/base/applicationcontext.h"
#include "interpreter/base/nativescriptobject.h"
#include "interpreter/base/scriptcontext.h"
#include "objectmodel/object.h"

#include <QVariant>

namespace Torvix {

/** A value of a language without an engine: a QVariant, a list, a map or an object. */
class FakeArgument : public ScriptArgument
{
public:
    explicit FakeArgument(const QVariant& value) : m_value(value) {}
    explicit FakeArgument(const List& list) : m_list(list), m_kind(Kind::List) {}
    explicit FakeArgument(const Map& map) : m_map(map), m_kind(Kind::Map) {}
    explicit FakeArgument(const SharedPtr<Object>& object) : m_object(object), m_kind(Kind::Object) {}

    QString typeName() const override { return QString::fromLatin1(m_value.typeName()); }
    bool isBoolean() const override { return m_value.type() == QVariant::Bool; }
    bool isNumber() const override { return isInteger() || m_value.type() == QVariant::Double; }
    bool isInteger() const override
    {
        return m_value.type() == QVariant::Int || m_value.type() == QVariant::LongLong;
    }
    bool isString() const override { return m_value.type() == QVariant::String; }
    bool isStringLike() const override { return isString(); }
    bool isObject() const override { return m_kind == Kind::Object; }
    bool isClass() const override { return false; }
    bool isCallable() const override { return false; }
    bool isList() const override { return m_kind == Kind::List; }
    bool isMap() const override { return m_kind == Kind::Map; }
    bool isNative(void*) const override { return false; }
    bool toBoolean() const override { return m_value.toBool(); }
    double toDouble() const override { return m_value.toDouble(); }
    int toInteger() const override { return m_value.toInt(); }
    /** Lists and maps as JSON would have them, without quotes. */
    QString toString() const override
    {
        QStringList parts;
        if (isList()) {
            for (const auto& element : m_list)
                parts.append(element->toString());
            return "[" + parts.join(",") + "]";
        }
        if (!isMap())
            return isObject() ? m_object->toString() : m_value.toString();
        for (const auto& [name, value] : m_map)
            parts.append(name + ":" + value->toString());
        return "{" + parts.join(",") + "}";
    }
    SharedPtr<Object> toObject() const override { return m_object; }
    const Class* toClass() const override { return nullptr; }
    List toList() const override { return m_list; }
    Map toMap() const override { return m_map; }
    SharedPtr<NativeScriptObject> toNative(void*) const override { return nullptr; }
    const TestDataRecord* toTestDataRecord() const override { return nullptr; }
    SharedPtr<ApplicationContext> toApplicationContext() const override { return new ApplicationContext; }
    SharedPtr<Object> convertToArgument(const Argument&) const override { return nullptr; }
    SharedPtr<ScriptArgument> invoke(const List&, QString*) const override { return nullptr; }

private:
    enum class Kind { Plain, List, Map, Object };
    QVariant m_value;
    List m_list;
    Map m_map;
    SharedPtr<Object> m_object;
    Kind m_kind = Kind::Plain;
};

/** A context of that language. */
class FakeContext : public ScriptContext
{
public:
    using ScriptContext::toArgument;

    ScriptContext* lightCopy() const override { return new FakeContext; }
    void clearResult() override { result = nullptr; }
    void setResult(SharedPtr<ScriptArgument> value) override { result = value; }
    SharedPtr<ScriptArgument> nullArgument() const override { return new FakeArgument(QVariant()); }
    SharedPtr<ScriptArgument> toArgument(bool value) const override
    {
        return new FakeArgument(QVariant(value));
    }
    SharedPtr<ScriptArgument> toArgument(int value) const override
    {
        return new FakeArgument(QVariant(value));
    }
    SharedPtr<ScriptArgument> toArgument(long long value) const override
    {
        return new FakeArgument(QVariant(value));
    }
    SharedPtr<ScriptArgument> toArgument(double value) const override
    {
        return new FakeArgument(QVariant(value));
    }
    SharedPtr<ScriptArgument> toArgument(const QString& value) const override
    {
        return new FakeArgument(QVariant(value));
    }
    SharedPtr<ScriptArgument> toArgument(const QDateTime& value) const override
    {
        return new FakeArgument(QVariant(value));
    }
    SharedPtr<ScriptArgument> toArgument(const ScriptArgument::List& values) const override
    {
        return new FakeArgument(values);
    }
    SharedPtr<ScriptArgument> toArgument(const ScriptArgument::Map& values) const override
    {
        return new FakeArgument(values);
    }
    SharedPtr<ScriptArgument> toArgument(SharedPtr<NativeScriptObject>) const override
    {
        return nullArgument();
    }
    SharedPtr<ScriptArgument> toArgument(SharedPtr<Object> object) const override
    {
        return new FakeArgument(object);
    }
    SharedPtr<ScriptArgument> toArgument(TestDataSet*) const override { return nullArgument(); }
    SharedPtr<ScriptArgument> toArgument(SharedPtr<ApplicationContext>) const override
    {
        return nullArgument();
    }
    SharedPtr<ScriptArgument> toArgument(const Debugger::Location& location) const override
    {
        return new FakeArgument(QVariant(QString("%1@%2").arg(location.file).arg(location.line)));
    }
    void addStaticMemberFunction(const QString&, const QString&, Function) override {}
    bool lineInfo(LineInfo*, unsigned int) const override { return false; }
    bool verify(SharedPtr<ScriptArgument> value) override { return value->toBoolean(); }
    std::pair<QString, QString> catchException(SharedPtr<ScriptArgument>) override { return {}; }
    bool compare(SharedPtr<ScriptArgument>, SharedPtr<ScriptArgument>) override { return false; }
    bool evaluateExpression(const QString&, QString*, const QString&) const override { return false; }
    bool sourceCode(const QString&, const QString&) override { return false; }
    std::unique_ptr<Gherkin::ScriptActions> gherkinScriptActions(const QString&) const override { return {}; }

    SharedPtr<ScriptArgument> result;
};

} // namespace Torvix
