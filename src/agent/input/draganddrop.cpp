#include "agent/input/draganddrop.h"

#include <QGuiApplication>

#include <private/qdnd_p.h>
#include <private/qsimpledrag_p.h>

namespace Torvix::Agent {

namespace {

/** Qt has no setter for it. Naming a private member is allowed where a template is instantiated. */
template <class Tag, typename Tag::Member Pointer>
struct Grant
{
    friend typename Tag::Member member(Tag) { return Pointer; }
};

struct PlatformDrag
{
    using Member = QPlatformDrag* QDragManager::*;
    friend Member member(PlatformDrag);
};

template struct Grant<PlatformDrag, &QDragManager::m_platformDrag>;

} // namespace

void makeDragsPossible()
{
    static bool done = false;
    if (done || QGuiApplication::platformName() != QLatin1String("offscreen"))
        return;
    done = true;
    if (QDragManager* manager = QDragManager::self()) {
        auto* drag = new QSimpleDrag;
        drag->setParent(QCoreApplication::instance());
        manager->*member(PlatformDrag()) = drag;
    }
}

} // namespace Torvix::Agent
