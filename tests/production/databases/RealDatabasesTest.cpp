#include "SqliteFixture.h"
#include "TestSupport.h"

#include "production/base/FieldType.h"
#include "production/data/Recordset.h"
#include "production/databases/OpenDatabase.h"

#include <QDateTime>

#include <gtest/gtest.h>

namespace tabulor::test {
namespace {

std::unique_ptr<DataSource> open(const QString& path)
{
    QString error;
    std::unique_ptr<DataSource> source = openDatabase(path, &error);
    EXPECT_TRUE(source) << error.toStdString();
    return source;
}

QVariantList firstRow(DataSource& source, const QString& name, QList<qint16>* types = nullptr)
{
    QString error;
    const std::unique_ptr<Recordset> records = source.openRecordSource(name, 1, &error);
    EXPECT_TRUE(records) << error.toStdString();
    if (!records)
        return {};
    for (int field = 0; types && field < records->fieldCount(); ++field)
        types->append(records->fieldType(field));
    return readRows(*records).value(0);
}

TEST(RealDatabases, ChinookListsReadsAndCounts)
{
    // Opened in place: the connection is read-only and the file stays as it is.
    const std::unique_ptr<DataSource> chinook = open(sharedDataPath("sqlite_Chinook.sqlite"));
    ASSERT_TRUE(chinook);
    EXPECT_EQ(names(chinook->recordSources()),
              (QStringList{"Album", "Artist", "Customer", "Employee", "Genre", "Invoice",
                           "InvoiceLine", "MediaType", "Playlist", "PlaylistTrack", "Track"}));

    QList<qint16> types;
    const QVariantList invoice = firstRow(*chinook, "Invoice", &types);
    EXPECT_EQ(types, (QList<qint16>{FieldLong, FieldLong, FieldDate, FieldText, FieldText,
                                    FieldText, FieldText, FieldText, FieldNumeric}));
    ASSERT_EQ(invoice.size(), 9);
    EXPECT_EQ(invoice[2], QDateTime(QDate(2021, 1, 1), QTime(0, 0), Qt::UTC));
    EXPECT_EQ(invoice[3], QString::fromUtf8("Theodor-Heuss-Straße 34"));
    EXPECT_EQ(invoice[5], QVariant());
    EXPECT_EQ(invoice[8], 1.98);

    QString error;
    const std::unique_ptr<Recordset> tracks = chinook->openRecordSource("Track", {}, &error);
    ASSERT_TRUE(tracks) << error.toStdString();
    EXPECT_EQ(readRows(*tracks).size(), 3503);
    EXPECT_EQ(tracks->recordCount(), 3503);
    EXPECT_EQ(chinook->countRows("Track"), 3503);
}

TEST(RealDatabases, SampleDatabaseIsBuiltWithRelatedTablesAndViews)
{
    const std::unique_ptr<DataSource> sample = open(samplePath("sample.sqlite"));
    ASSERT_TRUE(sample);
    using Kind = RecordSourceKind;
    EXPECT_EQ(sample->recordSources(),
              (QList<RecordSourceEntry>{{"Regions", Kind::Table},
                                        {"Customers", Kind::Table},
                                        {"Products", Kind::Table},
                                        {"Orders", Kind::Table},
                                        {"Order Details", Kind::Table},
                                        {"Order Details Extended", Kind::View},
                                        {"Sales by Region", Kind::View}}));

    EXPECT_GE(sample->countRows("Order Details"), 1000);
    EXPECT_EQ(sample->countRows("Order Details Extended"), sample->countRows("Order Details"));
    EXPECT_EQ(sample->countRows("Sales by Region"), sample->countRows("Orders"));

    QList<qint16> types;
    const QVariantList line = firstRow(*sample, "Order Details Extended", &types);
    EXPECT_EQ(types,
              (QList<qint16>{FieldLong, FieldDate, FieldText, FieldText, FieldText, FieldText,
                             FieldLong, FieldCurrency, FieldDouble, FieldDouble}));
    ASSERT_EQ(line.size(), 10);
    EXPECT_EQ(line[1].metaType(), QMetaType::fromType<QDate>());
    EXPECT_EQ(line[7].metaType(), QMetaType::fromType<double>());
    EXPECT_NEAR(line[9].toDouble(),
                line[6].toDouble() * line[7].toDouble() * (1 - line[8].toDouble()), 0.005);

    types.clear();
    firstRow(*sample, "Sales by Region", &types);
    EXPECT_EQ(types, (QList<qint16>{FieldText, FieldText, FieldText, FieldLong, FieldDate,
                                    FieldBigInt, FieldDouble}));

    // Customer names in several scripts, for fonts and text measurement downstream.
    QString error;
    const std::unique_ptr<Recordset> customers =
        sample->openRecordSource("Customers", std::nullopt, &error);
    ASSERT_TRUE(customers) << error.toStdString();
    QStringList companies;
    for (const QVariantList& row : readRows(*customers))
        companies.append(row[1].toString());
    for (const char* name :
         {"Café Lumière", "Ελληνικά Τρόφιμα Α.Ε.", "Балкан Трейд ООД", "山田商事株式会社"})
        EXPECT_TRUE(companies.contains(QString::fromUtf8(name))) << name;
}

} // namespace
} // namespace tabulor::test
