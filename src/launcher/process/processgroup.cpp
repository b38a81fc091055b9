#include "launcher/process/processgroup.h"

#include "launcher/process/groupguard.h"
#include "launcher/process/processfacts.h"

#include <QElapsedTimer>
#include <QFile>
#include <QTextCodec>
#include <QThread>
#include <QVector>

#include <dirent.h>
#include <fcntl.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <cstring>
#include <vector>

namespace Torvix {

namespace {

constexpr int stepMs = 10;

QString streamFile(const QString& folder, ProcessGroup::Stream stream)
{
    return folder +
           (stream == ProcessGroup::Stream::Output ? QLatin1String("/stdout") : QLatin1String("/stderr"));
}

/** Null-terminated pointers into a list of strings that outlives them. */
std::vector<char*> pointersInto(QVector<QByteArray>& texts)
{
    std::vector<char*> pointers;
    for (QByteArray& text : texts)
        pointers.push_back(text.data());
    pointers.push_back(nullptr);
    return pointers;
}

/** Between fork and exec: only calls that are safe there. Writes errno to the pipe on failure. */
[[noreturn]] void becomeProgram(const char* program, char* const* arguments, char* const* environment,
                                const char* folder, const int* streams, int report, pid_t parent)
{
    setpgid(0, 0);
    // Ends with this process also when that is killed and can stop nothing any more.
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    if (getppid() != parent)
        _exit(127);
    sigset_t none;
    sigemptyset(&none);
    sigprocmask(SIG_SETMASK, &none, nullptr);
    signal(SIGPIPE, SIG_DFL);
    const int nothing = open("/dev/null", O_RDONLY);
    if ((*folder == '\0' || chdir(folder) == 0) && dup2(nothing, 0) >= 0 && dup2(streams[0], 1) >= 0 &&
        dup2(streams[1], 2) >= 0)
        execve(program, arguments, environment);
    const int problem = errno;
    const ssize_t written = write(report, &problem, sizeof problem);
    _exit(written == sizeof problem ? 127 : 126);
}

int openStream(const QString& path)
{
    return ::open(QFile::encodeName(path).constData(), O_WRONLY | O_CREAT | O_TRUNC | O_APPEND | O_CLOEXEC,
                  0600);
}

/** True for a process that is ending, and for one that is not ours to see. */
bool hasNoEnvironment(int pid)
{
    QFile environment(QStringLiteral("/proc/%1/environ").arg(pid));
    return !environment.open(QIODevice::ReadOnly) || environment.read(1).isEmpty();
}

QVector<QByteArray> environmentOf(const ProcessGroup::Command& command)
{
    QVector<QByteArray> texts;
    for (const QString& variable : command.environment.toStringList())
        texts.append(variable.toLocal8Bit());
    texts.append(command.mark);
    return texts;
}

} // namespace

std::unique_ptr<ProcessGroup> ProcessGroup::start(const Command& command, QString* error)
{
    QVector<QByteArray> arguments{QFile::encodeName(command.program)};
    for (const QString& argument : command.arguments)
        arguments.append(argument.toLocal8Bit());
    QVector<QByteArray> environment = environmentOf(command);
    const std::vector<char*> argumentList = pointersInto(arguments);
    const std::vector<char*> environmentList = pointersInto(environment);
    const QByteArray folder = QFile::encodeName(command.workingDirectory);
    const int streams[2] = {openStream(streamFile(command.folder, Stream::Output)),
                            openStream(streamFile(command.folder, Stream::Error))};
    int report[2] = {-1, -1};
    if (streams[0] < 0 || streams[1] < 0 || pipe2(report, O_CLOEXEC) != 0) {
        *error = QString::fromLocal8Bit(strerror(errno));
        return nullptr;
    }
    const pid_t parent = getpid();
    const pid_t pid = fork();
    if (pid == 0)
        becomeProgram(arguments.first().constData(), argumentList.data(), environmentList.data(),
                      folder.constData(), streams, report[1], parent);
    ::close(report[1]);
    ::close(streams[0]);
    ::close(streams[1]);
    int problem = pid < 0 ? errno : 0;
    // Ends at once when the pipe is closed by a successful exec.
    const bool failed = pid < 0 || ::read(report[0], &problem, sizeof problem) == sizeof problem;
    ::close(report[0]);
    if (!failed) {
        setpgid(pid, pid);
        return std::unique_ptr<ProcessGroup>(new ProcessGroup(pid, command));
    }
    if (pid > 0)
        waitpid(pid, nullptr, 0);
    *error = QString::fromLocal8Bit(strerror(problem));
    return nullptr;
}

ProcessGroup::ProcessGroup(int pid, const Command& command)
    : m_pid(pid)
    , m_folder(command.folder)
    , m_mark(command.mark)
    , m_guard(std::make_unique<GroupGuard>(command.mark, QFile::encodeName(command.folder)))
{
}

ProcessGroup::~ProcessGroup()
{
    stop(0);
}

bool ProcessGroup::isRunning()
{
    int status = 0;
    if (m_end.kind == ProcessEnd::Running && waitpid(m_pid, &status, WNOHANG) == m_pid)
        m_end = endOfStatus(status);
    return m_end.kind == ProcessEnd::Running;
}

bool ProcessGroup::waitForEnd(int timeoutMs)
{
    if (!isRunning() || timeoutMs <= 0)
        return !isRunning();
    // Told by the kernel at once, or where it cannot, asked in steps.
    const int handle = int(::syscall(SYS_pidfd_open, m_pid, 0));
    QElapsedTimer timer;
    timer.start();
    while (isRunning() && timer.elapsed() < timeoutMs) {
        pollfd ending = {handle, POLLIN, 0};
        ::poll(&ending, 1, handle < 0 ? stepMs : timeoutMs - int(timer.elapsed()));
    }
    if (handle >= 0)
        ::close(handle);
    return !isRunning();
}

bool ProcessGroup::isGone()
{
    // Asked twice: a process that starts another and ends while the list is read may hide it.
    if (!m_isGone)
        m_isGone = !isRunning() && members().isEmpty() && members().isEmpty();
    return m_isGone;
}

ProcessEnd ProcessGroup::end()
{
    isRunning();
    return m_end;
}

QVector<int> ProcessGroup::members()
{
    QVector<int> found;
    if (isRunning())
        found.append(m_pid);
    const std::unique_ptr<DIR, int (*)(DIR*)> processes(::opendir("/proc"), ::closedir);
    while (const dirent* entry = processes ? ::readdir(processes.get()) : nullptr) {
        const int pid = std::atoi(entry->d_name);
        if (pid <= 0 || pid == m_pid || pid == getpid())
            continue;
        // Of a process that is just ending the environment is empty, but its files are still open: one
        // of the group counts until it is a zombie.
        if (GroupGuard::hasMark(pid, m_mark.constData(), std::size_t(m_mark.size())) ||
            ((getpgid(pid) == m_pid || (m_members.contains(pid) && hasNoEnvironment(pid))) &&
             isProcessRunning(pid)))
            found.append(pid);
    }
    m_members = found;
    return found;
}

void ProcessGroup::signalAll(int signal)
{
    const QVector<int> all = members();
    for (int pid : all) {
        ::kill(pid, signal);
        // A stopped process takes no other signal than KILL.
        if (signal != SIGKILL)
            ::kill(pid, SIGCONT);
    }
}

void ProcessGroup::stop(int graceMs)
{
    if (isGone())
        return;
    QElapsedTimer timer;
    timer.start();
    if (graceMs > 0)
        signalAll(SIGTERM);
    waitForEnd(graceMs);
    while (timer.elapsed() < graceMs && !isGone())
        QThread::msleep(stepMs);
    // One that starts others while it is killed needs another round.
    for (int round = 0; round < 10 && !isGone(); ++round) {
        signalAll(SIGKILL);
        waitForEnd(stepMs);
    }
    waitForEnd(1000);
}

QString ProcessGroup::read(Stream stream)
{
    QFile file(streamFile(m_folder, stream));
    qint64& position = m_read[int(stream)];
    if (!file.open(QIODevice::ReadOnly) || !file.seek(position))
        return QStringLiteral("");
    const QByteArray bytes = file.readAll();
    QTextCodec::ConverterState state;
    QString text = QTextCodec::codecForLocale()->toUnicode(bytes.constData(), bytes.size(), &state);
    position += bytes.size() - state.remainingChars;
    return text.isNull() ? QStringLiteral("") : text;
}

QStringList ProcessGroup::lastLines(Stream stream, int count) const
{
    constexpr qint64 enough = 8192;
    QFile file(streamFile(m_folder, stream));
    if (!file.open(QIODevice::ReadOnly))
        return {};
    file.seek(qMax<qint64>(0, file.size() - enough));
    const QStringList lines =
        QString::fromLocal8Bit(file.readAll()).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    return lines.mid(qMax(0, lines.size() - count));
}

} // namespace Torvix
