#include "gherkin/feature.h"
#include "gherkin/keywords.h"

#include <QRegularExpression>

namespace Gherkin {

namespace {

/** Reads a feature file line by line. One object reads one file. */
class FeatureParser
{
public:
    FeatureParser(const QString& text, Feature& feature, QVector<ParseError>& errors)
        : m_lines(text.split('\n'))
        , m_feature(feature)
        , m_errors(errors)
    {
    }

    void parse();

private:
    /** What the lines that follow belong to. */
    enum Place { BeforeFeature, InFeature, InRule, InBackground, InScenario, InExamples };

    void readLine(const QString& line);
    void readTags(const QString& line);
    void readBlock(const KeywordMatch& match, const QString& line);
    void readStep(const KeywordMatch& match, const QString& line);
    void readTableRow(const QString& line);
    void readTextBlock(const QString& delimiter);
    void readDescription(const QString& line);
    void readLanguage(const QString& comment);
    void addBackground(const QString& title);
    void addScenario(const QString& title, bool isOutline);
    void addExamples(const QString& title);
    void checkEnd();

    QVector<Scenario>& scenarios()
    {
        return m_feature.rules.isEmpty() ? m_feature.scenarios : m_feature.rules.last().scenarios;
    }
    Background& background()
    {
        return m_feature.rules.isEmpty() ? m_feature.background : m_feature.rules.last().background;
    }
    /** The step that a table or a text block belongs to; null if there is none. */
    Step* lastStep();
    void fail(const QString& message) { m_errors.append({m_number, message}); }

    const QStringList m_lines;
    int m_number = 0; // of the current line, from 1
    Feature& m_feature;
    QVector<ParseError>& m_errors;
    Place m_place = BeforeFeature;
    QStringList m_tags;
    int m_tagLine = 0;
    bool m_descriptionEnded = true;
};

void FeatureParser::parse()
{
    while (m_number < m_lines.size()) {
        const QString line = m_lines[m_number++].trimmed();
        if (line.isEmpty())
            continue;
        if (line.startsWith('#')) {
            if (m_place == BeforeFeature && m_tags.isEmpty())
                readLanguage(line);
            continue;
        }
        readLine(line);
    }
    checkEnd();
}

void FeatureParser::readLine(const QString& line)
{
    KeywordMatch match;
    if (line.startsWith('@'))
        readTags(line);
    else if (findKeyword(m_feature.language, line, match))
        isStep(match.keyword) ? readStep(match, line) : readBlock(match, line);
    else if (line.startsWith('|'))
        readTableRow(line);
    else if (line.startsWith(QLatin1String("\"\"\"")) || line.startsWith(QLatin1String("```")))
        readTextBlock(line.left(3));
    else
        readDescription(line);
}

void FeatureParser::readLanguage(const QString& comment)
{
    static const QRegularExpression form(QStringLiteral("^#\\s*language\\s*:\\s*([a-zA-Z_-]+)\\s*$"));
    const QRegularExpressionMatch match = form.match(comment);
    if (!match.hasMatch())
        return; // an ordinary comment
    const QString language = match.captured(1);
    if (isKnownLanguage(language))
        m_feature.language = language;
    else
        fail(QStringLiteral("unknown language \"%1\"; known are %2").arg(language, languages().join(", ")));
}

void FeatureParser::readTags(const QString& line)
{
    static const QRegularExpression blanks(QStringLiteral("\\s+"));
    m_tagLine = m_number;
    for (const QString& tag : line.split(blanks, Qt::SkipEmptyParts)) {
        if (tag.startsWith('#'))
            break;
        if (tag.size() < 2 || !tag.startsWith('@'))
            fail(QStringLiteral("\"%1\" is no tag").arg(tag));
        else
            m_tags += tag;
    }
}

void FeatureParser::readBlock(const KeywordMatch& match, const QString& line)
{
    const QString title = line.mid(match.length).trimmed();
    if ((m_place == BeforeFeature) != (match.keyword == Keyword::Feature)) {
        fail(m_place == BeforeFeature ? QStringLiteral("\"%1\" before the feature").arg(line)
                                      : QStringLiteral("a second feature in the same file"));
        return;
    }
    m_descriptionEnded = false;
    switch (match.keyword) {
    case Keyword::Feature:
        m_feature.title = title;
        m_feature.line = m_number;
        m_feature.tags = m_tags;
        m_place = InFeature;
        break;
    case Keyword::Rule: {
        Rule rule;
        rule.title = title;
        rule.line = m_number;
        rule.tags = m_tags;
        m_feature.rules.append(rule);
        m_place = InRule;
        break;
    }
    case Keyword::Background:
        addBackground(title);
        break;
    case Keyword::Examples:
        addExamples(title);
        break;
    default:
        addScenario(title, match.keyword == Keyword::Outline);
    }
    m_tags.clear();
}

void FeatureParser::addBackground(const QString& title)
{
    if (!m_tags.isEmpty())
        fail(QStringLiteral("a background cannot have tags"));
    if (background().line > 0)
        fail(QStringLiteral("a second background"));
    else if (!scenarios().isEmpty())
        fail(QStringLiteral("the background has to come before the scenarios"));
    background().title = title;
    background().line = m_number;
    m_place = InBackground;
}

void FeatureParser::addScenario(const QString& title, bool isOutline)
{
    Scenario scenario;
    scenario.title = title;
    scenario.line = m_number;
    scenario.tags = m_tags;
    scenario.isOutline = isOutline;
    scenarios().append(scenario);
    m_place = InScenario;
}

void FeatureParser::addExamples(const QString& title)
{
    if (m_place != InScenario && m_place != InExamples) {
        fail(QStringLiteral("examples outside a scenario"));
        return;
    }
    Examples examples;
    examples.title = title;
    examples.line = m_number;
    examples.tags = m_tags;
    scenarios().last().examples.append(examples);
    scenarios().last().isOutline = true;
    m_place = InExamples;
}

void FeatureParser::readStep(const KeywordMatch& match, const QString& line)
{
    if (m_place != InBackground && m_place != InScenario) {
        // Free text may begin like a step.
        if ((m_place == InFeature || m_place == InRule) && !m_descriptionEnded)
            readDescription(line);
        else
            fail(QStringLiteral("the step \"%1\" belongs to no scenario").arg(line));
        return;
    }
    QVector<Step>& steps = m_place == InBackground ? background().steps : scenarios().last().steps;
    Step step;
    step.lineText = line;
    step.textOffset = qMin(match.length, line.size());
    while (step.textOffset < line.size() && line[step.textOffset].isSpace())
        ++step.textOffset;
    step.line = m_number;
    if (match.keyword == Keyword::And)
        step.type = steps.isEmpty() ? Given : steps.last().type;
    else
        step.type = StepType(int(match.keyword) - int(Keyword::Given));
    steps.append(step);
    m_descriptionEnded = true;
}

Step* FeatureParser::lastStep()
{
    QVector<Step>* steps = nullptr;
    if (m_place == InBackground)
        steps = &background().steps;
    else if (m_place == InScenario)
        steps = &scenarios().last().steps;
    return steps && !steps->isEmpty() ? &steps->last() : nullptr;
}

/** The cells of a row. A backslash makes '|' and itself ordinary characters, and "\n" a line end. */
QStringList cellsOf(const QString& line)
{
    QStringList cells;
    QString cell;
    for (int i = 1; i < line.size(); ++i) {
        const QChar next = i + 1 < line.size() ? line[i + 1] : QChar();
        if (line[i] == '\\' && (next == '|' || next == '\\' || next == 'n')) {
            cell += next == 'n' ? QChar('\n') : next;
            ++i;
        } else if (line[i] == '|') {
            int first = 0;
            int end = cell.size();
            while (first < end && cell[first] != '\n' && cell[first].isSpace())
                ++first;
            while (end > first && cell[end - 1] != '\n' && cell[end - 1].isSpace())
                --end;
            cells += cell.mid(first, end - first);
            cell.clear();
        } else {
            cell += line[i];
        }
    }
    return cells;
}

void FeatureParser::readTableRow(const QString& line)
{
    const QStringList cells = cellsOf(line);
    if (!line.endsWith('|') || line.size() < 2) {
        fail(QStringLiteral("the row \"%1\" does not end with \"|\"").arg(line));
        return;
    }
    const QString uneven = QStringLiteral("the row has %1 cells where the first row of the table has %2");
    if (m_place == InExamples) {
        Examples& examples = scenarios().last().examples.last();
        m_descriptionEnded = true;
        if (examples.header.isEmpty()) {
            examples.header = cells;
        } else if (cells.size() != examples.header.size()) {
            fail(uneven.arg(cells.size()).arg(examples.header.size()));
        } else {
            examples.rows.append(cells);
            examples.rowLines.append(m_number);
        }
    } else if (Step* step = lastStep()) {
        if (!step->table.isEmpty() && cells.size() != step->table.first().size())
            fail(uneven.arg(cells.size()).arg(step->table.first().size()));
        else
            step->table.append(cells);
    } else {
        fail(QStringLiteral("the row \"%1\" belongs to no step").arg(line));
    }
}

/** Reads on to the line that closes the block. Its lines lose the indentation of the opening one. */
void FeatureParser::readTextBlock(const QString& delimiter)
{
    const int opening = m_number;
    const int indentation = m_lines[opening - 1].indexOf(delimiter);
    const QString escaped =
        delimiter[0] == '"' ? QStringLiteral("\\\"\\\"\\\"") : QStringLiteral("\\`\\`\\`");
    QStringList block;
    while (m_number < m_lines.size()) {
        QString line = m_lines[m_number++];
        if (line.trimmed() == delimiter) {
            Step* step = lastStep();
            if (step && step->multiLineText.isEmpty())
                step->multiLineText = block;
            else
                m_errors.append({opening, step ? QStringLiteral("a second text block for the same step")
                                               : QStringLiteral("the text block belongs to no step")});
            return;
        }
        int begin = 0;
        while (begin < indentation && begin < line.size() && line[begin].isSpace())
            ++begin;
        if (line.endsWith('\r'))
            line.chop(1);
        block += line.mid(begin).replace(escaped, delimiter);
    }
    m_errors.append({opening, QStringLiteral("the text block is not closed by %1").arg(delimiter)});
}

void FeatureParser::readDescription(const QString& line)
{
    if (m_place == BeforeFeature || m_descriptionEnded || !m_tags.isEmpty()) {
        fail(QStringLiteral("\"%1\" is neither a keyword nor part of a description").arg(line));
        return;
    }
    QString unused;
    QString* description = &unused; // examples keep none
    if (m_place == InFeature)
        description = &m_feature.description;
    else if (m_place == InRule)
        description = &m_feature.rules.last().description;
    else if (m_place == InBackground)
        description = &background().description;
    else if (m_place == InScenario)
        description = &scenarios().last().description;
    if (!description->isEmpty())
        *description += '\n';
    *description += line;
}

void FeatureParser::checkEnd()
{
    if (!m_tags.isEmpty())
        m_errors.append({m_tagLine, QStringLiteral("tags at the end of the file belong to nothing")});
}

} // namespace

bool parseFeature(const QString& text, Feature& feature, QVector<ParseError>& errors)
{
    const int before = errors.size();
    feature = Feature();
    FeatureParser(text.startsWith(QChar(0xfeff)) ? text.mid(1) : text, feature, errors).parse();
    return errors.size() == before;
}

} // namespace Gherkin
