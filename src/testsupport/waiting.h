#pragma once

namespace Torvix {

/** Gives the runner its turn between two polls of a waiting script; false when the script is to end. */
bool serviceRunner();

} // namespace Torvix
