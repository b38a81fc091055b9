#include "interpreter/base/scriptcontext.h"
#include "objectmodel/inspector.h"
#include "testsupport/attachments.h"
#include "testsupport/objectfunctions.h"
#include "testsupport/reporting.h"
#include "testsupport/screen/screenshots.h"
#include "testsupport/testfunctions.h"
#include "testsupport/testresult.h"
#include "testsupport/verification/createvp.h"
#include "testsupport/verification/verificationpoint.h"

#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSaveFile>

namespace Torvix {

namespace {

/** The checks of one verification point and what they found. */
struct VerificationRun
{
    QStringList differences;
    QJsonArray seen;
    QVector<Attachment> attachments;
    QString error;
};

SharedPtr<Object> objectOf(const VerificationCheck& check, const SharedPtr<Object>& given, QString* error)
{
    if (given)
        return given;
    if (check.object.isEmpty()) {
        *error = QStringLiteral("A check names no object; use test.vpWithObject(name, object)");
        return nullptr;
    }
    const Inspector::WaitResult found =
        Inspector::self()->waitForObject(check.object, defaultWaitTimeoutMs(), Protocol::WaitExists);
    *error = found.error;
    return found.object;
}

void attachPictures(ScriptContext* context, const QString& name, const VerificationFinding& finding,
                    VerificationRun* run)
{
    const std::pair<const char*, const QImage*> pictures[] = {{"expected", &finding.expectedImage},
                                                              {"seen", &finding.seenImage},
                                                              {"difference", &finding.difference}};
    for (const auto& [what, image] : pictures) {
        if (image->isNull())
            continue;
        const QString file = QStringLiteral("%1-%2.png").arg(name, QLatin1String(what));
        const Attachment kept =
            attachImage(resultSink(*context), *image, file, QLatin1String(what), &run->error);
        if (!kept.path.isEmpty())
            run->attachments.append(kept);
    }
}

QByteArray seenContent(const VerificationRun& run)
{
    return QJsonDocument(QJsonObject{{"checks", run.seen}}).toJson(QJsonDocument::Indented);
}

/** Both files beside each other: the second can replace the first where the change is wanted. */
void attachFiles(ScriptContext* context, const QString& file, const QString& name, VerificationRun* run)
{
    QFile expected(file);
    const QByteArray text = expected.open(QIODevice::ReadOnly) ? expected.readAll() : QByteArray();
    const Attachment kept[] = {attachText(resultSink(*context), text, name + QLatin1String("-expected.json"),
                                          QStringLiteral("expected"), &run->error),
                               attachText(resultSink(*context), seenContent(*run),
                                          name + QLatin1String("-seen.json"), QStringLiteral("seen"),
                                          &run->error)};
    for (const Attachment& attachment : kept)
        if (!attachment.path.isEmpty())
            run->attachments.append(attachment);
}

/** Renewing, a picture that is not there yet is made. */
void makePicture(const ExpectedScreenshot& screenshot, const SharedPtr<Object>& object, VerificationRun* run)
{
    if (QFileInfo::exists(screenshot.file))
        return;
    const QImage image = grabObject(object, &run->error);
    if (!image.isNull() && savePng(image, screenshot.file, &run->error))
        run->differences += QStringLiteral("screenshot: '%1' was missing").arg(screenshot.file);
}

VerificationRun runChecks(ScriptContext* context, const VerificationPoint& point,
                          const SharedPtr<Object>& given, const QString& name, bool renews)
{
    VerificationRun run;
    for (int i = 0; i < point.checks.size() && run.error.isEmpty(); ++i) {
        const VerificationCheck& check = point.checks[i];
        const SharedPtr<Object> object = objectOf(check, given, &run.error);
        if (!object)
            break;
        if (renews && check.screenshot)
            makePicture(*check.screenshot, object, &run);
        const VerificationFinding finding = verifyObject(check, object);
        if (run.error.isEmpty())
            run.error = finding.error;
        for (const QString& difference : finding.differences)
            run.differences +=
                check.object.isEmpty() ? difference : check.object + QLatin1String(": ") + difference;
        run.seen.append(finding.seen);
        if (!renews)
            attachPictures(context, name, finding, &run);
        else if (!finding.seenImage.isNull())
            savePng(finding.seenImage, check.screenshot->file, &run.error);
    }
    return run;
}

void reportRenewal(ScriptContext* context, const QString& message, const QString& detail)
{
    report(context, ResultType::Warning, message, detail);
    context->setResult(context->toArgument(true));
}

/** What was expected is replaced by what was seen. */
void renew(ScriptContext* context, const QString& name, const QString& file, const VerificationRun& run)
{
    QSaveFile target(file);
    const QByteArray text = seenContent(run);
    if (target.open(QIODevice::WriteOnly) && target.write(text) == text.size() && target.commit())
        reportRenewal(context, QStringLiteral("Verification point '%1' was renewed").arg(name),
                      run.differences.join(QLatin1Char('\n')));
    else
        context->setError(QStringLiteral("Cannot write file '%1': %2").arg(file, target.errorString()));
}

/** There is no such file. */
void createOrFail(ScriptContext* context, const QString& name, const SharedPtr<Object>& given, bool creates,
                  const QStringList& candidates)
{
    if (!creates || !given) {
        context->setError(QStringLiteral("There is no verification point '%1': neither '%2' nor '%3' exists; "
                                         "createVP(object, '%1') writes one")
                              .arg(name, candidates[0], candidates[1]));
        return;
    }
    const QString path = createUsualVP(context, *context->argument(1), given, name);
    if (!path.isNull())
        reportRenewal(context, QStringLiteral("Verification point '%1' was made").arg(name), path);
}

void verificationPoint(ScriptContext* context, Expectation expectation, const SharedPtr<Object>& given,
                       int firstTextIndex)
{
    const QString givenName = context->argument(0)->toString();
    // Read first: handlers of events may report results while an object is waited for.
    const ResultTexts texts =
        resultTexts(*context, firstTextIndex, QStringLiteral("Verification point '%1'").arg(givenName));
    const TestResult* result = resultSink(*context);
    const bool renews = expectation == Expectation::Pass && result && result->updatesVerificationPoints();
    QStringList candidates;
    const QString file = findVerificationPoint(givenName, &candidates);
    if (file.isEmpty()) {
        createOrFail(context, givenName, given, renews, candidates);
        return;
    }
    QString error;
    const std::optional<VerificationPoint> point = VerificationPoint::read(file, &error);
    if (!point) {
        context->setError(error);
        return;
    }
    const QString name = QFileInfo(file).completeBaseName();
    VerificationRun run = runChecks(context, *point, given, name, renews);
    const bool holds = run.error.isEmpty() && run.differences.isEmpty();
    if (!holds && run.error.isEmpty() && !renews)
        attachFiles(context, file, name, &run);
    if (!run.error.isEmpty())
        context->setError(run.error);
    else if (renews && !holds)
        renew(context, givenName, file, run);
    else
        reportCheck(context, expectation, holds, texts, run.differences.join(QLatin1Char('\n')),
                    run.attachments);
}

} // namespace

void testVP(ScriptContext* context)
{
    if (requireArguments(context, 1, 3, "test.vp(name[, message[, detail]])"))
        verificationPoint(context, Expectation::Pass, nullptr, 1);
}

void testXVP(ScriptContext* context)
{
    if (requireArguments(context, 1, 3, "test.xvp(name[, message[, detail]])"))
        verificationPoint(context, Expectation::Fail, nullptr, 1);
}

void testVPWithObject(ScriptContext* context)
{
    if (!requireArguments(context, 2, 4, "test.vpWithObject(name, object[, message[, detail]])"))
        return;
    if (const SharedPtr<Object> object = objectArgument(context, 1, "test.vpWithObject"))
        verificationPoint(context, Expectation::Pass, object, 2);
}

} // namespace Torvix
