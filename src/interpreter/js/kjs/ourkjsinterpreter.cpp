#include "interpreter/js/kjs/ourkjsinterpreter.h"

#include <QDir>
#include <QFile>
#include <QStringList>

namespace Torvix {

std::unique_ptr<QString> jsSourceFile;

QString callBackIdentifier(const KJS::ObjectImp* function)
{
    return QStringLiteral("CallBack|0x%1").arg(quintptr(function), 0, 16);
}

OurKJSInterpreter::OurKJSInterpreter(const KJS::Object& global) : KJS::Interpreter(global) {}

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

void OurKJSInterpreter::destroyNativeTypes()
{
    m_nativeTypes.clear();
}

QString OurKJSInterpreter::registerCallBack(const KJS::Object& function)
{
    const QString identifier = callBackIdentifier(function.imp());
    m_callBacks.insert(identifier, function);
    return identifier;
}

QString OurKJSInterpreter::unregisterCallBack(const KJS::Object& function)
{
    const QString identifier = callBackIdentifier(function.imp());
    return m_callBacks.remove(identifier) > 0 ? identifier : QString();
}

OurKJSInterpreter::ExecStateScope::ExecStateScope(KJS::ExecState* exec) : m_interpreter(ourInterpreter(exec))
{
    m_interpreter->m_execStates.push(exec);
}

} // namespace Torvix
