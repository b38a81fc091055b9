#pragma once

#include "objectmodel/member.h"

namespace Torvix {

/** One overload of a method. */
class TORVIXOBJECTMODEL_EXPORT Method : public Member
{
public:
    enum Flag { Static = 1 };

    Method(const Class* declaringClass, int index, const QString& name, const Argument& result,
           const Signature& signature, int flags, const QString& deprecation);

    QString name() const { return m_name; }
    const Signature& signature() const { return m_signature; }
    /** Class of the result, of code 7 for none. */
    const Class* resultType() const { return m_result.type(); }
    ObjectAttribute resultAttribute() const { return m_result.attribute(); }
    bool isStatic() const { return (m_flags & Static) != 0; }
    /** Why it should not be used any more; null string when it may be. */
    QString deprecation() const { return m_deprecation; }

    /**
     * Calls it in the application and waits. The arguments must be those of the signature, in number
     * and class. A static method ignores the target.
     * @return the result, an object of code 7 when there is none
     */
    Result<SharedPtr<Object>> invoke(const SharedPtr<Object>& target, const ObjectList& arguments) const;

private:
    QString m_name;
    Argument m_result;
    Signature m_signature;
    int m_flags;
    QString m_deprecation;
};

} // namespace Torvix
