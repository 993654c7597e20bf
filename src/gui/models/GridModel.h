#pragma once

#include "production/grid/GridText.h"
#include "production/pages/FontCatalog.h"
#include "production/pagination/GridLayout.h"

#include <QAbstractTableModel>
#include <QColor>
#include <QFont>

#include <array>
#include <memory>
#include <optional>

namespace tabulor {

class ReportSession;

// The report of a session as a table: a row for each body row of the report grid (records and
// group rows, in report order), a column for each report column, and the title row as the
// horizontal header. Every row carries its style: font, colours, rules and spacing, and the
// lines its cells break into on the printed report. Texts are formatted when they are asked
// for.
//
// The model follows the session: it shows each report as it is built, and nothing while the
// session is busy, since the grid may then be half loaded or half built.
class GridModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    enum Role
    {
        // The style the report gives the row (int; -1 for a group row deeper than the styled
        // levels, which is painted as a detail row). The title row's is Detail Title.
        StyleRole = Qt::UserRole + 1,
        // RowKind as an int; none for the title row.
        RowKindRole,
        // A group row's outline level (0, 1, 2 opening rows; -100, -99, -98 closing rows).
        OutlineLevelRole,
        // The rules above and below the row: 0 none, 1 thin, 2 medium, 3 thick; their colour
        // (QColor).
        RuleAboveRole,
        RuleBelowRole,
        RuleColourRole,
        // Whether the row's text is drawn bold from a face that is not (bool), as the
        // report's pages draw it.
        ThickenedRole,
        // The extra space before and after the row, in twips.
        SpaceBeforeRole,
        SpaceAfterRole,
        // The height of the row's text in twips, without its space before and after.
        TextHeightRole,
        // The lines the cell's text breaks into, as the report prints them (QStringList).
        LinesRole,
        // Of the header sections: the column's width in twips, fitted or stored.
        ColumnWidthRole,
        // Of the header sections: the field the column shows (the grid column's title) and
        // the grid column's number.
        FieldNameRole,
        GridColumnRole,
    };

    explicit GridModel(ReportSession& session, QObject* parent = nullptr);
    ~GridModel() override;

    int rowCount(const QModelIndex& parent = QModelIndex()) const override;
    int columnCount(const QModelIndex& parent = QModelIndex()) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation,
                        int role = Qt::DisplayRole) const override;

private:
    // A style as the report was built with it, and what the screen needs of it.
    struct StyleLook
    {
        ReportStyle style;
        QFont font;
        bool thickened = false;
        QColor text;
        QColor back;
        QColor rule;
    };
    // The sizes of the report's rows and columns as the printed report has them, and its
    // title row.
    struct Layout
    {
        Layout(const OutlineGrid& grid, const std::vector<BodyRow>& fitRows,
               const ReportDefinition& definition, const FontCatalog& fonts);

        GridLayout sizes;
        QStringList titles;
        RowLines titleLines;
    };

    void showReport();
    void hideReport();
    void loadReport();

    // The role of a row painted in style, or nothing when the role is not about the style.
    QVariant styleData(int style, int role) const;
    QVariant cellData(int row, int column, int role) const;
    QVariant titleData(int column, int role) const;
    Qt::Alignment alignment(int column) const;
    // Worked out when first asked for: fitting the columns formats the rows they fit.
    const Layout& layout() const;
    // The lines of the cells of body row `row`; the last row asked for is kept, since a
    // view asks for a row's cells one after another.
    const RowLines& rowLines(int row) const;
    const GridRow& gridRow(int row) const;

    ReportSession& m_session;
    FontCatalog m_fonts;
    bool m_showing = false;
    int m_rowCount = 0;
    QList<int> m_columns; // grid columns in report order
    std::array<StyleLook, kStyleCount> m_looks;
    std::optional<GridText> m_text;
    mutable std::unique_ptr<Layout> m_layout;
    mutable int m_linesRow = -1;
    mutable RowLines m_lines;
};

} // namespace tabulor
