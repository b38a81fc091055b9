#include "testsupport/screen/imagesearch.h"

#include <algorithm>
#include <cstdlib>

namespace Torvix {

namespace {

bool isAlike(QRgb a, QRgb b, int perChannel)
{
    return std::abs(qRed(a) - qRed(b)) <= perChannel && std::abs(qGreen(a) - qGreen(b)) <= perChannel &&
           std::abs(qBlue(a) - qBlue(b)) <= perChannel;
}

const QRgb* lineOf(const QImage& image, int y)
{
    return reinterpret_cast<const QRgb*>(image.constScanLine(y));
}

int contrast(QRgb a, QRgb b)
{
    return std::abs(qRed(a) - qRed(b)) + std::abs(qGreen(a) - qGreen(b)) + std::abs(qBlue(a) - qBlue(b));
}

/** A picture that is searched for: its pixels that count, those first that tell the most. */
class Wanted
{
public:
    Wanted(const QImage& image, const ImageTolerance& tolerance) : m_tolerance(tolerance)
    {
        for (int y = 0; y < image.height(); ++y) {
            const QRgb* line = lineOf(image, y);
            for (int x = 0; x < image.width(); ++x) {
                if (qAlpha(line[x]) <= 127)
                    continue;
                const int edge = x > 0 ? contrast(line[x], line[x - 1]) : 0;
                m_pixels.append({x, y, line[x], edge});
            }
        }
        // Edges tell more than areas: a place that is not it is most often left after a few pixels.
        std::stable_sort(m_pixels.begin(), m_pixels.end(),
                         [](const Pixel& a, const Pixel& b) { return a.edge > b.edge; });
    }

    bool isAt(const QVector<const QRgb*>& lines, int left, int top) const
    {
        int differing = 0;
        for (const Pixel& pixel : m_pixels) {
            if (!isAlike(lines[top + pixel.y][left + pixel.x], pixel.colour, m_tolerance.perChannel) &&
                ++differing > m_tolerance.differingPixels)
                return false;
        }
        return true;
    }

private:
    struct Pixel
    {
        int x;
        int y;
        QRgb colour;
        int edge;
    };

    ImageTolerance m_tolerance;
    QVector<Pixel> m_pixels;
};

QVector<const QRgb*> linesOf(const QImage& image)
{
    QVector<const QRgb*> lines;
    lines.reserve(image.height());
    for (int y = 0; y < image.height(); ++y)
        lines.append(lineOf(image, y));
    return lines;
}

bool overlapsAny(const QRect& place, const QVector<QRect>& places)
{
    return std::any_of(places.begin(), places.end(),
                       [&place](const QRect& other) { return other.intersects(place); });
}

QRgb faded(QRgb colour)
{
    const int grey = 170 + qGray(colour) / 3;
    return qRgb(grey, grey, grey);
}

} // namespace

QVector<QRect> findImage(const QImage& where, const QImage& wanted, const ImageTolerance& tolerance, int most)
{
    QVector<QRect> places;
    if (where.isNull() || wanted.isNull())
        return places;
    const QImage field = where.convertToFormat(QImage::Format_RGB32);
    const Wanted searched(wanted.convertToFormat(QImage::Format_ARGB32), tolerance);
    const QVector<const QRgb*> lines = linesOf(field);
    for (int y = 0; y + wanted.height() <= field.height(); ++y) {
        for (int x = 0; x + wanted.width() <= field.width(); ++x) {
            const QRect place(QPoint(x, y), wanted.size());
            if (!searched.isAt(lines, x, y) || overlapsAny(place, places))
                continue;
            places.append(place);
            if (places.size() == most)
                return places;
        }
    }
    return places;
}

ImageDifference compareImages(const QImage& expected, const QImage& actual, const ImageTolerance& tolerance,
                              const QVector<QRect>& masks)
{
    ImageDifference found;
    if (expected.size() != actual.size()) {
        found.sizesDiffer = true;
        return found;
    }
    const QImage wanted = expected.convertToFormat(QImage::Format_RGB32);
    const QImage seen = actual.convertToFormat(QImage::Format_RGB32);
    found.picture = seen;
    for (int y = 0; y < seen.height(); ++y) {
        auto* drawn = reinterpret_cast<QRgb*>(found.picture.scanLine(y));
        for (int x = 0; x < seen.width(); ++x) {
            const bool masked = std::any_of(masks.begin(), masks.end(),
                                            [x, y](const QRect& mask) { return mask.contains(x, y); });
            drawn[x] = faded(drawn[x]);
            if (masked || isAlike(lineOf(wanted, y)[x], lineOf(seen, y)[x], tolerance.perChannel))
                continue;
            drawn[x] = qRgb(255, 0, 0);
            found.area |= QRect(x, y, 1, 1);
            ++found.pixels;
        }
    }
    return found;
}

} // namespace Torvix
