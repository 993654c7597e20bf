#include "production/grid/ColumnCells.h"
#include "production/base/ByteTextTable.h"

#include <QDate>

#include <gtest/gtest.h>

#include <string>

using namespace tabulor;

namespace {

// One record of texts, handed over as UTF-8 where the text is a string, as a database cursor
// does.
class TextRecords : public Recordset
{
public:
    explicit TextRecords(QList<QVariant> values) : m_values(std::move(values)) {}

    int fieldCount() const override { return 1; }
    QString fieldName(int) const override { return QStringLiteral("f"); }
    qint16 fieldType(int) const override { return 10; }
    bool moveFirst() override { return m_at = 0, !atEnd(); }
    bool moveNext() override { return ++m_at, !atEnd(); }
    bool atEnd() const override { return m_at >= m_values.size(); }
    QVariant value(int) const override { return m_values.at(m_at); }
    bool utf8Text(int, std::string_view* text) const override
    {
        if (m_values.at(m_at).typeId() != QMetaType::QString)
            return false;
        m_bytes = m_values.at(m_at).toString().toStdString();
        *text = m_bytes;
        return true;
    }
    qint64 recordCount() const override { return m_values.size(); }

private:
    QList<QVariant> m_values;
    qsizetype m_at = 0;
    mutable std::string m_bytes;
};

} // namespace

TEST(ByteTextTable, FindsEveryTextItWasGivenByItsBytesAlone)
{
    ByteTextTable table;
    EXPECT_EQ(table.find("anything"), ByteTextTable::kAbsent);
    // Enough texts to grow many times, sharing long prefixes and differing in the last byte,
    // with empty and embedded-zero texts among them.
    std::vector<std::string> texts{std::string(), std::string("a\0b", 3), std::string("a\0c", 3)};
    for (int i = 0; i < 50000; ++i)
        texts.push_back("customer name that is rather long " + std::to_string(i));
    for (size_t i = 0; i < texts.size(); ++i)
        EXPECT_EQ(table.insert(texts[i], quint32(i * 3)), qsizetype(i));
    // Adding a text again finds the first entry and keeps its number.
    EXPECT_EQ(table.insert(texts[7], 1), 7);
    ASSERT_EQ(table.size(), qsizetype(texts.size()));
    for (size_t i = 0; i < texts.size(); ++i) {
        ASSERT_EQ(table.find(texts[i]), quint32(i * 3)) << i;
        ASSERT_EQ(table.text(qsizetype(i)), texts[i]);
    }
    EXPECT_EQ(table.find("customer name that is rather long 50000"), ByteTextTable::kAbsent);
    EXPECT_EQ(table.find(std::string("a\0d", 3)), ByteTextTable::kAbsent);
}

TEST(ColumnCells, TextsReadAsBytesShareTheDictionaryWithTextsReadAsValues)
{
    ColumnCells cells;
    cells.append(QVariant(QStringLiteral("Zürich")));
    TextRecords records({QStringLiteral("Zürich"), QStringLiteral("Bern"), QVariant(),
                         QVariant(QDate(2024, 2, 29)), QStringLiteral("Bern")});
    for (bool ok = records.moveFirst(); ok; ok = records.moveNext())
        cells.append(records, 0);
    cells.append(QVariant(QStringLiteral("Bern")));

    ASSERT_EQ(cells.size(), 7);
    EXPECT_EQ(cells.texts(), QStringList({QStringLiteral("Zürich"), QStringLiteral("Bern")}));
    EXPECT_EQ(cells.at(1).textId, cells.at(0).textId);
    EXPECT_EQ(cells.at(5).textId, cells.at(2).textId);
    EXPECT_EQ(cells.at(6).textId, cells.at(2).textId);
    EXPECT_EQ(cells.at(3).kind, CellValue::Empty);
    EXPECT_EQ(cells.value(4), QVariant(QDate(2024, 2, 29)));
}

TEST(ColumnCells, KeptRecordsKeepTheirTextNumbersUntilTheDictionaryGrowsLarge)
{
    ColumnCells cells;
    for (int i = 0; i < 10; ++i)
        cells.append(QVariant(QStringLiteral("text %1").arg(i % 4)));
    const quint32 numbering = cells.textNumbering();
    cells.keep({7, 2});
    ASSERT_EQ(cells.size(), 2);
    EXPECT_EQ(cells.value(0), QVariant(QStringLiteral("text 3")));
    EXPECT_EQ(cells.value(1), QVariant(QStringLiteral("text 2")));
    EXPECT_EQ(cells.textNumbering(), numbering) << "few texts: the numbers stay";
    EXPECT_EQ(cells.texts().size(), 4);

    // A column of ever new texts starts its dictionary again from the records kept.
    for (int i = 0; i < 20000; ++i)
        cells.append(QVariant(QStringLiteral("unique %1").arg(i)));
    cells.keep({1, 20001});
    ASSERT_EQ(cells.size(), 2);
    EXPECT_NE(cells.textNumbering(), numbering);
    EXPECT_EQ(cells.texts(),
              QStringList({QStringLiteral("text 2"), QStringLiteral("unique 19999")}));
    EXPECT_EQ(cells.value(1), QVariant(QStringLiteral("unique 19999")));
    cells.append(QVariant(QStringLiteral("text 2")));
    EXPECT_EQ(cells.at(2).textId, cells.at(0).textId);
}
