#include "agent/bindings/bindings.h"
#include "agent/reflection/bind.h"

#include <QAction>
#include <QActionGroup>
#include <QMenu>
#include <QMenuBar>
#include <QToolBar>

namespace Torvix::Agent {

void bindMenus(Registry& registry)
{
    Bind<QAction>(registry)
        .method("menu", qOverload<>(&QAction::menu))
        .method("isSeparator", &QAction::isSeparator)
        .method("actionGroup", &QAction::actionGroup)
        .method("associatedWidgets", &QAction::associatedWidgets)
        .method("parentWidget", &QAction::parentWidget)
        .method("shortcuts", &QAction::shortcuts)
        .method("data", &QAction::data);
    Bind<QActionGroup>(registry)
        .method("actions", &QActionGroup::actions)
        .method("checkedAction", &QActionGroup::checkedAction);
    Bind<QMenu>(registry)
        .method("actionAt", &QMenu::actionAt, "position")
        .method("actionGeometry", &QMenu::actionGeometry, "action")
        .method("activeAction", &QMenu::activeAction)
        .method("menuAction", &QMenu::menuAction)
        .method("isEmpty", &QMenu::isEmpty)
        .method("popup", &QMenu::popup, "position, action", defaults(static_cast<QAction*>(nullptr)));
    Bind<QMenuBar>(registry)
        .method("actionAt", &QMenuBar::actionAt, "position")
        .method("actionGeometry", &QMenuBar::actionGeometry, "action")
        .method("activeAction", &QMenuBar::activeAction);
    Bind<QToolBar>(registry)
        .method("widgetForAction", &QToolBar::widgetForAction, "action")
        .method("actionAt", qOverload<const QPoint&>(&QToolBar::actionAt), "position");
}

} // namespace Torvix::Agent
