// SPDX-License-Identifier: GPL-3.0-or-later
#include "ReaderFixture.h"

#include "log/DataSource.h"
#include "tests/support/Columns.h"

#include <QtCharts/QLineSeries>
#include <QtTest/QtTest>

#include <cmath>

using QtCharts::QLineSeries;

// What one updateChart says and what update hands to the chart.
struct ChartResult
{
    qint64 now = -1;
    QVariant nowVariant;
    double min = 0.0;
    double max = 0.0;
    int seriesCount = 0;
    int emissions = 0;
    QList<QVector<QPointF>> series;
};

// updateChart of the cursor page's kind: the points are taken with update inside the
// handler of chartUpdated, one real line series per vector.
static ChartResult drawChart(ReaderFixture& fx, int chartNb)
{
    ChartResult result;
    QObject context;
    QObject::connect(&fx.log(), &DataSource::chartUpdated, &context,
                     [&](QVariant now, double min, double max, int seriesCount) {
                         ++result.emissions;
                         result.nowVariant = now;
                         result.now = now.toLongLong();
                         result.min = min;
                         result.max = max;
                         result.seriesCount = seriesCount;
                         for (int n = 0; n < seriesCount; ++n) {
                             QLineSeries line;
                             fx.log().update(&line, n);
                             result.series.append(line.pointsVector());
                         }
                     });
    fx.log().updateChart(chartNb);
    return result;
}

// The rule for a row's shown pressure at sea level.
static double atSeaLevel(double station, double ele)
{
    return station / std::pow(ele * -22.55687745833333 / 1000000 + 1.0, 5.2561);
}

class TestChartFeed : public QObject
{
    Q_OBJECT

private:
    static constexpr qint64 Now = ReaderFixture::ExampleTime;

private slots:
    void emptyTableGivesTheMarkOfNoData()
    {
        ReaderFixture fx;
        fx.setPressure(1013.0);
        const ChartResult chart = drawChart(fx, 1);
        QCOMPARE(chart.emissions, 1);
        QCOMPARE(chart.now, qint64(0));
        QCOMPARE(chart.nowVariant.userType(), int(QMetaType::LongLong));
        QCOMPARE(chart.min, 9999999.99);
        QCOMPARE(chart.max, -9999999.99);
        QVERIFY(chart.max < 0.0);
        QCOMPARE(chart.seriesCount, 1);
        QCOMPARE(chart.series.size(), 1);
        QVERIFY(chart.series.at(0).isEmpty());
    }

    void oneRowGivesOnePointAtZeroAndTightBounds()
    {
        ReaderFixture fx;
        fx.insert(0, rowAt(Now, 1013.25));
        fx.setPressure(1013.25);
        fx.setClock(Now + 1);
        const ChartResult chart = drawChart(fx, 0);
        QCOMPARE(chart.emissions, 1);
        QCOMPARE(chart.now, Now);
        QCOMPARE(chart.seriesCount, 1);
        QCOMPARE(chart.series.size(), 1);
        QCOMPARE(chart.series.at(0).size(), 1);
        QCOMPARE(chart.series.at(0).at(0), QPointF(0.0, 1013.25));
        QCOMPARE(chart.min, 1013.24);
        QCOMPARE(chart.max, 1013.26);
    }

    void pauseBreaksTheCurveOnlyBeyondTheGapLimit_data()
    {
        Columns::add<int, int, int>("table", "gap", "seriesCount");
        QTest::newRow("BARO30M: a pause of exactly 4 s doesn't break") << 0 << 4 << 1;
        QTest::newRow("BARO30M: 5 s breaks") << 0 << 5 << 2;
        QTest::newRow("BARO3H: a pause of exactly 9 s doesn't break") << 1 << 9 << 1;
        QTest::newRow("BARO3H: 10 s breaks") << 1 << 10 << 2;
        QTest::newRow("BARO6H: a pause of exactly 18 s doesn't break") << 2 << 18 << 1;
        QTest::newRow("BARO6H: 19 s breaks") << 2 << 19 << 2;
        QTest::newRow("BAR16D: a pause of exactly 1152 s doesn't break") << 8 << 1152 << 1;
        QTest::newRow("BAR16D: 1153 s breaks") << 8 << 1153 << 2;
    }

    void pauseBreaksTheCurveOnlyBeyondTheGapLimit()
    {
        QFETCH(int, table);
        QFETCH(int, gap);
        QFETCH(int, seriesCount);
        ReaderFixture fx;
        fx.insert(table, {rowAt(Now, 1013.0), rowAt(Now - gap, 1013.5)});
        fx.setPressure(1013.0);
        const ChartResult chart = drawChart(fx, table);
        QCOMPARE(chart.seriesCount, seriesCount);
        QCOMPARE(chart.series.size(), seriesCount);
    }

    void onePauseGivesTwoSeriesNewestFirst()
    {
        ReaderFixture fx;
        fx.insert(1, {rowAt(Now, 1013.0), rowAt(Now - 6, 1013.1), rowAt(Now - 12, 1013.2),
                      rowAt(Now - 72, 1013.3), rowAt(Now - 78, 1013.4)});
        fx.setPressure(1013.0);
        const ChartResult chart = drawChart(fx, 1);
        QCOMPARE(chart.seriesCount, 2);
        QCOMPARE(chart.series.size(), 2);
        const QVector<QPointF> newer = {QPointF(0.0, 1013.0), QPointF(-6 / 3600.0, 1013.1),
                                        QPointF(-12 / 3600.0, 1013.2)};
        const QVector<QPointF> older = {QPointF(-72 / 3600.0, 1013.3), QPointF(-78 / 3600.0, 1013.4)};
        QCOMPARE(chart.series.at(0), newer);
        QCOMPARE(chart.series.at(1), older);
    }

    // The counter starts at 768 and wraps to 0, which writes nothing: each table's step
    // over the wrap is 2 s longer than its interval.
    void counterWrapMakesNoNewSeriesThroughTheTick()
    {
        ReaderFixture fx;
        fx.setPressure(1013.0);
        const qint64 start = Now - 800;
        int tick = 768;
        for (int k = 0; k < 390; ++k) {
            fx.setClock(start + 2 * k);
            fx.log().addData(tick, 1.0, 2.0, 3.0, 4.0, 1013.0 + (k % 7) * 0.1);
            tick = tick < 767 ? tick + 2 : 0;
        }
        // The first wrap is at once after the first firing; the second at firing 386.
        QCOMPARE(fx.times(0).at(fx.times(0).size() - 2) - fx.times(0).last(), qint64(4));
        QCOMPARE(fx.times(8).size(), 2);
        QCOMPARE(fx.times(8).at(0) - fx.times(8).at(1), qint64(770));
        for (int table = 0; table < 9; ++table) {
            const ChartResult chart = drawChart(fx, table);
            QVERIFY2(chart.seriesCount == 1, qPrintable(ReaderFixture::tableName(table)));
        }
    }

    void counterWrapMakesNoNewSeriesOverSixteenDays()
    {
        ReaderFixture fx;
        fx.fillSixteenDays(Now);
        fx.setPressure(1013.0);
        for (int table = 0; table < 9; ++table) {
            const ChartResult chart = drawChart(fx, table);
            QVERIFY2(chart.seriesCount == 1, qPrintable(ReaderFixture::tableName(table)));
            QCOMPARE(chart.series.at(0).size(), fx.rowCount(table));
            QVERIFY(fx.rowCount(table) > 850);
        }
    }

    void xUnitFollowsTheTable_data()
    {
        Columns::add<int, int, double>("table", "age", "x");
        QTest::newRow("BARO30M in minutes") << 0 << 120 << -2.0;
        QTest::newRow("BARO3H in hours") << 1 << 1800 << -0.5;
        QTest::newRow("BARO2D in hours") << 5 << 7200 << -2.0;
        QTest::newRow("BARO4D in days") << 6 << 43200 << -0.5;
        QTest::newRow("BAR16D in days") << 8 << 86400 << -1.0;
    }

    void xUnitFollowsTheTable()
    {
        QFETCH(int, table);
        QFETCH(int, age);
        QFETCH(double, x);
        ReaderFixture fx;
        // Rows at the table's spacing, so that the curve doesn't break on the way.
        QVector<LogRow> rows;
        for (int s = 0; s <= age; s += ReaderFixture::tableInterval(table))
            rows.append(rowAt(Now - s, 1013.0));
        if (rows.last().time != Now - age)
            rows.append(rowAt(Now - age, 1013.0));
        fx.insert(table, rows);
        fx.setPressure(1013.0);
        const ChartResult chart = drawChart(fx, table);
        QCOMPARE(chart.series.at(0).first().x(), 0.0);
        QCOMPARE(chart.series.at(0).last().x(), x);
    }

    void stationLevelMovesEveryPointIncludingOldRows()
    {
        ReaderFixture fx;
        fx.insert(0, {rowAt(Now, 1000.0, 100.0, 0.5), rowAt(Now - 2, 1001.0, 100.0, 0.5),
                      rowAt(Now - 4, 1002.0, 50.0, 0.5)});
        fx.setPressure(1000.0);

        const ChartResult seaLevel = drawChart(fx, 0);
        QCOMPARE(seaLevel.series.at(0).size(), 3);
        QCOMPARE(seaLevel.series.at(0).at(0).y(), qRound(atSeaLevel(1000.5, 100.0) * 100) / 100.0);
        QCOMPARE(seaLevel.series.at(0).at(1).y(), qRound(atSeaLevel(1001.5, 100.0) * 100) / 100.0);
        QCOMPARE(seaLevel.series.at(0).at(2).y(), qRound(atSeaLevel(1002.5, 50.0) * 100) / 100.0);
        QVERIFY(seaLevel.series.at(0).at(0).y() > 1012.0);

        fx.setSetting(QStringLiteral("preDisplay"), 1);
        const ChartResult station = drawChart(fx, 0);
        QCOMPARE(station.series.at(0), (QVector<QPointF>{QPointF(0.0, 1000.5), QPointF(-2 / 60.0, 1001.5),
                                                          QPointF(-4 / 60.0, 1002.5)}));
    }

    void rowWithoutElevationNeedsNoReduction()
    {
        ReaderFixture fx;
        fx.setSetting(QStringLiteral("preDisplay"), 0);
        fx.insert(0, rowAt(Now, 1012.31, 0.0, 0.5));
        fx.setPressure(1012.0);
        const ChartResult chart = drawChart(fx, 0);
        QCOMPARE(chart.series.at(0).at(0).y(), 1012.81);
    }

    void pressureStoppedPutsTheCurveShortOfTheEdge()
    {
        ReaderFixture fx;
        fx.insert(0, {rowAt(Now, 1013.0), rowAt(Now - 2, 1013.0)});
        fx.setClock(Now + 120);

        fx.setPressure(-2000.0);
        const ChartResult stopped = drawChart(fx, 0);
        QCOMPARE(stopped.now, Now + 120);
        QCOMPARE(stopped.series.at(0).at(0).x(), -2.0);
        QVERIFY(stopped.series.at(0).at(0).x() < 0.0);

        fx.setPressure(1013.0);
        const ChartResult running = drawChart(fx, 0);
        QCOMPARE(running.now, Now);
        QCOMPARE(running.series.at(0).at(0).x(), 0.0);
    }

    void valuesAreInTheChosenUnitWithTwoDecimals_data()
    {
        Columns::add<int, double>("unitPre", "y");
        QTest::newRow("mb") << 0 << 1013.27;
        QTest::newRow("hPa") << 1 << 1013.27;
        QTest::newRow("kPa") << 2 << qRound(1013.27 * 0.1 * 100) / 100.0;
        QTest::newRow("inHg") << 3 << 29.92;
        QTest::newRow("mmHg") << 4 << 760.01;
        QTest::newRow("unknown unit stays hPa") << 9 << 1013.27;
    }

    void valuesAreInTheChosenUnitWithTwoDecimals()
    {
        QFETCH(int, unitPre);
        QFETCH(double, y);
        ReaderFixture fx;
        fx.setSetting(QStringLiteral("unitPre"), unitPre);
        fx.insert(0, rowAt(Now, 1013.27));
        fx.setPressure(1013.27);
        const ChartResult chart = drawChart(fx, 0);
        QCOMPARE(chart.series.at(0).at(0).y(), y);
    }

    void boundsFollowTheRange_data()
    {
        Columns::add<double, double, double, double>("low", "high", "min", "max");
        QTest::newRow("a range of 1.0 or more goes to whole numbers") << 1012.37 << 1013.52 << 1012.0 << 1014.0;
        QTest::newRow("a range of exactly 1.0") << 1012.25 << 1013.25 << 1012.0 << 1014.0;
        QTest::newRow("a range of 0.5 or more widens below by 0.1") << 1012.3 << 1012.9 << 1012.2 << 1012.9;
        // From 0.5 up the top is max under the rule for 0.5 and under the rule for 0.2 alike,
        // and both lower the bottom by 0.1: where the 0.5 bound lies cannot show in the
        // bounds. This row pins the outcome only.
        QTest::newRow("a range of exactly 0.5 keeps its top and widens below by 0.1")
                << 1012.25 << 1012.75 << 1012.15 << 1012.75;
        QTest::newRow("a range of 0.2 or more widens below by 0.1") << 1012.3 << 1012.55 << 1012.2 << 1012.55;
        QTest::newRow("a nearly flat curve is hugged by a hundredth") << 1012.3 << 1012.4 << 1012.29 << 1012.41;
        QTest::newRow("a flat curve is hugged by a hundredth") << 1012.5 << 1012.5 << 1012.49 << 1012.51;
    }

    void boundsFollowTheRange()
    {
        QFETCH(double, low);
        QFETCH(double, high);
        QFETCH(double, min);
        QFETCH(double, max);
        ReaderFixture fx;
        fx.insert(0, {rowAt(Now, low), rowAt(Now - 2, high), rowAt(Now - 4, (low + high) / 2)});
        fx.setPressure(1013.0);
        const ChartResult chart = drawChart(fx, 0);
        QCOMPARE(chart.min, min);
        QCOMPARE(chart.max, max);
    }

    void updateReplacesTheSeriesPoints()
    {
        ReaderFixture fx;
        fx.insert(1, {rowAt(Now, 1013.0), rowAt(Now - 60, 1014.0)});
        fx.setPressure(1013.0);
        fx.log().updateChart(1);

        QLineSeries line;
        line.append(5.0, 5.0);
        line.append(6.0, 6.0);
        line.append(7.0, 7.0);
        fx.log().update(&line, 1);
        QCOMPARE(line.pointsVector(), (QVector<QPointF>{QPointF(-60 / 3600.0, 1014.0)}));
        fx.log().update(&line, 0);
        QCOMPARE(line.pointsVector(), (QVector<QPointF>{QPointF(0.0, 1013.0)}));

        // A null series is ignored.
        fx.log().update(nullptr, 0);
        QCOMPARE(line.count(), 1);
    }

    // Other views than the graph page read a span by the same rules, and the page's chart
    // never hears of it: no signal, and the series it fetches stay those of its own span.
    void readChartIsTheChartWithoutTouchingThePages()
    {
        ReaderFixture fx;
        fx.insert(0, {rowAt(Now, 1012.0), rowAt(Now - 2, 1012.1)});
        fx.insert(1, {rowAt(Now, 1013.0), rowAt(Now - 6, 1013.1), rowAt(Now - 72, 1013.3), rowAt(Now - 78, 1013.44)});
        fx.setSetting(QStringLiteral("unitPre"), 3);
        fx.setPressure(1013.0);
        const ChartResult pages = drawChart(fx, 1);
        const ChartResult shown = drawChart(fx, 0);

        int emissions = 0;
        QObject context;
        QObject::connect(&fx.log(), &DataSource::chartUpdated, &context, [&] { ++emissions; });
        const ChartSpan read = fx.log().readChart(1);
        QCOMPARE(emissions, 0);
        QLineSeries line;
        fx.log().update(&line, 0);
        QCOMPARE(line.pointsVector(), shown.series.at(0));

        QCOMPARE(read.chartNb, 1);
        QCOMPARE(read.now, pages.now);
        QCOMPARE(read.min, pages.min);
        QCOMPARE(read.max, pages.max);
        QCOMPARE(read.series, pages.series);
        QCOMPARE(read.series.size(), 2);
        QCOMPARE(read.secondsPerUnit, 3600.0);

        const ChartSpan empty = fx.log().readChart(8);
        QVERIFY(empty.max < 0.0);
        QCOMPARE(empty.series.size(), 1);
        QVERIFY(empty.series.at(0).isEmpty());
        QCOMPARE(emissions, 0);
    }

    void failedQueryIsLoggedAndEndsEmpty()
    {
        ReaderFixture fx;
        fx.insert(0, rowAt(Now, 1013.0));
        fx.execute(QStringLiteral("DROP TABLE BARO30M"));
        fx.setPressure(1013.0);
        fx.messages.clear();
        const ChartResult chart = drawChart(fx, 0);
        QCOMPARE(fx.messages.count(QStringLiteral("db query error")), 1);
        QVERIFY(fx.messages.messages().first().startsWith(QStringLiteral("db query error")));
        QVERIFY(fx.messages.messages().first().contains(QStringLiteral("SELECT * FROM BARO30M ORDER BY TIME DESC;")));
        QCOMPARE(chart.emissions, 1);
        QCOMPARE(chart.seriesCount, 1);
        QCOMPARE(chart.max, -9999999.99);
    }
};

QTEST_MAIN(TestChartFeed)
#include "tst_chartfeed.moc"
