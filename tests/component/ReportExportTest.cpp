#include "component/ReportExport.h"
#include "component/ReportSession.h"
#include "production/pages/PageDocument.h"
#include "production/pages/PngOutput.h"
#include "production/pdf/PdfFileOutput.h"

#include "ScriptedPrompt.h"
#include "TestSupport.h"

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace tabulor;
using namespace tabulor::test;

namespace {

class ReportExportTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(dir.isValid());
        session.setSettingsPath(dir.filePath(QStringLiteral("settings.ini")));
        session.loadDesigner();
        ASSERT_TRUE(session.OpenReportFile(samplePath(QStringLiteral("sales_by_region.vrd"))));
        document.OverlayHeadersAndFooters = true;
    }

    bool exportTo(std::initializer_list<ReportOutput*> outputs)
    {
        return exportReport(session, document, std::span(outputs.begin(), outputs.end()), &error);
    }

    QTemporaryDir dir;
    ScriptedPrompt prompt;
    ReportSession session{&prompt};
    PageDocument document;
    QString error;
};

TEST_F(ReportExportTest, ALoneOutputTakesThePagesAsTheyAreLaidOut)
{
    const QString pdf = dir.filePath(QStringLiteral("report.pdf"));
    PdfFileOutput output(pdf, QStringLiteral("sales"));
    ASSERT_TRUE(exportTo({&output})) << error.toStdString();
    EXPECT_GT(document.PageCount(), 1);
    EXPECT_TRUE(document.pages().empty()) << "a streamed report is not kept";
    EXPECT_TRUE(readBytes(pdf).startsWith("%PDF-"));
}

TEST_F(ReportExportTest, SeveralOutputsEachGetTheCompleteDocument)
{
    const QString pdf = dir.filePath(QStringLiteral("report.pdf"));
    const QString png = dir.filePath(QStringLiteral("page-%d.png"));
    PdfFileOutput toPdf(pdf, QStringLiteral("sales"));
    PngOutput toPng(png, 30, 1, 2);
    ASSERT_TRUE(exportTo({&toPdf, &toPng})) << error.toStdString();
    EXPECT_EQ(int(document.pages().size()), document.PageCount());
    EXPECT_TRUE(readBytes(pdf).startsWith("%PDF-"));
    EXPECT_TRUE(QFile::exists(dir.filePath(QStringLiteral("page-1.png"))));
    EXPECT_TRUE(QFile::exists(dir.filePath(QStringLiteral("page-2.png"))));
    EXPECT_FALSE(QFile::exists(dir.filePath(QStringLiteral("page-3.png"))));
}

TEST_F(ReportExportTest, AnOutputThatFailsLeavesNothingHalfWritten)
{
    // The images cannot be written; the PDF before them is complete, the one after them is
    // given up and the file it would have replaced stays as it was.
    const QString first = dir.filePath(QStringLiteral("first.pdf"));
    const QString last = dir.filePath(QStringLiteral("last.pdf"));
    writeBytes(last, "an earlier report");
    PdfFileOutput toFirst(first, QStringLiteral("sales"));
    PngOutput toPng(dir.filePath(QStringLiteral("missing/page-%d.png")), 30, 1, 1);
    PdfFileOutput toLast(last, QStringLiteral("sales"));
    EXPECT_FALSE(exportTo({&toFirst, &toPng, &toLast}));
    EXPECT_TRUE(error.contains(QStringLiteral("cannot write '%1'")
                                   .arg(dir.filePath(QStringLiteral("missing/page-1.png")))))
        << error.toStdString();
    EXPECT_TRUE(readBytes(first).startsWith("%PDF-"));
    EXPECT_EQ(readBytes(last), "an earlier report");
    EXPECT_EQ(QDir(dir.path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden),
              (QStringList{"first.pdf", "last.pdf"}));
}

TEST_F(ReportExportTest, AnOutputThatCannotStartStopsTheReportBeforeItIsLaidOut)
{
    PdfFileOutput output(dir.filePath(QStringLiteral("missing/report.pdf")), QString());
    EXPECT_FALSE(exportTo({&output}));
    EXPECT_TRUE(error.startsWith(QStringLiteral("cannot write"))) << error.toStdString();
    EXPECT_EQ(document.PageCount(), 0);
}

} // namespace
