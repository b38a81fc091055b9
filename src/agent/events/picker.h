#pragma once

#include "agent/session/session.h"

#include <QObject>

#include <memory>

namespace Torvix::Agent {

/** While it serves a session, a click anywhere picks the object there and reaches no widget. */
class Picker : public QObject
{
public:
    static Picker& instance();

    /** Null ends picking. It ends by itself after one click, or with the session. */
    void set(const std::shared_ptr<Session>& session);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void pick(QObject* object);

    std::weak_ptr<Session> m_session;
    bool m_swallowRelease = false;
};

} // namespace Torvix::Agent
