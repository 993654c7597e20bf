#pragma once

#include "commands/LayoutEdits.h"

#include <QAbstractListModel>
#include <QStringList>

namespace tabulor {

// One of the layout window's lists as an item model: the field names of the available
// fields, the groups or the details. Fields are dragged out of it and dropped into it as
// mime data that names the list and row they come from; a drop moves the field through the
// layout edits, so that the report is rebuilt and the move can be undone. The model follows
// the session: it takes the list again whenever the report grid has changed.
class FieldListModel : public QAbstractListModel
{
    Q_OBJECT

public:
    // The mime type of a field dragged out of a list.
    static QString mimeType();

    FieldListModel(LayoutEdits& edits, LayoutList list, QObject* parent = nullptr);

    LayoutList list() const { return m_list; }
    const QStringList& fields() const { return m_fields; }
    // Takes the list from the session again, if it changed.
    void refresh();

    int rowCount(const QModelIndex& parent = QModelIndex()) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;

    QStringList mimeTypes() const override;
    QMimeData* mimeData(const QModelIndexList& indexes) const override;
    Qt::DropActions supportedDragActions() const override;
    Qt::DropActions supportedDropActions() const override;
    // A drop at row puts the field in the gap before that row (-1: below the last), as does
    // a drop on the item at that row.
    bool canDropMimeData(const QMimeData* data, Qt::DropAction action, int row, int column,
                         const QModelIndex& parent) const override;
    bool dropMimeData(const QMimeData* data, Qt::DropAction action, int row, int column,
                      const QModelIndex& parent) override;

Q_SIGNALS:
    // A field dropped on this list now stands at row.
    void fieldPlaced(int row);

private:
    LayoutEdits& m_edits;
    LayoutList m_list;
    QStringList m_fields;
};

} // namespace tabulor
