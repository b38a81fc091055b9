#include "gherkin/dialect.h"
#include "gherkin/feature.h"

#include <gtest/gtest.h>

namespace {

using namespace Gherkin;

/** A tree as text, a line a node: "4:3 Given 'a cup'". */
class TreeText
{
public:
    static QString of(const Feature& feature)
    {
        TreeText text;
        text.block(feature, feature.tags);
        text.background(feature.background);
        text.scenarios(feature.scenarios);
        for (const Rule& rule : feature.rules) {
            text.block(rule, rule.tags);
            text.background(rule.background);
            text.scenarios(rule.scenarios);
        }
        return text.m_lines.join('\n');
    }

private:
    void add(const Location& location, const QString& text)
    {
        m_lines += QString("%1:%2 %3").arg(location.line).arg(location.column).arg(text);
    }
    void block(const Block& block, const QVector<Tag>& tags)
    {
        for (const Tag& tag : tags)
            add(tag.location, tag.name);
        add(block.location, block.keyword + " '" + block.title + '\'' +
                                (block.description.isEmpty() ? "" : " \"" + block.description + '"'));
    }
    void background(const std::optional<Background>& background)
    {
        if (background) {
            block(*background, {});
            steps(background->steps);
        }
    }
    void scenarios(const QVector<Scenario>& scenarios)
    {
        for (const Scenario& scenario : scenarios) {
            block(scenario, scenario.tags);
            steps(scenario.steps);
            for (const Examples& examples : scenario.examples) {
                block(examples, examples.tags);
                if (examples.header)
                    row(*examples.header);
                for (const TableRow& each : examples.rows)
                    row(each);
            }
        }
    }
    void steps(const QVector<StepNode>& steps)
    {
        static const char* const kinds[] = {"given", "when", "then", "and", "any"};
        for (const StepNode& step : steps) {
            add(step.location, QString("%1 '%2' '%3'").arg(kinds[int(step.kind)], step.keyword, step.text));
            for (const TableRow& each : step.table)
                row(each);
            if (step.docString)
                add(step.docString->location, step.docString->delimiter + step.docString->mediaType + ' ' +
                                                  step.docString->lines.join('~'));
        }
    }
    void row(const TableRow& row)
    {
        QString text = "|";
        for (const TableCell& cell : row.cells)
            text += QString("%1@%2|").arg(cell.value).arg(cell.location.column);
        add(row.location, text);
    }

    QStringList m_lines;
};

QString read(const QString& text)
{
    Feature feature;
    QVector<ParseError> errors;
    if (parseFeature(text, feature, errors))
        return TreeText::of(feature);
    QStringList lines;
    for (const ParseError& error : errors)
        lines += QString("%1:%2 %3").arg(error.location.line).arg(error.location.column).arg(error.message);
    return lines.join('\n');
}

struct Case
{
    const char* text;
    const char* expected;
};

void expectAll(const std::vector<Case>& cases)
{
    for (const Case& c : cases)
        EXPECT_EQ(c.expected, read(c.text).toStdString()) << "in the feature\n" << c.text;
}

TEST(FeatureParser, ReadsEveryConstructAtItsPlace)
{
    expectAll({
        {"\xef\xbb\xbf# a comment\n@ui  @slow@fast # why\n\n@all\nFeature:  Coffee \n  Who\n\n  Given time # "
         "yes\n"
         " # no\n\n  Background: power\n    Given  a machine\r\n      And water\n",
         "2:1 @ui\n2:6 @slow\n2:11 @fast\n4:1 @all\n5:1 Feature 'Coffee' \"  Who\n\n  Given time # yes\"\n"
         "11:3 Background 'power'\n12:5 given 'Given ' 'a machine'\n13:7 and 'And ' 'water'"},
        {"Ability: f\nExample: s\n | not a row\n\"\"\" nor this\n*\n* any\nThen\nScenario Template:\nBut "
         "<a>\n"
         "Scenarios: of a\ntold\n|a|\n\n|1|\n@t\nExamples:\n",
         "1:1 Ability 'f'\n2:1 Example 's' \" | not a row\n\"\"\" nor this\"\n5:1 any '* ' ''\n6:1 any '* ' "
         "'any'\n"
         "7:1 then 'Then ' ''\n8:1 Scenario Template ''\n9:1 and 'But ' '<a>'\n"
         "10:1 Scenarios 'of a' \"told\"\n12:1 |a@2|\n14:1 |1@2|\n15:1 @t\n16:1 Examples ''"},
        {"Feature: f\nRule: one\nBackground:\nScenario: a\nRule: two\n  x\n@r\nRule: three\n@s\nScenario: b",
         "1:1 Feature 'f'\n2:1 Rule 'one'\n3:1 Background ''\n4:1 Scenario 'a'\n5:1 Rule 'two' \"  x\"\n7:1 "
         "@r\n"
         "8:1 Rule 'three'\n9:1 @s\n10:1 Scenario 'b'"},
        {"# only\n\n", "0:0  ''"},
        {"", "0:0  ''"},
    });
}

TEST(FeatureParser, ReadsTablesAndDocStrings)
{
    expectAll({
        {"Feature:\nScenario:\nGiven t\n  | a |  b c |  | # no cell\n # between\n  | \\| | \\\\\\n | \\x | "
         "tail\n",
         "1:1 Feature ''\n2:1 Scenario ''\n3:1 given 'Given ' 't'\n4:3 |a@5|b c@10|@17|\n6:3 "
         "||@5|\\\n@10|\\x@17|"},
        {"Feature:\nScenario:\nGiven t\n  \"\"\" json \n    # text\n\n less\n   \\\"\\\"\\\" ```\n \"\"\" "
         "tail\n |a|\nWhen u\n"
         "```\n\"\"\"\n\\`\\`\\`\n```\n",
         "1:1 Feature ''\n2:1 Scenario ''\n3:1 given 'Given ' 't'\n10:2 |a@3|\n"
         "4:3 \"\"\"json   # text~~less~ \"\"\" ```\n11:1 when 'When ' 'u'\n12:1 ``` \"\"\"~```"},
        {"Feature:\nScenario:\n \xf0\x9f\x98\x80\nGiven \xf0\x9f\x98\x80\n\t| \xf0\x9f\x98\x80 |b|\n",
         "1:1 Feature ''\n2:1 Scenario '' \" \xf0\x9f\x98\x80\"\n4:1 given 'Given ' '\xf0\x9f\x98\x80'\n"
         "5:2 |\xf0\x9f\x98\x80@4|b@7|"},
    });
}

TEST(FeatureParser, KnowsTheKeywordsOfManyLanguages)
{
    EXPECT_GE(languages().size(), 75);
    expectAll({
        {"#language:fr\nFonctionnalit\u00e9: f\nSc\u00e9nario: s\nEtant donn\u00e9 que tout va\nEtant "
         "donn\u00e9 rien\n"
         "Lorsqu'il part\nAlors ok\n",
         "2:1 Fonctionnalit\u00e9 'f'\n3:1 Sc\u00e9nario 's'\n4:1 given 'Etant donn\u00e9 que ' 'tout va'\n"
         "5:1 given 'Etant donn\u00e9 ' 'rien'\n6:1 when 'Lorsqu'' 'il part'\n7:1 then 'Alors ' 'ok'"},
        {"# language: ja\n\u6a5f\u80fd: \u8a08\u7b97\n\u30b7\u30ca\u30ea\u30aa: s\n\u524d\u63d01\u3068\u3001"
         "2\n\u3082\u3057\u8db3\u3059\n\u306a\u3089\u30703\n",
         "2:1 \u6a5f\u80fd '\u8a08\u7b97'\n3:1 \u30b7\u30ca\u30ea\u30aa 's'\n4:1 given '\u524d\u63d0' "
         "'1\u3068\u3001"
         "2'\n5:1 when '\u3082\u3057' '\u8db3\u3059'\n6:1 then '\u306a\u3089\u3070' '3'"},
        {"# language: ar\n\u062e\u0627\u0635\u064a\u0629: f\n\u0633\u064a\u0646\u0627\u0631\u064a\u0648: s\n"
         "\u0628\u0641\u0631\u0636 x\n",
         "2:1 \u062e\u0627\u0635\u064a\u0629 'f'\n3:1 \u0633\u064a\u0646\u0627\u0631\u064a\u0648 's'\n"
         "4:1 given '\u0628\u0641\u0631\u0636 ' 'x'"},
        {"# language: de\n# language: fr\nFunktion: f\nGiven in no language of this file\n",
         "3:1 Funktion 'f' \"Given in no language of this file\""},
    });
    for (const QString& code : languages()) {
        const Dialect* dialect = Dialect::find(code);
        QVector<bool> blocks(5);
        QVector<bool> steps(5);
        for (const Dialect::BlockKeyword& keyword : dialect->blockKeywords())
            blocks[int(keyword.kind)] = true;
        for (const Dialect::StepKeyword& keyword : dialect->stepKeywords())
            steps[int(keyword.kind)] = true;
        EXPECT_FALSE(blocks.contains(false)) << qPrintable(code);
        EXPECT_FALSE(steps.mid(0, 4).contains(false)) << qPrintable(code);
    }
}

TEST(FeatureParser, SaysWhatIsWrongAndWhere)
{
    expectAll({
        {"Hello\nyou", "1:1 expected the feature or tags, found \"Hello\""},
        {" Scenario: s\nFeature: f", "1:2 expected the feature or tags, found \"Scenario: s\""},
        {"Feature: f\nScenario: s\nGiven a\nnonsense\nGiven b\n more",
         "4:1 expected a step, a table row, a doc string, examples, a scenario, a rule or tags, found "
         "\"nonsense\"\n"
         "6:2 expected a step, a table row, a doc string, examples, a scenario, a rule or tags, found "
         "\"more\""},
        {"Feature: f\n@t\nGiven a", "3:1 expected a scenario, a rule or tags, found \"Given a\"\n"
                                    "2:1 tags at the end of the file belong to nothing"},
        {"Feature: f\nScenario: s\nGiven x\nFeature: g",
         "4:1 expected a step, a table row, a doc string, examples, a scenario, a rule or tags, found "
         "\"Feature: g\""},
        {"#language: xx\nFeature: f", "1:1 unknown language \"xx\""},
        {"Feature: f\nScenario: s\nGiven a\n| a | b |\n  | c |",
         "5:3 the row has 1 cells where the first row of the table has 2"},
        {"Feature: f\nScenario: s\nGiven a\n | a", "4:2 a table row without a cell: it ends with \"|\""},
        {"Feature: f\nScenario: s\nGiven a\n \"\"\"\ntext", "4:2 the doc string is not closed by \"\"\""},
        {"Feature: f\nScenario: s\nGiven a\n```\n```\n```\n```", "6:1 a second doc string for the same step"},
        {"Feature: f\nScenario: s\nGiven a\n|a|\n```\n```\n|b|", "7:1 a second table for the same step"},
        {"Feature: f\nScenario: s\n\nGiven a\n Background: b",
         "5:2 a background stands once, before the scenarios"},
        {"Feature: f\nBackground: b\nGiven a\nBackground: c",
         "4:1 a background stands once, before the scenarios"},
        {"Feature: f\n@t\nBackground: b", "3:1 a background cannot have tags"},
        {"Feature: f\n@t @ @u v\nScenario: s",
         "2:4 a tag without a name\n2:6 the tag \"@u v\" contains a blank"},
        {"Feature: f\nScenario Outline: s\nGiven <a>\nExamples:\n| a |\n| 1 | 2 |",
         "6:1 the row has 2 cells where the first row of the table has 1"},
    });
    QString many = "Feature: f\nScenario: s\nGiven a\n";
    for (int i = 0; i < 1000; ++i)
        many += "nonsense\n";
    EXPECT_EQ(50, read(many).split('\n').size());
}

} // namespace
