#include "engine/error.h"

#include "engine/interpreter.h"
#include "engine/jsc/runtime.h"
#include "engine/list.h"

namespace KJS {

Object Error::create(ExecState* exec, ErrorType type, const UString& message, int line, int sourceId)
{
    Runtime& runtime = *Runtime::of(exec);
    List arguments;
    if (!message.isNull())
        arguments.append(String(message));
    const Value pending = exec->exception();
    Object error = runtime.interpreter()->builtinError(type).construct(exec, arguments);
    exec->setException(pending);
    const int frame = exec->context().isNull() ? runtime.script().frames().depth() : exec->context().depth();
    if (frame > 0) {
        line = line < 0 ? runtime.lineOf(frame) : line;
        sourceId = sourceId < 0 ? runtime.sourceIdOf(frame) : sourceId;
    }
    static const Identifier lineName("line"), sourceIdName("sourceId");
    error.putDirect(lineName, Number(line), DontEnum);
    error.putDirect(sourceIdName, Number(sourceId), DontEnum);
    return error;
}

} // namespace KJS
