#pragma once

#include "gherkin/export.h"
#include "gherkin/feature.h"

#include <QString>
#include <QStringList>
#include <QVector>

namespace Gherkin {

/** What a block of a feature file can be. */
enum class BlockKind { Feature, Background, Rule, Scenario, Examples };

/** The keywords of a spoken language. They come from languages.json, which names about 80 languages. */
class GHERKIN_EXPORT Dialect
{
public:
    struct BlockKeyword
    {
        QString text; ///< with its colon
        BlockKind kind;
    };
    struct StepKeyword
    {
        QString text; ///< with the blank that belongs to it, if one does
        StepKind kind;
    };

    /** Null for a language that is not known. What it gives lives as long as the process. */
    static const Dialect* find(const QString& code);

    QString code() const { return m_code; }
    QString name() const { return m_name; }
    QString nativeName() const { return m_nativeName; }
    /** The longest first, so that the first that a line begins with is the one. */
    const QVector<BlockKeyword>& blockKeywords() const { return m_blocks; }
    const QVector<StepKeyword>& stepKeywords() const { return m_steps; }

private:
    friend struct DialectReader;

    QString m_code;
    QString m_name;
    QString m_nativeName;
    QVector<BlockKeyword> m_blocks;
    QVector<StepKeyword> m_steps;
};

/** The codes of all languages, such as "en", sorted. */
GHERKIN_EXPORT QStringList languages();

} // namespace Gherkin
