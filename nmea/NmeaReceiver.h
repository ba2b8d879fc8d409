// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once


#include "nmea/ConnectionStatus.h"
#include "nmea/NmeaMessageType.h"
#include "nmea/NmeaSourceType.h"
#include "util/WarningState.h"

#include <QtCore/QByteArray>
#include <QtCore/QList>
#include <QtCore/QObject>
#include <QtCore/QSemaphore>

#include <atomic>
#include <memory>

class Nmea0183;
class NmeaSenderUdp;
class NmeaSource;
class ReceiverHost;
class QTimer;
class SentenceTimes;

// Everything of NMEA input that runs on the worker thread: the codec, the sources made
// from the connection settings, and the UDP output. A change of settings throws the whole
// receiver away and makes a new one.
class NmeaReceiver : public QObject
{
    Q_OBJECT

public:
    NmeaReceiver();
    ~NmeaReceiver() override;

    void startReceiving();
    void quitThread();
    void stopReceiving();
    bool checkMessage(const QByteArray& sentence, NmeaMessageType* type);
    void decode(const QByteArray& sentence, const NmeaMessageType& type, const NmeaSourceType& source);

    // For inspection on the receiver's own thread.
    Nmea0183* getNmea() const { return nmea; }
    QList<NmeaSource*> getSources() const { return sources; }
    QTimer* getTimerSend() const { return timerSend; }
    NmeaSenderUdp* getSender() const { return sender; }

    // Where the sources note their accepted sentences. Set before the thread starts.
    void setSentenceTimes(std::shared_ptr<SentenceTimes> times) { sentenceTimes = std::move(times); }
    // A source accepted a sentence: one relaxed store, nothing more on the reading path.
    void noteSentence(NmeaSourceType source);
    // Tells whoever follows this receiver what a connection does now, from the time of the
    // call on.
    void publishStatus(ConnectionStatus status);

    // Milliseconds by which TCP and UDP start behind a serial source. Tests shorten it.
    static int delayBehindSerialMs() { return delayBehindSerial.load(std::memory_order_relaxed); }
    static void setDelayBehindSerialMs(int ms) { delayBehindSerial.store(ms, std::memory_order_relaxed); }

signals:
    void finished();
    // Emitted on the worker thread at each change of a connection's state.
    void statusChanged(const ConnectionStatus& status);

public slots:
    void slot_startReceiving();
    void slot_sendUdp();

private slots:
    // quitThread's stop, run where the sources live.
    void slot_stopOnOwnThread();

private:
    void publishDelayed(ConnectionStatus::Channel channel, const QString& where, int port, int delayMs);
    // The output's address count, at its start and after each new scan.
    void publishOutput();
    // ALR for the pressure-fall warning, from the output tick.
    void sendAlarmIfDue(ReceiverHost& host, int port);
    // How quitThread and the worker thread take turns when the main thread ends it.
    struct QuitHandshake
    {
        QSemaphore stopped;
        QSemaphore emitted;
    };

    Nmea0183* nmea = nullptr;
    QList<NmeaSource*> sources;
    QTimer* timerSend = nullptr;
    NmeaSenderUdp* sender = nullptr;
    // The warning as the last ALR told it, and the output ticks since.
    WarningState alrSent;
    int ticksSinceAlr = 0;
    std::shared_ptr<QuitHandshake> quitHandshake;
    std::shared_ptr<SentenceTimes> sentenceTimes;

    static std::atomic<int> delayBehindSerial;
};
