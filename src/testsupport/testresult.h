#pragma once

#include "report/results.h"
#include "shared/base/lineinfo.h"
#include "testsupport/export.h"

#include <QString>
#include <QStringList>

#include <memory>
#include <vector>

namespace Torvix {

class ResultStreamWriter;
class VideoCapture;

/**
 * The sink of one test case's results: counts them, gives each the place that it belongs to and the
 * sections that are open, and hands it to the result stream.
 *
 *     TestResult result(&stream, resultFolder);
 *     interpreter->initTestFunctions(&result);
 *     ... run the script ...
 *     stream.caseEnded(result.outcome(), elapsed);
 */
class TORVIXTEST_EXPORT TestResult
{
public:
    /**
     * @param stream borrowed; may be null: results are then only counted
     * @param outputFolder where attachments go, made when needed; empty when there is none
     */
    explicit TestResult(ResultStreamWriter* stream, const QString& outputFolder = QString());
    ~TestResult();
    TestResult(const TestResult&) = delete;
    TestResult& operator=(const TestResult&) = delete;

    /** A place without a file is an unknown one. Failures get the source around their line. */
    void add(ResultType type, const QString& message, const QString& detail, const LineInfo& place,
             const QVector<Attachment>& attachments = {}, const QString& difference = {});

    int count(ResultType type) const { return m_counts[std::size_t(type)]; }
    /** Verdict over everything so far: Error before Failed before Skipped. */
    CaseOutcome outcome() const;
    /** The script has ended: a video that it did not stop is kept with the results. */
    void finish();
    /** The number of checks: passes and failures, expected or not. */
    int checkCount() const;

    void startSection(const QString& title);
    /** False when none is open. */
    bool endSection();
    const QStringList& sections() const { return m_sections; }

    /** Results get this place instead of their own until it is restored; fixed places nest. */
    void fixatePlace(const LineInfo& place) { m_fixedPlaces.push_back(place); }
    /** False when none is fixed. */
    bool restorePlace();

    /** Whether a failed check ends the test case. Off at first. */
    bool endsOnFailure() const { return m_endsOnFailure; }
    void setEndsOnFailure(bool ends) { m_endsOnFailure = ends; }

    /** Whether failed checks are kept with a screenshot. Off at first. */
    bool keepsScreenshots() const { return m_keepsScreenshots; }
    void setKeepsScreenshots(bool keeps) { m_keepsScreenshots = keeps; }

    /** Whether verification points that do not hold are renewed instead of failing. Off at first. */
    bool updatesVerificationPoints() const { return m_updatesVerificationPoints; }
    void setUpdatesVerificationPoints(bool updates) { m_updatesVerificationPoints = updates; }

    QString outputFolder() const { return m_outputFolder; }
    /** A path in the output folder that nothing has yet, for a name such as "shot.png". Null string
     *  when there is no such folder and it cannot be made. */
    QString newOutputFile(const QString& name);

    /** The video that is being captured, or null. It ends with this object at the latest. */
    const VideoCapture* videoCapture() const { return m_video.get(); }
    void setVideoCapture(std::unique_ptr<VideoCapture> video);
    std::unique_ptr<VideoCapture> takeVideoCapture();

private:
    static constexpr std::size_t typeCount = std::size_t(ResultType::Log) + 1;

    ResultStreamWriter* m_stream;
    QString m_outputFolder;
    int m_counts[typeCount] = {};
    QStringList m_sections;
    std::vector<LineInfo> m_fixedPlaces;
    bool m_endsOnFailure = false;
    bool m_keepsScreenshots = false;
    bool m_updatesVerificationPoints = false;
    std::unique_ptr<VideoCapture> m_video;
};

} // namespace Torvix
