#include "agent/lookup/objecttree.h"
#include "agent/reflection/error.h"
#include "agent/reflection/globalclass.h"
#include "agent/reflection/registry.h"
#include "agent/requests/requests.h"
#include "agent/session/dispatcher.h"
#include "agent/session/wire.h"
#include "protocol/classmessages.h"

namespace Torvix::Agent {

using namespace Protocol;

namespace {

/** Makes every class of the application's objects known, and the namespaces of enums that they use. */
void learnTree()
{
    visitAll([](QObject* object) {
        Registry::instance().ofMetaObject(object->metaObject());
        return true;
    });
}

/** The meta-object of a class that some object of the application has, or inherits. */
const QMetaObject* metaObjectOfObjects(const QByteArray& name)
{
    const QMetaObject* found = nullptr;
    QSet<const QMetaObject*> seen;
    visitAll([&](QObject* object) {
        for (const QMetaObject* meta = object->metaObject(); meta && !seen.contains(meta);
             meta = meta->superClass()) {
            seen.insert(meta);
            if (name == meta->className())
                found = meta;
        }
        return !found;
    });
    return found;
}

/** The same, and that of a namespace with an enum that one of these classes uses. */
const QMetaObject* metaObjectInTree(const QByteArray& name)
{
    // What is learnt may itself ask for names.
    static bool isLearning = false;
    const QMetaObject* found = metaObjectOfObjects(name);
    if (found || isLearning)
        return found;
    isLearning = true;
    learnTree();
    isLearning = false;
    return Registry::instance().knownMetaObject(name);
}

ClassReply classByName(const QByteArray& name)
{
    // A built-in type has no members, but the name is good.
    const int id = name.isEmpty() ? -1 : builtinClassId(name);
    if (id >= 0) {
        ClassReply reply;
        Protocol::ClassInfo info;
        info.self = {id, QString::fromLatin1(classNameOf(id))};
        reply.classes.append(info);
        return reply;
    }
    const Agent::ClassInfo* info = Registry::instance().byName(name);
    return info ? describe(*info) : ClassReply();
}

} // namespace

void registerClassRequests(Dispatcher& dispatcher)
{
    Registry::instance().setFallback(metaObjectInTree);
    dispatcher.on<ClassById>([](Session&, const ClassById& request) {
        if (request.id < firstClassId)
            return classByName(classNameOf(request.id));
        const Agent::ClassInfo* info = Registry::instance().byId(request.id);
        // By name, since that completes a class of which only registered members were known.
        return info ? classByName(info->name) : ClassReply();
    });
    dispatcher.on<ClassByName>(
        [](Session&, const ClassByName& request) { return classByName(request.name.toUtf8()); });
    dispatcher.on<NamespaceByName>([](Session&, const NamespaceByName& request) {
        const QByteArray name = request.name.toUtf8();
        Registry& registry = Registry::instance();
        if (registry.byName(name))
            return NamespaceReply();
        if (!registry.isNamespace(name))
            learnTree();
        return registry.isNamespace(name) ? NamespaceReply{true, request.name} : NamespaceReply();
    });
    dispatcher.on<GlobalClass>([](Session&, const GlobalClass&) { return classByName(globalClassName); });
}

} // namespace Torvix::Agent
