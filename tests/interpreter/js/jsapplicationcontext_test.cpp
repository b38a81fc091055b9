#include "interpreter/base/applicationcontext.h"
#include "interpreter/js/apitest.h"

#include <QDateTime>

namespace Torvix {
namespace {

/** Applications that only exist as contexts, and a log of what was asked. */
class ContextRunner : public DummyRunnerInterface
{
public:
    ContextRunner()
    {
        for (const char* name : {"first", "second"}) {
            SharedPtr<ApplicationContext> context(new ApplicationContext);
            context->id = int(contexts.size());
            context->name = name;
            context->commandLine = context->name + " --now";
            context->startTime = QDateTime(QDate(2024, 2, 29), QTime(13, 45, 59, 7));
            contexts.push_back(context);
        }
    }

    using Context = SharedPtr<ApplicationContext>;
    Context launch(const QString& what, QString* failure)
    {
        log += what;
        *failure = error;
        return fails ? Context(new ApplicationContext) : contexts.front();
    }
    Context startApplication(const QString& application, const QString& host, int port, int timeoutSecs,
                             QString* failure) override
    {
        return launch(QStringLiteral("start %1,%2,%3,%4").arg(application, host).arg(port).arg(timeoutSecs),
                      failure);
    }
    Context attachToApplication(const QString& name, const QString& host, int port, int timeoutSecs,
                                QString* failure) override
    {
        return launch(QStringLiteral("attach %1,%2,%3,%4").arg(name, host).arg(port).arg(timeoutSecs),
                      failure);
    }
    Context waitForApplicationLaunch(int timeout, QString* failure) override
    {
        return launch(QStringLiteral("wait %1").arg(timeout), failure);
    }
    Context defaultApplicationContext() override { return contexts.front(); }
    Context applicationContext(const QString& name) override
    {
        if (name.isEmpty())
            return current;
        for (const Context& context : contexts)
            if (context->name == name)
                return context;
        return new ApplicationContext;
    }
    bool setCurrentApplicationContext(Context context) override
    {
        current = context;
        log += "set " + context->name;
        return !fails;
    }
    std::list<Context> applicationContexts() override { return contexts; }
    bool detach(Context) override { return !fails; }
    qint64 usedMemory(Context) override { return 5'000'000'000; }
    qint64 totalTime(Context) override { return 1250; }
    QString environmentVariable(Context context, const QString& name) override
    {
        return context->name + ':' + name;
    }
    QString workingDirectory(Context) override { return "/there"; }
    QString host(Context) override { return "localhost"; }
    int port(Context) override { return 4242; }
    bool isRunning(Context context) override { return context->id == 0; }
    bool isFrozen(Context, int seconds) override { return seconds == 5; }
    int processId(Context) override { return 99; }
    QString readStandardOutput(Context) override { return output; }
    QString readStandardError(Context) override { return QString(); }
    QString operatingSystemName(Context) override { return "Linux"; }

    std::list<Context> contexts;
    Context current = contexts.empty() ? Context(new ApplicationContext) : contexts.front();
    QStringList log;
    QString error;
    QString output = "";
    bool fails = false;
};

class JsApplicationContextTest : public ApiTest
{
protected:
    JsApplicationContextTest() { renewInterpreter(&runner); }
    ~JsApplicationContextTest() override { interpreter.reset(); }

    ContextRunner runner;
};

TEST_F(JsApplicationContextTest, ArgumentsArePassedOnAsTheyAre)
{
    EXPECT_EQ(text("startApplication('app').name"), "first");
    EXPECT_EQ(text("startApplication('app', 'h', 5.9, '7').name"), "first");
    EXPECT_EQ(text("attachToApplication('app', 'h').name"), "first");
    EXPECT_EQ(text("waitForApplicationLaunch().name + waitForApplicationLaunch(10).name"), "firstfirst");
    EXPECT_EQ(runner.log.join(' '), "start app,,-1,-1 start app,h,5,7 attach app,h,-1,-1 wait -1 wait 10");
}

TEST_F(JsApplicationContextTest, WrongCallsAreToldInTheirOrder)
{
    runner.fails = true;
    const std::pair<const char*, const char*> cases[] = {
        {"startApplication()", "SyntaxError: startApplication() takes between 1 and 4 arguments"},
        {"startApplication('', 1, 2, 3, 4)",
         "SyntaxError: startApplication() takes between 1 and 4 arguments"},
        {"startApplication('')", "Error: empty application specified to startApplication()"},
        {"startApplication('app')", "Error: startApplication() failed"},
        {"attachToApplication()", "Error: empty application specified to attachToApplication()"},
        {"attachToApplication('a', 'b', 1, 2, 3)",
         "SyntaxError: attachToApplication() takes between 1 and 4 arguments"},
        {"attachToApplication({toString() { throw new RangeError('converted') }}, 'b', 1, 2, 3)",
         "RangeError: converted"},
        {"attachToApplication('a')", "Error: attachToApplication() failed"},
        {"waitForApplicationLaunch(1, 2)",
         "SyntaxError: waitForApplicationLaunch() takes zero or one argument"},
        {"waitForApplicationLaunch()", "Error: "},
        {"setApplicationContext(1, 2)", "SyntaxError: setApplicationContext(context)"},
        {"setApplicationContext(5)", "TypeError: Invalid type passed to setApplicationContext()"},
        {"setApplicationContext(applicationContext('none'))",
         "TypeError: Invalid type passed to setApplicationContext()"},
        {"setApplicationContext()", "TypeError: Cannot switch to invalid application context"},
        {"applicationContext()", "SyntaxError: applicationContext() takes one argument"},
        {"applicationContext(5)", "TypeError: applicationContext() argument has to be of type string"},
        {"currentApplicationContext(1)", "SyntaxError: currentApplicationContext()"},
        {"defaultApplicationContext(1)", "SyntaxError: defaultApplicationContext()"},
        {"applicationContextList(1)", "SyntaxError: applicationContextList()"},
        {"c.toString(1)", "SyntaxError: toString() does not take any parameter"},
        {"c.isFrozen()", "SyntaxError: isFrozen() requires a timout in secs as argument"},
        {"c.isFrozen('5')", "TypeError: isFrozen() requires a timeout in secs as argument"},
        {"c.readStdout(1)", "SyntaxError: readStdout() doesn't take any arguments"},
        {"c.readStderr(1)", "SyntaxError: readStderr() doesn't take any arguments"},
        {"c.readStderr()", "Error: The AUT standard error is not available."},
        {"c.environmentVariable()", "SyntaxError: requires a variable name"},
        {"c.detach(1)", "SyntaxError: detach() doesn't take any arguments"},
        {"c.detach()", "Error: detach() failed"},
    };
    ASSERT_TRUE(run("var c = defaultApplicationContext()"));
    for (const auto& [code, expected] : cases)
        EXPECT_EQ(thrown(code), expected) << code;
    runner.error = "no such file";
    EXPECT_EQ(thrown("startApplication('app')"), "Error: no such file");
    EXPECT_EQ(thrown("waitForApplicationLaunch()"), "Error: no such file");
}

TEST_F(JsApplicationContextTest, AContextTellsOfItsApplication)
{
    ASSERT_TRUE(run("var c = startApplication('app')"));
    EXPECT_EQ(
        text("[c.name, c.commandLine, c.osName, c.pid, c.cwd, c.host, c.port, c.isRunning, c.usedMemory,"
             "c.totalTime].join()"),
        "first,first --now,Linux,99,/there,localhost,4242,true,5000000000,1250");
    EXPECT_EQ(text("[c.startTime instanceof Date, c.startTime.getFullYear(), c.startTime.getMonth(), "
                   "c.startTime.getMilliseconds()].join()"),
              "true,2024,1,7");
    EXPECT_EQ(text("[c.toString.length, c.isFrozen.length, c.readStdout.length, c.readStderr.length,"
                   "c.environmentVariable.length, c.detach.length].join('')"),
              "010000");
    EXPECT_EQ(text("[c.environmentVariable('X'), c.isFrozen(5), c.isFrozen(6.5), c.readStdout() === '',"
                   "c.detach()].join()"),
              "first:X,true,false,true,");
    EXPECT_EQ(text("String(c) + '|' + c.nothing"), "first|undefined");
    EXPECT_EQ(text("var f = c.environmentVariable; f('X')"), ":X") << "the empty context";
    EXPECT_EQ(text("String(applicationContext('none').name) + applicationContext('none').isRunning"),
              "false");
}

TEST_F(JsApplicationContextTest, ContextsAreListedAndSwitched)
{
    EXPECT_EQ(text("applicationContextList().map(c => c.name).join()"), "first,second");
    EXPECT_EQ(text("setApplicationContext(applicationContext('second')); currentApplicationContext().name"),
              "second");
    EXPECT_EQ(text("applicationContext('').name"), "second");
    EXPECT_EQ(text("setApplicationContext(); currentApplicationContext().name"), "first");
    EXPECT_EQ(text("defaultApplicationContext() === defaultApplicationContext()"), "false");
}

} // namespace
} // namespace Torvix
