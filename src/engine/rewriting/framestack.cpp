#include "engine/rewriting/framestack.h"

#include <cstdlib>
#include <new>

namespace KJS::Rewriting {

namespace {

int32_t* makeArray()
{
    void* memory = std::calloc(FrameStack::capacity, sizeof(int32_t));
    if (!memory)
        throw std::bad_alloc();
    return static_cast<int32_t*>(memory);
}

JSObjectRef makeTypedArray(JSContextRef context, int32_t* memory)
{
    return JSObjectMakeTypedArrayWithBytesNoCopy(
        context, kJSTypedArrayTypeInt32Array, memory, FrameStack::capacity * sizeof(int32_t),
        [](void*, void*) {}, nullptr, nullptr);
}

} // namespace

void FrameStack::Free::operator()(int32_t* memory) const
{
    std::free(memory);
}

FrameStack::FrameStack() : m_slots(makeArray()), m_functions(makeArray())
{
    setDepth(0);
}

int FrameStack::push(int functionId)
{
    const int frame = depth() + 1;
    setDepth(frame);
    if (inRange(frame)) {
        m_slots[base + frame] = 0;
        m_functions[base + frame] = functionId;
    }
    return frame;
}

void FrameStack::setLine(int frame, int line)
{
    if (inRange(frame))
        m_slots[base + frame] = line * 2;
}

JSObjectRef FrameStack::makeSlotArray(JSContextRef context)
{
    return makeTypedArray(context, m_slots.get());
}

JSObjectRef FrameStack::makeFunctionArray(JSContextRef context)
{
    return makeTypedArray(context, m_functions.get());
}

} // namespace KJS::Rewriting
