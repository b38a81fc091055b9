#pragma once

#include "engine/object.h"
#include "shared/testdata/testdata.h"

namespace Torvix {

/**
 * A record as scripts hold it: without properties, read by `testData.field`. The table lives as long as
 * its last record that a script can reach. Without a prototype: it has its own members only.
 */
class JsTestDataRecordImp : public KJS::ObjectImp
{
public:
    static const KJS::ClassInfo info;

    /** The record has to belong to a table that is held by SharedPtr, or by nobody yet. */
    explicit JsTestDataRecordImp(const TestDataRecord* record);
    ~JsTestDataRecordImp() override;

    const KJS::ClassInfo* classInfo() const override { return &info; }

    const TestDataRecord* record() const { return m_record; }

private:
    const TestDataRecord* m_record;
    SharedPtr<TestDataSet> m_dataSet;
};

KJS::Value wrapTestDataRecord(KJS::ExecState* exec, const TestDataRecord* record);
/** A script array of all records in order. A table without records is freed when nobody holds it. */
KJS::Object wrapTestDataSet(KJS::ExecState* exec, SharedPtr<TestDataSet> dataSet);
/** Null for a value that is no record. */
const TestDataRecord* unwrapTestDataRecord(const KJS::Value& value);

} // namespace Torvix
