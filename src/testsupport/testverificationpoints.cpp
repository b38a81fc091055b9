#include "interpreter/base/scriptcontext.h"
#include "objectmodel/inspector.h"
#include "testsupport/attachments.h"
#include "testsupport/objectfunctions.h"
#include "testsupport/reporting.h"
#include "testsupport/scriptfiles.h"
#include "testsupport/testfunctions.h"
#include "testsupport/verificationpoint.h"

#include <QDir>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

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

/** Null string, with an error in the context, when there is no such file. */
QString verificationPointFile(ScriptContext* context, const QString& name)
{
    const QDir folder(QDir(testCaseFolder()).filePath(QStringLiteral("verificationPoints")));
    const QStringList candidates{folder.filePath(name), folder.filePath(name + QLatin1String(".json"))};
    for (const QString& candidate : candidates)
        if (QFileInfo(candidate).isFile())
            return candidate;
    context->setError(QStringLiteral("There is no verification point '%1': neither '%2' nor '%3' exists")
                          .arg(name, candidates[0], candidates[1]));
    return {};
}

SharedPtr<Object> objectOf(const VerificationCheck& check, const SharedPtr<Object>& given, QString* error)
{
    if (given)
        return given;
    if (check.object.isEmpty()) {
        *error = QStringLiteral("A check names no object; use test.vpWithObject(name, object)");
        return nullptr;
    }
    Inspector* inspector = Inspector::self();
    const Inspector::WaitResult found =
        inspector->waitForObject(check.object, defaultWaitTimeoutMs(), Protocol::WaitExists);
    if (!found.object)
        *error = inspector->lastError();
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

/** Both files beside each other: the second can replace the first where the change is wanted. */
void attachFiles(ScriptContext* context, const QString& file, const QString& name, VerificationRun* run)
{
    const QByteArray seen = QJsonDocument(QJsonObject{{"checks", run->seen}}).toJson(QJsonDocument::Indented);
    QFile expected(file);
    const QByteArray text = expected.open(QIODevice::ReadOnly) ? expected.readAll() : QByteArray();
    const Attachment kept[] = {attachText(resultSink(*context), text, name + QLatin1String("-expected.json"),
                                          QStringLiteral("expected"), &run->error),
                               attachText(resultSink(*context), seen, name + QLatin1String("-seen.json"),
                                          QStringLiteral("seen"), &run->error)};
    for (const Attachment& attachment : kept)
        if (!attachment.path.isEmpty())
            run->attachments.append(attachment);
}

VerificationRun runChecks(ScriptContext* context, const VerificationPoint& point,
                          const SharedPtr<Object>& given, const QString& name)
{
    VerificationRun run;
    for (int i = 0; i < point.checks.size() && run.error.isEmpty(); ++i) {
        const VerificationCheck& check = point.checks[i];
        const SharedPtr<Object> object = objectOf(check, given, &run.error);
        if (!object)
            break;
        const VerificationFinding finding = verifyObject(check, object);
        run.error = finding.error;
        for (const QString& difference : finding.differences)
            run.differences +=
                check.object.isEmpty() ? difference : check.object + QLatin1String(": ") + difference;
        run.seen.append(finding.seen);
        attachPictures(context, name, finding, &run);
    }
    return run;
}

void verificationPoint(ScriptContext* context, Expectation expectation, const SharedPtr<Object>& given,
                       int firstTextIndex)
{
    const QString givenName = context->argument(0)->toString();
    const QString file = verificationPointFile(context, givenName);
    if (file.isEmpty())
        return;
    QString error;
    const std::optional<VerificationPoint> point = VerificationPoint::read(file, &error);
    if (!point) {
        context->setError(error);
        return;
    }
    const QString name = QFileInfo(file).completeBaseName();
    VerificationRun run = runChecks(context, *point, given, name);
    const bool holds = run.error.isEmpty() && run.differences.isEmpty();
    if (!holds && run.error.isEmpty())
        attachFiles(context, file, name, &run);
    if (!run.error.isEmpty()) {
        context->setError(run.error);
        return;
    }
    reportCheck(
        context, expectation, holds,
        resultTexts(*context, firstTextIndex, QStringLiteral("Verification point '%1'").arg(givenName)),
        run.differences.join(QLatin1Char('\n')), run.attachments);
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
