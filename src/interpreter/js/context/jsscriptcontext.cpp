#include "interpreter/js/context/jsscriptcontext.h"

#include "engine/debugger.h"
#include "engine/interpreter.h"
#include "engine/list.h"
#include "engine/object.h"
#include "interpreter/base/nativescriptobject.h"
#include "interpreter/js/bridge/jsapplicationcontext.h"
#include "interpreter/js/bridge/jsnativeobject.h"
#include "interpreter/js/bridge/jsobject.h"
#include "interpreter/js/bridge/jsscriptargument.h"
#include "interpreter/js/bridge/jstestdatarecord.h"
#include "interpreter/js/scriptobject/jsutils.h"
#include "interpreter/js/steps/stepactions.h"
#include "objectmodel/object.h"

#include <QDebug>

namespace Torvix {

JSScriptContext::JSScriptContext() = default;
JSScriptContext::~JSScriptContext() = default;

ScriptContext* JSScriptContext::lightCopy() const
{
    auto* copy = new JSScriptContext;
    copy->setTestResult(testResult());
    copy->m_exec = m_exec;
    return copy;
}

void JSScriptContext::clearResult()
{
    m_result = KJS::Value();
}

void JSScriptContext::setResult(SharedPtr<ScriptArgument> value)
{
    if (!m_result.isNull())
        qWarning("JSScript::setResult() overriding result");
    m_result = static_cast<const JSScriptArgument&>(*value).value();
}

SharedPtr<ScriptArgument> JSScriptContext::argumentOf(const KJS::Value& value) const
{
    return new JSScriptArgument(m_exec, value);
}

SharedPtr<ScriptArgument> JSScriptContext::nullArgument() const
{
    return argumentOf(KJS::Null());
}

SharedPtr<ScriptArgument> JSScriptContext::toArgument(bool value) const
{
    return argumentOf(KJS::Boolean(value));
}

SharedPtr<ScriptArgument> JSScriptContext::toArgument(int value) const
{
    return argumentOf(KJS::Number(value));
}

SharedPtr<ScriptArgument> JSScriptContext::toArgument(long long value) const
{
    return argumentOf(KJS::Number(double(value)));
}

SharedPtr<ScriptArgument> JSScriptContext::toArgument(double value) const
{
    return argumentOf(KJS::Number(value));
}

SharedPtr<ScriptArgument> JSScriptContext::toArgument(const QString& value) const
{
    return argumentOf(KJS::String(value));
}

SharedPtr<ScriptArgument> JSScriptContext::toArgument(const QDateTime& value) const
{
    return argumentOf(dateValue(m_exec, value));
}

SharedPtr<ScriptArgument> JSScriptContext::toArgument(const ScriptArgument::List& values) const
{
    KJS::Object array = emptyArray(m_exec);
    unsigned index = 0;
    for (const SharedPtr<ScriptArgument>& value : values)
        array.put(m_exec, index++, static_cast<const JSScriptArgument&>(*value).value());
    return argumentOf(array);
}

SharedPtr<ScriptArgument> JSScriptContext::toArgument(const ScriptArgument::Map& values) const
{
    KJS::Object object = m_exec->interpreter()->builtinObject().construct(m_exec, KJS::List::empty());
    for (const auto& [name, value] : values)
        object.putDirect(name, static_cast<const JSScriptArgument&>(*value).value());
    return argumentOf(object);
}

SharedPtr<ScriptArgument> JSScriptContext::toArgument(SharedPtr<NativeScriptObject> object) const
{
    if (!object)
        return nullArgument();
    JsNativeTypePrototypeImp* prototype = JsNativeTypePrototypeImp::of(m_exec, object->type());
    if (prototype)
        return argumentOf(new JsNativeObjectImp(prototype, object));
    Torvix::raiseJSException(m_exec, KJS::GeneralError,
                             QStringLiteral("Unregistrered native type passed to the interpreter"));
    return nullArgument();
}

SharedPtr<ScriptArgument> JSScriptContext::toArgument(SharedPtr<Object> object) const
{
    return object ? argumentOf(jsWrap(m_exec, object)) : nullArgument();
}

SharedPtr<ScriptArgument> JSScriptContext::toArgument(TestDataSet* dataSet) const
{
    return argumentOf(wrapTestDataSet(m_exec, dataSet));
}

SharedPtr<ScriptArgument> JSScriptContext::toArgument(SharedPtr<ApplicationContext> context) const
{
    return argumentOf(new JsApplicationContextImp(m_exec, context));
}

SharedPtr<ScriptArgument> JSScriptContext::toArgument(const Debugger::Location& location) const
{
    // Scripts get a place as an array without elements that has two properties.
    KJS::Object array = emptyArray(m_exec);
    array.put(m_exec, "fileName", KJS::String(location.file));
    array.put(m_exec, "line", KJS::Number(location.line));
    return argumentOf(array);
}

void JSScriptContext::addStaticMemberFunction(const QString& className, const QString& member,
                                              Function function)
{
    addGlobalFunction(className + QLatin1Char('_') + member, function);
}

bool JSScriptContext::lineInfo(LineInfo* info, unsigned int depth) const
{
    const Debugger* debugger = Debugger::self();
    const auto* hooks = dynamic_cast<const KJS::Debugger*>(debugger);
    KJS::Interpreter* engine = hooks ? hooks->interpreter() : nullptr;
    const int count = engine ? engine->frameCount() : 0;
    if (depth >= unsigned(count))
        return false;
    const KJS::Context context = engine->frameExec(count - int(depth))->context();
    *info = LineInfo{debugger->findSourceId(context.sourceId()), context.curStmtFirstLine()};
    return true;
}

bool JSScriptContext::verify(SharedPtr<ScriptArgument> value)
{
    return static_cast<const JSScriptArgument&>(*value).value().toBoolean(m_exec);
}

std::pair<QString, QString> JSScriptContext::catchException(SharedPtr<ScriptArgument> code)
{
    const auto failure = [](const char* text) { return std::make_pair(QString(), QString(text)); };
    const KJS::Value eval = m_exec->interpreter()->globalObject().get(m_exec, "eval");
    if (eval.type() != KJS::ObjectType)
        return failure("'eval' not an object");
    KJS::Object function = eval.toObject(m_exec);
    if (!function.implementsCall())
        return failure("'eval' not a function");
    KJS::Object thisObject = m_exec->context().getThisBinding(m_exec);
    if (m_exec->hadException())
        return failure("Could not fetch the call context");
    function.call(m_exec, thisObject, KJS::List{static_cast<const JSScriptArgument&>(*code).value()});
    if (m_exec->hadException()) {
        m_exec->clearException();
        return std::make_pair(QStringLiteral("Caught expected error"), QString());
    }
    return failure("Unexpected pass");
}

bool JSScriptContext::compare(SharedPtr<ScriptArgument> a, SharedPtr<ScriptArgument> b)
{
    return KJS::equal(m_exec, static_cast<const JSScriptArgument&>(*a).value(),
                      static_cast<const JSScriptArgument&>(*b).value());
}

bool JSScriptContext::evaluateExpression(const QString& expression, QString* error, const QString&) const
{
    const KJS::Completion completion = m_exec->interpreter()->evaluate(expression);
    if (completion.complType() == KJS::Throw) {
        const KJS::Object thrown = KJS::Object::dynamicCast(completion.value());
        *error =
            (thrown.isNull() ? completion.value() : thrown.get(m_exec, "message")).toString(m_exec).qstring();
        return false;
    }
    error->clear();
    return completion.complType() == KJS::ReturnValue && completion.value().toBoolean(m_exec);
}

std::unique_ptr<Gherkin::ScriptActions>
JSScriptContext::gherkinScriptActions(const QString& stepFunctionName) const
{
    return std::make_unique<JsStepFindAndExecuteFn>(m_exec, stepFunctionName);
}

bool JSScriptContext::sourceCode(const QString&, const QString&)
{
    qWarning("JSScriptContext::sourceCode: not implemented, yet");
    return false;
}

void JSScriptContext::setJSArguments(KJS::ExecState* exec, const KJS::List& args)
{
    m_exec = exec;
    Arguments arguments;
    arguments.reserve(std::size_t(args.size()));
    for (const KJS::Value& value : args)
        arguments.push_back(argumentOf(value));
    setArguments(std::move(arguments));
}

KJS::ExecState* JSScriptContext::swapExecState(KJS::ExecState* exec)
{
    return std::exchange(m_exec, exec);
}

QString JSScriptContext::toQString(KJS::ExecState* exec, const KJS::Value& value)
{
    return value.toString(exec).qstring();
}

QStringList JSScriptContext::toQStringList(KJS::ExecState* exec, const KJS::Value& value)
{
    if (value.isUndefinedOrNull())
        return QStringList();
    const KJS::Object object = KJS::Object::dynamicCast(value);
    if (object.isNull() || object.className() != "Array")
        return QStringList{toQString(exec, value)};
    const int length = object.get(exec, "length").toInt32(exec);
    QStringList list;
    for (int index = 0; index < length; ++index)
        list.append(toQString(exec, object.get(exec, unsigned(index))));
    return list;
}

KJS::Value JSScriptContext::stringList(KJS::ExecState* exec, const QStringList& list)
{
    return arrayFromQStringList(exec, list);
}

} // namespace Torvix
