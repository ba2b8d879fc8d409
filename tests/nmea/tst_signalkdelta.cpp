// SPDX-License-Identifier: GPL-3.0-or-later
// The Signal K messages: the delta format, the paths and their units, what goes and when,
// and the warning as a notification.
#include "nmea/NmeaSourceType.h"
#include "nmea/SignalKDelta.h"
#include "tests/support/DeltaFormat.h"
#include "util/ShownState.h"

#include <QtCore/QDateTime>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtCore/QTranslator>
#include <QtTest/QtTest>

namespace {

// 10:15 UTC on 12 January 2012, in the storm of the buoy record.
constexpr qint64 Tick = 1326363300000;

ShownState reading(double hPa, int source = Serial)
{
    ShownState s;
    s.sequence = 1;
    s.tickTime = Tick;
    s.readingTime = Tick - 1500;
    s.rawPressure = hPa;
    s.stationPressureHpa = hPa + 1.5;
    s.source = source;
    s.change3h = -4.2;
    s.change1h = -1.3;
    s.trend = -3;
    return s;
}

ShownState warning(int level, bool acknowledged = false)
{
    ShownState s = reading(998.0);
    s.warningLevel = level;
    s.warningAcknowledged = acknowledged;
    s.warningFall3h = 4.2;
    s.warningFall1h = 1.3;
    s.warningSince = Tick / 1000 - 600;
    s.warningText = level == 2 ? QStringLiteral("Pressure falling very rapidly") : QStringLiteral("Pressure falling quickly");
    s.warningDetail = QStringLiteral("Fall of 4.2 hPa in three hours, since 12/01/2012 10:05");
    return s;
}

QJsonObject notification(const QByteArray& message)
{
    return DeltaFormat::find(message, SignalKDelta::NotificationPath).toObject();
}

QStringList methods(const QJsonObject& n)
{
    QStringList out;
    for (const QJsonValue& m : n.value(QStringLiteral("method")).toArray())
        out << m.toString();
    return out;
}

} // namespace

class TestSignalKDelta : public QObject
{
    Q_OBJECT

private slots:
    void metaGivesEveryPathItsUnitsAndDescription()
    {
        const QByteArray meta = SignalKDelta::meta(Tick);
        QVERIFY2(DeltaFormat::problems(meta).isEmpty(), qPrintable(DeltaFormat::problems(meta)));
        for (const QString& path :
             {SignalKDelta::PressurePath, SignalKDelta::ThreeHoursDeltaPath, SignalKDelta::OneHourDeltaPath}) {
            const QJsonObject m = DeltaFormat::find(meta, path, QStringLiteral("meta")).toObject();
            QCOMPARE(m.value(QStringLiteral("units")).toString(), QStringLiteral("Pa"));
            const QJsonObject scale = m.value(QStringLiteral("displayScale")).toObject();
            QVERIFY(scale.value(QStringLiteral("lower")).toDouble() < scale.value(QStringLiteral("upper")).toDouble());
            QVERIFY(!m.value(QStringLiteral("displayName")).toString().isEmpty());
        }
        // Words and classes have no unit; their values are listed instead.
        const QJsonObject tendency = DeltaFormat::find(meta, SignalKDelta::TendencyPath, QStringLiteral("meta")).toObject();
        QVERIFY(!tendency.contains(QStringLiteral("units")));
        QCOMPARE(tendency.value(QStringLiteral("enum")).toArray(),
                 QJsonArray({QStringLiteral("RISING"), QStringLiteral("FALLING")}));
        const QJsonObject trend = DeltaFormat::find(meta, SignalKDelta::TrendClassPath, QStringLiteral("meta")).toObject();
        QCOMPARE(trend.value(QStringLiteral("enum")).toArray().size(), 8);
        QCOMPARE(DeltaFormat::find(meta, SignalKDelta::PressurePath, QStringLiteral("meta"))
                         .toObject()
                         .value(QStringLiteral("timeout"))
                         .toInt(),
                 60);
    }

    void readingGivesEveryValueInSiUnits()
    {
        SignalKDelta delta;
        const QByteArray message = delta.next(reading(1012.3));
        QVERIFY2(DeltaFormat::problems(message).isEmpty(), qPrintable(DeltaFormat::problems(message)));
        // The station pressure with the offset, in pascals, to the tenth.
        QCOMPARE(DeltaFormat::find(message, SignalKDelta::PressurePath).toDouble(), 101380.0);
        QVERIFY(message.contains("\"value\":101380}") || message.contains("\"value\":101380,"));
        QCOMPARE(DeltaFormat::find(message, SignalKDelta::ThreeHoursDeltaPath).toDouble(), -420.0);
        QCOMPARE(DeltaFormat::find(message, SignalKDelta::OneHourDeltaPath).toDouble(), -130.0);
        QCOMPARE(DeltaFormat::find(message, SignalKDelta::TendencyPath).toString(), QStringLiteral("FALLING"));
        QCOMPARE(DeltaFormat::find(message, SignalKDelta::TrendClassPath).toInt(), -3);
        QVERIFY(!message.contains("navigation"));
        const QJsonObject update = QJsonDocument::fromJson(message).object().value(QStringLiteral("updates")).toArray().at(0).toObject();
        QCOMPARE(update.value(QStringLiteral("$source")).toString(), QStringLiteral("brinholt"));
        // The time of the reading, not of the tick.
        QCOMPARE(update.value(QStringLiteral("timestamp")).toString(), QStringLiteral("2012-01-12T10:14:58.500Z"));
        QVERIFY(delta.sentOwnPressure());
        QVERIFY(notification(message).isEmpty());
    }

    void forecastersWordsAndCharacteristicGoWhenKnown()
    {
        SignalKDelta delta;
        const QByteArray meta = SignalKDelta::meta(0);
        QVERIFY(DeltaFormat::find(meta, SignalKDelta::WordsPath, QStringLiteral("meta")).isObject());
        QCOMPARE(DeltaFormat::find(meta, SignalKDelta::CharacteristicPath, QStringLiteral("meta"))
                         .toObject()
                         .value(QStringLiteral("enum"))
                         .toArray()
                         .size(),
                 9);
        ShownState s = reading(1012.3);
        QVERIFY(DeltaFormat::find(delta.next(s), SignalKDelta::WordsPath).isUndefined());
        s.tendencyWords = QStringLiteral("falling quickly, -4.2 mb in 3 h");
        s.characteristic = 8;
        const QByteArray message = delta.next(s);
        QVERIFY2(DeltaFormat::problems(message).isEmpty(), qPrintable(DeltaFormat::problems(message)));
        QCOMPARE(DeltaFormat::find(message, SignalKDelta::WordsPath).toString(), s.tendencyWords);
        QCOMPARE(DeltaFormat::find(message, SignalKDelta::CharacteristicPath).toInt(), 8);
        // Gone with the log's three hours: sent once as null.
        s.tendencyWords.clear();
        s.characteristic = -1;
        QVERIFY(DeltaFormat::find(delta.next(s), SignalKDelta::CharacteristicPath).isNull());
    }

    void risingAndSteadyTendency_data()
    {
        QTest::addColumn<double>("change3h");
        QTest::addColumn<QString>("tendency");
        QTest::newRow("a rise") << 2.0 << "RISING";
        QTest::newRow("no change counts as not falling") << 0.0 << "RISING";
        QTest::newRow("the least fall") << -0.01 << "FALLING";
    }

    void risingAndSteadyTendency()
    {
        QFETCH(double, change3h);
        QFETCH(QString, tendency);
        ShownState s = reading(1012.0);
        s.change3h = change3h;
        SignalKDelta delta;
        QCOMPARE(DeltaFormat::find(delta.next(s), SignalKDelta::TendencyPath).toString(), tendency);
    }

    void pressureOnlyFromTheDeviceOrTheSensor_data()
    {
        QTest::addColumn<int>("source");
        QTest::addColumn<bool>("sent");
        QTest::newRow("internal sensor") << int(Internal) << true;
        QTest::newRow("serial device") << int(Serial) << true;
        QTest::newRow("TCP input") << int(Tcp) << false;
        QTest::newRow("UDP input") << int(Udp) << false;
    }

    void pressureOnlyFromTheDeviceOrTheSensor()
    {
        QFETCH(int, source);
        QFETCH(bool, sent);
        SignalKDelta delta;
        const QByteArray message = delta.next(reading(1012.3, source));
        QCOMPARE(DeltaFormat::find(message, SignalKDelta::PressurePath).isDouble(), sent);
        QCOMPARE(delta.sentOwnPressure(), sent);
        // The tendency and the trend go whatever the source.
        QCOMPARE(DeltaFormat::find(message, SignalKDelta::ThreeHoursDeltaPath).toDouble(), -420.0);
        QCOMPARE(DeltaFormat::find(message, SignalKDelta::TrendClassPath).toInt(), -3);
    }

    void valueThatGoesIsSentOnceAsNull()
    {
        SignalKDelta delta;
        QVERIFY(!delta.next(reading(1012.3)).isEmpty());
        // The device stops and the TCP input takes over: our pressure goes, the rest stays.
        const QByteArray handOver = delta.next(reading(1012.1, Tcp));
        QVERIFY2(DeltaFormat::problems(handOver).isEmpty(), qPrintable(DeltaFormat::problems(handOver)));
        QVERIFY(DeltaFormat::find(handOver, SignalKDelta::PressurePath).isNull());
        QVERIFY(!delta.sentOwnPressure());
        QVERIFY(DeltaFormat::find(delta.next(reading(1012.0, Tcp)), SignalKDelta::PressurePath).isUndefined());

        // No usable reading at all: whatever was told goes once, then nothing is sent.
        ShownState none;
        none.tickTime = Tick + 4000;
        const QByteArray ending = delta.next(none);
        QVERIFY2(DeltaFormat::problems(ending).isEmpty(), qPrintable(DeltaFormat::problems(ending)));
        QVERIFY(DeltaFormat::find(ending, SignalKDelta::ThreeHoursDeltaPath).isNull());
        QVERIFY(DeltaFormat::find(ending, SignalKDelta::TendencyPath).isNull());
        QVERIFY(DeltaFormat::find(ending, SignalKDelta::PressurePath).isUndefined());
        QVERIFY(delta.next(none).isEmpty());
    }

    void unknownChangesAreNotSent()
    {
        ShownState s = reading(1012.3);
        s.change3h = ShownState::Unknown;
        s.change1h = ShownState::Unknown;
        s.trend = -10;
        SignalKDelta delta;
        const QByteArray message = delta.next(s);
        QVERIFY(DeltaFormat::find(message, SignalKDelta::PressurePath).isDouble());
        QVERIFY(DeltaFormat::find(message, SignalKDelta::ThreeHoursDeltaPath).isUndefined());
        QVERIFY(DeltaFormat::find(message, SignalKDelta::TendencyPath).isUndefined());
        QVERIFY(DeltaFormat::find(message, SignalKDelta::TrendClassPath).isUndefined());
    }

    void warningGoesAsANotificationWhileItHolds()
    {
        SignalKDelta delta;
        QVERIFY(notification(delta.next(reading(1000.0))).isEmpty());

        const QByteArray warn = delta.next(warning(1));
        QVERIFY2(DeltaFormat::problems(warn).isEmpty(), qPrintable(DeltaFormat::problems(warn)));
        QCOMPARE(notification(warn).value(QStringLiteral("state")).toString(), QStringLiteral("warn"));
        QCOMPARE(methods(notification(warn)), QStringList{QStringLiteral("visual")});
        QCOMPARE(notification(warn).value(QStringLiteral("message")).toString(),
                 QStringLiteral("Pressure falling quickly. Fall of 4.2 hPa in three hours, since 12/01/2012 10:05"));
        // Repeated while the level holds.
        QCOMPARE(notification(delta.next(warning(1))).value(QStringLiteral("state")).toString(), QStringLiteral("warn"));

        const QByteArray alarm = delta.next(warning(2));
        QCOMPARE(notification(alarm).value(QStringLiteral("state")).toString(), QStringLiteral("alarm"));
        QCOMPARE(methods(notification(alarm)), (QStringList{QStringLiteral("visual"), QStringLiteral("sound")}));
        QVERIFY(notification(alarm).value(QStringLiteral("message")).toString().startsWith(QStringLiteral("Pressure falling very rapidly. ")));
        // Acknowledged in Brinholt: still shown, no longer sounded.
        const QByteArray acknowledged = delta.next(warning(2, true));
        QCOMPARE(notification(acknowledged).value(QStringLiteral("state")).toString(), QStringLiteral("alarm"));
        QCOMPARE(methods(notification(acknowledged)), QStringList{QStringLiteral("visual")});

        // The end is told once.
        const QByteArray end = delta.next(reading(1001.0));
        QVERIFY2(DeltaFormat::problems(end).isEmpty(), qPrintable(DeltaFormat::problems(end)));
        QCOMPARE(notification(end).value(QStringLiteral("state")).toString(), QStringLiteral("normal"));
        QCOMPARE(methods(notification(end)), QStringList());
        QCOMPARE(notification(end).value(QStringLiteral("message")).toString(),
                 QStringLiteral("The pressure-fall warning has ended"));
        QVERIFY(notification(delta.next(reading(1001.0))).isEmpty());
    }

    void notificationIsStampedWithTheTick()
    {
        SignalKDelta delta;
        const QJsonArray updates =
                QJsonDocument::fromJson(delta.next(warning(1))).object().value(QStringLiteral("updates")).toArray();
        QCOMPARE(updates.size(), 2);
        QCOMPARE(updates.at(1).toObject().value(QStringLiteral("timestamp")).toString(),
                 QStringLiteral("2012-01-12T10:15:00.000Z"));
    }

    void endOfTheWarningInFrench()
    {
        QTranslator french;
        QVERIFY(french.load(QStringLiteral(BRINHOLT_BINARY_DIR "/Brinholt_fr_FR.qm")));
        QCoreApplication::installTranslator(&french);
        SignalKDelta delta;
        delta.next(warning(1));
        const QByteArray end = delta.next(reading(1001.0));
        QCoreApplication::removeTranslator(&french);
        QCOMPARE(notification(end).value(QStringLiteral("message")).toString(),
                 QStringLiteral("L'alerte de baisse de pression est terminée"));
    }
};

QTEST_GUILESS_MAIN(TestSignalKDelta)
#include "tst_signalkdelta.moc"
