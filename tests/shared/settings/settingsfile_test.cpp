// The file: what is read, what is written, where, and when.
#include "shared/settings/globalsettings.h"
#include "shared/settings/settings.h"
#include "shared/settings/usersettings.h"
#include "support/messagecapture.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <sys/stat.h>
#include <unistd.h>

namespace {

using Torvix::GlobalSettings;
using Torvix::Settings;
using Torvix::UserSettings;

class SettingsFile : public testing::Test
{
protected:
    SettingsFile() { std::setlocale(LC_ALL, "C.UTF-8"); }

    void write(const QByteArray& text)
    {
        QFile out(path);
        ASSERT_TRUE(out.open(QIODevice::WriteOnly));
        ASSERT_EQ(text.size(), out.write(text));
    }
    QByteArray written() const
    {
        QFile in(path);
        return in.open(QIODevice::ReadOnly) ? in.readAll() : "(no file)";
    }
    static QString rawEntry(const Settings& settings, const QString& group, const QString& key)
    {
        QString value = "(none)";
        settings.readRawEntry(group, key, value);
        return value;
    }

    QTemporaryDir directory;
    QString path = directory.path() + "/store.ini";
    MessageCapture messages;
};

TEST_F(SettingsFile, IsReadByTheRulesOfTheFormat)
{
    write("# comment = 1\n"
          "\n"
          "[open\r\n"
          "  key  =  \"v\" \r\n"
          "a=b=c\n"
          " # x = 1\n"
          "= nameless\n"
          "/slashed = 1\n"
          "again = 1\n"
          "again = 2\n"
          "empty =\n"
          "\t[ blank ] \n"
          "\xc3\xa4 = \"\xe2\x82\xac\"\n"
          "[]\n"
          "k = 1\n"
          "[two]]\n"
          "last = 1");
    Settings settings(path);
    EXPECT_EQ(QStringList({"", " blank ", "open", "two]"}), settings.groupList());
    EXPECT_EQ(QStringList({"", "a", "again", "empty", "key"}), settings.entryList("open", ""));
    EXPECT_EQ("  \"v\"", rawEntry(settings, "open", "key"));
    EXPECT_EQ("v", settings.readEntry("open", "key"));
    EXPECT_EQ("b=c", rawEntry(settings, "open", "a"));
    EXPECT_EQ(2, settings.readNumEntry("open", "again"));
    EXPECT_EQ("", rawEntry(settings, "open", "empty"));
    EXPECT_EQ("\u20ac", settings.readEntry(" blank ", "\u00e4"));
    EXPECT_EQ(1, settings.readNumEntry("", "k"));
    EXPECT_EQ(1, settings.readNumEntry("two]", "last"));
    // A key that is not in its normal form can be in the file, but not be reached.
    EXPECT_EQ("(none)", rawEntry(settings, "open", "/slashed"));
    EXPECT_EQ(QStringList(), messages.take());
}

TEST_F(SettingsFile, ReportsLinesThatItCannotUseAndKeepsTheRest)
{
    write("stray = 1\nb\xc3\xa4"
          "d\n[g]\nno entry\nk = 1\n");
    Settings settings(path);
    EXPECT_EQ(1, settings.readNumEntry("g", "k"));
    EXPECT_EQ(QStringList(
                  {"Torvix::Settings::parse: in file " + path + ": line `stray = 1' not in a group",
                   "Torvix::Settings::parse: in file " + path + ": line `b\u00e4d' not in a group",
                   "Torvix::Settings::parse: in file " + path + ": corrupted line `no entry' in group `g'"}),
              messages.take());
}

TEST_F(SettingsFile, ARepeatedGroupDropsWhatItHeldBefore)
{
    write("[a]\nx = 1\n[b]\ny = 1\n[a]\nz = 1\n");
    Settings settings(path);
    EXPECT_EQ(QStringList("z"), settings.entryList("a", ""));
    EXPECT_EQ(QStringList("y"), settings.entryList("b", ""));
}

TEST_F(SettingsFile, IsWrittenSortedWithTrimmedValues)
{
    write("# gone\n[z]\nq=1\n\n[a\nlist =  \"x\" , \"y\"  \nb = \"\xc3\xa4\"\nnone =\n");
    {
        Settings settings(path);
        settings.writeEntry("m", "k=1", QString("two\nlines"));
        ASSERT_TRUE(settings.flush());
    }
    EXPECT_EQ("[a]\nb = \"\xc3\xa4\"\nlist = \"x\" , \"y\"\nnone = \n\n"
              "[m]\nk_1 = \"two\\nlines\"\n\n"
              "[z]\nq = 1\n\n",
              written());
    const QByteArray first = written();
    {
        Settings settings(path);
        ASSERT_TRUE(settings.flush());
    }
    EXPECT_EQ(first, written());
    EXPECT_EQ(QStringList(), messages.take());
}

TEST_F(SettingsFile, IsWrittenAtTheEndOnlyAfterAChange)
{
    write("# kept\n[g]\nk = 1\n");
    const QByteArray before = written();
    {
        Settings settings(path);
        settings.removeEntry("missing", "k");
        EXPECT_EQ(1, settings.readNumEntry("g", "k"));
    }
    EXPECT_EQ(before, written());
    EXPECT_EQ(QStringList("Torvix::Settings::removeEntry: group 'missing' not found in " + path),
              messages.take());
    {
        // A key that was not there counts as a change all the same.
        Settings settings(path);
        settings.removeEntry("g", "missing");
    }
    EXPECT_EQ("[g]\nk = 1\n\n", written());
    {
        Settings settings(path);
        settings.writeEntry("g", "k", 2);
        ASSERT_TRUE(settings.flush());
        ASSERT_TRUE(QFile::remove(path));
    }
    EXPECT_EQ("[g]\nk = 2\n\n", written()) << "a flush leaves the store changed";
}

TEST_F(SettingsFile, AMissingFileIsAnEmptyStoreAndMakesItsDirectories)
{
    path = directory.path() + "/new/deep/store.ini";
    {
        Settings settings(path);
        EXPECT_EQ(QStringList(), settings.groupList());
        EXPECT_FALSE(QFile::exists(directory.path() + "/new"));
        settings.writeEntry(Settings::defaultGroup(), "k", true);
    }
    EXPECT_EQ("[General]\nk = 1\n\n", written());
    write("");
    EXPECT_EQ(QStringList(), Settings(path).groupList());
    EXPECT_EQ(QStringList(), messages.take());
}

TEST_F(SettingsFile, FailuresOfTheFileSystemAreTold)
{
    QDir(directory.path()).mkdir("store.ini");
    Settings aDirectory(path);
    EXPECT_EQ(QStringList("Torvix::Settings::parse: could not open file `" + path + "' for reading"),
              messages.take());
    EXPECT_FALSE(aDirectory.flush());
    EXPECT_EQ(QStringList("Torvix::Settings::flush: could not open file `" + path + "' for writing"),
              messages.take());

    const QString below = directory.path() + "/plain/sub";
    QFile plain(directory.path() + "/plain");
    ASSERT_TRUE(plain.open(QIODevice::WriteOnly));
    Settings belowAFile(below, "x.ini");
    EXPECT_FALSE(belowAFile.flush());
    EXPECT_EQ(QStringList("Torvix::Settings::flush: could not create directory `" + below + "'."),
              messages.take());

    ASSERT_TRUE(QFile::link("/dev/full", directory.path() + "/full"));
    Settings onFullDisk(directory.path(), "full");
    EXPECT_EQ(QStringList("Torvix::Settings::parse: could not open file `" + directory.path() +
                          "/full' for reading"),
              messages.take());
    onFullDisk.writeEntry("g", "k", QString(100000, 'x'));
    EXPECT_FALSE(onFullDisk.flush());
    EXPECT_EQ(QStringList("Torvix::Settings::flush: could not write file `" + directory.path() + "/full'"),
              messages.take());
}

TEST_F(SettingsFile, LiesWhereItsTypeSays)
{
    const QString root = directory.path();
    qputenv("TORVIX_USER_SETTINGS_DIR", (root + "/user").toLocal8Bit());
    qputenv("TORVIX_PREFIX", (root + "/prefix").toLocal8Bit());
    EXPECT_EQ(root + "/user", Settings::torvixSettingsDir());
    EXPECT_TRUE(QDir(root + "/user").exists());
    EXPECT_EQ(root + "/user/ver1", Settings::userSettingsDir());
    EXPECT_FALSE(QDir(root + "/user/ver1").exists());

    for (int type = 0; type <= 5; ++type)
        UserSettings(UserSettings::UserSettingsType(type)).writeEntry("g", "type", type);
    for (int type = 0; type <= 1; ++type)
        GlobalSettings(GlobalSettings::GlobalSettingsType(type)).writeEntry("g", "type", type);
    const QPair<const char*, int> files[] = {
        {"/user/ver1/server.ini", 0},  {"/user/ver1/tkwrapper.ini", 1}, {"/user/ver1/webwrapper.ini", 2},
        {"/user/ver1/paths.ini", 3},   {"/user/ver1/ocr.ini", 4},       {"/user/ver1/trialhubcmd.ini", 5},
        {"/prefix/etc/torvix.ini", 0}, {"/prefix/etc/paths.ini", 1},
    };
    for (const auto& file : files)
        EXPECT_EQ(file.second, Settings(root + file.first).readNumEntry("g", "type", -1)) << file.first;
    EXPECT_EQ(6, QDir(root + "/user/ver1").entryList(QDir::Files).size());
    EXPECT_EQ(QStringList(), messages.take());

    EXPECT_FALSE(UserSettings(UserSettings::UserSettingsType(6)).flush());
    EXPECT_FALSE(GlobalSettings(GlobalSettings::GlobalSettingsType(2)).flush());
    EXPECT_NE(QStringList(), messages.take());

    qputenv("TORVIX_USER_SETTINGS_DIR", "");
    qputenv("HOME", (root + "/home").toLocal8Bit());
    EXPECT_EQ(root + "/home", Settings::settingsDir());
    EXPECT_EQ(root + "/home/.torvix/ver1", Settings::userSettingsDir());
    EXPECT_TRUE(QDir(root + "/home/.torvix").exists());
}

} // namespace
