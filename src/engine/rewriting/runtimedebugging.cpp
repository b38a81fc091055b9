// The variables of frames, in the debug flavour.

#include "engine/rewriting/scriptruntime_p.h"

namespace KJS::Rewriting {

namespace {

/** No hook is called, and no exception is reported, while a debugger looks around. */
class Undisturbed
{
public:
    explicit Undisturbed(FrameStack& frames)
        : m_frames(frames)
        , m_flag(frames.word(FrameStack::FlagWord))
        , m_inFlight(frames.word(FrameStack::InFlightWord))
        , m_depth(frames.depth())
    {
        m_frames.word(FrameStack::FlagWord) = 0;
    }
    ~Undisturbed()
    {
        m_frames.word(FrameStack::FlagWord) = m_flag;
        m_frames.word(FrameStack::InFlightWord) = m_inFlight;
        m_frames.setDepth(m_depth);
    }
    Undisturbed(const Undisturbed&) = delete;
    Undisturbed& operator=(const Undisturbed&) = delete;

private:
    FrameStack& m_frames;
    int32_t m_flag;
    int32_t m_inFlight;
    int m_depth;
};

} // namespace

bool ScriptRuntime::Private::hasVariables(int frame) const
{
    return flavour == Flavour::Debug && frame > 0 && frame <= frames.depth();
}

Outcome ScriptRuntime::Private::debugHelper(const char* name, const std::vector<JSValueRef>& arguments)
{
    const Undisturbed undisturbed(frames);
    ++silence;
    Outcome outcome;
    outcome.value =
        helper(asObject(context, property(context, helpers, name)), arguments, &outcome.exception);
    --silence;
    return outcome;
}

std::vector<std::vector<Variable>> ScriptRuntime::variablesAt(int frame)
{
    std::vector<std::vector<Variable>> scopes;
    if (!d->hasVariables(frame))
        return scopes;
    const Outcome outcome = d->debugHelper("variables", {d->number(Private::depthOf(frame))});
    JSObjectRef list = asObject(d->context, outcome.value);
    const auto lengthOf = [&](JSObjectRef array) {
        return static_cast<unsigned>(
            JSValueToNumber(d->context, property(d->context, array, "length"), nullptr));
    };
    for (unsigned i = 0; list && i < lengthOf(list); ++i) {
        JSObjectRef scope = asObject(d->context, element(d->context, list, i));
        std::vector<Variable> variables;
        for (unsigned k = 0; k < lengthOf(scope); ++k) {
            JSObjectRef entry = asObject(d->context, element(d->context, scope, k));
            Variable variable;
            variable.name = stringOf(d->context, element(d->context, entry, 0));
            if (JSValueToBoolean(d->context, element(d->context, entry, 2)))
                variable.value = element(d->context, entry, 1);
            variables.push_back(std::move(variable));
        }
        scopes.push_back(std::move(variables));
    }
    return scopes;
}

Outcome ScriptRuntime::setVariable(int frame, const QString& name, JSValueRef value)
{
    if (!d->hasVariables(frame))
        return {nullptr, d->makeError(QStringLiteral("Can't find variable: ") + name)};
    return d->debugHelper("setVariable",
                          {d->number(Private::depthOf(frame)), makeString(d->context, name), value});
}

Outcome ScriptRuntime::evaluateInFrame(int frame, const QString& expression)
{
    if (!d->hasVariables(frame))
        return {nullptr, d->makeError(QStringLiteral("The frame's variables are not available"))};
    JSValueRef self = thisAt(frame);
    return d->debugHelper("evaluateIn",
                          {d->number(Private::depthOf(frame)), makeString(d->context, expression),
                           self ? self : JSValueMakeUndefined(d->context)});
}

} // namespace KJS::Rewriting
