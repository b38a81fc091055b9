#pragma once

#include "interpreter/base/applicationcontext.h"
#include "interpreter/base/export.h"
#include "interpreter/base/runnerinterface.h"

namespace Torvix {

/**
 * A runner without applications, for interpreters that only compute (the one that reads an object
 * map, tests, tools). Starting and attaching fail with a clear error, questions get neutral answers.
 */
class TORVIXINTERPRETER_EXPORT DummyRunnerInterface : public RunnerInterface
{
public:
    /** The result sink is borrowed and may be null. */
    explicit DummyRunnerInterface(TestResult* testResult = nullptr) : m_testResult(testResult) {}

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
    bool enterRemoteObjectModel() override;
    void leaveRemoteObjectModel() override;
    void reportFailedLookup(const QString& name, const QString& function, QString* report) override;
    bool loadObjectMap(const QString& path) override;
    bool mouseAction(SharedPtr<Object> object, int flags, int x, int y, int button, int modifiers,
                     bool buttonAction, bool press) override;
    bool promptWanted() override;
    void serviceConnections() override;
    TestResult* testResult() override;
    TestEnvironment testEnvironment() override;

private:
    TestResult* m_testResult;
    const SharedPtr<ApplicationContext> m_none = new ApplicationContext;
};

} // namespace Torvix
