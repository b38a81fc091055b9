#include "interpreter/js/ourkjsinterpreter.h"

#include "interpreter/js/bridge/jsnativefunction.h"
#include "interpreter/js/bridge/jsnativeobject.h"

#include <QDir>
#include <QFile>
#include <QStringList>

namespace Torvix {

std::unique_ptr<QString> jsSourceFile;

OurKJSInterpreter::OurKJSInterpreter(const KJS::Object& global) : KJS::Interpreter(global)
{
    initNativeTypes();
}

OurKJSInterpreter::~OurKJSInterpreter()
{
    destroyNativeTypes();
}

KJS::UString OurKJSInterpreter::searchModule(const KJS::UString& name, KJS::UString* error)
{
    const QString fileName = name.qstring();
    const QFileInfo local(fileName);
    if (local.exists())
        return local.canonicalFilePath();
    QStringList tried;
    for (const QFileInfo& entry : qAsConst(m_searchPath)) {
        tried.append(entry.absoluteFilePath());
        const QDir directory(tried.last());
        if (directory.exists(fileName))
            return directory.absoluteFilePath(fileName);
    }
    *error = QStringLiteral("Failed to locate module file '%1' in local directory '%2' or search path '%3'")
                 .arg(fileName, QDir::currentPath(), tried.join(QLatin1Char(':')));
    return KJS::UString::null();
}

KJS::UString OurKJSInterpreter::loadModuleCode(const KJS::UString& path, KJS::UString* error)
{
    QFile file(path.qstring());
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text)) {
        *error = QStringLiteral("Failed to open module file '%1'").arg(path.qstring());
        return KJS::UString::null();
    }
    const QByteArray bytes = file.readAll();
    if (bytes.isEmpty() && file.error() != QFileDevice::NoError) {
        *error =
            QStringLiteral("Failed reading module file '%1': %2").arg(path.qstring(), file.errorString());
        return KJS::UString::null();
    }
    jsSourceFile = std::make_unique<QString>(file.fileName());
    // A source ends at its first zero byte, as everywhere in the tool. Null would mean a failure.
    const QString code = QString::fromUtf8(bytes.constData());
    return code.isNull() ? KJS::UString("") : KJS::UString(code);
}

void OurKJSInterpreter::initNativeTypes()
{
    m_nativeFunctionPrototype = new JsNativeFunctionPrototype(builtinFunctionPrototype());
    m_nativeFunctionPrototype.putDirect(
        "toString", new JsNativeFunctionProtoMethodImp(builtinFunctionPrototype()), KJS::ReadOnly);
}

void OurKJSInterpreter::destroyNativeTypes()
{
    m_nativeTypes.clear();
}

void OurKJSInterpreter::addNativeType(void* key, JsNativeTypePrototypeImp* prototype)
{
    m_nativeTypes.insert(key, prototype);
}

JsNativeTypePrototypeImp* OurKJSInterpreter::nativeType(void* key) const
{
    return static_cast<JsNativeTypePrototypeImp*>(m_nativeTypes.value(key).imp());
}

} // namespace Torvix
