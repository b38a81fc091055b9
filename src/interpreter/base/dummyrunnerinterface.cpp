#include "interpreter/base/dummyrunnerinterface.h"

#include "interpreter/base/applicationcontext.h"
#include "objectmodel/object.h"

namespace Torvix {

namespace {

SharedPtr<ApplicationContext> noApplication(QString* error)
{
    *error = QStringLiteral("There is no runner that could start or reach applications");
    return new ApplicationContext;
}

} // namespace

SharedPtr<ApplicationContext> DummyRunnerInterface::startApplication(const QString&, const QString&, int, int,
                                                                     QString* error)
{
    return noApplication(error);
}

SharedPtr<ApplicationContext> DummyRunnerInterface::attachToApplication(const QString&, const QString&, int,
                                                                        int, QString* error)
{
    return noApplication(error);
}

bool DummyRunnerInterface::detach(SharedPtr<ApplicationContext>)
{
    return false;
}

SharedPtr<ApplicationContext> DummyRunnerInterface::waitForApplicationLaunch(int, QString* error)
{
    return noApplication(error);
}

SharedPtr<ApplicationContext> DummyRunnerInterface::defaultApplicationContext()
{
    return m_none;
}

SharedPtr<ApplicationContext> DummyRunnerInterface::applicationContext(const QString&)
{
    return m_none; // asked at every call of a method: nothing is made anew
}

bool DummyRunnerInterface::setCurrentApplicationContext(SharedPtr<ApplicationContext>)
{
    return false;
}

std::list<SharedPtr<ApplicationContext>> DummyRunnerInterface::applicationContexts()
{
    return {};
}

qint64 DummyRunnerInterface::usedMemory(SharedPtr<ApplicationContext>)
{
    return 0;
}

qint64 DummyRunnerInterface::totalTime(SharedPtr<ApplicationContext>)
{
    return 0;
}

QString DummyRunnerInterface::environmentVariable(SharedPtr<ApplicationContext>, const QString&)
{
    return QString();
}

QString DummyRunnerInterface::workingDirectory(SharedPtr<ApplicationContext>)
{
    return QString();
}

QString DummyRunnerInterface::host(SharedPtr<ApplicationContext>)
{
    return QString();
}

int DummyRunnerInterface::port(SharedPtr<ApplicationContext>)
{
    return 0;
}

bool DummyRunnerInterface::isRunning(SharedPtr<ApplicationContext>)
{
    return false;
}

bool DummyRunnerInterface::isFrozen(SharedPtr<ApplicationContext>, int)
{
    return false;
}

int DummyRunnerInterface::processId(SharedPtr<ApplicationContext>)
{
    return 0;
}

QString DummyRunnerInterface::readStandardOutput(SharedPtr<ApplicationContext>)
{
    return QString();
}

QString DummyRunnerInterface::readStandardError(SharedPtr<ApplicationContext>)
{
    return QString();
}

QString DummyRunnerInterface::operatingSystemName(SharedPtr<ApplicationContext>)
{
    return QString();
}

bool DummyRunnerInterface::enterRemoteObjectModel()
{
    return false;
}

void DummyRunnerInterface::leaveRemoteObjectModel() {}

void DummyRunnerInterface::reportFailedLookup(const QString&, const QString&, QString*) {}

bool DummyRunnerInterface::loadObjectMap(const QString&)
{
    return false;
}

bool DummyRunnerInterface::mouseAction(SharedPtr<Object>, int, int, int, int, int, bool, bool)
{
    return false;
}

bool DummyRunnerInterface::promptWanted()
{
    return false;
}

void DummyRunnerInterface::serviceConnections() {}

TestResult* DummyRunnerInterface::testResult()
{
    return m_testResult;
}

RunnerInterface::TestEnvironment DummyRunnerInterface::testEnvironment()
{
    return TestEnvironment();
}

} // namespace Torvix
