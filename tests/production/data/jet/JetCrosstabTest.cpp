#include "JetFixture.h"
#include "SqliteFixture.h"
#include "TestSupport.h"

#include "production/base/Currency.h"
#include "production/base/FieldType.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace tabulor::test {
namespace {

const QString Query = QStringLiteral("Quarterly Orders by Product");

struct Crosstab
{
    QStringList names;
    QList<qint16> types;
    QList<QVariantList> rows;
};

Crosstab readCrosstab(const QString& path)
{
    Crosstab result;
    const std::unique_ptr<DataSource> source = openJet(path);
    const std::unique_ptr<Recordset> records = source ? openSource(*source, Query) : nullptr;
    if (!records)
        return result;
    for (int i = 0; i < records->fieldCount(); ++i) {
        result.names.append(records->fieldName(i));
        result.types.append(records->fieldType(i));
    }
    result.rows = readRows(*records);
    return result;
}

// The money in one column over all rows; empty cells count nothing.
double columnSum(const Crosstab& crosstab, const QString& name)
{
    const qsizetype column = crosstab.names.indexOf(name);
    double sum = 0;
    for (const QVariantList& row : crosstab.rows)
        sum += row.value(column).value<Currency>().toDouble();
    return sum;
}

bool columnEmpty(const Crosstab& crosstab, const QString& name)
{
    const qsizetype column = crosstab.names.indexOf(name);
    return std::all_of(crosstab.rows.begin(), crosstab.rows.end(),
                       [&](const QVariantList& row) { return row.value(column).isNull(); });
}

QVariant money(qint64 cents)
{
    return QVariant::fromValue(Currency{cents * 100});
}

// Expected values were worked out once from the Orders, Order Details and Products tables as
// mdb-export printed them: each line's CCur(UnitPrice * Quantity * (1 - Discount) / 100) * 100
// summed by product, customer and quarter of the order date. A handful of lines land on half a
// hundredth, where the discount's single and CCur's rounding decide the cent, so the sums of a
// whole column are compared to within a few cents.
constexpr double Cents = 0.2;

TEST(JetCrosstabs, RowHeadingsThenOneColumnPerListedHeading)
{
    const Crosstab crosstab = readCrosstab(sharedDataPath("jet3_nwind.mdb"));
    EXPECT_EQ(crosstab.names, QStringList({"ProductName", "CustomerID", "OrderYear", "Qtr 1",
                                           "Qtr 2", "Qtr 3", "Qtr 4"}));
    EXPECT_EQ(crosstab.types, (QList<qint16>{FieldText, FieldText, FieldInteger, FieldCurrency,
                                             FieldCurrency, FieldCurrency, FieldCurrency}));
    // One row for each product and customer with orders in 1995, in their order.
    ASSERT_EQ(crosstab.rows.size(), 914);
    EXPECT_EQ(crosstab.rows.first(),
              (QVariantList{"Alice Mutton", "ANTON", 1995, {}, {}, money(70200), {}}));
    EXPECT_EQ(crosstab.rows[1],
              (QVariantList{"Alice Mutton", "BERGS", 1995, money(31200), {}, {}, {}}));
    EXPECT_EQ(crosstab.rows.last(),
              (QVariantList{"Zaanse koeken", "WELLI", 1995, {}, {}, money(14250), {}}));
    EXPECT_NEAR(columnSum(crosstab, "Qtr 1"), 144981.32, Cents);
    EXPECT_NEAR(columnSum(crosstab, "Qtr 2"), 145361.44, Cents);
    EXPECT_NEAR(columnSum(crosstab, "Qtr 3"), 134671.29, Cents);
    EXPECT_NEAR(columnSum(crosstab, "Qtr 4"), 165912.26, Cents);
}

TEST(JetCrosstabs, ListedHeadingsKeepTheirOrderAndTheirColumnsWithoutRows)
{
    QTemporaryDir dir;
    const QString path = copyInto(dir, sharedDataPath("jet3_nwind.mdb"));
    ASSERT_EQ(renameInFile(path, R"("Qtr 1","Qtr 2","Qtr 3","Qtr 4"))",
                           R"("Qtr 4","Qtr 9","Qtr 2","Qtr 1"))"),
              1);
    const Crosstab crosstab = readCrosstab(path);
    EXPECT_EQ(crosstab.names, QStringList({"ProductName", "CustomerID", "OrderYear", "Qtr 4",
                                           "Qtr 9", "Qtr 2", "Qtr 1"}));
    // Rows whose only orders fall in an unlisted quarter stay, with empty cells.
    ASSERT_EQ(crosstab.rows.size(), 914);
    EXPECT_EQ(crosstab.rows.first(), (QVariantList{"Alice Mutton", "ANTON", 1995, {}, {}, {}, {}}));
    EXPECT_TRUE(columnEmpty(crosstab, "Qtr 9"));
    EXPECT_NEAR(columnSum(crosstab, "Qtr 4"), 165912.26, Cents);
    EXPECT_NEAR(columnSum(crosstab, "Qtr 1"), 144981.32, Cents);
}

TEST(JetCrosstabs, HeadingsWithoutAListAreTheValuesOfTheRowsInOrder)
{
    // The Jet 4 file's query, made to pivot on the month and to list no headings.
    QTemporaryDir dir;
    const QString path = copyInto(dir, sharedDataPath("jet4_Northwind.mdb"));
    ASSERT_GT(renameInFile(path, R"(DatePart("q",)", R"(DatePart("m",)"), 0);
    const QString list = R"( In ("Qtr 1","Qtr 2","Qtr 3","Qtr 4"))";
    ASSERT_EQ(renameInFile(path, list, QString(list.size(), u' ')), 1);
    const Crosstab crosstab = readCrosstab(path);
    // Text headings sort as text.
    EXPECT_EQ(crosstab.names, QStringList({"ProductName", "CustomerID", "OrderYear", "Qtr 1",
                                           "Qtr 10", "Qtr 11", "Qtr 12", "Qtr 2", "Qtr 3", "Qtr 4",
                                           "Qtr 5", "Qtr 6", "Qtr 7", "Qtr 8", "Qtr 9"}));
    ASSERT_EQ(crosstab.rows.size(), 947);
    const QList<std::pair<const char*, double>> expected = {
        {"Qtr 1", 61258.06}, {"Qtr 2", 38483.63},  {"Qtr 3", 38547.21},  {"Qtr 4", 53032.95},
        {"Qtr 5", 53781.28}, {"Qtr 6", 36362.79},  {"Qtr 7", 51020.83},  {"Qtr 8", 47287.67},
        {"Qtr 9", 55629.25}, {"Qtr 10", 66749.22}, {"Qtr 11", 43533.79}, {"Qtr 12", 71398.43}};
    for (const auto& [month, sum] : expected)
        EXPECT_NEAR(columnSum(crosstab, month), sum, Cents) << month;
}

TEST(JetCrosstabs, AnAggregateInTheConditionIsRefusedWithAReason)
{
    // The Jet 3 test file's crosstab filters on Avg(...) in its WHERE clause, which no
    // database can run.
    const std::unique_ptr<DataSource> source = openJet(sharedDataPath("jet3_queryTestV1997.mdb"));
    ASSERT_TRUE(source);
    QString error;
    EXPECT_FALSE(source->openRecordSource("CrosstabQuery", 250, &error));
    EXPECT_TRUE(error.startsWith("The query 'CrosstabQuery' cannot be run: "))
        << error.toStdString();
    EXPECT_TRUE(error.contains("aggregate")) << error.toStdString();
}

} // namespace
} // namespace tabulor::test
