#include "interpreter/js/steps/stepqueries.h"

#include "engine/execstate.h"
#include "engine/interpreter.h"
#include "engine/list.h"

#include <QtGlobal>

namespace Torvix {

namespace {

/** A question to a function of the step script, with what the log says when it goes wrong. */
struct Question
{
    const char* function;
    const char* missing;
    const char* notCallable;
    const char* failed;
    const char* unexpected; ///< in front of the engine's number of the type
};

// The first text lacks its closing quotation mark, as scripts' logs have always had it.
const Question matchQuestion = {"_torvixMatchSteps", "Can't find function '_torvixMatchSteps",
                                "'_torvixMatchSteps' is not a function",
                                "Error in matchingSteps: ", "Error in matchingSteps: unexpected type "};
const Question patternQuestion = {"_torvixFetchPatterns", "Can't find function '_torvixFetchPatterns'",
                                  "'_torvixFetchPatterns' is not a function",
                                  "Error in fetchPatterns: ", "Error in fetchPatterns: unexpected type "};

/** The object that is the answer; a null one when there is none. */
KJS::Object ask(KJS::ExecState* exec, const Question& question, const KJS::List& args)
{
    KJS::Object global = exec->interpreter()->globalObject();
    const KJS::Value value = global.get(exec, question.function);
    if (value.isUndefined()) {
        qWarning("%s", question.missing);
        return {};
    }
    KJS::Object function = KJS::Object::dynamicCast(value);
    if (function.isNull() || !function.implementsCall()) {
        qWarning("%s", question.notCallable);
        return {};
    }
    const KJS::Value answer = function.call(exec, global, args);
    if (exec->hadException()) {
        const KJS::Value exception = exec->exception();
        exec->clearException();
        qWarning("%s%s", question.failed, qUtf8Printable(exception.toString(exec).qstring()));
        exec->clearException(); // of the exception's toString
        return {};
    }
    const KJS::Object object = KJS::Object::dynamicCast(answer);
    if (object.isNull())
        qWarning("%s%d", question.unexpected, int(answer.dispatchType()));
    return object;
}

unsigned lengthOf(KJS::ExecState* exec, const KJS::Object& array)
{
    return array.isNull() ? 0 : array.get(exec, "length").toUInt32(exec);
}

} // namespace

std::vector<Gherkin::ScriptLocation> findMatchingSteps(KJS::ExecState* exec, const Gherkin::Step& step)
{
    const KJS::Object found =
        ask(exec, matchQuestion, {KJS::String(Gherkin::stepKeyword(step.type)), KJS::String(step.text())});
    std::vector<Gherkin::ScriptLocation> locations;
    for (unsigned i = 0; i < lengthOf(exec, found); ++i) {
        const KJS::Object place = KJS::Object::dynamicCast(found.get(exec, i));
        if (place.isNull())
            qWarning("Invalid source location at %u in matchingSteps", i);
        else
            locations.push_back({place.get(exec, "fileName").toString(exec).qstring().toStdString(),
                                 place.get(exec, "line").toInt32(exec)});
    }
    return locations;
}

QStringList findStepPatterns(KJS::ExecState* exec, Gherkin::StepType type)
{
    const KJS::Object found = ask(exec, patternQuestion, {KJS::String(Gherkin::stepKeyword(type))});
    QStringList patterns;
    for (unsigned i = 0; i < lengthOf(exec, found); ++i)
        patterns += found.get(exec, i).toString(exec).qstring();
    return patterns;
}

} // namespace Torvix
