#pragma once

#include "engine/interpreter.h"
#include "engine/list.h"
#include "interpreter/base/dummyrunnerinterface.h"
#include "interpreter/js/context/jsscriptcontext.h"
#include "interpreter/js/jsinterpreter.h"
#include "interpreter/js/scriptobject/extrafunction.h"

#include <QFile>
#include <QTemporaryDir>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>

QT_BEGIN_NAMESPACE
inline void PrintTo(const QString& text, std::ostream* out)
{
    *out << '"' << text.toStdString() << '"';
}
QT_END_NAMESPACE

namespace Torvix {

/** A script function on one of the two roads into language-neutral code. */
class RoadImp : public KJS::ObjectImp
{
public:
    RoadImp(ScriptContext::Function fn, bool throughCurrent) : m_fn(fn), m_throughCurrent(throughCurrent) {}
    bool implementsCall() const override { return true; }
    KJS::Value call(KJS::ExecState* exec, KJS::Object&, const KJS::List& args) override
    {
        return m_throughCurrent ? dispatchGenericScriptFunction(exec, args, m_fn)
                                : jsScriptContextCall(exec, args, m_fn);
    }

private:
    ScriptContext::Function m_fn;
    bool m_throughCurrent;
};

/** An interpreter as the runner has it, with real files beside it. */
class ScriptTest : public testing::Test
{
protected:
    /** Path of a new file with that text. */
    QString writeFile(const QString& name, const QByteArray& text)
    {
        QFile file(directory.filePath(name));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly)) << name.toStdString();
        file.write(text);
        return file.fileName();
    }

    bool run(const QString& code) { return interpreter->evaluate(code, script, false, false); }

    /** Text of what the code ends with. */
    QString text(const QString& code)
    {
        EXPECT_TRUE(run(code)) << code.toStdString() << " gave " << interpreter->errorMessage().toStdString();
        return interpreter->resultMessage();
    }

    /** Class and message of what the code throws. */
    QString thrown(const QString& code)
    {
        return text("(function() { try { " + code +
                    "; return 'nothing' } catch (e) { return e.name + ': ' + e.message } })()");
    }

    KJS::ExecState* exec() { return interpreter->getGlobalExecState(); }
    KJS::Object global() { return exec()->interpreter()->globalObject(); }
    void define(const char* name, JsNativeCode fn, int length = 0)
    {
        global().put(exec(), name, new ExtraFunctionImp(fn, length));
    }
    void onStack(const char* name, ScriptContext::Function fn)
    {
        global().put(exec(), name, new RoadImp(fn, false));
    }
    void onCurrent(const char* name, ScriptContext::Function fn)
    {
        global().put(exec(), name, new RoadImp(fn, true));
    }

    QTemporaryDir directory;
    QString script = directory.filePath("test.js");
    DummyRunnerInterface runner;
    std::unique_ptr<JsInterpreter> interpreter = std::make_unique<JsInterpreter>(&runner);
};

} // namespace Torvix
