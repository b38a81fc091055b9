#pragma once

#include "protocol/message.h"

#include <QByteArray>

/** What is on the screen, and where. */
namespace Torvix::Protocol {

/** Global position and size in device-independent pixels. */
struct RectReply
{
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;
    TORVIX_WIRE_FIELDS(x, y, width, height)
};

struct GlobalBounds
{
    static constexpr auto number = RequestNumber::GlobalBounds;
    using Reply = RectReply;
    qint64 object = 0;
    TORVIX_WIRE_FIELDS(object)
};

enum class ScreenshotArea { Object = 0, Window = 1, Screen = 2, Last = Screen };

/** Text in a PNG file: pixels of the device for one of the desktop; missing where that is 1. */
constexpr char pixelRatioKey[] = "devicePixelRatio";

struct ImageReply
{
    /** A PNG file in the pixels of the device, which on a scaled desktop are more than it has. */
    QByteArray png;
    TORVIX_WIRE_FIELDS(png)
};

struct Screenshot
{
    static constexpr auto number = RequestNumber::Screenshot;
    using Reply = ImageReply;
    /** Not used for Screen. */
    qint64 object = 0;
    ScreenshotArea area = ScreenshotArea::Object;
    TORVIX_WIRE_FIELDS(object, area)
};

struct Highlight
{
    static constexpr auto number = RequestNumber::Highlight;
    using Reply = Empty;
    qint64 object = 0;
    int durationMs = 1000;
    TORVIX_WIRE_FIELDS(object, durationMs)
};

} // namespace Torvix::Protocol
