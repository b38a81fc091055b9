#pragma once

#include "interpreter/js/scriptobject/scriptobject.h"

namespace Torvix {

/** `testData`: tables of test data, and files at the application. Without a prototype: it has its own members
 * only. */
class JsTestDataImp : public JsFixedObjectImp
{
public:
    explicit JsTestDataImp(KJS::ExecState* exec);
};

} // namespace Torvix
