#pragma once

#include "gherkin/export.h"
#include "gherkin/location.h"

#include <QString>
#include <QStringList>
#include <QVector>

#include <optional>

/**
 * The tree of a feature file, as the Gherkin reference of the Cucumber project defines the language:
 * https://cucumber.io/docs/gherkin/reference
 *
 * Each node that something else may refer to has an id: a number from 0 that is unique within its file.
 */
namespace Gherkin {

struct Comment
{
    Location location;
    QString text; ///< the whole line, with its indentation and "#"
};

struct Tag
{
    int id = 0;
    Location location;
    QString name; ///< with its "@"
};

struct TableCell
{
    Location location;
    QString value;
};

struct TableRow
{
    int id = 0;
    Location location;
    QVector<TableCell> cells;

    QStringList values() const;
};

/** A block of text behind a step. */
struct DocString
{
    Location location;
    QString delimiter; ///< three quotation marks or three backticks
    QString mediaType; ///< what stands behind the opening delimiter, such as "json"
    QStringList lines; ///< without the indentation of the opening delimiter
};

/** What a step's keyword says of it. */
enum class StepKind {
    Given,
    When,
    Then,
    Conjunction, ///< "And", "But": of the kind of the step before it
    Any,         ///< "*"
};

/** A step as it stands in the file. */
struct StepNode
{
    int id = 0;
    Location location;
    StepKind kind = StepKind::Any;
    QString keyword; ///< with the blank that belongs to it: "Given "
    QString text;
    std::optional<DocString> docString;
    QVector<TableRow> table; ///< rows of equal length; empty without a table
};

/** What a block of the file begins with: "Scenario Outline: many cups" and the lines below it. */
struct Block
{
    int id = 0;
    Location location;
    QString keyword; ///< without its colon
    QString title;
    /** The lines up to the first step, joined by line ends, with their indentation. */
    QString description;
};

/** The values that a scenario outline is run with. */
struct Examples : Block
{
    QVector<Tag> tags;
    std::optional<TableRow> header;
    QVector<TableRow> rows; ///< each as long as the header
};

/** A scenario; with examples it is an outline, whatever its keyword. */
struct Scenario : Block
{
    QVector<Tag> tags;
    QVector<StepNode> steps;
    QVector<Examples> examples;
};

/** Steps that are put in front of those of each scenario beside it. */
struct Background : Block
{
    QVector<StepNode> steps;
};

/** A group of scenarios inside a feature, with a background of its own. */
struct Rule : Block
{
    QVector<Tag> tags;
    std::optional<Background> background;
    QVector<Scenario> scenarios;
};

struct Feature : Block
{
    QString language = QStringLiteral("en");
    QVector<Tag> tags;
    std::optional<Background> background;
    QVector<Scenario> scenarios; ///< those outside rules, which come before the rules
    QVector<Rule> rules;
    QVector<Comment> comments; ///< of the whole file
    int idCount = 0;           ///< the ids of this tree are below it

    /** False for a file with nothing but comments and blank lines. */
    bool isPresent() const { return location.line > 0; }
};

/** What is wrong with a feature file, and where. */
struct ParseError
{
    Location location;
    QString message;
};

/** The names of the tags, with "@". */
GHERKIN_EXPORT QStringList tagNames(const QVector<Tag>& tags);

/**
 * Reads the text of a feature file. False if there is anything wrong with it: the errors, as many as one
 * pass finds (at most 50), are then added in the order of their lines, and `feature` holds what could be
 * read. A text without a feature is none with an error: see Feature::isPresent().
 *
 * "# language: de" in front of the feature chooses the keywords; see dialect.h.
 */
GHERKIN_EXPORT bool parseFeature(const QString& text, Feature& feature, QVector<ParseError>& errors);

} // namespace Gherkin
