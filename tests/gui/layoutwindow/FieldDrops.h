#pragma once

#include <QAbstractItemModel>
#include <QApplication>
#include <QDragMoveEvent>
#include <QDropEvent>
#include <QListView>
#include <QMimeData>

#include <memory>

namespace tabulor::test {

// Drags the item at row of one list view and drops it on a point of another (or the same)
// list's viewport: the events the view receives at the end of a drag, carrying the mime data
// its model gives for the item.
inline void dropField(QListView& from, int row, QListView& to, QPoint point)
{
    QAbstractItemModel& model = *from.model();
    const std::unique_ptr<QMimeData> data(model.mimeData({model.index(row, 0)}));
    QDragEnterEvent enter(point, Qt::MoveAction, data.get(), Qt::LeftButton, {});
    QApplication::sendEvent(to.viewport(), &enter);
    QDragMoveEvent move(point, Qt::MoveAction, data.get(), Qt::LeftButton, {});
    QApplication::sendEvent(to.viewport(), &move);
    QDropEvent drop(QPointF(point), Qt::MoveAction, data.get(), Qt::LeftButton, {});
    QApplication::sendEvent(to.viewport(), &drop);
}

// A point in the upper part of the item at row: a drop there goes before the item.
inline QPoint aboveItem(const QListView& view, int row)
{
    const QRect item = view.visualRect(view.model()->index(row, 0));
    return {item.center().x(), item.top() + 1};
}

// A point below the last item: a drop there goes at the end.
inline QPoint belowItems(const QListView& view)
{
    return {view.viewport()->width() / 2, view.viewport()->height() - 2};
}

} // namespace tabulor::test
