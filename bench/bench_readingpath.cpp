// SPDX-License-Identifier: GPL-3.0-or-later
// A reading's road from the serial source's line to the log row: the line cut from the
// bytes, checked and decoded into the readings store, then the tick that takes it, writes
// the 2-second table and tells the pages. Without the port's own read, which the system
// times, not this program.

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

QString mda(int hundredths)
{
    const QString body = QStringLiteral("$WIMDA,29.92,I,%1,B,,,,,,,,,,,,,,,,").arg(1.0 + hundredths / 100000.0, 0, 'f', 5);
    return body + QLatin1Char('*') + Nmea0183::computeChecksum(body.toLatin1()) + QStringLiteral("\r\n");
}

// Full tables, as after days of running, so that retention has rows to look through.
void fill()
{
    const QList<int> intervals = fixture->log().getTableIntervals();
    for (int t = 0; t < DataSource::TableCount; ++t) {
        const QString name = fixture->log().getTableNames()[t];
        fixture->exec(QStringLiteral("DELETE FROM %1").arg(name));
        fixture->exec(QStringLiteral("BEGIN"));
        for (int i = 1800; i > 0; --i) {
            fixture->exec(QStringLiteral("INSERT INTO %1 VALUES (%2, 1, 2, 3, 4, 1013, 0, 0)")
                                  .arg(name)
                                  .arg(second - qint64(i) * intervals[t]));
        }
        fixture->exec(QStringLiteral("COMMIT"));
    }
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
