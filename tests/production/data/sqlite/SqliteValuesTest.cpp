#include "SqliteFixture.h"

#include "production/base/FieldType.h"
#include "production/data/BinaryValue.h"
#include "production/data/Recordset.h"
#include "production/data/sqlite/SqliteValues.h"

#include <QDateTime>

#include <gtest/gtest.h>

namespace tabulor::test {
namespace {

std::unique_ptr<Recordset> openSource(DataSource& source, const QString& name)
{
    QString error;
    std::unique_ptr<Recordset> records = source.openRecordSource(name, std::nullopt, &error);
    EXPECT_TRUE(records) << error.toStdString();
    return records;
}

QList<qint16> fieldTypes(const Recordset& records)
{
    QList<qint16> types;
    for (int field = 0; field < records.fieldCount(); ++field)
        types.append(records.fieldType(field));
    return types;
}

TEST(SqliteFieldTypes, DeclaredTypesMapToFieldTypeCodes)
{
    const QList<std::pair<QString, qint16>> declared = {
        {"INTEGER", FieldLong},
        {"integer unsigned", FieldLong}, // by its first word, as below
        {"BIGINT", FieldBigInt},
        {"SMALLINT", FieldInteger},
        {"TINYINT", FieldByte},
        {"bool", FieldBoolean},
        {"BIT", FieldBoolean},
        {"REAL", FieldDouble},
        {"DOUBLE PRECISION", FieldDouble},
        {"SINGLE", FieldSingle},
        {"MONEY", FieldCurrency},
        {"DECIMAL(10,2)", FieldDecimal},
        {"NUMERIC ( 10, 2 )", FieldNumeric},
        {"DATE", FieldDate},
        {"TIMESTAMP WITH TIME ZONE", FieldDate},
        {"VARCHAR(40)", FieldText},
        {"VARCHAR2(30)", FieldText},
        {"CLOB", FieldMemo},
        {"BLOB", FieldLongBinary},
        {"VARBINARY(16)", FieldBinary},
        {"GUID", FieldGuid},
        // The engine's own rule finds the INT in POINT, and stores such values as integers.
        {"FLOATING POINT", FieldLong},
        // An unknown name leaves it to the first row, and this table has none.
        {"LONG VARBINARY", FieldText}};
    QString columns;
    QList<qint16> expected;
    for (const auto& [type, code] : declared) {
        columns += QStringLiteral("%1c%2 %3")
                       .arg(columns.isEmpty() ? "" : ", ")
                       .arg(expected.size())
                       .arg(type);
        expected.append(code);
    }
    ScratchDatabase db("CREATE TABLE Typed (" + columns + ");");
    const std::unique_ptr<Recordset> records = openSource(db.source(), "Typed");
    ASSERT_TRUE(records);
    EXPECT_TRUE(records->atEnd());
    EXPECT_EQ(fieldTypes(*records), expected);
}

TEST(SqliteFieldTypes, UndeclaredColumnsTakeTheTypeOfTheFirstRow)
{
    ScratchDatabase db(R"sql(
        CREATE TABLE Loose (anything, odd WIBBLE);
        INSERT INTO Loose VALUES (1, 'one'), ('two', 2);
        CREATE VIEW Computed AS
            SELECT 6 * 7 AS answer, 1.0 / 4 AS quarter, 'x' || 'y' AS joined,
                   zeroblob(2) AS bytes, NULL AS missing, anything, odd FROM Loose;
        CREATE VIEW NoRows AS SELECT 6 * 7 AS answer, 1.0 / 4 AS quarter FROM Loose WHERE 0;
    )sql");
    const std::unique_ptr<Recordset> computed = openSource(db.source(), "Computed");
    ASSERT_TRUE(computed);
    EXPECT_EQ(fieldTypes(*computed),
              (QList<qint16>{FieldBigInt, FieldDouble, FieldText, FieldLongBinary, FieldText,
                             FieldBigInt, FieldText}));
    // The second row's values keep their own storage classes.
    EXPECT_EQ(readRows(*computed)[1].mid(5), (QVariantList{"two", qint64(2)}));

    const std::unique_ptr<Recordset> empty = openSource(db.source(), "NoRows");
    ASSERT_TRUE(empty);
    EXPECT_EQ(fieldTypes(*empty), (QList<qint16>{FieldText, FieldText}));
}

TEST(SqliteValues, ValuesComeTypedByFieldAndStorageClass)
{
    ScratchDatabase db(QString::fromUtf8(R"sql(
        CREATE TABLE Mixed (
            id INTEGER, price MONEY, whole MONEY, ratio REAL, flag BOOLEAN, off BIT,
            day DATE, stamp DATETIME, zoned TIMESTAMP, clock TIME, vague DATE, serial DATE,
            name TEXT, data BLOB, missing TEXT);
        INSERT INTO Mixed VALUES (
            9007199254740993, 12.5, 12, 0.25, 1, 0,
            '2024-02-29', '2024-03-31 02:30:00', '2024-01-02T10:20:30.5+02:00', '23:59:59',
            'soon', 45000,
            'Zoë Σοφία Дмитрий 山田', X'00FF10', NULL);
    )sql"));
    const std::unique_ptr<Recordset> records = openSource(db.source(), "Mixed");
    ASSERT_TRUE(records);
    const QVariantList row = readRows(*records).value(0);
    ASSERT_EQ(row.size(), 15);

    // A whole number in a money column is still money; a 64-bit integer keeps every digit.
    const QVariantList expected = {
        qint64(9007199254740993),
        12.5,
        12.0,
        0.25,
        true,
        false,
        QDate(2024, 2, 29),
        QDateTime(QDate(2024, 3, 31), QTime(2, 30), Qt::UTC),
        QDateTime(QDate(2024, 1, 2), QTime(10, 20, 30, 500), Qt::OffsetFromUTC, 7200),
        QTime(23, 59, 59),
        QString("soon"),
        qint64(45000),
        QString::fromUtf8("Zoë Σοφία Дмитрий 山田"),
        binaryValue(3),
        QVariant(),
    };
    for (int i = 0; i < expected.size(); ++i) {
        SCOPED_TRACE(records->fieldName(i).toStdString());
        EXPECT_EQ(row[i].metaType(), expected[i].metaType());
        EXPECT_EQ(row[i], expected[i]);
    }
    // The clock reading survives even where local daylight saving has no such hour.
    EXPECT_EQ(row[7].toDateTime().time(), QTime(2, 30));
    EXPECT_EQ(row[8].toDateTime().offsetFromUtc(), 7200);
}

} // namespace
} // namespace tabulor::test
