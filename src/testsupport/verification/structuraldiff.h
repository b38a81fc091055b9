#pragma once

#include "testsupport/export.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

namespace Torvix {

/** What a comparison of two documents found. */
struct StructuralDifference
{
    /** Why one of them cannot be read, with its line; empty when both can. */
    QString error;
    /** "/order/item[2]/@price: expected '3', found '4'"; at most maxShown, then their number. */
    QStringList differences;

    static constexpr int maxShown = 20;
};

/**
 * XML 1.0 documents. The order of attributes, comments, processing instructions, the form of empty
 * elements and white space between elements make no difference; the order of elements does.
 * Names are compared with their namespace.
 */
TORVIXTEST_EXPORT StructuralDifference compareXml(const QByteArray& expected, const QByteArray& actual);

/** JSON (RFC 8259). The order of members makes no difference; that of elements does. */
TORVIXTEST_EXPORT StructuralDifference compareJson(const QByteArray& expected, const QByteArray& actual);

} // namespace Torvix
