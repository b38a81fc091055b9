#include "interpreter/base/scriptcontext.h"
#include "testsupport/reporting.h"
#include "testsupport/structuraldiff.h"
#include "testsupport/testfunctions.h"
#include "testsupport/testresult.h"
#include "testsupport/textdiff.h"

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
    ScriptArgument::Map options;
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

QString optionText(const ScriptArgument::Map& options, const char* name)
{
    const auto option = options.find(QLatin1String(name));
    return option == options.end() ? QString() : option->second->toString();
}

bool optionFlag(const ScriptArgument::Map& options, const char* name)
{
    const auto option = options.find(QLatin1String(name));
    return option != options.end() && option->second->toBoolean();
}

/** The third argument is a map of options, or the message alone. */
bool readComparison(ScriptContext* context, const char* usage, const char* message,
                    FileComparison* comparison)
{
    if (!requireArguments(context, 2, 3, usage))
        return false;
    comparison->expectedName = context->argument(0)->toString();
    comparison->actualName = context->argument(1)->toString();
    comparison->texts.message = QLatin1String(message);
    if (const SharedPtr<ScriptArgument> third = context->argument(2)) {
        if (third->isMap())
            comparison->options = third->toMap();
        else
            comparison->texts.message = third->toString();
    }
    if (!optionText(comparison->options, "message").isEmpty())
        comparison->texts.message = optionText(comparison->options, "message");
    comparison->texts.detail = optionText(comparison->options, "detail");
    comparison->expectation =
        optionFlag(comparison->options, "xfail") ? Expectation::Fail : Expectation::Pass;
    return readFile(context, comparison->expectedName, &comparison->expected) &&
           readFile(context, comparison->actualName, &comparison->actual);
}

bool readTextOptions(ScriptContext* context, const ScriptArgument::Map& options, TextOptions* text)
{
    text->ignoreCase = optionFlag(options, "ignoreCase");
    text->ignoreWhitespace = optionFlag(options, "ignoreWhitespace");
    const auto filters = options.find(QStringLiteral("filters"));
    if (filters == options.end())
        return true;
    const ScriptArgument::List patterns =
        filters->second->isList() ? filters->second->toList() : ScriptArgument::List{filters->second};
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
    if (!readComparison(context, usage, message, &comparison))
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
    if (!readComparison(context, "test.compareTextFiles(expectedFile, actualFile[, options])",
                        "Text file comparison", &comparison) ||
        !readTextOptions(context, comparison.options, &options))
        return;
    const QString difference = textDifference(comparableLines(comparison.expected, options),
                                              comparableLines(comparison.actual, options));
    const bool equal = difference.isEmpty();
    reportCheck(context, comparison.expectation, equal, comparison.texts,
                equal ? alike(comparison, true) : alike(comparison, false) + QLatin1Char('\n') + difference);
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
