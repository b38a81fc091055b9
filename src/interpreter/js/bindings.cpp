#include "engine/interpreter.h"
#include "interpreter/js/objects/jsapplications.h"
#include "interpreter/js/objects/jsconsole.h"
#include "interpreter/js/objects/jsinputconstants.h"
#include "interpreter/js/objects/jsobjectaccess.h"
#include "interpreter/js/objects/jsscriptfunctions.h"
#include "interpreter/js/objects/jstestdata.h"
#include "interpreter/js/objects/jstestinteraction.h"
#include "interpreter/js/objects/jstorvixinfo.h"
#include "interpreter/js/scriptobject/extrafunction.h"

namespace Torvix {

namespace {

/** The global functions in the order in which scripts get them. */
const JsFunctionRow globalFunctions[] = {
    {"print", jsPrint, 1},
    {"cast", jsCast, 1},
    {"objectName", jsObjectName, 1},
    {"source", jsSource, 1},
    {"findObject", jsFindObject, 1},
    {"findAllObjects", jsFindAllObjects, 1},
    {"startApplication", jsStartApplication, 1},
    {"attachToApplication", jsAttachToApplication, 1},
    {"waitForApplicationLaunch", jsWaitForApplicationLaunch, 1},
    {"setApplicationContext", jsSetApplicationContext, 1},
    {"defaultApplicationContext", jsdefaultApplicationContext, 0},
    {"currentApplicationContext", jscurrentApplicationContext, 0},
    {"applicationContext", jsApplicationContext, 1},
    {"applicationContextList", jsApplicationContextList, 0},
    {"waitFor", jsWaitFor, 1},
    {"waitForObject", jsWaitForObject, 1},
    {"waitForObjectExists", jsWaitForObjectExists, 1},
    {"waitForObjectItem", jsWaitForObjectItem, 2},
    {nullptr, nullptr, 0},
};

} // namespace

void ExtraFunctionImp::init(KJS::Interpreter* interpreter, KJS::Object* global)
{
    KJS::ExecState* exec = interpreter->globalExec();
    for (const JsFunctionRow* row = globalFunctions; row->name; ++row)
        global->put(exec, row->name, new ExtraFunctionImp(row->fn, row->length), KJS::None);
    global->put(exec, "object", new JsOurObjectImp(exec), KJS::None);
    global->put(exec, "testData", new JsTestDataImp, KJS::None);
    global->put(exec, "objectMap", new JsObjectMapImp(exec), KJS::None);
    global->put(exec, "torvixinfo", new JsTorvixInfoImp(exec), KJS::None);
    global->put(exec, "testInteraction", new JsTestInteractionImp, KJS::None);
    // The engine has a hidden one, whose attributes an assignment would keep.
    global->deleteProperty(exec, "console");
    global->put(exec, "console", new JsConsoleImp, KJS::None);
    global->put(exec, "Console", new DeprecatedJsConsoleImp, KJS::None);
    global->put(exec, "MouseButton", new JsMouseButtonImp, KJS::None);
    global->put(exec, "Modifier", new JsModifierImp, KJS::None);
}

} // namespace Torvix
