#pragma once

#include "engine/export.h"

namespace KJS {

class ExecState;

/** Work for the interpreter's thread. It stays its maker's, who may delete it within invoke(). */
class TORVIXKJS_EXPORT DelayedInvocation
{
public:
    virtual ~DelayedInvocation();
    /** On the interpreter's thread, with its global exec state. */
    virtual void invoke(ExecState* exec) = 0;
};

/** Takes work from any thread and sees to it that the interpreter's thread invokes it, in order. */
class TORVIXKJS_EXPORT DelayedInvocationScheduler
{
public:
    virtual ~DelayedInvocationScheduler();
    /** Returns at once. Callable from any thread. */
    virtual void schedule(DelayedInvocation* invocation) = 0;
};

} // namespace KJS
