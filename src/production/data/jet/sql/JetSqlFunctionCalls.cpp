#include "production/data/jet/sql/JetSqlFunctionCalls.h"

#include "production/base/FieldType.h"

namespace tabulor {

namespace {

struct FunctionRule
{
    const char* jet;
    const char* sql; // %1, %2 ... are the arguments; empty: the engine's name with all arguments
    int minArgs;
    int maxArgs;
    qint16 type; // -1: the first argument's type, -2: the second's
};

// The functions a query may use, the aggregates first. Aggregates keep their argument's type,
// as Jet does.
constexpr int AggregateCount = 7;
constexpr FunctionRule Functions[] = {
    {"Sum", "sum(%1)", 1, 1, -1},
    {"Avg", "avg(%1)", 1, 1, FieldDouble},
    {"Count", "count(%1)", 1, 1, FieldLong},
    {"Min", "min(%1)", 1, 1, -1},
    {"Max", "max(%1)", 1, 1, -1},
    {"First", "jet_first(%1)", 1, 1, -1},
    {"Last", "jet_last(%1)", 1, 1, -1},
    {"IIf", "CASE WHEN %1 THEN %2 ELSE %3 END", 3, 3, -2},
    {"Nz", "coalesce(%1, %2)", 1, 2, -1},
    {"Format", "jet_format(%1, %2)", 1, 2, FieldText},
    {"Left", "substr(%1, 1, %2)", 2, 2, FieldText},
    {"Right", "jet_right(%1, %2)", 2, 2, FieldText},
    {"Mid", "substr(%1, %2, %3)", 2, 3, FieldText},
    {"Len", "length(%1)", 1, 1, FieldLong},
    {"UCase", "upper(%1)", 1, 1, FieldText},
    {"LCase", "lower(%1)", 1, 1, FieldText},
    {"Trim", "trim(%1)", 1, 1, FieldText},
    {"LTrim", "ltrim(%1)", 1, 1, FieldText},
    {"RTrim", "rtrim(%1)", 1, 1, FieldText},
    {"InStr", "instr(%1, %2)", 2, 2, FieldLong},
    {"Replace", "replace(%1, %2, %3)", 3, 3, FieldText},
    {"Year", "jet_datepart('yyyy', %1)", 1, 1, FieldInteger},
    {"Month", "jet_datepart('m', %1)", 1, 1, FieldInteger},
    {"Day", "jet_datepart('d', %1)", 1, 1, FieldInteger},
    {"Weekday", "jet_datepart('w', %1)", 1, 1, FieldInteger},
    {"Hour", "jet_datepart('h', %1)", 1, 1, FieldInteger},
    {"Minute", "jet_datepart('n', %1)", 1, 1, FieldInteger},
    {"Second", "jet_datepart('s', %1)", 1, 1, FieldInteger},
    {"DatePart", "jet_datepart(%1, %2)", 2, 4, FieldInteger},
    {"DateSerial", "jet_dateserial(%1, %2, %3)", 3, 3, FieldDate},
    {"DateAdd", "jet_dateadd(%1, %2, %3)", 3, 3, FieldDate},
    {"CDate", "jet_cdate(%1)", 1, 1, FieldDate},
    {"CCur", "jet_round(%1, 4)", 1, 1, FieldCurrency},
    {"CDbl", "CAST(%1 AS REAL)", 1, 1, FieldDouble},
    {"CSng", "CAST(%1 AS REAL)", 1, 1, FieldSingle},
    {"CLng", "CAST(jet_round(%1, 0) AS INTEGER)", 1, 1, FieldLong},
    {"CInt", "CAST(jet_round(%1, 0) AS INTEGER)", 1, 1, FieldInteger},
    {"CStr", "CAST(%1 AS TEXT)", 1, 1, FieldText},
    {"Round", "jet_round(%1, %2)", 1, 2, -1},
    {"Int", "jet_int(%1)", 1, 1, -1},
    {"Fix", "CAST(%1 AS INTEGER)", 1, 1, -1},
    {"Abs", "abs(%1)", 1, 1, -1},
    {"Val", "CAST(%1 AS REAL)", 1, 1, FieldDouble},
};

const FunctionRule* findFunction(const QString& name)
{
    for (const FunctionRule& rule : Functions) {
        if (name.compare(QLatin1String(rule.jet), Qt::CaseInsensitive) == 0)
            return &rule;
    }
    return nullptr;
}

} // namespace

std::optional<JetSqlExpression> translateFunctionCall(const QString& function,
                                                      QList<JetSqlExpression> args, bool distinct,
                                                      const QString& aggregateCondition,
                                                      QString* error)
{
    const FunctionRule* rule = findFunction(function);
    if (!rule) {
        *error = QStringLiteral("the function %1 is not supported").arg(function);
        return std::nullopt;
    }
    if (args.size() < rule->minArgs || args.size() > rule->maxArgs) {
        *error = QStringLiteral("%1 takes %2 to %3 arguments")
                     .arg(function)
                     .arg(rule->minArgs)
                     .arg(rule->maxArgs);
        return std::nullopt;
    }
    if (rule < Functions + AggregateCount && !aggregateCondition.isEmpty()) {
        JetSqlExpression& counted = args.first();
        counted.sql =
            QStringLiteral("CASE WHEN %1 THEN %2 END")
                .arg(aggregateCondition, counted.sql == u"*" ? QStringLiteral("1") : counted.sql);
    }
    QString sql = QString::fromLatin1(rule->sql);
    // Missing optional arguments: Nz gives empty text, Format the value's own text,
    // Mid the rest of the text, Round whole numbers.
    static const char* const defaults[] = {"", "''", "-1", "0"};
    for (int i = 0; i < 4; ++i) {
        const QString marker = u'%' + QString::number(i + 1);
        if (!sql.contains(marker))
            continue;
        QString value;
        if (i < args.size())
            value = args[i].sql;
        else if (function.compare(QLatin1String("Mid"), Qt::CaseInsensitive) == 0)
            value = QStringLiteral("-1");
        else
            value = QLatin1String(defaults[std::min(i, 3)]);
        if (i == 0 && distinct)
            value = QStringLiteral("DISTINCT ") + value;
        sql.replace(marker, value);
    }
    // substr() takes a negative length from the end; Mid without one reads to the end.
    sql.replace(QStringLiteral("substr(%1, %2, -1)").arg(args.value(0).sql, args.value(1).sql),
                QStringLiteral("substr(%1, %2)").arg(args.value(0).sql, args.value(1).sql));
    qint16 type = rule->type;
    if (type == -1)
        type = args.value(0).type;
    else if (type == -2)
        type = args.value(1).type ? args.value(1).type : args.value(2).type;
    return JetSqlExpression{sql, type};
}

} // namespace tabulor
