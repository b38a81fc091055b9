#include "gherkin/scriptactions.h"

namespace Gherkin {

ScriptActions::~ScriptActions() = default;

} // namespace Gherkin
