// The example C host, run as a user runs it.
#include "PdfCheck.h"
#include "ProgramRun.h"
#include "TestSupport.h"

#include <QRegularExpression>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace tabulor::test;

TEST(ExampleHost, RendersTheSampleFromTheDatabaseAndFromItsOwnRows)
{
    QTemporaryDir dir;
    const ProgramRun run =
        runProgram(QStringLiteral(TABULOR_HOST),
                   {samplePath(QStringLiteral("sales_by_region.vrd")), dir.path()});
    ASSERT_EQ(run.status, 0) << run.err.toStdString();

    // "FOLDER/from-database.pdf: 9 page(s)", one line for each PDF.
    for (const QString& name :
         {QStringLiteral("from-database.pdf"), QStringLiteral("from-host.pdf")}) {
        const QString pdf = dir.filePath(name);
        const QRegularExpressionMatch told =
            QRegularExpression(QRegularExpression::escape(pdf) + QStringLiteral(": (\\d+) page"))
                .match(run.out);
        ASSERT_TRUE(told.hasMatch()) << run.out.toStdString();
        const int pages = told.captured(1).toInt();
        EXPECT_EQ(pdfPageCount(pdf), pages) << name.toStdString();
        const QString first = pdfText(pdf, 1);
        EXPECT_TRUE(first.contains(QStringLiteral("Sales by Region, "))) << name.toStdString();
        EXPECT_TRUE(first.contains(QStringLiteral("Page 1 of %1").arg(pages)))
            << name.toStdString();
    }
    // The host's rows are its own: they are not in the database.
    EXPECT_TRUE(pdfText(dir.filePath(QStringLiteral("from-host.pdf")))
                    .contains(QStringLiteral("Harbour Lights Chandlery")));
    EXPECT_FALSE(pdfText(dir.filePath(QStringLiteral("from-database.pdf")))
                     .contains(QStringLiteral("Harbour Lights Chandlery")));
}

TEST(ExampleHost, SaysWhyADefinitionCannotBeUsed)
{
    QTemporaryDir dir;
    const QString missing = dir.filePath(QStringLiteral("missing.vrd"));
    const ProgramRun run = runProgram(QStringLiteral(TABULOR_HOST), {missing, dir.path()});
    EXPECT_EQ(run.status, 1);
    // A sanitizer run adds its report after the message.
    EXPECT_TRUE(run.err.startsWith(
        QStringLiteral("tabulor_host: Invalid Data File, please try another.\n'%1'\n")
            .arg(missing)))
        << run.err.toStdString();
    EXPECT_TRUE(QDir(dir.path()).entryList(QDir::Files).isEmpty());
}
