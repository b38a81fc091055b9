#include "gherkin/dialect.h"

#include <QFile>
#include <QHash>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>

namespace Gherkin {

/** Makes dialects of the entries of languages.json. */
struct DialectReader
{
    static QHash<QString, Dialect> readAll()
    {
        QFile file(QStringLiteral(":/gherkin/languages.json"));
        const bool opened = file.open(QIODevice::ReadOnly);
        Q_ASSERT(opened);
        Q_UNUSED(opened)
        const QJsonObject all = QJsonDocument::fromJson(file.readAll()).object();
        QHash<QString, Dialect> dialects;
        for (auto entry = all.begin(); entry != all.end(); ++entry)
            dialects.insert(entry.key(), read(entry.key(), entry.value().toObject()));
        return dialects;
    }

private:
    static Dialect read(const QString& code, const QJsonObject& entry)
    {
        Dialect dialect;
        dialect.m_code = code;
        dialect.m_name = entry[QStringLiteral("name")].toString();
        dialect.m_nativeName = entry[QStringLiteral("native")].toString();
        readBlocks(entry, &dialect);
        readSteps(entry, &dialect);
        return dialect;
    }

    static void readBlocks(const QJsonObject& entry, Dialect* dialect)
    {
        static const struct
        {
            const char* key;
            BlockKind kind;
        } rows[] = {
            {"feature", BlockKind::Feature},
            {"background", BlockKind::Background},
            {"rule", BlockKind::Rule},
            {"scenario", BlockKind::Scenario},
            {"scenarioOutline", BlockKind::Scenario},
            {"examples", BlockKind::Examples},
        };
        for (const auto& row : rows) {
            for (const QJsonValue& word : entry[QLatin1String(row.key)].toArray())
                dialect->m_blocks.append({word.toString() + QLatin1Char(':'), row.kind});
        }
        sortByLength(&dialect->m_blocks);
    }

    static void readSteps(const QJsonObject& entry, Dialect* dialect)
    {
        static const struct
        {
            const char* key;
            StepKind kind;
        } rows[] = {
            {"given", StepKind::Given},     {"when", StepKind::When},       {"then", StepKind::Then},
            {"and", StepKind::Conjunction}, {"but", StepKind::Conjunction},
        };
        const QString star = QStringLiteral("* ");
        for (const auto& row : rows) {
            for (const QJsonValue& word : entry[QLatin1String(row.key)].toArray()) {
                const StepKind kind = word.toString() == star ? StepKind::Any : row.kind;
                dialect->m_steps.append({word.toString(), kind});
            }
        }
        sortByLength(&dialect->m_steps);
    }

    template <class Keyword>
    static void sortByLength(QVector<Keyword>* keywords)
    {
        std::stable_sort(keywords->begin(), keywords->end(),
                         [](const Keyword& a, const Keyword& b) { return a.text.size() > b.text.size(); });
    }
};

namespace {

const QHash<QString, Dialect>& allDialects()
{
    static const QHash<QString, Dialect> dialects = DialectReader::readAll();
    return dialects;
}

} // namespace

const Dialect* Dialect::find(const QString& code)
{
    const auto found = allDialects().constFind(code);
    return found == allDialects().constEnd() ? nullptr : &*found;
}

QStringList languages()
{
    QStringList codes = allDialects().keys();
    codes.sort();
    return codes;
}

} // namespace Gherkin
