#pragma once

#include "agent/session/objecttable.h"
#include "protocol/channel.h"
#include "protocol/message.h"

#include <QSocketNotifier>
#include <QTimer>

#include <functional>
#include <memory>

namespace Torvix::Agent {

class Dispatcher;

/**
 * One connection to a runner: the greeting, requests in, replies and pushes out.
 *
 * Lives in the GUI thread. Requests are handled as their bytes arrive, so also in a nested event loop
 * while an earlier request is still being worked on. Whatever goes wrong closes this connection and
 * nothing else; the object is kept by whoever works on a request, then goes.
 */
class Session : public std::enable_shared_from_this<Session>
{
public:
    enum class Greeting { SpeakFirst, WaitForOther };

    Session(std::unique_ptr<Protocol::Channel> channel, Dispatcher& dispatcher, Greeting greeting,
            QByteArray token);
    ~Session();
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    /** Begins to read; says hello when it is to speak first. */
    void start();

    bool isOpen() const { return m_channel != nullptr; }
    bool isGreeted() const { return m_greeted; }
    ObjectTable& objects() { return m_objects; }

    void send(const Protocol::Frame& frame);
    template <class Push>
    void push(const Push& message)
    {
        if (m_greeted)
            send(Protocol::pushFrame(message));
    }

    /** Sends what is waiting, at most for this long, before the process goes. */
    void flush(int timeoutMs);
    void close();

    /** Called once, when the connection has ended for whatever reason. */
    std::function<void()> onClosed;
    /** Called when the runner has shown who it is. */
    std::function<void()> onGreeted;

private:
    void readAvailable();
    void writePending();
    void handle(const Protocol::Frame& frame);
    void handleHello(const Protocol::Frame& frame);
    void sayHello();
    void sendDestroyed();

    std::unique_ptr<Protocol::Channel> m_channel;
    Dispatcher& m_dispatcher;
    Greeting m_greeting;
    QByteArray m_token;
    Protocol::FrameReader m_reader;
    std::unique_ptr<QSocketNotifier> m_readNotifier;
    std::unique_ptr<QSocketNotifier> m_writeNotifier;
    QTimer m_destroyedTimer;
    QVector<qint64> m_destroyed;
    QByteArray m_outgoing;
    bool m_greeted = false;
    ObjectTable m_objects;
};

} // namespace Torvix::Agent
