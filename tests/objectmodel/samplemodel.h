#pragma once

#include "objectmodel/inspector.h"
#include "support/model/localmodel.h"

namespace Torvix::Testing {

using Protocol::Value;

/** A string literal as it stands. */
inline QString text(const char* utf8)
{
    return QString::fromUtf8(utf8);
}

/**
 * Shapes without an application: `Base` (property `title`, enumerator `Colour`) below `Shape`
 * (`size`, `scale(int)`, `scale(double)`), a value type `Point`, `Ns::Inner::Thing`, and a global
 * class with `count`, `sum(int,int)`.
 */
class SampleModel
{
public:
    SampleModel()
    {
        auto local = std::make_unique<LocalModel>();
        model = local.get();
        describe();
        application = Inspector::self()->addApplication(std::move(local));
        Inspector::self()->setCurrent(application);
    }
    ~SampleModel() { Inspector::self()->reset(); }
    SampleModel(const SampleModel&) = delete;
    SampleModel& operator=(const SampleModel&) = delete;

    SharedPtr<Object> find(const char* name) const
    {
        return Inspector::self()->findObject(text(name)).orNothing();
    }

    LocalModel* model = nullptr;
    ApplicationModel* application = nullptr;
    QString title = text("first");
    int size = 7;
    Protocol::ObjectRef shape;
    Protocol::ObjectRef other;

private:
    void describe()
    {
        using namespace Protocol;
        const auto intArgument = LocalModel::argument(text("by"), IntClass);
        auto base = model->addClass(text("Base"));
        base.property(
            text("title"), LocalModel::type(StringClass),
            [this](qint64) { return LocalModel::Outcome(Value::ofString(title)); },
            [this](qint64, const Value& value) {
                title = value.text;
                return LocalModel::Outcome();
            });
        base.property(text("hidden"), LocalModel::type(IntClass), nullptr,
                      [](qint64, const Value&) { return LocalModel::Outcome::failure(text("not now")); });
        base.enumerator(text("Colour"), {{text("Red"), 1}, {text("Green"), 2}, {text("Blue"), 4}}, true);
        base.method(text("scale"), {intArgument},
                    [](qint64, const QVector<Value>&) { return Value::ofInt(0); });

        auto shapes = model->addClass(text("Shape"));
        shapes.superClass(text("Base"));
        shapes.property(text("size"), LocalModel::type(IntClass),
                        [this](qint64) { return LocalModel::Outcome(Value::ofInt(size)); });
        shapes.method(
            text("scale"), {intArgument},
            [this](qint64, const QVector<Value>& arguments) {
                size *= int(arguments[0].integer);
                return LocalModel::Outcome(Value::ofInt(size));
            },
            LocalModel::type(IntClass));
        shapes.method(text("fail"), {}, [](qint64, const QVector<Value>&) {
            return LocalModel::Outcome::failure(text("no luck"));
        });
        shapes.method(
            text("self"), {},
            [](qint64 object, const QVector<Value>&) {
                ObjectRef ref;
                ref.id = object;
                ref.classId = FirstAgentClass + 1;
                ref.attribute = {IndirectFlag, 1};
                return LocalModel::Outcome(
                    Value::ofMap({{text("it"), Value::ofArray({Value::ofObject(ref), Value::ofInt(1)})}}));
            },
            LocalModel::type(MapClassId));

        auto points = model->addClass(text("Point"));
        points.valueType();
        points.convertsTo(StringClass,
                          [](qint64, const QVector<Value>&) { return Value::ofString(text("1,2")); });
        points.constructor({intArgument, intArgument}, [this](qint64, const QVector<Value>&) {
            return LocalModel::Outcome(Value::ofObject(model->addObject(text("Point"), QString(), {0, 0})));
        });
        model->addClass(text("Ns::Inner::Thing"));

        auto global = model->addClass(text("Global"));
        global.property(
            text("count"), LocalModel::type(IntClass),
            [](qint64) { return LocalModel::Outcome(Value::ofInt(42)); }, nullptr, true);
        global.method(
            text("sum"), {intArgument, intArgument},
            [](qint64, const QVector<Value>& v) { return Value::ofInt(v[0].integer + v[1].integer); },
            LocalModel::type(IntClass), true, text("use add()"));
        model->setGlobalClass(text("Global"));
        shape = model->addObject(text("Shape"), text("one"));
        other = model->addObject(text("Shape"), text("two"));
    }
};

} // namespace Torvix::Testing
