#pragma once

#include "engine/interpreter.h"
#include "interpreter/js/scriptobject/extrafunction.h"

namespace Torvix {

/** Puts a function for each row on an object, attributes 0. */
void putFunctions(KJS::ObjectImp* object, const JsFunctionRow* rows);

/** Puts a constant that scripts can neither change nor delete. */
void putConstant(KJS::ObjectImp* object, const char* name, const KJS::Value& value);

/**
 * A global object that groups functions and constants of the tool. What a script assigns to it is
 * dropped without an error: intended.
 */
class JsFixedObjectImp : public KJS::ObjectImp
{
public:
    using ObjectImp::ObjectImp;

    void put(KJS::ExecState*, const KJS::Identifier&, const KJS::Value&, int = KJS::None) override {}
};

} // namespace Torvix
