#pragma once

#include "interpreter/base/applicationcontext.h"
#include "interpreter/js/bridge/jsobject.h"
#include "scripttest.h"
#include "support/model/localmodel.h"

#include <QStringList>

namespace Torvix {

/** A runner whose current application a test can change. */
class ContextRunner : public DummyRunnerInterface
{
public:
    SharedPtr<ApplicationContext> applicationContext(const QString&) override { return current; }

    SharedPtr<ApplicationContext> current = new ApplicationContext;
};

/** An interpreter with an application that is defined in C++: classes Base, Sub and Other. */
class BridgeTest : public testing::Test
{
protected:
    using Value = Protocol::Value;
    using Outcome = LocalModel::Outcome;

    BridgeTest()
    {
        model->addClass("Base");
        model->addClass("Sub").superClass("Base");
        model->addClass("Other");
    }

    ~BridgeTest() override
    {
        interpreter.reset();
        Inspector::self()->processEvents(0); // references are given back with the next exchange
        EXPECT_EQ(0, local ? local->references() : 0) << "the interpreter left references alive";
        Inspector::self()->reset();
    }

    /** The application is complete: connects it and makes the interpreter. */
    void connect()
    {
        local = model.get();
        application = Inspector::self()->addApplication(std::move(model));
        runner.current->id = application->id();
        interpreter = std::make_unique<JsInterpreter>(&runner);
    }

    /** A new object, as a global of the script. */
    qint64 put(const char* global, const QString& className,
               const Protocol::Attribute& attribute = {Protocol::IndirectFlag, 1})
    {
        const Protocol::ObjectRef ref = local->addObject(className, global, attribute);
        const QString name = QStringLiteral("{name='%1' type='%2'}").arg(QLatin1String(global), className);
        const Result<SharedPtr<Object>> object = Inspector::self()->findObject(name);
        EXPECT_TRUE(object) << object.error().toStdString();
        KJS::ExecState* exec = interpreter->getGlobalExecState();
        exec->interpreter()->globalObject().put(exec, global, jsWrap(exec, *object));
        return ref.id;
    }

    QString text(const QString& code)
    {
        EXPECT_TRUE(interpreter->evaluate(code, "test.js", false, false))
            << code.toStdString() << " gave " << interpreter->errorMessage().toStdString();
        return interpreter->resultMessage();
    }

    /** Class and message of what the code throws. */
    QString thrown(const QString& code)
    {
        return text("(function() { try { " + code +
                    "; return 'nothing' } catch (e) { return e.name + ': ' + e.message } })()");
    }

    std::unique_ptr<LocalModel> model = std::make_unique<LocalModel>();
    LocalModel* local = nullptr;
    ApplicationModel* application = nullptr;
    ContextRunner runner;
    std::unique_ptr<JsInterpreter> interpreter;
};

} // namespace Torvix
