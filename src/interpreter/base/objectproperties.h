#pragma once

#include "interpreter/base/scriptargument.h"
#include "shared/base/result.h"
#include "shared/base/sharedptr.h"

namespace Torvix {

class ScriptContext;

/** A map of every readable property of an object: values of the built-in types as script values,
 *  others as objects. Properties that the application cannot read are left out. */
Result<SharedPtr<ScriptArgument>> objectPropertiesArgument(const ScriptContext& context,
                                                           const SharedPtr<Object>& object);

} // namespace Torvix
