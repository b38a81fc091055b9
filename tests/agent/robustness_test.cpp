#include "agent/client.h"
#include "protocol/applicationmessages.h"
#include "protocol/classmessages.h"
#include "protocol/greeting.h"
#include "protocol/lookupmessages.h"
#include "protocol/waitmessages.h"

#include "protocol/token.h"

#include <QElapsedTimer>
#include <QFileInfo>
#include <QThread>

#include <csignal>
#include <signal.h>

using namespace Torvix::Protocol;

namespace {

QString q(const char* text)
{
    return QString::fromUtf8(text);
}

/** An application that waits for a runner, and connections to it. */
class Listening
{
public:
    explicit Listening(const QByteArray& token = QByteArray())
    {
        QProcessEnvironment variables = Target::environment();
        variables.insert(q("TORVIX_AGENT_LISTEN"), path());
        if (!token.isEmpty())
            variables.insert(q("TORVIX_AGENT_TOKEN"), QString::fromLatin1(tokenToText(token)));
        m_process.setProcessEnvironment(variables);
        m_process.start(Target::defaultProgram(), QStringList());
        QElapsedTimer timer;
        timer.start();
        while (!QFileInfo::exists(path()) && timer.elapsed() < 20000 && !m_process.waitForFinished(20)) {
        }
    }
    ~Listening()
    {
        m_process.kill();
        m_process.waitForFinished();
    }
    QString path() const { return m_folder.filePath(q("listen")); }
    std::unique_ptr<AgentClient> connect() const
    {
        // The file is there a moment before anybody listens on it.
        QString error;
        auto channel = connectTo(path(), &error);
        for (int i = 0; i < 100 && !channel; ++i) {
            QThread::msleep(50);
            channel = connectTo(path(), &error);
        }
        if (!channel)
            throw std::runtime_error(error.toStdString());
        return std::make_unique<AgentClient>(std::move(channel));
    }
    bool isRunning() const { return m_process.state() == QProcess::Running; }
    QByteArray writtenToken() const
    {
        QFile file(path() + q(".token"));
        return file.open(QIODevice::ReadOnly) ? tokenFromText(file.readAll()) : QByteArray();
    }

private:
    QTemporaryDir m_folder;
    QProcess m_process;
};

QByteArray rawFrame(quint32 length, const QByteArray& rest)
{
    QByteArray bytes;
    for (int shift = 24; shift >= 0; shift -= 8)
        bytes.append(char(length >> shift));
    return bytes + rest;
}

} // namespace

TEST(AgentRobustness, strangersAreRefusedAndHarmNothing)
{
    const Listening target;
    const QByteArray token = target.writtenToken();
    ASSERT_EQ(token.size(), tokenSize);
    EXPECT_EQ(QFile::permissions(target.path() + q(".token")) & (QFile::ReadGroup | QFile::ReadOther), 0);

    const QByteArray openings[] = {
        QByteArray("GET / HTTP/1.0\r\n\r\n"), rawFrame(0xffffffffu, QByteArray(64, 'x')), // claims 4 GiB
        rawFrame(
            20, QByteArray("\x01\x00\x00\x00\x00\x00\x00\xff\xff\xff\xff\xff\xff\xff\xff\xff\xff\xff\xff\xff",
                           20)),
        toBytes(requestFrame(1, Ping())), // no greeting
    };
    for (const QByteArray& bytes : openings) {
        const auto stranger = target.connect();
        stranger->channel().writeAll(bytes);
        EXPECT_TRUE(stranger->waitForEnd(3000)) << bytes.toHex().constData();
    }
    EXPECT_THROW(target.connect()->introduce(makeToken(), 3000), std::runtime_error) << "a wrong token";
    EXPECT_THROW(target.connect()->introduce(QByteArray(), 3000), std::runtime_error) << "no token";
    {
        const auto half = target.connect();
        half->channel().writeAll(rawFrame(50, QByteArray("\x01", 1)));
    } // leaves in the middle of a frame
    const auto good = target.connect();
    EXPECT_EQ(good->introduce(token).applicationName, q("torvixtarget"));
    EXPECT_NO_THROW(good->request(Ping()));
    EXPECT_TRUE(target.isRunning());
}

TEST(AgentRobustness, malformedRequestsCloseOneConnectionOnly)
{
    const QByteArray token = makeToken();
    const Listening target(token);
    const Frame bad[] = {{FrameKind::Request, 1, quint16(RequestNumber::Find), QByteArray("\x80", 1)},
                         {FrameKind::Reply, 1, 1, encode(Empty())},
                         {FrameKind::Request, 1, quint16(RequestNumber::Find), QByteArray(200, '\x81')}};
    for (const Frame& frame : bad) {
        const auto client = target.connect();
        client->introduce(token);
        client->send(frame);
        EXPECT_TRUE(client->waitForEnd(3000));
    }
    const auto client = target.connect();
    client->introduce(token);
    client->send({FrameKind::Request, 9, 999, encode(Empty())});
    try {
        client->wait(9);
        FAIL();
    } catch (const RequestError& error) {
        EXPECT_EQ(error.kind, ErrorClass::UnknownRequest);
    }
    EXPECT_NO_THROW(client->request(Ping()));

    // A runner that goes in the middle of things is forgotten, and the next one is served.
    client->begin(WaitFor{Target::name({q("name"), q("nobody")}), WaitReady, 60000});
    const auto second = target.connect();
    EXPECT_TRUE(second->waitForEnd(2000)) << "one runner at a time";
}

TEST(AgentRobustness, wrongNumbersAreClearErrors)
{
    Target target;
    const auto shapes = target.byName(q("shapes"));
    AgentClient& client = target.client();
    EXPECT_THROW(client.request(GetProperty{12345, shapes.classId, 0}), RequestError);
    EXPECT_THROW(client.request(GetProperty{shapes.id, 99999, 0}), RequestError);
    EXPECT_THROW(client.request(GetProperty{shapes.id, shapes.classId, 9999}), RequestError);
    EXPECT_THROW(client.request(GetProperty{shapes.id, shapes.classId, -1}), RequestError);
    EXPECT_THROW(client.request(CallMethod{shapes.id, shapes.classId, 0, QVector<Value>(40)}), RequestError);
    // A member of a class that the object is not of.
    const auto table = client.request(ClassByName{q("QTableWidget")}).classes.first();
    for (int i = 0; i < table.methods.size(); ++i) {
        const QVector<Value> arguments(table.methods.at(i).arguments.size(), Value::ofInt(0));
        EXPECT_THROW(client.request(CallMethod{shapes.id, table.self.id, i, arguments}), RequestError)
            << table.methods.at(i).name.toStdString();
    }
    client.send(requestFrame(0, Release{{{shapes.id, 1}, {777, 5}}}));
    EXPECT_THROW(target.get(shapes, q("number")), RequestError) << "released";
    EXPECT_EQ(target.get(target.byName(q("shapes")), q("number")).integer, 42);
}

TEST(AgentRobustness, destroyedObjectsAreToldAtOnce)
{
    Target target;
    const auto shapes = target.byName(q("shapes"));
    const auto item = target.get(shapes, q("item"));
    target.call(shapes, q("deleteItem"));
    ObjectsDestroyed gone;
    ASSERT_TRUE(target.client().waitForPush(&gone, 1000));
    EXPECT_EQ(gone.objects, QVector<qint64>{item.object.id});
    try {
        target.get(item.object, q("title"));
        FAIL();
    } catch (const RequestError& error) {
        EXPECT_EQ(error.kind, ErrorClass::Destroyed);
    }
    // A getter that destroys its own object answers all the same.
    EXPECT_EQ(target.get(shapes, q("deadly")).integer, 1);
    EXPECT_THROW(target.get(shapes, q("number")), RequestError);
    EXPECT_NO_THROW(target.byName(q("control")));
}

TEST(AgentRobustness, looksUpWhileObjectsComeAndGo)
{
    Target target;
    const auto control = target.byName(q("control"));
    target.call(control, q("churn"), {Value::ofInt(2000)});
    int found = 0;
    while (!target.get(control, q("log")).text.contains(q("churned"))) {
        for (const ObjectRef& object :
             target.client()
                 .request(FindAll{Target::name({q("type"), q("QLabel"), q("name"), q("churned")})})
                 .objects) {
            ++found;
            try {
                EXPECT_TRUE(target.get(object, q("text")).text.startsWith(q("churn ")));
            } catch (const RequestError& error) {
                EXPECT_EQ(error.kind, ErrorClass::Destroyed) << error.what();
            }
        }
    }
    RecordProperty("found", found);
    EXPECT_NO_THROW(target.client().request(Ping()));
}

TEST(AgentRobustness, aBlockedOrStoppedApplicationOnlyDelays)
{
    Target target;
    const auto control = target.byName(q("control"));
    QElapsedTimer timer;
    timer.start();
    target.call(control, q("blockLater"), {Value::ofInt(700)});
    EXPECT_EQ(target.get(control, q("clicks")).integer, 0);
    EXPECT_GE(timer.elapsed(), 500);
    ::kill(pid_t(target.process().processId()), SIGSTOP);
    const quint32 waiting = target.client().begin(Ping());
    EXPECT_THROW(target.client().end<Ping>(waiting, 200), std::runtime_error);
    ::kill(pid_t(target.process().processId()), SIGCONT);
    EXPECT_NO_THROW(target.client().end<Ping>(waiting, 5000));
}

TEST(AgentRobustness, theEndOfTheApplicationEndsTheConnection)
{
    const auto ends = [](const char* how, const QVector<Value>& arguments) {
        Target target;
        QElapsedTimer timer;
        timer.start();
        const auto control = target.byName(q("control"));
        EXPECT_THROW(
            {
                target.client().end<CallMethod>(target.beginCall(control, q(how), arguments));
                target.client().end<WaitFor>(
                    target.client().begin(WaitFor{Target::name({q("name"), q("nobody")}), WaitReady, 20000}));
            },
            std::runtime_error)
            << how;
        EXPECT_LT(timer.elapsed(), 5000) << how;
        GoingDown down;
        return target.client().waitForPush(&down, 100);
    };
    EXPECT_TRUE(ends("quitLater", {Value::ofInt(10)})) << "an orderly end is announced";
    EXPECT_FALSE(ends("exitNow", {Value::ofInt(3)}));
    EXPECT_FALSE(ends("crash", {}));
}

TEST(AgentRobustness, referencesToManyObjectsAreGivenBack)
{
    Target target;
    const auto control = target.byName(q("control"));
    target.call(control, q("makeTree"), {Value::ofInt(10000)});
    const auto leaves =
        target.client().request(FindAll{Target::name({q("type"), q("QTimer"), q("name?"), q("leaf*")})});
    EXPECT_EQ(leaves.objects.size(), 10000);
    const auto last =
        target.find({q("type"), q("QTimer"), q("name"), q("leaf9999"), q("interval"), q("9999")});
    EXPECT_EQ(last.id, leaves.objects.last().id);
    target.call(control, q("dropTree"));
    ObjectsDestroyed gone;
    int count = 0;
    while (count < 10000 && target.client().waitForPush(&gone, 2000))
        count += gone.objects.size();
    EXPECT_EQ(count, 10000);
    EXPECT_THROW(target.get(last, q("interval")), RequestError);
}
