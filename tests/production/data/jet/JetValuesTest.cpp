#include "JetFixture.h"
#include "SqliteFixture.h"
#include "TestSupport.h"

#include "production/base/Currency.h"
#include "production/base/FieldType.h"
#include "production/data/BinaryValue.h"
#include "production/data/jet/JetRecordset.h"
#include "production/data/jet/JetValues.h"

#include <QCryptographicHash>
#include <QDateTime>
#include <QFile>

#include <mdbtools.h>

#include <gtest/gtest.h>

namespace tabulor::test {
namespace {

QDateTime utc(int y, int m, int d, int hh, int mm, int ss = 0)
{
    return QDateTime(QDate(y, m, d), QTime(hh, mm, ss), Qt::UTC);
}

TEST(JetValues, EveryTableReadsAsTheExportToolPrintsIt)
{
    // Digests of mdb-export's output for each user table of the sample files: every value of
    // every column type (text in both encodings, memo, OLE, date, currency, single, integer,
    // long, boolean) is checked, row by row.
    QFile digests(testDataPath("exported-tables.tsv"));
    ASSERT_TRUE(digests.open(QIODevice::ReadOnly | QIODevice::Text));
    int checked = 0;
    while (!digests.atEnd()) {
        const QString line = QString::fromUtf8(digests.readLine()).trimmed();
        if (line.startsWith('#') || line.isEmpty())
            continue;
        const QStringList parts = line.split('\t');
        ASSERT_EQ(parts.size(), 4) << line.toStdString();
        SCOPED_TRACE((parts[0] + " / " + parts[1]).toStdString());
        const auto source = openJet(sharedDataPath(parts[0]));
        ASSERT_TRUE(source);
        const auto records = openSource(*source, parts[1]);
        ASSERT_TRUE(records);
        const QByteArray text = exportText(*records);
        EXPECT_EQ(records->recordCount(), parts[2].toLongLong());
        EXPECT_EQ(QCryptographicHash::hash(text, QCryptographicHash::Sha256).toHex(),
                  parts[3].toLatin1())
            << "first lines read:\n"
            << text.left(600).toStdString();
        ++checked;
    }
    EXPECT_EQ(checked, 22);
}

TEST(JetValues, NorthwindOrderRowHasTypedValues)
{
    const auto northwind = openJet(sharedDataPath("jet4_Northwind.mdb"));
    ASSERT_TRUE(northwind);
    const auto orders = openSource(*northwind, "Orders");
    ASSERT_TRUE(orders);
    QList<qint16> types;
    for (int i = 0; i < orders->fieldCount(); ++i)
        types.append(orders->fieldType(i));
    EXPECT_EQ(types, (QList<qint16>{FieldLong, FieldText, FieldLong, FieldDate, FieldDate,
                                    FieldDate, FieldLong, FieldCurrency, FieldText, FieldText,
                                    FieldText, FieldText, FieldText, FieldText}));
    const QVariantList first = readRows(*orders).value(0);
    ASSERT_EQ(first.size(), 14);
    EXPECT_EQ(first[0], 10248);
    EXPECT_EQ(first[3], QDate(1996, 7, 4));
    EXPECT_EQ(first[3].metaType(), QMetaType::fromType<QDate>());
    EXPECT_EQ(first[7], QVariant::fromValue(Currency{323800}));
    EXPECT_EQ(first[8], "Vins et alcools Chevalier");
    EXPECT_EQ(first[11], QVariant()); // ShipRegion is empty

    const auto details = openSource(*northwind, "Order Details");
    ASSERT_TRUE(details);
    const QList<QVariantList> lines = readRows(*details);
    ASSERT_EQ(lines.size(), 2155);
    // A single keeps its shortest decimal form: 0.15, not 0.15000000596.
    EXPECT_EQ(lines[6], (QVariantList{10250, 51, QVariant::fromValue(Currency{424000}), 35, 0.15}));
    EXPECT_EQ(details->fieldType(3), FieldInteger);
    EXPECT_EQ(details->fieldType(4), FieldSingle);

    const auto products = openSource(*northwind, "Products");
    ASSERT_TRUE(products);
    EXPECT_EQ(products->fieldType(9), FieldBoolean);
    const QList<QVariantList> items = readRows(*products);
    EXPECT_EQ(items[4][9], true);  // Chef Anton's Gumbo Mix is discontinued
    EXPECT_EQ(items[0][9], false); // Chai is not
}

TEST(JetValues, Jet3TextMemoAndObjectsDecode)
{
    const auto nwind = openJet(sharedDataPath("jet3_nwind.mdb"));
    ASSERT_TRUE(nwind);
    const auto customers = openSource(*nwind, "Customers");
    ASSERT_TRUE(customers);
    QStringList companies;
    for (const QVariantList& row : readRows(*customers))
        companies.append(row[1].toString());
    EXPECT_TRUE(companies.contains(QString::fromUtf8("Mère Paillarde")));

    const auto employees = openSource(*nwind, "Employees");
    ASSERT_TRUE(employees);
    EXPECT_EQ(employees->fieldType(14), FieldLongBinary);
    EXPECT_EQ(employees->fieldType(15), FieldMemo);
    const QVariantList nancy = readRows(*employees).value(0);
    EXPECT_EQ(nancy[7], "507 - 20th Ave. E.\r\nApt. 2A");
    EXPECT_EQ(nancy[5], QDate(1948, 12, 8));
    // The photo's bytes are there to be read, but a report gets only their size, which the
    // row's field gives without them.
    const auto standingOnNancy = openSource(*nwind, "Employees");
    ASSERT_TRUE(standingOnNancy);
    const QByteArray photo = dynamic_cast<JetRecordset&>(*standingOnNancy).bytes(14);
    EXPECT_GT(photo.size(), 20000);
    EXPECT_TRUE(photo.contains("PBrush"));
    EXPECT_EQ(nancy[14], binaryValue(photo.size()));
    EXPECT_EQ(nancy[14].toString(), "(binary, 21 KB)");
    EXPECT_TRUE(nancy[15].toString().startsWith("Education includes"))
        << nancy[15].toString().toStdString();
}

TEST(JetValues, DatesBefore1900AndInYear9999AreDecodedFromTheirDays)
{
    const auto dates = openJet(sharedDataPath("jet4_DateTestDatabase.mdb"));
    ASSERT_TRUE(dates);
    const auto rows = openSource(*dates, "DateTest");
    ASSERT_TRUE(rows);
    QMap<QString, QVariantList> byLabel;
    for (const QVariantList& row : readRows(*rows))
        byLabel.insert(row[5].toString(), row.mid(1, 3));
    EXPECT_EQ(byLabel.value("Hello"),
              (QVariantList{QDate(2021, 12, 2), QDate(2021, 12, 2), QDate(2021, 12, 2)}));
    EXPECT_EQ(byLabel.value("Year 1999").value(0), QDate(9999, 1, 1));
    EXPECT_EQ(byLabel.value("Pre-1900 years"),
              (QVariantList{QDate(1898, 1, 1), QDate(1899, 1, 1), QDate(1900, 1, 1)}));
    EXPECT_EQ(byLabel.value("Pre-1000 years"),
              (QVariantList{QDate(632, 1, 1), QDate(633, 1, 1), QDate(634, 1, 1)}));
}

TEST(JetValues, DateSerialsCountDaysBothWaysWithTheTimeAsFraction)
{
    EXPECT_EQ(jetDateValue(0), QDate(1899, 12, 30));
    EXPECT_EQ(jetDateValue(2), QDate(1900, 1, 1));
    EXPECT_EQ(jetDateValue(35431.5), utc(1997, 1, 1, 12, 0));
    // Before day 0 the fraction still adds a time of day.
    EXPECT_EQ(jetDateValue(-1.25), utc(1899, 12, 29, 6, 0));
    EXPECT_EQ(jetDateValue(-0.5), utc(1899, 12, 30, 12, 0));
    // A time stored a hair short of midnight is the next day at midnight, either side of 0:
    // -1.9999999 is 1899-12-29 at 23:59:59.99.
    EXPECT_EQ(jetDateValue(1.9999999), QDate(1900, 1, 1));
    EXPECT_EQ(jetDateValue(-1.9999999), QDate(1899, 12, 30));
    EXPECT_EQ(jetDateValue(44532 + 10.0 / 86400), utc(2021, 12, 2, 0, 0, 10));
    EXPECT_EQ(jetDateValue(2958465.999988426), utc(9999, 12, 31, 23, 59, 59));
    EXPECT_EQ(jetDateValue(-657434), QDate(100, 1, 1));
    for (double outside : {-657435.0, 2958466.0, 1e300, std::nan("")})
        EXPECT_EQ(jetDateValue(outside), QVariant()) << outside;
}

TEST(JetValues, FixedValuesFromTheirBytes)
{
    const auto bytes = [](std::initializer_list<int> list) {
        QByteArray data;
        for (int b : list)
            data.append(char(b));
        return data;
    };
    const auto value = [](int type, const QByteArray& data, int scale = 0) {
        return jetFixedValue(type, reinterpret_cast<const unsigned char*>(data.constData()),
                             int(data.size()), scale);
    };
    EXPECT_EQ(value(MDB_BYTE, bytes({0xff})), 255);
    EXPECT_EQ(value(MDB_INT, bytes({0xfe, 0xff})), -2);
    EXPECT_EQ(value(MDB_LONGINT, bytes({0x00, 0x00, 0x00, 0x80})),
              std::numeric_limits<qint32>::min());
    EXPECT_EQ(value(JetBigIntType, bytes({1, 0, 0, 0, 0, 0, 0, 0x80})),
              std::numeric_limits<qint64>::min() + 1);
    // -0.0001 and the largest amount a currency column holds.
    EXPECT_EQ(value(MDB_MONEY, bytes({0xff, 0xff, 0xff, 0xff, 0xff, 0xff, 0xff, 0xff})),
              QVariant::fromValue(Currency{-1}));
    EXPECT_EQ(value(MDB_MONEY, bytes({0xff, 0xff, 0xff, 0xff, 0xff, 0xff, 0xff, 0x7f})),
              QVariant::fromValue(Currency{std::numeric_limits<qint64>::max()}));
    EXPECT_EQ(value(MDB_DOUBLE, bytes({0, 0, 0, 0, 0, 0, 0xf8, 0x3f})), 1.5);
    EXPECT_EQ(value(MDB_REPID, bytes({0x33, 0x22, 0x11, 0x00, 0x55, 0x44, 0x77, 0x66, 0x88, 0x99,
                                      0xaa, 0xbb, 0xcc, 0xdd, 0xee, 0xff})),
              "{00112233-4455-6677-8899-AABBCCDDEEFF}");
    // Decimal: sign byte, then 32-bit words, most significant first. -123.45 at scale 2.
    EXPECT_EQ(
        value(MDB_NUMERIC, bytes({0x80, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0x39, 0x30, 0, 0}), 2),
        -123.45);
    // Too few bytes for the type: no value rather than a read past them.
    EXPECT_EQ(value(MDB_MONEY, bytes({1, 2, 3})), QVariant());
    EXPECT_EQ(value(MDB_NUMERIC, bytes({0, 1})), QVariant());
    EXPECT_EQ(value(MDB_TEXT, bytes({'a'})), QVariant());
}

TEST(JetValues, ColumnTypesMapToFieldTypes)
{
    EXPECT_EQ(fieldTypeForJetColumn(MDB_NUMERIC), FieldDecimal);
    EXPECT_EQ(fieldTypeForJetColumn(MDB_OLE), FieldLongBinary);
    EXPECT_EQ(fieldTypeForJetColumn(MDB_REPID), FieldGuid);
    EXPECT_EQ(fieldTypeForJetColumn(JetBigIntType), FieldBigInt);
    // Attachments, multi-value fields and extended dates are not read: empty text columns.
    for (int unreadable : {int(MDB_COMPLEX), 0x14, 0x7f}) {
        EXPECT_EQ(fieldTypeForJetColumn(unreadable), FieldText);
        EXPECT_FALSE(isReadableJetColumn(unreadable));
    }
    EXPECT_TRUE(isReadableJetColumn(MDB_TEXT));
}

TEST(JetValues, RowLimitStopsReadingAndCountsStayConsistent)
{
    const auto northwind = openJet(sharedDataPath("jet4_Northwind.mdb"));
    ASSERT_TRUE(northwind);
    QString error;
    const auto limited = northwind->openRecordSource("Order Details", 249, &error);
    ASSERT_TRUE(limited) << error.toStdString();
    EXPECT_EQ(readRows(*limited).size(), 249);
    EXPECT_EQ(limited->recordCount(), 249);
    EXPECT_TRUE(limited->moveFirst());
    EXPECT_EQ(limited->value(0), 10248);

    const auto none = northwind->openRecordSource("Orders", 0, &error);
    ASSERT_TRUE(none);
    EXPECT_TRUE(none->atEnd());
    EXPECT_EQ(none->fieldCount(), 14);
    EXPECT_EQ(none->value(0), QVariant());

    const auto all = northwind->openRecordSource("Orders", std::nullopt, &error);
    ASSERT_TRUE(all);
    EXPECT_EQ(all->recordCount(), 830); // known before reading
    EXPECT_EQ(all->value(-1), QVariant());
    EXPECT_EQ(all->value(14), QVariant());
}

} // namespace
} // namespace tabulor::test
