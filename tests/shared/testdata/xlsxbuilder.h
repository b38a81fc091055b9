#pragma once

#include <QByteArray>
#include <QString>
#include <utility>
#include <vector>

/** Writes a zip archive of these members, packed. */
void writeArchive(const QString& fileName, const std::vector<std::pair<QByteArray, QByteArray>>& members);
