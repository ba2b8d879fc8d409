// SPDX-License-Identifier: GPL-3.0-or-later
#include "PageDriver.h"
#include "PageHarness.h"

#include "app/BackEnd.h"
#include "log/Barogram.h"
#include "log/DataSource.h"
#include "nmea/NmeaSourceType.h"
#include "tests/support/Columns.h"

#include <QtCore/QDir>
#include <QtGui/QImage>
#include <QtQuick/QQuickItem>
#include <QtQuick/QQuickWindow>
#include <QtTest/QtTest>

#include <cmath>

using namespace PageDriver;

namespace {

constexpr qint64 T0 = 1700000040;

QString screenshot(const QString& file)
{
    return QDir(BRINHOLT_BINARY_DIR "/screenshots").filePath(file);
}

} // namespace

// The graph page and the large display with the tendency's words, its characteristic and
// the forecast, and the barogram with the characteristic in its title block, in both
// themes at the size of a first start; the pictures land in <build>/screenshots.
class TestTendencyScreens : public QObject
{
    Q_OBJECT

private:
    // Three hours of a barometer that falls ever faster, every row of BARO3H written.
    static void fallingLog(PageHarness& h)
    {
        for (qint64 age = 10800; age > 0; age -= 12) {
            const double hours = age / 3600.0;
            QVERIFY(h.insertRow("BARO3H", T0 - age, 1002.9 + 2.2 * hours - 0.3 * hours * hours));
        }
    }

private slots:
    void initTestCase()
    {
        if (!readyToPhotograph())
            QSKIP("needs an X display: run under xvfb-run with QT_QPA_PLATFORM=xcb");
    }

    void pages_data()
    {
        Columns::ints("theme", {{"light", 0}, {"dark", 1}});
    }

    void pages()
    {
        QFETCH(int, theme);
        PageHarness h;
        h.writeSetting("theme", theme);
        h.writeSetting("splitScreen", 1);
        h.writeSetting("forecastOn", 1);
        h.writeSetting("SettingSerialPort", QStringLiteral("None"));
        QVERIFY(h.start(true));
        fallingLog(h);
        // Off Brittany: the forecast is read for the north from the fix.
        h.backEnd()->setPositionData(QPointF(-4.5, 47.25), 0.0, 0.0, Serial);
        h.sample(T0, 1002.9);
        press(h, "button3h");
        const QString name = theme == 1 ? QStringLiteral("dark") : QStringLiteral("light");

        QQuickItem* graph = h.item("baroH");
        QQuickItem* words = h.item("textTendency", graph);
        QTRY_VERIFY(words && words->isVisible());
        QVERIFY(words->mapToScene(QPointF(0, words->height())).y() < h.window()->height());
        QTest::qWait(200);
        QVERIFY(h.window()->grabWindow().save(screenshot(QStringLiteral("tendency-graph-%1.png").arg(name))));

        h.find("view")->setProperty("currentIndex", 1);
        QQuickItem* large = h.item("baroV");
        QTRY_VERIFY(std::abs(large->mapToScene(QPointF(0, 0)).x()) < 0.5);
        QQuickItem* forecast = h.item("textForecast", large);
        QVERIFY(forecast && forecast->isVisible());
        QVERIFY(forecast->mapToScene(QPointF(0, forecast->height())).y() < h.window()->height());
        QTest::qWait(200);
        QVERIFY(h.window()->grabWindow().save(screenshot(QStringLiteral("tendency-large-%1.png").arg(name))));
        checkClean(h);
    }

    void barogram()
    {
        PageHarness h;
        QVERIFY(h.start(false));
        fallingLog(h);
        h.backEnd()->setPositionData(QPointF(-4.5, 47.25), 0.0, 0.0, Serial);
        h.sample(T0, 1002.9);
        const Barogram picture(*h.log(), 1);
        QVERIFY(picture.facts().join(QLatin1Char(' ')).contains(QStringLiteral("Characteristic 8")));
        QVERIFY(picture.savePng(screenshot(QStringLiteral("tendency-barogram.png"))));
    }
};

QTEST_MAIN(TestTendencyScreens)
#include "tst_tendencyscreens.moc"
