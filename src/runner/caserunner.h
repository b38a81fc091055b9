#pragma once

#include "interpreter/base/runnerinterface.h"
#include "objectmodel/inspector.h"
#include "runner/applications.h"
#include "runner/suite.h"
#include "runner/watchdog.h"
#include "testsupport/testresult.h"

#include <QImage>

#include <memory>

namespace Torvix {

class Interpreter;
class LanguagePlugin;
class ResultStreamWriter;

/**
 * Runs one test case once: an interpreter of its own in the case's folder, applications that end
 * with it, results into the stream. It is the runner that the plug-in sees meanwhile.
 */
class CaseRunner : private RunnerInterface, private InspectorListener
{
public:
    struct Options
    {
        /** Where attachments of this attempt go. */
        QString outputFolder;
        /** 0: what the case or its suite says. */
        int timeoutSecs = 0;
        int attempt = 1;
        /** Verification points that do not hold are renewed. */
        bool updatesVerificationPoints = false;
    };

    /** All are borrowed and have to outlive it. */
    CaseRunner(const Suite& suite, const TestCase& testCase, const LanguagePlugin& plugin,
               ResultStreamWriter* stream, Watchdog* watchdog, Options options);
    ~CaseRunner() override;

    /** The outcome that it has written to the stream. */
    CaseOutcome run();

private:
    void runScript();
    void evaluateAndCallMain(const QString& code);
    void reportScriptError();
    /** Where the script is; no file when none runs. */
    LineInfo scriptPlace() const;
    void reportEnding(Watchdog::Reason reason);
    void recordObjectTree();
    ApplicationSettings applicationSettings();
    void grabScreen();
    void keepScreen();

    // RunnerInterface
    SharedPtr<ApplicationContext> startApplication(const QString& application, const QString& host, int port,
                                                   int timeoutSecs, QString* error) override;
    SharedPtr<ApplicationContext> attachToApplication(const QString& name, const QString& host, int port,
                                                      int timeoutSecs, QString* error) override;
    bool detach(SharedPtr<ApplicationContext> context) override;
    SharedPtr<ApplicationContext> waitForApplicationLaunch(int timeout, QString* error) override;
    SharedPtr<ApplicationContext> defaultApplicationContext() override;
    SharedPtr<ApplicationContext> applicationContext(const QString& name) override;
    bool setCurrentApplicationContext(SharedPtr<ApplicationContext> context) override;
    std::list<SharedPtr<ApplicationContext>> applicationContexts() override;
    qint64 usedMemory(SharedPtr<ApplicationContext> context) override;
    qint64 totalTime(SharedPtr<ApplicationContext> context) override;
    QString environmentVariable(SharedPtr<ApplicationContext> context, const QString& name) override;
    QString workingDirectory(SharedPtr<ApplicationContext> context) override;
    QString host(SharedPtr<ApplicationContext> context) override;
    int port(SharedPtr<ApplicationContext> context) override;
    bool isRunning(SharedPtr<ApplicationContext> context) override;
    bool isFrozen(SharedPtr<ApplicationContext> context, int seconds) override;
    int processId(SharedPtr<ApplicationContext> context) override;
    QString readStandardOutput(SharedPtr<ApplicationContext> context) override;
    QString readStandardError(SharedPtr<ApplicationContext> context) override;
    QString operatingSystemName(SharedPtr<ApplicationContext> context) override;
    bool enterRemoteObjectModel() override { return false; }
    void leaveRemoteObjectModel() override {}
    void reportFailedLookup(const QString& name, const QString& function, QString* report) override;
    bool loadObjectMap(const QString& path) override;
    bool mouseAction(SharedPtr<Object> object, int flags, int x, int y, int button, int modifiers,
                     bool buttonAction, bool press) override;
    bool promptWanted() override { return false; }
    void serviceConnections() override;
    TestResult* testResult() override { return &m_result; }
    TestEnvironment testEnvironment() override;

    // InspectorListener
    void eventHandled(ApplicationModel* model, const QString& handler, const QString& eventName,
                      const ObjectList& arguments) override;
    void applicationEnded(ApplicationModel* model, const QString& reason) override;

    const Suite& m_suite;
    const TestCase& m_case;
    const LanguagePlugin& m_plugin;
    ResultStreamWriter* m_stream;
    Watchdog* m_watchdog;
    Options m_options;
    TestResult m_result;
    Applications m_applications;
    std::unique_ptr<Interpreter> m_interpreter;
    LineInfo m_stopPlace; ///< where the script was when its time was over
    QString m_stopCallers;
    bool m_treeRecorded = false;
    QImage m_screen; ///< at the first thing that went wrong; kept when the test case fails
};

} // namespace Torvix
