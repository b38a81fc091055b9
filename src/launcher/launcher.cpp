#include "launcher/launcher.h"

#include "launcher/injection.h"
#include "launcher/listensocket.h"
#include "launcher/process/findprogram.h"
#include "launcher/process/processfacts.h"
#include "launcher/process/processgroup.h"
#include "launcher/process/shellwords.h"
#include "protocol/greeting.h"
#include "protocol/token.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QThread>

namespace Torvix {

using namespace Protocol;

namespace {

/** A process without Qt that is alone and has done nothing for so long will not turn into one. */
constexpr int noQtMs = 1500;
constexpr int stepMs = 20;
/** How long the connection's end may come before the process's. */
constexpr int endMs = 500;
constexpr int greetMs = 5000;
constexpr int maxRefusals = 5;
constexpr int shownLines = 5;

bool isAsked(const std::function<bool()>& isStopping)
{
    return isStopping && isStopping();
}

QString stoppedText()
{
    return QStringLiteral("the test is being stopped");
}

QString withOutput(const QString& problem, ProcessGroup* process)
{
    QStringList lines = process->lastLines(ProcessGroup::Stream::Error, shownLines);
    if (lines.isEmpty())
        lines = process->lastLines(ProcessGroup::Stream::Output, shownLines);
    if (lines.isEmpty())
        return problem;
    const QString output = lines.join(QLatin1Char('\n'));
    const QString mend = output.contains(QLatin1String("could not connect to display"))
                             ? QStringLiteral(" (without a screen, set QT_QPA_PLATFORM=offscreen)")
                             : QString();
    return problem + mend + QLatin1String(". It last wrote:\n") + output;
}

QProcessEnvironment environmentFor(const LaunchOptions& options, const QByteArray& token)
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(options.environment);
    // Whoever runs us under an agent of their own keeps it out of what we start.
    environment.remove(QStringLiteral("TORVIX_AGENT_LISTEN"));
    environment.remove(QStringLiteral("TORVIX_AGENT_SOCKET"));
    environment.insert(QStringLiteral("TORVIX_AGENT_TOKEN"), QString::fromLatin1(tokenToText(token)));
    Injection::extendEnvironment(&environment, Injection::pluginDirectory(options.pluginDirectory));
    return environment;
}

} // namespace

Application::Application() = default;

Application::~Application()
{
    stop();
}

std::unique_ptr<Application> Application::start(const LaunchOptions& options, QString* error)
{
    const QString found = findProgram(options.program);
    const QString program = found.isEmpty() ? options.program : found;
    const QString prefix = QStringLiteral("Cannot start %1: ").arg(options.program);
    QString problem = Injection::fileProblem(program);
    const QString plugin =
        Injection::pluginDirectory(options.pluginDirectory) + QLatin1String("/generic/libtorvixagent.so");
    if (problem.isEmpty() && !QFileInfo::exists(plugin))
        problem = QStringLiteral("the agent is not installed: there is no %1").arg(plugin);
    std::unique_ptr<Application> application(new Application);
    if (problem.isEmpty())
        application->m_listener = ListenSocket::create(&problem);
    if (problem.isEmpty()) {
        ProcessGroup::Command command;
        command.program = program;
        command.arguments = options.arguments;
        command.workingDirectory = options.workingDirectory;
        command.environment = environmentFor(options, application->m_listener->token());
        command.folder = application->m_listener->folder();
        command.mark = "TORVIX_AGENT_SOCKET=" + QFile::encodeName(application->m_listener->path());
        application->m_process = ProcessGroup::start(command, &problem);
    }
    if (!problem.isEmpty() || !application->m_process) {
        *error = prefix + problem;
        return nullptr;
    }
    application->m_commandLine = joinShellWords(QStringList{program} + options.arguments);
    problem = application->waitForCall(options);
    if (problem.isEmpty())
        return application;
    *error = prefix + problem;
    application->stop(0);
    return nullptr;
}

QString Application::waitForCall(const LaunchOptions& options)
{
    QElapsedTimer timer;
    timer.start();
    QElapsedTimer idle = timer;
    qint64 lastUsed = 0;
    QString refused;
    for (;;) {
        m_session = m_listener->accept(stepMs, &refused);
        if (m_session) {
            adoptSession();
            return QString();
        }
        if (m_process->isGone())
            return withOutput(
                QStringLiteral("it %1 before its agent called back").arg(endText(m_process->end())),
                m_process.get());
        if (isAsked(options.isStopping))
            return stoppedText();
        const qint64 used = cpuTimeMs(m_process->pid());
        if (used != lastUsed) {
            lastUsed = used;
            idle.restart();
        }
        if (idle.elapsed() > noQtMs && m_process->members().size() == 1 &&
            !Injection::mayStillCall(m_process->pid()))
            return withOutput(Injection::processProblem({m_process->pid()}), m_process.get());
        if (timer.elapsed() > options.timeoutMs) {
            const QString why = refused.isEmpty() ? Injection::processProblem(m_process->members()) : refused;
            return withOutput(QStringLiteral("its agent did not call back within %1 ms: %2")
                                  .arg(options.timeoutMs)
                                  .arg(why),
                              m_process.get());
        }
    }
}

void Application::adoptSession()
{
    m_pid = m_session->peer().pid;
    m_isOrphan = m_process && m_process->pid() != m_pid && !m_process->isRunning();
    std::weak_ptr<Application*> self = m_self;
    m_session->setEndExplainer([self] {
        const std::shared_ptr<Application*> alive = self.lock();
        return alive ? (*alive)->explainEnd() : QString();
    });
}

QString Application::explainEnd()
{
    if (m_process)
        m_process->waitForEnd(endMs);
    const ProcessEnd seen = end();
    const bool isKnown = seen.kind == ProcessEnd::Exited || seen.kind == ProcessEnd::Killed;
    return isKnown ? QStringLiteral("it %1").arg(endText(seen)) : QString();
}

namespace {

/** The token to show: as given, else of the environment, else of the file beside the socket. */
QByteArray tokenFor(const QString& address, const QByteArray& given)
{
    const QByteArray text = given.isEmpty() ? qgetenv("TORVIX_AGENT_TOKEN") : given;
    QFile file(address + QLatin1String(".token"));
    if (text.isEmpty() && !isTcpAddress(address) && file.open(QIODevice::ReadOnly))
        return tokenFromText(file.readAll());
    return tokenFromText(text);
}

} // namespace

std::unique_ptr<Application> Application::attach(const QString& address, const QByteArray& token,
                                                 int timeoutMs, QString* error,
                                                 const std::function<bool()>& isStopping)
{
    QElapsedTimer timer;
    timer.start();
    QString problem;
    std::unique_ptr<Application> application(new Application);
    // An application that is just starting may listen soon; one whose last runner has just gone
    // turns the next away until it has seen that.
    for (int refused = 0; !application->m_session && refused < maxRefusals;) {
        std::unique_ptr<Channel> channel = connectTo(address, &problem);
        const QByteArray shown = tokenFor(address, token);
        if (channel && shown.isEmpty()) {
            problem = QStringLiteral("its token is missing (32 hexadecimal digits in TORVIX_AGENT_TOKEN)");
            break;
        }
        if (channel) {
            application->m_session = Session::open(std::move(channel), shown, true, greetMs, &problem);
            ++refused;
        } else if (timer.elapsed() >= timeoutMs) {
            break;
        }
        if (!application->m_session && isAsked(isStopping)) {
            problem = stoppedText();
            break;
        }
        if (!application->m_session)
            QThread::msleep(stepMs);
    }
    if (!application->m_session) {
        *error = QStringLiteral("Cannot attach to %1: %2").arg(address, problem);
        return nullptr;
    }
    application->adoptSession();
    const Hello peer = application->m_session->peer();
    application->m_commandLine = joinShellWords(QStringList{peer.executable} + peer.arguments.mid(1));
    return application;
}

std::unique_ptr<ModelLink> Application::takeLink()
{
    return std::move(m_session);
}

std::unique_ptr<ModelLink> Application::waitForChild(int timeoutMs)
{
    QElapsedTimer timer;
    timer.start();
    QString ignored;
    std::unique_ptr<Session> session;
    while (m_listener && !session && timer.elapsed() <= timeoutMs)
        session = m_listener->accept(qMax(0, timeoutMs - int(timer.elapsed())), &ignored);
    return session;
}

bool Application::isRunning()
{
    // A program that was started may be one that starts the application in its turn.
    if (m_process && m_process->pid() == m_pid)
        return m_process->isRunning();
    return isProcessRunning(m_pid);
}

ProcessEnd Application::end()
{
    if (isRunning())
        return {};
    const ProcessEnd started = m_process && !m_isOrphan ? m_process->end() : ProcessEnd();
    return started.kind == ProcessEnd::Running ? ProcessEnd{ProcessEnd::Gone, 0} : started;
}

QString Application::readStdout()
{
    return m_process ? m_process->read(ProcessGroup::Stream::Output) : QString();
}

QString Application::readStderr()
{
    return m_process ? m_process->read(ProcessGroup::Stream::Error) : QString();
}

QString Application::lastOutput()
{
    if (!m_process)
        return QString();
    const QStringList lines = m_process->lastLines(ProcessGroup::Stream::Output, shownLines) +
                              m_process->lastLines(ProcessGroup::Stream::Error, shownLines);
    return lines.join(QLatin1Char('\n'));
}

void Application::stop(int graceMs)
{
    if (m_process)
        m_process->stop(graceMs);
}

} // namespace Torvix
