#pragma once

#include "definition/ReportDefinition.h"

#include <QStringList>

#include <vector>

namespace tabulor::test {

// A report over a record source, laid out from all its records loaded and sorted in memory,
// and from the records as the database sorts and streams them; each page as its items.
struct BothWaysReport
{
    qsizetype records = 0; // loaded in memory
    std::vector<QStringList> builtPages;
    bool streamed = false; // whether the database sorted the records
    std::vector<QStringList> streamedPages;
};

BothWaysReport renderBothWays(const QString& database, const QString& source,
                              const ReportDefinition& definition);

} // namespace tabulor::test
