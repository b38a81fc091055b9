#include "objectmodel/applicationmodel.h"
#include "protocol/classmessages.h"

#include "objectmodel/inspector.h"

namespace Torvix {

using namespace Protocol;

bool ApplicationModel::UnknownNames::contains(const QString& name)
{
    if (!m_names.isEmpty() && m_since.hasExpired(freshMs))
        m_names.clear();
    return m_names.contains(name);
}

void ApplicationModel::UnknownNames::insert(const QString& name)
{
    if (m_names.isEmpty())
        m_since.start();
    m_names.insert(name);
}

const Class* ApplicationModel::linkClass(const ClassLink& link)
{
    if (const Class* builtin = Inspector::self()->builtinClass(link.id))
        return builtin;
    std::unique_ptr<Class>& entry = m_classes[link.id];
    if (!entry) {
        entry = std::make_unique<Class>(this, link.id, link.name);
        m_unknownClasses.clear();
        m_unknownNamespaces.clear();
    }
    if (!link.name.isEmpty())
        m_classesByName.insert(link.name, entry.get());
    return entry.get();
}

const Class* ApplicationModel::adopt(const ClassReply& reply)
{
    for (const ClassLink& link : reply.mentioned)
        linkClass(link);
    const Class* first = nullptr;
    for (const ClassInfo& info : reply.classes) {
        const Class* described = linkClass(info.self);
        if (!described->isInitialized())
            described->setInfo(info);
        if (!first)
            first = described;
    }
    return first;
}

bool ApplicationModel::describe(const Class* described)
{
    ClassById request;
    request.id = described->id();
    if (const Result<ClassReply> reply = call(request))
        adopt(*reply);
    return described->isInitialized();
}

const Class* ApplicationModel::classById(int id)
{
    if (const Class* builtin = Inspector::self()->builtinClass(id))
        return builtin;
    const auto known = m_classes.find(id);
    if (known != m_classes.end())
        return known->second.get();
    ClassById request;
    request.id = id;
    if (id < FirstAgentClass)
        return nullptr;
    const Result<ClassReply> reply = call(request);
    return reply ? adopt(*reply) : nullptr;
}

const Class* ApplicationModel::classByName(const QString& name)
{
    if (const Class* known = m_classesByName.value(name))
        return known;
    takeNews();
    if (!m_alive || name.isEmpty() || m_unknownClasses.contains(name))
        return nullptr;
    ClassByName request;
    request.name = name;
    const Result<ClassReply> reply = call(request);
    if (!reply)
        return nullptr;
    const Class* found = adopt(*reply);
    if (!found)
        m_unknownClasses.insert(name);
    return found;
}

const Namespace* ApplicationModel::globalNamespace()
{
    return m_globalNamespace.get();
}

const Namespace* ApplicationModel::namespaceByName(const QString& name)
{
    if (name.isEmpty())
        return globalNamespace();
    const auto known = m_namespaces.find(name);
    if (known != m_namespaces.end())
        return known->second.get();
    takeNews();
    if (!m_alive || m_unknownNamespaces.contains(name))
        return nullptr;
    NamespaceByName request;
    request.name = name;
    const Result<NamespaceReply> reply = call(request);
    if (!reply)
        return nullptr;
    if (!reply->found) {
        m_unknownNamespaces.insert(name);
        return nullptr;
    }
    const int separator = name.lastIndexOf(QLatin1String("::"));
    const Namespace* parent = namespaceByName(separator < 0 ? QString() : name.left(separator));
    auto made = std::make_unique<Namespace>(this, name, parent ? parent : globalNamespace());
    return (m_namespaces[name] = std::move(made)).get();
}

const Class* ApplicationModel::globalClass()
{
    if (m_globalClassAsked || !m_alive)
        return m_globalClass;
    if (const Result<ClassReply> reply = call(GlobalClass())) {
        m_globalClassAsked = true;
        m_globalClass = adopt(*reply);
    }
    return m_globalClass;
}

} // namespace Torvix
