#include "gui/models/FieldListModel.h"

#include "component/ReportSession.h"

#include <QDataStream>
#include <QIODevice>
#include <QMimeData>

#include <optional>

namespace tabulor {

namespace {

// A dragged field: the list and row it comes from, and its name, which must still stand
// there when it is dropped.
struct DraggedField
{
    LayoutList list = LayoutList::Fields;
    int row = -1;
    QString name;
};

QByteArray encode(const DraggedField& field)
{
    QByteArray bytes;
    QDataStream out(&bytes, QIODevice::WriteOnly);
    out << qint32(field.list) << qint32(field.row) << field.name;
    return bytes;
}

std::optional<DraggedField> decode(const QMimeData* data)
{
    if (!data || !data->hasFormat(FieldListModel::mimeType()))
        return std::nullopt;
    QDataStream in(data->data(FieldListModel::mimeType()));
    qint32 list = -1;
    DraggedField field;
    in >> list >> field.row >> field.name;
    if (in.status() != QDataStream::Ok || list < 0 || list > int(LayoutList::Details))
        return std::nullopt;
    field.list = LayoutList(list);
    return field;
}

} // namespace

QString FieldListModel::mimeType()
{
    return QStringLiteral("application/x-tabulor-layout-field");
}

FieldListModel::FieldListModel(LayoutEdits& edits, LayoutList list, QObject* parent)
    : QAbstractListModel(parent), m_edits(edits), m_list(list), m_fields(edits.fields(list))
{
    connect(&edits.session(), &ReportSession::gridChanged, this, &FieldListModel::refresh);
}

void FieldListModel::refresh()
{
    const QStringList& fields = m_edits.fields(m_list);
    if (fields == m_fields)
        return;
    beginResetModel();
    m_fields = fields;
    endResetModel();
}

int FieldListModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : int(m_fields.size());
}

QVariant FieldListModel::data(const QModelIndex& index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid))
        return {};
    if (role == Qt::DisplayRole || role == Qt::ToolTipRole)
        return m_fields.at(index.row());
    return {};
}

Qt::ItemFlags FieldListModel::flags(const QModelIndex& index) const
{
    // Items take no drops of their own: a drop between them says where the field goes.
    if (!index.isValid())
        return Qt::ItemIsDropEnabled;
    return Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsDragEnabled |
           Qt::ItemNeverHasChildren;
}

QStringList FieldListModel::mimeTypes() const
{
    return {mimeType()};
}

QMimeData* FieldListModel::mimeData(const QModelIndexList& indexes) const
{
    if (indexes.isEmpty() || !checkIndex(indexes.first(), CheckIndexOption::IndexIsValid))
        return nullptr;
    const int row = indexes.first().row();
    auto* data = new QMimeData;
    data->setData(mimeType(), encode(DraggedField{m_list, row, m_fields.at(row)}));
    data->setText(m_fields.at(row));
    return data;
}

Qt::DropActions FieldListModel::supportedDragActions() const
{
    return Qt::MoveAction;
}

Qt::DropActions FieldListModel::supportedDropActions() const
{
    return Qt::MoveAction;
}

bool FieldListModel::canDropMimeData(const QMimeData* data, Qt::DropAction action, int /*row*/,
                                     int /*column*/, const QModelIndex& /*parent*/) const
{
    const std::optional<DraggedField> field = decode(data);
    // The available fields keep their order: a field dragged within them goes nowhere.
    return field && action == Qt::MoveAction &&
           !(field->list == LayoutList::Fields && m_list == LayoutList::Fields) &&
           m_edits.fields(field->list).value(field->row) == field->name;
}

bool FieldListModel::dropMimeData(const QMimeData* data, Qt::DropAction action, int row, int column,
                                  const QModelIndex& parent)
{
    if (!canDropMimeData(data, action, row, column, parent))
        return false;
    const DraggedField field = *decode(data);
    int gap = parent.isValid() ? parent.row() : row;
    if (gap < 0)
        gap = int(m_fields.size());
    // The edits count the position once the field has left its place in its own list.
    const int position = field.list == m_list && gap > field.row ? gap - 1 : gap;
    const std::optional<int> placed = m_edits.moveField(field.list, field.row, m_list, position);
    if (placed)
        Q_EMIT fieldPlaced(*placed);
    return placed.has_value();
}

} // namespace tabulor
