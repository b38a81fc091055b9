#pragma once

#include "agent/reflection/classinfo.h"

#include <QHash>

#include <memory>
#include <vector>

namespace Torvix::Agent {

/**
 * Every class that scripts can name: those with a meta-object, found in the running application or
 * by their name, and those registered with Bind. A class may be both, its members are then joined.
 *
 * Used in the GUI thread only. What it gives lives as long as the process.
 */
class Registry
{
public:
    /** The one registry of the process, empty until somebody binds classes, as bindAll() does. */
    static Registry& instance();

    Registry();

    /** The class to which Bind adds members; made when it is new. */
    ClassInfo& define(const QByteArray& name, const QByteArrayList& superClasses);

    /** Null when the name is unknown; application classes are known once a meta-object of theirs is. */
    const ClassInfo* byName(const QByteArray& name);
    const ClassInfo* byId(int id) const;
    /** Of a class that is known already; does not look any further. */
    const QMetaObject* knownMetaObject(const QByteArray& name) const;
    const ClassInfo& ofMetaObject(const QMetaObject* metaObject);

    /** True when `derived` is `base` or inherits it, over meta-objects and registered bases. */
    bool inherits(const QByteArray& derived, const QByteArray& base);

    /** Tells later whether the pointer is still good, without touching it; null where nothing can be told. */
    std::function<bool()> guardOf(const Value& value) const;

    /** The enum of that qualified name ("Qt::Key", "QFrame::Shape"); null when there is none. */
    const EnumInfo* enumeration(const QByteArray& qualifiedName);

    /** True when some known class lies in it or below it. */
    bool isNamespace(const QByteArray& name);

    /** All known class names, sorted. */
    QByteArrayList names() const;

    /** Says where meta-objects of classes not met yet are looked for: a name to a meta-object or null. */
    void setFallback(std::function<const QMetaObject*(const QByteArray&)> find)
    {
        m_fallback = std::move(find);
    }

private:
    ClassInfo& entry(const QByteArray& name);
    void completeFromMetaObject(ClassInfo& info, const QMetaObject* metaObject);

    std::vector<std::unique_ptr<ClassInfo>> m_classes;
    QHash<QByteArray, ClassInfo*> m_byName;
    QHash<const QMetaObject*, ClassInfo*> m_byMetaObject;
    std::function<const QMetaObject*(const QByteArray&)> m_fallback;
};

/** First class id that this registry gives; smaller ones are built-in types. */
constexpr int firstClassId = 16;

} // namespace Torvix::Agent
