#include "objectmodel/samplemodel.h"

#include <gtest/gtest.h>

namespace {

using namespace Torvix;
using namespace Torvix::Testing;

TEST(Inspector, KnowsTheBuiltInTypesWithoutAnApplication)
{
    Inspector* inspector = Inspector::self();
    const char* const names[] = {"uint",   "int",    "short", "bool",  "QString",
                                 "double", "qint64", "void",  "Array", "Map"};
    for (int id = 0; id < 10; ++id) {
        ASSERT_TRUE(inspector->classById(id));
        EXPECT_EQ(text(names[id]), inspector->classById(id)->name());
        EXPECT_EQ(inspector->classById(id), inspector->classByName(text(names[id])));
    }
    EXPECT_EQ(inspector->classById(4), inspector->classByName(text("string")));
    EXPECT_EQ(ArrayClass::registeredClass(), inspector->classById(8));
    EXPECT_FALSE(inspector->classById(10));
    EXPECT_FALSE(inspector->globalClass());
    EXPECT_TRUE(inspector->globalNamespace()->isGlobal());
    const Result<SharedPtr<Object>> nothing = inspector->findObject(text("{type='X'}"));
    EXPECT_FALSE(nothing);
    EXPECT_TRUE(nothing.error().contains(text("No application"))) << qPrintable(nothing.error());
}

TEST(Class, ReadsWritesAndCallsThroughItsDescription)
{
    SampleModel sample;
    const SharedPtr<Object> shape = sample.find("{type='Shape' name='one'}");
    ASSERT_TRUE(shape);
    const Class* type = shape->objectClass();
    EXPECT_EQ(text("Shape"), shape->className());
    EXPECT_EQ(3, type->numProperties());
    EXPECT_EQ(text("title"), type->property(0)->name()) << "superclasses come first";
    EXPECT_EQ(text("size"), type->property(2)->name());
    EXPECT_FALSE(type->property(3));
    EXPECT_FALSE(type->property(text("nothing")));

    const Property* title = type->property(text("title"));
    EXPECT_EQ(text("first"), title->get(shape)->toString());
    EXPECT_TRUE(title->set(shape, Inspector::self()->createString(text("\xc3\xa4ndern"))));
    EXPECT_EQ(text("\xc3\xa4ndern"), sample.title);
    EXPECT_FALSE(type->property(text("size"))->isWritable());
    EXPECT_FALSE(type->property(text("hidden"))->isReadable());
    EXPECT_EQ(text("not now"),
              type->property(text("hidden"))->set(shape, Inspector::self()->createInteger(1)).error());
    EXPECT_TRUE(title->get(nullptr).error().contains(text("title")));

    const QVector<const Method*> scale = type->methods(text("scale"));
    ASSERT_EQ(2, scale.size()) << "with that of the superclass, the nearer one first";
    EXPECT_EQ(type, scale[0]->declaringClass());
    EXPECT_EQ(text("(int)"), scale[0]->signature().toString());
    EXPECT_EQ(14, scale[0]->invoke(shape, {Inspector::self()->createInteger(2)})->toInt());
    EXPECT_FALSE(scale[0]->invoke(shape, {}));
    EXPECT_EQ(text("no luck"), type->methods(text("fail"))[0]->invoke(shape, {}).error());

    const Class* global = Inspector::self()->globalClass();
    EXPECT_EQ(42, global->property(text("count"))->get(nullptr)->toInt());
    const Method* sum = global->methods(text("sum"))[0];
    EXPECT_EQ(text("use add()"), sum->deprecation());
    EXPECT_EQ(5,
              sum->invoke(nullptr, {Inspector::self()->createInteger(2), Inspector::self()->createInteger(3)})
                  ->toInt());
}

TEST(Class, IsDescribedOnceAndMissesAreRememberedUntilClassesAppear)
{
    SampleModel sample;
    Inspector* inspector = Inspector::self();
    const Class* shape = inspector->classByName(text("Shape"));
    shape->methods(text("scale"));
    const int before = sample.model->requestCount();
    EXPECT_EQ(shape, inspector->classByName(text("Shape")));
    EXPECT_EQ(shape, inspector->classById(shape->id()));
    shape->numProperties();
    shape->superClass()->numProperties();
    EXPECT_EQ(before, sample.model->requestCount());

    EXPECT_FALSE(inspector->classByName(text("Late")));
    EXPECT_FALSE(inspector->classByName(text("Late")));
    EXPECT_EQ(before + 1, sample.model->requestCount());
    sample.model->addClass(text("Late"));
    sample.model->addObject(text("Late"), text("the first"));
    EXPECT_FALSE(inspector->classByName(text("Late"))) << "asked a moment ago";
    EXPECT_TRUE(inspector->findObject(text("{type='Late' name='the first'}")));
    EXPECT_TRUE(inspector->classByName(text("Late"))) << "an object of a new class is news";
}

TEST(Property, SeveralAreReadInOneRoundTrip)
{
    SampleModel sample;
    Inspector* inspector = Inspector::self();
    const SharedPtr<Object> one = sample.find("{type='Shape' name='one'}");
    const QVector<const Property*> readable = Property::readable(one->objectClass());
    ASSERT_EQ(2, readable.size()) << "the inherited one too, but not the one that can only be set";
    const int before = sample.model->requestCount();
    QMap<QString, QString> texts;
    const ObjectList values = *Property::getAll(one, readable);
    for (int i = 0; i < readable.size(); ++i)
        texts.insert(readable[i]->name(), values[i] ? values[i]->toString() : text("none"));
    EXPECT_EQ((QMap<QString, QString>{{"size", "7"}, {"title", "first"}}), texts);
    EXPECT_EQ(before + 1, sample.model->requestCount());

    const Property* hidden = inspector->classByName(text("Base"))->property(text("hidden"));
    const ObjectList partly = *Property::getAll(one, {hidden, readable[0]});
    EXPECT_TRUE(!partly[0] && partly[1]) << "one that fails does not stop the rest";
    EXPECT_FALSE(Property::getAll(inspector->createNull(one->objectClass()), readable));
}

TEST(Class, CountsAndFindsEnumeratorsAndSuperclasses)
{
    SampleModel sample;
    const Class* shape = Inspector::self()->classByName(text("Shape"));
    const Class* base = Inspector::self()->classByName(text("Base"));
    EXPECT_EQ(1, shape->superClassOffset(Class::EnumeratorOffset));
    EXPECT_EQ(2, shape->superClassOffset(Class::PropertyOffset));
    EXPECT_EQ(0, base->superClassOffset(Class::EnumeratorOffset));
    ASSERT_EQ(1, shape->numEnumerators());
    const Enum* colour = shape->enumerator(0);
    bool found = false;
    EXPECT_EQ(4, colour->value(text("Blue"), &found));
    EXPECT_TRUE(found);
    EXPECT_EQ(0, colour->value(text("Pink"), &found));
    EXPECT_FALSE(found);
    EXPECT_EQ(text("Red|Blue"), colour->keyForValue(5));
    EXPECT_TRUE(colour->keyForValue(8).isNull());
    EXPECT_EQ(1, shape->inheritanceDepth(base));
    EXPECT_EQ(-1, base->inheritanceDepth(shape));
    EXPECT_EQ(0, base->inheritanceDepth(base));
}

TEST(Class, CastsAndConversions)
{
    SampleModel sample;
    const Inspector* inspector = Inspector::self();
    const auto type = [&](const char* name) { return inspector->classByName(text(name)); };
    const struct
    {
        const char* from;
        const char* to;
        bool casts;
        bool converts;
    } cases[] = {
        {"double", "int", true, true},      {"int", "double", true, true},
        {"bool", "int", true, true},        {"double", "bool", false, false},
        {"int", "QString", false, true},    {"QString", "int", false, false},
        {"Shape", "Base", true, true},      {"Base", "Shape", false, false},
        {"QString", "Shape", false, true},  {"Point", "QString", false, true},
        {"QString", "Point", false, false}, {"Point", "Shape", false, false},
    };
    for (const auto& entry : cases) {
        EXPECT_EQ(entry.casts, type(entry.from)->canCastTo(type(entry.to), false, false, 0))
            << entry.from << " to " << entry.to;
        EXPECT_EQ(entry.converts, type(entry.from)->canConvertTo(type(entry.to), false, false, 0))
            << entry.from << " to " << entry.to;
        EXPECT_FALSE(type(entry.from)->canConvertTo(type(entry.to), false, false, 2));
    }
    const SharedPtr<Object> three = inspector->createDouble(3.9);
    EXPECT_EQ(3, three->objectClass()->convertObject(three, type("int"), false)->toInt());
    EXPECT_EQ(text("3.9"), three->objectClass()->convertObject(three, type("QString"), false)->toString());
    const SharedPtr<Object> name = inspector->createString(text("{type='Shape' name='two'}"));
    EXPECT_TRUE(
        name->objectClass()->convertObject(name, type("Base"), true)->compare(sample.find("{name='two'}")));
    const QString wrongClass =
        name->objectClass()->convertObject(name, type("Ns::Inner::Thing"), true).error();
    EXPECT_TRUE(wrongClass.contains(text("names a Shape"))) << qPrintable(wrongClass);
    const SharedPtr<Object> point =
        *type("Point")->constructor(0)->construct({inspector->createInteger(1), inspector->createInteger(2)});
    EXPECT_EQ(text("1,2"), point->objectClass()->convertObject(point, type("QString"), false)->toString());
}

TEST(Object, CastsUpAndBackButNotAside)
{
    SampleModel sample;
    const SharedPtr<Object> shape = sample.find("{name='one'}");
    const Inspector* inspector = Inspector::self();
    EXPECT_TRUE(shape->cast(inspector->classByName(text("Base"))));
    EXPECT_EQ(text("Base"), shape->className());
    EXPECT_TRUE(shape->cast(inspector->classByName(text("Shape"))));
    EXPECT_FALSE(shape->cast(inspector->classByName(text("Ns::Inner::Thing"))));
    EXPECT_EQ(text("Shape"), shape->className());
    EXPECT_FALSE(inspector->createInteger(1)->cast(inspector->classById(5)));
}

TEST(Object, ReferencesDereferencesAndNulls)
{
    SampleModel sample;
    const SharedPtr<Object> pointer = sample.find("{name='one'}");
    EXPECT_TRUE(pointer->objectAttribute().has(ObjectAttribute::Pointer));
    const SharedPtr<Object> plain = pointer->dereference();
    ASSERT_TRUE(plain);
    EXPECT_EQ(0u, plain->objectAttribute().flags);
    EXPECT_FALSE(plain->dereference());
    EXPECT_EQ(pointer->objectAttribute(), plain->reference()->objectAttribute());
    EXPECT_EQ(2u, pointer->reference()->objectAttribute().extra);
    EXPECT_TRUE(plain->compare(pointer));

    const SharedPtr<Object> null = pointer->objectClass()->createNull();
    EXPECT_TRUE(null->isNull());
    EXPECT_FALSE(null->dereference());
    EXPECT_EQ(text("null"), null->toString());
    EXPECT_FALSE(null->compare(pointer));
    EXPECT_TRUE(null->compare(pointer->objectClass()->createNull()));
    EXPECT_FALSE(pointer->objectClass()->property(text("size"))->get(null).error().isEmpty());
}

TEST(Object, ComparesAndPrintsValues)
{
    const Inspector* inspector = Inspector::self();
    EXPECT_TRUE(inspector->createInteger(3)->compare(inspector->createDouble(3)));
    EXPECT_TRUE(inspector->createInt64(3)->compare(inspector->createUInt(3)));
    EXPECT_FALSE(inspector->createString(text("3"))->compare(inspector->createInteger(3)));
    EXPECT_FALSE(inspector->createString(text("3"))->compare(nullptr));
    const SharedPtr<Object> list = inspector->createStringList({text("a"), text("b")});
    EXPECT_TRUE(list->compare(inspector->createStringList({text("a"), text("b")})));
    EXPECT_FALSE(list->compare(inspector->createStringList({text("a")})));
    EXPECT_EQ(text("[a, b]"), list->toString());
    const SharedPtr<Object> map = MapClass::createRemoteObject({{text("k"), inspector->createDouble(0.1)}});
    EXPECT_EQ(text("{k: 0.1}"), map->toString());
    EXPECT_EQ(text("100000"), inspector->createDouble(100000)->toString());
    EXPECT_EQ(-32768, inspector->createShort(32768)->toInt());
    EXPECT_EQ(0, inspector->createDouble(1e300)->toInt64());
}

TEST(Object, GivesItsReferenceBackWithTheLastPointer)
{
    SampleModel sample;
    {
        const SharedPtr<Object> first = sample.find("{name='one'}");
        const SharedPtr<Object> again = sample.find("{name='one'}");
        EXPECT_TRUE(first->compare(again));
        const SharedPtr<Object> map = *first->objectClass()->methods(text("self"))[0]->invoke(first, {});
        const SharedPtr<Object> inner = map->entries()[text("it")]->elements()[0];
        EXPECT_TRUE(inner->compare(first));
        EXPECT_EQ(3, sample.model->references());
        const SharedPtr<Object> copy = first->reference();
        sample.find("{name='two'}");
    }
    Inspector::self()->processEvents(0);
    EXPECT_EQ(0, sample.model->references());
}

TEST(Object, IsInvalidatedAtOnceAndKeepsItsClass)
{
    SampleModel sample;
    const SharedPtr<Object> one = sample.find("{name='one'}");
    const SharedPtr<Object> two = sample.find("{name='two'}");
    sample.model->destroyObject(one->remoteId());
    EXPECT_EQ(Object::Invalidated, one->statusFlags());
    EXPECT_FALSE(two->isInvalidated());
    EXPECT_TRUE(one->objectClass()->property(text("size")));
    EXPECT_TRUE(one->objectClass()->property(text("size"))->get(one).error().contains(text("destroyed")));
    EXPECT_FALSE(sample.find("{name='one'}"));

    sample.model->close(text("it was killed by signal 9"));
    EXPECT_TRUE(two->isInvalidated());
    EXPECT_FALSE(sample.application->isAlive());
    EXPECT_TRUE(two->objectClass()->property(text("size"))->get(two).error().contains(text("signal 9")));
    EXPECT_FALSE(sample.find("{name='two'}"));
}

TEST(Inspector, KeepsTheClassesAndObjectsOfApplicationsApart)
{
    SampleModel first;
    Inspector* inspector = Inspector::self();
    const SharedPtr<Object> mine = first.find("{name='one'}");
    auto second = std::make_unique<LocalModel>();
    second->addClass(text("Shape")).property(text("size"), LocalModel::type(Protocol::IntClass), [](qint64) {
        return LocalModel::Outcome(Value::ofInt(1));
    });
    second->addObject(text("Shape"), text("one"));
    ApplicationModel* other = inspector->addApplication(std::move(second));
    EXPECT_EQ(first.application, inspector->current()) << "a new one does not take over";
    inspector->setCurrent(other);
    const SharedPtr<Object> theirs = first.find("{name='one'}");
    EXPECT_NE(mine->objectClass(), theirs->objectClass());
    EXPECT_NE(mine->applicationId(), theirs->applicationId());
    EXPECT_FALSE(mine->compare(theirs));
    EXPECT_EQ(7, mine->objectClass()->property(text("size"))->get(mine)->toInt());
    EXPECT_TRUE(theirs->objectClass()
                    ->property(text("size"))
                    ->get(mine)
                    .error()
                    .contains(text("another application")));
    EXPECT_FALSE(inspector->classByName(text("Base")));
    inspector->setCurrent(first.application);
    EXPECT_TRUE(inspector->classByName(text("Base")));
    other->detach(text("done"));
    EXPECT_TRUE(theirs->isInvalidated());
    EXPECT_FALSE(mine->isInvalidated());
}

TEST(Namespace, FindsClassesAndNamespacesBelow)
{
    SampleModel sample;
    const Inspector* inspector = Inspector::self();
    const Namespace* outer = inspector->namespaceByName(text("Ns"));
    ASSERT_TRUE(outer);
    EXPECT_EQ(inspector->globalNamespace(), outer->parent());
    const Namespace* inner = outer->getNamespace(text("Inner"));
    ASSERT_TRUE(inner);
    EXPECT_EQ(outer, inner->parent());
    const Class* thing = inner->getClass(text("Thing"));
    ASSERT_TRUE(thing);
    EXPECT_EQ(inner, thing->nameSpace());
    EXPECT_EQ(text("Thing"), thing->simpleName());
    EXPECT_FALSE(inspector->classByName(text("Thing")));
    EXPECT_FALSE(inspector->namespaceByName(text("Shape")));
    EXPECT_FALSE(inspector->classByName(text("Shape"))->nameSpace());
}

} // namespace
