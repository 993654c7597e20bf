#pragma once

#include "component/ReportSession.h"
#include "gui/models/GridModel.h"
#include "production/grid/ReportGridBuilder.h"

#include "ScriptedPrompt.h"
#include "TestSupport.h"

#include <QAbstractItemModel>
#include <QTemporaryDir>

namespace tabulor::test {

// A session of its own for the sample report: sales by region, grouped by region and country,
// with a heading above and totals below each group.
struct SampleReport
{
    SampleReport()
    {
        session.setSettingsPath(dir.filePath(QStringLiteral("settings.ini")));
        session.loadDesigner();
    }
    [[nodiscard]] bool open()
    {
        return session.OpenReportFile(samplePath(QStringLiteral("sales_by_region.vrd")));
    }
    // One of the report's fields: Region, Country, Customer, OrderID, OrderDate, Sales.
    ReportField& field(const QString& id)
    {
        QList<ReportField>& fields = session.definition().fields;
        return fields[FindField(fields, id)];
    }

    QTemporaryDir dir;
    ScriptedPrompt prompt;
    ReportSession session{&prompt};
};

// The first row of a GridModel of this kind at this outline level (any level for records), or
// -1.
inline int firstRow(const QAbstractItemModel& model, RowKind kind, int level = 0)
{
    for (int r = 0; r < model.rowCount(); ++r) {
        const QModelIndex index = model.index(r, 0);
        if (index.data(GridModel::RowKindRole).toInt() == int(kind) &&
            (kind == RowKind::Data || index.data(GridModel::OutlineLevelRole) == level))
            return r;
    }
    return -1;
}

} // namespace tabulor::test
