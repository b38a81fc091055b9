#include "testsupport/screen/screensearch.h"

#include "interpreter/base/scriptcontext.h"
#include "objectmodel/inspector.h"
#include "testsupport/screen/screenshots.h"
#include "testsupport/screen/textrecognition.h"
#include "testsupport/scriptfiles.h"
#include "testsupport/waiting.h"

#include <QElapsedTimer>

namespace Torvix {

namespace {

constexpr double pauseBetweenLooksMs = 100;
constexpr int longestTimeoutMs = 24 * 60 * 60 * 1000;

} // namespace

QStringList imageSearchOptions()
{
    return {QStringLiteral("tolerance"), QStringLiteral("differingPixels")};
}

QStringList textSearchOptions()
{
    return {QStringLiteral("language"), QStringLiteral("ignoreCase")};
}

bool ScreenSearch::read(ScriptContext* context, int index, const QStringList& known, int timeoutMs)
{
    m_timeoutMs = timeoutMs;
    if (!m_options.read(context, index,
                        known + QStringList{QStringLiteral("timeout"), QStringLiteral("object")}) ||
        !m_options.number(context, "timeout", 0, longestTimeoutMs, &m_timeoutMs) ||
        !m_options.number(context, "tolerance", 0, 255, &m_tolerance.perChannel) ||
        !m_options.number(context, "differingPixels", 0, 1'000'000'000, &m_tolerance.differingPixels))
        return false;
    if (m_options.has("language"))
        m_language = m_options.text("language");
    if (const SharedPtr<ScriptArgument> object = m_options.value("object")) {
        m_object = object->toObject();
        if (!m_object) {
            context->setError(QStringLiteral("The option 'object' has to be an object of the application"));
            return false;
        }
    }
    return true;
}

bool ScreenSearch::forImage(ScriptContext* context, const QString& file)
{
    QString error;
    m_wanted = loadImage(findImageFile(file), &error);
    if (m_wanted.isNull())
        context->setError(error);
    return !m_wanted.isNull();
}

void ScreenSearch::forText(const QString& text)
{
    m_isText = true;
    m_wantedText = text;
}

bool ScreenSearch::look(ScriptContext* context)
{
    QString error;
    m_view.image = m_object ? grabObject(m_object, &error) : grabDesktop(&error);
    const Result<QRect> bounds = m_object ? Inspector::self()->globalBounds(m_object) : QRect();
    if (error.isEmpty())
        error = bounds.error();
    m_view.origin = bounds.orNothing().topLeft();
    if (!error.isEmpty())
        context->setError(error);
    return error.isEmpty();
}

QRect ScreenSearch::onDesktop(const QRect& place) const
{
    // On a scaled desktop a picture has more pixels than the desktop, on which one clicks.
    const double ratio = m_view.image.devicePixelRatio();
    return {(QPointF(place.topLeft()) / ratio).toPoint() + m_view.origin,
            (QSizeF(place.size()) / ratio).toSize()};
}

QVector<QRect> ScreenSearch::findInView(ScriptContext* context)
{
    QVector<QRect> places;
    if (m_isText) {
        const RecognizedText read = recognizeText(m_view.image, m_language);
        if (!read.error.isEmpty())
            context->setError(read.error);
        m_seenText = read.text();
        m_seenLines = read.lines();
        for (RecognizedLine& line : m_seenLines)
            line.place = onDesktop(line.place);
        places =
            read.find(m_wantedText, m_options.flag("ignoreCase") ? Qt::CaseInsensitive : Qt::CaseSensitive);
    } else {
        places = findImage(m_view.image, m_wanted, m_tolerance);
    }
    for (QRect& place : places)
        place = onDesktop(place);
    return places;
}

QVector<QRect> ScreenSearch::run(ScriptContext* context, bool present)
{
    QElapsedTimer timer;
    timer.start();
    for (;;) {
        if (!look(context))
            return {};
        const QVector<QRect> places = findInView(context);
        if (!context->errorMessage().isEmpty() || places.isEmpty() != present ||
            timer.elapsed() >= m_timeoutMs)
            return places;
        if (!waitMeanwhile(pauseBetweenLooksMs) && failIfInterrupted(context))
            return {};
    }
}

} // namespace Torvix
