#include "agent/items/items.h"

#include "agent/lookup/namematcher.h"
#include "agent/lookup/objecttree.h"
#include "agent/reflection/convert.h"
#include "agent/reflection/error.h"
#include "shared/text/nearestname.h"

#include <QAbstractItemView>
#include <QAction>
#include <QComboBox>
#include <QHeaderView>
#include <QMenu>
#include <QMenuBar>
#include <QTabWidget>
#include <QTreeView>

#include <algorithm>
#include <utility>
#include <vector>

namespace Torvix::Agent {

namespace {

QModelIndex childWithText(const QAbstractItemModel* model, const QModelIndex& parent, const QString& text,
                          bool anyColumn)
{
    const int rows = model->rowCount(parent);
    const int columns = anyColumn ? model->columnCount(parent) : 1;
    for (int row = 0; row < rows; ++row)
        for (int column = 0; column < columns; ++column) {
            const QModelIndex index = model->index(row, column, parent);
            if (index.data(Qt::DisplayRole).toString() == text)
                return index;
        }
    return {};
}

QModelIndex findIndex(QAbstractItemModel* model, QModelIndex parent, const QStringList& path, int row,
                      int column)
{
    if (path.isEmpty())
        return model->index(row, qMax(0, column), parent);
    for (int i = 0; i < path.size(); ++i) {
        if (model->canFetchMore(parent))
            model->fetchMore(parent);
        parent = childWithText(model, parent, path.at(i), i + 1 == path.size());
        if (!parent.isValid())
            return {};
    }
    return parent;
}

QAction* findAction(QWidget* menu, const QStringList& path, int row)
{
    QAction* found = nullptr;
    if (path.isEmpty())
        return menu->actions().value(row);
    for (const QString& text : path) {
        if (found)
            menu = found->menu();
        if (!menu)
            return nullptr;
        found = nullptr;
        for (QAction* action : menu->actions())
            if (!found && !action->isSeparator() && plainActionText(action->text()) == text)
                found = action;
        if (!found)
            return nullptr;
    }
    return found;
}

Value findTab(QTabBar* bar, const QStringList& path, int row)
{
    TabItem item{bar, path.isEmpty() ? row : -1};
    for (int i = 0; i < bar->count() && item.index < 0; ++i)
        if (path.size() == 1 && plainActionText(bar->tabText(i)) == path.first())
            item.index = i;
    return item.index >= 0 && item.index < bar->count() ? toValue(item) : Value();
}

Value findSection(QHeaderView* header, const QStringList& path, int number)
{
    SectionItem item{header, path.isEmpty() ? number : -1};
    for (int i = 0; i < header->count() && item.index < 0; ++i)
        if (path.size() == 1 && SectionItem{header, i}.text() == path.first())
            item.index = i;
    return item.index >= 0 && item.index < header->count() ? toValue(item) : Value();
}

/** Where an item was found last: an index does not know which of several views of its model is meant. */
QPointer<QAbstractItemView>& lastView()
{
    static QPointer<QAbstractItemView> view;
    return view;
}

QWidget* menuOf(QObject* container)
{
    return qobject_cast<QMenu*>(container) || qobject_cast<QMenuBar*>(container)
               ? static_cast<QWidget*>(container)
               : nullptr;
}

QTabBar* tabBarOf(QObject* container)
{
    auto* tabs = qobject_cast<QTabWidget*>(container);
    return tabs ? tabs->tabBar() : qobject_cast<QTabBar*>(container);
}

QStringList menuTexts(QWidget* menu)
{
    QStringList texts;
    for (const QAction* action : menu ? menu->actions() : QList<QAction*>())
        if (!action->isSeparator() && action->isVisible())
            texts.append(plainActionText(action->text()));
    return texts;
}

/** The texts of the items below `parent`, of a table all cells; of very many the first ones. */
QStringList texts(QObject* container, const QStringList& parent)
{
    constexpr int enough = 1000;
    QStringList found;
    if (QWidget* menu = menuOf(container)) {
        QAction* action = parent.isEmpty() ? nullptr : findAction(menu, parent, -1);
        return parent.isEmpty() ? menuTexts(menu) : menuTexts(action ? action->menu() : nullptr);
    }
    if (const QTabBar* bar = tabBarOf(container)) {
        for (int i = 0; i < bar->count() && parent.isEmpty(); ++i)
            found.append(plainActionText(bar->tabText(i)));
        return found;
    }
    if (auto* header = qobject_cast<QHeaderView*>(container)) {
        for (int i = 0; i < header->count() && parent.isEmpty(); ++i)
            found.append(SectionItem{header, i}.text());
        return found;
    }
    const QAbstractItemView* view = itemViewOf(container);
    QAbstractItemModel* model = view ? view->model() : nullptr;
    if (!model)
        return found;
    QModelIndex root = view->rootIndex();
    if (!parent.isEmpty())
        root = findIndex(model, root, parent, -1, -1);
    for (int row = 0; row < model->rowCount(root) && found.size() < enough; ++row)
        for (int column = 0; column < model->columnCount(root) && found.size() < enough; ++column) {
            const QString text = model->index(row, column, root).data(Qt::DisplayRole).toString();
            if (!text.isEmpty())
                found.append(text);
        }
    found.removeDuplicates();
    return found;
}

/** Small for what was probably meant: a part of the text, or one that differs little. */
int unlikeness(const QString& text, const QString& wanted)
{
    constexpr int compared = 60;
    const QString left = text.left(compared).toCaseFolded();
    const QString right = wanted.left(compared).toCaseFolded();
    if (left.startsWith(right) || right.startsWith(left))
        return 0;
    return left.contains(right) || right.contains(left) ? 1 : 1 + editDistance(left, right);
}

} // namespace

QString SectionItem::text() const
{
    const QAbstractItemModel* model = header ? header->model() : nullptr;
    return model ? model->headerData(index, header->orientation()).toString() : QString();
}

QRect SectionItem::rect() const
{
    if (!header || header->isSectionHidden(index))
        return {};
    const int start = header->sectionViewportPosition(index);
    const int size = header->sectionSize(index);
    return header->orientation() == Qt::Horizontal ? QRect(start, 0, size, header->viewport()->height())
                                                   : QRect(0, start, header->viewport()->width(), size);
}

QString itemsInstead(QObject* container, const QStringList& path)
{
    QStringList parent = path;
    while (!parent.isEmpty() && findItem(container, parent, -1, -1).isNone())
        parent.removeLast();
    const QString wanted = path.value(parent.size());
    const QString where =
        parent.isEmpty() ? QStringLiteral("It") : QStringLiteral("'%1'").arg(joinItemPath(parent));
    if (path.isEmpty() && itemViewOf(container) && itemViewOf(container)->model()) {
        const QAbstractItemModel* model = itemViewOf(container)->model();
        return QStringLiteral("It has %1 rows and %2 columns.")
            .arg(model->rowCount(itemViewOf(container)->rootIndex()))
            .arg(model->columnCount(itemViewOf(container)->rootIndex()));
    }
    const QStringList there = texts(container, parent);
    if (there.isEmpty())
        return where + (parent.isEmpty() ? QStringLiteral(" is empty.") : QStringLiteral(" has no items."));
    std::vector<std::pair<int, QString>> ranked;
    for (const QString& text : there)
        ranked.emplace_back(unlikeness(text, wanted), text);
    std::stable_sort(ranked.begin(), ranked.end(),
                     [](const auto& left, const auto& right) { return left.first < right.first; });
    constexpr int shown = 6;
    const int more = there.size() - shown;
    QStringList quoted;
    for (int i = 0; i < qMin(shown, there.size()); ++i)
        quoted.append(QLatin1Char('\'') + joinItemPath({ranked[std::size_t(i)].second}) + QLatin1Char('\''));
    return QStringLiteral("%1 has %2%3.")
        .arg(where, quoted.join(QStringLiteral(", ")),
             more > 0 ? QStringLiteral(" and %1 more").arg(more) : QString());
}

QAbstractItemView* viewOf(const QModelIndex& index)
{
    if (lastView() && lastView()->model() == index.model())
        return lastView();
    QAbstractItemView* found = nullptr;
    visitAll([&](QObject* object) {
        auto* view = qobject_cast<QAbstractItemView*>(object);
        // A header has the model of its view, but does not show its items.
        if (!view || view->model() != index.model() || qobject_cast<QHeaderView*>(view))
            return true;
        if (!found || view->isVisible())
            found = view;
        return !found->isVisible();
    });
    return found;
}

QString plainActionText(const QString& text)
{
    QString plain;
    const QString visible = text.section(QLatin1Char('\t'), 0, 0);
    for (int i = 0; i < visible.size(); ++i) {
        if (visible.at(i) == QLatin1Char('&') && i + 1 < visible.size())
            ++i;
        plain.append(visible.at(i));
    }
    return plain;
}

QAbstractItemView* itemViewOf(QObject* container)
{
    if (auto* combo = qobject_cast<QComboBox*>(container))
        return combo->view();
    return qobject_cast<QAbstractItemView*>(container);
}

Value findItem(QObject* container, const QStringList& path, int row, int column)
{
    if (QWidget* menu = menuOf(container)) {
        QAction* action = findAction(menu, path, row);
        return action ? Value::ofObject(action) : Value();
    }
    if (QTabBar* bar = tabBarOf(container))
        return findTab(bar, path, row);
    if (auto* header = qobject_cast<QHeaderView*>(container))
        return findSection(header, path, qMax(row, column));
    QAbstractItemView* view = itemViewOf(container);
    if (!view)
        throw Error(QStringLiteral("%1 has no items").arg(describeObject(container)));
    if (!view->model())
        return {};
    const QModelIndex index = findIndex(view->model(), view->rootIndex(), path, row, column);
    if (!index.isValid())
        return {};
    lastView() = view;
    return toValue(index);
}

QStringList itemPath(const QModelIndex& index)
{
    QStringList path;
    for (QModelIndex at = index; at.isValid(); at = at.parent())
        path.prepend(at.data(Qt::DisplayRole).toString());
    return path;
}

void showItem(QAbstractItemView* view, const QModelIndex& index)
{
    if (auto* tree = qobject_cast<QTreeView*>(view))
        for (QModelIndex at = index.parent(); at.isValid(); at = at.parent())
            tree->expand(at);
    view->scrollTo(index);
}

} // namespace Torvix::Agent
