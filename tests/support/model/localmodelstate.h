#pragma once

#include "protocol/applicationmessages.h"
#include "protocol/classmessages.h"
#include "protocol/eventmessages.h"
#include "protocol/lookupmessages.h"
#include "protocol/waitmessages.h"
#include "support/model/localmodel.h"

#include <deque>

namespace Torvix {

struct LocalModel::ClassData
{
    Protocol::ClassInfo info;
    QVector<Getter> getters;
    QVector<Setter> setters;
    QVector<Call> calls;
    QVector<Call> constructors;
    QMap<int, Call> conversionsTo;
    QMap<int, Call> conversionsFrom;
};

struct LocalModel::ObjectData
{
    QString name;
    Protocol::ObjectRef ref;
    bool isAlive = true;
    qint64 references = 0;
};

struct LocalModel::State
{
    /** By id, from FirstAgentClass. */
    std::vector<std::unique_ptr<ClassData>> classes;
    int globalClass = -1;
    /** In the order of their creation, which is that of their ids from 1. */
    std::vector<ObjectData> objects;
    std::deque<Protocol::Frame> pushes;
    bool isOpen = true;
    QString closeReason;
    int requests = 0;

    ClassData* classById(int id)
    {
        const int index = id - Protocol::FirstAgentClass;
        return index >= 0 && size_t(index) < classes.size() ? classes[size_t(index)].get() : nullptr;
    }
    ClassData* classByName(const QString& name)
    {
        for (const auto& entry : classes)
            if (entry->info.self.name == name)
                return entry.get();
        return nullptr;
    }
    ObjectData* object(qint64 id)
    {
        return id > 0 && size_t(id) <= objects.size() ? &objects[size_t(id) - 1] : nullptr;
    }
    /** Counts the references of what is about to be sent. */
    Protocol::Value sent(const Protocol::Value& value)
    {
        if (value.kind == Protocol::Value::Kind::Object)
            if (ObjectData* target = object(value.object.id))
                ++target->references;
        for (const Protocol::Value& element : value.elements)
            sent(element);
        for (const Protocol::Value& entry : value.entries)
            sent(entry);
        return value;
    }
};

/** Answers one request. */
class LocalModel::Answer
{
public:
    Answer(State* state, QByteArray* reply, LinkError* error) : m_state(state), m_reply(reply), m_error(error)
    {
    }

    void give(Protocol::RequestNumber number, const QByteArray& body);

private:
    template <class Request>
    void answer(const QByteArray& body);
    bool fail(Protocol::ErrorClass errorClass, const QString& text);
    bool finish(const Outcome& outcome, Protocol::ValueReply* reply);
    bool isUsable(qint64 object);
    bool matches(const ObjectData& object, const Protocol::NameConditions& name);
    QVector<Protocol::ObjectRef> allMatches(const Protocol::NameConditions& name);
    Protocol::ClassReply describe(ClassData* described);
    bool inherits(int classId, int ancestor);

    bool handle(const Protocol::Ping& request, Protocol::Empty* reply);
    bool handle(const Protocol::ClassById& request, Protocol::ClassReply* reply);
    bool handle(const Protocol::ClassByName& request, Protocol::ClassReply* reply);
    bool handle(const Protocol::GlobalClass& request, Protocol::ClassReply* reply);
    bool handle(const Protocol::NamespaceByName& request, Protocol::NamespaceReply* reply);
    bool handle(const Protocol::GetProperty& request, Protocol::ValueReply* reply);
    bool handle(const Protocol::GetProperties& request, Protocol::PropertiesReply* reply);
    bool handle(const Protocol::SetProperty& request, Protocol::Empty* reply);
    bool handle(const Protocol::CallMethod& request, Protocol::ValueReply* reply);
    bool handle(const Protocol::Construct& request, Protocol::ValueReply* reply);
    bool handle(const Protocol::Convert& request, Protocol::ValueReply* reply);
    bool handle(const Protocol::Compare& request, Protocol::FlagReply* reply);
    bool handle(const Protocol::ToText& request, Protocol::TextReply* reply);
    bool handle(const Protocol::Find& request, Protocol::ObjectReply* reply);
    bool handle(const Protocol::FindAll& request, Protocol::ObjectsReply* reply);
    bool handle(const Protocol::WaitFor& request, Protocol::WaitReply* reply);
    bool handle(const Protocol::RealName& request, Protocol::NameReply* reply);
    bool handle(const Protocol::RemoteCall& request, Protocol::ValueReply* reply);
    bool handle(const Protocol::InstallHandler& request, Protocol::Empty* reply);
    bool handle(const Protocol::UninstallHandler& request, Protocol::Empty* reply);

    State* m_state;
    QByteArray* m_reply;
    LinkError* m_error;
};

} // namespace Torvix
