#include "interpreter/js/scriptobject/testoutcome.h"

#include "engine/identifier.h"
#include "interpreter/js/scriptobject/exceptionkeeper.h"

namespace Torvix {

const char* const torvixErrorType = "torvixErrorType";
const char* const torvixVerificationFailure = "VerificationFailure";
const char* const torvixTestcaseSkipped = "TestcaseSkipped";

bool isTestOutcome(KJS::ExecState* exec, const KJS::Object& exception)
{
    const ExceptionKeeper keeper(exec);
    if (!exception.hasProperty(exec, torvixErrorType))
        return false;
    const QString type = exception.get(exec, torvixErrorType).toString(exec).qstring();
    return type == QLatin1String(torvixVerificationFailure) || type == QLatin1String(torvixTestcaseSkipped);
}

} // namespace Torvix
