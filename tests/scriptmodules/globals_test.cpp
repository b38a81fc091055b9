#include "engine/interpreter.h"
#include "interpreter/base/dummyrunnerinterface.h"
#include "interpreter/js/jsinterpreter.h"
#include "launcher/launcher.h"
#include "objectmodel/inspector.h"
#include "testsupport/scriptapi.h"
#include "testsupport/testresult.h"

#include <QFile>
#include <QRegularExpression>
#include <QSet>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using namespace Torvix;

using Names = std::set<std::string>;

/** What torvix.d.ts declares, read as text: one declaration a line, by the habit of that file. */
class Declared
{
public:
    Declared()
    {
        QFile file(QStringLiteral(TORVIX_DECLARATIONS));
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        m_text = QString::fromUtf8(file.readAll());
    }

    Names globals() const { return captured("^declare (?:const|function) (\\w+)", m_text); }

    /** Of a global whose type is an interface. */
    Names members(const QString& global) const
    {
        const QString interface = firstOf("^declare const " + global + ": (\\w+);", m_text);
        const QString body = firstOf("^interface " + interface + " \\{(.*?)^\\}", m_text);
        return captured("^    (?:readonly )?(\\w+)[(:]", body);
    }

private:
    static QRegularExpression expression(const QString& pattern)
    {
        return QRegularExpression(pattern, QRegularExpression::MultilineOption |
                                               QRegularExpression::DotMatchesEverythingOption);
    }
    static QString firstOf(const QString& pattern, const QString& text)
    {
        return expression(pattern).match(text).captured(1);
    }
    static Names captured(const QString& pattern, const QString& text)
    {
        Names names;
        for (auto it = expression(pattern).globalMatch(text); it.hasNext();)
            names.insert(it.next().captured(1).toStdString());
        return names;
    }

    QString m_text;
};

/** The interpreter as a test case has it while an application runs. */
class Globals : public testing::Test
{
protected:
    void SetUp() override
    {
        LaunchOptions options;
        options.program = QStringLiteral(TORVIX_TEST_BINARY_DIR "/tests/torvixtarget");
        QString error;
        application = Application::start(options, &error);
        ASSERT_TRUE(application) << error.toStdString();
        Inspector::self()->setCurrent(Inspector::self()->addApplication(application->takeLink()));
        registerScriptApi();
        interpreter = std::make_unique<JsInterpreter>(&runner);
        interpreter->initTestFunctions(&result);
    }

    void TearDown() override
    {
        interpreter.reset();
        application.reset();
        Inspector::self()->reset();
    }

    QString text(const QString& code)
    {
        EXPECT_TRUE(interpreter->evaluate(code, "/tests/globals.js", false, false))
            << interpreter->errorMessage().toStdString();
        return interpreter->resultMessage();
    }

    static Names split(const QString& text)
    {
        Names names;
        for (const QString& name : text.split(',', Qt::SkipEmptyParts))
            names.insert(name.toStdString());
        return names;
    }

    /** The language's own, from an interpreter that nothing was added to. */
    static Names languageGlobals()
    {
        KJS::Interpreter plain;
        const KJS::Completion names =
            plain.evaluate("Object.getOwnPropertyNames(globalThis).join()", KJS::Value(), false);
        return split(names.value().toString(plain.globalExec()).qstring());
    }

    DummyRunnerInterface runner;
    TestResult result{nullptr, QString()};
    std::unique_ptr<Application> application;
    std::unique_ptr<JsInterpreter> interpreter;
};

TEST_F(Globals, ThatScriptsHaveAreDeclared)
{
    Names present = split(text("Object.getOwnPropertyNames(globalThis).join()"));
    for (const std::string& name : languageGlobals()) {
        if (name != "console") // ours takes its place
            present.erase(name);
    }
    const Class* global = Inspector::self()->globalClass();
    for (int i = 0; i < global->numMethods(); ++i)
        present.insert(global->method(i)->name().toStdString());
    for (int i = 0; i < global->numProperties(); ++i)
        present.insert(global->property(i)->name().toStdString());
    EXPECT_GT(present.size(), 40U);
    EXPECT_THAT(Declared().globals(), testing::IsSupersetOf(present));
}

TEST_F(Globals, OfAnApplicationAreAskedForWhenThereIsNone)
{
    const QString hint = QStringLiteral(". It is there while an application runs: call startApplication() or "
                                        "attachToApplication() first");
    QStringList names{"QPoint", "Qt", "qApp", "QtWarningMsg"};
    const Class* global = Inspector::self()->globalClass();
    for (int i = 0; i < global->numMethods(); ++i)
        names += global->method(i)->name();
    names.removeDuplicates();
    EXPECT_GT(names.size(), 15);
    EXPECT_EQ("no error", text("try { clickButton; 'no error' } catch (e) { e.message }"));
    interpreter = nullptr;
    application.reset();
    Inspector::self()->reset();
    interpreter = std::make_unique<JsInterpreter>(&runner);
    for (const QString& name : names) {
        const QString message = "Can't find variable: " + name;
        EXPECT_EQ(message + hint, text("(() => { try { try { " + name +
                                       " } catch (e) { throw e } }"
                                       " catch (e) { return e.message } })()"));
        EXPECT_FALSE(interpreter->evaluate("\n" + name + "(1)", "/t.js", false, false));
        EXPECT_EQ(message + hint, interpreter->errorMessage());
        EXPECT_EQ("undefined", text("typeof " + name));
    }
    EXPECT_EQ("Can't find variable: clickButon",
              text("(() => { try { clickButon } catch (e) { return e.message } })()"));
}

TEST_F(Globals, ThatAreDeclaredScriptsHave)
{
    const Names declared = Declared().globals();
    EXPECT_GT(declared.size(), 40U);
    for (const std::string& name : declared) {
        if (name == "Console") // every use of it throws
            continue;
        EXPECT_NE("undefined", text(QStringLiteral("typeof %1").arg(QString::fromStdString(name)))) << name;
    }
}

TEST_F(Globals, HaveTheMembersThatAreDeclared)
{
    for (const char* name :
         {"object", "testData", "objectMap", "console", "MouseButton", "Modifier", "testInteraction"})
        EXPECT_EQ(Declared().members(name),
                  split(text(QStringLiteral("Object.getOwnPropertyNames(%1).join()").arg(name))))
            << name;
    // The functions of `test` come into being by being asked for.
    const Names test = Declared().members("test");
    EXPECT_EQ(35U, test.size());
    for (const std::string& name : test)
        EXPECT_EQ("function", text(QStringLiteral("typeof test.%1").arg(QString::fromStdString(name))))
            << name;
}

} // namespace
