#include "app/DefinitionJson.h"

#include <QJsonArray>

namespace tabulor::cli {

namespace {

double jsonSingle(float value)
{
    return QString::number(static_cast<double>(value), 'g', 7).toDouble();
}

QJsonObject globalJson(const GlobalSettings& g)
{
    return QJsonObject{
        {QStringLiteral("ReportTitle"), g.ReportTitle},
        {QStringLiteral("Align"), g.Align},
        {QStringLiteral("Header"), g.Header},
        {QStringLiteral("Footer"), g.Footer},
        {QStringLiteral("Columns"), g.Columns},
        {QStringLiteral("PageBorders"), g.PageBorders},
        {QStringLiteral("Top"), g.Top},
        {QStringLiteral("Bottom"), g.Bottom},
        {QStringLiteral("Left"), g.Left},
        {QStringLiteral("Right"), g.Right},
        {QStringLiteral("SubtotalPosition"), g.SubtotalPosition},
        {QStringLiteral("WordWrap"), g.WordWrap},
        {QStringLiteral("WidowOK"), g.WidowOK},
        {QStringLiteral("MaxHeight"), g.MaxHeight},
        {QStringLiteral("Orientation"), g.Orientation},
    };
}

QJsonObject styleJson(const ReportStyle& s)
{
    return QJsonObject{
        {QStringLiteral("Name"), s.name},
        {QStringLiteral("Level"), s.Level},
        {QStringLiteral("FontName"), s.FontName},
        {QStringLiteral("FontSize"), jsonSingle(s.FontSize)},
        {QStringLiteral("FontBold"), s.FontBold},
        {QStringLiteral("FontItalic"), s.FontItalic},
        {QStringLiteral("FontUnderline"), s.FontUnderline},
        {QStringLiteral("FontStrikeThru"), s.FontStrikeThru},
        {QStringLiteral("Before"), s.Before},
        {QStringLiteral("After"), s.After},
        {QStringLiteral("Top"), s.Top},
        {QStringLiteral("Bottom"), s.Bottom},
        {QStringLiteral("Color"), s.Color},
        {QStringLiteral("Text"), s.Text},
        {QStringLiteral("Back"), s.Back},
    };
}

QJsonObject fieldJson(const ReportField& f)
{
    return QJsonObject{
        {QStringLiteral("ID"), f.ID},
        {QStringLiteral("Title"), f.Title},
        {QStringLiteral("Sort"), f.Sort},
        {QStringLiteral("Align"), f.Align},
        {QStringLiteral("Format"), f.Format},
        {QStringLiteral("Aggregate"), f.Aggregate},
        {QStringLiteral("Width"), jsonSingle(f.Width)},
    };
}

} // namespace

QJsonObject definitionJson(const ReportDefinition& d)
{
    QJsonArray styles;
    for (const ReportStyle& s : d.styles)
        styles.append(styleJson(s));
    QJsonArray fields;
    for (const ReportField& f : d.fields)
        fields.append(fieldJson(f));
    return QJsonObject{
        {QStringLiteral("DataBaseName"), d.DataBaseName},
        {QStringLiteral("RecordSource"), d.RecordSource},
        {QStringLiteral("GlobalInfo"), globalJson(d.global)},
        {QStringLiteral("Styles"), styles},
        {QStringLiteral("Fields"), fields},
        {QStringLiteral("Groups"), QJsonArray::fromStringList(d.groups)},
        {QStringLiteral("Details"), QJsonArray::fromStringList(d.details)},
    };
}

} // namespace tabulor::cli
