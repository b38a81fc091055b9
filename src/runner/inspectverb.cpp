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
    const ObjectFilter filter{options.type, options.name, options.visibleOnly};
    const auto show = [&filter](const QByteArray& text, int count, bool isCutOff) {
        std::fwrite(text.constData(), 1, std::size_t(text.size()), stdout);
        if (isCutOff)
            std::fputs("torvixrunner: there are more objects: the rest is left out\n", stderr);
        if (count > 0)
            return int(ExitPassed);
        return fail(ExitFailures, filter.isEmpty()
                                      ? QStringLiteral("the application has no objects")
                                      : QStringLiteral("no object matches; * stands for any characters"));
    };
    if (options.json) {
        const auto seen = inspectAsJson(filter);
        return show(QJsonDocument(seen.objects).toJson(), seen.count, seen.isCutOff);
    }
    const auto seen = inspectAsText(filter, options.properties);
    return show(seen.objects.toUtf8(), seen.count, seen.isCutOff);
}

} // namespace Torvix
