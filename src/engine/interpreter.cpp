#include "engine/interpreter.h"

#include "engine/jsc/runtime.h"

namespace KJS {

Interpreter::Interpreter(const Object& global, const InterpreterOptions& options)
{
    // in two steps: the runtime calls back while it is being made
    d = std::make_unique<Runtime>(this, global, options);
}

Interpreter::~Interpreter() = default;

void Interpreter::mark() {}

int Interpreter::rtti()
{
    return 0;
}

UString Interpreter::searchModule(const UString& name, UString* error)
{
    *error = UString(QStringLiteral("Cannot find module '%1'").arg(name.qstring()));
    return UString();
}

UString Interpreter::loadModuleCode(const UString& path, UString* error)
{
    *error = UString(QStringLiteral("Cannot load module '%1'").arg(path.qstring()));
    return UString();
}

void Interpreter::virtual_hook(int, void*) {}

Completion Interpreter::evaluate(const UString& code, const Value& thisValue, bool internal)
{
    return d->evaluate(code, thisValue, internal);
}

void Interpreter::setSourceName(const UString& name)
{
    d->setSourceName(name);
}

bool Interpreter::checkSyntax(const UString& code, int* line, UString* message)
{
    const Rewriting::SyntaxReport report = d->script().checkSyntax(code.qstring());
    if (!report.ok) {
        *line = report.line;
        *message = UString(report.message);
    }
    return report.ok;
}

ExecState* Interpreter::globalExec()
{
    return d->globalExec();
}

Object Interpreter::globalObject() const
{
    return d->global();
}

ExecState* Interpreter::currentExec()
{
    return d->currentExec();
}

int Interpreter::frameCount() const
{
    return d->script().frames().depth();
}

ExecState* Interpreter::frameExec(int frame)
{
    return d->exec(frame);
}

void Interpreter::setErrorHint(QString (*hint)(const QString& message))
{
    d->setErrorHint(hint);
}

UString Interpreter::sourceName(int sourceId) const
{
    const Rewriting::SourceInfo* const source = d->script().sources().source(sourceId);
    return source ? UString(source->url) : UString();
}

void Interpreter::setTimeLimit(int timeLimitMs)
{
    d->setTimeLimit(timeLimitMs);
}

bool Interpreter::isStopping() const
{
    return d->shouldStop();
}

void Interpreter::interrupt()
{
    d->interrupt();
}

// Built-ins -------------------------------------------------------------------------------------

namespace {

Builtin errorBuiltin(ErrorType type)
{
    return static_cast<Builtin>(static_cast<int>(Builtin::Error) + static_cast<int>(type));
}

} // namespace

Object Interpreter::builtinObject() const
{
    return d->builtin(Builtin::Object);
}

Object Interpreter::builtinFunction() const
{
    return d->builtin(Builtin::Function);
}

Object Interpreter::builtinArray() const
{
    return d->builtin(Builtin::Array);
}

Object Interpreter::builtinBoolean() const
{
    return d->builtin(Builtin::Boolean);
}

Object Interpreter::builtinString() const
{
    return d->builtin(Builtin::String);
}

Object Interpreter::builtinNumber() const
{
    return d->builtin(Builtin::Number);
}

Object Interpreter::builtinDate() const
{
    return d->builtin(Builtin::Date);
}

Object Interpreter::builtinRegExp() const
{
    return d->builtin(Builtin::RegExp);
}

Object Interpreter::builtinError(ErrorType type) const
{
    return d->builtin(errorBuiltin(type));
}

Object Interpreter::builtinObjectPrototype() const
{
    return d->builtinPrototype(Builtin::Object);
}

Object Interpreter::builtinFunctionPrototype() const
{
    return d->builtinPrototype(Builtin::Function);
}

Object Interpreter::builtinArrayPrototype() const
{
    return d->builtinPrototype(Builtin::Array);
}

Object Interpreter::builtinBooleanPrototype() const
{
    return d->builtinPrototype(Builtin::Boolean);
}

Object Interpreter::builtinStringPrototype() const
{
    return d->builtinPrototype(Builtin::String);
}

Object Interpreter::builtinNumberPrototype() const
{
    return d->builtinPrototype(Builtin::Number);
}

Object Interpreter::builtinDatePrototype() const
{
    return d->builtinPrototype(Builtin::Date);
}

Object Interpreter::builtinRegExpPrototype() const
{
    return d->builtinPrototype(Builtin::RegExp);
}

Object Interpreter::builtinErrorPrototype(ErrorType type) const
{
    return d->builtinPrototype(errorBuiltin(type));
}

} // namespace KJS
