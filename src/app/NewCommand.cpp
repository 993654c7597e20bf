#include "app/CommandLine.h"

#include "component/ReportSession.h"
#include "production/databases/OpenDatabase.h"
#include "production/grid/Aggregate.h"
#include "production/grid/ReportGridBuilder.h"

#include <QCommandLineParser>

namespace tabulor::cli {

namespace {

const QHash<QString, qint16>& aggregateCodes()
{
    static const QHash<QString, qint16> codes = {
        {QStringLiteral("sum"), AggregateSum},       {QStringLiteral("percent"), AggregatePercent},
        {QStringLiteral("count"), AggregateCount},   {QStringLiteral("avg"), AggregateAverage},
        {QStringLiteral("max"), AggregateMax},       {QStringLiteral("min"), AggregateMin},
        {QStringLiteral("stddev"), AggregateStdDev},
    };
    return codes;
}

const QHash<QString, qint16>& sortCodes()
{
    static const QHash<QString, qint16> codes = {
        {QStringLiteral("none"), 0}, {QStringLiteral("asc"), 1}, {QStringLiteral("desc"), 2}};
    return codes;
}

const QHash<QString, qint32>& subtotalPositions()
{
    static const QHash<QString, qint32> positions = {
        {QStringLiteral("above"), 0}, {QStringLiteral("below"), 1}, {QStringLiteral("both"), 2}};
    return positions;
}

// Splits "FIELD=word" and looks the word up; false when either part is wrong.
template <typename T>
bool fieldSetting(const QString& argument, const QHash<QString, T>& words, QString* field, T* code)
{
    const qsizetype equals = argument.lastIndexOf(u'=');
    if (equals <= 0)
        return false;
    *field = argument.left(equals);
    const auto found = words.constFind(argument.mid(equals + 1).toLower());
    if (found == words.cend())
        return false;
    *code = *found;
    return true;
}

// Moves a field from the available ones into a list, as dropping it in the layout window does.
bool place(ReportSession& session, const QString& name, QStringList& list)
{
    if (!session.data().availableFields().removeOne(name))
        return false;
    list.append(name);
    return true;
}

} // namespace

int runNew(const QStringList& arguments)
{
    QCommandLineParser parser;
    const QCommandLineOption database(QStringLiteral("database"), QString(), QStringLiteral("DB"));
    const QCommandLineOption source(QStringLiteral("source"), QString(), QStringLiteral("NAME"));
    const QCommandLineOption group(QStringLiteral("group"), QString(), QStringLiteral("FIELD"));
    const QCommandLineOption detail(QStringLiteral("detail"), QString(), QStringLiteral("FIELD"));
    const QCommandLineOption sort(QStringLiteral("sort"), QString(), QStringLiteral("FIELD=ORDER"));
    const QCommandLineOption total(QStringLiteral("total"), QString(), QStringLiteral("FIELD=FN"));
    const QCommandLineOption subtotals(QStringLiteral("subtotals"), QString(),
                                       QStringLiteral("WHERE"));
    const QCommandLineOption output(QStringList{QStringLiteral("o"), QStringLiteral("output")},
                                    QString(), QStringLiteral("OUT.vrd"));
    parser.addOptions({database, source, group, detail, sort, total, subtotals, output});
    if (!parser.parse(arguments))
        return usageError(parser.errorText());
    if (!parser.positionalArguments().isEmpty() || !parser.isSet(database) ||
        !parser.isSet(source) || !parser.isSet(output))
        return usageError(QStringLiteral("new needs --database, --source and -o"));

    ReportSession session;
    session.loadDesigner();
    const QString databaseName = databaseArgument(parser.value(database));
    session.definition().DataBaseName = databaseName;
    session.OpenDataSource(databaseName, QString());
    if (!session.data().CurrentDatabase()) {
        QString error;
        openDatabase(databaseName, &error);
        printError(QStringLiteral("tabulor: cannot open the database '%1': %2")
                       .arg(parser.value(database), error));
        return kExitFailed;
    }
    session.selectRecordSource(parser.value(source));
    if (!session.data().RecordSourceOpen()) {
        const QString& why = session.data().recordSourceError();
        printError(why.isEmpty()
                       ? QStringLiteral("tabulor: '%1' is no table, view or query of '%2'")
                             .arg(parser.value(source), parser.value(database))
                       : QStringLiteral("tabulor: '%1' cannot be opened in '%2': %3")
                             .arg(parser.value(source), parser.value(database), why));
        return kExitFailed;
    }

    ReportDefinition& d = session.definition();
    for (const QString& name : parser.values(group)) {
        if (!place(session, name, d.groups))
            return usageError(
                QStringLiteral("--group %1: no such field, or placed twice").arg(name));
    }
    for (const QString& name : parser.values(detail)) {
        if (!place(session, name, d.details))
            return usageError(
                QStringLiteral("--detail %1: no such field, or placed twice").arg(name));
    }
    for (const QString& setting : parser.values(sort)) {
        QString name;
        qint16 code = 0;
        const int f =
            fieldSetting(setting, sortCodes(), &name, &code) ? FindField(d.fields, name) : -1;
        if (f < 0 || name.isEmpty())
            return usageError(
                QStringLiteral("--sort %1: expected FIELD=asc|desc|none").arg(setting));
        d.fields[f].Sort = code;
    }
    for (const QString& setting : parser.values(total)) {
        QString name;
        qint16 code = 0;
        const int f =
            fieldSetting(setting, aggregateCodes(), &name, &code) ? FindField(d.fields, name) : -1;
        if (f < 0 || name.isEmpty())
            return usageError(
                QStringLiteral("--total %1: expected FIELD=sum|percent|count|avg|max|min|stddev")
                    .arg(setting));
        d.fields[f].Aggregate = code;
    }
    if (parser.isSet(subtotals)) {
        const auto position = subtotalPositions().constFind(parser.value(subtotals).toLower());
        if (position == subtotalPositions().cend())
            return usageError(QStringLiteral("--subtotals takes above, below or both"));
        d.global.SubtotalPosition = *position;
    }
    return session.saveReportFile(parser.value(output)) ? kExitOk : kExitFailed;
}

} // namespace tabulor::cli
