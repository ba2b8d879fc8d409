// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Helpers shared by the NMEA input tests: a BackEnd in a fresh data folder with chosen
// settings, loopback ports, and running code on the receiver's own thread.

#include "app/BackEnd.h"
#include "nmea/NmeaReceiver.h"
#include "nmea/NmeaSource.h"
#include "util/SanitizerSync.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QElapsedTimer>
#include <QtCore/QFile>
#include <QtCore/QMetaObject>
#include <QtCore/QPointer>
#include <QtCore/QSettings>
#include <QtCore/QThread>
#include <QtCore/QVariantMap>
#include <QtNetwork/QTcpServer>
#include <QtNetwork/QUdpSocket>
#include <QtTest/QTest>

#include <functional>
#include <malloc.h>
#include <memory>

namespace NmeaTestKit {

// Settings that make no receiver at all; a test adds what it needs on top.
inline QVariantMap quietSettings()
{
    return {{QStringLiteral("SettingSerialPort"), QStringLiteral("None")},
            {QStringLiteral("SettingUseSerial"), 0},
            {QStringLiteral("SettingUseTcp"), 0},
            {QStringLiteral("SettingUseUdp"), 0},
            {QStringLiteral("SettingUseUdpOut"), 0}};
}

// The quiet settings with `extra` on top.
inline QVariantMap quietSettingsWith(const QVariantMap& extra)
{
    QVariantMap values = quietSettings();
    for (auto it = extra.cbegin(); it != extra.cend(); ++it)
        values.insert(it.key(), it.value());
    return values;
}

// Writes brinholt.ini in the working directory before a BackEnd reads it.
inline void writeIni(const QVariantMap& values)
{
    QSettings ini(QStringLiteral("./brinholt.ini"), QSettings::IniFormat);
    for (auto it = values.cbegin(); it != values.cend(); ++it)
        ini.setValue(it.key(), it.value());
    ini.sync();
}

inline void applySettings(BackEnd& b, const QVariantMap& values)
{
    for (auto it = values.cbegin(); it != values.cend(); ++it)
        b.setSetting(it.key(), it.value());
}

// Starts the receiver with the serial source alone, on `path`.
inline void startSerial(BackEnd& b, const QString& path)
{
    b.setSetting(QStringLiteral("SettingSerialPort"), path);
    b.setSetting(QStringLiteral("SettingUseSerial"), 1);
    b.startNmea();
}

// Runs `f` on the thread the receiver lives on and returns its result.
template <typename F>
auto onReceiverThread(NmeaReceiver* receiver, F f) -> decltype(f())
{
    if (receiver->thread() == QThread::currentThread())
        return f();
    // The blocking call orders the two threads, but inside Qt, where a sanitizer cannot
    // see it; the call itself carries no data of ours, so that the marks cover all of it.
    static std::function<void()> job;
    static const char handOff = 0;
    decltype(f()) result{};
    job = [&] { result = f(); };
    SanitizerSync::release(&handOff);
    QMetaObject::invokeMethod(
            receiver,
            [] {
                SanitizerSync::acquire(&handOff);
                job();
                SanitizerSync::release(&handOff);
            },
            Qt::BlockingQueuedConnection);
    SanitizerSync::acquire(&handOff);
    return result;
}

// Ends the running receiver the way the application does, and waits for its thread to go,
// so that nothing of it outlives the BackEnd of the test.
inline bool stopNmea(BackEnd& b)
{
    NmeaReceiver* receiver = b.getReceiver();
    applySettings(b, quietSettings());
    if (!receiver) {
        b.startNmea();
        return true;
    }
    QPointer<QThread> thread = receiver->thread();
    b.startNmea();
    QElapsedTimer timer;
    timer.start();
    while (!thread.isNull() && timer.elapsed() < 10000) {
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
    }
    return thread.isNull();
}

// A port on loopback that is free now.
inline quint16 freeUdpPort()
{
    QUdpSocket probe;
    probe.bind(QHostAddress(QHostAddress::LocalHost), 0);
    return probe.localPort();
}

inline quint16 freeTcpPort()
{
    QTcpServer probe;
    probe.listen(QHostAddress::LocalHost, 0);
    return probe.serverPort();
}

inline void sendDatagram(const QByteArray& bytes, quint16 port)
{
    QUdpSocket sender;
    sender.writeDatagram(bytes, QHostAddress::LocalHost, port);
}

// Restores the retry interval and start delay after a test shortened them.
struct FastTimers
{
    FastTimers(int retryMs, int delayBehindSerialMs)
    {
        NmeaSource::setRetryIntervalMs(retryMs);
        NmeaReceiver::setDelayBehindSerialMs(delayBehindSerialMs);
    }
    ~FastTimers()
    {
        NmeaSource::setRetryIntervalMs(10000);
        NmeaReceiver::setDelayBehindSerialMs(5000);
    }
};

// Resident memory of this process in kB, from the kernel's own count. Freed memory that
// the allocator keeps for reuse after a large transient block is handed back first, so
// that what is counted is what is held.
inline qint64 residentKb()
{
    malloc_trim(0);
    QFile status(QStringLiteral("/proc/self/status"));
    if (!status.open(QIODevice::ReadOnly))
        return -1;
    for (const QByteArray& line : status.readAll().split('\n')) {
        if (line.startsWith("VmRSS:"))
            return line.mid(6).trimmed().split(' ').value(0).toLongLong();
    }
    return -1;
}

// `block` bytes with no line end among them, as a device on the wrong speed sends.
inline QByteArray noLineEndBlock(int block)
{
    QByteArray bytes(block, 'x');
    for (int i = 0; i < block; i += 7)
        bytes[i] = char('A' + i % 26);
    return bytes;
}

// Sends twenty megabytes without a line end, a block at a time through `send`, and checks
// that the unfinished line `held` never passes its bound and that the process does not
// grow by the text: kept whole, the 20 MB would be 40 MB of text; under half of that
// leaves room for what the allocator holds on to after the large reads of a loaded
// machine.
inline void sendTwentyMegabytesWithoutLineEnd(const std::function<bool(const QByteArray&)>& send,
                                              const std::function<int()>& held)
{
    const QByteArray block = noLineEndBlock(64 * 1024);
    const qint64 before = residentKb();
    int longest = 0;
    for (int sent = 0; sent < 20 * 1024 * 1024; sent += block.size()) {
        QVERIFY(send(block));
        longest = qMax(longest, held());
    }
    QTRY_VERIFY(held() == NmeaSource::MaxUnfinishedLine);
    const qint64 grown = residentKb() - before;
    QVERIFY2(longest <= NmeaSource::MaxUnfinishedLine, qPrintable(QString::number(longest)));
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    // The address sanitizer keeps freed blocks in quarantine and the thread sanitizer keeps
    // shadow memory of every block touched, so resident memory measures them, not the
    // buffer; the buffer's own bound is checked above.
    Q_UNUSED(grown)
#else
    QVERIFY2(grown < 20 * 1024, qPrintable(QStringLiteral("grew %1 kB").arg(grown)));
#endif
}

} // namespace NmeaTestKit
