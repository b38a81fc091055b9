// Windows are shown by a program of their own, `libexec/torvixdialog` of the installation.

#include "launcher/process/processend.h"
#include "testsupport/dialogs/dialogs.h"
#include "testsupport/testinteraction.h"
#include "testsupport/waiting.h"

#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>

#include <dlfcn.h>

namespace Torvix {

namespace {

constexpr int pollIntervalMs = 100;

const char anchor = 0;

/** Found by the place of this library. */
QString dialogProgram()
{
    Dl_info info{};
    dladdr(&anchor, &info);
    const QString library = QFileInfo(QFile::decodeName(info.dli_fname)).absolutePath();
    return QFileInfo(library + QLatin1String("/../libexec/torvixdialog")).canonicalFilePath();
}

bool isSet(const char* variable)
{
    const QByteArray value = qgetenv(variable);
    return !value.isEmpty() && value != "false";
}

QByteArray line(const QJsonObject& request)
{
    return QJsonDocument(request).toJson(QJsonDocument::Compact);
}

/** Why a program that has ended gave no answer. */
QString reasonOf(QProcess* process)
{
    if (process->error() == QProcess::FailedToStart)
        return process->errorString();
    const QString output = QString::fromLocal8Bit(process->readAllStandardError()).trimmed();
    const QString ending = process->program() + QLatin1Char(' ') + endText(endOf(*process));
    return output.isEmpty() ? ending : ending + QLatin1Char('\n') + output;
}

class WindowDialogs : public Dialogs
{
public:
    explicit WindowDialogs(const QString& program) : m_program(program) {}

    void notify(const QString& text) override
    {
        QProcess process;
        prepare(&process);
        process.setArguments({QString::fromUtf8(line(request("notification", text)))});
        process.setStandardInputFile(QProcess::nullDevice());
        // It goes on for some seconds, also when this process has ended: nobody shall wait for its streams.
        process.setStandardOutputFile(QProcess::nullDevice());
        process.setStandardErrorFile(QProcess::nullDevice());
        if (!process.startDetached())
            fail(process.errorString());
    }

    bool confirm(const QString& text, Tone tone) override
    {
        return answers(request(tone == Tone::Warning ? "warning" : "information", text, TestInteraction::Ok));
    }

    bool showImage(const QString& file, const QString& text) override
    {
        QJsonObject asked = request("image", text, TestInteraction::Ok);
        asked[QLatin1String("file")] = file;
        return answers(asked);
    }

    std::optional<QString> input(const QString& text, const QString& proposal) override
    {
        QJsonObject asked = request("input", text);
        asked[QLatin1String("value")] = proposal;
        return value(asked);
    }

    std::optional<QString> password(const QString& text) override { return value(request("password", text)); }

    int question(const QString& text, int buttons) override
    {
        return buttonOf(ask(request("question", text, buttons)));
    }

    std::optional<QString> choice(const QString& text, const QStringList& choices) override
    {
        QJsonObject asked = request("choice", text);
        asked[QLatin1String("choices")] = QJsonArray::fromStringList(choices);
        return value(asked);
    }

private:
    static QJsonObject request(const char* kind, const QString& text,
                               int buttons = TestInteraction::Ok | TestInteraction::Cancel)
    {
        return {{QStringLiteral("kind"), QLatin1String(kind)},
                {QStringLiteral("text"), text},
                {QStringLiteral("buttons"), QJsonArray::fromStringList(buttonNames(buttons))}};
    }

    static int buttonOf(const QJsonObject& answer)
    {
        const int button = buttonFromName(answer[QLatin1String("button")].toString());
        return button == TestInteraction::None ? int(TestInteraction::Cancel) : button;
    }

    bool answers(const QJsonObject& asked) { return buttonOf(ask(asked)) == TestInteraction::Ok; }

    std::optional<QString> value(const QJsonObject& asked)
    {
        const QJsonObject answer = ask(asked);
        if (buttonOf(answer) != TestInteraction::Ok)
            return {};
        return answer[QLatin1String("value")].toString();
    }

    void prepare(QProcess* process)
    {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        // That applications draw into memory does not hold for what people have to see.
        const QString platform = environment.value(QStringLiteral("QT_QPA_PLATFORM"));
        if (platform.startsWith(QLatin1String("offscreen")) || platform.startsWith(QLatin1String("minimal")))
            environment.remove(QStringLiteral("QT_QPA_PLATFORM"));
        process->setProcessEnvironment(environment);
        process->setProgram(m_program);
    }

    void fail(const QString& reason)
    {
        setError(QStringLiteral("The dialog could not be shown: %1").arg(reason.trimmed()));
    }

    /** An empty answer, which cancels, when the script is to end or the program failed. */
    QJsonObject ask(const QJsonObject& asked)
    {
        QProcess process;
        prepare(&process);
        process.start();
        process.write(line(asked) + '\n');
        // The input stays open: the window closes with it, also when this process is killed.
        while (!process.waitForFinished(pollIntervalMs) && process.state() != QProcess::NotRunning) {
            if (waitMeanwhile(0))
                continue;
            process.kill();
            process.waitForFinished();
            return {};
        }
        const QJsonObject answer = QJsonDocument::fromJson(process.readAllStandardOutput()).object();
        if (answer.isEmpty())
            fail(reasonOf(&process));
        return answer;
    }

    QString m_program;
};

} // namespace

std::unique_ptr<Dialogs> openWindowDialogs()
{
    if (isSet("CI") || (!isSet("DISPLAY") && !isSet("WAYLAND_DISPLAY")))
        return nullptr;
    const QString program = dialogProgram();
    return program.isEmpty() ? nullptr : std::make_unique<WindowDialogs>(program);
}

} // namespace Torvix
