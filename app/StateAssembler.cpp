// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/StateAssembler.h"

#include "app/PressureUnits.h"
#include "log/DataSource.h"
#include "log/PressureWarning.h"
#include "log/TendencyReport.h"
#include "util/Pressure.h"
#include "util/SettingKeys.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QSettings>

#include <cmath>

namespace {
double orUnknown(std::optional<double> value)
{
    return value ? *value : ShownState::Unknown;
}
}

ShownState StateAssembler::assemble(const Tick& tick, const ShownState& previous, const QSettings& settings,
                                    DataSource* log)
{
    ShownState state;
    state.tickTime = tick.time;
    state.date = tick.shown ? tick.date : previous.date;
    state.position = tick.shown ? tick.position : previous.position;
    state.cogsog = tick.shown ? tick.cogsog : previous.cogsog;
    state.pressureText = tick.shown ? tick.pressureText : previous.pressureText;

    state.unit = settings.value(SettingKey::UnitPre, SettingDefault::UnitPre).toInt();
    state.unitText = QString::fromLatin1(Pressure::unitName(state.unit));
    state.level = settings.value(SettingKey::PreDisplay, SettingDefault::PreDisplay).toInt();
    // The pages' own words, so that the state reads as the caption does.
    state.levelText = state.level == 0 ? QCoreApplication::translate("BaroH", "Sea Level Pressure (QNH)")
                                       : QCoreApplication::translate("BaroH", "Station Level Pressure (QFE)");

    if (tick.source >= 0 && !(tick.reading < Pressure::UsableFrom)) {
        state.rawPressure = tick.reading;
        state.source = tick.source;
        state.sourceText = tick.sourceText;
        state.readingTime = tick.time - tick.readingAgeMs;
        // As the display line reckons it: the offset read as the tick reads it, then the level.
        const double elevation = settings.value(SettingKey::Elevation, SettingDefault::Elevation).toDouble();
        const double offset = settings.value(SettingKey::Offset, SettingDefault::OffsetAtTick).toDouble();
        double shown = tick.reading + offset;
        state.stationPressureHpa = shown;
        if (state.level != 1)
            shown /= Pressure::seaLevelFactor(elevation);
        state.shownPressureHpa = shown;
        state.shownPressure = PressureUnits::fromHpa(shown, state.unit);
    }
    state.logged = tick.logged;

    if (log) {
        state.trend = log->getTrend();
        if (tick.source >= 0) {
            state.change3h = orUnknown(log->lastChange3h());
            state.change1h = orUnknown(log->lastChange1h());
            // Shown beside a pressure only, as on the pages.
            const TendencyReport& tendency = *log->getTendency();
            state.tendencyWords = tendency.getWords();
            state.characteristic = tendency.getCharacteristic();
            state.characteristicText = tendency.getCharacteristicText();
            state.forecast = tendency.getForecast();
        }
        const PressureWarning& warning = *log->getWarning();
        state.warningLevel = warning.getLevel();
        state.warningFall3h = warning.getFall3h();
        state.warningFall1h = warning.getFall1h();
        state.warningSince = warning.getSince();
        state.warningAcknowledged = warning.isAcknowledged();
        if (state.warningLevel != PressureWarning::None) {
            state.warningText = warning.levelText();
            state.warningDetail = warning.detailText();
        }
    }

    // Exact zero in both components is the one position taken for none, as on the pages.
    state.hasFix = tick.hasFix && !(tick.fix.x() == 0.0 && tick.fix.y() == 0.0);
    if (state.hasFix) {
        state.longitude = tick.fix.x();
        state.latitude = tick.fix.y();
        state.cog = tick.cog;
        state.sog = tick.sog;
    }

    const int theme = settings.value(SettingKey::Theme, SettingDefault::Theme).toInt();
    state.followsSystem = theme == 2;
    state.theme = state.followsSystem ? tick.systemTheme : (theme == 1 ? 1 : 0);
    // Start-up stores the language it chose, so the key always says which one is shown.
    state.language = settings.value(SettingKey::Language, SettingDefault::Language).toInt() == 0
            ? QStringLiteral("en")
            : QStringLiteral("fr");
    return state;
}
