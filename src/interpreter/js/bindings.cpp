#include "interpreter/js/bindings.h"

#include "interpreter/js/objects/jsapplications.h"
#include "interpreter/js/objects/jsconsole.h"
#include "interpreter/js/objects/jsinputconstants.h"
#include "interpreter/js/objects/jsintl.h"
#include "interpreter/js/objects/jslibrary.h"
#include "interpreter/js/objects/jsobjectaccess.h"
#include "interpreter/js/objects/jsscriptfunctions.h"
#include "interpreter/js/objects/jstestdata.h"
#include "interpreter/js/objects/jstestinteraction.h"
#include "interpreter/js/objects/jstorvixinfo.h"

namespace Torvix {

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

const JsGlobalRow globalObjects[] = {
    {"object", makeGlobal<JsOurObjectImp>},
    {"testData", makeGlobal<JsTestDataImp>},
    {"objectMap", makeGlobal<JsObjectMapImp>},
    {"torvixinfo", makeGlobal<JsTorvixInfoImp>},
    {"testInteraction", makeGlobal<JsTestInteractionImp>},
    {"Intl", makeGlobal<JsIntlImp>},
    {"console", makeGlobal<JsConsoleImp>},
    {"Console", makeGlobal<DeprecatedJsConsoleImp>},
    {"Library", makeGlobal<JsLibraryImp>},
    {"MouseButton", makeGlobal<JsMouseButtonImp>},
    {"Modifier", makeGlobal<JsModifierImp>},
    {nullptr, nullptr},
};

} // namespace Torvix
