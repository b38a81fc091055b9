#include "testsupport/dialogs/dialogs.h"

#include "testsupport/testinteraction.h"

namespace Torvix {

namespace {

struct ButtonName
{
    int button;
    const char* name;
};

constexpr ButtonName names[] = {
    {TestInteraction::Ok, "ok"},
    {TestInteraction::Cancel, "cancel"},
    {TestInteraction::Yes, "yes"},
    {TestInteraction::No, "no"},
};

} // namespace

Dialogs::~Dialogs() = default;

std::unique_ptr<Dialogs> Dialogs::open()
{
    std::unique_ptr<Dialogs> dialogs = openTerminalDialogs();
    return dialogs ? std::move(dialogs) : openWindowDialogs();
}

QStringList buttonNames(int buttons)
{
    QStringList all;
    for (const ButtonName& row : names)
        if (buttons & row.button)
            all += QLatin1String(row.name);
    return all;
}

int buttonFromName(const QString& name)
{
    for (const ButtonName& row : names)
        if (name == QLatin1String(row.name))
            return row.button;
    return TestInteraction::None;
}

} // namespace Torvix
