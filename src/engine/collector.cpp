#include "engine/collector.h"

#include "engine/jsc/heap.h"
#include "engine/jsc/runtime.h"

namespace KJS {

bool Collector::collect()
{
    Heap& heap = Heap::self();
    const unsigned before = heap.destroyed();
    heap.releaseYoung(heap.floor());
    const std::vector<Runtime*> runtimes = heap.runtimes();
    for (Runtime* runtime : runtimes)
        runtime->collectGarbage();
    heap.destroyDead();
    return heap.destroyed() != before;
}

int Collector::size()
{
    return Heap::self().live();
}

} // namespace KJS
