#pragma once

#include "objectmodel/inspector.h"
#include "protocol/classmessages.h"
#include "protocol/eventmessages.h"
#include "protocol/greeting.h"

#include <functional>

namespace Torvix {

/**
 * Classes and objects that are defined in C++ and need no application: it answers the requests of
 * the protocol in this process. For tests of what lies above the object model.
 *
 *     auto model = std::make_unique<LocalModel>();
 *     LocalModel::ClassBuilder shape = model->addClass("Shape");
 *     shape.property("size", LocalModel::type(Protocol::IntClass), getter, setter);
 *     shape.method("scale", {LocalModel::argument("by", Protocol::DoubleClass)}, call);
 *     Protocol::ObjectRef ref = model->addObject("Shape", "first");
 *     ApplicationModel* application = Inspector::self()->addApplication(std::move(model));
 *
 * Look-ups know the properties `type`, `name` and `occurrence`, exact and without nesting.
 */
class LocalModel : public ModelLink
{
public:
    /** What a call gives: a value, or an error text. */
    struct Outcome
    {
        Outcome(const Protocol::Value& result = {}) : value(result) {}
        static Outcome failure(const QString& text);

        Protocol::Value value;
        QString error;
        bool failed = false;
    };
    /** `object` is 0 for static members. */
    using Getter = std::function<Outcome(qint64 object)>;
    using Setter = std::function<Outcome(qint64 object, const Protocol::Value& value)>;
    using Call = std::function<Outcome(qint64 object, const QVector<Protocol::Value>& arguments)>;

    /** Describes a class; a copy describes the same one. Valid as long as the model. */
    class ClassBuilder
    {
    public:
        int id() const;
        /** Without a setter it is read-only; a null getter makes it unreadable. */
        ClassBuilder& property(const QString& name, const Protocol::TypeInfo& type, Getter get,
                               Setter set = nullptr, bool isStatic = false);
        ClassBuilder& method(const QString& name, const QVector<Protocol::ArgumentInfo>& arguments, Call call,
                             const Protocol::TypeInfo& result = {}, bool isStatic = false,
                             const QString& deprecation = QString());
        ClassBuilder& constructor(const QVector<Protocol::ArgumentInfo>& arguments, Call call);
        ClassBuilder& enumerator(const QString& name, const QVector<Protocol::EnumKey>& keys,
                                 bool isFlag = false);
        ClassBuilder& superClass(const QString& name);
        /** Values of this class convert to that one; the call gets the value as its argument. */
        ClassBuilder& convertsTo(int classId, const Call& call);
        ClassBuilder& convertsFrom(int classId, const Call& call);
        /** Made a value type: no identity, not found by name. */
        ClassBuilder& valueType();

    private:
        friend class LocalModel;
        ClassBuilder(LocalModel* model, int id) : m_model(model), m_id(id) {}
        LocalModel* m_model;
        int m_id;
    };

    LocalModel();
    ~LocalModel() override;

    static Protocol::TypeInfo type(int classId, quint32 flags = Protocol::NoAttribute);
    static Protocol::ArgumentInfo argument(const QString& name, int classId,
                                           quint32 flags = Protocol::NoAttribute);

    /** `Ns::Name` lies in namespace `Ns`. */
    ClassBuilder addClass(const QString& name);
    /** The class whose members are global. */
    void setGlobalClass(const QString& name);
    /** An object of a class; held by pointer unless the attribute says otherwise. */
    Protocol::ObjectRef addObject(const QString& className, const QString& name = QString(),
                                  const Protocol::Attribute& attribute = {Protocol::IndirectFlag, 1});
    /** Pushes its end. */
    void destroyObject(qint64 id);
    /** Pushes an event for a handler. */
    void sendEvent(const Protocol::EventHandled& event);
    /** The end of the application. */
    void close(const QString& reason) override;
    /** References that the client holds, over all objects. */
    qint64 references() const;
    /** Requests that were answered so far, without releases. */
    int requestCount() const;

    Result<QByteArray, LinkError> exchange(Protocol::RequestNumber number, const QByteArray& body,
                                           int timeoutMs) override;
    void post(Protocol::RequestNumber number, const QByteArray& body) override;
    void pump(int timeoutMs) override;
    bool isOpen() const override;
    QString closeReason() const override;
    Protocol::Hello peer() const override;

private:
    struct State;
    struct ClassData;
    struct ObjectData;
    class Answer;
    ClassData& data(int id);

    std::unique_ptr<State> m_state;
};

} // namespace Torvix
