#include "JetFixture.h"
#include "SqliteFixture.h"
#include "TestSupport.h"

#include "production/data/jet/JetCatalog.h"

#include <QProcess>

#include <gtest/gtest.h>

namespace tabulor::test {
namespace {

using Kind = RecordSourceKind;

QList<RecordSourceEntry> entries(Kind kind, const QStringList& names)
{
    QList<RecordSourceEntry> list;
    for (const QString& name : names)
        list.append({name, kind});
    return list;
}

TEST(JetRecordSources, NorthwindListsUserTablesThenEveryQueryButEmbeddedOnes)
{
    const auto northwind = openJet(sharedDataPath("jet4_Northwind.mdb"));
    ASSERT_TRUE(northwind);
    // Catalog order, not alphabetical. The MSys tables are system objects (flags 0x80000000,
    // 0x2 or 0xa); the three hidden queries (flag 0x8) are listed like every query; the 31
    // "~sq_" queries are not.
    const QList<RecordSourceEntry> expected =
        entries(Kind::Table, {"Categories", "Customers", "Employees", "Order Details", "Orders",
                              "Products", "Shippers", "Suppliers", "Paste Errors"}) +
        entries(Kind::Query, {"Alphabetical List of Products",
                              "Category Sales for 1997",
                              "Current Product List",
                              "Employee Sales by Country",
                              "Invoices",
                              "Invoices Filter",
                              "SupplierQuery",
                              "Order Details Extended",
                              "Order Subtotals",
                              "Orders Qry",
                              "Product Sales for 1997",
                              "Products by Category",
                              "Quarterly Orders",
                              "Quarterly Orders by Product",
                              "Sales by Category",
                              "Sales Totals by Amount",
                              "Summary of Sales by Quarter",
                              "Summary of Sales by Year",
                              "Ten Most Expensive Products",
                              "Customers and Suppliers by City",
                              "Products Above Average Price",
                              "Sales by Year",
                              "Query1",
                              "Query2"});
    EXPECT_EQ(northwind->recordSources(), expected);
}

TEST(JetRecordSources, Jet3FileListsItsTablesWithTheirCodePageNames)
{
    const auto nwind = openJet(sharedDataPath("jet3_nwind.mdb"));
    ASSERT_TRUE(nwind);
    const QList<RecordSourceEntry> sources = nwind->recordSources();
    ASSERT_EQ(sources.size(), 9 + 22);
    EXPECT_EQ(sources.mid(0, 9),
              entries(Kind::Table,
                      {"Order Details", "Orders", "Products", "Shippers", "Categories", "Customers",
                       "Employees", "Suppliers", QString::fromUtf8("Umsätze")}));
    EXPECT_TRUE(sources.contains(RecordSourceEntry{"Summary of Sales by Year", Kind::Query}));
}

TEST(JetRecordSources, EmbeddedSourcePrefixIsMatchedExactlyForTablesAndQueries)
{
    // A copy with a table renamed to "~sq_pers" and an embedded query renamed to "~SQ_..."
    // (names of the same length, so that the file keeps its layout).
    QTemporaryDir dir;
    const QString path = copyInto(dir, sharedDataPath("jet4_Northwind.mdb"));
    ASSERT_GT(renameInFile(path, "Shippers", "~sq_pers"), 0);
    ASSERT_GT(renameInFile(path, "~sq_fCategories", "~SQ_fCategories"), 0);

    const auto source = openJet(path);
    ASSERT_TRUE(source);
    const QStringList listed = names(source->recordSources());
    EXPECT_FALSE(listed.contains("~sq_pers"));
    EXPECT_FALSE(listed.contains("Shippers"));
    EXPECT_TRUE(listed.contains("~SQ_fCategories"));
    EXPECT_EQ(listed.filter("~sq_").size(), 0);
    // Left out of the list but still a table a definition may name.
    const auto shippers = openSource(*source, "~sq_pers");
    ASSERT_TRUE(shippers);
    EXPECT_EQ(readRows(*shippers).size(), 3);
}

TEST(JetRecordSources, FlagsMapToTheClassicAttributeBits)
{
    const auto attributes = [](quint32 flags) {
        JetObject object;
        object.flags = flags;
        return object.attributes();
    };
    EXPECT_EQ(attributes(0), 0u);
    EXPECT_EQ(attributes(0x80000000u), 0x80000002u);
    EXPECT_EQ(attributes(0x2), 0x80000002u);
    EXPECT_EQ(attributes(0x8), 0x1u);
    EXPECT_EQ(attributes(0xa), 0x80000003u);
    // Link and query-kind flags are not attributes.
    EXPECT_EQ(attributes(0x20100000u), 0u);
    EXPECT_EQ(attributes(0x00200000u), 0u);
    EXPECT_EQ(attributes(0x80), 0u);
}

TEST(JetRecordSources, UnknownNamesFailCleanly)
{
    const auto northwind = openJet(sharedDataPath("jet4_Northwind.mdb"));
    ASSERT_TRUE(northwind);
    for (const QString& name :
         {QString("Orders "), QString("[Orders]"), QString("Orders; DROP TABLE Orders"),
          QString("Or'ders"), QString("\"Orders\""), QString("MSysNope"), QString(),
          QString("Customer Orders") /* a form */}) {
        QString error;
        EXPECT_FALSE(northwind->openRecordSource(name, 10, &error)) << name.toStdString();
        EXPECT_TRUE(error.contains("is not a table or query")) << error.toStdString();
        EXPECT_EQ(northwind->countRows(name), std::nullopt) << name.toStdString();
    }
    EXPECT_EQ(northwind->countRows("Orders"), 830);
    EXPECT_EQ(northwind->countRows("Order Details"), 2155);
}

TEST(JetLinkedTables, AccessLinkFallsBackToTheFileBesideTheDatabase)
{
    QTemporaryDir dir;
    const QString linker = copyInto(dir, sharedDataPath("ace12_linkerTestV2007.accdb"));
    {
        // The stored path (Z:\jackcess_test\linkeeTest.accdb) does not exist here, and nothing
        // is beside the database yet.
        const auto source = openJet(linker);
        ASSERT_TRUE(source);
        EXPECT_EQ(source->recordSources(),
                  (QList<RecordSourceEntry>{{"Table1", Kind::Table}, {"Table2", Kind::Linked}}));
        QString error;
        EXPECT_FALSE(source->openRecordSource("Table2", std::nullopt, &error));
        EXPECT_TRUE(error.contains("Table2") && error.contains("linkeeTest.accdb"))
            << error.toStdString();
        EXPECT_EQ(source->countRows("Table2"), std::nullopt);
    }
    copyInto(dir, sharedDataPath("linkeeTest.accdb"));
    const auto source = openJet(linker);
    ASSERT_TRUE(source);
    // The link names the linked file's Table1, which holds "bar"; this file's own Table1
    // holds "foo".
    const auto linked = openSource(*source, "Table2");
    ASSERT_TRUE(linked);
    EXPECT_EQ(readRows(*linked), (QList<QVariantList>{{1, "bar"}}));
    EXPECT_EQ(source->countRows("Table2"), 1);
    const auto local = openSource(*source, "Table1");
    ASSERT_TRUE(local);
    EXPECT_EQ(readRows(*local), (QList<QVariantList>{{1, "foo"}}));
}

TEST(JetCommandLine, SourcesWithKindsComeThroughTheFactory)
{
    QProcess tool;
    tool.start(toolPath(), {"sources", sharedDataPath("ace12_ASampleDatabase.accdb"), "--kind"});
    ASSERT_TRUE(tool.waitForFinished(60000));
    EXPECT_EQ(tool.exitCode(), 0) << tool.readAllStandardError().toStdString();
    EXPECT_EQ(QString::fromUtf8(tool.readAllStandardOutput()).trimmed(),
              "table\tAsset Items\n"
              "query\tqryComputerHardwareInOwnerOrder\n"
              "query\tqryCostsSummedByOwner\n"
              "query\tqryGSTCalculations");
}

} // namespace
} // namespace tabulor::test
