#pragma once

namespace Torvix {

/** The keyboard modifiers of synthetic input, as scripts name them. Each but None is a bit of its own. */
class Modifier
{
public:
    enum Value : int { None = 0, Control = 128, Shift = 256, Alt = 512, Win = 1024, Command = 2048 };

    /** All values in ascending order, with -1 behind the last. */
    static const Value* values();

    /** The name that scripts use, such as "Control"; null for anything that is not in values(). */
    static const char* valueAsString(Value value);
};

} // namespace Torvix
