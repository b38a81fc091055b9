#include "protocol/applicationmessages.h"
#include "protocol/lookupmessages.h"

#include <gtest/gtest.h>

#include <random>

namespace {

using namespace Torvix::Protocol;

TEST(Frame, HasTheDocumentedBytes)
{
    GetProperty request;
    request.object = 300;
    request.classId = 16;
    request.index = 2;
    EXPECT_EQ(QByteArray::fromHex("0000000d"
                                  "02"
                                  "01020304"
                                  "000a"
                                  "83"
                                  "19012c"
                                  "10"
                                  "02"),
              toBytes(requestFrame(0x01020304, request)));
}

TEST(Frame, ArrivesWholeHoweverTheBytesAreCut)
{
    const QByteArray bytes = toBytes(requestFrame(1, Ping())) + toBytes(requestFrame(2, Find{{}})) +
                             toBytes(errorFrame(3, ErrorClass::NotFound, QStringLiteral("no"))) +
                             toBytes(pushFrame(GoingDown{QStringLiteral("bye")}));
    for (int piece = 1; piece < bytes.size(); ++piece) {
        FrameReader reader;
        QVector<Frame> frames;
        for (int at = 0; at < bytes.size(); at += piece) {
            reader.add(bytes.constData() + at, qMin(piece, bytes.size() - at));
            while (auto frame = reader.next())
                frames.append(*frame);
        }
        ASSERT_EQ(4, frames.size()) << piece;
        EXPECT_FALSE(reader.isPartial());
        EXPECT_EQ(2u, frames[1].id);
        ErrorText error;
        ASSERT_TRUE(decode(frames[2].body, &error));
        EXPECT_EQ(quint16(ErrorClass::NotFound), frames[2].number);
        EXPECT_EQ(FrameKind::Push, frames[3].kind);
    }
}

TEST(Frame, HostileLengthsAndKindsFailForGoodWithoutWaitingForMore)
{
    const struct
    {
        const char* what;
        const char* hex;
        quint32 limit;
    } cases[] = {
        {"4 GiB claimed", "ffffffff", maxFrameSize},
        {"just above the limit", "04000001", maxFrameSize},
        {"above the limit for strangers", "00001001", maxHelloSize},
        {"too short for a header", "00000006", maxFrameSize},
        {"kind 0", "0000000800", maxFrameSize},
        {"kind 6", "0000000806", maxFrameSize},
        {"kind 255", "00000008ff", maxFrameSize},
    };
    for (const auto& entry : cases) {
        FrameReader reader(entry.limit);
        const QByteArray bytes = QByteArray::fromHex(entry.hex);
        reader.add(bytes.constData(), bytes.size());
        EXPECT_FALSE(reader.next().has_value()) << entry.what;
        EXPECT_TRUE(reader.failed()) << entry.what;
        const QByteArray good = toBytes(requestFrame(1, Ping()));
        reader.add(good.constData(), good.size());
        EXPECT_FALSE(reader.next().has_value()) << entry.what;
    }
}

TEST(Frame, RandomBytesNeverCrash)
{
    std::mt19937 random(3);
    for (int round = 0; round < 2000; ++round) {
        FrameReader reader(maxFrameSize);
        QByteArray bytes(200, '\0');
        for (char& byte : bytes)
            byte = char(random());
        bytes[0] = bytes[1] = bytes[2] = '\0';
        reader.add(bytes.constData(), bytes.size());
        while (auto frame = reader.next()) {
            EXPECT_LE(frame->body.size(), bytes.size());
            Value value;
            decode(frame->body, &value);
        }
    }
}

} // namespace
