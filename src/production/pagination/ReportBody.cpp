#include "production/pagination/ReportBody.h"

#include <iterator>

namespace tabulor {

ReportBody::ReportBody(PageDocument& document, const OutlineGrid& grid,
                       const ReportDefinition& definition, std::vector<BodyRow> laterRowsToFit)
    : m_document(document), m_grid(grid), m_definition(definition),
      m_laterRowsToFit(std::move(laterRowsToFit))
{
}

void ReportBody::add(BodyRow row)
{
    if (m_paginator) {
        m_paginator->add(row);
        return;
    }
    m_fitRows.push_back(std::move(row));
    if (m_fitRows.size() >= static_cast<size_t>(GridLayout::kFitRows))
        start();
}

void ReportBody::start()
{
    if (m_grid.reportColumns().isEmpty() || m_document.stopped()) {
        m_fitRows.clear();
        m_laterRowsToFit.clear();
        return;
    }
    std::vector<BodyRow> measured = m_fitRows;
    measured.insert(measured.end(), std::make_move_iterator(m_laterRowsToFit.begin()),
                    std::make_move_iterator(m_laterRowsToFit.end()));
    m_laterRowsToFit.clear();
    m_layout.emplace(m_grid, measured, m_definition, m_document.fonts());
    m_paginator.emplace(m_document, m_grid, *m_layout, m_definition);
    m_paginator->begin();
    for (const BodyRow& row : m_fitRows)
        m_paginator->add(row);
    m_fitRows.clear();
}

void ReportBody::finish()
{
    if (!m_paginator)
        start();
    if (m_paginator)
        m_paginator->finish();
}

} // namespace tabulor
