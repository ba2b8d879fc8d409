// SPDX-License-Identifier: GPL-3.0-or-later
#include "ReaderFixture.h"

#include "app/BackEnd.h"
#include "log/DataSource.h"
#include "tests/support/Columns.h"

#include <QtTest/QtTest>

// The trend class and the three-hour tendency, both read against BARO3H.
class TestTrend : public QObject
{
    Q_OBJECT

private:
    static constexpr qint64 Now = ReaderFixture::ExampleTime;

    // One firing that writes BARO30M alone, so that BARO3H holds only what the test put there.
    static void fire(ReaderFixture& fx, qint64 time, double current)
    {
        QVERIFY(fx.fire(time, current, 8));
    }

    static void putRow(ReaderFixture& fx, qint64 time, double pre, double ofs = 0.0, double ele = 0.0)
    {
        fx.insert(ReaderFixture::Baro3h, rowAt(time, pre, ele, ofs));
    }

    // A row `age` seconds before the firing, then the firing with `current`; the log.
    static DataSource& firedAfter(ReaderFixture& fx, qint64 age, double then, double current)
    {
        putRow(fx, Now - age, then);
        fire(fx, Now, current);
        return fx.log();
    }

private slots:
    void freshLogHasNoClassAndNoText()
    {
        ReaderFixture fx;
        QCOMPARE(fx.log().getTrend(), -10);
        QCOMPARE(fx.log().getTrend3h(), QStringLiteral("notOK"));

        // The first firing writes every table, but the row just written is no hour old.
        fx.setPressure(1013.0);
        QVERIFY(fx.log().addData(768, 0.0, 0.0, 0.0, 0.0, 1013.0));
        QCOMPARE(fx.log().getTrend(), -10);
        QCOMPARE(fx.log().getTrend3h(), QStringLiteral("notOK"));
    }

    void rowAgeDecidesWhetherThereIsAClass_data()
    {
        Columns::add<qint64, int>("age", "expected");
        QTest::newRow("a row aged exactly 3630 s is accepted") << qint64(3630) << 4;
        QTest::newRow("a row aged 3631 s gives no class") << qint64(3631) << -10;
        QTest::newRow("a row aged exactly 3570 s is accepted") << qint64(3570) << 4;
        QTest::newRow("a row aged 3569 s gives no class") << qint64(3569) << -10;
        QTest::newRow("a row aged one hour is accepted") << qint64(3600) << 4;
    }

    void rowAgeDecidesWhetherThereIsAClass()
    {
        QFETCH(qint64, age);
        QFETCH(int, expected);
        ReaderFixture fx;
        QCOMPARE(firedAfter(fx, age, 1012.0, 1013.0).getTrend(), expected);
    }

    void classBySizeOfChange_data()
    {
        Columns::add<double, double, int>("hourAgo", "current", "expected");
        QTest::newRow("change of exactly 0.0 is steady, not falling") << 1012.0 << 1012.0 << 1;
        QTest::newRow("change of -0.5 after scaling is steady, falling") << 1000.0 << 1000.0 - 0.5 / 3.0 << -1;
        QTest::newRow("1013.0 against 1012.0 changes 3.0 and rises very fast") << 1012.0 << 1013.0 << 4;
        QTest::newRow("1012.9 against 1012.0 changes about 2.7 and rises fast") << 1012.0 << 1012.9 << 3;
        QTest::newRow("a rise of 0.5 in an hour changes 1.5 and rises") << 1012.0 << 1012.5 << 2;
        QTest::newRow("1011.0 against 1012.0 falls very fast") << 1012.0 << 1011.0 << -4;
        QTest::newRow("1011.1 against 1012.0 falls fast") << 1012.0 << 1011.1 << -3;
        QTest::newRow("a fall of 0.5 in an hour falls") << 1012.0 << 1011.5 << -2;
        QTest::newRow("a rise of 0.3 in an hour is steady") << 1012.0 << 1012.3 << 1;
        // Each bound belongs to the higher class. A third scaled by 3 gives exactly 1.0 only
        // where a third is held to the last bit, so these rows use figures below 1 hPa; near
        // 1000 hPa the difference would miss a third by far more than a rounding step. The
        // current reading stays above 0, or it would not count.
        QTest::newRow("a rise of exactly 1.0 after scaling rises") << 0.0 << 1.0 / 3.0 << 2;
        QTest::newRow("a fall of exactly 1.0 after scaling falls") << 2.0 / 3.0 << 1.0 / 3.0 << -2;
        QTest::newRow("a rise of exactly 2.0 after scaling rises fast") << 0.0 << 2.0 / 3.0 << 3;
        QTest::newRow("a fall of exactly 2.0 after scaling falls fast") << 1.0 << 1.0 / 3.0 << -3;
        QTest::newRow("a rise of exactly 3.0 after scaling rises very fast") << 0.0 << 1.0 << 4;
    }

    void classBySizeOfChange()
    {
        QFETCH(double, hourAgo);
        QFETCH(double, current);
        QFETCH(int, expected);
        ReaderFixture fx;
        QCOMPARE(firedAfter(fx, 3600, hourAgo, current).getTrend(), expected);
    }

    void classLapsesWhenNoRowFits()
    {
        ReaderFixture fx;
        QCOMPARE(firedAfter(fx, 3600, 1012.0, 1013.0).getTrend(), 4);
        // A minute later the nearest row is 3660 s old: the class goes, it isn't kept.
        fire(fx, Now + 60, 1013.0);
        QCOMPARE(fx.log().getTrend(), -10);
    }

    void tendencyText_data()
    {
        Columns::add<double, double, QString>("threeHoursAgo", "current", "expected");
        QTest::newRow("a fall of 1.34 hPa shows -1.3")
                << 1011.34 << 1010.0 << QStringLiteral("<div align='left'>-1.3 mb / 3h</div>");
        QTest::newRow("a rise has no plus sign")
                << 1010.0 << 1011.34 << QStringLiteral("<div align='left'>1.3 mb / 3h</div>");
        QTest::newRow("no change")
                << 1012.0 << 1012.0 << QStringLiteral("<div align='left'>0.0 mb / 3h</div>");
        QTest::newRow("not multiplied by 3")
                << 1010.0 << 1012.0 << QStringLiteral("<div align='left'>2.0 mb / 3h</div>");
    }

    void tendencyText()
    {
        QFETCH(double, threeHoursAgo);
        QFETCH(double, current);
        QFETCH(QString, expected);
        ReaderFixture fx;
        QCOMPARE(firedAfter(fx, 10800, threeHoursAgo, current).getTrend3h(), expected);
    }

    void tendencyNeedsARowThreeHoursOld_data()
    {
        Columns::add<qint64, bool>("age", "shown");
        QTest::newRow("aged 10830 s") << qint64(10830) << true;
        QTest::newRow("aged 10831 s") << qint64(10831) << false;
        QTest::newRow("aged 10770 s") << qint64(10770) << true;
        QTest::newRow("aged 10769 s") << qint64(10769) << false;
    }

    void tendencyNeedsARowThreeHoursOld()
    {
        QFETCH(qint64, age);
        QFETCH(bool, shown);
        ReaderFixture fx;
        firedAfter(fx, age, 1012.0, 1013.0);
        const QString expected = shown ? QStringLiteral("<div align='left'>1.0 mb / 3h</div>")
                                       : QStringLiteral("notOK");
        QCOMPARE(fx.log().getTrend3h(), expected);
    }

    void tendencyUsesTheTimeOfTheLatestSampleNotTheClock()
    {
        ReaderFixture fx;
        putRow(fx, Now - 10800, 1012.0);
        putRow(fx, Now - 3600, 1012.0);
        fire(fx, Now, 1013.0);
        fx.setClock(Now + 5000);
        QCOMPARE(fx.log().getTrend3h(), QStringLiteral("<div align='left'>1.0 mb / 3h</div>"));
        QCOMPARE(fx.log().getTrend(), 4);
    }

    void tendencyIsComputedEvenWithoutCurrentPressure()
    {
        ReaderFixture fx;
        firedAfter(fx, 10800, 1012.31, 1013.0);
        fx.setPressure(-2000.0);
        QCOMPARE(fx.backend().getCurrentPressure(), -2000.0);
        QCOMPARE(fx.log().getTrend3h(), QStringLiteral("<div align='left'>-3012.3 mb / 3h</div>"));
    }

    void inchesOfMercuryChangeNeitherTextNorClass_data()
    {
        Columns::ints("unitPre", {{"millibars", 0}, {"inches of mercury", 3}});
    }

    void inchesOfMercuryChangeNeitherTextNorClass()
    {
        QFETCH(int, unitPre);
        ReaderFixture fx;
        fx.setSetting(QStringLiteral("unitPre"), unitPre);
        putRow(fx, Now - 10800, 1011.34);
        putRow(fx, Now - 3600, 1012.0);
        fire(fx, Now, 1010.0);
        QCOMPARE(fx.log().getTrend3h(), QStringLiteral("<div align='left'>-1.3 mb / 3h</div>"));
        QCOMPARE(fx.log().getTrend(), -4);
    }

    void offsetAndElevationPlayNoPart()
    {
        ReaderFixture fx;
        // Taken with PRE alone these give a rise; with OFS or ELE they would give a fall.
        putRow(fx, Now - 10800, 1012.0, 5.0, 300.0);
        putRow(fx, Now - 3600, 1012.0, 5.0, 300.0);
        fire(fx, Now, 1013.0);
        QCOMPARE(fx.log().getTrend(), 4);
        QCOMPARE(fx.log().getTrend3h(), QStringLiteral("<div align='left'>1.0 mb / 3h</div>"));

        fx.setSetting(QStringLiteral("offset"), 2.0);
        fx.setSetting(QStringLiteral("elevation"), 100.0);
        fire(fx, Now + 1, 1013.0);
        QCOMPARE(fx.log().getTrend(), 4);
        QCOMPARE(fx.log().getTrend3h(), QStringLiteral("<div align='left'>1.0 mb / 3h</div>"));
    }
};

QTEST_MAIN(TestTrend)
#include "tst_trend.moc"
