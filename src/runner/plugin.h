#pragma once

#include <QString>

#include <memory>

namespace Torvix {

class Interpreter;
class RunnerInterface;

/** A language plug-in that was loaded; it stays loaded until the process ends. */
class LanguagePlugin
{
public:
    /** The JavaScript plug-in of the installation. Null with one line of why it cannot be loaded. */
    static const LanguagePlugin* javaScript(QString* error);

    /** The runner is borrowed and has to outlive the interpreter. */
    std::unique_ptr<Interpreter> createInterpreter(RunnerInterface* runner) const;

private:
    using Factory = Interpreter* (*)(RunnerInterface*);
    explicit LanguagePlugin(Factory factory) : m_factory(factory) {}
    Factory m_factory;
};

/**
 * The folder of the installation: TORVIX_PREFIX, or the folder above that of this program. Sets
 * TORVIX_PREFIX when it was unset, for the libraries that read it.
 */
QString installationPrefix();

} // namespace Torvix
