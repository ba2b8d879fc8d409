// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QtCore/QCoreApplication>
#include <QtCore/QString>

#include <optional>

// The classic barometer forecast of Negretti and Zambra's "Zambretti" forecaster, in the
// simplified form that leaves the wind out: one of 26 short forecasts (A to Z) from the
// sea-level pressure, whether the barometer rises, falls or stays, and the season.
//
// Read as beteljuice describes the instrument in "near enough Zambretti Algorithm"
// (beteljuice.com, June 2008, v1.0): the dial's window of 950 to 1050 hPa falls into 22
// bands of 4.545 hPa (the hundred hPa divided by 22, as he rounds it), and each band shows
// one letter in the rising, the steady and the falling window (the three tables below,
// from his own). In summer a rising barometer reads 7 hPa higher on the dial and a falling
// one 7 hPa lower, which are the instrument's "S" marks; the card that comes with it counts
// April to September as summer, which is the northern summer, so the southern hemisphere
// takes October to March. A pressure that leaves the window after that is read at the
// nearest end and called "exceptional weather". The wind's correction is the part left out.
//
// When the barometer counts as rising or falling the instrument leaves to the eye; here it
// is a three-hour change of at least 1.6 hPa either way, what the marine glossary calls
// rising or falling and more, while a change it calls slow (1.5 hPa or less) reads as
// steady.
//
// A rule of thumb for temperate latitudes only: between the tropics the pressure's daily
// tide is as large as the weather's signal, and there it is not given at all.
class BarometerForecast
{
    Q_DECLARE_TR_FUNCTIONS(BarometerForecast)

public:
    enum Trend { Falling = -1, Steady = 0, Rising = 1 };
    // As the key "forecastHemisphere" stores them; 0 there means "from the last fix".
    enum Hemisphere { North = 1, South = 2 };

    struct Forecast
    {
        // 0 for A to 25 for Z.
        int letter = 0;
        bool exceptional = false;
    };

    static constexpr double WindowBottom = 950.0;
    static constexpr double WindowTop = 1050.0;
    static constexpr double BandWidth = 4.545;
    static constexpr int BandCount = 22;
    static constexpr double SummerShift = 7.0;
    // Tenths of a hPa in three hours from which the barometer rises or falls.
    static constexpr long TrendFrom = 16;
    static constexpr double TropicLatitude = 23.5;

    static Trend trendOf(long changeTenths);
    static bool isSummer(int month, Hemisphere hemisphere);
    static Forecast forecast(double seaLevelHpa, Trend trend, int month, Hemisphere hemisphere);
    // The letter the dial shows in a band (0 at the bottom of the window) for a trend.
    static int letterInBand(int band, Trend trend);
    // Whether the method holds at that latitude: outside the tropics, their edges included.
    static bool holdsAt(double latitude);
    // The hemisphere to read for, by the "forecastHemisphere" setting and the latitude of
    // the last fix: the setting's own choice, or with 0 the fix's. A fix between the tropics
    // gives none whatever the setting; so does 0 without a fix.
    static std::optional<Hemisphere> hemisphereFor(int setting, std::optional<double> latitude);

    static QString text(const Forecast& forecast);
    static QString letterText(int letter);
};
