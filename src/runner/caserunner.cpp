#include "runner/caserunner.h"

#include "interpreter/base/debugger.h"
#include "interpreter/base/interpreter.h"
#include "objectmodel/objectmap.h"
#include "report/streamwriter.h"
#include "runner/objecttree.h"
#include "runner/plugin.h"
#include "testsupport/objectfunctions.h"
#include "testsupport/screen/screenshots.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>

namespace Torvix {

namespace {

/** The current folder of a test case is its own; afterwards it is what it was. */
class CurrentFolder
{
public:
    explicit CurrentFolder(const QString& folder) : m_previous(QDir::currentPath())
    {
        QDir::setCurrent(folder);
    }
    ~CurrentFolder() { QDir::setCurrent(m_previous); }
    CurrentFolder(const CurrentFolder&) = delete;
    CurrentFolder& operator=(const CurrentFolder&) = delete;

private:
    QString m_previous;
};

/** Listens to the inspector as long as it lives. */
class Listening
{
public:
    explicit Listening(InspectorListener* listener) { Inspector::self()->setListener(listener); }
    ~Listening() { Inspector::self()->setListener(nullptr); }
    Listening(const Listening&) = delete;
    Listening& operator=(const Listening&) = delete;
};

QStringList homeVariables(const QString& home)
{
    return {QStringLiteral("HOME=") + home,
            QStringLiteral("XDG_CONFIG_HOME=") + home + QStringLiteral("/.config"),
            QStringLiteral("XDG_DATA_HOME=") + home + QStringLiteral("/.local/share"),
            QStringLiteral("XDG_CACHE_HOME=") + home + QStringLiteral("/.cache")};
}

QString crashText(const ApplicationReport& report, const ProcessEnd& end)
{
    const QString text = QStringLiteral("The application '%1' %2").arg(report.name, endText(end));
    return end.kind == ProcessEnd::Gone ? text + QLatin1String(": ") + report.ending : text;
}

} // namespace

CaseRunner::CaseRunner(const Suite& suite, const TestCase& testCase, const LanguagePlugin& plugin,
                       ResultStreamWriter* stream, Watchdog* watchdog, Options options)
    : m_suite(suite)
    , m_case(testCase)
    , m_plugin(plugin)
    , m_stream(stream)
    , m_watchdog(watchdog)
    , m_options(std::move(options))
    , m_result(stream, m_options.outputFolder)
    , m_applications(applicationSettings())
{
    if (m_options.timeoutSecs == 0)
        m_options.timeoutSecs = testCase.timeoutSecs ? testCase.timeoutSecs : suite.settings.caseTimeoutSecs;
    m_result.setUpdatesVerificationPoints(m_options.updatesVerificationPoints);
}

CaseRunner::~CaseRunner() = default;

ApplicationSettings CaseRunner::applicationSettings()
{
    ApplicationSettings result;
    result.folders = m_suite.settings.applicationFolders;
    result.environment = m_suite.settings.environment;
    result.startTimeoutMs = m_suite.settings.startTimeoutSecs * 1000;
    result.isSuite = true;
    result.isStopping = [this] { return m_watchdog->reason() != Watchdog::Reason::None; };
    return result;
}

CaseOutcome CaseRunner::run()
{
    CaseSummary started;
    started.suite = m_suite.name;
    started.name = m_case.name;
    started.path = m_case.folder;
    started.tags = m_case.tags;
    m_stream->caseStarted(started, m_options.attempt);
    QElapsedTimer timer;
    timer.start();
    const CurrentFolder folder(m_case.folder);
    {
        const Listening listening(this);
        m_applications.setEndHandler([this](const ApplicationReport& report, const ProcessEnd& end) {
            m_stream->applicationEnded(report);
            if (!end.isOrderly() && !m_applications.wereKilled())
                m_result.add(ResultType::Error, crashText(report, end), report.output, scriptPlace());
        });
        runScript();
        const bool failed =
            m_result.outcome() == CaseOutcome::Failed || m_result.outcome() == CaseOutcome::Error;
        if (failed) {
            recordObjectTree();
            keepScreen();
        }
        Inspector::self()->processEvents(0);
    }
    m_result.finish();
    for (const ApplicationReport& report : m_applications.stopAll())
        m_stream->applicationEnded(report);
    ObjectMap::self()->clear();
    const CaseOutcome outcome = m_watchdog->isInterrupted() ? CaseOutcome::Interrupted : m_result.outcome();
    m_stream->caseEnded(outcome, timer.elapsed());
    return outcome;
}

void CaseRunner::runScript()
{
    QFile script(m_case.script);
    if (!script.open(QIODevice::ReadOnly)) {
        m_result.add(
            ResultType::Error,
            QStringLiteral("Cannot read the script '%1': %2").arg(m_case.script, script.errorString()),
            QString(), LineInfo());
        return;
    }
    QTemporaryDir home;
    ApplicationSettings settings = applicationSettings();
    if (m_suite.settings.ownHome)
        settings.environment += homeVariables(home.path());
    m_applications.setSettings(settings);
    setDefaultWaitTimeoutMs(m_suite.settings.waitTimeoutMs);
    m_interpreter = m_plugin.createInterpreter(this);
    m_interpreter->addToSearchPath(QFileInfo(m_case.folder));
    m_interpreter->addToSearchPath(QFileInfo(m_suite.scriptFolder()));
    m_interpreter->initTestFunctions(&m_result);
    m_interpreter->setScriptArguments(m_case.script, QStringList());
    Interpreter* running = m_interpreter.get();
    m_watchdog->watch(m_options.timeoutSecs * 1000, [this, running] {
        running->interrupt();
        m_applications.killAll(); // a call that waits for an application ends with it
    });
    evaluateAndCallMain(QString::fromUtf8(script.readAll()));
    reportEnding(m_watchdog->unwatch());
    m_interpreter.reset();
}

void CaseRunner::evaluateAndCallMain(const QString& code)
{
    if (!m_interpreter->evaluate(code, m_case.script, false, false)) {
        reportScriptError();
        return;
    }
    if (!m_interpreter->hasFunction(QStringLiteral("main"))) {
        m_result.add(ResultType::Error, QStringLiteral("The script has no function main()"), QString(),
                     {m_case.script, 1});
        return;
    }
    if (!m_interpreter->call(QStringLiteral("main"), ObjectList()))
        reportScriptError();
    if (m_interpreter->hasFunction(QStringLiteral("cleanup")) &&
        !m_interpreter->call(QStringLiteral("cleanup"), ObjectList()))
        reportScriptError();
}

void CaseRunner::reportScriptError()
{
    // A test outcome that ended the script leaves no message: it has been reported already.
    if (m_interpreter->errorMessage().isEmpty())
        return;
    QStringList callers;
    for (const LineInfo& frame : m_interpreter->errorCallStack()) {
        const QString place = QStringLiteral("%1:%2").arg(frame.file, QString::number(frame.line));
        callers += frame.function.isEmpty() ? QStringLiteral("at ") + place
                                            : QStringLiteral("at %1 (%2)").arg(frame.function, place);
    }
    if (callers.size() == 1)
        callers.clear(); // the place of the error says it
    const LineInfo place{m_interpreter->errorFile(m_case.script), m_interpreter->errorLine()};
    const QString stack = callers.join(QLatin1Char('\n'));
    if (m_watchdog->reason() == Watchdog::Reason::None) {
        m_result.add(ResultType::Error, m_interpreter->errorMessage(), stack, place);
    } else if (m_stopPlace.file.isEmpty()) {
        // Whatever failed did so because the script and its applications were stopped.
        m_stopPlace = place;
        m_stopCallers = stack;
    }
}

LineInfo CaseRunner::scriptPlace() const
{
    const Debugger* debugger = Debugger::self();
    const std::vector<LineInfo> stack = debugger ? debugger->callStack() : std::vector<LineInfo>();
    return stack.empty() ? LineInfo() : stack.front();
}

void CaseRunner::reportEnding(Watchdog::Reason reason)
{
    if (reason == Watchdog::Reason::None)
        return;
    const bool isTimeout = reason == Watchdog::Reason::Timeout;
    m_result.add(ResultType::Error,
                 isTimeout ? QStringLiteral("The test case took longer than %1 s").arg(m_options.timeoutSecs)
                           : QStringLiteral("Interrupted"),
                 m_stopCallers, m_stopPlace.file.isEmpty() ? LineInfo{m_case.script, 0} : m_stopPlace);
}

void CaseRunner::recordObjectTree()
{
    if (m_treeRecorded || !Inspector::self()->current())
        return;
    m_treeRecorded = true;
    const QString tree = objectTreeText();
    if (!tree.isEmpty())
        m_stream->objectTree(tree);
}

void CaseRunner::grabScreen()
{
    const ApplicationModel* current = Inspector::self()->current();
    QString ignored; // it is an extra: the test case fails for what it fails
    if (m_screen.isNull() && current && current->isAlive())
        m_screen = grabDesktop(&ignored);
}

void CaseRunner::keepScreen()
{
    grabScreen();
    const QString file =
        m_screen.isNull() ? QString() : m_result.newOutputFile(QStringLiteral("failure.png"));
    const QString title = QStringLiteral("The screen at the failure");
    QString error;
    if (!file.isEmpty() && savePng(m_screen, file, &error))
        m_result.add(ResultType::Log, title, QString(), LineInfo(),
                     {{file, QStringLiteral("image/png"), title}});
    else if (!error.isEmpty())
        m_result.add(ResultType::Warning, QStringLiteral("No screenshot of the failure: ") + error, QString(),
                     LineInfo());
}

SharedPtr<ApplicationContext> CaseRunner::startApplication(const QString& application, const QString& host,
                                                           int, int timeoutSecs, QString* error)
{
    if (!host.isEmpty()) {
        *error =
            QStringLiteral("Cannot start '%1' on '%2': start it there with TORVIX_AGENT_LISTEN set, and use "
                           "attachToApplication()")
                .arg(application, host);
        return new ApplicationContext;
    }
    return m_applications.start(application, timeoutSecs < 0 ? -1 : timeoutSecs * 1000, error);
}

SharedPtr<ApplicationContext> CaseRunner::attachToApplication(const QString& name, const QString& host,
                                                              int port, int timeoutSecs, QString* error)
{
    const QString address = host.isEmpty() ? name : QStringLiteral("%1:%2").arg(host, QString::number(port));
    return m_applications.attach(address, timeoutSecs < 0 ? -1 : timeoutSecs * 1000, error);
}

bool CaseRunner::detach(SharedPtr<ApplicationContext> context)
{
    return m_applications.detach(context);
}

SharedPtr<ApplicationContext> CaseRunner::waitForApplicationLaunch(int timeout, QString* error)
{
    return m_applications.waitForLaunch(timeout < 0 ? -1 : timeout * 1000, error);
}

SharedPtr<ApplicationContext> CaseRunner::defaultApplicationContext()
{
    return m_applications.first();
}

SharedPtr<ApplicationContext> CaseRunner::applicationContext(const QString& name)
{
    return m_applications.find(name);
}

bool CaseRunner::setCurrentApplicationContext(SharedPtr<ApplicationContext> context)
{
    return m_applications.setCurrent(context);
}

std::list<SharedPtr<ApplicationContext>> CaseRunner::applicationContexts()
{
    return m_applications.all();
}

void CaseRunner::reportFailedLookup(const QString&, const QString&, QString*)
{
    // What was there instead helps most while it still is.
    recordObjectTree();
    grabScreen();
}

bool CaseRunner::loadObjectMap(const QString& path)
{
    if (!QFileInfo::exists(path))
        return false;
    Inspector::self()->note(ObjectMap::self()->load(path));
    return true;
}

bool CaseRunner::mouseAction(SharedPtr<Object> object, int flags, int x, int y, int button, int modifiers,
                             bool buttonAction, bool press)
{
    Protocol::MouseActionKind kind = Protocol::MouseActionKind::Move;
    if (buttonAction)
        kind = press ? Protocol::MouseActionKind::Press : Protocol::MouseActionKind::Release;
    Inspector* inspector = Inspector::self();
    return inspector->note(inspector->mouseAction(kind, object, quint32(flags), x, y, button, modifiers));
}

void CaseRunner::serviceConnections()
{
    Inspector::self()->processEvents(0);
}

RunnerInterface::TestEnvironment CaseRunner::testEnvironment()
{
    TestEnvironment environment;
    environment.settingsGroup = QStringLiteral("General");
    environment.testCase = m_case.script;
    environment.testCaseName = m_case.name;
    environment.testSuiteName = m_suite.name;
    environment.resultDir = m_options.outputFolder;
    return environment;
}

void CaseRunner::eventHandled(ApplicationModel*, const QString& handler, const QString&,
                              const ObjectList& arguments)
{
    if (m_interpreter && !m_interpreter->call(handler, arguments))
        reportScriptError();
}

void CaseRunner::applicationEnded(ApplicationModel* model, const QString& reason)
{
    m_applications.noticeEnd(model, reason);
}

} // namespace Torvix
