#include "production/pages/PngOutput.h"

#include "production/pages/PageDocument.h"
#include "production/pages/PagePainter.h"

#include <QBuffer>
#include <QPainter>
#include <QSaveFile>

#include <cmath>

namespace tabulor {

PngOutput::PngOutput(QString pattern, int dotsPerInch, int firstPage, int lastPage)
    : m_pattern(std::move(pattern)), m_dotsPerInch(dotsPerInch), m_firstPage(firstPage),
      m_lastPage(lastPage)
{
}

bool PngOutput::start(QString* error)
{
    if (!m_pattern.contains(QStringLiteral("%d")) && m_lastPage > m_firstPage) {
        *error = cannotWrite(m_pattern, QStringLiteral("the file name needs %d for the page "
                                                       "number"));
        return false;
    }
    return true;
}

QImage pageImage(const PageDisplayList& page, int dotsPerInch, const FontCatalog& fonts)
{
    const QSize pixels(static_cast<int>(std::lround(page.size.width() * dotsPerInch / 1440.0)),
                       static_cast<int>(std::lround(page.size.height() * dotsPerInch / 1440.0)));
    QImage image(pixels, QImage::Format_RGB32);
    const int dotsPerMeter = static_cast<int>(std::lround(dotsPerInch / 0.0254));
    image.setDotsPerMeterX(dotsPerMeter);
    image.setDotsPerMeterY(dotsPerMeter);
    image.fill(Qt::white);
    QPainter painter(&image);
    useTwips(painter, dotsPerInch);
    paintPage(painter, page, fonts);
    return image;
}

bool PngOutput::finish(const PageDocument& document, QString* error)
{
    const std::vector<PageDisplayList>& pages = document.pages();
    const int pageCount = static_cast<int>(pages.size());
    const int lastPage = m_lastPage == kLastPage ? pageCount : m_lastPage;
    if (lastPage > pageCount) {
        *error = QStringLiteral("page %1 was asked for, and the report has %2 page(s)")
                     .arg(lastPage)
                     .arg(pageCount);
        return false;
    }
    for (int n = std::max(1, m_firstPage); n <= lastPage; ++n) {
        QString path = m_pattern;
        path.replace(QStringLiteral("%d"), QString::number(n));
        QByteArray bytes;
        QBuffer buffer(&bytes);
        buffer.open(QIODevice::WriteOnly);
        if (!pageImage(pages[static_cast<size_t>(n - 1)], m_dotsPerInch, document.fonts())
                 .save(&buffer, "PNG")) {
            *error = cannotWrite(path, QStringLiteral("page %1 could not be encoded").arg(n));
            return false;
        }
        QSaveFile file(path);
        if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size() ||
            !file.commit()) {
            *error = cannotWrite(path, file.errorString());
            return false;
        }
    }
    return true;
}

} // namespace tabulor
