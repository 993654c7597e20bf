#pragma once

#include <QHeaderView>

#include <optional>

namespace tabulor {

struct RowLook;

// The title row of the report as the header of a GridModel's view: painted in the Detail
// Title style as the printed report shows it, a section a column. Sections cannot be clicked,
// so that a press on a title selects nothing and moves no current row; their edges can be
// dragged, and a drag is told once, when it ends.
class TitleRowHeader : public QHeaderView
{
    Q_OBJECT

public:
    explicit TitleRowHeader(QWidget* parent = nullptr);

    QSize sizeHint() const override;

Q_SIGNALS:
    // The user dragged the edge of a section and let go at this width (pixels).
    void sectionResizedByUser(int logicalIndex, int width);

protected:
    void paintEvent(QPaintEvent* event) override;
    void paintSection(QPainter* painter, const QRect& rect, int logicalIndex) const override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;

private:
    struct Resize
    {
        int section;
        int width;
    };

    RowLook look(int logicalIndex) const;

    bool m_mouseMoving = false;
    std::optional<Resize> m_resize; // by the user, since the button went down
};

} // namespace tabulor
