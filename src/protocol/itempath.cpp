#include "protocol/itempath.h"

namespace Torvix::Protocol {

QStringList splitItemPath(const QString& path)
{
    const QString ellipsis = QStringLiteral("...");
    QStringList texts{QString()};
    for (int i = 0; i < path.size(); ++i) {
        const QChar next = i + 1 < path.size() ? path.at(i + 1) : QChar();
        if (path.at(i) == QLatin1Char('\\') && (next == QLatin1Char('.') || next == QLatin1Char('\\'))) {
            texts.last().append(path.at(++i));
        } else if (path.midRef(i, ellipsis.size()) == ellipsis) {
            texts.last().append(ellipsis);
            i += ellipsis.size() - 1;
        } else if (path.at(i) == QLatin1Char('.')) {
            texts.append(QString());
        } else {
            texts.last().append(path.at(i));
        }
    }
    return texts;
}

static QString escaped(const QString& text)
{
    QString result;
    for (int i = 0; i < text.size();) {
        int dots = 0;
        while (i + dots < text.size() && text.at(i + dots) == QLatin1Char('.'))
            ++dots;
        // At the beginning an ellipsis could be taken for the end of the text before.
        if (dots == 3 && i > 0)
            result += QLatin1String("...");
        else if (dots > 0)
            result += QStringLiteral("\\.").repeated(dots);
        else if (text.at(i) == QLatin1Char('\\'))
            result += QLatin1String("\\\\");
        else
            result += text.at(i);
        i += qMax(1, dots);
    }
    return result;
}

QString joinItemPath(const QStringList& texts)
{
    QStringList parts;
    for (const QString& text : texts)
        parts.append(escaped(text));
    return parts.join(QLatin1Char('.'));
}

} // namespace Torvix::Protocol
