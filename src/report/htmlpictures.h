#pragma once

#include "report/results.h"

#include <QHash>

class QDir;

namespace Torvix {

/**
 * The pictures of a page. A body refers to each by a mark, so that it can be measured and cut without
 * them; at the end the marks become the pictures themselves, as long as there is room, and links to the
 * files from then on.
 */
class HtmlPictures
{
public:
    /** So many bytes of files lie in a page at most. */
    static constexpr qint64 pageBudget = 8'000'000;
    static constexpr qint64 pictureBudget = 2'000'000;

    /** Where the picture is to be in an attribute. `link` is its address beside the page. */
    QString mark(const Attachment& attachment, const QString& link);

    /** The body with its pictures, or links to them when there is no room any more. */
    QString embedded(const QString& body);

    /** Pictures that found no room. */
    int besideCount() const { return m_besideCount; }

private:
    struct Picture
    {
        QString path;
        QString mimeType;
        QString link;
    };
    QString sourceOf(const Picture& picture);

    QVector<Picture> m_pictures;
    qint64 m_left = pageBudget;
    int m_besideCount = 0;
};

} // namespace Torvix
