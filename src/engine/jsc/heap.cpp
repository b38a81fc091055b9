#include "engine/jsc/heap.h"

#include "engine/jsc/objectaccess.h"

#include <algorithm>

namespace KJS {

Heap& Heap::self()
{
    // never destroyed: values in static objects may go after it would
    static auto* const heap = new Heap;
    return *heap;
}

void Heap::remove(Runtime* runtime)
{
    m_runtimes.erase(std::remove(m_runtimes.begin(), m_runtimes.end(), runtime), m_runtimes.end());
}

void Heap::addYoung(ObjectImp* object)
{
    ObjectAccess::setYoung(object, true);
    m_young.push_back(object);
}

void Heap::releaseYoung(std::size_t kept)
{
    // destroying one may make others young: they are met in the same walk
    for (std::size_t i = kept; i < m_young.size(); ++i) {
        ObjectImp* const object = m_young[i];
        ObjectAccess::setYoung(object, false);
        if (!ObjectAccess::isHeld(object) && ObjectAccess::isUnborn(object))
            ObjectAccess::destroy(object);
    }
    if (m_young.size() > kept)
        m_young.resize(kept);
}

void Heap::markYoung(const Runtime* runtime, JSMarkerRef marker) const
{
    for (const ObjectImp* object : m_young) {
        if (ObjectAccess::runtime(object) == runtime)
            marker->Mark(marker, ObjectAccess::reference(object));
    }
}

void Heap::forgetYoungOf(const Runtime* runtime)
{
    const auto isOfRuntime = [runtime](ObjectImp* object) {
        if (ObjectAccess::runtime(object) != runtime)
            return false;
        ObjectAccess::setYoung(object, false);
        return true;
    };
    m_young.erase(std::remove_if(m_young.begin(), m_young.end(), isOfRuntime), m_young.end());
    m_floor = std::min(m_floor, m_young.size());
}

void Heap::destroyDead()
{
    if (m_isDestroying)
        return;
    m_isDestroying = true;
    while (!m_dead.empty()) {
        ObjectImp* const object = m_dead.back();
        m_dead.pop_back();
        ObjectAccess::destroy(object);
    }
    m_isDestroying = false;
}

} // namespace KJS
