#include "runner/applications.h"

#include "launcher/process/findprogram.h"
#include "launcher/process/processfacts.h"
#include "launcher/process/shellwords.h"
#include "protocol/channel.h"

#include <QElapsedTimer>
#include <QFileInfo>

#include <algorithm>
#include <csignal>

#include <sys/wait.h>

namespace Torvix {

namespace {

SharedPtr<ApplicationContext> noContext()
{
    return new ApplicationContext;
}

} // namespace

Applications::Applications(ApplicationSettings settings) : m_settings(std::move(settings)) {}

Applications::~Applications()
{
    stopAll();
}

QString Applications::freeName(const QString& wanted) const
{
    QString name = wanted;
    const auto isTaken = [this, &name] {
        return std::any_of(m_entries.begin(), m_entries.end(),
                           [&name](const Entry& each) { return each.context->name == name; });
    };
    for (int i = 2; isTaken(); ++i)
        name = QStringLiteral("%1_%2").arg(wanted, QString::number(i));
    return name;
}

SharedPtr<ApplicationContext> Applications::add(std::unique_ptr<Application> process,
                                                std::unique_ptr<ModelLink> link, const QString& commandLine)
{
    Entry added;
    added.model = Inspector::self()->addApplication(std::move(link));
    added.process = std::move(process);
    const Protocol::Hello peer = added.model->peer();
    added.context = new ApplicationContext;
    added.context->id = added.model->id();
    added.context->name = freeName(QFileInfo(peer.executable).fileName());
    added.context->commandLine = commandLine;
    added.context->connection = added.model->id();
    added.context->protocolVersion = peer.major;
    added.context->startTime = processStart(peer.pid);
    const QByteArray greeting = peer.applicationName.toUtf8() + '\n';
    added.context->greeting.assign(greeting.begin(), greeting.end());
    Inspector::self()->setCurrent(added.model);
    m_entries.push_back(std::move(added));
    return m_entries.back().context;
}

LaunchOptions Applications::launchOptions(const QString& program, const QStringList& arguments,
                                          int timeoutMs) const
{
    LaunchOptions options;
    options.program = program;
    options.arguments = arguments;
    options.timeoutMs = timeoutMs < 0 ? m_settings.startTimeoutMs : timeoutMs;
    options.isStopping = m_settings.isStopping;
    for (const QString& variable : m_settings.environment)
        options.environment.insert(variable.section('=', 0, 0), variable.section('=', 1));
    return options;
}

SharedPtr<ApplicationContext> Applications::start(const QString& command, int timeoutMs, QString* error)
{
    const std::optional<QStringList> words = splitShellWords(command, error);
    if (!words) {
        *error = QStringLiteral("The command %1 cannot be read: %2").arg(command, *error);
        return noContext();
    }
    if (words->isEmpty() || words->first().isEmpty()) {
        *error = QStringLiteral("'%1' names no program").arg(command);
        return noContext();
    }
    const QString program = findProgram(words->first(), m_settings.folders);
    if (program.isEmpty()) {
        const QString folders = m_settings.folders.join(QLatin1String(", "));
        *error = QStringLiteral("Cannot start %1: there is no such program in %2; give its path, or add its "
                                "folder to %3")
                     .arg(words->first(),
                          folders.isEmpty() ? QStringLiteral("PATH") : folders + QLatin1String(" or PATH"),
                          m_settings.isSuite ? QStringLiteral("ApplicationFolders in suite.ini")
                                             : QStringLiteral("PATH"));
        return noContext();
    }
    const LaunchOptions options = launchOptions(program, words->mid(1), timeoutMs);
    std::unique_ptr<Application> process = Application::start(options, error);
    if (!process)
        return noContext();
    std::unique_ptr<ModelLink> link = process->takeLink();
    const QString commandLine = process->commandLine();
    {
        const std::lock_guard<std::mutex> lock(m_pidMutex);
        m_startedPids.push_back(process->pid());
    }
    return add(std::move(process), std::move(link), commandLine);
}

void Applications::killAll()
{
    m_killed = true;
    const std::lock_guard<std::mutex> lock(m_pidMutex);
    for (const qint64 pid : m_startedPids) {
        // The id of one that has ended and was waited for may be another's by now.
        siginfo_t state;
        if (waitid(P_PID, id_t(pid), &state, WEXITED | WNOHANG | WNOWAIT) == 0)
            kill(pid_t(pid), SIGKILL);
    }
    m_startedPids.clear();
}

SharedPtr<ApplicationContext> Applications::attach(const QString& address, int timeoutMs, QString* error)
{
    std::unique_ptr<Application> process =
        Application::attach(address, QByteArray(), timeoutMs < 0 ? m_settings.startTimeoutMs : timeoutMs,
                            error, m_settings.isStopping);
    if (!process)
        return noContext();
    std::unique_ptr<ModelLink> link = process->takeLink();
    const QString commandLine = process->commandLine();
    const SharedPtr<ApplicationContext> context = add(std::move(process), std::move(link), commandLine);
    QString host;
    quint16 port = 0;
    if (Protocol::isTcpAddress(address, &host, &port)) {
        m_entries.back().host = host;
        m_entries.back().port = port;
    }
    return context;
}

SharedPtr<ApplicationContext> Applications::waitForLaunch(int timeoutMs, QString* error)
{
    constexpr int sliceMs = 20;
    const int limitMs = timeoutMs < 0 ? m_settings.startTimeoutMs : timeoutMs;
    const auto canLaunch = [](const Entry& each) { return each.process && each.process->wasStarted(); };
    if (std::none_of(m_entries.begin(), m_entries.end(), canLaunch)) {
        *error = QStringLiteral("No application was started that could launch another one");
        return noContext();
    }
    QElapsedTimer timer;
    timer.start();
    do {
        for (Entry& each : m_entries) {
            if (!canLaunch(each))
                continue;
            if (std::unique_ptr<ModelLink> link = each.process->waitForChild(sliceMs))
                return add(nullptr, std::move(link), QString());
        }
    } while (timer.elapsed() < limitMs && !(m_settings.isStopping && m_settings.isStopping()));
    *error = QStringLiteral("No application was launched within %1 ms").arg(limitMs);
    return noContext();
}

bool Applications::detach(const SharedPtr<ApplicationContext>& context)
{
    Entry* found = entry(context);
    if (!found || !found->model->isAlive())
        return false;
    found->endTold = true;
    found->model->detach(QStringLiteral("it was detached from"));
    context->connection = -1;
    return true;
}

Applications::Entry* Applications::entry(const SharedPtr<ApplicationContext>& context)
{
    const auto found = std::find_if(m_entries.begin(), m_entries.end(), [&context](const Entry& each) {
        return each.context->id == context->id;
    });
    return found == m_entries.end() ? nullptr : &*found;
}

const Applications::Entry* Applications::entry(const SharedPtr<ApplicationContext>& context) const
{
    return const_cast<Applications*>(this)->entry(context);
}

SharedPtr<ApplicationContext> Applications::first() const
{
    return m_entries.empty() ? noContext() : m_entries.front().context;
}

SharedPtr<ApplicationContext> Applications::find(const QString& name) const
{
    const ApplicationModel* current = Inspector::self()->current();
    for (const Entry& each : m_entries) {
        if (name.isEmpty() ? each.model == current : each.context->name == name)
            return each.context;
    }
    return noContext();
}

bool Applications::setCurrent(const SharedPtr<ApplicationContext>& context)
{
    const Entry* found = entry(context);
    if (!found || !found->model->isAlive())
        return false;
    Inspector::self()->setCurrent(found->model);
    return true;
}

std::list<SharedPtr<ApplicationContext>> Applications::all() const
{
    std::list<SharedPtr<ApplicationContext>> contexts;
    for (const Entry& each : m_entries)
        contexts.push_back(each.context);
    return contexts;
}

bool Applications::isRunning(const SharedPtr<ApplicationContext>& context)
{
    Entry* found = entry(context);
    if (!found)
        return false;
    if (found->process && found->process->wasStarted())
        return found->process->isRunning();
    // Of another machine the connection is all there is to know.
    return found->port != 0 ? found->model->isAlive() : isProcessRunning(found->model->peer().pid);
}

qint64 Applications::pid(const SharedPtr<ApplicationContext>& context) const
{
    const Entry* found = entry(context);
    return found ? found->model->peer().pid : 0;
}

Application* Applications::process(const SharedPtr<ApplicationContext>& context) const
{
    const Entry* found = entry(context);
    return found ? found->process.get() : nullptr;
}

ApplicationModel* Applications::model(const SharedPtr<ApplicationContext>& context) const
{
    const Entry* found = entry(context);
    return found ? found->model : nullptr;
}

QString Applications::host(const SharedPtr<ApplicationContext>& context) const
{
    const Entry* found = entry(context);
    return found ? found->host : QString();
}

int Applications::port(const SharedPtr<ApplicationContext>& context) const
{
    const Entry* found = entry(context);
    return found ? found->port : 0;
}

ApplicationReport Applications::reportOf(const Entry& entry, const QString& ending)
{
    ApplicationReport report;
    report.name = entry.context->name;
    report.pid = entry.model->peer().pid;
    report.ending = ending;
    if (entry.process && entry.process->wasStarted())
        report.output = entry.process->lastOutput();
    return report;
}

ProcessEnd Applications::endOf(const Entry& entry)
{
    const ProcessEnd end = entry.process ? entry.process->end() : ProcessEnd();
    if (end.kind == ProcessEnd::Exited || end.kind == ProcessEnd::Killed)
        return end;
    return {entry.model->hasSaidGoodbye() ? ProcessEnd::Quit : ProcessEnd::Gone, 0};
}

void Applications::noticeEnd(ApplicationModel* model, const QString& reason)
{
    for (Entry& each : m_entries) {
        if (each.model != model || each.endTold)
            continue;
        each.endTold = true;
        each.context->connection = -1;
        const ProcessEnd end = endOf(each);
        QString ending = end.kind == ProcessEnd::Gone ? reason : endText(end);
        if (m_killed)
            ending = QStringLiteral("ended by the runner");
        if (m_endHandler)
            m_endHandler(reportOf(each, ending), end);
    }
}

QString Applications::finish(Entry& entry)
{
    const bool isStarted = entry.process && entry.process->wasStarted();
    const bool isOurEnd = isStarted && entry.process->isRunning();
    if (isStarted)
        entry.process->stop();
    if (isOurEnd)
        return QStringLiteral("ended with the test case");
    if (isStarted || !entry.model->isAlive())
        return endText(endOf(entry));
    // Another's child may have been ended as one of the group of what was started.
    const bool goesOn = entry.port != 0 || isProcessRunning(entry.model->peer().pid);
    return goesOn ? QStringLiteral("goes on by itself") : QStringLiteral("ended with the test case");
}

std::vector<ApplicationReport> Applications::stopAll()
{
    std::vector<ApplicationReport> reports;
    for (Entry& each : m_entries) {
        const bool wasTold = std::exchange(each.endTold, true);
        const QString ending = finish(each);
        if (!wasTold)
            reports.push_back(reportOf(each, m_killed ? QStringLiteral("ended by the runner") : ending));
        each.model->detach(QStringLiteral("The test case has ended"));
    }
    m_entries.clear();
    {
        const std::lock_guard<std::mutex> lock(m_pidMutex);
        m_startedPids.clear();
    }
    Inspector::self()->setCurrent(nullptr);
    return reports;
}

} // namespace Torvix
