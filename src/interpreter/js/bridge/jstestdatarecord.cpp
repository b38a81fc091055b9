#include "interpreter/js/bridge/jstestdatarecord.h"

#include "interpreter/js/scriptobject/scriptobject.h"

namespace Torvix {

const KJS::ClassInfo JsTestDataRecordImp::info = {"TestData"};

JsTestDataRecordImp::JsTestDataRecordImp(const TestDataRecord* record)
    : m_record(record)
    , m_dataSet(record->dataSet())
{
}

JsTestDataRecordImp::~JsTestDataRecordImp() = default;

KJS::Value wrapTestDataRecord(KJS::ExecState*, const TestDataRecord* record)
{
    return new JsTestDataRecordImp(record);
}

KJS::Object wrapTestDataSet(KJS::ExecState* exec, SharedPtr<TestDataSet> dataSet)
{
    KJS::Object array = emptyArray(exec);
    for (int i = 0; i < dataSet->count(); ++i)
        array.put(exec, unsigned(i), wrapTestDataRecord(exec, dataSet->record(i)));
    return array;
}

const TestDataRecord* unwrapTestDataRecord(const KJS::Value& value)
{
    const auto* wrapper = unwrap<JsTestDataRecordImp>(value);
    return wrapper ? wrapper->record() : nullptr;
}

} // namespace Torvix
