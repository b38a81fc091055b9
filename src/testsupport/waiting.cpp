#include "testsupport/waiting.h"

#include "interpreter/base/interpreter.h"
#include "interpreter/base/runnerinterface.h"
#include "interpreter/base/scriptcontext.h"

#include <QThread>

namespace Torvix {

bool waitMeanwhile(double ms)
{
    const Interpreter* interpreter = Interpreter::self();
    if (interpreter && interpreter->runnerInterface())
        interpreter->runnerInterface()->serviceConnections();
    if (interpreter && interpreter->isInterrupted())
        return false;
    if (ms > 0)
        QThread::usleep(static_cast<unsigned long>(ms * 1000));
    return !interpreter || !interpreter->isInterrupted();
}

bool failIfInterrupted(ScriptContext* context)
{
    const Interpreter* interpreter = Interpreter::self();
    if (!interpreter || !interpreter->isInterrupted())
        return false;
    context->setError(QStringLiteral("Script interrupted"));
    return true;
}

} // namespace Torvix
