// What is told of exceptions: once each, where they were thrown, whether script catches them.

#include "engine/rewriting/runtimefixture.h"

namespace KJS::Rewriting {
namespace {

struct ThrowCase
{
    const char* program;
    const char* told; // "[value caught|uncaught function:line ...]", innermost frame first
};

// Each program is one string; line numbers count from 1 in it.
const ThrowCase throwCases[] = {
    {"function a(){ b() }\nfunction b(){ try{\n c() }finally{ 1 } }\nfunction c(){\n null.x }\ntry{\n a() "
     "}catch(e){}",
     "[TypeError: null is not an object (evaluating 'null.x') caught c:5 b:3 a:1 (program):7]"},
    {"function d(){\n throw 7 }\nd()", "[7 uncaught d:2 (program):3]"},
    {"try{\n try{ throw 1 }catch(e){\n throw 2 } }catch(e){}",
     "[1 caught (program):2][2 caught (program):3]"},
    {"try{\n try{ throw 1 }catch(e){\n throw e } }catch(e){}",
     "[1 caught (program):2][1 caught (program):3]"},
    {"function f(){ try{ throw 3 }finally{ return 1 } } f();\nfunction g(){ throw 3 }\ng()",
     "[3 uncaught f:1 (program):1][3 uncaught g:2 (program):3]"},
    {"function f(){ try{ 1 }catch(e){} return g() } function g(){ throw 1 }\nf()",
     "[1 uncaught g:1 f:1 (program):2]"},
    {"let i=0; function t(){ if(i++>1) throw 4; return true }\nwhile(t()){ try{ continue }catch(e){} }",
     "[4 uncaught t:1 (program):2]"},
    {"function* G(){ try{ yield 1 }finally{ } } const it=G(); it.next();\ntry{ it.throw(9) }catch(e){}\n"
     "try{ [2,1].sort(function s(){ throw 8 }) }catch(e){}",
     "[9 caught G:1 (program):2][8 caught s:3 (program):3]"},
    {"async function A(){ await 1; \n throw 6 } A()", "[6 uncaught A:2]"},
    {"async function A(){ throw 6 }\ntry { A() } catch (e) {}", "[6 uncaught A:1 (program):2]"},
    {"class Q{ constructor(){ throw 1 } } class R extends Q{ constructor(){\n super() } }\nnew R",
     "[1 uncaught constructor:1 constructor:2 (program):3]"},
    {"class F{ x=bang() } function bang(){ throw 1 }\nfunction dp(a=bang()){}\ntry{ new F }catch(e){}\n"
     "try{ dp() }catch(e){}",
     "[1 caught bang:1 x:1 (program):3][1 caught bang:1 dp:2 (program):4]"},
    {"try{ throw 1 }finally{ try{ throw 2 }catch(e){} }", "[1 uncaught (program):1][2 caught (program):1]"},
    {"for(;;){ try{ throw 1 }finally{ break } }\nthrow 1",
     "[1 uncaught (program):1][1 uncaught (program):2]"},
    {"try{\n throw {} }catch({a:{b}}){ }", "[[object Object] caught (program):2][TypeError: Right side of "
                                           "assignment cannot be destructured uncaught (program):2]"},
    {"eval('1;\\nthrow 5')", "[5 uncaught (program):2 (program):1]"},
    {"try { eval('a b') } catch (e) {}", "[SyntaxError: Unexpected identifier 'b' caught (program):1]"},
    {"new Function('\\nthrow 5')()", "[5 uncaught anonymous:4 (program):1]"},
    {"Promise.resolve().then(() => {\n throw 'job' })", "[job uncaught :2]"},
    {"function* inner(){\n throw 1 }\nfunction* outer(){\n yield* inner() }\n[...outer()]",
     "[1 uncaught inner:2 outer:4 (program):5]"},
    {"function* inner(){\n yield 1;\n throw 1 }\nfunction* outer(){\n try{ yield* inner() }catch(e){} "
     "}\n[...outer()]",
     "[1 caught inner:3 outer:5 (program):6]"},
    {"undeclared", "[ReferenceError: Can't find variable: undeclared uncaught (program):1]"},
};

TEST(Exceptions, AreToldOnceWithFramesAndFate)
{
    Machine machine;
    for (Flavour flavour : {Flavour::Fast, Flavour::Debug})
        for (const ThrowCase& item : throwCases) {
            SCOPED_TRACE(item.program);
            World world(machine, flavour);
            QString told;
            world.hooks.onException = [&](JSValueRef value, bool caught, int frame) {
                told += QStringLiteral("[%1 %2").arg(world.context.text(value),
                                                     QLatin1String(caught ? "caught" : "uncaught"));
                for (int i = frame; i > 0; --i)
                    told += QStringLiteral(" %1:%2")
                                .arg(world.runtime.function(i)->name)
                                .arg(world.runtime.line(i));
                told += QLatin1Char(']');
            };
            world.run(item.program);
            EXPECT_EQ(told.toStdString(), item.told);
        }
}

struct ErrorCase
{
    const char* program;
    const char* message;
    int line;
};

const ErrorCase errorCases[] = {
    {"var o = {};\nfunction f() { return o.a.b == o.c }\nf()",
     "undefined is not an object (evaluating 'o.a.b')", 2},
    {"let x;\n\nx.y()", "undefined is not an object (evaluating 'x.y')", 3},
    {"(a => a)(\n (1 == x1))", "Can't find variable: x1", 2},
    {"var a = {}, b = {};\n(a == b)()", "(a == b) is not a function. (In '(a == b)()', '(a == b)' is false)",
     2},
    {"var f = 1;\nf(() => { return 2 })", "f is not a function. (In 'f(() => { return 2 })', 'f' is 1)", 2},
    {"new (function() { null.q })", "null is not an object (evaluating 'null.q')", 1},
    {"'k' in\n 5", "5 is not an Object. (evaluating ''k' in\n 5')", 2},
    {"throw new Error('own\\n$t$ text')", "own\n$t$ text", 1},
    {"class A { m() {\n return this.x.y } }\nnew A().m()",
     "undefined is not an object (evaluating 'this.x.y')", 2},
    {"async function f() {}\nfunction* g() { (yield 1).a.b }\nconst i = g(); i.next(); i.next({})",
     "undefined is not an object (evaluating '(yield 1).a.b')", 2},
};

TEST(Exceptions, ErrorsSpeakOfTheAuthorsText)
{
    Machine machine;
    for (Flavour flavour : {Flavour::Fast, Flavour::Debug})
        for (const ErrorCase& item : errorCases) {
            SCOPED_TRACE(item.program);
            World world(machine, flavour);
            const Outcome outcome =
                world.runtime.evaluate(QString::fromUtf8(item.program), QStringLiteral("file.js"));
            ASSERT_TRUE(outcome.threw());
            EXPECT_EQ(world.context.errorText(outcome.exception, "message").toStdString(), item.message);
            EXPECT_EQ(world.context.errorText(outcome.exception, "line").toInt(), item.line);
            const int id = world.context.errorText(outcome.exception, "sourceId").toInt();
            ASSERT_TRUE(world.runtime.sources().source(id));
            EXPECT_EQ(world.runtime.sources().source(id)->url, QStringLiteral("file.js"));
        }
}

TEST(Exceptions, StackShowsTheAuthorsPlacesOnly)
{
    Machine machine;
    World world(machine);
    const Outcome outcome = world.runtime.evaluate(
        QStringLiteral("function inner() {\n    var a = 1; throw new Error('x');\n}\n"
                       "var o = {valueOf() { inner() }};\nfunction outer() { return o == 1 }\n  outer();"),
        QStringLiteral("file.js"));
    const QString stack = world.context.errorText(outcome.exception, "stack");
    EXPECT_EQ(stack.toStdString(), "inner@file.js:2:31\nvalueOf@file.js:4:27\nouter@file.js:5:28\n"
                                   "global code@file.js:6:8");
}

TEST(Exceptions, LineOfAnErrorIsWhereItWasMade)
{
    Machine machine;
    World world(machine);
    world.run(QStringLiteral("function make() {\n\n return new Error('m') }"), QStringLiteral("lib.js"));
    const Outcome outcome =
        world.runtime.evaluate(QStringLiteral("var e = make();\n\n\n\nthrow e"), QStringLiteral("main.js"));
    EXPECT_EQ(world.context.errorText(outcome.exception, "line").toStdString(), "3");
    const int id = world.context.errorText(outcome.exception, "sourceId").toInt();
    EXPECT_EQ(world.runtime.sources().source(id)->url.toStdString(), "lib.js");
}

TEST(Exceptions, OwnLineAndFrozenErrorsStay)
{
    Machine machine;
    World world(machine);
    EXPECT_EQ(
        world.run("try { var e = new Error('a'); e.line = 77; throw e } catch (x) { x.line }").toStdString(),
        "77");
    EXPECT_EQ(world.run("try { throw Object.freeze(new Error('a')) } catch (x) { x.message }").toStdString(),
              "a");
    EXPECT_EQ(world.run("try { throw {a: 1} } catch (x) { JSON.stringify(x) + x.line }").toStdString(),
              "{\"a\":1}undefined");
    EXPECT_EQ(world.run("try { null.x } catch (x) { Object.keys(x) + '' }").toStdString(), "");
}

} // namespace
} // namespace KJS::Rewriting
