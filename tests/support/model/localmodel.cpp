#include "protocol/membermessages.h"
#include "support/model/localmodelstate.h"

namespace Torvix {

using namespace Protocol;

LocalModel::Outcome LocalModel::Outcome::failure(const QString& text)
{
    Outcome outcome;
    outcome.error = text;
    outcome.failed = true;
    return outcome;
}

LocalModel::LocalModel() : m_state(std::make_unique<State>()) {}

LocalModel::~LocalModel() = default;

TypeInfo LocalModel::type(int classId, quint32 flags)
{
    TypeInfo info;
    info.classId = classId;
    info.attribute.flags = flags;
    info.attribute.extra = (flags & IndirectFlag) ? 1 : 0;
    return info;
}

ArgumentInfo LocalModel::argument(const QString& name, int classId, quint32 flags)
{
    return {name, type(classId, flags), QString()};
}

LocalModel::ClassData& LocalModel::data(int id)
{
    return *m_state->classById(id);
}

LocalModel::ClassBuilder LocalModel::addClass(const QString& name)
{
    auto added = std::make_unique<ClassData>();
    const int id = FirstAgentClass + int(m_state->classes.size());
    added->info.self = {id, name};
    added->info.namespaceName = name.section(QStringLiteral("::"), 0, -2);
    added->info.flags = IdentityClass;
    m_state->classes.push_back(std::move(added));
    return ClassBuilder(this, id);
}

void LocalModel::setGlobalClass(const QString& name)
{
    if (const ClassData* found = m_state->classByName(name))
        m_state->globalClass = found->info.self.id;
}

ObjectRef LocalModel::addObject(const QString& className, const QString& name, const Attribute& attribute)
{
    ObjectData added;
    added.name = name;
    added.ref.id = qint64(m_state->objects.size()) + 1;
    if (const ClassData* found = m_state->classByName(className))
        added.ref.classId = found->info.self.id;
    added.ref.attribute = attribute;
    m_state->objects.push_back(added);
    return added.ref;
}

void LocalModel::destroyObject(qint64 id)
{
    ObjectData* target = m_state->object(id);
    if (!target || !target->isAlive)
        return;
    target->isAlive = false;
    m_state->pushes.push_back(pushFrame(ObjectsDestroyed{{id}}));
}

void LocalModel::sendEvent(const EventHandled& event)
{
    m_state->sent(Value::ofObject(event.object));
    for (const Value& argument : event.arguments)
        m_state->sent(argument);
    m_state->pushes.push_back(pushFrame(event));
}

void LocalModel::close(const QString& reason)
{
    m_state->isOpen = false;
    m_state->closeReason = reason;
}

qint64 LocalModel::references() const
{
    qint64 sum = 0;
    for (const ObjectData& object : m_state->objects)
        sum += object.references;
    return sum;
}

int LocalModel::requestCount() const
{
    return m_state->requests;
}

Result<QByteArray, LinkError> LocalModel::exchange(RequestNumber number, const QByteArray& body, int)
{
    QByteArray reply;
    LinkError error;
    if (m_state->isOpen) {
        ++m_state->requests;
        Answer(m_state.get(), &reply, &error).give(number, body);
        pump(0);
    }
    if (!m_state->isOpen) {
        error.kind = LinkError::Closed;
        error.text = QStringLiteral("The application has ended: %1").arg(m_state->closeReason);
    }
    if (error.kind != LinkError::None)
        return error;
    return reply;
}

void LocalModel::post(RequestNumber number, const QByteArray& body)
{
    Release release;
    if (number != RequestNumber::Release || !decode(body, &release))
        return;
    for (const ReleasedRef& ref : qAsConst(release.objects))
        if (ObjectData* target = m_state->object(ref.object))
            target->references -= ref.count;
}

void LocalModel::pump(int)
{
    while (!m_state->pushes.empty()) {
        const Frame frame = m_state->pushes.front();
        m_state->pushes.pop_front();
        push(frame);
    }
}

bool LocalModel::isOpen() const
{
    return m_state->isOpen;
}

QString LocalModel::closeReason() const
{
    return m_state->closeReason;
}

Hello LocalModel::peer() const
{
    Hello hello;
    hello.role = Role::Agent;
    hello.applicationName = QStringLiteral("local model");
    return hello;
}

// -- descriptions

int LocalModel::ClassBuilder::id() const
{
    return m_id;
}

LocalModel::ClassBuilder& LocalModel::ClassBuilder::property(const QString& name, const TypeInfo& type,
                                                             Getter get, Setter set, bool isStatic)
{
    ClassData& data = m_model->data(m_id);
    const quint32 flags =
        (get ? ReadableProperty : 0u) | (set ? WritableProperty : 0u) | (isStatic ? StaticProperty : 0u);
    data.info.properties.append({name, type, flags});
    data.getters.append(std::move(get));
    data.setters.append(std::move(set));
    return *this;
}

LocalModel::ClassBuilder& LocalModel::ClassBuilder::method(const QString& name,
                                                           const QVector<ArgumentInfo>& arguments, Call call,
                                                           const TypeInfo& result, bool isStatic,
                                                           const QString& deprecation)
{
    ClassData& data = m_model->data(m_id);
    data.info.methods.append({name, result, arguments, isStatic ? quint32(StaticMethod) : 0u, deprecation});
    data.calls.append(std::move(call));
    return *this;
}

LocalModel::ClassBuilder& LocalModel::ClassBuilder::constructor(const QVector<ArgumentInfo>& arguments,
                                                                Call call)
{
    ClassData& data = m_model->data(m_id);
    data.info.constructors.append({arguments});
    data.constructors.append(std::move(call));
    return *this;
}

LocalModel::ClassBuilder& LocalModel::ClassBuilder::enumerator(const QString& name,
                                                               const QVector<EnumKey>& keys, bool isFlag)
{
    m_model->data(m_id).info.enumerators.append({name, isFlag, keys});
    return *this;
}

LocalModel::ClassBuilder& LocalModel::ClassBuilder::superClass(const QString& name)
{
    if (const ClassData* found = m_model->m_state->classByName(name))
        m_model->data(m_id).info.superClasses.append(found->info.self);
    return *this;
}

LocalModel::ClassBuilder& LocalModel::ClassBuilder::convertsTo(int classId, const Call& call)
{
    m_model->data(m_id).info.convertibleTo.append(classId);
    m_model->data(m_id).conversionsTo.insert(classId, call);
    return *this;
}

LocalModel::ClassBuilder& LocalModel::ClassBuilder::convertsFrom(int classId, const Call& call)
{
    m_model->data(m_id).info.convertibleFrom.append(classId);
    m_model->data(m_id).conversionsFrom.insert(classId, call);
    return *this;
}

LocalModel::ClassBuilder& LocalModel::ClassBuilder::valueType()
{
    m_model->data(m_id).info.flags = 0;
    return *this;
}

} // namespace Torvix
