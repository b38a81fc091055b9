#include "shared/input/modifier.h"
#include "shared/input/mousebutton.h"

#include <array>
#include <cstddef>

namespace Torvix {

namespace {

template <class Value>
struct Constant
{
    Value value;
    const char* name;
};

constexpr Constant<MouseButton::Value> mouseButtons[] = {
    {MouseButton::None, "None"},
    {MouseButton::LeftButton, "LeftButton"},
    {MouseButton::MiddleButton, "MiddleButton"},
    {MouseButton::RightButton, "RightButton"},
    {MouseButton::Wheel, "Wheel"},
    {MouseButton::PrimaryButton, "PrimaryButton"},
    {MouseButton::SecondaryButton, "SecondaryButton"},
    {MouseButton::XButton1, "XButton1"},
    {MouseButton::XButton2, "XButton2"},
};

constexpr Constant<Modifier::Value> modifiers[] = {
    {Modifier::None, "None"}, {Modifier::Control, "Control"}, {Modifier::Shift, "Shift"},
    {Modifier::Alt, "Alt"},   {Modifier::Win, "Win"},         {Modifier::Command, "Command"},
};

/** The values of a table, ended by -1. */
template <class Value, size_t Count>
constexpr std::array<Value, Count + 1> endedValues(const Constant<Value> (&table)[Count])
{
    std::array<Value, Count + 1> values{};
    for (size_t i = 0; i < Count; ++i)
        values[i] = table[i].value;
    values[Count] = Value(-1);
    return values;
}

template <class Value, size_t Count>
const char* nameOf(const Constant<Value> (&table)[Count], Value value)
{
    for (const Constant<Value>& constant : table) {
        if (constant.value == value)
            return constant.name;
    }
    return nullptr;
}

} // namespace

const MouseButton::Value* MouseButton::values()
{
    static constexpr auto all = endedValues(mouseButtons);
    return all.data();
}

const char* MouseButton::valueAsString(Value value)
{
    return nameOf(mouseButtons, value);
}

const Modifier::Value* Modifier::values()
{
    static constexpr auto all = endedValues(modifiers);
    return all.data();
}

const char* Modifier::valueAsString(Value value)
{
    return nameOf(modifiers, value);
}

} // namespace Torvix
