#include "engine/rewriting/textcache.h"

#include <QCryptographicHash>
#include <QDataStream>
#include <QDir>
#include <QFile>
#include <QTemporaryFile>

#include <cstdio>

namespace KJS::Rewriting {

namespace {

constexpr QDataStream::Version streamVersion = QDataStream::Qt_5_15;

QByteArray checksum(const QByteArray& bytes)
{
    return QCryptographicHash::hash(bytes, QCryptographicHash::Sha1);
}

QByteArray write(const RewrittenText& text)
{
    QByteArray bytes;
    QDataStream out(&bytes, QIODevice::WriteOnly);
    out.setVersion(streamVersion);
    out << text.prefix << text.code << text.edits << text.moduleInfo
        << static_cast<quint32>(text.functions.size());
    for (const FunctionInfo& f : text.functions)
        out << f.start << f.end << f.line << f.name << f.isAsync << f.isGenerator << f.keepsThis;
    return bytes;
}

std::shared_ptr<const RewrittenText> read(const QByteArray& bytes)
{
    auto text = std::make_shared<RewrittenText>();
    quint32 count = 0;
    QDataStream in(bytes);
    in.setVersion(streamVersion);
    in >> text->prefix >> text->code >> text->edits >> text->moduleInfo >> count;
    for (quint32 i = 0; i < count && in.status() == QDataStream::Ok; ++i) {
        FunctionInfo f;
        in >> f.start >> f.end >> f.line >> f.name >> f.isAsync >> f.isGenerator >> f.keepsThis;
        text->functions.push_back(f);
    }
    if (in.status() != QDataStream::Ok || !in.atEnd() || text->functions.empty())
        return nullptr;
    return text;
}

} // namespace

QString TextCache::defaultFolder()
{
    QString cache = qEnvironmentVariable("XDG_CACHE_HOME");
    if (!QDir::isAbsolutePath(cache)) // relative paths are ignored, as XDG asks
        cache = QDir::homePath() + QLatin1String("/.cache");
    return cache + QLatin1String("/torvix/scripts");
}

QString TextCache::fileOf(const QByteArray& key) const
{
    return m_folder + QLatin1Char('/') + QString::fromLatin1(key.toHex());
}

std::shared_ptr<const RewrittenText> TextCache::find(const QByteArray& key) const
{
    if (m_folder.isEmpty())
        return nullptr;
    QFile file(fileOf(key));
    if (!file.open(QIODevice::ReadOnly))
        return nullptr;
    const QByteArray sum = file.read(20);
    const QByteArray bytes = file.readAll();
    return sum == checksum(bytes) ? read(bytes) : nullptr;
}

void TextCache::store(const QByteArray& key, const RewrittenText& text) const
{
    // scripts may hold secrets: nobody else reads the folder
    if (m_folder.isEmpty() || !QDir().mkpath(m_folder))
        return;
    QFile::setPermissions(m_folder, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    QTemporaryFile file(m_folder + QLatin1String("/new-XXXXXX"));
    if (!file.open())
        return;
    const QByteArray bytes = write(text);
    const QByteArray whole = checksum(bytes) + bytes;
    // Not forced to the disk, which takes longer than everything else here: what a crash of the machine
    // leaves of it does not fit its checksum.
    if (file.write(whole) == whole.size() && file.flush() &&
        std::rename(QFile::encodeName(file.fileName()).constData(),
                    QFile::encodeName(fileOf(key)).constData()) == 0)
        file.setAutoRemove(false);
}

void TextCache::prune(int limit) const
{
    if (m_folder.isEmpty())
        return;
    QDir folder(m_folder);
    if (folder.count() <= static_cast<uint>(limit))
        return;
    const QStringList oldestLast = folder.entryList(QDir::Files, QDir::Time);
    for (int i = limit / 2; i < oldestLast.size(); ++i)
        folder.remove(oldestLast.at(i));
}

} // namespace KJS::Rewriting
