#include "interpreter/base/variablewatcher.h"

#include "objectmodel/class.h"
#include "objectmodel/object.h"

namespace Torvix {

VariableWatcher::VariableWatcher() = default;
VariableWatcher::VariableWatcher(const VariableWatcher&) = default;
VariableWatcher& VariableWatcher::operator=(const VariableWatcher&) = default;
VariableWatcher::~VariableWatcher() = default;

std::vector<VariableRow> VariableWatcher::variableBindings(const QString& name) const
{
    if (name.isEmpty())
        return globalBindings();
    if (isLanguageObject(name))
        return languageObjectBindings(name);
    const SharedPtr<Object> object = m_objects.value(name);
    return object ? objectBindings(name.mid(1), object) : std::vector<VariableRow>();
}

bool VariableWatcher::objectHasComponents(SharedPtr<Object> object) const
{
    return object && !object->isNull() && object->objectClass()->numProperties() > 0;
}

void VariableWatcher::registerTorvixObject(const QString& name, SharedPtr<Object> object) const
{
    m_objects.insert(name, object);
}

std::vector<VariableRow> VariableWatcher::objectBindings(const QString& prefix,
                                                         const SharedPtr<Object>& object) const
{
    std::vector<VariableRow> rows;
    const QVector<const Property*> properties = Property::readable(object->objectClass());
    const ObjectList values = Property::getAll(object, properties).orNothing();
    for (int i = 0; i < values.size(); ++i) {
        const SharedPtr<Object>& value = values[i];
        if (!value)
            continue;
        const QString path = prefix + QLatin1Char('.') + properties[i]->name();
        if (objectHasComponents(value)) {
            registerTorvixObject(QLatin1Char('+') + path, value);
            rows.emplace_back(QLatin1Char('+') + path, VariableValue{value->className(), QString()});
        } else {
            rows.emplace_back(path, VariableValue{value->className(), value->toString()});
        }
    }
    return rows;
}

} // namespace Torvix
