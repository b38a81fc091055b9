#include "shared/settings/usersettings.h"

namespace Torvix {

namespace {

/** The empty name for a value that is no type: such a store is empty and cannot be written. */
QString fileOf(UserSettings::UserSettingsType type)
{
    switch (type) {
    case UserSettings::ServerSettings:
        return QStringLiteral("server.ini");
    case UserSettings::TkWrapperSettings:
        return QStringLiteral("tkwrapper.ini");
    case UserSettings::WebWrapperSettings:
        return QStringLiteral("webwrapper.ini");
    case UserSettings::PathsSettings:
        return QStringLiteral("paths.ini");
    case UserSettings::OcrSettings:
        return QStringLiteral("ocr.ini");
    case UserSettings::TrialHubCommandSettings:
        return QStringLiteral("trialhubcmd.ini");
    }
    return {};
}

} // namespace

UserSettings::UserSettings(UserSettingsType type) : Settings(userSettingsDir(), fileOf(type)) {}

} // namespace Torvix
