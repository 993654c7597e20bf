#include "production/data/odbc/OdbcRecordset.h"

#include "production/base/Currency.h"
#include "production/base/ErrorText.h"
#include "production/base/FieldType.h"
#include "production/data/BinaryValue.h"

#include <QDateTime>

#include <sql.h>
#include <sqlext.h>

namespace tabulor {

namespace {

// The field type of a result column from its SQL type; the type's own name tells money
// apart, which ODBC reports as a decimal or a float.
qint16 fieldTypeForSqlType(SQLSMALLINT sqlType, const QString& typeName)
{
    const QString name = typeName.toLower();
    if (name.contains(QLatin1String("money")) || name.contains(QLatin1String("currency")))
        return FieldCurrency;
    switch (sqlType) {
    case SQL_BIT:
        return FieldBoolean;
    case SQL_TINYINT:
        return FieldByte;
    case SQL_SMALLINT:
        return FieldInteger;
    case SQL_INTEGER:
        return FieldLong;
    case SQL_BIGINT:
        return FieldBigInt;
    case SQL_REAL:
        return FieldSingle;
    case SQL_FLOAT:
        return FieldFloat;
    case SQL_DOUBLE:
        return FieldDouble;
    case SQL_NUMERIC:
        return FieldNumeric;
    case SQL_DECIMAL:
        return FieldDecimal;
    case SQL_TYPE_DATE:
    case SQL_TYPE_TIME:
    case SQL_TYPE_TIMESTAMP:
    case SQL_DATE:
    case SQL_TIME:
    case SQL_TIMESTAMP:
        return FieldDate;
    case SQL_BINARY:
    case SQL_VARBINARY:
        return FieldBinary;
    case SQL_LONGVARBINARY:
        return FieldLongBinary;
    case SQL_LONGVARCHAR:
    case SQL_WLONGVARCHAR:
        return FieldMemo;
    case SQL_GUID:
        return FieldGuid;
    default:
        return FieldText;
    }
}

// Reads a fixed-size value; false for NULL or a value the driver cannot convert.
template <typename T> bool readFixed(SQLHSTMT statement, int column, SQLSMALLINT type, T* value)
{
    SQLLEN indicator = 0;
    const SQLRETURN result =
        SQLGetData(statement, SQLUSMALLINT(column + 1), type, value, sizeof(T), &indicator);
    return SQL_SUCCEEDED(result) && indicator != SQL_NULL_DATA;
}

QVariant readDate(SQLHSTMT statement, int column, SQLSMALLINT sqlType)
{
    if (sqlType == SQL_TYPE_DATE || sqlType == SQL_DATE) {
        SQL_DATE_STRUCT date;
        if (!readFixed(statement, column, SQL_C_TYPE_DATE, &date))
            return {};
        return QDate(date.year, date.month, date.day);
    }
    if (sqlType == SQL_TYPE_TIME || sqlType == SQL_TIME) {
        SQL_TIME_STRUCT time;
        if (!readFixed(statement, column, SQL_C_TYPE_TIME, &time))
            return {};
        return QTime(time.hour, time.minute, time.second);
    }
    // A date-time keeps its clock reading and is held as UTC, as from the other databases.
    SQL_TIMESTAMP_STRUCT stamp;
    if (!readFixed(statement, column, SQL_C_TYPE_TIMESTAMP, &stamp))
        return {};
    return QDateTime(QDate(stamp.year, stamp.month, stamp.day),
                     QTime(stamp.hour, stamp.minute, stamp.second, int(stamp.fraction / 1000000)),
                     Qt::UTC);
}

// Money as the server writes it, such as "$1,234.56", "-1.234,56 €" or "(12.50)", as a plain
// decimal: the last point or comma followed by digits only is the decimal separator, other
// points, commas, symbols and spaces are dropped, and parentheses make it negative.
QString plainAmount(const QString& money)
{
    QString digits;
    qsizetype separator = -1;
    for (QChar c : money) {
        if (c.isDigit()) {
            digits.append(c);
        } else if (c == u'.' || c == u',') {
            separator = digits.size();
        }
    }
    if (separator >= 0 && separator < digits.size() && digits.size() - separator <= 4)
        digits.insert(separator, u'.');
    const bool negative = money.contains(u'-') || money.contains(u'(');
    return negative ? u'-' + digits : digits;
}

// Exact numbers come as text, so that nothing is lost before the value is typed.
QVariant readNumber(SQLHSTMT statement, int column, qint16 fieldType)
{
    const std::optional<QString> text = odbcText(statement, column);
    if (!text)
        return {};
    if (fieldType == FieldCurrency) {
        std::optional<Currency> exact = Currency::fromString(*text);
        if (!exact)
            exact = Currency::fromString(plainAmount(*text));
        if (exact)
            return QVariant::fromValue(*exact);
    }
    return text->toDouble();
}

QVariant readValue(SQLHSTMT statement, int column, qint16 fieldType, SQLSMALLINT sqlType)
{
    switch (fieldType) {
    case FieldBoolean: {
        SQLCHAR bit = 0;
        return readFixed(statement, column, SQL_C_BIT, &bit) ? QVariant(bit != 0) : QVariant();
    }
    case FieldByte:
    case FieldInteger:
    case FieldLong:
    case FieldBigInt: {
        SQLBIGINT number = 0;
        if (!readFixed(statement, column, SQL_C_SBIGINT, &number))
            return {};
        return fieldType == FieldBigInt ? QVariant(qint64(number)) : QVariant(int(number));
    }
    case FieldSingle:
    case FieldFloat:
    case FieldDouble: {
        SQLDOUBLE number = 0;
        return readFixed(statement, column, SQL_C_DOUBLE, &number) ? QVariant(number) : QVariant();
    }
    case FieldCurrency:
    case FieldNumeric:
    case FieldDecimal:
        return readNumber(statement, column, fieldType);
    case FieldDate:
        return readDate(statement, column, sqlType);
    case FieldBinary:
    case FieldLongBinary: {
        const std::optional<qint64> size = odbcByteCount(statement, column);
        return size ? binaryValue(*size) : QVariant();
    }
    default: {
        const std::optional<QString> text = odbcText(statement, column);
        return text ? QVariant(*text) : QVariant();
    }
    }
}

} // namespace

std::unique_ptr<OdbcRecordset> OdbcRecordset::open(const QString& connection,
                                                   const OdbcTable& table,
                                                   std::optional<qint64> rowLimit, QString* error)
{
    std::unique_ptr<OdbcConnection> session = OdbcConnection::open(connection, error);
    if (!session)
        return nullptr;
    const std::optional<QString> reference = session->tableReference(table.schema, table.name);
    if (!reference) {
        setError(error, QStringLiteral("'%1' cannot be named in this database's SQL: its driver "
                                       "quotes no names.")
                            .arg(table.name));
        return nullptr;
    }
    OdbcStatement statement = session->statement(error);
    if (!statement)
        return nullptr;
    std::unique_ptr<OdbcRecordset> records(
        new OdbcRecordset(std::move(session), std::move(statement),
                          QStringLiteral("SELECT * FROM ") + *reference, rowLimit));
    QString problem;
    if (!records->start(&problem)) {
        setError(error, QStringLiteral("'%1' cannot be read: %2").arg(table.name, problem));
        return nullptr;
    }
    return records;
}

OdbcRecordset::OdbcRecordset(std::unique_ptr<OdbcConnection> connection, OdbcStatement statement,
                             QString sql, std::optional<qint64> rowLimit)
    : m_connection(std::move(connection)), m_statement(std::move(statement)), m_sql(std::move(sql)),
      m_rowLimit(rowLimit ? std::max<qint64>(*rowLimit, 0) : rowLimit)
{
}

bool OdbcRecordset::start(QString* error)
{
    close();
    m_rowsRead = 0;
    SQLHSTMT handle = m_statement.get();
    // The driver may stop early; a limit of 0 still runs the query to describe its columns.
    if (m_rowLimit) {
        SQLSetStmtAttrW(handle, SQL_ATTR_MAX_ROWS,
                        reinterpret_cast<SQLPOINTER>(SQLULEN(std::max<qint64>(*m_rowLimit, 1))), 0);
    }
    const SQLRETURN executed = odbcExecute(handle, m_sql);
    if (!SQL_SUCCEEDED(executed)) {
        setError(error, OdbcConnection::diagnostics(SQL_HANDLE_STMT, handle));
        m_connection->endTransaction();
        return false;
    }
    m_open = true;

    SQLSMALLINT columns = 0;
    SQLNumResultCols(handle, &columns);
    m_names.clear();
    m_types.clear();
    m_sqlTypes.clear();
    for (SQLUSMALLINT column = 1; column <= columns; ++column) {
        SQLWCHAR name[512] = {};
        SQLSMALLINT nameLength = 0;
        SQLSMALLINT sqlType = 0;
        SQLULEN size = 0;
        SQLSMALLINT digits = 0;
        SQLSMALLINT nullable = 0;
        SQLDescribeColW(handle, column, name, SQLSMALLINT(std::size(name)), &nameLength, &sqlType,
                        &size, &digits, &nullable);
        SQLWCHAR typeName[128] = {};
        SQLSMALLINT typeNameBytes = 0;
        SQLColAttributeW(handle, column, SQL_DESC_TYPE_NAME, typeName, sizeof typeName,
                         &typeNameBytes, nullptr);
        m_names.append(QString::fromUtf16(reinterpret_cast<const char16_t*>(name),
                                          std::min<qsizetype>(nameLength, std::size(name) - 1)));
        m_types.append(fieldTypeForSqlType(
            sqlType, QString::fromUtf16(reinterpret_cast<const char16_t*>(typeName))));
        m_sqlTypes.append(sqlType);
    }
    return fetch(error);
}

bool OdbcRecordset::fetch(QString* error)
{
    m_values.clear();
    m_atEnd = true;
    if (!m_open)
        return true;
    SQLHSTMT handle = m_statement.get();
    if (m_rowLimit && m_rowsRead >= *m_rowLimit) {
        close();
        return true;
    }
    const SQLRETURN fetched = SQLFetch(handle);
    if (!SQL_SUCCEEDED(fetched)) {
        const bool ok = fetched == SQL_NO_DATA;
        if (!ok)
            setError(error, OdbcConnection::diagnostics(SQL_HANDLE_STMT, handle));
        close();
        return ok;
    }
    // Read in column order: many drivers deliver columns no other way.
    for (int column = 0; column < m_types.size(); ++column)
        m_values.append(readValue(handle, column, m_types.at(column), m_sqlTypes.at(column)));
    m_atEnd = false;
    ++m_rowsRead;
    return true;
}

void OdbcRecordset::close()
{
    if (!m_open)
        return;
    SQLFreeStmt(m_statement.get(), SQL_CLOSE);
    m_connection->endTransaction();
    m_open = false;
}

bool OdbcRecordset::moveFirst()
{
    if (m_rowsRead <= 1 && m_open)
        return true;
    return start(nullptr);
}

bool OdbcRecordset::moveNext()
{
    if (m_atEnd)
        return false;
    return fetch(nullptr) && !m_atEnd;
}

} // namespace tabulor
