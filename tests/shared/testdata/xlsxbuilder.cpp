#include "xlsxbuilder.h"

#include <minizip/zip.h>
#include <zlib.h>

void writeArchive(const QString& fileName, const std::vector<std::pair<QByteArray, QByteArray>>& members)
{
    const zipFile zip = zipOpen(fileName.toUtf8().constData(), APPEND_STATUS_CREATE);
    for (const auto& [name, content] : members) {
        zipOpenNewFileInZip(zip, name.constData(), nullptr, nullptr, 0, nullptr, 0, nullptr, Z_DEFLATED,
                            Z_BEST_SPEED);
        zipWriteInFileInZip(zip, content.constData(), unsigned(content.size()));
        zipCloseFileInZip(zip);
    }
    zipClose(zip, nullptr);
}
