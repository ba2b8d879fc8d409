// SPDX-License-Identifier: GPL-3.0-or-later
// The sampling tick's own cost: one firing that writes every table (tick 768), one that
// writes the 2-second table alone, a whole tick with its four display strings, and the
// readings store that the receiver's thread writes while the tick reads it; and a reading's
// whole road from the serial source's line to the log row (the line cut from the bytes,
// checked and decoded into the store, then the tick that logs it), without the port's own
// read, which the system times, not this program.

#include "tests/support/LogFixture.h"

#include "app/BackEnd.h"
#include "log/DataSource.h"
#include "nmea/Nmea0183.h"
#include "nmea/NmeaReceiver.h"
#include "nmea/NmeaSource.h"
#include "util/Clock.h"

#include <QtWidgets/QApplication>

#include <benchmark/benchmark.h>

namespace {

LogFixture* fixture = nullptr;
NmeaReceiver* receiver = nullptr;
qint64 second = 1793000000;

void quiet(QtMsgType, const QMessageLogContext&, const QString&)
{
}

// Full tables, as after days of running, so that retention has rows to look through.
void fill()
{
    for (const QString& table : fixture->log().getTableNames())
        fixture->exec(QStringLiteral("DELETE FROM %1").arg(table));
    const QList<int> intervals = fixture->log().getTableIntervals();
    for (int t = 0; t < DataSource::TableCount; ++t) {
        fixture->exec(QStringLiteral("BEGIN"));
        const QString name = fixture->log().getTableNames()[t];
        for (int i = 1800; i > 0; --i) {
            fixture->exec(QStringLiteral("INSERT INTO %1 VALUES (%2, 1, 2, 3, 4, 1013, 0, 0)")
                                  .arg(name)
                                  .arg(second - qint64(i) * intervals[t]));
        }
        fixture->exec(QStringLiteral("COMMIT"));
    }
}

void BM_addDataAllTables(benchmark::State& state)
{
    fill();
    for (auto _ : state) {
        Clock::setFixedSecsSinceEpoch(++second);
        benchmark::DoNotOptimize(fixture->log().addData(768, 1.0, 2.0, 3.0, 4.0, 1013.0));
    }
}
BENCHMARK(BM_addDataAllTables)->Unit(benchmark::kMillisecond);

void BM_addDataOneTable(benchmark::State& state)
{
    fill();
    for (auto _ : state) {
        Clock::setFixedSecsSinceEpoch(++second);
        benchmark::DoNotOptimize(fixture->log().addData(2, 1.0, 2.0, 3.0, 4.0, 1013.0));
    }
}
BENCHMARK(BM_addDataOneTable)->Unit(benchmark::kMillisecond);

// A tick with a reading and a fix: strings, log write (one table at most ticks), signal.
void BM_tick(benchmark::State& state)
{
    fill();
    fixture->backEnd().setPositionData(QPointF(-4.5, 48.25), 6.2, 215.0, Serial);
    for (auto _ : state) {
        Clock::setFixedSecsSinceEpoch(second += 2);
        fixture->backEnd().setCurrentPressure(1011.6, Serial);
        fixture->backEnd().slot_timerData();
    }
}
BENCHMARK(BM_tick)->Unit(benchmark::kMillisecond);

void BM_getCurrentPressure(benchmark::State& state)
{
    fixture->backEnd().setCurrentPressure(1011.6, Udp);
    for (auto _ : state)
        benchmark::DoNotOptimize(fixture->backEnd().getCurrentPressure());
}
BENCHMARK(BM_getCurrentPressure);

void BM_positionWriteAndRead(benchmark::State& state)
{
    double v = 0.0;
    for (auto _ : state) {
        fixture->backEnd().setPositionData(QPointF(v, v), 1.0, 2.0, Tcp);
        benchmark::DoNotOptimize(fixture->backEnd().getPosition());
        v += 1e-6;
    }
}
BENCHMARK(BM_positionWriteAndRead);

QString mda(int step)
{
    const QString body = QStringLiteral("$WIMDA,29.92,I,%1,B,,,,,,,,,,,,,,,,").arg(1.0 + step / 100000.0, 0, 'f', 5);
    return body + QLatin1Char('*') + Nmea0183::computeChecksum(body.toLatin1()) + QStringLiteral("\r\n");
}

void BM_serialLineToLogRow(benchmark::State& state)
{
    fill();
    NmeaMessageType type = Mda;
    int step = 0;
    for (auto _ : state) {
        Clock::setFixedSecsSinceEpoch(second += 2);
        QString buffer = mda(step++ % 500);
        for (const QString& line : NmeaSource::takeCompleteLines(buffer)) {
            const QByteArray sentence = line.toUtf8();
            if (receiver->checkMessage(sentence, &type))
                receiver->decode(sentence, type, Serial);
        }
        fixture->backEnd().slot_timerData();
    }
    if (fixture->backEnd().getCurrentPressure() < 1000.0)
        state.SkipWithError("no reading reached the store");
}
BENCHMARK(BM_serialLineToLogRow)->Unit(benchmark::kMicrosecond);

} // namespace

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    qInstallMessageHandler(quiet);
    Clock::setFixedSecsSinceEpoch(second);
    LogFixture log;
    fixture = &log;
    NmeaReceiver nmeaReceiver;
    nmeaReceiver.slot_startReceiving();
    receiver = &nmeaReceiver;
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    receiver = nullptr;
    fixture = nullptr;
    return 0;
}
