#include "testsupport/dialogs/terminal.h"

#include "testsupport/waiting.h"

#include <QFile>

#include <cerrno>

#include <fcntl.h>
#include <poll.h>
#include <termios.h>
#include <unistd.h>

namespace Torvix {

namespace {

constexpr int pollIntervalMs = 100;

QString& device()
{
    static QString path;
    return path;
}

/** What is typed is not shown for the length of a scope. */
class HiddenInput
{
public:
    HiddenInput(int descriptor, bool hides) : m_descriptor(descriptor)
    {
        m_isHiding = hides && tcgetattr(descriptor, &m_before) == 0;
        if (!m_isHiding)
            return;
        termios silent = m_before;
        silent.c_lflag &= ~tcflag_t(ECHO);
        tcsetattr(descriptor, TCSAFLUSH, &silent);
    }
    ~HiddenInput()
    {
        if (m_isHiding)
            tcsetattr(m_descriptor, TCSAFLUSH, &m_before);
    }
    HiddenInput(const HiddenInput&) = delete;
    HiddenInput& operator=(const HiddenInput&) = delete;

private:
    int m_descriptor;
    bool m_isHiding = false;
    termios m_before{};
};

} // namespace

std::unique_ptr<Terminal> Terminal::open()
{
    const QByteArray path = device().isEmpty() ? QByteArray("/dev/tty") : QFile::encodeName(device());
    const int descriptor = ::open(path.constData(), O_RDWR | O_NOCTTY | O_CLOEXEC);
    if (descriptor < 0)
        return nullptr;
    std::unique_ptr<Terminal> terminal(new Terminal(descriptor));
    return isatty(descriptor) ? std::move(terminal) : nullptr;
}

void Terminal::setDevice(const QString& path)
{
    device() = path;
}

Terminal::~Terminal()
{
    ::close(m_descriptor);
}

void Terminal::write(const QString& text)
{
    const QByteArray bytes = text.toLocal8Bit();
    for (int at = 0; at < bytes.size();) {
        const ssize_t written = ::write(m_descriptor, bytes.constData() + at, std::size_t(bytes.size() - at));
        if (written < 0 && errno != EINTR)
            return;
        at += int(qMax<ssize_t>(0, written));
    }
}

bool Terminal::readLine(QString* line, Echo echo)
{
    const HiddenInput hidden(m_descriptor, echo == Echo::Off);
    QByteArray bytes;
    for (;;) {
        pollfd input{m_descriptor, POLLIN, 0};
        if (poll(&input, 1, pollIntervalMs) == 0) {
            if (!waitMeanwhile(0))
                return false;
            continue;
        }
        char next = 0;
        const ssize_t count = ::read(m_descriptor, &next, 1);
        if (count < 0 && errno == EINTR)
            continue;
        if (count <= 0 && bytes.isEmpty())
            return false;
        if (count <= 0 || next == '\n')
            break;
        bytes += next;
    }
    *line = QString::fromLocal8Bit(bytes);
    return true;
}

} // namespace Torvix
