#include "interpreter/js/apitest.h"
#include "testsupport/dialogs/terminal.h"

#include <array>
#include <future>

#include <fcntl.h>
#include <poll.h>
#include <pty.h>
#include <termios.h>
#include <unistd.h>

namespace Torvix {
namespace {

/** A pseudo-terminal with somebody at the other end. */
class Person
{
public:
    Person()
    {
        std::array<char, 256> name{};
        EXPECT_EQ(openpty(&m_master, &m_slave, name.data(), nullptr, nullptr), 0);
        Terminal::setDevice(QString::fromLocal8Bit(name.data()));
    }
    ~Person()
    {
        Terminal::setDevice(QString());
        close(m_master);
        close(m_slave);
    }
    Person(const Person&) = delete;
    Person& operator=(const Person&) = delete;

    void types(const QByteArray& keys)
    {
        EXPECT_EQ(write(m_master, keys.constData(), keys.size()), keys.size());
    }

    /** What the terminal has shown up to now. */
    QByteArray sees()
    {
        QByteArray shown;
        pollfd waiting{m_master, POLLIN, 0};
        while (poll(&waiting, 1, 100) > 0) {
            std::array<char, 4096> buffer{};
            const ssize_t count = read(m_master, buffer.data(), buffer.size());
            if (count <= 0)
                break;
            shown += QByteArray(buffer.data(), int(count));
        }
        return shown.replace("\r\n", "\n");
    }

    bool echoes()
    {
        termios settings{};
        tcgetattr(m_slave, &settings);
        return settings.c_lflag & ECHO;
    }

private:
    int m_master = -1;
    int m_slave = -1;
};

using JsTestInteractionTest = ApiTest;

TEST_F(JsTestInteractionTest, ConstantsAreBitsThatCannotBeChanged)
{
    EXPECT_EQ(text("testInteraction.Yes = 7; testInteraction.Yes | testInteraction.No"), "12");
    EXPECT_EQ(text("['choice', 'isAvailable', 'information', 'input', 'notification', 'password', 'warning',"
                   "'question', 'showImage'].map(n => testInteraction[n].length).join('')"),
              "101111111");
    EXPECT_EQ(text("typeof testInteraction.hasOwnProperty"), "undefined");
}

TEST_F(JsTestInteractionTest, WhereNobodyIsIsAvailableIsFalseAndTheRestAnError)
{
    Terminal::setDevice(directory.filePath("none"));
    qunsetenv("DISPLAY");
    qunsetenv("WAYLAND_DISPLAY");
    EXPECT_EQ(text("testInteraction.isAvailable()"), "false");
    const QString none = "TypeError: There is neither a terminal nor a display to ask anybody; "
                         "testInteraction.isAvailable() tells whether there is";
    for (const char* call : {"information('x')", "warning('x')", "notification('x')", "input('x')",
                             "password('x')", "question('x')", "choice('x', ['a'])"})
        EXPECT_EQ(thrown(QString("testInteraction.%1").arg(call)), none) << call;
    writeFile("no.terminal", "plain");
    Terminal::setDevice(directory.filePath("no.terminal"));
    EXPECT_EQ(text("testInteraction.isAvailable()"), "false") << "a file is no terminal";
    qputenv("DISPLAY", ":0");
    qputenv("CI", "true");
    EXPECT_EQ(text("testInteraction.isAvailable()"), "false")
        << "nobody sits before a build server's display";
    qunsetenv("CI");
    Terminal::setDevice(QString());
}

TEST_F(JsTestInteractionTest, WrongCallsAreErrorsBeforeAnythingIsAsked)
{
    const Person person;
    const std::pair<const char*, const char*> cases[] = {
        {"information()", "TypeError: Wrong number of arguments (0), use testInteraction.information(text)"},
        {"isAvailable(1)", "TypeError: Wrong number of arguments (1), use testInteraction.isAvailable()"},
        {"warning('x', 'y')", "TypeError: Wrong number of arguments (2), use testInteraction.warning(text)"},
        {"notification()",
         "TypeError: Wrong number of arguments (0), use testInteraction.notification(text)"},
        {"input()", "TypeError: Wrong number of arguments (0), use testInteraction.input(text[, default])"},
        {"password('x', 'y')",
         "TypeError: Wrong number of arguments (2), use testInteraction.password(text)"},
        {"question()",
         "TypeError: Wrong number of arguments (0), use testInteraction.question(text[, buttons])"},
        {"choice('x')",
         "TypeError: Wrong number of arguments (1), use testInteraction.choice(text, choices)"},
        {"showImage()",
         "TypeError: Wrong number of arguments (0), use testInteraction.showImage(file[, text])"},
        {"choice('x', [])", "TypeError: The choices have to be a list of texts"},
        {"choice('x', 'a')", "TypeError: The choices have to be a list of texts"},
        {"question('x', 16)",
         "TypeError: The buttons have to be some of testInteraction.Ok, Cancel, Yes and No, "
         "joined by |, not '16'"},
        {"question('x', 'Yes')",
         "TypeError: The buttons have to be some of testInteraction.Ok, Cancel, Yes and "
         "No, joined by |, not 'Yes'"},
    };
    for (const auto& [call, expected] : cases)
        EXPECT_EQ(thrown(QString("testInteraction.%1").arg(call)), expected) << call;
    EXPECT_TRUE(thrown("testInteraction.showImage('none.png')").startsWith("TypeError: Cannot read image '"));
}

TEST_F(JsTestInteractionTest, APersonAnswers)
{
    Person person;
    EXPECT_EQ(text("testInteraction.isAvailable()"), "true");
    person.types("gr\xc3\xbc\xc3\x9f\n\n");
    EXPECT_EQ(text("testInteraction.input('Your name?') + testInteraction.input('Colour?', 'red')"),
              QString::fromLocal8Bit("gr\xc3\xbc\xc3\x9f") + "red");
    person.types("what\nn\nok\nca\n");
    EXPECT_EQ(text("with (testInteraction) [question('Goes on?'), question('Fine?', Ok), "
                   "question('Both?', Ok | Cancel)].join()"),
              "8,1,2")
        << "an answer that is none is asked for again";
    person.types("9\n2\nleft\n");
    EXPECT_EQ(text("testInteraction.choice('Side?', ['left', 'right']) + "
                   "testInteraction.choice('Side?', ['left', 'right'])"),
              "rightleft");
    person.types("\n\n");
    EXPECT_EQ(text("testInteraction.information('Look') + testInteraction.warning('Hot')"), "2");
    text("testInteraction.notification('by the way')");
    const QByteArray shown = person.sees();
    for (const char* expected : {"Your name?\n> ", "Colour? [red]\n> ", "Goes on? (yes/no) ",
                                 "Both? (ok/cancel) ", "Side?\n  1  left\n  2  right\n> ",
                                 "Look\nPress return to go on. ", "Warning: Hot\n", "\nby the way\n"})
        EXPECT_TRUE(shown.contains(expected)) << expected << " in " << shown.constData();
}

TEST_F(JsTestInteractionTest, TheEndOfInputCancels)
{
    Person person;
    for (const auto& [call, expected] :
         std::initializer_list<std::pair<const char*, const char*>>{{"input('x', 'default')", "null"},
                                                                    {"password('x')", "null"},
                                                                    {"choice('x', ['a'])", "null"},
                                                                    {"question('x')", "2"},
                                                                    {"information('x')", "2"}}) {
        // A password discards what was typed before it was asked for.
        std::future<void> later = std::async(std::launch::async, [&person] {
            usleep(200'000);
            person.types("\x04");
        });
        EXPECT_EQ(text(QString("String(testInteraction.%1)").arg(call)), expected) << call;
        later.wait();
    }
}

TEST_F(JsTestInteractionTest, APasswordIsNotShown)
{
    Person person;
    std::future<void> later = std::async(std::launch::async, [&person] {
        while (person.echoes())
            usleep(1'000);
        person.types("secret\n");
    });
    EXPECT_EQ(text("testInteraction.password('Password?')"), "secret");
    later.wait();
    EXPECT_TRUE(person.echoes()) << "restored";
    const QByteArray shown = person.sees();
    EXPECT_TRUE(shown.contains("Password?"));
    EXPECT_FALSE(shown.contains("secret"));
}

} // namespace
} // namespace Torvix
