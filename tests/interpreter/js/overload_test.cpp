#include "bridgetest.h"

namespace {

using namespace Torvix;

/** What arrives in the application, as text: "int 3", "string 'x'", "[int 1, null Base]". */
QString shown(const Protocol::Value& value, const std::function<QString(int)>& className)
{
    using Kind = Protocol::Value::Kind;
    switch (value.kind) {
    case Kind::UInt:
        return QStringLiteral("uint %1").arg(value.integer);
    case Kind::Int:
        return QStringLiteral("int %1").arg(value.integer);
    case Kind::Short:
        return QStringLiteral("short %1").arg(value.integer);
    case Kind::Int64:
        return QStringLiteral("int64 %1").arg(value.integer);
    case Kind::Bool:
        return value.integer ? QStringLiteral("true") : QStringLiteral("false");
    case Kind::Double:
        return QStringLiteral("double %1").arg(value.number);
    case Kind::String:
        return QStringLiteral("'%1'").arg(value.text);
    case Kind::Void:
        return QStringLiteral("void");
    case Kind::Array: {
        QStringList elements;
        for (const Protocol::Value& element : value.elements)
            elements += shown(element, className);
        return '[' + elements.join(", ") + ']';
    }
    case Kind::Map: {
        QStringList entries;
        for (auto it = value.entries.begin(); it != value.entries.end(); ++it)
            entries += it.key() + ": " + shown(it.value(), className);
        return '{' + entries.join(", ") + '}';
    }
    case Kind::Object:
        return (value.object.id == 0 ? QStringLiteral("null ") : QString()) + className(value.object.classId);
    }
    return QStringLiteral("?");
}

struct OverloadCase
{
    QStringList overloads; ///< argument types of each, separated by ", "
    const char* call;
    const char* result; ///< number of the overload and what arrived, or the error
};

class Overloads : public BridgeTest
{
protected:
    Protocol::ArgumentInfo argument(QString text)
    {
        Protocol::ArgumentInfo info;
        const auto take = [&text](const QString& mark) {
            const bool has = text.endsWith(mark);
            if (has)
                text.chop(mark.size());
            return has;
        };
        if (text.startsWith("const ")) {
            info.type.attribute.flags |= Protocol::ConstantFlag;
            text = text.mid(6);
        }
        const auto takeIndirection = [&] {
            if (take("*") || take("&"))
                info.type.attribute = {info.type.attribute.flags | Protocol::IndirectFlag, 1};
        };
        takeIndirection();
        if (take("[]"))
            info.type.attribute.flags |= Protocol::ListFlag;
        takeIndirection();
        if (text == "Color") {
            info.type.enumClassId = m_enumOwner;
            info.type.enumName = text;
            text = "int";
        }
        static const QStringList builtins{"uint",   "int",   "short", "bool",  "string",
                                          "double", "int64", "void",  "Array", "Map"};
        info.type.classId = builtins.contains(text) ? builtins.indexOf(text) : m_ids.value(text);
        EXPECT_TRUE(builtins.contains(text) || m_ids.contains(text)) << text.toStdString();
        return info;
    }

    void define(const std::vector<OverloadCase>& table)
    {
        for (const char* name : {"Base", "Sub", "Other"}) {
            // A class that is there already is described again to learn its number.
            m_ids.insert(name, model->addObject(name).classId);
        }
        LocalModel::ClassBuilder builder = model->addClass("O");
        builder.enumerator("Color", {{"Red", 1}, {"Blue", 2}});
        m_enumOwner = builder.id();
        m_ids.insert("O", builder.id());
        for (std::size_t row = 0; row < table.size(); ++row) {
            for (int i = 0; i < table[row].overloads.size(); ++i) {
                QVector<Protocol::ArgumentInfo> arguments;
                for (const QString& each : table[row].overloads[i].split(", ", Qt::SkipEmptyParts))
                    arguments += argument(each);
                builder.method(
                    QStringLiteral("f%1").arg(row), arguments,
                    [this, i](qint64, const QVector<Protocol::Value>& values) {
                        QStringList texts{QString::number(i)};
                        for (const Protocol::Value& value : values)
                            texts += shown(value, [this](int id) { return m_ids.key(id); });
                        return Outcome(Protocol::Value::ofString(texts.join(' ')));
                    },
                    LocalModel::type(Protocol::StringClass));
            }
        }
    }

    void check(const std::vector<OverloadCase>& table)
    {
        define(table);
        connect();
        put("o", "O");
        put("base", "Base");
        put("sub", "Sub");
        put("other", "Other");
        put("byValue", "Base", {});
        for (std::size_t row = 0; row < table.size(); ++row) {
            const QString call = QString(table[row].call).replace("f(", QStringLiteral("o.f%1(").arg(row));
            QString result = text("(function() { try { return " + call +
                                  " } catch (e) { return e.name + ': ' + e.message } })()");
            result.replace(QStringLiteral("f%1").arg(row), "f");
            EXPECT_EQ(QString(table[row].result), result)
                << table[row].call << " with " << table[row].overloads.join(" | ").toStdString();
        }
    }

    QMap<QString, int> m_ids;
    int m_enumOwner = -1;
};

TEST_F(Overloads, AreChosenByScore)
{
    check({
        {{"int", "double"}, "f(3)", "0 int 3"},
        {{"double", "int"}, "f(3)", "1 int 3"},
        {{"int", "double"}, "f(3.5)", "1 double 3.5"},
        {{"double"}, "f(3)", "0 double 3"},
        {{"int"}, "f(3.9)", "0 int 3"},
        {{"bool", "int"}, "f(1)", "1 int 1"},
        {{"bool", "int"}, "f(true)", "0 true"},
        {{"bool"}, "f(1)", "0 true"},
        {{"int"}, "f(true)", "0 int 1"},
        {{"int64"}, "f(5000000000)", "0 int64 5000000000"},
        {{"short"}, "f(7)", "0 short 7"},
        {{"string", "int"}, "f('7')", "0 '7'"},
        {{"string"}, "f(7)", "0 '7'"},
        {{"string"}, "f(false)", "0 'false'"},
        {{"int", "Color"}, "f(2)", "0 int 2"},
        {{"Color"}, "f(o.Blue)", "0 int 2"},
        {{"", "int", "int, int"}, "f()", "0"},
        {{"", "int", "int, int"}, "f(1, 2)", "2 int 1 int 2"},
        {{"int, string", "double, string"}, "f(1.5, 'x')", "1 double 1.5 'x'"},
        {{"Base*", "Sub*"}, "f(sub)", "1 Sub"},
        {{"Base*", "Sub*"}, "f(base)", "0 Base"},
        {{"Base*"}, "f(sub)", "0 Sub"},
        {{"Base*", "int"}, "f(0)", "1 int 0"},
        {{"Base*"}, "f(0)", "0 null Base"},
        {{"Base*"}, "f(\"{name='sub'}\")", "0 Sub"},
        {{"Base*"}, "f({ name: 'sub', type: 'Sub' })", "0 Sub"},
    });
}

TEST_F(Overloads, TakeArraysAndMaps)
{
    check({
        {{"Array"}, "f([1, 'a', [true], { k: 2.5 }, null])", "0 [int 1, 'a', [true], {k: double 2.5}, void]"},
        {{"Map"}, "f({ a: 1, b: [2], c: undefined })", "0 {a: int 1, b: [int 2]}"},
        {{"Array", "Map"}, "f({})", "1 {}"},
        {{"int[]"}, "f([1, 2.0, 3])", "0 [int 1, int 2, int 3]"},
        {{"int[]", "string[]&"}, "f(['a'])", "1 ['a']"},
        {{"string[]&"}, "f([])", "0 []"},
        {{"Base*[]"}, "f([sub, base])", "0 [Sub, Base]"},
        {{"int[]"},
         "f(1)",
         "EvalError: No matching 'f(Number)' overload found: Following overloads are available:\n"
         "\tO::f(int[])\n"},
        {{"int"},
         "f([1])",
         "EvalError: No matching 'f(Array)' overload found: Following overloads are available:\n"
         "\tO::f(int)\n"},
        {{"string&"}, "f({ name: 'x' })", "0 '{name='x'}'"},
    });
}

TEST_F(Overloads, ThatDoNotFitAreRefusedInWords)
{
    check({
        {{"int", "int, int"},
         "f('x')",
         "EvalError: No matching 'f(String)' overload found: Following overloads are available:\n"
         "\tO::f(int)\n\tO::f(int, int)\n"},
        {{"Base*"},
         "f(other)",
         "EvalError: No matching 'f(Other)' overload found: Following overloads are "
         "available:\n\tO::f(Base*)\n"},
        {{"Base*"},
         "f(null)",
         "EvalError: No matching 'f(Null)' overload found: Following overloads are "
         "available:\n\tO::f(Base*)\n"},
        {{"bool"},
         "f(2.5, undefined)",
         "EvalError: No matching 'f(Number, Undefined)' overload found: Following overloads are available:\n"
         "\tO::f(bool)\n"},
        {{"int", "double"}, "f(NaN)", "EvalError: Failed to convert NaN to double"},
        {{"Base*"},
         "f('nobody')",
         "EvalError: Failed to convert argument 'nobody' of type String to type Base"},
        {{"Base*"}, "f(5)", "EvalError: Failed to convert argument '5' of type Number to type Base"},
    });
}

TEST_F(Overloads, OfEqualScoreAreToldApartByAttributesOrRefused)
{
    check({
        // The same arguments twice: the first stands for both.
        {{"int", "int"}, "f(1)", "0 int 1"},
        // A pointer fits the pointer, not the value.
        {{"Base", "Base*"}, "f(base)", "1 Base"},
        // Both take what is passed, and differ: nobody can tell which is meant.
        {{"Base*", "const Base*"},
         "f(base)",
         "EvalError: Ambiguous overload 'f(Base)'. Candidates:\n\tO::f(Base*)\n\tO::f(const Base*)\n"},
        // Different classes of the same score have nothing to be told apart by.
        {{"uint", "short"},
         "f(1)",
         "EvalError: Ambiguous overload 'f(Number)'. Candidates:\n\tO::f(uint)\n\tO::f(short)\n"},
    });
}

TEST_F(Overloads, OfANearerClassWin)
{
    const auto answer = [](const char* text) {
        return [text](qint64, const QVector<Value>&) { return Outcome(Value::ofString(text)); };
    };
    const Protocol::TypeInfo string = LocalModel::type(Protocol::StringClass);
    LocalModel::ClassBuilder upper = model->addClass("Upper");
    upper.method("g", {LocalModel::argument("x", Protocol::UIntClass)}, answer("upper uint"), string);
    upper.method("h", {LocalModel::argument("x", Protocol::IntClass)}, answer("upper int"), string);
    LocalModel::ClassBuilder lower = model->addClass("Lower");
    lower.superClass("Upper");
    lower.method("g", {LocalModel::argument("x", Protocol::ShortClass)}, answer("lower short"), string);
    lower.method("h", {LocalModel::argument("x", Protocol::DoubleClass)}, answer("lower double"), string);
    connect();
    put("o", "Lower");
    EXPECT_EQ("lower short", text("o.g(1)"));
    EXPECT_EQ("upper int", text("o.h(1)")); // 100 less a step against 98
    EXPECT_EQ("lower double", text("o.h(1.5)"));
}

TEST_F(Overloads, OfConstructorsFollowTheSameRules)
{
    LocalModel::ClassBuilder point = model->addClass("Point");
    LocalModel* made = model.get();
    const auto construct = [made](qint64, const QVector<Value>& arguments) {
        if (!arguments.isEmpty() && arguments[0].integer < 0)
            return Outcome::failure("negative");
        return Outcome(Value::ofObject(made->addObject("Point", QString(), {})));
    };
    point.constructor({}, construct);
    point.constructor({LocalModel::argument("x", Protocol::IntClass)}, construct);
    connect();
    EXPECT_EQ(
        "Point",
        text("const p = new Point(); object_className = Object.prototype.toString.call(p).slice(8, -1)"));
    EXPECT_EQ("EvalError: No matching 'Point(String)' overload found: Following overloads are available:\n"
              "\tPoint::Point()\n\tPoint::Point(int)\n",
              thrown("new Point('x')"));
    EXPECT_EQ("EvalError: Constructor of Point failed: negative", thrown("new Point(-1)"));
    EXPECT_EQ("EvalError: Type Base has no constructor", thrown("new Base()"));
}

} // namespace
