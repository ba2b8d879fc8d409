// SPDX-License-Identifier: GPL-3.0-or-later
#include "PageDriver.h"
#include "PageHarness.h"
#include "PageInput.h"
#include "tests/support/Columns.h"
#include "tests/support/HostTheme.h"

#include "app/BackEnd.h"
#include "app/TranslationHandler.h"

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QPointer>
#include <QtCore/QSettings>
#include <QtGui/QColor>
#include <QtQuick/QQuickItem>
#include <QtQuick/QQuickWindow>
#include <QtTest/QtTest>

#include <cmath>

using namespace PageDriver;

namespace {

constexpr qint64 T0 = 1700000040;
constexpr double FeetPerMetre = 3.0 * 39.37 / 36.0;
constexpr double HpaToInHg = 0.029529983071445;
constexpr double HpaToMmHg = 0.75006157584566;

} // namespace

// The settings page over the real BackEnd: its controls, their keys and defaults, the
// offset preview and what leaving the page writes.
class TestSettingsPage : public QObject
{
    Q_OBJECT

private:
    static QQuickItem* openSettings(PageHarness& h)
    {
        press(h, "settingsButton");
        QQuickItem* page = h.loadedPage();
        if (!page || page->objectName() != QLatin1String("settingsPage"))
            return nullptr;
        return page;
    }

    // The pressure-fall warning's controls live in a component of their own, so they are
    // found by object name.
    static QVariant named(PageHarness& h, QQuickItem* page, const char* name, const char* property)
    {
        QObject* object = h.find(QString::fromLatin1(name), page);
        return object ? object->property(property) : QVariant();
    }

    static void setNamed(PageHarness& h, QQuickItem* page, const char* name, const char* property, const QVariant& value)
    {
        QObject* object = h.find(QString::fromLatin1(name), page);
        QVERIFY2(object, name);
        QVERIFY2(object->setProperty(property, value), name);
    }

private slots:
    void controlsStartAtTheirDefaults()
    {
        PageHarness h;
        QVERIFY(startMain(h));
        QQuickItem* page = openSettings(h);
        QVERIFY(page);
        QCOMPARE(page->property("ready").toBool(), true);
        QCOMPARE(page->property("loader").value<QObject*>(), h.find("loader"));
        QCOMPARE(prop(page, "comboLangage", "currentIndex").toInt(), 0);
        QCOMPARE(prop(page, "comboLangage", "hasChanged").toBool(), false);
        QCOMPARE(prop(page, "comboTheme", "currentIndex").toInt(), 0);
        QCOMPARE(prop(page, "comboTimeZone", "currentIndex").toInt(), 1);
        QCOMPARE(prop(page, "comboDateFormat", "currentIndex").toInt(), 0);
        QCOMPARE(prop(page, "comboTimeFormat", "currentIndex").toInt(), 0);
        QCOMPARE(prop(page, "comboSpeedUnit", "currentIndex").toInt(), 0);
        QCOMPARE(prop(page, "comboPreUnit", "currentIndex").toInt(), 0);
        QCOMPARE(prop(page, "comboPrecision", "currentIndex").toInt(), 1);
        QCOMPARE(prop(page, "comboFormatLocation", "currentIndex").toInt(), 1);
        QCOMPARE(prop(page, "comboFormatLocation", "currentText").toString(), QStringLiteral("dd°mm.mm'"));
        QCOMPARE(prop(page, "comboPressureLevel", "currentIndex").toInt(), 0);
        QCOMPARE(prop(page, "comboElevationUnits", "currentIndex").toInt(), 0);
        QCOMPARE(prop(page, "elevation", "value").toInt(), 0);
        QCOMPARE(prop(page, "elevation", "decimals").toInt(), 1);
        QCOMPARE(prop(page, "elevation", "displayText").toString(), QStringLiteral("0.0"));
        QCOMPARE(prop(page, "elevation", "to").toInt(), 10000);
        QCOMPARE(prop(page, "spline", "checked").toBool(), true);
        QCOMPARE(prop(page, "straight", "checked").toBool(), false);
        QCOMPARE(prop(page, "swSplitScreen", "checked").toBool(), false);
        QCOMPARE(prop(page, "offset", "value").toInt(), 0);
        QCOMPARE(prop(page, "offset", "decimals").toInt(), 2);
        QCOMPARE(prop(page, "offset", "displayText").toString(), QStringLiteral("0.00"));
        QCOMPARE(prop(page, "offset", "from").toInt(), -1000);
        QCOMPARE(prop(page, "offset", "to").toInt(), 1000);
        QCOMPARE(prop(page, "offset", "stepSize").toInt(), 10);
        QCOMPARE(prop(page, "alwaysOn", "checked").toBool(), false);
        QCOMPARE(prop(page, "alwaysOn", "visible").toBool(), false);
        QCOMPARE(prop(page, "udpOutput", "visible").toBool(), false);
        QCOMPARE(prop(page, "sp_udpPort", "value").toInt(), 10110);
        QCOMPARE(prop(page, "versionText", "text").toString(), QStringLiteral("Version 3.0.0"));
        QCOMPARE(prop(page, "offsetCaption", "text").toString(), QStringLiteral("Pressure display offset (mb)"));
        QCOMPARE(prop(page, "lab", "text").toString(), QStringLiteral("Sea Level (QNH)"));
        QCOMPARE(prop(page, "elevationCaption", "text").toString(), QStringLiteral("Elevation (meters)"));
        QCOMPARE(prop(page, "buttonCalibration", "text").toString(), QStringLiteral("Quillmere Skerry\ncalibration"));
        checkClean(h);
    }

    void columnCountFollowsTheWindowWidth()
    {
        PageHarness h;
        QVERIFY(startMain(h));
        QQuickItem* page = openSettings(h);
        QVERIFY(page);
        const int colWidth = h.backEnd()->getColWidth();
        QVERIFY(colWidth > 0);
        QCOMPARE(prop(page, "grid", "columns").toInt(), std::max(1, 800 / colWidth));
        h.window()->setWidth(colWidth * 3 + 5);
        QTRY_COMPARE(prop(page, "grid", "columns").toInt(), 3);
        h.window()->setWidth(colWidth / 2);
        QTRY_COMPARE(prop(page, "grid", "columns").toInt(), 1);
        checkClean(h);
    }

    void offsetBlockFlowsByThePageShape()
    {
        PageHarness h;
        QVERIFY(startMain(h));
        QQuickItem* page = openSettings(h);
        QVERIFY(page);
        // 800 x 600: wider than high, side by side and centred.
        QCOMPARE(prop(page, "offsetGrid", "flow").toInt(), 0);
        QCOMPARE(PageHarness::evaluate(control(page, "stationPressure"), "Layout.alignment").toInt(),
                 int(Qt::AlignHCenter));
        h.window()->resize(400, 900);
        QTRY_COMPARE(prop(page, "offsetGrid", "flow").toInt(), 1);
        QCOMPARE(PageHarness::evaluate(control(page, "stationPressure"), "Layout.alignment").toInt(),
                 int(Qt::AlignLeft));
        checkClean(h);
    }

    void settingsRoundTrip()
    {
        PageHarness h;
        QVERIFY(startMain(h));
        QQuickItem* page = openSettings(h);
        QVERIFY(page);

        set(page, "comboTheme", "currentIndex", 1);
        set(page, "comboTimeZone", "currentIndex", 0);
        set(page, "comboDateFormat", "currentIndex", 1);
        set(page, "comboTimeFormat", "currentIndex", 1);
        set(page, "comboSpeedUnit", "currentIndex", 2);
        set(page, "comboPreUnit", "currentIndex", 4);
        set(page, "comboPrecision", "currentIndex", 2);
        set(page, "comboFormatLocation", "currentIndex", 0);
        set(page, "comboPressureLevel", "currentIndex", 1);
        set(page, "comboElevationUnits", "currentIndex", 1);
        set(page, "elevation", "value", 328);
        set(page, "straight", "checked", true);
        QCOMPARE(prop(page, "spline", "checked").toBool(), false);
        set(page, "swSplitScreen", "checked", true);
        set(page, "alwaysOn", "checked", true);
        set(page, "offset", "value", 150);
        // Hidden on the desktop, so not this page's to write.
        set(page, "swUdpOut", "checked", true);
        set(page, "swUpdPos", "checked", true);
        set(page, "sp_udpPort", "value", 7000);
        QVERIFY(leave(h));

        checkStored(h, {{"language", 0}, {"theme", 1}, {"timeZone", 0}, {"formatMMDD", 1}, {"timeFormat", 1},
                        {"unitSpeed", 2}, {"unitPre", 4}, {"precision", 2}, {"locFormat", 0}, {"preDisplay", 1},
                        {"unitEle", 1}});
        QVERIFY(std::abs(stored(h, "elevation").toDouble() - 328 / FeetPerMetre) < 1e-9);
        checkStored(h, {{"SettingSplineLine", 0}, {"splitScreen", 1}, {"screenAlwaysOn", 1}});
        QVERIFY(std::abs(stored(h, "offset").toDouble() - 1.50 / HpaToMmHg) < 1e-9);
        QVERIFY(!stored(h, "SettingUseUdpOut").isValid());
        QVERIFY(!stored(h, "sendUdpPos").isValid());
        QVERIFY(!stored(h, "updPort").isValid());

        page = openSettings(h);
        QVERIFY(page);
        QCOMPARE(prop(page, "comboLangage", "currentIndex").toInt(), 0);
        QCOMPARE(prop(page, "comboTheme", "currentIndex").toInt(), 1);
        QCOMPARE(prop(page, "comboTimeZone", "currentIndex").toInt(), 0);
        QCOMPARE(prop(page, "comboDateFormat", "currentIndex").toInt(), 1);
        QCOMPARE(prop(page, "comboTimeFormat", "currentIndex").toInt(), 1);
        QCOMPARE(prop(page, "comboSpeedUnit", "currentIndex").toInt(), 2);
        QCOMPARE(prop(page, "comboPreUnit", "currentIndex").toInt(), 4);
        QCOMPARE(prop(page, "comboPrecision", "currentIndex").toInt(), 2);
        QCOMPARE(prop(page, "comboFormatLocation", "currentIndex").toInt(), 0);
        QCOMPARE(prop(page, "comboPressureLevel", "currentIndex").toInt(), 1);
        QCOMPARE(prop(page, "comboElevationUnits", "currentIndex").toInt(), 1);
        QCOMPARE(prop(page, "elevation", "decimals").toInt(), 0);
        QCOMPARE(prop(page, "elevation", "value").toInt(), 328);
        QCOMPARE(prop(page, "straight", "checked").toBool(), true);
        QCOMPARE(prop(page, "spline", "checked").toBool(), false);
        QCOMPARE(prop(page, "swSplitScreen", "checked").toBool(), true);
        QCOMPARE(prop(page, "alwaysOn", "checked").toBool(), true);
        QCOMPARE(prop(page, "offset", "decimals").toInt(), 2);
        QCOMPARE(prop(page, "offset", "value").toInt(), 150);
        QCOMPARE(prop(page, "offsetCaption", "text").toString(), QStringLiteral("Pressure display offset (mmHg)"));
        QCOMPARE(prop(page, "lab", "text").toString(), QStringLiteral("Station Level (QFE)"));
        QCOMPARE(prop(page, "elevationCaption", "text").toString(), QStringLiteral("Elevation (feet)"));
        QVERIFY(isDark(h));
        checkClean(h);
    }

    void storedValuesOutsideTheLimitsAreClamped_data()
    {
        Columns::add<int, double, int, double, int, int>(
                "unitEle", "metres", "unitPre", "offsetHpa", "elevationValue", "offsetValue");
        // 1000.0 m is the top in metres; in feet the top is 10000 ft, about 3048 m.
        QTest::newRow("metres above 1000.0") << 0 << 2000.0 << 0 << 0.0 << 10000 << 0;
        QTest::newRow("1000.0 m fits") << 0 << 1000.0 << 0 << 0.0 << 10000 << 0;
        QTest::newRow("2000 m fits in feet") << 1 << 2000.0 << 0 << 0.0 << int(2000.0 * FeetPerMetre) << 0;
        QTest::newRow("feet above 10000") << 1 << 4000.0 << 0 << 0.0 << 10000 << 0;
        QTest::newRow("offset above 10 mb") << 0 << 0.0 << 0 << 50.0 << 0 << 1000;
        QTest::newRow("offset below -10 mb") << 0 << 0.0 << 0 << -50.0 << 0 << -1000;
        QTest::newRow("offset above 1 inHg") << 0 << 0.0 << 3 << 50.0 << 0 << 1000;
        QTest::newRow("offset within 1 inHg") << 0 << 0.0 << 3 << 10.0 << 0 << int(10.0 * HpaToInHg * 1000.0);
    }

    void storedValuesOutsideTheLimitsAreClamped()
    {
        QFETCH(int, unitEle);
        QFETCH(double, metres);
        QFETCH(int, unitPre);
        QFETCH(double, offsetHpa);
        QFETCH(int, elevationValue);
        QFETCH(int, offsetValue);
        PageHarness h;
        h.writeSetting("unitEle", unitEle);
        h.writeSetting("elevation", metres);
        h.writeSetting("unitPre", unitPre);
        h.writeSetting("offset", offsetHpa);
        QVERIFY(startMain(h));
        QQuickItem* page = openSettings(h);
        QVERIFY(page);
        QVERIFY(std::abs(prop(page, "elevation", "value").toInt() - elevationValue) <= 1);
        QCOMPARE(prop(page, "offset", "value").toInt(), offsetValue);
        checkClean(h);
    }

    void typedValuesOutsideTheLimitsAreHeldBack()
    {
        PageHarness h;
        QVERIFY(startMain(h));
        QQuickItem* page = openSettings(h);
        QVERIFY(page);
        auto* box = qobject_cast<QQuickItem*>(control(page, "offset"));
        QVERIFY(box);
        box->forceActiveFocus();
        QTRY_VERIFY(box->hasActiveFocus());
        QTest::keyClick(h.window(), Qt::Key_A, Qt::ControlModifier);
        for (char c : QByteArray("25.00"))
            QTest::keyClick(h.window(), c);
        QTest::keyClick(h.window(), Qt::Key_Return);
        QCOMPARE(prop(page, "offset", "value").toInt(), 1000);
        QCOMPARE(prop(page, "offset", "realValue").toDouble(), 10.0);
        // Stepping stays inside as well.
        QMetaObject::invokeMethod(box, "increase");
        QCOMPARE(prop(page, "offset", "value").toInt(), 1000);
        checkClean(h);
    }

    void pressureUnitChangeKeepsTheOffsetsMeaning()
    {
        PageHarness h;
        QVERIFY(startMain(h));
        QQuickItem* page = openSettings(h);
        QVERIFY(page);
        set(page, "offset", "value", 100);
        QCOMPARE(prop(page, "offset", "realValue").toDouble(), 1.0);
        set(page, "comboPreUnit", "currentIndex", 3);
        // The unit is stored at once, ahead of leaving the page.
        QCOMPARE(h.backEnd()->getSetting("unitPre", 0).toInt(), 3);
        QCOMPARE(prop(page, "offset", "decimals").toInt(), 3);
        const int thousandths = prop(page, "offset", "value").toInt();
        QVERIFY2(thousandths == 29 || thousandths == 30, qPrintable(QString::number(thousandths)));
        QVERIFY(std::abs(prop(page, "offset", "realValue").toDouble() - 0.03) <= 0.001 + 1e-9);
        QCOMPARE(prop(page, "offset", "displayText").toString(), QStringLiteral("0.0%1").arg(thousandths));
        // Zero stays zero, and is shown with the new decimals.
        set(page, "offset", "value", 0);
        set(page, "comboPreUnit", "currentIndex", 1);
        QCOMPARE(prop(page, "offset", "displayText").toString(), QStringLiteral("0.00"));
        set(page, "comboPreUnit", "currentIndex", 3);
        QCOMPARE(prop(page, "offset", "displayText").toString(), QStringLiteral("0.000"));
        set(page, "offset", "value", thousandths);
        QCOMPARE(prop(page, "offsetCaption", "text").toString(), QStringLiteral("Pressure display offset (inHg)"));
        QVERIFY(leave(h));
        const double hPa = stored(h, "offset").toDouble();
        QVERIFY2(std::abs(hPa - 1.0) < 0.001 / HpaToInHg, qPrintable(QString::number(hPa)));
        QCOMPARE(hPa, (thousandths / 1000.0) / HpaToInHg);
        checkClean(h);
    }

    // The pressure-fall warning's bounds, beside the page's own settings.
    void warningBoundsInTheChosenUnitStoredInHpa()
    {
        PageHarness h;
        QVERIFY(startMain(h));
        QQuickItem* page = openSettings(h);
        QVERIFY(page);
        QCOMPARE(named(h, page, "swWarning", "checked").toBool(), true);
        QCOMPARE(named(h, page, "warning3h", "displayText").toString(), QStringLiteral("3.6"));
        QCOMPARE(named(h, page, "alarm3h", "displayText").toString(), QStringLiteral("6.0"));
        QCOMPARE(named(h, page, "alarm1h", "displayText").toString(), QStringLiteral("2.0"));

        // In inches the bounds keep their meaning, and go back to hPa untouched.
        set(page, "comboPreUnit", "currentIndex", 3);
        QCOMPARE(named(h, page, "warning3h", "displayText").toString(), QStringLiteral("0.106"));
        QCOMPARE(named(h, page, "alarm1h", "displayText").toString(), QStringLiteral("0.059"));
        setNamed(h, page, "alarm3h", "value", 200);
        setNamed(h, page, "swWarning", "checked", false);
        QVERIFY(leave(h));
        QCOMPARE(stored(h, "warningOn").toInt(), 0);
        QCOMPARE(stored(h, "warningFall3h").toDouble(), 3.6);
        QCOMPARE(stored(h, "alarmFall1h").toDouble(), 2.0);
        QVERIFY(std::abs(stored(h, "alarmFall3h").toDouble() - 0.2 / HpaToInHg) < 1e-9);

        page = openSettings(h);
        QVERIFY(page);
        QCOMPARE(named(h, page, "swWarning", "checked").toBool(), false);
        QCOMPARE(named(h, page, "alarm3h", "displayText").toString(), QStringLiteral("0.200"));
        QCOMPARE(named(h, page, "warning3h", "enabled").toBool(), false);
        checkClean(h);
    }

    // The rule-of-thumb forecast's switch and hemisphere: off until asked for.
    void forecastOffUntilAskedFor()
    {
        PageHarness h;
        QVERIFY(startMain(h));
        QQuickItem* page = openSettings(h);
        QVERIFY(page);
        QCOMPARE(named(h, page, "swForecast", "checked").toBool(), false);
        QCOMPARE(named(h, page, "forecastHemisphere", "currentIndex").toInt(), 0);
        QCOMPARE(named(h, page, "forecastHemisphere", "enabled").toBool(), false);
        QCOMPARE(named(h, page, "forecastHemisphereBox", "count").toInt(), 3);
        QVERIFY(leave(h));
        QCOMPARE(stored(h, "forecastOn").toInt(), 0);
        QCOMPARE(stored(h, "forecastHemisphere").toInt(), 0);

        page = openSettings(h);
        QVERIFY(page);
        setNamed(h, page, "swForecast", "checked", true);
        QCOMPARE(named(h, page, "forecastHemisphere", "enabled").toBool(), true);
        setNamed(h, page, "forecastHemisphere", "currentIndex", 2);
        QVERIFY(leave(h));
        QCOMPARE(stored(h, "forecastOn").toInt(), 1);
        QCOMPARE(stored(h, "forecastHemisphere").toInt(), 2);

        page = openSettings(h);
        QVERIFY(page);
        QCOMPARE(named(h, page, "swForecast", "checked").toBool(), true);
        QCOMPARE(named(h, page, "forecastHemisphere", "currentIndex").toInt(), 2);
        checkClean(h);
    }

    void elevationUnitSwitchMovesByAtMostOneStep()
    {
        PageHarness h;
        QVERIFY(startMain(h));
        QQuickItem* page = openSettings(h);
        QVERIFY(page);
        set(page, "elevation", "value", 1234);
        QCOMPARE(prop(page, "elevation", "realValue").toDouble(), 123.4);
        set(page, "comboElevationUnits", "currentIndex", 1);
        // The caption follows at once.
        QCOMPARE(prop(page, "elevationCaption", "text").toString(), QStringLiteral("Elevation (feet)"));
        QCOMPARE(prop(page, "elevation", "decimals").toInt(), 0);
        const int feet = prop(page, "elevation", "value").toInt();
        QVERIFY(std::abs(feet - 123.4 * FeetPerMetre) <= 1.0);
        set(page, "comboElevationUnits", "currentIndex", 0);
        QCOMPARE(prop(page, "elevationCaption", "text").toString(), QStringLiteral("Elevation (meters)"));
        QCOMPARE(prop(page, "elevation", "decimals").toInt(), 1);
        const double back = prop(page, "elevation", "realValue").toDouble();
        // One foot is the coarser step of the two.
        QVERIFY2(std::abs(back - 123.4) <= 1.0 / FeetPerMetre + 0.1, qPrintable(QString::number(back)));
        checkClean(h);
    }

    void previewFollowsTheLivePressureAndTheChoices()
    {
        PageHarness h;
        QVERIFY(startMain(h));
        QQuickItem* page = openSettings(h);
        QVERIFY(page);
        QSignalSpy updates(h.backEnd(), &BackEnd::dataUpdated);
        h.sample(T0, 1000.0);
        QVERIFY(updates.count() >= 1);
        QCOMPARE(prop(page, "stationPressure", "text").toString(), QStringLiteral("1000.00 mb"));
        const QString live = h.backEnd()->getFormatedPressure(0, 0.0, 0, 0.0);
        // The next tick that tells the pages brings the next pressure.
        for (qint64 t = T0 + 2; updates.count() < 2 && t < T0 + 60; t += 2)
            h.sample(t, 1001.0);
        QCOMPARE(updates.count(), 2);
        QCOMPARE(prop(page, "stationPressure", "text").toString(), QStringLiteral("1001.00 mb"));

        // Offset, then elevation at sea level, then station level, then the unit.
        set(page, "offset", "value", 150);
        QCOMPARE(prop(page, "stationPressure", "text").toString(), h.backEnd()->getFormatedPressure(0, 1.5, 0, 0.0));
        set(page, "elevation", "value", 100);
        QCOMPARE(prop(page, "stationPressure", "text").toString(), h.backEnd()->getFormatedPressure(0, 1.5, 0, 10.0));
        QVERIFY(prop(page, "stationPressure", "text").toString() != live);
        set(page, "comboPressureLevel", "currentIndex", 1);
        QCOMPARE(prop(page, "stationPressure", "text").toString(), h.backEnd()->getFormatedPressure(0, 1.5, 1, 10.0));
        QCOMPARE(prop(page, "lab", "text").toString(), QStringLiteral("Station Level (QFE)"));
        set(page, "comboElevationUnits", "currentIndex", 1);
        set(page, "comboPressureLevel", "currentIndex", 0);
        const double metres = prop(page, "elevation", "value").toInt() / FeetPerMetre;
        QCOMPARE(prop(page, "stationPressure", "text").toString(),
                 h.backEnd()->getFormatedPressure(0, 1.5, 0, metres));
        set(page, "comboPreUnit", "currentIndex", 2);
        QVERIFY(prop(page, "stationPressure", "text").toString().endsWith(QStringLiteral(" kPa")));
        QCOMPARE(prop(page, "stationPressure", "text").toString(),
                 h.backEnd()->getFormatedPressure(2, h.backEnd()->convertToHpa(prop(page, "offset", "realValue").toDouble()),
                                                  0, metres));
        checkClean(h);
    }

    // No number is made up from the no-reading mark: the preview shows a dash until the tick
    // would take a reading, and again once the reading is gone.
    void previewShowsADashWithoutAReading()
    {
        PageHarness h;
        QVERIFY(startMain(h));
        QQuickItem* page = openSettings(h);
        QVERIFY(page);
        const QString dash = QStringLiteral("\u2013");
        QCOMPARE(prop(page, "stationPressure", "text").toString(), dash);
        // The choices that move the preview leave the dash alone.
        set(page, "offset", "value", 150);
        QCOMPARE(prop(page, "stationPressure", "text").toString(), dash);
        set(page, "comboPressureLevel", "currentIndex", 1);
        QCOMPARE(prop(page, "stationPressure", "text").toString(), dash);

        // A live reading the tick refuses is no reading either.
        h.sample(T0, 500.0);
        QCOMPARE(h.backEnd()->getCurrentPressure(), 500.0);
        QCOMPARE(prop(page, "stationPressure", "text").toString(), dash);

        // The page follows the tick that tells it: the first one that logs a row.
        QSignalSpy updates(h.backEnd(), &BackEnd::dataUpdated);
        qint64 t = T0;
        while (updates.isEmpty() && t < T0 + 60)
            h.sample(t += 2, 1000.0);
        QCOMPARE(updates.count(), 1);
        QCOMPARE(prop(page, "stationPressure", "text").toString(), QStringLiteral("1001.50 mb"));

        h.sampleWithoutPressure(t + 2);
        QCOMPARE(updates.count(), 2);
        QCOMPARE(prop(page, "stationPressure", "text").toString(), dash);
        checkClean(h);
    }

    void themeAppliesAtOnce()
    {
        HostTheme host;
        host.setWindowText(QColor(240, 240, 240));
        PageHarness h;
        QVERIFY(startMain(h));
        QQuickItem* page = openSettings(h);
        QVERIFY(page);
        QVERIFY(!isDark(h));
        set(page, "comboTheme", "currentIndex", 1);
        QVERIFY(isDark(h));
        QCOMPARE(PageHarness::evaluate(h.window(), "Material.accent").value<QColor>(), QColor("yellow"));
        QCOMPARE(prop(page, "stationPressure", "color").value<QColor>(), QColor("yellow"));
        // Not stored until the page is left.
        QVERIFY(!stored(h, "theme").isValid());
        set(page, "comboTheme", "currentIndex", 0);
        QVERIFY(!isDark(h));
        QCOMPARE(PageHarness::evaluate(h.window(), "Material.accent").value<QColor>(), QColor("blue"));
        QCOMPARE(prop(page, "stationPressure", "color").value<QColor>(), QColor("blue"));
        // The host is dark.
        set(page, "comboTheme", "currentIndex", 2);
        QVERIFY(isDark(h));
        host.setWindowText(Qt::black);
        set(page, "comboTheme", "currentIndex", 0);
        set(page, "comboTheme", "currentIndex", 2);
        QVERIFY(!isDark(h));
        QVERIFY(leave(h));
        QCOMPARE(stored(h, "theme").toInt(), 2);
        checkClean(h);
    }

    void calibrationButtonNeedsASerialPort_data()
    {
        Columns::add<QVariant, bool>("port", "enabled");
        QTest::newRow("no key") << QVariant() << false;
        QTest::newRow("None") << QVariant(QStringLiteral("None")) << false;
        QTest::newRow("a port") << QVariant(QStringLiteral("ttyUSB0 Skerry")) << true;
    }

    void calibrationButtonNeedsASerialPort()
    {
        QFETCH(QVariant, port);
        QFETCH(bool, enabled);
        PageHarness h;
        if (port.isValid())
            h.writeSetting("SettingSerialPort", port);
        QVERIFY(startMain(h));
        QQuickItem* page = openSettings(h);
        QVERIFY(page);
        QCOMPARE(prop(page, "buttonCalibration", "enabled").toBool(), enabled);
        QCOMPARE(prop(page, "buttonConnections", "enabled").toBool(), true);
        checkClean(h);
    }

    void buttonsLoadTheSubPages()
    {
        PageHarness h;
        h.writeSetting("SettingSerialPort", QStringLiteral("ttyUSB0 Skerry"));
        QVERIFY(startMain(h));
        QQuickItem* page = openSettings(h);
        QVERIFY(page);
        set(page, "comboSpeedUnit", "currentIndex", 1);
        press(h, "buttonConnections");
        QCOMPARE(h.find("loader")->property("source").toUrl(), QUrl("qrc:/settingsConnections"));
        QTRY_COMPARE(h.loadedPage()->objectName(), QStringLiteral("connectionsPage"));
        // Leaving for the sub-page saves as any other way out does.
        QCOMPARE(stored(h, "unitSpeed").toInt(), 1);

        page = openSettings(h);
        QVERIFY(page);
        press(h, "buttonCalibration");
        QCOMPARE(h.find("loader")->property("source").toUrl(), QUrl("qrc:/quillmereCalibration"));
        QTRY_COMPARE(h.loadedPage()->objectName(), QStringLiteral("calibrationPage"));
        QVERIFY(leave(h));
        checkClean(h);
    }

    void languageChangeSavesExactlyOnce()
    {
        PageHarness h;
        QVERIFY(copyCatalogues(h.folder().path()));
        QVERIFY(startMain(h));
        QQuickItem* page = openSettings(h);
        QVERIFY(page);
        QPointer<QQuickItem> english = page;
        set(page, "comboTheme", "currentIndex", 1);
        set(page, "comboTimeZone", "currentIndex", 0);
        set(page, "comboPressureLevel", "currentIndex", 1);
        set(page, "comboPreUnit", "currentIndex", 3);
        set(page, "offset", "value", 25);
        h.clearMessages();

        set(page, "comboLangage", "currentIndex", 1);
        QCOMPARE(h.translations().getCurrentLanguage(), QStringLiteral("fr"));
        QCOMPARE(h.messages().count("language changed to fr"), 1);
        QTRY_VERIFY(english.isNull());
        QQuickItem* french = h.loadedPage();
        QVERIFY(french);
        QCOMPARE(french->objectName(), QStringLiteral("settingsPage"));
        QCOMPARE(prop(french, "comboLangage", "hasChanged").toBool(), false);
        QCOMPARE(prop(french, "comboLangage", "currentIndex").toInt(), 1);

        // What the first save wrote is what stays: the dying page, whose lists were emptied and
        // refilled by the new catalogue, wrote nothing more.
        checkStored(h, {{"language", 1}, {"theme", 1}, {"timeZone", 0}, {"preDisplay", 1}, {"unitPre", 3}});
        QCOMPARE(stored(h, "offset").toDouble(), 0.025 / HpaToInHg);
        QVERIFY(isDark(h));
        QCOMPARE(prop(french, "comboTheme", "currentIndex").toInt(), 1);
        QCOMPARE(prop(french, "comboTimeZone", "currentIndex").toInt(), 0);
        QCOMPARE(prop(french, "offset", "value").toInt(), 25);
        QCOMPARE(prop(french, "lab", "text").toString(),
                 QCoreApplication::translate("settings", "Station Level (QFE)"));
        QVERIFY(prop(french, "lab", "text").toString() != QStringLiteral("Station Level (QFE)"));
        // Captions and buttons as well, not only the lists.
        QCOMPARE(prop(french, "comboLangageCaption", "text").toString(), QStringLiteral("Langue"));
        QCOMPARE(prop(french, "buttonConnections", "text").toString(),
                 QCoreApplication::translate("settings", "Connections settings"));
        QVERIFY(prop(french, "buttonConnections", "text").toString() != QStringLiteral("Connections settings"));
        QCOMPARE(prop(french, "elevationCaption", "text").toString(), QStringLiteral("Altitude (mètres)"));

        // Back to English, from the French page.
        set(french, "comboLangage", "currentIndex", 0);
        QCOMPARE(h.translations().getCurrentLanguage(), QStringLiteral("en"));
        QTRY_VERIFY(h.loadedPage() && h.loadedPage() != french);
        QCOMPARE(stored(h, "language").toInt(), 0);
        QCOMPARE(prop(h.loadedPage(), "lab", "text").toString(), QStringLiteral("Station Level (QFE)"));
        checkClean(h);
    }
};

QTEST_MAIN(TestSettingsPage)
#include "tst_settingspage.moc"
