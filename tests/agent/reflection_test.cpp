#include "agent/client.h"
#include "protocol/classmessages.h"

#include <QRegularExpression>

using namespace Torvix::Protocol;
using Kind = Value::Kind;

namespace {

QString q(const char* text)
{
    return QString::fromUtf8(text);
}

const MethodInfo* findMethod(const ClassReply& reply, const QString& name, int arguments)
{
    for (const ClassInfo& info : reply.classes)
        for (const MethodInfo& method : info.methods)
            if (method.name == name && method.arguments.size() == arguments)
                return &method;
    return nullptr;
}

} // namespace

TEST(AgentReflection, readsAndWritesPropertiesOfEveryKind)
{
    Target target;
    const auto shapes = target.byName(q("shapes"));
    EXPECT_EQ(target.get(shapes, q("number")).integer, 42);
    EXPECT_EQ(target.get(shapes, q("ratio")).number, 0.5);
    EXPECT_EQ(target.get(shapes, q("label")).text, q("shapes"));
    EXPECT_EQ(target.get(shapes, q("big")).integer, 1LL << 40);
    EXPECT_EQ(target.get(shapes, q("nothing")).kind, Kind::Void);
    EXPECT_EQ(target.get(shapes, q("words")).elements.value(1).text, q("two"));
    EXPECT_EQ(target.get(shapes, q("table")).entries.value(q("b")).text, q("x"));
    const Value mixed = target.get(shapes, q("mixed"));
    ASSERT_EQ(mixed.elements.size(), 4);
    EXPECT_EQ(mixed.elements.at(3).kind, Kind::Bool);
    const Value spot = target.get(shapes, q("spot"));
    ASSERT_EQ(spot.kind, Kind::Object);
    EXPECT_EQ(target.get(spot.object, q("y")).integer, 4);
    target.set(spot.object, q("y"), Value::ofInt(9));
    EXPECT_EQ(target.get(spot.object, q("y")).integer, 9);
    EXPECT_EQ(target.get(target.get(shapes, q("spot")).object, q("y")).integer, 4) << "the value was a copy";
    target.set(shapes, q("spot"), spot);
    EXPECT_EQ(target.get(target.get(shapes, q("spot")).object, q("y")).integer, 9);
    target.set(shapes, q("number"), Value::ofInt(7));
    EXPECT_EQ(target.get(shapes, q("number")).integer, 7);
    EXPECT_THROW(target.set(shapes, q("fixed"), Value::ofString(q("x"))), RequestError);
    EXPECT_THROW(target.get(shapes, q("secret")), RequestError);
    EXPECT_THROW(target.set(shapes, q("number"), Value::ofString(q("no number"))), RequestError);
}

TEST(AgentReflection, reachesEveryOverloadByItsArgumentTypes)
{
    Target target;
    const auto shapes = target.byName(q("shapes"));
    const auto item = target.get(shapes, q("item"));
    const auto spot = target.get(shapes, q("spot"));
    const struct
    {
        Value argument;
        const char* expected;
    } cases[] = {
        {Value::ofInt(3), "int 3"},
        {Value::ofDouble(3.5), "double 3.5"},
        {Value::ofString(q("x")), "string x"},
        {Value::ofBool(true), "bool true"},
        {Value::ofArray({Value::ofString(q("a")), Value::ofString(q("b"))}), "list a+b"},
        {Value::ofMap({{q("k"), Value::ofInt(1)}}), "map k"},
        {item, "object item"},
    };
    for (const auto& each : cases)
        EXPECT_EQ(target.call(shapes, q("pick"), {each.argument}).text, q(each.expected));
    EXPECT_EQ(target.call(shapes, q("add"), {Value::ofInt(1)}).integer, 111);
    EXPECT_EQ(target.call(shapes, q("add"), {Value::ofInt(1), Value::ofInt(2)}).integer, 103);
    EXPECT_EQ(target.call(shapes, q("kindName"), {Value::ofInt(5)}).text, q("pen"));
    EXPECT_EQ(target.call(shapes, q("big"), {Value::ofInt(1LL << 41, Kind::Int64)}).integer, (1LL << 41) + 1);
    EXPECT_EQ(target.call(shapes, q("squares"), {Value::ofInt(3)}).elements.value(2).integer, 9);
    EXPECT_EQ(target.call(shapes, q("none")).object.id, 0);
    EXPECT_EQ(target.call(shapes, q("same"), {Value::ofString(q("s"))}).text, q("s"));
    EXPECT_EQ(target.call(shapes, q("inherits"), {Value::ofString(q("QWidget"))}).integer, 1);
    EXPECT_EQ(target.call(shapes, q("inherits"), {Value::ofString(q("QLabel"))}).integer, 0);
    try {
        target.call(shapes, q("throwing"));
        FAIL();
    } catch (const RequestError& error) {
        EXPECT_NE(QString::fromUtf8(error.what()).indexOf(q("no luck")), -1);
    }
}

TEST(AgentReflection, describesAttributesEnumsAndSuperclasses)
{
    Target target;
    const auto shapes = target.byName(q("shapes"));
    const ClassReply reply = target.describe(shapes.classId);
    QStringList names;
    for (const ClassInfo& info : reply.classes)
        names.append(info.self.name);
    EXPECT_EQ(names.mid(0, 3), QStringList({q("Shapes"), q("QWidget"), q("QObject")}));

    const MethodInfo* kindName = findMethod(reply, q("kindName"), 1);
    ASSERT_TRUE(kindName);
    EXPECT_EQ(kindName->arguments.first().type.enumName, q("Kind"));
    EXPECT_EQ(kindName->arguments.first().type.classId, int(IntClass));
    const MethodInfo* mapTo = findMethod(reply, q("mapTo"), 2);
    ASSERT_TRUE(mapTo);
    EXPECT_EQ(mapTo->arguments.first().type.attribute.flags, quint32(ConstantFlag | IndirectFlag));

    const ClassReply item = target.client().request(ClassByName{q("Shop::Item")});
    ASSERT_FALSE(item.classes.isEmpty());
    EXPECT_EQ(item.classes.first().namespaceName, q("Shop"));
    EXPECT_TRUE(target.client().request(NamespaceByName{q("Shop")}).found ||
                !target.client().request(ClassByName{q("Shop")}).classes.isEmpty());
    EXPECT_FALSE(target.client().request(NamespaceByName{q("NoSuch")}).found);
    EXPECT_TRUE(target.client().request(ClassByName{q("NoSuch")}).classes.isEmpty());

    const ClassReply qt = target.client().request(ClassByName{q("Qt")});
    ASSERT_FALSE(qt.classes.isEmpty());
    bool hasLeftButton = false;
    for (const EnumInfo& info : qt.classes.first().enumerators)
        for (const EnumKey& key : info.keys)
            hasLeftButton = hasLeftButton || (key.name == q("LeftButton") && key.value == 1);
    EXPECT_TRUE(hasLeftButton);
}

TEST(AgentReflection, reachesItemsOfWidgetsAndNoticesTheirEnd)
{
    Target target;
    const auto table = target.byName(q("table"));
    const auto item = target.call(table, q("item"), {Value::ofInt(1), Value::ofInt(0)});
    ASSERT_EQ(item.kind, Kind::Object);
    EXPECT_EQ(target.call(item.object, q("text")).text, q("cell 1.0"));
    target.call(item.object, q("setText"), {Value::ofString(q("new"))});
    EXPECT_EQ(target.call(item.object, q("text")).text, q("new"));
    target.call(table, q("removeRow"), {Value::ofInt(1)});
    try {
        target.call(item.object, q("text"));
        FAIL() << "the item is gone";
    } catch (const RequestError& error) {
        EXPECT_EQ(error.kind, ErrorClass::Destroyed);
    }
    const auto model = target.call(target.byName(q("modelView")), q("model"));
    const auto index = target.call(model.object, q("index"), {Value::ofInt(0), Value::ofInt(0)});
    EXPECT_EQ(target.call(index.object, q("data")).text, q("Root"));
    EXPECT_EQ(target.call(model.object, q("rowCount"), {index}).integer, 1);
}
