// What scripts ask of an application context, answered by the case runner.
#include "launcher/process/processfacts.h"
#include "runner/caserunner.h"

#include <utility>

namespace Torvix {

namespace {

/** Another application is the current one as long as it lives. */
class CurrentApplication
{
public:
    explicit CurrentApplication(ApplicationModel* model) : m_previous(Inspector::self()->current())
    {
        Inspector::self()->setCurrent(model);
    }
    ~CurrentApplication() { Inspector::self()->setCurrent(m_previous); }
    CurrentApplication(const CurrentApplication&) = delete;
    CurrentApplication& operator=(const CurrentApplication&) = delete;

private:
    ApplicationModel* m_previous;
};

} // namespace

qint64 CaseRunner::usedMemory(SharedPtr<ApplicationContext> context)
{
    return residentBytes(m_applications.pid(context));
}

qint64 CaseRunner::totalTime(SharedPtr<ApplicationContext> context)
{
    return cpuTimeMs(m_applications.pid(context));
}

QString CaseRunner::environmentVariable(SharedPtr<ApplicationContext> context, const QString& name)
{
    ApplicationModel* model = m_applications.model(context);
    if (!model || !model->isAlive())
        return {};
    const CurrentApplication current(model);
    return Inspector::self()->environmentVariable(name).orNothing();
}

QString CaseRunner::workingDirectory(SharedPtr<ApplicationContext> context)
{
    return processFolder(m_applications.pid(context));
}

QString CaseRunner::host(SharedPtr<ApplicationContext> context)
{
    return m_applications.host(context);
}

int CaseRunner::port(SharedPtr<ApplicationContext> context)
{
    return m_applications.port(context);
}

bool CaseRunner::isRunning(SharedPtr<ApplicationContext> context)
{
    return m_applications.isRunning(context);
}

bool CaseRunner::isFrozen(SharedPtr<ApplicationContext> context, int seconds)
{
    ApplicationModel* model = m_applications.model(context);
    constexpr int maxSecs = 1'000'000;
    if (!model || !model->isAlive())
        return false;
    // One that has just gone does not answer either.
    return !Inspector::self()->ping(model, qBound(0, seconds, maxSecs) * 1000) && model->isAlive();
}

int CaseRunner::processId(SharedPtr<ApplicationContext> context)
{
    return int(m_applications.pid(context));
}

QString CaseRunner::readStandardOutput(SharedPtr<ApplicationContext> context)
{
    Application* process = m_applications.process(context);
    return process ? process->readStdout() : QString();
}

QString CaseRunner::readStandardError(SharedPtr<ApplicationContext> context)
{
    Application* process = m_applications.process(context);
    return process ? process->readStderr() : QString();
}

QString CaseRunner::operatingSystemName(SharedPtr<ApplicationContext> context)
{
    const ApplicationModel* model = m_applications.model(context);
    return model ? model->peer().osName : QString();
}

} // namespace Torvix
