#include "interpreter/base/scriptcontext.h"
#include "testsupport/reporting.h"
#include "testsupport/scriptoptions.h"
#include "testsupport/testfunctions.h"
#include "testsupport/testresult.h"
#include "testsupport/verification/structuraldiff.h"
#include "testsupport/verification/textdiff.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>

namespace Torvix {

namespace {

/** How text files are made comparable before they are compared. */
struct TextOptions
{
    bool ignoreCase = false;
    bool ignoreWhitespace = false;       ///< runs of it count as one blank, and none at the ends of lines
    QVector<QRegularExpression> filters; ///< what they match is taken out of each line
};

/** The arguments that all comparisons of files have. */
struct FileComparison
{
    QString expectedName;
    QString actualName;
    QByteArray expected;
    QByteArray actual;
    ResultTexts texts;
    Expectation expectation = Expectation::Pass;
    ScriptOptions options;
};

/** Relative names count from the test case's folder, which is the current one. */
bool readFile(ScriptContext* context, const QString& name, QByteArray* bytes)
{
    QFile file(name);
    if (file.open(QIODevice::ReadOnly)) {
        *bytes = file.readAll();
        return true;
    }
    context->setError(QStringLiteral("Cannot read file '%1': %2")
                          .arg(QDir::current().absoluteFilePath(name), file.errorString()));
    return false;
}

/** `known` are the options beside those of all comparisons. */
bool readComparison(ScriptContext* context, const char* usage, const char* message, const QStringList& known,
                    FileComparison* comparison)
{
    if (!requireArguments(context, 2, 3, usage))
        return false;
    // Held: a conversion to text may run code of the script, and one context serves all of its calls.
    const ScriptContext::Arguments given = context->arguments();
    const QStringList all =
        QStringList{QStringLiteral("message"), QStringLiteral("detail"), QStringLiteral("xfail")} + known;
    ScriptOptions& options = comparison->options;
    if (!options.read(context, 2, all))
        return false;
    comparison->expectedName = given[0]->toString();
    comparison->actualName = given[1]->toString();
    comparison->texts = {options.text("message"), options.text("detail")};
    if (comparison->texts.message.isEmpty())
        comparison->texts.message = QLatin1String(message);
    comparison->expectation = options.flag("xfail") ? Expectation::Fail : Expectation::Pass;
    return readFile(context, comparison->expectedName, &comparison->expected) &&
           readFile(context, comparison->actualName, &comparison->actual);
}

bool readTextOptions(ScriptContext* context, const ScriptOptions& options, TextOptions* text)
{
    text->ignoreCase = options.flag("ignoreCase");
    text->ignoreWhitespace = options.flag("ignoreWhitespace");
    const SharedPtr<ScriptArgument> filters = options.value("filters");
    if (!filters)
        return true;
    const ScriptArgument::List patterns =
        filters->isList() ? filters->toList() : ScriptArgument::List{filters};
    for (const SharedPtr<ScriptArgument>& pattern : patterns) {
        const QRegularExpression expression(pattern->toString(),
                                            QRegularExpression::UseUnicodePropertiesOption);
        if (!expression.isValid()) {
            context->setError(QStringLiteral("The filter '%1' is no regular expression: %2")
                                  .arg(expression.pattern(), expression.errorString()));
            return false;
        }
        text->filters += expression;
    }
    return true;
}

/** As they are compared; a difference of line ends makes none. */
QStringList comparableLines(const QByteArray& bytes, const TextOptions& options)
{
    QString text = QString::fromUtf8(bytes);
    text.replace(QLatin1String("\r\n"), QLatin1String("\n"));
    QStringList lines = text.split(QLatin1Char('\n'));
    for (QString& line : lines) {
        for (const QRegularExpression& filter : options.filters)
            line.remove(filter);
        if (options.ignoreWhitespace)
            line = line.simplified();
        if (options.ignoreCase)
            line = line.toCaseFolded();
    }
    return lines;
}

QString alike(const FileComparison& comparison, bool equal)
{
    return QStringLiteral("'%1' and '%2' are %3")
        .arg(comparison.expectedName, comparison.actualName,
             equal ? QStringLiteral("alike") : QStringLiteral("not alike"));
}

void compareStructures(ScriptContext* context, const char* usage, const char* message,
                       StructuralDifference (*compare)(const QByteArray&, const QByteArray&))
{
    FileComparison comparison;
    if (!readComparison(context, usage, message, {}, &comparison))
        return;
    const StructuralDifference found = compare(comparison.expected, comparison.actual);
    if (!found.error.isEmpty()) {
        context->setError(found.error);
        return;
    }
    const bool equal = found.differences.isEmpty();
    QStringList finding{alike(comparison, equal)};
    finding += found.differences;
    reportCheck(context, comparison.expectation, equal, comparison.texts, finding.join(QLatin1Char('\n')));
}

} // namespace

void testCompareTextFiles(ScriptContext* context)
{
    FileComparison comparison;
    TextOptions options;
    if (!readComparison(
            context, "test.compareTextFiles(expectedFile, actualFile[, options])", "Text file comparison",
            {QStringLiteral("ignoreCase"), QStringLiteral("ignoreWhitespace"), QStringLiteral("filters")},
            &comparison) ||
        !readTextOptions(context, comparison.options, &options))
        return;
    const QString difference = textDifference(comparableLines(comparison.expected, options),
                                              comparableLines(comparison.actual, options));
    const bool equal = difference.isEmpty();
    reportCheck(context, comparison.expectation, equal, comparison.texts,
                equal ? Finding(alike(comparison, true)) : Finding(alike(comparison, false), difference));
}

void testCompareXMLFiles(ScriptContext* context)
{
    compareStructures(context, "test.compareXMLFiles(expectedFile, actualFile[, options])",
                      "XML file comparison", compareXml);
}

void testCompareJSONFiles(ScriptContext* context)
{
    compareStructures(context, "test.compareJSONFiles(expectedFile, actualFile[, options])",
                      "JSON file comparison", compareJson);
}

} // namespace Torvix
