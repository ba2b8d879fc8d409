// SPDX-License-Identifier: GPL-3.0-or-later
#include "util/BarometerForecast.h"

#include <QtCore/QTranslator>
#include <QtTest/QtTest>

#include <optional>

Q_DECLARE_METATYPE(BarometerForecast::Trend)
Q_DECLARE_METATYPE(BarometerForecast::Hemisphere)
Q_DECLARE_METATYPE(std::optional<double>)

namespace {
using Forecast = BarometerForecast;

// The published table: the letter of each band of the dial, from 950 hPa upwards, in the
// rising, the steady and the falling window.
const char* const PublishedRising = "ZZZYYTQMLJIGFCBBAAAAAA";
const char* const PublishedSteady = "ZZZZZZXXWSPNKEBBAAAAAA";
const char* const PublishedFalling = "ZZZZZZZZXXVUROHDBBBAAA";

// The forecasts A to Z as the instrument words them, and as the French catalogue has them.
const char* const Texts[26][2] = {
    {"Settled fine", "Beau temps durable"},
    {"Fine weather", "Beau temps"},
    {"Becoming fine", "Devenant beau"},
    {"Fine, becoming less settled", "Beau, devenant moins stable"},
    {"Fine, possible showers", "Beau, averses possibles"},
    {"Fairly fine, improving", "Assez beau, en amélioration"},
    {"Fairly fine, possible showers early", "Assez beau, averses possibles d'abord"},
    {"Fairly fine, showery later", "Assez beau, averses plus tard"},
    {"Showery early, improving", "Averses d'abord, en amélioration"},
    {"Changeable, mending", "Variable, en voie d'amélioration"},
    {"Fairly fine, showers likely", "Assez beau, averses probables"},
    {"Rather unsettled clearing later", "Plutôt instable, éclaircies plus tard"},
    {"Unsettled, probably improving", "Instable, amélioration probable"},
    {"Showery, bright intervals", "Averses et belles éclaircies"},
    {"Showery, becoming less settled", "Averses, devenant moins stable"},
    {"Changeable, some rain", "Variable, un peu de pluie"},
    {"Unsettled, short fine intervals", "Instable, courtes éclaircies"},
    {"Unsettled, rain later", "Instable, pluie plus tard"},
    {"Unsettled, some rain", "Instable, un peu de pluie"},
    {"Mostly very unsettled", "Le plus souvent très instable"},
    {"Occasional rain, worsening", "Pluie occasionnelle, se dégradant"},
    {"Rain at times, very unsettled", "Pluie par moments, très instable"},
    {"Rain at frequent intervals", "Pluie fréquente"},
    {"Rain, very unsettled", "Pluie, très instable"},
    {"Stormy, may improve", "Tempête, amélioration possible"},
    {"Stormy, much rain", "Tempête, beaucoup de pluie"},
};

const char* windowOf(Forecast::Trend trend)
{
    return trend == Forecast::Rising ? PublishedRising : trend == Forecast::Falling ? PublishedFalling
                                                                                     : PublishedSteady;
}

const char* trendName(Forecast::Trend trend)
{
    return trend == Forecast::Rising ? "rising" : trend == Forecast::Falling ? "falling" : "steady";
}
}

// The forecaster against every case of the table it is read from, in both hemispheres,
// both seasons and both languages; the method's own bounds beside it.
class TestBarometerForecast : public QObject
{
    Q_OBJECT

private slots:
    // Every band of every window, seen from the middle of the band on the dial. In summer
    // the barometer's own reading lies 7 hPa off the dial's for a rising or falling glass.
    void everyCaseOfTheTable_data()
    {
        QTest::addColumn<double>("pressure");
        QTest::addColumn<Forecast::Trend>("trend");
        QTest::addColumn<int>("month");
        QTest::addColumn<Forecast::Hemisphere>("hemisphere");
        QTest::addColumn<int>("letter");

        struct Season
        {
            const char* name;
            int month;
            Forecast::Hemisphere hemisphere;
            bool summer;
        };
        const Season seasons[] = {{"January, north: winter", 1, Forecast::North, false},
                                  {"July, south: winter", 7, Forecast::South, false},
                                  {"July, north: summer", 7, Forecast::North, true},
                                  {"January, south: summer", 1, Forecast::South, true}};
        for (const Season& season : seasons) {
            for (Forecast::Trend trend : {Forecast::Rising, Forecast::Steady, Forecast::Falling}) {
                for (int band = 0; band < Forecast::BandCount; ++band) {
                    const double onDial = 950.0 + (band + 0.5) * 4.545;
                    const double pressure = season.summer ? onDial - trend * 7.0 : onDial;
                    const int letter = windowOf(trend)[band] - 'A';
                    QTest::addRow("%s, band %d at %.2f hPa, %s", trendName(trend), band, pressure, season.name)
                            << pressure << trend << season.month << season.hemisphere << letter;
                }
            }
        }
    }

    // In English, and in French from the catalogue.
    void everyCaseOfTheTable()
    {
        QFETCH(double, pressure);
        QFETCH(Forecast::Trend, trend);
        QFETCH(int, month);
        QFETCH(Forecast::Hemisphere, hemisphere);
        QFETCH(int, letter);
        const Forecast::Forecast forecast = Forecast::forecast(pressure, trend, month, hemisphere);
        QCOMPARE(QChar('A' + forecast.letter), QChar('A' + letter));
        QVERIFY(!forecast.exceptional);
        QCOMPARE(Forecast::text(forecast), QString::fromUtf8(Texts[letter][0]));

        QTranslator translator;
        QVERIFY(translator.load(QStringLiteral(BRINHOLT_BINARY_DIR "/Brinholt_fr_FR.qm")));
        QCoreApplication::installTranslator(&translator);
        const QString french = Forecast::text(forecast);
        QCoreApplication::removeTranslator(&translator);
        QCOMPARE(french, QString::fromUtf8(Texts[letter][1]));
    }

    // The bands' width and the summer's shift, pinned where a tenth of a hPa moves a band:
    // band 11 starts at 950 + 11 x 4.545 = 999.995 hPa on the dial.
    void theBandsEdgesAndTheSummerShift_data()
    {
        QTest::addColumn<double>("pressure");
        QTest::addColumn<Forecast::Trend>("trend");
        QTest::addColumn<int>("month");
        QTest::addColumn<QString>("letter");
        QTest::newRow("steady 1000.0 is band 11") << 1000.0 << Forecast::Steady << 1 << "N";
        QTest::newRow("steady 999.99 is band 10") << 999.99 << Forecast::Steady << 1 << "P";
        QTest::newRow("rising 993.0 in July reads 1000.0") << 993.0 << Forecast::Rising << 7 << "G";
        QTest::newRow("rising 992.9 in July reads 999.9") << 992.9 << Forecast::Rising << 7 << "I";
        QTest::newRow("rising 993.0 in January") << 993.0 << Forecast::Rising << 1 << "J";
        QTest::newRow("falling 1007.0 in July reads 1000.0") << 1007.0 << Forecast::Falling << 7 << "U";
        QTest::newRow("falling 1006.9 in July reads 999.9") << 1006.9 << Forecast::Falling << 7 << "V";
        QTest::newRow("steady 1000.0 in July has no shift") << 1000.0 << Forecast::Steady << 7 << "N";
    }

    void theBandsEdgesAndTheSummerShift()
    {
        QFETCH(double, pressure);
        QFETCH(Forecast::Trend, trend);
        QFETCH(int, month);
        QFETCH(QString, letter);
        QCOMPARE(QString(QChar('A' + Forecast::forecast(pressure, trend, month, Forecast::North).letter)), letter);
    }

    void theSeasonsTurnWithTheHemisphere_data()
    {
        QTest::addColumn<int>("month");
        QTest::addColumn<bool>("northernSummer");
        QTest::newRow("March is winter in the north") << 3 << false;
        QTest::newRow("April is summer in the north") << 4 << true;
        QTest::newRow("September is summer in the north") << 9 << true;
        QTest::newRow("October is winter in the north") << 10 << false;
        QTest::newRow("December is winter in the north") << 12 << false;
    }

    void theSeasonsTurnWithTheHemisphere()
    {
        QFETCH(int, month);
        QFETCH(bool, northernSummer);
        QCOMPARE(Forecast::isSummer(month, Forecast::North), northernSummer);
        QCOMPARE(Forecast::isSummer(month, Forecast::South), !northernSummer);
    }

    void theTrendFromTheThreeHourChange_data()
    {
        QTest::addColumn<int>("tenths");
        QTest::addColumn<Forecast::Trend>("trend");
        QTest::newRow("1.5 up is steady") << 15 << Forecast::Steady;
        QTest::newRow("1.6 up is rising") << 16 << Forecast::Rising;
        QTest::newRow("1.5 down is steady") << -15 << Forecast::Steady;
        QTest::newRow("1.6 down is falling") << -16 << Forecast::Falling;
        QTest::newRow("nothing is steady") << 0 << Forecast::Steady;
    }

    void theTrendFromTheThreeHourChange()
    {
        QFETCH(int, tenths);
        QFETCH(Forecast::Trend, trend);
        QCOMPARE(Forecast::trendOf(tenths), trend);
    }

    void outsideTheWindowTheWeatherIsExceptional_data()
    {
        QTest::addColumn<double>("pressure");
        QTest::addColumn<Forecast::Trend>("trend");
        QTest::addColumn<int>("month");
        QTest::addColumn<QString>("expected");
        QTest::newRow("949.9 steady") << 949.9 << Forecast::Steady << 1 << "Exceptional weather, Stormy, much rain";
        QTest::newRow("950.0 steady is in") << 950.0 << Forecast::Steady << 1 << "Stormy, much rain";
        QTest::newRow("1050.0 steady is in") << 1050.0 << Forecast::Steady << 1 << "Settled fine";
        QTest::newRow("1050.1 steady") << 1050.1 << Forecast::Steady << 1 << "Exceptional weather, Settled fine";
        QTest::newRow("1045 rising in summer reads 1052") << 1045.0 << Forecast::Rising << 7
                                                          << "Exceptional weather, Settled fine";
        QTest::newRow("1045 rising in winter") << 1045.0 << Forecast::Rising << 1 << "Settled fine";
        QTest::newRow("955 falling in summer reads 948") << 955.0 << Forecast::Falling << 6
                                                         << "Exceptional weather, Stormy, much rain";
    }

    void outsideTheWindowTheWeatherIsExceptional()
    {
        QFETCH(double, pressure);
        QFETCH(Forecast::Trend, trend);
        QFETCH(int, month);
        QFETCH(QString, expected);
        QCOMPARE(Forecast::text(Forecast::forecast(pressure, trend, month, Forecast::North)), expected);
    }

    void theHemisphereAndTheTropics_data()
    {
        QTest::addColumn<int>("setting");
        QTest::addColumn<std::optional<double>>("latitude");
        QTest::addColumn<int>("expected");
        const std::optional<double> none;
        QTest::newRow("from the fix, no fix: none") << 0 << none << 0;
        QTest::newRow("from the fix, 47 N") << 0 << std::optional<double>(47.0) << int(Forecast::North);
        QTest::newRow("from the fix, 40 S") << 0 << std::optional<double>(-40.0) << int(Forecast::South);
        QTest::newRow("from the fix, 23.5 N holds") << 0 << std::optional<double>(23.5) << int(Forecast::North);
        QTest::newRow("from the fix, 23.5 S holds") << 0 << std::optional<double>(-23.5) << int(Forecast::South);
        QTest::newRow("from the fix, 23.4 N: the tropics") << 0 << std::optional<double>(23.4) << 0;
        QTest::newRow("from the fix, 23.4 S: the tropics") << 0 << std::optional<double>(-23.4) << 0;
        QTest::newRow("north without a fix") << 1 << none << int(Forecast::North);
        QTest::newRow("south without a fix") << 2 << none << int(Forecast::South);
        QTest::newRow("north chosen, fix in the tropics") << 1 << std::optional<double>(10.0) << 0;
        QTest::newRow("south chosen, fix at 60 S") << 2 << std::optional<double>(-60.0) << int(Forecast::South);
    }

    void theHemisphereAndTheTropics()
    {
        QFETCH(int, setting);
        QFETCH(std::optional<double>, latitude);
        QFETCH(int, expected);
        const auto hemisphere = Forecast::hemisphereFor(setting, latitude);
        QCOMPARE(hemisphere ? int(*hemisphere) : 0, expected);
    }
};

QTEST_GUILESS_MAIN(TestBarometerForecast)
#include "tst_barometerforecast.moc"
