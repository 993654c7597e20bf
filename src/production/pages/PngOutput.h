#pragma once

#include "production/base/Export.h"
#include "production/pages/DisplayList.h"
#include "production/pages/ReportOutput.h"

#include <QImage>
#include <QString>

#include <limits>

namespace tabulor {

class FontCatalog;

// Writes pages as PNG images at a resolution, one file a page: the file name pattern holds
// "%d" for the page number (it may be left out when only one page is written).
class TABULOR_EXPORT PngOutput : public ReportOutput
{
public:
    // A lastPage that means the document's last page, whichever that is.
    static constexpr int kLastPage = std::numeric_limits<int>::max();

    // firstPage and lastPage choose the pages (1-based, inclusive). A range that reaches
    // beyond the document's last page is refused at the end, with nothing written.
    PngOutput(QString pattern, int dotsPerInch, int firstPage, int lastPage);

    [[nodiscard]] bool start(QString* error) override;
    [[nodiscard]] bool finish(const PageDocument& document, QString* error) override;

private:
    QString m_pattern;
    int m_dotsPerInch;
    int m_firstPage;
    int m_lastPage;
};

// The image of one page at a resolution, on white.
TABULOR_EXPORT QImage pageImage(const PageDisplayList& page, int dotsPerInch,
                                const FontCatalog& fonts);

} // namespace tabulor
