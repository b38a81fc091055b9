#include "agent/bindings/bindings.h"
#include "agent/reflection/bind.h"

#include <QAbstractButton>
#include <QAction>
#include <QButtonGroup>
#include <QComboBox>
#include <QCompleter>
#include <QDialog>
#include <QDialogButtonBox>
#include <QDockWidget>
#include <QGroupBox>
#include <QLabel>
#include <QLayout>
#include <QLineEdit>
#include <QListView>
#include <QMainWindow>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenuBar>
#include <QMessageBox>
#include <QPushButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QSlider>
#include <QSpinBox>
#include <QSplitter>
#include <QStackedWidget>
#include <QStatusBar>
#include <QStyle>
#include <QTabBar>
#include <QTabWidget>
#include <QToolBar>
#include <QToolBox>
#include <QToolButton>

namespace Torvix::Agent {

static void bindWidget(Registry& registry)
{
    Bind<QObject>(registry)
        .method("parent", &QObject::parent)
        .method("children", &QObject::children)
        .extension(
            "inherits",
            +[](QObject& o, const QString& name) { return o.inherits(name.toLatin1().constData()); },
            "className")
        .extension(
            "property",
            +[](QObject& o, const QString& name) { return o.property(name.toUtf8().constData()); }, "name")
        .extension(
            "setProperty",
            +[](QObject& o, const QString& name, const QVariant& value) {
                return o.setProperty(name.toUtf8().constData(), value);
            },
            "name, value")
        .method("dynamicPropertyNames", &QObject::dynamicPropertyNames)
        .method("blockSignals", &QObject::blockSignals, "block")
        .method("isWidgetType", &QObject::isWidgetType)
        .extension(
            "className", +[](QObject& o) { return QString::fromLatin1(o.metaObject()->className()); });
    Bind<QWidget>(registry)
        .method("window", &QWidget::window)
        .method("parentWidget", &QWidget::parentWidget)
        .method("childAt", qOverload<int, int>(&QWidget::childAt), "x, y")
        .method("childAt", qOverload<const QPoint&>(&QWidget::childAt), "position")
        .method("focusWidget", &QWidget::focusWidget)
        .method("hasFocus", &QWidget::hasFocus)
        .method("isVisible", &QWidget::isVisible)
        .method("isHidden", &QWidget::isHidden)
        .method("isEnabled", &QWidget::isEnabled)
        .method("isWindow", &QWidget::isWindow)
        .method("isActiveWindow", &QWidget::isActiveWindow)
        .method("isMinimized", &QWidget::isMinimized)
        .method("isMaximized", &QWidget::isMaximized)
        .method("isAncestorOf", &QWidget::isAncestorOf, "child")
        .method("mapToGlobal", &QWidget::mapToGlobal, "position")
        .method("mapFromGlobal", &QWidget::mapFromGlobal, "position")
        .method("mapTo", &QWidget::mapTo, "parent, position")
        .method("mapFrom", &QWidget::mapFrom, "parent, position")
        .method("resize", qOverload<int, int>(&QWidget::resize), "width, height")
        .method("move", qOverload<int, int>(&QWidget::move), "x, y")
        .method("setFocus", qOverload<Qt::FocusReason>(&QWidget::setFocus), "reason")
        .method("activateWindow", &QWidget::activateWindow)
        .method("actions", &QWidget::actions)
        .method("layout", &QWidget::layout)
        .method("grab", &QWidget::grab, "rectangle", defaults(QRect(0, 0, -1, -1)))
        .method("windowFlags", &QWidget::windowFlags)
        .method("testAttribute", &QWidget::testAttribute, "attribute")
        .method("winId", &QWidget::winId);
}

static void bindLayouts(Registry& registry)
{
    Bind<QLayoutItem>(registry)
        .method("widget", &QLayoutItem::widget)
        .method("layout", &QLayoutItem::layout)
        .method("geometry", &QLayoutItem::geometry)
        .method("isEmpty", &QLayoutItem::isEmpty);
    Bind<QLayout>(registry)
        .method("count", &QLayout::count)
        .method("itemAt", &QLayout::itemAt, "index")
        .extension(
            "widgetAt",
            +[](QLayout& layout, int index) {
                QLayoutItem* item = layout.itemAt(index);
                return item ? item->widget() : nullptr;
            },
            "index")
        .method("indexOf", qOverload<QWidget*>(&QLayout::indexOf), "widget")
        .method("spacing", &QLayout::spacing)
        .method("contentsRect", &QLayout::contentsRect)
        .method("parentWidget", &QLayout::parentWidget);
    Bind<QSplitter>(registry)
        .method("sizes", &QSplitter::sizes)
        .method("setSizes", &QSplitter::setSizes, "sizes")
        .method("count", &QSplitter::count)
        .method("widget", &QSplitter::widget, "index");
    Bind<QScrollArea>(registry).method("widget", &QScrollArea::widget);
    Bind<QAbstractScrollArea>(registry)
        .method("viewport", &QAbstractScrollArea::viewport)
        .method("horizontalScrollBar", &QAbstractScrollArea::horizontalScrollBar)
        .method("verticalScrollBar", &QAbstractScrollArea::verticalScrollBar);
}

static void bindContainers(Registry& registry)
{
    Bind<QTabBar>(registry)
        .propertyOf(
            "selectionBehaviorOnRemove", +[](QTabBar& bar) { return int(bar.selectionBehaviorOnRemove()); })
        .method("tabText", &QTabBar::tabText, "index")
        .method("setTabText", &QTabBar::setTabText, "index, text")
        .method("tabRect", &QTabBar::tabRect, "index")
        .method("tabAt", &QTabBar::tabAt, "position")
        .method("isTabEnabled", &QTabBar::isTabEnabled, "index")
        .method("tabToolTip", &QTabBar::tabToolTip, "index");
    Bind<QTabWidget>(registry)
        .method("tabText", &QTabWidget::tabText, "index")
        .method("setTabText", &QTabWidget::setTabText, "index, text")
        .method("widget", &QTabWidget::widget, "index")
        .method("indexOf", &QTabWidget::indexOf, "widget")
        .method("currentWidget", &QTabWidget::currentWidget)
        .method("tabBar", &QTabWidget::tabBar)
        .method("isTabEnabled", &QTabWidget::isTabEnabled, "index")
        .method("addTab", qOverload<QWidget*, const QString&>(&QTabWidget::addTab), "page, label")
        .method("removeTab", &QTabWidget::removeTab, "index");
    Bind<QStackedWidget>(registry)
        .method("widget", &QStackedWidget::widget, "index")
        .method("indexOf", &QStackedWidget::indexOf, "widget")
        .method("currentWidget", &QStackedWidget::currentWidget);
    Bind<QToolBox>(registry)
        .method("itemText", &QToolBox::itemText, "index")
        .method("widget", &QToolBox::widget, "index")
        .method("currentWidget", &QToolBox::currentWidget);
    Bind<QMainWindow>(registry)
        .method("centralWidget", &QMainWindow::centralWidget)
        .method("menuBar", &QMainWindow::menuBar)
        .method("statusBar", &QMainWindow::statusBar);
    Bind<QStatusBar>(registry).method("currentMessage", &QStatusBar::currentMessage);
    Bind<QDockWidget>(registry).method("widget", &QDockWidget::widget);
    Bind<QMdiArea>(registry)
        .method("subWindowList", &QMdiArea::subWindowList, "order", defaults(QMdiArea::CreationOrder))
        .method("activeSubWindow", &QMdiArea::activeSubWindow)
        .method("currentSubWindow", &QMdiArea::currentSubWindow);
    Bind<QMdiSubWindow>(registry).method("widget", &QMdiSubWindow::widget);
}

static void bindInputs(Registry& registry)
{
    Bind<QAbstractButton>(registry).method("group", &QAbstractButton::group);
    Bind<QButtonGroup>(registry)
        .method("buttons", &QButtonGroup::buttons)
        .method("checkedButton", &QButtonGroup::checkedButton)
        .method("checkedId", &QButtonGroup::checkedId);
    Bind<QLabel>(registry).method("buddy", &QLabel::buddy).method("setBuddy", &QLabel::setBuddy, "widget");
    Bind<QToolButton>(registry)
        .method("menu", &QToolButton::menu)
        .method("defaultAction", &QToolButton::defaultAction);
    Bind<QPushButton>(registry).method("menu", &QPushButton::menu);
    Bind<QLineEdit>(registry)
        .method("setSelection", &QLineEdit::setSelection, "start, length")
        .method("selectionStart", &QLineEdit::selectionStart)
        .method("completer", &QLineEdit::completer);
    Bind<QComboBox>(registry)
        .method("itemText", &QComboBox::itemText, "index")
        .method("setItemText", &QComboBox::setItemText, "index, text")
        .method("itemData", &QComboBox::itemData, "index, role", defaults(int(Qt::UserRole)))
        .method("findText", &QComboBox::findText, "text, flags",
                defaults(Qt::MatchFlags(Qt::MatchExactly | Qt::MatchCaseSensitive)))
        .method("findData", &QComboBox::findData, "data, role, flags",
                defaults(int(Qt::UserRole), Qt::MatchFlags(Qt::MatchExactly | Qt::MatchCaseSensitive)))
        .method("addItem", qOverload<const QString&, const QVariant&>(&QComboBox::addItem), "text, userData",
                defaults(QVariant()))
        .method("addItems", &QComboBox::addItems, "texts")
        .method("insertItem", qOverload<int, const QString&, const QVariant&>(&QComboBox::insertItem),
                "index, text, userData", defaults(QVariant()))
        .method("removeItem", &QComboBox::removeItem, "index")
        .method("lineEdit", &QComboBox::lineEdit)
        .method("model", &QComboBox::model)
        .method("view", &QComboBox::view)
        .method("showPopup", &QComboBox::showPopup)
        .method("hidePopup", &QComboBox::hidePopup);
    Bind<QSpinBox>(registry).method("setRange", &QSpinBox::setRange, "minimum, maximum");
    Bind<QDoubleSpinBox>(registry).method("setRange", &QDoubleSpinBox::setRange, "minimum, maximum");
    Bind<QAbstractSlider>(registry).method("triggerAction", &QAbstractSlider::triggerAction, "action");
    Bind<QSlider>{registry};
    Bind<QScrollBar>{registry};
    Bind<QGroupBox>{registry};
}

void bindWidgets(Registry& registry)
{
    bindWidget(registry);
    bindLayouts(registry);
    bindContainers(registry);
    bindInputs(registry);
    Bind<QDialog>(registry)
        .method("result", &QDialog::result)
        .method("setResult", &QDialog::setResult, "result");
    Bind<QMessageBox>(registry)
        .method("buttons", &QMessageBox::buttons)
        .method("button", &QMessageBox::button, "which")
        .method("defaultButton", &QMessageBox::defaultButton)
        .method("standardButton", &QMessageBox::standardButton, "button")
        .method("clickedButton", &QMessageBox::clickedButton);
    Bind<QDialogButtonBox>(registry)
        .method("buttons", &QDialogButtonBox::buttons)
        .method("button", &QDialogButtonBox::button, "which");
}

} // namespace Torvix::Agent
