#pragma once

#include <QString>

#include <vector>

namespace KJS::Rewriting {

/** Reads numbers that edits.js packed into a string, 15 bits a unit. */
std::vector<int> unpackNumbers(const QString& packed);

/** Leads from places of rewritten code back to the author's text. */
class EditMap
{
public:
    /** The code, its packed edits (RewrittenText::edits) and the text that it was made from. */
    EditMap(const QString& code, const QString& edits, const QString& original);

    /** The offset in the code of a place; lines and columns count from 1. -1 when there is none. */
    int offsetOf(int line, int column) const;
    /** The author's offset for an offset of the code; inside an insertion, where that was put. */
    int originalOffset(int offset) const;
    /** The column, from 1, of an author's offset. */
    int originalColumn(int originalOffset) const;

    /**
     * The author's text for a piece of the code that is looked for from a line on, then before it; a
     * null text when the piece does not occur.
     */
    QString originalOf(const QString& piece, int line) const;

private:
    struct Edit
    {
        int offset;   // in the code
        int original; // in the author's text
        int removed;
        int inserted;
    };
    QString m_code;
    QString m_original;
    std::vector<Edit> m_edits;
    std::vector<int> m_lines; // offset in the code of each line
};

} // namespace KJS::Rewriting
