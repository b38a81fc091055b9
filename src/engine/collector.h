#pragma once

#include "engine/export.h"

namespace KJS {

/** The garbage collector of all interpreters of the process. */
class TORVIXKJS_EXPORT Collector
{
public:
    /**
     * Collects at once. True when C++ objects (ObjectImp) were destroyed; their destructors may have
     * let go of others, so that whoever wants all gone calls again until it answers false. Garbage
     * that is only script's own is freed too but not counted. May be called from native functions.
     */
    static bool collect();

    /** Number of live objects of C++ classes (not the engine's views of script objects). */
    static int size();
};

} // namespace KJS
