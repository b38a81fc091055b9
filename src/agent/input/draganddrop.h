#pragma once

namespace Torvix::Agent {

/**
 * Lets the application drag also on a platform that refuses every drag, as `offscreen` does: Qt's own
 * implementation within one process takes its place. To be called before a mouse button is pressed.
 */
void makeDragsPossible();

} // namespace Torvix::Agent
