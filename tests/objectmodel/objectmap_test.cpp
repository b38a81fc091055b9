#include "objectmodel/objectmap.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QTemporaryDir>

namespace {

using namespace Torvix;

QString text(const char* utf8)
{
    return QString::fromUtf8(utf8);
}

class ObjectMapFile : public testing::Test
{
protected:
    QString write(const QByteArray& content)
    {
        QFile file(folder.filePath(text("objects.map")));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(content);
        return file.fileName();
    }

    QTemporaryDir folder;
    ObjectMap map;
};

TEST_F(ObjectMapFile, IsReadAndWrittenWithItsComments)
{
    const QString path = write("# the buttons\n\n'OK' = {type='QPushButton' text='OK' window='Main'}\n"
                               "  Main={ type='MainWindow' }\r\n'it\\'s = {' = {name='x'}\n# last words\n");
    ASSERT_EQ(QString(), map.load(path).error());
    EXPECT_EQ(3, map.table().size());
    EXPECT_EQ(text("{name='x'}"), map.realName(text("it's = {")));
    map.insert(text("New"), *ObjectName::fromString(text("{type='X'}")));
    ASSERT_EQ(QString(), map.save(path).error());
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(QByteArray("'Main' = {type='MainWindow'}\n'New' = {type='X'}\n"
                         "# the buttons\n\n'OK' = {type='QPushButton' text='OK' window='Main'}\n"
                         "'it\\'s = {' = {name='x'}\n# last words\n"),
              file.readAll());
    ObjectMap again;
    EXPECT_EQ(QString(), again.load(path).error());
    EXPECT_EQ(map.table(), again.table());
}

TEST_F(ObjectMapFile, ABadLineIsToldAndChangesNothing)
{
    map.insert(text("Here"), ObjectName());
    const struct
    {
        const char* content;
        const char* error;
    } cases[] = {
        {"A = {}\nB {}\n", ":2: expected '='"},
        {"A = {}\nA = {}\n", ":2: 'A' is there twice"},
        {"\n\nA = 'x'\n", ":3: "},
        {"A = {type=}\n", ":1: a value is missing"},
        {"'A = {}\n", ":1: the closing quote is missing"},
    };
    for (const auto& entry : cases) {
        const QString error = map.load(write(entry.content)).error();
        EXPECT_TRUE(error.contains(text(entry.error))) << qPrintable(error);
    }
    EXPECT_FALSE(map.load(folder.filePath(text("none"))));
    EXPECT_TRUE(map.contains(text("Here")));
    EXPECT_FALSE(map.save(folder.filePath(text("no/such/folder"))));
}

TEST(ObjectMap, GivesAndMakesSymbolicNames)
{
    ObjectMap map;
    const QString ok = text("{type='QPushButton' text='&OK'}");
    EXPECT_TRUE(map.symbolicName(ok, false).isNull());
    EXPECT_EQ(text("OK PushButton"), map.symbolicName(ok, true));
    EXPECT_EQ(text("OK PushButton"), map.symbolicName(text("{text='&OK' type='QPushButton'}"), false))
        << "the order of conditions does not matter";
    EXPECT_EQ(text("OK PushButton"), map.symbolicName(text("OK PushButton"), false));
    EXPECT_EQ(text("OK PushButton 2"), map.symbolicName(text("{type='QPushButton' text='OK'}"), true));
    EXPECT_EQ(text("Object"), map.symbolicName(text("{visible=true}"), true));
    EXPECT_TRUE(map.symbolicName(text("unknown"), true).isNull());
    EXPECT_TRUE(map.symbolicName(text("{broken"), true).isNull());
    EXPECT_EQ(text("{type='QPushButton' text='&OK'}"), map.realName(text("OK PushButton")));
    EXPECT_TRUE(map.realName(text("unknown")).isNull());
    EXPECT_EQ(ok, map.realName(ok));
    EXPECT_TRUE(map.remove(text("Object")));
    EXPECT_FALSE(map.remove(text("Object")));
}

} // namespace
