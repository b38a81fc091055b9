#include "agent/client.h"

#include "protocol/lookupmessages.h"
#include "protocol/membermessages.h"
#include "protocol/token.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QLibraryInfo>
#include <QProcessEnvironment>

#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <cstring>

using namespace Torvix::Protocol;

AgentClient::AgentClient(std::unique_ptr<Channel> channel)
    : m_channel(std::move(channel))
    , m_reader(maxFrameSize)
{
}

bool AgentClient::readOnce(int timeoutMs)
{
    if (m_ended || !m_channel->wait(Channel::Wait::Readable, timeoutMs))
        return false;
    char buffer[65536];
    const qint64 count = m_channel->read(buffer, sizeof buffer);
    if (count < 0) {
        m_ended = true;
        return false;
    }
    m_reader.add(buffer, count);
    while (const auto frame = m_reader.next())
        m_frames.append(*frame);
    return true;
}

Frame AgentClient::takeFrame(int timeoutMs)
{
    QElapsedTimer timer;
    timer.start();
    while (m_frames.isEmpty())
        if (!readOnce(qMax(0, timeoutMs - int(timer.elapsed()))))
            throw std::runtime_error(m_ended ? "the connection has ended" : "timeout");
    return m_frames.takeFirst();
}

Hello AgentClient::welcome(const QByteArray& token, int timeoutMs)
{
    Hello theirs;
    bool tell = false;
    const QString wrong = checkHello(takeFrame(timeoutMs), token, Role::Agent, &theirs, &tell);
    if (!wrong.isEmpty())
        throw std::runtime_error(wrong.toStdString());
    send({FrameKind::Hello, 0, 0, encode(Hello())});
    return theirs;
}

Hello AgentClient::introduce(const QByteArray& token, int timeoutMs)
{
    Hello ours;
    ours.token = token;
    send({FrameKind::Hello, 0, 0, encode(ours)});
    Hello theirs;
    bool tell = false;
    const QString wrong = checkHello(takeFrame(timeoutMs), QByteArray(), Role::Agent, &theirs, &tell);
    if (!wrong.isEmpty())
        throw std::runtime_error(wrong.toStdString());
    return theirs;
}

quint32 AgentClient::send(const Frame& frame)
{
    m_channel->writeAll(toBytes(frame), 5000);
    return frame.id;
}

QByteArray AgentClient::wait(quint32 id, int timeoutMs)
{
    QElapsedTimer timer;
    timer.start();
    for (;;) {
        for (int i = 0; i < m_frames.size(); ++i) {
            if (m_frames.at(i).id != id || m_frames.at(i).kind == FrameKind::Push)
                continue;
            const Frame frame = m_frames.takeAt(i);
            if (frame.kind == FrameKind::Reply)
                return frame.body;
            ErrorText text;
            decode(frame.body, &text);
            throw RequestError(ErrorClass(frame.number), text.text);
        }
        if (!readOnce(qMax(0, timeoutMs - int(timer.elapsed()))))
            throw std::runtime_error(m_ended ? "the connection has ended" : "timeout");
    }
}

bool AgentClient::pump(int timeoutMs)
{
    QElapsedTimer timer;
    timer.start();
    while (!m_ended && timer.elapsed() < timeoutMs)
        readOnce(timeoutMs - int(timer.elapsed()));
    return !m_ended;
}

QByteArray AgentClient::takePush(quint16 number, int timeoutMs)
{
    QElapsedTimer timer;
    timer.start();
    for (;;) {
        for (int i = 0; i < m_frames.size(); ++i)
            if (m_frames.at(i).kind == FrameKind::Push && m_frames.at(i).number == number)
                return m_frames.takeAt(i).body;
        if (m_ended || timer.elapsed() > timeoutMs)
            return {};
        readOnce(qMax(0, timeoutMs - int(timer.elapsed())));
    }
}

bool AgentClient::waitForEnd(int timeoutMs)
{
    pump(timeoutMs);
    return m_ended;
}

Listener::Listener(const QString& path) : m_descriptor(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0))
{
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    const QByteArray name = QFile::encodeName(path);
    std::memcpy(address.sun_path, name.constData(), std::size_t(name.size()) + 1);
    if (::bind(m_descriptor, reinterpret_cast<sockaddr*>(&address), sizeof address) != 0 ||
        ::listen(m_descriptor, 4) != 0)
        throw std::runtime_error("cannot listen");
}

Listener::~Listener()
{
    ::close(m_descriptor);
}

std::unique_ptr<Channel> Listener::accept(int timeoutMs, QProcess* process)
{
    QElapsedTimer timer;
    timer.start();
    while (timer.elapsed() < timeoutMs) {
        pollfd entry{m_descriptor, POLLIN, 0};
        if (::poll(&entry, 1, 50) > 0)
            return socketChannel(::accept4(m_descriptor, nullptr, nullptr, SOCK_CLOEXEC));
        if (process && process->waitForFinished(0))
            break;
    }
    return nullptr;
}

QString Target::defaultProgram()
{
    return QStringLiteral(TORVIX_TEST_BINARY_DIR "/tests/torvixtarget");
}

QString Target::corners()
{
    return QStringLiteral(TORVIX_TEST_BINARY_DIR "/tests/torvixcorners");
}

QString Target::example(const QString& path)
{
    return QLibraryInfo::location(QLibraryInfo::ExamplesPath) + QLatin1Char('/') + path;
}

QProcessEnvironment Target::environment(const QString& pluginRoot)
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    // Any test can be run by hand on the platform of a real display.
    environment.insert(
        QStringLiteral("QT_QPA_PLATFORM"),
        environment.value(QStringLiteral("TORVIX_TEST_PLATFORM"), QStringLiteral("offscreen")));
    environment.insert(QStringLiteral("QT_QPA_GENERIC_PLUGINS"), QStringLiteral("torvixagent"));
    environment.insert(QStringLiteral("QT_PLUGIN_PATH"),
                       pluginRoot.isEmpty() ? QStringLiteral(TORVIX_TEST_BINARY_DIR "/lib/qt5/plugins")
                                            : pluginRoot);
    return environment;
}

Target::Target(const QString& program, const QStringList& arguments, const QMap<QString, QString>& extra)
{
    const QByteArray token = makeToken();
    const QString path = m_folder.filePath(QStringLiteral("agent"));
    Listener listener(path);
    QProcessEnvironment variables = environment();
    variables.insert(QStringLiteral("TORVIX_AGENT_SOCKET"), path);
    variables.insert(QStringLiteral("TORVIX_AGENT_TOKEN"), QString::fromLatin1(tokenToText(token)));
    variables.insert(QStringLiteral("HOME"), m_folder.path());
    for (auto it = extra.begin(); it != extra.end(); ++it)
        variables.insert(it.key(), it.value());
    m_process.setProcessEnvironment(variables);
    m_process.setWorkingDirectory(m_folder.path());
    m_process.setProcessChannelMode(QProcess::ForwardedChannels);
    m_process.start(program, arguments);
    if (!m_process.waitForStarted())
        throw std::runtime_error("cannot start " + program.toStdString());
    auto channel = listener.accept(30000, &m_process);
    if (!channel)
        throw std::runtime_error("the agent has not called back");
    m_client = std::make_unique<AgentClient>(std::move(channel));
    m_client->welcome(token);
}

Target::~Target()
{
    m_process.kill();
    m_process.waitForFinished();
}

NameConditions Target::name(const QStringList& conditions)
{
    NameConditions made;
    for (int i = 0; i + 1 < conditions.size(); i += 2) {
        NameCondition condition;
        condition.property = conditions.at(i);
        condition.text = conditions.at(i + 1);
        if (condition.property.endsWith(QLatin1Char('?')) || condition.property.endsWith(QLatin1Char('~'))) {
            condition.match =
                condition.property.endsWith(QLatin1Char('?')) ? Match::Wildcard : Match::RegularExpression;
            condition.property.chop(1);
        }
        made.append(condition);
    }
    return made;
}

Target::Ref Target::find(const QStringList& conditions)
{
    return m_client->request(Find{name(conditions)}).object;
}

ClassReply Target::describe(int classId)
{
    if (!m_classes.contains(classId))
        m_classes.insert(classId, m_client->request(ClassById{classId}));
    return m_classes.value(classId);
}

Target::Member Target::property(int classId, const QString& name)
{
    for (const ClassInfo& info : describe(classId).classes)
        for (int i = 0; i < info.properties.size(); ++i)
            if (info.properties.at(i).name == name)
                return {info.self.id, i};
    throw std::runtime_error("no property " + name.toStdString());
}

static bool fits(const Torvix::Protocol::Value& value, const TypeInfo& type)
{
    const bool isList = type.attribute.flags & ListFlag;
    if (value.kind == Torvix::Protocol::Value::Kind::Array)
        return isList || type.classId == ArrayClassId;
    if (value.kind == Torvix::Protocol::Value::Kind::Object)
        return type.classId >= FirstAgentClass;
    return !isList && value.classId() == type.classId;
}

Target::Member Target::method(int classId, const QString& name, const QVector<Value>& arguments)
{
    Member fallback;
    for (const ClassInfo& info : describe(classId).classes)
        for (int i = 0; i < info.methods.size(); ++i) {
            const MethodInfo& candidate = info.methods.at(i);
            if (candidate.name != name || candidate.arguments.size() != arguments.size())
                continue;
            bool all = true;
            for (int a = 0; a < arguments.size(); ++a)
                all = all && fits(arguments.at(a), candidate.arguments.at(a).type);
            if (all)
                return {info.self.id, i};
            if (fallback.index < 0)
                fallback = {info.self.id, i};
        }
    if (fallback.index < 0)
        throw std::runtime_error("no method " + name.toStdString());
    return fallback;
}

Target::Value Target::get(const Ref& object, const QString& propertyName)
{
    const Member member = property(object.classId, propertyName);
    return m_client->request(GetProperty{object.id, member.classId, member.index}).value;
}

void Target::set(const Ref& object, const QString& propertyName, const Value& value)
{
    const Member member = property(object.classId, propertyName);
    m_client->request(SetProperty{object.id, member.classId, member.index, value});
}

quint32 Target::beginCall(const Ref& object, const QString& methodName, const QVector<Value>& arguments)
{
    const Member member = method(object.classId, methodName, arguments);
    return m_client->begin(CallMethod{object.id, member.classId, member.index, arguments});
}

Target::Value Target::call(const Ref& object, const QString& methodName, const QVector<Value>& arguments)
{
    return m_client->end<CallMethod>(beginCall(object, methodName, arguments)).value;
}

Target::Value Target::action(const QString& function, const QVector<Value>& arguments)
{
    if (m_globalClass < 0)
        m_globalClass = m_client->request(GlobalClass()).classes.value(0).self.id;
    Ref global;
    global.classId = m_globalClass;
    return call(global, function, arguments);
}

WaitReply Target::waitFor(const QStringList& conditions, int timeoutMs, quint32 wanted)
{
    return m_client->request(WaitFor{name(conditions), wanted, timeoutMs});
}
