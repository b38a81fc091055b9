#pragma once

#include "objectmodel/member.h"

namespace Torvix {

/** One constructor of a class. */
class TORVIXOBJECTMODEL_EXPORT Constructor : public Member
{
public:
    Constructor(const Class* declaringClass, int index, const Signature& signature);

    const Signature& signature() const { return m_signature; }

    /** A new object in the application. */
    Result<SharedPtr<Object>> construct(const ObjectList& arguments) const;

private:
    Signature m_signature;
};

} // namespace Torvix
