#include "runner/objecttree.h"
#include "runner/runverb.h"

#include "runner/applications.h"
#include "runner/plugin.h"

#include <QJsonDocument>

#include <cstdio>

namespace Torvix {

int inspectVerb(const InspectOptions& options)
{
    installationPrefix();
    Applications applications({});
    QString error;
    const SharedPtr<ApplicationContext> context = options.attach.isEmpty()
                                                      ? applications.start(options.program, -1, &error)
                                                      : applications.attach(options.attach, -1, &error);
    if (!context->isValid())
        return fail(ExitFailures, error);
    // A freshly started application shows its first window in its own time.
    constexpr int windowTimeoutMs = 5000;
    Inspector::self()->waitForObject(QStringLiteral("{visible=true}"), windowTimeoutMs);
    const QByteArray text =
        options.json ? QJsonDocument(objectTreeJson()).toJson() : objectTreeText().toUtf8();
    std::fputs(text.constData(), stdout);
    return ExitPassed;
}

} // namespace Torvix
