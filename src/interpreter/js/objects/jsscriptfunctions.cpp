#include "interpreter/js/objects/jsscriptfunctions.h"

#include "engine/interpreter.h"
#include "interpreter/base/interpreter.h"
#include "interpreter/base/runnerinterface.h"
#include "interpreter/js/bridge/jsarguments.h"
#include "interpreter/js/kjs/ourkjsinterpreter.h"
#include "interpreter/js/scriptobject/jsutils.h"
#include "shared/host/realpath.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>

#include <cmath>
#include <cstdio>

#include <unistd.h>

namespace Torvix {

namespace {

/** What waitFor() polls: a function with its arguments. */
struct Poll
{
    KJS::Object function;
    KJS::List arguments;
};

/** False with the exception set. */
bool preparePoll(KJS::ExecState* exec, const KJS::Value& expression, Poll* poll)
{
    if (expression.dispatchType() != KJS::StringType) {
        poll->function = KJS::Object::dynamicCast(expression);
        return true;
    }
    poll->function = KJS::Object::dynamicCast(exec->interpreter()->globalObject().get(exec, "eval"));
    poll->arguments.append(expression);
    if (poll->function.isNull()) {
        raiseJSException(
            exec, KJS::GeneralError,
            QStringLiteral("Internal waitFor() failure: 'eval' is not a function object or not found!"));
        return false;
    }
    if (!poll->function.implementsCall()) {
        raiseJSException(exec, KJS::GeneralError,
                         QStringLiteral("Internal waitFor() failure: object named 'eval' is not callable!"));
        return false;
    }
    return true;
}

bool isPollable(const KJS::Value& expression)
{
    const KJS::Object object = KJS::Object::dynamicCast(expression);
    return expression.dispatchType() == KJS::StringType || (!object.isNull() && object.implementsCall());
}

/** Polling slows down, so that a long wait does not load the machine. */
useconds_t sleepMicroseconds(qint64 elapsedMs)
{
    if (elapsedMs <= 1000)
        return 100'000;
    if (elapsedMs <= 2000)
        return 333'000;
    return elapsedMs <= 3000 ? 666'000 : 1'000'000;
}

/** Between two polls the runner's connections and the event loop have their turn. */
void serviceTool()
{
    if (RunnerInterface* runner = Interpreter::self()->runnerInterface())
        runner->serviceConnections();
    if (QCoreApplication::instance())
        QCoreApplication::processEvents();
}

} // namespace

KJS::Value jsPrint(KJS::ExecState* exec, KJS::Object&, const KJS::List& args)
{
    const QByteArray text = args[0].toString(exec).utf8();
    if (exec->hadException())
        return KJS::Undefined();
    std::fprintf(stdout, "%s\n", text.constData());
    std::fflush(stdout); // who reads a pipe or a file is to see it when it happens
    return KJS::Undefined();
}

KJS::Value jsSource(KJS::ExecState* exec, KJS::Object&, const KJS::List& args)
{
    QString path;
    if (!parseArg(exec, args, "source", &path))
        return KJS::Undefined();
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return generalError(exec, QLatin1String("Couldn't open file ") + path);
    const QByteArray bytes = file.readAll();
    // A source ends at its first zero byte, as everywhere in the tool.
    const QString code = QString::fromUtf8(bytes.constData());
    const QString fileName = realPath(QDir::current().absoluteFilePath(path));
    jsSourceFile = std::make_unique<QString>(fileName);
    KJS::Interpreter* interpreter = exec->interpreter();
    interpreter->setSourceName(fileName);
    const KJS::Completion completion = interpreter->evaluate(code, KJS::Value(), false);
    if (completion.complType() != KJS::Throw)
        return KJS::Undefined();
    // The debugger noted where it was thrown, in the file; being thrown on changes nothing of that.
    exec->setException(completion.value());
    return KJS::Undefined();
}

KJS::Value jsWaitFor(KJS::ExecState* exec, KJS::Object&, const KJS::List& args)
{
    if (args.isEmpty() || args.size() > 2)
        return syntaxError(exec, QStringLiteral("waitFor(expression, [timeout])"));
    if (!isPollable(args[0]))
        return typeError(exec, QStringLiteral("waitFor() expression has to be of type string or function"));
    double timeoutMs = -1;
    if (args.size() > 1) {
        if (args[1].dispatchType() != KJS::NumberType)
            return typeError(exec, QStringLiteral("Invalid type of timeout value"));
        timeoutMs = args[1].toNumber(exec);
        if (std::isnan(timeoutMs))
            return typeError(exec, QStringLiteral("Timeout value is not a number"));
    }
    Poll poll;
    if (!preparePoll(exec, args[0], &poll))
        return exec->exception();
    KJS::Object thisBinding = exec->context().getThisBinding(exec);
    if (exec->hadException())
        return KJS::Boolean(false);
    QElapsedTimer timer;
    timer.start();
    for (;;) {
        const KJS::Value value = poll.function.call(exec, thisBinding, poll.arguments);
        if (exec->hadException())
            return KJS::Undefined();
        if (value.toBoolean(exec))
            return KJS::Boolean(true);
        serviceTool();
        const qint64 elapsedMs = timer.elapsed();
        if (timeoutMs >= 0 && double(elapsedMs) > timeoutMs)
            return KJS::Boolean(false);
        // What is polled runs too little script, or none, to be stopped in it.
        if (exec->interpreter()->isStopping())
            return generalError(exec, QStringLiteral("Script interrupted"));
        usleep(sleepMicroseconds(elapsedMs));
    }
}

} // namespace Torvix
