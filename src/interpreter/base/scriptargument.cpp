#include "interpreter/base/scriptargument.h"

#include "objectmodel/object.h"
#include "objectmodel/objectname.h"

namespace Torvix {

QString ScriptArgument::toRealName() const
{
    if (!isMap())
        return toString();
    ObjectName name;
    for (const auto& [property, value] : toMap())
        name.set(property, value->toPropertyValue());
    return name.toString();
}

QString ScriptArgument::callableIdentifier() const
{
    return QString();
}

QString ScriptArgument::regularExpression() const
{
    return QString();
}

PropertyValue ScriptArgument::toPropertyValue() const
{
    const QString pattern = regularExpression();
    if (!pattern.isNull())
        return PropertyValue(pattern, PropertyValue::RegularExpression, PropertyValue::String);
    if (isMap())
        return PropertyValue(toRealName(), PropertyValue::Exact, PropertyValue::Name);
    if (isObject())
        return PropertyValue(toObject()->realName().orNothing(), PropertyValue::Exact, PropertyValue::Name);
    if (isNumber())
        return PropertyValue(toString(), PropertyValue::Exact, PropertyValue::Number);
    if (isBoolean())
        return PropertyValue(toString(), PropertyValue::Exact, PropertyValue::Boolean);
    return PropertyValue(toString(), PropertyValue::Exact, PropertyValue::String);
}

} // namespace Torvix
