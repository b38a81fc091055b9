#include "protocol/classmessages.h"
#include "protocol/membermessages.h"
#include "protocol/screenmessages.h"

#include <gtest/gtest.h>

#include <QCborStreamWriter>

#include <cmath>
#include <limits>
#include <random>

namespace {

using namespace Torvix::Protocol;

Value sampleValue()
{
    ObjectRef ref;
    ref.id = 77;
    ref.classId = 21;
    ref.attribute = {IndirectFlag, 1};
    ref.status = InvalidatedStatus;
    return Value::ofMap(
        {{QStringLiteral("a"), Value::ofArray({Value::ofInt(-5), Value::ofBool(true), Value::ofDouble(0.5)})},
         {QStringLiteral("b"), Value::ofString(QString::fromUtf8("\xc3\xa4 \xf0\x9f\x99\x82"))},
         {QString(), Value::ofObject(ref)},
         {QStringLiteral("big"), Value::ofInt(Q_INT64_C(-9223372036854775807), Value::Kind::Int64)},
         {QStringLiteral("void"), Value()}});
}

TEST(Codec, AValueOfEveryKindComesBack)
{
    const QByteArray bytes = encode(sampleValue());
    Value back;
    ASSERT_TRUE(decode(bytes, &back));
    EXPECT_EQ(bytes, encode(back));
    const QVector<Value> list = back.entries[QStringLiteral("a")].elements;
    EXPECT_EQ(-5, list[0].integer);
    EXPECT_EQ(Value::Kind::Bool, list[1].kind);
    EXPECT_EQ(0.5, list[2].number);
    EXPECT_EQ(77, back.entries[QString()].object.id);
    EXPECT_EQ(IndirectFlag, back.entries[QString()].object.attribute.flags);
    EXPECT_EQ(InvalidatedStatus, back.entries[QString()].object.status);
    EXPECT_EQ(Q_INT64_C(-9223372036854775807), back.entries[QStringLiteral("big")].integer);
    EXPECT_EQ(QString::fromUtf8("\xc3\xa4 \xf0\x9f\x99\x82"), back.entries[QStringLiteral("b")].text);
}

TEST(Codec, AClassDescriptionComesBack)
{
    ClassInfo info;
    info.self = {30, QStringLiteral("Ns::Thing")};
    info.namespaceName = QStringLiteral("Ns");
    info.superClasses = {{16, QStringLiteral("QObject")}};
    info.properties = {
        {QStringLiteral("text"), {StringClass, {}, -1, {}}, ReadableProperty | StaticProperty}};
    MethodInfo method;
    method.name = QStringLiteral("turn");
    method.arguments = {{QStringLiteral("by"),
                         {IntClass, {ConstantFlag, 0}, 30, QStringLiteral("Way")},
                         QStringLiteral("Left")}};
    method.deprecation = QStringLiteral("use move()");
    info.methods = {method};
    info.enumerators = {{QStringLiteral("Way"), true, {{QStringLiteral("Left"), -2147483647 - 1}}}};
    info.convertibleTo = {StringClass};
    ClassReply back;
    ASSERT_TRUE(decode(encode(ClassReply{{info}, {{30, QStringLiteral("Ns::Thing")}}}), &back));
    EXPECT_EQ(encode(info), encode(back.classes[0]));
    EXPECT_EQ(QStringLiteral("Way"), back.classes[0].methods[0].arguments[0].type.enumName);
    EXPECT_EQ(-2147483647 - 1, back.classes[0].enumerators[0].keys[0].value);
    EXPECT_EQ(QStringLiteral("Ns::Thing"), back.mentioned[0].name);
}

TEST(Codec, RefusesWhatIsNotTheMessage)
{
    const struct
    {
        const char* what;
        QByteArray bytes;
    } cases[] = {
        {"nothing", QByteArray()},
        {"a second item", QByteArray::fromHex("8301020300")},
        {"a field too few", QByteArray::fromHex("820102")},
        {"a field too many", QByteArray::fromHex("8401020304")},
        {"a text for a number", QByteArray::fromHex("83010261")},
        {"an array of indefinite length", QByteArray::fromHex("9f010203ff")},
        {"a map", QByteArray::fromHex("a10102")},
        {"a tag", QByteArray::fromHex("83c0010203")},
        {"an index beyond int", QByteArray::fromHex("8301021b00000001ffffffff")},
        {"an integer beyond 64 bits", QByteArray::fromHex("831bffffffffffffffff0203")},
        {"an array that claims 2^63 items", QByteArray::fromHex("9b7fffffffffffffff")},
        {"a text that claims 4 GiB", QByteArray::fromHex("837affffffff4102")},
        {"a null", QByteArray::fromHex("83f60203")},
    };
    GetProperty message;
    ASSERT_TRUE(decode(QByteArray::fromHex("83010203"), &message));
    EXPECT_EQ(2, message.classId);
    for (const auto& entry : cases)
        EXPECT_FALSE(decode(entry.bytes, &message)) << entry.what;
}

TEST(Codec, WritesWhatAnotherWriterWritesAndReadsWhatItMay)
{
    const qint64 largest = std::numeric_limits<qint64>::max();
    const QVector<qint64> integers{0,          23,         24,          255,   256,      65535,   65536,
                                   4294967295, 4294967296, largest,     -1,    -24,      -25,     -256,
                                   -257,       -65537,     -4294967297, 10000, -largest, ~largest};
    const QVector<double> doubles{0, -0.0, 0.1, -1e300, 5e-324, std::numeric_limits<double>::infinity()};
    const QStringList texts{QString(), QStringLiteral("a"), QString(300, QChar(0xe4)),
                            QStringLiteral("\ufeff\U0001f642"), QString(QChar(0))};
    const QVector<QByteArray> bytes{QByteArray(), QByteArray(256, '\xff')};
    QByteArray expected;
    QCborStreamWriter peer(&expected);
    const auto appendAll = [&peer](const auto& values) {
        peer.startArray(quint64(values.size()));
        for (const auto& value : values)
            peer.append(value);
        peer.endArray();
    };
    peer.startArray(4);
    appendAll(integers);
    appendAll(doubles);
    appendAll(texts);
    appendAll(bytes);
    peer.endArray();
    QByteArray written;
    Encoder encoder(&written);
    encoder(integers, doubles, texts, bytes);
    EXPECT_EQ(expected.toHex(), written.toHex());

    QVector<qint64> readIntegers;
    QVector<double> readDoubles;
    QStringList readTexts;
    QVector<QByteArray> readBytes;
    ASSERT_TRUE(isWellFormed(written));
    Decoder decoder(written);
    decoder(readIntegers, readDoubles, readTexts, readBytes);
    EXPECT_FALSE(decoder.failed());
    EXPECT_EQ(integers, readIntegers);
    EXPECT_EQ(doubles, readDoubles);
    EXPECT_TRUE(std::signbit(readDoubles[1]));
    EXPECT_EQ(texts, readTexts);
    EXPECT_EQ(bytes, readBytes);

    // A number may take more bytes than it needs.
    GetProperty message;
    ASSERT_TRUE(decode(QByteArray::fromHex("9a000000031b00000000000000011800190007"), &message));
    EXPECT_EQ(7, message.index);
}

TEST(Codec, RefusesTextThatIsNoUtf8AndSimpleValuesOfAnotherKind)
{
    Value value;
    for (const char* const text : {"82046261ff", "82046261c3", "820463eda080", "820461a9"})
        EXPECT_FALSE(decode(QByteArray::fromHex(text), &value)) << text;
    ASSERT_TRUE(decode(QByteArray::fromHex("820463e282ac"), &value));
    EXPECT_EQ(QString(QChar(0x20ac)), value.text);
    // The bits of this number are those of a truth value's code.
    EXPECT_FALSE(decode(QByteArray::fromHex("8203fb0000000000000015"), &value));
    EXPECT_FALSE(decode(QByteArray::fromHex("8205f5"), &value));
}

TEST(Codec, BoundsDepthAndEnumerations)
{
    Value deep;
    for (int i = 0; i < 20; ++i)
        deep = Value::ofArray({deep});
    Value back;
    EXPECT_TRUE(decode(encode(deep), &back));
    EXPECT_FALSE(isWellFormed(QByteArray(100000, char(0x81)) + QByteArray(1, '\0')));

    Screenshot shot;
    EXPECT_TRUE(decode(QByteArray::fromHex("820002"), &shot));
    EXPECT_EQ(ScreenshotArea::Screen, shot.area);
    EXPECT_FALSE(decode(QByteArray::fromHex("820003"), &shot));
    EXPECT_FALSE(decode(QByteArray::fromHex("820020"), &shot));
    EXPECT_FALSE(decode(QByteArray::fromHex("820b00"), &back)) << "a kind of value that there is not";
}

TEST(Codec, ChangedBytesNeverCrashAndWhatDecodesEncodes)
{
    std::mt19937 random(20);
    const QByteArray original = encode(ValueReply{sampleValue()});
    int accepted = 0;
    for (int round = 0; round < 20000; ++round) {
        QByteArray bytes = original;
        for (int change = 0; change < 3; ++change)
            bytes[int(random() % quint32(bytes.size()))] = char(random());
        bytes.truncate(int(random() % quint32(bytes.size() + 40)));
        ValueReply reply;
        if (!decode(bytes, &reply))
            continue;
        ++accepted;
        ValueReply again;
        EXPECT_TRUE(decode(encode(reply), &again));
    }
    EXPECT_GT(accepted, 0);
}

} // namespace
