#pragma once

#include <QString>
#include <QtGlobal>

#include <array>

namespace tabulor {

// How one kind of row (or the title, page header or footer) is painted. Lengths in twips,
// colours as 0x00BBGGRR.
struct ReportStyle
{
    QString name;
    qint16 Level = 0; // the grid row kind the style paints; never stored in files
    QString FontName;
    float FontSize = 0;
    bool FontBold = false;
    bool FontItalic = false;
    bool FontStrikeThru = false;
    bool FontUnderline = false;
    qint32 Text = 0;
    qint32 Back = 0;
    qint16 Top = 0;    // rule above: 0 none, 1 thin, 2 medium, 3 thick
    qint16 Bottom = 0; // rule below, same codes
    qint32 Color = 0;
    qint32 Before = 0; // space before the row
    qint32 After = 0;  // space after the row

    bool operator==(const ReportStyle&) const = default;
};

inline constexpr int kStyleCount = 11;

// Indices into the style table; files and the settings file address styles by index.
enum StyleIndex
{
    StyleReportTitle = 0,
    StyleHeading1Top = 1,
    StyleHeading2Top = 2,
    StyleHeading3Top = 3,
    StyleDetailTitle = 4,
    StyleDetailBody = 5,
    StyleHeading3Bottom = 6,
    StyleHeading2Bottom = 7,
    StyleHeading1Bottom = 8,
    StyleHeaders = 9,
    StyleFooters = 10,
};

// The row-kind value of a style that the grid does not match to rows by level.
inline constexpr qint16 kUnmatchedLevel = -666;

using StyleTable = std::array<ReportStyle, kStyleCount>;

// A style table with the fixed names and row kinds and everything else zero.
StyleTable namedStyleTable();

} // namespace tabulor
