#include "agent/actions/actions.h"

#include "agent/input/inputqueue.h"
#include "agent/input/keytext.h"
#include "agent/input/synthesizer.h"
#include "agent/items/itemactions.h"
#include "agent/items/items.h"
#include "agent/items/target.h"
#include "agent/lookup/namematcher.h"
#include "agent/lookup/objecttree.h"
#include "agent/reflection/bind.h"
#include "agent/reflection/convert.h"
#include "agent/reflection/error.h"
#include "agent/reflection/globalclass.h"
#include "agent/reflection/registry.h"
#include "agent/widgets/graphics.h"
#include "agent/widgets/widgettoolkit.h"

#include <QAbstractButton>
#include <QAbstractSlider>
#include <QAbstractSpinBox>
#include <QComboBox>
#include <QGraphicsView>
#include <QTabBar>
#include <QWidget>
#include <QWindow>

namespace Torvix::Agent {

namespace {

/** The arguments behind the target, by the names of the form that was called. */
class Arguments
{
public:
    Arguments(const std::vector<ArgumentInfo>& infos, const std::vector<Value>& values)
    {
        for (std::size_t i = 0; i < infos.size(); ++i)
            m_values.insert(infos[i].name, values[i]);
    }
    bool has(const char* name) const { return m_values.contains(name); }
    int number(const char* name, int fallback) const
    {
        return has(name) ? fromValue<int>(m_values.value(name)) : fallback;
    }
    QString text(const char* name) const { return fromValue<QString>(m_values.value(name)); }
    Value target() const { return m_values.value("object"); }

    Qt::MouseButton button() const
    {
        return has("button") ? Input::mouseButtonOf(number("button", 0)) : Qt::LeftButton;
    }
    Qt::KeyboardModifiers modifiers() const { return modifiersOf(number("modifiers", 0)); }
    Input::Place place() const
    {
        const QPoint position(number("x", 0), number("y", 0));
        return placeIn(target(), has("x") ? &position : nullptr);
    }

private:
    QMap<QByteArray, Value> m_values;
};

QWidget* widgetTarget(const Arguments& arguments)
{
    QObject* object = arguments.target().object();
    if (object && object->isWidgetType())
        return static_cast<QWidget*>(object);
    throw Error(QStringLiteral("a widget is needed, but %1 was given").arg(arguments.target().toText()));
}

/** An item that is scrolled away or folded is brought into view first. */
void bringIntoView(const Value& target)
{
    if (target.typeName == "QModelIndex")
        showIndex(target.data.toModelIndex());
    else if (const QGraphicsItem* item = Graphics::itemOf(target)) {
        if (QGraphicsView* view = Graphics::viewOf(item))
            view->ensureVisible(item, 0, 0);
    } else if (target.isPointer() && !target.isObject())
        showWidgetItem(target);
}

void mouseClick(const Arguments& arguments)
{
    if (chooseInClosedCombo(arguments.target()))
        return;
    bringIntoView(arguments.target());
    Input::click(arguments.place(), arguments.button(), arguments.modifiers());
}

void doubleClick(const Arguments& arguments)
{
    bringIntoView(arguments.target());
    Input::doubleClick(arguments.place(), arguments.button(), arguments.modifiers());
}

void mouseDrag(const Arguments& arguments)
{
    bringIntoView(arguments.target());
    Input::drag(arguments.place(), QPoint(arguments.number("dx", 0), arguments.number("dy", 0)),
                arguments.button(), arguments.modifiers());
}

void mouseWheel(const Arguments& arguments)
{
    Input::wheel(arguments.place(), QPoint(arguments.number("dx", 0), arguments.number("dy", 0)),
                 arguments.modifiers());
}

void typeText(const Arguments& arguments)
{
    if (auto* window = qobject_cast<QWindow*>(arguments.target().object())) {
        Input::focus(window);
        Input::type(arguments.text("text"));
        return;
    }
    QWidget* widget = widgetTarget(arguments);
    if (QWidget* modal = modalBlockerOf(widget))
        throw Error(QStringLiteral("%1 gets no keys while the modal window %2 is open")
                        .arg(describeObject(widget), describeObject(modal)));
    if (!widget->isVisible())
        throw Error(QStringLiteral("%1 is not visible").arg(describeObject(widget)));
    // Keys to a popup or to a window go to whatever has the focus in it.
    if (!widget->isWindow())
        Input::focus(widget);
    Input::type(arguments.text("text"));
}

void nativeType(const Arguments& arguments)
{
    Input::type(arguments.text("text"));
}

void clickButton(const Arguments& arguments)
{
    auto* button = qobject_cast<QAbstractButton*>(widgetTarget(arguments));
    if (!button)
        throw Error(QStringLiteral("%1 is no button").arg(describeObject(widgetTarget(arguments))));
    if (!button->isEnabled())
        throw Error(QStringLiteral("%1 is disabled").arg(describeObject(button)));
    QPoint position = button->rect().center();
    // A check box reacts on its mark and text only, which begin at the left.
    if (!button->property("checkable").toBool() || button->inherits("QPushButton") ||
        button->inherits("QToolButton"))
        Input::click(placeIn(arguments.target(), &position), Qt::LeftButton, {});
    else {
        position = QPoint(qMin(10, button->width() / 2), button->height() / 2);
        Input::click(placeIn(arguments.target(), &position), Qt::LeftButton, {});
    }
}

void scrollTo(const Arguments& arguments)
{
    auto* slider = qobject_cast<QAbstractSlider*>(arguments.target().object());
    if (slider && arguments.has("value")) {
        InputQueue::instance().postOnce(
            [guard = QPointer<QAbstractSlider>(slider), value = arguments.number("value", 0)] {
                if (guard)
                    guard->setSliderPosition(value);
            });
        return;
    }
    if (arguments.has("item"))
        ItemActions::scrollTo(arguments.target().object(), splitItemPath(arguments.text("item")));
    else
        bringIntoView(arguments.target());
}

void setFocus(const Arguments& arguments)
{
    Input::focus(widgetTarget(arguments));
}

void closeWindow(const Arguments& arguments)
{
    QWidget* window = widgetTarget(arguments)->window();
    if (QWidget* modal = modalBlockerOf(window))
        throw Error(QStringLiteral("%1 cannot be closed while the modal window %2 is open")
                        .arg(describeObject(window), describeObject(modal)));
    Input::closeWindow(window);
}

template <void (*Act)(QObject*, const QStringList&, Qt::MouseButton, Qt::KeyboardModifiers)>
void onItem(const Arguments& arguments)
{
    Act(arguments.target().object(), splitItemPath(arguments.text("item")), arguments.button(),
        arguments.modifiers());
}

struct Action
{
    const char* name;
    /** Each form is one overload: "name:type name:type"; the target comes before. */
    std::vector<const char*> forms;
    void (*run)(const Arguments& arguments);
};

const std::vector<const char*> clickForms = {
    "", "button:Qt::MouseButton", "x:int y:int", "x:int y:int button:Qt::MouseButton",
    "x:int y:int modifiers:Qt::KeyboardModifier button:Qt::MouseButton"};
const std::vector<const char*> itemForms = {
    "item:QString", "item:QString button:Qt::MouseButton",
    "item:QString modifiers:Qt::KeyboardModifier button:Qt::MouseButton"};

const Action actions[] = {
    {"mouseClick", clickForms, mouseClick},
    {"doubleClick", clickForms, doubleClick},
    {"mouseDrag",
     {"x:int y:int dx:int dy:int",
      "x:int y:int dx:int dy:int modifiers:Qt::KeyboardModifier button:Qt::MouseButton"},
     mouseDrag},
    {"mouseWheel",
     {"dx:int dy:int", "x:int y:int dx:int dy:int",
      "x:int y:int dx:int dy:int modifiers:Qt::KeyboardModifier"},
     mouseWheel},
    {"type", {"text:QString"}, typeText},
    {"clickButton", {""}, clickButton},
    {"activateItem", {"item:QString"}, onItem<ItemActions::activate>},
    {"clickItem", itemForms, onItem<ItemActions::click>},
    {"doubleClickItem", itemForms, onItem<ItemActions::doubleClick>},
    {"expandItem", {"item:QString"}, onItem<ItemActions::expand>},
    {"collapseItem", {"item:QString"}, onItem<ItemActions::collapse>},
    {"scrollTo", {"", "value:int", "item:QString"}, scrollTo},
    {"setFocus", {""}, setFocus},
    {"closeWindow", {""}, closeWindow},
};

const char* const targetTypes[] = {"QObject*",         "QModelIndex",      "QTableWidgetItem*",
                                   "QTreeWidgetItem*", "QListWidgetItem*", "QGraphicsItem*",
                                   "TabItem",          "SectionItem"};

std::vector<ArgumentInfo> readForm(const char* form)
{
    std::vector<ArgumentInfo> infos;
    for (const QByteArray& part : QByteArray(form).split(' ')) {
        const int colon = part.indexOf(':');
        if (colon < 0)
            continue;
        ArgumentInfo info{part.left(colon), TypeUse::parse(part.mid(colon + 1))};
        info.type.isEnum = info.type.name.startsWith("Qt::");
        infos.push_back(info);
    }
    return infos;
}

void addForm(ClassInfo& global, const char* name, const std::vector<ArgumentInfo>& infos,
             void (*run)(const Arguments&))
{
    MethodInfo method;
    method.name = name;
    method.arguments = infos;
    method.result.name = "void";
    method.isStatic = true;
    method.invoke = [infos, run](Value&, const std::vector<Value>& given) {
        run(Arguments(infos, given));
        return Value();
    };
    global.methods.push_back(std::move(method));
}

} // namespace

void bindActions(Registry& registry)
{
    Bind<TabItem>(registry).value().property("text", &TabItem::text).property("index", &TabItem::position);
    Bind<SectionItem>(registry)
        .value()
        .property("text", &SectionItem::text)
        .property("index", &SectionItem::position);
    ClassInfo& global = registry.define(globalClassName, {});
    for (const Action& action : actions)
        for (const char* form : action.forms)
            for (const char* target : targetTypes) {
                std::vector<ArgumentInfo> infos = readForm(form);
                infos.insert(infos.begin(), {"object", TypeUse::parse(target)});
                addForm(global, action.name, infos, action.run);
            }
    addForm(global, "nativeType", readForm("text:QString"), nativeType);
}

} // namespace Torvix::Agent
