#include "launcher/injection.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <dlfcn.h>
#include <elf.h>

namespace Torvix::Injection {

namespace {

/** Any address in this library. */
const char anchor = 0;

void prepend(QProcessEnvironment* environment, const QString& variable, const QString& value, QChar separator)
{
    const QString present = environment->value(variable);
    environment->insert(variable, present.isEmpty() ? value : value + separator + present);
}

struct ElfFacts
{
    bool isElf = false;
    bool isDynamic = false;
    bool mentionsQt5 = false;
    bool mentionsQt6 = false;
    /** The variable's name stands in Qt's own code only: it is linked in. */
    bool containsQtGui = false;
};

ElfFacts readElf(const QString& program)
{
    ElfFacts facts;
    QFile file(program);
    if (!file.open(QIODevice::ReadOnly))
        return facts;
    const uchar* bytes = file.map(0, file.size());
    if (!bytes || file.size() < qint64(sizeof(Elf64_Ehdr)) || memcmp(bytes, ELFMAG, SELFMAG) != 0)
        return facts;
    facts.isElf = true;
    const QByteArray content =
        QByteArray::fromRawData(reinterpret_cast<const char*>(bytes), int(file.size()));
    const auto* header = reinterpret_cast<const Elf64_Ehdr*>(bytes);
    const bool is64 = header->e_ident[EI_CLASS] == ELFCLASS64;
    // A program of other width cannot load the agent either; that shows when it starts.
    for (int i = 0; is64 && i < header->e_phnum; ++i) {
        const quint64 at = header->e_phoff + quint64(i) * header->e_phentsize;
        if (at + sizeof(Elf64_Phdr) > quint64(file.size()))
            break;
        facts.isDynamic =
            facts.isDynamic || reinterpret_cast<const Elf64_Phdr*>(bytes + at)->p_type == PT_INTERP;
    }
    facts.isDynamic = facts.isDynamic || !is64;
    facts.mentionsQt5 = content.contains("libQt5Core.so") || content.contains("libQt5Widgets.so");
    facts.mentionsQt6 = content.contains("libQt6Core.so") || content.contains("libQt6Widgets.so");
    facts.containsQtGui = content.contains("QT_QPA_GENERIC_PLUGINS");
    return facts;
}

} // namespace

QString pluginDirectory(const QString& given)
{
    if (!given.isEmpty())
        return QFileInfo(given).absoluteFilePath();
    Dl_info info{};
    dladdr(&anchor, &info);
    return QFileInfo(QFile::decodeName(info.dli_fname)).absolutePath() + QLatin1String("/qt5/plugins");
}

void extendEnvironment(QProcessEnvironment* environment, const QString& pluginDirectory)
{
    prepend(environment, QStringLiteral("QT_PLUGIN_PATH"), pluginDirectory, QLatin1Char(':'));
    prepend(environment, QStringLiteral("QT_QPA_GENERIC_PLUGINS"), QStringLiteral("torvixagent"),
            QLatin1Char(','));
}

QString fileProblem(const QString& program)
{
    const QFileInfo file(program);
    if (!file.exists())
        return QStringLiteral("there is no file %1").arg(program);
    if (file.isDir())
        return QStringLiteral("%1 is a folder").arg(program);
    if (!file.isExecutable())
        return QStringLiteral("%1 is not executable").arg(program);
    const ElfFacts facts = readElf(program);
    if (!facts.isElf)
        return QString();
    if (facts.mentionsQt6 && !facts.mentionsQt5)
        return QStringLiteral("%1 is a Qt 6 program, and the agent needs Qt 5").arg(program);
    if (facts.containsQtGui && !facts.mentionsQt5)
        return QStringLiteral("%1 has Qt linked statically, so that it loads no plug-ins").arg(program);
    if (!facts.isDynamic)
        return QStringLiteral(
                   "%1 is linked statically, so that it is no program that uses the Qt 5 libraries")
            .arg(program);
    return QString();
}

namespace {

QByteArray librariesOf(int pid)
{
    QFile maps(QStringLiteral("/proc/%1/maps").arg(pid));
    return maps.open(QIODevice::ReadOnly) ? maps.readAll() : QByteArray();
}

} // namespace

bool mayStillCall(int pid)
{
    return librariesOf(pid).contains("libQt5Gui");
}

QString processProblem(const QVector<int>& pids)
{
    QByteArray libraries;
    for (int pid : pids)
        libraries += librariesOf(pid);
    if (libraries.contains("libtorvixagent"))
        return QStringLiteral("the agent was loaded but did not connect");
    if (libraries.contains("libQt5Gui"))
        return QStringLiteral("it uses Qt 5, but did not load the agent (is a QApplication made?)");
    if (libraries.contains("libQt5Core"))
        return QStringLiteral("it uses Qt 5, but has no user interface");
    if (libraries.contains("libQt6Core"))
        return QStringLiteral("it is a Qt 6 program, and the agent needs Qt 5");
    return QStringLiteral("it is not a Qt program");
}

} // namespace Torvix::Injection
