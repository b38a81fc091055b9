#include "testsupport/screen/textrecognition.h"

#include "testsupport/externaltool.h"
#include "testsupport/screen/screenshots.h"

#include <QTemporaryDir>

namespace Torvix {

namespace {

constexpr int recognitionTimeoutMs = 60'000;
/** Letters of a user interface are smaller than those that the program was trained on. */
constexpr int enlargement = 3;

/** Columns of tesseract's table. */
enum Column {
    LevelColumn,
    BlockColumn = 2,
    ParagraphColumn,
    LineColumn,
    LeftColumn = 6,
    TopColumn,
    WidthColumn,
    HeightColumn,
    TextColumn = 11,
    ColumnCount
};
constexpr int wordLevel = 5;

RecognizedText readTable(const QByteArray& table)
{
    RecognizedText found;
    QString lastLine;
    int line = -1;
    for (const QByteArray& row : table.split('\n')) {
        const QStringList cells = QString::fromUtf8(row).split(QLatin1Char('\t'));
        if (cells.size() < ColumnCount || cells[LevelColumn].toInt() != wordLevel ||
            cells[TextColumn].trimmed().isEmpty())
            continue;
        const QString place = cells.mid(BlockColumn, LineColumn - BlockColumn + 1).join(QLatin1Char('/'));
        if (place != lastLine)
            ++line;
        lastLine = place;
        found.words.append(
            {cells[TextColumn].trimmed(),
             QRect(cells[LeftColumn].toInt() / enlargement, cells[TopColumn].toInt() / enlargement,
                   cells[WidthColumn].toInt() / enlargement, cells[HeightColumn].toInt() / enlargement),
             line});
    }
    return found;
}

} // namespace

QVector<RecognizedLine> RecognizedText::lines() const
{
    QVector<RecognizedLine> all;
    for (int i = 0; i < words.size(); ++i) {
        if (i == 0 || words[i].line != words[i - 1].line)
            all.append(RecognizedLine());
        RecognizedLine& line = all.last();
        line.text += (line.text.isEmpty() ? QString() : QStringLiteral(" ")) + words[i].text;
        line.place |= words[i].place;
    }
    return all;
}

QString RecognizedText::text() const
{
    QStringList texts;
    for (const RecognizedLine& line : lines())
        texts += line.text;
    return texts.join(QLatin1Char('\n'));
}

QVector<QRect> RecognizedText::find(const QString& wanted, Qt::CaseSensitivity caseSensitivity) const
{
    const QString searched = wanted.simplified();
    QVector<QRect> places;
    if (searched.isEmpty())
        return places;
    // All words in a row, with the word that each character belongs to.
    QString row;
    QVector<int> wordAt;
    for (int i = 0; i < words.size(); ++i) {
        const QString piece = i > 0 ? QLatin1Char(' ') + words[i].text : words[i].text;
        row += piece;
        wordAt += QVector<int>(piece.size(), i);
    }
    for (int at = row.indexOf(searched, 0, caseSensitivity); at >= 0;
         at = row.indexOf(searched, at + searched.size(), caseSensitivity)) {
        QRect place;
        for (int i = wordAt[at]; i <= wordAt[at + searched.size() - 1]; ++i)
            place |= words[i].place;
        places.append(place);
    }
    return places;
}

RecognizedText recognizeText(const QImage& image, const QString& language)
{
    RecognizedText found;
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("picture.png"));
    const QImage enlarged =
        image.convertToFormat(QImage::Format_RGB32)
            .scaled(image.size() * enlargement, Qt::IgnoreAspectRatio, Qt::SmoothTransformation)
            .convertToFormat(QImage::Format_Grayscale8);
    if (!savePng(enlarged, path, &found.error))
        return found;
    // Sparse text: a user interface has words here and there, not columns of prose.
    const ToolResult table = runTool(
        {QStringLiteral("tesseract"), QStringLiteral("tesseract-ocr"), QStringLiteral("Text recognition")},
        {path, QStringLiteral("stdout"), QStringLiteral("-l"), language, QStringLiteral("--psm"),
         QStringLiteral("11"), QStringLiteral("tsv")},
        recognitionTimeoutMs);
    if (table.error.isEmpty())
        return readTable(table.output);
    found.error = table.error;
    return found;
}

} // namespace Torvix
