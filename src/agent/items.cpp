#include "agent/items.h"

#include "agent/convert.h"
#include "agent/error.h"
#include "agent/namematcher.h"

#include <QAbstractItemView>
#include <QAction>
#include <QComboBox>
#include <QMenu>
#include <QMenuBar>
#include <QTabWidget>
#include <QTreeView>

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

} // namespace

QStringList splitItemPath(const QString& path)
{
    QStringList texts{QString()};
    for (int i = 0; i < path.size(); ++i) {
        const bool escapes = path.at(i) == QLatin1Char('\\') && i + 1 < path.size() &&
                             (path.at(i + 1) == QLatin1Char('.') || path.at(i + 1) == QLatin1Char('\\'));
        if (escapes)
            texts.last().append(path.at(++i));
        else if (path.at(i) == QLatin1Char('.'))
            texts.append(QString());
        else
            texts.last().append(path.at(i));
    }
    return texts;
}

QString joinItemPath(const QStringList& texts)
{
    QStringList escaped;
    for (QString text : texts)
        escaped.append(text.replace(QLatin1Char('\\'), QLatin1String("\\\\"))
                           .replace(QLatin1Char('.'), QLatin1String("\\.")));
    return escaped.join(QLatin1Char('.'));
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
    if (qobject_cast<QMenu*>(container) || qobject_cast<QMenuBar*>(container)) {
        QAction* action = findAction(static_cast<QWidget*>(container), path, row);
        return action ? Value::ofObject(action) : Value();
    }
    if (auto* tabs = qobject_cast<QTabWidget*>(container))
        return findTab(tabs->tabBar(), path, row);
    if (auto* bar = qobject_cast<QTabBar*>(container))
        return findTab(bar, path, row);
    QAbstractItemView* view = itemViewOf(container);
    if (!view)
        throw Error(QStringLiteral("%1 has no items").arg(describeObject(container)));
    if (!view->model())
        return {};
    const QModelIndex index = findIndex(view->model(), view->rootIndex(), path, row, column);
    return index.isValid() ? toValue(index) : Value();
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
