#pragma once

#include "gherkin/feature.h"

#include <QString>
#include <QVector>

namespace Gherkin {

/** A line of a feature file. */
class SourceLine
{
public:
    SourceLine() = default;
    SourceLine(const QString& raw, int number);

    const QString& raw() const { return m_raw; }
    /** Without the blanks in front and behind. */
    const QString& text() const { return m_text; }
    bool startsWith(QLatin1String prefix) const { return m_text.startsWith(prefix); }
    bool startsWith(const QString& prefix) const { return m_text.startsWith(prefix); }
    bool isEmpty() const { return m_text.isEmpty(); }
    int number() const { return m_number; }
    /** Blanks in front of the text, in UTF-16 code units. */
    int indentation() const { return m_indentation; }
    /** What stands behind so many characters of the text, without blanks around it. */
    QString rest(int length) const { return m_text.mid(length).trimmed(); }
    /** The place of a character of the text. */
    Location location(int offset = 0) const;

    /**
     * The cells of a table's row: what stands between two bars, without blanks around it. In a cell, "\|"
     * stands for a bar, "\\" for a backslash and "\n" for a line end. What is behind the last bar is not
     * part of the row.
     */
    QVector<TableCell> cells() const;

private:
    TableCell cell(const QString& content, int offset) const;

    QString m_raw;
    QString m_text;
    int m_number = 0;
    int m_indentation = 0;
};

} // namespace Gherkin
