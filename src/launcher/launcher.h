#pragma once

#include "launcher/export.h"
#include "launcher/process/processend.h"
#include "objectmodel/session.h"

#include <QProcessEnvironment>
#include <QStringList>

#include <functional>
#include <memory>
#include <optional>

namespace Torvix {

class ListenSocket;
class ProcessGroup;

/** What to start and how. */
struct LaunchOptions
{
    /** A path, or a name to be found in PATH. */
    QString program;
    QStringList arguments;
    /** Of the application; empty: that of this process. */
    QString workingDirectory;
    /** Set on top of this process's environment. */
    QProcessEnvironment environment;
    /** Folder with `generic/libtorvixagent.so`; empty: `lib/qt5/plugins` beside this library. */
    QString pluginDirectory;
    /** How long the agent may take to call back. */
    int timeoutMs = 20000;
    /** Asked every few milliseconds meanwhile; true gives up. */
    std::function<bool()> isStopping;
};

/**
 * A process that was started with the agent in it, or one that was attached to.
 *
 *     QString error;
 *     std::unique_ptr<Application> application = Application::start(options, &error);
 *     ApplicationModel* model = Inspector::self()->addApplication(application->takeLink());
 *
 * The destructor ends what was started (see stop); one that was attached to goes on.
 */
class TORVIXLAUNCHER_EXPORT Application
{
public:
    /** Null on failure; the error says why the agent did not call back. */
    static std::unique_ptr<Application> start(const LaunchOptions& options, QString* error);
    /**
     * Attaches to an application that runs with TORVIX_AGENT_LISTEN.
     * @param address the value of that variable: a path or `host:port`
     * @param isStopping as in LaunchOptions
     * @param token 32 hexadecimal digits; empty: TORVIX_AGENT_TOKEN, else the file `<path>.token`
     */
    static std::unique_ptr<Application> attach(const QString& address, const QByteArray& token, int timeoutMs,
                                               QString* error, const std::function<bool()>& isStopping = {});
    ~Application();
    Application(const Application&) = delete;
    Application& operator=(const Application&) = delete;

    /** The connection, once. */
    std::unique_ptr<ModelLink> takeLink();

    /**
     * The connection of another process that this one has started and that has the agent as well,
     * null when none called within the time.
     */
    std::unique_ptr<ModelLink> waitForChild(int timeoutMs);

    qint64 pid() const { return m_pid; }
    QString commandLine() const { return m_commandLine; }
    bool wasStarted() const { return m_process != nullptr; }
    /** Whether the process with the agent runs, whatever it has started goes on or not. */
    bool isRunning();
    /**
     * How it ended. Of one that another program has started it is how that one ended, provided that it
     * waited for it; Gone when nobody of ours knows: it was attached to, or its starter went before it.
     */
    ProcessEnd end();

    /** What was written since the last call; null string when it cannot be had (attached). */
    QString readStdout();
    QString readStderr();
    /** The last lines of both streams, for messages. */
    QString lastOutput();

    /** Ends it and everything that it started: asks first (SIGTERM), and kills after the time. */
    void stop(int graceMs = 2000);

private:
    Application();

    QString waitForCall(const LaunchOptions& options);
    void adoptSession();
    QString explainEnd();

    std::unique_ptr<ListenSocket> m_listener;
    std::unique_ptr<ProcessGroup> m_process;
    std::unique_ptr<Session> m_session;
    /** For the connection, which may outlive this, to tell whether it has. */
    std::shared_ptr<Application*> m_self = std::make_shared<Application*>(this);
    qint64 m_pid = 0;
    bool m_isOrphan = false; ///< what was started had ended when the application called
    QString m_commandLine;
};

} // namespace Torvix
