#pragma once

#include "interpreter/base/scriptargument.h"

#include <QString>
#include <QStringList>

namespace Torvix {

class ScriptContext;

/**
 * The map of options that a script function takes as its last argument; a text instead of the map
 * stands for the option "message". Without the argument all options have their defaults.
 */
class ScriptOptions
{
public:
    ScriptOptions() = default;
    /** Reads argument `index`. False, with an error in the context, for an option that is not known. */
    bool read(ScriptContext* context, int index, const QStringList& known);

    bool has(const char* name) const;
    /** Null where there is none. */
    QString text(const char* name) const;
    bool flag(const char* name) const;
    /** Null where there is none. */
    SharedPtr<ScriptArgument> value(const char* name) const;
    /** Leaves the number where there is none. False, with an error in the context, for no whole number
     *  between least and most. */
    bool number(ScriptContext* context, const char* name, int least, int most, int* number) const;

private:
    ScriptArgument::Map m_options;
};

} // namespace Torvix
