// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/BackEnd.h"
#include "app/StateAssembler.h"
#include "log/DataSource.h"
#include "nmea/NmeaSourceType.h"
#include "tests/log/ReaderFixture.h"
#include "tests/support/Columns.h"
#include "util/Pressure.h"
#include "util/SettingKeys.h"
#include "util/StatePublisher.h"

#include <QtCore/QSettings>
#include <QtTest/QSignalSpy>
#include <QtTest/QtTest>

#include <atomic>
#include <cmath>
#include <thread>

// The value each tick publishes for the views that are not pages.
class TestPublishedState : public QObject
{
    Q_OBJECT

private:
    static constexpr qint64 Now = ReaderFixture::ExampleTime;
    static constexpr int Baro3h = 1;

    static std::shared_ptr<const ShownState> tick(ReaderFixture& fx, QStringList* strings = nullptr)
    {
        QSignalSpy updates(&fx.backend(), &BackEnd::dataUpdated);
        fx.backend().slot_timerData();
        if (strings && updates.count() == 1) {
            for (const QVariant& value : updates.at(0))
                *strings << value.toString();
        }
        return fx.backend().getStatePublisher().current();
    }

    static void putRow(ReaderFixture& fx, qint64 time, double pre)
    {
        LogRow row;
        row.time = time;
        row.pre = pre;
        fx.insert(Baro3h, row);
    }

private slots:
    void beforeAnyTickTheStateIsEmpty()
    {
        ReaderFixture fx;
        const auto state = fx.backend().getStatePublisher().current();
        QVERIFY(state);
        QCOMPARE(state->sequence, quint64(0));
        QVERIFY(std::isnan(state->rawPressure));
        QCOMPARE(StatePublisher::installed(), &fx.backend().getStatePublisher());
    }

    void eachTickPublishesTheStringsOfDataUpdated()
    {
        ReaderFixture fx;
        fx.setClock(Now);
        fx.setPressure(1013.2);
        QStringList strings;
        const auto state = tick(fx, &strings);
        QCOMPARE(strings.size(), 4);
        QCOMPARE(state->sequence, quint64(1));
        QCOMPARE(state->date, strings.at(0));
        QCOMPARE(state->position, strings.at(1));
        QCOMPARE(state->cogsog, strings.at(2));
        QCOMPARE(state->pressureText, strings.at(3));
        QCOMPARE(state->rawPressure, 1013.2);
        QCOMPARE(state->source, int(Serial));
        QCOMPARE(state->sourceText, fx.backend().getPressureSource());
        QCOMPARE(state->tickTime, Now * 1000);
        QVERIFY(state->logged);
        QCOMPARE(state->unitText, QStringLiteral("mb"));
        QCOMPARE(tick(fx)->sequence, quint64(2));
    }

    void withoutReadingTheStateSaysNoneAndHasNoNumbers()
    {
        ReaderFixture fx;
        fx.setClock(Now);
        QStringList strings;
        const auto state = tick(fx, &strings);
        QCOMPARE(state->pressureText, QStringLiteral("NONE"));
        QCOMPARE(strings.value(3), QStringLiteral("NONE"));
        QVERIFY(std::isnan(state->rawPressure));
        QVERIFY(std::isnan(state->shownPressure));
        QCOMPARE(state->source, -1);
        QCOMPARE(state->readingTime, qint64(0));
        QVERIFY(!state->logged);
    }

    void shownPressureFollowsOffsetLevelAndUnit_data()
    {
        Columns::add<int, int, double, double, double>("unit", "level", "elevation", "hpa", "inUnit");
        const double station = 1013.2 + 1.5;
        const double sea = station / Pressure::seaLevelFactor(120.0);
        QTest::newRow("millibars at the station") << int(Pressure::Mb) << 1 << 120.0 << station << station;
        QTest::newRow("inches of mercury at the station")
                << int(Pressure::InHg) << 1 << 120.0 << station << station * Pressure::InHgPerHpa;
        QTest::newRow("kilopascals at sea level") << int(Pressure::Kpa) << 0 << 120.0 << sea << sea / Pressure::HpaPerKpa;
        QTest::newRow("millimetres of mercury at sea level")
                << int(Pressure::MmHg) << 0 << 120.0 << sea << sea * Pressure::MmHgPerHpa;
    }

    void shownPressureFollowsOffsetLevelAndUnit()
    {
        QFETCH(int, unit);
        QFETCH(int, level);
        QFETCH(double, elevation);
        QFETCH(double, hpa);
        QFETCH(double, inUnit);
        ReaderFixture fx;
        fx.setSetting(SettingKey::UnitPre, unit);
        fx.setSetting(SettingKey::PreDisplay, level);
        fx.setSetting(SettingKey::Elevation, elevation);
        fx.setSetting(SettingKey::Offset, 1.5);
        fx.setClock(Now);
        fx.setPressure(1013.2);
        const auto state = tick(fx);
        QCOMPARE(state->rawPressure, 1013.2);
        QCOMPARE(state->shownPressureHpa, hpa);
        QCOMPARE(state->shownPressure, inUnit);
        QCOMPARE(state->unit, unit);
        QCOMPARE(state->unitText, fx.backend().getPressureUnit());
        QCOMPARE(state->level, level);
        QVERIFY(state->levelText.contains(level == 0 ? QStringLiteral("QNH") : QStringLiteral("QFE")));
    }

    void changesAreTheTendencyAsNumbersAndTheWarningFollows()
    {
        ReaderFixture fx;
        putRow(fx, Now - 10800, 1020.0);
        putRow(fx, Now - 3600, 1016.0);
        fx.setClock(Now);
        fx.setPressure(1013.2);
        const auto state = tick(fx);
        QCOMPARE(state->change3h, 1013.2 - 1020.0);
        QCOMPARE(state->change1h, 1013.2 - 1016.0);
        // The page's tendency is the same number, in its own words.
        QVERIFY(fx.log().getTrend3h().contains(QString::number(state->change3h, 'f', 1) + QStringLiteral(" mb / 3h")));
        QCOMPARE(state->trend, fx.log().getTrend());
        QCOMPARE(state->warningLevel, 2);
        QCOMPARE(state->warningFall3h, 1020.0 - 1013.2);
        QCOMPARE(state->warningSince, Now);
        QVERIFY(!state->warningAcknowledged);
        QCOMPARE(state->warningText, fx.log().getWarning()->levelText());
        QCOMPARE(state->warningDetail, fx.log().getWarning()->detailText());

        fx.log().getWarning()->acknowledge();
        QVERIFY(tick(fx)->warningAcknowledged);
    }

    void withoutRowsThreeHoursBackTheChangesAreUnknown()
    {
        ReaderFixture fx;
        fx.setClock(Now);
        fx.setPressure(1013.2);
        const auto state = tick(fx);
        QVERIFY(std::isnan(state->change3h));
        QVERIFY(std::isnan(state->change1h));
        QCOMPARE(state->warningLevel, 0);
        QVERIFY(state->warningText.isEmpty());
        QVERIFY(state->tendencyWords.isEmpty());
        QCOMPARE(state->characteristic, -1);
    }

    // The tendency in words, its characteristic and the forecast, as the pages show them.
    void theTendencyInWordsAndTheForecast()
    {
        ReaderFixture fx;
        fx.setSetting(QStringLiteral("forecastOn"), 1);
        fx.setSetting(QStringLiteral("forecastHemisphere"), 1);
        putRow(fx, Now - 10800, 1007.0);
        putRow(fx, Now - 5400, 1005.5);
        fx.setClock(Now);
        fx.setPressure(1002.9);
        auto state = tick(fx);
        QCOMPARE(state->tendencyWords, QStringLiteral("falling quickly, -4.1 mb in 3 h"));
        QCOMPARE(state->characteristic, 8);
        QCOMPARE(state->characteristicText, QStringLiteral("characteristic 8: falling, then falling more quickly"));
        QCOMPARE(state->forecast, QStringLiteral("Rule of thumb for temperate latitudes: Occasional rain, worsening"));

        fx.setPressure(-2000.0);
        state = tick(fx);
        QVERIFY(state->tendencyWords.isEmpty());
        QCOMPARE(state->characteristic, -1);
        QVERIFY(state->forecast.isEmpty());
    }

    void theFixThemeAndLanguageAreThoseShown()
    {
        ReaderFixture fx;
        fx.setSetting(SettingKey::Theme, 1);
        fx.setSetting(SettingKey::Language, 1);
        fx.setClock(Now);
        fx.setPressure(1013.2);
        fx.backend().setPositionData(QPointF(-4.25, 48.5), 6.5, 271.0, Tcp);
        const auto state = tick(fx);
        QVERIFY(state->hasFix);
        QCOMPARE(state->longitude, -4.25);
        QCOMPARE(state->latitude, 48.5);
        QCOMPARE(state->cog, 271.0);
        QCOMPARE(state->sog, 6.5);
        QCOMPARE(state->theme, 1);
        QVERIFY(!state->followsSystem);
        QCOMPARE(state->language, QStringLiteral("fr"));

        fx.setSetting(SettingKey::Theme, 2);
        fx.setSetting(SettingKey::Language, 0);
        fx.backend().clearHasFix(Tcp);
        const auto next = tick(fx);
        QVERIFY(next->followsSystem);
        QCOMPARE(next->theme, fx.backend().isSystemDarkMode() ? 1 : 0);
        QCOMPARE(next->language, QStringLiteral("en"));
        QVERIFY(!next->hasFix);
        QVERIFY(std::isnan(next->latitude));
    }

    void aTickThatShowsNothingKeepsTheStringsOnThePages()
    {
        ShownState previous;
        previous.date = QStringLiteral("earlier");
        previous.pressureText = QStringLiteral("1013.20");
        StateAssembler::Tick quiet;
        quiet.date = QStringLiteral("now");
        quiet.pressureText = QStringLiteral("1014.00");
        QSettings settings(QDir::temp().filePath(QStringLiteral("tst_publishedstate.ini")), QSettings::IniFormat);
        const ShownState state = StateAssembler::assemble(quiet, previous, settings, nullptr);
        QCOMPARE(state.date, QStringLiteral("earlier"));
        QCOMPARE(state.pressureText, QStringLiteral("1013.20"));
        quiet.shown = true;
        QCOMPARE(StateAssembler::assemble(quiet, previous, settings, nullptr).date, QStringLiteral("now"));
    }

    // Each state is whole: the reader checks that the numbers it holds agree with each
    // other, while the main thread publishes new ones as fast as it can.
    void aReaderOnAnotherThreadSeesWholeStatesInOrder()
    {
        ReaderFixture fx;
        fx.setClock(Now);
        const StatePublisher& publisher = fx.backend().getStatePublisher();
        std::atomic<bool> stop{false};
        std::atomic<int> reads{0};
        std::atomic<int> torn{0};
        std::atomic<int> backwards{0};
        std::thread reader([&] {
            quint64 last = 0;
            while (!stop.load()) {
                const std::shared_ptr<const ShownState> state = publisher.current();
                if (state->sequence < last)
                    ++backwards;
                last = state->sequence;
                if (state->sequence > 0 && state->pressureText != QString::number(state->sequence))
                    ++torn;
                ++reads;
            }
        });
        StatePublisher& writer = fx.backend().getStatePublisher();
        const quint64 start = writer.current()->sequence;
        for (int i = 1; i <= 2000; ++i) {
            ShownState state;
            state.pressureText = QString::number(start + quint64(i));
            writer.publish(state);
        }
        while (reads.load() < 100)
            std::this_thread::yield();
        stop = true;
        reader.join();
        QCOMPARE(torn.load(), 0);
        QCOMPARE(backwards.load(), 0);
        QCOMPARE(writer.current()->sequence, start + 2000);
    }

    void theInstalledPublisherGoesWithItsBackEnd()
    {
        {
            ReaderFixture fx;
            QCOMPARE(StatePublisher::installed(), &fx.backend().getStatePublisher());
        }
        QCOMPARE(StatePublisher::installed(), nullptr);
    }
};

QTEST_MAIN(TestPublishedState)
#include "tst_publishedstate.moc"
