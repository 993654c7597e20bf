#include "production/pagination/ReportBody.h"

namespace tabulor {

ReportBody::ReportBody(PageDocument& document, const OutlineGrid& grid,
                       const ReportDefinition& definition)
    : m_document(document), m_grid(grid), m_definition(definition)
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
        return;
    }
    m_layout.emplace(m_grid, m_fitRows, m_definition, m_document.fonts());
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
