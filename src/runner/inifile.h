#pragma once

#include <QString>
#include <QStringList>
#include <QVector>

#include <functional>

namespace Torvix {

/** A key that a settings file may have, and what takes its value in; false for a value of the wrong kind. */
struct IniKey
{
    const char* key;
    const char* kind; ///< what the value has to be, for the error
    std::function<bool(const QString& value)> read;
};

/**
 * Reads a file of one group, [General], in the format of the settings store (shared/settings). A missing
 * file is an empty one. Stricter than the store, which passes over what it does not understand: in a file
 * that people write by hand each of those is a mistake. False with one line about the first one: file,
 * line and what is to be there.
 */
bool readIniFile(const QString& path, const QVector<IniKey>& keys, QString* error);

/** What a value stands for; false, and nothing changed, when it is none. */
bool readPositiveNumber(const QString& value, int* number);
bool readFlag(const QString& value, bool* flag);
/** At least one quoted string, with commas between them. */
bool readStrings(const QString& value, QStringList* strings);

} // namespace Torvix
