#pragma once

#include "shared/base/sharedptr.h"

namespace Torvix {

/**
 * An object of the script API that is implemented in C++, the same for every script language.
 *
 * Its class is described by a NativeScriptType that is registered under the key which type()
 * gives. A script's wrapper keeps the object alive.
 */
class NativeScriptObject : public Shared
{
public:
    /** Key of the object's type; usually the address of something static. Never null. */
    virtual void* type() const = 0;
};

} // namespace Torvix
