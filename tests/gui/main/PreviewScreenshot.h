#pragma once

#include "gui/main/MainWindow.h"
#include "gui/preview/PreviewView.h"

#include <QByteArray>
#include <QFile>
#include <QImage>
#include <QProcess>
#include <QString>
#include <QTabBar>
#include <QTest>

#include <cstdio>

namespace tabulor::test {

// Points the program at the test's X server, whose display the file names; before the
// application is made. False when there is no such file.
inline bool useTestDisplay(const QString& displayFile)
{
    QFile file(displayFile);
    if (!file.open(QIODevice::ReadOnly))
        return false;
    qputenv("DISPLAY", file.readAll().trimmed());
    qputenv("QT_QPA_PLATFORM", "xcb");
    return true;
}

// Takes a screenshot of the whole display and checks the part of the page that is on the
// screen: mostly white, with the report's text in dark pixels. Returns what is wrong, or
// nothing.
inline QString checkPreviewScreenshot(PreviewView& preview, const QString& screenshot)
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

// Clicks the designer's Preview tab and checks a screenshot of the page it shows. On a loaded
// machine (or under the sanitizers) the first paint may come late: it looks again until the
// page shows, for at most half a minute. Returns what is wrong, or nothing.
inline QString previewShowsTheReport(MainWindow& window, const QString& screenshot)
{
    auto* tabs = window.findChild<QTabBar*>(QStringLiteral("zrtab"));
    QTest::mouseClick(tabs, Qt::LeftButton, {}, tabs->tabRect(1).center());
    auto* preview = window.findChild<PreviewView*>(QStringLiteral("vp"));
    if (!preview || !preview->isVisible())
        return QStringLiteral("the click on the Preview tab did not show the preview");
    QString why;
    for (int attempt = 0; attempt < 30; ++attempt) {
        QTest::qWait(attempt == 0 ? 500 : 1000);
        why = checkPreviewScreenshot(*preview, screenshot);
        if (why.isEmpty())
            break;
        std::fprintf(stderr, "not yet (%s)\n", qPrintable(why));
    }
    return why;
}

} // namespace tabulor::test
