#pragma once

#include "agent/session/dispatcher.h"
#include "agent/session/session.h"

#include <QObject>
#include <QSocketNotifier>

#include <memory>

namespace Torvix::Agent {

/**
 * The agent in this process: connects to the runner that TORVIX_AGENT_SOCKET names, or waits for one
 * at TORVIX_AGENT_LISTEN. With neither set it does nothing.
 *
 * It lives in the GUI thread, as a child of the application object. Whatever it cannot do it says in
 * one line on the standard error stream; the application goes on.
 */
class Agent : public QObject
{
public:
    explicit Agent(QObject* parent);
    ~Agent() override;

    /** Called from the event loop, when the application is complete. */
    void start();

private:
    void connectTo(const QString& address);
    void listenAt(const QString& address);
    void accept();
    void adopt(std::unique_ptr<Protocol::Channel> channel, Session::Greeting greeting);
    void goDown(const QString& reason);

    Dispatcher m_dispatcher;
    QByteArray m_token;
    std::shared_ptr<Session> m_session;
    int m_listener = -1;
    QString m_listenPath;
    std::unique_ptr<QSocketNotifier> m_listenNotifier;
};

} // namespace Torvix::Agent
