// SPDX-License-Identifier: GPL-3.0-or-later
#include "ReaderFixture.h"

#include "app/BackEnd.h"
#include "log/Barogram.h"
#include "log/DataSource.h"
#include "log/TendencyReport.h"

#include <QtCore/QDateTime>
#include <QtCore/QFile>
#include <QtCore/QMap>
#include <QtCore/QPair>
#include <QtCore/QPointF>
#include <QtCore/QTextStream>
#include <QtCore/QTranslator>
#include <QtCore/QVector>
#include <QtTest/QtTest>

namespace {
constexpr qint64 Now = ReaderFixture::ExampleTime;
constexpr int Baro3h = 1;

// The hourly sea-level pressure of buoy 44005 by the time of its observation.
QMap<qint64, double> buoyObservations()
{
    QMap<qint64, double> observations;
    QFile file(QStringLiteral(BRINHOLT_SOURCE_DIR "/../shared/data/buoy_44005_2012_H1.txt"));
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text))
        return observations;
    QTextStream in(&file);
    while (!in.atEnd()) {
        const QStringList fields = in.readLine().split(QLatin1Char(' '), Qt::SkipEmptyParts);
        bool dated = false;
        const int year = fields.value(0).toInt(&dated);
        const double pressure = fields.value(12).toDouble();
        // The heading has no year; a missing reading is written as nines.
        if (!dated || fields.size() < 13 || pressure > 9000.0)
            continue;
        const QDateTime when(QDate(year, fields.at(1).toInt(), fields.at(2).toInt()),
                             QTime(fields.at(3).toInt(), fields.at(4).toInt()), Qt::UTC);
        observations.insert(when.toSecsSinceEpoch(), pressure);
    }
    return observations;
}

qint64 utc(int month, int day, int hour, int minute)
{
    return QDateTime(QDate(2012, month, day), QTime(hour, minute), Qt::UTC).toSecsSinceEpoch();
}
}

// The report the pages and the barogram show: the words with the figure in the user's unit,
// the characteristic, and the rule-of-thumb forecast, judged at each logged reading.
class TestTendencyReport : public QObject
{
    Q_OBJECT

private:
    // The log three hours back and half way, as in a storm's first hours (1007.0 and 1005.5)
    // unless told otherwise, then the firing at `Now` that writes BARO30M and BARO3H, as the
    // tick does every twelve seconds, and judges them.
    static TendencyReport& judge(ReaderFixture& fx, double now = 1002.9, const QPointF& position = QPointF(),
                                 const QVector<QPair<qint64, double>>& rows = {{10800, 1007.0}, {5400, 1005.5}})
    {
        for (const auto& aged : rows) {
            LogRow row;
            row.time = Now - aged.first;
            row.pre = aged.second;
            fx.insert(Baro3h, row);
        }
        fx.setClock(Now);
        fx.setPressure(now);
        if (!fx.log().addData(6, position.x(), position.y(), 0.0, 0.0, now))
            qFatal("no row written");
        return *fx.log().getTendency();
    }

private slots:
    void freshLogSaysNothing()
    {
        ReaderFixture fx;
        TendencyReport& report = *fx.log().getTendency();
        QSignalSpy evaluated(&report, &TendencyReport::evaluated);
        fx.setSetting(QStringLiteral("forecastOn"), 1);
        fx.setSetting(QStringLiteral("forecastHemisphere"), 1);
        judge(fx, 1002.9, QPointF(), {});
        QCOMPARE(evaluated.count(), 1);
        QVERIFY(report.getWords().isEmpty());
        QCOMPARE(report.getCharacteristic(), -1);
        QVERIFY(report.getCharacteristicText().isEmpty());
        QVERIFY(report.getForecast().isEmpty());
    }

    void wordsAndCharacteristicFromTheRows()
    {
        ReaderFixture fx;
        // Raw readings on both sides: offset and elevation can't pass for weather.
        fx.setSetting(QStringLiteral("offset"), 20.0);
        fx.setSetting(QStringLiteral("elevation"), 1000.0);
        TendencyReport& report = judge(fx);
        // -4.1 in all; -1.5, then -2.6: the second half 1.1 faster.
        QCOMPARE(report.getWords(), QStringLiteral("falling quickly, -4.1 mb in 3 h"));
        QCOMPARE(report.getCharacteristic(), 8);
        QCOMPARE(report.getCharacteristicText(), QStringLiteral("characteristic 8: falling, then falling more quickly"));
        // Off unless asked for.
        QVERIFY(report.getForecast().isEmpty());
    }

    void theFigureInTheChosenUnit_data()
    {
        QTest::addColumn<int>("unit");
        QTest::addColumn<double>("now");
        QTest::addColumn<QString>("expected");
        QTest::newRow("mb") << 0 << 1002.9 << "falling quickly, -4.1 mb in 3 h";
        QTest::newRow("hPa") << 1 << 1002.9 << "falling quickly, -4.1 hPa in 3 h";
        QTest::newRow("kPa") << 2 << 1002.9 << "falling quickly, -0.41 kPa in 3 h";
        QTest::newRow("inHg") << 3 << 1002.9 << "falling quickly, -0.12 inHg in 3 h";
        QTest::newRow("mmHg") << 4 << 1002.9 << "falling quickly, -3.1 mmHg in 3 h";
        QTest::newRow("a rise has its sign") << 1 << 1009.0 << "rising, +2.0 hPa in 3 h";
        QTest::newRow("no change has none") << 1 << 1007.0 << "steady, 0.0 hPa in 3 h";
    }

    void theFigureInTheChosenUnit()
    {
        QFETCH(int, unit);
        QFETCH(double, now);
        QFETCH(QString, expected);
        ReaderFixture fx;
        fx.setSetting(QStringLiteral("unitPre"), unit);
        QCOMPARE(judge(fx, now, QPointF(), {{10800, 1007.0}}).getWords(), expected);
    }

    void aGapHalfWayLeavesTheWordsAlone()
    {
        ReaderFixture fx;
        TendencyReport& report = judge(fx, 1002.9, QPointF(), {{10800, 1007.0}, {5431, 1005.5}});
        QCOMPARE(report.getWords(), QStringLiteral("falling quickly, -4.1 mb in 3 h"));
        QCOMPARE(report.getCharacteristic(), -1);
        QVERIFY(report.getCharacteristicText().isEmpty());
    }

    void theLinesInFrench()
    {
        ReaderFixture fx;
        fx.setSetting(QStringLiteral("forecastOn"), 1);
        fx.setSetting(QStringLiteral("forecastHemisphere"), 1);
        QTranslator french;
        QVERIFY(french.load(QStringLiteral(BRINHOLT_BINARY_DIR "/Brinholt_fr_FR.qm")));
        QCoreApplication::installTranslator(&french);
        TendencyReport& report = judge(fx);
        const QString words = report.getWords();
        const QString characteristic = report.getCharacteristicText();
        const QString forecast = report.getForecast();
        QCoreApplication::removeTranslator(&french);
        QCOMPARE(words, QString::fromUtf8("en baisse rapide, -4.1 mb en 3 h"));
        QCOMPARE(characteristic, QString::fromUtf8("caractéristique 8 : en baisse, puis baisse plus rapide"));
        QCOMPARE(forecast, QString::fromUtf8("Règle empirique des latitudes tempérées : Pluie occasionnelle, se dégradant"));
    }

    // 1002.9 hPa falling on 5 November: band 11 of the falling window, U, in the northern
    // winter; in the southern summer the dial reads 995.9, band 10, V.
    void theForecastWhereItHolds_data()
    {
        QTest::addColumn<int>("hemisphere");
        QTest::addColumn<double>("lat");
        QTest::addColumn<QString>("expected");
        const QString u = QStringLiteral("Rule of thumb for temperate latitudes: Occasional rain, worsening");
        const QString v = QStringLiteral("Rule of thumb for temperate latitudes: Rain at times, very unsettled");
        QTest::newRow("from the fix, none") << 0 << 0.0 << QString();
        QTest::newRow("from the fix at 50 N") << 0 << 50.0 << u;
        QTest::newRow("from the fix at 40 S") << 0 << -40.0 << v;
        QTest::newRow("from the fix at 10 N: the tropics") << 0 << 10.0 << QString();
        QTest::newRow("north, no fix") << 1 << 0.0 << u;
        QTest::newRow("south, no fix") << 2 << 0.0 << v;
        QTest::newRow("south, fix at 23.4 S: the tropics") << 2 << -23.4 << QString();
    }

    void theForecastWhereItHolds()
    {
        QFETCH(int, hemisphere);
        QFETCH(double, lat);
        QFETCH(QString, expected);
        ReaderFixture fx;
        fx.setSetting(QStringLiteral("forecastOn"), 1);
        fx.setSetting(QStringLiteral("forecastHemisphere"), hemisphere);
        QCOMPARE(judge(fx, 1002.9, QPointF(lat == 0.0 ? 0.0 : -30.0, lat)).getForecast(), expected);
    }

    void theForecastReadsTheSeaLevelPressure()
    {
        ReaderFixture fx;
        fx.setSetting(QStringLiteral("forecastOn"), 1);
        fx.setSetting(QStringLiteral("forecastHemisphere"), 1);
        // 100 m up: 1002.9 at the station is 1014.9 at sea level, band 14, H.
        fx.setSetting(QStringLiteral("elevation"), 100.0);
        QCOMPARE(judge(fx).getForecast(),
                 QStringLiteral("Rule of thumb for temperate latitudes: Fairly fine, showery later"));
    }

    void theLastFixMayBeDaysOld()
    {
        ReaderFixture fx;
        fx.setSetting(QStringLiteral("forecastOn"), 1);
        LogRow old;
        old.time = Now - 5 * 86400;
        old.lat = -40.0;
        old.lon = 175.0;
        fx.insert(8, old);
        QCOMPARE(judge(fx).getForecast(),
                 QStringLiteral("Rule of thumb for temperate latitudes: Rain at times, very unsettled"));
    }

    void theBarogramTitleBlockNamesTheCharacteristic()
    {
        ReaderFixture fx;
        judge(fx);
        const QStringList facts = Barogram(fx.log(), Baro3h).facts();
        QVERIFY2(facts.contains(QStringLiteral("Characteristic 8: falling, then falling more quickly")),
                 qPrintable(facts.join(QLatin1Char('|'))));
        QVERIFY2(facts.contains(QStringLiteral("Tendency -4.1 mb / 3h")), qPrintable(facts.join(QLatin1Char('|'))));
    }

    // The buoy's storms through the log, the firings every half hour on the observations'
    // own minutes. Half way is the mean of the two observations around it. Worked by hand:
    // 12 Jan 15:50: 1014.9 (12:50), (1013.8 + 1012.0) / 2 = 1012.9 (14:20), 1009.4: -5.5;
    //   -2.0 then -3.5, 1.5 faster.
    // 12 Jan 18:50: 1009.4, (1005.9 + 1003.5) / 2 = 1004.7, 1000.9: -8.5; -4.7 then -3.8,
    //   0.9 slower.
    // 12 Jan 19:50: 1005.9, (1003.5 + 1000.9) / 2 = 1002.2, 998.8: -7.1; -3.7 then -3.4.
    // 13 Jan 02:50: 995.4, (995.1 + 995.1) / 2 = 995.1, 995.4: 0.0; -0.3 then +0.3.
    // 13 Jan 05:50: 995.4, (995.9 + 997.9) / 2 = 996.9, 999.0: +3.6; +1.5 then +2.1.
    // 13 Jan 20:50: 987.1, (985.7 + 985.9) / 2 = 985.8, 986.7: -0.4; -1.3 then +0.9.
    // 4 Jan 15:50: 1015.3, (1016.0 + 1015.8) / 2 = 1015.9, 1015.4: +0.1; +0.6 then -0.5.
    // 24 Feb 00:50: 997.3, (998.7 + 1001.1) / 2 = 999.9, 1002.7: +5.4; +2.6 then +2.8.
    // 24 Feb 01:50: 998.7, (1001.1 + 1002.7) / 2 = 1001.9, 1003.6: +4.9; +3.2 then +1.7.
    void buoyStormsThroughTheLog_data()
    {
        QTest::addColumn<qint64>("at");
        QTest::addColumn<QString>("words");
        QTest::addColumn<int>("code");
        QTest::newRow("12 Jan 15:50") << utc(1, 12, 15, 50) << "falling quickly, -5.5 mb in 3 h" << 8;
        QTest::newRow("12 Jan 18:50") << utc(1, 12, 18, 50) << "falling very rapidly, -8.5 mb in 3 h" << 6;
        QTest::newRow("12 Jan 19:50") << utc(1, 12, 19, 50) << "falling very rapidly, -7.1 mb in 3 h" << 7;
        QTest::newRow("13 Jan 02:50") << utc(1, 13, 2, 50) << "steady, 0.0 mb in 3 h" << 5;
        QTest::newRow("13 Jan 05:50") << utc(1, 13, 5, 50) << "rising quickly, +3.6 mb in 3 h" << 3;
        QTest::newRow("13 Jan 20:50") << utc(1, 13, 20, 50) << "now rising, -0.4 mb in 3 h" << 5;
        QTest::newRow("4 Jan 15:50") << utc(1, 4, 15, 50) << "now falling, +0.1 mb in 3 h" << 0;
        QTest::newRow("24 Feb 00:50") << utc(2, 24, 0, 50) << "rising quickly, +5.4 mb in 3 h" << 2;
        QTest::newRow("24 Feb 01:50") << utc(2, 24, 1, 50) << "rising quickly, +4.9 mb in 3 h" << 1;
    }

    void buoyStormsThroughTheLog()
    {
        QFETCH(qint64, at);
        QFETCH(QString, words);
        QFETCH(int, code);
        const QMap<qint64, double> buoy = buoyObservations();
        QVERIFY(buoy.size() > 4000);
        ReaderFixture fx;
        for (qint64 t = at - 10800; t <= at; t += 1800) {
            const bool observed = buoy.contains(t);
            QVERIFY(observed || (buoy.contains(t - 1800) && buoy.contains(t + 1800)));
            const double pressure = observed ? buoy.value(t) : (buoy.value(t - 1800) + buoy.value(t + 1800)) / 2.0;
            fx.setClock(t);
            fx.setPressure(pressure);
            QVERIFY(fx.log().addData(6, 0.0, 0.0, 0.0, 0.0, pressure));
        }
        QCOMPARE(fx.log().getTendency()->getWords(), words);
        QCOMPARE(fx.log().getTendency()->getCharacteristic(), code);
    }
};

QTEST_GUILESS_MAIN(TestTendencyReport)
#include "tst_tendencyreport.moc"
