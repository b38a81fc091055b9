#pragma once

#include "interpreter/js/scriptobject/scriptobject.h"

namespace Torvix {

/** `torvixinfo`: the version of the script API and what the runner knows of the test under way. */
class JsTorvixInfoImp : public WithProperties<JsTorvixInfoImp, JsFixedObjectImp>
{
public:
    static const JsPropertyRow<JsTorvixInfoImp> properties[];

    explicit JsTorvixInfoImp(KJS::ExecState* exec);

    /** The test case's script when the interpreter was made. */
    const QString& scriptAtStart() const { return m_scriptAtStart; }
    const QString& folderAtStart() const { return m_folderAtStart; }

private:
    QString m_scriptAtStart;
    QString m_folderAtStart; ///< what the constant `testCase` holds
};

} // namespace Torvix
