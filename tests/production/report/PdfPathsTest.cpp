#include "production/grid/Aggregate.h"
#include "production/grid/ReportGridBuilder.h"
#include "production/pages/PainterPdfOutput.h"
#include "production/pdf/PdfFileOutput.h"
#include "production/report/ReportData.h"
#include "production/report/ReportRenderer.h"

#include "TestSupport.h"

#include <QLocale>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace tabulor;
using namespace tabulor::test;

namespace {

QString run(const QString& program, const QStringList& arguments)
{
    QProcess process;
    process.start(program, arguments);
    EXPECT_TRUE(process.waitForFinished(60000)) << program.toStdString() << " is needed";
    EXPECT_EQ(process.exitCode(), 0)
        << program.toStdString() << ": " << process.readAllStandardError().toStdString();
    return QString::fromUtf8(process.readAllStandardOutput());
}

// The sample's order lines grouped by category and product, with Greek, Cyrillic and Japanese
// customer names among them.
struct SampleReport
{
    ReportData data;
    ReportDefinition definition;

    SampleReport()
    {
        data.setUnlimitedRows(true);
        data.OpenDataSource(samplePath(QStringLiteral("sample.sqlite")),
                            QStringLiteral("Order Details Extended"));
        ApplyBuiltInStyles(definition, {QStringLiteral("Order lines"),
                                        QStringLiteral("<db>|<rs>|Page <p> of <n>"),
                                        QStringLiteral("left||right")});
        definition.global.SubtotalPosition = 2;
        for (int c = 0; c < data.grid().columnCount(); ++c) {
            const QString name = data.grid().column(c).title;
            definition.fields.append(ReportField{name, name, 1, 9, {}, 0, 0});
        }
        definition.fields[FindField(definition.fields, QStringLiteral("ExtendedPrice"))].Aggregate =
            AggregateSum;
        definition.groups = {QStringLiteral("Category"), QStringLiteral("Product")};
        definition.details = {QStringLiteral("OrderID"), QStringLiteral("Customer"),
                              QStringLiteral("Quantity"), QStringLiteral("ExtendedPrice")};
        buildReportGrid(data.grid(), definition, QCollator(QLocale(QLocale::English)));
    }

    void render(PageDocument& document) const
    {
        TokenContext context;
        context.databaseName = QStringLiteral("sample.sqlite");
        context.recordSource = QStringLiteral("Order Details Extended");
        context.locale = FormatLocale::fromQLocale(QLocale(QLocale::English));
        ReportRenderer renderer(definition, data.grid(), context);
        document.OverlayHeadersAndFooters = true;
        renderer.RenderReport(document);
    }
};

} // namespace

TEST(PdfPaths, TheDirectWriterAndThePainterGiveTheSameTextAndPages)
{
    const SampleReport report;
    QTemporaryDir dir;

    // Pages kept in memory, drawn through the painter.
    PageDocument kept;
    report.render(kept);
    ASSERT_GT(kept.PageCount(), 10);
    const QString painted = dir.filePath(QStringLiteral("painted.pdf"));
    QString error;
    PainterPdfOutput painter(painted, QStringLiteral("order lines"));
    ASSERT_TRUE(painter.start(&error) && painter.finish(kept, &error)) << error.toStdString();

    // The same report streamed into the direct writer while it is laid out, each page written
    // on a thread of its own, the overlays with the page count last.
    const QString direct = dir.filePath(QStringLiteral("direct.pdf"));
    PdfFileOutput output(direct, QStringLiteral("order lines"));
    ASSERT_TRUE(output.start(&error)) << error.toStdString();
    PageDocument streamed;
    streamed.setSink(output.streamingSink());
    report.render(streamed);
    ASSERT_TRUE(output.finish(streamed, &error)) << error.toStdString();
    EXPECT_TRUE(streamed.pages().empty()); // nothing was kept

    EXPECT_EQ(streamed.PageCount(), kept.PageCount());
    const QString text =
        run(QStringLiteral("pdftotext"), {QStringLiteral("-layout"), direct, QStringLiteral("-")});
    // The painter's PDF maps some glyphs back to compatibility characters (a ligature for "fi",
    // radicals for some CJK ideographs); compared in their compatibility form the texts agree.
    const QString paintedText =
        run(QStringLiteral("pdftotext"), {QStringLiteral("-layout"), painted, QStringLiteral("-")});
    // The two writers' glyph widths differ by a little, which moves columns of the text
    // layout by a blank here and there.
    const auto comparable = [](const QString& layout) {
        return layout.normalized(QString::NormalizationForm_KC).simplified();
    };
    EXPECT_EQ(comparable(text), comparable(paintedText));
    // The direct writer keeps the text as it was: the ideographs of a Japanese customer.
    EXPECT_TRUE(text.contains(QString(QChar(0x5C71)) + QChar(0x7530)));
    EXPECT_TRUE(text.contains(QStringLiteral("Page %1 of %1").arg(kept.PageCount())));
    EXPECT_TRUE(text.contains(QRegularExpression(QStringLiteral("[\\x{0370}-\\x{04FF}]"))))
        << "Greek or Cyrillic customer names";
    run(QStringLiteral("qpdf"), {QStringLiteral("--check"), direct});
}
