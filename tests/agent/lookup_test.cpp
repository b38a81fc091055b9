#include "agent/client.h"
#include "protocol/lookupmessages.h"
#include "protocol/membermessages.h"
#include "protocol/waitmessages.h"

#include <QElapsedTimer>

using namespace Torvix::Protocol;

namespace {

QString q(const char* text)
{
    return QString::fromUtf8(text);
}

NameCondition nested(const char* property, const QStringList& conditions)
{
    NameCondition condition;
    condition.property = q(property);
    condition.isNested = true;
    condition.nested = Target::name(conditions);
    return condition;
}

QString missText(Target& target, const QStringList& conditions)
{
    try {
        target.find(conditions);
    } catch (const RequestError& error) {
        EXPECT_EQ(error.kind, ErrorClass::NotFound);
        return QString::fromUtf8(error.what());
    }
    ADD_FAILURE() << "found";
    return {};
}

} // namespace

TEST(AgentLookup, findsByEveryKindOfCondition)
{
    Target target;
    const auto count = target.byName(q("count"));
    const QStringList cases[] = {
        {q("text"), q("&Do count")},
        {q("text?"), q("*coun?")},
        {q("text~"), q("&Do c.*t")},
        {q("type"), q("QPushButton"), q("visible"), q("true"), q("occurrence"), q("1")},
        {q("type?"), q("QPush*"), q("enabled"), q("true")},
    };
    for (const QStringList& conditions : cases)
        EXPECT_EQ(target.find(conditions).id, count.id) << conditions.join(q(" ")).toStdString();
    EXPECT_EQ(
        target.get(target.find({q("type"), q("QPushButton"), q("occurrence"), q("2")}), q("objectName")).text,
        q("modal"));

    NameConditions byBuddy = Target::name({q("type"), q("QLineEdit")});
    byBuddy.append(nested("buddy", {q("text"), q("&Name:")}));
    EXPECT_EQ(target.client().request(Find{byBuddy}).object.id, target.byName(q("nameEdit")).id);
    NameConditions inside = Target::name({q("text?"), q("*modal")});
    inside.append(nested("container", {q("name"), q("control")}));
    inside.append(nested("window", {q("type"), q("MainWindow")}));
    EXPECT_EQ(target.client().request(Find{inside}).object.id, target.byName(q("modal")).id);
    inside.last().nested.first().text = q("QDialog");
    EXPECT_THROW(target.client().request(Find{inside}), RequestError);
    EXPECT_EQ(target.client().request(FindAll{Target::name({q("name?"), q("*modal*")})}).objects.size(), 1);
    EXPECT_THROW(target.find({q("name~"), q("(")}), RequestError);
}

TEST(AgentLookup, aMissSaysWhatCameClosest)
{
    Target target;
    const QString wrongText =
        missText(target, {q("type"), q("QPushButton"), q("name"), q("count"), q("text"), q("Go")});
    EXPECT_TRUE(wrongText.contains(q("QPushButton 'count'"))) << wrongText.toStdString();
    EXPECT_TRUE(wrongText.contains(q("its 'text' is '&Do count', not 'Go'"))) << wrongText.toStdString();
    const QString hidden = missText(target, {q("name"), q("table"), q("visible"), q("true")});
    EXPECT_TRUE(hidden.contains(q("'visible' is 'false'"))) << hidden.toStdString();
    const QString tooFew = missText(target, {q("name"), q("count"), q("occurrence"), q("2")});
    EXPECT_TRUE(tooFew.contains(q("Only 1"))) << tooFew.toStdString();
}

TEST(AgentLookup, everyObjectHasANameThatFindsIt)
{
    Target target;
    const auto window = target.byName(q("mainWindow"));
    QVector<ObjectRef> open = target.client().request(Children{window.id}).objects;
    int checked = 0;
    while (!open.isEmpty() && checked < 300) {
        const ObjectRef object = open.takeLast();
        const NameConditions name = target.client().request(RealName{object.id}).name;
        const ObjectReply found = target.client().request(Find{name});
        EXPECT_EQ(found.object.id, object.id)
            << target.client().request(ToText{object.id}).text.toStdString();
        open += target.client().request(Children{object.id}).objects;
        ++checked;
    }
    EXPECT_GT(checked, 100);
    const NameConditions name = target.client().request(RealName{target.byName(q("count")).id}).name;
    EXPECT_EQ(name.value(0).text, q("QPushButton"));
    EXPECT_EQ(name.value(1).text, q("count"));
}

TEST(AgentLookup, treeAndTopLevels)
{
    Target target;
    const auto count = target.byName(q("count"));
    EXPECT_EQ(target.client().request(Parent{count.id}).object.id, target.byName(q("control")).id);
    bool hasWindow = false;
    for (const ObjectRef& top : target.client().request(TopLevels()).objects)
        hasWindow = hasWindow || top.id == target.byName(q("mainWindow")).id;
    EXPECT_TRUE(hasWindow);
    const auto item = target.get(target.byName(q("shapes")), q("item"));
    EXPECT_TRUE(
        target.client().request(Compare{item, target.get(target.byName(q("shapes")), q("item"))}).flag);
    EXPECT_FALSE(target.client().request(Compare{item, Value::ofObject(count)}).flag);
}

TEST(AgentWait, endsSoonAfterTheObjectAppears)
{
    Target target;
    const auto control = target.byName(q("control"));
    target.call(control, q("appearLater"), {Value::ofInt(200)});
    QElapsedTimer timer;
    timer.start();
    const WaitReply reply = target.waitFor({q("name"), q("lateLabel")}, 5000);
    EXPECT_EQ(reply.failed, 0u) << reply.explanation.toStdString();
    EXPECT_GE(timer.elapsed(), 150);
    EXPECT_EQ(target.get(reply.object, q("text")).text, q("late"));

    const WaitReply disabled = target.waitFor({q("name"), q("disabled")}, 30);
    EXPECT_EQ(disabled.failed, quint32(WaitEnabled));
    const WaitReply hidden = target.waitFor({q("name"), q("table")}, 30);
    EXPECT_EQ(hidden.failed, quint32(WaitVisible));
    const WaitReply missing = target.waitFor({q("name"), q("nobody")}, 30);
    EXPECT_EQ(missing.failed, quint32(WaitExists));
    EXPECT_FALSE(missing.explanation.isEmpty());
    EXPECT_EQ(target.waitFor({q("name"), q("item")}, 30).failed, 0u) << "an object without a face is ready";
}

TEST(AgentWait, requestsAreServedWhileOneWaits)
{
    Target target;
    const quint32 waiting =
        target.client().begin(WaitFor{Target::name({q("name"), q("lateLabel")}), WaitReady, 10000});
    const auto control = target.byName(q("control"));
    target.call(control, q("appearLater"), {Value::ofInt(20)});
    EXPECT_EQ(target.client().end<WaitFor>(waiting).failed, 0u);
}
