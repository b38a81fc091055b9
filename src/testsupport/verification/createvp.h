#pragma once

#include "objectmodel/object.h"
#include "shared/base/sharedptr.h"

#include <QString>

namespace Torvix {

class ScriptArgument;
class ScriptContext;

// Script functions that write verification points and give the path: (object, name[, options]). A point
// of that name is replaced. docs/verification-points.md tells the options.
void createVP(ScriptContext* context);
void createVisualVP(ScriptContext* context);

/** Writes one with what a person would look at first: the cells of a table, else the usual properties.
 *  `given` is the object, or its name, as the script gave it. Null with an error in the context, otherwise
 *  the path. */
QString createUsualVP(ScriptContext* context, const ScriptArgument& given, const SharedPtr<Object>& object,
                      const QString& name);

/** The file of a verification point of the test case; a null string when there is none. `candidates` are
 *  the files that were looked for, the last being the one to write. */
QString findVerificationPoint(const QString& name, QStringList* candidates);

} // namespace Torvix
