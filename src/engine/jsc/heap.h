#pragma once

#include "engine/jsc/marker.h"

#include <cstddef>
#include <vector>

namespace KJS {

class ObjectImp;
class Runtime;

/**
 * The C++ objects of all interpreters, as far as the engine's own collector does not see to them.
 *
 * Young objects are those that no Value holds yet, or no longer: native code may have a plain pointer
 * to them, so that they are kept until it has returned to script. Dead ones are those whose script
 * half was collected: they are destroyed later, at a safe point, since destructors run arbitrary code.
 */
class Heap
{
public:
    static Heap& self();

    const std::vector<Runtime*>& runtimes() const { return m_runtimes; }
    void add(Runtime* runtime) { m_runtimes.push_back(runtime); }
    void remove(Runtime* runtime);

    void addYoung(ObjectImp* object);
    std::size_t youngCount() const { return m_young.size(); }
    /** Lets go of the young objects behind the first `kept`; what nothing can reach is destroyed. */
    void releaseYoung(std::size_t kept);
    void markYoung(const Runtime* runtime, JSMarkerRef marker) const;
    /** Before its end: no young object is that runtime's any more. */
    void forgetYoungOf(const Runtime* runtime);

    /** The young objects below are those of native code that is still running. */
    std::size_t floor() const { return m_floor; }
    void setFloor(std::size_t floor) { m_floor = floor; }

    void addDead(ObjectImp* object) { m_dead.push_back(object); }
    bool hasDead() const { return !m_dead.empty(); }
    void destroyDead();

    void objectMade() { ++m_live; }
    void objectDestroyed()
    {
        --m_live;
        ++m_destroyed;
    }
    int live() const { return m_live; }
    unsigned destroyed() const { return m_destroyed; }

private:
    std::vector<Runtime*> m_runtimes;
    std::vector<ObjectImp*> m_young;
    std::vector<ObjectImp*> m_dead;
    std::size_t m_floor = 0;
    int m_live = 0;
    unsigned m_destroyed = 0;
    bool m_isDestroying = false;
};

/** While it lives, ObjectImp::mark marks for that collection. */
class MarkingScope
{
public:
    explicit MarkingScope(JSMarkerRef marker);
    ~MarkingScope();
    MarkingScope(const MarkingScope&) = delete;
    MarkingScope& operator=(const MarkingScope&) = delete;
};

} // namespace KJS
