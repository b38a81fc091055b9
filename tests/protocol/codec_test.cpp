#include "protocol/classmessages.h"
#include "protocol/membermessages.h"
#include "protocol/screenmessages.h"

#include <gtest/gtest.h>

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
