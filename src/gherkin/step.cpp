#include "gherkin/step.h"

namespace Gherkin {

QString stepKeyword(StepType type)
{
    switch (type) {
    case Given:
        return QStringLiteral("Given");
    case When:
        return QStringLiteral("When");
    case Then:
        return QStringLiteral("Then");
    }
    return {};
}

QString Step::text() const
{
    return lineText.mid(textOffset);
}

QString Step::keyword() const
{
    return lineText.left(textOffset);
}

} // namespace Gherkin
