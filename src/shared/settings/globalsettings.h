#pragma once

#include "shared/settings/settings.h"

namespace Torvix {

/** The settings of an installation, in "etc" below TORVIX_PREFIX. */
class GlobalSettings : public Settings
{
public:
    enum GlobalSettingsType {
        TorvixSettings = 0, ///< "torvix.ini"
        PathsSettings = 1,  ///< "paths.ini"
    };

    explicit GlobalSettings(GlobalSettingsType type);
};

} // namespace Torvix
