#include "testsupport/objectfunctions.h"

#include "interpreter/base/interpreter.h"
#include "interpreter/base/runnerinterface.h"
#include "interpreter/base/scriptcontext.h"
#include "objectmodel/inspector.h"
#include "testsupport/reporting.h"
#include "testsupport/testresult.h"

#include <QDir>
#include <QSaveFile>

namespace Torvix {

namespace {

int waitTimeoutMs = 20'000;
/** A day; more is for ever. */
constexpr double longestTimeoutMs = 24.0 * 60 * 60 * 1000;

/** False with an error in the context for a value that a script gives by mistake: a name that it has
 *  misspelt, say, is undefined. */
bool nameArgument(ScriptContext* context, int index, const char* function, QString* name)
{
    const SharedPtr<ScriptArgument> argument = context->argument(index);
    const QString type = argument->typeName();
    if (type == QLatin1String("Undefined") || type == QLatin1String("Null")) {
        context->setError(QStringLiteral("%1() needs an object or the name of one, not %2")
                              .arg(QLatin1String(function), argument->toString()));
        return false;
    }
    *name = argument->isMap() ? argument->toRealName() : argument->toString();
    return true;
}

/** Lets the runner record what is there instead, while it still is. */
void failLookup(ScriptContext* context, const QString& name, const char* function, const QString& error)
{
    Interpreter* interpreter = Interpreter::self();
    QString ignored;
    if (interpreter && interpreter->runnerInterface())
        interpreter->runnerInterface()->reportFailedLookup(name, QLatin1String(function), &ignored);
    context->setError(error);
}

/** The value as the function's result, in whatever form it is to have there, or the failure as its error. */
template <class T, class ToArgument>
void setOutcome(ScriptContext* context, const Result<T>& outcome, const ToArgument& toArgument)
{
    if (outcome)
        context->setResult(toArgument(*outcome));
    else
        context->setError(outcome.error());
}

/** False with an error in the context when it is there and no number from 0. */
bool timeoutArgument(ScriptContext* context, int index, int* timeoutMs)
{
    *timeoutMs = waitTimeoutMs;
    const SharedPtr<ScriptArgument> argument = context->argument(index);
    if (!argument)
        return true;
    if (argument->isNumber() && argument->toDouble() >= 0) {
        *timeoutMs = int(qMin(argument->toDouble(), longestTimeoutMs));
        return true;
    }
    context->setError(
        QStringLiteral("The timeout has to be a number of milliseconds, not '%1'").arg(argument->toString()));
    return false;
}

/** The first argument once it meets the conditions; null with an error in the context. */
SharedPtr<Object> waitForArgument(ScriptContext* context, const char* function, int timeoutMs,
                                  quint32 conditions)
{
    Inspector* inspector = Inspector::self();
    Inspector::WaitResult found;
    QString name;
    if (const SharedPtr<Object> given = context->argument(0)->toObject())
        found = inspector->waitForObject(given, timeoutMs, conditions);
    else if (nameArgument(context, 0, function, &name))
        found = inspector->waitForObject(name, timeoutMs, conditions);
    else
        return nullptr;
    if (found.object && found.failed == 0)
        return found.object;
    failLookup(context, name, function, found.error);
    return nullptr;
}

void waitFor(ScriptContext* context, const char* function, const char* usage, quint32 conditions)
{
    int timeoutMs = 0;
    if (!requireArguments(context, 1, 2, usage) || !timeoutArgument(context, 1, &timeoutMs))
        return;
    const SharedPtr<Object> found = waitForArgument(context, function, timeoutMs, conditions);
    if (found)
        context->setResult(context->toArgument(found));
}

void setOutcome(ScriptContext* context, const Result<SharedPtr<Object>>& outcome)
{
    setOutcome(context, outcome, [context](const SharedPtr<Object>& object) {
        return object ? context->toArgument(object) : context->nullArgument();
    });
}

void setOutcome(ScriptContext* context, const Result<ObjectList>& outcome)
{
    setOutcome(context, outcome, [context](const ObjectList& objects) {
        ScriptArgument::List list;
        list.reserve(std::size_t(objects.size()));
        for (const SharedPtr<Object>& object : objects)
            list.push_back(context->toArgument(object));
        return context->toArgument(list);
    });
}

/** Null with an error in the context for an unknown name. */
const Class* classArgument(ScriptContext* context, int index)
{
    const SharedPtr<ScriptArgument> argument = context->argument(index);
    const Class* cls =
        argument->isClass() ? argument->toClass() : Inspector::self()->classByName(argument->toString());
    if (!cls)
        context->setError(QStringLiteral("Unknown type '%1'").arg(argument->toString()));
    return cls;
}

bool writeFile(ScriptContext* context, const QString& path, const QByteArray& bytes)
{
    QSaveFile file(path);
    if (file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size() && file.commit())
        return true;
    context->setError(QStringLiteral("Cannot write file '%1': %2").arg(path, file.errorString()));
    return false;
}

} // namespace

SharedPtr<Object> objectArgument(ScriptContext* context, int index, const char* function)
{
    const SharedPtr<ScriptArgument> argument = context->argument(index);
    if (const SharedPtr<Object> object = argument->toObject())
        return object;
    QString name;
    if (!nameArgument(context, index, function, &name))
        return nullptr;
    const Result<SharedPtr<Object>> found = Inspector::self()->findObject(name);
    if (!found)
        failLookup(context, name, function, found.error());
    return found.orNothing();
}

int defaultWaitTimeoutMs()
{
    return waitTimeoutMs;
}

void setDefaultWaitTimeoutMs(int timeoutMs)
{
    waitTimeoutMs = timeoutMs;
}

void waitForObject(ScriptContext* context)
{
    waitFor(context, "waitForObject", "waitForObject(name[, timeout])", Protocol::WaitReady);
}

void waitForObjectExists(ScriptContext* context)
{
    waitFor(context, "waitForObjectExists", "waitForObjectExists(name[, timeout])", Protocol::WaitExists);
}

void waitForObjectItem(ScriptContext* context)
{
    if (!requireArguments(context, 2, 4,
                          "waitForObjectItem(name, item[, timeout]) or (name, row, column[, timeout])"))
        return;
    const SharedPtr<ScriptArgument> item = context->argument(1);
    const SharedPtr<ScriptArgument> third = context->argument(2);
    const bool isCell = item->isInteger() && third && third->isInteger();
    int timeoutMs = 0;
    if (!timeoutArgument(context, isCell ? 3 : 2, &timeoutMs))
        return;
    const SharedPtr<Object> container =
        waitForArgument(context, "waitForObjectItem", timeoutMs, Protocol::WaitExists);
    if (!container)
        return;
    const Inspector::WaitResult found =
        isCell ? Inspector::self()->waitForItem(container, item->toInteger(), third->toInteger(), timeoutMs)
               : Inspector::self()->waitForItem(container, item->toString(), timeoutMs);
    if (found.object && found.failed == 0)
        context->setResult(context->toArgument(found.object));
    else
        failLookup(context, item->toString(), "waitForObjectItem", found.error);
}

void findAllObjects(ScriptContext* context)
{
    if (!requireArguments(context, 1, 1, "findAllObjects(name)"))
        return;
    QString name;
    if (!nameArgument(context, 0, "findAllObjects", &name))
        return;
    setOutcome(context, Inspector::self()->findAllObjects(name));
}

void objectChildren(ScriptContext* context)
{
    if (!requireArguments(context, 1, 1, "object.children(object)"))
        return;
    if (const SharedPtr<Object> object = objectArgument(context, 0, "object.children"))
        setOutcome(context, Inspector::self()->children(object));
}

void objectGlobalBounds(ScriptContext* context)
{
    if (!requireArguments(context, 1, 1, "object.globalBounds(object)"))
        return;
    const SharedPtr<Object> object = objectArgument(context, 0, "object.globalBounds");
    if (!object)
        return;
    setOutcome(context, Inspector::self()->globalBounds(object), [context](const QRect& bounds) {
        return context->toArgument(ScriptArgument::Map{{"x", context->toArgument(bounds.x())},
                                                       {"y", context->toArgument(bounds.y())},
                                                       {"width", context->toArgument(bounds.width())},
                                                       {"height", context->toArgument(bounds.height())}});
    });
}

void objectParent(ScriptContext* context)
{
    if (!requireArguments(context, 1, 1, "object.parent(object)"))
        return;
    if (const SharedPtr<Object> object = objectArgument(context, 0, "object.parent"))
        setOutcome(context, Inspector::self()->parent(object));
}

void objectProperties(ScriptContext* context)
{
    if (!requireArguments(context, 1, 1, "object.properties(object)"))
        return;
    if (const SharedPtr<Object> object = objectArgument(context, 0, "object.properties"))
        context->setObjectPropertiesResult(object);
}

void objectTopLevelObjects(ScriptContext* context)
{
    if (!requireArguments(context, 0, 0, "object.topLevelObjects()"))
        return;
    setOutcome(context, Inspector::self()->topLevelObjects());
}

void objectConvertTo(ScriptContext* context)
{
    if (!requireArguments(context, 2, 2, "object.convertTo(object, type)"))
        return;
    const SharedPtr<Object> object = objectArgument(context, 0, "object.convertTo");
    const Class* target = object ? classArgument(context, 1) : nullptr;
    if (target)
        setOutcome(context, object->objectClass()->convertObject(object, target,
                                                                 object->objectAttribute().isIndirect()));
}

void objectCreateNull(ScriptContext* context)
{
    if (!requireArguments(context, 1, 1, "object.createNull(type)"))
        return;
    if (const Class* cls = classArgument(context, 0))
        context->setResult(context->toArgument(cls->createNull()));
}

void objectGrabScreenshot(ScriptContext* context)
{
    if (!requireArguments(context, 1, 2, "object.grabScreenshot(object[, file])"))
        return;
    const SharedPtr<Object> object = objectArgument(context, 0, "object.grabScreenshot");
    if (!object)
        return;
    const Result<QByteArray> png = Inspector::self()->grabScreenshot(object);
    if (!png) {
        context->setError(png.error());
        return;
    }
    QString path;
    if (const SharedPtr<ScriptArgument> file = context->argument(1))
        path = QDir::current().absoluteFilePath(file->toString());
    else if (TestResult* result = resultSink(*context))
        path = result->newOutputFile(QStringLiteral("screenshot.png"));
    if (path.isEmpty())
        context->setError(
            QStringLiteral("object.grabScreenshot() needs a file name here: there is no folder for results"));
    else if (writeFile(context, path, *png))
        context->setResult(context->toArgument(path));
}

} // namespace Torvix
