// Times building the report grid over the benchmark sales table: the designer's working view
// (250 rows, rebuilt again and again) and a full build over every record (sort, three group
// levels, Sum, Average, Count and Std. Dev. on the closing rows). Prints one line of figures.
//
// Usage: grid_build DATABASE [REPEATS]

#include "definition/ReportDefinition.h"
#include "production/grid/Aggregate.h"
#include "production/grid/ReportGridBuilder.h"
#include "production/report/ReportData.h"

#include "BenchSupport.h"

#include <QCoreApplication>
#include <QElapsedTimer>

#include <algorithm>
#include <cstdio>
#include <vector>

using namespace tabulor;

namespace {

ReportDefinition salesReport()
{
    ReportDefinition d;
    ApplyBuiltInStyles(d, {});
    d.global.SubtotalPosition = 2;
    auto field = [](const char* id, qint16 aggregate) {
        return ReportField{
            QString::fromLatin1(id), QString::fromLatin1(id), 1, 9, {}, aggregate, 0};
    };
    d.fields = {field("region", 0),
                field("product", 0),
                field("customer", 0),
                field("order_date", 0),
                field("quantity", AggregateSum),
                field("unit_price", AggregateAverage),
                field("amount", AggregateStdDev),
                field("id", AggregateCount)};
    d.groups = {QStringLiteral("region"), QStringLiteral("product"), QStringLiteral("customer")};
    d.details = {QStringLiteral("order_date"), QStringLiteral("id"), QStringLiteral("quantity"),
                 QStringLiteral("unit_price"), QStringLiteral("amount")};
    return d;
}

} // namespace

int main(int argc, char* argv[])
{
    QCoreApplication app(argc, argv);
    if (argc < 2) {
        std::fprintf(stderr, "usage: grid_build DATABASE [REPEATS]\n");
        return 2;
    }
    const QString database = QString::fromLocal8Bit(argv[1]);
    const int repeats = argc > 2 ? std::max(1, atoi(argv[2])) : 5;
    const ReportDefinition report = salesReport();
    const QCollator collator;

    ReportData working;
    working.OpenDataSource(database, QStringLiteral("sales"));
    if (!working.RecordSourceOpen()) {
        std::fprintf(stderr, "cannot open the sales table of %s\n", argv[1]);
        return 1;
    }
    std::vector<double> workingTimes;
    for (int i = 0; i < 50; ++i) {
        QElapsedTimer timer;
        timer.start();
        buildReportGrid(working.grid(), report, collator);
        workingTimes.push_back(milliseconds(timer));
    }

    ReportData full;
    full.setUnlimitedRows(true);
    QElapsedTimer loadTimer;
    loadTimer.start();
    full.OpenDataSource(database, QStringLiteral("sales"));
    const double loadSeconds = seconds(loadTimer);
    std::vector<double> buildTimes;
    for (int i = 0; i < repeats; ++i) {
        QElapsedTimer timer;
        timer.start();
        buildReportGrid(full.grid(), report, collator);
        buildTimes.push_back(seconds(timer));
    }
    std::printf("records %lld  rows %zu  load %.3f s  full build %.3f s (median of %d)  "
                "working view %.3f ms (median of 50)  peak %.0f MB\n",
                static_cast<long long>(full.grid().recordCount()), full.grid().rows().size(),
                loadSeconds, median(buildTimes), repeats, median(workingTimes),
                static_cast<double>(peakKilobytes()) / 1024.0);
    return 0;
}
