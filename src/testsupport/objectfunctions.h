#pragma once

#include "objectmodel/object.h"
#include "shared/base/sharedptr.h"
#include "testsupport/export.h"

#include <QString>

/**
 * What scripts call to find objects of the application and to ask about them, in every language.
 * Each reads its arguments from the context and leaves a result or an error with a text in it. Where
 * an object is wanted, a script may also give its name: a symbolic name, or a real name as text or map.
 */
namespace Torvix {

class ScriptContext;

/**
 * (name or object[, timeout in ms]): waits until the object is there, visible, enabled, stable and
 * not blocked by a modal window; the result is the object. At the timeout the error says which of
 * these failed. Without a timeout defaultWaitTimeoutMs() holds.
 */
TORVIXTEST_EXPORT void waitForObject(ScriptContext* context);
/** The same, but the object only has to exist. */
TORVIXTEST_EXPORT void waitForObjectExists(ScriptContext* context);
/** (name or object, item as path of texts[, timeout in ms]), or with two numbers for row and column.
 *  Waits until the container is there, and as long again until it has the item and that can be reached. */
TORVIXTEST_EXPORT void waitForObjectItem(ScriptContext* context);
/** (name): a list of all objects that have the name now; an empty one when there is none. */
TORVIXTEST_EXPORT void findAllObjects(ScriptContext* context);

// (object), and what they answer.
TORVIXTEST_EXPORT void objectChildren(ScriptContext* context);     ///< list of objects
TORVIXTEST_EXPORT void objectGlobalBounds(ScriptContext* context); ///< map of x, y, width, height
TORVIXTEST_EXPORT void objectParent(ScriptContext* context);       ///< object, or null for a top-level one
TORVIXTEST_EXPORT void objectProperties(ScriptContext* context);   ///< map of names to values
/** No arguments: list of objects. */
TORVIXTEST_EXPORT void objectTopLevelObjects(ScriptContext* context);
/** (object, name of the class). */
TORVIXTEST_EXPORT void objectConvertTo(ScriptContext* context);
/** (name of the class). */
TORVIXTEST_EXPORT void objectCreateNull(ScriptContext* context);
/** (object[, file]): writes a PNG file, by default into the results' folder; the result is its path. */
TORVIXTEST_EXPORT void objectGrabScreenshot(ScriptContext* context);

/** The object that an argument is or names. Null with an error in the context when there is none;
 *  `function` is what the runner is told has looked for it. */
SharedPtr<Object> objectArgument(ScriptContext* context, int index, const char* function);

/** How long the waiting functions wait by themselves. 20 s at first. */
TORVIXTEST_EXPORT int defaultWaitTimeoutMs();
TORVIXTEST_EXPORT void setDefaultWaitTimeoutMs(int timeoutMs);

} // namespace Torvix
