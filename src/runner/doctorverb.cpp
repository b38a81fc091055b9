#include "launcher/process/findprogram.h"
#include "runner/applications.h"
#include "runner/plugin.h"
#include "runner/runverb.h"

#include <QFileInfo>
#include <QRegularExpression>

#include <cstdio>

namespace Torvix {

namespace {

struct Finding
{
    bool fine;
    QString what;
    QString mend; ///< for a finding that is not fine
};

Finding fileFinding(const QString& path, const char* what)
{
    return {QFileInfo::exists(path), QStringLiteral("%1: %2").arg(QLatin1String(what), path),
            QStringLiteral("install Torvix anew, or set TORVIX_PREFIX to its folder")};
}

Finding pluginFinding()
{
    QString error;
    const bool loaded = LanguagePlugin::javaScript(&error) != nullptr;
    return {loaded, QStringLiteral("JavaScript plug-in"), error};
}

/** Whether the X server of a local DISPLAY, ":N" or ":N.S", listens. */
bool isThere(const QString& display)
{
    const QRegularExpressionMatch local =
        QRegularExpression(QStringLiteral("^:(\\d+)(\\.\\d+)?$")).match(display);
    return !local.hasMatch() ||
           QFileInfo::exists(QStringLiteral("/tmp/.X11-unix/X%1").arg(local.captured(1)));
}

Finding displayFinding()
{
    const QString mend = QStringLiteral("set QT_QPA_PLATFORM=offscreen, or start an X server (Xvfb)");
    const QString platform = qEnvironmentVariable("QT_QPA_PLATFORM");
    const QString display = qEnvironmentVariable("DISPLAY");
    if (!platform.isEmpty() && platform != QLatin1String("xcb"))
        return {true, QStringLiteral("applications have a display: QT_QPA_PLATFORM=%1").arg(platform), mend};
    if (!qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY") && display.isEmpty())
        return {true, QStringLiteral("applications have a display: Wayland"), mend};
    if (display.isEmpty())
        return {false, QStringLiteral("applications have a display: DISPLAY is not set"), mend};
    return {isThere(display), QStringLiteral("applications have a display: DISPLAY=%1").arg(display), mend};
}

/** Tools that single functions need; without them those say so. */
Finding toolFinding(const char* program, const char* purpose, const char* package)
{
    return {!findProgram(QLatin1String(program)).isEmpty(),
            QStringLiteral("%1, for %2 (optional)").arg(QLatin1String(program), QLatin1String(purpose)),
            QStringLiteral("apt install %1").arg(QLatin1String(package))};
}

Finding applicationFinding(const QString& program)
{
    Applications applications({});
    QString error;
    const SharedPtr<ApplicationContext> context = applications.start(program, -1, &error);
    return {context->isValid(), QStringLiteral("'%1' starts and can be tested").arg(program), error};
}

/** True when it is fine. */
bool print(const Finding& finding)
{
    std::printf("%s  %s\n", finding.fine ? "ok     " : "MISSING", qUtf8Printable(finding.what));
    if (!finding.fine)
        std::printf("         %s\n", QString(finding.mend)
                                         .replace(QLatin1String("\n"), QLatin1String("\n         "))
                                         .toUtf8()
                                         .constData());
    return finding.fine;
}

} // namespace

int doctorVerb(const DoctorOptions& options)
{
    const QString prefix = installationPrefix();
    std::printf("torvixrunner %s in %s\n", TORVIX_VERSION, qUtf8Printable(prefix));
    bool fine =
        print(fileFinding(prefix + QStringLiteral("/lib/qt5/plugins/generic/libtorvixagent.so"), "agent"));
    fine = print(pluginFinding()) && fine;
    fine = print(displayFinding()) && fine;
    print(toolFinding("ffmpeg", "video of a test", "ffmpeg"));
    print(toolFinding("tesseract", "text recognition", "tesseract-ocr"));
    if (!options.program.isEmpty())
        fine = print(applicationFinding(options.program)) && fine;
    std::puts(fine ? "Nothing is missing that is needed." : "Something is missing: see above.");
    return fine ? ExitPassed : ExitFailures;
}

} // namespace Torvix
