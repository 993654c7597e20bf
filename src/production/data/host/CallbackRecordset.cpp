#include "production/data/host/CallbackRecordset.h"

#include "production/base/Currency.h"
#include "production/base/FieldType.h"
#include "production/base/IsoDateTime.h"

#include <algorithm>
#include <cstring>

namespace tabulor {

CallbackRecordset::CallbackRecordset(const tabulor_recordset_callbacks& callbacks)
{
    // A host built against an older, shorter table leaves the newer functions null.
    std::memcpy(&m_callbacks, &callbacks, std::min(callbacks.struct_size, sizeof m_callbacks));
}

CallbackRecordset::~CallbackRecordset()
{
    if (m_callbacks.release)
        m_callbacks.release(m_callbacks.user_data);
}

int CallbackRecordset::fieldCount() const
{
    if (!m_callbacks.field_count)
        return -1;
    return std::max(m_callbacks.field_count(m_callbacks.user_data), -1);
}

QString CallbackRecordset::fieldName(int field) const
{
    const char* name =
        m_callbacks.field_name ? m_callbacks.field_name(m_callbacks.user_data, field) : nullptr;
    return name ? QString::fromUtf8(name) : QString();
}

qint16 CallbackRecordset::fieldType(int field) const
{
    const int32_t type =
        m_callbacks.field_type ? m_callbacks.field_type(m_callbacks.user_data, field) : 0;
    return type > 0 && type <= INT16_MAX ? qint16(type) : qint16(FieldText);
}

bool CallbackRecordset::moved(bool succeeded)
{
    if (succeeded && !atEnd())
        m_visited = std::max(m_visited, m_position + 1);
    return succeeded;
}

bool CallbackRecordset::moveFirst()
{
    m_position = 0;
    return moved(m_callbacks.move_first && m_callbacks.move_first(m_callbacks.user_data));
}

bool CallbackRecordset::moveNext()
{
    ++m_position;
    return moved(m_callbacks.move_next && m_callbacks.move_next(m_callbacks.user_data));
}

bool CallbackRecordset::atEnd() const
{
    return !m_callbacks.eof || m_callbacks.eof(m_callbacks.user_data);
}

QVariant CallbackRecordset::value(int field) const
{
    tabulor_value value = {};
    value.kind = TABULOR_VALUE_NULL;
    if (!m_callbacks.value || !m_callbacks.value(m_callbacks.user_data, field, &value))
        return {};
    const auto bytes = [&]() -> QByteArray {
        if (!value.text)
            return {};
        return QByteArray(value.text, value.size == TABULOR_ZERO_TERMINATED
                                          ? qsizetype(std::strlen(value.text))
                                          : qsizetype(value.size));
    };
    switch (value.kind) {
    case TABULOR_VALUE_BOOLEAN:
        return value.integer != 0;
    case TABULOR_VALUE_INTEGER:
        return qint64(value.integer);
    case TABULOR_VALUE_REAL:
        return value.real;
    case TABULOR_VALUE_CURRENCY:
        return QVariant::fromValue(Currency{value.integer});
    case TABULOR_VALUE_TEXT:
        return QString::fromUtf8(bytes());
    case TABULOR_VALUE_DATE: {
        const QString text = QString::fromUtf8(bytes());
        const QVariant when = parseIsoDateTime(text);
        return when.isValid() ? when : QVariant(text);
    }
    case TABULOR_VALUE_BYTES:
        return bytes();
    default:
        return {};
    }
}

qint64 CallbackRecordset::recordCount() const
{
    const int64_t count =
        m_callbacks.record_count ? m_callbacks.record_count(m_callbacks.user_data) : -1;
    return count >= 0 ? count : m_visited;
}

} // namespace tabulor
