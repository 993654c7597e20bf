#pragma once

#include <QString>
#include <QtGlobal>

namespace tabulor {

// The report's settings for one field of the record source.
struct ReportField
{
    QString ID;           // the field's name in the record source
    QString Title;        // column title
    qint16 Sort = 0;      // 0 none, 1 ascending, 2 descending
    qint16 Align = 0;     // 9 the type's default, 0 left, 3 centre, 6 right
    QString Format;       // display format
    qint16 Aggregate = 0; // 0 none, 1 Sum, 2 Percent, 3 Count, 4 Average, 5 Max, 6 Min, 7 Std. Dev.
    float Width = 0;      // column width in twips; 0 fits the content

    bool operator==(const ReportField&) const = default;
};

} // namespace tabulor
