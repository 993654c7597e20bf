#pragma once

#include "production/Recordset.h"

#include <memory>
#include <optional>

namespace tabulor {

class JetCatalog;
class JetHandle;
struct JetObject;

// Saved queries of a Jet file as record sources.
namespace JetQuery {

// Runs a saved select query and returns its rows. Action, pass-through and parameter queries
// and queries that cannot run here fail with *error set.
std::unique_ptr<Recordset> open(const std::shared_ptr<JetHandle>& database,
                                const JetCatalog& catalog, const JetObject& query,
                                std::optional<qint64> rowLimit, QString* error);

} // namespace JetQuery

} // namespace tabulor
