#include "production/pages/FontCatalog.h"
#include "production/pdf/PdfWriter.h"

#include "PdfTools.h"
#include "TestSupport.h"

#include <QFont>
#include <QFontMetricsF>
#include <QPainter>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <cmath>

using namespace tabulor;
using namespace tabulor::test;

namespace {

const QString kTahoma = QStringLiteral("Tahoma");

// Writes one page and returns the file's path in dir.
QString writePage(const QTemporaryDir& dir, const PageDisplayList& list)
{
    const QString path = dir.filePath(QStringLiteral("text.pdf"));
    PdfWriter writer;
    QString error;
    EXPECT_TRUE(writer.open(path, &error)) << error.toStdString();
    writer.addPage(list);
    EXPECT_TRUE(writer.finish(&error)) << error.toStdString();
    EXPECT_EQ(qpdfProblems(path), QString());
    return path;
}

QStringList trimmedLines(const QString& text)
{
    QStringList lines;
    for (const QString& line : text.split(QLatin1Char('\n'))) {
        if (!line.trimmed().isEmpty())
            lines.append(line.trimmed());
    }
    return lines;
}

struct Word
{
    QString text;
    double xMin, yMin, xMax, yMax;
};

// The words of page 1 with their boxes in points, as pdftotext -bbox gives them.
std::vector<Word> words(const QString& pdf)
{
    const QString html =
        runTool(QStringLiteral("pdftotext"), {QStringLiteral("-bbox"), QStringLiteral("-enc"),
                                              QStringLiteral("UTF-8"), pdf, QStringLiteral("-")});
    static const QRegularExpression word(
        QStringLiteral("<word xMin=\"([\\d.]+)\" yMin=\"([\\d.]+)\" xMax=\"([\\d.]+)\" "
                       "yMax=\"([\\d.]+)\">([^<]*)</word>"));
    std::vector<Word> found;
    for (auto it = word.globalMatch(html); it.hasNext();) {
        const auto m = it.next();
        found.push_back({m.captured(5), m.captured(1).toDouble(), m.captured(2).toDouble(),
                         m.captured(3).toDouble(), m.captured(4).toDouble()});
    }
    return found;
}

// How alike two renderings of the same size are: the correlation of their ink in cells of
// 4 x 4 pixels, 1 for the same picture.
double likeness(const QImage& a, const QImage& b)
{
    std::vector<double> x, y;
    for (int top = 0; top + 4 <= a.height(); top += 4) {
        for (int left = 0; left + 4 <= a.width(); left += 4) {
            double inkA = 0, inkB = 0;
            for (int dy = 0; dy < 4; ++dy) {
                for (int dx = 0; dx < 4; ++dx) {
                    inkA += 255 - qGray(a.pixel(left + dx, top + dy));
                    inkB += 255 - qGray(b.pixel(left + dx, top + dy));
                }
            }
            x.push_back(inkA);
            y.push_back(inkB);
        }
    }
    const double n = double(x.size());
    double mx = 0, my = 0;
    for (size_t i = 0; i < x.size(); ++i) {
        mx += x[i] / n;
        my += y[i] / n;
    }
    double sxy = 0, sxx = 0, syy = 0;
    for (size_t i = 0; i < x.size(); ++i) {
        sxy += (x[i] - mx) * (y[i] - my);
        sxx += (x[i] - mx) * (x[i] - mx);
        syy += (y[i] - my) * (y[i] - my);
    }
    return sxx > 0 && syy > 0 ? sxy / std::sqrt(sxx * syy) : 0;
}

} // namespace

TEST(PdfText, RowsAndColumnsComeOutInTheirPlacesWhateverTheDrawingOrder)
{
    const QStringList regions{QStringLiteral("North"), QStringLiteral("East"),
                              QStringLiteral("South"), QStringLiteral("West")};
    PageDisplayList list = page();
    // Drawn column by column and bottom row first: only positions can order the text.
    for (int column = 2; column >= 0; --column) {
        for (int row = 3; row >= 0; --row) {
            const QString cell =
                column == 0 ? regions[row] : QString::number((row + 1) * 1000 + column * 7);
            list.items.push_back(
                text(1440 + column * 2880, 1440 + row * 400, cell, font(kTahoma, 10, column == 0)));
        }
    }
    QTemporaryDir dir;
    const QStringList lines = trimmedLines(pdfText(writePage(dir, list)));
    ASSERT_EQ(lines.size(), 4) << lines.join('\n').toStdString();
    for (int row = 0; row < 4; ++row) {
        const QStringList cells =
            lines[row].split(QRegularExpression(QStringLiteral("\\s+")), Qt::SkipEmptyParts);
        EXPECT_EQ(cells, (QStringList{regions[row], QString::number((row + 1) * 1000 + 7),
                                      QString::number((row + 1) * 1000 + 14)}));
    }
}

TEST(PdfText, WordsStandOnTheirBaselinesAsWideAsTheFontMakesThem)
{
    // Widths come from the font's advances with its kerning: Qt's own text engine, reading the
    // same face, must agree.
    const QString sample = QStringLiteral("AVATAR Wave, To 1,234.50 office");
    PageDisplayList list = page();
    list.items.push_back(text(1440, 2880, sample, font(kTahoma, 20)));
    list.items.push_back(text(4320, 5760, QStringLiteral("Small"), font(kTahoma, 8.25)));
    QTemporaryDir dir;
    const std::vector<Word> found = words(writePage(dir, list));
    ASSERT_EQ(found.size(), 6u);

    EXPECT_NEAR(found[0].xMin, 72, 0.01);
    EXPECT_LT(found[0].yMin, 144);
    EXPECT_GT(found[0].yMax, 144);
    FontCatalog catalog; // makes the compatibility face known to Qt
    ReportStyle style;
    style.FontName = kTahoma;
    QFont qtFont = catalog.font(style);
    qtFont.setPixelSize(2000);
    qtFont.setHintingPreference(QFont::PreferNoHinting);
    const double expected = QFontMetricsF(qtFont).horizontalAdvance(sample) / 100;
    EXPECT_NEAR(found[4].xMax - found[0].xMin, expected, expected * 0.002)
        << "the line is " << found[4].xMax - found[0].xMin << " points wide";

    const Word& small = found[5];
    EXPECT_EQ(small.text, QStringLiteral("Small"));
    EXPECT_NEAR(small.xMin, 216, 0.01);
    EXPECT_LT(small.yMin, 288);
    EXPECT_GT(small.yMax, 288);
    EXPECT_LT(small.yMax - small.yMin, 12);
}

TEST(PdfText, EveryScriptComesOutOfTheFileAsItWentIn)
{
    struct Line
    {
        const char* family;
        QString text;
    };
    const std::vector<Line> lines{
        {"Tahoma", QStringLiteral("Ελληνικά: Αθήνα, Θεσσαλονίκη")},
        {"Tahoma", QStringLiteral("Кириллица: Москва — Санкт-Петербург")},
        {"Noto Sans CJK JP", QStringLiteral("東京都の売上高 合計 12,345円")},
        {"Tahoma", QStringLiteral("Tahoma with fallback 北京 and 한국어")},
        {"Noto Sans CJK JP", QStringLiteral("Extension B: 𠀋 (U+2000B)")},
        {"DejaVu Sans", QStringLiteral("Outside the BMP: 😀 𝐀")},
        // Ligatures: one glyph for several characters.
        {"DejaVu Sans", QStringLiteral("office baffled waffle")},
        {"Tahoma", QStringLiteral("first floor fluffy")},
        // One glyph for different texts: a precomposed letter and the letter with a combining
        // accent, a hyphen and a non-breaking hyphen; in a TrueType face and in a CFF face.
        {"DejaVu Sans", QStringLiteral("Café = Cafe\u0301")},
        {"Noto Sans CJK JP", QStringLiteral("Café = Cafe\u0301, 9-876 = 9\u2011876")},
        {"Nimbus Sans", QStringLiteral("Name-keyed CFF: Quality, Value")},
        // A character no installed font has.
        {"Tahoma", QStringLiteral("Missing \U0010FFFD glyph")},
    };
    PageDisplayList list = page();
    for (size_t i = 0; i < lines.size(); ++i)
        list.items.push_back(text(1440, 1440 + double(i) * 600, lines[i].text,
                                  font(QString::fromLatin1(lines[i].family), 12)));
    QTemporaryDir dir;
    const QString path = writePage(dir, list);
    const QStringList extracted = trimmedLines(pdfText(path));
    ASSERT_EQ(extracted.size(), qsizetype(lines.size())) << extracted.join('\n').toStdString();
    for (size_t i = 0; i < lines.size(); ++i)
        EXPECT_EQ(extracted[qsizetype(i)], lines[i].text);
}

TEST(PdfText, FontsAreEmbeddedAsSubsetsWithTheirText)
{
    PageDisplayList list = page();
    list.items.push_back(text(1440, 1440, QStringLiteral("Regular"), font(kTahoma)));
    list.items.push_back(text(1440, 1840, QStringLiteral("Bold"), font(kTahoma, 10, true)));
    list.items.push_back(text(1440, 2240, QStringLiteral("合計"), font(kTahoma)));
    list.items.push_back(
        text(1440, 2640, QStringLiteral("Sans"), font(QStringLiteral("Nimbus Sans"))));
    QTemporaryDir dir;
    const QString listing = runTool(QStringLiteral("pdffonts"), {writePage(dir, list)});
    QStringList rows = listing.split(QLatin1Char('\n'), Qt::SkipEmptyParts).mid(2);
    ASSERT_EQ(rows.size(), 4) << listing.toStdString();
    rows.sort();
    const QRegularExpression row(
        QStringLiteral("^[A-Z]{6}\\+(\\S+)\\s+(CID TrueType|CID Type 0C \\(OT\\)|CID Type "
                       "0C)\\s+Identity-H\\s+yes\\s+yes\\s+yes"));
    QStringList faces;
    for (const QString& line : rows) {
        const auto m = row.match(line);
        EXPECT_TRUE(m.hasMatch()) << line.toStdString();
        faces.append(m.captured(1) + QLatin1Char(' ') + m.captured(2).trimmed());
    }
    faces.sort();
    ASSERT_EQ(faces.size(), 4);
    // A name-keyed CFF face goes in whole as OpenType, a CID-keyed one as its bare CFF table.
    EXPECT_EQ(faces[0], QStringLiteral("NimbusSans-Regular CID Type 0C (OT)"));
    EXPECT_TRUE(faces[1].startsWith(QStringLiteral("NotoSansCJK"))) << faces[1].toStdString();
    EXPECT_TRUE(faces[1].endsWith(QStringLiteral("-Regular CID Type 0C")));
    // The compatibility faces call themselves WineTahoma and WineTahomaBold.
    EXPECT_TRUE(faces[2].contains(QStringLiteral("Tahoma CID TrueType"))) << faces[2].toStdString();
    EXPECT_TRUE(faces[3].contains(QStringLiteral("TahomaBold CID TrueType")))
        << faces[3].toStdString();
}

TEST(PdfText, AStyleTheFaceLacksIsImitated)
{
    // The compatibility face has no italic: the text is slanted instead, so a tall letter
    // leans right.
    PageDisplayList list = page(2880, 2880);
    list.items.push_back(text(400, 2000, QStringLiteral("l"), font(kTahoma, 72, false, true)));
    QTemporaryDir dir;
    const QImage image = renderPage(writePage(dir, list), 1, 72);
    auto leftmostInk = [&](int y) {
        for (int x = 0; x < image.width(); ++x) {
            if (qGray(image.pixel(x, y)) < 128)
                return x;
        }
        return -1;
    };
    const int nearBaseline = leftmostInk(95);
    const int nearTop = leftmostInk(55);
    ASSERT_GE(nearBaseline, 0);
    ASSERT_GE(nearTop, 0);
    EXPECT_GE(nearTop - nearBaseline, 6);

    // Its bold face is bold in name only, with the strokes of the regular one: the text is
    // thickened, so a stem is wider than the regular one by the outline drawn around it.
    auto stemWidth = [&](bool bold) {
        PageDisplayList stem = page(2880, 2880);
        stem.items.push_back(text(400, 2000, QStringLiteral("l"), font(kTahoma, 72, bold)));
        const QImage drawn = renderPage(writePage(dir, stem), 1, 72);
        int width = 0;
        for (int x = 0; x < drawn.width(); ++x)
            width += qGray(drawn.pixel(x, 80)) < 128;
        return width;
    };
    EXPECT_GE(stemWidth(true), stemWidth(false) + 2);
}

TEST(PdfText, TheGlyphsShownAreTheOnesTheFaceHasForTheText)
{
    // Each kind of embedded face, drawn large and set beside Qt drawing the same text from the
    // same face: a code that selects a wrong glyph changes the picture.
    const std::vector<std::pair<QString, QString>> samples{
        {kTahoma, QStringLiteral("Rg7 Жx")},                            // TrueType
        {QStringLiteral("DejaVu Sans"), QStringLiteral("office Ωψ")},   // TrueType, ligatures
        {QStringLiteral("Noto Sans CJK JP"), QStringLiteral("東京 7")}, // CID-keyed CFF
        {QStringLiteral("Nimbus Sans"), QStringLiteral("Qa&9 Bx")},     // name-keyed CFF
    };
    FontCatalog catalog;
    for (const auto& [family, sample] : samples) {
        PageDisplayList list = page(5760, 1440);
        list.items.push_back(text(200, 1100, sample, font(family, 40)));
        QTemporaryDir dir;
        const QImage fromPdf = renderPage(writePage(dir, list), 1, 72);
        ASSERT_EQ(fromPdf.size(), QSize(288, 72));

        ReportStyle style;
        style.FontName = family;
        QFont qtFont = catalog.font(style);
        qtFont.setPixelSize(40);
        qtFont.setHintingPreference(QFont::PreferNoHinting);
        QImage fromQt(fromPdf.size(), QImage::Format_RGB32);
        fromQt.fill(Qt::white);
        QPainter painter(&fromQt);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setFont(qtFont);
        painter.setPen(Qt::black);
        painter.drawText(QPointF(10, 55), sample);
        painter.end();
        EXPECT_GT(likeness(fromPdf, fromQt), 0.95) << family.toStdString();
    }
}
