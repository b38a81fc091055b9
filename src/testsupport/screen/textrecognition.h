#pragma once

#include "testsupport/export.h"

#include <QImage>
#include <QRect>
#include <QString>
#include <QVector>

namespace Torvix {

/** A word that was read, and where. */
struct RecognizedWord
{
    QString text;
    QRect place;  ///< in pixels of the picture
    int line = 0; ///< words with the same number stand on one line
};

struct RecognizedLine
{
    QString text;
    QRect place; ///< around its words
};

/** The words of a picture in reading order. */
struct RecognizedText
{
    QVector<RecognizedWord> words;
    QString error; ///< why it could not be read; names the package when the program is absent

    /** Lines, with one blank between words. */
    QString text() const;
    QVector<RecognizedLine> lines() const;
    /** Where a text of one or several words in a row stands; white space in it counts as one blank. */
    QVector<QRect> find(const QString& wanted, Qt::CaseSensitivity caseSensitivity) const;
};

/**
 * Reads the text in a picture with the program `tesseract`.
 * @param language as tesseract names it: "eng", "deu+eng"
 */
TORVIXTEST_EXPORT RecognizedText recognizeText(const QImage& image, const QString& language);

} // namespace Torvix
