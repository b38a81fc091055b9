#pragma once

#include "shared/testdata/testdata.h"

#include <QFile>
#include <QStringList>
#include <QTemporaryDir>
#include <gtest/gtest.h>

using Table = Torvix::SharedPtr<Torvix::TestDataSet>;

inline QString fixture(const char* name)
{
    return QStringLiteral(TORVIX_TEST_SOURCE_DIR "/fixtures/") + QString::fromUtf8(name);
}

/** A record as `cell|cell`, and "(none)" for null. */
inline std::string shown(const Torvix::TestDataRecord* record)
{
    if (!record)
        return "(none)";
    QStringList cells;
    for (int i = 0; i < record->count(); ++i)
        cells += record->valueAsString(i);
    return cells.join(QLatin1Char('|')).toStdString();
}

/** The header and the records, a line each. */
inline std::string shown(const Table& table)
{
    if (!table)
        return "(null)";
    std::string lines = shown(table->header()) + "\n";
    for (int i = 0; i < table->count(); ++i)
        lines += shown(table->record(i)) + "\n";
    return lines;
}

/** Files in a folder of their own, which goes with the test. */
class Files
{
public:
    QString path(const char* name) const { return m_folder.filePath(QString::fromUtf8(name)); }

    QString write(const char* name, const QByteArray& content) const
    {
        QFile file(path(name));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(content);
        return file.fileName();
    }

private:
    QTemporaryDir m_folder;
};

/** What was written to the standard streams and logged as warnings while it lived. */
class Captured
{
public:
    Captured()
    {
        s_warnings = &m_warnings;
        m_previous = qInstallMessageHandler([](QtMsgType type, const QMessageLogContext&,
                                               const QString& text) {
            s_warnings->append((type == QtWarningMsg ? QString() : QStringLiteral("not a warning: ")) + text);
        });
        testing::internal::CaptureStdout();
        testing::internal::CaptureStderr();
    }
    ~Captured()
    {
        finish();
        qInstallMessageHandler(m_previous);
    }

    std::string warnings() const { return m_warnings.join(QLatin1Char('\n')).toStdString(); }
    std::string out() { return finish(), m_out; }
    std::string err() { return finish(), m_err; }

private:
    void finish()
    {
        if (m_finished)
            return;
        m_finished = true;
        m_out = testing::internal::GetCapturedStdout();
        m_err = testing::internal::GetCapturedStderr();
    }

    static inline QStringList* s_warnings = nullptr;
    QStringList m_warnings;
    QtMessageHandler m_previous;
    bool m_finished = false;
    std::string m_out;
    std::string m_err;
};
