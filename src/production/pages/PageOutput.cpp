#include "production/pages/PageOutput.h"

#include "production/pages/PagePainter.h"

#include <QBuffer>
#include <QImage>
#include <QPageSize>
#include <QPdfWriter>
#include <QSaveFile>

#include <cmath>

namespace tabulor {

namespace {

QPageSize pageSizeOf(const PageDisplayList& page)
{
    return QPageSize(page.size / 20.0, QPageSize::Point, QString(), QPageSize::ExactMatch);
}

} // namespace

bool writePainterPdf(const std::vector<PageDisplayList>& pages, const QString& path,
                     const QString& title, const FontCatalog& fonts, QString* error)
{
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly)) {
        *error = file.errorString();
        return false;
    }
    {
        QPdfWriter writer(&file);
        writer.setTitle(title);
        writer.setCreator(QStringLiteral("Tabulor"));
        writer.setPageMargins(QMarginsF(0, 0, 0, 0));
        if (!pages.empty())
            writer.setPageSize(pageSizeOf(pages.front()));
        QPainter painter;
        if (!painter.begin(&writer)) {
            *error = QStringLiteral("the PDF could not be started");
            file.cancelWriting();
            return false;
        }
        for (size_t i = 0; i < pages.size(); ++i) {
            if (i > 0) {
                writer.setPageSize(pageSizeOf(pages[i]));
                writer.newPage();
            }
            painter.save();
            useTwips(painter, writer.resolution());
            paintPage(painter, pages[i], fonts);
            painter.restore();
        }
        painter.end();
    }
    if (!file.commit()) {
        *error = file.errorString();
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

bool writePng(const std::vector<PageDisplayList>& pages, const QString& pattern, int dotsPerInch,
              int firstPage, int lastPage, const FontCatalog& fonts, QString* error)
{
    if (!pattern.contains(QStringLiteral("%d")) && lastPage > firstPage) {
        *error = QStringLiteral("the file name needs %d for the page number");
        return false;
    }
    for (int n = std::max(1, firstPage);
         n <= std::min<int>(lastPage, static_cast<int>(pages.size())); ++n) {
        QString path = pattern;
        path.replace(QStringLiteral("%d"), QString::number(n));
        QByteArray bytes;
        QBuffer buffer(&bytes);
        buffer.open(QIODevice::WriteOnly);
        if (!pageImage(pages[static_cast<size_t>(n - 1)], dotsPerInch, fonts)
                 .save(&buffer, "PNG")) {
            *error = QStringLiteral("page %1 could not be encoded").arg(n);
            return false;
        }
        QSaveFile file(path);
        if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size() ||
            !file.commit()) {
            *error = QStringLiteral("%1: %2").arg(path, file.errorString());
            return false;
        }
    }
    return true;
}

} // namespace tabulor
