#pragma once

#include "report/results.h"

#include <QElapsedTimer>
#include <QString>

namespace Torvix {

/**
 * What a person sees while cases run: on a terminal one line that changes, otherwise a line for each
 * case that has ended. NO_COLOR (no-color.org), FORCE_COLOR
 * (force-color.org), which wins over it, and CI are respected.
 */
class Progress
{
public:
    explicit Progress(int planned, bool quiet);

    void caseStarted(const QString& name, int attempt);
    void caseEnded(const QString& name, CaseOutcome outcome, qint64 durationMs, bool willRetry);
    /** Takes the changing line away. */
    void finish();

    bool hasColour() const { return m_colour; }

private:
    void clearLine();
    QString painted(const QString& text, CaseOutcome outcome) const;

    int m_planned;
    int m_ended = 0;
    int m_failed = 0;
    bool m_quiet;
    bool m_live;
    bool m_colour;
    bool m_lineShown = false;
};

} // namespace Torvix
