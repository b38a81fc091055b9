#include "objectmodel/inspector.h"

#include <poll.h>

namespace Torvix {

using namespace Protocol;

struct Inspector::Builtins
{
    std::vector<std::unique_ptr<Class>> classes;
    QHash<QString, const Class*> byName;
    Namespace globalNamespace{nullptr, QString(), nullptr};
};

Inspector::Inspector() : m_builtins(std::make_unique<Builtins>())
{
    const char* const names[] = {"uint", "int", "short", "bool", "QString", "double", "qint64", "void"};
    for (int id = 0; id <= VoidClass; ++id)
        m_builtins->classes.push_back(std::make_unique<Class>(nullptr, id, QString::fromLatin1(names[id])));
    m_builtins->classes.push_back(std::make_unique<ArrayClass>());
    m_builtins->classes.push_back(std::make_unique<MapClass>());
    for (const auto& builtin : m_builtins->classes)
        m_builtins->byName.insert(builtin->name(), builtin.get());
    m_builtins->byName.insert(QStringLiteral("unsigned int"), builtinClass(UIntClass));
    m_builtins->byName.insert(QStringLiteral("string"), builtinClass(StringClass));
    m_builtins->byName.insert(QStringLiteral("long long"), builtinClass(Int64Class));
}

Inspector::~Inspector() = default;

Inspector* Inspector::self()
{
    static Inspector inspector;
    return &inspector;
}

// -- applications

ApplicationModel* Inspector::addApplication(std::unique_ptr<ModelLink> link)
{
    m_applications.push_back(std::make_unique<ApplicationModel>(m_nextId++, std::move(link)));
    ApplicationModel* added = m_applications.back().get();
    added->setListener(m_listener);
    if (!m_current)
        m_current = added;
    return added;
}

ApplicationModel* Inspector::application(int id) const
{
    for (const auto& application : m_applications)
        if (application->id() == id)
            return application.get();
    return nullptr;
}

QVector<ApplicationModel*> Inspector::applications() const
{
    QVector<ApplicationModel*> all;
    for (const auto& application : m_applications)
        all.append(application.get());
    return all;
}

void Inspector::setListener(InspectorListener* listener)
{
    m_listener = listener;
    for (const auto& application : m_applications)
        application->setListener(listener);
}

void Inspector::processEvents(int timeoutMs)
{
    std::vector<pollfd> waiting;
    for (const auto& application : m_applications) {
        if (application->descriptor() >= 0)
            waiting.push_back({application->descriptor(), POLLIN, 0});
        if (application->hasEvents())
            timeoutMs = 0;
    }
    if (timeoutMs != 0)
        ::poll(waiting.data(), waiting.size(), timeoutMs);
    // A handler may start applications: no iterators here. NOLINTNEXTLINE(modernize-loop-convert)
    for (size_t i = 0; i < m_applications.size(); ++i)
        m_applications[i]->processEvents(0);
}

void Inspector::reset()
{
    for (const auto& application : m_applications)
        application->detach(QStringLiteral("it was let go"));
    m_current = nullptr;
    m_applications.clear();
    m_lastError.clear();
}

// -- classes

const Class* Inspector::builtinClass(int id) const
{
    return id >= 0 && size_t(id) < m_builtins->classes.size() ? m_builtins->classes[size_t(id)].get()
                                                              : nullptr;
}

const Class* Inspector::globalClass() const
{
    return m_current ? m_current->globalClass() : nullptr;
}

const Namespace* Inspector::globalNamespace() const
{
    return m_current ? m_current->globalNamespace() : &m_builtins->globalNamespace;
}

const Class* Inspector::classById(int id) const
{
    if (const Class* builtin = builtinClass(id))
        return builtin;
    return m_current ? m_current->classById(id) : nullptr;
}

const Class* Inspector::classByName(const QString& name) const
{
    if (const Class* builtin = m_builtins->byName.value(name))
        return builtin;
    return m_current ? m_current->classByName(name) : nullptr;
}

const Namespace* Inspector::namespaceByName(const QString& name) const
{
    if (name.isEmpty())
        return globalNamespace();
    return m_current ? m_current->namespaceByName(name) : nullptr;
}

// -- values

SharedPtr<Object> Inspector::createUInt(quint32 value) const
{
    return new Object(builtinClass(UIntClass), Value::ofInt(value, Value::Kind::UInt));
}

SharedPtr<Object> Inspector::createInteger(int value) const
{
    return new Object(builtinClass(IntClass), Value::ofInt(value));
}

SharedPtr<Object> Inspector::createShort(int value) const
{
    return new Object(builtinClass(ShortClass), Value::ofInt(qint16(value), Value::Kind::Short));
}

SharedPtr<Object> Inspector::createBoolean(bool value) const
{
    return new Object(builtinClass(BoolClass), Value::ofBool(value));
}

SharedPtr<Object> Inspector::createString(const QString& value) const
{
    return new Object(builtinClass(StringClass), Value::ofString(value));
}

SharedPtr<Object> Inspector::createString(const QByteArray& utf8) const
{
    return createString(QString::fromUtf8(utf8));
}

SharedPtr<Object> Inspector::createDouble(double value) const
{
    return new Object(builtinClass(DoubleClass), Value::ofDouble(value));
}

SharedPtr<Object> Inspector::createInt64(qint64 value) const
{
    return new Object(builtinClass(Int64Class), Value::ofInt(value, Value::Kind::Int64));
}

SharedPtr<Object> Inspector::createVoid() const
{
    return new Object(builtinClass(VoidClass), Value());
}

SharedPtr<Object> Inspector::createStringList(const QStringList& values) const
{
    ObjectList elements;
    for (const QString& value : values)
        elements.append(createString(value));
    return ArrayClass::createRemoteObject(elements);
}

SharedPtr<Object> Inspector::createNull(const Class* type) const
{
    return (type ? type : builtinClass(VoidClass))->createNull();
}

} // namespace Torvix
