// SPDX-License-Identifier: GPL-3.0-or-later
#include "LogTables.h"
#include "PageDriver.h"
#include "PageHarness.h"
#include "tests/support/Columns.h"

#include "app/BackEnd.h"
#include "app/TranslationHandler.h"
#include "log/DataSource.h"
#include "nmea/NmeaSourceType.h"

#include <QtCharts/QXYSeries>
#include <QtCore/QElapsedTimer>
#include <QtGui/QDesktopServices>
#include <QtGui/QWheelEvent>
#include <QtQuick/QQuickItem>
#include <QtQuick/QQuickWindow>
#include <QtTest/QtTest>

#include <cmath>

using namespace PageDriver;

namespace {

// A whole minute, so that rows at even seconds line up with the tick's own.
constexpr qint64 T0 = 1700000040;

// Stands in for the system's viewer of files.
class UrlSink : public QObject
{
    Q_OBJECT

public:
    QList<QUrl> urls;

public slots:
    void openUrl(const QUrl& url) { urls << url; }
};

const QStringList RangeButtons = {"button30m", "button3h", "button6h", "button12h", "button1d",
                                  "button2d",  "button4d", "button8d", "button16d"};

// `front` laid over the opaque `back`.
QColor over(const QColor& front, const QColor& back)
{
    const double a = front.alphaF();
    return QColor::fromRgbF(a * front.redF() + (1 - a) * back.redF(), a * front.greenF() + (1 - a) * back.greenF(),
                            a * front.blueF() + (1 - a) * back.blueF());
}

// The contrast ratio of two opaque colours as the accessibility guidelines define it.
double contrast(const QColor& one, const QColor& other)
{
    const auto luminance = [](const QColor& c) {
        const auto linear = [](double v) { return v <= 0.03928 ? v / 12.92 : std::pow((v + 0.055) / 1.055, 2.4); };
        return 0.2126 * linear(c.redF()) + 0.7152 * linear(c.greenF()) + 0.0722 * linear(c.blueF());
    };
    const double a = luminance(one);
    const double b = luminance(other);
    return (std::max(a, b) + 0.05) / (std::min(a, b) + 0.05);
}

QString trendImage(const QString& name)
{
    return QStringLiteral("qrc:/Images/Trend_%1~universal.png").arg(name);
}

} // namespace

// The graph page over the real log: texts, arrow, curve, ranges, cursor and zoom.
class TestBaroH : public QObject
{
    Q_OBJECT

private:
    // The graph page in a landscape window at the screen's corner.
    static bool startGraph(PageHarness& h, int width = 800, int height = 600)
    {
        if (!PageDriver::startMain(h, QSize(width, height)))
            return false;
        return h.item("baroH") && h.chart();
    }

    // The graph page over ten minutes of a steady 1011.5 in BARO30M, sampled at T0.
    static bool startSteadyGraph(PageHarness& h)
    {
        if (!startGraph(h) || !h.insertRows("BARO30M", T0 - 600, T0 - 2, 2, 1011.5))
            return false;
        h.sample(T0, 1011.5);
        return true;
    }

    static QObject* pageObject(PageHarness& h, const QString& name)
    {
        return h.find(name, h.item("baroH"));
    }

    static QQuickItem* pageItem(PageHarness& h, const QString& name)
    {
        return qobject_cast<QQuickItem*>(pageObject(h, name));
    }

    static QObject* axis(PageHarness& h, const QString& id)
    {
        return PageHarness::byId(h.chart(), id);
    }

    static QVariant pageProperty(PageHarness& h, const char* name)
    {
        return h.item("baroH")->property(name);
    }

    static QString title(PageHarness& h)
    {
        return h.chart()->property("title").toString();
    }

    static QPoint scenePoint(QQuickItem* item, const QPointF& local)
    {
        return item->mapToScene(local).toPoint();
    }

    static QPoint centreOf(QQuickItem* item)
    {
        return scenePoint(item, QPointF(item->width() / 2, item->height() / 2));
    }

    // Where a chart value lies in the window.
    static QPoint chartPoint(PageHarness& h, double x, double y)
    {
        auto* chart = qobject_cast<QQuickItem*>(h.chart());
        const QPointF local = PageHarness::evaluate(chart, QStringLiteral("mapToPosition(Qt.point(%1, %2), series(0))")
                                                                   .arg(x, 0, 'g', 12)
                                                                   .arg(y, 0, 'g', 12))
                                      .toPointF();
        return scenePoint(chart, local);
    }

    static void click(PageHarness& h, QQuickItem* item)
    {
        QTest::mouseClick(h.window(), Qt::LeftButton, Qt::NoModifier, centreOf(item));
    }

    static void wheel(PageHarness& h, const QPoint& at, int angle)
    {
        QWheelEvent event(QPointF(at), h.window()->mapToGlobal(at), QPoint(), QPoint(0, angle), Qt::NoButton,
                          Qt::NoModifier, Qt::NoScrollPhase, false);
        QCoreApplication::sendEvent(h.window(), &event);
    }

    static bool isZoomed(PageHarness& h)
    {
        return PageHarness::evaluate(h.chart(), "isZoomed()").toBool();
    }

    static QVector<QPointF> points(PageHarness& h, int series)
    {
        QtCharts::QXYSeries* s = h.series(series);
        return s ? s->pointsVector() : QVector<QPointF>();
    }

    static QString lastSeriesName(PageHarness& h)
    {
        QtCharts::QXYSeries* s = h.series(h.seriesCount() - 1);
        return s ? s->name() : QString();
    }

private slots:
    void loadsCleanWithItsSeries()
    {
        PageHarness h;
        QVERIFY(startGraph(h));
        QCOMPARE(h.seriesCount(), 2);
        QCOMPARE(h.series(0)->name(), QStringLiteral("lineSeries0"));
        QCOMPARE(lastSeriesName(h), QStringLiteral("lineHelper"));
        QVERIFY(!h.series(1)->isVisible());
        QCOMPARE(h.series(1)->pen().style(), Qt::DotLine);
        QCOMPARE(h.series(0)->color(), QColor("#E63219"));
        // A spline unless the setting asks for straight lines.
        QCOMPARE(h.series(0)->type(), QtCharts::QAbstractSeries::SeriesTypeSpline);
        // The y-axis stands at the right.
        const auto vertical = h.series(0)->attachedAxes();
        bool right = false;
        for (QtCharts::QAbstractAxis* a : vertical)
            right = right || (a->orientation() == Qt::Vertical && a->alignment() == Qt::AlignRight);
        QVERIFY(right);
        QCOMPARE(axis(h, "axisY")->property("min").toDouble(), 980.0);
        QCOMPARE(axis(h, "axisY")->property("max").toDouble(), 1050.0);
        QCOMPARE(axis(h, "axisX")->property("min").toDouble(), -30.0);
        QCOMPARE(axis(h, "axisX")->property("labelFormat").toString(), QStringLiteral("%dm"));
        QVERIFY(pageObject(h, "button30m")->property("checked").toBool());
        QCOMPARE(title(h), QString());
        QCOMPARE(h.messages().count("serie created"), 1);
        checkClean(h);
    }

    void straightLinesWhenAsked()
    {
        PageHarness h;
        h.writeSetting("SettingSplineLine", 0);
        QVERIFY(startGraph(h));
        QCOMPARE(h.series(0)->type(), QtCharts::QAbstractSeries::SeriesTypeLine);
        checkClean(h);
    }

    void sampleFillsTheTexts_data()
    {
        Columns::add<int, int, bool, double, double, QString>("width", "height", "fix", "cog", "sog", "layout");
        QTest::newRow("no position hides the line") << 800 << 600 << false << 0.0 << 0.0 << "hidden";
        QTest::newRow("at rest shows the position alone") << 800 << 600 << true << 0.0 << 0.0 << "alone";
        QTest::newRow("under way in a wide window: one line") << 800 << 600 << true << 45.0 << 6.0 << "blank";
        QTest::newRow("under way in a tall window: two lines") << 500 << 600 << true << 45.0 << 6.0 << "feed";
    }

    void sampleFillsTheTexts()
    {
        QFETCH(int, width);
        QFETCH(int, height);
        QFETCH(bool, fix);
        QFETCH(double, cog);
        QFETCH(double, sog);
        QFETCH(QString, layout);

        PageHarness h;
        QVERIFY(startGraph(h, width, height));
        if (fix)
            h.backEnd()->setPositionData(QPointF(-4.5, 48.25), sog, cog, Serial);
        QSignalSpy updates(h.backEnd(), &BackEnd::dataUpdated);
        h.sample(T0, 1013.2);
        QCOMPARE(updates.count(), 1);
        const QString date = updates.at(0).at(0).toString();
        const QString position = updates.at(0).at(1).toString();
        const QString cogsog = updates.at(0).at(2).toString();
        const QString pressure = updates.at(0).at(3).toString();

        QCOMPARE(pageObject(h, "textDate")->property("text").toString(), date);
        QVERIFY(!date.isEmpty());
        QCOMPARE(pageObject(h, "textPressure")->property("text").toString(), pressure);
        QCOMPARE(pressure, QStringLiteral("1013.2 mb"));
        QVERIFY(pageItem(h, "rowPressure")->isVisible());
        QCOMPARE(pageObject(h, "textPreLevel")->property("text").toString(), QStringLiteral("Sea Level Pressure (QNH)"));

        QQuickItem* textPos = pageItem(h, "textPos");
        const QString shown = textPos->property("text").toString();
        if (layout == "hidden") {
            QCOMPARE(position, QStringLiteral("No Position"));
            QVERIFY(!textPos->isVisible());
        } else if (layout == "alone") {
            QCOMPARE(cogsog, QStringLiteral("no"));
            QVERIFY(textPos->isVisible());
            QCOMPARE(shown, position);
        } else if (layout == "blank") {
            QVERIFY(textPos->isVisible());
            QCOMPARE(shown, position + " " + cogsog);
        } else {
            QVERIFY(textPos->isVisible());
            QCOMPARE(shown, position + "\n" + cogsog);
        }
        if (textPos->isVisible()) {
            // Fifty X would take 0.6 of the page's width.
            QFont font = textPos->property("font").value<QFont>();
            QVERIFY(font.bold());
            const double fifty = QFontMetricsF(font).horizontalAdvance(QString(50, 'X'));
            const double pageWidth = h.item("baroH")->width();
            QVERIFY2(std::abs(fifty - 0.6 * pageWidth) < 0.06 * pageWidth,
                     qPrintable(QString("%1 for %2").arg(fifty).arg(pageWidth)));
        }
        checkClean(h);
    }

    void pressureTakesItsShareOfTheWidth_data()
    {
        Columns::add<int, int, double>("width", "height", "share");
        QTest::newRow("wide page: 0.3") << 800 << 600 << 0.3;
        QTest::newRow("tall page: 0.6") << 500 << 700 << 0.6;
    }

    void pressureTakesItsShareOfTheWidth()
    {
        QFETCH(int, width);
        QFETCH(int, height);
        QFETCH(double, share);
        PageHarness h;
        QVERIFY(startGraph(h, width, height));
        h.sample(T0, 1013.2);
        QQuickItem* text = pageItem(h, "textPressure");
        const double pageWidth = h.item("baroH")->width();
        const double taken = text->property("contentWidth").toDouble();
        QVERIFY2(std::abs(taken - share * pageWidth) < 0.05 * pageWidth,
                 qPrintable(QString("%1 of %2").arg(taken).arg(pageWidth)));
        // The arrow is a square as high as the text.
        QQuickItem* arrow = pageItem(h, "imgTrend");
        QCOMPARE(arrow->height(), text->height());
        QCOMPARE(arrow->width(), arrow->height());
        checkClean(h);
    }

    void levelCaptionFollowsTheSetting()
    {
        PageHarness h;
        QVERIFY(startGraph(h));
        QObject* caption = pageObject(h, "textPreLevel");
        h.writeSetting("preDisplay", 1);
        h.sample(T0, 1013.2);
        QCOMPARE(caption->property("text").toString(), QStringLiteral("Station Level Pressure (QFE)"));
        h.writeSetting("preDisplay", 0);
        h.sample(T0 + 2, 1013.2); // tick 0 writes nothing and says nothing
        h.sample(T0 + 4, 1013.2);
        QCOMPARE(caption->property("text").toString(), QStringLiteral("Sea Level Pressure (QNH)"));
        checkClean(h);
    }

    void noPressureHidesValueTitleAndArrow()
    {
        PageHarness h;
        QVERIFY(startGraph(h));
        h.sample(T0, 1013.2);
        QVERIFY(pageItem(h, "imgTrend")->isVisible());
        QSignalSpy missing(h.backEnd(), &BackEnd::noPressureAvailable);
        h.sampleWithoutPressure(T0 + 2);
        QCOMPARE(missing.count(), 1);
        QVERIFY(!pageItem(h, "rowPressure")->isVisible());
        QVERIFY(!pageItem(h, "imgTrend")->isVisible());
        QCOMPARE(title(h), QString());
        QQuickItem* caption = pageItem(h, "textPreLevel");
        QCOMPARE(caption->property("text").toString(), QStringLiteral("No pressure data available"));
        QVERIFY(caption->isVisible());
        // The next sample with pressure brings the value and the level caption back.
        h.sample(T0 + 4, 1013.4);
        QVERIFY(pageItem(h, "rowPressure")->isVisible());
        QVERIFY(pageItem(h, "imgTrend")->isVisible());
        QCOMPARE(caption->property("text").toString(), QStringLiteral("Sea Level Pressure (QNH)"));
        QCOMPARE(pageObject(h, "textPressure")->property("text").toString(), QStringLiteral("1013.4 mb"));
        checkClean(h);
    }

    void trendArrow_data()
    {
        Columns::add<double, QString>("hourAgo", "image");
        // The reading is 1012.0; the change is scaled to three hours.
        QTest::newRow("no row an hour ago: none") << -1.0 << trendImage("None");
        QTest::newRow("no change: steady") << 1012.0 << trendImage("Steady");
        QTest::newRow("falling 0.5 in 3h: steady") << 1012.0 + 0.5 / 3 << trendImage("Steady");
        QTest::newRow("rising 1.5 in 3h") << 1012.0 - 0.5 << trendImage("Rising");
        QTest::newRow("rising 2.4 in 3h: fast") << 1012.0 - 0.8 << trendImage("Rising Fast");
        QTest::newRow("rising 3.0 in 3h: very fast") << 1011.0 << trendImage("Rising Very Fast");
        QTest::newRow("falling 1.5 in 3h") << 1012.0 + 0.5 << trendImage("Falling");
        QTest::newRow("falling 2.4 in 3h: fast") << 1012.0 + 0.8 << trendImage("Falling Fast");
        QTest::newRow("falling 3.0 in 3h: very fast") << 1013.0 << trendImage("Falling Very Fast");
    }

    void trendArrow()
    {
        QFETCH(double, hourAgo);
        QFETCH(QString, image);
        PageHarness h;
        QVERIFY(startGraph(h));
        if (hourAgo > 0)
            QVERIFY(h.insertRow("BARO3H", T0 - 3600, hourAgo));
        h.sample(T0, 1012.0);
        QCOMPARE(pageObject(h, "imgTrend")->property("source").toUrl(), QUrl(image));
        // The large display draws the same arrow.
        QCOMPARE(h.find("imgTrend", h.item("baroV"))->property("source").toUrl(), QUrl(image));
        checkClean(h);
    }

    void curveShowsTheTable()
    {
        PageHarness h;
        QVERIFY(startGraph(h));
        for (qint64 t = T0 - 600; t < T0; t += 2)
            QVERIFY(h.insertRow("BARO30M", t, 1012.0 + 0.5 * std::sin((t - T0) / 120.0)));
        QSignalSpy charts(h.log(), &DataSource::chartUpdated);
        h.sample(T0, 1012.0);
        QCOMPARE(charts.count(), 1);
        const QVector<QPointF> curve = points(h, 0);
        QCOMPARE(curve.size(), 301);
        // Newest first, at x = 0; two seconds are a thirtieth of a minute.
        QCOMPARE(curve.first(), QPointF(0.0, 1012.0));
        QVERIFY(std::abs(curve.at(1).x() + 2.0 / 60.0) < 1e-9);
        QVERIFY(std::abs(curve.last().x() + 10.0) < 1e-9);
        QCOMPARE(h.seriesCount(), 2);
        QCOMPARE(pageProperty(h, "startingDate").toLongLong(), T0);
        const double min = charts.at(0).at(1).toDouble();
        const double max = charts.at(0).at(2).toDouble();
        QCOMPARE(axis(h, "axisY")->property("min").toDouble(), min);
        QCOMPARE(axis(h, "axisY")->property("max").toDouble(), max);
        QCOMPARE(min, 1011.0);
        QCOMPARE(max, 1013.0);
        QCOMPARE(axis(h, "axisY")->property("tickCount").toInt(), 6);
        QCOMPARE(axis(h, "axisX")->property("labelsAngle").toInt(), 0);
        checkClean(h);
    }

    void yTicksFollowTheRange_data()
    {
        QTest::addColumn<double>("spread");
        QTest::newRow("flat") << 0.0;
        QTest::newRow("one hundredth") << 0.01;
        QTest::newRow("two hundredths") << 0.02;
        QTest::newRow("a tenth") << 0.1;
    }

    void yTicksFollowTheRange()
    {
        QFETCH(double, spread);
        PageHarness h;
        QVERIFY(startGraph(h));
        QVERIFY(h.insertRow("BARO30M", T0 - 2, 1000.0 + spread));
        QSignalSpy charts(h.log(), &DataSource::chartUpdated);
        h.sample(T0, 1000.0);
        QCOMPARE(charts.count(), 1);
        const double range = charts.at(0).at(2).toDouble() - charts.at(0).at(1).toDouble();
        const int expected = range <= 0.02 ? 2 : range <= 0.03 ? 3 : range <= 0.04 ? 4 : 6;
        QCOMPARE(axis(h, "axisY")->property("tickCount").toInt(), expected);
        checkClean(h);
    }

    void rangeButtons_data()
    {
        Columns::add<QString, int, double, QString, int, int>(
                "button", "chartNb", "min", "format", "ticks", "minorTicks");
        QTest::newRow("30m") << "button30m" << 0 << -30.0 << "%dm" << 7 << 0;
        QTest::newRow("3h") << "button3h" << 1 << -3.0 << "%dh" << 4 << 1;
        QTest::newRow("6h") << "button6h" << 2 << -6.0 << "%dh" << 7 << 0;
        QTest::newRow("12h") << "button12h" << 3 << -12.0 << "%dh" << 7 << 0;
        QTest::newRow("1d") << "button1d" << 4 << -24.0 << "%dh" << 7 << 0;
        QTest::newRow("2d") << "button2d" << 5 << -48.0 << "%dh" << 7 << 0;
        QTest::newRow("4d") << "button4d" << 6 << -4.0 << "%dd" << 5 << 1;
        QTest::newRow("8d") << "button8d" << 7 << -8.0 << "%dd" << 5 << 1;
        QTest::newRow("16d") << "button16d" << 8 << -16.0 << "%dd" << 5 << 1;
    }

    void rangeButtons()
    {
        QFETCH(QString, button);
        QFETCH(int, chartNb);
        QFETCH(double, min);
        QFETCH(QString, format);
        QFETCH(int, ticks);
        QFETCH(int, minorTicks);

        PageHarness h;
        QVERIFY(startGraph(h));
        // Each table gets a reading of its own, so that the curve tells which one is shown.
        for (int table = 0; table < LogTables::Names.size(); ++table)
            QVERIFY(h.insertRow(LogTables::Names.at(table), T0 - 1000, 1000.0 + table));
        QSignalSpy charts(h.log(), &DataSource::chartUpdated);
        QQuickItem* b = pageItem(h, button);
        QVERIFY(b);
        QCOMPARE(b->property("text").toString(), QTest::currentDataTag());
        click(h, b);
        QCOMPARE(charts.count(), 1);
        QVERIFY(b->property("checked").toBool());
        QCOMPARE(pageProperty(h, "chartNb").toInt(), chartNb);
        QObject* x = axis(h, "axisX");
        QCOMPARE(x->property("min").toDouble(), min);
        QCOMPARE(x->property("max").toDouble(), 0.0);
        QCOMPARE(x->property("labelFormat").toString(), format);
        QCOMPARE(x->property("tickCount").toInt(), ticks);
        QCOMPARE(x->property("minorTickCount").toInt(), minorTicks);
        const QVector<QPointF> curve = points(h, 0);
        QCOMPARE(curve.size(), 1);
        QCOMPARE(curve.first().y(), 1000.0 + chartNb);
        // Only one button is down at a time.
        int down = 0;
        for (const char* name : {"button30m", "button3h", "button6h", "button12h", "button1d", "button2d", "button4d",
                                 "button8d", "button16d"})
            down += pageObject(h, name)->property("checked").toBool() ? 1 : 0;
        QCOMPARE(down, 1);
        checkClean(h);
    }

    void emptyTableKeepsTheAxis()
    {
        PageHarness h;
        QVERIFY(startGraph(h));
        QVERIFY(h.insertRow("BARO30M", T0 - 2, 1012.6));
        h.sample(T0, 1011.3);
        const double min = axis(h, "axisY")->property("min").toDouble();
        const double max = axis(h, "axisY")->property("max").toDouble();
        QCOMPARE(min, 1011.0);
        QCOMPARE(max, 1013.0);
        QVERIFY(h.exec("DELETE FROM BAR16D"));
        QSignalSpy charts(h.log(), &DataSource::chartUpdated);
        click(h, pageItem(h, "button16d"));
        QCOMPARE(charts.count(), 1);
        QVERIFY(charts.at(0).at(2).toDouble() < 0);
        QCOMPARE(axis(h, "axisY")->property("min").toDouble(), min);
        QCOMPARE(axis(h, "axisY")->property("max").toDouble(), max);
        QCOMPARE(h.seriesCount(), 2);
        QVERIFY(points(h, 0).isEmpty());
        QCOMPARE(lastSeriesName(h), QStringLiteral("lineHelper"));
        QVERIFY(!h.series(1)->isVisible());
        checkClean(h);
    }

    void gapMakesASecondSeriesUntilItLeavesTheTable()
    {
        PageHarness h;
        QVERIFY(startGraph(h));
        // Twenty-eight minutes of rows, with ten of them missing in the middle.
        QVERIFY(h.insertRows("BARO30M", T0 - 1680, T0 - 1202, 2, 1010.0));
        QVERIFY(h.insertRows("BARO30M", T0 - 600, T0 - 2, 2, 1011.0));
        h.sample(T0, 1011.0);
        QCOMPARE(h.seriesCount(), 3);
        QCOMPARE(lastSeriesName(h), QStringLiteral("lineHelper"));
        const QVector<QPointF> newer = points(h, 0);
        const QVector<QPointF> older = points(h, 1);
        QCOMPARE(newer.size(), 301);
        QCOMPARE(older.size(), 240);
        QCOMPARE(newer.first().x(), 0.0);
        QCOMPARE(older.first().y(), 1010.0);
        QVERIFY(std::abs(older.first().x() + 1202.0 / 60.0) < 1e-9);
        // The extra series is drawn like the first.
        QCOMPARE(h.series(1)->color(), QColor("#E63219"));
        QCOMPARE(h.series(1)->type(), h.series(0)->type());

        // Nine hundred seconds later the older stretch is past the table's half hour.
        QVERIFY(h.insertRows("BARO30M", T0 + 4, T0 + 898, 2, 1011.0));
        h.sample(T0 + 2, 1011.0); // tick 0: nothing is written or shown
        h.sample(T0 + 900, 1011.0);
        QCOMPARE(h.seriesCount(), 2);
        QCOMPARE(lastSeriesName(h), QStringLiteral("lineHelper"));
        QVERIFY(points(h, 0).last().x() >= -30.0);
        checkClean(h);
    }

    void cursorFollowsTheMouseAndHidesOverAGap()
    {
        PageHarness h;
        QVERIFY(startGraph(h));
        QVERIFY(h.insertRows("BARO30M", T0 - 1500, T0 - 1200, 2, 1010.5));
        QVERIFY(h.insertRows("BARO30M", T0 - 600, T0 - 2, 2, 1011.5));
        h.sample(T0, 1011.5);
        QObject* timerInfo = pageObject(h, "timerInfo");
        QCOMPARE(timerInfo->property("interval").toInt(), 6000);
        QVERIFY(!timerInfo->property("repeat").toBool());

        // Five minutes back lies on the curve.
        QTest::mouseMove(h.window(), chartPoint(h, -5.0, 1011.0));
        QtCharts::QXYSeries* helper = h.series(h.seriesCount() - 1);
        QTRY_VERIFY(helper->isVisible());
        const QPointF point = pageProperty(h, "m_point").toPointF();
        QVERIFY(std::abs(point.x() + 5.0) < 0.1);
        QCOMPARE(point.y(), 1011.5);
        const QVector<QPointF> l = helper->pointsVector();
        QCOMPARE(l.size(), 3);
        QCOMPARE(l.at(0), QPointF(point.x(), axis(h, "axisY")->property("min").toDouble()));
        QCOMPARE(l.at(1), point);
        QCOMPARE(l.at(2), QPointF(0.0, point.y()));
        QCOMPARE(title(h), h.log()->calcInfo(point, 0));
        QVERIFY(title(h).startsWith("1011.5 mb&nbsp;"));
        QVERIFY(timerInfo->property("running").toBool());

        // Fifteen minutes back is in the gap: no value there.
        QTest::mouseMove(h.window(), chartPoint(h, -15.0, 1011.0));
        QTRY_VERIFY(!helper->isVisible());
        QVERIFY(pageProperty(h, "m_point").toPointF().y() < 0);
        QCOMPARE(title(h), QString());

        // Back on the curve, then out of the chart: the helper goes.
        QTest::mouseMove(h.window(), chartPoint(h, -25.0, 1011.0));
        QTRY_VERIFY(helper->isVisible());
        QCOMPARE(pageProperty(h, "m_point").toPointF().y(), 1010.5);
        QTest::mouseMove(h.window(), centreOf(pageItem(h, "textPreLevel")));
        QTRY_VERIFY(!helper->isVisible());
        checkClean(h);
    }

    void cursorTextGoesAfterSixSeconds()
    {
        PageHarness h;
        QVERIFY(startSteadyGraph(h));
        QVariant point = QVariant::fromValue(h.log()->getValueAt(-3.0, 0, QVariant(T0)));
        PageHarness::call(h.item("baroH"), "serieClicked", {point, false});
        QtCharts::QXYSeries* helper = h.series(h.seriesCount() - 1);
        QVERIFY(helper->isVisible());
        QVERIFY(!title(h).isEmpty());
        QTest::qWait(5500);
        QVERIFY(helper->isVisible());
        QTRY_VERIFY_WITH_TIMEOUT(!helper->isVisible(), 1500);
        QCOMPARE(title(h), QString());
        checkClean(h);
    }

    void pressOutsideTheAxesIsRefused()
    {
        PageHarness h;
        QVERIFY(startSteadyGraph(h));
        QObject* area = pageObject(h, "chartArea");
        QSignalSpy presses(area, SIGNAL(pressed(QQuickMouseEvent*)));
        QSignalSpy releases(area, SIGNAL(released(QQuickMouseEvent*)));
        // Left of the first tick: outside the x-axis.
        const QPoint outside = chartPoint(h, -31.0, 1011.5);
        QTest::mousePress(h.window(), Qt::LeftButton, Qt::NoModifier, outside);
        QTest::mouseRelease(h.window(), Qt::LeftButton, Qt::NoModifier, outside);
        QCOMPARE(presses.count(), 1);
        QCOMPARE(releases.count(), 0);
        // Inside: taken, and the cursor comes up there.
        const QPoint inside = chartPoint(h, -3.0, 1011.5);
        QTest::mousePress(h.window(), Qt::LeftButton, Qt::NoModifier, inside);
        QTest::mouseRelease(h.window(), Qt::LeftButton, Qt::NoModifier, inside);
        QCOMPARE(releases.count(), 1);
        QVERIFY(h.series(h.seriesCount() - 1)->isVisible());
        QVERIFY(!pageProperty(h, "paning").toBool());
        checkClean(h);
    }

    void wheelZoomHoldsTheCurveUntilReset()
    {
        PageHarness h;
        QVERIFY(startSteadyGraph(h));
        const QVector<QPointF> before = points(h, 0);
        const QPoint middle = chartPoint(h, -5.0, 1011.5);

        wheel(h, middle, 120);
        QVERIFY(isZoomed(h));
        QCOMPARE(pageProperty(h, "zoomLevel").toDouble(), 1.1);
        wheel(h, middle, 120);
        QVERIFY(std::abs(pageProperty(h, "zoomLevel").toDouble() - 1.21) < 1e-9);

        // Samples change the texts above, not the curve.
        h.sample(T0 + 2, 1012.7); // tick 0 writes nothing and says nothing
        h.sample(T0 + 4, 1012.7);
        QCOMPARE(pageObject(h, "textPressure")->property("text").toString(), QStringLiteral("1012.7 mb"));
        QCOMPARE(points(h, 0), before);

        // A step back out of the zoom still holds it; past the start it resets.
        wheel(h, middle, -120);
        QVERIFY(std::abs(pageProperty(h, "zoomLevel").toDouble() - 1.1) < 1e-9);
        QVERIFY(isZoomed(h));

        // A double click resets; the next sample moves the curve again.
        QTest::mouseDClick(h.window(), Qt::LeftButton, Qt::NoModifier, chartPoint(h, -5.0, 1011.5));
        QTRY_COMPARE(pageProperty(h, "zoomLevel").toDouble(), 1.0);
        QVERIFY(!isZoomed(h));
        h.sample(T0 + 6, 1012.9);
        QCOMPARE(points(h, 0).first().y(), 1012.9);
        QCOMPARE(points(h, 0).size(), before.size() + 2);

        wheel(h, middle, 120);
        QVERIFY(isZoomed(h));
        wheel(h, middle, -120);
        wheel(h, middle, -120);
        QCOMPARE(pageProperty(h, "zoomLevel").toDouble(), 1.0);
        QVERIFY(!isZoomed(h));
        checkClean(h);
    }

    void dragOfAZoomedChartPans()
    {
        PageHarness h;
        QVERIFY(startSteadyGraph(h));
        const QPoint from = chartPoint(h, -5.0, 1011.5);
        wheel(h, from, 120);
        wheel(h, from, 120);
        QObject* x = axis(h, "axisX");
        const double minBefore = x->property("min").toDouble();
        QTest::mousePress(h.window(), Qt::LeftButton, Qt::NoModifier, from);
        QVERIFY(pageProperty(h, "paning").toBool());
        QTest::mouseMove(h.window(), from + QPoint(60, 0));
        QTest::mouseMove(h.window(), from + QPoint(120, 0));
        // Dragged to the right: the view moves back in time.
        QVERIFY(x->property("min").toDouble() < minBefore);
        // No sample reaches the chart while it is dragged.
        const QVector<QPointF> held = points(h, 0);
        QSignalSpy updates(h.backEnd(), &BackEnd::dataUpdated);
        h.sample(T0 + 2, 1013.0);
        h.sample(T0 + 4, 1013.0);
        QCOMPARE(updates.count(), 1);
        QCOMPARE(points(h, 0), held);
        QTest::mouseRelease(h.window(), Qt::LeftButton, Qt::NoModifier, from + QPoint(120, 0));
        QVERIFY(!pageProperty(h, "paning").toBool());
        checkClean(h);
    }

    void freshSampleMovesTheCursorWithoutRestartingTheTimer()
    {
        PageHarness h;
        QVERIFY(startSteadyGraph(h));
        // The cursor as a press at five minutes back sets it.
        const QVariant point = QVariant::fromValue(h.log()->getValueAt(-5.0, 0, QVariant(T0)));
        QElapsedTimer clock;
        clock.start();
        PageHarness::call(h.item("baroH"), "serieClicked", {point, false});
        const QString cursorText = title(h);
        QVERIFY(!cursorText.isEmpty());
        const qint64 setAt = pageProperty(h, "lastStartTime").toLongLong();

        h.sample(T0 + 2, 1011.6); // tick 0 writes nothing and says nothing
        QTest::qWait(2100);
        h.sample(T0 + 4, 1011.6);
        const qint64 elapsed = h.backEnd()->getCurrentTime() - setAt;
        QVERIFY(elapsed >= 2);
        const QPointF moved = pageProperty(h, "m_point").toPointF();
        QVERIFY2(std::abs(moved.x() - (-5.0 - elapsed / 60.0)) < 1e-9, qPrintable(QString::number(moved.x())));
        QtCharts::QXYSeries* helper = h.series(h.seriesCount() - 1);
        QVERIFY(helper->isVisible());
        QCOMPARE(helper->pointsVector().at(1).x(), moved.x());
        // The cursor's text stays, and goes when the first six seconds are up, not later.
        QCOMPARE(title(h), cursorText);
        QObject* timerInfo = pageObject(h, "timerInfo");
        QVERIFY(timerInfo->property("running").toBool());
        QTRY_VERIFY_WITH_TIMEOUT(!timerInfo->property("running").toBool(), 5000);
        QVERIFY2(clock.elapsed() < 7000, qPrintable(QString::number(clock.elapsed())));
        QVERIFY(!helper->isVisible());
        checkClean(h);
    }

    void threeHourTendencyOnlyOnTheThreeHourChart()
    {
        PageHarness h;
        QVERIFY(startGraph(h));
        click(h, pageItem(h, "button3h"));
        // A fresh log has no three hours behind it: "notOK", and the title stays blank.
        h.sample(T0, 1012.0);
        QCOMPARE(h.log()->getTrend3h(), QStringLiteral("notOK"));
        QCOMPARE(title(h), QString());

        QVERIFY(h.insertRow("BARO3H", T0 + 4 - 10800, 1013.34));
        h.sample(T0 + 2, 1012.0);
        h.sample(T0 + 4, 1012.0);
        const QString tendency = QStringLiteral("<div align='left'>-1.3 mb / 3h</div>");
        QCOMPARE(h.log()->getTrend3h(), tendency);
        QCOMPARE(title(h), tendency);
        QFont font = h.chart()->property("titleFont").value<QFont>();
        QVERIFY(font.bold());
        QCOMPARE(font.pixelSize(), pageObject(h, "textPreLevel")->property("font").value<QFont>().pixelSize());

        // The cursor's text outranks it while timerInfo runs.
        QVariant point = QVariant::fromValue(h.log()->getValueAt(-4.0 / 3600.0, 1, QVariant(T0 + 4)));
        PageHarness::call(h.item("baroH"), "serieClicked", {point, false});
        const QString cursorText = title(h);
        QVERIFY(cursorText.startsWith("1012.0 mb"));
        h.sample(T0 + 6, 1012.0);
        QCOMPARE(title(h), cursorText);

        // Not on the other charts.
        click(h, pageItem(h, "button30m"));
        h.sample(T0 + 8, 1012.0);
        QCOMPARE(title(h), QString());
        checkClean(h);
    }

    void levelCaptionToolTipTellsTheSourceAtEachShowing()
    {
        PageHarness h;
        QVERIFY(startGraph(h));
        h.sample(T0, 1012.0);
        QQuickItem* area = pageItem(h, "levelArea");
        QTest::mouseMove(h.window(), centreOf(area));
        QTRY_VERIFY(area->property("containsMouse").toBool());
        QCOMPARE(area->property("source").toString(), QStringLiteral("From serial connection"));
        QTest::mouseMove(h.window(), centreOf(pageItem(h, "textDate")));
        QTRY_VERIFY(!area->property("containsMouse").toBool());
        h.backEnd()->setCurrentPressure(-2000.0, Serial);
        h.backEnd()->setCurrentPressure(1011.0, Udp);
        QTest::mouseMove(h.window(), centreOf(area));
        QTRY_VERIFY(area->property("containsMouse").toBool());
        QCOMPARE(area->property("source").toString(), QStringLiteral("From UDP connection"));
        checkClean(h);
    }

    void bannerLinks_data()
    {
        QTest::addColumn<QString>("page");
        QTest::newRow("graph") << "baroH";
        QTest::newRow("large display") << "baroV";
    }

    void bannerLinks()
    {
        QFETCH(QString, page);
        PageHarness h;
        h.writeSetting("splitScreen", 1);
        QVERIFY(startGraph(h));
        if (page == "baroV") {
            h.find("view")->setProperty("currentIndex", 1);
            QTRY_VERIFY(std::abs(h.item("baroV")->mapToScene(QPointF(0, 0)).x()) < 0.5);
        }
        QQuickItem* banner = h.item("imgQuillmere", h.item(page));
        QVERIFY(banner);
        QCOMPARE(banner->property("source").toUrl(), QUrl("qrc:/Images/USB_banner.png"));
        QCOMPARE(banner->width(), qreal(h.window()->width()));
        QCOMPARE(banner->height(), h.window()->width() * 218.0 / 1800.0);
        const double w = banner->width();
        const double y = banner->height() / 2;

        QTest::mouseClick(h.window(), Qt::LeftButton, Qt::NoModifier, scenePoint(banner, QPointF(w * 0.1, y)));
        QTest::mouseClick(h.window(), Qt::LeftButton, Qt::NoModifier, scenePoint(banner, QPointF(w * 0.5, y)));
        QTest::mouseClick(h.window(), Qt::LeftButton, Qt::NoModifier, scenePoint(banner, QPointF(w * 0.9, y)));
        QCOMPARE(h.openedUrls(),
                 QList<QUrl>({QUrl("https://www.quillmere.com/"), QUrl("https://www.quillmere.com/skerry")}));
        // The areas end where the image's parts do: the middle is dead.
        QTest::mouseClick(h.window(), Qt::LeftButton, Qt::NoModifier,
                          scenePoint(banner, QPointF(w * 800 / 1800 + 2, y)));
        QTest::mouseClick(h.window(), Qt::LeftButton, Qt::NoModifier,
                          scenePoint(banner, QPointF(w * (1800 - 485) / 1800 - 2, y)));
        QCOMPARE(h.openedUrls().size(), 2);
        checkClean(h);
    }

    // ---- the pressure-fall warning and the barogram ----

    void warningStripShowsTheLevelUntilAcknowledged()
    {
        PageHarness h;
        QVERIFY(startGraph(h));
        QQuickItem* strip = h.item("warningStrip", h.item("baroH"));
        QVERIFY(strip);
        QVERIFY(!strip->isVisible());
        // 4.5 hPa down in three hours: the warning, on both pages.
        QVERIFY(h.insertRow("BARO3H", T0 - 10800, 1016.5));
        h.sample(T0, 1012.0);
        QVERIFY(strip->isVisible());
        QCOMPARE(h.find("warningLevel", strip)->property("text").toString(), QStringLiteral("Pressure falling quickly"));
        QVERIFY2(h.find("warningDetail", strip)->property("text").toString().startsWith(
                         QStringLiteral("Fall of 4.5 mb in three hours")),
                 qPrintable(h.find("warningDetail", strip)->property("text").toString()));
        QQuickItem* large = h.item("warningStrip", h.item("baroV"));
        QVERIFY(large && large->property("level").toInt() == 1);

        QQuickItem* acknowledge = h.item("warningAcknowledge", strip);
        QVERIFY(acknowledge);
        click(h, acknowledge);
        QVERIFY(h.log()->getWarning()->isAcknowledged());
        QCOMPARE(acknowledge->property("text").toString(), QStringLiteral("Acknowledged"));
        QVERIFY(!acknowledge->isEnabled());
        QCOMPARE(h.messages().count(QStringLiteral("pressure fall level Warning 3h 4.5 1h none")), 1);
        checkClean(h);
    }

    void barogramButtonStandsInTheBand_data()
    {
        Columns::add<int, QString, QSize, bool>("theme", "language", "size", "beside");
        const QSize wide(800, 600);
        const QSize narrow(420, 700);
        QTest::newRow("light, wide: beside the range buttons") << 0 << "en" << wide << true;
        QTest::newRow("dark, wide, French") << 1 << "fr" << wide << true;
        QTest::newRow("light, narrow, French: a line of its own") << 0 << "fr" << narrow << false;
        QTest::newRow("dark, narrow") << 1 << "en" << narrow << false;
    }

    // A real button in the band of the range buttons, whole and readable, over nothing else.
    void barogramButtonStandsInTheBand()
    {
        QFETCH(int, theme);
        QFETCH(QString, language);
        QFETCH(QSize, size);
        QFETCH(bool, beside);
        PageHarness h;
        QVERIFY(copyCatalogues(h.folder().path()));
        h.writeSetting("theme", theme);
        QVERIFY(startMain(h, size, language));
        QQuickItem* page = h.item("baroH");
        QVERIFY(page && h.chart());
        QCOMPARE(isDark(h), theme == 1);
        QQuickItem* button = pageItem(h, "buttonBarogram");
        QVERIFY(button);
        QCOMPARE(button->property("text").toString(), QCoreApplication::translate("BaroH", "Barogram"));
        if (language == "fr")
            QVERIFY(button->property("text").toString() != QStringLiteral("Barogram"));

        // A raised button with a plate of its own, not a tool button's bare text.
        QVERIFY(button->inherits("QQuickButton") && !button->inherits("QQuickToolButton"));
        QVERIFY(!button->property("flat").toBool());
        auto* plate = button->property("background").value<QQuickItem*>();
        QVERIFY(plate && plate->isVisible() && plate->width() > 0 && plate->height() > 0);
        QQuickItem* band = pageItem(h, "buttonBand");
        QVERIFY(band);
        // The plate stands out from the band, and the text from the plate.
        const QColor bandColour = band->property("color").value<QColor>();
        const QColor plateColour = over(plate->property("color").value<QColor>(), bandColour);
        QVERIFY2(contrast(plateColour, bandColour) >= 1.2, qPrintable(plateColour.name() + " on " + bandColour.name()));
        const QColor ink = over(button->property("contentItem").value<QQuickItem*>()->property("color").value<QColor>(),
                                plateColour);
        QVERIFY2(contrast(ink, plateColour) >= 4.5, qPrintable(ink.name() + " on " + plateColour.name()));
        // The whole text fits.
        QVERIFY(button->width() >= button->implicitWidth());

        // Laid out in the band, not floating over the page.
        QQuickItem* layout = pageItem(h, "bandLayout");
        QVERIFY(layout && layout->inherits("QQuickGridLayout"));
        QCOMPARE(button->parentItem(), layout);
        const QRectF box = button->mapRectToScene(QRectF(0, 0, button->width(), button->height()));
        const QRectF pageBox = page->mapRectToScene(QRectF(0, 0, page->width(), page->height()));
        const QRectF bandBox = band->mapRectToScene(QRectF(0, 0, band->width(), band->height()));
        QVERIFY2(bandBox.contains(box), qPrintable(QString("%1,%2 %3x%4").arg(box.x()).arg(box.y()).arg(box.width()).arg(box.height())));
        QVERIFY(pageBox.contains(box));
        auto* chart = qobject_cast<QQuickItem*>(h.chart());
        QVERIFY(!box.intersects(chart->mapRectToScene(QRectF(0, 0, chart->width(), chart->height()))));
        QRectF ranges;
        for (const QString& name : RangeButtons) {
            QQuickItem* range = pageItem(h, name);
            QVERIFY(range);
            const QRectF rangeBox = range->mapRectToScene(QRectF(0, 0, range->width(), range->height()));
            QVERIFY2(!box.intersects(rangeBox), qPrintable(name));
            ranges = ranges.united(rangeBox);
        }
        // The range buttons stay centred on the page.
        QVERIFY(std::abs(ranges.center().x() - pageBox.center().x()) < 1.0);
        if (beside) {
            QVERIFY(box.center().y() > ranges.top() && box.center().y() < ranges.bottom());
            QVERIFY(box.left() >= ranges.right());
        } else {
            QVERIFY(box.top() >= ranges.bottom());
        }
        if (language != "en")
            h.translations().selectLanguage("en");
        checkClean(h);
    }

    void barogramButtonSavesTheSpanShown()
    {
        PageHarness h;
        QVERIFY(startGraph(h));
        UrlSink shown;
        QDesktopServices::setUrlHandler(QStringLiteral("file"), &shown, "openUrl");
        for (qint64 t = T0 - 600; t < T0; t += 2)
            QVERIFY(h.insertRow("BARO30M", t, 1012.0));
        h.sample(T0, 1012.0);
        click(h, pageItem(h, "buttonBarogram"));
        QDesktopServices::unsetUrlHandler(QStringLiteral("file"));
        QCOMPARE(shown.urls.size(), 1);
        QVERIFY(shown.urls.at(0).toString().endsWith(QStringLiteral("/barogram_BARO30M.pdf")));
        QVERIFY(QFile::exists(h.folder().filePath(QStringLiteral("barogram_BARO30M.pdf"))));
        checkClean(h);
    }
};

QTEST_MAIN(TestBaroH)
#include "tst_baroh.moc"
