#pragma once

#include <QString>
#include <QVector>

#include <functional>

namespace Torvix {

class Settings;

/** A key that a settings file may have, and what takes its value in; false for a value of the wrong kind. */
struct IniKey
{
    const char* key;
    const char* kind; ///< what the value has to be, for the error
    std::function<bool(const Settings&, const QString& key)> read;
};

/**
 * Reads a file of one group, [General]. A missing file is an empty one. Stricter than the store itself,
 * which passes over what it does not understand: in a file that people write by hand each of those is
 * a mistake. False with one line about the first one: file, line and what is to be there.
 */
bool readIniFile(const QString& path, const QVector<IniKey>& keys, QString* error);

} // namespace Torvix
