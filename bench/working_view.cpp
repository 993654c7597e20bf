// Times opening a record source in the designer's working view, the way the designer opens
// one: the database and the record source are opened, at most 250 grid rows are loaded and
// the total is counted. Prints the median time over the repeats, the two counts and the time
// of counting alone.
//
// Usage: working_view DATABASE SOURCE [REPEATS]

#include "production/report/ReportData.h"

#include "BenchSupport.h"

#include <QCoreApplication>
#include <QElapsedTimer>

#include <algorithm>
#include <cstdio>
#include <vector>

using namespace tabulor;

int main(int argc, char* argv[])
{
    QCoreApplication app(argc, argv);
    if (argc < 3) {
        std::fprintf(stderr, "usage: working_view DATABASE SOURCE [REPEATS]\n");
        return 2;
    }
    const QString database = QString::fromLocal8Bit(argv[1]);
    const QString source = QString::fromLocal8Bit(argv[2]);
    const int repeats = argc > 3 ? std::max(1, atoi(argv[3])) : 5;

    std::vector<double> opens;
    std::vector<double> counts;
    qint64 loaded = 0;
    qint64 total = 0;
    for (int i = 0; i < repeats; ++i) {
        QElapsedTimer timer;
        timer.start();
        ReportData data;
        data.OpenDataSource(database, source);
        opens.push_back(milliseconds(timer));
        if (!data.RecordSourceOpen()) {
            std::fprintf(stderr, "cannot open %s of %s\n", argv[2], argv[1]);
            return 1;
        }
        loaded = data.LoadedRowCount();
        total = data.TotalRowCount();
        timer.restart();
        data.CurrentDatabase()->countRows(source);
        counts.push_back(milliseconds(timer));
    }
    std::printf("grid rows %lld of %lld  open %.1f ms  count alone %.1f ms  (medians of %d)\n",
                static_cast<long long>(loaded), static_cast<long long>(total), median(opens),
                median(counts), repeats);
    return 0;
}
