#include "production/report/LayoutLimits.h"
#include "production/grid/ReportGridBuilder.h"
#include "production/pages/PageDocument.h"
#include "production/report/ReportRenderer.h"

#include <QLocale>

#include <gtest/gtest.h>

using namespace tabulor;

namespace {

const QSizeF kA4(11906, 16838);

ReportDefinition builtIn()
{
    ReportDefinition d;
    ApplyBuiltInStyles(d, {QStringLiteral("Title"), QString(), QString()});
    return d;
}

} // namespace

TEST(LayoutLimits, ValuesThatCannotBeLaidOutAreReplacedAndNamed)
{
    ReportDefinition d = builtIn();
    d.global.Top = -100;
    d.global.Left = 8000; // with Right, no room across the page
    d.global.Right = 8000;
    d.global.Columns = QStringLiteral("40");
    d.styles[3].FontSize = 5000;
    d.styles[5].FontSize = 0.5f;
    d.styles[8].Before = -300;
    QStringList warnings;
    const ReportDefinition laidOut =
        layoutableDefinition(d, kA4, [&](const QString& text) { warnings.append(text); });

    EXPECT_EQ(warnings,
              (QStringList{
                  QStringLiteral("[GlobalInfo] Top = -100 cannot be laid out; 0 is used"),
                  QStringLiteral("[GlobalInfo] Left = 8000 cannot be laid out; 5233 is used"),
                  QStringLiteral("[GlobalInfo] Right = 8000 cannot be laid out; 5233 is used"),
                  QStringLiteral("[GlobalInfo] Columns = 40 cannot be laid out; 1 is used"),
                  QStringLiteral("[Style 3] FontSize = 5000 cannot be laid out; 1638 is used"),
                  QStringLiteral("[Style 5] FontSize = 0.5 cannot be laid out; 1 is used"),
                  QStringLiteral("[Style 8] Before = -300 cannot be laid out; 0 is used"),
              }));
    EXPECT_GE(kA4.width() - laidOut.global.Left - laidOut.global.Right, kSmallestPrintableSpan);
    EXPECT_EQ(laidOut.global.Top, 0);
    EXPECT_EQ(laidOut.styles[3].FontSize, 1638.0f);
    EXPECT_EQ(d.global.Top, -100); // the definition itself is left alone

    // As many newspaper columns as fit, when more are asked for than fit on the page.
    d = builtIn();
    d.global.Columns = QStringLiteral("20");
    warnings.clear();
    EXPECT_EQ(layoutableDefinition(d, kA4, [&](const QString& text) { warnings.append(text); })
                  .global.Columns,
              QStringLiteral("9"));
    EXPECT_EQ(warnings.size(), 1);

    // What can be laid out is left as it is, and nothing is said.
    warnings.clear();
    d = builtIn();
    d.styles[4].FontSize = 0; // no size: drawn at the default one
    d.global.Columns = QStringLiteral("2.5");
    EXPECT_EQ(layoutableDefinition(d, kA4, [&](const QString& text) { warnings.append(text); }), d);
    EXPECT_TRUE(warnings.isEmpty()) << warnings.join(u'\n').toStdString();
}

// Rows are not lost to values that cannot be laid out: every record of a report with margins
// that leave no room and a font too large for the page is drawn, and the renderer warns.
TEST(LayoutLimits, EveryRowIsDrawnWithValuesThatCannotBeLaidOut)
{
    OutlineGrid grid;
    GridColumn column;
    column.title = QStringLiteral("name");
    grid.setColumns({column});
    // One character a record, which no wrapping splits even in a font taller than the page.
    const QString records = QStringLiteral("ABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789");
    for (QChar record : records)
        grid.appendRow({QString(record)});
    ReportDefinition d = builtIn();
    d.fields = {{QStringLiteral("name"), QStringLiteral("name"), 0, 9, {}, 0, 0}};
    d.details = {QStringLiteral("name")};
    d.global.Top = d.global.Bottom = 20000;
    d.global.Left = -5000;
    d.global.Columns = QStringLiteral("-3");
    d.styles[StyleDetailBody].FontSize = 100000;
    d.styles[StyleDetailBody].After = -20000;
    buildReportGrid(grid, d, QCollator());

    TokenContext context;
    context.locale = FormatLocale::fromQLocale(QLocale(QLocale::English));
    ReportRenderer renderer(d, grid, context);
    QStringList warnings;
    renderer.setWarningHandler([&](const QString& text) { warnings.append(text); });
    PageDocument document;
    renderer.RenderReport(document);

    EXPECT_EQ(warnings.size(), 6) << warnings.join(u'\n').toStdString();
    QStringList drawn;
    for (const PageDisplayList& page : document.pages()) {
        for (const DisplayItem& item : page.items) {
            if (const auto* run = std::get_if<TextRun>(&item))
                drawn.append(run->text);
        }
    }
    for (QChar record : records)
        EXPECT_TRUE(drawn.contains(QString(record))) << record.toLatin1();
}
