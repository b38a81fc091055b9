#include "gherkin/feature.h"
#include "gherkin/pickle.h"

#include <gtest/gtest.h>

namespace {

using namespace Gherkin;

Feature parsed(const QString& text)
{
    Feature feature;
    QVector<ParseError> errors;
    EXPECT_TRUE(parseFeature(text, feature, errors));
    for (const ParseError& error : errors)
        ADD_FAILURE() << error.line << ": " << qPrintable(error.message);
    return feature;
}

/** "Given 3: the text" of each step. */
QStringList stepsOf(const QVector<Step>& steps)
{
    QStringList lines;
    for (const Step& step : steps)
        lines += QString("%1 %2: %3").arg(stepKeyword(step.type)).arg(step.line).arg(step.text());
    return lines;
}

TEST(FeatureParser, ReadsTheTree)
{
    const Feature feature = parsed("# a comment\n"
                                   "@ui  @slow # why\n"
                                   "@all\n"
                                   "Feature:  Coffee \n"
                                   "  Who drinks\n"
                                   "\n"
                                   "  Given time, is happy\n"
                                   "  Background: power\n"
                                   "    Given  a machine\n"
                                   "      And water\n"
                                   "  @smoke\n"
                                   "  Scenario: small\n"
                                   "    A description\n"
                                   "    When I pay 1\r\n"
                                   "    # nothing\n"
                                   "    But no more\n"
                                   "    Then\n"
                                   "    * it brews\n"
                                   "  Rule: milk\n"
                                   "    Background:\n"
                                   "      And a cow\n"
                                   "    Example: white\n"
                                   "      Then ok\n");
    EXPECT_EQ("Coffee", feature.title);
    EXPECT_EQ(4, feature.line);
    EXPECT_EQ(QStringList({"@ui", "@slow", "@all"}), feature.tags);
    EXPECT_EQ("Who drinks\nGiven time, is happy", feature.description);
    EXPECT_EQ("power", feature.background.title);
    EXPECT_EQ(QStringList({"Given 9: a machine", "Given 10: water"}), stepsOf(feature.background.steps));
    EXPECT_EQ("Given  a machine", feature.background.steps[0].lineText);
    EXPECT_EQ(7, feature.background.steps[0].textOffset);

    ASSERT_EQ(1, feature.scenarios.size());
    const Scenario& small = feature.scenarios[0];
    EXPECT_EQ("small", small.title);
    EXPECT_EQ("A description", small.description);
    EXPECT_EQ(QStringList("@smoke"), small.tags);
    EXPECT_EQ(QStringList({"When 14: I pay 1", "When 16: no more", "Then 17: ", "Then 18: it brews"}),
              stepsOf(small.steps));

    ASSERT_EQ(1, feature.rules.size());
    EXPECT_EQ("milk", feature.rules[0].title);
    EXPECT_EQ(QStringList("Given 21: a cow"), stepsOf(feature.rules[0].background.steps));
    EXPECT_EQ("white", feature.rules[0].scenarios[0].title);
    EXPECT_FALSE(feature.rules[0].scenarios[0].isOutline);
}

TEST(FeatureParser, ReadsTablesAndTextBlocks)
{
    const Feature feature = parsed("Feature: f\n"
                                   "Scenario: s\n"
                                   "  Given a table\n"
                                   "    | a |  b c |  |\n"
                                   "    | \\| | \\\\\\n | \\x |\n"
                                   "  And a text\n"
                                   "    \"\"\"json\n"
                                   "      # no comment\n"
                                   "  Given less\n"
                                   "    \n"
                                   "    \\\"\\\"\\\" ```\n"
                                   "    \"\"\"\n"
                                   "  And another\n"
                                   "    ```\n"
                                   "    \"\"\"\n"
                                   "    ```\n");
    const QVector<Step>& steps = feature.scenarios[0].steps;
    ASSERT_EQ(3, steps.size());
    EXPECT_EQ(QVector<QStringList>({{"a", "b c", ""}, {"|", "\\\n", "\\x"}}), steps[0].table);
    EXPECT_EQ(QStringList({"  # no comment", "Given less", "", "\"\"\" ```"}), steps[1].multiLineText);
    EXPECT_EQ(QStringList("\"\"\""), steps[2].multiLineText);
}

TEST(FeatureParser, KnowsOtherLanguages)
{
    const Feature feature =
        parsed("#language:fr\nFonctionnalit\u00e9: f\nSc\u00e9nario: s\n"
               "Etant donn\u00e9 que tout va\nEtant donn\u00e9 rien\nLorsqu'il part\nAlors ok\nEt fin\n");
    EXPECT_EQ("fr", feature.language);
    EXPECT_EQ(
        QStringList({"Given 4: tout va", "Given 5: rien", "When 6: il part", "Then 7: ok", "Then 8: fin"}),
        stepsOf(feature.scenarios[0].steps));
    EXPECT_EQ("Kaffee", parsed("# language: de\nFunktionalit\u00e4t: Kaffee\n").title);
    EXPECT_EQ(0, parsed("# only a comment\n\n").line);
}

TEST(FeatureParser, SaysWhatIsWrongAndWhere)
{
    struct
    {
        const char* text;
        QString error;
    } const cases[] = {
        {"Hello", "1: \"Hello\" is neither a keyword nor part of a description"},
        {"Scenario: s", "1: \"Scenario: s\" before the feature"},
        {"Given x", "1: the step \"Given x\" belongs to no scenario"},
        {"Feature: f\nFeature: g", "2: a second feature in the same file"},
        {"#language: xx\nFeature: f", "1: unknown language \"xx\"; known are en, de, es, fr"},
        {"Feature: f\nScenario: s\nGiven a\nnonsense",
         "4: \"nonsense\" is neither a keyword nor part of a description"},
        {"Feature: f\nScenario: s\n| a |", "3: the row \"| a |\" belongs to no step"},
        {"Feature: f\nScenario: s\nGiven a\n| a | b |\n| c |",
         "5: the row has 1 cells where the first row of the table has 2"},
        {"Feature: f\nScenario: s\nGiven a\n| a", "4: the row \"| a\" does not end with \"|\""},
        {"Feature: f\nScenario: s\nGiven a\n\"\"\"\ntext", "4: the text block is not closed by \"\"\""},
        {"Feature: f\n```\n```", "2: the text block belongs to no step"},
        {"Feature: f\nScenario: s\nBackground: b", "3: the background has to come before the scenarios"},
        {"Feature: f\nBackground: b\nBackground: c", "3: a second background"},
        {"Feature: f\n@t\nBackground: b", "3: a background cannot have tags"},
        {"Feature: f\nExamples: e", "2: examples outside a scenario"},
        {"Feature: f\n@t @\nScenario: s", "2: \"@\" is no tag"},
        {"Feature: f\n@t\n", "2: tags at the end of the file belong to nothing"},
        {"Feature: f\nScenario Outline: s\nGiven <a>\nExamples:\n| a |\n| 1 | 2 |",
         "6: the row has 2 cells where the first row of the table has 1"},
    };
    for (const auto& c : cases) {
        Feature feature;
        QVector<ParseError> errors;
        EXPECT_FALSE(parseFeature(c.text, feature, errors)) << c.text;
        QStringList lines;
        for (const ParseError& error : errors)
            lines += QString("%1: %2").arg(error.line).arg(error.message);
        EXPECT_EQ(c.error, lines.join('\n')) << c.text;
    }
}

TEST(Pickles, AreTheRunsOfAFeature)
{
    const Feature feature = parsed("@f\nFeature: f\n"
                                   "Background:\n Given base\n"
                                   "Scenario: plain\n When <a>\n"
                                   "Scenario: empty\n"
                                   "@o\nScenario Outline: pay <coin> of <coin>\n"
                                   " When <coin> <in> <unknown> <a < <in>\n"
                                   "  | <coin> | x |\n"
                                   " Then text\n  \"\"\"\n  <in>\n  \"\"\"\n"
                                   "@e @f\nExamples: one\n| coin | in |\n| 1 | <coin> |\n| 2 | b |\n"
                                   "Examples:\n| coin | in |\n"
                                   "@r\nRule: r\nBackground:\n Given more\nScenario: ruled\n Then done\n");
    const QVector<Pickle> pickles = compilePickles(feature);
    QStringList all;
    for (const Pickle& pickle : pickles)
        all += QString("%1 %2 [%3] %4")
                   .arg(pickle.line)
                   .arg(pickle.title, pickle.tags.join(' '), stepsOf(pickle.steps).join("; "));
    EXPECT_EQ(
        QStringList({
            "5 plain [@f] Given 4: base; When 6: <a>",
            "7 empty [@f] ",
            "19 pay 1 of 1 [@f @o @e] Given 4: base; When 10: 1 <coin> <unknown> <a < <coin>; Then 12: text",
            "20 pay 2 of 2 [@f @o @e] Given 4: base; When 10: 2 b <unknown> <a < b; Then 12: text",
            "27 ruled [@f @r] Given 4: base; Given 26: more; Then 28: done",
        }),
        all);
    EXPECT_EQ(QVector<QStringList>({{"2", "x"}}), pickles[3].steps[1].table);
    EXPECT_EQ(QStringList("b"), pickles[3].steps[2].multiLineText);
    EXPECT_EQ("When 2 b <unknown> <a < b", pickles[3].steps[1].lineText);
}

} // namespace
