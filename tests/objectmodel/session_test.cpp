#include "objectmodel/inspector.h"
#include "objectmodel/session.h"
#include "protocol/applicationmessages.h"
#include "protocol/greeting.h"
#include "protocol/lookupmessages.h"
#include "protocol/screenmessages.h"
#include "protocol/token.h"

#include <gtest/gtest.h>

#include <QElapsedTimer>

#include <sys/socket.h>
#include <unistd.h>

#include <functional>
#include <thread>

namespace {

using namespace Torvix;
using namespace Torvix::Protocol;

/** The far end of a socket, played by a thread: it reads frames and writes what the test wants. */
class FarEnd
{
public:
    using Play = std::function<void(FarEnd&)>;

    explicit FarEnd(Play play)
    {
        int ends[2] = {-1, -1};
        EXPECT_EQ(0, socketpair(AF_UNIX, SOCK_STREAM, 0, ends));
        near = socketChannel(ends[0]);
        m_far = socketChannel(ends[1]);
        m_reader.setLimit(maxFrameSize);
        m_thread = std::thread([this, play] {
            play(*this);
            m_far.reset();
        });
    }
    ~FarEnd() { m_thread.join(); }
    FarEnd(const FarEnd&) = delete;
    FarEnd& operator=(const FarEnd&) = delete;

    Frame read()
    {
        char buffer[4096];
        for (;;) {
            if (const std::optional<Frame> frame = m_reader.next())
                return *frame;
            const qint64 count =
                m_far->wait(Channel::Wait::Readable, 5000) ? m_far->read(buffer, sizeof buffer) : -1;
            if (count < 0)
                return Frame();
            m_reader.add(buffer, count);
        }
    }
    void write(const QByteArray& bytes) { m_far->writeAll(bytes, 5000); }
    void write(const Frame& frame) { write(toBytes(frame)); }
    void greet(const QByteArray& token = {}, int major = majorVersion)
    {
        Hello hello;
        hello.role = Role::Agent;
        hello.token = token;
        hello.major = major;
        write({FrameKind::Hello, 0, 0, encode(hello)});
    }

    std::unique_ptr<Channel> near;

private:
    std::unique_ptr<Channel> m_far;
    FrameReader m_reader;
    std::thread m_thread;
};

std::unique_ptr<Session> connectTo(FarEnd& far)
{
    QString error;
    auto session = Session::open(std::move(far.near), makeToken(), true, 5000, &error);
    EXPECT_TRUE(session) << qPrintable(error);
    return session;
}

LinkError ping(Session* session, int timeoutMs = 5000)
{
    return session->exchange(RequestNumber::Ping, encode(Ping()), timeoutMs).failure();
}

TEST(Session, LetsInOnlyAnAgentThatShowsTheToken)
{
    const QByteArray token = makeToken();
    const struct
    {
        const char* what;
        FarEnd::Play play;
        const char* error;
    } cases[] = {
        {"the right one",
         [&](FarEnd& far) {
             far.greet(token);
             far.read();
         },
         ""},
        {"no token",
         [](FarEnd& far) {
             far.greet();
             far.read();
         },
         "right token"},
        {"another token",
         [](FarEnd& far) {
             far.greet(makeToken());
             far.read();
         },
         "right token"},
        {"another version",
         [&](FarEnd& far) {
             far.greet(token, 9);
             EXPECT_EQ(FrameKind::Error, far.read().kind);
         },
         "version 9.0"},
        {"random bytes",
         [](FarEnd& far) {
             far.write(QByteArray("GET / HTTP/1.1\r\n\r\n"));
             far.read();
         },
         "out of bounds"},
        {"4 GiB",
         [](FarEnd& far) {
             far.write(QByteArray::fromHex("ffffffff01"));
             far.read();
         },
         "out of bounds"},
        {"half a frame", [](FarEnd& far) { far.write(QByteArray::fromHex("0000002001000000")); }, "closed"},
        {"a request",
         [](FarEnd& far) {
             far.write(requestFrame(1, Ping()));
             far.read();
         },
         "did not greet as it should"},
        {"nothing", [](FarEnd& far) { far.read(); }, "did not greet within"},
    };
    for (const auto& entry : cases) {
        FarEnd far(entry.play);
        QString error;
        const auto session = Session::open(std::move(far.near), token, false, 300, &error);
        EXPECT_EQ(entry.error[0] == '\0', session != nullptr) << entry.what << ": " << qPrintable(error);
        EXPECT_TRUE(error.contains(QString::fromLatin1(entry.error)))
            << entry.what << ": " << qPrintable(error);
    }
}

TEST(Session, RepliesFindTheirRequestsWhateverTheirOrder)
{
    FarEnd far([](FarEnd& agent) {
        agent.read();
        agent.greet();
        const Frame outer = agent.read();
        agent.write(pushFrame(GoingDown{QStringLiteral("one")}));
        const Frame inner = agent.read();
        agent.write({FrameKind::Reply, outer.id, outer.number, encode(TextReply{QStringLiteral("outer")})});
        agent.write({FrameKind::Reply, 999, outer.number, encode(Empty())});
        agent.write({FrameKind::Reply, inner.id, inner.number, encode(TextReply{QStringLiteral("inner")})});
    });
    const auto session = connectTo(far);
    QStringList order;
    const auto ask = [&](QByteArray* reply) {
        const auto answer = session->exchange(RequestNumber::ToText, encode(ToText()), 5000);
        *reply = answer.orNothing();
        return bool(answer);
    };
    session->setPushSink([&](const Frame& frame) {
        if (frame.kind == FrameKind::Reply) {
            EXPECT_EQ(999u, frame.id) << "one that nobody waits for";
            return;
        }
        EXPECT_EQ(quint16(PushNumber::GoingDown), frame.number);
        QByteArray reply;
        TextReply text;
        EXPECT_TRUE(ask(&reply) && decode(reply, &text));
        order.append(text.text);
    });
    QByteArray reply;
    TextReply text;
    EXPECT_TRUE(ask(&reply) && decode(reply, &text));
    order.append(text.text);
    EXPECT_EQ((QStringList{QStringLiteral("inner"), QStringLiteral("outer")}), order);
}

TEST(Session, TheEndOfTheOtherSideEndsACallAtOnce)
{
    const struct
    {
        const char* what;
        QByteArray lastBytes;
        const char* error;
    } cases[] = {
        {"closed", QByteArray(), "it went"},
        {"half a reply", toBytes(replyFrame<Ping>(1, Empty())).left(8), "it went"},
        {"random bytes", QByteArray(64, '\x7f'), "it went"},
        {"another request's reply", toBytes({FrameKind::Reply, 1, 20, encode(Empty())}), "it went"},
    };
    for (const auto& entry : cases) {
        FarEnd far([&](FarEnd& agent) {
            agent.read();
            agent.greet();
            agent.read();
            agent.write(entry.lastBytes);
            if (entry.lastBytes.size() > 10)
                agent.read();
        });
        const auto session = connectTo(far);
        session->setEndExplainer([] { return QStringLiteral("it went"); });
        QElapsedTimer timer;
        timer.start();
        const LinkError error = ping(session.get());
        EXPECT_LT(timer.elapsed(), 1000) << entry.what;
        EXPECT_EQ(LinkError::Closed, error.kind) << entry.what;
        EXPECT_TRUE(error.text.contains(QString::fromLatin1(entry.error))) << qPrintable(error.text);
        EXPECT_FALSE(session->isOpen());
        EXPECT_EQ(LinkError::Closed, ping(session.get()).kind) << "and every later call";
    }
}

TEST(Session, ALateReplyIsDroppedAndTheNextCallIsRight)
{
    FarEnd far([](FarEnd& agent) {
        agent.read();
        agent.greet();
        const Frame first = agent.read();
        const Frame second = agent.read();
        agent.write({FrameKind::Reply, first.id, first.number, encode(Empty())});
        agent.write(errorFrame(second.id, ErrorClass::NotFound, QStringLiteral("second")));
        agent.read();
    });
    const auto session = connectTo(far);
    LinkError error = ping(session.get(), 50);
    EXPECT_EQ(LinkError::TimedOut, error.kind);
    EXPECT_TRUE(error.text.contains(QStringLiteral("50 ms")));
    error = ping(session.get());
    EXPECT_EQ(LinkError::Answered, error.kind);
    EXPECT_EQ(ErrorClass::NotFound, error.errorClass);
    EXPECT_EQ(QStringLiteral("second"), error.text);
    session->close(QString());
}

TEST(Session, ReferencesInALateReplyAreGivenBack)
{
    Release release;
    {
        FarEnd far([&](FarEnd& agent) {
            agent.read();
            agent.greet();
            const Frame first = agent.read();
            const Frame second = agent.read();
            ObjectRef ref;
            ref.id = 5;
            ref.classId = FirstAgentClass;
            agent.write({FrameKind::Reply, first.id, first.number, encode(ObjectReply{ref})});
            agent.write({FrameKind::Reply, second.id, second.number, encode(Empty())});
            EXPECT_TRUE(decode(agent.read().body, &release));
        });
        ApplicationModel model(1, connectTo(far));
        model.setCallTimeout(50);
        EXPECT_EQ("The application did not answer within 50 ms", model.call(Find()).error());
        model.setCallTimeout(5000);
        EXPECT_TRUE(model.call(Ping()));
        model.processEvents(0);
    }
    ASSERT_EQ(1, release.objects.size());
    EXPECT_EQ(5, release.objects[0].object);
    EXPECT_EQ(1, release.objects[0].count);
}

TEST(Session, ALargeRequestAndALargeReplyCrossWithoutWaitingForEachOther)
{
    const QByteArray big(8 << 20, 'x');
    FarEnd far([&](FarEnd& agent) {
        agent.read();
        agent.greet();
        // Writes before it reads, so that both sides have full buffers.
        agent.write({FrameKind::Push, 0, quint16(PushNumber::Picked), encode(ImageReply{big})});
        const Frame request = agent.read();
        agent.write({FrameKind::Reply, request.id, request.number, request.body});
    });
    const auto session = connectTo(far);
    int pushed = 0;
    session->setPushSink([&](const Frame& frame) { pushed += frame.body.size(); });
    const auto reply = session->exchange(RequestNumber::Screenshot, encode(ImageReply{big}), 20000);
    ASSERT_TRUE(reply);
    EXPECT_EQ(encode(ImageReply{big}), *reply);
    EXPECT_GT(pushed, big.size());
}

} // namespace
