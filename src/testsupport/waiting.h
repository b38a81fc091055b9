#pragma once

namespace Torvix {

class ScriptContext;

/**
 * Lets the runner's connections have their turn and sleeps for so long at most, as a part of a wait.
 * False when the script is to end (a time limit, Ctrl-C): the caller returns at once.
 */
bool waitMeanwhile(double ms);

/** Whether the script is to end, with an error in the context when so: for the end of a wait. */
bool failIfInterrupted(ScriptContext* context);

} // namespace Torvix
