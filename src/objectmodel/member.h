#pragma once

#include "objectmodel/object.h"
#include "objectmodel/signature.h"

namespace Torvix {

/**
 * What properties, methods and constructors have in common: the class that declares them, and the
 * place among their kind in it. Owned by that class.
 */
class TORVIXOBJECTMODEL_EXPORT Member
{
public:
    Member(const Class* declaringClass, int index) : m_class(declaringClass), m_index(index) {}

    const Class* declaringClass() const { return m_class; }
    int index() const { return m_index; }

private:
    const Class* m_class;
    int m_index;
};

} // namespace Torvix
