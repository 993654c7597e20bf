#pragma once

#include "production/data/DataSource.h"

#include <QList>
#include <QString>

#include <optional>

namespace tabulor {

class JetHandle;

// One object of a Jet file that can be a record source, as the object table describes it.
struct JetObject
{
    enum class Kind
    {
        Table,
        LinkedFile,
        LinkedOdbc,
        Query
    };

    qint32 id = 0;
    QString name;
    Kind kind = Kind::Table;
    quint32 flags = 0;
    // Where a linked table lives: the file of an Access link, the connection of an ODBC
    // link, and the table's name there.
    QString database;
    QString connect;
    QString foreignName;

    // A query's kind in its flags (bits 0xf0): 0 select, 0x10 crosstab, 0x80 union; the others
    // are action, data-definition and pass-through queries.
    static constexpr quint32 QueryKindBits = 0xf0;
    static constexpr quint32 CrosstabQueryFlag = 0x10;
    static constexpr quint32 UnionQueryFlag = 0x80;

    // The attribute bits the flags stand for: system 0x80000002 (flags 0x80000000 or 0x2),
    // hidden 1 (flag 0x8).
    quint32 attributes() const;
    // Whether this is a query whose flags say that it changes data, defines tables or runs
    // on a server: it gives no rows to report on.
    bool isActionQuery() const;
};

// The tables, linked tables and saved queries of a Jet file, read from its object table
// (MSysObjects), whose types and link details libmdb's own catalog does not keep.
class JetCatalog
{
public:
    // Nullopt with *error set when the object table cannot be read.
    static std::optional<JetCatalog> read(const JetHandle& database, QString* error);

    // Tables (linked ones included) that are neither system nor hidden objects, then the
    // saved queries, each in the order of the object table; names beginning with "~sq_"
    // (exactly so) hold the embedded sources of forms and reports and are left out.
    QList<RecordSourceEntry> recordSources() const;

    // The object with this name, or else the one whose name differs from it only in letter
    // case, as Jet matches names; null when there is none.
    const JetObject* find(const QString& name) const;

    const QList<JetObject>& objects() const { return m_objects; }

private:
    QList<JetObject> m_objects;
};

} // namespace tabulor
