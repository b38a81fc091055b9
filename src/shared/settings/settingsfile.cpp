// Reading and writing of the file.
#include "shared/settings/settings.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTextStream>

namespace Torvix {

void Settings::parse()
{
    QFile file(fileName);
    if (!file.exists())
        return;
    const QByteArray name = fileName.toLocal8Bit();
    // A device or a pipe may have no end.
    if (!QFileInfo(file).isFile() || !file.open(QIODevice::ReadOnly | QIODevice::Text)) {
        qWarning("Torvix::Settings::parse: could not open file `%s' for reading", name.constData());
        return;
    }
    QTextStream stream(&file);
    stream.setCodec("UTF-8");
    stream.setAutoDetectUnicode(false);

    QString groupName;
    Group* group = nullptr;
    QString line;
    while (stream.readLineInto(&line)) {
        line = line.trimmed();
        if (line.isEmpty() || line.startsWith('#'))
            continue;
        if (line.startsWith('[')) {
            groupName = line.mid(1);
            if (groupName.endsWith(']'))
                groupName.chop(1);
            // Intended: a group that comes again throws away what it held before.
            group = &*groups.insert(groupName, Group());
            continue;
        }
        if (!group) {
            qWarning("Torvix::Settings::parse: in file %s: line `%s' not in a group", name.constData(),
                     line.toLocal8Bit().constData());
            continue;
        }
        const int equal = line.indexOf('=');
        if (equal < 0) {
            qWarning("Torvix::Settings::parse: in file %s: corrupted line `%s' in group `%s'",
                     name.constData(), line.toLocal8Bit().constData(), groupName.toLocal8Bit().constData());
            continue;
        }
        // Intended: the key is taken as it stands, the value with the blank before it.
        group->insert(line.left(equal).trimmed(), line.mid(equal + 1));
    }
}

bool Settings::flush()
{
    const QByteArray name = fileName.toLocal8Bit();
    const QString directory = QFileInfo(fileName).path();
    if (!QDir(directory).exists() && !QDir().mkpath(directory)) {
        qWarning("Torvix::Settings::flush: could not create directory `%s'.",
                 directory.toLocal8Bit().constData());
        return false;
    }
    QFile file(fileName);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Text)) {
        qWarning("Torvix::Settings::flush: could not open file `%s' for writing", name.constData());
        return false;
    }
    QTextStream stream(&file);
    stream.setCodec("UTF-8");
    for (auto group = groups.constBegin(); group != groups.constEnd(); ++group) {
        stream << '[' << group.key() << "]\n";
        for (auto entry = group->constBegin(); entry != group->constEnd(); ++entry)
            stream << entry.key() << " = " << entry.value().trimmed() << '\n';
        stream << '\n';
    }
    stream.flush();
    if (stream.status() != QTextStream::Ok || !file.flush()) {
        qWarning("Torvix::Settings::flush: could not write file `%s'", name.constData());
        return false;
    }
    file.close();
    return true;
}

} // namespace Torvix
