#include "interpreter/js/objects/jstestdata.h"

#include "interpreter/js/bridge/jstestdatarecord.h"
#include "interpreter/js/context/jsscriptcontext.h"
#include "interpreter/js/scriptobject/jsutils.h"
#include "objectmodel/inspector.h"
#include "shared/testdata/testdatadir.h"
#include "testsupport/scriptfiles.h"
#include "testsupport/testdatafiles.h"

#include <QFileInfo>

namespace Torvix {

namespace {

bool isString(const KJS::Value& value)
{
    return value.dispatchType() == KJS::StringType;
}

/** The records of a file of the test, which `read` makes a table of. */
template <class Read>
KJS::Value recordsOf(KJS::ExecState* exec, const QString& name, Read read)
{
    const QString path = findTestSuiteFile(name, QStringLiteral("testdata"));
    if (path.isEmpty())
        return generalError(exec, QLatin1String("File '") + name + QLatin1String("' couldn't be found."));
    const SharedPtr<TestDataSet> dataSet(read(path));
    if (!dataSet)
        return generalError(exec,
                            QLatin1String("Data set '") + path + QLatin1String("' couldn't be parsed."));
    return wrapTestDataSet(exec, dataSet);
}

KJS::Value jsTestDataSet(KJS::ExecState* exec, KJS::Object&, const KJS::List& args)
{
    const QString name = args[0].toString(exec).qstring();
    if (exec->hadException())
        return KJS::Undefined();
    return recordsOf(exec, name, TestDataSet::createTestDataSet);
}

KJS::Value jsTestDataSetExcel(KJS::ExecState* exec, KJS::Object&, const KJS::List& args)
{
    if (args.size() > 2 || !isString(args[0]) || (args.size() == 2 && !isString(args[1])))
        return typeError(exec, "datasetExcel() takes one or two string arguments");
    const QString sheet = args.size() == 2 ? args[1].toString(exec).qstring() : QString();
    return recordsOf(exec, args[0].toString(exec).qstring(),
                     [&](const QString& path) { return TestDataSet::createTestDataSetExcel(path, sheet); });
}

/** Columns of a table without a header, which a workbook may give: none. */
int columnCount(const TestDataSet* dataSet)
{
    return dataSet->header() ? dataSet->header()->count() : 0;
}

/** The column that a script means, or -1 with the exception set. */
int columnOf(KJS::ExecState* exec, const TestDataSet* dataSet, const KJS::Value& field)
{
    if (isString(field)) {
        const QString name = field.toString(exec).qstring();
        const int column = dataSet->fieldIndex(name);
        if (column < 0)
            raiseJSException(exec, KJS::ReferenceError, QLatin1String("Invalid field: ") + name);
        return column;
    }
    if (field.dispatchType() == KJS::NumberType) {
        const int column = field.toInt32(exec);
        if (column >= 0 && column < columnCount(dataSet))
            return column;
        raiseJSException(exec, KJS::RangeError,
                         QLatin1String("Invalid field index ") + QString::number(column));
        return -1;
    }
    raiseJSException(exec, KJS::TypeError, QStringLiteral("Field argument must be of type string or number"));
    return -1;
}

KJS::Value jsTestDataField(KJS::ExecState* exec, KJS::Object&, const KJS::List& args)
{
    if (args.size() != 2)
        return syntaxError(exec, QStringLiteral("field() expects two arguments"));
    const TestDataRecord* record = unwrapTestDataRecord(args[0]);
    if (!record)
        return typeError(exec, "Invalid test data record");
    const int column = columnOf(exec, record->dataSet(), args[1]);
    if (column < 0)
        return exec->exception();
    return KJS::String(record->valueAsString(column));
}

KJS::Value jsTestDataFieldNames(KJS::ExecState* exec, KJS::Object&, const KJS::List& args)
{
    if (args.size() != 1)
        return syntaxError(exec, QStringLiteral("fieldNames() expects a recordset argument"));
    const TestDataRecord* record = unwrapTestDataRecord(args[0]);
    if (!record)
        return typeError(exec, "Invalid test data record");
    QStringList names;
    for (int column = 0; column < columnCount(record->dataSet()); ++column)
        names.append(record->dataSet()->header()->valueAsString(column));
    return arrayFromQStringList(exec, names);
}

KJS::Value jsTestDataPut(KJS::ExecState* exec, KJS::Object&, const KJS::List& args)
{
    if (!isString(args[0]))
        return typeError(exec, "put() takes a string argument");
    QString error;
    const QVariant target = copyTestData(args[0].toString(exec).qstring(), &error);
    return target.isValid() ? KJS::String(target.toString()) : generalError(exec, error);
}

KJS::Value jsTestDataGet(KJS::ExecState* exec, KJS::Object&, const KJS::List& args)
{
    return jsScriptContextCall(exec, args, testDataGet);
}

/** What the application answers about a file; invalid with the exception set. */
QVariant askApplication(KJS::ExecState* exec, const char* function, const KJS::Value& name)
{
    Inspector* inspector = Inspector::self();
    const Result<QVariant> reply =
        inspector->remoteCall(QLatin1String(function), {name.toString(exec).qstring()});
    if (!inspector->note(reply))
        generalError(exec, reply.error());
    return reply.orNothing();
}

KJS::Value jsTestDataExists(KJS::ExecState* exec, KJS::Object&, const KJS::List& args)
{
    if (!isString(args[0]))
        return typeError(exec, "exists() takes a string argument");
    const bool exists = askApplication(exec, "testDataExists", args[0]).toBool();
    return exec->hadException() ? exec->exception() : KJS::Boolean(exists);
}

KJS::Value jsTestDataRemove(KJS::ExecState* exec, KJS::Object&, const KJS::List& args)
{
    if (!isString(args[0]))
        return typeError(exec, "remove() takes a string argument");
    askApplication(exec, "testDataRemove", args[0]);
    return exec->hadException() ? exec->exception() : KJS::Undefined();
}

/** Where a script is to write a new file; the folder is made, the file is not. */
KJS::Value newFileIn(const QString& folder, const QString& name)
{
    TestData::checkAndMakeDir(folder, false);
    return KJS::String(QFileInfo(folder + QLatin1Char('/') + name).absoluteFilePath());
}

KJS::Value jsTestDataCreate(KJS::ExecState* exec, KJS::Object&, const KJS::List& args)
{
    if (args.size() != 2 || !isString(args[0]) || !isString(args[1]))
        return typeError(exec, "create() takes two string arguments");
    const QString where = args[0].toString(exec).qstring();
    const QString name = args[1].toString(exec).qstring();
    if (where == QLatin1String("local"))
        return newFileIn(QStringLiteral("testdata"), name);
    if (where == QLatin1String("shared"))
        return newFileIn(QStringLiteral("../shared/testdata"), name);
    return generalError(exec, QStringLiteral("First argument of create() must be 'shared' or 'local'"));
}

// The published lengths: those of fieldNames and create are not the numbers of their arguments.
const JsFunctionRow functions[] = {
    {"dataset", jsTestDataSet, 1},   {"datasetExcel", jsTestDataSetExcel, 2},
    {"field", jsTestDataField, 2},   {"fieldNames", jsTestDataFieldNames, 0},
    {"put", jsTestDataPut, 1},       {"get", jsTestDataGet, 1},
    {"exists", jsTestDataExists, 1}, {"remove", jsTestDataRemove, 1},
    {"create", jsTestDataCreate, 1}, {nullptr, nullptr, 0},
};

} // namespace

JsTestDataImp::JsTestDataImp(KJS::ExecState*)
{
    putFunctions(this, functions);
}

} // namespace Torvix
