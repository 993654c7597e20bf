#pragma once

#include <QStyledItemDelegate>

namespace tabulor {

// Paints the cells of a GridModel as the report prints them: each row in its style's font and
// colours, with its rules and the space before and after it, the text broken into the lines of
// the printed report and aligned as its column is. The current row shows through a light
// shade, so that its own colours stay visible.
class StyledRowDelegate : public QStyledItemDelegate
{
    Q_OBJECT

public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;
};

} // namespace tabulor
