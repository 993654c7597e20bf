#pragma once

#include "production/data/Recordset.h"

#include <memory>
#include <optional>

namespace tabulor {

class DataSource;
class JetCatalog;
class JetHandle;
struct JetObject;

// Saved queries of a Jet file as record sources. A select, union or crosstab query is rebuilt
// from its definition in MSysQueries, translated for the embedded engine and run there over
// copies of the tables and queries it reads, which `database` opens.
namespace JetQuery {

// Runs a saved query and stands on its first row. Action queries (make-table, append, update,
// delete), data-definition, pass-through and parameter queries, and queries that cannot run
// (a missing table, a form reference, an unknown function) fail with *error set. `nesting`
// counts the queries of `database` being opened around this one, each reading the next; the
// data source keeps it, so that queries that read each other in a circle fail rather than
// open each other without end.
std::unique_ptr<Recordset> open(DataSource& database, const JetHandle& file,
                                const JetCatalog& catalog, const JetObject& query,
                                std::optional<qint64> rowLimit, int& nesting, QString* error);

} // namespace JetQuery

} // namespace tabulor
