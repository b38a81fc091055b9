#pragma once

namespace Torvix {

/**
 * Names of globals that are the tool's and not the script's own variables, ended by a null pointer;
 * compared byte for byte. By intent it is no list of all that the tool installs: some of these come
 * from the application or from the engine, and some globals of the tool are missing.
 */
extern const char* const hiddenObjects[];

} // namespace Torvix
