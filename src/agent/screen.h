#pragma once

#include "agent/reflection/value.h"
#include "protocol/screenmessages.h"

#include <QRect>

class QWidget;

namespace Torvix::Agent {

/** Position and size on the screen in device-independent pixels. Throws for what has none. */
QRect globalBounds(const Value& target);

/** The widget that shows `target` and the part of it, for a widget all of it. Throws when there is none. */
QWidget* widgetOf(const Value& target, QRect* part);

/** The error for what has no place on the screen. */
[[noreturn]] void throwNoPlace(const Value& target);

/** The topmost visible widget or window at a global position, null when there is none. */
QObject* objectAt(const QPoint& globalPosition);

/** A PNG file. Throws for what has no place on the screen. */
QByteArray screenshot(const Value& target, Protocol::ScreenshotArea area);

/** Draws a frame around `target` for a while. */
void highlight(const Value& target, int durationMs);

} // namespace Torvix::Agent
