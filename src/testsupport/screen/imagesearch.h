#pragma once

#include "testsupport/export.h"

#include <QImage>
#include <QRect>
#include <QVector>

namespace Torvix {

/** What still counts as the same picture. */
struct ImageTolerance
{
    /** By how much each of red, green and blue of a pixel may differ, 0 to 255. */
    int perChannel = 0;
    /** How many pixels may differ by more than that. */
    int differingPixels = 0;
};

/**
 * Where a picture is in another one, from the top left line by line; the places do not overlap.
 * Pixels of the wanted picture that are more than half transparent match everything. A null image
 * is nowhere.
 * @param most stops after so many places; 0 for all
 */
TORVIXTEST_EXPORT QVector<QRect> findImage(const QImage& where, const QImage& wanted,
                                           const ImageTolerance& tolerance, int most = 0);

/** What differs between two pictures. */
struct ImageDifference
{
    /** Pixels that differ outside of the masks. */
    int pixels = 0;
    /** Around all of them. */
    QRect area;
    /** The second picture, faded, with what differs in red; null for pictures of different sizes. */
    QImage picture;
    bool sizesDiffer = false;

    bool isWithin(const ImageTolerance& tolerance) const
    {
        return !sizesDiffer && pixels <= tolerance.differingPixels;
    }
};

/** Masks are areas that are not looked at, in pixels of the pictures. */
TORVIXTEST_EXPORT ImageDifference compareImages(const QImage& expected, const QImage& actual,
                                                const ImageTolerance& tolerance,
                                                const QVector<QRect>& masks = {});

} // namespace Torvix
