#pragma once

#include "production/data/Recordset.h"

#include <QCollator>
#include <QList>
#include <QString>

#include <memory>
#include <optional>

namespace tabulor {

enum class RecordSourceKind
{
    Table,
    Linked,
    View,
    Query
};

struct RecordSourceEntry
{
    QString name;
    RecordSourceKind kind = RecordSourceKind::Table;

    bool operator==(const RecordSourceEntry&) const = default;
};

// A field to sort by, and which way.
struct SortField
{
    QString name;
    bool descending = false;
};

// The text used for a kind on the command line: "table", "linked", "view" or "query".
QString recordSourceKindName(RecordSourceKind kind);

// The name of the record source that a name opens, as the database engines match names: the
// same name, else the one name that differs from it only in letter case. Empty when there is
// none, or more than one.
QString matchingRecordSourceName(const QList<RecordSourceEntry>& sources, const QString& name);

// An open database, read-only. One backend per kind of database; openDatabase() picks it.
class DataSource
{
public:
    virtual ~DataSource() = default;

    // The record sources a user may pick: tables (linked ones included) in the database's
    // own order, then views and saved queries, leaving out system and hidden objects.
    virtual QList<RecordSourceEntry> recordSources() = 0;

    // Opens a record source by its name, in any letter case. With a row limit the cursor stops
    // after that many rows. On failure returns null and sets *error.
    virtual std::unique_ptr<Recordset>
    openRecordSource(const QString& name, std::optional<qint64> rowLimit, QString* error) = 0;

    // The exact number of rows of a record source when the database can count it cheaply.
    virtual std::optional<qint64> countRows(const QString& name) = 0;

    // All rows of a record source in the order a report sorts them: by each field in turn,
    // empty values first, then numbers, dates and times, texts by the collation, then other
    // values; rows that tie keep the order openRecordSource gives them, and fields are typed
    // as it types them. The cursor stands on the first row. Null when the database cannot
    // sort so; the caller then sorts itself.
    virtual std::unique_ptr<Recordset> openSorted(const QString& name,
                                                  const QList<SortField>& order,
                                                  const QCollator& collator, QString* error);
};

} // namespace tabulor
