#pragma once

#include "engine/rewriting/jsstring.h"
#include "engine/rewriting/scriptruntime.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <map>
#include <string>

namespace KJS::Rewriting {

inline void PrintTo(const QString& text, std::ostream* out)
{
    *out << '"' << text.toStdString() << '"';
}

/** A context of its own with a print function whose lines are kept. */
class Context
{
public:
    explicit Context(JSContextGroupRef group) : m_context(JSGlobalContextCreateInGroup(group, nullptr))
    {
        outputs()[m_context] = &output;
        addFunction("print", [](JSContextRef context, JSObjectRef, JSObjectRef, size_t count,
                                const JSValueRef arguments[], JSValueRef*) {
            QString& out = *outputs()[JSContextGetGlobalContext(context)];
            for (size_t i = 0; i < count; ++i)
                out += stringOf(context, arguments[i]) + QLatin1Char(' ');
            out += QLatin1Char('\n');
            return JSValueMakeUndefined(context);
        });
    }
    ~Context()
    {
        outputs().erase(m_context);
        JSGlobalContextRelease(m_context);
    }
    Context(const Context&) = delete;
    Context& operator=(const Context&) = delete;

    operator JSGlobalContextRef() const { return m_context; }

    void addFunction(const char* name, JSObjectCallAsFunctionCallback function)
    {
        add(name, JSObjectMakeFunctionWithCallback(m_context, JsString(name), function));
    }
    void add(const char* name, JSValueRef value)
    {
        JSObjectSetProperty(m_context, JSContextGetGlobalObject(m_context), JsString(name), value,
                            kJSPropertyAttributeDontEnum, nullptr);
    }
    QString text(JSValueRef value) const
    {
        if (!value)
            return QStringLiteral("(nothing)");
        if (JSValueIsSymbol(m_context, value))
            return QStringLiteral("(symbol)");
        return stringOf(m_context, value);
    }
    QString describe(const Outcome& outcome) const
    {
        return outcome.threw() ? QStringLiteral("throws ") + text(outcome.exception) : text(outcome.value);
    }
    QString errorText(JSValueRef error, const char* name) const
    {
        JSObjectRef object = asObject(m_context, error);
        return object ? text(property(m_context, object, name)) : QStringLiteral("(no object)");
    }

    QString output;

private:
    static std::map<JSGlobalContextRef, QString*>& outputs()
    {
        static std::map<JSGlobalContextRef, QString*> map;
        return map;
    }
    JSGlobalContextRef m_context;
};

/** Modules from a table, and a record of the hooks, held against a stack of its own. */
class TestHooks : public ScriptHooks
{
public:
    TextAnswer resolveModule(const QString& name, const QString&) override
    {
        if (!modules.count(name))
            return TextAnswer::failure(QStringLiteral("no module %1").arg(name));
        return TextAnswer::answer(QStringLiteral("/m/") + name);
    }
    TextAnswer readModule(const QString& path) override
    {
        return TextAnswer::answer(modules.at(path.mid(3)));
    }
    void sourceParsed(const SourceInfo& source, int errorLine) override
    {
        parsed += QStringLiteral("%1:%2 ").arg(source.url).arg(errorLine);
    }
    void frameEntered(int frame) override
    {
        if (frame != shadow + 1)
            fail(QStringLiteral("enter %1 on %2").arg(frame).arg(shadow));
        shadow = frame;
        ++events;
    }
    void frameLeft(int frame) override
    {
        if (frame != shadow)
            fail(QStringLiteral("leave %1 on %2").arg(frame).arg(shadow));
        shadow = frame - 1;
        ++events;
    }
    void statementReached(int frame) override
    {
        if (frame != shadow)
            fail(QStringLiteral("statement in %1 on %2 line %3")
                     .arg(frame)
                     .arg(shadow)
                     .arg(runtime->line(frame)));
        ++events;
        if (atStatement)
            atStatement(frame);
    }
    void rejectionUnhandled(JSValueRef reason) override
    {
        rejections += stringOf(runtime->context(), reason) + QLatin1Char(' ');
    }
    void exceptionThrown(JSValueRef value, bool caught, int frame) override
    {
        if (onException)
            onException(value, caught, frame);
    }

    ScriptRuntime* runtime = nullptr;
    std::map<QString, QString> modules;
    std::function<void(int frame)> atStatement;
    std::function<void(JSValueRef value, bool caught, int frame)> onException;
    QString parsed;
    QString faults;
    QString rejections;
    int shadow = 0;
    int events = 0;

private:
    void fail(const QString& what)
    {
        if (faults.size() < 500)
            faults += what + QLatin1String("; ");
    }
};

/** A virtual machine with a rewriter whose cache is thrown away. */
class Machine
{
public:
    Machine() : m_group(JSContextGroupCreate()), rewriter(m_group)
    {
        rewriter.setCacheFolder(m_folder.path());
    }
    ~Machine() { JSContextGroupRelease(m_group); }
    Machine(const Machine&) = delete;
    Machine& operator=(const Machine&) = delete;

    JSContextGroupRef group() const { return m_group; }
    QString cacheFolder() const { return m_folder.path(); }

private:
    QTemporaryDir m_folder;
    JSContextGroupRef m_group;

public:
    Rewriter rewriter;
};

/** One script world: context, hooks and runtime. */
struct World
{
    explicit World(Machine& machine, Flavour flavour = Flavour::Fast)
        : context(machine.group())
        , runtime(machine.rewriter, context, hooks, flavour)
    {
        hooks.runtime = &runtime;
    }

    QString run(const QString& text, const QString& url = QStringLiteral("t.js"))
    {
        return context.describe(runtime.evaluate(text, url));
    }
    QString run(const char* text) { return run(QString::fromUtf8(text)); }

    Context context;
    TestHooks hooks;
    ScriptRuntime runtime;
};

inline QString readFile(const QString& name)
{
    QFile file(QStringLiteral(TORVIX_TEST_SOURCE_DIR "/") + name);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << name.toStdString();
    return QString::fromUtf8(file.readAll());
}

} // namespace KJS::Rewriting
