// SPDX-License-Identifier: GPL-3.0-or-later
// Sentences per second through the codec (checkMessage, then decode into BackEnd) and
// through the line splitting that the transports share.
#include "app/BackEnd.h"
#include "nmea/Nmea0183.h"
#include "nmea/NmeaReceiver.h"
#include "nmea/NmeaSource.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QDir>
#include <QtCore/QSettings>
#include <QtCore/QTemporaryDir>

#include <benchmark/benchmark.h>

namespace {

NmeaReceiver* receiver = nullptr;

const QByteArray XdrSentence = "$WIXDR,P,1.01320,B,Barometer*" + Nmea0183::computeChecksum("$WIXDR,P,1.01320,B,Barometer").toLatin1();
const QByteArray MdaSentence = "$WIMDA,29.92,I,1.0132,B,,,,,,,,,,,,,,,,*6C";
const QByteArray RmcSentence = "$GPRMC,123519,A,4807.038,N,01131.000,E,022.4,084.4,230394,003.1,W*6A";

void checkAndDecode(benchmark::State& state, const QByteArray& sentence)
{
    NmeaMessageType type = Mda;
    for (auto _ : state) {
        if (receiver->checkMessage(sentence, &type))
            receiver->decode(sentence, type, Udp);
        else
            state.SkipWithError("sentence refused");
    }
    state.SetItemsProcessed(state.iterations());
}

void BM_CheckAndDecodeXdr(benchmark::State& state)
{
    checkAndDecode(state, XdrSentence);
}

void BM_CheckAndDecodeMda(benchmark::State& state)
{
    checkAndDecode(state, MdaSentence);
}

void BM_CheckAndDecodeRmc(benchmark::State& state)
{
    checkAndDecode(state, RmcSentence);
}

// 1000 sentences of the three kinds, as one read would bring them.
QString stream()
{
    QString text;
    for (int i = 0; i < 1000; ++i) {
        const QByteArray& sentence = i % 3 == 0 ? XdrSentence : (i % 3 == 1 ? MdaSentence : RmcSentence);
        text += QString::fromLatin1(sentence) + QStringLiteral("\r\n");
    }
    return text;
}

void BM_LineSplitting(benchmark::State& state)
{
    const QString text = stream();
    for (auto _ : state) {
        QString buffer = text;
        const QStringList lines = NmeaSource::takeCompleteLines(buffer);
        benchmark::DoNotOptimize(lines.size());
    }
    state.SetItemsProcessed(state.iterations() * 1000);
}

// The whole road of a network read after the socket: split, check, decode.
void BM_SplitCheckDecode(benchmark::State& state)
{
    const QString text = stream();
    NmeaMessageType type = Mda;
    for (auto _ : state) {
        QString buffer = text;
        const QStringList lines = NmeaSource::takeCompleteLines(buffer);
        for (const QString& line : lines) {
            const QByteArray sentence = line.toUtf8();
            if (receiver->checkMessage(sentence, &type))
                receiver->decode(sentence, type, Tcp);
        }
    }
    state.SetItemsProcessed(state.iterations() * 1000);
}

BENCHMARK(BM_CheckAndDecodeXdr);
BENCHMARK(BM_CheckAndDecodeMda);
BENCHMARK(BM_CheckAndDecodeRmc);
BENCHMARK(BM_LineSplitting);
BENCHMARK(BM_SplitCheckDecode);

void quiet(QtMsgType, const QMessageLogContext&, const QString&)
{
}

} // namespace

int main(int argc, char** argv)
{
    qInstallMessageHandler(quiet);
    QCoreApplication app(argc, argv);
    QTemporaryDir folder;
    QDir::setCurrent(folder.path());
    {
        QSettings ini(QStringLiteral("./brinholt.ini"), QSettings::IniFormat);
        ini.setValue(QStringLiteral("SettingSerialPort"), QStringLiteral("None"));
    }
    BackEnd b;
    NmeaReceiver nmeaReceiver;
    nmeaReceiver.slot_startReceiving();
    receiver = &nmeaReceiver;

    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
