// SPDX-License-Identifier: GPL-3.0-or-later
#include "BuoyRecord.h"
#include "ReaderFixture.h"

#include "log/DataSource.h"
#include "log/StormMarks.h"
#include "tests/support/Columns.h"

#include <QtCore/QDateTime>
#include <QtTest/QtTest>

#include <cmath>
#include <functional>

Q_DECLARE_METATYPE(QVector<StormPeriod>)

bool operator==(const StormPeriod& a, const StormPeriod& b)
{
    return a.start == b.start && a.end == b.end && a.level == b.level;
}

namespace {
using Row = StormMarks::Row;
using Level = PressureWarning::Level;

// BARO1D: a row every 48 s, so that an hour is 75 rows and three hours 225, exactly.
constexpr int Baro1d = 4;
constexpr int Interval1d = 48;
constexpr double GapLimit1d = 72.0;
constexpr qint64 Start = ReaderFixture::ExampleTime - 86400;

qint64 rowTime(int k)
{
    return Start + qint64(k) * Interval1d;
}

// `count` rows of BARO1D from Start, row k at `pressure(k)`; every value a sum of quarters,
// so that each fall is exact.
QVector<Row> dayOfRows(int count, const std::function<double(int)>& pressure, int first = 0)
{
    QVector<Row> rows;
    for (int k = first; k < count; ++k)
        rows.append(Row{rowTime(k), pressure(k)});
    return rows;
}

// 1010 hPa, less `steps[i]` from hour i + 4 on (row 300 + 75 i).
double hourlySteps(int k, const QVector<double>& steps)
{
    double pressure = 1010.0;
    for (int i = 0; i < steps.size(); ++i) {
        if (k >= 300 + 75 * i)
            pressure -= steps.at(i);
    }
    return pressure;
}

StormPeriod period(int fromRow, int toRow, Level level)
{
    return StormPeriod{rowTime(fromRow), rowTime(toRow), level};
}

QString describe(const QVector<StormPeriod>& periods)
{
    QStringList parts;
    for (const StormPeriod& p : periods)
        parts << QStringLiteral("[%1, %2) %3").arg(p.start - Start).arg(p.end - Start).arg(int(p.level));
    return parts.join(QStringLiteral(", "));
}

LogRow logRow(qint64 time, double pre, double ofs = 0.0)
{
    LogRow row;
    row.time = time;
    row.pre = pre;
    row.ofs = ofs;
    return row;
}

// The highest level marked over [from, to).
Level highestMarked(const QVector<StormPeriod>& periods, qint64 from, qint64 to)
{
    Level top = PressureWarning::None;
    for (const StormPeriod& p : periods) {
        if (p.start < to && p.end > from)
            top = std::max(top, p.level);
    }
    return top;
}
}

// Storm marks: the warning's rule run again over a table's own rows.
class TestStormMarks : public QObject
{
    Q_OBJECT

private:
    static constexpr qint64 Now = ReaderFixture::ExampleTime;
    static constexpr int Bar16d = 8;

    static QVector<StormPeriod> find(const QVector<Row>& rows)
    {
        return StormMarks::find(rows, Interval1d, GapLimit1d, PressureWarning::Thresholds());
    }

    // The periods updateChart finds for a table, as the chart and the barogram get them.
    static QVector<StormPeriod> charted(ReaderFixture& fx, int table)
    {
        fx.log().updateChart(table);
        return fx.log().getStorms()->periods();
    }

private slots:
    void toleranceIsHalfTheSpacingAndNeverUnderThirtySeconds_data()
    {
        Columns::add<int, double>("interval", "tolerance");
        QTest::newRow("BARO30M") << 2 << 30.0;
        QTest::newRow("BARO3H") << 6 << 30.0;
        QTest::newRow("BARO1D, half of 48 s is less than 30") << 48 << 30.0;
        QTest::newRow("BARO2D") << 96 << 48.0;
        QTest::newRow("BARO4D") << 192 << 96.0;
        QTest::newRow("BAR16D") << 768 << 384.0;
    }

    void toleranceIsHalfTheSpacingAndNeverUnderThirtySeconds()
    {
        QFETCH(int, interval);
        QFETCH(double, tolerance);
        QCOMPARE(StormMarks::tolerance(interval), tolerance);
    }

    // One row to compare with, `age` seconds before a row that fell `fall` hPa since, and
    // the table's next row: the level of that row, if any, holds until the next.
    void comparedRowMustLieWithinTheTolerance_data()
    {
        Columns::add<int, qint64, double, int>("interval", "age", "fall", "level");
        QTest::newRow("BAR16D, 384 s beyond three hours") << 768 << qint64(10800 + 384) << 7.0 << 2;
        QTest::newRow("BAR16D, 385 s beyond three hours") << 768 << qint64(10800 + 385) << 7.0 << 0;
        QTest::newRow("BAR16D, 384 s short of three hours") << 768 << qint64(10800 - 384) << 7.0 << 2;
        QTest::newRow("BAR16D, 385 s short of three hours") << 768 << qint64(10800 - 385) << 7.0 << 0;
        QTest::newRow("BARO3H, 30 s beyond three hours") << 6 << qint64(10830) << 4.0 << 1;
        QTest::newRow("BARO3H, 31 s beyond three hours") << 6 << qint64(10831) << 4.0 << 0;
        QTest::newRow("BARO2D, 48 s beyond the hour") << 96 << qint64(3648) << 2.5 << 2;
        QTest::newRow("BARO2D, 49 s beyond the hour") << 96 << qint64(3649) << 2.5 << 0;
        QTest::newRow("BARO2D, 48 s short of the hour") << 96 << qint64(3552) << 2.5 << 2;
        QTest::newRow("BARO2D, 49 s short of the hour") << 96 << qint64(3551) << 2.5 << 0;
    }

    void comparedRowMustLieWithinTheTolerance()
    {
        QFETCH(int, interval);
        QFETCH(qint64, age);
        QFETCH(double, fall);
        QFETCH(int, level);
        const QVector<Row> rows = {Row{Now - age, 1010.0}, Row{Now, 1010.0 - fall},
                                   Row{Now + interval, 1010.0 - fall}};
        const QVector<StormPeriod> found = StormMarks::find(rows, interval, interval * 1.5, PressureWarning::Thresholds());
        if (level == 0) {
            QVERIFY2(found.isEmpty(), qPrintable(describe(found)));
        } else {
            QCOMPARE(found.size(), 1);
            QVERIFY(found.at(0) == (StormPeriod{Now, Now + interval, Level(level)}));
        }
    }

    // Worked out by hand on BARO1D: steps of pressure on the hour, from hour 4 (row 300).
    void periodsFollowTheWarningsBounds_data()
    {
        Columns::add<QVector<double>, QVector<StormPeriod>>("steps", "expected");
        QTest::newRow("1.25 hPa an hour warns in the third hour, for as long as 3.6 in three hours stands")
                << QVector<double>{1.25, 1.25, 1.25, 1.25}
                << QVector<StormPeriod>{period(450, 600, PressureWarning::Warning)};
        QTest::newRow("1.0 hPa an hour is no storm")
                << QVector<double>{1.0, 1.0, 1.0, 1.0} << QVector<StormPeriod>{};
        QTest::newRow("2.5 hPa within the hour is the alarm, for that hour")
                << QVector<double>{2.5} << QVector<StormPeriod>{period(300, 375, PressureWarning::Alarm)};
        QTest::newRow("exactly 2.0 hPa within the hour is the alarm")
                << QVector<double>{2.0} << QVector<StormPeriod>{period(300, 375, PressureWarning::Alarm)};
        QTest::newRow("1.75 hPa within the hour is not")
                << QVector<double>{1.75} << QVector<StormPeriod>{};
        QTest::newRow("the alarm steps down to the warning, and the warning ends")
                << QVector<double>{2.5, 1.25, 1.25}
                << QVector<StormPeriod>{period(300, 375, PressureWarning::Alarm),
                                        period(375, 525, PressureWarning::Warning)};
        // 3.5 in three hours from row 525 on: below the bound that raises a warning, above
        // the one that ends it.
        QTest::newRow("a warning holds while the fall stays within 0.5 of its bound")
                << QVector<double>{1.25, 1.25, 1.25, 1.0}
                << QVector<StormPeriod>{period(450, 600, PressureWarning::Warning)};
    }

    void periodsFollowTheWarningsBounds()
    {
        QFETCH(QVector<double>, steps);
        QFETCH(QVector<StormPeriod>, expected);
        const QVector<StormPeriod> found = find(dayOfRows(1000, [&](int k) { return hourlySteps(k, steps); }));
        QVERIFY2(found == expected, qPrintable(describe(found) + QStringLiteral(" instead of ") + describe(expected)));
    }

    // The same weather without its first five hours: the rows that raised the warning have
    // nothing three hours before them left, and what follows only holds a level, never
    // raises one, so the span starts calm.
    void levelStartsFromNoneAtTheFirstRowOfTheSpan()
    {
        const QVector<double> steps = {1.25, 1.25, 1.25, 1.0};
        const auto pressure = [&](int k) { return hourlySteps(k, steps); };
        QCOMPARE(find(dayOfRows(1000, pressure)).size(), 1);
        const QVector<StormPeriod> late = find(dayOfRows(1000, pressure, 300));
        QVERIFY2(late.isEmpty(), qPrintable(describe(late)));
    }

    void breakOfTheCurveIsNeverMarked_data()
    {
        Columns::add<int, int>("pause", "periods");
        QTest::newRow("a pause of the gap limit is no break") << 72 << 1;
        QTest::newRow("a second more is, and stays unmarked") << 73 << 2;
        QTest::newRow("two days stopped") << 172800 << 2;
    }

    // A steady fall of 3 hPa an hour, the alarm throughout, with a pause in the log.
    void breakOfTheCurveIsNeverMarked()
    {
        QFETCH(int, pause);
        QFETCH(int, periods);
        QVector<Row> rows;
        qint64 time = Start;
        for (int k = 0; k < 600; ++k) {
            time += k == 400 ? pause : Interval1d;
            rows.append(Row{time, 1100.0 - 3.0 * (time - Start) / 3600.0});
        }
        const qint64 before = rows.at(399).time;
        const qint64 after = rows.at(400).time;
        const QVector<StormPeriod> found = find(rows);
        QCOMPARE(found.size(), periods);
        for (const StormPeriod& p : found) {
            QCOMPARE(p.level, PressureWarning::Alarm);
            if (periods > 1)
                QVERIFY2(p.end <= before || p.start >= after, qPrintable(describe(found)));
        }
        QCOMPARE(found.last().end, rows.last().time);
    }

    // History is marked from the rows alone: no firing ever happened here.
    void chartOfAnySpanGetsItsTablesMarks()
    {
        ReaderFixture fx;
        const QVector<double> steps = {2.5, 1.25, 1.25};
        QVector<LogRow> rows;
        for (int k = 0; k < 1000; ++k)
            rows.append(logRow(rowTime(k), hourlySteps(k, steps)));
        fx.insert(Baro1d, rows);
        fx.setPressure(rows.last().pre);
        QObject context;
        QVariantList inHandler;
        connect(&fx.log(), &DataSource::chartUpdated, &context, [&] {
            // The page asks for them inside the handler, while updateChart holds the lock.
            Watchdog watchdog(10000, "chartPeriods");
            inHandler = fx.log().getStorms()->chartPeriods();
        });
        const QVector<StormPeriod> found = charted(fx, Baro1d);
        QVERIFY(found == (QVector<StormPeriod>{period(300, 375, PressureWarning::Alarm),
                                               period(375, 525, PressureWarning::Warning)}));
        // In hours before the newest row, the chart's x unit for this table.
        QCOMPARE(inHandler.size(), 2);
        const QVariantMap alarm = inHandler.at(0).toMap();
        QCOMPARE(alarm.value(QStringLiteral("level")).toInt(), 2);
        QCOMPARE(alarm.value(QStringLiteral("start")).toDouble(), (rowTime(300) - rowTime(999)) / 3600.0);
        QCOMPARE(alarm.value(QStringLiteral("end")).toDouble(), (rowTime(375) - rowTime(999)) / 3600.0);
        QCOMPARE(inHandler.at(1).toMap().value(QStringLiteral("level")).toInt(), 1);
        // Another span, another table: BAR16D has no rows here.
        QVERIFY(charted(fx, Bar16d).isEmpty());
        QVERIFY(fx.log().getStorms()->chartPeriods().isEmpty());
    }

    void marksFollowTheWarningsSettings()
    {
        ReaderFixture fx;
        QVector<LogRow> rows;
        for (int k = 0; k < 1000; ++k)
            rows.append(logRow(rowTime(k), hourlySteps(k, {1.0, 1.0, 1.0, 1.0})));
        fx.insert(Baro1d, rows);
        fx.setPressure(1006.0);
        QVERIFY(charted(fx, Baro1d).isEmpty());
        // 3.0 in three hours from row 450 to 599 warns at a bound of 3.0.
        fx.setSetting(QStringLiteral("warningFall3h"), 3.0);
        QVERIFY(charted(fx, Baro1d) == QVector<StormPeriod>{period(450, 600, PressureWarning::Warning)});
        fx.setSetting(QStringLiteral("warningOn"), 0);
        QVERIFY(charted(fx, Baro1d).isEmpty());
    }

    // The raw reading, as the warning's: a changed offset is no weather.
    void offsetPlaysNoPart()
    {
        ReaderFixture fx;
        QVector<LogRow> rows;
        for (int k = 0; k < 1000; ++k)
            rows.append(logRow(rowTime(k), 1010.0, k < 500 ? 0.0 : -8.0));
        fx.insert(Baro1d, rows);
        fx.setPressure(1010.0);
        QVERIFY(charted(fx, Baro1d).isEmpty());
    }

    void stormsOfTheBuoyRecordAreMarkedAndCalmWeeksAreNot_data()
    {
        Columns::add<qint64, qint64, bool>("from", "to", "stormy");
        for (const BuoyRecord::Span& span : BuoyRecord::namedSpans())
            QTest::newRow(span.name) << span.from << span.to << span.stormy;
    }

    // Sixteen days of BAR16D at a time, ending a day after the span or at the record's
    // end, stepping back until the span is covered with a day to spare before it.
    void stormsOfTheBuoyRecordAreMarkedAndCalmWeeksAreNot()
    {
        QFETCH(qint64, from);
        QFETCH(qint64, to);
        QFETCH(bool, stormy);
        BuoyRecord record;
        QVERIFY2(record.load(BuoyRecord::firstHalfOf2012()), qPrintable(BuoyRecord::firstHalfOf2012()));
        ReaderFixture fx;
        Level top = PressureWarning::None;
        for (qint64 end = std::min(to + 86400, record.last()); end > from; end -= 14 * 86400) {
            fx.replay(Bar16d, end, [&](qint64 time) { return record.at(time); });
            const QVector<StormPeriod> found = charted(fx, Bar16d);
            top = std::max(top, highestMarked(found, std::max(from, end - 15 * 86400), std::min(to, end)));
        }
        QCOMPARE(int(top), int(stormy ? PressureWarning::Alarm : PressureWarning::None));
    }

    // Written firing by firing through the log, the storm of 12 January is marked on BARO4D
    // exactly where the warning itself stood at each firing.
    void marksAgreeWithTheWarningAsItStood()
    {
        BuoyRecord record;
        QVERIFY(record.load(BuoyRecord::firstHalfOf2012()));
        ReaderFixture fx;
        constexpr qint64 Step = 240;
        QMap<qint64, int> stood;
        for (qint64 t = record.onGrid(BuoyRecord::utc(1, 11, 18), Step); t < BuoyRecord::utc(1, 13); t += Step) {
            const std::optional<double> pressure = record.at(t);
            QVERIFY(pressure);
            fx.setClock(t);
            fx.setPressure(*pressure);
            // Tick 192 writes the tables from BARO30M to BARO4D.
            QVERIFY(fx.log().addData(192, 0.0, 0.0, 0.0, 0.0, *pressure));
            stood.insert(t, fx.log().getWarning()->getLevel());
        }
        const QVector<StormPeriod> found = charted(fx, 6);
        QCOMPARE(highestMarked(found, BuoyRecord::utc(1, 12), BuoyRecord::utc(1, 13)), PressureWarning::Alarm);
        for (auto it = stood.cbegin(); it != stood.cend(); ++it) {
            if (std::next(it) == stood.cend())
                break;
            const int marked = highestMarked(found, it.key(), it.key() + 1);
            QVERIFY2(marked == it.value(), qPrintable(QStringLiteral("at %1: marked %2, stood %3")
                                                              .arg(QDateTime::fromSecsSinceEpoch(it.key(), Qt::UTC).toString(Qt::ISODate))
                                                              .arg(marked)
                                                              .arg(it.value())));
        }
    }
};

QTEST_GUILESS_MAIN(TestStormMarks)
#include "tst_stormmarks.moc"
