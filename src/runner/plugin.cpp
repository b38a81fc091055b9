#include "runner/plugin.h"

#include "interpreter/base/interpreter.h"

#include <QCoreApplication>
#include <QDir>
#include <QLibrary>

namespace Torvix {

const LanguagePlugin* LanguagePlugin::javaScript(QString* error)
{
    static std::unique_ptr<LanguagePlugin> loaded;
    if (loaded)
        return loaded.get();
    QLibrary library(installationPrefix() + QStringLiteral("/lib/libtorvixjs.so"));
    library.setLoadHints(QLibrary::PreventUnloadHint);
    const auto factory = reinterpret_cast<Factory>(library.resolve("createInterpreter"));
    if (!factory) {
        *error = QStringLiteral("The JavaScript plug-in cannot be loaded: %1").arg(library.errorString());
        return nullptr;
    }
    loaded.reset(new LanguagePlugin(factory));
    return loaded.get();
}

std::unique_ptr<Interpreter> LanguagePlugin::createInterpreter(RunnerInterface* runner) const
{
    return std::unique_ptr<Interpreter>(m_factory(runner));
}

QString installationPrefix()
{
    const QString set = qEnvironmentVariable("TORVIX_PREFIX");
    if (!set.isEmpty())
        return set;
    const QString found = QDir::cleanPath(QCoreApplication::applicationDirPath() + QStringLiteral("/.."));
    qputenv("TORVIX_PREFIX", found.toUtf8());
    return found;
}

} // namespace Torvix
