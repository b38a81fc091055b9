#include "agent/agent.h"

#include <QCoreApplication>
#include <QGenericPlugin>
#include <QTimer>

/**
 * What Qt loads for QT_QPA_GENERIC_PLUGINS=torvixagent, while the application object is being made.
 * The agent itself starts in the first turn of the event loop, when names and windows are there.
 */
class TorvixAgentPlugin : public QGenericPlugin
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID QGenericPluginFactoryInterface_iid FILE "torvixagent.json")

public:
    QObject* create(const QString& key, const QString&) override
    {
        if (key.compare(QLatin1String("torvixagent"), Qt::CaseInsensitive) != 0)
            return nullptr;
        auto* agent = new Torvix::Agent::Agent(nullptr);
        QTimer::singleShot(0, agent, [agent] { agent->start(); });
        return agent;
    }
};

#include "plugin.moc"
