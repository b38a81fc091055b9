#include "agent/items/target.h"

#include "agent/items/items.h"
#include "agent/lookup/namematcher.h"
#include "agent/lookup/objecttree.h"
#include "agent/reflection/error.h"
#include "agent/widgets/graphics.h"

#include <QAbstractItemView>
#include <QAction>
#include <QApplication>
#include <QGraphicsItem>
#include <QGraphicsView>
#include <QLayout>
#include <QListWidget>
#include <QMenu>
#include <QMenuBar>
#include <QTableWidget>
#include <QToolBar>
#include <QTreeWidget>
#include <QWindow>

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

Input::Place placeIn(const Value& target, const QPoint* position)
{
    if (auto* window = qobject_cast<QWindow*>(target.object()))
        return Input::placeIn(window, position);
    QRect part;
    QWidget* widget = widgetOf(target, &part);
    if (part.isEmpty() && widget->isVisible())
        throwNoPlace(target);
    return Input::placeIn(widget, part, position);
}

} // namespace Torvix::Agent
