// Modules through searchModule and loadModuleCode.

#include "enginetest.h"

#include "engine/debugger.h"
#include "engine/module.h"

#include <QMap>

namespace KJS {
namespace {

/** Modules from a map; the path of "name" is "/modules/name". */
class Library : public Interpreter
{
public:
    Library() : Interpreter(Object(), testOptions()) {}
    UString searchModule(const UString& name, UString* error) override
    {
        requests << "search " + name.qstring();
        if (name == UString("raise"))
            throw std::runtime_error("from searchModule");
        if (files.contains(name.qstring()))
            return UString("/modules/" + name.qstring());
        *error = UString(QStringLiteral("Failed to locate module file '%1'").arg(name.qstring()));
        return UString();
    }
    UString loadModuleCode(const UString& path, UString* error) override
    {
        requests << "load " + path.qstring();
        const QString text = files.value(path.qstring().section('/', 2));
        if (text == "unreadable") {
            *error = UString("Failed to open module file '" + path.qstring() + "'");
            return UString();
        }
        return UString(text.isNull() ? QStringLiteral("") : text);
    }
    QMap<QString, QString> files;
    QStringList requests;
};

class ModulesTest : public testing::Test
{
protected:
    QString run(const QString& code) { return KJS::run(interpreter, code); }
    Library interpreter;
    ExecState* exec = interpreter.globalExec();
};

TEST_F(ModulesTest, ScriptsWithImportsStayScripts)
{
    interpreter.files["counter.js"] =
        "export let count = 0; export function up() { count++ } export default 'def';";
    EXPECT_EQ(
        run("import def, {count, up as increment} from 'counter.js';\nimport * as all from 'counter.js';\n"
            "function main() { increment(); return count }\nvar early = count; increment();"
            "[def, early, count, all.count, typeof main].join()"),
        "def,0,1,1,function");
    EXPECT_EQ(run("main()"), "2") << "a function of a script is global";
    EXPECT_EQ(interpreter.requests.filter("load").size(), 1) << "evaluated once";
}

TEST_F(ModulesTest, CyclesAndReExports)
{
    interpreter.files["a.js"] =
        "import {b, readA} from 'b.js'; export const a = 'a' + b; export {readA}; export * from 'c.js'";
    interpreter.files["b.js"] = "import {a} from 'a.js'; export const b = 'b'; export const readA = () => a;";
    interpreter.files["c.js"] = "export const c = 'c'; export {c as default, c as d};";
    EXPECT_EQ(run("import {a, readA, c, d} from 'a.js'; [a, readA(), c, d].join()"), "ab,ab,c,c");
    EXPECT_EQ(run("import {nope} from 'c.js'; nope").left(19), "throws SyntaxError:");
}

TEST_F(ModulesTest, NamespacesForCpp)
{
    interpreter.files["m.js"] = "export const one = 1; export function f() { return one + 1 }";
    Object space = ModuleObject::import(exec, "m.js");
    ASSERT_FALSE(space.isNull());
    EXPECT_TRUE(space.inherits(&ModuleObject::info));
    EXPECT_EQ(space.get(exec, "one").toInt32(exec), 1);
    EXPECT_TRUE(space.hasProperty(exec, "f"));
    interpreter.globalObject().put(exec, "space", space);
    EXPECT_EQ(run("space.f()"), "2");
    EXPECT_TRUE(ModuleObject::import(exec, "missing 'quoted'\n").isNull());
    EXPECT_EQ(textOf(interpreter, exec->exception()),
              "Error: Failed to locate module file 'missing 'quoted'\n'");
    exec->clearException();
}

TEST_F(ModulesTest, DynamicImport)
{
    interpreter.files["late.js"] = "export default 'late'";
    run("var seen; import('late.js').then(m => { seen = m.default }, e => { seen = e })");
    EXPECT_EQ(run("seen"), "late");
    run("import('missing').catch(e => { seen = e.message })");
    EXPECT_EQ(run("seen"), "Failed to locate module file 'missing'");
}

TEST_F(ModulesTest, ErrorsTellTheirFileAndLine)
{
    interpreter.files["throws.js"] = "var x;\n\nthrow new Error('inside')";
    interpreter.files["syntax.js"] = "export var x;\nvar = 1;";
    interpreter.files["closed.js"] = "unreadable";
    const struct
    {
        const char* name;
        const char* message;
        const char* file;
        int line;
    } cases[] = {{"throws.js", "inside", "/modules/throws.js", 3},
                 {"syntax.js", "", "/modules/syntax.js", 2},
                 {"missing.js", "Failed to locate module file 'missing.js'", "importer", 2},
                 {"closed.js", "Failed to open module file '/modules/closed.js'", "importer", 2}};
    for (const auto& each : cases) {
        interpreter.setSourceName("importer");
        const Completion done =
            interpreter.evaluate(UString(QStringLiteral("\nimport '%1';").arg(each.name)));
        ASSERT_EQ(done.complType(), Throw) << each.name;
        const Object error = Object::dynamicCast(done.value());
        if (*each.message) {
            EXPECT_EQ(textOf(interpreter, error.get(exec, "message")), each.message);
        }
        EXPECT_EQ(error.get(exec, "line").toInt32(exec), each.line) << each.name;
        EXPECT_EQ(interpreter.sourceName(error.get(exec, "sourceId").toInt32(exec)), UString(each.file));
    }
    EXPECT_THROW(run("import 'raise'"), std::runtime_error);
    EXPECT_EQ(run("'alive'"), "alive");
}

TEST_F(ModulesTest, TheDebuggerHearsOfModulesAfterTheyAreLoaded)
{
    class Listener : public Debugger
    {
    public:
        explicit Listener(QStringList* log) : m_log(log) {}
        bool sourceParsed(ExecState*, int, const UString& source, int) override
        {
            *m_log << "parsed " + source.qstring().left(10);
            return true;
        }

    private:
        QStringList* m_log;
    };
    Listener listener(&interpreter.requests);
    listener.attach(&interpreter);
    interpreter.files["m.js"] = "/* m.js */";
    run("/* main */ import 'm.js'");
    EXPECT_EQ(interpreter.requests.join(", "),
              "parsed /* main */, search m.js, load /modules/m.js, parsed /* m.js */");
}

TEST(PlainModulesTest, WithoutALibraryThereAreNone)
{
    Interpreter interpreter(Object(), testOptions());
    EXPECT_EQ(run(interpreter, "import 'x'"), "throws Error: Cannot find module 'x'");
}

} // namespace
} // namespace KJS
