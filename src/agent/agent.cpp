#include "agent/agent.h"

#include "agent/input/inputqueue.h"
#include "agent/listener.h"
#include "agent/requests/requests.h"
#include "protocol/applicationmessages.h"
#include "protocol/token.h"

#include <QCoreApplication>
#include <QFile>

#include <cstdio>
#include <unistd.h>

namespace Torvix::Agent {

static void complain(const QString& text)
{
    std::fprintf(stderr, "torvix agent: %s\n", text.toLocal8Bit().constData());
}

Agent::Agent(QObject* parent) : QObject(parent)
{
    registerRequests(m_dispatcher);
}

Agent::~Agent()
{
    goDown(QStringLiteral("the application has ended"));
    m_listenNotifier.reset();
    if (m_listener >= 0)
        ::close(m_listener);
    if (!m_listenPath.isEmpty()) {
        QFile::remove(m_listenPath);
        QFile::remove(m_listenPath + QStringLiteral(".token"));
    }
}

void Agent::start()
{
    m_token = Protocol::tokenFromText(qgetenv("TORVIX_AGENT_TOKEN"));
    connect(QCoreApplication::instance(), &QCoreApplication::aboutToQuit, this,
            [this] { goDown(QStringLiteral("the application quits")); });
    const QString socket = qEnvironmentVariable("TORVIX_AGENT_SOCKET");
    const QString listenAddress = qEnvironmentVariable("TORVIX_AGENT_LISTEN");
    if (!socket.isEmpty())
        connectTo(socket);
    if (!listenAddress.isEmpty())
        listenAt(listenAddress);
}

void Agent::connectTo(const QString& address)
{
    if (m_token.isEmpty()) {
        complain(QStringLiteral("TORVIX_AGENT_TOKEN is not 32 hexadecimal digits"));
        return;
    }
    QString error;
    auto channel = Protocol::connectTo(address, &error);
    if (channel)
        adopt(std::move(channel), Session::Greeting::SpeakFirst);
    else
        complain(error);
}

void Agent::listenAt(const QString& address)
{
    const bool isPath = !Protocol::isTcpAddress(address);
    QString error;
    if (m_token.isEmpty() && isPath) {
        m_token = Protocol::makeToken();
        if (!writeTokenFile(address + QStringLiteral(".token"), Protocol::tokenToText(m_token)))
            error = QStringLiteral("cannot write %1.token").arg(address);
    } else if (m_token.isEmpty()) {
        error = QStringLiteral("TORVIX_AGENT_TOKEN is needed to listen at %1").arg(address);
    }
    if (error.isEmpty())
        m_listener = listenOn(address, &error);
    if (m_listener < 0) {
        complain(error);
        return;
    }
    m_listenPath = isPath ? address : QString();
    m_listenNotifier = std::make_unique<QSocketNotifier>(m_listener, QSocketNotifier::Read);
    connect(m_listenNotifier.get(), &QSocketNotifier::activated, this, [this] { accept(); });
}

void Agent::accept()
{
    const int descriptor = acceptFrom(m_listener);
    if (descriptor < 0)
        return;
    auto channel = Protocol::socketChannel(descriptor);
    // One runner at a time; a stranger that has not greeted yet gives way.
    if (m_session && m_session->isOpen()) {
        if (m_session->isGreeted())
            return;
        m_session->close();
    }
    adopt(std::move(channel), Session::Greeting::WaitForOther);
}

void Agent::adopt(std::unique_ptr<Protocol::Channel> channel, Session::Greeting greeting)
{
    m_session = std::make_shared<Session>(std::move(channel), m_dispatcher, greeting, m_token);
    m_session->start();
}

void Agent::goDown(const QString& reason)
{
    if (!m_session || !m_session->isOpen())
        return;
    InputQueue::instance().finish();
    m_session->push(Protocol::GoingDown{reason});
    m_session->flush(500);
}

} // namespace Torvix::Agent
