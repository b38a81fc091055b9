#pragma once

#include "engine/object.h"

/** Global functions that start, attach to and switch between applications. */
namespace Torvix {

KJS::Value jsStartApplication(KJS::ExecState* exec, KJS::Object& thisObj, const KJS::List& args);
KJS::Value jsAttachToApplication(KJS::ExecState* exec, KJS::Object& thisObj, const KJS::List& args);
KJS::Value jsWaitForApplicationLaunch(KJS::ExecState* exec, KJS::Object& thisObj, const KJS::List& args);
KJS::Value jsSetApplicationContext(KJS::ExecState* exec, KJS::Object& thisObj, const KJS::List& args);
KJS::Value jsdefaultApplicationContext(KJS::ExecState* exec, KJS::Object& thisObj, const KJS::List& args);
KJS::Value jscurrentApplicationContext(KJS::ExecState* exec, KJS::Object& thisObj, const KJS::List& args);
KJS::Value jsApplicationContext(KJS::ExecState* exec, KJS::Object& thisObj, const KJS::List& args);
KJS::Value jsApplicationContextList(KJS::ExecState* exec, KJS::Object& thisObj, const KJS::List& args);

} // namespace Torvix
