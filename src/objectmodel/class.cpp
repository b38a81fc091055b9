#include "objectmodel/classmembers.h"
#include "objectmodel/inspector.h"

namespace Torvix {

Class::Class(ApplicationModel* application, int id, const QString& name)
    : m_application(application)
    , m_id(id)
    , m_name(name)
{
    if (!application)
        m_members = std::make_unique<Members>();
}

Class::~Class() = default;

const Class::Members& Class::members() const
{
    static const Members none;
    if (!m_members && !m_application->describe(this))
        return none;
    return *m_members;
}

Argument Class::makeArgument(const QString& name, const Protocol::TypeInfo& type,
                             const QString& defaultValue) const
{
    const auto link = [this](int id) { return m_application->linkClass({id, QString()}); };
    const Class* enumOwner = type.enumClassId < 0 ? nullptr : link(type.enumClassId);
    return Argument(name, link(type.classId), {type.attribute.flags, type.attribute.extra}, enumOwner,
                    type.enumName, defaultValue);
}

void Class::setInfo(const Protocol::ClassInfo& info) const
{
    auto members = std::make_unique<Members>();
    const auto signature = [this](const QVector<Protocol::ArgumentInfo>& infos) {
        QVector<Argument> arguments;
        for (const Protocol::ArgumentInfo& argument : infos)
            arguments.append(makeArgument(argument.name, argument.type, argument.defaultValue));
        return Signature(arguments);
    };
    m_name = info.self.name;
    members->isIdentity = (info.flags & Protocol::IdentityClass) != 0;
    members->namespaceName = info.namespaceName;
    members->convertibleFrom = info.convertibleFrom;
    members->convertibleTo = info.convertibleTo;
    for (const Protocol::ClassLink& link : info.superClasses)
        members->superClasses.push_back(m_application->linkClass(link));
    for (const Protocol::PropertyInfo& property : info.properties)
        members->properties.push_back(
            std::make_unique<Property>(this, int(members->properties.size()),
                                       makeArgument(property.name, property.type, {}), int(property.flags)));
    for (const Protocol::MethodInfo& method : info.methods)
        members->methods.push_back(std::make_unique<Method>(
            this, int(members->methods.size()), method.name, makeArgument({}, method.result, {}),
            signature(method.arguments), int(method.flags), method.deprecation));
    for (const Protocol::ConstructorInfo& constructor : info.constructors)
        members->constructors.push_back(std::make_unique<Constructor>(this, int(members->constructors.size()),
                                                                      signature(constructor.arguments)));
    for (const Protocol::EnumInfo& entry : info.enumerators) {
        QVector<Enum::Key> keys;
        for (const Protocol::EnumKey& key : entry.keys)
            keys.append({key.name, key.value});
        members->enumerators.push_back(std::make_unique<Enum>(entry.name, entry.isFlag, keys));
    }
    m_members = std::move(members);
}

QString Class::name() const
{
    if (m_name.isEmpty() && !m_members)
        m_application->describe(this);
    return m_name.isEmpty() ? QStringLiteral("class %1").arg(m_id) : m_name;
}

QString Class::simpleName() const
{
    return name().section(QLatin1String("::"), -1);
}

const Namespace* Class::nameSpace() const
{
    const QString& name = members().namespaceName;
    return name.isEmpty() ? nullptr : m_application->namespaceByName(name);
}

bool Class::isIdentity() const
{
    return members().isIdentity;
}

int Class::numSuperClasses() const
{
    return int(members().superClasses.size());
}

const Class* Class::superClass(int index) const
{
    return index >= 0 && index < numSuperClasses() ? members().superClasses[size_t(index)] : nullptr;
}

int Class::superClassOffset(OffsetType type) const
{
    int sum = 0;
    for (const Class* above : members().superClasses) {
        sum += above->superClassOffset(type);
        const Members& theirs = above->members();
        switch (type) {
        case SuperClassOffset:
            sum += int(theirs.superClasses.size());
            break;
        case PropertyOffset:
            sum += int(theirs.properties.size());
            break;
        case MethodOffset:
            sum += int(theirs.methods.size());
            break;
        case ConstructorOffset:
            sum += int(theirs.constructors.size());
            break;
        case EnumeratorOffset:
            sum += int(theirs.enumerators.size());
            break;
        }
    }
    return sum;
}

int Class::inheritanceDepth(const Class* ancestor) const
{
    if (this == ancestor)
        return 0;
    int best = -1;
    for (const Class* above : members().superClasses) {
        const int depth = above->inheritanceDepth(ancestor);
        if (depth >= 0 && (best < 0 || depth + 1 < best))
            best = depth + 1;
    }
    return best;
}

namespace {

/** An index over the superclasses first, then over the own members. */
template <class List, class Above>
auto memberAt(const Class* self, const List& own, Class::OffsetType type, int index, Above above)
    -> decltype(own[0].get())
{
    const int offset = self->superClassOffset(type);
    if (index >= offset)
        return size_t(index - offset) < own.size() ? own[size_t(index - offset)].get() : nullptr;
    for (int i = 0; index >= 0 && i < self->numSuperClasses(); ++i) {
        const Class* superClass = self->superClass(i);
        const int count = above(superClass, -1).second;
        if (index < count)
            return above(superClass, index).first;
        index -= count;
    }
    return nullptr;
}

} // namespace

int Class::numProperties() const
{
    return superClassOffset(PropertyOffset) + int(members().properties.size());
}

const Property* Class::property(int index) const
{
    return memberAt(this, members().properties, PropertyOffset, index, [](const Class* above, int i) {
        return std::make_pair(const_cast<Property*>(above->property(i)), above->numProperties());
    });
}

const Property* Class::property(const QString& name) const
{
    const Members& mine = members();
    const auto cached = mine.propertyCache.constFind(name);
    if (cached != mine.propertyCache.constEnd())
        return *cached;
    const Property* found = nullptr;
    for (const auto& own : mine.properties)
        if (own->name() == name)
            found = own.get();
    for (size_t i = 0; !found && i < mine.superClasses.size(); ++i)
        found = mine.superClasses[i]->property(name);
    if (m_members && found)
        m_members->propertyCache.insert(name, found);
    return found;
}

int Class::numMethods() const
{
    return superClassOffset(MethodOffset) + int(members().methods.size());
}

const Method* Class::method(int index) const
{
    return memberAt(this, members().methods, MethodOffset, index, [](const Class* above, int i) {
        return std::make_pair(const_cast<Method*>(above->method(i)), above->numMethods());
    });
}

void Class::collectMethods(const QString& name, QVector<const Method*>* found) const
{
    for (const auto& own : members().methods)
        if (own->name() == name && !found->contains(own.get()))
            found->append(own.get());
    for (const Class* above : members().superClasses)
        above->collectMethods(name, found);
}

QVector<const Method*> Class::methods(const QString& name) const
{
    const Members& mine = members();
    const auto cached = mine.methodCache.constFind(name);
    if (cached != mine.methodCache.constEnd())
        return *cached;
    QVector<const Method*> found;
    collectMethods(name, &found);
    if (m_members && !found.isEmpty())
        m_members->methodCache.insert(name, found);
    return found;
}

int Class::numConstructors() const
{
    return int(members().constructors.size());
}

const Constructor* Class::constructor(int index) const
{
    return index >= 0 && index < numConstructors() ? members().constructors[size_t(index)].get() : nullptr;
}

int Class::numEnumerators() const
{
    return superClassOffset(EnumeratorOffset) + int(members().enumerators.size());
}

const Enum* Class::enumerator(int index) const
{
    return memberAt(this, members().enumerators, EnumeratorOffset, index, [](const Class* above, int i) {
        return std::make_pair(const_cast<Enum*>(above->enumerator(i)), above->numEnumerators());
    });
}

const Enum* Class::enumerator(const QString& name) const
{
    for (const auto& own : members().enumerators)
        if (own->name() == name)
            return own.get();
    for (const Class* above : members().superClasses)
        if (const Enum* found = above->enumerator(name))
            return found;
    return nullptr;
}

SharedPtr<Object> Class::createNull() const
{
    Protocol::ObjectRef ref;
    ref.classId = m_id;
    ref.attribute = {Protocol::IndirectFlag, 1};
    return new Object(this, Protocol::Value::ofObject(ref));
}

} // namespace Torvix
