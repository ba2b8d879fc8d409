// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/SamplingTick.h"

#include "app/DisplayLine.h"
#include "app/HostQueries.h"
#include "app/PositionIntake.h"
#include "app/ReadingStore.h"
#include "app/SettingsAccess.h"
#include "log/DataSource.h"
#include "util/Clock.h"
#include "util/Pressure.h"
#include "util/SettingKeys.h"
#include "util/StatePublisher.h"
#include "util/Util.h"

#include <QtCore/QDateTime>

SamplingTick::SamplingTick(const SettingsAccess& settings, const ReadingStore& readings,
                           const PositionIntake& positions, StatePublisher& publisher, DataSource* const& log)
    : settings(settings)
    , readings(readings)
    , positions(positions)
    , publisher(publisher)
    , log(log)
{
}

void SamplingTick::run()
{
    pollTheme();

    StateAssembler::Tick tick;
    // The log's clock, so that a replay's state carries the replay's time.
    tick.time = Clock::currentSecsSinceEpoch() * 1000;
    tick.date = Util::formatDateTimeSecs(QDateTime::currentDateTimeUtc());
    const PositionIntake::Chosen chosen = positions.choose();
    tick.position = DisplayLine::positionText(chosen.found, chosen.position);
    tick.cogsog = DisplayLine::cogSogText(chosen.cog, chosen.sog);
    tick.hasFix = chosen.found;
    tick.fix = chosen.position;
    tick.cog = chosen.cog;
    tick.sog = chosen.sog;
    tick.systemTheme = previousTheme == 1 ? 1 : 0;

    const ReadingStore::Reading reading = readings.current();
    if (reading.value < Pressure::UsableFrom) {
        stepTickCounter();
        emit noPressureAvailable();
        emit dataUpdated(tick.date, tick.position, tick.cogsog, QStringLiteral("NONE"));
        tick.shown = true;
        tick.pressureText = QStringLiteral("NONE");
        publish(tick);
        return;
    }

    tick.pressureText = DisplayLine::pressureText(reading.value, settings);
    // A fresh reading for the log, raw.
    const bool written = log != nullptr
            && log->addData(tickCounter, chosen.position.x(), chosen.position.y(), chosen.cog, chosen.sog,
                            readings.current().value);
    // A log that cannot keep rows would otherwise hold the displays still for good.
    if (written || (log != nullptr && !log->canKeepRows())) {
        emit dataUpdated(tick.date, tick.position, tick.cogsog, tick.pressureText);
        tick.shown = true;
    }
    stepTickCounter();

    tick.reading = reading.value;
    tick.source = reading.source;
    tick.sourceText = ReadingStore::sourceText(reading.source);
    tick.readingAgeMs = reading.ageMs;
    tick.logged = written;
    publish(tick);
}

void SamplingTick::pollTheme()
{
    if (settings.value(SettingKey::Theme, SettingDefault::Theme).toInt() != 2)
        return;
    const int answer = HostQueries::isSystemDarkMode() ? 1 : 0;
    if (answer != previousTheme) {
        previousTheme = answer;
        emit systemThemeChanged(answer);
    }
}

void SamplingTick::stepTickCounter()
{
    if (tickCounter < 767)
        tickCounter += 2;
    else
        tickCounter = 0;
}

void SamplingTick::publish(const StateAssembler::Tick& tick)
{
    publisher.publish(StateAssembler::assemble(tick, *publisher.current(), *settings.object(), log));
}
