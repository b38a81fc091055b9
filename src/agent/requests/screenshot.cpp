#include "agent/requests/screenshot.h"

#include "agent/items/target.h"
#include "agent/lookup/objecttree.h"
#include "agent/reflection/error.h"

#include <QBuffer>
#include <QGuiApplication>
#include <QPainter>
#include <QScreen>
#include <QTimer>
#include <QWidget>
#include <QWindow>

#include <algorithm>

namespace Torvix::Agent {

namespace {

QImage grab(QWidget* widget, const QRect& part)
{
    return widget->grab(part).toImage();
}

/** In the pixels of the device; how many of them are a pixel of the desktop stands in the file. */
QByteArray toPng(QImage image)
{
    if (image.devicePixelRatio() != 1)
        image.setText(QString::fromLatin1(Protocol::pixelRatioKey),
                      QString::number(image.devicePixelRatio()));
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    if (image.isNull() || !image.save(&buffer, "PNG"))
        throw Error(QStringLiteral("the picture could not be taken"));
    return bytes;
}

/** How far in front a window is, as far as that is known without a display. */
int layerOf(const QWidget* window)
{
    if (window->windowType() == Qt::Popup || window->windowType() == Qt::ToolTip)
        return 3;
    if (window->isModal())
        return 2;
    return window->isActiveWindow() ? 1 : 0;
}

/** Composed from the windows, where the platform does not let a program see the screen. */
QImage composedScreen(const QScreen* screen)
{
    const QRect area = screen->geometry();
    QImage image(area.size() * screen->devicePixelRatio(), QImage::Format_RGB32);
    image.setDevicePixelRatio(screen->devicePixelRatio());
    image.fill(Qt::black);
    QPainter painter(&image);
    QList<QWidget*> windows;
    visitAll([&](QObject* object) {
        auto* widget = object->isWidgetType() ? static_cast<QWidget*>(object) : nullptr;
        if (widget && widget->isWindow() && widget->isVisible() && !widget->graphicsProxyWidget())
            windows.append(widget);
        return true;
    });
    std::stable_sort(windows.begin(), windows.end(),
                     [](const QWidget* a, const QWidget* b) { return layerOf(a) < layerOf(b); });
    for (QWidget* window : qAsConst(windows))
        painter.drawPixmap(window->geometry().topLeft() - area.topLeft(), window->grab());
    return image;
}

QImage screenImage()
{
    QScreen* screen = QGuiApplication::primaryScreen();
    if (!screen)
        return {};
    if (QGuiApplication::platformName() == QLatin1String("xcb")) {
        constexpr int wholeScreen = 0;
        return screen->grabWindow(wholeScreen).toImage();
    }
    return composedScreen(screen);
}

/** A red frame over a widget that lets all input through. */
class Frame : public QWidget
{
public:
    Frame(QWidget* over, const QRect& part, int durationMs) : QWidget(over)
    {
        setObjectName(QStringLiteral("torvix_highlight"));
        setAttribute(Qt::WA_TransparentForMouseEvents);
        setFocusPolicy(Qt::NoFocus);
        setGeometry(part);
        show();
        raise();
        QTimer::singleShot(durationMs, this, &QObject::deleteLater);
    }

protected:
    void paintEvent(QPaintEvent*) override
    {
        QPainter painter(this);
        painter.setPen(QPen(Qt::red, 4));
        painter.drawRect(rect().adjusted(1, 1, -2, -2));
    }
};

} // namespace

QByteArray screenshot(const Value& target, Protocol::ScreenshotArea area)
{
    if (area == Protocol::ScreenshotArea::Screen)
        return toPng(screenImage());
    if (const auto* window = qobject_cast<QWindow*>(target.object()))
        return toPng(window->screen()->grabWindow(window->winId()).toImage());
    QRect part;
    QWidget* widget = widgetOf(target, &part);
    if (area == Protocol::ScreenshotArea::Window)
        return toPng(grab(widget->window(), widget->window()->rect()));
    return toPng(grab(widget, part));
}

void highlight(const Value& target, int durationMs)
{
    QRect part;
    QWidget* widget = widgetOf(target, &part);
    new Frame(widget, part, qBound(50, durationMs, 60000));
}

} // namespace Torvix::Agent
