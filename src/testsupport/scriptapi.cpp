#include "testsupport/scriptapi.h"

#include "interpreter/base/interpreter.h"
#include "interpreter/base/scriptcontext.h"
#include "objectmodel/inspector.h"
#include "testsupport/objectfunctions.h"
#include "testsupport/reporting.h"
#include "testsupport/screen/screensearch.h"
#include "testsupport/screen/screenshots.h"
#include "testsupport/scriptfiles.h"
#include "testsupport/testsettings.h"
#include "testsupport/verification/createvp.h"
#include "testsupport/waiting.h"

#include <QDir>
#include <QElapsedTimer>

namespace Torvix {

namespace {

constexpr int highlightMs = 1000;
constexpr double serviceIntervalMs = 50;

/** Seconds; the runner's connections have their turn meanwhile. */
void snooze(ScriptContext* context)
{
    if (!requireArguments(context, 1, 1, "snooze(seconds)"))
        return;
    const SharedPtr<ScriptArgument> seconds = context->argument(0);
    if (!seconds->isNumber() || !(seconds->toDouble() >= 0)) {
        context->setError(
            QStringLiteral("snooze() needs a number of seconds from 0, not '%1'").arg(seconds->toString()));
        return;
    }
    const double endMs = seconds->toDouble() * 1000;
    QElapsedTimer timer;
    timer.start();
    for (double leftMs = endMs; leftMs > 0; leftMs = endMs - double(timer.nsecsElapsed()) / 1e6)
        if (!waitMeanwhile(qMin(leftMs, serviceIntervalMs)))
            break;
    failIfInterrupted(context);
}

/** An object of the application: whether it is a null pointer; undefined and null are null too. */
void isNull(ScriptContext* context)
{
    if (!requireArguments(context, 1, 1, "isNull(object)"))
        return;
    const SharedPtr<ScriptArgument> argument = context->argument(0);
    const SharedPtr<Object> object = argument->toObject();
    context->setResult(context->toArgument(object ? object->isNull() : isNothing(*argument)));
}

void typeName(ScriptContext* context)
{
    if (!requireArguments(context, 1, 1, "typeName(value)"))
        return;
    const SharedPtr<ScriptArgument> argument = context->argument(0);
    // A number of the script is an object for the model only when it crosses to the application.
    const SharedPtr<Object> object = argument->isObject() ? argument->toObject() : nullptr;
    context->setResult(context->toArgument(object ? object->className() : argument->typeName()));
}

void findFile(ScriptContext* context)
{
    if (!requireArguments(context, 2, 2, "findFile(kind, name)"))
        return;
    const QString kind = context->argument(0)->toString();
    if (kind != QLatin1String("testdata") && kind != QLatin1String("scripts")) {
        context->setError(QStringLiteral("findFile() finds 'testdata' and 'scripts', not '%1'").arg(kind));
        return;
    }
    QString places;
    const QString path = findTestSuiteFile(context->argument(1)->toString(), kind, &places);
    if (path.isEmpty())
        context->setError(
            QStringLiteral("There is no file '%1' in %2").arg(context->argument(1)->toString(), places));
    else
        context->setResult(context->toArgument(path));
}

void saveImage(ScriptContext* context, const QImage& image, const SharedPtr<ScriptArgument>& file,
               QString error)
{
    const QString path = QDir::current().absoluteFilePath(file->toString());
    if (error.isEmpty() && savePng(image, path, &error))
        context->setResult(context->toArgument(path));
    else
        context->setError(error);
}

void saveDesktopScreenshot(ScriptContext* context)
{
    if (!requireArguments(context, 1, 1, "saveDesktopScreenshot(file)"))
        return;
    QString error;
    const QImage image = grabDesktop(&error);
    saveImage(context, image, context->argument(0), error);
}

void saveObjectSnapshot(ScriptContext* context)
{
    if (!requireArguments(context, 2, 2, "saveObjectSnapshot(object, file)"))
        return;
    const SharedPtr<Object> object = objectArgument(context, 0, "saveObjectSnapshot");
    if (!object)
        return;
    QString error;
    const QImage image = grabObject(object, &error);
    saveImage(context, image, context->argument(1), error);
}

void highlightObject(ScriptContext* context)
{
    if (!requireArguments(context, 1, 2, "highlightObject(object[, milliseconds])"))
        return;
    const SharedPtr<ScriptArgument> duration = optionalArgument(*context, 1);
    if (duration && (!duration->isInteger() || duration->toInteger() < 0)) {
        context->setError(QStringLiteral("The duration has to be a whole number of milliseconds from 0"));
        return;
    }
    const SharedPtr<Object> object = objectArgument(context, 0, "highlightObject");
    if (!object)
        return;
    const Result<void> shown =
        Inspector::self()->highlight(object, duration ? duration->toInteger() : highlightMs);
    if (!shown)
        context->setError(shown.error());
}

ScriptArgument::Map placeMap(const ScriptContext& context, const QRect& place)
{
    return {{QStringLiteral("x"), context.toArgument(place.x())},
            {QStringLiteral("y"), context.toArgument(place.y())},
            {QStringLiteral("width"), context.toArgument(place.width())},
            {QStringLiteral("height"), context.toArgument(place.height())}};
}

/** Runs the search; the result is the first place, or null when not being there is no error. */
void findPlace(ScriptContext* context, ScreenSearch* search, const QString& what, bool mustBeThere)
{
    const QVector<QRect> places = search->run(context, true);
    if (!context->errorMessage().isEmpty())
        return;
    if (!places.isEmpty())
        context->setResult(context->toArgument(placeMap(*context, places.first())));
    else if (mustBeThere)
        context->setError(QStringLiteral("%1 did not appear on the screen").arg(what));
    else
        context->setResult(context->nullArgument());
}

void searchImage(ScriptContext* context, const char* usage, bool waits)
{
    ScreenSearch search;
    const QString file = context->argumentCount() > 0 ? context->argument(0)->toString() : QString();
    if (requireArguments(context, 1, 2, usage) &&
        search.read(context, 1, imageSearchOptions(), waits ? defaultWaitTimeoutMs() : 0) &&
        search.forImage(context, file))
        findPlace(context, &search, QStringLiteral("Image '%1'").arg(file), waits);
}

void searchText(ScriptContext* context, const char* usage, bool waits)
{
    ScreenSearch search;
    const QString text = context->argumentCount() > 0 ? context->argument(0)->toString() : QString();
    if (!requireArguments(context, 1, 2, usage) ||
        !search.read(context, 1, textSearchOptions(), waits ? defaultWaitTimeoutMs() : 0))
        return;
    search.forText(text);
    findPlace(context, &search, QStringLiteral("Text '%1'").arg(text), waits);
}

void findImageOnScreen(ScriptContext* context)
{
    searchImage(context, "findImage(file[, options])", false);
}

void waitForImage(ScriptContext* context)
{
    searchImage(context, "waitForImage(file[, options])", true);
}

void findOcrText(ScriptContext* context)
{
    searchText(context, "findOcrText(text[, options])", false);
}

void waitForOcrText(ScriptContext* context)
{
    searchText(context, "waitForOcrText(text[, options])", true);
}

/** False with an error in the context. */
bool readAllText(ScriptContext* context, const char* usage, ScreenSearch* search)
{
    if (!requireArguments(context, 0, 1, usage) || !search->read(context, 0, {QStringLiteral("language")}, 0))
        return false;
    search->forText(QString());
    search->run(context, false);
    return context->errorMessage().isEmpty();
}

void getOcrText(ScriptContext* context)
{
    ScreenSearch search;
    if (readAllText(context, "getOcrText([options])", &search))
        context->setResult(context->toArgument(search.seenText()));
}

/** A list of the lines, each with its place. */
void getAllOcrText(ScriptContext* context)
{
    ScreenSearch search;
    if (!readAllText(context, "getAllOcrText([options])", &search))
        return;
    ScriptArgument::List lines;
    for (const RecognizedLine& line : search.seenLines()) {
        ScriptArgument::Map entry = placeMap(*context, line.place);
        entry[QStringLiteral("text")] = context->toArgument(line.text);
        lines.push_back(context->toArgument(entry));
    }
    context->setResult(context->toArgument(lines));
}

/** A list of all places; an empty one where there is none. */
void findAllOcrText(ScriptContext* context)
{
    ScreenSearch search;
    const QString text = context->argumentCount() > 0 ? context->argument(0)->toString() : QString();
    if (!requireArguments(context, 1, 2, "findAllOcrText(text[, options])") ||
        !search.read(context, 1, textSearchOptions(), 0))
        return;
    search.forText(text);
    const QVector<QRect> places = search.run(context, true);
    if (!context->errorMessage().isEmpty())
        return;
    ScriptArgument::List all;
    for (const QRect& place : places)
        all.push_back(context->toArgument(placeMap(*context, place)));
    context->setResult(context->toArgument(all));
}

struct ApiRow
{
    const char* name;
    NativeScriptFunction function;
    QStringList mandatory;
    QStringList optional;
    const char* help;
};

template <ScriptContext::Function function>
bool native(ScriptContext* context)
{
    function(context);
    return context->errorMessage().isEmpty();
}

void install(Interpreter* interpreter)
{
    static const ApiRow rows[] = {
        {"snooze", native<snooze>, {"seconds"}, {}, "Waits."},
        {"isNull", native<isNull>, {"object"}, {}, "Whether it is a null pointer, null or undefined."},
        {"typeName", native<typeName>, {"value"}, {}, "The name of its type."},
        {"findFile",
         native<findFile>,
         {"kind", "name"},
         {},
         "The path of a file of 'testdata' or 'scripts'."},
        {"saveDesktopScreenshot", native<saveDesktopScreenshot>, {"file"}, {}, "Writes a PNG file."},
        {"saveObjectSnapshot", native<saveObjectSnapshot>, {"object", "file"}, {}, "Writes a PNG file."},
        {"highlightObject", native<highlightObject>, {"object"}, {"milliseconds"}, "Frames an object."},
        {"findImage", native<findImageOnScreen>, {"file"}, {"options"}, "Where a picture is, or null."},
        {"waitForImage",
         native<waitForImage>,
         {"file"},
         {"options"},
         "Where a picture is, once it is there."},
        {"getOcrText", native<getOcrText>, {}, {"options"}, "All text on the screen."},
        {"getAllOcrText",
         native<getAllOcrText>,
         {},
         {"options"},
         "All lines on the screen, each with its place."},
        {"findAllOcrText", native<findAllOcrText>, {"text"}, {"options"}, "Everywhere that a text is."},
        {"findOcrText", native<findOcrText>, {"text"}, {"options"}, "Where a text is, or null."},
        {"waitForOcrText",
         native<waitForOcrText>,
         {"text"},
         {"options"},
         "Where a text is, once it is there."},
        {"createVP",
         native<createVP>,
         {"object", "name"},
         {"options"},
         "Writes a verification point of what an object is like now."},
        {"createVisualVP",
         native<createVisualVP>,
         {"object", "name"},
         {"options"},
         "Writes a verification point of what an object looks like now."},
    };
    for (const ApiRow& row : rows)
        interpreter->addGlobalFunction(QLatin1String(row.name), row.function, row.mandatory, row.optional,
                                       QLatin1String(row.help));
    interpreter->addNamespace(QStringLiteral("testSettings"), testSettingsNamespace());
}

} // namespace

void registerScriptApi()
{
    Interpreter::registerNativeAPI(install);
}

} // namespace Torvix
