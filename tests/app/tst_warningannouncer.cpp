// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/AlarmSound.h"
#include "app/BackEnd.h"
#include "app/DesktopNotifier.h"
#include "app/WarningAnnouncer.h"
#include "log/PressureWarning.h"
#include "tests/support/MessageLog.h"
#include "tests/support/NotificationService.h"
#include "tests/support/TestDataFolder.h"

#include <QtCore/QDataStream>
#include <QtTest/QtTest>

#include <optional>

// What the navigator gets from the pressure-fall warning: the desktop notification, through
// a stand-in service on a private session bus, and the alarm's sound.
class TestWarningAnnouncer : public QObject
{
    Q_OBJECT

private:
    static constexpr qint64 Since = 1793887402;

private slots:
    void soundIsAShortWavOfTwoTones()
    {
        const QByteArray wav = AlarmSound::synthesise();
        QVERIFY(wav.startsWith("RIFF"));
        QCOMPARE(wav.mid(8, 8), QByteArray("WAVEfmt "));
        QDataStream in(wav);
        in.setByteOrder(QDataStream::LittleEndian);
        quint32 riffSize = 0, fmtSize = 0, rate = 0, byteRate = 0, dataSize = 0;
        quint16 format = 0, channels = 0, align = 0, bits = 0;
        in.skipRawData(4);
        in >> riffSize;
        in.skipRawData(8);
        in >> fmtSize >> format >> channels >> rate >> byteRate >> align >> bits;
        in.skipRawData(4);
        in >> dataSize;
        QCOMPARE(riffSize, quint32(wav.size() - 8));
        QCOMPARE(format, quint16(1));
        QCOMPARE(channels, quint16(1));
        QCOMPARE(rate, quint32(22050));
        QCOMPARE(bits, quint16(16));
        // Three pairs of 0.18 s tones.
        QCOMPARE(dataSize, quint32(6 * int(22050 * 0.18) * 2));
        QCOMPARE(int(dataSize), wav.size() - 44);
    }

    void alarmSoundsUntilAcknowledged()
    {
        AlarmSound sound;
        int plays = 0;
        sound.setPlayer([&] { ++plays; });
        sound.setRepeatMs(50);
        sound.follow(PressureWarning::Warning, false);
        QCOMPARE(plays, 0);
        QVERIFY(!sound.isSounding());
        sound.follow(PressureWarning::Alarm, false);
        QCOMPARE(plays, 1);
        QTRY_VERIFY(plays >= 3);
        sound.follow(PressureWarning::Alarm, true);
        QVERIFY(!sound.isSounding());
        const int heard = plays;
        QTest::qWait(200);
        QCOMPARE(plays, heard);
    }

    void notificationAtEachNewLevelAndSoundWithTheAlarm()
    {
        PrivateSessionBus bus;
        QVERIFY2(bus.isRunning(), "dbus-daemon could not start a private bus");
        NotificationService service;
        QVERIFY(service.registerOn(bus.connect(QStringLiteral("service"))));
        DesktopNotifier notifier(bus.connect(QStringLiteral("client")));
        QVERIFY(notifier.isAvailable());
        AlarmSound sound;
        int plays = 0;
        sound.setPlayer([&] { ++plays; });
        PressureWarning warning;
        WarningAnnouncer announcer(warning, notifier, sound);

        warning.evaluate(4.0, 1.0, Since);
        QCOMPARE(service.shown().size(), 1);
        const NotificationService::Shown first = service.shown().at(0);
        QCOMPARE(first.appName, QStringLiteral("Brinholt"));
        QCOMPARE(first.summary, QStringLiteral("Pressure falling quickly"));
        QVERIFY2(first.body.startsWith(QStringLiteral("Fall of 4.0 hPa in three hours and 1.0 hPa in the last hour")),
                 qPrintable(first.body));
        QCOMPARE(first.hints.value(QStringLiteral("urgency")).toInt(), 1);
        QCOMPARE(plays, 0);

        warning.evaluate(6.5, 1.0, Since + 12);
        QCOMPARE(service.shown().size(), 2);
        const NotificationService::Shown second = service.shown().at(1);
        QCOMPARE(second.summary, QStringLiteral("Pressure falling very rapidly"));
        QCOMPARE(second.hints.value(QStringLiteral("urgency")).toInt(), 2);
        // The alarm replaces the warning's notification instead of adding one.
        QCOMPARE(second.replacesId, 1u);
        QCOMPARE(plays, 1);
        QVERIFY(sound.isSounding());

        warning.acknowledge();
        QVERIFY(!sound.isSounding());
        // The same level again is no news.
        warning.evaluate(6.5, 1.0, Since + 24);
        QCOMPARE(service.shown().size(), 2);

        warning.evaluate(0.0, 0.0, Since + 36);
        QCOMPARE(service.closed(), QList<uint>{1u});
    }

    void withoutAServiceNothingIsShownOrLogged()
    {
        PrivateSessionBus bus;
        QVERIFY(bus.isRunning());
        MessageLog messages;
        DesktopNotifier notifier(bus.connect(QStringLiteral("lonely")));
        QVERIFY(!notifier.isAvailable());
        QVERIFY(!notifier.notify(QStringLiteral("a"), QStringLiteral("b"), true));
        notifier.withdraw();
        QCOMPARE(messages.messages(), QStringList());
    }

    void eachChangeIsHandedToTheUdpOutput()
    {
        TestDataFolder folder;
        BackEnd settingsOnly{BackEnd::SettingsOnly()};
        DesktopNotifier notifier(QDBusConnection(QStringLiteral("none")));
        AlarmSound sound;
        sound.setPlayer([] {});
        PressureWarning warning;
        WarningAnnouncer announcer(warning, notifier, sound);
        QCOMPARE(backend->getWarningState(), WarningState());

        warning.evaluate(7.0, std::nullopt, Since);
        QCOMPARE(backend->getWarningState(), (WarningState{2, false, Since}));
        warning.acknowledge();
        QCOMPARE(backend->getWarningState(), (WarningState{2, true, Since}));
        warning.evaluate(0.0, 0.0, Since + 600);
        QCOMPARE(backend->getWarningState(), (WarningState{0, false, Since + 600}));
        backend = nullptr;
    }
};

QTEST_GUILESS_MAIN(TestWarningAnnouncer)
#include "tst_warningannouncer.moc"
