#include "engine/collector.h"
#include "interpreter/js/apitest.h"

#include <QCoreApplication>

namespace Torvix {
namespace {

/** Scripts with the module of tests/interpreter/js/extension at hand as `path`. */
class JsLibraryTest : public ApiTest
{
protected:
    JsLibraryTest() { definePath(); }

    void definePath() { ASSERT_TRUE(run("var path = '" TORVIX_TEST_EXTENSION "'")); }

private:
    int m_argumentCount = 0;
    QCoreApplication m_eventLoop{m_argumentCount, nullptr};
};

TEST_F(JsLibraryTest, ErrorsInTheirOrder)
{
    ASSERT_TRUE(run("var library = new Library(path); var fake = Object.create(Library.prototype);"
                    "var broken = {toString() { throw new RangeError('no text') }};"));
    const struct
    {
        const char* code;
        const char* error;
    } rows[] = {
        {"new Library()", "SyntaxError: Library constructor() takes a path argument"},
        {"new Library(path, 1)", "SyntaxError: Library constructor() takes a path argument"},
        {"new Library(broken)", "RangeError: no text"},
        {"new Library('/no/such')", "Error: Failed to open library '/no/such'"},
        {"new Library('')", "Error: Failed to open library ''"},
        {"fake.invoke()", "SyntaxError: invoke() expects a function signature"},
        {"fake.invoke('int countOne()')",
         "SyntaxError: Only signature currently supported: 'void <func>()' "},
        {"library.invoke('void')", "SyntaxError: Only signature currently supported: 'void <func>()' "},
        {"library.invoke(' void countOne()')",
         "SyntaxError: Only signature currently supported: 'void <func>()' "},
        {"library.invoke('void ()')", "SyntaxError: Only signature currently supported: 'void <func>()' "},
        {"library.invoke('void countOne(int)')",
         "SyntaxError: Only signature currently supported: 'void <func>()' "},
        {"library.invoke('void countOne() ')",
         "SyntaxError: Only signature currently supported: 'void <func>()' "},
        {"library.invoke(broken)", "RangeError: no text"},
        {"fake.invoke('void countOne()')", "Error: Called on non-Library object"},
        {"Library.invoke('void countOne()')", "Error: Called on non-Library object"},
        {"library.invoke('void countTwo()')",
         "SyntaxError: Could not find symbol for function 'countTwo' in library"},
        {"library.invoke('void  countOne()')",
         "SyntaxError: Could not find symbol for function ' countOne' in library"},
        {"fake.initModule()", "SyntaxError: initModule() requires a module name argument."},
        {"fake.initModule('tally')", "Error: Called on non-Library object"},
        {"library.initModule('tall')", "SyntaxError: Could not find expected init symbol 'tallInit'."},
        {"library.initModule('broken')", "RangeError: no tally today"},
    };
    for (const auto& row : rows)
        EXPECT_EQ(thrown(row.code), row.error) << row.code;
    EXPECT_EQ(text("[library instanceof Library, fake instanceof Library, Library.prototype.invoke.length,"
                   " Library.prototype.initModule.length].join()"),
              "true,true,1,0");
}

TEST_F(JsLibraryTest, AFunctionIsCalledAndAModuleInstallsItsObjects)
{
    ASSERT_TRUE(
        run("var library = new Library(path); library.initModule('tally'); var before = tally.count();"));
    EXPECT_EQ(text("var answer = library.invoke('void countOne()'); [answer, tally.count() - before].join()"),
              ",1");
    EXPECT_EQ(text("new Library(path).invoke('void countOne()'); tally.count() - before"), "2");
}

TEST_F(JsLibraryTest, WorkOfAnotherThreadRunsWhileTheScriptWaits)
{
    ASSERT_TRUE(run("new Library(path).initModule('tally'); var seen = [];"
                    "for (let i = 0; i < 3; ++i) tally.soon(() => seen.push(i));"));
    EXPECT_EQ(text("seen.join()"), "") << "not before the event loop has its turn";
    EXPECT_EQ(text("waitFor(() => seen.length == 3, 10000); seen.join()"), "0,1,2");
}

TEST_F(JsLibraryTest, WhatDelayedWorkThrowsFailsTheCase)
{
    ASSERT_TRUE(run("new Library(path).initModule('tally'); function main() {"
                    "tally.soon(() => { throw new Error('late') }); waitFor(() => false, 300); }"));
    EXPECT_FALSE(interpreter->call("main", {}));
    EXPECT_EQ(interpreter->errorMessage(), "late");
}

TEST_F(JsLibraryTest, WorkForAnInterpreterThatEndedIsDroppedAndTheNextOneIsServed)
{
    ASSERT_TRUE(run("new Library(path).initModule('tally'); tally.soon(() => { throw 'too late' })"));
    renewInterpreter(&runner);
    definePath();
    EXPECT_EQ(text("typeof tally"), "undefined");
    EXPECT_EQ(text("var done = false; new Library(path).initModule('tally'); tally.soon(() => done = true);"
                   "waitFor(() => done, 10000)"),
              "true");
}

TEST_F(JsLibraryTest, ManyLibrariesComeAndGo)
{
    EXPECT_EQ(text("for (var i = 0; i < 20000; ++i) { var library = new Library(path); }"
                   "typeof library.invoke"),
              "function");
    while (KJS::Collector::collect()) {
    }
    EXPECT_EQ(text("library.invoke('void countOne()'); 'still there'"), "still there");
}

} // namespace
} // namespace Torvix
