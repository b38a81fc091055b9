#pragma once

#include "engine/collector.h"
#include "engine/function.h"
#include "engine/interpreter.h"
#include "engine/list.h"
#include "engine/reference.h"

#include <gtest/gtest.h>

#include <QStringList>

#include <functional>
#include <ostream>

inline void PrintTo(const QString& text, std::ostream* out)
{
    *out << '"' << text.toStdString() << '"';
}

namespace KJS {

inline void PrintTo(const UString& text, std::ostream* out)
{
    *out << '"' << text.qstring().toStdString() << '"';
}

/** A native function from a lambda. */
class NativeFunction : public InternalFunctionImp
{
public:
    using Body = std::function<Value(ExecState*, Object&, const List&)>;
    explicit NativeFunction(Body body) : m_body(std::move(body)) {}
    Value call(ExecState* exec, Object& thisObject, const List& arguments) override
    {
        return m_body(exec, thisObject, arguments);
    }

private:
    Body m_body;
};

/** Options that leave nothing behind on the machine. */
inline InterpreterOptions testOptions(bool debugVariables = false)
{
    InterpreterOptions options;
    options.debugVariables = debugVariables;
    options.cacheFolder = QStringLiteral("");
    return options;
}

inline QString textOf(Interpreter& interpreter, const Value& value)
{
    return value.isNull() ? QStringLiteral("(none)") : value.toString(interpreter.globalExec()).qstring();
}

/** The completion's value as text; "throws TEXT" for a throw; "(none)" without a value. */
inline QString run(Interpreter& interpreter, const QString& code)
{
    const Completion done = interpreter.evaluate(UString(code));
    const QString text = textOf(interpreter, done.value());
    return done.complType() == Throw ? QStringLiteral("throws ") + text : text;
}

inline void define(Interpreter& interpreter, const char* name, NativeFunction::Body body)
{
    interpreter.globalObject().put(interpreter.globalExec(), name, new NativeFunction(std::move(body)));
}

class EngineTest : public testing::Test
{
protected:
    Interpreter interpreter{Object(), testOptions()};
    ExecState* exec = interpreter.globalExec();
    Object global = interpreter.globalObject();

    QString run(const QString& code) { return KJS::run(interpreter, code); }
    Value value(const QString& code) { return interpreter.evaluate(UString(code)).value(); }
    Object object(const QString& code) { return Object::dynamicCast(value(code)); }
    void define(const char* name, NativeFunction::Body body)
    {
        KJS::define(interpreter, name, std::move(body));
    }
};

} // namespace KJS
