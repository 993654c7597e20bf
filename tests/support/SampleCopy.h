#pragma once

#include "TestSupport.h"

#include "component/ReportSession.h"

#include <QString>
#include <QTemporaryDir>

namespace tabulor::test {

// Copies the sample database and its report of sales by region (Region and Country grouping;
// Customer, OrderID, OrderDate and Sales in the details) into dir, for a test that may change
// and save them, and keeps session's settings file in dir too, so that nothing the test does
// reaches the user's own. The report copy's path; empty when dir cannot be used.
inline QString copySampleReport(const QTemporaryDir& dir, ReportSession& session)
{
    if (!dir.isValid())
        return {};
    copyInto(dir, samplePath(QStringLiteral("sample.sqlite")));
    session.setSettingsPath(dir.filePath(QStringLiteral("settings.ini")));
    return copyInto(dir, samplePath(QStringLiteral("sales_by_region.vrd")));
}

} // namespace tabulor::test
