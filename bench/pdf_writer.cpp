// Times the PDF writer on grid report pages built in memory: a heading, 50 rows of 8 columns
// (texts from a small vocabulary, dates, quantities, prices and amounts), alternate rows
// shaded, rules under the rows, and a page footer added as an overlay with the page count.
// Only the writer is timed, not the building of the pages. Prints one line of figures.
//
// Usage: pdf_writer [PAGES] [OUTPUT]

#include "production/pdf/PdfWriter.h"

#include "BenchSupport.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFileInfo>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <ctime>

using namespace tabulor;

namespace {

const char* const kRegions[] = {"North", "South", "East", "West", "Central"};
const char* const kProducts[] = {
    "Anchor Bolts",   "Brass Fittings", "Copper Wire",   "Drill Bits",   "Epoxy Resin",
    "Fence Posts",    "Gate Hinges",    "Hex Nuts",      "Insulation",   "Joint Compound",
    "Kitchen Taps",   "Lag Screws",     "Masonry Nails", "Nylon Rope",   "Oak Boards",
    "Pipe Clamps",    "Quarry Tiles",   "Roof Felt",     "Sash Locks",   "Timber Glue",
    "Utility Knives", "Valve Seats",    "Wall Plugs",    "Yard Brushes", "Zinc Primer"};
const char* const kSurnames[] = {"Archer",  "Baines", "Carver", "Dunmore", "Ellison", "Fairley",
                                 "Garrick", "Holt",   "Ingram", "Jessop",  "Kirby",   "Lomax"};
const char* const kKinds[] = {"Traders", "Supplies", "& Sons", "Builders", "Hardware"};

constexpr double kTop = 1440;
constexpr double kRowHeight = 260;
constexpr int kRows = 50;
constexpr double kColumns[] = {720, 1900, 3900, 6000, 7300, 8300, 9400, 10500};

FontSpec tahoma(bool bold = false)
{
    FontSpec font;
    font.family = QStringLiteral("Tahoma");
    font.pointSize = 8.25;
    font.bold = bold;
    return font;
}

// A deterministic stream of numbers, so that every run writes the same pages.
struct Random
{
    quint64 state = 0x9E3779B97F4A7C15ULL;
    unsigned next(unsigned below)
    {
        state = state * 6364136223846793005ULL + 1442695040888963407ULL;
        return unsigned((state >> 33) % below);
    }
};

PageDisplayList reportPage(int number, Random& random)
{
    PageDisplayList page{QSizeF(11906, 16838), {}};
    page.items.reserve(kRows * 11 + 12);
    const FontSpec body = tahoma();
    const FontSpec heading = tahoma(true);
    page.items.push_back(Fill{QRectF(700, kTop - 200, 10500, kRowHeight), QColor(210, 215, 230)});
    const char* const titles[] = {"Region",   "Product", "Customer", "Date",
                                  "Quantity", "Price",   "Amount",   "Order"};
    for (int c = 0; c < 8; ++c)
        page.items.push_back(TextRun{QPointF(kColumns[c], kTop), QString::fromLatin1(titles[c]),
                                     heading, Qt::black});
    for (int r = 0; r < kRows; ++r) {
        const double y = kTop + (r + 1) * kRowHeight;
        if (r % 2 == 1)
            page.items.push_back(
                Fill{QRectF(700, y - 200, 10500, kRowHeight), QColor(245, 245, 245)});
        const unsigned quantity = 1 + random.next(500);
        const unsigned cents = 99 + random.next(250000);
        const qint64 amount = qint64(quantity) * cents;
        const QString cells[] = {
            QString::fromLatin1(kRegions[random.next(5)]),
            QString::fromLatin1(kProducts[random.next(25)]),
            QStringLiteral("%1 %2").arg(QString::fromLatin1(kSurnames[random.next(12)]),
                                        QString::fromLatin1(kKinds[random.next(5)])),
            QStringLiteral("%1/%2/2024")
                .arg(1 + random.next(28), 2, 10, QLatin1Char('0'))
                .arg(1 + random.next(12), 2, 10, QLatin1Char('0')),
            QString::number(quantity),
            QStringLiteral("%1.%2").arg(cents / 100).arg(cents % 100, 2, 10, QLatin1Char('0')),
            QStringLiteral("%L1.%2").arg(amount / 100).arg(amount % 100, 2, 10, QLatin1Char('0')),
            QString::number(100000 + number * kRows + r)};
        for (int c = 0; c < 8; ++c)
            page.items.push_back(TextRun{QPointF(kColumns[c], y), cells[c], body, Qt::black});
        page.items.push_back(Rule{QLineF(700, y + 60, 11200, y + 60), 10, QColor(180, 180, 180)});
    }
    return page;
}

PageDisplayList footer(int number, int count)
{
    PageDisplayList page{QSizeF(11906, 16838), {}};
    page.items.push_back(TextRun{QPointF(9500, 16000),
                                 QStringLiteral("Page %1 of %2").arg(number).arg(count), tahoma(),
                                 Qt::black});
    return page;
}

// Processor time of the whole process (every thread), in nanoseconds.
qint64 cpuNanoseconds()
{
    timespec now{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
    return qint64(now.tv_sec) * 1000000000 + now.tv_nsec;
}

// Wall-clock and processor time spent in the writer.
struct Stopwatch
{
    qint64 wall = 0;
    qint64 cpu = 0;

    template <typename Work> auto operator()(Work work)
    {
        QElapsedTimer timer;
        timer.start();
        const qint64 cpuStart = cpuNanoseconds();
        auto result = work();
        cpu += cpuNanoseconds() - cpuStart;
        wall += timer.nsecsElapsed();
        return result;
    }
};

} // namespace

int main(int argc, char* argv[])
{
    QCoreApplication app(argc, argv);
    const int pages = argc > 1 ? std::max(1, std::atoi(argv[1])) : 2000;
    const QString path = argc > 2 ? QString::fromLocal8Bit(argv[2])
                                  : QDir::temp().filePath(QStringLiteral("bench_pdf_writer.pdf"));
    Random random;
    const long baseline = peakKilobytes();
    Stopwatch body;
    Stopwatch end;

    PdfWriter writer;
    QString error;
    if (!body([&] { return writer.open(path, &error); })) {
        std::fprintf(stderr, "%s\n", qPrintable(error));
        return 1;
    }
    writer.begin(QStringLiteral("bench.vrd"));
    for (int i = 0; i < pages; ++i) {
        const PageDisplayList page = reportPage(i, random);
        body([&] { return writer.addPage(page); });
    }
    for (int i = 0; i < pages; ++i) {
        const PageDisplayList overlay = footer(i + 1, pages);
        if (!body([&] { return writer.addOverlay(i, overlay); })) {
            std::fprintf(stderr, "%s\n", qPrintable(writer.errorString()));
            return 1;
        }
    }
    if (!end([&] { return writer.finish(&error); })) {
        std::fprintf(stderr, "%s\n", qPrintable(error));
        return 1;
    }
    const double wall = double(body.wall + end.wall) / 1e9;
    const double cpu = double(body.cpu + end.cpu) / 1e9;
    const double megabytes = double(QFileInfo(path).size()) / 1e6;
    std::printf("pages %d  rows %d  texts %d  %.1f MB  wall %.3f s (finish %.3f s)  cpu %.3f s  "
                "%.0f pages/s  %.1f MB/s  peak %.0f MB (%.0f MB before writing)\n",
                pages, pages * kRows, pages * (kRows + 1) * 8 + pages, megabytes, wall,
                double(end.wall) / 1e9, cpu, pages / wall, megabytes / wall,
                double(peakKilobytes()) / 1024.0, double(baseline) / 1024.0);
    return 0;
}
