// SPDX-License-Identifier: GPL-3.0-or-later
// The log's readers on a log of 16 days, every table as full as retention lets it be:
// the chart feed that runs at each sample, the cursor, the list of a table and both exports.

#include "tests/log/ReaderFixture.h"

#include "log/DataSource.h"
#include "util/Clock.h"

#include <QtCharts/QLineSeries>
#include <QtWidgets/QApplication>

#include <benchmark/benchmark.h>

namespace {

ReaderFixture* fixture = nullptr;

void quiet(QtMsgType, const QMessageLogContext&, const QString&)
{
}

void BM_updateChart(benchmark::State& state)
{
    const int table = static_cast<int>(state.range(0));
    for (auto _ : state)
        fixture->log().updateChart(table);
    state.counters["rows"] = fixture->rowCount(table);
}
BENCHMARK(BM_updateChart)->DenseRange(0, 8)->Unit(benchmark::kMillisecond);

// What the graph page does at each sample: the chart's rows, then each stretch into a series.
void BM_updateChartWithSeries(benchmark::State& state)
{
    const int table = static_cast<int>(state.range(0));
    QtCharts::QLineSeries series;
    QObject context;
    QObject::connect(&fixture->log(), &DataSource::chartUpdated, &context,
                     [&](QVariant, double, double, int seriesCount) {
                         for (int n = 0; n < seriesCount; ++n)
                             fixture->log().update(&series, n);
                     });
    for (auto _ : state)
        fixture->log().updateChart(table);
}
BENCHMARK(BM_updateChartWithSeries)->Arg(0)->Arg(1)->Arg(8)->Unit(benchmark::kMillisecond);

void BM_getValueAt(benchmark::State& state)
{
    const int table = static_cast<int>(state.range(0));
    const qint64 newest = fixture->times(table).first();
    const double span = table == 0 ? 30.0 : 3.0;
    double x = 0.0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(fixture->log().getValueAt(x, table, QVariant(newest)));
        x -= 0.0137;
        if (x < -span)
            x = 0.0;
    }
}
BENCHMARK(BM_getValueAt)->Arg(0)->Arg(1)->Unit(benchmark::kMicrosecond);

void BM_calcInfo(benchmark::State& state)
{
    for (auto _ : state)
        benchmark::DoNotOptimize(fixture->log().calcInfo(QPointF(-1.25, 1013.2), 1));
}
BENCHMARK(BM_calcInfo)->Unit(benchmark::kMicrosecond);

void BM_getTableContent(benchmark::State& state)
{
    const int table = static_cast<int>(state.range(0));
    for (auto _ : state)
        benchmark::DoNotOptimize(fixture->log().getTableContent(table));
    state.counters["rows"] = fixture->rowCount(table);
}
BENCHMARK(BM_getTableContent)->Arg(1)->Unit(benchmark::kMillisecond);

void BM_exportCsv(benchmark::State& state)
{
    const int table = static_cast<int>(state.range(0));
    const QString target = fixture->path(QStringLiteral("bench.csv"));
    for (auto _ : state)
        fixture->log().exportCsv(table, target);
    state.counters["rows"] = fixture->rowCount(table);
}
BENCHMARK(BM_exportCsv)->Arg(1)->Unit(benchmark::kMillisecond);

void BM_exportGpx(benchmark::State& state)
{
    const int table = static_cast<int>(state.range(0));
    const QString target = fixture->path(QStringLiteral("bench.gpx"));
    for (auto _ : state)
        fixture->log().exportGpx(table, target);
    state.counters["rows"] = fixture->rowCount(table);
}
BENCHMARK(BM_exportGpx)->Arg(1)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char** argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    qInstallMessageHandler(quiet);

    ReaderFixture log;
    log.fillSixteenDays(ReaderFixture::ExampleTime);
    // Pressure arrives, as it does while the chart is fed.
    log.setPressure(1013.0);
    fixture = &log;

    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    fixture = nullptr;
    return 0;
}
