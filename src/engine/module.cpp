#include "engine/module.h"

#include "engine/interpreter.h"
#include "engine/jsc/objectaccess.h"
#include "engine/jsc/runtime.h"

#include <QJsonArray>
#include <QJsonDocument>

namespace KJS {

Object ModuleObject::import(ExecState* exec, const UString& name)
{
    // a JSON string is a string literal of script; the brackets of the array are cut off
    const QByteArray list = QJsonDocument(QJsonArray{name.qstring()}).toJson(QJsonDocument::Compact);
    const QByteArray literal = list.mid(1, list.size() - 2);
    const UString text(
        QStringLiteral("import * as $module from %1; $module").arg(QString::fromUtf8(literal)));
    Runtime& runtime = *Runtime::of(exec);
    JSObjectRef space = nullptr;
    {
        const Completion completion = runtime.evaluate(text, Value(), true);
        if (completion.complType() == Throw) {
            exec->setException(completion.value());
            return Object();
        }
        space = ObjectAccess::reference(Object::dynamicCast(completion.value()).imp());
    } // the plain view of it goes with the completion
    return runtime.moduleView(space);
}

} // namespace KJS
