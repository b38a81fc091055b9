#include "protocol/token.h"
#include "support/application/running.h"

#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QTemporaryDir>
#include <QThread>

namespace {

using namespace Torvix;
using namespace Torvix::Testing;

class Attach : public testing::Test
{
protected:
    void startTarget(const QByteArray& token)
    {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(utf8("QT_QPA_PLATFORM"),
                           environment.value(utf8("TORVIX_TEST_PLATFORM"), utf8("offscreen")));
        environment.insert(utf8("QT_QPA_GENERIC_PLUGINS"), utf8("torvixagent"));
        environment.insert(utf8("QT_PLUGIN_PATH"), utf8(TORVIX_TEST_BINARY_DIR "/lib/qt5/plugins"));
        environment.insert(utf8("TORVIX_AGENT_LISTEN"), address);
        if (!token.isEmpty())
            environment.insert(utf8("TORVIX_AGENT_TOKEN"), QString::fromLatin1(token));
        process.setProcessEnvironment(environment);
        process.setProcessChannelMode(QProcess::ForwardedChannels);
        process.start(target(), QStringList());
        ASSERT_TRUE(process.waitForStarted());
    }
    ~Attach() override
    {
        Inspector::self()->reset();
        process.kill();
        process.waitForFinished();
    }

    QString attachFails(const QByteArray& token)
    {
        QString error;
        EXPECT_FALSE(Application::attach(address, token, 5000, &error));
        return error;
    }
    void attachWorks(const QByteArray& token)
    {
        QString error;
        const auto application = Application::attach(address, token, 5000, &error);
        ASSERT_TRUE(application) << qPrintable(error);
        ApplicationModel* model = Inspector::self()->addApplication(application->takeLink());
        Inspector::self()->setCurrent(model);
        EXPECT_EQ(process.processId(), model->peer().pid);
        EXPECT_TRUE(Inspector::self()->findObject(utf8("{name='control'}")))
            << qPrintable(Inspector::self()->lastError());
        model->detach(utf8("done"));
    }

    QTemporaryDir folder;
    QString address = folder.filePath(utf8("agent"));
    QProcess process;
};

TEST_F(Attach, WorksAgainAndAgainWithTheTokenFileOfTheAgent)
{
    startTarget(QByteArray());
    attachWorks(QByteArray());
    attachWorks(QByteArray());
    const auto others = QFile::ReadGroup | QFile::ReadOther | QFile::WriteGroup | QFile::WriteOther;
    EXPECT_FALSE(QFile(address + utf8(".token")).permissions() & others);
}

TEST_F(Attach, AnOrdinaryEndIsAnnouncedAndAKillIsNot)
{
    for (const bool quits : {true, false}) {
        startTarget(QByteArray());
        QString error;
        const auto application = Application::attach(address, QByteArray(), 5000, &error);
        ASSERT_TRUE(application) << qPrintable(error);
        ApplicationModel* model = Inspector::self()->addApplication(application->takeLink());
        Inspector::self()->setCurrent(model);
        const SharedPtr<Object> control = *Inspector::self()->findObject(utf8("{name='control'}"));
        ASSERT_TRUE(control);
        if (quits)
            EXPECT_TRUE(
                control->objectClass()->methods(utf8("quitLater")).first()->invoke(control, {value(10)}));
        else
            process.kill();
        ASSERT_TRUE(process.waitForFinished(20'000));
        for (int i = 0; i < 500 && model->isAlive(); ++i)
            Inspector::self()->processEvents(10);
        EXPECT_FALSE(model->endReason().isEmpty());
        EXPECT_EQ(model->hasSaidGoodbye(), quits);
        Inspector::self()->reset();
        QFile::remove(address);
    }
}

TEST_F(Attach, StrangersAreTurnedAwayAndHarmNothing)
{
    const QByteArray token = Protocol::tokenToText(Protocol::makeToken());
    startTarget(token);
    attachWorks(token);
    EXPECT_TRUE(attachFails(QByteArray(32, '0')).contains(utf8("token")));
    EXPECT_TRUE(attachFails(QByteArray("short")).contains(utf8("token is missing")));
    const QByteArray hostile[] = {QByteArray::fromHex("ffffffff01"), QByteArray(5000, '\xa5'),
                                  QByteArray(1, '\0'), QByteArray::fromHex("0000000701000000000000"),
                                  Protocol::toBytes(requestFrame(1, Protocol::Ping()))};
    for (const QByteArray& bytes : hostile) {
        QString error;
        const auto channel = Protocol::connectTo(address, &error);
        ASSERT_TRUE(channel) << qPrintable(error);
        channel->writeAll(bytes, 1000);
        char buffer[16];
        if (bytes.size() > 1) {
            EXPECT_TRUE(channel->wait(Protocol::Channel::Wait::Readable, 5000));
            EXPECT_EQ(-1, channel->read(buffer, sizeof buffer)) << bytes.left(8).toHex().constData();
        }
    }
    attachWorks(token);
}

} // namespace
