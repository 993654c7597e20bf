#include "gui/models/GridModel.h"

#include "component/ReportSession.h"
#include "production/pagination/BodyRow.h"

#include <QLocale>

#include <algorithm>

namespace tabulor {

namespace {

// Alignment code 9 stands for the data type's own; text sits at the top of its cell, as the
// printed report puts it.
constexpr qint16 kTypeAlignment = 9;

Qt::Alignment alignmentOf(qint16 code, qint16 fieldType)
{
    if (code == kTypeAlignment)
        code = AlignmentForFieldType(fieldType);
    switch (placementOf(code)) {
    case TextPlacement::Centre:
        return Qt::AlignHCenter | Qt::AlignTop;
    case TextPlacement::Right:
        return Qt::AlignRight | Qt::AlignTop;
    case TextPlacement::Left:
        break;
    }
    return Qt::AlignLeft | Qt::AlignTop;
}

} // namespace

GridModel::GridModel(ReportSession& session, QObject* parent)
    : QAbstractTableModel(parent), m_session(session)
{
    // While the session loads rows into the grid or builds it, nothing is shown.
    connect(&session, &ReportSession::gridAboutToChange, this, &GridModel::hideReport);
    connect(&session, &ReportSession::gridChanged, this, &GridModel::showReport);
    if (!session.Building())
        loadReport();
}

GridModel::~GridModel() = default;

void GridModel::showReport()
{
    beginResetModel();
    loadReport();
    endResetModel();
}

void GridModel::hideReport()
{
    if (!m_showing)
        return;
    beginResetModel();
    m_showing = false;
    m_rowCount = 0;
    m_columns.clear();
    m_text.reset();
    m_layout.reset();
    m_linesRow = -1;
    endResetModel();
}

void GridModel::loadReport()
{
    const OutlineGrid& grid = m_session.data().grid();
    const StyleTable& styles = m_session.definition().styles;
    m_showing = true;
    m_rowCount = static_cast<int>(grid.rows().size());
    m_columns = grid.reportColumns();
    m_text.emplace(grid, FormatLocale::fromQLocale(QLocale()));
    m_layout.reset();
    m_linesRow = -1;
    for (int s = 0; s < kStyleCount; ++s) {
        const ReportStyle& style = styles[s];
        m_looks[s] = StyleLook{style,
                               m_fonts.font(style),
                               m_fonts.thickened(FontCatalog::fontSpec(style)),
                               FontCatalog::colour(style.Text),
                               FontCatalog::colour(style.Back),
                               FontCatalog::colour(style.Color)};
    }
}

int GridModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : m_rowCount;
}

int GridModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_columns.size());
}

const GridRow& GridModel::gridRow(int row) const
{
    return m_session.data().grid().rows()[static_cast<size_t>(row)];
}

GridModel::Layout::Layout(const OutlineGrid& grid, const std::vector<BodyRow>& fitRows,
                          const ReportDefinition& definition, const FontCatalog& fonts)
    : sizes(grid, fitRows, definition, fonts), titles(sizes.titles()),
      titleLines(sizes.titleLines())
{
}

const GridModel::Layout& GridModel::layout() const
{
    if (!m_layout) {
        const OutlineGrid& grid = m_session.data().grid();
        // Columns without a stored width fit the rows of the working view.
        const bool fitting = std::any_of(m_columns.begin(), m_columns.end(),
                                         [&](int c) { return grid.column(c).width <= 0; });
        const std::vector<BodyRow> fitRows =
            fitting ? GridLayout::rowsToFit(grid, *m_text, m_session.definition().styles)
                    : std::vector<BodyRow>();
        m_layout = std::make_unique<Layout>(grid, fitRows, m_session.definition(), m_fonts);
    }
    return *m_layout;
}

const RowLines& GridModel::rowLines(int row) const
{
    if (m_linesRow != row) {
        const GridRow& gridRow = this->gridRow(row);
        m_lines = layout().sizes.linesOf(m_text->rowTexts(gridRow), paintStyle(gridRow));
        m_linesRow = row;
    }
    return m_lines;
}

Qt::Alignment GridModel::alignment(int column) const
{
    const GridColumn& c = m_session.data().grid().column(m_columns.at(column));
    return alignmentOf(c.alignment, c.type);
}

QVariant GridModel::styleData(int style, int role) const
{
    const StyleLook& look = m_looks[static_cast<size_t>(style)];
    const ReportStyle& s = look.style;
    switch (role) {
    case Qt::FontRole:
        return look.font;
    case Qt::ForegroundRole:
        return look.text;
    case Qt::BackgroundRole:
        return look.back;
    case RuleAboveRole:
        return int{s.Top};
    case RuleBelowRole:
        return int{s.Bottom};
    case RuleColourRole:
        return look.rule;
    case ThickenedRole:
        return look.thickened;
    case SpaceBeforeRole:
        return s.Before;
    case SpaceAfterRole:
        return s.After;
    default:
        return QVariant();
    }
}

QVariant GridModel::data(const QModelIndex& index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid))
        return QVariant();
    return cellData(index.row(), index.column(), role);
}

QVariant GridModel::cellData(int row, int column, int role) const
{
    const GridRow& r = gridRow(row);
    switch (role) {
    case Qt::DisplayRole:
        return m_text->cellText(r, m_columns.at(column));
    case Qt::TextAlignmentRole:
        return int(alignment(column));
    case StyleRole:
        return int{r.style};
    case RowKindRole:
        return int(r.kind);
    case OutlineLevelRole:
        return r.isGroupRow() ? QVariant(int{r.level}) : QVariant();
    case TextHeightRole:
        return layout().sizes.heightOf(rowLines(row), paintStyle(r));
    case LinesRole:
        return rowLines(row).cell(column);
    default:
        return styleData(paintStyle(r), role);
    }
}

QVariant GridModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || section < 0 || section >= m_columns.size())
        return QAbstractTableModel::headerData(section, orientation, role);
    return titleData(section, role);
}

QVariant GridModel::titleData(int column, int role) const
{
    switch (role) {
    case Qt::DisplayRole:
        return layout().titles.at(column);
    case Qt::TextAlignmentRole:
        return int(alignment(column));
    case StyleRole:
        return int{StyleDetailTitle};
    case TextHeightRole:
        return layout().sizes.heightOf(layout().titleLines, StyleDetailTitle);
    case LinesRole:
        return layout().titleLines.cell(column);
    case ColumnWidthRole:
        return layout().sizes.columnWidths()[static_cast<size_t>(column)];
    case FieldNameRole:
        return m_session.data().grid().column(m_columns.at(column)).title;
    case GridColumnRole:
        return m_columns.at(column);
    default:
        return styleData(StyleDetailTitle, role);
    }
}

} // namespace tabulor
