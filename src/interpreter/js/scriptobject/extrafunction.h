#pragma once

#include "engine/object.h"

namespace KJS {
class Interpreter;
}

namespace Torvix {

struct JsGlobalRow;

/** A plain native function as the engine calls it. */
using JsNativeCode = KJS::Value (*)(KJS::ExecState*, KJS::Object&, const KJS::List&);

/** A row of a table of script functions; a null name ends the table. */
struct JsFunctionRow
{
    const char* name;
    JsNativeCode fn;
    int length;
};

/** Puts a function for each row on an object, attributes 0. */
void putFunctions(KJS::ObjectImp* object, const JsFunctionRow* rows);

/**
 * The script object behind a plain native function.
 *
 * Without a prototype: scripts find no `call` or `apply` on it.
 */
class ExtraFunctionImp : public KJS::ObjectImp
{
public:
    /** `length` is the function's property of that name. */
    ExtraFunctionImp(JsNativeCode fn, int length);

    /** Fills the global object with these functions and then these objects, in the order of the tables,
     *  whatever the engine has under their names. */
    static void init(KJS::Interpreter* interpreter, KJS::Object* global, const JsFunctionRow* functions,
                     const JsGlobalRow* objects);

    bool implementsCall() const override { return true; }
    KJS::Value call(KJS::ExecState* exec, KJS::Object& thisObj, const KJS::List& args) override;

private:
    JsNativeCode m_fn;
};

} // namespace Torvix
