#pragma once

#include "protocol/channel.h"
#include "protocol/classmessages.h"
#include "protocol/greeting.h"
#include "protocol/waitmessages.h"

#include <QProcess>
#include <QTemporaryDir>

#include <memory>
#include <stdexcept>

/** What a request failed with. */
struct RequestError : std::runtime_error
{
    RequestError(Torvix::Protocol::ErrorClass error, const QString& text)
        : std::runtime_error(text.toStdString())
        , kind(error)
    {
    }
    Torvix::Protocol::ErrorClass kind;
};

/** The other end of the wire: one blocking connection, pushes kept in the order in which they came. */
class AgentClient
{
public:
    explicit AgentClient(std::unique_ptr<Torvix::Protocol::Channel> channel);

    /** Answers the greeting of an agent that connected to us, or greets one that listens. */
    Torvix::Protocol::Hello welcome(const QByteArray& token, int timeoutMs = 10000);
    Torvix::Protocol::Hello introduce(const QByteArray& token, int timeoutMs = 10000);

    quint32 send(const Torvix::Protocol::Frame& frame);
    /** The reply to that request; throws RequestError, and std::runtime_error when the connection ends. */
    QByteArray wait(quint32 id, int timeoutMs = 20000);

    template <class Request>
    quint32 begin(const Request& request)
    {
        return send(Torvix::Protocol::requestFrame(++m_lastId, request));
    }
    template <class Request>
    typename Request::Reply end(quint32 id, int timeoutMs = 20000)
    {
        typename Request::Reply reply;
        if (!Torvix::Protocol::decode(wait(id, timeoutMs), &reply))
            throw std::runtime_error("the reply is malformed");
        return reply;
    }
    template <class Request>
    typename Request::Reply request(const Request& message)
    {
        return end<Request>(begin(message));
    }

    /** Reads for that long, or until the connection ends (false). */
    bool pump(int timeoutMs);
    /** The next push of that kind, waiting for it; false after the timeout. */
    template <class Push>
    bool waitForPush(Push* message, int timeoutMs = 5000)
    {
        const QByteArray body = takePush(quint16(Push::number), timeoutMs);
        return !body.isNull() && Torvix::Protocol::decode(body, message);
    }
    /** True when the other side ended the connection within the time. */
    bool waitForEnd(int timeoutMs = 5000);

    Torvix::Protocol::Channel& channel() { return *m_channel; }

private:
    bool readOnce(int timeoutMs);
    QByteArray takePush(quint16 number, int timeoutMs);
    Torvix::Protocol::Frame takeFrame(int timeoutMs);

    std::unique_ptr<Torvix::Protocol::Channel> m_channel;
    Torvix::Protocol::FrameReader m_reader;
    QVector<Torvix::Protocol::Frame> m_frames;
    quint32 m_lastId = 0;
    bool m_ended = false;
};

/** An application with the agent in it, and short ways to its objects by name. */
class Target
{
public:
    using Ref = Torvix::Protocol::ObjectRef;
    using Value = Torvix::Protocol::Value;

    /** Starts `program` offscreen with the agent and waits until it has called back. */
    explicit Target(const QString& program = defaultProgram(), const QStringList& arguments = {},
                    const QMap<QString, QString>& extra = {});
    ~Target();
    static QString defaultProgram();
    /** Our application with what is not on forms. */
    static QString corners();
    static QString example(const QString& path);
    static QProcessEnvironment environment(const QString& pluginRoot = QString());

    AgentClient& client() { return *m_client; }
    QProcess& process() { return m_process; }

    /** By conditions in turn: {"type", "QPushButton", "name", "ok"}. Throws RequestError. */
    Ref find(const QStringList& conditions);
    static Torvix::Protocol::NameConditions name(const QStringList& conditions);
    Ref byName(const QString& objectName) { return find({QStringLiteral("name"), objectName}); }

    Value get(const Ref& object, const QString& property);
    void set(const Ref& object, const QString& property, const Value& value);
    /** The first overload with that many arguments, or the one with that C++-like signature text. */
    Value call(const Ref& object, const QString& method, const QVector<Value>& arguments = {});
    quint32 beginCall(const Ref& object, const QString& method, const QVector<Value>& arguments = {});
    /** A function of the global class. */
    Value action(const QString& function, const QVector<Value>& arguments);

    Torvix::Protocol::ClassReply describe(int classId);
    Torvix::Protocol::WaitReply waitFor(const QStringList& conditions, int timeoutMs = 5000,
                                        quint32 wanted = Torvix::Protocol::WaitReady);

private:
    struct Member
    {
        int classId = 0;
        int index = -1;
    };
    Member property(int classId, const QString& name);
    Member method(int classId, const QString& name, const QVector<Value>& arguments);

    QTemporaryDir m_folder;
    QProcess m_process;
    std::unique_ptr<AgentClient> m_client;
    QMap<int, Torvix::Protocol::ClassReply> m_classes;
    int m_globalClass = -1;
};

/** A local socket in a folder, and the next connection to it. */
class Listener
{
public:
    explicit Listener(const QString& path);
    ~Listener();
    /** Null after the timeout, or when `process` has ended. */
    std::unique_ptr<Torvix::Protocol::Channel> accept(int timeoutMs, QProcess* process = nullptr);

private:
    int m_descriptor;
};
