#include "gherkin/dialect.h"
#include "gherkin/feature.h"
#include "gherkin/sourceline.h"

#include <QRegularExpression>

#include <algorithm>

namespace Gherkin {

namespace {

constexpr int maxErrors = 50;

/** What a line can be; several bits are what is expected at a place. */
enum LineKind {
    TagLine = 1 << 0,
    FeatureLine = 1 << 1,
    BackgroundLine = 1 << 2,
    RuleLine = 1 << 3,
    ScenarioLine = 1 << 4,
    ExamplesLine = 1 << 5,
    StepLine = 1 << 6,
    RowLine = 1 << 7,
    FenceLine = 1 << 8,
    TextLine = 1 << 9, ///< of a description
};
using LineKinds = unsigned;

/** In messages, in the order in which they are listed. */
const struct
{
    LineKind kind;
    const char* words;
} kindNames[] = {
    {StepLine, "a step"},
    {RowLine, "a table row"},
    {FenceLine, "a doc string"},
    {FeatureLine, "the feature"},
    {BackgroundLine, "a background"},
    {ExamplesLine, "examples"},
    {ScenarioLine, "a scenario"},
    {RuleLine, "a rule"},
    {TagLine, "tags"},
};

/** What the lines read last belong to. */
enum Place {
    Start,
    FeatureHead,
    RuleHead,
    BackgroundHead,
    BackgroundSteps,
    ScenarioHead,
    ScenarioSteps,
    ExamplesHead,
    ExamplesRows
};

LineKinds expectedAt(Place place)
{
    const LineKinds next = TagLine | ScenarioLine | RuleLine;
    switch (place) {
    case Start:
        return TagLine | FeatureLine;
    case FeatureHead:
    case RuleHead:
        return next | BackgroundLine | TextLine;
    case BackgroundHead:
        return next | StepLine | TextLine;
    case BackgroundSteps:
        return next | StepLine | RowLine | FenceLine;
    case ScenarioHead:
        return next | StepLine | ExamplesLine | TextLine;
    case ScenarioSteps:
        return next | StepLine | RowLine | FenceLine | ExamplesLine;
    case ExamplesHead:
        return next | RowLine | ExamplesLine | TextLine;
    case ExamplesRows:
        return next | RowLine | ExamplesLine;
    }
    return {};
}

LineKind lineKind(BlockKind block)
{
    switch (block) {
    case BlockKind::Feature:
        return FeatureLine;
    case BlockKind::Background:
        return BackgroundLine;
    case BlockKind::Rule:
        return RuleLine;
    case BlockKind::Scenario:
        return ScenarioLine;
    case BlockKind::Examples:
        return ExamplesLine;
    }
    return TextLine;
}

/** "a step, examples or tags" */
QString wordsFor(LineKinds kinds)
{
    QStringList words;
    for (const auto& row : kindNames) {
        if (kinds & row.kind)
            words += QLatin1String(row.words);
    }
    if (words.size() < 2)
        return words.join(QString());
    const QString last = words.takeLast();
    return QStringLiteral("%1 or %2").arg(words.join(QStringLiteral(", ")), last);
}

/** Reads a feature file line by line. One object reads one file. */
class FeatureParser
{
public:
    FeatureParser(const QString& text, Feature& feature, QVector<ParseError>& errors)
        : m_text(text)
        , m_feature(feature)
        , m_errors(errors)
        , m_dialect(Dialect::find(feature.language))
    {
    }

    void parse();

private:
    bool nextLine();
    void readLine();
    void readComment();
    void readTags();
    bool readBlock(LineKinds expected);
    bool readStep();
    void readRow();
    void readDocString(const QString& delimiter);
    void unexpected(LineKinds expected);
    void endDescription();

    void begin(Block* block, const Dialect::BlockKeyword& keyword);
    QVector<Tag> takeTags();
    QVector<Scenario>& scenarios();
    Scenario& scenario() { return scenarios().last(); }
    Examples& examples() { return scenario().examples.last(); }
    std::optional<Background>& background();
    QVector<StepNode>& steps();
    bool isInSteps() const { return m_place == BackgroundSteps || m_place == ScenarioSteps; }
    int newId() { return m_feature.idCount++; }
    void fail(const Location& location, const QString& message) { m_errors.append({location, message}); }

    const QString& m_text;
    int m_position = 0; ///< where the next line begins
    SourceLine m_line;
    Feature& m_feature;
    QVector<ParseError>& m_errors;
    const Dialect* m_dialect;
    bool m_hasLanguage = false; ///< it was chosen by a comment
    Place m_place = Start;
    bool m_startFailed = false; ///< something stood in front of the feature
    QVector<Tag> m_tags;        ///< of the block that follows
    Block* m_head = nullptr;    ///< whose description is being read
    QStringList m_description;  ///< its lines so far
};

void FeatureParser::parse()
{
    const int known = m_errors.size();
    while (m_errors.size() - known < maxErrors && nextLine()) {
        if (m_line.isEmpty()) {
            if (!m_description.isEmpty())
                m_description += m_line.raw();
        } else if (m_line.startsWith(QLatin1String("#"))) {
            readComment();
        } else {
            readLine();
        }
    }
    endDescription();
    if (!m_tags.isEmpty())
        fail(m_tags.last().location, QStringLiteral("tags at the end of the file belong to nothing"));
}

bool FeatureParser::nextLine()
{
    if (m_position > m_text.size())
        return false;
    int end = m_text.indexOf(QLatin1Char('\n'), m_position);
    if (end < 0)
        end = m_text.size();
    m_line = SourceLine(m_text.mid(m_position, end - m_position), m_line.number() + 1);
    m_position = end + 1;
    return true;
}

void FeatureParser::readComment()
{
    static const QRegularExpression form(QStringLiteral("^#\\s*language\\s*:\\s*([a-zA-Z_-]+)\\s*$"));
    const QRegularExpressionMatch match = m_place == Start && m_tags.isEmpty() && !m_hasLanguage
                                              ? form.match(m_line.text())
                                              : QRegularExpressionMatch();
    if (!match.hasMatch()) {
        m_feature.comments.append({{m_line.number(), 1}, m_line.raw()});
        return;
    }
    m_hasLanguage = true;
    const QString code = match.captured(1);
    if (const Dialect* dialect = Dialect::find(code)) {
        m_dialect = dialect;
        m_feature.language = code;
    } else {
        fail(m_line.location(), QStringLiteral("unknown language \"%1\"").arg(code));
    }
}

void FeatureParser::readLine()
{
    LineKinds expected = expectedAt(m_place);
    if (!m_tags.isEmpty())
        expected &= TagLine | FeatureLine | ScenarioLine | RuleLine | ExamplesLine;
    if (m_line.startsWith(QLatin1String("@")))
        readTags();
    else if (readBlock(expected))
        return;
    else if ((expected & StepLine) && readStep())
        return;
    else if ((expected & RowLine) && m_line.startsWith(QLatin1String("|")))
        readRow();
    else if ((expected & FenceLine) && m_line.startsWith(QLatin1String("\"\"\"")))
        readDocString(QStringLiteral("\"\"\""));
    else if ((expected & FenceLine) && m_line.startsWith(QLatin1String("```")))
        readDocString(QStringLiteral("```"));
    else if (expected & TextLine)
        m_description += m_line.raw();
    else
        unexpected(expected);
}

void FeatureParser::unexpected(LineKinds expected)
{
    // A background that comes too late, or twice, is a fault of its own.
    for (const Dialect::BlockKeyword& keyword : m_dialect->blockKeywords()) {
        if (keyword.kind == BlockKind::Background && m_line.startsWith(keyword.text)) {
            fail(m_line.location(), m_tags.isEmpty()
                                        ? QStringLiteral("a background stands once, before the scenarios")
                                        : QStringLiteral("a background cannot have tags"));
            m_tags.clear();
            return;
        }
    }
    // Without a feature every line is unexpected: the first says enough.
    const bool isTold = m_place == Start && m_startFailed;
    m_startFailed = true;
    if (isTold)
        return;
    fail(m_line.location(),
         QStringLiteral("expected %1, found \"%2\"").arg(wordsFor(expected), m_line.text()));
}

void FeatureParser::endDescription()
{
    while (!m_description.isEmpty() && m_description.last().trimmed().isEmpty())
        m_description.removeLast();
    if (m_head)
        m_head->description = m_description.join(QLatin1Char('\n'));
    m_description.clear();
    m_head = nullptr;
}

void FeatureParser::readTags()
{
    endDescription();
    const QString& text = m_line.text();
    static const QRegularExpression comment(QStringLiteral("\\s#"));
    const int found = text.indexOf(comment);
    const int end = found < 0 ? text.size() : found;
    for (int at = 0; at < end;) {
        int next = text.indexOf(QLatin1Char('@'), at + 1);
        if (next < 0 || next > end)
            next = end;
        const QString name = text.mid(at, next - at).trimmed();
        if (name.size() < 2)
            fail(m_line.location(at), QStringLiteral("a tag without a name"));
        else if (std::any_of(name.begin(), name.end(), [](QChar c) { return c.isSpace(); }))
            fail(m_line.location(at), QStringLiteral("the tag \"%1\" contains a blank").arg(name));
        else
            m_tags.append({newId(), m_line.location(at), name});
        at = next;
    }
}

bool FeatureParser::readBlock(LineKinds expected)
{
    for (const Dialect::BlockKeyword& keyword : m_dialect->blockKeywords()) {
        if (!(expected & lineKind(keyword.kind)) || !m_line.startsWith(keyword.text))
            continue;
        endDescription();
        switch (keyword.kind) {
        case BlockKind::Feature:
            begin(&m_feature, keyword);
            m_feature.tags = takeTags();
            m_place = FeatureHead;
            break;
        case BlockKind::Rule:
            m_feature.rules.append(Rule());
            begin(&m_feature.rules.last(), keyword);
            m_feature.rules.last().tags = takeTags();
            m_place = RuleHead;
            break;
        case BlockKind::Background:
            background().emplace();
            begin(&*background(), keyword);
            m_place = BackgroundHead;
            break;
        case BlockKind::Scenario:
            scenarios().append(Scenario());
            begin(&scenario(), keyword);
            scenario().tags = takeTags();
            m_place = ScenarioHead;
            break;
        case BlockKind::Examples:
            scenario().examples.append(Examples());
            begin(&examples(), keyword);
            examples().tags = takeTags();
            m_place = ExamplesHead;
            break;
        }
        return true;
    }
    return false;
}

void FeatureParser::begin(Block* block, const Dialect::BlockKeyword& keyword)
{
    block->id = newId();
    block->location = m_line.location();
    block->keyword = keyword.text.chopped(1);
    block->title = m_line.rest(keyword.text.size());
    m_head = block;
}

QVector<Tag> FeatureParser::takeTags()
{
    QVector<Tag> tags;
    tags.swap(m_tags);
    return tags;
}

QVector<Scenario>& FeatureParser::scenarios()
{
    return m_feature.rules.isEmpty() ? m_feature.scenarios : m_feature.rules.last().scenarios;
}

std::optional<Background>& FeatureParser::background()
{
    return m_feature.rules.isEmpty() ? m_feature.background : m_feature.rules.last().background;
}

QVector<StepNode>& FeatureParser::steps()
{
    const bool inBackground = m_place == BackgroundHead || m_place == BackgroundSteps;
    return inBackground ? background()->steps : scenario().steps;
}

bool FeatureParser::readStep()
{
    for (const Dialect::StepKeyword& keyword : m_dialect->stepKeywords()) {
        // A step may also consist of its keyword alone, whose blank was trimmed.
        if (!m_line.startsWith(keyword.text) && m_line.text() != keyword.text.trimmed())
            continue;
        endDescription();
        StepNode step;
        step.id = newId();
        step.location = m_line.location();
        step.kind = keyword.kind;
        step.keyword = keyword.text;
        step.text = m_line.rest(keyword.text.size());
        steps().append(step);
        if (m_place == BackgroundHead)
            m_place = BackgroundSteps;
        else if (m_place == ScenarioHead)
            m_place = ScenarioSteps;
        return true;
    }
    return false;
}

void FeatureParser::readRow()
{
    endDescription();
    const TableRow row{newId(), m_line.location(), m_line.cells()};
    const TableRow* first = nullptr;
    if (isInSteps())
        first = steps().last().table.isEmpty() ? nullptr : &steps().last().table.first();
    else if (m_place == ExamplesRows)
        first = &*examples().header;
    const bool isSecondTable = isInSteps() && first && steps().last().docString &&
                               steps().last().docString->location.line > first->location.line;
    if (row.cells.isEmpty()) {
        fail(row.location, QStringLiteral("a table row without a cell: it ends with \"|\""));
    } else if (isSecondTable) {
        fail(row.location, QStringLiteral("a second table for the same step"));
    } else if (first && row.cells.size() != first->cells.size()) {
        fail(row.location, QStringLiteral("the row has %1 cells where the first row of the table has %2")
                               .arg(row.cells.size())
                               .arg(first->cells.size()));
    } else if (isInSteps()) {
        steps().last().table.append(row);
    } else if (first) {
        examples().rows.append(row);
    } else {
        examples().header = row;
        m_place = ExamplesRows;
    }
}

/** Reads on to the line that closes the doc string. Its lines lose the indentation of the opening one. */
void FeatureParser::readDocString(const QString& delimiter)
{
    const Location opening = m_line.location();
    const int indentation = m_line.indentation();
    DocString docString{opening, delimiter, m_line.rest(delimiter.size()), {}};
    QString escaped;
    for (const QChar c : delimiter)
        escaped += QLatin1Char('\\') + QString(c);
    while (nextLine()) {
        if (m_line.startsWith(delimiter)) {
            StepNode& step = steps().last();
            if (step.docString)
                fail(opening, QStringLiteral("a second doc string for the same step"));
            else
                step.docString = docString;
            return;
        }
        const int blanks = qMin(indentation, m_line.indentation());
        docString.lines += m_line.raw().mid(blanks).replace(escaped, delimiter);
    }
    fail(opening, QStringLiteral("the doc string is not closed by %1").arg(delimiter));
}

} // namespace

QStringList TableRow::values() const
{
    QStringList values;
    values.reserve(cells.size());
    for (const TableCell& cell : cells)
        values += cell.value;
    return values;
}

QStringList tagNames(const QVector<Tag>& tags)
{
    QStringList names;
    for (const Tag& tag : tags)
        names += tag.name;
    return names;
}

bool parseFeature(const QString& text, Feature& feature, QVector<ParseError>& errors)
{
    const int before = errors.size();
    feature = Feature();
    const QString withoutMark = text.startsWith(QChar(QChar::ByteOrderMark)) ? text.mid(1) : text;
    FeatureParser(withoutMark, feature, errors).parse();
    return errors.size() == before;
}

} // namespace Gherkin
