// SPDX-License-Identifier: GPL-3.0-or-later
#include "log/TendencyReport.h"

#include "log/LogHost.h"
#include "util/BarometerForecast.h"
#include "util/Pressure.h"
#include "util/PressureCharacteristic.h"
#include "util/SettingKeys.h"
#include "util/TendencyWords.h"
#include "util/Util.h"

#include <QtCore/QDateTime>
#include <QtCore/QSettings>

#include <cmath>

namespace {
// Decimals of a change by unit: mb, hPa, kPa, inHg, mmHg. A tenth of a hPa stays visible.
constexpr int ChangeDecimals[Pressure::UnitCount] = {1, 1, 2, 2, 1};

QString signedFigure(long tenths, double factor, int decimals)
{
    if (tenths == 0)
        return QString::number(0.0, 'f', decimals);
    const QString figure = QString::number(std::fabs(tenths / 10.0 * factor), 'f', decimals);
    return (tenths > 0 ? QStringLiteral("+") : QStringLiteral("-")) + figure;
}
}

TendencyReport::TendencyReport(QObject* parent)
    : QObject(parent)
{
}

void TendencyReport::evaluate(const std::optional<ThreeHourPoints>& points, std::optional<double> latitude,
                              qint64 time)
{
    words.clear();
    characteristic = -1;
    characteristicText.clear();
    forecast.clear();
    if (points) {
        words = wordsLine(*points);
        if (const auto reading = PressureCharacteristic::read(*points)) {
            characteristic = reading->code;
            characteristicText = PressureCharacteristic::text(*reading);
        }
        forecast = forecastLine(*points, latitude, time);
    }
    emit evaluated();
}

QString TendencyReport::wordsLine(const ThreeHourPoints& points)
{
    LogHost* host = LogHost::installed();
    const int unit = host ? host->getSetting(SettingKey::UnitPre, SettingDefault::UnitPre).toInt() : Pressure::Hpa;
    const QString unitText = host ? host->getPressureUnit() : QStringLiteral("hPa");
    // A difference converts by the unit's factor alone.
    const double factor = host ? host->convertToOther(1.0) : 1.0;
    const int decimals = unit >= 0 && unit < Pressure::UnitCount ? ChangeDecimals[unit] : 1;
    return tr("%1, %2 %3 in 3 h")
            .arg(TendencyWords::text(TendencyWords::classify(points)),
                 signedFigure(points.change(), factor, decimals), unitText);
}

QString TendencyReport::forecastLine(const ThreeHourPoints& points, std::optional<double> latitude, qint64 time)
{
    LogHost* host = LogHost::installed();
    if (!host || host->getSetting(SettingKey::ForecastOn, SettingDefault::ForecastOn).toInt() != 1)
        return QString();
    const int setting = host->getSetting(SettingKey::ForecastHemisphere, SettingDefault::ForecastHemisphere).toInt();
    const std::optional<BarometerForecast::Hemisphere> hemisphere = BarometerForecast::hemisphereFor(setting, latitude);
    if (!hemisphere)
        return QString();

    // The dial reads sea-level pressure, whatever the display shows.
    const QSettings* settings = host->getSettings();
    const double offset = settings->value(SettingKey::Offset, SettingDefault::Offset).toDouble();
    const double elevation = settings->value(SettingKey::Elevation, SettingDefault::Elevation).toDouble();
    const double seaLevel = (points.end + offset) / Pressure::seaLevelFactor(elevation);
    const int month = Util::convertDateTime(QDateTime::fromSecsSinceEpoch(time, Qt::UTC)).date().month();

    const BarometerForecast::Forecast forecast = BarometerForecast::forecast(
            seaLevel, BarometerForecast::trendOf(points.change()), month, *hemisphere);
    return tr("Rule of thumb for temperate latitudes: %1").arg(BarometerForecast::text(forecast));
}
