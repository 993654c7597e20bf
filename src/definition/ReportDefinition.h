#pragma once

#include "definition/ReportField.h"
#include "definition/ReportStyle.h"

#include <QList>
#include <QString>
#include <QStringList>

namespace tabulor {

// The page and title settings of a report ([GlobalInfo] in definition files, "Global" in the
// settings file). Lengths in twips.
struct GlobalSettings
{
    QString ReportTitle;
    qint16 Align = 0;
    QString Header;
    QString Footer;
    QString Columns = QStringLiteral("1");
    qint16 PageBorders = 0;
    qint32 Top = 1440;
    qint32 Bottom = 1440;
    qint32 Left = 1440;
    qint32 Right = 720;
    qint32 SubtotalPosition = 0; // 0 above, 1 below, 2 both
    bool WordWrap = true;
    bool WidowOK = false;
    qint32 MaxHeight = 2880;
    qint16 Orientation = 0;

    bool operator==(const GlobalSettings&) const = default;
};

// The current report: where its rows come from and how they are laid out.
struct ReportDefinition
{
    GlobalSettings global;
    StyleTable styles = namedStyleTable();
    QList<ReportField> fields;
    QStringList groups;  // grouping fields, outermost first
    QStringList details; // detail columns, left to right
    QString DataBaseName;
    QString RecordSource;
    QString CurrentFileName;
    bool Dirty = false;

    bool operator==(const ReportDefinition&) const = default;
};

// The three texts a new report starts with; they come from the string table.
struct DefaultTexts
{
    QString reportTitle;
    QString header;
    QString footer;
};

// Sets the global settings (but Align and WidowOK) and the style table to the built-in look.
// Style fields that the built-in look does not name keep their values.
void ApplyBuiltInStyles(ReportDefinition& definition, const DefaultTexts& texts);

} // namespace tabulor
