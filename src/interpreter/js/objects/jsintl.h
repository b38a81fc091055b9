#pragma once

#include "interpreter/js/scriptobject/scriptobject.h"

namespace Torvix {

/**
 * `Intl`, for scripts that ask it for the locale and the time zone of the machine. Nothing else of
 * ECMA-402's object is there; locale-aware functions of other objects (`toLocaleString`, `localeCompare`)
 * are the engine's own.
 */
class JsIntlImp : public JsFixedObjectImp
{
public:
    explicit JsIntlImp(KJS::ExecState* exec);
};

} // namespace Torvix
