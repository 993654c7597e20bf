#pragma once

#include <QByteArrayView>
#include <QVariant>

namespace tabulor {

// The field type for a column of a PostgreSQL type, by the type's OID (a domain's base
// type). Types without a counterpart (json, arrays, intervals, enums, ...) are Text.
qint16 fieldTypeForPostgresType(quint32 typeOid);

// A value in the server's text form, typed for a field of the given type: bool, int (Integer,
// Long), qint64 (BigInt), double (Single, Double, Decimal), Currency, QDate, QDateTime, QTime,
// BinaryValue (Binary, LongBinary) or QString. A date or number the field type cannot hold,
// such as 'infinity' or a date before the common era, is kept as text.
QVariant postgresValue(QByteArrayView text, qint16 fieldType);
// Whether postgresValue() gives a field of this type its text as it stands (UTF-8).
bool postgresValueIsText(qint16 fieldType);

} // namespace tabulor
