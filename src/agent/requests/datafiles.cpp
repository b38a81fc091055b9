#include "agent/requests/datafiles.h"

#include "agent/reflection/error.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <cstdio>

namespace Torvix::Agent::DataFiles {

namespace {

constexpr qint64 pieceBytes = 1 << 20;

QString pathOf(const QString& name)
{
    if (name.isEmpty())
        throw Error(QStringLiteral("the name of a file is empty"), Protocol::ErrorClass::BadValue);
    return QDir::cleanPath(QDir::current().absoluteFilePath(name));
}

[[noreturn]] void failed(const char* what, const QString& path, const QString& reason)
{
    throw Error(
        QStringLiteral("Cannot %1 file '%2' of the application: %3").arg(QLatin1String(what), path, reason));
}

void requireFile(const char* what, const QString& path)
{
    if (!QFileInfo(path).isFile())
        failed(what, path, QStringLiteral("there is no such file"));
}

} // namespace

bool exists(const QString& name)
{
    return QFileInfo(pathOf(name)).isFile();
}

void remove(const QString& name)
{
    QFile file(pathOf(name));
    requireFile("remove", file.fileName());
    if (!file.remove())
        failed("remove", file.fileName(), file.errorString());
}

QByteArray read(const QString& name, qint64 offset)
{
    QFile file(pathOf(name));
    requireFile("read", file.fileName());
    if (!file.open(QIODevice::ReadOnly) || !file.seek(offset))
        failed("read", file.fileName(), file.errorString());
    const QByteArray bytes = file.read(pieceBytes);
    if (file.error() != QFileDevice::NoError)
        failed("read", file.fileName(), file.errorString());
    return bytes;
}

QString write(const QString& name, qint64 offset, const QByteArray& bytes, bool isLast)
{
    const QString path = pathOf(name);
    QFile part(path + QStringLiteral(".part"));
    const auto mode = offset == 0 ? QIODevice::WriteOnly | QIODevice::Truncate : QIODevice::ReadWrite;
    const bool written =
        part.open(mode | QIODevice::Unbuffered) && part.seek(offset) && part.write(bytes) == bytes.size();
    if (!written) {
        const QString reason = part.errorString();
        part.remove();
        failed("write", path, reason);
    }
    part.close();
    if (isLast && std::rename(QFile::encodeName(part.fileName()).constData(),
                              QFile::encodeName(path).constData()) != 0) {
        const QString reason = qt_error_string(errno);
        part.remove();
        failed("write", path, reason);
    }
    return path;
}

} // namespace Torvix::Agent::DataFiles
