#include "agent/reflection/registry.h"

#include "agent/reflection/metaclass.h"

#include <QMetaObject>
#include <QMetaType>

#include <algorithm>

namespace Torvix::Agent {

Registry& Registry::instance()
{
    static Registry registry;
    return registry;
}

Registry::Registry() = default;

ClassInfo& Registry::entry(const QByteArray& name)
{
    ClassInfo*& known = m_byName[name];
    if (!known) {
        m_classes.push_back(std::make_unique<ClassInfo>());
        known = m_classes.back().get();
        known->id = firstClassId + int(m_classes.size()) - 1;
        known->name = name;
    }
    return *known;
}

ClassInfo& Registry::define(const QByteArray& name, const QByteArrayList& superClasses)
{
    ClassInfo& info = entry(name);
    for (const QByteArray& base : superClasses)
        if (!info.superClasses.contains(base))
            info.superClasses.append(base);
    return info;
}

void Registry::completeFromMetaObject(ClassInfo& info, const QMetaObject* metaObject)
{
    if (m_byMetaObject.contains(metaObject))
        return;
    m_byMetaObject.insert(metaObject, &info);
    info.metaObject = metaObject;
    if (const QMetaObject* base = metaObject->superClass()) {
        const QByteArray baseName = ofMetaObject(base).name;
        info.superClasses.removeAll(baseName);
        info.superClasses.prepend(baseName);
    }
    addMetaMembers(info);
}

const ClassInfo& Registry::ofMetaObject(const QMetaObject* metaObject)
{
    if (const ClassInfo* known = m_byMetaObject.value(metaObject))
        return *known;
    ClassInfo& info = entry(metaObject->className());
    completeFromMetaObject(info, metaObject);
    return info;
}

const ClassInfo* Registry::byName(const QByteArray& name)
{
    if (ClassInfo* known = m_byName.value(name)) {
        if (known->metaObject)
            completeFromMetaObject(*known, known->metaObject);
        return known;
    }
    const int type = QMetaType::type(name + '*');
    const QMetaObject* metaObject = type ? QMetaType::metaObjectForType(type) : nullptr;
    if (!metaObject && m_fallback)
        metaObject = m_fallback(name);
    return metaObject ? &ofMetaObject(metaObject) : nullptr;
}

const ClassInfo* Registry::byId(int id) const
{
    const int index = id - firstClassId;
    return index >= 0 && index < int(m_classes.size()) ? m_classes[std::size_t(index)].get() : nullptr;
}

const QMetaObject* Registry::knownMetaObject(const QByteArray& name) const
{
    const ClassInfo* known = m_byName.value(name);
    return known ? known->metaObject : nullptr;
}

bool Registry::inherits(const QByteArray& derived, const QByteArray& base)
{
    if (derived == base)
        return true;
    const ClassInfo* info = byName(derived);
    if (!info)
        return false;
    return std::any_of(info->superClasses.begin(), info->superClasses.end(),
                       [&](const QByteArray& next) { return inherits(next, base); });
}

std::function<bool()> Registry::guardOf(const Value& value) const
{
    const ClassInfo* info = !value.isPointer() || value.isObject() ? nullptr : m_byName.value(value.typeName);
    return info && info->makeGuard ? info->makeGuard(value.address()) : nullptr;
}

const EnumInfo* Registry::enumeration(const QByteArray& qualifiedName)
{
    const int colons = qualifiedName.lastIndexOf("::");
    const ClassInfo* scope = byName(colons < 0 ? QByteArray() : qualifiedName.left(colons));
    if (!scope)
        return nullptr;
    const QByteArray name = colons < 0 ? qualifiedName : qualifiedName.mid(colons + 2);
    for (const EnumInfo& info : scope->enums)
        if (info.name == name)
            return &info;
    return nullptr;
}

bool Registry::isNamespace(const QByteArray& name)
{
    const QByteArray prefix = name + "::";
    const auto isInside = [&](const std::unique_ptr<ClassInfo>& info) {
        return info->name.startsWith(prefix);
    };
    return std::any_of(m_classes.begin(), m_classes.end(), isInside);
}

QByteArrayList Registry::names() const
{
    QByteArrayList all = m_byName.keys();
    std::sort(all.begin(), all.end());
    return all;
}

} // namespace Torvix::Agent
