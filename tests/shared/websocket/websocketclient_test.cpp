#include "shared/websocket/loginterface.h"
#include "shared/websocket/rawwebsocket.h"
#include "shared/websocket/websocketclient.h"
#include "support/network/childserver.h"
#include "support/network/descriptors.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <fcntl.h>
#include <sys/resource.h>
#include <unistd.h>

#include <atomic>
#include <csignal>
#include <cstdio>
#include <stdexcept>
#include <vector>

using namespace Torvix;
using namespace TorvixTest;

namespace {

NullLog silentLog;

std::unique_ptr<WebSocketClient> connectTo(unsigned short port, LogInterface* log = &silentLog)
{
    return createWebSocketClient(log, "127.0.0.1", port);
}

/** The text of what the call throws, or "nothing". */
template <class Call>
std::string thrownBy(Call&& call)
{
    try {
        call();
    } catch (const std::runtime_error& error) {
        return error.what();
    }
    return "nothing";
}

std::string received(WebSocketClient& client)
{
    std::string text = "untouched";
    return client.receiveTextMessage(&text) ? text : "nothing within the timeout";
}

template <class Call>
long millisecondsOf(Call&& call)
{
    const auto start = std::chrono::steady_clock::now();
    call();
    return std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now() - start)
        .count();
}

class RecordingLog : public LogInterface
{
public:
    void log(int level, const char* format, ...) override
    {
        va_list arguments;
        va_start(arguments, format);
        vlog(level, format, arguments);
        va_end(arguments);
    }
    void vlog(int level, const char* format, va_list arguments) override
    {
        char line[300];
        std::vsnprintf(line, sizeof line, format, arguments);
        lines.push_back(std::to_string(level) + " " + line);
    }
    std::vector<std::string> lines;
};

} // namespace

TEST(WebSocketAgainstPython, carriesMessagesOfEverySizeBothWays)
{
    ChildServer server;
    server.startPython("websocket_server.py");
    const auto client = connectTo(server.port());
    EXPECT_FALSE(client->m_closed);
    EXPECT_EQ(client->m_host, "127.0.0.1");
    EXPECT_EQ(client->m_port, server.port());
    for (const std::size_t size : {0, 1, 125, 126, 32767, 32768, 32769, 65535, 65536, 65537, 1000000}) {
        std::string message(size, 'x');
        for (std::size_t i = 0; i < size; ++i)
            message[i] = static_cast<char>('a' + i * i % 23);
        EXPECT_TRUE(client->queueTextMessage(message));
        EXPECT_TRUE(received(*client) == message) << size;
    }
    const std::string text = "gr\xc3\xbc\xc3\x9f dich \xf0\x9f\x99\x82";
    client->queueTextMessage(text);
    EXPECT_EQ(received(*client), text);
}

TEST(WebSocketAgainstPython, deliversWholeMessagesOneByOne)
{
    ChildServer server;
    server.startPython("websocket_server.py");
    const auto client = connectTo(server.port());
    client->queueTextMessage("fragments");
    EXPECT_EQ(received(*client), "one two three");
    client->queueTextMessage("ping");
    EXPECT_EQ(received(*client), "ponged");
    client->m_timeout = 400; // less than the whole message takes, more than one of its pauses
    client->queueTextMessage("slow fragments");
    EXPECT_EQ(received(*client), "one two three");
    client->queueTextMessage("two");
    EXPECT_EQ(received(*client), "first");
    EXPECT_EQ(received(*client), "second");
    client->m_timeout = 150;
    client->queueTextMessage("silence");
    const long waited = millisecondsOf([&] { EXPECT_EQ(received(*client), "nothing within the timeout"); });
    EXPECT_GE(waited, 150);
    client->m_timeout = 3000;
    client->queueTextMessage("still there");
    EXPECT_EQ(received(*client), "still there");
}

TEST(WebSocketAgainstPython, meetsThePeersClose)
{
    ChildServer server;
    server.startPython("websocket_server.py");
    const auto client = connectTo(server.port());
    client->queueTextMessage("close");
    EXPECT_FALSE(client->m_closed); // nobody has looked yet
    EXPECT_EQ(thrownBy([&] { received(*client); }), "socket is closed");
    EXPECT_TRUE(client->m_closed);
    EXPECT_EQ(thrownBy([&] { received(*client); }), "socket is closed");
    EXPECT_EQ(thrownBy([&] { client->queueTextMessage("x"); }), "socket is closed");
    // The library has freed the connection, so there is no close to wait for.
    EXPECT_LT(millisecondsOf([&] { client->close(); }), 1000);

    const auto second = connectTo(server.port());
    second->queueTextMessage("two and close");
    EXPECT_EQ(received(*second), "first");
    EXPECT_EQ(received(*second), "second");
    EXPECT_EQ(thrownBy([&] { second->queueTextMessage("x"); }), "socket is closed");

    const auto third = connectTo(server.port());
    third->queueTextMessage("who left");
    EXPECT_EQ(received(*third), "1001 1000");
}

TEST(WebSocketAgainstPython, closesWithAHandshakeAndOnlyOnce)
{
    ChildServer server;
    server.startPython("websocket_server.py");
    auto client = connectTo(server.port());
    EXPECT_LT(millisecondsOf([&] { client->close(); }), 1500);
    EXPECT_TRUE(client->m_closed);
    EXPECT_EQ(millisecondsOf([&] { client->close(); }) / 10, 0);
    EXPECT_EQ(thrownBy([&] { client->queueTextMessage("x"); }), "socket is closed");
    EXPECT_EQ(client->m_port, server.port());

    client = connectTo(server.port());
    client.reset(); // without a close of its own
    client = connectTo(server.port());
    client->queueTextMessage("who left");
    EXPECT_EQ(received(*client), "1000 1000");
}

TEST(WebSocketAgainstPython, keepsClientsApartAndLeavesNoDescriptor)
{
    ChildServer server;
    server.startPython("websocket_server.py");
    const int before = openDescriptors();
    {
        const auto first = connectTo(server.port());
        auto second = createWebSocketClient(&silentLog, "localhost", server.port());
        const auto third = connectTo(server.port());
        first->queueTextMessage("from the first");
        second->queueTextMessage("from the second");
        third->queueTextMessage("close");
        EXPECT_EQ(received(*second), "from the second");
        second->close();
        second.reset();
        EXPECT_EQ(received(*first), "from the first");
        EXPECT_EQ(thrownBy([&] { received(*third); }), "socket is closed");
        first->queueTextMessage("again");
        EXPECT_EQ(received(*first), "again");
    }
    EXPECT_EQ(openDescriptors(), before);

    const Listener refusing(Listener::State::BoundOnly);
    for (int i = 0; i < 20; ++i)
        EXPECT_NE(thrownBy([&] { connectTo(refusing.port()); }), "nothing");
    EXPECT_EQ(openDescriptors(), before + 1);
}

TEST(WebSocketConnecting, tellsEachFailure)
{
    const Listener refusing(Listener::State::BoundOnly);
    const std::string refused = "connection to 127.0.0.1:" + std::to_string(refusing.port()) + " failed";
    EXPECT_EQ(thrownBy([&] { connectTo(refusing.port()); }), refused);

    for (const char* unreachable : {"no-such-host.invalid", "255.255.255.255"})
        EXPECT_EQ(thrownBy([&] { createWebSocketClient(&silentLog, unreachable, 80); }),
                  "libwebsocket_client_connect failed");

    const Listener silent; // the kernel accepts, nobody answers
    const long waited = millisecondsOf([&] {
        EXPECT_EQ(thrownBy([&] { connectTo(silent.port()); }),
                  "establishing a WebSocket connection timed out");
    });
    EXPECT_GE(waited, 3000);
    EXPECT_LT(waited, 6000);

    for (const char* answer :
         {"HTTP/1.1 404 Not Found\r\nContent-Length: 0\r\n\r\n", "HTTP/1.1 101 Switching Protocols\r\n\r\n",
          "nonsense\r\n\r\n",
          "HTTP/1.1 101 Switching Protocols\r\nUpgrade: websocket\r\nConnection: Upgrade\r\n"
          "Sec-WebSocket-Accept: AAAAAAAAAAAAAAAAAAAAAAAAAAA=\r\n\r\n",
          ""}) {
        RawServer server([answer](RawConnection& connection) {
            connection.readUntil("\r\n\r\n");
            connection.write(answer);
        });
        EXPECT_EQ(thrownBy([&] { connectTo(server.port()); }),
                  "connection to 127.0.0.1:" + std::to_string(server.port()) + " failed")
            << answer;
    }
}

TEST(WebSocketConnecting, doesNotMindHowManyDescriptorsAreOpen)
{
    ChildServer server;
    server.startPython("websocket_server.py");
    std::vector<int> held;
    for (int i = 0; i < 300; ++i)
        held.push_back(::fcntl(0, F_DUPFD_CLOEXEC, 0));
    const auto client = connectTo(server.port());
    client->queueTextMessage("high up");
    EXPECT_EQ(received(*client), "high up");

    // A failure ahead: the sanitizer needs a descriptor to check a class for the first time.
    const Listener refusing(Listener::State::BoundOnly);
    EXPECT_NE(thrownBy([&] { connectTo(refusing.port(), nullptr); }), "nothing");
    rlimit old = {};
    ::getrlimit(RLIMIT_NOFILE, &old);
    const rlimit exhausted = {static_cast<rlim_t>(openDescriptors()), old.rlim_max};
    ::setrlimit(RLIMIT_NOFILE, &exhausted);
    const std::string text = thrownBy([&] { connectTo(server.port(), nullptr); });
    ::setrlimit(RLIMIT_NOFILE, &old);
    EXPECT_EQ(text, "cannot create libwebsockets context");
    client->queueTextMessage("unharmed");
    EXPECT_EQ(received(*client), "unharmed");
    for (const int descriptor : held)
        ::close(descriptor);
}

TEST(WebSocketConnecting, asksForTheRootOfTheGivenHost)
{
    std::string request;
    RawServer server(
        [&request](RawConnection& connection) {
            request = acceptHandshake(connection);
            connection.waitForEnd();
        },
        Listener::Family::V6);
    setenv("http_proxy", "http://127.0.0.1:1", 1); // must not matter
    createWebSocketClient(&silentLog, "::1", server.port()).reset();
    unsetenv("http_proxy");
    ASSERT_TRUE(server.waitForConnections(1));
    EXPECT_EQ(request.substr(0, request.find("\r\n")), "GET / HTTP/1.1");
    EXPECT_THAT(request, testing::HasSubstr("\r\nHost: [::1]:" + std::to_string(server.port()) + "\r\n"));
    EXPECT_THAT(request, testing::HasSubstr("\r\nSec-WebSocket-Version: 13\r\n"));
    EXPECT_THAT(request, testing::Not(testing::HasSubstr("Origin:")));
    EXPECT_THAT(request, testing::Not(testing::HasSubstr("Sec-WebSocket-Protocol:")));
}

TEST(WebSocketConnecting, leavesTheSignalsOfTheProcessAlone)
{
    ChildServer server;
    server.startPython("websocket_server.py");
    const auto client = connectTo(server.port());
    struct sigaction action = {};
    sigaction(SIGPIPE, nullptr, &action);
    EXPECT_EQ(action.sa_handler, SIG_DFL);
}

TEST(WebSocketFrames, sendsMaskedFragmentsOfTheMaximalSize)
{
    struct Expected
    {
        std::size_t size;
        std::vector<std::size_t> frames;
    };
    for (const Expected& expected :
         {Expected{5, {5}}, {32768, {32768}}, {32769, {32768, 1}}, {65537, {32768, 32768, 1}}}) {
        std::vector<Frame> frames;
        RawServer server([&](RawConnection& connection) {
            acceptHandshake(connection);
            do
                frames.push_back(readFrame(connection));
            while (!frames.back().final && frames.back().opcode >= 0);
            connection.waitForEnd();
        });
        connectTo(server.port())->queueTextMessage(std::string(expected.size, 'm'));
        ASSERT_TRUE(server.waitForConnections(1));
        ASSERT_EQ(frames.size(), expected.frames.size());
        for (std::size_t i = 0; i < frames.size(); ++i) {
            EXPECT_EQ(frames[i].opcode, i == 0 ? Text : Continuation);
            EXPECT_EQ(frames[i].final, i + 1 == frames.size());
            EXPECT_TRUE(frames[i].masked);
            EXPECT_TRUE(frames[i].payload == std::string(expected.frames[i], 'm'));
        }
    }
}

TEST(WebSocketFrames, assemblesWhatArrivesInPieces)
{
    RawServer server([](RawConnection& connection) {
        acceptHandshake(connection);
        connection.writeBytewise(frame(Text, true, "byte by byte"));
        connection.write(frame(Text, false, "before the ping, ") + frame(Ping, true, "p"));
        const Frame pong = readFrame(connection);
        connection.write(
            frame(Continuation, true, "after the pong " + std::to_string(pong.opcode) + pong.payload));
        connection.write(frame(Text, false, "") + frame(Continuation, false, "") +
                         frame(Continuation, true, "late start"));
        connection.write(frame(Text, false, "early end") + frame(Continuation, true, ""));
        connection.write(frame(Text, true, "") + frame(Text, true, std::string(200000, 'l')));
        connection.waitForEnd();
    });
    const auto client = connectTo(server.port());
    EXPECT_EQ(received(*client), "byte by byte");
    EXPECT_EQ(received(*client), "before the ping, after the pong 10p");
    EXPECT_EQ(received(*client), "late start");
    EXPECT_EQ(received(*client), "early end");
    EXPECT_EQ(received(*client), "");
    EXPECT_TRUE(received(*client) == std::string(200000, 'l'));
}

TEST(WebSocketFrames, neverDeliversABrokenMessage)
{
    const std::vector<std::string> endings = {
        frameHeader(Text, true, 100) + "only a part", // the connection ends in the middle of a frame
        frame(Text, false, "a fragment"),             // ... of a message
        frame(Close, true, "\x03\xe8"),
        frame(3, true, "reserved opcode"),
        frame(Text, true, "x").replace(0, 1, "\xc1"), // reserved bit
    };
    const int before = openDescriptors();
    for (const std::string& ending : endings) {
        RawServer server([&ending](RawConnection& connection) {
            acceptHandshake(connection);
            connection.write(ending);
        });
        const auto client = connectTo(server.port());
        EXPECT_EQ(thrownBy([&] { received(*client); }), "socket is closed") << ending;
    }
    RawServer resetting([](RawConnection& connection) {
        acceptHandshake(connection);
        readFrame(connection);
        connection.reset();
    });
    const auto client = connectTo(resetting.port());
    EXPECT_EQ(thrownBy([&] {
                  for (;;)
                      client->queueTextMessage("into the void");
              }),
              "socket is closed");
    EXPECT_GT(openDescriptors(), before);
}

TEST(WebSocketFrames, bothKindsOfMaskingOfTheServerArrive)
{
    RawServer server([](RawConnection& connection) {
        acceptHandshake(connection);
        connection.write(maskedFrame(Text, true, "masked") + frame(Text, true, "plain"));
        connection.waitForEnd();
    });
    const auto client = connectTo(server.port());
    EXPECT_EQ(received(*client), "masked");
    EXPECT_EQ(received(*client), "plain");
}

TEST(WebSocketSending, deliversEverythingToASlowReader)
{
    const std::string message(3 * 1024 * 1024, 's');
    std::string arrived;
    RawServer server([&](RawConnection& connection) {
        acceptHandshake(connection);
        std::this_thread::sleep_for(std::chrono::milliseconds(300));
        for (Frame part; !part.final;) {
            part = readFrame(connection);
            if (part.opcode < 0)
                return;
            arrived += part.payload;
        }
    });
    const auto client = connectTo(server.port());
    EXPECT_TRUE(client->queueTextMessage(message));
    EXPECT_TRUE(server.waitForConnections(1)); // although nobody services the client any more
    EXPECT_TRUE(arrived == message);
}

TEST(WebSocketClosing, doesNotDependOnThePeersAnswer)
{
    RawServer server([](RawConnection& connection) {
        acceptHandshake(connection);
        const Frame close = readFrame(connection);
        EXPECT_EQ(close.opcode, Close);
        EXPECT_EQ(close.payload, "\x03\xe8"); // 1000
        connection.waitForEnd();
    });
    const int before = openDescriptors();
    auto client = connectTo(server.port());
    EXPECT_LT(millisecondsOf([&] { client->close(); }), 2000);
    EXPECT_TRUE(client->m_closed);
    client.reset();
    ASSERT_TRUE(server.waitForConnections(1));
    EXPECT_EQ(openDescriptors(), before);
}

TEST(WebSocketSending, givesUpOnAReaderThatStopped)
{
    std::atomic<bool> givenUp{false};
    RawServer server([&givenUp](RawConnection& connection) {
        acceptHandshake(connection);
        while (!givenUp)
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
    });
    auto client = connectTo(server.port());
    client->m_timeout = 200;
    const std::string message(64 * 1024 * 1024, 's');
    EXPECT_EQ(thrownBy([&] { client->queueTextMessage(message); }),
              "socket didn't become writable within timeout");
    EXPECT_FALSE(client->m_closed);
    const int open = openDescriptors();
    client.reset(); // the close frame cannot get through either
    EXPECT_LT(openDescriptors(), open);
    givenUp = true;
}

TEST(WebSocketLog, tellsWhatHappens)
{
    ChildServer server;
    server.startPython("websocket_server.py");
    RecordingLog log;
    {
        const auto client = connectTo(server.port(), &log);
        client->queueTextMessage("hello");
        received(*client);
        client->close();
    }
    using testing::Contains;
    const std::string address = "127.0.0.1:" + std::to_string(server.port());
    for (const std::string line :
         {"0 callback: no socket found\n", "0 callback: connection established\n",
          "0 callback: client receive, buffering data\n", "0 callback: writable, sendDataChunk = 1\n",
          "0 callback: closed\n", "0 blockUntil: items in queue: 1\n",
          "0 blockUntil: found expected: 3, left in queue: 0\n",
          "0 blockUntil: found expected: 4, left in queue: 0\n", "0 queueTextMessage: written\n",
          "0 WebSocketClient::close: connection closed\n", "0 WebSocketClient: destroying m_context\n"})
        EXPECT_THAT(log.lines, Contains(line));
    EXPECT_THAT(log.lines,
                Contains("0 WebSocketClientImpl(): CLIENT_ESTABLISHED to host/port: " + address + "\n"));

    const Listener refusing(Listener::State::BoundOnly);
    EXPECT_THROW(connectTo(refusing.port(), &log), std::runtime_error);
    EXPECT_THAT(log.lines, Contains("1 WebSocketClientImpl(): connection to 127.0.0.1:" +
                                    std::to_string(refusing.port()) + " failed\n"));
}
