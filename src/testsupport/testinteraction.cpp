#include "testsupport/testinteraction.h"

#include "interpreter/base/scriptcontext.h"
#include "testsupport/dialogs/dialogs.h"
#include "testsupport/reporting.h"
#include "testsupport/screen/screenshots.h"
#include "testsupport/scriptfiles.h"
#include "testsupport/waiting.h"

#include <QFileInfo>
#include <QImage>

namespace Torvix {

namespace {

constexpr int allButtons =
    TestInteraction::Ok | TestInteraction::Cancel | TestInteraction::Yes | TestInteraction::No;

/** Null, with an error in the context, when nobody can be asked. Arguments are checked before. */
std::unique_ptr<Dialogs> openDialogs(ScriptContext* context)
{
    std::unique_ptr<Dialogs> dialogs = Dialogs::open();
    if (!dialogs)
        context->setError(QStringLiteral("There is neither a terminal nor a display to ask anybody; "
                                         "testInteraction.isAvailable() tells whether there is"));
    return dialogs;
}

QString argumentText(const ScriptContext& context, int index)
{
    const SharedPtr<ScriptArgument> argument = optionalArgument(context, index);
    return argument ? argument->toString() : QString();
}

/** The first argument, which has to be there. */
QString text(const ScriptContext& context)
{
    return context.argument(0)->toString();
}

void setAnswer(ScriptContext* context, const Dialogs& dialogs, const SharedPtr<ScriptArgument>& answer)
{
    if (failIfInterrupted(context))
        return;
    if (dialogs.error().isEmpty())
        context->setResult(answer);
    else
        context->setError(dialogs.error());
}

void setAnswer(ScriptContext* context, const Dialogs& dialogs, const std::optional<QString>& answer)
{
    setAnswer(context, dialogs, answer ? context->toArgument(*answer) : context->nullArgument());
}

void setConfirmation(ScriptContext* context, const Dialogs& dialogs, bool confirmed)
{
    const int button = confirmed ? TestInteraction::Ok : TestInteraction::Cancel;
    setAnswer(context, dialogs, context->toArgument(button));
}

void confirm(ScriptContext* context, Dialogs::Tone tone, const char* usage)
{
    if (!requireArguments(context, 1, 1, usage))
        return;
    if (const auto dialogs = openDialogs(context)) {
        const bool confirmed = dialogs->confirm(text(*context), tone);
        setConfirmation(context, *dialogs, confirmed);
    }
}

/** False, with an error in the context, for a value that is no combination of buttons. */
bool readButtons(ScriptContext* context, int* buttons)
{
    const SharedPtr<ScriptArgument> given = optionalArgument(*context, 1);
    if (!given)
        return true;
    *buttons = given->isInteger() ? given->toInteger() : int(TestInteraction::None);
    if (*buttons > TestInteraction::None && *buttons <= allButtons)
        return true;
    context->setError(QStringLiteral("The buttons have to be some of testInteraction.Ok, Cancel, Yes and "
                                     "No, joined by |, not '%1'")
                          .arg(given->toString()));
    return false;
}

} // namespace

void TestInteraction::isAvailable(ScriptContext* context)
{
    if (requireArguments(context, 0, 0, "testInteraction.isAvailable()"))
        context->setResult(context->toArgument(bool(Dialogs::open())));
}

void TestInteraction::information(ScriptContext* context)
{
    confirm(context, Dialogs::Tone::Information, "testInteraction.information(text)");
}

void TestInteraction::warning(ScriptContext* context)
{
    confirm(context, Dialogs::Tone::Warning, "testInteraction.warning(text)");
}

void TestInteraction::notification(ScriptContext* context)
{
    if (!requireArguments(context, 1, 1, "testInteraction.notification(text)"))
        return;
    const auto dialogs = openDialogs(context);
    if (!dialogs)
        return;
    dialogs->notify(text(*context));
    if (!dialogs->error().isEmpty())
        context->setError(dialogs->error());
}

void TestInteraction::input(ScriptContext* context)
{
    if (!requireArguments(context, 1, 2, "testInteraction.input(text[, default])"))
        return;
    if (const auto dialogs = openDialogs(context)) {
        const std::optional<QString> entered = dialogs->input(text(*context), argumentText(*context, 1));
        setAnswer(context, *dialogs, entered);
    }
}

void TestInteraction::password(ScriptContext* context)
{
    if (!requireArguments(context, 1, 1, "testInteraction.password(text)"))
        return;
    if (const auto dialogs = openDialogs(context)) {
        const std::optional<QString> entered = dialogs->password(text(*context));
        setAnswer(context, *dialogs, entered);
    }
}

void TestInteraction::question(ScriptContext* context)
{
    int buttons = Yes | No;
    if (!requireArguments(context, 1, 2, "testInteraction.question(text[, buttons])") ||
        !readButtons(context, &buttons))
        return;
    if (const auto dialogs = openDialogs(context)) {
        const int answer = dialogs->question(text(*context), buttons);
        setAnswer(context, *dialogs, context->toArgument(answer));
    }
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
    if (const auto dialogs = openDialogs(context)) {
        const std::optional<QString> chosen = dialogs->choice(text(*context), choices);
        setAnswer(context, *dialogs, chosen);
    }
}

void TestInteraction::showImage(ScriptContext* context)
{
    if (!requireArguments(context, 1, 2, "testInteraction.showImage(file[, text])"))
        return;
    const QString path = findImageFile(text(*context));
    QString error;
    if (loadImage(path, &error).isNull()) {
        context->setError(error);
        return;
    }
    if (const auto dialogs = openDialogs(context)) {
        const bool confirmed =
            dialogs->showImage(QFileInfo(path).absoluteFilePath(), argumentText(*context, 1));
        setConfirmation(context, *dialogs, confirmed);
    }
}

} // namespace Torvix
