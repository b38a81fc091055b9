// The cache of rewritten texts on disk.

#include "engine/rewriting/runtimefixture.h"

#include <thread>

namespace KJS::Rewriting {
namespace {

const char program[] = "var $t$mine = 1; function f(a) { return a == $t$mine } f(1)";

QStringList files(const QString& folder)
{
    return QDir(folder).entryList(QDir::Files);
}

std::string runWith(const QString& folder, bool* loadedTool = nullptr)
{
    Machine machine;
    machine.rewriter.setCacheFolder(folder);
    World world(machine);
    const QString result = world.run(program);
    if (loadedTool)
        *loadedTool = machine.rewriter.toolLoaded();
    return result.toStdString();
}

TEST(Cache, SparesTheParser)
{
    QTemporaryDir folder;
    bool loaded = false;
    EXPECT_EQ(runWith(folder.path() + QStringLiteral("/new/folder"), &loaded), "true");
    EXPECT_TRUE(loaded);
    EXPECT_EQ(runWith(folder.path() + QStringLiteral("/new/folder"), &loaded), "true");
    EXPECT_FALSE(loaded);
}

TEST(Cache, DamagedFilesAreMissing)
{
    QTemporaryDir folder;
    runWith(folder.path());
    ASSERT_EQ(files(folder.path()).size(), 1);
    const QString name = folder.filePath(files(folder.path()).constFirst());
    for (const char* damage : {"cut", "flip", "empty"}) {
        QFile file(name);
        ASSERT_TRUE(file.open(QIODevice::ReadWrite));
        QByteArray bytes = file.readAll();
        if (damage[0] == 'c')
            bytes.chop(bytes.size() / 2);
        else if (damage[0] == 'f')
            bytes[bytes.size() - 3] = static_cast<char>(~bytes[bytes.size() - 3]);
        else
            bytes.clear();
        file.resize(0);
        file.seek(0);
        file.write(bytes);
        file.close();
        bool loaded = false;
        EXPECT_EQ(runWith(folder.path(), &loaded), "true") << damage;
        EXPECT_TRUE(loaded) << damage;
        EXPECT_EQ(runWith(folder.path(), &loaded), "true") << damage;
        EXPECT_FALSE(loaded) << damage;
    }
}

TEST(Cache, WorksWithoutAFolder)
{
    EXPECT_EQ(runWith(QString()), "true");
    EXPECT_EQ(runWith(QStringLiteral("/proc/no/such/folder")), "true");
}

TEST(Cache, EvalsStayOffTheDisk)
{
    QTemporaryDir folder;
    Machine machine;
    machine.rewriter.setCacheFolder(folder.path());
    World world(machine);
    world.run("eval('1'); new Function('2')()");
    EXPECT_EQ(files(folder.path()).size(), 1);
}

TEST(Cache, SeveralWritersAtOnce)
{
    QTemporaryDir folder;
    std::vector<std::thread> threads;
    std::vector<std::string> results(4);
    for (size_t i = 0; i < results.size(); ++i)
        threads.emplace_back([&, i] { results[i] = runWith(folder.path()); });
    for (std::thread& thread : threads)
        thread.join();
    for (const std::string& result : results)
        EXPECT_EQ(result, "true");
    EXPECT_EQ(files(folder.path()).size(), 1);
}

} // namespace
} // namespace KJS::Rewriting
