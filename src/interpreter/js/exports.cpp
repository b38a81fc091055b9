// The only symbols that the plug-in shows. The caller owns what they return.

#include "interpreter/js/jsinterpreter.h"
#include "testsupport/scriptapi.h"

#include <QtGlobal>

namespace Torvix {
class EventRecorder;
class ScriptedObjectMap;
} // namespace Torvix

#define TORVIX_PLUGIN_ENTRY extern "C" __attribute__((visibility("default")))

TORVIX_PLUGIN_ENTRY Torvix::Interpreter* createInterpreter(Torvix::RunnerInterface* runner)
{
    Torvix::registerScriptApi();
    return new Torvix::JsInterpreter(runner);
}

/** Null: this build of the plug-in does not record. */
TORVIX_PLUGIN_ENTRY Torvix::EventRecorder* createEventRecorder(bool, bool, bool, const QString&)
{
    qWarning("createEventRecorder: this build of the JavaScript plug-in has no event recorder");
    return nullptr;
}

/** Null: this build of the plug-in has no scripted object maps. */
TORVIX_PLUGIN_ENTRY Torvix::ScriptedObjectMap* createScriptedObjectMap(const QString&)
{
    qWarning("createScriptedObjectMap: this build of the JavaScript plug-in has no scripted object map");
    return nullptr;
}
