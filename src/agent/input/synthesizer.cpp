#include "agent/input/synthesizer.h"

#include "agent/input/draganddrop.h"
#include "agent/input/inputqueue.h"
#include "agent/input/keytext.h"
#include "agent/lookup/namematcher.h"
#include "agent/lookup/objecttree.h"
#include "agent/reflection/error.h"
#include "agent/widgets/graphics.h"
#include "agent/widgets/widgettoolkit.h"

#include <QApplication>
#include <QCursor>
#include <QGraphicsProxyWidget>
#include <QGraphicsView>
#include <QMenuBar>
#include <QScrollArea>
#include <QWindow>
#include <qpa/qwindowsysteminterface.h>

#include <private/qhighdpiscaling_p.h>
#include <qpa/qwindowsysteminterface_p.h>

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

/** Null for a widget that has not been shown yet. */
QWindow* windowFor(QWidget* widget)
{
    // A widget in a scene gets its input through the view.
    if (const QGraphicsView* view = Graphics::viewAround(widget))
        return windowFor(view->viewport());
    // Not nativeParentWidget(): of a dialog or a popup that is the window behind it.
    for (const QWidget* at = widget; at; at = at->isWindow() ? nullptr : at->parentWidget())
        if (at->windowHandle())
            return at->windowHandle();
    return nullptr;
}

/** The window, null when it has been closed by an earlier step, as a popup is. */
QWindow* windowAt(const Place& place, QPoint* global)
{
    if (place.window) {
        *global = place.window->mapToGlobal(place.position);
        return place.window;
    }
    QWidget* widget = place.widget;
    QWindow* window = widget ? windowFor(widget) : nullptr;
    if (widget && !window)
        throw Error(QStringLiteral("%1 has no window").arg(describeObject(widget)));
    if (widget)
        *global = widget->mapToGlobal(place.position);
    return window;
}

/**
 * Many an application asks where the pointer is instead of looking at its event. On a display that is
 * a person's pointer too: it really moves, and while a button is down it is left alone, since the
 * display knows of no button and would say so. True when the display will send events for it.
 */
bool moveCursor(const QPoint& global)
{
    const bool isDisplay = QGuiApplication::platformName() == QLatin1String("xcb");
    if ((isDisplay && pointer().buttons != Qt::NoButton) || QCursor::pos() == global)
        return false;
    if (isDisplay) {
        QCursor::setPos(global);
        return true;
    }
    // Others make up events for it, which ours are meant to be.
    QWindowSystemInterface::flushWindowSystemEvents();
    QCursor::setPos(global);
    QWindowSystemInterfacePrivate::windowSystemEventQueue.clear();
    return false;
}

void sendMouse(const Place& place, QEvent::Type type, Qt::MouseButton button, Qt::KeyboardModifiers modifiers)
{
    Pointer& state = pointer();
    QWindow* window = windowAt(place, &state.global);
    if (!window)
        return;
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

/** Turns after which a window that does not become active gets its input all the same. */
constexpr int longestActivation = 40;

/**
 * A window manager makes the window active that is clicked, and one of a new application before; what
 * does not come from the display does not go by it. Without one nobody else does it at all.
 */
bool wantsActivation(const QWindow* window, QEvent::Type type)
{
    const bool isPress = type == QEvent::MouseButtonPress;
    if (!isPress && (type != QEvent::MouseMove || QGuiApplication::focusWindow()))
        return false;
    const Qt::WindowType kind = window->type();
    return !window->isActive() && !QApplication::activePopupWidget() && kind != Qt::Popup &&
           kind != Qt::ToolTip && kind != Qt::SubWindow &&
           !(window->flags() & (Qt::WindowDoesNotAcceptFocus | Qt::WindowTransparentForInput));
}

void postMouse(const Place& place, QEvent::Type type, Qt::MouseButton button, Qt::KeyboardModifiers modifiers)
{
    InputQueue::instance().post([=, turns = 0, hasMoved = false]() mutable {
        QPoint global;
        QWindow* window = windowAt(place, &global);
        if (!window)
            return InputQueue::Step::Done;
        if (wantsActivation(window, type) && turns < longestActivation) {
            if (turns++ == 0)
                window->requestActivate();
            return InputQueue::Step::Again;
        }
        // The events of the display first, so that none comes between a press and its release.
        if (!std::exchange(hasMoved, true) && moveCursor(global))
            return InputQueue::Step::Again;
        sendMouse(place, type, button, modifiers);
        return InputQueue::Step::Done;
    });
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
    if (QGraphicsView* view = Graphics::viewAround(widget)) {
        const QGraphicsProxyWidget* proxy = widget->window()->graphicsProxyWidget();
        const QPointF inside = widget->mapTo(widget->window(), position);
        view->ensureVisible(QRectF(proxy->mapToScene(inside), QSizeF(1, 1)), 5, 5);
    }
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
    if (!window && type == QEvent::KeyRelease)
        return; // the key itself has closed the last window
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

Place placeIn(QWindow* window, const QPoint* position)
{
    if (!window->isVisible())
        throw Error(QStringLiteral("%1 is not visible").arg(describeObject(window)));
    const QPoint center(window->width() / 2, window->height() / 2);
    return {nullptr, position ? *position : center, window};
}

Place placeIn(QWidget* widget, const QRect& part, const QPoint* position)
{
    if (!widget->isVisible())
        throw Error(QStringLiteral("%1 is not visible").arg(describeObject(widget)));
    if (QWidget* modal = modalBlockerOf(widget))
        throw Error(QStringLiteral("%1 gets no input while the modal window %2 is open")
                        .arg(describeObject(widget), describeObject(modal)));
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
        mouseMove({place.widget, place.position + by * i / moves, place.window}, modifiers);
    mouseRelease({place.widget, place.position + by, place.window}, button, modifiers);
}

void wheel(const Place& place, const QPoint& steps, Qt::KeyboardModifiers modifiers)
{
    mouseMove(place, modifiers);
    InputQueue::instance().postOnce([=] {
        QPoint global;
        QWindow* window = windowAt(place, &global);
        if (!window)
            return;
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
            if (QGraphicsView* view = Graphics::viewAround(guard)) {
                view->window()->activateWindow();
                view->setFocus(Qt::MouseFocusReason);
            }
            guard->window()->activateWindow();
            guard->setFocus(Qt::MouseFocusReason);
        }
        // Without a window manager no window may ever become active; the keys then go there all the same.
        return turns < 40 ? InputQueue::Step::Again : InputQueue::Step::Done;
    });
}

void focus(QWindow* window)
{
    InputQueue::instance().post([guard = QPointer<QWindow>(window), turns = 0]() mutable {
        if (!guard || guard->isActive())
            return InputQueue::Step::Done;
        if (turns++ == 0)
            guard->requestActivate();
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
