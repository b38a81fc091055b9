#pragma once

#include "agent/input/synthesizer.h"
#include "agent/reflection/value.h"

#include <QRect>

class QWidget;

namespace Torvix::Agent {

/** Position and size on the screen in device-independent pixels. Throws for what has none. */
QRect globalBounds(const Value& target);

/** The widget that shows `target` and the part of it, for a widget all of it. Throws when there is none. */
QWidget* widgetOf(const Value& target, QRect* part);

/** The error for what has no place on the screen. */
[[noreturn]] void throwNoPlace(const Value& target);

/**
 * The place in `target`, its centre without `position`. Throws for what is not visible, has no place
 * on the screen, or is shut off by a modal window.
 */
Input::Place placeIn(const Value& target, const QPoint* position);

} // namespace Torvix::Agent
