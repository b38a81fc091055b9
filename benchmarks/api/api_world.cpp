#include "api_world.h"

#include "objectmodel/inspector.h"

using namespace Torvix;

namespace {

std::unique_ptr<ApiWorld> world;

} // namespace

ApiWorld& ApiWorld::self()
{
    if (!world)
        world.reset(new ApiWorld);
    return *world;
}

void ApiWorld::end()
{
    world.reset();
}

ApiWorld::ApiWorld()
    : m_streamFile(m_folder.filePath(QStringLiteral("results.ndjson")))
    , m_stream(&m_streamFile)
    , m_result(&m_stream)
{
    if (!m_streamFile.open(QIODevice::WriteOnly | QIODevice::Truncate))
        qFatal("%s cannot be written", qPrintable(m_streamFile.fileName()));
    startTarget();
    m_interpreter = std::make_unique<JsInterpreter>(&m_runner);
    m_interpreter->initTestFunctions(&m_result);
}

ApiWorld::~ApiWorld()
{
    m_control.reset();
    m_interpreter.reset();
    m_application.reset();
    Inspector::self()->reset();
}

void ApiWorld::startTarget()
{
    LaunchOptions options;
    options.program = QStringLiteral(TORVIX_BINARY_DIR "/tests/torvixtarget");
    options.environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
    QString error;
    m_application = Application::start(options, &error);
    if (!m_application)
        qFatal("%s", qPrintable(error));
    Inspector::self()->setCurrent(Inspector::self()->addApplication(m_application->takeLink()));
    const Result<SharedPtr<Object>> control =
        Inspector::self()->findObject(QStringLiteral("{name='control'}"));
    if (!control)
        qFatal("%s", qPrintable(control.error()));
    m_control = *control;
}

void ApiWorld::run(const QString& code)
{
    if (!m_interpreter->evaluate(code, path(QStringLiteral("test.js")), false, false))
        qFatal("%s", qPrintable(m_interpreter->errorMessage()));
}

void ApiWorld::call(const char* function)
{
    if (!m_interpreter->call(QLatin1String(function), {}))
        qFatal("%s", qPrintable(m_interpreter->errorMessage()));
}

QString ApiWorld::text(const QString& code)
{
    run(code);
    return m_interpreter->resultMessage();
}

void ApiWorld::rewindStream()
{
    m_streamFile.resize(0);
    m_streamFile.seek(0);
}

const SharedPtr<Object>& ApiWorld::control()
{
    return m_control;
}

void ApiWorld::callControl(const char* method, const ObjectList& arguments)
{
    const QVector<const Method*> found = m_control->objectClass()->methods(QLatin1String(method));
    if (found.isEmpty())
        qFatal("there is no %s()", method);
    if (const auto called = found.first()->invoke(m_control, arguments); !called)
        qFatal("%s() failed: %s", method, qPrintable(called.error()));
}
