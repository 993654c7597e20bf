#include "SqliteFixture.h"

#include "production/data/Recordset.h"
#include "production/databases/OpenDatabase.h"

#include <gtest/gtest.h>
#include <sqlite3.h>

#include <stdexcept>

namespace tabulor::test {

void createDatabase(const QString& path, const QString& script)
{
    sqlite3* db = nullptr;
    ASSERT_EQ(sqlite3_open(path.toUtf8().constData(), &db), SQLITE_OK);
    char* message = nullptr;
    const int result = sqlite3_exec(db, script.toUtf8().constData(), nullptr, nullptr, &message);
    const QString problem = QString::fromUtf8(message ? message : "");
    sqlite3_free(message);
    sqlite3_close(db);
    ASSERT_EQ(result, SQLITE_OK) << problem.toStdString();
}

ScratchDatabase::ScratchDatabase(const QString& script, const QString& fileName)
    : m_path(m_dir.filePath(fileName))
{
    createDatabase(m_path, script);
    QString error;
    m_source = openDatabase(m_path, &error);
    EXPECT_TRUE(m_source) << error.toStdString();
}

DataSource& ScratchDatabase::source()
{
    if (!m_source)
        throw std::runtime_error("the scratch database did not open");
    return *m_source;
}

QStringList names(const QList<RecordSourceEntry>& entries)
{
    QStringList result;
    for (const RecordSourceEntry& entry : entries)
        result.append(entry.name);
    return result;
}

QList<QVariantList> readRows(Recordset& records)
{
    QList<QVariantList> rows;
    while (!records.atEnd()) {
        QVariantList row;
        for (int field = 0; field < records.fieldCount(); ++field)
            row.append(records.value(field));
        rows.append(row);
        records.moveNext();
    }
    return rows;
}

QList<qint64> readCounts(DataSource& source, const QString& name, std::optional<qint64> limit)
{
    QString error;
    const std::unique_ptr<Recordset> records = source.openRecordSource(name, limit, &error);
    if (!records)
        return {};
    const QList<QVariantList> rows = readRows(*records);
    return {rows.size(), records->recordCount(), records->fieldCount()};
}

} // namespace tabulor::test
