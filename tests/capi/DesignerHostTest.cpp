// A host linked with the designer's library, through the C interface: tabulor_do_report opens
// the designer when asked to show it, returns when the user closes it, and leaves the report
// as last designed in the host's document.
#include <tabulor/tabulor.h>

#include "TestSupport.h"

#include <QApplication>
#include <QFile>
#include <QTemporaryDir>
#include <QTimer>
#include <QWidget>

#include <gtest/gtest.h>

using namespace tabulor::test;

TEST(DesignerHost, DoReportShowsTheDesignerUntilTheUserClosesIt)
{
    QTemporaryDir dir;
    qputenv("TABULOR_SETTINGS", QFile::encodeName(dir.filePath(QStringLiteral("settings.ini"))));
    tabulor_component* component = nullptr;
    tabulor_document* document = nullptr;
    ASSERT_EQ(tabulor_component_create(&component), TABULOR_OK) << tabulor_last_error(nullptr);
    ASSERT_EQ(tabulor_document_create(&document), TABULOR_OK);
    ASSERT_TRUE(qobject_cast<QApplication*>(QCoreApplication::instance()))
        << "the library made an application that can show windows";

    // The user waits until the designer shows the report, then closes it.
    const QByteArray sample = samplePath(QStringLiteral("sales_by_region.vrd")).toUtf8();
    QString shownCaption;
    QTimer user;
    QObject::connect(&user, &QTimer::timeout, [&] {
        for (QWidget* window : QApplication::topLevelWidgets()) {
            if (window->objectName() == u"frmMain" && window->isVisible() &&
                window->windowTitle().endsWith(QString::fromUtf8(sample))) {
                shownCaption = window->windowTitle();
                window->close();
            }
        }
    });
    user.start(100);
    // A designer that never shows the report is closed all the same, so the test ends.
    QTimer giveUp;
    giveUp.setSingleShot(true);
    QObject::connect(&giveUp, &QTimer::timeout, [] {
        for (QWidget* window : QApplication::topLevelWidgets())
            window->close();
    });
    giveUp.start(30000);
    EXPECT_EQ(tabulor_do_report(component, sample.constData(), document, nullptr), TABULOR_OK)
        << tabulor_last_error(component);
    user.stop();
    giveUp.stop();
    EXPECT_FALSE(shownCaption.isEmpty()) << "the designer never showed the report";
    int32_t pages = 0;
    EXPECT_EQ(tabulor_document_page_count(document, &pages), TABULOR_OK);
    EXPECT_GT(pages, 1);

    // Hidden, it renders at once, as libtabulor alone does.
    ASSERT_EQ(tabulor_set_show_tabulor(component, 0), TABULOR_OK);
    EXPECT_EQ(tabulor_do_report(component, sample.constData(), document, nullptr), TABULOR_OK);
    tabulor_document_destroy(document);
    tabulor_component_destroy(component);
}
