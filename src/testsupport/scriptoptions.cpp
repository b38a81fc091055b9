#include "testsupport/scriptoptions.h"

#include "interpreter/base/scriptcontext.h"
#include "testsupport/reporting.h"

namespace Torvix {

bool ScriptOptions::read(ScriptContext* context, int index, const QStringList& known)
{
    const SharedPtr<ScriptArgument> argument = optionalArgument(*context, index);
    m_options.clear();
    if (!argument)
        return true;
    if (argument->isMap())
        m_options = argument->toMap();
    else
        m_options[QStringLiteral("message")] = argument;
    for (const auto& option : m_options) {
        if (known.contains(option.first))
            continue;
        context->setError(QStringLiteral("There is no option '%1' here, only %2")
                              .arg(option.first, known.join(QLatin1String(", "))));
        return false;
    }
    return true;
}

bool ScriptOptions::has(const char* name) const
{
    return bool(value(name));
}

SharedPtr<ScriptArgument> ScriptOptions::value(const char* name) const
{
    const auto option = m_options.find(QLatin1String(name));
    return option == m_options.end() ? SharedPtr<ScriptArgument>() : option->second;
}

QString ScriptOptions::text(const char* name) const
{
    const SharedPtr<ScriptArgument> option = value(name);
    return option ? option->toString() : QString();
}

bool ScriptOptions::flag(const char* name) const
{
    const SharedPtr<ScriptArgument> option = value(name);
    return option && option->toBoolean();
}

bool ScriptOptions::number(ScriptContext* context, const char* name, int least, int most, int* number) const
{
    const SharedPtr<ScriptArgument> option = value(name);
    if (!option)
        return true;
    if (option->isInteger() && option->toInteger() >= least && option->toInteger() <= most) {
        *number = option->toInteger();
        return true;
    }
    context->setError(QStringLiteral("The option '%1' has to be a whole number from %2 to %3, not '%4'")
                          .arg(QLatin1String(name))
                          .arg(least)
                          .arg(most)
                          .arg(option->toString()));
    return false;
}

} // namespace Torvix
