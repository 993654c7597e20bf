#pragma once

#include "production/pages/PageDocument.h"

namespace tabulor::test {

// Writes a document of n blank pages, kept in memory.
inline void writeBlankPages(PageDocument& document, int n)
{
    document.StartDoc();
    for (int page = 2; page <= n; ++page)
        document.NewPage();
    document.EndDoc();
}

} // namespace tabulor::test
