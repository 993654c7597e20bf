#include "app/CommandLine.h"
#include "app/DefinitionJson.h"

#include "component/ReportSession.h"

#include <QCommandLineParser>
#include <QJsonDocument>

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

} // namespace

int runInfo(const QStringList& arguments)
{
    QCommandLineParser parser;
    const QCommandLineOption json(QStringLiteral("json"));
    parser.addOption(json);
    if (!parser.parse(arguments))
        return usageError(parser.errorText());
    if (parser.positionalArguments().size() != 1)
        return usageError(QStringLiteral("info takes one definition file"));
    const QString path = parser.positionalArguments().constFirst();

    ReportSession session;
    if (!loadDefinition(session, path))
        return kExitFailed;
    if (parser.isSet(json))
        printOut(QString::fromUtf8(
            QJsonDocument(definitionJson(session.definition())).toJson(QJsonDocument::Indented)));
    else
        printOut(definitionText(path, session.definition()));
    return kExitOk;
}

} // namespace tabulor::cli
