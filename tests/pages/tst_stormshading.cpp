// SPDX-License-Identifier: GPL-3.0-or-later
#include "PageDriver.h"
#include "PageHarness.h"

#include "tests/log/BuoyRecord.h"
#include "tests/support/Columns.h"
#include "tools/DemoLog.h"

#include <QtCore/QDir>
#include <QtGui/QImage>
#include <QtGui/QWheelEvent>
#include <QtQuick/QQuickItem>
#include <QtQuick/QQuickWindow>
#include <QtTest/QtTest>

#include <cmath>
#include <functional>

using namespace PageDriver;

namespace {

// A whole minute, so that rows at even seconds line up with the tick's own.
constexpr qint64 Newest = 1700000040;
constexpr int Spacing = 48;

qint64 rowTime(int k)
{
    return Newest - qint64(999 - k) * Spacing;
}

// `front` laid over the opaque `back`.
QColor over(QColor front, double alpha, const QColor& back)
{
    return QColor::fromRgbF(alpha * front.redF() + (1 - alpha) * back.redF(),
                            alpha * front.greenF() + (1 - alpha) * back.greenF(),
                            alpha * front.blueF() + (1 - alpha) * back.blueF());
}

bool within(const QColor& c, const QColor& colour, int tolerance)
{
    return std::abs(c.red() - colour.red()) <= tolerance && std::abs(c.green() - colour.green()) <= tolerance
            && std::abs(c.blue() - colour.blue()) <= tolerance;
}

// Of the pixels of `image` around `at`, `radius` each way, the share `wanted` accepts.
double share(const QImage& image, const QPoint& at, int radius, const std::function<bool(const QColor&)>& wanted)
{
    int near = 0;
    int all = 0;
    for (int dy = -radius; dy <= radius; ++dy) {
        for (int dx = -radius; dx <= radius; ++dx, ++all) {
            const QPoint p = at + QPoint(dx, dy);
            if (image.rect().contains(p) && wanted(image.pixelColor(p)))
                ++near;
        }
    }
    return double(near) / all;
}

} // namespace

// The storm marks on the graph page's chart: shaded in the warning strip's colours behind
// the curve, for the span shown, following the chart as it zooms.
class TestStormShading : public QObject
{
    Q_OBJECT

private:
    // A day of BARO1D: 2.5 hPa within the hour at row 300, the alarm for an hour, then
    // 1.25 an hour for two more hours, the warning until row 525. 1000 rows, 48 s apart.
    static bool logStorm(PageHarness& h)
    {
        const QString table = QStringLiteral("BARO1D");
        return h.insertRows(table, rowTime(0), rowTime(299), Spacing, 1010.0)
                && h.insertRows(table, rowTime(300), rowTime(374), Spacing, 1007.5)
                && h.insertRows(table, rowTime(375), rowTime(449), Spacing, 1006.25)
                && h.insertRows(table, rowTime(450), rowTime(998), Spacing, 1005.0);
    }

    // The graph page on the one-day span, its newest row written by a tick.
    static bool showDay(PageHarness& h, int theme)
    {
        h.writeSetting("theme", theme);
        if (!startMain(h, QSize(900, 700)) || !logStorm(h))
            return false;
        h.sample(Newest, 1005.0);
        press(h, QStringLiteral("button1d"));
        QTest::qWait(50);
        return true;
    }

    static QObject* shading(PageHarness& h)
    {
        return h.find(QStringLiteral("stormShading"));
    }

    static int shades(PageHarness& h)
    {
        return shading(h)->property("count").toInt();
    }

    static QRectF shadeRect(PageHarness& h, int index)
    {
        QRectF rect;
        QMetaObject::invokeMethod(shading(h), "shadeRect", Q_RETURN_ARG(QRectF, rect), Q_ARG(int, index));
        return rect;
    }

    static QQuickItem* chartItem(PageHarness& h)
    {
        return qobject_cast<QQuickItem*>(h.chart());
    }

    // Where the chart puts a value, in the chart's own coordinates.
    static QPointF chartPosition(PageHarness& h, double x, double y)
    {
        return PageHarness::evaluate(h.chart(), QStringLiteral("mapToPosition(Qt.point(%1, %2), series(0))")
                                                        .arg(x, 0, 'g', 12)
                                                        .arg(y, 0, 'g', 12))
                .toPointF();
    }

    static double hoursBack(int row)
    {
        return (rowTime(row) - Newest) / 3600.0;
    }

    // The value of the setting "theme", for a test in each.
    static void bothThemes()
    {
        Columns::ints("theme", {{"light", 0}, {"dark", 1}});
    }

    static QColor material(PageHarness& h, const char* expression)
    {
        return PageHarness::evaluate(h.window(), QString::fromLatin1(expression)).value<QColor>();
    }

private slots:
    void init()
    {
        QDir().mkpath(QStringLiteral(BRINHOLT_BINARY_DIR "/screenshots"));
    }

    void shadesLieBehindTheCurveInTheWarningsColours_data()
    {
        bothThemes();
    }

    void shadesLieBehindTheCurveInTheWarningsColours()
    {
        QFETCH(int, theme);
        PageHarness h;
        QVERIFY(showDay(h, theme));
        QCOMPARE(shades(h), 2);

        // The warning strip's colours.
        const QColor amber = material(h, "Material.color(Material.Amber, Material.Shade600)");
        const QColor red = material(h, "Material.color(Material.Red, Material.Shade700)");
        QCOMPARE(shading(h)->property("warningColor").value<QColor>(), amber);
        QCOMPARE(shading(h)->property("alarmColor").value<QColor>(), red);
        const QColor background = material(h, "Material.background");
        const double opacity = shading(h)->property("shadeOpacity").toDouble();

        QVERIFY(QTest::qWaitForWindowExposed(h.window()));
        QTest::qWait(150);
        const QImage shot = h.window()->grabWindow();
        QVERIFY(shot.save(QStringLiteral(BRINHOLT_BINARY_DIR "/screenshots/graph-storms-%1.png")
                                  .arg(theme == 1 ? QStringLiteral("dark") : QStringLiteral("light"))));
        const QRectF plot = chartItem(h)->property("plotArea").toRectF();
        const auto onScreen = [&](const QPointF& chartPoint) {
            return (chartItem(h)->mapToScene(chartPoint) * h.window()->effectiveDevicePixelRatio()).toPoint();
        };

        // The alarm first, from row 300 to 375, then the warning to row 525; the top of the
        // plot, far above the curve, shows each in its colour over the background.
        const struct {
            int from;
            int to;
            QColor colour;
        } expected[] = {{300, 375, red}, {375, 525, amber}};
        for (int i = 0; i < 2; ++i) {
            const QRectF rect = shadeRect(h, i);
            QVERIFY(std::fabs(rect.left() - chartPosition(h, hoursBack(expected[i].from), 0).x()) < 0.5);
            QVERIFY(std::fabs(rect.right() - chartPosition(h, hoursBack(expected[i].to), 0).x()) < 0.5);
            QCOMPARE(rect.top(), plot.top());
            QCOMPARE(rect.bottom(), plot.bottom());
            const QColor shade = over(expected[i].colour, opacity, background);
            const QPoint at = onScreen(QPointF(rect.center().x(), plot.top() + 8));
            QVERIFY2(share(shot, at, 2, [&](const QColor& c) { return within(c, shade, 3); }) > 0.9,
                     qPrintable(shot.pixelColor(at).name() + QStringLiteral(" for ") + shade.name()));
        }
        // Eighteen hours back the sky was calm.
        const QPoint calm = onScreen(QPointF(chartPosition(h, -18.0, 0).x(), plot.top() + 8));
        QVERIFY(share(shot, calm, 2, [&](const QColor& c) { return within(c, background, 3); }) > 0.9);

        // Where the curve crosses a shade it keeps its own colour: it is drawn over it.
        for (int row : {340, 400, 480}) {
            const double y = row < 375 ? 1007.5 : row < 450 ? 1006.25 : 1005.0;
            const QPoint at = onScreen(chartPosition(h, hoursBack(row), y));
            QVERIFY2(share(shot, at, 2, [](const QColor& c) { return within(c, QColor("#E63219"), 12); }) > 0.0,
                     qPrintable(QString::number(row)));
        }
        checkClean(h);
    }

    // Sixteen days of the buoy's record up to the storm of 24-25 February, as the tick
    // would have left BAR16D: every period the log finds is shaded where it lies.
    void stormsOfTheBuoyRecordOnTheSixteenDaySpan_data()
    {
        bothThemes();
    }

    void stormsOfTheBuoyRecordOnTheSixteenDaySpan()
    {
        QFETCH(int, theme);
        BuoyRecord record;
        QVERIFY(record.load(BuoyRecord::firstHalfOf2012()));
        const qint64 end = BuoyRecord::utc(2, 26, 12);
        PageHarness h;
        h.writeSetting("theme", theme);
        QVERIFY(startMain(h, QSize(900, 700)));
        const QVector<qint64> times = DemoLog::replaySixteenDays(end, {768}).at(0);
        QVERIFY(h.exec(QStringLiteral("BEGIN")));
        for (qint64 time : times.mid(0, times.size() - 1)) {
            if (const std::optional<double> pressure = record.at(time))
                QVERIFY(h.insertRow(QStringLiteral("BAR16D"), time, *pressure));
        }
        QVERIFY(h.exec(QStringLiteral("COMMIT")));
        h.sample(times.last(), *record.at(times.last()));
        press(h, QStringLiteral("button16d"));
        QVERIFY(QTest::qWaitForWindowExposed(h.window()));
        QTest::qWait(150);
        QVERIFY(h.window()->grabWindow().save(QStringLiteral(BRINHOLT_BINARY_DIR "/screenshots/graph-storms-16d-%1.png")
                                                      .arg(theme == 1 ? QStringLiteral("dark") : QStringLiteral("light"))));

        const QVariantList periods = PageHarness::evaluate(h.chart(), QStringLiteral("dataSource.storms.chartPeriods()")).toList();
        QVERIFY(periods.size() >= 3);
        QCOMPARE(shades(h), periods.size());
        bool alarmOfTheStorm = false;
        for (int i = 0; i < periods.size(); ++i) {
            const QVariantMap period = periods.at(i).toMap();
            const double start = period.value(QStringLiteral("start")).toDouble();
            QVERIFY(std::fabs(shadeRect(h, i).left() - chartPosition(h, start, 1000.0).x()) < 0.5);
            // 24 February at noon is 2.0 days before the end.
            alarmOfTheStorm = alarmOfTheStorm
                    || (period.value(QStringLiteral("level")).toInt() == 2 && start < -1.0 && start > -2.0);
        }
        QVERIFY(alarmOfTheStorm);
        checkClean(h);
    }

    void shadesFollowTheChartAsItZooms()
    {
        PageHarness h;
        QVERIFY(showDay(h, 0));
        const double start = hoursBack(375);
        const double before = shadeRect(h, 1).left();
        const QPoint middle = (chartItem(h)->mapToScene(chartItem(h)->property("plotArea").toRectF().center())).toPoint();
        QWheelEvent event(QPointF(middle), h.window()->mapToGlobal(middle), QPoint(), QPoint(0, 120), Qt::NoButton,
                          Qt::NoModifier, Qt::NoScrollPhase, false);
        QCoreApplication::sendEvent(h.window(), &event);
        QTest::qWait(50);
        const QRectF plot = chartItem(h)->property("plotArea").toRectF();
        const QRectF after = shadeRect(h, 1);
        QVERIFY(std::fabs(after.left() - before) > 5.0);
        const double left = chartPosition(h, start, 0).x();
        QVERIFY2(std::fabs(after.left() - std::max(left, plot.left())) < 0.5,
                 qPrintable(QStringLiteral("%1 %2").arg(after.left()).arg(left)));
        QVERIFY(plot.contains(after.adjusted(0.5, 0.5, -0.5, -0.5)) || after.isEmpty());
        checkClean(h);
    }

    void spanWithoutAStormHasNoShades()
    {
        PageHarness h;
        QVERIFY(showDay(h, 0));
        QCOMPARE(shades(h), 2);
        press(h, QStringLiteral("button30m"));
        QTRY_COMPARE(shades(h), 0);
        press(h, QStringLiteral("button1d"));
        QTRY_COMPARE(shades(h), 2);
        checkClean(h);
    }

    void warningSwitchedOffShadesNothing()
    {
        PageHarness h;
        h.writeSetting("warningOn", 0);
        QVERIFY(showDay(h, 0));
        QCOMPARE(shades(h), 0);
        checkClean(h);
    }
};

QTEST_MAIN(TestStormShading)
#include "tst_stormshading.moc"
