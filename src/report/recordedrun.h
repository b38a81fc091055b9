#pragma once

#include "report/runsummary.h"
#include "report/streamevents.h"

#include <memory>
#include <optional>
#include <vector>

class QIODevice;

namespace Torvix {

/**
 * A run as its result streams tell it; the parts of one run (shards) are joined into one. Adding a stream
 * reads it once and keeps the summary alone: what a case reported is read again when it is asked for, an
 * event at a time, so that a run of any length takes memory for its number of cases only.
 *
 * Reading never fails: a line that is no event, and a last line that was cut off, are told in
 * RunSummary::problems and passed over; a case without an end is Interrupted.
 */
class RecordedRun
{
public:
    RecordedRun();
    ~RecordedRun();
    RecordedRun(RecordedRun&&) noexcept;
    RecordedRun& operator=(RecordedRun&&) noexcept;

    /**
     * @param stream open for reading; a pipe is copied into a temporary file first
     * @param folder of the stream, from which the paths of attachments count
     * @return false with the reason in `*error` when it tells of no run, or a pipe could not be copied
     */
    bool add(std::unique_ptr<QIODevice> stream, const QString& folder, QString* error);

    const RunSummary& summary() const { return m_summary; }

    /** Calls the visitor with what the attempt reported; the paths of attachments are absolute. */
    void visit(const AttemptSummary& attempt, EventVisitor& visitor) const;

    /** What AttemptSummary::decisiveResult stands for; none where nothing failed. */
    std::optional<ResultEntry> decisiveFailure(const AttemptSummary& attempt) const;

private:
    struct Stream;

    std::vector<Stream> m_streams;
    RunSummary m_summary;
};

} // namespace Torvix
