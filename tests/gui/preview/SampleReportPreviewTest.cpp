#include "component/ReportSession.h"
#include "gui/preview/PreviewControl.h"
#include "gui/preview/PreviewView.h"
#include "localisation/CaptionKeys.h"
#include "production/pages/PreviewNavigation.h"

#include "KnownPages.h"
#include "ScriptedPrompt.h"
#include "TestSupport.h"

#include <QLabel>
#include <QLineEdit>
#include <QScrollBar>
#include <QTest>
#include <QToolButton>
#include <QVBoxLayout>

#include <gtest/gtest.h>

using namespace tabulor;
using namespace tabulor::test;

namespace {

// The bar above the view, as the designer's main window has them, on the sample report.
TEST(SampleReportPreview, TheBarAndTheViewPageThroughARenderedReport)
{
    QTemporaryDir dir;
    ScriptedPrompt prompt;
    ReportSession session(&prompt);
    session.setSettingsPath(dir.filePath(QStringLiteral("settings.ini")));
    session.loadDesigner();
    ASSERT_TRUE(session.OpenReportFile(samplePath(QStringLiteral("sales_by_region.vrd"))));
    PageDocument document;
    document.OverlayHeadersAndFooters = true;
    PreviewNavigation navigation(document);

    QWidget window;
    auto* layout = new QVBoxLayout(&window);
    auto* bar = new PreviewControl(&window);
    auto* view = new PreviewView(document, navigation, &window);
    layout->addWidget(bar);
    layout->addWidget(view);
    bar->setPrinterControl(&navigation, view);
    for (const CaptionKey& key : captionKeys()) {
        if (key.control == "pcb")
            bar->setProperty(
                QByteArray(key.property.data(), qsizetype(key.property.size())).constData(),
                QString::fromUtf8(key.builtIn.data(), qsizetype(key.builtIn.size())));
    }
    EXPECT_EQ(bar->findChild<QLabel*>(QStringLiteral("lblPage"))->text(), QStringLiteral("Page"))
        << "captions are set by property, as the string table sets them";
    window.resize(900, 700);
    window.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&window));

    session.RenderReport(document);
    view->documentRendered();
    const int pages = navigation.pageCount();
    ASSERT_GT(pages, 1);
    auto* page = bar->findChild<QLineEdit*>(QStringLiteral("txtPage"));
    EXPECT_EQ(page->text(), QStringLiteral("1"));
    EXPECT_TRUE(bar->findChild<QToolButton*>(QStringLiteral("cmdPage3"))->isEnabled());

    // What the user does in the view shows in the bar.
    QTest::keyClick(view, Qt::Key_End);
    EXPECT_EQ(page->text(), QString::number(pages));
    EXPECT_FALSE(bar->findChild<QToolButton*>(QStringLiteral("cmdPage3"))->isEnabled());
    QTest::keyClick(view, Qt::Key_Equal, Qt::ControlModifier);
    EXPECT_EQ(bar->findChild<QScrollBar*>(QStringLiteral("scrlZoom"))->value(), 110);

    QTest::keyClick(view, Qt::Key_Home);
    EXPECT_GT(inkedPixels(view->viewport()->grab().toImage(),
                          view->pageRect().intersected(view->viewport()->rect())),
              1000)
        << "the report's first page";
}

} // namespace
