#include "agent/events/recorder.h"

#include "agent/input/keytext.h"
#include "agent/items/items.h"
#include "agent/lookup/namegenerator.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QApplication>
#include <QComboBox>
#include <QMenu>
#include <QMenuBar>
#include <QMouseEvent>
#include <QTabBar>
#include <QTime>
#include <QWheelEvent>

namespace Torvix::Agent {

using namespace Protocol;

/** A pause in typing after which the text so far is an action. */
constexpr int typingPauseMs = 1000;

static CapturedArg numberArgument(int value)
{
    CapturedArg argument;
    argument.value = QString::number(value);
    return argument;
}

static CapturedArg textArgument(const QString& value)
{
    CapturedArg argument;
    argument.value = value;
    argument.valueType = StringClass;
    return argument;
}

Recorder& Recorder::instance()
{
    static Recorder recorder;
    return recorder;
}

Recorder::Recorder()
{
    m_typingPause.setSingleShot(true);
    m_typingPause.setInterval(typingPauseMs);
    connect(&m_typingPause, &QTimer::timeout, this, [this] { flushText(); });
}

void Recorder::set(const std::shared_ptr<Session>& session)
{
    flushText();
    m_session = session;
    m_pressed = nullptr;
    m_sinceAction.start();
    if (m_isOn != bool(session)) {
        m_isOn = bool(session);
        if (m_isOn)
            QCoreApplication::instance()->installEventFilter(this);
        else
            QCoreApplication::instance()->removeEventFilter(this);
    }
}

bool Recorder::eventFilter(QObject* watched, QEvent* event)
{
    if (!event->spontaneous() || !watched->isWidgetType() || m_session.expired())
        return false;
    auto* widget = static_cast<QWidget*>(watched);
    switch (event->type()) {
    case QEvent::MouseButtonPress:
        onPress(widget, static_cast<QMouseEvent*>(event));
        break;
    case QEvent::MouseButtonRelease:
        onRelease(widget, static_cast<QMouseEvent*>(event));
        break;
    case QEvent::MouseButtonDblClick:
        onDoubleClick(widget, static_cast<QMouseEvent*>(event));
        break;
    case QEvent::KeyPress:
        onKey(widget, static_cast<QKeyEvent*>(event));
        break;
    case QEvent::Wheel:
        onWheel(widget, static_cast<QWheelEvent*>(event));
        break;
    default:
        break;
    }
    return false;
}

void Recorder::onPress(QWidget* widget, QMouseEvent* event)
{
    // Events that a widget ignores go on to its parents; the first widget is the one meant.
    if (m_pressed && m_pressed != widget && widget->isAncestorOf(m_pressed))
        return;
    flushText();
    m_pressed = widget;
    m_pressPosition = event->pos();
    // A menu bar opens at the press, and the release goes to the menu.
    if (auto* bar = qobject_cast<QMenuBar*>(widget)) {
        if (recordAction(bar, event->pos()))
            m_pressed = nullptr;
    } else if (qobject_cast<QComboBox*>(widget)) {
        // So does the list of a combo box; its entry is what counts.
        m_pressed = nullptr;
    }
}

void Recorder::onRelease(QWidget* widget, QMouseEvent* event)
{
    if (qobject_cast<QMenu*>(widget)) {
        recordAction(widget, event->pos());
        m_pressed = nullptr;
        return;
    }
    if (m_pressed != widget)
        return;
    m_pressed = nullptr;
    const QPoint moved = event->pos() - m_pressPosition;
    if (moved.manhattanLength() >= QApplication::startDragDistance() &&
        !qobject_cast<QAbstractButton*>(widget)) {
        recordPointer(QStringLiteral("mouseDrag"), widget,
                      {m_pressPosition.x(), m_pressPosition.y(), moved.x(), moved.y()}, event);
        return;
    }
    if (event->button() == Qt::LeftButton && event->modifiers() == Qt::NoModifier) {
        if (recordItem(widget, event->pos(), false))
            return;
        if (qobject_cast<QAbstractButton*>(widget)) {
            send(QStringLiteral("clickButton"), widget, {});
            return;
        }
    }
    recordPointer(QStringLiteral("mouseClick"), widget, {event->x(), event->y()}, event);
}

void Recorder::onDoubleClick(QWidget* widget, QMouseEvent* event)
{
    m_pressed = nullptr;
    if (event->button() == Qt::LeftButton && recordItem(widget, event->pos(), true))
        return;
    recordPointer(QStringLiteral("doubleClick"), widget, {event->x(), event->y()}, event);
}

void Recorder::onKey(QWidget* widget, QKeyEvent* event)
{
    const bool isModifier = event->key() == Qt::Key_Control || event->key() == Qt::Key_Shift ||
                            event->key() == Qt::Key_Alt || event->key() == Qt::Key_Meta ||
                            event->key() == Qt::Key_unknown;
    // Only the widget with the focus: keys that it ignores go on to its parents.
    if (isModifier || event->isAutoRepeat() ||
        (QApplication::focusWidget() && widget != QApplication::focusWidget()))
        return;
    if (m_typedInto != widget)
        flushText();
    m_typedInto = widget;
    m_typed += keyText(event->key(), event->modifiers(), event->text());
    m_typingPause.start();
}

void Recorder::onWheel(QWidget* widget, QWheelEvent* event)
{
    flushText();
    const QPoint position = event->position().toPoint();
    send(QStringLiteral("mouseWheel"), widget,
         {numberArgument(position.x()), numberArgument(position.y()),
          numberArgument(event->angleDelta().x() / 120), numberArgument(event->angleDelta().y() / 120)});
}

void Recorder::recordPointer(const QString& function, QWidget* widget, const QVector<int>& numbers,
                             QMouseEvent* event)
{
    QVector<CapturedArg> arguments;
    for (const int number : numbers)
        arguments.append(numberArgument(number));
    CapturedArg modifiers = numberArgument(int(event->modifiers()));
    CapturedArg button = numberArgument(int(event->button()));
    button.kind = CapturedArgKind::Enumeration;
    button.value = event->button() == Qt::LeftButton    ? QStringLiteral("MouseButton.LeftButton")
                   : event->button() == Qt::RightButton ? QStringLiteral("MouseButton.RightButton")
                                                        : QStringLiteral("MouseButton.MiddleButton");
    send(function, widget, arguments + QVector<CapturedArg>{modifiers, button});
}

bool Recorder::recordAction(QWidget* widget, const QPoint& position)
{
    auto* menu = qobject_cast<QMenu*>(widget);
    auto* bar = qobject_cast<QMenuBar*>(widget);
    const QAction* action = menu ? menu->actionAt(position) : bar->actionAt(position);
    // An entry that only opens its sub-menu is part of the way.
    if (!action || action->isSeparator() || !action->isEnabled())
        return false;
    send(QStringLiteral("activateItem"), widget, {}, {plainActionText(action->text())});
    return true;
}

bool Recorder::recordItem(QWidget* widget, const QPoint& position, bool isDouble)
{
    if (auto* bar = qobject_cast<QTabBar*>(widget)) {
        const int index = bar->tabAt(position);
        if (index >= 0 && !isDouble)
            send(QStringLiteral("activateItem"), bar, {}, {plainActionText(bar->tabText(index))});
        return index >= 0;
    }
    auto* view = qobject_cast<QAbstractItemView*>(widget->parentWidget());
    if (!view || view->viewport() != widget)
        return false;
    const QModelIndex index = view->indexAt(position);
    if (!index.isValid())
        return false;
    for (QWidget* at = view->parentWidget(); at; at = at->parentWidget())
        if (auto* combo = qobject_cast<QComboBox*>(at)) {
            send(QStringLiteral("activateItem"), combo, {}, itemPath(index));
            return true;
        }
    send(isDouble ? QStringLiteral("doubleClickItem") : QStringLiteral("clickItem"), view, {},
         itemPath(index));
    return true;
}

void Recorder::flushText()
{
    m_typingPause.stop();
    const QString text = std::exchange(m_typed, QString());
    QWidget* widget = m_typedInto;
    m_typedInto = nullptr;
    if (!text.isEmpty() && widget)
        send(QStringLiteral("type"), widget, {textArgument(text)});
}

void Recorder::send(const QString& function, QObject* object, QVector<CapturedArg> arguments,
                    const QStringList& item)
{
    const auto session = m_session.lock();
    if (!session)
        return;
    EventCaptured message;
    message.kind = CapturedKind::MethodCall;
    message.methodName = function;
    message.objectName = realNameOf(object);
    if (!item.isEmpty()) {
        message.itemPath = item;
        arguments.prepend(textArgument(joinItemPath(item)));
    }
    message.arguments = std::move(arguments);
    message.timeMs = QTime::currentTime().msecsSinceStartOfDay();
    message.delayMs = int(m_sinceAction.restart());
    session->push(message);
}

} // namespace Torvix::Agent
