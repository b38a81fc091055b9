#include "shared/testdata/ziparchive.h"

#include <algorithm>
#include <minizip/unzip.h>

namespace Torvix {

namespace {

constexpr int CaseSensitive = 1;

constexpr quint64 AlwaysAllowed = quint64(64) << 20;
constexpr quint64 NeverAllowed = quint64(1) << 30;
constexpr quint64 Expansion = 200;     // real sheets shrink to a tenth, very regular ones to a hundredth
constexpr quint64 MaxExpansion = 1033; // more than the compression can do

QString locateError(int result, const char* memberName)
{
    const QString member = QString::fromUtf8(memberName);
    switch (result) {
    case UNZ_END_OF_LIST_OF_FILE:
        return QString::fromLatin1(NotInArchive);
    case UNZ_PARAMERROR:
        return QStringLiteral("parameter error when extracting '%1' from archive! ").arg(member);
    case UNZ_BADZIPFILE:
        return QStringLiteral("invalid zip archive file. ");
    case UNZ_CRCERROR:
        return QStringLiteral("crc check failed! ");
    default:
        return QStringLiteral("unknown error when extracting data '%1'.").arg(member);
    }
}

bool isPlausible(const unz_file_info& info)
{
    const quint64 packed = info.compressed_size;
    const quint64 size = info.uncompressed_size;
    return size <= packed * MaxExpansion + 64 &&
           size <= std::clamp(packed * Expansion, AlwaysAllowed, NeverAllowed);
}

} // namespace

const char* const NotInArchive = "file is not contained in the archive!\n";

void ZipCloser::operator()(void* zip) const
{
    unzClose(zip);
}

ZipHandle openZipArchive(const QString& fileName)
{
    return ZipHandle(unzOpen(fileName.toUtf8().constData()));
}

std::pair<QByteArray, QString> extractFromZipArchive(void*& zipHandle, const char* memberName)
{
    const int located = unzLocateFile(zipHandle, memberName, CaseSensitive);
    if (located != UNZ_OK)
        return {QByteArray(), locateError(located, memberName)};

    unz_file_info info{};
    unzGetCurrentFileInfo(zipHandle, &info, nullptr, 0, nullptr, 0, nullptr, 0);
    if (!isPlausible(info))
        return {QByteArray(),
                QStringLiteral("size of '%1' is not plausible.").arg(QString::fromUtf8(memberName))};
    QByteArray bytes(int(info.uncompressed_size) + 1, '\0');
    // A member that breaks off is as good as what was read of it.
    unzOpenCurrentFile(zipHandle);
    unzReadCurrentFile(zipHandle, bytes.data(), unsigned(info.uncompressed_size));
    unzCloseCurrentFile(zipHandle);
    return {bytes, QString()};
}

} // namespace Torvix
