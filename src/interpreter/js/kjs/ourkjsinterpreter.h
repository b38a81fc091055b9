#pragma once

#include "engine/interpreter.h"

#include <QFileInfo>
#include <QMap>
#include <QStack>
#include <QString>
#include <QVector>

#include <memory>

namespace Torvix {

/** Name of the file whose text the engine is about to parse; empty between uses. Who has the engine
 *  parse a file sets it just before, and the debugger takes it and binds it to the source id. */
extern std::unique_ptr<QString> jsSourceFile;

/** Identifier under which a script function is registered for later calls; stable for one object. */
QString callBackIdentifier(const KJS::ObjectImp* function);

/** The engine's interpreter with our modules and native types, and what every room needs of the calls
 *  in progress: the state of the innermost, and the script functions kept for later ones. */
class OurKJSInterpreter : public KJS::Interpreter
{
public:
    explicit OurKJSInterpreter(const KJS::Object& global);
    ~OurKJSInterpreter() override;

    /** A file of the current directory wins over one in the search path. */
    KJS::UString searchModule(const KJS::UString& name, KJS::UString* error) override;
    KJS::UString loadModuleCode(const KJS::UString& path, KJS::UString* error) override;

    /** Appends a directory, also when it is there already. */
    void addToSearchPath(const QFileInfo& directory) { m_searchPath.append(directory); }

    /** What every native function has as its prototype. */
    KJS::Object nativeFunctionPrototype() const { return m_nativeFunctionPrototype; }
    void setNativeFunctionPrototype(const KJS::Object& prototype) { m_nativeFunctionPrototype = prototype; }
    void addNativeType(void* key, const KJS::Object& prototype) { m_nativeTypes.insert(key, prototype); }
    /** The type's prototype; null for an unknown key. */
    KJS::ObjectImp* nativeType(void* key) const { return m_nativeTypes.value(key).imp(); }

    /** Keeps a script function so that JsInterpreter::call() finds it by the identifier that is returned. */
    QString registerCallBack(const KJS::Object& function);
    /** The identifier; null when it was not registered. */
    QString unregisterCallBack(const KJS::Object& function);
    /** Null for an unknown identifier. */
    KJS::Object callBack(const QString& identifier) const { return m_callBacks.value(identifier); }
    void clearCallBacks() { m_callBacks.clear(); }

    /** State of the innermost object-model call in progress; null when there is none. */
    KJS::ExecState* innermostCall() const { return m_execStates.isEmpty() ? nullptr : m_execStates.top(); }

    /** Marks the object-model call in progress: a script function that is called back meanwhile runs
     *  on the call's state. */
    class ExecStateScope
    {
    public:
        explicit ExecStateScope(KJS::ExecState* exec);
        ExecStateScope(const ExecStateScope&) = delete;
        ExecStateScope& operator=(const ExecStateScope&) = delete;
        ~ExecStateScope() { m_interpreter->m_execStates.pop(); }

    private:
        OurKJSInterpreter* m_interpreter;
    };

private:
    void destroyNativeTypes();

    QMap<void*, KJS::Object> m_nativeTypes; ///< holds the prototypes, whatever scripts delete
    QVector<QFileInfo> m_searchPath;
    KJS::Object m_nativeFunctionPrototype;
    QMap<QString, KJS::Object> m_callBacks;
    QStack<KJS::ExecState*> m_execStates;
};

/** The interpreter that this state belongs to. */
inline OurKJSInterpreter* ourInterpreter(KJS::ExecState* exec)
{
    return static_cast<OurKJSInterpreter*>(exec->interpreter());
}

} // namespace Torvix
