#pragma once

#include "engine/interpreter.h"

#include <QFileInfo>
#include <QMap>
#include <QString>
#include <QVector>

#include <memory>

namespace Torvix {

class JsNativeTypePrototypeImp;

/** Name of the file whose text the engine is about to parse; empty between uses. Who has the engine
 *  parse a file sets it just before, and the debugger takes it and binds it to the source id. */
extern std::unique_ptr<QString> jsSourceFile;

/** The engine's interpreter with our modules and native types. */
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
    void addNativeType(void* key, JsNativeTypePrototypeImp* prototype);
    /** Null for an unknown key. */
    JsNativeTypePrototypeImp* nativeType(void* key) const;

private:
    void initNativeTypes();
    void destroyNativeTypes();

    QMap<void*, KJS::Object> m_nativeTypes; ///< holds the prototypes, whatever scripts delete
    QVector<QFileInfo> m_searchPath;
    KJS::Object m_nativeFunctionPrototype;
};

/** The interpreter that this state belongs to. */
inline OurKJSInterpreter* ourInterpreter(KJS::ExecState* exec)
{
    return static_cast<OurKJSInterpreter*>(exec->interpreter());
}

} // namespace Torvix
