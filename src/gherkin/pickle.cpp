#include "gherkin/pickle.h"

namespace Gherkin {

namespace {

/** The values of one row of examples. */
class Row
{
public:
    Row() = default;
    Row(const TableRow& header, const TableRow& row)
        : m_names(header.values())
        , m_values(row.values())
        , m_nodes{row.id}
    {
    }

    /** One pass, so that a value may hold what looks like a name. */
    QString fill(const QString& text) const
    {
        if (m_names.isEmpty())
            return text;
        QString filled;
        int from = 0;
        for (int open = text.indexOf(QLatin1Char('<')); open >= 0;
             open = text.indexOf(QLatin1Char('<'), open)) {
            const int close = text.indexOf(QLatin1Char('>'), open);
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

    QStringList fill(QStringList texts) const
    {
        for (QString& text : texts)
            text = fill(text);
        return texts;
    }

    /** The id of the row; none without examples. */
    const QVector<int>& nodes() const { return m_nodes; }

private:
    QStringList m_names;
    QStringList m_values;
    QVector<int> m_nodes;
};

/** The steps of one pickle, each with the type that its keyword and those before it give. */
class StepList
{
public:
    void add(const QVector<StepNode>& nodes, const Row& row)
    {
        for (const StepNode& node : nodes)
            m_steps.append(step(node, row));
    }

    QVector<Step> take() { return std::move(m_steps); }

private:
    Step step(const StepNode& node, const Row& row)
    {
        if (node.kind <= StepKind::Then)
            m_type = StepType(node.kind);
        Step step;
        step.type = m_type;
        step.lineText = node.keyword + row.fill(node.text);
        step.textOffset = node.keyword.size();
        step.location = node.location;
        step.nodes = QVector<int>{node.id} + row.nodes();
        if (node.docString) {
            step.hasDocString = true;
            step.mediaType = row.fill(node.docString->mediaType);
            step.multiLineText = row.fill(node.docString->lines);
        }
        for (const TableRow& cells : node.table)
            step.table.append(row.fill(cells.values()));
        return step;
    }

    StepType m_type = Given;
    QVector<Step> m_steps;
};

class PickleCompiler
{
public:
    QVector<Pickle> compile(const Feature& feature)
    {
        QVector<StepNode> background = stepsOf(feature.background);
        add(feature.scenarios, feature.tags, background, -1);
        for (int i = 0; i < feature.rules.size(); ++i) {
            const Rule& rule = feature.rules[i];
            add(rule.scenarios, feature.tags + rule.tags, background + stepsOf(rule.background), i);
        }
        return m_pickles;
    }

private:
    static QVector<StepNode> stepsOf(const std::optional<Background>& background)
    {
        return background ? background->steps : QVector<StepNode>();
    }

    void add(const QVector<Scenario>& scenarios, const QVector<Tag>& tags,
             const QVector<StepNode>& background, int rule)
    {
        for (const Scenario& scenario : scenarios) {
            const QVector<Tag> allTags = tags + scenario.tags;
            if (scenario.examples.isEmpty())
                add(scenario, allTags, background, rule, Row(), scenario.location);
            for (const Examples& examples : scenario.examples) {
                for (const TableRow& row : examples.rows)
                    add(scenario, allTags + examples.tags, background, rule, Row(*examples.header, row),
                        row.location);
            }
        }
    }

    void add(const Scenario& scenario, const QVector<Tag>& tags, const QVector<StepNode>& background,
             int rule, const Row& row, const Location& location)
    {
        Pickle pickle;
        pickle.title = row.fill(scenario.title);
        pickle.location = location;
        pickle.scenarioLine = scenario.location.line;
        pickle.rule = rule;
        pickle.nodes = QVector<int>{scenario.id} + row.nodes();
        for (const Tag& tag : tags) {
            pickle.tags += tag.name;
            pickle.tagNodes += tag.id;
        }
        StepList steps;
        if (!scenario.steps.isEmpty())
            steps.add(background, Row());
        steps.add(scenario.steps, row);
        pickle.steps = steps.take();
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
