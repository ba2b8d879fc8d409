// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "util/ThreeHourPoints.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QString>

// The words of the marine forecast glossary for the pressure's change over three hours, as
// a navigator hears them in a station report: "falling quickly", "now rising".
//
// The change is rounded to a tenth of a hectopascal first; then its size reads: steady
// below 0.1, slowly 0.1 to 1.5, plain rising or falling 1.6 to 3.5, quickly 3.6 to 6.0,
// very rapidly above 6.0 (the UK Met Office's marine forecast glossary, "Pressure tendency
// in station reports").
//
// "Now rising (falling)" is defined there as: the pressure "has been falling (rising) or
// steady in the preceding three hours, but at the time of observation was definitely
// rising (falling)". Read here as: over the first half of the three hours (three hours to
// an hour and a half ago) it fell or stayed steady (a change of 0.0 once rounded, or a
// fall), and over the second half it rose by at least 0.5 hPa. That turn takes precedence
// over the size of the whole change, as the glossary's term replaces the others.
class TendencyWords
{
    Q_DECLARE_TR_FUNCTIONS(TendencyWords)

public:
    enum Word {
        Steady,
        RisingSlowly,
        Rising,
        RisingQuickly,
        RisingVeryRapidly,
        FallingSlowly,
        Falling,
        FallingQuickly,
        FallingVeryRapidly,
        NowRising,
        NowFalling,
    };

    // A turn within the three hours is "definite" from this change, in tenths of a hPa, over
    // the last hour and a half.
    static constexpr long DefiniteTurn = 5;

    static Word classify(const ThreeHourPoints& points);
    // By the size of the whole change alone, in tenths of a hPa.
    static Word bySize(long changeTenths);
    // The words in the current language, in lower case as they follow a figure.
    static QString text(Word word);
};
