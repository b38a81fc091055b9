#include "shared/settings/globalsettings.h"

#include "shared/host/environment.h"

namespace Torvix {

namespace {

/** The empty name for a value that is no type: such a store is empty and cannot be written. */
QString fileOf(GlobalSettings::GlobalSettingsType type)
{
    switch (type) {
    case GlobalSettings::TorvixSettings:
        return QStringLiteral("torvix.ini");
    case GlobalSettings::PathsSettings:
        return QStringLiteral("paths.ini");
    }
    return {};
}

QString directory()
{
    return QString::fromStdString(Environment::getVariable("TORVIX_PREFIX")) + QLatin1String("/etc");
}

} // namespace

GlobalSettings::GlobalSettings(GlobalSettingsType type) : Settings(directory(), fileOf(type)) {}

} // namespace Torvix
