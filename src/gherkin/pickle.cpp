#include "gherkin/pickle.h"

namespace Gherkin {

namespace {

/** The values of one row of examples. */
class Row
{
public:
    Row() = default;
    Row(const QStringList& names, const QStringList& values) : m_names(names), m_values(values) {}

    /** One pass, so that a value may hold what looks like a name. */
    QString fill(const QString& text) const
    {
        QString filled;
        int from = 0;
        for (int open = text.indexOf('<'); open >= 0 && !m_names.isEmpty(); open = text.indexOf('<', open)) {
            const int close = text.indexOf('>', open);
            const int index = close < 0 ? -1 : m_names.indexOf(text.mid(open + 1, close - open - 1));
            if (index < 0) {
                ++open;
                continue;
            }
            filled += text.midRef(from, open - from) + m_values[index];
            from = open = close + 1;
        }
        return filled + text.midRef(from);
    }

    Step fill(Step step) const
    {
        const QString keyword = step.lineText.left(step.textOffset);
        step.lineText = keyword + fill(step.text());
        for (QString& line : step.multiLineText)
            line = fill(line);
        for (QStringList& cells : step.table) {
            for (QString& cell : cells)
                cell = fill(cell);
        }
        return step;
    }

private:
    QStringList m_names;
    QStringList m_values;
};

class PickleCompiler
{
public:
    QVector<Pickle> compile(const Feature& feature)
    {
        add(feature.scenarios, feature.tags, feature.background.steps);
        for (const Rule& rule : feature.rules)
            add(rule.scenarios, feature.tags + rule.tags, feature.background.steps + rule.background.steps);
        return m_pickles;
    }

private:
    void add(const QVector<Scenario>& scenarios, const QStringList& tags, const QVector<Step>& background)
    {
        for (const Scenario& scenario : scenarios) {
            const QStringList allTags = tags + scenario.tags;
            if (!scenario.isOutline)
                add(scenario, allTags, background, Row(), scenario.line);
            for (const Examples& examples : scenario.examples) {
                for (int i = 0; i < examples.rows.size(); ++i)
                    add(scenario, allTags + examples.tags, background, Row(examples.header, examples.rows[i]),
                        examples.rowLines[i]);
            }
        }
    }

    void add(const Scenario& scenario, QStringList tags, const QVector<Step>& background, const Row& row,
             int line)
    {
        tags.removeDuplicates();
        Pickle pickle{row.fill(scenario.title), tags, {}, line};
        if (!scenario.steps.isEmpty())
            pickle.steps = background;
        for (const Step& step : scenario.steps)
            pickle.steps.append(row.fill(step));
        m_pickles.append(pickle);
    }

    QVector<Pickle> m_pickles;
};

} // namespace

QVector<Pickle> compilePickles(const Feature& feature)
{
    return PickleCompiler().compile(feature);
}

} // namespace Gherkin
