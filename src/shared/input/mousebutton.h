#pragma once

namespace Torvix {

/** The mouse buttons of synthetic input, as scripts name them. Each but None is a bit of its own. */
class MouseButton
{
public:
    enum Value : int {
        None = 0,
        LeftButton = 1,
        MiddleButton = 2,
        RightButton = 4,
        Wheel = 8,
        PrimaryButton = 16,
        SecondaryButton = 32,
        XButton1 = 64,
        XButton2 = 128
    };

    /** All values in ascending order, with -1 behind the last. */
    static const Value* values();

    /** The name that scripts use, such as "LeftButton"; null for anything that is not in values(). */
    static const char* valueAsString(Value value);
};

} // namespace Torvix
