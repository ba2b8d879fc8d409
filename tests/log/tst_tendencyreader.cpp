// SPDX-License-Identifier: GPL-3.0-or-later
#include "ReaderFixture.h"

#include "log/TendencyReader.h"

#include <QtTest/QtTest>

// What the tendency's words, characteristic and forecast are read from: the rows of BARO3H
// three hours and an hour and a half back, and the newest position in the log.
class TestTendencyReader : public QObject
{
    Q_OBJECT

private:
    static constexpr qint64 Now = ReaderFixture::ExampleTime;
    static constexpr int Baro30m = 0;
    static constexpr int Baro3h = 1;
    static constexpr int Bar16d = 8;

    static void putRow(ReaderFixture& fx, int table, qint64 time, double pre, double lat = 0.0, double lon = 0.0)
    {
        LogRow row;
        row.time = time;
        row.pre = pre;
        row.lat = lat;
        row.lon = lon;
        // Never read: the points are raw readings.
        row.ofs = 30.0;
        fx.insert(table, row);
    }

private slots:
    void pointsFromTheRowsNearestTheirAges()
    {
        ReaderFixture fx;
        // Rows every twelve seconds around both ages: the nearest one of each is taken.
        for (qint64 t = Now - 10812; t <= Now - 10788; t += 12)
            putRow(fx, Baro3h, t, 1000.0 + (Now - t) / 1000.0);
        for (qint64 t = Now - 5412; t <= Now - 5388; t += 12)
            putRow(fx, Baro3h, t, 990.0 + (Now - t) / 1000.0);
        const auto points = TendencyReader(ReaderFixture::connection()).read(Now, 1003.25);
        QVERIFY(points);
        QCOMPARE(points->start, 1010.8);
        QVERIFY(points->middle);
        QCOMPARE(*points->middle, 995.4);
        QCOMPARE(points->end, 1003.25);
    }

    void eachRowWithinThirtySecondsOfItsAge_data()
    {
        QTest::addColumn<qint64>("startAge");
        QTest::addColumn<qint64>("middleAge");
        QTest::addColumn<bool>("start");
        QTest::addColumn<bool>("middle");
        QTest::newRow("both exact") << qint64(10800) << qint64(5400) << true << true;
        QTest::newRow("three hours less 30 s") << qint64(10770) << qint64(5400) << true << true;
        QTest::newRow("three hours less 31 s: nothing") << qint64(10769) << qint64(5400) << false << false;
        QTest::newRow("three hours and 30 s") << qint64(10830) << qint64(5400) << true << true;
        QTest::newRow("three hours and 31 s: nothing") << qint64(10831) << qint64(5400) << false << false;
        QTest::newRow("half way and 30 s") << qint64(10800) << qint64(5430) << true << true;
        QTest::newRow("half way and 31 s: no middle") << qint64(10800) << qint64(5431) << true << false;
        QTest::newRow("half way less 30 s") << qint64(10800) << qint64(5370) << true << true;
        QTest::newRow("half way less 31 s: no middle") << qint64(10800) << qint64(5369) << true << false;
    }

    void eachRowWithinThirtySecondsOfItsAge()
    {
        QFETCH(qint64, startAge);
        QFETCH(qint64, middleAge);
        QFETCH(bool, start);
        QFETCH(bool, middle);
        ReaderFixture fx;
        putRow(fx, Baro3h, Now - startAge, 1009.0);
        putRow(fx, Baro3h, Now - middleAge, 1006.0);
        const auto points = TendencyReader(ReaderFixture::connection()).read(Now, 1003.0);
        QCOMPARE(bool(points), start);
        if (points) {
            QCOMPARE(points->start, 1009.0);
            QCOMPARE(bool(points->middle), middle);
        }
    }

    void freshLogHasNoPoints()
    {
        ReaderFixture fx;
        QVERIFY(!TendencyReader(ReaderFixture::connection()).read(Now, 1003.0));
        QVERIFY(!TendencyReader(ReaderFixture::connection()).latestLatitude());
    }

    void latestLatitudeFromTheNewestPosition()
    {
        ReaderFixture fx;
        const TendencyReader reader(ReaderFixture::connection());
        putRow(fx, Bar16d, Now - 86400, 1010.0, -41.25, 174.75);
        QCOMPARE(*reader.latestLatitude(), -41.25);
        // The thirty-minute table comes first; a row without a position is no fix.
        putRow(fx, Baro30m, Now - 60, 1010.0, 50.5, -4.25);
        putRow(fx, Baro30m, Now, 1010.0);
        QCOMPARE(*reader.latestLatitude(), 50.5);
        // On the equator the longitude alone makes it a fix.
        putRow(fx, Baro30m, Now - 30, 1010.0, 0.0, 12.0);
        QCOMPARE(*reader.latestLatitude(), 0.0);
    }
};

QTEST_GUILESS_MAIN(TestTendencyReader)
#include "tst_tendencyreader.moc"
