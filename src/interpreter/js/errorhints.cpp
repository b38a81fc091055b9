#include "interpreter/js/errorhints.h"

#include "objectmodel/inspector.h"

#include <QRegularExpression>
#include <QSet>

namespace Torvix {

namespace {

/** Global functions that scripts have from the application. */
bool isAction(const QString& name)
{
    static const QSet<QString> actions = {
        QStringLiteral("activateItem"),    QStringLiteral("clickButton"),  QStringLiteral("clickItem"),
        QStringLiteral("closeWindow"),     QStringLiteral("collapseItem"), QStringLiteral("doubleClick"),
        QStringLiteral("doubleClickItem"), QStringLiteral("expandItem"),   QStringLiteral("mouseClick"),
        QStringLiteral("mouseDrag"),       QStringLiteral("mouseWheel"),   QStringLiteral("nativeType"),
        QStringLiteral("scrollTo"),        QStringLiteral("setFocus"),     QStringLiteral("type"),
    };
    return actions.contains(name);
}

/** Qt's classes, constants and namespaces: QPoint, QtDebugMsg, Qt, qApp. */
bool isOfQt(const QString& name)
{
    static const QRegularExpression pattern(QStringLiteral("^(Q[A-Z]\\w*|Qt\\w*|qApp)$"));
    return pattern.match(name).hasMatch();
}

QString hintForVariable(const QString& name)
{
    if (Inspector::self()->globalClass() || !(isAction(name) || isOfQt(name)))
        return QString();
    return QStringLiteral(". It is there while an application runs: call startApplication() or "
                          "attachToApplication() first");
}

} // namespace

QString hintForError(const QString& message)
{
    static const QRegularExpression variable(QStringLiteral("^Can't find variable: (\\w+)$"));
    static const QRegularExpression console(QStringLiteral("^console\\.\\w+ is not a function\\. \\(.*\\)$"),
                                            QRegularExpression::DotMatchesEverythingOption);
    if (message.startsWith(QLatin1String("Can't find variable: ")))
        return hintForVariable(variable.match(message).captured(1));
    if (message.startsWith(QLatin1String("console.")) && console.match(message).hasMatch())
        return QStringLiteral(
            ". console has only assert(): test.log() writes into the report, print() to the "
            "terminal");
    return QString();
}

} // namespace Torvix
