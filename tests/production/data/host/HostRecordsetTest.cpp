#include "CallbackHost.h"
#include "TestSupport.h"

#include "production/base/Currency.h"
#include "production/base/FieldType.h"
#include "production/data/host/CallbackRecordset.h"
#include "production/data/host/ItemModelRecordset.h"
#include "production/report/ReportData.h"

#include <QCoreApplication>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQueryModel>
#include <QStandardItemModel>

#include <gtest/gtest.h>

#include <cstddef>

namespace tabulor::test {
namespace {

struct Counts
{
    qint64 gridRows;
    qint64 loaded;
    qint64 total;
    bool operator==(const Counts&) const = default;
};

void PrintTo(const Counts& counts, std::ostream* out)
{
    *out << "{grid " << counts.gridRows << ", loaded " << counts.loaded << ", total "
         << counts.total << "}";
}

// Loads a host recordset the way the component does, in the working view or in full.
Counts load(ReportData& data, Recordset& records, bool unlimited = false)
{
    data.setHostRecordset(&records);
    data.setUnlimitedRows(unlimited);
    data.OpenDataSource(QString(), QString());
    return {data.grid().recordCount(), data.LoadedRowCount(), data.TotalRowCount()};
}

QStringList columnTitles(const ReportData& data)
{
    QStringList titles;
    for (int c = 0; c < data.grid().columnCount(); ++c)
        titles.append(data.grid().column(c).title);
    return titles;
}

// Customers with a name (empty in the first rows), an order count, revenue, a date and a flag.
std::unique_ptr<QStandardItemModel> customerModel(int rows)
{
    auto model = std::make_unique<QStandardItemModel>(rows, 5);
    model->setHorizontalHeaderLabels({"Customer", "Orders", "Revenue", "Since", "Active"});
    for (int row = 0; row < rows; ++row) {
        model->setData(model->index(row, 0),
                       row < 3 ? QString() : QString::fromUtf8("Kunde Nº %1").arg(row));
        model->setData(model->index(row, 1), row * 2);
        model->setData(model->index(row, 2), QVariant::fromValue(Currency{row * 10000 + 5}));
        model->setData(model->index(row, 3), QDate(2024, 1, 1).addDays(row));
        model->setData(model->index(row, 4), row % 3 == 0);
    }
    return model;
}

TEST(ItemModelRecordsets, ColumnsAreFieldsWithTypesInferredOrGiven)
{
    const auto model = customerModel(300);
    ItemModelRecordset inferred(model.get());
    ReportData data;
    EXPECT_EQ(load(data, inferred), (Counts{250, 250, 300}));
    EXPECT_EQ(columnTitles(data),
              (QStringList{"Customer", "Orders", "Revenue", "Since", "Active"}));
    QList<qint16> types;
    for (int field = 0; field < inferred.fieldCount(); ++field)
        types.append(inferred.fieldType(field));
    // The empty names of the first rows tell nothing; the first name found is text.
    EXPECT_EQ(types, (QList<qint16>{FieldText, FieldLong, FieldCurrency, FieldDate, FieldBoolean}));
    EXPECT_EQ(data.grid().column(2).alignment, AlignRightTop);
    EXPECT_EQ(data.grid().column(3).alignment, AlignLeftTop);
    EXPECT_EQ(data.grid().value(4, 0), QString::fromUtf8("Kunde Nº 4"));
    EXPECT_EQ(data.grid().value(4, 2), QVariant::fromValue(Currency{40005}));
    EXPECT_EQ(data.grid().value(4, 3), QDate(2024, 1, 5));

    EXPECT_EQ(load(data, inferred, true), (Counts{300, 300, 300}));

    // Types given by the host win; the rest are still inferred.
    ItemModelRecordset given(model.get(), {FieldMemo, FieldDouble});
    EXPECT_EQ(given.fieldType(0), FieldMemo);
    EXPECT_EQ(given.fieldType(1), FieldDouble);
    EXPECT_EQ(given.fieldType(2), FieldCurrency);

    const auto small = customerModel(120);
    ItemModelRecordset few(small.get());
    EXPECT_EQ(load(data, few), (Counts{120, 120, 120}));
}

TEST(ItemModelRecordsets, ModelThatLoadsOnDemandIsReadToItsEnd)
{
    int argc = 1;
    char name[] = "host_recordset_tests";
    char* argv[] = {name, nullptr};
    QCoreApplication application(argc, argv);
    {
        QSqlDatabase database = QSqlDatabase::addDatabase("QSQLITE", "sample");
        database.setDatabaseName(samplePath("sample.sqlite"));
        database.setConnectOptions("QSQLITE_OPEN_READONLY");
        ASSERT_TRUE(database.open()) << database.lastError().text().toStdString();
        QSqlQueryModel model;
        model.setQuery("SELECT OrderID, LineNo, Quantity FROM \"Order Details\"", database);
        ASSERT_TRUE(model.canFetchMore());
        const qint64 firstBatch = model.rowCount();

        // The working view takes the count the model reports when the copy ends.
        ItemModelRecordset records(&model);
        ReportData data;
        EXPECT_EQ(load(data, records), (Counts{250, 250, firstBatch}));
        EXPECT_EQ(columnTitles(data), (QStringList{"OrderID", "LineNo", "Quantity"}));
        EXPECT_EQ(load(data, records, true), (Counts{2000, 2000, 2000}));
        EXPECT_EQ(data.grid().value(1999, 0).toInt(), 10577);
    }
    QSqlDatabase::removeDatabase("sample");
}

TEST(ItemModelRecordsets, DestroyedModelCannotTellItsFields)
{
    auto model = customerModel(3);
    ItemModelRecordset records(model.get());
    ASSERT_TRUE(records.moveFirst());
    EXPECT_EQ(records.fieldCount(), 5);
    model.reset();
    EXPECT_EQ(records.fieldCount(), -1);
    EXPECT_TRUE(records.atEnd());
    EXPECT_FALSE(records.moveFirst());
    EXPECT_FALSE(records.value(0).isValid());
    EXPECT_EQ(records.recordCount(), 0);
}

TEST(CallbackRecordsets, HostRecordsAreCopiedWithTheirTypesAndValues)
{
    test_host host{300, 0, 300, 0, 0, {}};
    {
        CallbackRecordset records(test_host_callbacks(&host));
        ReportData data;
        EXPECT_EQ(load(data, records), (Counts{250, 250, 300}));
        EXPECT_EQ(columnTitles(data), (QStringList{QString::fromUtf8("Nº"), "Name", "Price", "Day",
                                                   "Ratio", "Flag", "Raw"}));
        QList<qint16> types;
        for (int c = 0; c < data.grid().columnCount(); ++c)
            types.append(data.grid().column(c).type);
        EXPECT_EQ(types, (QList<qint16>{FieldLong, FieldText, FieldCurrency, FieldDate, FieldDouble,
                                        FieldBoolean, FieldLongBinary}));
        const QVariantList first = {qint64(1),
                                    QString::fromUtf8("Record 1 – ü"),
                                    QVariant::fromValue(Currency{12500}),
                                    QDate(2024, 1, 2),
                                    0.25,
                                    true,
                                    QByteArray("a\0b", 3)};
        for (int c = 0; c < first.size(); ++c)
            EXPECT_EQ(data.grid().value(0, c), first[c]) << c;
        EXPECT_FALSE(data.grid().value(6, 1).isValid());

        EXPECT_EQ(load(data, records, true), (Counts{300, 300, 300}));

        // A failed move ends the copy; what was copied stays.
        host.records = 300;
        host.fail_at = 101;
        EXPECT_EQ(load(data, records), (Counts{100, 100, 100}));
        EXPECT_EQ(host.releases, 0);
    }
    EXPECT_EQ(host.releases, 1);

    // A host that cannot count: the records reached, here the 250 copied and the one after.
    test_host uncounted{300, 0, -1, 0, 0, {}};
    CallbackRecordset records(test_host_callbacks(&uncounted));
    ReportData data;
    EXPECT_EQ(load(data, records), (Counts{250, 250, 251}));
    uncounted.records = 120;
    EXPECT_EQ(load(data, records), (Counts{120, 120, 120}));
}

TEST(CallbackRecordsets, MissingFunctionsReadAsNothingToTell)
{
    test_host host{5, 0, 5, 0, 0, {}};
    tabulor_recordset_callbacks callbacks = test_host_callbacks(&host);

    // A host built against a shorter table: everything after field_name is missing.
    callbacks.struct_size = offsetof(tabulor_recordset_callbacks, field_type);
    {
        CallbackRecordset older(callbacks);
        EXPECT_EQ(older.fieldCount(), 7);
        EXPECT_EQ(older.fieldName(0), QString::fromUtf8("Nº"));
        EXPECT_EQ(older.fieldType(0), FieldText);
        EXPECT_FALSE(older.moveFirst());
        EXPECT_TRUE(older.atEnd());
        EXPECT_FALSE(older.value(0).isValid());
    }
    EXPECT_EQ(host.releases, 0);

    callbacks = test_host_callbacks(&host);
    callbacks.field_count = nullptr;
    CallbackRecordset noFields(callbacks);
    EXPECT_EQ(noFields.fieldCount(), -1);

    // Values the reader cannot take: an unknown kind is empty, a malformed date stays text.
    callbacks = test_host_callbacks(&host);
    callbacks.value = [](void*, int32_t field, tabulor_value* out) -> int32_t {
        out->kind = field == 0 ? 99 : TABULOR_VALUE_DATE;
        out->text = "2024-02-30";
        out->size = TABULOR_ZERO_TERMINATED;
        return 1;
    };
    CallbackRecordset odd(callbacks);
    ASSERT_TRUE(odd.moveFirst());
    EXPECT_FALSE(odd.value(0).isValid());
    EXPECT_EQ(odd.value(1), QString("2024-02-30"));
}

} // namespace
} // namespace tabulor::test
