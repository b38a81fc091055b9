#include "gherkin/messages.h"
#include "gherkin/pickle.h"

#include <QJsonArray>
#include <QJsonDocument>

#include <gtest/gtest.h>

namespace {

using namespace Gherkin;

const char* const text = "@f\nFeature: f\n"
                         "Background:\n When base\n"
                         "Scenario: plain\n And <a>\n * b\n"
                         "Scenario: empty\n"
                         "@o\nScenario: pay <coin> of <coin>\n"
                         " When <coin> <in> <unknown> <a < <in>\n"
                         "  | <coin> | x |\n"
                         " Then text\n  \"\"\"<in>\n  <in>\n  \"\"\"\n"
                         "@e @f\nExamples: one\n| coin | in |\n| 1 | <coin> |\n| 2 | b |\n"
                         "Examples:\n| coin | in |\n"
                         "Examples: none\n"
                         "@r\nRule: r\nBackground:\n Given more\nScenario: ruled\n And done\n";

QVector<Pickle> pickles(Feature* feature)
{
    QVector<ParseError> errors;
    EXPECT_TRUE(parseFeature(text, *feature, errors));
    return compilePickles(*feature);
}

TEST(Pickles, AreTheRunsOfAFeature)
{
    Feature feature;
    const QVector<Pickle> all = pickles(&feature);
    QStringList lines;
    for (const Pickle& pickle : all) {
        QStringList steps;
        for (const Step& step : pickle.steps)
            steps +=
                QString("%1 %2: %3").arg(stepKeyword(step.type)).arg(step.location.line).arg(step.text());
        lines += QString("%1 %2 [%3] %4 | %5")
                     .arg(pickle.location.line)
                     .arg(pickle.title, pickle.tags.join(' '))
                     .arg(pickle.rule)
                     .arg(steps.join("; "));
    }
    EXPECT_EQ(
        QStringList({
            "5 plain [@f] -1 | When 4: base; When 6: <a>; When 7: b",
            "8 empty [@f] -1 | ",
            "20 pay 1 of 1 [@f @o @e @f] -1 | When 4: base; When 11: 1 <coin> <unknown> <a < <coin>; "
            "Then 13: text",
            "21 pay 2 of 2 [@f @o @e @f] -1 | When 4: base; When 11: 2 b <unknown> <a < b; Then 13: text",
            "29 ruled [@f @r] 0 | When 4: base; Given 28: more; Given 30: done",
        }),
        lines);
    const Pickle& second = all[3];
    EXPECT_EQ(10, second.scenarioLine);
    EXPECT_EQ("When 2 b <unknown> <a < b", second.steps[1].lineText);
    EXPECT_EQ("When ", second.steps[1].keyword());
    EXPECT_EQ(QVector<QStringList>({{"2", "x"}}), second.steps[1].table);
    EXPECT_EQ("b", second.steps[2].mediaType);
    EXPECT_EQ(QStringList("b"), second.steps[2].multiLineText);
}

/** All values of "id", and separately those that refer to one. */
void collectIds(const QJsonValue& value, QStringList* ids, QStringList* references)
{
    for (const QJsonValue& element : value.toArray())
        collectIds(element, ids, references);
    const QJsonObject object = value.toObject();
    for (auto member = object.begin(); member != object.end(); ++member) {
        if (member.key() == "id")
            *ids += member.value().toString();
        else if (member.key() == "astNodeId")
            *references += member.value().toString();
        else if (member.key() == "astNodeIds")
            for (const QJsonValue& id : member.value().toArray())
                *references += id.toString();
        else
            collectIds(member.value(), ids, references);
    }
}

TEST(Messages, GiveEveryNodeAnIdThatPicklesReferTo)
{
    Feature feature;
    const QVector<Pickle> all = pickles(&feature);
    const QJsonObject document = gherkinDocumentMessage(feature, "a.feature", "f7.");
    QStringList ids;
    QStringList references;
    collectIds(document, &ids, &references);
    EXPECT_TRUE(references.isEmpty());
    QStringList nodes = ids;
    for (int i = 0; i < all.size(); ++i)
        collectIds(pickleMessage(all[i], i, feature.language, "a.feature", "f7."), &ids, &references);
    EXPECT_EQ(0, ids.removeDuplicates());
    for (const QString& reference : references)
        EXPECT_TRUE(nodes.contains(reference)) << qPrintable(reference);
    for (const QString& id : ids)
        EXPECT_TRUE(id.startsWith("f7.")) << qPrintable(id);
    EXPECT_TRUE(ids.contains(pickleStepId(3, 2, "f7.")));

    const QJsonObject pickle = pickleMessage(all[3], 3, "en", "a.feature", "");
    const QJsonArray steps = pickle["steps"].toArray();
    EXPECT_EQ(R"({"dataTable":{"rows":[{"cells":[{"value":"2"},{"value":"x"}]}]}})",
              QJsonDocument(steps[1].toObject()["argument"].toObject()).toJson(QJsonDocument::Compact));
    EXPECT_EQ(R"({"docString":{"content":"b","mediaType":"b"}})",
              QJsonDocument(steps[2].toObject()["argument"].toObject()).toJson(QJsonDocument::Compact));
    EXPECT_EQ("Outcome", steps[2].toObject()["type"].toString());
}

} // namespace
