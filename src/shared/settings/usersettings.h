#pragma once

#include "shared/settings/settings.h"

namespace Torvix {

/** The settings of one user, in Settings::userSettingsDir(). */
class UserSettings : public Settings
{
public:
    enum UserSettingsType {
        ServerSettings = 0,          ///< "server.ini"
        TkWrapperSettings = 1,       ///< "tkwrapper.ini"
        WebWrapperSettings = 2,      ///< "webwrapper.ini"
        PathsSettings = 3,           ///< "paths.ini"
        OcrSettings = 4,             ///< "ocr.ini"
        TrialHubCommandSettings = 5, ///< "trialhubcmd.ini"
    };

    explicit UserSettings(UserSettingsType type);
};

} // namespace Torvix
