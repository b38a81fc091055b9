#include "engine/rewriting/errortexts.h"

#include <QRegularExpression>
#include <QStringList>

namespace KJS::Rewriting {

bool showsInsertion(const QString& text)
{
    static const QRegularExpression inserted(QStringLiteral("\\$t\\d*\\$"));
    return text.contains(QLatin1String("$t")) && text.contains(inserted);
}

QString cleanMessage(const QString& message, const EditMap* map, int line)
{
    // the ways in which the engine quotes code; the captures are pieces of it
    static const QRegularExpression quotes[] = {
        QRegularExpression(QStringLiteral(" \\(evaluating '(.*)'\\)"),
                           QRegularExpression::DotMatchesEverythingOption),
        QRegularExpression(QStringLiteral(" \\(near '(?:\\.\\.\\.)?(.*?)(?:\\.\\.\\.)?'\\)"),
                           QRegularExpression::DotMatchesEverythingOption),
        QRegularExpression(QStringLiteral(" \\(In '(.*)', '(.*)' is .*\\)"),
                           QRegularExpression::DotMatchesEverythingOption),
    };
    QString clean = message;
    for (const QRegularExpression& quote : quotes) {
        if (!showsInsertion(clean))
            return clean;
        const QRegularExpressionMatch match = quote.match(clean);
        for (int i = 1; i <= match.lastCapturedIndex(); ++i) {
            const QString piece = match.captured(i);
            const QString original = map && showsInsertion(piece) ? map->originalOf(piece, line) : QString();
            if (!original.trimmed().isEmpty())
                clean.replace(piece, original);
        }
        if (match.hasMatch() && showsInsertion(clean))
            clean.truncate(match.capturedStart(0));
    }
    return clean;
}

QString cleanStack(const QString& stack, const std::function<const EditMap*(const QString& url)>& mapOf)
{
    static const QRegularExpression place(QStringLiteral("^(.*?@)(.*):(\\d+):(\\d+)$"));
    QStringList clean;
    const QStringList lines = stack.split(QLatin1Char('\n'));
    for (const QString& line : lines) {
        if (line.contains(QLatin1Char('@') + QLatin1String(preludeUrl)) || showsInsertion(line))
            continue;
        const QRegularExpressionMatch match = place.match(line);
        const EditMap* map = match.hasMatch() ? mapOf(match.captured(2)) : nullptr;
        if (!map) {
            clean << line;
            continue;
        }
        const int offset = map->offsetOf(match.captured(3).toInt(), match.captured(4).toInt());
        const int column = map->originalColumn(map->originalOffset(offset));
        clean << match.captured(1) + match.captured(2) + QLatin1Char(':') + match.captured(3) +
                     QLatin1Char(':') + QString::number(column);
    }
    return clean.join(QLatin1Char('\n'));
}

} // namespace KJS::Rewriting
