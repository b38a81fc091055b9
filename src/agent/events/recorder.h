#pragma once

#include "agent/session/session.h"
#include "protocol/usermessages.h"

#include <QElapsedTimer>
#include <QObject>
#include <QPointer>
#include <QTimer>
#include <QWidget>

#include <memory>

namespace Torvix::Agent {

/**
 * Turns what a person does into the actions that a script would call: clicks, typed text, menu
 * entries, items. Only events of the window system count, not what the application sends itself.
 */
class Recorder : public QObject
{
public:
    static Recorder& instance();

    /** Null ends recording. */
    void set(const std::shared_ptr<Session>& session);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    Recorder();
    void onPress(QWidget* widget, QMouseEvent* event);
    void onRelease(QWidget* widget, QMouseEvent* event);
    void onDoubleClick(QWidget* widget, QMouseEvent* event);
    void onKey(QWidget* widget, QKeyEvent* event);
    void onWheel(QWidget* widget, QWheelEvent* event);
    bool recordItem(QWidget* widget, const QPoint& position, bool isDouble);
    bool recordAction(QWidget* widget, const QPoint& position);
    void recordPointer(const QString& function, QWidget* widget, const QVector<int>& numbers,
                       QMouseEvent* event);
    void flushText();
    void send(const QString& function, QObject* object, QVector<Protocol::CapturedArg> arguments,
              const QStringList& item = {});

    std::weak_ptr<Session> m_session;
    QPointer<QWidget> m_pressed;
    QPoint m_pressPosition;
    QPointer<QWidget> m_typedInto;
    QString m_typed;
    QTimer m_typingPause;
    QElapsedTimer m_sinceAction;
    bool m_isOn = false;
};

} // namespace Torvix::Agent
