// SPDX-License-Identifier: GPL-3.0-or-later
#include "BuoyRecord.h"
#include "ReaderFixture.h"

#include "app/BackEnd.h"
#include "log/DataSource.h"
#include "log/PressureWarning.h"
#include "tests/support/Columns.h"

#include <QtCore/QDateTime>
#include <QtCore/QFile>
#include <QtCore/QMap>
#include <QtCore/QTranslator>
#include <QtTest/QtTest>

#include <cmath>
#include <optional>

Q_DECLARE_METATYPE(std::optional<double>)

namespace {
using Fall = std::optional<double>;
using Level = PressureWarning::Level;

qint64 utc(int month, int day, int hour = 0)
{
    return BuoyRecord::utc(month, day, hour);
}

// The highest level reached, firing by firing, over [from, to).
struct Replay
{
    QMap<qint64, Level> levels;

    Level highest(qint64 from, qint64 to) const
    {
        Level top = PressureWarning::None;
        for (auto it = levels.lowerBound(from); it != levels.end() && it.key() < to; ++it)
            top = std::max(top, it.value());
        return top;
    }
};

constexpr qint64 Step = 900;

QString buoyPath()
{
    return BuoyRecord::firstHalfOf2012();
}
}

// The pressure-fall warning: the rule, its hysteresis, its wiring to the log, and real storms.
class TestPressureWarning : public QObject
{
    Q_OBJECT

private:
    static constexpr qint64 Now = ReaderFixture::ExampleTime;

    // A firing that writes BARO30M and BARO3H, as the tick does every twelve seconds.
    static bool fire(ReaderFixture& fx, qint64 time, double pressure)
    {
        return fx.fire(time, pressure, 6);
    }

    static void putRow(ReaderFixture& fx, qint64 time, double pre, double ofs = 0.0)
    {
        fx.insert(ReaderFixture::Baro3h, rowAt(time, pre, 0.0, ofs));
    }

    static Replay replayRule(const BuoyRecord& record)
    {
        Replay replay;
        Level level = PressureWarning::None;
        const PressureWarning::Thresholds thresholds;
        for (qint64 t = record.first(); t <= record.last(); t += Step) {
            const Fall now = record.at(t);
            if (!now)
                continue;
            const Fall then3h = record.at(t - 10800);
            const Fall then1h = record.at(t - 3600);
            level = PressureWarning::judge(level, then3h ? Fall(*then3h - *now) : std::nullopt,
                                           then1h ? Fall(*then1h - *now) : std::nullopt, thresholds);
            replay.levels.insert(t, level);
        }
        return replay;
    }

private slots:
    void judgeFollowsTheBoundsAndTheHysteresis_data()
    {
        Columns::add<int, Fall, Fall, int>("current", "fall3h", "fall1h", "expected");

        const Fall none;
        QTest::newRow("no fall known keeps none") << 0 << none << none << 0;
        QTest::newRow("no fall known keeps the alarm") << 2 << none << none << 2;
        QTest::newRow("a rise is no warning") << 0 << Fall(-8.0) << Fall(-3.0) << 0;
        QTest::newRow("3.59 in three hours is no warning") << 0 << Fall(3.59) << Fall(0.0) << 0;
        QTest::newRow("exactly 3.6 in three hours warns") << 0 << Fall(3.6) << Fall(0.0) << 1;
        QTest::newRow("exactly 6.0 in three hours only warns") << 0 << Fall(6.0) << Fall(1.0) << 1;
        QTest::newRow("6.01 in three hours is the alarm") << 0 << Fall(6.01) << Fall(1.0) << 2;
        QTest::newRow("exactly 2.0 in one hour is the alarm") << 0 << Fall(1.0) << Fall(2.0) << 2;
        QTest::newRow("1.99 in one hour is not") << 0 << Fall(1.0) << Fall(1.99) << 0;
        QTest::newRow("the hour alone can raise the alarm") << 0 << none << Fall(2.5) << 2;
        QTest::newRow("the three hours alone can warn") << 0 << Fall(4.0) << none << 1;
        QTest::newRow("a warning holds 0.49 below its bound") << 1 << Fall(3.11) << Fall(0.0) << 1;
        QTest::newRow("a warning goes 0.5 below its bound") << 1 << Fall(3.1) << Fall(0.0) << 0;
        QTest::newRow("3.2 raises nothing from calm") << 0 << Fall(3.2) << Fall(0.0) << 0;
        QTest::newRow("an alarm holds at 5.6 in three hours") << 2 << Fall(5.6) << Fall(0.0) << 2;
        QTest::newRow("an alarm falls back to the warning at 5.5") << 2 << Fall(5.5) << Fall(0.0) << 1;
        QTest::newRow("an hourly alarm holds at 1.6") << 2 << Fall(2.0) << Fall(1.6) << 2;
        QTest::newRow("an hourly alarm goes at 1.5") << 2 << Fall(2.0) << Fall(1.5) << 0;
        QTest::newRow("from the alarm the warning holds at 3.2") << 2 << Fall(3.2) << Fall(1.0) << 1;
    }

    void judgeFollowsTheBoundsAndTheHysteresis()
    {
        QFETCH(int, current);
        QFETCH(Fall, fall3h);
        QFETCH(Fall, fall1h);
        QFETCH(int, expected);
        QCOMPARE(int(PressureWarning::judge(Level(current), fall3h, fall1h, PressureWarning::Thresholds())),
                 expected);
    }

    void freshLogGivesNoVerdict()
    {
        ReaderFixture fx;
        QSignalSpy changed(fx.log().getWarning(), &PressureWarning::levelChanged);
        QVERIFY(fire(fx, Now, 950.0));
        QVERIFY(fire(fx, Now + 12, 900.0));
        QCOMPARE(fx.log().getWarning()->getLevel(), int(PressureWarning::None));
        QVERIFY(std::isnan(fx.log().getWarning()->getFall3h()));
        QCOMPARE(changed.count(), 0);
    }

    void fallsFromTheRowsOfThreeAndOneHoursAgo()
    {
        ReaderFixture fx;
        auto* warning = fx.log().getWarning();
        QSignalSpy changed(warning, &PressureWarning::levelChanged);
        putRow(fx, Now - 10800, 1007.0);
        putRow(fx, Now - 3600, 1004.5);
        QVERIFY(fire(fx, Now, 1003.0));
        QCOMPARE(warning->getLevel(), int(PressureWarning::Warning));
        QCOMPARE(warning->getFall3h(), 1007.0 - 1003.0);
        QCOMPARE(warning->getFall1h(), 1004.5 - 1003.0);
        QCOMPARE(warning->getSince(), Now);
        QCOMPARE(changed.count(), 1);

        // Twelve seconds on, retention has taken the three-hour row; the hour-old one is
        // still within 30 s of its age.
        QVERIFY(fire(fx, Now + 12, 1002.0));
        QVERIFY(std::isnan(warning->getFall3h()));
        QCOMPARE(warning->getFall1h(), 2.5);
        QCOMPARE(warning->getLevel(), int(PressureWarning::Alarm));
        QCOMPARE(warning->getSince(), Now + 12);
        QCOMPARE(changed.count(), 2);
        QCOMPARE(fx.messages.count(QStringLiteral("pressure fall level Warning 3h 4.0 1h 1.5")), 1);
        QCOMPARE(fx.messages.count(QStringLiteral("pressure fall level Alarm 3h none 1h 2.5")), 1);
    }

    void rowsOutsideThirtySecondsGiveNoVerdict_data()
    {
        Columns::add<qint64, int>("age", "expected");
        // BARO3H keeps exactly three hours, so an older row is gone before it is looked for.
        QTest::newRow("aged 10800 s is accepted") << qint64(10800) << int(PressureWarning::Alarm);
        QTest::newRow("aged 10770 s is accepted") << qint64(10770) << int(PressureWarning::Alarm);
        QTest::newRow("aged 10769 s is not") << qint64(10769) << int(PressureWarning::None);
        QTest::newRow("aged 10801 s is gone by retention") << qint64(10801) << int(PressureWarning::None);
        QTest::newRow("an hour-old row aged 3630 s is accepted") << qint64(3630) << int(PressureWarning::Alarm);
        QTest::newRow("an hour-old row aged 3631 s is not") << qint64(3631) << int(PressureWarning::None);
    }

    void rowsOutsideThirtySecondsGiveNoVerdict()
    {
        QFETCH(qint64, age);
        QFETCH(int, expected);
        ReaderFixture fx;
        putRow(fx, Now - age, 1010.0);
        QVERIFY(fire(fx, Now, 1003.0));
        QCOMPARE(fx.log().getWarning()->getLevel(), expected);
    }

    void offsetAndElevationPlayNoPart()
    {
        ReaderFixture fx;
        fx.setSetting(QStringLiteral("offset"), 20.0);
        fx.setSetting(QStringLiteral("elevation"), 1000.0);
        putRow(fx, Now - 10800, 1005.0, -20.0);
        QVERIFY(fire(fx, Now, 1003.0));
        QCOMPARE(fx.log().getWarning()->getFall3h(), 2.0);
        QCOMPARE(fx.log().getWarning()->getLevel(), int(PressureWarning::None));
    }

    void settingsSwitchOffAndSetTheBounds()
    {
        ReaderFixture fx;
        putRow(fx, Now - 10800, 1005.0);
        fx.setSetting(QStringLiteral("warningFall3h"), 1.5);
        QVERIFY(fire(fx, Now, 1003.0));
        QCOMPARE(fx.log().getWarning()->getLevel(), int(PressureWarning::Warning));
        fx.setSetting(QStringLiteral("warningOn"), 0);
        QVERIFY(fire(fx, Now + 12, 1003.0));
        QCOMPARE(fx.log().getWarning()->getLevel(), int(PressureWarning::None));
    }

    void eachChangeOfLevelIsLoggedOnce()
    {
        ReaderFixture fx;
        putRow(fx, Now - 10800, 1010.0);
        QVERIFY(fire(fx, Now, 1003.0));
        QVERIFY(fire(fx, Now + 12, 1003.0));
        QCOMPARE(fx.messages.count(QStringLiteral("pressure fall level Alarm 3h 7.0 1h none")), 1);
        QCOMPARE(fx.messages.count(QStringLiteral("pressure fall level")), 1);
    }

    void acknowledgementLastsUntilTheLevelRises()
    {
        ReaderFixture fx;
        auto* warning = fx.log().getWarning();
        QSignalSpy acknowledged(warning, &PressureWarning::acknowledgedChanged);
        warning->acknowledge();
        QVERIFY(!warning->isAcknowledged());
        putRow(fx, Now - 10800, 1007.0);
        QVERIFY(fire(fx, Now, 1003.0));
        QCOMPARE(warning->getLevel(), int(PressureWarning::Warning));
        warning->acknowledge();
        QVERIFY(warning->isAcknowledged());
        putRow(fx, Now + 12 - 3600, 1006.0);
        QVERIFY(fire(fx, Now + 12, 1003.0));
        QCOMPARE(warning->getLevel(), int(PressureWarning::Alarm));
        QVERIFY(!warning->isAcknowledged());
        QCOMPARE(acknowledged.count(), 2);
    }

    void levelTextsAreTranslatable()
    {
        PressureWarning warning;
        QVERIFY(warning.levelText().isEmpty());
        warning.evaluate(4.0, std::nullopt, Now);
        QCOMPARE(warning.levelText(), QStringLiteral("Pressure falling quickly"));
        warning.evaluate(7.0, std::nullopt, Now);
        QCOMPARE(warning.levelText(), QStringLiteral("Pressure falling very rapidly"));
    }

    void everyLevelInFrench()
    {
        QTranslator french;
        QVERIFY(french.load(QStringLiteral(BRINHOLT_BINARY_DIR "/Brinholt_fr_FR.qm")));
        QCoreApplication::installTranslator(&french);
        PressureWarning warning;
        warning.evaluate(4.0, 1.0, Now);
        const QString warningText = warning.levelText();
        const QString detail = warning.detailText();
        warning.evaluate(7.0, 1.0, Now);
        const QString alarmText = warning.levelText();
        QCoreApplication::removeTranslator(&french);
        QCOMPARE(warningText, QStringLiteral("Pression en baisse rapide"));
        QCOMPARE(alarmText, QStringLiteral("Pression en baisse très rapide"));
        QVERIFY2(detail.startsWith(QStringLiteral("Baisse de 4.0 hPa en trois heures et 1.0 hPa dans la dernière heure, depuis ")),
                 qPrintable(detail));
    }

    void stormsOfTheBuoyRecordWarnAndCalmWeeksDoNot_data()
    {
        Columns::add<qint64, qint64, int>("from", "to", "expected");
        for (const BuoyRecord::Span& span : BuoyRecord::namedSpans())
            QTest::newRow(span.name) << span.from << span.to << (span.stormy ? 2 : 0);
    }

    void stormsOfTheBuoyRecordWarnAndCalmWeeksDoNot()
    {
        QFETCH(qint64, from);
        QFETCH(qint64, to);
        QFETCH(int, expected);
        BuoyRecord record;
        QVERIFY2(record.load(buoyPath()), qPrintable(buoyPath()));
        const Replay replay = replayRule(record);
        QCOMPARE(int(replay.highest(from, to)), expected);
        if (expected == 2) {
            // The warning comes first: a storm is announced before it is at its worst.
            auto firstRaised = std::find_if(replay.levels.lowerBound(from), replay.levels.lowerBound(to),
                                            [](Level l) { return l != PressureWarning::None; });
            QVERIFY(firstRaised != replay.levels.lowerBound(to));
        }
    }

    // The same record through the real log: rows written by addData at the clock's time,
    // the verdict read back from BARO3H.
    void stormOfTwelveJanuaryThroughTheLog()
    {
        BuoyRecord record;
        QVERIFY(record.load(buoyPath()));
        const Replay expected = replayRule(record);
        ReaderFixture fx;
        Replay seen;
        for (qint64 t = record.onGrid(utc(1, 11, 12), Step); t < utc(1, 13); t += Step) {
            const Fall pressure = record.at(t);
            if (!pressure)
                continue;
            QVERIFY(fire(fx, t, *pressure));
            seen.levels.insert(t, Level(fx.log().getWarning()->getLevel()));
        }
        QCOMPARE(seen.highest(utc(1, 12), utc(1, 13)), PressureWarning::Alarm);
        // The first twelve hours are the log's warm-up: from then on it agrees with the rule.
        for (auto it = seen.levels.lowerBound(utc(1, 12)); it != seen.levels.end(); ++it)
            QCOMPARE(int(it.value()), int(expected.levels.value(it.key())));
    }

    void gapInTheRecordGivesNoVerdict()
    {
        BuoyRecord record;
        QVERIFY(record.load(buoyPath()));
        // Observations stop at 05:50 on 2 January and come back at 08:50.
        QVERIFY(record.at(utc(1, 2, 7)) == std::nullopt);
        ReaderFixture fx;
        auto* warning = fx.log().getWarning();
        for (qint64 t = record.onGrid(utc(1, 1, 18), Step); t <= utc(1, 2, 9) + 35 * 60; t += Step) {
            const Fall pressure = record.at(t);
            if (pressure)
                QVERIFY(fire(fx, t, *pressure));
        }
        // At 09:35 both the hour-old and the three-hour-old rows fall in the gap.
        QVERIFY(std::isnan(warning->getFall3h()));
        QVERIFY(std::isnan(warning->getFall1h()));
        const Replay replay = replayRule(record);
        QVERIFY(replay.levels.contains(utc(1, 2, 9) + 35 * 60));
        QCOMPARE(warning->getLevel(), int(replay.levels.value(utc(1, 2, 9) + 35 * 60)));
        QCOMPARE(warning->getLevel(), int(PressureWarning::Warning));
    }
};

QTEST_GUILESS_MAIN(TestPressureWarning)
#include "tst_pressurewarning.moc"
