#include "agent/events/picker.h"

#include "agent/lookup/objecttree.h"
#include "agent/session/wire.h"
#include "protocol/usermessages.h"

#include <QApplication>
#include <QEvent>
#include <QMouseEvent>
#include <QWidget>
#include <QWindow>

namespace Torvix::Agent {

Picker& Picker::instance()
{
    static Picker picker;
    return picker;
}

void Picker::set(const std::shared_ptr<Session>& session)
{
    m_session = session;
    QCoreApplication::instance()->removeEventFilter(this);
    if (session)
        QCoreApplication::instance()->installEventFilter(this);
}

/**
 * What is under the pointer, by the place in the window that got the event: on the screen the window
 * may be on its way to somewhere else, with a window manager that has just found a place for it.
 */
static QObject* objectUnder(QObject* window, const QMouseEvent* event)
{
    for (QWidget* top : QApplication::topLevelWidgets())
        if (top->windowHandle() == window && top->rect().contains(event->pos())) {
            QWidget* child = top->childAt(event->pos());
            return child ? child : top;
        }
    return objectAt(event->globalPos());
}

bool Picker::eventFilter(QObject* watched, QEvent* event)
{
    const bool isPress =
        event->type() == QEvent::MouseButtonPress || event->type() == QEvent::MouseButtonDblClick;
    if (m_swallowRelease && event->type() == QEvent::MouseButtonRelease) {
        m_swallowRelease = false;
        set(nullptr);
        return true;
    }
    if (!isPress || m_session.expired())
        return false;
    m_swallowRelease = true;
    QObject* at = objectUnder(watched, static_cast<QMouseEvent*>(event));
    pick(at ? at : watched);
    return true;
}

void Picker::pick(QObject* object)
{
    const auto session = m_session.lock();
    m_session.reset();
    if (session)
        session->push(Protocol::Picked{toReference(Value::ofObject(object), session->objects())});
}

} // namespace Torvix::Agent
