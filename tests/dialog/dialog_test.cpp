#include "support/application/running.h"
#include "support/runreport.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QImage>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QTemporaryDir>
#include <QThread>

#include <gtest/gtest.h>

#include <functional>

namespace {

using namespace Torvix;
using namespace Torvix::Testing;

constexpr int patienceMs = 20'000;

/** The dialog's program without a screen, driven as any application. */
class OffscreenDialog
{
public:
    explicit OffscreenDialog(const QByteArray& request)
        : m_running(QStringLiteral(TORVIX_DIALOG), {QString::fromUtf8(request)})
    {
    }

    Running& running() { return m_running; }

    void press(const char* button)
    {
        const QString name = QStringLiteral("{type='QPushButton' name='%1'}").arg(utf8(button));
        m_running.act("clickButton", {m_running.wait(name.toUtf8().constData())});
    }

    /** What it printed, once it has ended. */
    QString answer()
    {
        QElapsedTimer timer;
        timer.start();
        while (m_running.application->isRunning() && timer.elapsed() < patienceMs)
            QThread::msleep(10);
        EXPECT_TRUE(m_running.application->end().isOrderly());
        return m_running.application->readStdout().trimmed();
    }

private:
    Running m_running;
};

TEST(DialogWindow, AnswersWithTheButtonThatWasPressed)
{
    const struct
    {
        const char* request;
        const char* button;
        const char* answer;
    } cases[] = {
        {R"({"kind": "information", "text": "Look"})", "ok", R"({"button":"ok"})"},
        {R"({"kind": "question", "text": "On?", "buttons": ["yes", "no", "cancel"]})", "no",
         R"({"button":"no"})"},
        {R"({"kind": "input", "text": "Name?", "value": "Ada", "buttons": ["ok", "cancel"]})", "ok",
         R"({"button":"ok","value":"Ada"})"},
        {R"({"kind": "choice", "text": "Side?", "choices": ["left", "right"], "buttons": ["ok"]})", "ok",
         R"({"button":"ok","value":"left"})"},
    };
    for (const auto& each : cases) {
        OffscreenDialog dialog(each.request);
        ASSERT_TRUE(dialog.running().isGood()) << each.request;
        dialog.press(each.button);
        EXPECT_EQ(dialog.answer(), utf8(each.answer)) << each.request;
    }
}

TEST(DialogWindow, TakesWhatIsTypedAndShowsTextsAsTheyStand)
{
    OffscreenDialog dialog(R"({"kind": "password", "text": "<b>Secret</b>?", "buttons": ["ok", "cancel"]})");
    Running& running = dialog.running();
    ASSERT_TRUE(running.isGood());
    EXPECT_EQ(running.get(running.wait("{type='QLabel' name='text'}"), "text"), "<b>Secret</b>?");
    const SharedPtr<Object> entry = running.wait("{type='QLineEdit' name='value'}");
    running.act("type", {entry, value("gr\xc3\xbc\xc3\x9f")});
    EXPECT_NE(running.get(entry, "displayText"), utf8("gr\xc3\xbc\xc3\x9f")) << "is not shown";
    running.act("type", {entry, value("<Return>")});
    EXPECT_EQ(dialog.answer(), utf8("{\"button\":\"ok\",\"value\":\"gr\xc3\xbc\xc3\x9f\"}"));
}

TEST(DialogWindow, ClosingItCancels)
{
    OffscreenDialog dialog(R"({"kind": "question", "text": "On?", "buttons": ["yes", "no"]})");
    ASSERT_TRUE(dialog.running().isGood());
    dialog.running().act("closeWindow", {dialog.running().wait("{type='QDialog'}")});
    EXPECT_EQ(dialog.answer(), R"({"button":"cancel"})");
}

/** Exit status and standard error of the program on its own. */
std::pair<int, QString> runDialog(const QStringList& arguments, const QByteArray& input)
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
    QProcess process;
    process.setProcessEnvironment(environment);
    process.start(QStringLiteral(TORVIX_DIALOG), arguments);
    process.write(input);
    process.closeWriteChannel();
    EXPECT_TRUE(process.waitForFinished(patienceMs));
    return {process.exitCode(), QString::fromUtf8(process.readAllStandardError())};
}

TEST(DialogProgram, EndsWithItsInputAndRefusesWhatIsNoRequest)
{
    EXPECT_EQ(runDialog({}, "{\"kind\": \"information\", \"text\": \"x\"}\n").first, 0)
        << "whoever asked has gone";
    EXPECT_EQ(runDialog({}, "").first, 4);
    EXPECT_TRUE(runDialog({"{\"kind\": \"poll\"}"}, "")
                    .second.endsWith("torvixdialog: There is no kind of dialog 'poll'\n"));
    EXPECT_EQ(runDialog({"--help"}, "").first, 0);
}

/** A suite that asks, on a display and without a terminal, and somebody who answers. */
class DialogsOnADisplay : public testing::Test
{
protected:
    void SetUp() override
    {
        m_server.start("Xvfb",
                       {"-displayfd", "1", "-screen", "0", "800x600x24", "-nolisten", "tcp", "-noreset"});
        while (m_server.waitForReadyRead(patienceMs) && !m_server.canReadLine()) {
        }
        m_display = QString::fromLatin1(':' + m_server.readLine().trimmed());
        ASSERT_NE(m_display, ":") << "Xvfb did not start";
    }

    void TearDown() override
    {
        m_runner.waitForFinished(patienceMs);
        m_server.terminate();
        m_server.waitForFinished(patienceMs);
    }

    void startSuite(const QByteArray& script, const QByteArray& ini, const QString& display)
    {
        QDir(m_folder.path()).mkpath("s/tst_ask");
        for (const auto& [name, text] : {std::pair<const char*, QByteArray>{"s/tst_ask/test.js", script},
                                         std::pair<const char*, QByteArray>{"s/tst_ask/test.ini", ini}}) {
            QFile file(m_folder.filePath(name));
            ASSERT_TRUE(file.open(QIODevice::WriteOnly));
            file.write(text);
        }
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        for (const char* unwanted : {"CI", "WAYLAND_DISPLAY", "TORVIX_PREFIX"})
            environment.remove(QLatin1String(unwanted));
        environment.insert("DISPLAY", display);
        environment.insert("QT_QPA_PLATFORM", "offscreen"); // of applications; the dialog takes the display
        environment.insert("QT_QPA_GENERIC_PLUGINS", "torvixagent");
        environment.insert("QT_PLUGIN_PATH", TORVIX_TEST_BINARY_DIR "/lib/qt5/plugins");
        environment.insert("TORVIX_AGENT_LISTEN", socket());
        m_runner.setProcessEnvironment(environment);
        m_runner.setProcessChannelMode(QProcess::MergedChannels);
        m_runner.setWorkingDirectory(m_folder.path());
        // A session of its own has no terminal.
        m_runner.start("setsid", {"--wait", TORVIX_RUNNER, "run", "s"});
        ASSERT_TRUE(m_runner.waitForStarted());
    }

    QString socket() const { return m_folder.filePath("dialog.socket"); }

    /** Does something in the next dialog, which ends with it. */
    void answer(const std::function<void(Inspector*)>& act)
    {
        QElapsedTimer timer;
        timer.start();
        QString error;
        std::unique_ptr<Application> dialog;
        while (!dialog && timer.elapsed() < patienceMs && m_runner.state() == QProcess::Running) {
            m_runner.waitForFinished(50);
            dialog = Application::attach(socket(), QByteArray(), 500, &error);
        }
        ASSERT_TRUE(dialog) << error.toStdString() << m_runner.readAll().toStdString();
        Inspector* inspector = Inspector::self();
        inspector->setCurrent(inspector->addApplication(dialog->takeLink()));
        act(inspector);
        inspector->reset();
        QFile::remove(socket());
    }

    static void click(Inspector* inspector, const SharedPtr<Object>& button)
    {
        EXPECT_TRUE(inspector->globalClass()->methods("clickButton").first()->invoke(nullptr, {button}));
    }

    void press(const char* button)
    {
        answer([button](Inspector* inspector) {
            const QString name = QStringLiteral("{type='QPushButton' name='%1'}").arg(utf8(button));
            const Inspector::WaitResult found = inspector->waitForObject(name, patienceMs);
            ASSERT_TRUE(found.object) << found.error.toStdString();
            click(inspector, found.object);
        });
    }

    QVector<ResultEntry> results()
    {
        EXPECT_TRUE(m_runner.state() == QProcess::NotRunning || m_runner.waitForFinished(3 * patienceMs));
        const RunReport report = readReportFile(m_folder.filePath("results/results.ndjson"));
        EXPECT_FALSE(report.cases.isEmpty()) << m_runner.readAll().toStdString();
        return report.cases.value(0).attempts.value(0).entries;
    }

    std::string messages()
    {
        QStringList all;
        for (const ResultEntry& entry : results())
            all += entry.message;
        return all.join('\n').toStdString();
    }

    QTemporaryDir m_folder;
    QProcess m_server;
    QProcess m_runner;
    QString m_display;
};

TEST_F(DialogsOnADisplay, ReplaceTheTerminal)
{
    QDir(m_folder.path()).mkpath("s/tst_ask");
    QImage picture(30, 20, QImage::Format_RGB32);
    picture.fill(Qt::red);
    ASSERT_TRUE(picture.save(m_folder.filePath("s/tst_ask/red.png")));
    startSuite("function main() { with (testInteraction) {\n"
               "  test.log('there: ' + isAvailable());\n"
               "  test.log('question: ' + question('Goes on?', Yes | No | Cancel));\n"
               "  test.log('input: ' + input('Name?', 'Ada'));\n"
               "  test.log('choice: ' + choice('Side?', ['left', 'right']));\n"
               "  test.log('cancelled: ' + choice('Side?', ['left', 'right']));\n"
               "  test.log('picture: ' + showImage('red.png', 'Is it red?'));\n"
               "  test.log('warning: ' + warning('Hot'));\n"
               "  test.log('notification: ' + notification('that was all'));\n"
               "} }\n",
               "[General]\nTimeoutSecs = 60\n", m_display);
    for (const char* button : {"no", "ok", "ok", "cancel"})
        press(button);
    answer([](Inspector* inspector) {
        const Inspector::WaitResult label =
            inspector->waitForObject(QStringLiteral("{type='QLabel' name='picture'}"), patienceMs);
        ASSERT_TRUE(label.object) << label.error.toStdString();
        EXPECT_EQ(inspector->globalBounds(label.object)->size(), QSize(30, 20));
        click(inspector, *inspector->findObject(QStringLiteral("{type='QPushButton' name='ok'}")));
    });
    press("ok");
    EXPECT_EQ(messages(), "there: true\nquestion: 8\ninput: Ada\nchoice: left\ncancelled: null\n"
                          "picture: 1\nwarning: 1\nnotification: undefined");
}

TEST_F(DialogsOnADisplay, EndWithTheTestCase)
{
    startSuite("function main() { testInteraction.question('Anybody?'); test.log('answered') }\n",
               "[General]\nTimeoutSecs = 1\n", m_display);
    const std::string told = messages();
    EXPECT_NE(told.find("The test case took longer than 1 s"), std::string::npos) << told;
    EXPECT_EQ(told.find("answered"), std::string::npos) << told;
}

TEST_F(DialogsOnADisplay, SayWhyTheyCannotBeShown)
{
    startSuite("function main() { testInteraction.information('x') }\n", "[General]\nTimeoutSecs = 60\n",
               ":99999");
    const std::string error = messages();
    EXPECT_EQ(error.find("The dialog could not be shown: "), 0U) << error;
    EXPECT_NE(error.find(":99999"), std::string::npos) << error;
}

} // namespace
