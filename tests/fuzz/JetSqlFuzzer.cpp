#include "FuzzRequire.h"

#include "production/base/FieldType.h"
#include "production/data/jet/JetSqlFunctions.h"
#include "production/data/jet/sql/JetSqlTranslator.h"

#include <sqlite3.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>

using namespace tabulor;

namespace {

// Two tables as the query engine holds them once loaded: declared with their field types, text
// compared without regard to case, a few rows each.
const std::array<JetSourceSchema, 2> kSchemas = {{
    {QStringLiteral("Orders"),
     {QStringLiteral("OrderID"), QStringLiteral("Customer"), QStringLiteral("OrderDate"),
      QStringLiteral("Freight"), QStringLiteral("Shipped"), QStringLiteral("Weight")},
     {FieldLong, FieldText, FieldDate, FieldCurrency, FieldBoolean, FieldDouble}},
    {QStringLiteral("Order Details"),
     {QStringLiteral("OrderID"), QStringLiteral("Product"), QStringLiteral("Quantity"),
      QStringLiteral("Notes")},
     {FieldLong, FieldText, FieldInteger, FieldMemo}},
}};

constexpr const char* kTables = R"(
CREATE TABLE "Orders" ("OrderID" LONG, "Customer" VARCHAR COLLATE NOCASE, "OrderDate" DATETIME,
                       "Freight" CURRENCY, "Shipped" BOOLEAN, "Weight" DOUBLE);
INSERT INTO "Orders" VALUES (10248, 'VINET', '1996-07-04', 32.38, -1, 1.5),
                            (10249, 'Tomsp', '1996-07-05 13:30:00', 11.61, 0, NULL),
                            (10250, NULL, NULL, NULL, NULL, -0.25);
CREATE TABLE "Order Details" ("OrderID" LONG, "Product" VARCHAR COLLATE NOCASE,
                              "Quantity" SMALLINT, "Notes" LONGTEXT COLLATE NOCASE);
INSERT INTO "Order Details" VALUES (10248, 'Queso Cabrales', 12, 'first'),
                                   (10248, 'Tofu', 10, NULL), (10250, 'Chai', -1, '');
)";

// What one statement may cost the engine, in its own steps. A query may ask for more (a table
// joined to itself twenty times), which is the query's cost and not the translator's fault.
constexpr int kStepBudget = 2'000'000;
constexpr int kStepsPerCheck = 1000;
int stepsLeft = 0;

int spendSteps(void*)
{
    stepsLeft -= kStepsPerCheck;
    return stepsLeft < 0 ? 1 : 0;
}

// The engine a saved query runs in, made once: translated queries only read.
sqlite3* engine()
{
    static sqlite3* const db = [] {
        sqlite3* opened = nullptr;
        fuzz::require(sqlite3_open(":memory:", &opened) == SQLITE_OK && opened &&
                          registerJetFunctions(opened) &&
                          sqlite3_exec(opened, kTables, nullptr, nullptr, nullptr) == SQLITE_OK,
                      "the query engine starts");
        sqlite3_progress_handler(opened, kStepsPerCheck, spendSteps, nullptr);
        return opened;
    }();
    return db;
}

const JetSourceSchema* loadSource(const QString& name, QString* error)
{
    for (const JetSourceSchema& schema : kSchemas) {
        if (schema.table.compare(name, Qt::CaseInsensitive) == 0)
            return &schema;
    }
    *error = QStringLiteral("no table '%1'").arg(name);
    return nullptr;
}

// Runs what the translator made: it is one statement that only reads. The engine may still
// refuse it (a column no table has), and its rows are read, at most a bounded number of them.
void run(const QString& sql)
{
    const QByteArray text = sql.toUtf8();
    stepsLeft = kStepBudget;
    sqlite3_stmt* statement = nullptr;
    const char* tail = nullptr;
    if (sqlite3_prepare_v2(engine(), text.constData(), int(text.size()), &statement, &tail) !=
        SQLITE_OK) {
        sqlite3_finalize(statement);
        return;
    }
    fuzz::require(QByteArray(tail).trimmed().isEmpty(), "a translation is one statement");
    fuzz::require(statement == nullptr || sqlite3_stmt_readonly(statement),
                  "a translation only reads");
    for (int row = 0; row < 1000 && sqlite3_step(statement) == SQLITE_ROW; ++row) {
        for (int column = 0; column < sqlite3_column_count(statement); ++column)
            sqlite3_column_text(statement, column);
    }
    sqlite3_finalize(statement);
}

template <typename Result>
void checkRefusal(const std::optional<Result>& translated, const QString& error)
{
    fuzz::require(translated.has_value() || !error.isEmpty(), "a refused translation says why");
}

} // namespace

// Jet SQL as a saved query holds it, translated both as a whole SELECT statement and as an
// expression over a table, and each translation run in the engine with the Jet functions.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const QString jet = QString::fromUtf8(reinterpret_cast<const char*>(data), qsizetype(size));

    QString error;
    JetSqlTranslator statements(loadSource);
    const std::optional<QString> statement = statements.statement(jet, &error);
    checkRefusal(statement, error);
    if (statement)
        run(*statement);

    error.clear();
    JetSqlTranslator expressions(loadSource);
    expressions.addSource(kSchemas[0].table, &kSchemas[0]);
    const std::optional<JetSqlExpression> expression = expressions.expression(jet, &error);
    checkRefusal(expression, error);
    if (expression)
        run(QStringLiteral("SELECT ") + expression->sql + QStringLiteral(" FROM \"Orders\""));
    return 0;
}
