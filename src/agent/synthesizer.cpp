#include "agent/synthesizer.h"

#include "agent/draganddrop.h"
#include "agent/error.h"
#include "agent/inputqueue.h"
#include "agent/keytext.h"
#include "agent/namematcher.h"
#include "agent/objecttree.h"
#include "agent/screen.h"

#include <QApplication>
#include <QMenuBar>
#include <QScrollArea>
#include <QWindow>
#include <qpa/qwindowsysteminterface.h>

#include <private/qhighdpiscaling_p.h>

namespace Torvix::Agent::Input {

namespace {

/** Buttons that are down, and a clock that keeps separate clicks from becoming double clicks. */
struct Pointer
{
    QPoint global;
    Qt::MouseButtons buttons;
    ulong timestamp = 1;
};

Pointer& pointer()
{
    static Pointer state;
    return state;
}

QWindow* windowFor(QWidget* widget)
{
    // Not nativeParentWidget(): of a dialog or a popup that is the window behind it.
    for (const QWidget* at = widget; at; at = at->isWindow() ? nullptr : at->parentWidget())
        if (at->windowHandle())
            return at->windowHandle();
    return nullptr;
}

void sendMouse(const Place& place, QEvent::Type type, Qt::MouseButton button, Qt::KeyboardModifiers modifiers)
{
    QWidget* widget = place.widget;
    if (!widget)
        return; // closed by an earlier step, as a popup is
    QWindow* window = windowFor(widget);
    if (!window)
        throw Error(QStringLiteral("%1 has no window").arg(describeObject(widget)));
    Pointer& state = pointer();
    state.global = widget->mapToGlobal(place.position);
    if (type == QEvent::MouseButtonPress) {
        makeDragsPossible();
        state.buttons |= button;
    } else if (type == QEvent::MouseButtonRelease)
        state.buttons &= ~Qt::MouseButtons(button);
    const QPointF global = QHighDpi::toNativePixels(QPointF(state.global), window);
    const QPointF local =
        QHighDpi::toNativeLocalPosition(QPointF(window->mapFromGlobal(state.global)), window);
    QWindowSystemInterface::handleMouseEvent<QWindowSystemInterface::SynchronousDelivery>(
        window, ++state.timestamp, local, global, state.buttons, button, type, modifiers);
}

void postMouse(const Place& place, QEvent::Type type, Qt::MouseButton button, Qt::KeyboardModifiers modifiers)
{
    InputQueue::instance().postOnce([=] { sendMouse(place, type, button, modifiers); });
}

/** Puts enough time between this and the last press that they are two. */
void separateClicks()
{
    InputQueue::instance().postOnce(
        [] { pointer().timestamp += ulong(QApplication::doubleClickInterval()) + 100; });
}

/**
 * A press outside of an open list or menu only closes that, and does nothing else for most of them: what a
 * person sees and clicks again. Not for what the popup belongs to, which closes it by itself.
 */
void closePopupsBefore(const Place& place)
{
    InputQueue::instance().post([guard = place.widget] {
        QWidget* popup = QApplication::activePopupWidget();
        if (!guard || !popup || guard->window()->windowType() == Qt::Popup || qobject_cast<QMenuBar*>(guard))
            return InputQueue::Step::Done;
        for (QObject* at = popup; at; at = at->parent())
            if (at == guard)
                return InputQueue::Step::Done;
        popup->close();
        return InputQueue::Step::Again;
    });
}

void scrollIntoView(QWidget* widget, const QPoint& position)
{
    for (QWidget* at = widget->parentWidget(); at; at = at->parentWidget()) {
        auto* area = qobject_cast<QScrollArea*>(at);
        if (!area || !area->widget() || !area->widget()->isAncestorOf(widget))
            continue;
        const QPoint inside = widget->mapTo(area->widget(), position);
        area->ensureVisible(inside.x(), inside.y());
    }
}

QWindow* keyWindow()
{
    if (QWidget* popup = QApplication::activePopupWidget())
        return windowFor(popup);
    // Not every platform takes the focus back from a menu that has closed.
    QWindow* window = QGuiApplication::focusWindow();
    if (window && window->isVisible())
        return window;
    QWidget* widget = QApplication::focusWidget();
    if (!widget)
        widget = QApplication::activeModalWidget();
    for (QObject* each : topLevelObjects())
        if (!widget && each->isWidgetType() && isVisible(each))
            widget = static_cast<QWidget*>(each);
    return widget ? windowFor(widget) : nullptr;
}

void sendKey(QEvent::Type type, int key, Qt::KeyboardModifiers modifiers, const QString& text)
{
    QWindow* window = keyWindow();
    if (!window)
        throw Error(QStringLiteral("no window of the application takes keys"));
    QWindowSystemInterface::handleKeyEvent<QWindowSystemInterface::SynchronousDelivery>(
        window, ++pointer().timestamp, type, key, modifiers, text);
}

} // namespace

Qt::MouseButton mouseButtonOf(int number)
{
    static const QMap<int, Qt::MouseButton> buttons = {
        {1, Qt::LeftButton},   {2, Qt::MiddleButton}, {4, Qt::RightButton},    {16, Qt::LeftButton},
        {32, Qt::RightButton}, {64, Qt::BackButton},  {128, Qt::ForwardButton}};
    if (!buttons.contains(number))
        throw Error(QStringLiteral("there is no mouse button %1").arg(number));
    return buttons.value(number);
}

QPoint pointerPosition()
{
    return pointer().global;
}

QWidget* blockerOf(QWidget* widget)
{
    QWidget* modal = QApplication::activeModalWidget();
    if (!modal || !widget)
        return nullptr;
    const QWidget* window = widget->window();
    // Popups of the dialog, and windows that belong to it, are not shut off.
    for (const QWidget* at = window; at; at = at->parentWidget())
        if (at == modal || at->windowType() == Qt::Popup)
            return nullptr;
    if (modal->windowModality() == Qt::WindowModal && modal->parentWidget() &&
        modal->parentWidget()->window() != window)
        return nullptr;
    return modal;
}

Place placeIn(const Value& target, const QPoint* position)
{
    QRect part;
    QWidget* widget = widgetOf(target, &part);
    if (!widget->isVisible())
        throw Error(QStringLiteral("%1 is not visible").arg(describeObject(widget)));
    if (QWidget* modal = blockerOf(widget))
        throw Error(QStringLiteral("%1 gets no input while the modal window %2 is open")
                        .arg(describeObject(widget), describeObject(modal)));
    if (part.isEmpty())
        throwNoPlace(target);
    // Of an item wider than its view only the part that can be seen takes a click.
    const QRect shown = part & widget->rect();
    const Place place{widget, position          ? part.topLeft() + *position
                              : shown.isEmpty() ? part.center()
                                                : shown.center()};
    scrollIntoView(widget, place.position);
    return place;
}

void mouseMove(const Place& place, Qt::KeyboardModifiers modifiers)
{
    postMouse(place, QEvent::MouseMove, Qt::NoButton, modifiers);
}

void mousePress(const Place& place, Qt::MouseButton button, Qt::KeyboardModifiers modifiers)
{
    separateClicks();
    postMouse(place, QEvent::MouseButtonPress, button, modifiers);
}

void mouseRelease(const Place& place, Qt::MouseButton button, Qt::KeyboardModifiers modifiers)
{
    postMouse(place, QEvent::MouseButtonRelease, button, modifiers);
}

void click(const Place& place, Qt::MouseButton button, Qt::KeyboardModifiers modifiers)
{
    closePopupsBefore(place);
    mouseMove(place, modifiers);
    mousePress(place, button, modifiers);
    mouseRelease(place, button, modifiers);
}

void doubleClick(const Place& place, Qt::MouseButton button, Qt::KeyboardModifiers modifiers)
{
    click(place, button, modifiers);
    postMouse(place, QEvent::MouseButtonPress, button, modifiers);
    postMouse(place, QEvent::MouseButtonRelease, button, modifiers);
}

void drag(const Place& place, const QPoint& by, Qt::MouseButton button, Qt::KeyboardModifiers modifiers)
{
    closePopupsBefore(place);
    mouseMove(place, modifiers);
    mousePress(place, button, modifiers);
    // Past the distance at which a drag starts, then on in several moves as a hand makes them.
    constexpr int moves = 10;
    for (int i = 1; i <= moves; ++i)
        mouseMove({place.widget, place.position + by * i / moves}, modifiers);
    mouseRelease({place.widget, place.position + by}, button, modifiers);
}

void wheel(const Place& place, const QPoint& steps, Qt::KeyboardModifiers modifiers)
{
    mouseMove(place, modifiers);
    InputQueue::instance().postOnce([=] {
        QWidget* widget = place.widget;
        QWindow* window = widget ? windowFor(widget) : nullptr;
        if (!window)
            return;
        const QPoint global = widget->mapToGlobal(place.position);
        const QPointF local = QHighDpi::toNativeLocalPosition(QPointF(window->mapFromGlobal(global)), window);
        QWindowSystemInterface::handleWheelEvent(window, local,
                                                 QHighDpi::toNativePixels(QPointF(global), window), QPoint(),
                                                 steps * 120, modifiers);
        QWindowSystemInterface::sendWindowSystemEvents(QEventLoop::AllEvents);
    });
}

void focus(QWidget* widget)
{
    InputQueue::instance().post([guard = QPointer<QWidget>(widget), turns = 0]() mutable {
        if (!guard || guard->hasFocus() || guard->isAncestorOf(QApplication::focusWidget()))
            return InputQueue::Step::Done;
        if (turns++ == 0) {
            guard->window()->activateWindow();
            guard->setFocus(Qt::MouseFocusReason);
        }
        // Without a window manager no window may ever become active; the keys then go there all the same.
        return turns < 40 ? InputQueue::Step::Again : InputQueue::Step::Done;
    });
}

void key(int key, Qt::KeyboardModifiers modifiers, const QString& text)
{
    InputQueue& queue = InputQueue::instance();
    const QVector<int> held = keysOf(modifiers);
    for (const int each : held)
        queue.postOnce([=] { sendKey(QEvent::KeyPress, each, Qt::NoModifier, QString()); });
    queue.postOnce([=] { sendKey(QEvent::KeyPress, key, modifiers, text); });
    queue.postOnce([=] { sendKey(QEvent::KeyRelease, key, modifiers, text); });
    for (const int each : held)
        queue.postOnce([=] { sendKey(QEvent::KeyRelease, each, modifiers, QString()); });
}

void type(const QString& text)
{
    for (const KeyStroke& stroke : keyStrokes(text)) {
        if (!stroke.isPlainText) {
            key(stroke.key, stroke.modifiers, stroke.text);
            continue;
        }
        InputQueue::instance().postOnce([stroke] {
            sendKey(QEvent::KeyPress, stroke.key, stroke.modifiers, stroke.text);
            sendKey(QEvent::KeyRelease, stroke.key, stroke.modifiers, stroke.text);
        });
    }
}

void closeWindow(QWidget* window)
{
    InputQueue::instance().postOnce([guard = QPointer<QWidget>(window)] {
        if (guard && guard->windowHandle())
            QWindowSystemInterface::handleCloseEvent<QWindowSystemInterface::SynchronousDelivery>(
                guard->windowHandle());
    });
}

} // namespace Torvix::Agent::Input
