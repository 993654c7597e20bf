#pragma once

#include <QTableView>

#include <optional>

namespace tabulor {

class GridModel;
class ReportSession;
class TitleRowHeader;

// The report as the user designs it (the grid `fa`): the title row and the body rows of the
// session's report, painted in their styles as the printed report shows them, with the columns
// as wide as the printed ones. Dragging the edge of a column title stores the column's width
// and rebuilds the report; a double click asks for the properties of the style of the current
// row, or of the field of a column title.
class DesignView : public QTableView
{
    Q_OBJECT

public:
    explicit DesignView(ReportSession& session, QWidget* parent = nullptr);
    ~DesignView() override;

Q_SIGNALS:
    void stylePropertiesRequested(const QString& styleName);
    void fieldPropertiesRequested(const QString& fieldName);

private:
    // Where the user was in the report, kept while a new one is built.
    struct Place
    {
        int currentRow;
        int currentColumn;
        int topRow;
        int horizontalScroll;
    };

    // Keeps what is on the screen while the report is rebuilt.
    void holdPicture(bool hold);
    void reportAboutToChange();
    void reportChanged();
    // Columns and rows take the sizes they have on the printed report.
    void applySizes();

    void rowDoubleClicked();
    void titleDoubleClicked(int section);
    void titleResizedByUser(int section, int width);

    ReportSession& m_session;
    GridModel* m_model;
    TitleRowHeader* m_header;
    std::optional<Place> m_place;
};

} // namespace tabulor
