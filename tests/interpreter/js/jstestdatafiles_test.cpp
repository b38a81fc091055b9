#include "interpreter/js/apitest.h"
#include "launcher/launcher.h"
#include "objectmodel/inspector.h"

#include <QRandomGenerator>

namespace Torvix {
namespace {

/** A test case and an application that runs in a folder of its own. */
class JsTestDataFilesTest : public ApiTest
{
protected:
    void SetUp() override
    {
        QDir(directory.path()).mkpath("app");
        QDir(directory.path()).mkpath("tst_case/testdata");
        LaunchOptions options;
        options.program = QStringLiteral(TORVIX_TEST_BINARY_DIR "/tests/torvixtarget");
        options.pluginDirectory = QStringLiteral(TORVIX_TEST_BINARY_DIR "/lib/qt5/plugins");
        options.environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
        options.workingDirectory = directory.filePath("app");
        QString error;
        application = Application::start(options, &error);
        ASSERT_TRUE(application) << error.toStdString();
        Inspector::self()->setCurrent(Inspector::self()->addApplication(application->takeLink()));
        renewInterpreter(&runner);
        QDir::setCurrent(directory.filePath("tst_case"));
    }
    void TearDown() override
    {
        interpreter.reset();
        Inspector::self()->reset();
        application.reset();
    }

    QByteArray contents(const QString& name)
    {
        QFile file(directory.filePath(name));
        EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << name.toStdString();
        return file.readAll();
    }

    std::unique_ptr<Application> application;
};

TEST_F(JsTestDataFilesTest, FilesGoToTheApplicationAndBack)
{
    // More than one piece, and every byte there is.
    QByteArray bytes(3'000'001, '\0');
    QRandomGenerator random(7);
    for (char& byte : bytes)
        byte = char(random.bounded(256));
    writeFile("tst_case/testdata/big.bin", bytes);
    writeFile("tst_case/testdata/empty.txt", "");
    const QString app = QDir(directory.filePath("app")).canonicalPath();

    EXPECT_EQ(text("testData.exists('big.bin')"), "false");
    EXPECT_EQ(text("testData.put('big.bin')"), app + "/big.bin");
    EXPECT_EQ(text("testData.put('empty.txt')"), app + "/empty.txt");
    EXPECT_EQ(text("[testData.exists('big.bin'), testData.exists('./empty.txt')].join()"), "true,true");
    EXPECT_TRUE(contents("app/big.bin") == bytes);
    EXPECT_EQ(contents("app/empty.txt"), "");
    writeFile("tst_case/testdata/empty.txt", "no longer");
    ASSERT_TRUE(run("testData.put('empty.txt')"));
    EXPECT_EQ(contents("app/empty.txt"), "no longer") << "an older file is replaced";

    EXPECT_EQ(text("testData.get('big.bin')"), QDir::currentPath() + "/big.bin");
    EXPECT_TRUE(contents("tst_case/big.bin") == bytes);
    writeFile("app/empty.txt", "");
    EXPECT_EQ(text("testData.get(testData.put('empty.txt'))"), QDir::currentPath() + "/empty.txt");
    EXPECT_EQ(contents("tst_case/empty.txt"), "no longer");

    EXPECT_EQ(text("typeof testData.remove('big.bin')"), "undefined");
    EXPECT_FALSE(QFileInfo::exists(app + "/big.bin"));
    EXPECT_EQ(QDir(app).entryList(QDir::Files), QStringList{"empty.txt"}) << "nothing half-done is left";
}

TEST_F(JsTestDataFilesTest, WhatFailsNamesTheFileAndTheReason)
{
    const QString app = QDir(directory.filePath("app")).canonicalPath();
    QDir(app).mkdir("folder");
    writeFile("tst_case/testdata/folder", "a file of that name");
    EXPECT_EQ(thrown("testData.remove('gone')"),
              "Error: Cannot remove file '" + app + "/gone' of the application: there is no such file");
    EXPECT_EQ(thrown("testData.remove('folder')"),
              "Error: Cannot remove file '" + app + "/folder' of the application: there is no such file");
    EXPECT_EQ(thrown("testData.get('gone')"),
              "TypeError: Cannot read file '" + app + "/gone' of the application: there is no such file");
    EXPECT_EQ(text("testData.exists('folder')"), "false");
    EXPECT_EQ(thrown("testData.exists('')"), "Error: the name of a file is empty");
    EXPECT_EQ(thrown("testData.put('folder')"),
              "Error: Cannot write file '" + app + "/folder' of the application: Is a directory");
    EXPECT_EQ(QDir(app).entryList(QDir::Files), QStringList());
    EXPECT_FALSE(QFileInfo::exists("gone")) << "a failure leaves no file";
    QDir().mkdir("taken");
    writeFile("app/taken", "x");
    EXPECT_TRUE(thrown("testData.get('taken')").startsWith("TypeError: Cannot write file '"));
}

} // namespace
} // namespace Torvix
