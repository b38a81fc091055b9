#include "launcher/process/groupguard.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <utility>

// What runs in the guarding process comes from a fork of a process with threads and without an exec:
// it takes no memory from the heap and calls only what is safe in a signal handler.
namespace Torvix {

namespace {

constexpr std::size_t blockSize = 4096;
constexpr unsigned maxDescriptor = 65536;
/** A process that starts others while it is killed needs more than one round. */
constexpr int maxRounds = 200;
constexpr useconds_t roundUs = 10'000;

/** Calls `visit` with the name of each entry of an open folder, from its beginning. */
template <class Visit>
void forEachEntry(int folder, Visit visit)
{
    alignas(dirent64) char block[blockSize];
    lseek(folder, 0, SEEK_SET);
    for (;;) {
        const long size = syscall(SYS_getdents64, folder, block, sizeof block);
        if (size <= 0)
            return;
        for (long at = 0; at < size;) {
            const auto* entry = reinterpret_cast<const dirent64*>(block + at);
            visit(entry->d_name);
            at += entry->d_reclen;
        }
    }
}

/** 0 for what is no process. */
int pidOf(const char* name)
{
    int pid = 0;
    for (; *name >= '0' && *name <= '9'; ++name)
        pid = pid * 10 + (*name - '0');
    return *name == '\0' ? pid : 0;
}

int killMarked(int processes, const char* mark, std::size_t length)
{
    int found = 0;
    forEachEntry(processes, [&](const char* name) {
        const int pid = pidOf(name);
        if (pid > 1 && pid != getpid() && GroupGuard::hasMark(pid, mark, length)) {
            kill(pid, SIGKILL);
            ++found;
        }
    });
    return found;
}

void removeFolder(const char* path)
{
    const int folder = open(path, O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (folder < 0)
        return;
    forEachEntry(folder, [folder](const char* name) { unlinkat(folder, name, 0); });
    close(folder);
    rmdir(path);
}

/** Whoever reads from this process's streams is not to wait for the guard too. */
void keepOnly(int descriptor)
{
    dup2(descriptor, 0);
    if (syscall(SYS_close_range, 1U, ~0U, 0U) == 0)
        return;
    for (unsigned each = 1; each < maxDescriptor; ++each)
        close(int(each));
}

[[noreturn]] void watchOver(int lifeline, const char* mark, std::size_t length, const char* folder)
{
    setsid(); // a Ctrl-C is for the others
    prctl(PR_SET_NAME, "torvix-guard");
    sigset_t all;
    sigfillset(&all);
    sigprocmask(SIG_SETMASK, &all, nullptr);
    keepOnly(lifeline);
    if (chdir("/") != 0)
        _exit(1);
    char ignored = 0;
    while (read(0, &ignored, 1) < 0 && errno == EINTR)
        continue;
    const int processes = open("/proc", O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    for (int round = 0; round < maxRounds && killMarked(processes, mark, length) > 0; ++round)
        usleep(roundUs);
    removeFolder(folder);
    _exit(0);
}

} // namespace

bool GroupGuard::hasMark(int pid, const char* mark, std::size_t length)
{
    char path[32] = "/proc/";
    char digits[12];
    int count = 0;
    for (int left = pid; left > 0; left /= 10)
        digits[count++] = char('0' + left % 10);
    std::reverse_copy(digits, digits + count, path + strlen("/proc/"));
    memcpy(path + strlen("/proc/") + count, "/environ", sizeof "/environ");
    const int file = open(path, O_RDONLY | O_CLOEXEC);
    if (file < 0)
        return false;
    char block[blockSize];
    std::size_t matched = 0;
    bool isSame = true;
    bool found = false;
    for (ssize_t size = read(file, block, sizeof block); size > 0 && !found;
         size = read(file, block, sizeof block)) {
        for (ssize_t i = 0; i < size && !found; ++i) {
            if (block[i] == '\0') {
                found = isSame && matched == length;
                matched = 0;
                isSame = true;
            } else if (isSame) {
                isSame = matched < length && block[i] == mark[matched];
                ++matched;
            }
        }
    }
    close(file);
    return found;
}

GroupGuard::GroupGuard(const QByteArray& mark, const QByteArray& folder)
{
    int lifeline[2] = {-1, -1};
    if (pipe2(lifeline, O_CLOEXEC) != 0)
        return;
    // Signals that are sent while the guard is about to block them would end it.
    sigset_t all;
    sigset_t before;
    sigfillset(&all);
    pthread_sigmask(SIG_SETMASK, &all, &before);
    m_pid = fork();
    if (m_pid == 0)
        watchOver(lifeline[0], mark.constData(), std::size_t(mark.size()), folder.constData());
    pthread_sigmask(SIG_SETMASK, &before, nullptr);
    close(lifeline[0]);
    m_lifeline = lifeline[1];
}

GroupGuard::~GroupGuard()
{
    if (m_pid > 0) {
        kill(m_pid, SIGKILL);
        waitpid(m_pid, nullptr, 0);
    }
    if (m_lifeline >= 0)
        close(m_lifeline);
}

} // namespace Torvix
