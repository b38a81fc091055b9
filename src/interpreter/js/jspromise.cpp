#include "interpreter/js/jspromise.h"

#include "engine/error.h"
#include "engine/interpreter.h"
#include "engine/list.h"
#include "engine/object.h"
#include "engine/objectimp.h"

#include <memory>
#include <utility>

namespace Torvix {

namespace {

/** What became of a promise. */
struct Settlement
{
    bool isSettled = false;
    bool isRejected = false;
    KJS::Value reason;
};

/** One of the two functions that a promise calls. Owned by the collector, which may outlive what it tells. */
class Handler : public KJS::ObjectImp
{
public:
    Handler(std::shared_ptr<Settlement> settlement, bool isRejection)
        : m_settlement(std::move(settlement))
        , m_isRejection(isRejection)
    {
    }
    bool implementsCall() const override { return true; }
    KJS::Value call(KJS::ExecState*, KJS::Object&, const KJS::List& arguments) override
    {
        m_settlement->isSettled = true;
        m_settlement->isRejected = m_isRejection;
        if (m_isRejection)
            m_settlement->reason = arguments[0];
        return KJS::Undefined();
    }

private:
    std::shared_ptr<Settlement> m_settlement;
    bool m_isRejection;
};

} // namespace

void awaitPromise(KJS::ExecState* exec, const KJS::Value& answer)
{
    KJS::Object promise = KJS::Object::dynamicCast(answer);
    if (promise.isNull() || exec->hadException() || promise.className() != "Promise")
        return;
    KJS::Object then = KJS::Object::dynamicCast(promise.get(exec, "then"));
    if (exec->hadException() || then.isNull() || !then.implementsCall())
        return;
    const auto settlement = std::make_shared<Settlement>();
    KJS::List handlers;
    handlers.append(KJS::Object(new Handler(settlement, false)));
    handlers.append(KJS::Object(new Handler(settlement, true)));
    then.call(exec, promise, handlers);
    if (exec->hadException())
        return;
    if (!settlement->isSettled)
        exec->setException(KJS::Error::create(exec, KJS::GeneralError,
                                              "The function waits for a promise that nothing settles"));
    else if (settlement->isRejected)
        exec->setException(std::exchange(settlement->reason, KJS::Value()));
}

} // namespace Torvix
