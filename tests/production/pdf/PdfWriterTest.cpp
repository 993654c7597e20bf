#include "production/pdf/PdfWriter.h"

#include "PdfTools.h"
#include "TestSupport.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <csignal>
#include <limits>
#include <sys/resource.h>

using namespace tabulor;
using namespace tabulor::test;

namespace {

const QString kTahoma = QStringLiteral("Tahoma");

// A page of a grid report: a shaded heading row, ruled rows of texts and numbers.
PageDisplayList gridPage(int number, int rows = 40)
{
    PageDisplayList list = page();
    list.items.push_back(Fill{QRectF(1440, 1000, 9000, 300), QColor(220, 220, 240)});
    list.items.push_back(text(1500, 1240, QStringLiteral("Region"), font(kTahoma, 8.25, true)));
    list.items.push_back(text(4500, 1240, QStringLiteral("Amount"), font(kTahoma, 8.25, true)));
    for (int row = 0; row < rows; ++row) {
        const double y = 1600 + row * 300;
        list.items.push_back(text(1500, y, QStringLiteral("Page %1 row %2").arg(number).arg(row),
                                  font(kTahoma, 8.25)));
        list.items.push_back(
            text(4500, y, QString::number(number * 1000.25 + row, 'f', 2), font(kTahoma, 8.25)));
        list.items.push_back(Rule{QLineF(1440, y + 60, 10440, y + 60), 10, Qt::gray});
    }
    return list;
}

QStringList filesIn(const QTemporaryDir& dir)
{
    return QDir(dir.path()).entryList(QDir::Files | QDir::Hidden | QDir::NoDotAndDotDot);
}

} // namespace

TEST(PdfWriter, WritesPagesOfTheirOwnSizesUnderTheReportTitle)
{
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("out.pdf"));
    PdfWriter writer;
    QString error;
    ASSERT_TRUE(writer.open(path, &error)) << error.toStdString();
    writer.begin(QStringLiteral("Ventes d'été – Ørsted.vrd"));
    EXPECT_EQ(writer.addPage(gridPage(1)), 0);
    PageDisplayList landscape = gridPage(2);
    landscape.size = QSizeF(16838, 11906);
    EXPECT_EQ(writer.addPage(landscape), 1);
    EXPECT_EQ(writer.addPage(page(12240, 15840)), 2); // an empty US Letter page
    ASSERT_TRUE(writer.finish(&error)) << error.toStdString();

    EXPECT_EQ(qpdfProblems(path), QString());
    EXPECT_EQ(pdfInfo(path, QStringLiteral("Pages")), QStringLiteral("3"));
    EXPECT_EQ(pdfInfo(path, QStringLiteral("Title")), QStringLiteral("Ventes d'été – Ørsted.vrd"));
    EXPECT_EQ(pdfInfo(path, QStringLiteral("PDF version")), QStringLiteral("1.7"));
    EXPECT_TRUE(pdfInfo(path, QStringLiteral("Page    1 size")).startsWith("595.3 x 841.9 pts"));
    EXPECT_TRUE(pdfInfo(path, QStringLiteral("Page    2 size")).startsWith("841.9 x 595.3 pts"));
    EXPECT_TRUE(pdfInfo(path, QStringLiteral("Page    3 size")).startsWith("612 x 792 pts"));
    EXPECT_EQ(filesIn(dir), QStringList{QStringLiteral("out.pdf")});
}

TEST(PdfWriter, OverlaysLandOnTheirPagesWhenAddedAfterLaterPages)
{
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("overlay.pdf"));
    PdfWriter writer;
    QString error;
    ASSERT_TRUE(writer.open(path, &error));
    for (int i = 1; i <= 4; ++i)
        writer.addPage(gridPage(i, 3));
    // Headers with the page count, added once the count is known, backwards; page 3 has none.
    for (int i : {4, 2, 1}) {
        PageDisplayList header = page();
        header.items.push_back(
            text(8000, 700, QStringLiteral("Page %1 of 4").arg(i), font(kTahoma, 9)));
        ASSERT_TRUE(writer.addOverlay(i - 1, header)) << writer.errorString().toStdString();
    }
    EXPECT_FALSE(writer.addOverlay(1, page())) << "a page has one overlay";
    EXPECT_FALSE(writer.addOverlay(4, page())) << "there is no fifth page";
    EXPECT_FALSE(writer.errorString().isEmpty());
    ASSERT_TRUE(writer.finish(&error)) << error.toStdString();

    EXPECT_EQ(qpdfProblems(path), QString());
    for (int i = 1; i <= 4; ++i) {
        const QString text = pdfText(path, i);
        EXPECT_TRUE(text.contains(QStringLiteral("Page %1 row 0").arg(i))) << i;
        EXPECT_EQ(text.contains(QStringLiteral("Page %1 of 4").arg(i)), i != 3) << i;
        EXPECT_EQ(text.count(QStringLiteral(" of 4")), i != 3 ? 1 : 0) << i;
    }
}

TEST(PdfWriter, PagesThatCannotBeWrittenAreRefusedAndTheRestIsKept)
{
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("bad.pdf"));
    PdfWriter writer;
    QString error;
    ASSERT_TRUE(writer.open(path, &error));
    EXPECT_FALSE(writer.open(path, &error)) << "one file per writer";
    EXPECT_FALSE(error.isEmpty());
    EXPECT_EQ(writer.addPage(page(0, 16838)), -1);
    EXPECT_TRUE(writer.errorString().contains(QStringLiteral("twips")));
    EXPECT_EQ(writer.addPage(page(300000, 16838)), -1);
    // Coordinates that are no numbers, or far off the page, draw nothing sensible but harm
    // nothing.
    PageDisplayList odd = gridPage(1, 2);
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const double inf = std::numeric_limits<double>::infinity();
    odd.items.push_back(Rule{QLineF(nan, 0, inf, 1e300), nan, Qt::red});
    odd.items.push_back(Fill{QRectF(-inf, 0, 1e300, 100), Qt::blue});
    odd.items.push_back(text(nan, -1e300, QStringLiteral("lost"), font(kTahoma)));
    EXPECT_EQ(writer.addPage(odd), 0);
    ASSERT_TRUE(writer.finish(&error)) << error.toStdString();
    EXPECT_EQ(qpdfProblems(path), QString());
    EXPECT_EQ(pdfInfo(path, QStringLiteral("Pages")), QStringLiteral("1"));
    EXPECT_TRUE(pdfText(path).contains(QStringLiteral("Page 1 row 1")));
}

TEST(PdfWriter, AnUnwritableTargetFailsWithTheReasonAndLeavesNothingBehind)
{
    QTemporaryDir dir;
    const QString file = dir.filePath(QStringLiteral("plain-file"));
    writeBytes(file, "not a folder");
    QString error;
    {
        PdfWriter writer;
        EXPECT_FALSE(writer.open(file + QStringLiteral("/out.pdf"), &error));
        EXPECT_TRUE(error.contains(file)) << error.toStdString();
        EXPECT_EQ(writer.addPage(gridPage(1)), -1);
        EXPECT_FALSE(writer.finish(&error));
    }
    {
        PdfWriter writer;
        error.clear();
        EXPECT_FALSE(writer.open(dir.path(), &error)) << "a folder is no file";
        EXPECT_FALSE(error.isEmpty());
    }
    EXPECT_EQ(filesIn(dir), QStringList{QStringLiteral("plain-file")});
}

// The previous file survives every way a write can end without success.
class PdfWriterFailure : public ::testing::Test
{
protected:
    void SetUp() override
    {
        path = dir.filePath(QStringLiteral("report.pdf"));
        writeBytes(path, previous);
    }
    void expectPreviousFileOnly()
    {
        EXPECT_EQ(readBytes(path), previous);
        EXPECT_EQ(filesIn(dir), QStringList{QStringLiteral("report.pdf")});
    }

    QTemporaryDir dir;
    QString path;
    const QByteArray previous = "%PDF-1.4 the report as it was last written";
};

TEST_F(PdfWriterFailure, TheDiskFillingUpMidwayIsReported)
{
    // The file size limit makes writes fail as a full disk does.
    struct rlimit saved;
    ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &saved), 0);
    const auto previousHandler = std::signal(SIGXFSZ, SIG_IGN);
    struct rlimit limited = saved;
    limited.rlim_cur = 64 * 1024;
    ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &limited), 0);

    QString error;
    bool finished = true;
    {
        PdfWriter writer;
        ASSERT_TRUE(writer.open(path, &error));
        for (int i = 0; i < 200 && writer.addPage(gridPage(i)) >= 0; ++i) {
        }
        finished = writer.finish(&error);
    }
    setrlimit(RLIMIT_FSIZE, &saved);
    std::signal(SIGXFSZ, previousHandler);

    EXPECT_FALSE(finished);
    EXPECT_TRUE(error.contains(path)) << error.toStdString();
    expectPreviousFileOnly();
}

TEST_F(PdfWriterFailure, AnAbandonedOrEmptyDocumentLeavesThePreviousFile)
{
    {
        PdfWriter writer;
        ASSERT_TRUE(writer.open(path, nullptr));
        writer.addPage(gridPage(1));
    }
    expectPreviousFileOnly();
    PdfWriter writer;
    ASSERT_TRUE(writer.open(path, nullptr));
    QString error;
    EXPECT_FALSE(writer.finish(&error));
    EXPECT_FALSE(error.isEmpty());
    expectPreviousFileOnly();
}

TEST(PdfWriter, FillsRulesAndTextAreDrawnWhereAndHowTheListSays)
{
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("drawn.pdf"));
    // A 2 x 2 inch page, rendered at 72 dots per inch: one pixel is one point (20 twips).
    PageDisplayList list = page(2880, 2880);
    list.items.push_back(Fill{QRectF(0, 0, 1440, 720), QColor(255, 0, 0)}); // top left
    list.items.push_back(Rule{QLineF(200, 2000, 1240, 2000), 100, QColor(0, 0, 255)});
    FontSpec underlined = font(kTahoma, 20);
    underlined.underline = true;
    list.items.push_back(text(200, 1500, QStringLiteral("HHHH"), underlined, QColor(0, 128, 0)));
    PdfWriter writer;
    ASSERT_TRUE(writer.open(path, nullptr));
    writer.addPage(list);
    QString error;
    ASSERT_TRUE(writer.finish(&error)) << error.toStdString();

    const QImage image = renderPage(path, 1, 72);
    ASSERT_EQ(image.size(), QSize(144, 144));
    EXPECT_EQ(image.pixel(36, 18), qRgb(255, 0, 0)) << "the fill, measured from the top left";
    EXPECT_EQ(image.pixel(36, 40), qRgb(255, 255, 255)) << "below the fill";
    EXPECT_EQ(image.pixel(72, 18), qRgb(255, 255, 255)) << "right of the fill";
    // The rule is 5 points thick around y = 100 and ends square at x = 10 and x = 62.
    EXPECT_EQ(image.pixel(36, 100), qRgb(0, 0, 255));
    EXPECT_EQ(image.pixel(36, 98), qRgb(0, 0, 255));
    EXPECT_EQ(image.pixel(36, 104), qRgb(255, 255, 255));
    EXPECT_EQ(image.pixel(11, 100), qRgb(0, 0, 255));
    EXPECT_EQ(image.pixel(8, 100), qRgb(255, 255, 255));
    EXPECT_EQ(image.pixel(64, 100), qRgb(255, 255, 255));
    // Green text standing on its baseline at y = 75, underlined just below it, unbroken.
    auto green = [&](int x, int y) {
        const QRgb p = image.pixel(x, y);
        return qGreen(p) > 100 && qRed(p) < 100 && qBlue(p) < 100;
    };
    auto greenIn = [&](int top, int bottom) {
        int count = 0;
        for (int y = top; y <= bottom; ++y) {
            for (int x = 0; x < image.width(); ++x)
                count += green(x, y);
        }
        return count;
    };
    EXPECT_GT(greenIn(62, 74), 100) << "the capitals";
    EXPECT_EQ(greenIn(0, 58), 0) << "above the capitals";
    int underline = 0;
    for (int y = 75; y < 80 && underline == 0; ++y)
        underline = green(20, y) && green(30, y) && green(40, y) ? y : 0;
    EXPECT_NE(underline, 0) << "no underline below the baseline";
}
