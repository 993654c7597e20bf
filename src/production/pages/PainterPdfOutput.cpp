#include "production/pages/PainterPdfOutput.h"

#include "production/pages/PageDocument.h"
#include "production/pages/PagePainter.h"

#include <QPageSize>
#include <QPainter>
#include <QPdfWriter>
#include <QSaveFile>

namespace tabulor {

namespace {

QPageSize pageSizeOf(const PageDisplayList& page)
{
    return QPageSize(page.size / 20.0, QPageSize::Point, QString(), QPageSize::ExactMatch);
}

} // namespace

PainterPdfOutput::PainterPdfOutput(QString path, QString title)
    : m_path(std::move(path)), m_title(std::move(title))
{
}

bool PainterPdfOutput::finish(const PageDocument& document, QString* error)
{
    const std::vector<PageDisplayList>& pages = document.pages();
    QSaveFile file(m_path);
    if (!file.open(QIODevice::WriteOnly)) {
        *error = cannotWrite(m_path, file.errorString());
        return false;
    }
    {
        QPdfWriter writer(&file);
        writer.setTitle(m_title);
        writer.setCreator(QStringLiteral("Tabulor"));
        writer.setPageMargins(QMarginsF(0, 0, 0, 0));
        if (!pages.empty())
            writer.setPageSize(pageSizeOf(pages.front()));
        QPainter painter;
        if (!painter.begin(&writer)) {
            *error = cannotWrite(m_path, QStringLiteral("the PDF could not be started"));
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
            paintPage(painter, pages[i], document.fonts());
            painter.restore();
        }
        painter.end();
    }
    if (!file.commit()) {
        *error = cannotWrite(m_path, file.errorString());
        return false;
    }
    return true;
}

} // namespace tabulor
