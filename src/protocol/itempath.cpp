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

QString joinItemPath(const QStringList& texts)
{
    QStringList escaped;
    for (QString text : texts)
        escaped.append(text.replace(QLatin1Char('\\'), QLatin1String("\\\\"))
                           .replace(QLatin1Char('.'), QLatin1String("\\.")));
    return escaped.join(QLatin1Char('.'));
}

} // namespace Torvix::Protocol
