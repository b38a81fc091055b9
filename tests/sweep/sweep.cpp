#include "sweep/sweep.h"

#include "launcher/launcher.h"
#include "objectmodel/inspector.h"

#include <QElapsedTimer>
#include <QSet>
#include <QTemporaryDir>
#include <QThread>

namespace Torvix::Testing {

namespace {

constexpr int startMs = 20000;
constexpr int answerMs = 15000;
constexpr int endMs = 10000;
/** A text that runs, a clock's, may change between the two questions. */
constexpr int nameAttempts = 3;
/** Enough to see what is wrong; the same fault often shows in many objects. */
constexpr int maxFaults = 40;

class Sweep
{
public:
    explicit Sweep(const SweepTarget& target) : m_target(target) {}

    SweepResult run();

private:
    bool start();
    void settle();
    void visitTree();
    void visit(const SharedPtr<Object>& object);
    void checkName(const SharedPtr<Object>& object);
    void readProperties(const SharedPtr<Object>& object);
    void describeClass(const Class* type);
    void lookAt(const SharedPtr<Object>& object);
    void end();
    void askToQuit();

    bool isVisible(const SharedPtr<Object>& object);
    void fault(const QString& text);
    /** Objects come and go while an application runs; what has gone is no fault. */
    void faultUnlessGone(const SharedPtr<Object>& object, const QString& what, const QString& error);

    SweepTarget m_target;
    SweepResult m_result;
    QTemporaryDir m_home;
    std::unique_ptr<Application> m_application;
    ApplicationModel* m_model = nullptr;
    QSet<const Class*> m_described;
};

void Sweep::fault(const QString& text)
{
    if (m_result.faults.size() < maxFaults && !m_result.faults.contains(text))
        m_result.faults.append(text);
}

void Sweep::faultUnlessGone(const SharedPtr<Object>& object, const QString& what, const QString& error)
{
    Inspector::self()->processEvents(0);
    if (!object->isInvalidated() || !m_model->isAlive())
        fault(QStringLiteral("%1: %2").arg(what, error));
}

bool Sweep::start()
{
    LaunchOptions options;
    options.program = m_target.program;
    options.arguments = m_target.arguments;
    options.workingDirectory = m_home.path();
    options.timeoutMs = startMs;
    options.environment.insert(QStringLiteral("QT_QPA_PLATFORM"), m_target.platform);
    options.environment.insert(QStringLiteral("HOME"), m_home.path());
    options.environment.insert(QStringLiteral("XDG_RUNTIME_DIR"), m_home.path());
    options.environment.insert(QStringLiteral("LC_ALL"), QStringLiteral("C.UTF-8"));
    QString error;
    m_application = Application::start(options, &error);
    if (!m_application) {
        fault(error);
        return false;
    }
    m_result.wasStarted = true;
    m_model = Inspector::self()->addApplication(m_application->takeLink());
    Inspector::self()->setCurrent(m_model);
    m_model->setCallTimeout(answerMs);
    return true;
}

/** Windows that an application opens late, and splash screens, have come and gone by then. */
void Sweep::settle()
{
    QElapsedTimer timer;
    timer.start();
    while (timer.elapsed() < 300)
        Inspector::self()->processEvents(50);
}

bool Sweep::isVisible(const SharedPtr<Object>& object)
{
    const Property* visible = object->objectClass()->property(QStringLiteral("visible"));
    if (!visible)
        return false;
    const Result<SharedPtr<Object>> value = visible->get(object);
    return value && value->toBool();
}

void Sweep::checkName(const SharedPtr<Object>& object)
{
    Result<QString> name = QString();
    QString error;
    for (int i = 0; i < nameAttempts; ++i) {
        name = object->realName();
        const Result<SharedPtr<Object>> found =
            name.then([](const QString& text) { return Inspector::self()->findObject(text); });
        if (found && found->compare(object))
            return;
        error =
            found ? QStringLiteral("it finds %1 %2").arg(found->realName().orNothing()).arg(found->remoteId())
                  : found.error();
    }
    faultUnlessGone(object,
                    QStringLiteral("the real name %1 of a %2 does not find it")
                        .arg(name.orNothing(), object->className()),
                    error);
}

void Sweep::readProperties(const SharedPtr<Object>& object)
{
    const Class* type = object->objectClass();
    for (int i = 0; i < type->numProperties(); ++i) {
        const Property* property = type->property(i);
        if (!property->isReadable())
            continue;
        ++m_result.properties;
        const Result<SharedPtr<Object>> value = property->get(object);
        const QString what = QStringLiteral("%1.%2").arg(type->name(), property->name());
        if (!value) {
            faultUnlessGone(object, what, value.error());
            continue;
        }
        if (value->toString().isNull())
            faultUnlessGone(*value, what, QStringLiteral("it has no text"));
        describeClass(value->objectClass());
    }
}

void Sweep::describeClass(const Class* type)
{
    if (!type || m_described.contains(type))
        return;
    m_described.insert(type);
    ++m_result.classes;
    for (int i = 0; i < type->numSuperClasses(); ++i)
        describeClass(type->superClass(i));
    for (int i = 0; i < type->numEnumerators(); ++i)
        if (!type->enumerator(i))
            fault(QStringLiteral("%1 has no enumerator %2").arg(type->name()).arg(i));
    for (int i = 0; i < type->numProperties(); ++i)
        describeClass(type->property(i)->type());
    for (int i = 0; i < type->numMethods(); ++i) {
        const Method* method = type->method(i);
        ++m_result.methods;
        describeClass(method->resultType());
        for (int a = 0; a < method->signature().count(); ++a)
            describeClass(method->signature().argument(a).type());
    }
    if (!type->isInitialized() && m_model->isAlive())
        fault(QStringLiteral("the class %1 is not described").arg(type->name()));
}

/** Where it is, what is there, and how it looks. */
void Sweep::lookAt(const SharedPtr<Object>& object)
{
    Inspector* inspector = Inspector::self();
    const Result<QRect> bounds = inspector->globalBounds(object);
    if (!bounds) {
        faultUnlessGone(object, QStringLiteral("the bounds of %1").arg(object->className()), bounds.error());
        return;
    }
    const auto there = inspector->objectAt(bounds->center().x(), bounds->center().y());
    if (!there)
        fault(QStringLiteral("what is at %1: %2").arg(object->className(), there.error()));
    if (bounds->isEmpty())
        return;
    const Result<QByteArray> picture = inspector->grabScreenshot(object);
    if (!picture->startsWith("\x89PNG"))
        faultUnlessGone(object, QStringLiteral("the picture of %1").arg(object->className()),
                        picture.error());
}

void Sweep::visit(const SharedPtr<Object>& object)
{
    ++m_result.objects;
    describeClass(object->objectClass());
    const bool visible = isVisible(object);
    m_result.visibleObjects += visible ? 1 : 0;
    checkName(object);
    readProperties(object);
    const Class* widget = Inspector::self()->classByName(QStringLiteral("QWidget"));
    if (visible && widget && object->objectClass()->inheritanceDepth(widget) >= 0)
        lookAt(object);
}

void Sweep::visitTree()
{
    const Result<ObjectList> roots = Inspector::self()->topLevelObjects();
    if (roots->isEmpty())
        fault(QStringLiteral("it has no objects: %1").arg(roots.error()));
    ObjectList left = *roots;
    while (!left.isEmpty() && m_model->isAlive()) {
        const SharedPtr<Object> object = left.takeLast();
        visit(object);
        const Result<ObjectList> children = Inspector::self()->children(object);
        if (!children)
            faultUnlessGone(object, QStringLiteral("the children of %1").arg(object->className()),
                            children.error());
        left += *children;
    }
}

void Sweep::end()
{
    if (!m_model->isAlive()) {
        fault(QStringLiteral("it ended by itself: %1").arg(m_model->endReason()));
        return;
    }
    if (const Result<void> answer = Inspector::self()->ping(m_model, answerMs); !answer)
        fault(QStringLiteral("it does not answer any more: %1").arg(answer.error()));
    QElapsedTimer timer;
    timer.start();
    // One that shows a dialog before its event loop needs to be asked again.
    while (m_application->isRunning() && timer.elapsed() < endMs) {
        askToQuit();
        for (int i = 0; i < 50 && m_application->isRunning(); ++i)
            QThread::msleep(10);
    }
    // The status is its own affair, a signal is not.
    const ProcessEnd end = m_application->end();
    if (end.kind == ProcessEnd::Running)
        fault(QStringLiteral("it does not end"));
    else if (end.kind != ProcessEnd::Exited)
        fault(QStringLiteral("it ") + endText(end));
}

void Sweep::askToQuit()
{
    // The application object is the last of them.
    const ObjectList roots = Inspector::self()->topLevelObjects().orNothing();
    const SharedPtr<Object> root = roots.isEmpty() ? nullptr : roots.last();
    const auto quits = root ? root->objectClass()->methods(QStringLiteral("quit")) : QVector<const Method*>();
    if (!quits.isEmpty())
        quits.first()->invoke(root, {}).orNothing(); // it may go before it answers
}

SweepResult Sweep::run()
{
    if (start()) {
        settle();
        visitTree();
        end();
        m_result.errorOutput = m_application->readStderr();
        m_application.reset();
    }
    m_described.clear();
    Inspector::self()->reset();
    return m_result;
}

} // namespace

SweepResult sweep(const SweepTarget& target)
{
    return Sweep(target).run();
}

} // namespace Torvix::Testing
