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
#include "gui/preview/PreviewView.h"

#include <QApplication>
#include <QFile>
#include <QImage>
#include <QProcess>
#include <QTabBar>
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

// Takes a screenshot of the whole display and checks the part of the page that is on the
// screen: mostly white, with the report's text in dark pixels. Returns what is wrong, or
// nothing.
QString checkScreenshot(PreviewView& preview, const QString& screenshot)
{
    if (QProcess::execute(QStringLiteral("import"),
                          {QStringLiteral("-window"), QStringLiteral("root"), screenshot}) != 0)
        return QStringLiteral("ImageMagick's import could not take the screenshot");
    const QImage shot(screenshot);
    if (shot.isNull())
        return QStringLiteral("the screenshot %1 cannot be read").arg(screenshot);

    QWidget* viewport = preview.viewport();
    const QRect shown(viewport->mapToGlobal(QPoint(0, 0)), viewport->size());
    const QRect page =
        QRect(viewport->mapToGlobal(preview.pageRect().topLeft()), preview.pageRect().size())
            .intersected(shown)
            .intersected(shot.rect());
    if (page.width() < 100 || page.height() < 100)
        return QStringLiteral("the page shown is too small: %1x%2")
            .arg(page.width())
            .arg(page.height());
    qint64 white = 0;
    qint64 dark = 0;
    for (int y = page.top(); y <= page.bottom(); ++y) {
        for (int x = page.left(); x <= page.right(); ++x) {
            const int grey = qGray(shot.pixel(x, y));
            white += grey > 245;
            dark += grey < 100;
        }
    }
    const qint64 area = qint64(page.width()) * page.height();
    std::printf("page %dx%d at %d,%d: %.1f%% white, %.2f%% dark; screenshot %s\n", page.width(),
                page.height(), page.x(), page.y(), 100.0 * white / area, 100.0 * dark / area,
                qPrintable(screenshot));
    if (white < area / 2)
        return QStringLiteral("the page is not white: no page is shown");
    if (dark < area / 500)
        return QStringLiteral("the page is blank: the report's text is not on it");
    return {};
}

} // namespace

int main(int argc, char* argv[])
{
    if (argc != 4)
        return fail(QStringLiteral("usage: designer_screenshot DISPLAY_FILE DEFINITION OUT.png"));
    QFile displayFile(QString::fromLocal8Bit(argv[1]));
    if (!displayFile.open(QIODevice::ReadOnly))
        return fail(QStringLiteral("no display file %1").arg(displayFile.fileName()));
    qputenv("DISPLAY", displayFile.readAll().trimmed());
    qputenv("QT_QPA_PLATFORM", "xcb");
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

    auto* tabs = window.findChild<QTabBar*>(QStringLiteral("zrtab"));
    QTest::mouseClick(tabs, Qt::LeftButton, {}, tabs->tabRect(1).center());
    auto* preview = window.findChild<PreviewView*>(QStringLiteral("vp"));
    if (!preview || !preview->isVisible())
        return fail(QStringLiteral("the click on the Preview tab did not show the preview"));
    // On a loaded machine (or under the sanitizers) the first paint may come late: look again
    // until the page shows, for at most half a minute.
    QString why;
    for (int attempt = 0; attempt < 30; ++attempt) {
        QTest::qWait(attempt == 0 ? 500 : 1000);
        why = checkScreenshot(*preview, screenshot);
        if (why.isEmpty())
            break;
        std::fprintf(stderr, "designer_screenshot: not yet (%s)\n", qPrintable(why));
    }
    if (!why.isEmpty())
        return fail(why);
    component.session().definition().Dirty = false;
    window.close();
    return 0;
}
