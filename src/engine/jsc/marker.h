#pragma once

#include <JavaScriptCore/JavaScript.h>

// Entry points that JavaScriptCore exports and its installed headers leave out.
extern "C" {

typedef struct JSMarker JSMarker;
typedef JSMarker* JSMarkerRef;
struct JSMarker
{
    bool (*IsMarked)(JSMarkerRef, JSObjectRef);
    void (*Mark)(JSMarkerRef, JSObjectRef);
};
typedef void (*JSMarkingConstraint)(JSMarkerRef, void* userData);

/** The constraint is asked during each collection, with the script halted, until the group ends. */
void JSContextGroupAddMarkingConstraint(JSContextGroupRef, JSMarkingConstraint, void* userData);

/** A full collection that also runs all finalisers that are due; JSGarbageCollect only plans one. */
void JSSynchronousGarbageCollectForDebugging(JSContextRef);
}
