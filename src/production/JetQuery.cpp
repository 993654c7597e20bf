#include "production/JetQuery.h"

#include "production/JetCatalog.h"

namespace tabulor::JetQuery {

std::unique_ptr<Recordset> open(const std::shared_ptr<JetHandle>&, const JetCatalog&,
                                const JetObject& query, std::optional<qint64>, QString* error)
{
    if (error)
        *error = QStringLiteral("The query '%1' cannot be run.").arg(query.name);
    return nullptr;
}

} // namespace tabulor::JetQuery
