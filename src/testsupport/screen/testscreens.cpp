// Checks of what the screen shows.

#include "interpreter/base/scriptcontext.h"
#include "testsupport/attachments.h"
#include "testsupport/objectfunctions.h"
#include "testsupport/reporting.h"
#include "testsupport/screen/screensearch.h"
#include "testsupport/testfunctions.h"

namespace Torvix {

namespace {

QString placesText(const QVector<QRect>& places)
{
    QStringList texts;
    for (const QRect& place : places)
        texts += QStringLiteral("x %1, y %2, width %3, height %4")
                     .arg(place.x())
                     .arg(place.y())
                     .arg(place.width())
                     .arg(place.height());
    return texts.join(QLatin1Char('\n'));
}

/** What was looked at, and for; kept with a check that failed. */
QVector<Attachment> keepPictures(ScriptContext* context, const ScreenSearch& search, QString* error)
{
    QVector<Attachment> kept{attachImage(resultSink(*context), search.view().image,
                                         QStringLiteral("screen.png"), QStringLiteral("what was looked at"),
                                         error)};
    if (!search.wanted().isNull())
        kept.append(attachImage(resultSink(*context), search.wanted(), QStringLiteral("wanted.png"),
                                QStringLiteral("what was searched for"), error));
    if (kept.first().path.isEmpty())
        kept.clear();
    return kept;
}

void checkScreen(ScriptContext* context, ScreenSearch* search, const QString& what, bool present)
{
    const QVector<QRect> places = search->run(context, present);
    if (!context->errorMessage().isEmpty())
        return;
    const bool passed = places.isEmpty() != present;
    QString finding = places.isEmpty() ? QStringLiteral("%1 is not there").arg(what)
                                       : QStringLiteral("%1 is there:\n%2").arg(what, placesText(places));
    if (!passed && !search->seenText().isEmpty())
        finding += QLatin1String("\nThe text that was read:\n") + search->seenText();
    QString error;
    const QVector<Attachment> pictures =
        passed ? QVector<Attachment>() : keepPictures(context, *search, &error);
    if (!error.isEmpty()) {
        context->setError(error);
        return;
    }
    ResultTexts texts{search->options().text("message"), search->options().text("detail")};
    if (texts.message.isEmpty())
        texts.message = what + (present ? QLatin1String(" present") : QLatin1String(" not present"));
    reportCheck(context, Expectation::Pass, passed, texts, finding, pictures);
}

QStringList withTexts(QStringList options)
{
    return options << QStringLiteral("message") << QStringLiteral("detail");
}

void checkImage(ScriptContext* context, const char* usage, bool present)
{
    ScreenSearch search;
    if (!requireArguments(context, 1, 2, usage) ||
        !search.read(context, 1, withTexts(imageSearchOptions()), present ? defaultWaitTimeoutMs() : 0))
        return;
    const QString file = context->argument(0)->toString();
    if (search.forImage(context, file))
        checkScreen(context, &search, QStringLiteral("Image '%1'").arg(file), present);
}

void checkText(ScriptContext* context, const char* usage, bool present)
{
    ScreenSearch search;
    if (!requireArguments(context, 1, 2, usage) ||
        !search.read(context, 1, withTexts(textSearchOptions()), present ? defaultWaitTimeoutMs() : 0))
        return;
    const QString text = context->argument(0)->toString();
    if (text.simplified().isEmpty()) {
        context->setError(QStringLiteral("There is no text to look for"));
        return;
    }
    search.forText(text);
    checkScreen(context, &search, QStringLiteral("Text '%1'").arg(text), present);
}

} // namespace

void testImagePresent(ScriptContext* context)
{
    checkImage(context, "test.imagePresent(file[, options])", true);
}

void testImageNotPresent(ScriptContext* context)
{
    checkImage(context, "test.imageNotPresent(file[, options])", false);
}

void testOcrTextPresent(ScriptContext* context)
{
    checkText(context, "test.ocrTextPresent(text[, options])", true);
}

void testOcrTextNotPresent(ScriptContext* context)
{
    checkText(context, "test.ocrTextNotPresent(text[, options])", false);
}

} // namespace Torvix
