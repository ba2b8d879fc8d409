// SPDX-License-Identifier: GPL-3.0-or-later
#include "PageDriver.h"
#include "PageHarness.h"

#include <QtQuick/QQuickItem>
#include <QtQuick/QQuickWindow>
#include <QtTest/QtTest>

using namespace PageDriver;

namespace {

// 14 November 2023, a whole minute: a northern winter's day.
constexpr qint64 T0 = 1700000040;

const QString Words = QStringLiteral("falling quickly, -4.1 mb in 3 h");
const QString Characteristic = QStringLiteral("characteristic 8: falling, then falling more quickly");
// 1002.9 hPa and falling in a northern November: band 11 of the falling window.
const QString Forecast = QStringLiteral("Rule of thumb for temperate latitudes: Occasional rain, worsening");

} // namespace

// The tendency's words and characteristic under the pressure on the graph page and the
// large display, and the rule-of-thumb forecast on the large display alone.
class TestTendencyLines : public QObject
{
    Q_OBJECT

private:
    static bool startOn(PageHarness& h, const char* page, const QString& language = QStringLiteral("en"))
    {
        h.writeSetting("splitScreen", 1);
        if (!startMain(h, QSize(800, 600), language) || !h.item(page))
            return false;
        if (QLatin1String(page) == QLatin1String("baroV"))
            h.find("view")->setProperty("currentIndex", 1);
        return true;
    }

    // Three hours of a falling barometer: 1007.0, then 1005.5 half way.
    static void fallingLog(PageHarness& h)
    {
        QVERIFY(h.insertRow("BARO3H", T0 - 10800, 1007.0));
        QVERIFY(h.insertRow("BARO3H", T0 - 5400, 1005.5));
    }

    static void bothPages()
    {
        QTest::addColumn<QString>("page");
        QTest::newRow("graph page") << "baroH";
        QTest::newRow("large display") << "baroV";
    }

    static QQuickItem* line(PageHarness& h, const char* page, const char* name)
    {
        return h.item(QString::fromLatin1(name), h.item(QString::fromLatin1(page)));
    }

private slots:
    void nothingWhileTheLogIsYoung_data() { bothPages(); }

    void nothingWhileTheLogIsYoung()
    {
        QFETCH(QString, page);
        PageHarness h;
        h.writeSetting("forecastOn", 1);
        h.writeSetting("forecastHemisphere", 1);
        QVERIFY(startOn(h, qPrintable(page)));
        h.sample(T0, 1002.9);
        QQuickItem* words = line(h, qPrintable(page), "textTendency");
        QVERIFY(words);
        QVERIFY(!words->isVisible());
        if (QQuickItem* forecast = line(h, qPrintable(page), "textForecast"))
            QVERIFY(!forecast->isVisible());
        checkClean(h);
    }

    void wordsUnderThePressure_data() { bothPages(); }

    void wordsUnderThePressure()
    {
        QFETCH(QString, page);
        PageHarness h;
        QVERIFY(startOn(h, qPrintable(page)));
        fallingLog(h);
        h.sample(T0, 1002.9);
        QQuickItem* words = line(h, qPrintable(page), "textTendency");
        QVERIFY(words);
        QTRY_VERIFY(words->isVisible());
        QCOMPARE(words->property("text").toString(), Words + QStringLiteral("  \u2013  ") + Characteristic);
        // An element of its own, under the pressure, not in the chart's title.
        QQuickItem* row = line(h, qPrintable(page), "rowPressure");
        // Laid out at the next polish.
        QTRY_VERIFY(words->mapToScene(QPointF(0, 0)).y() >= row->mapToScene(QPointF(0, row->height())).y() - 0.5);
        QVERIFY(words->height() > 0);
        if (QObject* chart = h.chart())
            QVERIFY(!chart->property("title").toString().contains(QStringLiteral("falling")));
        // Off by default.
        if (QQuickItem* forecast = line(h, qPrintable(page), "textForecast"))
            QVERIFY(!forecast->isVisible());

        // Without pressure the words go with the figure they stand beside.
        h.sampleWithoutPressure(T0 + 2);
        QTRY_VERIFY(!words->isVisible());
        checkClean(h);
    }

    void theForecastOnTheLargeDisplay()
    {
        PageHarness h;
        h.writeSetting("forecastOn", 1);
        h.writeSetting("forecastHemisphere", 1);
        QVERIFY(startOn(h, "baroV"));
        fallingLog(h);
        h.sample(T0, 1002.9);
        QQuickItem* forecast = line(h, "baroV", "textForecast");
        QVERIFY(forecast);
        QTRY_VERIFY(forecast->isVisible());
        QCOMPARE(forecast->property("text").toString(), Forecast);
        QQuickItem* words = line(h, "baroV", "textTendency");
        QTRY_VERIFY(forecast->mapToScene(QPointF(0, 0)).y() >= words->mapToScene(QPointF(0, words->height())).y() - 0.5);
        // The whole line, shrunk to the width rather than cut.
        QVERIFY(!forecast->property("truncated").toBool());
        QVERIFY(forecast->property("contentWidth").toDouble() <= forecast->width() + 0.5);
        // The graph page keeps to the words.
        QVERIFY(!line(h, "baroH", "textForecast"));
        checkClean(h);
    }

    void inFrench()
    {
        PageHarness h;
        QVERIFY(copyCatalogues(h.folder().path()));
        h.writeSetting("language", 1);
        h.writeSetting("forecastOn", 1);
        h.writeSetting("forecastHemisphere", 1);
        QVERIFY(startOn(h, "baroV", QStringLiteral("fr")));
        fallingLog(h);
        h.sample(T0, 1002.9);
        QTRY_COMPARE(line(h, "baroV", "textTendency")->property("text").toString(),
                     QString::fromUtf8("en baisse rapide, -4.1 mb en 3 h  \u2013  "
                                       "caractéristique 8 : en baisse, puis baisse plus rapide"));
        QCOMPARE(line(h, "baroV", "textForecast")->property("text").toString(),
                 QString::fromUtf8("Règle empirique des latitudes tempérées : Pluie occasionnelle, se dégradant"));
        checkClean(h);
    }
};

QTEST_MAIN(TestTendencyLines)
#include "tst_tendencylines.moc"
