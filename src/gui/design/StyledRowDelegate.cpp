#include "gui/design/StyledRowDelegate.h"

#include "gui/design/RowLook.h"
#include "gui/models/GridModel.h"

#include <QPainter>
#include <QWidget>

namespace tabulor {

namespace {

// How much of the highlight colour shades the current row.
constexpr int kShadeAlpha = 48;
// The resolution of a screen that says nothing of its own.
constexpr double kStandardDpi = 96;

} // namespace

void StyledRowDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                              const QModelIndex& index) const
{
    const QStringList lines = index.data(GridModel::LinesRole).toStringList();
    const auto alignment = Qt::Alignment(index.data(Qt::TextAlignmentRole).toInt());
    const double dpi = option.widget ? option.widget->logicalDpiY() : kStandardDpi;
    const RowLook look = RowLook::fromRoles([&](int role) { return index.data(role); }, dpi);
    look.paintCell(*painter, option.rect, lines, alignment);
    if (option.state & QStyle::State_Selected) {
        QColor shade = option.palette.color(QPalette::Highlight);
        shade.setAlpha(kShadeAlpha);
        painter->fillRect(option.rect, shade);
    }
}

} // namespace tabulor
