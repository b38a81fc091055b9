#include "agent/session/session.h"

#include "agent/session/dispatcher.h"
#include "protocol/greeting.h"
#include "protocol/membermessages.h"
#include "protocol/token.h"

#include <QAbstractEventDispatcher>
#include <QCoreApplication>
#include <QDir>
#include <QLoggingCategory>
#include <QSysInfo>

#include <array>

namespace Torvix::Agent {

using namespace Protocol;

/** Bytes that a runner may leave unread before it is taken for dead. */
constexpr int maxOutgoing = 256 << 20;

Session::Session(std::unique_ptr<Channel> channel, Dispatcher& dispatcher, Greeting greeting,
                 QByteArray token)
    : m_channel(std::move(channel))
    , m_dispatcher(dispatcher)
    , m_greeting(greeting)
    , m_token(std::move(token))
    , m_objects([this](qint64 id) {
        m_destroyed.append(id);
        // The application object goes when there is no event loop, and no timer, any more.
        if (!m_destroyedTimer.isActive() && QAbstractEventDispatcher::instance())
            m_destroyedTimer.start();
    })
{
    m_destroyedTimer.setSingleShot(true);
    m_destroyedTimer.setInterval(0);
    QObject::connect(&m_destroyedTimer, &QTimer::timeout, &m_destroyedTimer, [this] { sendDestroyed(); });
}

Session::~Session() = default;

void Session::start()
{
    const int descriptor = m_channel->descriptor();
    if (descriptor >= 0) {
        m_readNotifier = std::make_unique<QSocketNotifier>(descriptor, QSocketNotifier::Read);
        m_writeNotifier = std::make_unique<QSocketNotifier>(descriptor, QSocketNotifier::Write);
        m_writeNotifier->setEnabled(false);
        QObject::connect(m_readNotifier.get(), &QSocketNotifier::activated, m_readNotifier.get(),
                         [this] { readAvailable(); });
        QObject::connect(m_writeNotifier.get(), &QSocketNotifier::activated, m_writeNotifier.get(),
                         [this] { writePending(); });
    }
    if (m_greeting == Greeting::SpeakFirst)
        sayHello();
}

void Session::sayHello()
{
    Hello hello;
    hello.role = Role::Agent;
    if (m_greeting == Greeting::SpeakFirst)
        hello.token = m_token;
    hello.pid = QCoreApplication::applicationPid();
    hello.applicationName = QCoreApplication::applicationName();
    hello.executable = QCoreApplication::applicationFilePath();
    hello.arguments = QCoreApplication::arguments();
    hello.workingDirectory = QDir::currentPath();
    hello.qtVersion = QString::fromLatin1(qVersion());
    hello.osName = QSysInfo::prettyProductName();
    // Long command lines must not make the greeting longer than strangers may send.
    while (encode(hello).size() > int(maxHelloSize) - 64 && !hello.arguments.isEmpty())
        hello.arguments.removeLast();
    send({FrameKind::Hello, 0, 0, encode(hello)});
}

void Session::handleHello(const Frame& frame)
{
    Hello hello;
    bool tell = false;
    const bool theyConnected = m_greeting == Greeting::WaitForOther;
    const QString wrong =
        checkHello(frame, theyConnected ? m_token : QByteArray(), Role::Runner, &hello, &tell);
    if (!wrong.isEmpty()) {
        if (tell) {
            send(errorFrame(0, ErrorClass::Refused, wrong));
            flush(100);
        }
        close();
        return;
    }
    m_greeted = true;
    m_reader.setLimit(maxFrameSize);
    if (theyConnected)
        sayHello();
    if (onGreeted)
        onGreeted();
}

void Session::readAvailable()
{
    const auto keep = shared_from_this();
    std::array<char, 65536> buffer;
    while (m_channel) {
        const qint64 count = m_channel->read(buffer.data(), qint64(buffer.size()));
        if (count < 0) {
            close();
            return;
        }
        if (count == 0)
            break;
        m_reader.add(buffer.data(), count);
        if (count < qint64(buffer.size()))
            break;
    }
    while (m_channel) {
        const auto frame = m_reader.next();
        if (!frame)
            break;
        handle(*frame);
    }
    if (m_channel && m_reader.failed())
        close();
}

void Session::handle(const Frame& frame)
{
    if (!m_greeted)
        handleHello(frame);
    else if (frame.kind == FrameKind::Request)
        m_dispatcher.handle(*this, frame);
    else
        close();
}

void Session::sendDestroyed()
{
    if (m_destroyed.isEmpty() || !m_greeted)
        return;
    m_destroyedTimer.stop();
    const ObjectsDestroyed message{std::exchange(m_destroyed, {})};
    send(pushFrame(message));
}

void Session::send(const Frame& frame)
{
    if (!m_channel)
        return;
    // Destructions go out before anything that they caused.
    if (!m_destroyed.isEmpty() && frame.kind != FrameKind::Hello)
        sendDestroyed();
    if (!m_channel) // that may have found that the runner has gone
        return;
    const QByteArray bytes = toBytes(frame);
    qint64 written = 0;
    if (m_outgoing.isEmpty()) {
        written = m_channel->write(bytes.constData(), bytes.size());
        if (written < 0) {
            close();
            return;
        }
    }
    if (written < bytes.size()) {
        m_outgoing.append(bytes.constData() + written, int(bytes.size() - written));
        if (m_outgoing.size() > maxOutgoing)
            close();
        else if (m_writeNotifier)
            m_writeNotifier->setEnabled(true);
    }
}

void Session::writePending()
{
    const auto keep = shared_from_this();
    if (!m_channel)
        return;
    const qint64 written = m_channel->write(m_outgoing.constData(), m_outgoing.size());
    if (written < 0) {
        close();
        return;
    }
    m_outgoing.remove(0, int(written));
    if (m_writeNotifier)
        m_writeNotifier->setEnabled(!m_outgoing.isEmpty());
}

void Session::flush(int timeoutMs)
{
    sendDestroyed();
    if (m_channel && !m_outgoing.isEmpty())
        m_channel->writeAll(std::exchange(m_outgoing, {}), timeoutMs);
}

void Session::close()
{
    if (!m_channel)
        return;
    const auto keep = shared_from_this();
    if (m_readNotifier)
        m_readNotifier->setEnabled(false);
    if (m_writeNotifier)
        m_writeNotifier->setEnabled(false);
    m_destroyedTimer.stop();
    m_channel.reset();
    m_greeted = false;
    if (onClosed)
        onClosed();
}

} // namespace Torvix::Agent
