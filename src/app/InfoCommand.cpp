#include "app/CommandLine.h"
#include "app/DefinitionJson.h"

#include "component/ReportSession.h"
#include "production/grid/GridText.h"

#include <QCommandLineParser>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QLocale>

namespace tabulor::cli {

namespace {

QString yesNo(bool value)
{
    return value ? QStringLiteral("yes") : QStringLiteral("no");
}

QString styleLine(int index, const ReportStyle& s)
{
    QStringList look;
    look << s.FontName << QString::number(static_cast<double>(s.FontSize));
    if (s.FontBold)
        look << QStringLiteral("bold");
    if (s.FontItalic)
        look << QStringLiteral("italic");
    if (s.FontUnderline)
        look << QStringLiteral("underline");
    if (s.FontStrikeThru)
        look << QStringLiteral("strike-through");
    return QStringLiteral("  %1 %2: %3; text %4 on %5; rules %6/%7 in %8; space %9/%10")
        .arg(index, 2)
        .arg(s.name, -17)
        .arg(look.join(u' '))
        .arg(s.Text)
        .arg(s.Back)
        .arg(s.Top)
        .arg(s.Bottom)
        .arg(s.Color)
        .arg(s.Before)
        .arg(s.After);
}

QString definitionText(const QString& path, const ReportDefinition& d)
{
    const GlobalSettings& g = d.global;
    QStringList lines;
    lines << QStringLiteral("Definition:       %1").arg(path)
          << QStringLiteral("Database:         %1").arg(d.DataBaseName)
          << QStringLiteral("Record source:    %1").arg(d.RecordSource)
          << QStringLiteral("Report title:     %1").arg(g.ReportTitle)
          << QStringLiteral("Align:            %1").arg(g.Align)
          << QStringLiteral("Header:           %1").arg(g.Header)
          << QStringLiteral("Footer:           %1").arg(g.Footer)
          << QStringLiteral("Columns:          %1").arg(g.Columns)
          << QStringLiteral("Page borders:     %1").arg(g.PageBorders)
          << QStringLiteral("Margins:          top %1, bottom %2, left %3, right %4")
                 .arg(g.Top)
                 .arg(g.Bottom)
                 .arg(g.Left)
                 .arg(g.Right)
          << QStringLiteral("Subtotals:        %1").arg(g.SubtotalPosition)
          << QStringLiteral("Word wrap:        %1").arg(yesNo(g.WordWrap))
          << QStringLiteral("Widow control:    %1").arg(yesNo(g.WidowOK))
          << QStringLiteral("Max row height:   %1").arg(g.MaxHeight)
          << QStringLiteral("Orientation:      %1").arg(g.Orientation) << QStringLiteral("Styles:");
    for (int i = 0; i < kStyleCount; ++i)
        lines << styleLine(i, d.styles[i]);
    lines << QStringLiteral("Fields (ID | Title | Sort | Align | Format | Aggregate | Width):");
    for (const ReportField& f : d.fields) {
        lines << QStringLiteral("  %1 | %2 | %3 | %4 | %5 | %6 | %7")
                     .arg(f.ID, f.Title)
                     .arg(f.Sort)
                     .arg(f.Align)
                     .arg(f.Format)
                     .arg(f.Aggregate)
                     .arg(static_cast<double>(f.Width));
    }
    lines << QStringLiteral("Groups:           %1").arg(d.groups.join(QStringLiteral(", ")))
          << QStringLiteral("Details:          %1").arg(d.details.join(QStringLiteral(", ")));
    return lines.join(u'\n');
}

QString styleName(const ReportDefinition& d, int style)
{
    return style >= 0 && style < kStyleCount ? d.styles[style].name : QString();
}

// The first rows of the report body.
std::vector<GridRow> firstRows(const OutlineGrid& grid, qsizetype count)
{
    const auto& rows = grid.rows();
    const auto end = rows.begin() + std::min<qsizetype>(count, static_cast<qsizetype>(rows.size()));
    return std::vector<GridRow>(rows.begin(), end);
}

// The texts of the column title row, which leads the body on every page.
QStringList titleTexts(const OutlineGrid& grid)
{
    QStringList titles;
    for (int column : grid.reportColumns())
        titles.append(grid.column(column).title);
    return titles;
}

QJsonArray rowsJson(const ReportSession& session, qsizetype count)
{
    const OutlineGrid& grid = session.data().grid();
    const GridText text(grid, FormatLocale::fromQLocale(QLocale()));
    QJsonArray rows{QJsonObject{
        {QStringLiteral("Outline"), false},
        {QStringLiteral("Level"), 0},
        {QStringLiteral("Style"), session.definition().styles[StyleDetailTitle].name},
        {QStringLiteral("Cells"), QJsonArray::fromStringList(titleTexts(grid))},
    }};
    for (const GridRow& row : firstRows(grid, count)) {
        rows.append(QJsonObject{
            {QStringLiteral("Outline"), row.isGroupRow()},
            {QStringLiteral("Level"), row.isGroupRow() ? row.level : 0},
            {QStringLiteral("Style"), styleName(session.definition(), row.style)},
            {QStringLiteral("Cells"), QJsonArray::fromStringList(text.rowTexts(row))},
        });
    }
    return rows;
}

QString rowsText(const ReportSession& session, qsizetype count)
{
    const OutlineGrid& grid = session.data().grid();
    const GridText text(grid, FormatLocale::fromQLocale(QLocale()));
    QStringList lines{QStringLiteral("Rows (style | cells):"),
                      QStringLiteral("  %1 | %2")
                          .arg(session.definition().styles[StyleDetailTitle].name,
                               titleTexts(grid).join(QStringLiteral(" | ")))};
    for (const GridRow& row : firstRows(grid, count)) {
        lines.append(QStringLiteral("  %1 | %2")
                         .arg(styleName(session.definition(), row.style),
                              text.rowTexts(row).join(QStringLiteral(" | "))));
    }
    return lines.join(u'\n');
}

} // namespace

int runInfo(const QStringList& arguments)
{
    QCommandLineParser parser;
    const QCommandLineOption json(QStringLiteral("json"));
    const QCommandLineOption rows(QStringLiteral("rows"), QString(), QStringLiteral("N"));
    const QCommandLineOption all(QStringLiteral("all"));
    parser.addOptions({json, rows, all});
    if (!parser.parse(arguments))
        return usageError(parser.errorText());
    if (parser.positionalArguments().size() != 1)
        return usageError(QStringLiteral("info takes one definition file"));
    bool countOk = true;
    const qsizetype rowCount = parser.isSet(rows) ? parser.value(rows).toLongLong(&countOk) : 0;
    if (!countOk || rowCount < 0)
        return usageError(QStringLiteral("--rows takes a number of rows"));
    if (parser.isSet(all) && !parser.isSet(rows))
        return usageError(QStringLiteral("--all goes with --rows"));
    const QString path = parser.positionalArguments().constFirst();

    ReportSession session;
    if (!loadDefinition(session, path))
        return kExitFailed;
    printMissingObjects(session, path, /*asWarnings=*/true);
    if (parser.isSet(all)) {
        session.data().setUnlimitedRows(true);
        session.data().LoadRowsIntoGrid();
        session.rebuildReport();
    }
    if (!session.data().readError().isEmpty()) {
        printError(QStringLiteral("tabulor: warning: %1: %2")
                       .arg(QFileInfo(path).fileName(), session.data().readError()));
    }

    if (parser.isSet(json)) {
        QJsonObject object = definitionJson(session.definition());
        if (parser.isSet(rows))
            object.insert(QStringLiteral("Rows"), rowsJson(session, rowCount));
        printOut(QString::fromUtf8(QJsonDocument(object).toJson(QJsonDocument::Indented)));
    } else {
        printOut(definitionText(path, session.definition()));
        if (parser.isSet(rows))
            printOut(rowsText(session, rowCount));
    }
    return kExitOk;
}

} // namespace tabulor::cli
