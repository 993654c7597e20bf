// The designer on a real X server, as a user sees it: opens the sample report, switches to
// the preview with a click on its tab, saves a screenshot of the screen and checks that the
// page shows the report: a white page with text on it.
//
// Usage: designer_screenshot DISPLAY_FILE SAMPLE_DEFINITION SCREENSHOT.png
// DISPLAY_FILE holds the display the test's X server runs on.

#include "commands/DesignerCommands.h"
#include "component/ReportSession.h"
#include "component/Tabulor.h"
#include "gui/main/DesignerWindow.h"
#include "gui/main/MainWindow.h"

#include "PreviewScreenshot.h"

#include <QApplication>
#include <QTemporaryDir>
#include <QTest>

#include <cstdio>

using namespace tabulor;

namespace {

int fail(const QString& why)
{
    std::fprintf(stderr, "designer_screenshot: %s\n", qPrintable(why));
    return 1;
}

} // namespace

int main(int argc, char* argv[])
{
    if (argc != 4)
        return fail(QStringLiteral("usage: designer_screenshot DISPLAY_FILE DEFINITION OUT.png"));
    if (!test::useTestDisplay(QString::fromLocal8Bit(argv[1])))
        return fail(QStringLiteral("no display file %1").arg(QString::fromLocal8Bit(argv[1])));
    QApplication app(argc, argv);
    const QString definition = QString::fromLocal8Bit(argv[2]);
    const QString screenshot = QString::fromLocal8Bit(argv[3]);

    QTemporaryDir settings;
    Tabulor component;
    component.session().setSettingsPath(settings.filePath(QStringLiteral("settings.ini")));
    component.setAccessMode(zrUseModifyCreate);
    auto* designer = dynamic_cast<DesignerWindow*>(component.Form());
    if (!designer)
        return fail(QStringLiteral("this build has no designer windows"));
    MainWindow& window = designer->window();
    designer->show(false);
    window.move(0, 0);
    if (!QTest::qWaitForWindowExposed(&window, 30000))
        return fail(QStringLiteral("the window never appeared on the display"));
    if (!component.session().OpenReportFile(definition))
        return fail(QStringLiteral("cannot open %1").arg(definition));
    component.session().definition().CurrentFileName = definition;
    designer->reportLoaded();

    const QString why = test::previewShowsTheReport(window, screenshot);
    if (!why.isEmpty())
        return fail(why);
    component.session().definition().Dirty = false;
    window.close();
    return 0;
}
