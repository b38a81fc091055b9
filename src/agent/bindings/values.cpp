#include "agent/bindings/bindings.h"
#include "agent/reflection/bind.h"

#include <QAction>
#include <QBrush>
#include <QColor>
#include <QDateTime>
#include <QFont>
#include <QIcon>
#include <QKeySequence>
#include <QModelIndex>
#include <QPixmap>
#include <QUrl>
#include <QWidget>

namespace Torvix::Agent {

static void bindDates(Registry& registry)
{
    Bind<QDate>(registry)
        .value()
        .method("year", qOverload<>(&QDate::year))
        .method("month", qOverload<>(&QDate::month))
        .method("day", qOverload<>(&QDate::day))
        .method("dayOfWeek", qOverload<>(&QDate::dayOfWeek))
        .method("dayOfYear", qOverload<>(&QDate::dayOfYear))
        .method("daysInMonth", qOverload<>(&QDate::daysInMonth))
        .method("isValid", qOverload<>(&QDate::isValid))
        .method("addDays", &QDate::addDays, "days")
        .method("addMonths", qOverload<int>(&QDate::addMonths), "months")
        .method("addYears", qOverload<int>(&QDate::addYears), "years")
        .method("daysTo", &QDate::daysTo, "other")
        .method("toString", qOverload<Qt::DateFormat>(&QDate::toString), "format", defaults(Qt::TextDate))
        .method("toString", qOverload<const QString&>(&QDate::toString), "format")
        .function("currentDate", &QDate::currentDate)
        .function(
            "fromString",
            +[](const QString& text, const QString& format) { return QDate::fromString(text, format); },
            "text, format")
        .constructor<>()
        .constructor<int, int, int>("year, month, day");
    Bind<QTime>(registry)
        .value()
        .method("hour", &QTime::hour)
        .method("minute", &QTime::minute)
        .method("second", &QTime::second)
        .method("msec", &QTime::msec)
        .method("isValid", qOverload<>(&QTime::isValid))
        .method("addSecs", &QTime::addSecs, "seconds")
        .method("addMSecs", &QTime::addMSecs, "milliseconds")
        .method("secsTo", &QTime::secsTo, "other")
        .method("msecsTo", &QTime::msecsTo, "other")
        .method("toString", qOverload<Qt::DateFormat>(&QTime::toString), "format", defaults(Qt::TextDate))
        .method("toString", qOverload<const QString&>(&QTime::toString), "format")
        .function("currentTime", &QTime::currentTime)
        .constructor<>()
        .constructor<int, int, int, int>("hour, minute, second, msec", defaults(0, 0));
    Bind<QDateTime>(registry)
        .value()
        .method("date", &QDateTime::date)
        .method("time", &QDateTime::time)
        .method("setDate", &QDateTime::setDate, "date")
        .method("setTime", &QDateTime::setTime, "time")
        .method("isValid", &QDateTime::isValid)
        .method("addDays", &QDateTime::addDays, "days")
        .method("addSecs", &QDateTime::addSecs, "seconds")
        .method("toMSecsSinceEpoch", &QDateTime::toMSecsSinceEpoch)
        .method("toUTC", &QDateTime::toUTC)
        .method("toLocalTime", &QDateTime::toLocalTime)
        .method("toString", qOverload<Qt::DateFormat>(&QDateTime::toString), "format", defaults(Qt::TextDate))
        .method("toString", qOverload<const QString&>(&QDateTime::toString), "format")
        .function("currentDateTime", &QDateTime::currentDateTime)
        .constructor<>()
        .constructor<const QDate&, const QTime&>("date, time");
}

static void bindPaintValues(Registry& registry)
{
    Bind<QColor>(registry)
        .value()
        .property("red", &QColor::red, &QColor::setRed)
        .property("green", &QColor::green, &QColor::setGreen)
        .property("blue", &QColor::blue, &QColor::setBlue)
        .property("alpha", &QColor::alpha, &QColor::setAlpha)
        .property("hue", &QColor::hue)
        .property("saturation", &QColor::saturation)
        .property("value", &QColor::value)
        .property("lightness", &QColor::lightness)
        .method("name", qOverload<>(&QColor::name))
        .method("isValid", &QColor::isValid)
        .method("rgb", &QColor::rgb)
        .method("lighter", &QColor::lighter, "factor", defaults(150))
        .method("darker", &QColor::darker, "factor", defaults(200))
        .constructor<>()
        .constructor<int, int, int, int>("red, green, blue, alpha", defaults(255))
        .constructor<const QString&>("name");
    Bind<QFont>(registry)
        .value()
        .method("family", &QFont::family)
        .method("setFamily", &QFont::setFamily, "family")
        .method("pointSize", &QFont::pointSize)
        .method("setPointSize", &QFont::setPointSize, "points")
        .method("pixelSize", &QFont::pixelSize)
        .method("weight", &QFont::weight)
        .method("bold", &QFont::bold)
        .method("setBold", &QFont::setBold, "on")
        .method("italic", &QFont::italic)
        .method("setItalic", &QFont::setItalic, "on")
        .method("underline", &QFont::underline)
        .method("setUnderline", &QFont::setUnderline, "on")
        .method("strikeOut", &QFont::strikeOut)
        .method("toString", &QFont::toString)
        .constructor<>()
        .constructor<const QString&, int, int, bool>("family, pointSize, weight, italic",
                                                     defaults(-1, -1, false));
    Bind<QBrush>(registry)
        .value()
        .method("color", &QBrush::color)
        .method("style", &QBrush::style)
        .constructor<>()
        .constructor<const QColor&>("color");
    Bind<QIcon>(registry)
        .value()
        .method("isNull", &QIcon::isNull)
        .method("name", &QIcon::name)
        .constructor<>();
    Bind<QPixmap>(registry)
        .value()
        .method("isNull", &QPixmap::isNull)
        .method("width", &QPixmap::width)
        .method("height", &QPixmap::height)
        .method("size", &QPixmap::size)
        .constructor<>();
}

/** Lists that methods of applications return; a type must be registered before Qt can make one. */
static void registerLists()
{
    qRegisterMetaType<QList<int>>("QList<int>");
    qRegisterMetaType<QVector<int>>("QVector<int>");
    qRegisterMetaType<QList<double>>("QList<double>");
    qRegisterMetaType<QVector<double>>("QVector<double>");
    qRegisterMetaType<QVector<QString>>("QVector<QString>");
    qRegisterMetaType<QList<QPoint>>("QList<QPoint>");
    qRegisterMetaType<QVector<QPoint>>("QVector<QPoint>");
    qRegisterMetaType<QList<QObject*>>("QList<QObject*>");
    qRegisterMetaType<QList<QWidget*>>("QList<QWidget*>");
    qRegisterMetaType<QList<QAction*>>("QList<QAction*>");
    qRegisterMetaType<QModelIndexList>("QModelIndexList");
}

void bindValues(Registry& registry)
{
    registerLists();
    bindDates(registry);
    bindPaintValues(registry);
    Bind<QKeySequence>(registry)
        .value()
        .method("count", &QKeySequence::count)
        .method("isEmpty", &QKeySequence::isEmpty)
        .method("toString", &QKeySequence::toString, "format", defaults(QKeySequence::PortableText))
        .constructor<>()
        .extension(
            "matches",
            +[](QKeySequence& keys, const QKeySequence& other) {
                return keys.matches(other) == QKeySequence::ExactMatch;
            },
            "other")
        .constructor<int>("key")
        .constructor<const QString&>("keys");
    Bind<QUrl>(registry)
        .value()
        .method("host", &QUrl::host, "options",
                defaults(QUrl::ComponentFormattingOptions(QUrl::FullyDecoded)))
        .method("path", &QUrl::path, "options",
                defaults(QUrl::ComponentFormattingOptions(QUrl::FullyDecoded)))
        .method("port", &QUrl::port, "defaultPort", defaults(-1))
        .method("scheme", &QUrl::scheme)
        .method("isValid", &QUrl::isValid)
        .method("isLocalFile", &QUrl::isLocalFile)
        .method("toLocalFile", &QUrl::toLocalFile)
        .extension(
            "toString", +[](QUrl& url) { return url.toString(); })
        .constructor<>()
        .constructor<const QString&>("url");
}

} // namespace Torvix::Agent
