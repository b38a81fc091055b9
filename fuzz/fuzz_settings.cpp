// Settings files. A file that was read and written must read as it did, and every value that is
// written must come back.

#include "memoryfile.h"
#include "shared/settings/settings.h"

#include <QStringList>

#include <algorithm>
#include <cstdio>
#include <cstdlib>

using namespace Torvix;

namespace {

void require(bool holds, const char* what)
{
    if (!holds) {
        std::fprintf(stderr, "broken: %s\n", what);
        std::abort();
    }
}

/** Every entry that can be reached, with its value, below a key. */
void collect(const Settings& settings, const QString& group, const QString& key, QStringList& entries)
{
    for (const QString& name : settings.entryList(group, key)) {
        const QString path = key.isEmpty() ? name : key + '/' + name;
        QString value = "(unreachable)";
        settings.readRawEntry(group, path, value);
        entries += path + " = " + value.trimmed();
        settings.readEntry(group, path);
        settings.readListEntry(group, path);
        settings.readNumEntry(group, path);
        settings.readDoubleEntry(group, path);
        settings.readBoolEntry(group, path);
    }
    for (const QString& name : settings.subkeyList(group, key)) {
        // An empty name cannot be gone into: its key normalizes to the one above.
        if (!name.isEmpty() && !name.contains("//"))
            collect(settings, group, key.isEmpty() ? name : key + '/' + name, entries);
    }
}

QStringList contents(const Settings& settings)
{
    QStringList all;
    for (const QString& group : settings.groupList()) {
        all += '[' + group;
        collect(settings, group, QString(), all);
    }
    return all;
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***)
{
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {});
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const MemoryFile file(data, size);
    const QString name = QString::fromStdString(file.name());
    const QString text =
        QString::fromUtf8(reinterpret_cast<const char*>(data), int(std::min<std::size_t>(size, 4096)));
    {
        Settings settings(name);
        const QStringList before = contents(settings);
        require(settings.flush(), "flush");
        const Settings again(name);
        require(contents(again) == before, "contents after writing");
        settings.setExpandVariables(true);
        contents(settings);

        settings.writeEntry("g", "string", text);
        settings.writeEntry("g", "list", QStringList{text, "", text.mid(1)});
    }
    const Settings written(name);
    require(written.readEntry("g", "string") == text, "string");
    require(written.readListEntry("g", "list") == QStringList({text, "", text.mid(1)}), "list");
    return 0;
}
