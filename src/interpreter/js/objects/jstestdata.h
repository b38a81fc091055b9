#pragma once

#include "interpreter/js/scriptobject/scriptobject.h"

namespace Torvix {

/** `testData`: tables of test data, and files at the application. It has no prototype: intended. */
class JsTestDataImp : public JsFixedObjectImp
{
public:
    explicit JsTestDataImp(KJS::ExecState* exec);
};

} // namespace Torvix
