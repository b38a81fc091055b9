#pragma once

#include "engine/object.h"

namespace KJS {

/** The classes of error objects; the codes are fixed. */
enum ErrorType {
    GeneralError = 0,
    EvalError = 1,
    RangeError = 2,
    ReferenceError = 3,
    SyntaxError = 4,
    TypeError = 5,
    URIError = 6
};

class TORVIXKJS_EXPORT Error
{
public:
    /**
     * A new error object with "message", and "line" and "sourceId", which are writable and not
     * enumerated. -1 stands for unknown: both then come from the statement that runs, and stay -1
     * when none does. It is not thrown: see ExecState::setException.
     */
    static Object create(ExecState* exec, ErrorType type = GeneralError, const UString& message = UString(),
                         int line = -1, int sourceId = -1);
};

} // namespace KJS
