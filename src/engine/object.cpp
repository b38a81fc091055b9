#include "engine/object.h"

#include "engine/reference.h"

namespace KJS {

Object Object::dynamicCast(const Value& value)
{
    return value.isObject() ? Object(value) : Object();
}

void Object::put(ExecState* exec, unsigned index, const Value& value, int attributes)
{
    if (attributes == None)
        imp()->putIndex(exec, index, value);
    else
        imp()->put(exec, Identifier::from(index), value, attributes);
}

ReferenceList Object::propList(ExecState* exec, bool recursive) const
{
    return imp()->propList(exec, recursive);
}

const List& List::empty()
{
    static const List list;
    return list;
}

Value List::at(int index) const
{
    return index >= 0 && index < size() ? m_values[static_cast<std::size_t>(index)] : Value(Undefined());
}

Object Reference::getBase(ExecState*) const
{
    return m_base;
}

Identifier Reference::getPropertyName(ExecState*) const
{
    return m_name;
}

Value Reference::getValue(ExecState* exec) const
{
    return m_base.isNull() ? Value(Undefined()) : m_base.get(exec, m_name);
}

void Reference::putValue(ExecState* exec, const Value& value)
{
    if (!m_base.isNull())
        m_base.put(exec, m_name, value);
}

bool Reference::deleteValue(ExecState* exec)
{
    return m_base.isNull() || m_base.deleteProperty(exec, m_name);
}

} // namespace KJS
