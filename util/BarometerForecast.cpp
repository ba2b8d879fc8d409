// SPDX-License-Identifier: GPL-3.0-or-later
#include "util/BarometerForecast.h"

#include <QtCore/QtGlobal>

#include <cmath>
#include <cstdlib>

namespace {
// The dial's letters band by band, from 950 hPa upwards, for each window.
constexpr char RisingWindow[] = "ZZZYYTQMLJIGFCBBAAAAAA";
constexpr char SteadyWindow[] = "ZZZZZZXXWSPNKEBBAAAAAA";
constexpr char FallingWindow[] = "ZZZZZZZZXXVUROHDBBBAAA";

static_assert(sizeof(RisingWindow) == BarometerForecast::BandCount + 1, "one letter per band");
static_assert(sizeof(SteadyWindow) == BarometerForecast::BandCount + 1, "one letter per band");
static_assert(sizeof(FallingWindow) == BarometerForecast::BandCount + 1, "one letter per band");

// The forecast of each letter, A to Z, as the back of the instrument gives it.
const char* const LetterTexts[26] = {
    QT_TRANSLATE_NOOP("BarometerForecast", "Settled fine"),
    QT_TRANSLATE_NOOP("BarometerForecast", "Fine weather"),
    QT_TRANSLATE_NOOP("BarometerForecast", "Becoming fine"),
    QT_TRANSLATE_NOOP("BarometerForecast", "Fine, becoming less settled"),
    QT_TRANSLATE_NOOP("BarometerForecast", "Fine, possible showers"),
    QT_TRANSLATE_NOOP("BarometerForecast", "Fairly fine, improving"),
    QT_TRANSLATE_NOOP("BarometerForecast", "Fairly fine, possible showers early"),
    QT_TRANSLATE_NOOP("BarometerForecast", "Fairly fine, showery later"),
    QT_TRANSLATE_NOOP("BarometerForecast", "Showery early, improving"),
    QT_TRANSLATE_NOOP("BarometerForecast", "Changeable, mending"),
    QT_TRANSLATE_NOOP("BarometerForecast", "Fairly fine, showers likely"),
    QT_TRANSLATE_NOOP("BarometerForecast", "Rather unsettled clearing later"),
    QT_TRANSLATE_NOOP("BarometerForecast", "Unsettled, probably improving"),
    QT_TRANSLATE_NOOP("BarometerForecast", "Showery, bright intervals"),
    QT_TRANSLATE_NOOP("BarometerForecast", "Showery, becoming less settled"),
    QT_TRANSLATE_NOOP("BarometerForecast", "Changeable, some rain"),
    QT_TRANSLATE_NOOP("BarometerForecast", "Unsettled, short fine intervals"),
    QT_TRANSLATE_NOOP("BarometerForecast", "Unsettled, rain later"),
    QT_TRANSLATE_NOOP("BarometerForecast", "Unsettled, some rain"),
    QT_TRANSLATE_NOOP("BarometerForecast", "Mostly very unsettled"),
    QT_TRANSLATE_NOOP("BarometerForecast", "Occasional rain, worsening"),
    QT_TRANSLATE_NOOP("BarometerForecast", "Rain at times, very unsettled"),
    QT_TRANSLATE_NOOP("BarometerForecast", "Rain at frequent intervals"),
    QT_TRANSLATE_NOOP("BarometerForecast", "Rain, very unsettled"),
    QT_TRANSLATE_NOOP("BarometerForecast", "Stormy, may improve"),
    QT_TRANSLATE_NOOP("BarometerForecast", "Stormy, much rain"),
};
}

BarometerForecast::Trend BarometerForecast::trendOf(long changeTenths)
{
    if (changeTenths >= TrendFrom)
        return Rising;
    if (changeTenths <= -TrendFrom)
        return Falling;
    return Steady;
}

bool BarometerForecast::isSummer(int month, Hemisphere hemisphere)
{
    const bool northernSummer = month >= 4 && month <= 9;
    return hemisphere == North ? northernSummer : !northernSummer;
}

BarometerForecast::Forecast BarometerForecast::forecast(double seaLevelHpa, Trend trend, int month,
                                                        Hemisphere hemisphere)
{
    double onDial = seaLevelHpa;
    if (isSummer(month, hemisphere))
        onDial += trend * SummerShift;

    Forecast result;
    result.exceptional = onDial < WindowBottom || onDial > WindowTop;
    const int band = qBound(0, static_cast<int>(std::floor((onDial - WindowBottom) / BandWidth)), BandCount - 1);
    result.letter = letterInBand(band, trend);
    return result;
}

int BarometerForecast::letterInBand(int band, Trend trend)
{
    const char* window = trend == Rising ? RisingWindow : trend == Falling ? FallingWindow : SteadyWindow;
    return window[qBound(0, band, BandCount - 1)] - 'A';
}

bool BarometerForecast::holdsAt(double latitude)
{
    return std::fabs(latitude) >= TropicLatitude;
}

std::optional<BarometerForecast::Hemisphere> BarometerForecast::hemisphereFor(int setting,
                                                                            std::optional<double> latitude)
{
    if (latitude && !holdsAt(*latitude))
        return std::nullopt;
    if (setting == North || setting == South)
        return Hemisphere(setting);
    if (!latitude)
        return std::nullopt;
    return *latitude > 0.0 ? North : South;
}

QString BarometerForecast::text(const Forecast& forecast)
{
    const QString words = letterText(forecast.letter);
    return forecast.exceptional ? tr("Exceptional weather, %1").arg(words) : words;
}

QString BarometerForecast::letterText(int letter)
{
    if (letter < 0 || letter >= 26)
        return QString();
    return tr(LetterTexts[letter]);
}
