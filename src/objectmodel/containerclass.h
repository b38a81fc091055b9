#pragma once

#include "objectmodel/class.h"

namespace Torvix {

/** The class of all arrays (id 8). There is one, shared by all applications. */
class TORVIXOBJECTMODEL_EXPORT ArrayClass : public Class
{
public:
    ArrayClass();

    static const ArrayClass* registeredClass();

    /** An array of these elements; none of them may be null. */
    static SharedPtr<Object> createRemoteObject(const ObjectList& elements);
};

/** The class of all maps from strings (id 9). There is one, shared by all applications. */
class TORVIXOBJECTMODEL_EXPORT MapClass : public Class
{
public:
    MapClass();

    static const MapClass* registeredClass();

    static SharedPtr<Object> createRemoteObject(const ObjectEntries& entries);
};

} // namespace Torvix
