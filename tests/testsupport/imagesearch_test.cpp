#include "testsupport/screen/imagesearch.h"

#include <gtest/gtest.h>

namespace Torvix {
namespace {

constexpr QRgb grey = 0xff808080;
constexpr QRgb red = 0xffff0000;

/** A grey picture with a red cross of 3x3 pixels at each place. */
QImage withCrosses(const QSize& size, const QVector<QPoint>& places)
{
    QImage image(size, QImage::Format_RGB32);
    image.fill(grey);
    for (const QPoint& place : places)
        for (const QPoint& pixel : {QPoint(1, 0), QPoint(0, 1), QPoint(1, 1), QPoint(2, 1), QPoint(1, 2)})
            image.setPixel(place + pixel, red);
    return image;
}

const QImage cross = withCrosses({3, 3}, {{0, 0}});

TEST(FindImage, FindsEveryPlaceThatIsAlike)
{
    const QImage field = withCrosses({20, 12}, {{2, 1}, {9, 1}, {17, 9}});
    EXPECT_EQ(findImage(field, cross, {}), (QVector<QRect>{{2, 1, 3, 3}, {9, 1, 3, 3}, {17, 9, 3, 3}}));
    EXPECT_EQ(findImage(field, cross, {}, 1).size(), 1);
    EXPECT_TRUE(findImage(withCrosses({20, 12}, {}), cross, {}).isEmpty());
    EXPECT_TRUE(findImage(cross, field, {}).isEmpty()) << "larger than the field";
    EXPECT_TRUE(findImage(field, QImage(), {}).isEmpty());
    QImage plain(4, 4, QImage::Format_RGB32);
    plain.fill(grey);
    EXPECT_EQ(findImage(withCrosses({8, 4}, {}), plain, {}).size(), 2) << "places do not overlap";
}

TEST(FindImage, ToleratesWhatItIsToldTo)
{
    QImage field = withCrosses({10, 10}, {{4, 4}});
    field.setPixel(5, 5, qRgb(250, 6, 0));
    EXPECT_TRUE(findImage(field, cross, {}).isEmpty());
    EXPECT_TRUE(findImage(field, cross, {5, 0}).isEmpty());
    EXPECT_EQ(findImage(field, cross, {6, 0}).size(), 1);
    EXPECT_EQ(findImage(field, cross, {0, 1}).size(), 1);
}

TEST(FindImage, TransparentPixelsMatchEverything)
{
    QImage wanted = cross.convertToFormat(QImage::Format_ARGB32);
    for (const QPoint& corner : {QPoint(0, 0), QPoint(2, 0), QPoint(0, 2), QPoint(2, 2)})
        wanted.setPixel(corner, 0);
    QImage field = withCrosses({10, 10}, {{4, 4}});
    field.setPixel(4, 4, red);
    EXPECT_TRUE(findImage(field, cross, {}).isEmpty());
    EXPECT_EQ(findImage(field, wanted, {}).value(0).topLeft(), QPoint(4, 4));
}

TEST(CompareImages, CountsAndShowsWhatDiffersOutsideOfMasks)
{
    const QImage expected = withCrosses({10, 10}, {});
    const QImage actual = withCrosses({10, 10}, {{1, 1}, {6, 6}});
    const ImageDifference all = compareImages(expected, actual, {});
    EXPECT_EQ(all.pixels, 10);
    EXPECT_EQ(all.area, QRect(1, 1, 8, 8));
    EXPECT_EQ(all.picture.pixel(2, 2), red);
    EXPECT_NE(all.picture.pixel(0, 0), red);
    EXPECT_FALSE(all.isWithin({0, 9}));
    EXPECT_TRUE(all.isWithin({0, 10}));

    const ImageDifference masked = compareImages(expected, actual, {}, {QRect(0, 0, 5, 5)});
    EXPECT_EQ(masked.pixels, 5);
    EXPECT_EQ(masked.area, QRect(6, 6, 3, 3));
    EXPECT_EQ(compareImages(expected, actual, {128, 0}).pixels, 0);
    EXPECT_EQ(compareImages(expected, actual, {126, 0}).pixels, 10);
}

TEST(CompareImages, SizesHaveToBeTheSame)
{
    const ImageDifference difference =
        compareImages(withCrosses({4, 4}, {}), withCrosses({4, 5}, {}), {255, 1000});
    EXPECT_TRUE(difference.sizesDiffer);
    EXPECT_FALSE(difference.isWithin({255, 1000}));
}

} // namespace
} // namespace Torvix
