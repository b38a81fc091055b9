#pragma once

#include <QPoint>
#include <QPointer>
#include <QWidget>
#include <QWindow>

namespace Torvix::Agent {

/**
 * Input as the window system would deliver it: it goes through the window, so that popups, modal
 * windows, shortcuts and focus treat it as a person's.
 *
 * All of these add steps to the InputQueue and return at once. Positions are in the target's own
 * coordinates.
 */
namespace Input {

/** Where a mouse action goes: a widget, or a window without widgets, and a place in it. */
struct Place
{
    QPointer<QWidget> widget;
    QPoint position;
    QPointer<QWindow> window = nullptr;
};

/**
 * The place in a part of a widget, the centre of what can be seen of it without `position`. Throws for a
 * widget that is not visible or is shut off by a modal window.
 */
Place placeIn(QWidget* widget, const QRect& part, const QPoint* position);
Place placeIn(QWindow* window, const QPoint* position);

void mouseMove(const Place& place, Qt::KeyboardModifiers modifiers = {});
void mousePress(const Place& place, Qt::MouseButton button, Qt::KeyboardModifiers modifiers);
void mouseRelease(const Place& place, Qt::MouseButton button, Qt::KeyboardModifiers modifiers);
void click(const Place& place, Qt::MouseButton button, Qt::KeyboardModifiers modifiers);
void doubleClick(const Place& place, Qt::MouseButton button, Qt::KeyboardModifiers modifiers);
void drag(const Place& place, const QPoint& by, Qt::MouseButton button, Qt::KeyboardModifiers modifiers);
/**
 * The button of the scripts' `MouseButton` constants, whose 2 and 4 are the middle and the right one, other
 * than Qt's. Throws for a number that is none.
 */
Qt::MouseButton mouseButtonOf(int number);

/** In steps of a mouse wheel; positive is up and right. */
void wheel(const Place& place, const QPoint& steps, Qt::KeyboardModifiers modifiers);

/** Gives the widget the keyboard focus, waiting for its window to become active. */
void focus(QWidget* widget);

/**
 * Types text into what has the focus. `<Return>`, `<F2>` or `<Ctrl+Shift+S>` is that key; any other
 * text in angle brackets is itself.
 */
void type(const QString& text);
void key(int key, Qt::KeyboardModifiers modifiers, const QString& text);

/** Asks the window to close as its close button does. */
void closeWindow(QWidget* window);

/** Gives the keyboard focus to a window without widgets. */
void focus(QWindow* window);

/** Where the pointer was put last, and what is pressed. */
QPoint pointerPosition();

} // namespace Input

} // namespace Torvix::Agent
