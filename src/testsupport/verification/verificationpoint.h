#pragma once

#include "objectmodel/object.h"
#include "shared/base/sharedptr.h"
#include "testsupport/export.h"
#include "testsupport/screen/imagesearch.h"

#include <QImage>
#include <QJsonObject>
#include <QJsonValue>
#include <QRect>
#include <QString>
#include <QVector>

#include <optional>

namespace Torvix {

/** One property and what it has to be. */
struct ExpectedProperty
{
    enum class Match { Exact, Wildcard, RegularExpression };

    QString name;
    Match match = Match::Exact;
    QJsonValue value; ///< with Exact; otherwise the pattern as a string
};

/** The texts of an item view or model; a null cell is not looked at. */
struct ExpectedTable
{
    QVector<QVector<QJsonValue>> rows;
};

struct ExpectedScreenshot
{
    QString file; ///< absolute
    ImageTolerance tolerance;
    QVector<QRect> masks;
};

/** What one object has to be like. */
struct VerificationCheck
{
    QString object; ///< a name; empty for the object that the script gives
    QVector<ExpectedProperty> properties;
    std::optional<ExpectedTable> table;
    std::optional<ExpectedScreenshot> screenshot;
    QJsonObject json; ///< all of it as it stands in the file
};

/** A file of expectations; docs/verification-points.md describes it. */
struct VerificationPoint
{
    QVector<VerificationCheck> checks;

    /** Nothing, with file, line and reason in `*error`, for a file that cannot be read. */
    TORVIXTEST_EXPORT static std::optional<VerificationPoint> read(const QString& path, QString* error);
    /** The same for the content of a file that may not be there yet; the path is for messages and the
     *  places of pictures. */
    static std::optional<VerificationPoint> parse(const QByteArray& content, const QString& path,
                                                  QString* error);
};

/** What differs from a check, and what was seen. */
struct VerificationFinding
{
    QStringList differences;
    /** The check as it would have to be written to hold: only what differs is not as it was. */
    QJsonObject seen;
    QImage expectedImage; ///< these three are null unless the screenshots differ
    QImage seenImage;
    QImage difference;
    QString error; ///< why the check could not be made

    bool holds() const { return error.isEmpty() && differences.isEmpty(); }
};

TORVIXTEST_EXPORT VerificationFinding verifyObject(const VerificationCheck& check,
                                                   const SharedPtr<Object>& object);

} // namespace Torvix
