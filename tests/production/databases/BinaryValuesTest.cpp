#include "SqliteFixture.h"
#include "TestSupport.h"

#include "production/base/FieldType.h"
#include "production/data/BinaryValue.h"
#include "production/data/Recordset.h"
#include "production/databases/OpenDatabase.h"

#include <gtest/gtest.h>

namespace tabulor::test {
namespace {

TEST(BinaryValues, AreShownByTheirSizeInTheUnitThatSuitsIt)
{
    const struct
    {
        qint64 size;
        const char* text;
    } cases[] = {
        {0, "(binary, 0 bytes)"},
        {1023, "(binary, 1023 bytes)"},
        {1024, "(binary, 1 KB)"},
        {328 * 1024 + 300, "(binary, 328 KB)"},
        {1024 * 1024 - 1, "(binary, 1024 KB)"},
        {qint64(2.4 * 1024 * 1024), "(binary, 2.4 MB)"},
    };
    for (const auto& c : cases) {
        const QVariant value = binaryValue(c.size);
        EXPECT_EQ(value.toString(), c.text) << c.size;
        EXPECT_EQ(value.value<BinaryValue>().size, c.size);
    }
}

TEST(BinaryValues, BlobsOfTablesAndViewsGiveTheirSizeNotTheirBytes)
{
    ScratchDatabase scratch("CREATE TABLE Pictures (Name TEXT, Picture BLOB);"
                            "INSERT INTO Pictures VALUES ('big', zeroblob(335872)),"
                            " ('empty', x''), ('none', NULL), ('text', 'not bytes');"
                            "CREATE VIEW Thumbnails AS SELECT Name, substr(Picture, 1, 16) AS Head"
                            " FROM Pictures;");
    QString error;
    const std::unique_ptr<Recordset> pictures =
        scratch.source().openRecordSource("Pictures", std::nullopt, &error);
    ASSERT_TRUE(pictures) << error.toStdString();
    EXPECT_EQ(pictures->fieldType(1), FieldLongBinary);
    const QList<QVariantList> rows = readRows(*pictures);
    ASSERT_EQ(rows.size(), 4);
    EXPECT_EQ(rows[0][1].toString(), "(binary, 328 KB)");
    EXPECT_EQ(rows[1][1], binaryValue(0));
    EXPECT_TRUE(rows[2][1].isNull());
    EXPECT_EQ(rows[3][1], "not bytes");

    // A column without a declared type is typed by its first value, and shown the same way.
    const std::unique_ptr<Recordset> thumbnails =
        scratch.source().openRecordSource("Thumbnails", std::nullopt, &error);
    ASSERT_TRUE(thumbnails) << error.toStdString();
    EXPECT_EQ(thumbnails->fieldType(1), FieldLongBinary);
    EXPECT_EQ(thumbnails->value(1).toString(), "(binary, 16 bytes)");
}

TEST(BinaryValues, OleObjectsReadThroughASavedQueryKeepTheirSize)
{
    // The query runs over a copy of the table, which holds the pictures' sizes only.
    QString error;
    const std::unique_ptr<DataSource> nwind =
        openDatabase(sharedDataPath("jet3_nwind.mdb"), &error);
    ASSERT_TRUE(nwind) << error.toStdString();
    const std::unique_ptr<Recordset> table =
        nwind->openRecordSource("Categories", std::nullopt, &error);
    ASSERT_TRUE(table) << error.toStdString();
    const std::unique_ptr<Recordset> query =
        nwind->openRecordSource("Catalog", std::nullopt, &error);
    ASSERT_TRUE(query) << error.toStdString();
    int picture = -1;
    for (int field = 0; field < query->fieldCount(); ++field) {
        if (query->fieldName(field) == "Picture")
            picture = field;
    }
    ASSERT_GE(picture, 0);
    QList<QVariant> tableSizes;
    for (const QVariantList& row : readRows(*table))
        tableSizes.append(row[3]);
    ASSERT_EQ(tableSizes.size(), 8);
    for (; !query->atEnd(); query->moveNext()) {
        const QVariant value = query->value(picture);
        EXPECT_TRUE(value.toString().startsWith("(binary, ")) << value.toString().toStdString();
        EXPECT_TRUE(tableSizes.contains(value)) << value.toString().toStdString();
    }
}

} // namespace
} // namespace tabulor::test
