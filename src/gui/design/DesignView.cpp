#include "gui/design/DesignView.h"

#include "component/ReportSession.h"
#include "gui/design/RowLook.h"
#include "gui/design/StyledRowDelegate.h"
#include "gui/design/TitleRowHeader.h"
#include "gui/models/GridModel.h"

#include <QScrollBar>

#include <algorithm>
#include <utility>

namespace tabulor {

DesignView::DesignView(ReportSession& session, QWidget* parent)
    : QTableView(parent), m_session(session), m_model(new GridModel(session, this)),
      m_header(new TitleRowHeader(this))
{
    setObjectName(QStringLiteral("fa"));
    m_header->setObjectName(QStringLiteral("faTitleRow"));
    setHorizontalHeader(m_header);
    setModel(m_model);
    setItemDelegate(new StyledRowDelegate(this));

    // A sheet of the report: no grid lines, row numbers or editing; rows are picked whole.
    verticalHeader()->hide();
    verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    verticalHeader()->setMinimumSectionSize(1);
    m_header->setMinimumSectionSize(1);
    setShowGrid(false);
    setWordWrap(false);
    setCornerButtonEnabled(false);
    setEditTriggers(NoEditTriggers);
    setSelectionMode(SingleSelection);
    setSelectionBehavior(SelectRows);
    setVerticalScrollMode(ScrollPerPixel);
    setHorizontalScrollMode(ScrollPerPixel);
    QPalette paper = palette();
    paper.setColor(QPalette::Base, Qt::white);
    setPalette(paper);
    // Columns are as wide as the report makes them, not as the screen's texts are.
    disconnect(m_header, &QHeaderView::sectionHandleDoubleClicked, this, nullptr);

    connect(m_model, &QAbstractItemModel::modelAboutToBeReset, this,
            &DesignView::reportAboutToChange);
    connect(m_model, &QAbstractItemModel::modelReset, this, &DesignView::reportChanged);
    // While the report is being built, what is on the screen stays there.
    connect(&session, &ReportSession::gridAboutToChange, this, [this] { holdPicture(true); });
    connect(&session, &ReportSession::gridChanged, this, [this] { holdPicture(false); });
    connect(this, &QAbstractItemView::doubleClicked, this, &DesignView::rowDoubleClicked);
    connect(m_header, &QHeaderView::sectionDoubleClicked, this, &DesignView::titleDoubleClicked);
    connect(m_header, &TitleRowHeader::sectionResizedByUser, this, &DesignView::titleResizedByUser);
    reportChanged();
}

DesignView::~DesignView() = default;

void DesignView::holdPicture(bool hold)
{
    viewport()->setUpdatesEnabled(!hold);
    m_header->setUpdatesEnabled(!hold);
}

void DesignView::reportAboutToChange()
{
    if (m_model->rowCount() == 0)
        return;
    const QModelIndex current = currentIndex();
    m_place = Place{current.row(), current.column(), rowAt(0), horizontalScrollBar()->value()};
}

void DesignView::reportChanged()
{
    applySizes();
    const int rows = m_model->rowCount();
    if (rows == 0 || !m_place)
        return;
    updateGeometries();
    const Place place = *std::exchange(m_place, std::nullopt);
    if (place.currentRow >= 0)
        setCurrentIndex(m_model->index(std::min(place.currentRow, rows - 1),
                                       std::min(place.currentColumn, m_model->columnCount() - 1)));
    verticalScrollBar()->setValue(rowViewportPosition(std::min(place.topRow, rows - 1)) +
                                  verticalOffset());
    horizontalScrollBar()->setValue(place.horizontalScroll);
}

void DesignView::applySizes()
{
    const double dpiX = logicalDpiX();
    for (int c = 0; c < m_model->columnCount(); ++c) {
        const double twips =
            m_model->headerData(c, Qt::Horizontal, GridModel::ColumnWidthRole).toDouble();
        setColumnWidth(c, twipsToPixels(twips, dpiX));
    }
    if (m_model->columnCount() == 0)
        return;
    const double dpiY = logicalDpiY();
    for (int r = 0; r < m_model->rowCount(); ++r) {
        const QModelIndex row = m_model->index(r, 0);
        setRowHeight(r,
                     RowLook::fromRoles([&](int role) { return row.data(role); }, dpiY).height());
    }
}

void DesignView::rowDoubleClicked()
{
    const QModelIndex current = currentIndex();
    if (m_model->rowCount() == 0 || !current.isValid())
        return;
    // A group row deeper than the styled levels has no style of its own to show.
    const int style = current.data(GridModel::StyleRole).toInt();
    if (style >= 0 && style < kStyleCount)
        Q_EMIT stylePropertiesRequested(m_session.definition().styles[style].name);
}

void DesignView::titleDoubleClicked(int section)
{
    if (m_model->rowCount() == 0 || section < 0)
        return;
    Q_EMIT fieldPropertiesRequested(
        m_model->headerData(section, Qt::Horizontal, GridModel::FieldNameRole).toString());
}

void DesignView::titleResizedByUser(int section, int width)
{
    if (width <= 0)
        return;
    const int gridColumn =
        m_model->headerData(section, Qt::Horizontal, GridModel::GridColumnRole).toInt();
    m_session.resizeColumn(gridColumn, static_cast<float>(pixelsToTwips(width, logicalDpiX())));
}

} // namespace tabulor
