#include "report/htmlpictures.h"

#include <QFile>

namespace Torvix {

namespace {

/** A character that text of a page never has, since control characters are replaced in it. */
constexpr QChar border(0x01);

} // namespace

QString HtmlPictures::mark(const Attachment& attachment, const QString& link)
{
    m_pictures += {attachment.path, attachment.mimeType, link};
    return border + QString::number(m_pictures.size() - 1) + border;
}

QString HtmlPictures::embedded(const QString& body)
{
    const QStringList parts = body.split(border);
    QString whole = parts.first();
    for (int i = 1; i + 1 < parts.size(); i += 2)
        whole += sourceOf(m_pictures.at(parts[i].toInt())) + parts[i + 1];
    return whole;
}

QString HtmlPictures::sourceOf(const Picture& picture)
{
    QFile file(picture.path);
    const qint64 size = file.size();
    if (size > 0 && size <= qMin(pictureBudget, m_left) && file.open(QIODevice::ReadOnly)) {
        m_left -= size;
        return QStringLiteral("data:%1;base64,%2")
            .arg(picture.mimeType, QString::fromLatin1(file.readAll().toBase64()));
    }
    m_besideCount += size > 0 ? 1 : 0;
    return picture.link;
}

} // namespace Torvix
