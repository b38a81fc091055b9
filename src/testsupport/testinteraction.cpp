#include "testsupport/testinteraction.h"

#include "interpreter/base/scriptcontext.h"
#include "testsupport/reporting.h"
#include "testsupport/screenshots.h"
#include "testsupport/scriptfiles.h"
#include "testsupport/terminal.h"

#include <QFileInfo>

namespace Torvix {

namespace {

struct ButtonName
{
    int button;
    const char* name;
};

constexpr ButtonName buttonNames[] = {
    {TestInteraction::Ok, "ok"},
    {TestInteraction::Cancel, "cancel"},
    {TestInteraction::Yes, "yes"},
    {TestInteraction::No, "no"},
};

constexpr int allButtons =
    TestInteraction::Ok | TestInteraction::Cancel | TestInteraction::Yes | TestInteraction::No;

/** Null with an error in the context when the arguments are wrong or there is no terminal. */
std::unique_ptr<Terminal> beginDialog(ScriptContext* context, int least, int most, const char* usage)
{
    if (!requireArguments(context, least, most, usage))
        return nullptr;
    std::unique_ptr<Terminal> terminal = Terminal::open();
    if (!terminal)
        context->setError(
            QStringLiteral("There is no terminal to ask anybody; testInteraction.isAvailable() tells whether "
                           "there is"));
    return terminal;
}

QString argumentText(const ScriptContext& context, int index)
{
    const SharedPtr<ScriptArgument> argument = context.argument(index);
    return argument ? argument->toString() : QString();
}

/** Waits for the return key. */
void confirm(ScriptContext* context, Terminal* terminal, const QString& text)
{
    terminal->write(QStringLiteral("\n%1\nPress return to go on. ").arg(text));
    QString line;
    const bool goesOn = terminal->readLine(&line);
    context->setResult(context->toArgument(int(goesOn ? TestInteraction::Ok : TestInteraction::Cancel)));
}

void setTextOrNull(ScriptContext* context, bool entered, const QString& text)
{
    context->setResult(entered ? context->toArgument(text) : context->nullArgument());
}

QStringList namesOf(int buttons)
{
    QStringList names;
    for (const ButtonName& row : buttonNames)
        if (buttons & row.button)
            names += QLatin1String(row.name);
    return names;
}

/** The button that a line means: its name or the beginning of it; None when it is none or several. */
int buttonOf(const QString& line, int buttons)
{
    int found = TestInteraction::None;
    for (const ButtonName& row : buttonNames) {
        if (!(buttons & row.button) || line.isEmpty() ||
            !QLatin1String(row.name).startsWith(line, Qt::CaseInsensitive))
            continue;
        if (found != TestInteraction::None)
            return TestInteraction::None;
        found = row.button;
    }
    return found;
}

/** The place in the list that a line means: a number from 1, or the text itself; -1 for neither. */
int choiceOf(const QString& line, const QStringList& choices)
{
    const int byText = choices.indexOf(line);
    if (byText >= 0)
        return byText;
    bool isNumber = false;
    const int number = line.toInt(&isNumber);
    return isNumber && number >= 1 && number <= choices.size() ? number - 1 : -1;
}

} // namespace

void TestInteraction::isAvailable(ScriptContext* context)
{
    if (requireArguments(context, 0, 0, "testInteraction.isAvailable()"))
        context->setResult(context->toArgument(bool(Terminal::open())));
}

void TestInteraction::information(ScriptContext* context)
{
    if (const auto terminal = beginDialog(context, 1, 1, "testInteraction.information(text)"))
        confirm(context, terminal.get(), argumentText(*context, 0));
}

void TestInteraction::warning(ScriptContext* context)
{
    if (const auto terminal = beginDialog(context, 1, 1, "testInteraction.warning(text)"))
        confirm(context, terminal.get(), QLatin1String("Warning: ") + argumentText(*context, 0));
}

void TestInteraction::notification(ScriptContext* context)
{
    if (const auto terminal = beginDialog(context, 1, 1, "testInteraction.notification(text)"))
        terminal->write(QLatin1Char('\n') + argumentText(*context, 0) + QLatin1Char('\n'));
}

void TestInteraction::input(ScriptContext* context)
{
    const auto terminal = beginDialog(context, 1, 2, "testInteraction.input(text[, default])");
    if (!terminal)
        return;
    const QString fallback = argumentText(*context, 1);
    terminal->write(QLatin1Char('\n') + argumentText(*context, 0) +
                    (fallback.isEmpty() ? QString() : QStringLiteral(" [%1]").arg(fallback)) +
                    QLatin1String("\n> "));
    QString line;
    const bool entered = terminal->readLine(&line);
    setTextOrNull(context, entered, line.isEmpty() ? fallback : line);
}

void TestInteraction::password(ScriptContext* context)
{
    const auto terminal = beginDialog(context, 1, 1, "testInteraction.password(text)");
    if (!terminal)
        return;
    terminal->write(QLatin1Char('\n') + argumentText(*context, 0) + QLatin1String("\n> "));
    QString line;
    const bool entered = terminal->readLine(&line, Terminal::Echo::Off);
    terminal->write(QStringLiteral("\n"));
    setTextOrNull(context, entered, line);
}

void TestInteraction::question(ScriptContext* context)
{
    if (!requireArguments(context, 1, 2, "testInteraction.question(text[, buttons])"))
        return;
    int buttons = Yes | No;
    if (const SharedPtr<ScriptArgument> given = context->argument(1)) {
        buttons = given->isInteger() ? given->toInteger() : int(None);
        if (buttons <= None || buttons > allButtons) {
            context->setError(
                QStringLiteral("The buttons have to be some of testInteraction.Ok, Cancel, Yes and "
                               "No, joined by |, not '%1'")
                    .arg(given->toString()));
            return;
        }
    }
    const auto terminal = beginDialog(context, 1, 2, "testInteraction.question(text[, buttons])");
    if (!terminal)
        return;
    int answer = None;
    while (answer == None) {
        terminal->write(QStringLiteral("\n%1 (%2) ")
                            .arg(argumentText(*context, 0), namesOf(buttons).join(QLatin1Char('/'))));
        QString line;
        answer = terminal->readLine(&line) ? buttonOf(line.trimmed(), buttons) : int(Cancel);
    }
    context->setResult(context->toArgument(answer));
}

void TestInteraction::choice(ScriptContext* context)
{
    if (!requireArguments(context, 2, 2, "testInteraction.choice(text, choices)"))
        return;
    QStringList choices;
    if (context->argument(1)->isList())
        for (const SharedPtr<ScriptArgument>& each : context->argument(1)->toList())
            choices += each->toString();
    if (choices.isEmpty()) {
        context->setError(QStringLiteral("The choices have to be a list of texts"));
        return;
    }
    const auto terminal = beginDialog(context, 2, 2, "testInteraction.choice(text, choices)");
    if (!terminal)
        return;
    int chosen = -1;
    while (chosen < 0) {
        terminal->write(QLatin1Char('\n') + argumentText(*context, 0) + QLatin1Char('\n'));
        for (int i = 0; i < choices.size(); ++i)
            terminal->write(QStringLiteral("  %1  %2\n").arg(i + 1).arg(choices[i]));
        terminal->write(QStringLiteral("> "));
        QString line;
        if (!terminal->readLine(&line)) {
            context->setResult(context->nullArgument());
            return;
        }
        chosen = choiceOf(line.trimmed(), choices);
    }
    context->setResult(context->toArgument(choices[chosen]));
}

void TestInteraction::showImage(ScriptContext* context)
{
    if (!requireArguments(context, 1, 2, "testInteraction.showImage(file[, text])"))
        return;
    const QString path = findImageFile(argumentText(*context, 0));
    QString error;
    const QImage image = loadImage(path, &error);
    if (image.isNull()) {
        context->setError(error);
        return;
    }
    if (const auto terminal = beginDialog(context, 1, 2, "testInteraction.showImage(file[, text])"))
        confirm(context, terminal.get(),
                QStringLiteral("%1\nPlease look at the picture %2 (%3 x %4 pixels).")
                    .arg(argumentText(*context, 1), QFileInfo(path).absoluteFilePath())
                    .arg(image.width())
                    .arg(image.height())
                    .trimmed());
}

} // namespace Torvix
