#include "PdfCheck.h"
#include "ProgramRun.h"
#include "TestSupport.h"

#include "printing/PrinterOutput.h"
#include "production/pages/PageDocument.h"

#include <QDeadlineTimer>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QThread>

#include <gtest/gtest.h>

#include <optional>

using namespace tabulor;
using namespace tabulor::test;

namespace {

// The print server of this test run: the CTest fixture cups_server leaves its address in
// TABULOR_CUPS_STATE. A test program run on its own starts one of its own with the same
// script and stops it when it ends.
struct PrintServer
{
    QString problem; // why there is no server; empty when there is one
    QString address; // 127.0.0.1:PORT
    QString out;     // where the queue TabulorPDF leaves its PDFs
};
PrintServer g_server;

QString runScript(const QStringList& arguments)
{
    QProcess script;
    script.setProcessChannelMode(QProcess::MergedChannels);
    script.start(QStringLiteral("bash"),
                 QStringList{QStringLiteral(TABULOR_CUPS_SCRIPT)} + arguments);
    const bool finished = script.waitForFinished(60000);
    const QString output = QString::fromUtf8(script.readAll());
    if (finished && script.exitStatus() == QProcess::NormalExit && script.exitCode() == 0)
        return {};
    return output.isEmpty() ? script.errorString() : output;
}

class PrintServerEnvironment : public ::testing::Environment
{
public:
    void SetUp() override
    {
        QString state = QStringLiteral(TABULOR_CUPS_STATE);
        if (!QFile::exists(state + QStringLiteral("/address"))) {
            m_ownServer.emplace();
            state = m_ownServer->filePath(QStringLiteral("state"));
            const QString problem = runScript({QStringLiteral("start"), state});
            if (!problem.isNull()) {
                g_server.problem =
                    QStringLiteral("The test print server did not start: ") + problem;
                ADD_FAILURE() << g_server.problem.toStdString();
                m_ownServer.reset();
                return;
            }
        }
        const auto line = [&](const char* name) {
            return QString::fromUtf8(readBytes(state + u'/' + QLatin1String(name))).trimmed();
        };
        g_server.address = line("address");
        g_server.out = line("out");
        // The tool and lpstat, started from here, print there.
        qputenv("CUPS_SERVER", g_server.address.toUtf8());
    }

    void TearDown() override
    {
        if (m_ownServer)
            runScript({QStringLiteral("stop"), m_ownServer->filePath(QStringLiteral("state"))});
    }

private:
    std::optional<QTemporaryDir> m_ownServer;
};

const auto* const g_environment = ::testing::AddGlobalTestEnvironment(new PrintServerEnvironment);

#define REQUIRE_PRINT_SERVER() ASSERT_EQ(g_server.problem, QString())

// A sample definition under a name of the test's own: the queue names its PDFs after the
// document, so that each test finds its own job.
QString sampleAs(const QTemporaryDir& dir, const QString& sample, const QString& name)
{
    const QString copy = dir.filePath(name + QStringLiteral(".vrd"));
    EXPECT_TRUE(QFile::copy(samplePath(sample), copy));
    return copy;
}

ProgramRun runTool(QStringList arguments)
{
    arguments << QStringLiteral("--database") << samplePath(QStringLiteral("sample.sqlite"));
    return runProgram(toolPath(), arguments);
}

// Waits until the server has no job left to do.
void waitUntilIdle()
{
    const QDeadlineTimer deadline(60000);
    while (!runProgram(QStringLiteral("lpstat"), {QStringLiteral("-o")}).out.trimmed().isEmpty()) {
        ASSERT_FALSE(deadline.hasExpired()) << "the print server is still busy after a minute";
        QThread::msleep(200);
    }
}

// The PDF that the queue made of the job for a document named name.*; empty when there is none
// once the server is idle.
QString printedPdf(const QString& name)
{
    waitUntilIdle();
    const QStringList made =
        QDir(g_server.out).entryList({name + QStringLiteral("*.pdf")}, QDir::Files);
    if (made.size() == 1)
        return QDir(g_server.out).filePath(made.first());
    ADD_FAILURE() << made.size() << " PDFs named " << name.toStdString() << "* in "
                  << g_server.out.toStdString();
    return {};
}

QSizeF inPoints(const QSizeF& twips)
{
    return QSizeF(qRound(twips.width() / 20), qRound(twips.height() / 20));
}

} // namespace

TEST(Printing, PrintsTheReportOnTheNamedPrinterWithItsPaper)
{
    REQUIRE_PRINT_SERVER();
    QTemporaryDir dir;
    const ProgramRun run = runTool(
        {QStringLiteral("print"),
         sampleAs(dir, QStringLiteral("sales_by_region.vrd"), QStringLiteral("named_printer")),
         QStringLiteral("-P"), QStringLiteral("TabulorPDF")});
    ASSERT_EQ(run.status, 0) << run.err.toStdString();

    const QString pdf = printedPdf(QStringLiteral("named_printer"));
    ASSERT_FALSE(pdf.isEmpty());
    const int pages = pdfPageCount(pdf);
    ASSERT_GT(pages, 1);
    EXPECT_EQ(run.out.trimmed(),
              QStringLiteral("named_printer.vrd: %1 page(s) sent to TabulorPDF").arg(pages));
    const QString first = pdfText(pdf, 1);
    EXPECT_TRUE(first.contains(QStringLiteral("Sales by Region, "))) << first.toStdString();
    EXPECT_TRUE(first.contains(QStringLiteral("Page 1 of %1").arg(pages)));
    EXPECT_TRUE(pdfText(pdf, pages).contains(QStringLiteral("Page %1 of %1").arg(pages)));
    // The tool lays the report out on the paper of the locale, as this test does.
    EXPECT_EQ(pdfPageSize(pdf), inPoints(PageSetup::localePaper()));
}

TEST(Printing, TheDefaultPrinterTakesTheJobWhenNoneIsNamed)
{
    REQUIRE_PRINT_SERVER();
    QTemporaryDir dir;
    const ProgramRun run =
        runTool({QStringLiteral("print"), sampleAs(dir, QStringLiteral("sales_by_region.vrd"),
                                                   QStringLiteral("default_printer"))});
    ASSERT_EQ(run.status, 0) << run.err.toStdString();
    EXPECT_TRUE(run.out.contains(QStringLiteral("sent to TabulorPDF")));
    EXPECT_FALSE(printedPdf(QStringLiteral("default_printer")).isEmpty());
}

// A landscape page goes to the printer as its paper upright with the page turned on it, as a
// printer prints it; the file written beside it keeps the landscape page.
TEST(Printing, RenderSendsALandscapeReportTurnedOnItsPaper)
{
    REQUIRE_PRINT_SERVER();
    QTemporaryDir dir;
    const QString written = dir.filePath(QStringLiteral("written.pdf"));
    const ProgramRun run = runTool(
        {QStringLiteral("render"),
         sampleAs(dir, QStringLiteral("order_lines.vrd"), QStringLiteral("landscape")),
         QStringLiteral("--printer"), QStringLiteral("TabulorPDF"), QStringLiteral("-o"), written});
    ASSERT_EQ(run.status, 0) << run.err.toStdString();
    const QString printed = printedPdf(QStringLiteral("landscape"));
    ASSERT_FALSE(printed.isEmpty());

    EXPECT_EQ(pdfPageCount(printed), pdfPageCount(written));
    const QSizeF page = pdfPageSize(written);
    EXPECT_GT(page.width(), page.height());
    EXPECT_EQ(pdfPageSize(printed), page.transposed());
    const QRectF across = pdfWordBox(written, 1, QStringLiteral("Page"));
    const QRectF turned = pdfWordBox(printed, 1, QStringLiteral("Page"));
    ASSERT_FALSE(across.isEmpty());
    ASSERT_FALSE(turned.isEmpty());
    EXPECT_GT(across.width(), across.height());
    EXPECT_GT(turned.height(), turned.width());
}

TEST(Printing, FailuresAreToldAndNothingIsPrinted)
{
    REQUIRE_PRINT_SERVER();
    QTemporaryDir dir;
    const QString definition =
        sampleAs(dir, QStringLiteral("sales_by_region.vrd"), QStringLiteral("refused"));

    ProgramRun run = runTool(
        {QStringLiteral("print"), definition, QStringLiteral("-P"), QStringLiteral("Nowhere")});
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.err.trimmed(),
              QStringLiteral("tabulor: cannot print: there is no printer 'Nowhere' on the print "
                             "server at %1; it has: TabulorPDF, TabulorRejects")
                  .arg(g_server.address));

    run = runTool({QStringLiteral("print"), definition, QStringLiteral("-P"),
                   QStringLiteral("TabulorRejects")});
    EXPECT_EQ(run.status, 1);
    EXPECT_TRUE(run.err.contains(QStringLiteral("printer 'TabulorRejects' did not take the job")))
        << run.err.toStdString();

    QProcessEnvironment noServer = QProcessEnvironment::systemEnvironment();
    noServer.insert(QStringLiteral("CUPS_SERVER"), dir.filePath(QStringLiteral("cups.sock")));
    run = runProgram(toolPath(),
                     {QStringLiteral("print"), definition, QStringLiteral("--database"),
                      samplePath(QStringLiteral("sample.sqlite"))},
                     noServer);
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.err.trimmed(),
              QStringLiteral("tabulor: cannot print: no print server answers at %1; start CUPS, "
                             "or set CUPS_SERVER to a server that runs")
                  .arg(dir.filePath(QStringLiteral("cups.sock"))));

    const QString broken = dir.filePath(QStringLiteral("refused_broken.vrd"));
    writeBytes(broken, "not a report definition\n");
    run = runTool({QStringLiteral("print"), broken});
    EXPECT_EQ(run.status, 1);
    EXPECT_TRUE(run.err.contains(QStringLiteral("Invalid Data File, please try another.")));

    EXPECT_EQ(runProgram(toolPath(), {QStringLiteral("print")}).status, 2);
    EXPECT_EQ(runProgram(toolPath(), {QStringLiteral("render"), definition}).status, 2);

    const PageDocument empty;
    QString error;
    EXPECT_FALSE(PrintDoc(empty, QString(), &error));
    EXPECT_EQ(error, QStringLiteral("the document has no pages to print"));

    // Once the server is idle, no job of this test has come out.
    waitUntilIdle();
    EXPECT_EQ(QDir(g_server.out).entryList({QStringLiteral("refused*")}, QDir::Files),
              QStringList());
}
