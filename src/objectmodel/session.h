#pragma once

#include "objectmodel/modellink.h"
#include "protocol/channel.h"
#include "protocol/greeting.h"
#include "protocol/message.h"

#include <deque>
#include <map>
#include <memory>

namespace Torvix {

/**
 * The connection to an agent. It pumps only its own socket, never an event loop.
 *
 * While it waits it looks after the process (when it is one of this machine): one that is stopped
 * ends the call within a second with LinkError::Stopped, and the call can be made again later.
 */
class TORVIXOBJECTMODEL_EXPORT Session : public ModelLink
{
public:
    /**
     * Greets the other side and waits for its greeting.
     * @param token what to show (`connected` true) or what must be shown
     * @param connected true when we connected to the agent, false when it came to us
     * @return null on failure, told in `*error`
     */
    static std::unique_ptr<Session> open(std::unique_ptr<Protocol::Channel> channel, const QByteArray& token,
                                         bool connected, int timeoutMs, QString* error);

    /** Called when the connection ends, to say why in more words (an exit status); may be empty. */
    void setEndExplainer(std::function<QString()> explainer) { m_explainer = std::move(explainer); }
    /** The process to look after while waiting, 0 for none. Set from the greeting for a local one. */
    void setWatchedProcess(qint64 pid) { m_watchedPid = pid; }

    Result<QByteArray, LinkError> exchange(Protocol::RequestNumber number, const QByteArray& body,
                                           int timeoutMs) override;
    void post(Protocol::RequestNumber number, const QByteArray& body) override;
    void pump(int timeoutMs) override;
    void close(const QString& reason) override;
    bool isOpen() const override { return m_channel != nullptr; }
    QString closeReason() const override { return m_closeReason; }
    int descriptor() const override { return m_channel ? m_channel->descriptor() : -1; }
    Protocol::Hello peer() const override { return m_hello; }

private:
    explicit Session(std::unique_ptr<Protocol::Channel> channel);

    bool greet(const QByteArray& token, bool connected, int timeoutMs, QString* error);
    bool receiveSome();
    void dispatch();
    bool send(const QByteArray& bytes);
    /** The reason why the answer did not come. */
    LinkError::Kind await(const std::unique_ptr<Protocol::Frame>* answer, int timeoutMs);
    Result<QByteArray, LinkError> takeReply(const Protocol::Frame& frame, Protocol::RequestNumber number);
    void fail(const QString& reason);
    LinkError ended() const;
    bool isStopped() const;

    std::unique_ptr<Protocol::Channel> m_channel;
    Protocol::FrameReader m_reader;
    Protocol::Hello m_hello;
    QString m_closeReason;
    std::function<QString()> m_explainer;
    qint64 m_watchedPid = 0;
    quint32 m_nextId = 1;
    /** Requests that somebody waits for; a frame is there once it has arrived. */
    std::map<quint32, std::unique_ptr<Protocol::Frame>> m_waiting;
};

} // namespace Torvix
