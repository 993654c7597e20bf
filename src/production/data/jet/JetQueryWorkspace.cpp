#include "production/data/jet/JetQueryWorkspace.h"

#include "production/base/Currency.h"
#include "production/base/FieldType.h"
#include "production/data/BinaryValue.h"
#include "production/data/DataSource.h"
#include "production/data/jet/JetCatalog.h"
#include "production/data/jet/JetSqlFunctions.h"
#include "production/data/sqlite/SqliteValues.h"

#include <QDateTime>

#include <sqlite3.h>

namespace tabulor {

namespace {

// How field types are declared in the engine, so that a column read straight from a loaded
// table gives its type back. Each name keeps the engine's affinity right for its values.
struct DeclaredType
{
    qint16 type;
    const char* declaration;
};
constexpr DeclaredType Declarations[] = {
    {FieldBoolean, "BOOLEAN"},  {FieldByte, "BYTE"},
    {FieldInteger, "SMALLINT"}, {FieldLong, "LONG"},
    {FieldBigInt, "BIGINT"},    {FieldCurrency, "CURRENCY"},
    {FieldSingle, "SINGLE"},    {FieldDouble, "DOUBLE"},
    {FieldDecimal, "DECIMAL"},  {FieldNumeric, "NUMERIC"},
    {FieldFloat, "FLOAT"},      {FieldDate, "DATETIME"},
    {FieldMemo, "LONGTEXT"},    {FieldGuid, "GUIDCHAR"},
    {FieldBinary, "BINARY"},    {FieldLongBinary, "LONGBINARY"},
    {FieldText, "VARCHAR"},
};

QString declarationFor(qint16 type)
{
    for (const DeclaredType& d : Declarations) {
        if (d.type == type)
            return QString::fromLatin1(d.declaration);
    }
    return QStringLiteral("VARCHAR");
}

void bindValue(sqlite3_stmt* statement, int index, const QVariant& value)
{
    if (value.isNull())
        sqlite3_bind_null(statement, index);
    else if (value.metaType() == QMetaType::fromType<bool>())
        sqlite3_bind_int(statement, index, value.toBool() ? -1 : 0);
    else if (value.metaType() == QMetaType::fromType<Currency>())
        sqlite3_bind_double(statement, index, value.value<Currency>().toDouble());
    else if (value.metaType() == QMetaType::fromType<QDate>())
        sqlite3_bind_text(statement, index, value.toDate().toString(Qt::ISODate).toUtf8(), -1,
                          SQLITE_TRANSIENT);
    else if (value.metaType() == QMetaType::fromType<QDateTime>())
        sqlite3_bind_text(
            statement, index,
            value.toDateTime().toString(QStringLiteral("yyyy-MM-dd HH:mm:ss")).toUtf8(), -1,
            SQLITE_TRANSIENT);
    else if (value.metaType() == QMetaType::fromType<BinaryValue>())
        // A value of the same size, so that the query shows it as the table does.
        sqlite3_bind_zeroblob64(statement, index, sqlite3_uint64(value.value<BinaryValue>().size));
    else if (value.metaType() == QMetaType::fromType<double>())
        sqlite3_bind_double(statement, index, value.toDouble());
    else if (value.canConvert<qint64>() && value.metaType() != QMetaType::fromType<QString>())
        sqlite3_bind_int64(statement, index, value.toLongLong());
    else
        sqlite3_bind_text(statement, index, value.toString().toUtf8(), -1, SQLITE_TRANSIENT);
}

} // namespace

void JetEngineCloser::operator()(sqlite3* db) const
{
    sqlite3_close_v2(db);
}

std::optional<qint16> fieldTypeOfDeclaration(const char* declaration)
{
    for (const DeclaredType& d : Declarations) {
        if (declaration && qstrcmp(declaration, d.declaration) == 0)
            return d.type;
    }
    return std::nullopt;
}

JetQueryWorkspace::JetQueryWorkspace(DataSource& database, const JetCatalog& catalog)
    : m_database(database), m_catalog(catalog)
{
}

bool JetQueryWorkspace::start(QString* error)
{
    sqlite3* db = nullptr;
    const int opened = sqlite3_open_v2(":memory:", &db, SQLITE_OPEN_READWRITE, nullptr);
    m_engine.reset(db);
    // Double quotes name columns only: a misspelt name must fail, not become a text.
    if (opened != SQLITE_OK || sqlite3_db_config(db, SQLITE_DBCONFIG_DQS_DML, 0, nullptr) ||
        sqlite3_db_config(db, SQLITE_DBCONFIG_DQS_DDL, 0, nullptr) || !registerJetFunctions(db)) {
        *error = QStringLiteral("the query engine cannot be started");
        return false;
    }
    return true;
}

const JetSourceSchema* JetQueryWorkspace::load(const QString& name, QString* error)
{
    const QString key = name.toLower();
    if (const auto found = m_loaded.find(key); found != m_loaded.end())
        return found->second.get();
    const JetObject* object = nullptr;
    for (const JetObject& candidate : m_catalog.objects()) {
        if (candidate.name.compare(name, Qt::CaseInsensitive) == 0) {
            object = &candidate;
            break;
        }
    }
    if (!object) {
        *error = QStringLiteral("it reads '%1', which is no table or query here").arg(name);
        return nullptr;
    }
    QString problem;
    const std::unique_ptr<Recordset> rows =
        m_database.openRecordSource(object->name, std::nullopt, &problem);
    if (!rows) {
        *error = problem;
        return nullptr;
    }
    auto schema = std::make_unique<JetSourceSchema>();
    schema->table = object->name;
    QStringList columns;
    QStringList slots;
    for (int i = 0; i < rows->fieldCount(); ++i) {
        schema->columns.append(rows->fieldName(i));
        schema->types.append(rows->fieldType(i));
        QString column = JetSqlTranslator::quoted(rows->fieldName(i)) + u' ' +
                         declarationFor(rows->fieldType(i));
        // Jet compares and sorts text without regard to case.
        if (rows->fieldType(i) == FieldText || rows->fieldType(i) == FieldMemo)
            column += QStringLiteral(" COLLATE NOCASE");
        columns.append(column);
        slots.append(QStringLiteral("?"));
    }
    const QString table = JetSqlTranslator::quoted(object->name);
    if (!execute(QStringLiteral("CREATE TABLE %1 (%2)").arg(table, columns.join(u',')), error))
        return nullptr;
    SqliteStatement insert =
        prepare(QStringLiteral("INSERT INTO %1 VALUES (%2)").arg(table, slots.join(u',')), error);
    if (!insert || !execute(QStringLiteral("BEGIN"), error))
        return nullptr;
    for (; !rows->atEnd(); rows->moveNext()) {
        for (int i = 0; i < rows->fieldCount(); ++i)
            bindValue(insert.get(), i + 1, rows->value(i));
        if (sqlite3_step(insert.get()) != SQLITE_DONE) {
            *error = QString::fromUtf8(sqlite3_errmsg(engine()));
            return nullptr;
        }
        sqlite3_reset(insert.get());
    }
    if (!rows->readError().isEmpty()) {
        *error = rows->readError();
        return nullptr;
    }
    if (!execute(QStringLiteral("COMMIT"), error))
        return nullptr;
    return m_loaded.emplace(key, std::move(schema)).first->second.get();
}

SqliteStatement JetQueryWorkspace::prepare(const QString& sql, QString* error) const
{
    const QByteArray utf8 = sql.toUtf8();
    sqlite3_stmt* statement = nullptr;
    if (sqlite3_prepare_v2(engine(), utf8.constData(), int(utf8.size()), &statement, nullptr) !=
        SQLITE_OK) {
        *error = QString::fromUtf8(sqlite3_errmsg(engine()));
        sqlite3_finalize(statement);
        return nullptr;
    }
    return SqliteStatement(statement);
}

std::optional<QList<QVariant>> JetQueryWorkspace::firstValues(const QString& sql,
                                                              QString* error) const
{
    const SqliteStatement statement = prepare(sql, error);
    if (!statement)
        return std::nullopt;
    QList<QVariant> values;
    int result = SQLITE_ROW;
    while ((result = sqlite3_step(statement.get())) == SQLITE_ROW)
        values.append(columnValue(statement.get(), 0, FieldText));
    if (result != SQLITE_DONE) {
        *error = QString::fromUtf8(sqlite3_errmsg(engine()));
        return std::nullopt;
    }
    return values;
}

bool JetQueryWorkspace::execute(const QString& sql, QString* error) const
{
    const SqliteStatement statement = prepare(sql, error);
    if (statement && sqlite3_step(statement.get()) == SQLITE_DONE)
        return true;
    if (statement)
        *error = QString::fromUtf8(sqlite3_errmsg(engine()));
    return false;
}

} // namespace tabulor
