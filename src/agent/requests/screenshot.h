#pragma once

#include "agent/reflection/value.h"
#include "protocol/screenmessages.h"

namespace Torvix::Agent {

/** A PNG file. Throws for what has no place on the screen. */
QByteArray screenshot(const Value& target, Protocol::ScreenshotArea area);

/** Draws a frame around `target` for a while. */
void highlight(const Value& target, int durationMs);

} // namespace Torvix::Agent
