#include "kit/fhostaddress.h"
#include "kit/fsocket.h"
#include "support/network/childserver.h"
#include "support/network/descriptors.h"
#include "support/network/rawserver.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QElapsedTimer>

#include <fcntl.h>
#include <netdb.h>

#include <cerrno>
#include <chrono>
#include <memory>
#include <thread>
#include <vector>

using namespace TorvixTest;
using testing::HasSubstr;
using testing::StartsWith;

namespace {

const QString loopback = QStringLiteral("127.0.0.1");

/** All that can be read before the stream ends. */
std::string readAll(FSocket& socket)
{
    std::string result;
    for (;;) {
        const int count = socket.waitForMore(-1, nullptr);
        if (count <= 0)
            return result + (count < 0 ? "<failed>" : "");
        std::vector<char> bytes(static_cast<std::size_t>(count));
        const int got = socket.readBlock(bytes.data(), count);
        result.append(bytes.data(), static_cast<std::size_t>(std::max(0, got)));
    }
}

} // namespace

TEST(FSocketConnecting, reachesBothFamiliesByNameAndByAddress)
{
    RawServer ipv4([](RawConnection& connection) { connection.waitForEnd(); });
    RawServer ipv6([](RawConnection& connection) { connection.waitForEnd(); }, Listener::Family::V6);
    struct Case
    {
        const char* host;
        const RawServer& server;
        const char* address;
    };
    for (const Case& one : {Case{"127.0.0.1", ipv4, "127.0.0.1"},
                            {"localhost", ipv4, "127.0.0.1"},
                            {"::1", ipv6, "::1"},
                            {"[::1]", ipv6, "::1"}}) {
        FSocket socket;
        EXPECT_FALSE(socket.isOpen());
        ASSERT_TRUE(socket.connectToHost(QString::fromLatin1(one.host), one.server.port())) << one.host;
        EXPECT_TRUE(socket.isOpen() && socket.isValid());
        EXPECT_EQ(socket.error(), 0);
        EXPECT_EQ(socket.errorString(), nullptr);
        EXPECT_EQ(socket.peerAddress().toString(), QLatin1String(one.address));
        EXPECT_EQ(socket.localAddress().toString(), QLatin1String(one.address));
        EXPECT_EQ(socket.peerPort(), one.server.port());
        EXPECT_GT(socket.localPort(), 0);
        const unsigned short local = socket.localPort();
        socket.close();
        EXPECT_FALSE(socket.isOpen() || socket.isValid());
        EXPECT_EQ(socket.localPort(), local);
        EXPECT_EQ(socket.peerAddress().toString(), QLatin1String(one.address));
        char byte = 0;
        EXPECT_EQ(socket.readBlock(&byte, 1), -1);
        EXPECT_EQ(socket.writeBlock(&byte, 1), -1);
        EXPECT_EQ(socket.waitForMore(0, nullptr), -1);
        EXPECT_EQ(socket.error(), ENOTCONN);
    }
}

TEST(FSocketConnecting, tellsWhyItFailed)
{
    const Listener refusing(Listener::State::BoundOnly);
    const std::string port = std::to_string(refusing.port());
    struct Case
    {
        QString host;
        unsigned short port;
        int error;
        std::string text;
    };
    const std::vector<Case> cases = {
        {loopback, refusing.port(), ECONNREFUSED,
         "cannot connect to 127.0.0.1 port " + port + ": Connection refused"},
        {QStringLiteral("no-such-host.invalid"), 80, 0, "cannot resolve host \"no-such-host.invalid\": "},
        {QStringLiteral("a b"), 80, 0, "cannot resolve host \"a b\": "},
        {QString::fromUtf8("gr\xc3\xbc\xc3\x9f.invalid"), 80, 0,
         "cannot resolve host \"gr\xc3\xbc\xc3\x9f.invalid\": "},
        {QString(), 80, EAI_NONAME, "cannot resolve host \"\": Name or service not known"},
        {QString::fromLatin1("localhost\0x", 11), 80, EAI_NONAME, "cannot resolve host \"localhost"}};
    const int before = openDescriptors();
    FSocket socket;
    for (const Case& one : cases) {
        EXPECT_FALSE(socket.connectToHost(one.host, one.port));
        EXPECT_FALSE(socket.isOpen() || socket.isValid());
        EXPECT_THAT(socket.errorString(), StartsWith(one.text));
        if (one.error != 0) {
            EXPECT_EQ(socket.error(), one.error) << one.text;
        } else {
            EXPECT_LT(socket.error(), 0) << one.text; // which one depends on the resolver's reach
        }
        EXPECT_TRUE(socket.peerAddress().isNull());
    }
    EXPECT_EQ(openDescriptors(), before);

    RawServer server([](RawConnection& connection) { connection.waitForEnd(); });
    EXPECT_TRUE(socket.connectToHost(loopback, server.port()));
    EXPECT_EQ(socket.error(), 0);
    EXPECT_EQ(socket.errorString(), nullptr);
}

TEST(FSocketConnecting, givesUpOnASilentHost)
{
    const Listener full(Listener::State::Listening, Listener::Family::V4, 0);
    std::vector<std::unique_ptr<FSocket>> queued;
    bool connected = true;
    QElapsedTimer timer;
    while (connected && queued.size() < 10) { // until the queue is full and the kernel stops answering
        queued.push_back(std::make_unique<FSocket>());
        queued.back()->setConnectTimeout(150);
        timer.start();
        connected = queued.back()->connectToHost(loopback, full.port());
    }
    ASSERT_FALSE(connected);
    EXPECT_GE(timer.elapsed(), 150);
    EXPECT_LT(timer.elapsed(), 5000);
    EXPECT_EQ(queued.back()->error(), ETIMEDOUT);
    EXPECT_THAT(queued.back()->errorString(), HasSubstr("Connection timed out"));
}

TEST(FSocketReading, talksToARealServer)
{
    NginxServer server("location / { }", {{"page.txt", "from the page\n"}});
    FSocket socket;
    ASSERT_TRUE(socket.connectToHost(loopback, server.port()));
    socket.setBlocking(false);
    const QByteArray request = "GET /page.txt HTTP/1.0\r\n\r\n";
    EXPECT_EQ(socket.writeBlock(request.constData(), request.size()), request.size());
    const std::string answer = readAll(socket);
    EXPECT_THAT(answer, StartsWith("HTTP/1.1 200 OK\r\n"));
    EXPECT_THAT(answer, testing::EndsWith("\r\n\r\nfrom the page\n"));
    EXPECT_TRUE(socket.isValid()); // the end of the stream is no failure
}

TEST(FSocketReading, waitsNoLongerThanAsked)
{
    RawServer server([](RawConnection& connection) {
        std::this_thread::sleep_for(std::chrono::milliseconds(300));
        connection.writeBytewise("abc");
        connection.readUntil("more");
        connection.write(std::string(1000, 'd'));
    });
    FSocket socket;
    ASSERT_TRUE(socket.connectToHost(loopback, server.port()));
    socket.setBlocking(false);
    QElapsedTimer timer;
    timer.start();
    bool timedOut = false;
    EXPECT_EQ(socket.waitForMore(50, &timedOut), 0);
    EXPECT_TRUE(timedOut);
    EXPECT_GE(timer.elapsed(), 50);
    char bytes[10] = "";
    EXPECT_EQ(socket.readBlock(bytes, sizeof bytes), 0); // nothing there is no failure
    EXPECT_EQ(socket.error(), 0);
    EXPECT_GT(socket.waitForMore(-1, nullptr), 0);
    EXPECT_GT(timer.elapsed(), 200);
    std::string got;
    while (got.size() < 3 && socket.waitForMore(2000, nullptr) > 0) {
        ASSERT_EQ(socket.readBlock(bytes, 1), 1);
        got += bytes[0];
    }
    EXPECT_EQ(got, "abc");
    EXPECT_EQ(socket.writeBlock("more", 4), 4);
    EXPECT_EQ(readAll(socket), std::string(1000, 'd'));
    // At the end a slice still takes its time, so that a polling reader does not spin.
    timer.start();
    EXPECT_EQ(socket.waitForMore(50, &timedOut), 0);
    EXPECT_FALSE(timedOut);
    EXPECT_GE(timer.elapsed(), 50);
    EXPECT_EQ(socket.waitForMore(-1, &timedOut), 0);
}

TEST(FSocketReading, keepsWhatCameBeforeAReset)
{
    RawServer server([](RawConnection& connection) {
        connection.write("last words");
        connection.readUntil("go");
        connection.reset();
    });
    FSocket socket;
    ASSERT_TRUE(socket.connectToHost(loopback, server.port()));
    socket.setBlocking(false);
    socket.writeBlock("go", 2);
    ASSERT_TRUE(server.waitForConnections(1));
    EXPECT_EQ(readAll(socket), "last words<failed>");
    EXPECT_EQ(socket.error(), ECONNRESET);
    EXPECT_STREQ(socket.errorString(), "Connection reset by peer");
    EXPECT_TRUE(socket.isOpen());
    EXPECT_FALSE(socket.isValid());
    EXPECT_EQ(socket.waitForMore(0, nullptr), -1); // and stays failed
    EXPECT_EQ(socket.error(), ECONNRESET);
}

TEST(FSocketWriting, acceptsNothingWhileThePeerDoesNotRead)
{
    std::atomic<bool> full{false};
    RawServer server([&full](RawConnection& connection) {
        while (!full)
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        connection.readUntil("the end");
        connection.write("got it");
    });
    FSocket socket;
    ASSERT_TRUE(socket.connectToHost(loopback, server.port()));
    socket.setBlocking(false);
    EXPECT_EQ(socket.writeBlock("", 0), 0);
    const std::string chunk(100000, 'w');
    int accepted = 1;
    while (accepted > 0)
        accepted = socket.writeBlock(chunk.data(), static_cast<int>(chunk.size()));
    EXPECT_EQ(accepted, 0);
    EXPECT_TRUE(socket.isValid());
    EXPECT_EQ(socket.error(), 0);
    full = true;
    socket.setBlocking(true);
    EXPECT_EQ(socket.writeBlock("the end", 7), 7);
    EXPECT_EQ(readAll(socket), "got it");
}

TEST(FSocketWriting, failsAfterThePeerHasGone)
{
    RawServer server([](RawConnection&) {});
    FSocket socket;
    ASSERT_TRUE(socket.connectToHost(loopback, server.port()));
    socket.setBlocking(false);
    ASSERT_TRUE(server.waitForConnections(1));
    int accepted = 0;
    for (int i = 0; i < 100 && accepted >= 0; ++i) { // the first write provokes the reset
        accepted = socket.writeBlock("x", 1);
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    EXPECT_EQ(accepted, -1);
    EXPECT_THAT(socket.error(), testing::AnyOf(EPIPE, ECONNRESET));
    EXPECT_FALSE(socket.isValid());
}

TEST(FSocketResources, leavesNoDescriptorAndInheritsNone)
{
    RawServer server([](RawConnection& connection) { connection.waitForEnd(); });
    const int before = openDescriptors();
    {
        FSocket socket;
        for (int i = 0; i < 3; ++i) // connecting again ends the earlier connection
            ASSERT_TRUE(socket.connectToHost(loopback, server.port()));
        ASSERT_TRUE(server.waitForConnections(2));
        for (int descriptor = 3; descriptor < 64; ++descriptor) {
            const int flags = ::fcntl(descriptor, F_GETFD);
            sockaddr_storage peer;
            socklen_t size = sizeof peer;
            if (flags >= 0 && ::getpeername(descriptor, reinterpret_cast<sockaddr*>(&peer), &size) == 0) {
                EXPECT_TRUE(flags & FD_CLOEXEC);
            }
        }
    }
    ASSERT_TRUE(server.waitForConnections(3));
    EXPECT_EQ(openDescriptors(), before);
}

TEST(FHostAddress, isWrittenAsText)
{
    EXPECT_EQ(FHostAddress().toString(), QString());
    addrinfo hints = {};
    hints.ai_flags = AI_NUMERICHOST;
    for (const char* text : {"192.0.2.7", "0.0.0.0", "2001:db8::ff00:42:8329", "::", "::ffff:192.0.2.7"}) {
        addrinfo* list = nullptr;
        ASSERT_EQ(::getaddrinfo(text, nullptr, &hints, &list), 0);
        EXPECT_EQ(FHostAddress(list->ai_addr).toString(), QLatin1String(text));
        ::freeaddrinfo(list);
    }
}
