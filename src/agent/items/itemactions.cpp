#include "agent/items/itemactions.h"

#include "agent/input/inputqueue.h"
#include "agent/input/synthesizer.h"
#include "agent/items/items.h"
#include "agent/items/target.h"
#include "agent/lookup/namematcher.h"
#include "agent/reflection/error.h"
#include "agent/widgets/widgettoolkit.h"
#include "protocol/message.h"

#include <QAbstractItemView>
#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QListWidget>
#include <QMenu>
#include <QMenuBar>
#include <QScopeGuard>
#include <QTabWidget>
#include <QTableWidget>
#include <QTreeView>
#include <QTreeWidget>

namespace Torvix::Agent {

namespace {

[[noreturn]] void throwNoItem(QObject* container, const QStringList& path)
{
    throw Error(QStringLiteral("%1 has no item '%2'. %3")
                    .arg(describeObject(container), joinItemPath(path), itemsInstead(container, path)),
                Protocol::ErrorClass::NotFound);
}

/** A copy of the item; throws with the container, the path and what there is instead when there is none. */
Value itemOrThrow(QObject* container, const QStringList& path)
{
    if (!container)
        throw Error(QStringLiteral("an object with items is needed"));
    Value item = findItem(container, path, -1, -1);
    if (item.isNone())
        throwNoItem(container, path);
    return item;
}

/** Clicks the entry of a menu that is open, or waits until it is. */
void clickEntry(const QPointer<QAction>& action)
{
    InputQueue::instance().postPlanner([action] {
        if (!action)
            throw Error(QStringLiteral("the menu entry has gone"));
        for (QWidget* widget : action->associatedWidgets()) {
            auto* menu = qobject_cast<QMenu*>(widget);
            auto* bar = qobject_cast<QMenuBar*>(widget);
            if (!widget->isVisible() || (!menu && !bar))
                continue;
            if (!action->isEnabled())
                throw Error(
                    QStringLiteral("the menu entry '%1' is disabled").arg(plainActionText(action->text())));
            const QRect part = menu ? menu->actionGeometry(action) : bar->actionGeometry(action);
            const Input::Place place{widget, part.center()};
            Input::click(place, Qt::LeftButton, {});
            return InputQueue::Step::Done;
        }
        return InputQueue::Step::Again;
    });
}

QAction* actionAt(QWidget* menu, const QStringList& path)
{
    return qobject_cast<QAction*>(findItem(menu, path, -1, -1).object());
}

/** Throws when the entry is missing for good: a menu may get its entries when it opens. */
void requireEntry(QWidget* menu, const QStringList& path)
{
    for (int depth = 1; depth <= path.size(); ++depth) {
        const QAction* action = actionAt(menu, path.mid(0, depth));
        if (!action)
            throwNoItem(menu, path);
        if (depth < path.size() && action->menu() && !action->menu()->isVisible())
            if (!actionAt(menu, path.mid(0, depth + 1)))
                return;
    }
}

/** Of a menu that has been opened in vain. */
void closePopups()
{
    while (QWidget* popup = QApplication::activePopupWidget())
        if (!popup->close())
            return;
}

/** Each part of the path is clicked where it stands, so that sub-menus open as for a person. */
void activateMenu(QWidget* menu, const QStringList& path)
{
    requireEntry(menu, path);
    if (!menu->isVisible()) {
        auto* closed = qobject_cast<QMenu*>(menu);
        QAction* opener = closed ? closed->menuAction() : nullptr;
        QWidget* owner = nullptr;
        if (opener)
            for (QWidget* each : opener->associatedWidgets())
                if (each->isVisible())
                    owner = each;
        if (!owner)
            throw Error(QStringLiteral("%1 is not open").arg(describeObject(menu)));
        clickEntry(opener);
    }
    if (QWidget* modal = modalBlockerOf(menu))
        throw Error(QStringLiteral("%1 gets no input while the modal window %2 is open")
                        .arg(describeObject(menu), describeObject(modal)));
    for (int depth = 1; depth <= path.size(); ++depth)
        InputQueue::instance().postPlanner([guard = QPointer<QWidget>(menu), path, depth] {
            if (!guard)
                throw Error(QStringLiteral("the menu has gone"));
            QAction* action = actionAt(guard, path.mid(0, depth));
            if (!action) {
                const auto closing = qScopeGuard(closePopups);
                throwNoItem(guard, path);
            }
            clickEntry(action);
            if (depth < path.size())
                InputQueue::instance().post([sub = QPointer<QMenu>(action->menu())] {
                    return !sub || sub->isVisible() ? InputQueue::Step::Done : InputQueue::Step::Again;
                });
            return InputQueue::Step::Done;
        });
}

/** Of an item wider than its view, the middle of what can be seen. */
QPoint shownCenter(const QAbstractItemView* view, const QModelIndex& index)
{
    const QRect rect = view->visualRect(index);
    const QRect shown = rect & view->viewport()->rect();
    return shown.isEmpty() ? rect.center() : shown.center();
}

void activateComboItem(QComboBox* combo, const QPersistentModelIndex& index)
{
    QPoint arrow(combo->width() - 8, combo->height() / 2);
    if (!combo->view()->isVisible())
        Input::click(placeIn(Value::ofObject(combo), &arrow), Qt::LeftButton, {});
    InputQueue::instance().postPlanner([view = QPointer<QAbstractItemView>(combo->view()), index] {
        if (!view || !index.isValid())
            throw Error(QStringLiteral("the entry of the combo box has gone"));
        if (!view->isVisible())
            return InputQueue::Step::Again;
        view->scrollTo(index);
        // The list ignores a click right after it opened; a hand on it and Return do the same.
        Input::mouseMove({view->viewport(), shownCenter(view, index)});
        Input::key(Qt::Key_Return, {}, QStringLiteral("\r"));
        return InputQueue::Step::Done;
    });
}

void clickTab(const Value& item, Qt::MouseButton button, Qt::KeyboardModifiers modifiers)
{
    const auto tab = item.data.value<TabItem>();
    QTabBar* bar = tab.bar;
    const QRect rect = bar->tabRect(tab.index);
    // A tab that is scrolled out has no place to click; the wheel over the bar would reach it.
    if (!bar->rect().contains(rect.center())) {
        bar->setCurrentIndex(tab.index);
        return;
    }
    const QPoint center = rect.center();
    Input::click(placeIn(Value::ofObject(bar), &center), button, modifiers);
}

QAbstractItemView* viewFor(QObject* container)
{
    if (QAbstractItemView* view = itemViewOf(container))
        return view;
    throw Error(QStringLiteral("%1 is no item view").arg(describeObject(container)));
}

QModelIndex shownIndex(QObject* container, const QStringList& path)
{
    const QModelIndex index = itemOrThrow(container, path).data.toModelIndex();
    showItem(viewFor(container), index);
    return index;
}

Input::Place placeOf(QObject* container, const QModelIndex& index)
{
    QAbstractItemView* view = viewFor(container);
    const QPoint center = shownCenter(view, index);
    return placeIn(Value::ofObject(view->viewport()), &center);
}

void setExpanded(QObject* container, const QStringList& path, bool expanded)
{
    auto* tree = qobject_cast<QTreeView*>(container);
    if (!tree)
        throw Error(QStringLiteral("an expandable view is needed"));
    QModelIndex index = shownIndex(container, path);
    index = index.sibling(index.row(), 0);
    if (tree->isExpanded(index) == expanded)
        return;
    tree->setCurrentIndex(index);
    Input::focus(tree);
    Input::key(expanded ? Qt::Key_Plus : Qt::Key_Minus, {},
               expanded ? QStringLiteral("+") : QStringLiteral("-"));
}

} // namespace

void showIndex(const QModelIndex& index)
{
    if (!index.isValid())
        throw Error(QStringLiteral("the item is not valid any more"));
    if (QAbstractItemView* view = viewOf(index))
        showItem(view, index);
}

bool chooseInClosedCombo(const Value& target)
{
    const QModelIndex index = target.typeName == "QModelIndex" ? target.data.toModelIndex() : QModelIndex();
    const QAbstractItemView* view = index.isValid() ? viewOf(index) : nullptr;
    if (!view || view->isVisible())
        return false;
    for (QObject* at = view->parent(); at; at = at->parent())
        if (auto* combo = qobject_cast<QComboBox*>(at)) {
            activateComboItem(combo, index);
            return true;
        }
    return false;
}

void showWidgetItem(const Value& item)
{
    void* address = item.address();
    if (!address)
        return;
    if (item.typeName == "QTableWidgetItem") {
        auto* cell = static_cast<QTableWidgetItem*>(address);
        if (cell->tableWidget())
            cell->tableWidget()->scrollToItem(cell);
    } else if (item.typeName == "QListWidgetItem") {
        auto* row = static_cast<QListWidgetItem*>(address);
        if (row->listWidget())
            row->listWidget()->scrollToItem(row);
    } else if (item.typeName == "QTreeWidgetItem") {
        auto* node = static_cast<QTreeWidgetItem*>(address);
        if (node->treeWidget())
            node->treeWidget()->scrollToItem(node);
    }
}

namespace ItemActions {

void activate(QObject* container, const QStringList& path, Qt::MouseButton button,
              Qt::KeyboardModifiers modifiers)
{
    if (qobject_cast<QMenu*>(container) || qobject_cast<QMenuBar*>(container))
        activateMenu(static_cast<QWidget*>(container), path);
    else if (auto* combo = qobject_cast<QComboBox*>(container))
        activateComboItem(combo, itemOrThrow(combo, path).data.toModelIndex());
    else if (qobject_cast<QTabWidget*>(container) || qobject_cast<QTabBar*>(container))
        clickTab(itemOrThrow(container, path), button, modifiers);
    else
        doubleClick(container, path, button, modifiers);
}

void click(QObject* container, const QStringList& path, Qt::MouseButton button,
           Qt::KeyboardModifiers modifiers)
{
    if (qobject_cast<QHeaderView*>(container)) {
        Input::click(placeIn(itemOrThrow(container, path), nullptr), button, modifiers);
        return;
    }
    if (!qobject_cast<QAbstractItemView*>(container)) {
        activate(container, path, button, modifiers);
        return;
    }
    Input::click(placeOf(container, shownIndex(container, path)), button, modifiers);
}

void doubleClick(QObject* container, const QStringList& path, Qt::MouseButton button,
                 Qt::KeyboardModifiers modifiers)
{
    if (qobject_cast<QHeaderView*>(container)) {
        Input::doubleClick(placeIn(itemOrThrow(container, path), nullptr), button, modifiers);
        return;
    }
    Input::doubleClick(placeOf(container, shownIndex(container, path)), button, modifiers);
}

void expand(QObject* container, const QStringList& path, Qt::MouseButton, Qt::KeyboardModifiers)
{
    setExpanded(container, path, true);
}

void collapse(QObject* container, const QStringList& path, Qt::MouseButton, Qt::KeyboardModifiers)
{
    setExpanded(container, path, false);
}

void scrollTo(QObject* container, const QStringList& path)
{
    shownIndex(container, path);
}

} // namespace ItemActions

} // namespace Torvix::Agent
