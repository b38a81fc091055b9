#include "agent/screen.h"

#include "agent/error.h"
#include "agent/items/graphics.h"
#include "agent/items/items.h"
#include "agent/lookup/namematcher.h"
#include "agent/lookup/objecttree.h"

#include <QAbstractItemView>
#include <QAction>
#include <QApplication>
#include <QBuffer>
#include <QGraphicsItem>
#include <QGraphicsView>
#include <QLayout>
#include <QListWidget>
#include <QMenu>
#include <QMenuBar>
#include <QPainter>
#include <QScreen>
#include <QTableWidget>
#include <QTimer>
#include <QToolBar>
#include <QTreeWidget>
#include <QWindow>

#include <algorithm>

namespace Torvix::Agent {

namespace {

/** Menus, menu bars and tool bars show an action; the visible one counts. */
QWidget* widgetOfAction(QAction* action, QRect* part)
{
    for (QWidget* widget : action->associatedWidgets()) {
        if (!widget->isVisible())
            continue;
        if (auto* menu = qobject_cast<QMenu*>(widget))
            *part = menu->actionGeometry(action);
        else if (auto* bar = qobject_cast<QMenuBar*>(widget))
            *part = bar->actionGeometry(action);
        else if (auto* tools = qobject_cast<QToolBar*>(widget)) {
            QWidget* button = tools->widgetForAction(action);
            *part = button ? button->geometry() : QRect();
        } else
            *part = widget->rect();
        return widget;
    }
    return nullptr;
}

QWidget* viewportOf(QAbstractScrollArea* view, const QRect& rect, QRect* part)
{
    if (!view)
        return nullptr;
    *part = rect;
    return view->viewport();
}

QWidget* widgetOfItem(const Value& target, QRect* part)
{
    void* address = target.address();
    if (target.typeName == "QTableWidgetItem") {
        auto* item = static_cast<QTableWidgetItem*>(address);
        QTableWidget* table = item->tableWidget();
        return table ? viewportOf(table, table->visualItemRect(item), part) : nullptr;
    }
    if (target.typeName == "QListWidgetItem") {
        auto* item = static_cast<QListWidgetItem*>(address);
        QListWidget* list = item->listWidget();
        return list ? viewportOf(list, list->visualItemRect(item), part) : nullptr;
    }
    if (target.typeName == "QTreeWidgetItem") {
        auto* item = static_cast<QTreeWidgetItem*>(address);
        QTreeWidget* tree = item->treeWidget();
        return tree ? viewportOf(tree, tree->visualItemRect(item), part) : nullptr;
    }
    return nullptr;
}

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

void throwNoPlace(const Value& target)
{
    QString name = target.toText();
    if (target.typeName == "QModelIndex") {
        const QModelIndex index = target.data.toModelIndex();
        const QAbstractItemView* view = index.isValid() ? viewOf(index) : nullptr;
        name = QStringLiteral("The item '%1'").arg(joinItemPath(itemPath(index)));
        if (view)
            name += QStringLiteral(" of ") + describeObject(view);
    }
    throw Error(QStringLiteral("%1 has no place on the screen").arg(name));
}

QWidget* widgetOf(const Value& target, QRect* part)
{
    QWidget* widget = nullptr;
    QObject* object = target.object();
    if (object && object->isWidgetType()) {
        widget = static_cast<QWidget*>(object);
        *part = widget->rect();
    } else if (auto* action = qobject_cast<QAction*>(object)) {
        widget = widgetOfAction(action, part);
    } else if (auto* layout = qobject_cast<QLayout*>(object)) {
        widget = layout->parentWidget();
        *part = layout->geometry();
    } else if (const QGraphicsItem* item = Graphics::itemOf(target)) {
        QGraphicsView* view = item->isVisible() ? Graphics::viewOf(item) : nullptr;
        widget = view ? viewportOf(view, Graphics::rectInView(view, item), part) : nullptr;
    } else if (target.typeName == "TabItem") {
        const auto tab = target.data.value<TabItem>();
        widget = tab.bar;
        *part = widget ? tab.bar->tabRect(tab.index) : QRect();
    } else if (target.typeName == "SectionItem") {
        const auto section = target.data.value<SectionItem>();
        widget = section.header ? section.header->viewport() : nullptr;
        *part = section.rect();
    } else if (target.typeName == "QModelIndex") {
        const QModelIndex index = target.data.toModelIndex();
        QAbstractItemView* view = index.isValid() ? viewOf(index) : nullptr;
        widget = view ? viewportOf(view, view->visualRect(index), part) : nullptr;
    } else if (target.isPointer()) {
        widget = widgetOfItem(target, part);
    }
    if (!widget)
        throwNoPlace(target);
    return widget;
}

QRect globalBounds(const Value& target)
{
    if (const auto* window = qobject_cast<QWindow*>(target.object()))
        return {window->mapToGlobal(QPoint(0, 0)), window->size()};
    QRect part;
    const QWidget* widget = widgetOf(target, &part);
    if (!part.isValid())
        throwNoPlace(target);
    return {widget->mapToGlobal(part.topLeft()), part.size()};
}

QObject* objectAt(const QPoint& globalPosition)
{
    if (QWidget* widget = QApplication::widgetAt(globalPosition))
        return widget;
    return QGuiApplication::topLevelAt(globalPosition);
}

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
