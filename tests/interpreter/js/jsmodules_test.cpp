#include "interpreter/js/scripttest.h"

#include <QDir>

namespace Torvix {
namespace {

/** Modules are looked up in the current directory first: each test has its own. */
class JsModulesTest : public ScriptTest
{
protected:
    void SetUp() override
    {
        m_before = QDir::currentPath();
        for (const char* name : {"cwd", "first", "second"})
            ASSERT_TRUE(QDir(directory.path()).mkdir(name));
        QDir::setCurrent(directory.filePath("cwd"));
        interpreter->addToSearchPath(QFileInfo(directory.filePath("first")));
        EXPECT_TRUE(interpreter->addToSearchPath(QFileInfo(directory.filePath("second"))).isEmpty());
    }
    void TearDown() override { QDir::setCurrent(m_before); }

private:
    QString m_before;
};

TEST_F(JsModulesTest, CurrentDirectoryWinsThenTheSearchPathInOrder)
{
    writeFile("second/a.js", "export var where = 'second';");
    EXPECT_EQ(text("import {where} from 'a.js'; where"), "second");
    writeFile("second/b.js", "export var where = 'second';");
    writeFile("first/b.js", "export var where = 'first';");
    EXPECT_EQ(text("import {where as b} from 'b.js'; b"), "first");
    writeFile("first/c.js", "export var where = 'first';");
    writeFile("cwd/c.js", "export var where = 'current';");
    EXPECT_EQ(text("import {where as c} from 'c.js'; c"), "current");
}

TEST_F(JsModulesTest, AMissingModuleTellsWhereItWasSought)
{
    QDir(directory.filePath("second")).removeRecursively();
    interpreter->addToSearchPath(QFileInfo(directory.filePath("first")));
    EXPECT_FALSE(run("\nimport * as n from 'nosuch.js';"));
    EXPECT_EQ(interpreter->errorMessage(),
              QString("Failed to locate module file 'nosuch.js' in local directory '%1' or search path '%2'")
                  .arg(QDir::currentPath(),
                       QString("/lib/javascript:%1/first:%1/second:%1/first").arg(directory.path())));
    EXPECT_EQ(interpreter->errorFile(), script);
}

TEST_F(JsModulesTest, AModuleThatCannotBeReadTellsSo)
{
    QDir(directory.path()).mkpath("first/folder.js");
    EXPECT_FALSE(run("import * as n from 'folder.js';"));
    EXPECT_EQ(interpreter->errorMessage(),
              "Failed to open module file '" + directory.filePath("first/folder.js") + "'");
}

TEST_F(JsModulesTest, ErrorsInModulesNameTheModule)
{
    const QString thrower =
        writeFile("first/thrower.js", "export function f() {\n\n  throw new Error('in module');\n}");
    EXPECT_FALSE(run("import {f} from 'thrower.js';\n\n\n\nf();"));
    EXPECT_EQ(interpreter->errorMessage(), "in module");
    EXPECT_EQ(interpreter->errorFile(), thrower);
    EXPECT_EQ(interpreter->errorLine(), 3);

    const QString broken = writeFile("first/broken.js", "\nvar = 1;");
    EXPECT_FALSE(run("import * as b from 'broken.js';"));
    EXPECT_EQ(interpreter->errorFile(), broken);
    EXPECT_EQ(interpreter->errorLine(), 2);

    EXPECT_FALSE(run("throw 1")) << "and the next script its own file";
    EXPECT_EQ(interpreter->errorFile(), script);
}

TEST_F(JsModulesTest, TextEndsAtAZeroByteAndMayBeEmpty)
{
    writeFile("first/zero.js", QByteArray("export var a = 'ä';") + '\0' + "this is no script");
    EXPECT_EQ(text("import {a} from 'zero.js'; a"), QString::fromUtf8("ä"));
    writeFile("first/empty.js", "");
    EXPECT_EQ(text("import * as e from 'empty.js'; Object.keys(e).length"), "0");
}

TEST(JsModulesPrefix, DefaultDirectoryIsReadWhenTheInterpreterIsMade)
{
    QTemporaryDir prefix;
    QDir(prefix.path()).mkpath("lib/javascript");
    QFile file(prefix.filePath("lib/javascript/helper.js"));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("export var here = 'prefix';");
    file.close();
    const QByteArray before = qgetenv("TORVIX_PREFIX");
    qputenv("TORVIX_PREFIX", prefix.path().toLocal8Bit());
    {
        JsInterpreter interpreter(nullptr);
        qputenv("TORVIX_PREFIX", "/nowhere");
        EXPECT_TRUE(interpreter.evaluate("import {here} from 'helper.js'; here", "test.js", false, false))
            << interpreter.errorMessage().toStdString();
        EXPECT_EQ(interpreter.resultMessage(), "prefix");
    }
    if (before.isNull())
        qunsetenv("TORVIX_PREFIX");
    else
        qputenv("TORVIX_PREFIX", before);
}

} // namespace
} // namespace Torvix
