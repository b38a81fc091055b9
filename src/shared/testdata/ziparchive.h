#pragma once

#include <QByteArray>
#include <QString>
#include <memory>
#include <utility>

namespace Torvix {

/** Closes the archive that minizip has open. */
struct ZipCloser
{
    void operator()(void* zip) const;
};
using ZipHandle = std::unique_ptr<void, ZipCloser>;

/** Null when the file cannot be opened as a zip archive; every extraction from null then says so. */
ZipHandle openZipArchive(const QString& fileName);

/** What extractFromZipArchive() says when the archive has no such member. */
extern const char* const NotInArchive;

/**
 * The bytes of a member of the archive, and an error text, which is empty on success. The name is
 * matched by exact case. The bytes end in a 0 of their own, so that they can be read as a C string;
 * those that could not be read are 0.
 *
 * A member whose size, as the archive states it, cannot be true or would be a burden (more than 200
 * times what it takes in the archive, from 64 MiB on; 1 GiB at most) is an error.
 */
std::pair<QByteArray, QString> extractFromZipArchive(void*& zipHandle, const char* memberName);

} // namespace Torvix
