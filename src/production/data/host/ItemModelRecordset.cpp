#include "production/data/host/ItemModelRecordset.h"

#include "production/base/Currency.h"
#include "production/base/FieldType.h"
#include "production/data/BinaryValue.h"

#include <QDateTime>
#include <QUuid>

namespace tabulor {

qint16 fieldTypeForValue(const QVariant& value)
{
    if (value.metaType() == QMetaType::fromType<Currency>())
        return FieldCurrency;
    switch (value.metaType().id()) {
    case QMetaType::Bool:
        return FieldBoolean;
    case QMetaType::UChar:
        return FieldByte;
    case QMetaType::Short:
    case QMetaType::SChar:
        return FieldInteger;
    case QMetaType::Int:
    case QMetaType::UShort:
        return FieldLong;
    case QMetaType::UInt:
    case QMetaType::Long:
    case QMetaType::ULong:
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
        return FieldBigInt;
    case QMetaType::Float:
        return FieldSingle;
    case QMetaType::Double:
        return FieldDouble;
    case QMetaType::QDate:
    case QMetaType::QTime:
    case QMetaType::QDateTime:
        return FieldDate;
    case QMetaType::QByteArray:
        return FieldLongBinary;
    case QMetaType::QUuid:
        return FieldGuid;
    default:
        return FieldText;
    }
}

ItemModelRecordset::ItemModelRecordset(QAbstractItemModel* model, QList<qint16> fieldTypes,
                                       int role)
    : m_model(model), m_givenTypes(std::move(fieldTypes)), m_role(role)
{
}

int ItemModelRecordset::fieldCount() const
{
    return m_model ? m_model->columnCount() : -1;
}

QString ItemModelRecordset::fieldName(int field) const
{
    if (!m_model)
        return {};
    return m_model->headerData(field, Qt::Horizontal, Qt::DisplayRole).toString();
}

qint16 ItemModelRecordset::fieldType(int field) const
{
    if (field >= 0 && field < m_givenTypes.size())
        return m_givenTypes.at(field);
    if (!m_model || field < 0 || field >= m_model->columnCount())
        return FieldText;
    const auto known = m_inferredTypes.constFind(field);
    if (known != m_inferredTypes.constEnd())
        return *known;
    qint16 type = FieldText;
    for (int row = 0; row < m_model->rowCount(); ++row) {
        const QVariant value = m_model->data(m_model->index(row, field), m_role);
        if (value.isValid() && !value.isNull() &&
            !(value.metaType() == QMetaType::fromType<QString>() && value.toString().isEmpty())) {
            type = fieldTypeForValue(value);
            break;
        }
    }
    m_inferredTypes.insert(field, type);
    return type;
}

void ItemModelRecordset::fetchIfAtEnd()
{
    if (m_model && m_row >= m_model->rowCount() && m_model->canFetchMore(QModelIndex()))
        m_model->fetchMore(QModelIndex());
}

bool ItemModelRecordset::moveFirst()
{
    m_row = 0;
    fetchIfAtEnd();
    return m_model != nullptr;
}

bool ItemModelRecordset::moveNext()
{
    if (atEnd())
        return false;
    ++m_row;
    fetchIfAtEnd();
    return !atEnd();
}

bool ItemModelRecordset::atEnd() const
{
    return !m_model || m_row >= m_model->rowCount();
}

QVariant ItemModelRecordset::value(int field) const
{
    if (atEnd() || field < 0 || field >= m_model->columnCount())
        return {};
    const QVariant value = m_model->data(m_model->index(m_row, field), m_role);
    if (value.isNull())
        return {};
    // Bytes are shown by their size, as a database's binary values are.
    if (value.typeId() == QMetaType::QByteArray)
        return binaryValue(value.toByteArray().size());
    return value;
}

qint64 ItemModelRecordset::recordCount() const
{
    return m_model ? m_model->rowCount() : 0;
}

} // namespace tabulor
