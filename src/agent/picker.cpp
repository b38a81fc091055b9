#include "agent/picker.h"

#include "agent/screen.h"
#include "agent/wire.h"
#include "protocol/usermessages.h"

#include <QCoreApplication>
#include <QEvent>
#include <QMouseEvent>

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
    QObject* at = objectAt(static_cast<QMouseEvent*>(event)->globalPos());
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
