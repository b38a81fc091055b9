#pragma once

#include "agent/session/session.h"
#include "protocol/eventmessages.h"

#include <QEvent>
#include <QObject>
#include <QPointer>

#include <list>

namespace Torvix::Agent {

/**
 * Events that a script wants to know of: "QMouseEvent" and the other event classes, "MouseButtonPress"
 * and the other types of QEvent, and "DialogOpened", "MessageBoxOpened", "ToplevelWidgetOpened".
 */
class EventHandlers : public QObject
{
public:
    static EventHandlers& instance();

    /** Throws for an unknown event name. */
    void install(Session& session, const Protocol::InstallHandler& request);
    /** Throws when there is no such handler. */
    void uninstall(Session& session, const Protocol::UninstallHandler& request);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    struct Handler
    {
        std::weak_ptr<Session> session;
        Protocol::HandlerScope scope;
        QPointer<QObject> object;
        QByteArray typeName;
        QString eventName;
        QString name;
        std::function<bool(QObject*, QEvent*)> matches;
    };
    static bool isFor(const Handler& handler, const QObject* object);

    std::list<Handler> m_handlers;
};

} // namespace Torvix::Agent
