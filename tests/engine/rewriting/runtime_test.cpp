// The runtime: flag and hooks, frames, jobs, C++ exceptions, time limit, odd input.

#include "engine/rewriting/runtimefixture.h"

#include <stdexcept>

namespace KJS::Rewriting {
namespace {

World* current = nullptr;

JSValueRef raiseFlag(JSContextRef context, JSObjectRef, JSObjectRef, size_t, const JSValueRef[], JSValueRef*)
{
    current->runtime.setHooksWanted(true);
    return JSValueMakeUndefined(context);
}

JSValueRef throwNative(JSContextRef context, JSObjectRef, JSObjectRef, size_t, const JSValueRef[],
                       JSValueRef* exception)
{
    try {
        throw std::runtime_error("native");
    } catch (...) {
        *exception = current->runtime.carryCurrentException();
    }
    return JSValueMakeUndefined(context);
}

JSValueRef callBack(JSContextRef context, JSObjectRef, JSObjectRef, size_t count,
                    const JSValueRef arguments[], JSValueRef* exception)
{
    const Outcome outcome = current->runtime.call(asObject(context, arguments[0]), nullptr, {});
    *exception = outcome.exception;
    return outcome.value && count ? outcome.value : JSValueMakeUndefined(context);
}

class Runtime : public testing::TestWithParam<Flavour>
{
protected:
    Runtime() : world(machine, GetParam())
    {
        current = &world;
        world.context.addFunction("raiseFlag", raiseFlag);
        world.context.addFunction("throwNative", throwNative);
        world.context.addFunction("callBack", callBack);
    }
    std::string run(const char* text) { return world.run(text).toStdString(); }
    std::string stack(int top)
    {
        QString text;
        for (int i = top; i > 0; --i)
            text += QStringLiteral("%1:%2 ").arg(world.runtime.function(i)->name).arg(world.runtime.line(i));
        return text.trimmed().toStdString();
    }

    Machine machine;
    World world;
};

TEST_P(Runtime, StatementsComeInOrderWithLinesAndFrames)
{
    QString log;
    world.hooks.atStatement = [&](int frame) {
        log += QStringLiteral("%1/%2 ").arg(frame).arg(world.runtime.line(frame));
    };
    world.runtime.setHooksWanted(true);
    run("var a = 1\nfunction f(x) {\n  if (x)\n    return 2;\n  else {\n    x++\n  }\n}\nf(1); f(0)\n"
        "for (var i = 0; i < 2; i++)\n  a += i\nconst g = y =>\n  y + 1\ng(1)\ntry {\n  throw 1\n} catch (e) "
        "{\n  a\n}");
    EXPECT_EQ(log.toStdString(), "1/1 1/9 2/3 2/4 1/9 2/3 2/6 1/10 1/11 1/11 1/12 1/14 2/13 1/15 1/16 1/18 ");
    EXPECT_EQ(world.hooks.faults.toStdString(), "");
}

TEST_P(Runtime, RaisingTheFlagAnnouncesEnteredFrames)
{
    QString log;
    world.hooks.atStatement = [&](int frame) {
        log += QString::fromStdString(stack(frame)) + QLatin1Char(';');
    };
    run("function a() {\n b();\n return 1 }\nfunction b() {\n [1].forEach(() => {\n raiseFlag();\n 2 }) "
        "}\na();\n3");
    EXPECT_EQ(log.toStdString(), ":7 b:5 a:2 (program):8;a:3 (program):8;(program):9;");
    EXPECT_EQ(world.hooks.faults.toStdString(), "");
    EXPECT_EQ(world.hooks.shadow, 0);
}

TEST_P(Runtime, SourcesAreAnnouncedBeforeTheyRun)
{
    world.runtime.evaluate(QStringLiteral("1"), QStringLiteral("a.js"));
    world.run(QStringLiteral("eval('2'); eval('2'); new Function('3')(); x ="), QStringLiteral("b.js"));
    EXPECT_EQ(world.hooks.parsed.toStdString(), "a.js:0 b.js:1 ");
    world.run(QStringLiteral("eval('2'); eval('2'); new Function('3')()"), QStringLiteral("c.js"));
    EXPECT_EQ(world.hooks.parsed.toStdString(), "a.js:0 b.js:1 c.js:0 :0 :0 ");
}

TEST_P(Runtime, ThisOfEveryFrame)
{
    QStringList log;
    world.hooks.atStatement = [&](int frame) {
        JSValueRef self = world.runtime.thisAt(frame);
        log << (self ? world.context.text(asObject(world.context, self)
                                              ? property(world.context, asObject(world.context, self), "tag")
                                              : self)
                     : QStringLiteral("none"));
    };
    world.runtime.setHooksWanted(true);
    run("globalThis.tag = 'G'; var o = {tag: 'O', m() { this; (() => { this })() }}; o.m()");
    EXPECT_EQ(log.join(QLatin1Char(' ')).toStdString(), "undefined G G O O O");
    log.clear();
    run("class A { tag = 'A' } class B extends A { constructor() { 1; super(); 2 } } new B");
    EXPECT_EQ(log.join(QLatin1Char(' ')).toStdString(), "G G G none none A");
    log.clear();
    run("(function() { 'use strict'; this })(); (function*() { this; yield; this }).call({tag: 'Y'}).next()");
    EXPECT_EQ(log.join(QLatin1Char(' ')).toStdString(), "G undefined G Y Y");
}

TEST_P(Runtime, ThisObjectOfAScript)
{
    JSObjectRef object =
        asObject(world.context, world.runtime.evaluate(QStringLiteral("({tag: 'T'})"), {}).value);
    const Outcome outcome = world.runtime.evaluate(QStringLiteral("this.tag"), {}, object);
    EXPECT_EQ(world.context.text(outcome.value).toStdString(), "T");
}

TEST_P(Runtime, JobsRunWhenTheOutermostCallEnds)
{
    run("var log = ''; Promise.resolve().then(() => { log += 'job ' }); callBack(() => { log += 'inner ' }); "
        "log += 'end '");
    EXPECT_EQ(run("log"), "inner end job ");
    world.runtime.run([&](JSValueRef*) {
        run("log = ''; Promise.resolve().then(() => { log += 'job' })");
        EXPECT_EQ(run("log"), "");
        return nullptr;
    });
    EXPECT_EQ(run("log"), "job");
    EXPECT_EQ(world.runtime.frames().depth(), 0);
}

TEST_P(Runtime, UnhandledRejectionsAreTold)
{
    run("(async () => { throw 'lost' })(); Promise.reject('taken').catch(() => {}); Promise.reject('late');"
        "var later = Promise.reject('handled in a job'); Promise.resolve().then(() => later.catch(() => "
        "{}))");
    EXPECT_EQ(world.hooks.rejections.toStdString(), "lost late ");
}

TEST_P(Runtime, NestedRunsKeepTheFrames)
{
    std::string seen;
    world.hooks.onException = [&](JSValueRef, bool caught, int frame) {
        seen = stack(frame) + (caught ? " caught" : " uncaught");
    };
    EXPECT_EQ(run("function f() { throw 1 }\ntry {\n callBack(f) } catch (e) { 'c' + e }"), "c1");
    EXPECT_EQ(seen, "f:1 (program):3 caught");
    run("callBack(f)");
    EXPECT_EQ(seen, "f:1 (program):1 uncaught");
    EXPECT_EQ(world.runtime.frames().depth(), 0);
}

TEST_P(Runtime, NativeExceptionsPassThroughScriptUncaught)
{
    const char* programs[] = {
        "log = ''; function f() { try { throwNative() } catch (e) { log += 'C' } finally { log += 'F' } log "
        "+= 'after' }"
        "for (const z of [1, 2]) try { [1].map(() => f()) } catch ({m}) { log += 'C' } log += 'end'",
        "log = ''; try { callBack(() => { try { throwNative() } catch { log += 'C' } finally { log += 'F' } "
        "}) } catch { log += 'C' }",
        "log = ''; (async () => { try { throwNative() } finally { log += 'F' } })()",
    };
    run("var log");
    for (const char* program : programs) {
        EXPECT_THROW(run(program), std::runtime_error) << program;
        EXPECT_EQ(run("log"), "F");
        EXPECT_FALSE(world.runtime.carriesException());
        EXPECT_EQ(world.runtime.frames().depth(), 0);
    }
}

TEST_P(Runtime, ExceptionsOfHooksEndTheRun)
{
    run("var log = ''; var f = () => { try {\n 1\n } catch (e) { log += 'C' } finally { log += 'F' } }");
    world.hooks.atStatement = [&](int frame) {
        if (world.runtime.line(frame) == 2)
            throw std::runtime_error("stop");
    };
    world.runtime.setHooksWanted(true);
    EXPECT_THROW(run("f(); log += 'on'"), std::runtime_error);
    world.runtime.setHooksWanted(false);
    EXPECT_EQ(run("log"), "F");
    EXPECT_EQ(world.runtime.frames().depth(), 0);
}

TEST_P(Runtime, RunawayRecursionIsARangeErrorWithTheStackIntact)
{
    world.runtime.setHooksWanted(true);
    EXPECT_EQ(run("function f() { return f() + 1 } try { f() } catch (e) { e.name }"), "RangeError");
    EXPECT_EQ(run("class A { x = new A } try { new A } catch (e) { e.name }"), "RangeError");
    EXPECT_EQ(run("function g(a = g()) {} try { g() } catch (e) { e.name }"), "RangeError");
    EXPECT_EQ(run("var o = {get a() { return o.a }}; o.a").substr(0, 18), "throws RangeError:");
    EXPECT_EQ(world.runtime.frames().depth(), 0);
    EXPECT_EQ(world.hooks.faults.toStdString(), "");
    EXPECT_EQ(world.hooks.shadow, 0);
    EXPECT_EQ(run("1 + 1"), "2");
}

TEST_P(Runtime, FramesBeyondTheArraysAreHarmless)
{
    FrameStack& frames = world.runtime.frames();
    frames.setDepth(FrameStack::capacity + 5);
    EXPECT_EQ(run("function f(n) { return n ? f(n - 1) : 'fine' } f(3)"), "fine");
    EXPECT_EQ(frames.depth(), FrameStack::capacity + 5);
    EXPECT_EQ(frames.line(frames.depth()), 0);
    frames.setDepth(0);
}

TEST_P(Runtime, TimeLimitStopsForGoodAndLeavesTheRuntimeUsable)
{
    int asked = 0;
    run("var log = ''");
    world.runtime.setTimeLimit(0.02, [&] { return ++asked >= 2; });
    world.run("function f() { try { for (;;); } catch (e) { log += 'C' } finally { log += 'F' } } f()");
    EXPECT_TRUE(world.runtime.wasStopped());
    EXPECT_GE(asked, 2);
    asked = 0;
    world.run("try { callBack(() => { for (;;); }) } catch (e) { log += 'C' } log += 'on'");
    EXPECT_TRUE(world.runtime.wasStopped());
    world.runtime.clearTimeLimit();
    EXPECT_EQ(run("log"), "");
    EXPECT_FALSE(world.runtime.wasStopped());
    EXPECT_EQ(world.runtime.frames().depth(), 0);
}

TEST_P(Runtime, HelpersAreNoProperties)
{
    EXPECT_EQ(run("Object.getOwnPropertyNames(globalThis).filter(k => k.includes('$')).length"), "0");
    EXPECT_EQ(run("typeof host + typeof helpers"), "undefinedundefined");
}

TEST_P(Runtime, LooseEqualityAsksTheMember)
{
    EXPECT_EQ(run("var a = {n: 1, '[[==]]'(self, other) { return self === this && this.n === other.n }}, b = "
                  "{n: 1}, c = {n: 2};"
                  "[a == b, b == a, a != b, a == c, b == c, a == a, a === b, a == 1].join()"),
              "true,true,false,false,false,true,false,false");
}

TEST_P(Runtime, PatchedBuiltInsDoNotDisturb)
{
    run("Array.prototype.push = Map.prototype.get = RegExp.prototype.exec = String.prototype.slice = null;"
        "Object.defineProperty = Reflect.apply = JSON.parse = null;");
    EXPECT_EQ(run("function  f( ) { } f + eval('1 + 1') + new Function('return 3')()"),
              "function  f( ) { }23");
}

TEST_P(Runtime, OddTexts)
{
    const QString nul = QStringLiteral("var a = 1") + QChar(0) + QStringLiteral("; a");
    EXPECT_EQ(world.run(nul).toStdString(), "throws SyntaxError: Invalid character: '\\0'");
    const QString inString = QStringLiteral("'a") + QChar(0) + QStringLiteral("b'.length");
    EXPECT_EQ(world.run(inString).toStdString(), "3");
    const QString surrogate = QStringLiteral("'") + QChar(0xd800) + QStringLiteral("'.charCodeAt(0)");
    EXPECT_EQ(world.run(surrogate).toStdString(), "55296");
    const Outcome crlf = world.runtime.evaluate(QStringLiteral("var a = 1\r\n\r\nif (a)\r\n  a.b.c\r\n"),
                                                QStringLiteral("crlf.js"));
    EXPECT_EQ(world.context.errorText(crlf.exception, "line").toStdString(), "4");
    const Outcome separators = world.runtime.evaluate(
        QStringLiteral("var a = 1") + QChar(0x2028) + QStringLiteral("a.b\ra.b.c"), QStringLiteral("s.js"));
    EXPECT_EQ(world.context.errorText(separators.exception, "line").toStdString(), "3");
    EXPECT_EQ(world.run(QString(QChar(0xfeff)) + QStringLiteral("5")).toStdString(), "5");
    EXPECT_EQ(world.run(QString()).toStdString(), "undefined");
}

INSTANTIATE_TEST_SUITE_P(Flavours, Runtime, testing::Values(Flavour::Fast, Flavour::Debug),
                         [](const auto& flavour) {
                             return std::string(flavour.param == Flavour::Fast ? "Fast" : "Debug");
                         });

TEST(RuntimeTexts, OfFiveMegabytesOrWithALineOfOne)
{
    Machine machine;
    World world(machine);
    QString big = QStringLiteral("var n = 0;\n");
    while (big.size() < 5 * 1024 * 1024)
        big += QStringLiteral("function f%1(a, b) { if (a == b) n += a; return n + '%2'.length }\n")
                   .arg(big.size())
                   .arg(QString(400, QLatin1Char('x')));
    EXPECT_EQ(world.run(big + QStringLiteral("f11(1, 1)")).toStdString(), "401");
    QString line = QStringLiteral("var list = [");
    while (line.size() < 1024 * 1024)
        line +=
            QStringLiteral("{a: 1, b: () => 2, c: 'some data', d: [1, 2, 3], e: {f: 'more data', g: null}},");
    EXPECT_EQ(world.run(line + QStringLiteral("]; list[5].b() + list[0].nope.x")).toStdString().substr(0, 16),
              "throws TypeError");
    QString nested(3000, QLatin1Char('('));
    EXPECT_EQ(world.run(nested + QLatin1Char('1') + QString(3000, QLatin1Char(')'))).toStdString(), "1");
}

TEST(RuntimeSyntax, IsTheEnginesMessageAndLine)
{
    struct
    {
        const char* text;
        int line;
        const char* message;
    } const cases[] = {
        {"var a = 1;\nfunction f() {}", 0, ""},
        {"var a = 1;\nvar = 2", 2,
         "Unexpected token '='. Expected a parameter pattern or a ')' in parameter list."},
        {"import {a} from 'x';\nexport default class {}\nexport * from 'y'; export const b = 1;\nimport 'z'",
         0, ""},
        {"import {a} from 'x';\n\nlet = = 2", 3, "Unexpected token '='"},
        {"export function f() {\n  return a b\n}", 2,
         "Unexpected identifier 'b'. Expected a ';' following a return statement."},
        {"import a, {b,\n c} from 'x';\nexport {b}\n;)", 4, "Unexpected token ')'"},
        {"1 +", 1, "Unexpected end of script"},
        {"/(/", 1, "Invalid regular expression: missing )"},
    };
    Machine machine;
    World world(machine);
    for (const auto& item : cases) {
        const SyntaxReport report = world.runtime.checkSyntax(QString::fromUtf8(item.text));
        EXPECT_EQ(report.ok, item.line == 0) << item.text;
        EXPECT_EQ(report.line, item.line) << item.text;
        EXPECT_EQ(report.message.toStdString(), item.message) << item.text;
    }
    EXPECT_EQ(world.hooks.parsed, QString());
}

TEST(RuntimeDebug, VariablesOfEveryFrame)
{
    Machine machine;
    World world(machine, Flavour::Debug);
    ScriptRuntime& runtime = world.runtime;
    QString log;
    const auto evaluate = [&](int frame, const char* text) {
        return world.context.describe(runtime.evaluateInFrame(frame, QString::fromUtf8(text)));
    };
    world.hooks.atStatement = [&](int frame) {
        if (runtime.line(frame) != 5 || frame < 3)
            return;
        for (const auto& scope : runtime.variablesAt(frame)) {
            for (const Variable& variable : scope)
                log += variable.name + QLatin1Char('=') +
                       (variable.value ? world.context.text(variable.value) : QStringLiteral("?")) +
                       QLatin1Char(' ');
            log += QLatin1Char('|');
        }
        log += evaluate(frame, "z + loc + i") + QLatin1Char(';') + evaluate(frame - 1, "p + q") +
               QLatin1Char(';') + evaluate(frame, "this.tag") + QLatin1Char(';') + evaluate(frame, "late") +
               QLatin1Char(';') + evaluate(frame, "nope");
        EXPECT_FALSE(
            runtime.setVariable(frame, QStringLiteral("loc"), JSValueMakeNumber(world.context, 100)).threw());
        EXPECT_TRUE(
            runtime.setVariable(frame, QStringLiteral("w"), JSValueMakeNumber(world.context, 1)).threw());
        EXPECT_TRUE(
            runtime.setVariable(frame, QStringLiteral("none"), JSValueMakeNumber(world.context, 1)).threw());
        evaluate(frame - 1, "q = 7");
    };
    bool wasTold = false;
    world.hooks.onException = [&](JSValueRef, bool, int) { wasTold = true; };
    runtime.setHooksWanted(true);
    const QString result = world.run(
        "var o={tag:'T',inner(z){ let loc=1;\n for(let i=3;i<4;i++){\n  const w=2;\n  \n  loc+=z;\n }\n"
        " return loc; let late } };\nfunction outer(p){ let q=2;\n const r=o.inner(p*10)\n return r+q "
        "}\nouter(5)");
    EXPECT_EQ(log.toStdString(), "w=2 i=3 |z=50 loc=1 late=? |54;7;T;"
                                 "throws ReferenceError: Cannot access uninitialized variable.;"
                                 "throws ReferenceError: Can't find variable: nope");
    EXPECT_EQ(result.toStdString(), "157");
    EXPECT_FALSE(wasTold);
    EXPECT_TRUE(runtime.variablesAt(1).empty());
}

} // namespace
} // namespace KJS::Rewriting
