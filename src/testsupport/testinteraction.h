#pragma once

#include "testsupport/export.h"

namespace Torvix {

class ScriptContext;

/**
 * What scripts call as `testInteraction.*` to ask the person who runs the test. The dialogs go to the
 * terminal, without one to windows on the display; without either every function but isAvailable is an
 * error that says so. A person cancels a dialog by ending the input (Ctrl-D) or closing the window.
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
    /** (text): shows it, in a window for some seconds, and goes on. */
    static void notification(ScriptContext* context);
    /** (text): as input, but what is typed is not shown. */
    static void password(ScriptContext* context);
    /** (text[, buttons = Yes | No]): the button that was chosen; Cancel when it was cancelled. */
    static void question(ScriptContext* context);
    /** (image file[, text]): shows the picture, or in a terminal tells where it is, and waits as
     *  information does. */
    static void showImage(ScriptContext* context);
};

} // namespace Torvix
