// SPDX-License-Identifier: GPL-3.0-or-later
// What the log costs the disk: bytes handed to the kernel, bytes the kernel counts as
// dirtied for the storage, write calls and sync calls, per simulated day of ticks. Two
// settings of the same file are compared: the rollback journal with full syncs that the
// log used to run with ("before"), and the write-ahead log it runs with now ("after").
//
// The tables are full first, as after weeks of running, so that every write also deletes
// a row by retention. Time goes through Clock, two seconds a firing, with the counter
// the tick keeps. Run: bench/bin/bench_logdisk
//
// Sync calls are counted by taking over fsync and fdatasync in this executable, which
// SQLite then calls instead of the C library's (the executable exports them).

#include "tests/support/LogFixture.h"

#include "app/BackEnd.h"
#include "log/DataSource.h"
#include "util/Clock.h"

#include <QtCore/QFile>
#include <QtSql/QSqlDatabase>
#include <QtSql/QSqlQuery>
#include <QtWidgets/QApplication>

#include <benchmark/benchmark.h>

#include <atomic>
#include <dlfcn.h>

namespace {

std::atomic<long> syncCalls{0};

template<typename Call>
Call realCall(const char* name)
{
    return reinterpret_cast<Call>(dlsym(RTLD_NEXT, name));
}

} // namespace

extern "C" int fsync(int fd)
{
    static const auto real = realCall<int (*)(int)>("fsync");
    ++syncCalls;
    return real(fd);
}

extern "C" int fdatasync(int fd)
{
    static const auto real = realCall<int (*)(int)>("fdatasync");
    ++syncCalls;
    return real(fd);
}

namespace {

qint64 second = 1793000000;

void quiet(QtMsgType, const QMessageLogContext&, const QString&)
{
}

struct IoCount
{
    qint64 wchar = 0;
    qint64 writeBytes = 0;
    qint64 writeCalls = 0;
    long syncs = 0;

    static IoCount now()
    {
        IoCount count;
        QFile io(QStringLiteral("/proc/self/io"));
        if (io.open(QIODevice::ReadOnly)) {
            for (const QByteArray& line : io.readAll().split('\n')) {
                const QList<QByteArray> parts = line.split(':');
                if (parts.size() != 2)
                    continue;
                const qint64 value = parts.at(1).trimmed().toLongLong();
                if (parts.at(0) == "wchar")
                    count.wchar = value;
                else if (parts.at(0) == "write_bytes")
                    count.writeBytes = value;
                else if (parts.at(0) == "syscw")
                    count.writeCalls = value;
            }
        }
        count.syncs = syncCalls.load();
        return count;
    }
};

void fill(LogFixture& fixture)
{
    const QList<int> intervals = fixture.log().getTableIntervals();
    for (int t = 0; t < DataSource::TableCount; ++t) {
        fixture.exec(QStringLiteral("BEGIN"));
        const QString name = fixture.log().getTableNames()[t];
        for (int i = 1800; i > 0; --i) {
            fixture.exec(QStringLiteral("INSERT INTO %1 VALUES (%2, -4.5, 48.25, 215, 6.2, 1013, 12, 0.5)")
                                 .arg(name)
                                 .arg(second - qint64(i) * intervals[t]));
        }
        fixture.exec(QStringLiteral("COMMIT"));
    }
}

// The log as it ran before: a rollback journal, a sync at every commit, 4 KB pages.
void useRollbackJournal()
{
    QSqlDatabase db = QSqlDatabase::database(QStringLiteral("DB_BRINHOLT"), false);
    QSqlQuery query(db);
    query.exec(QStringLiteral("PRAGMA journal_mode=DELETE"));
    query.exec(QStringLiteral("PRAGMA page_size=4096"));
    query.exec(QStringLiteral("VACUUM"));
    query.exec(QStringLiteral("PRAGMA synchronous=FULL"));
}

// range(0): 0 before, 1 after; range(1): simulated hours (the result is scaled to a day).
void BM_logDiskPerDay(benchmark::State& state)
{
    const bool before = state.range(0) == 0;
    const int hours = int(state.range(1));
    for (auto _ : state) {
        state.PauseTiming();
        Clock::setFixedSecsSinceEpoch(second);
        LogFixture fixture;
        if (before)
            useRollbackJournal();
        fill(fixture);
        int tick = 768;
        state.ResumeTiming();

        const IoCount start = IoCount::now();
        const int firings = hours * 1800;
        long rows = 0;
        for (int i = 0; i < firings; ++i) {
            Clock::setFixedSecsSinceEpoch(second += 2);
            if (fixture.log().addData(tick, -4.5, 48.25, 215.0, 6.2, 1013.0 + (i % 50) / 10.0))
                ++rows;
            tick = tick < 767 ? tick + 2 : 0;
        }
        const IoCount end = IoCount::now();

        const double perDay = 24.0 / hours;
        state.counters["MB_handed_per_day"] = (end.wchar - start.wchar) * perDay / 1e6;
        state.counters["MB_dirtied_per_day"] = (end.writeBytes - start.writeBytes) * perDay / 1e6;
        state.counters["write_calls_per_day"] = (end.writeCalls - start.writeCalls) * perDay;
        state.counters["syncs_per_day"] = (end.syncs - start.syncs) * perDay;
        state.counters["firings_with_rows_per_day"] = rows * perDay;
    }
}
BENCHMARK(BM_logDiskPerDay)
        ->ArgNames({"after", "hours"})
        ->Args({0, 1})
        ->Args({1, 24})
        ->Iterations(1)
        ->Unit(benchmark::kSecond);

} // namespace

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    qInstallMessageHandler(quiet);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
