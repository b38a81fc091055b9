#pragma once

#include <QMap>
#include <QString>
#include <QStringList>

namespace Torvix {

/**
 * A store of grouped key and value pairs in a UTF-8 text file.
 *
 *     [General]
 *     Name = "a \"b\""
 *     Size = 12
 *     List = "x","y"
 *
 * The file is read whole when the object is made and written whole by flush(), which the destructor
 * calls after a change. Comments (lines that begin with '#'), blank lines and the order of the file do
 * not survive that: groups and keys are written sorted. Two stores on one file do not see each other;
 * the later flush() wins. There is no lock.
 *
 * Keys may form a tree with '/' between the levels. All operations, but not the reader of the file,
 * normalize a key: one '/' at either end is removed, '=' becomes '_', and "//" becomes "/". Names of groups
 * and keys are not quoted in the file: to come back they must be one line without blanks at the ends, and
 * a key must not begin with '#' or '['.
 *
 * Nothing throws. What is missing or cannot be read gives the caller's default, and what is wrong with
 * the file's text is a warning in Qt's message log.
 */
class Settings
{
public:
    /** Reads the file. A missing file is an empty store. */
    explicit Settings(const QString& path);
    Settings(const QString& directory, const QString& file);
    virtual ~Settings();
    Settings(const Settings&) = delete;
    Settings& operator=(const Settings&) = delete;

    /** The user's home directory. */
    static QString settingsDir();

    /**
     * The directory of everything that Torvix keeps for the user: TORVIX_USER_SETTINGS_DIR, or
     * ".torvix" in the home directory if that is unset or empty. Created if it is missing.
     */
    static QString torvixSettingsDir();

    /** The directory of this format's user settings below torvixSettingsDir(). Not created. */
    static QString userSettingsDir();

    /** The group for entries that have no better one. */
    static QString defaultGroup();

    /** Whether readEntry() and readListEntry() put in the values of "$(NAME)". At first they do not. */
    void setExpandVariables(bool expand) { expandVariables = expand; }

    bool hasGroup(const QString& group) const;

    /** The names of the groups, sorted. */
    QStringList groupList() const;

    /** True with the value's text, quoting included and perhaps with blanks around; false if it is missing.
     */
    bool readRawEntry(const QString& group, const QString& key, QString& out) const;

    /** A quoted string. A list of one string reads as that string; a bare word is none. */
    QString readEntry(const QString& group, const QString& key,
                      const QString& defaultValue = QString()) const;

    /** Quoted strings. A single string reads as a list of one; text between strings is skipped. */
    QStringList readListEntry(const QString& group, const QString& key,
                              const QStringList& defaultValue = QStringList()) const;

    /** A decimal number. One in quotes is none. */
    int readNumEntry(const QString& group, const QString& key, int defaultValue = 0) const;
    double readDoubleEntry(const QString& group, const QString& key, double defaultValue = 0) const;

    /** A number, of which 0 is false, or "true" or "false" in any case. Unlike numbers it may be quoted. */
    bool readBoolEntry(const QString& group, const QString& key, bool defaultValue = false) const;

    /** The next level's names of the keys that go on below `key` by at least two levels, each once. */
    QStringList subkeyList(const QString& group, const QString& key) const;

    /** The names of the keys directly below `key`. With an empty `key`, of those without a '/'. */
    QStringList entryList(const QString& group, const QString& key) const;

    /** Sets the text of a value as it stands. The caller sees to its quoting; it must be one line. */
    void writeRawEntry(const QString& group, const QString& key, const QString& value);

    void writeEntry(const QString& group, const QString& key, const QString& value);
    /** UTF-8. There so that a string literal is not taken for a bool. */
    void writeEntry(const QString& group, const QString& key, const char* value);
    void writeEntry(const QString& group, const QString& key, const QStringList& value);
    void writeEntry(const QString& group, const QString& key, int value);
    /** Keeps 6 significant digits. */
    void writeEntry(const QString& group, const QString& key, double value);
    void writeEntry(const QString& group, const QString& key, bool value);

    /** Removes the entry. The store counts as changed also if the group had no such entry. */
    void removeEntry(const QString& group, const QString& key);

    /**
     * Writes the file, and its directory if that is missing. False, with a warning, if that fails. The
     * store still counts as changed afterwards, so that the destructor writes once more.
     */
    bool flush();

protected:
    QString normalizeKey(const QString& key) const;
    QString quoteString(const QString& string) const;
    /** Replaces one quoted string by what it stands for. False, with a warning, for anything else. */
    bool unquoteString(QString& string) const;
    /** Appends what the quoted strings in `raw` stand for. False, with a warning, for a bad quoting. */
    bool unquoteStringList(const QString& raw, QStringList& list) const;
    /** Replaces each "$(NAME)" by the variable's value unless that is empty, and "$$" by "$". */
    void expandEnvironmentVariables(QString& string) const;
    void parse();

private:
    using Group = QMap<QString, QString>;

    const Group* findGroup(const QString& group) const;

    QMap<QString, Group> groups;
    QString fileName;
    bool dirty = false;
    bool expandVariables = false;
};

} // namespace Torvix
