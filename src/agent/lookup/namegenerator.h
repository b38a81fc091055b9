#pragma once

#include "protocol/namecondition.h"

class QObject;

namespace Torvix::Agent {

/**
 * A real name that finds this object now: class and object name, else its text, then its window and
 * container; an `occurrence` only where nothing else tells it from the others.
 */
Protocol::NameConditions realNameOf(QObject* object);

} // namespace Torvix::Agent
