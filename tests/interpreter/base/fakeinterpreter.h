#pragma once

#include "interpreter/base/debugger.h"
#include "interpreter/base/interpreter.h"

namespace Torvix {

/** An interpreter of a language without scripts: what is left is the base. */
class FakeInterpreter : public Interpreter
{
public:
    FakeInterpreter() : Interpreter(nullptr) {}

    using Interpreter::clearCallables;
    using Interpreter::initNativeAPI;

    bool evaluate(const QString&, const QString&, bool, bool) override { return true; }
    bool call(const QString&, const ObjectList&) override { return true; }
    bool hasFunction(const QString&) const override { return false; }
    bool checkSyntax(const QString&, const QString&) override { return true; }
    std::vector<Gherkin::ScriptLocation> matchingSteps(const Gherkin::Step&) const override { return {}; }
    QStringList registeredStepPatterns(Gherkin::StepType) const override { return {}; }
    bool addGlobalFunction(const QString& name, NativeScriptFunction, const QStringList&, const QStringList&,
                           const QString&) override
    {
        added.append(name);
        return true;
    }
    bool addType(const QString& name, void*, const NativeScriptType&) override
    {
        added.append(name);
        return true;
    }
    bool addNamespace(const QString& name, const NativeScriptNamespace&) override
    {
        added.append(name);
        return true;
    }
    void initTestFunctions(TestResult*) override {}
    QString addToSearchPath(const QFileInfo& directory) override
    {
        added.append(directory.filePath());
        return QString();
    }
    int language() const override { return -1; }
    void setError(const QString&) override {}
    void setTimeLimit(int) override {}
    void interrupt() override {}

    QStringList added;
};

/** A debugger that nothing drives. */
class FakeDebugger : public Debugger
{
public:
    using Debugger::Debugger;

    int nextSourceId() const override { return 1; }
};

} // namespace Torvix
