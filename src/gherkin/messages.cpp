#include "gherkin/messages.h"

#include <QJsonArray>

namespace Gherkin {

namespace {

QJsonObject locationMessage(const Location& location)
{
    return {{QStringLiteral("line"), location.line}, {QStringLiteral("column"), location.column}};
}

/** Calls `message` for each element. */
template <class Elements, class Message>
QJsonArray arrayOf(const Elements& elements, Message message)
{
    QJsonArray array;
    for (const auto& element : elements)
        array.append(message(element));
    return array;
}

QString keywordType(StepKind kind)
{
    static const char* const names[] = {"Context", "Action", "Outcome", "Conjunction", "Unknown"};
    return QLatin1String(names[int(kind)]);
}

QString pickleStepType(StepType type)
{
    return keywordType(StepKind(type));
}

/** The messages of one feature's tree. */
class DocumentWriter
{
public:
    explicit DocumentWriter(const QString& idPrefix) : m_prefix(idPrefix) {}

    QJsonObject feature(const Feature& feature) const
    {
        QJsonObject message = block(feature);
        message.remove(QStringLiteral("id")); // features have none there
        message.insert(QStringLiteral("language"), feature.language);
        message.insert(QStringLiteral("tags"), tags(feature.tags));
        QJsonArray content = children(feature.background, feature.scenarios);
        for (const Rule& each : feature.rules)
            content.append(QJsonObject{{QStringLiteral("rule"), rule(each)}});
        message.insert(QStringLiteral("children"), content);
        return message;
    }

private:
    QString id(int node) const { return m_prefix + QString::number(node); }

    QJsonObject block(const Block& block) const
    {
        return {{QStringLiteral("id"), id(block.id)},
                {QStringLiteral("location"), locationMessage(block.location)},
                {QStringLiteral("keyword"), block.keyword},
                {QStringLiteral("name"), block.title},
                {QStringLiteral("description"), block.description}};
    }

    QJsonArray tags(const QVector<Tag>& tags) const
    {
        return arrayOf(tags, [this](const Tag& tag) {
            return QJsonObject{{QStringLiteral("id"), id(tag.id)},
                               {QStringLiteral("location"), locationMessage(tag.location)},
                               {QStringLiteral("name"), tag.name}};
        });
    }

    QJsonArray children(const std::optional<Background>& background, const QVector<Scenario>& scenarios) const
    {
        QJsonArray children;
        if (background) {
            QJsonObject message = block(*background);
            message.insert(QStringLiteral("steps"), steps(background->steps));
            children.append(QJsonObject{{QStringLiteral("background"), message}});
        }
        for (const Scenario& each : scenarios)
            children.append(QJsonObject{{QStringLiteral("scenario"), scenario(each)}});
        return children;
    }

    QJsonObject rule(const Rule& rule) const
    {
        QJsonObject message = block(rule);
        message.insert(QStringLiteral("tags"), tags(rule.tags));
        message.insert(QStringLiteral("children"), children(rule.background, rule.scenarios));
        return message;
    }

    QJsonObject scenario(const Scenario& scenario) const
    {
        QJsonObject message = block(scenario);
        message.insert(QStringLiteral("tags"), tags(scenario.tags));
        message.insert(QStringLiteral("steps"), steps(scenario.steps));
        message.insert(QStringLiteral("examples"),
                       arrayOf(scenario.examples, [this](const Examples& each) { return examples(each); }));
        return message;
    }

    QJsonObject examples(const Examples& examples) const
    {
        QJsonObject message = block(examples);
        message.insert(QStringLiteral("tags"), tags(examples.tags));
        if (examples.header)
            message.insert(QStringLiteral("tableHeader"), row(*examples.header));
        message.insert(QStringLiteral("tableBody"), rows(examples.rows));
        return message;
    }

    QJsonArray steps(const QVector<StepNode>& steps) const
    {
        return arrayOf(steps, [this](const StepNode& each) { return step(each); });
    }

    QJsonObject step(const StepNode& step) const
    {
        QJsonObject message{{QStringLiteral("id"), id(step.id)},
                            {QStringLiteral("location"), locationMessage(step.location)},
                            {QStringLiteral("keyword"), step.keyword},
                            {QStringLiteral("keywordType"), keywordType(step.kind)},
                            {QStringLiteral("text"), step.text}};
        if (step.docString)
            message.insert(QStringLiteral("docString"), docString(*step.docString));
        if (!step.table.isEmpty())
            message.insert(
                QStringLiteral("dataTable"),
                QJsonObject{{QStringLiteral("location"), locationMessage(step.table.first().location)},
                            {QStringLiteral("rows"), rows(step.table)}});
        return message;
    }

    static QJsonObject docString(const DocString& docString)
    {
        QJsonObject message{{QStringLiteral("location"), locationMessage(docString.location)},
                            {QStringLiteral("content"), docString.lines.join(QLatin1Char('\n'))},
                            {QStringLiteral("delimiter"), docString.delimiter}};
        if (!docString.mediaType.isEmpty())
            message.insert(QStringLiteral("mediaType"), docString.mediaType);
        return message;
    }

    QJsonArray rows(const QVector<TableRow>& rows) const
    {
        return arrayOf(rows, [this](const TableRow& each) { return row(each); });
    }

    QJsonObject row(const TableRow& row) const
    {
        return {{QStringLiteral("id"), id(row.id)},
                {QStringLiteral("location"), locationMessage(row.location)},
                {QStringLiteral("cells"), arrayOf(row.cells, [](const TableCell& cell) {
                     return QJsonObject{{QStringLiteral("location"), locationMessage(cell.location)},
                                        {QStringLiteral("value"), cell.value}};
                 })}};
    }

    QString m_prefix;
};

QJsonObject argumentMessage(const Step& step)
{
    QJsonObject argument;
    if (step.hasDocString) {
        QJsonObject docString{{QStringLiteral("content"), step.multiLineText.join(QLatin1Char('\n'))}};
        if (!step.mediaType.isEmpty())
            docString.insert(QStringLiteral("mediaType"), step.mediaType);
        argument.insert(QStringLiteral("docString"), docString);
    }
    if (!step.table.isEmpty()) {
        const QJsonArray rows = arrayOf(step.table, [](const QStringList& cells) {
            const auto cellMessage = [](const QString& cell) {
                return QJsonObject{{QStringLiteral("value"), cell}};
            };
            return QJsonObject{{QStringLiteral("cells"), arrayOf(cells, cellMessage)}};
        });
        argument.insert(QStringLiteral("dataTable"), QJsonObject{{QStringLiteral("rows"), rows}});
    }
    return argument;
}

} // namespace

QJsonObject gherkinDocumentMessage(const Feature& feature, const QString& uri, const QString& idPrefix)
{
    QJsonObject message{{QStringLiteral("uri"), uri},
                        {QStringLiteral("comments"), arrayOf(feature.comments, [](const Comment& comment) {
                             return QJsonObject{
                                 {QStringLiteral("location"), locationMessage(comment.location)},
                                 {QStringLiteral("text"), comment.text}};
                         })}};
    if (feature.isPresent())
        message.insert(QStringLiteral("feature"), DocumentWriter(idPrefix).feature(feature));
    return message;
}

QString pickleId(int pickleIndex, const QString& idPrefix)
{
    return QStringLiteral("%1p%2").arg(idPrefix).arg(pickleIndex);
}

QString pickleStepId(int pickleIndex, int stepIndex, const QString& idPrefix)
{
    return QStringLiteral("%1s%2").arg(pickleId(pickleIndex, idPrefix)).arg(stepIndex);
}

QJsonObject pickleMessage(const Pickle& pickle, int index, const QString& language, const QString& uri,
                          const QString& idPrefix)
{
    const auto nodeId = [&](int node) { return QJsonValue(idPrefix + QString::number(node)); };
    QJsonArray steps;
    for (int i = 0; i < pickle.steps.size(); ++i) {
        const Step& step = pickle.steps[i];
        QJsonObject message{{QStringLiteral("id"), pickleStepId(index, i, idPrefix)},
                            {QStringLiteral("astNodeIds"), arrayOf(step.nodes, nodeId)},
                            {QStringLiteral("type"), pickleStepType(step.type)},
                            {QStringLiteral("text"), step.text()}};
        const QJsonObject argument = argumentMessage(step);
        if (!argument.isEmpty())
            message.insert(QStringLiteral("argument"), argument);
        steps.append(message);
    }
    QJsonArray tags;
    for (int i = 0; i < pickle.tags.size(); ++i)
        tags.append(QJsonObject{{QStringLiteral("name"), pickle.tags[i]},
                                {QStringLiteral("astNodeId"), nodeId(pickle.tagNodes[i])}});
    return {{QStringLiteral("id"), pickleId(index, idPrefix)},
            {QStringLiteral("uri"), uri},
            {QStringLiteral("location"), locationMessage(pickle.location)},
            {QStringLiteral("name"), pickle.title},
            {QStringLiteral("language"), language},
            {QStringLiteral("astNodeIds"), arrayOf(pickle.nodes, nodeId)},
            {QStringLiteral("steps"), steps},
            {QStringLiteral("tags"), tags}};
}

} // namespace Gherkin
