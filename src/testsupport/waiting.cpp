#include "testsupport/waiting.h"

#include "interpreter/base/interpreter.h"
#include "interpreter/base/runnerinterface.h"

namespace Torvix {

bool serviceRunner()
{
    const Interpreter* interpreter = Interpreter::self();
    RunnerInterface* runner = interpreter ? interpreter->runnerInterface() : nullptr;
    if (runner)
        runner->serviceConnections();
    return !runner || !runner->isStopping();
}

} // namespace Torvix
