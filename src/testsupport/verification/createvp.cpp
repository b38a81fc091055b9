#include "testsupport/verification/createvp.h"

#include "interpreter/base/scriptcontext.h"
#include "objectmodel/class.h"
#include "testsupport/objectfunctions.h"
#include "testsupport/reporting.h"
#include "testsupport/screen/screenshots.h"
#include "testsupport/scriptfiles.h"
#include "testsupport/scriptoptions.h"
#include "testsupport/verification/verificationpoint.h"

#include <QDir>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSaveFile>

namespace Torvix {

namespace {

/** What people look at; those that an object does not have are left out. */
constexpr const char* usualProperties[] = {
    "windowTitle", "title", "text",    "plainText",       "currentText", "value",   "checked",
    "date",        "time",  "toolTip", "placeholderText", "enabled",     "visible", "readOnly",
};

QStringList screenshotOptions()
{
    return {QStringLiteral("tolerance"), QStringLiteral("differingPixels"), QStringLiteral("masks")};
}

/** What is to be written about an object. */
struct Aspects
{
    QString name; ///< that finds it
    QStringList properties;
    bool table = false;
    bool screenshot = false;
    QJsonObject screenshotOptions;
};

bool isTable(const SharedPtr<Object>& object)
{
    const Class* type = object->objectClass();
    return !type->methods(QStringLiteral("model")).isEmpty() ||
           (!type->methods(QStringLiteral("rowCount")).isEmpty() &&
            !type->methods(QStringLiteral("columnCount")).isEmpty());
}

Aspects usualAspects(const SharedPtr<Object>& object)
{
    Aspects aspects;
    aspects.table = isTable(object);
    if (aspects.table)
        return aspects;
    for (const char* name : usualProperties)
        if (object->objectClass()->property(QLatin1String(name)))
            aspects.properties += QLatin1String(name);
    return aspects;
}

QJsonValue jsonOf(const ScriptArgument& value)
{
    if (value.isNumber())
        return value.toDouble();
    if (!value.isList())
        return value.toString();
    QJsonArray all;
    for (const SharedPtr<ScriptArgument>& each : value.toList())
        all.append(jsonOf(*each));
    return all;
}

QJsonObject readScreenshotOptions(const ScriptOptions& options)
{
    QJsonObject read;
    const QStringList names = screenshotOptions();
    for (const QString& name : names)
        if (const SharedPtr<ScriptArgument> value = options.value(name.toLatin1().constData()))
            read[name] = jsonOf(*value);
    return read;
}

QStringList texts(const SharedPtr<ScriptArgument>& value)
{
    QStringList all;
    if (value && value->isList())
        for (const SharedPtr<ScriptArgument>& each : value->toList())
            all += each->toString();
    else if (value)
        all += value->toString();
    return all;
}

QByteArray content(const QJsonObject& check)
{
    return QJsonDocument(QJsonObject{{QStringLiteral("checks"), QJsonArray{check}}})
        .toJson(QJsonDocument::Indented);
}

/** The check as it has to be to hold now, by making it against nothing. Empty with an error in the
 *  context. */
QJsonObject describe(ScriptContext* context, const SharedPtr<Object>& object, const Aspects& aspects)
{
    VerificationCheck check;
    check.object = aspects.name;
    for (const QString& name : aspects.properties) {
        if (!object->objectClass()->property(name)) {
            context->setError(QStringLiteral("%1 has no property '%2'").arg(object->className(), name));
            return {};
        }
        check.properties.append({name, ExpectedProperty::Match::Exact, QJsonValue::Undefined});
    }
    if (aspects.table)
        check.table = ExpectedTable();
    const VerificationFinding found = verifyObject(check, object);
    if (found.error.isEmpty())
        return found.seen;
    context->setError(found.error);
    return {};
}

bool writeFile(ScriptContext* context, const QString& path, const QByteArray& text)
{
    QSaveFile file(path);
    QDir().mkpath(QFileInfo(path).absolutePath());
    if (file.open(QIODevice::WriteOnly) && file.write(text) == text.size() && file.commit())
        return true;
    context->setError(QStringLiteral("Cannot write file '%1': %2").arg(path, file.errorString()));
    return false;
}

/** The path, or a null string with an error in the context. */
QString create(ScriptContext* context, const SharedPtr<Object>& object, const QString& name,
               const Aspects& aspects)
{
    QStringList candidates;
    const QString existing = findVerificationPoint(name, &candidates);
    const QString path = existing.isEmpty() ? candidates.last() : existing;
    QJsonObject check = describe(context, object, aspects);
    if (check.isEmpty())
        return {};
    const QString picture = QFileInfo(path).completeBaseName() + QLatin1String(".png");
    if (aspects.screenshot) {
        QJsonObject screenshot = aspects.screenshotOptions;
        screenshot[QLatin1String("file")] = picture;
        check[QLatin1String("screenshot")] = screenshot;
    }
    QString error;
    const QByteArray text = content(check);
    if (!VerificationPoint::parse(text, path, &error)) {
        context->setError(error);
        return {};
    }
    if (aspects.screenshot) {
        const QImage image = grabObject(object, &error);
        if (image.isNull() || !savePng(image, QFileInfo(path).dir().filePath(picture), &error)) {
            context->setError(error);
            return {};
        }
    }
    return writeFile(context, path, text) ? path : QString();
}

/** A name that the script gives is kept: one that is made from the object may well contain what the
 *  verification point is about, such as a text. */
QString nameOf(const ScriptArgument& given, const SharedPtr<Object>& object)
{
    return given.toObject() ? object->name().orNothing() : given.toRealName();
}

void createFor(ScriptContext* context, const char* function, const Aspects* wanted)
{
    const ScriptContext::Arguments given = context->arguments();
    const SharedPtr<Object> object = objectArgument(context, 0, function);
    if (!object)
        return;
    Aspects aspects = wanted ? *wanted : usualAspects(object);
    aspects.name = nameOf(*given[0], object);
    const QString path = create(context, object, given[1]->toString(), aspects);
    if (!path.isNull())
        context->setResult(context->toArgument(path));
}

} // namespace

QString findVerificationPoint(const QString& name, QStringList* candidates)
{
    const QDir folder(QDir(testCaseFolder()).filePath(QStringLiteral("verificationPoints")));
    *candidates = QStringList{folder.filePath(name), folder.filePath(name + QLatin1String(".json"))};
    for (const QString& candidate : *candidates)
        if (QFileInfo(candidate).isFile())
            return candidate;
    return {};
}

QString createUsualVP(ScriptContext* context, const ScriptArgument& given, const SharedPtr<Object>& object,
                      const QString& name)
{
    Aspects aspects = usualAspects(object);
    aspects.name = nameOf(given, object);
    return create(context, object, name, aspects);
}

void createVP(ScriptContext* context)
{
    ScriptOptions options;
    if (!requireArguments(context, 2, 3, "createVP(object, name[, options])") ||
        !options.read(
            context, 2,
            QStringList{QStringLiteral("properties"), QStringLiteral("table"), QStringLiteral("screenshot")} +
                screenshotOptions()))
        return;
    const Aspects aspects{{},
                          texts(options.value("properties")),
                          options.flag("table"),
                          options.flag("screenshot"),
                          readScreenshotOptions(options)};
    const bool isUsual = aspects.properties.isEmpty() && !aspects.table && !aspects.screenshot;
    createFor(context, "createVP", isUsual ? nullptr : &aspects);
}

void createVisualVP(ScriptContext* context)
{
    ScriptOptions options;
    if (!requireArguments(context, 2, 3, "createVisualVP(object, name[, options])") ||
        !options.read(context, 2, screenshotOptions()))
        return;
    const Aspects aspects{{}, {}, false, true, readScreenshotOptions(options)};
    createFor(context, "createVisualVP", &aspects);
}

} // namespace Torvix
