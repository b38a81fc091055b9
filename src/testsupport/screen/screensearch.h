#pragma once

#include "objectmodel/object.h"
#include "shared/base/sharedptr.h"
#include "testsupport/screen/imagesearch.h"
#include "testsupport/screen/textrecognition.h"
#include "testsupport/scriptoptions.h"

#include <QImage>
#include <QPoint>
#include <QRect>
#include <QString>
#include <QVector>

namespace Torvix {

class ScriptContext;

/** One look at the screen, or at an object on it. */
struct ScreenView
{
    QImage image;
    QPoint origin; ///< of the picture, on the screen
};

/** A search for a picture or a text on the screen, as script functions describe it by options. */
class ScreenSearch
{
public:
    /**
     * Reads the options at `index`; `timeoutMs` holds when none is given. Options of all searches are
     * "timeout" and "object"; `known` are those beside. False with an error in the context.
     */
    bool read(ScriptContext* context, int index, const QStringList& known, int timeoutMs);

    /** Searches for an image file; false with an error in the context. */
    bool forImage(ScriptContext* context, const QString& file);
    /** Searches for a text, or with an empty one for all of it. */
    void forText(const QString& text);

    /**
     * Looks until it is found (or until it is gone, with `present` false) or the time is over.
     * @return where on the screen it is; an error is in the context
     */
    QVector<QRect> run(ScriptContext* context, bool present);

    const ScriptOptions& options() const { return m_options; }
    /** The last look, and the picture that was searched for; null when there is none. */
    const ScreenView& view() const { return m_view; }
    const QImage& wanted() const { return m_wanted; }
    /** The text of the last look, and its lines with their places on the screen. */
    const QString& seenText() const { return m_seenText; }
    const QVector<RecognizedLine>& seenLines() const { return m_seenLines; }

private:
    bool look(ScriptContext* context);
    /** Where one clicks, of a place in the picture that was looked at. */
    QRect onDesktop(const QRect& place) const;
    QVector<QRect> findInView(ScriptContext* context);

    ScriptOptions m_options;
    int m_timeoutMs = 0;
    SharedPtr<Object> m_object;
    ImageTolerance m_tolerance;
    QImage m_wanted;
    QString m_wantedText;
    bool m_isText = false;
    QString m_language = QStringLiteral("eng");
    ScreenView m_view;
    QString m_seenText;
    QVector<RecognizedLine> m_seenLines;
};

/** Options that only one kind of search has. */
QStringList imageSearchOptions();
QStringList textSearchOptions();

} // namespace Torvix
