#include "support/application/running.h"

#include <QDir>
#include <QElapsedTimer>
#include <QThread>

namespace Torvix::Testing {

namespace {

constexpr int patienceMs = 10000;

/** The value; null with a failure of the test that says why. */
SharedPtr<Object> orFailure(const char* what, const Result<SharedPtr<Object>>& result)
{
    if (!result)
        ADD_FAILURE() << what << ": " << qPrintable(result.error());
    return result.orNothing();
}

/** The arguments as those of an overload; false when one does not fit. */
bool fit(const Signature& signature, const ObjectList& arguments, ObjectList* converted)
{
    converted->clear();
    if (signature.count() != arguments.size())
        return false;
    for (int i = 0; i < arguments.size(); ++i) {
        const Class* from = arguments[i]->objectClass();
        const Class* to = signature.argument(i).type();
        if (!from->canConvertTo(to, true, signature.argument(i).attribute().isIndirect(), 0))
            return false;
        const Result<SharedPtr<Object>> value = from->convertObject(arguments[i], to, true);
        if (!value)
            return false;
        converted->append(*value);
    }
    return true;
}

Result<SharedPtr<Object>> invoke(const Class* type, const char* name, const SharedPtr<Object>& object,
                                 const ObjectList& arguments)
{
    for (const Method* method : type->methods(utf8(name))) {
        ObjectList converted;
        if (fit(method->signature(), arguments, &converted))
            return method->invoke(object, converted);
    }
    ADD_FAILURE() << "no overload of " << name << " fits";
    return Failure{utf8("no overload")};
}

} // namespace

QString sample(const char* name)
{
    const QString folder = utf8("/usr/lib/x86_64-linux-gnu/qt5/examples/widgets/") + utf8(name);
    return folder + QLatin1Char('/') + folder.section(QLatin1Char('/'), -1);
}

QString target()
{
    return utf8(TORVIX_TEST_BINARY_DIR "/tests/torvixtarget");
}

LaunchOptions launchOptions(const QString& program, const QStringList& arguments)
{
    LaunchOptions options;
    options.program = program;
    options.arguments = arguments;
    // Any test can be run by hand on the platform of a real display.
    options.environment.insert(utf8("QT_QPA_PLATFORM"),
                               qEnvironmentVariable("TORVIX_TEST_PLATFORM", utf8("offscreen")));
    options.environment.insert(utf8("LC_ALL"), utf8("C.UTF-8"));
    return options;
}

Running::Running(const QString& program, const QStringList& arguments)
{

    application = Application::start(launchOptions(program, arguments), &error);
    if (application)
        model = Inspector::self()->addApplication(application->takeLink());
    Inspector::self()->setCurrent(model);
    EXPECT_TRUE(application) << qPrintable(error);
}

Running::~Running()
{
    application.reset();
    Inspector::self()->reset();
}

SharedPtr<Object> Running::wait(const char* name)
{
    const Inspector::WaitResult result = Inspector::self()->waitForObject(utf8(name), patienceMs);
    if (result.failed != 0)
        ADD_FAILURE() << name << ": " << qPrintable(result.error);
    return result.failed == 0 ? result.object : nullptr;
}

SharedPtr<Object> Running::find(const char* name)
{
    return orFailure(name, Inspector::self()->findObject(utf8(name)));
}

QString Running::get(const SharedPtr<Object>& object, const char* property)
{
    const Property* found = object ? object->objectClass()->property(utf8(property)) : nullptr;
    if (!found) {
        ADD_FAILURE() << "there is no property " << property;
        return QString();
    }
    const SharedPtr<Object> result = orFailure(property, found->get(object));
    return result ? result->toString() : QString();
}

SharedPtr<Object> Running::call(const SharedPtr<Object>& object, const char* method,
                                const ObjectList& arguments)
{
    if (!object)
        return nullptr;
    const Result<SharedPtr<Object>> result = invoke(object->objectClass(), method, object, arguments);
    error = result.error();
    return result.orNothing();
}

SharedPtr<Object> Running::act(const char* function, const ObjectList& arguments)
{
    for (const SharedPtr<Object>& argument : arguments)
        if (!argument)
            return nullptr;
    const Class* global = Inspector::self()->globalClass();
    if (!global)
        return orFailure(function, Inspector::noApplication());
    return orFailure(function, invoke(global, function, nullptr, arguments));
}

bool Running::becomes(const SharedPtr<Object>& object, const char* property, const char* text)
{
    QElapsedTimer timer;
    timer.start();
    QString seen;
    while (object && timer.elapsed() < patienceMs) {
        seen = get(object, property);
        if (seen == utf8(text))
            return true;
        QThread::msleep(5);
    }
    ADD_FAILURE() << property << " is " << qPrintable(seen) << ", not " << text;
    return false;
}

} // namespace Torvix::Testing
