#pragma once

#include <QByteArray>
#include <QString>

/**
 * Files that a test puts beside the application and takes from it. A relative name counts from the
 * application's current folder. Files cross the wire in pieces, so that their size does not matter.
 *
 * What fails throws an Error that names the file and the system's reason.
 */
namespace Torvix::Agent::DataFiles {

/** A file, not a folder. */
bool exists(const QString& name);

void remove(const QString& name);

/** Up to 1 MiB from that byte on; empty at the end. */
QByteArray read(const QString& name, qint64 offset);

/**
 * Writes a piece at that byte. The pieces go to a file beside, which takes the place of what has the
 * name with the last piece, so that there is never half a file. Answers the absolute path.
 */
QString write(const QString& name, qint64 offset, const QByteArray& bytes, bool isLast);

} // namespace Torvix::Agent::DataFiles
