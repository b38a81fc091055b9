#pragma once

#include "interpreter/base/applicationcontext.h"
#include "launcher/launcher.h"
#include "objectmodel/inspector.h"
#include "report/results.h"
#include "shared/base/sharedptr.h"

#include <QStringList>

#include <atomic>
#include <functional>
#include <list>
#include <memory>
#include <mutex>
#include <vector>

namespace Torvix {

/** How applications of a test case are started. */
struct ApplicationSettings
{
    QStringList folders;     ///< searched before PATH
    QStringList environment; ///< "NAME=value"
    int startTimeoutMs = 20'000;
    bool isSuite = false; ///< they are those of a suite.ini, for errors
    /** Asked while one is waited for; true gives up. */
    std::function<bool()> isStopping;
};

/**
 * The applications of one test case, with a context for each. What was started ends with this
 * object; what was attached to goes on.
 */
class Applications
{
public:
    /** Told when an application has gone by itself, or by killAll(). */
    using EndHandler = std::function<void(const ApplicationReport& report, const ProcessEnd& end)>;

    explicit Applications(ApplicationSettings settings);
    ~Applications();
    Applications(const Applications&) = delete;
    Applications& operator=(const Applications&) = delete;

    /** For applications that are started from now on. */
    void setSettings(ApplicationSettings settings) { m_settings = std::move(settings); }
    void setEndHandler(EndHandler handler) { m_endHandler = std::move(handler); }

    /** The command is a program with arguments: see splitShellWords(). An id below 0 is a failure. */
    SharedPtr<ApplicationContext> start(const QString& command, int timeoutMs, QString* error);
    SharedPtr<ApplicationContext> attach(const QString& address, int timeoutMs, QString* error);
    SharedPtr<ApplicationContext> waitForLaunch(int timeoutMs, QString* error);
    bool detach(const SharedPtr<ApplicationContext>& context);

    /** The empty context when there is none. */
    SharedPtr<ApplicationContext> first() const;
    /** By name; the current one for an empty name. The empty context when there is none. */
    SharedPtr<ApplicationContext> find(const QString& name) const;
    bool setCurrent(const SharedPtr<ApplicationContext>& context);
    std::list<SharedPtr<ApplicationContext>> all() const;

    bool isRunning(const SharedPtr<ApplicationContext>& context);
    qint64 pid(const SharedPtr<ApplicationContext>& context) const;
    /** Null when the context has none: it was attached to, or is unknown. */
    Application* process(const SharedPtr<ApplicationContext>& context) const;
    ApplicationModel* model(const SharedPtr<ApplicationContext>& context) const;
    /** Where the connection goes to: this machine and 0 unless it is one by TCP; empty for an unknown one. */
    QString host(const SharedPtr<ApplicationContext>& context) const;
    int port(const SharedPtr<ApplicationContext>& context) const;

    /** Takes in that an application has gone; called by whoever listens to the inspector. */
    void noticeEnd(ApplicationModel* model, const QString& reason);
    /** Ends what was started, and tells of each how it ended. */
    std::vector<ApplicationReport> stopAll();
    /** Kills what was started, at once. The only operation for other threads. */
    void killAll();
    /** Whether killAll() was called: an end is then none of the application's own. */
    bool wereKilled() const { return m_killed; }

private:
    struct Entry
    {
        SharedPtr<ApplicationContext> context;
        std::unique_ptr<Application> process;
        ApplicationModel* model = nullptr;
        QString host = QStringLiteral("localhost");
        int port = 0;
        bool endTold = false;
    };

    Entry* entry(const SharedPtr<ApplicationContext>& context);
    const Entry* entry(const SharedPtr<ApplicationContext>& context) const;
    SharedPtr<ApplicationContext> add(std::unique_ptr<Application> process, std::unique_ptr<ModelLink> link,
                                      const QString& commandLine);
    QString freeName(const QString& wanted) const;
    LaunchOptions launchOptions(const QString& program, const QStringList& arguments, int timeoutMs) const;
    static ApplicationReport reportOf(const Entry& entry, const QString& ending);
    static ProcessEnd endOf(const Entry& entry);
    /** What becomes of it when the test case has ended. */
    static QString finish(Entry& entry);

    ApplicationSettings m_settings;
    EndHandler m_endHandler;
    std::vector<Entry> m_entries;
    std::atomic<bool> m_killed{false}; ///< by killAll()
    std::mutex m_pidMutex;
    std::vector<qint64> m_startedPids;
};

} // namespace Torvix
