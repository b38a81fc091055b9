#pragma once

#include "testsupport/export.h"

namespace Torvix {

class ScriptContext;

/**
 * What scripts call as `testInteraction.*` to ask the person who runs the test. The dialogs go to the
 * terminal; without one every function but isAvailable is an error that says so. A person who ends
 * the input (Ctrl-D) cancels the dialog.
 */
class TORVIXTEST_EXPORT TestInteraction
{
public:
    /** Bits; a question is asked with those that may be answered, and answers with one. */
    enum Button { None = 0, Ok = 1, Cancel = 2, Yes = 4, No = 8 };

    /** (text, [choices]): the chosen text, or null when it was cancelled. */
    static void choice(ScriptContext* context);
    static void isAvailable(ScriptContext* context);
    /** (text): waits until it is confirmed; gives Ok or Cancel. */
    static void information(ScriptContext* context);
    static void warning(ScriptContext* context);
    /** (text[, default]): the text that was entered, or null when it was cancelled. */
    static void input(ScriptContext* context);
    /** (text): shows it and goes on. */
    static void notification(ScriptContext* context);
    /** (text): as input, but what is typed is not shown. */
    static void password(ScriptContext* context);
    /** (text[, buttons = Yes | No]): the button that was chosen; Cancel when it was cancelled. */
    static void question(ScriptContext* context);
    /** (image file[, text]): tells where the picture is and waits as information does. */
    static void showImage(ScriptContext* context);
};

} // namespace Torvix
