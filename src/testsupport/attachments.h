#pragma once

#include "report/results.h"

#include <QString>

class QImage;

namespace Torvix {

class TestResult;

/**
 * These put something into the folder of the results. A null attachment path without an error means
 * that there is no such folder: nothing is kept then. On failure the reason is in `*error`.
 */
Attachment attachFile(TestResult* result, const QString& path, const QString& description, QString* error);
/** `name` is that of the new file: "expected.png". */
Attachment attachImage(TestResult* result, const QImage& image, const QString& name,
                       const QString& description, QString* error);
Attachment attachText(TestResult* result, const QByteArray& text, const QString& name,
                      const QString& description, QString* error);
/** A file that lies in the folder already. */
Attachment attachmentOf(const QString& path, const QString& description);

} // namespace Torvix
