// The layout window on a real X server, as a user works with it: the designer opens with the
// layout window beside it, the sample database is opened, a record source is chosen in the
// layout window and a grouped report is made by dropping its fields into the groups and
// details. A screenshot of the windows is kept; then the preview must show the report.
//
// Usage: layout_screenshot DISPLAY_FILE SAMPLE_DATABASE LAYOUT.png PREVIEW.png
// DISPLAY_FILE holds the display the test's X server runs on.

#include "commands/DesignerCommands.h"
#include "component/ReportSession.h"
#include "component/Tabulor.h"
#include "gui/layoutwindow/LayoutWindow.h"
#include "gui/main/DesignerWindow.h"
#include "gui/main/MainWindow.h"

#include "FieldDrops.h"
#include "PreviewScreenshot.h"

#include <QApplication>
#include <QComboBox>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include <cstdio>

using namespace tabulor;

namespace {

int fail(const QString& why)
{
    std::fprintf(stderr, "layout_screenshot: %s\n", qPrintable(why));
    return 1;
}

// Drops each field, found by name among the available fields, below the last item of a list.
void dropAtEnd(LayoutWindow& window, const QStringList& names, LayoutList to)
{
    QListView& fields = *window.listView(LayoutList::Fields);
    QListView& target = *window.listView(to);
    for (const QString& name : names) {
        const QModelIndexList found = fields.model()->match(
            fields.model()->index(0, 0), Qt::DisplayRole, name, 1, Qt::MatchExactly);
        if (!found.isEmpty())
            test::dropField(fields, found.first().row(), target, test::belowItems(target));
    }
}

} // namespace

int main(int argc, char* argv[])
{
    if (argc != 5)
        return fail(QStringLiteral("usage: layout_screenshot DISPLAY_FILE DATABASE LAYOUT.png "
                                   "PREVIEW.png"));
    if (!test::useTestDisplay(QString::fromLocal8Bit(argv[1])))
        return fail(QStringLiteral("no display file %1").arg(QString::fromLocal8Bit(argv[1])));
    QApplication app(argc, argv);
    const QString database = QString::fromLocal8Bit(argv[2]);
    const QString layoutShot = QString::fromLocal8Bit(argv[3]);
    const QString previewShot = QString::fromLocal8Bit(argv[4]);

    QTemporaryDir settings;
    Tabulor component;
    ReportSession& session = component.session();
    session.setSettingsPath(settings.filePath(QStringLiteral("settings.ini")));
    component.setAccessMode(zrUseModifyCreate);
    auto* designer = dynamic_cast<DesignerWindow*>(component.Form());
    if (!designer)
        return fail(QStringLiteral("this build has no designer windows"));
    MainWindow& window = designer->window();
    window.move(0, 0);
    designer->show(true);
    LayoutWindow& layout = designer->layoutWindow();
    if (!QTest::qWaitForWindowExposed(&window, 30000) ||
        !QTest::qWaitForWindowExposed(&layout, 30000))
        return fail(QStringLiteral("the windows never appeared on the display"));

    session.OpenDataSource(database, QString());
    designer->commands().UpdateStatus(QString());
    auto* sources = layout.findChild<QComboBox*>(QStringLiteral("cmbRecordSet"));
    const int salesByRegion = sources->findText(QStringLiteral("Sales by Region"));
    if (!sources->isVisible() || salesByRegion < 0)
        return fail(QStringLiteral("the layout window does not offer the sample's record sources"));
    while (sources->currentIndex() < salesByRegion)
        QTest::keyClick(sources, Qt::Key_Down);

    dropAtEnd(layout, {QStringLiteral("Region"), QStringLiteral("Country")}, LayoutList::Groups);
    dropAtEnd(layout,
              {QStringLiteral("Customer"), QStringLiteral("OrderID"), QStringLiteral("OrderDate"),
               QStringLiteral("Sales")},
              LayoutList::Details);
    const ReportDefinition& report = session.definition();
    if (report.groups != QStringList{QStringLiteral("Region"), QStringLiteral("Country")} ||
        report.details.size() != 4)
        return fail(QStringLiteral("the drops made groups %1 and details %2")
                        .arg(report.groups.join(u','), report.details.join(u',')));
    QTest::qWait(1000);
    QProcess::execute(QStringLiteral("import"),
                      {QStringLiteral("-window"), QStringLiteral("root"), layoutShot});

    const QString why = test::previewShowsTheReport(window, previewShot);
    if (!why.isEmpty())
        return fail(why);
    session.definition().Dirty = false;
    window.close();
    return 0;
}
