#pragma once

#include <QString>

namespace Torvix {

/**
 * What a script's author may be missing, as a text to follow the engine's message: that no application runs
 * yet whose function or class this is, or that `console` has no such function. Empty for other messages.
 */
QString hintForError(const QString& message);

} // namespace Torvix
