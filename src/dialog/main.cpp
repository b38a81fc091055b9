// Shows one dialog and prints what was answered; the runner starts it when a script asks somebody and
// there is no terminal.

#include "dialog/dialogwindow.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSocketNotifier>

#include <array>
#include <cstdio>

#include <unistd.h>

namespace {

constexpr int wrongUseStatus = 4;

/** Up to the end of the line; the input stays open behind it. */
QByteArray readLine()
{
    QByteArray line;
    char next = 0;
    while (read(STDIN_FILENO, &next, 1) == 1 && next != '\n')
        line += next;
    return line;
}

/** Whoever asked has gone when its end of the input closes. */
void leaveWithInput(DialogWindow* window)
{
    auto* input = new QSocketNotifier(STDIN_FILENO, QSocketNotifier::Read, window);
    QObject::connect(input, &QSocketNotifier::activated, window, [window, input] {
        std::array<char, 256> ignored{};
        if (read(STDIN_FILENO, ignored.data(), ignored.size()) > 0)
            return;
        input->setEnabled(false);
        window->reject();
    });
}

int ask(const DialogRequest& request, bool cameByInput)
{
    DialogWindow window(request);
    if (cameByInput)
        leaveWithInput(&window);
    window.show();
    QApplication::exec();
    QJsonObject answer{{QStringLiteral("button"), window.button()}};
    if (!window.value().isNull())
        answer[QLatin1String("value")] = window.value();
    std::printf("%s\n", QJsonDocument(answer).toJson(QJsonDocument::Compact).constData());
    return 0;
}

} // namespace

int main(int argc, char** argv)
{
    QApplication application(argc, argv);
    QApplication::setApplicationName(QStringLiteral("torvixdialog"));
    QCommandLineParser parser;
    parser.setApplicationDescription(
        QStringLiteral("Shows one dialog and prints the answer as a line of JSON: {\"button\":\"ok\","
                       "\"value\":\"text\"}. Without REQUEST it is the first line of the input, and the "
                       "dialog ends with the input."));
    parser.addHelpOption();
    parser.addPositionalArgument(
        QStringLiteral("REQUEST"),
        QStringLiteral("JSON: \"kind\" (information, warning, question, input, password, choice, image, "
                       "notification), \"text\", \"buttons\" (ok, cancel, yes, no), \"value\", \"choices\", "
                       "\"file\""),
        QStringLiteral("[REQUEST]"));
    parser.process(application);
    const QStringList arguments = parser.positionalArguments();
    const bool comesByInput = arguments.isEmpty();
    QString error;
    const std::optional<DialogRequest> request =
        DialogRequest::read(comesByInput ? readLine() : arguments.first().toUtf8(), &error);
    if (!request) {
        std::fprintf(stderr, "torvixdialog: %s\n", qPrintable(error));
        return wrongUseStatus;
    }
    if (request->kind != DialogRequest::Kind::Notification)
        return ask(*request, comesByInput);
    showNotification(request->text);
    return QApplication::exec();
}
