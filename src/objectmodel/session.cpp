#include "objectmodel/session.h"

#include "protocol/token.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QScopeGuard>

namespace Torvix {

using namespace Protocol;

namespace {

/** How often a call that waits looks after the process. Two looks in a row must agree. */
constexpr int lookMs = 200;
/** How long the other side may leave our bytes unread before we read some of its own. */
constexpr int writeStepMs = 50;

LinkError linkError(LinkError::Kind kind, const QString& text)
{
    LinkError error;
    error.kind = kind;
    error.text = text;
    return error;
}

QString roleText(const QString& problem)
{
    return QStringLiteral("the agent was refused: %1").arg(problem);
}

} // namespace

Session::Session(std::unique_ptr<Channel> channel) : m_channel(std::move(channel)) {}

std::unique_ptr<Session> Session::open(std::unique_ptr<Channel> channel, const QByteArray& token,
                                       bool connected, int timeoutMs, QString* error)
{
    const bool isLocal = channel->isLocal();
    std::unique_ptr<Session> session(new Session(std::move(channel)));
    if (!session->greet(token, connected, timeoutMs, error))
        return nullptr;
    session->m_watchedPid = isLocal ? session->m_hello.pid : 0;
    return session;
}

bool Session::greet(const QByteArray& token, bool connected, int timeoutMs, QString* error)
{
    Hello mine;
    mine.role = Role::Runner;
    mine.pid = QCoreApplication::applicationPid();
    mine.token = connected ? token : QByteArray();
    const QByteArray bytes = toBytes({FrameKind::Hello, 0, 0, encode(mine)});
    if (connected && !m_channel->writeAll(bytes, timeoutMs)) {
        *error = QStringLiteral("the agent closed the connection");
        return false;
    }
    QElapsedTimer timer;
    timer.start();
    std::optional<Frame> frame;
    while (!(frame = m_reader.next())) {
        const int left = timeoutMs - int(timer.elapsed());
        if (!m_reader.failed() && left > 0 && m_channel->wait(Channel::Wait::Readable, left) && receiveSome())
            continue;
        *error = m_reader.failed() ? m_reader.errorString()
                 : !m_channel      ? QStringLiteral("the agent closed the connection (a wrong token?)")
                                   : QStringLiteral("the agent did not greet within %1 ms").arg(timeoutMs);
        return false;
    }
    ErrorText refusal;
    if (frame->kind == FrameKind::Error && decode(frame->body, &refusal)) {
        *error = QStringLiteral("the agent refused the connection: %1").arg(refusal.text);
        return false;
    }
    bool tell = false;
    const QString problem =
        checkHello(*frame, connected ? QByteArray() : token, Role::Agent, &m_hello, &tell);
    if (problem.isEmpty() && (connected || (m_channel && m_channel->writeAll(bytes, timeoutMs)))) {
        m_reader.setLimit(maxFrameSize);
        return true;
    }
    if (tell && m_channel)
        m_channel->writeAll(toBytes(errorFrame(0, ErrorClass::Refused, problem)), timeoutMs);
    *error = problem.isEmpty() ? QStringLiteral("the agent closed the connection") : roleText(problem);
    return false;
}

bool Session::receiveSome()
{
    char buffer[1 << 16];
    while (m_channel) {
        const qint64 count = m_channel->read(buffer, sizeof buffer);
        if (count == 0)
            return true;
        if (count < 0) {
            const QString detail = m_channel->errorString();
            fail(detail.isEmpty() ? QStringLiteral("the connection was closed") : detail);
            return false;
        }
        m_reader.add(buffer, count);
        if (count < qint64(sizeof buffer))
            return true;
    }
    return false;
}

void Session::close(const QString& reason)
{
    if (!m_channel)
        return;
    m_channel.reset();
    m_closeReason = reason; // nobody needs to be asked why
}

void Session::fail(const QString& reason)
{
    if (!m_channel)
        return;
    m_channel.reset();
    const QString explanation = m_explainer ? m_explainer() : QString();
    m_closeReason = explanation.isEmpty() ? reason : explanation;
}

void Session::dispatch()
{
    while (std::optional<Frame> frame = m_reader.next()) {
        switch (frame->kind) {
        case FrameKind::Push:
            push(*frame);
            break;
        case FrameKind::Reply:
        case FrameKind::Error: {
            const auto waiting = m_waiting.find(frame->id);
            if (waiting != m_waiting.end())
                waiting->second = std::make_unique<Frame>(*frame);
            else if (frame->kind == FrameKind::Reply)
                push(*frame);
            break;
        }
        default:
            fail(QStringLiteral("the agent sent a request"));
        }
    }
    if (m_reader.failed())
        fail(QStringLiteral("the agent sent what cannot be read: %1").arg(m_reader.errorString()));
}

bool Session::send(const QByteArray& bytes)
{
    for (int written = 0; m_channel && written < bytes.size();) {
        const qint64 count = m_channel->write(bytes.constData() + written, bytes.size() - written);
        if (count < 0) {
            // What it still said before it went may be waiting.
            receiveSome();
            fail(QStringLiteral("the connection was closed"));
        } else if (count == 0 && !m_channel->wait(Channel::Wait::Writable, writeStepMs)) {
            receiveSome();
        }
        written += int(qMax<qint64>(count, 0));
    }
    return m_channel != nullptr;
}

bool Session::isStopped() const
{
    if (m_watchedPid <= 0)
        return false;
    QFile stat(QStringLiteral("/proc/%1/stat").arg(m_watchedPid));
    if (!stat.open(QIODevice::ReadOnly))
        return false;
    const QByteArray line = stat.readAll();
    // The name in parentheses may hold anything; the state comes after the last one.
    const char state = line.mid(line.lastIndexOf(')') + 2, 1).constData()[0];
    return state == 'T' || state == 't';
}

LinkError Session::ended() const
{
    return linkError(LinkError::Closed, QStringLiteral("The application has ended: %1").arg(m_closeReason));
}

Result<QByteArray, LinkError> Session::exchange(RequestNumber number, const QByteArray& body, int timeoutMs)
{
    // 0 means that no reply is wanted.
    if (m_nextId == 0)
        m_nextId = 1;
    const quint32 id = m_nextId++;
    const auto waiting = m_waiting.emplace(id, nullptr).first;
    // A handler may throw through here.
    const auto forget = qScopeGuard([this, waiting] { m_waiting.erase(waiting); });
    send(toBytes({FrameKind::Request, id, quint16(number), body}));
    switch (await(&waiting->second, timeoutMs)) {
    case LinkError::Closed:
        return ended();
    case LinkError::TimedOut:
        return linkError(LinkError::TimedOut,
                         QStringLiteral("The application did not answer within %1 ms").arg(timeoutMs));
    case LinkError::Stopped:
        return linkError(LinkError::Stopped, QStringLiteral("The application is stopped (by a signal or a "
                                                            "debugger): it does not answer"));
    default:
        return takeReply(*waiting->second, number);
    }
}

LinkError::Kind Session::await(const std::unique_ptr<Frame>* answer, int timeoutMs)
{
    QElapsedTimer timer;
    timer.start();
    bool looksStopped = false;
    for (;;) {
        dispatch();
        if (*answer)
            return LinkError::None;
        if (!m_channel)
            return LinkError::Closed;
        const int left = timeoutMs < 0 ? lookMs : timeoutMs - int(timer.elapsed());
        if (left <= 0)
            return LinkError::TimedOut;
        if (m_channel->wait(Channel::Wait::Readable, qMin(left, lookMs))) {
            looksStopped = false;
            receiveSome();
            continue;
        }
        const bool wasStopped = std::exchange(looksStopped, isStopped());
        if (wasStopped && looksStopped)
            return LinkError::Stopped;
    }
}

Result<QByteArray, LinkError> Session::takeReply(const Frame& frame, RequestNumber number)
{
    if (frame.kind == FrameKind::Reply && frame.number == quint16(number))
        return frame.body;
    ErrorText text;
    if (frame.kind == FrameKind::Error && decode(frame.body, &text)) {
        LinkError error = linkError(LinkError::Answered, text.text);
        if (frame.number <= quint16(ErrorClass::Last))
            error.errorClass = ErrorClass(frame.number);
        if (error.text.isEmpty())
            error.text = QStringLiteral("The application gave an error without a text");
        return error;
    }
    fail(QStringLiteral("the agent sent an answer that cannot be read"));
    return ended();
}

void Session::post(RequestNumber number, const QByteArray& body)
{
    send(toBytes({FrameKind::Request, 0, quint16(number), body}));
}

void Session::pump(int timeoutMs)
{
    if (m_channel && (timeoutMs == 0 || m_channel->wait(Channel::Wait::Readable, timeoutMs)))
        receiveSome();
    dispatch();
}

} // namespace Torvix
