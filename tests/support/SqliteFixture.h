#pragma once

#include "production/data/DataSource.h"

#include <QList>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>
#include <QVariantList>

#include <memory>
#include <optional>

namespace tabulor::test {

// Writes a database file by running an SQL script through the engine.
void createDatabase(const QString& path, const QString& script);

// A database built from a script in a temporary folder and opened through openDatabase.
class ScratchDatabase
{
public:
    explicit ScratchDatabase(const QString& script, const QString& fileName = "scratch.sqlite");

    const QString& path() const { return m_path; }
    // Throws when the database did not open, which fails the test without a crash.
    DataSource& source();

private:
    QTemporaryDir m_dir;
    QString m_path;
    std::unique_ptr<DataSource> m_source;
};

QStringList names(const QList<RecordSourceEntry>& entries);

// Every remaining row of a cursor, read from where it stands.
QList<QVariantList> readRows(Recordset& records);

// Opens a record source with a row limit and reads it: the rows read, the cursor's count and
// its number of fields; empty when it does not open.
QList<qint64> readCounts(DataSource& source, const QString& name, std::optional<qint64> limit);

} // namespace tabulor::test
