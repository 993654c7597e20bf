#include "gui/design/TitleRowHeader.h"

#include "gui/design/RowLook.h"
#include "gui/models/GridModel.h"

#include <QMouseEvent>
#include <QPainter>

#include <utility>

namespace tabulor {

TitleRowHeader::TitleRowHeader(QWidget* parent) : QHeaderView(Qt::Horizontal, parent)
{
    setSectionsClickable(false);
    setHighlightSections(false);
    setSectionResizeMode(QHeaderView::Interactive);
    setStretchLastSection(false);
    // A section resized while the mouse moves with a button down is the user's drag.
    connect(this, &QHeaderView::sectionResized, this, [this](int section, int, int width) {
        if (m_mouseMoving)
            m_resize = Resize{section, width};
    });
}

RowLook TitleRowHeader::look(int logicalIndex) const
{
    return RowLook::fromRoles(
        [&](int role) { return model()->headerData(logicalIndex, Qt::Horizontal, role); },
        logicalDpiY());
}

QSize TitleRowHeader::sizeHint() const
{
    if (!model() || count() == 0)
        return QSize(0, 0);
    return QSize(length(), look(logicalIndex(0)).height());
}

void TitleRowHeader::paintSection(QPainter* painter, const QRect& rect, int logicalIndex) const
{
    const QAbstractItemModel& m = *model();
    const QStringList lines =
        m.headerData(logicalIndex, Qt::Horizontal, GridModel::LinesRole).toStringList();
    const auto alignment =
        Qt::Alignment(m.headerData(logicalIndex, Qt::Horizontal, Qt::TextAlignmentRole).toInt());
    look(logicalIndex).paintCell(*painter, rect, lines, alignment);
}

void TitleRowHeader::paintEvent(QPaintEvent* event)
{
    // The sections on the paper of the page, not on the style's header buttons.
    QPainter painter(viewport());
    painter.fillRect(event->rect(), Qt::white);
    for (int visual = visualIndexAt(event->rect().left()); visual >= 0 && visual < count();
         ++visual) {
        const int logical = logicalIndex(visual);
        const int x = sectionViewportPosition(logical);
        if (x > event->rect().right())
            break;
        if (!isSectionHidden(logical))
            paintSection(&painter, QRect(x, 0, sectionSize(logical), height()), logical);
    }
}

void TitleRowHeader::mousePressEvent(QMouseEvent* event)
{
    m_resize.reset();
    QHeaderView::mousePressEvent(event);
}

void TitleRowHeader::mouseMoveEvent(QMouseEvent* event)
{
    m_mouseMoving = event->buttons() != Qt::NoButton;
    QHeaderView::mouseMoveEvent(event);
    m_mouseMoving = false;
}

void TitleRowHeader::mouseReleaseEvent(QMouseEvent* event)
{
    QHeaderView::mouseReleaseEvent(event);
    if (const std::optional<Resize> resize = std::exchange(m_resize, std::nullopt))
        Q_EMIT sectionResizedByUser(resize->section, resize->width);
}

} // namespace tabulor
