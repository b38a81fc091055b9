#include "protocol/channel.h"

#include <gtest/gtest.h>

#include <array>
#include <chrono>
#include <csignal>
#include <thread>

#include <pthread.h>
#include <sys/socket.h>

namespace {

using namespace Torvix::Protocol;

using Channels = std::array<std::unique_ptr<Channel>, 2>;

Channels connectedSockets()
{
    int ends[2] = {-1, -1};
    EXPECT_EQ(0, socketpair(AF_UNIX, SOCK_STREAM, 0, ends));
    return {socketChannel(ends[0]), socketChannel(ends[1])};
}

TEST(MemoryChannel, CarriesBytesBothWaysAndTellsTheEnd)
{
    auto [here, there] = memoryChannels();
    char buffer[8];
    EXPECT_EQ(0, there->read(buffer, sizeof buffer));
    EXPECT_FALSE(there->wait(Channel::Wait::Readable, 1000));
    EXPECT_TRUE(here->writeAll(QByteArray("0123456789")));
    EXPECT_EQ(8, there->read(buffer, sizeof buffer));
    EXPECT_TRUE(there->writeAll(QByteArray("x")));
    here.reset();
    EXPECT_EQ(2, there->read(buffer, sizeof buffer)) << "what was sent before the end still arrives";
    EXPECT_EQ(-1, there->read(buffer, sizeof buffer));
    EXPECT_FALSE(there->writeAll(QByteArray("x")));
}

TEST(Channel, TellsPathsFromHostAndPort)
{
    QString host;
    quint16 port = 0;
    EXPECT_TRUE(isTcpAddress(QStringLiteral("127.0.0.1:4711"), &host, &port));
    EXPECT_EQ(QStringLiteral("127.0.0.1"), host);
    EXPECT_EQ(4711, port);
    for (const char* path : {"/tmp/a:1", "name", "host:", ":1", "host:70000", "./x:1"})
        EXPECT_FALSE(isTcpAddress(QString::fromLatin1(path))) << path;
    QString error;
    EXPECT_FALSE(connectTo(QStringLiteral("/no/such/socket"), &error));
    EXPECT_TRUE(error.contains(QStringLiteral("/no/such/socket"))) << qPrintable(error);
}

TEST(SocketChannel, WritesMoreThanFitsOnceTheOtherSideReads)
{
    const Channels ends = connectedSockets();
    const QByteArray much(4 << 20, 'x');
    EXPECT_FALSE(ends[0]->writeAll(much, 50)) << "nobody reads";

    const Channels others = connectedSockets();
    qint64 count = 0;
    std::thread reader([&] {
        std::array<char, 65536> buffer;
        for (qint64 size = 0; size >= 0 && count < much.size();) {
            others[1]->wait(Channel::Wait::Readable, -1);
            size = others[1]->read(buffer.data(), buffer.size());
            count += qMax<qint64>(0, size);
        }
    });
    EXPECT_TRUE(others[0]->writeAll(much, 60000));
    reader.join();
    EXPECT_EQ(much.size(), count);
}

TEST(SocketChannel, WaitsOnAfterASignal)
{
    const Channels ends = connectedSockets();
    struct sigaction counting = {};
    counting.sa_handler = [](int) {};
    sigaction(SIGUSR1, &counting, nullptr);
    std::thread signals([&ends, waiting = pthread_self()] {
        for (int round = 0; round < 10; ++round) {
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
            pthread_kill(waiting, SIGUSR1);
        }
        ends[1]->write("x", 1);
    });
    EXPECT_TRUE(ends[0]->wait(Channel::Wait::Readable, 60000));
    char byte = 0;
    EXPECT_EQ(1, ends[0]->read(&byte, 1));
    signals.join();
}

} // namespace
