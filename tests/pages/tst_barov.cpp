// SPDX-License-Identifier: GPL-3.0-or-later
#include "PageDriver.h"
#include "PageHarness.h"
#include "tests/support/Columns.h"

#include "app/BackEnd.h"
#include "log/DataSource.h"
#include "nmea/NmeaSourceType.h"

#include <QtQuick/QQuickItem>
#include <QtQuick/QQuickWindow>
#include <QtTest/QtTest>

using namespace PageDriver;

namespace {

constexpr qint64 T0 = 1700000040;

} // namespace

// The large display: the same sample as the graph page, without the chart.
class TestBaroV : public QObject
{
    Q_OBJECT

private:
    // The large display on show, as the split screen setting allows it.
    static bool startLarge(PageHarness& h, int width = 800, int height = 600)
    {
        h.writeSetting("splitScreen", 1);
        if (!PageDriver::startMain(h, QSize(width, height)) || !h.item("baroV"))
            return false;
        h.find("view")->setProperty("currentIndex", 1);
        return QTest::qWaitFor([&h] { return std::abs(h.item("baroV")->mapToScene(QPointF(0, 0)).x()) < 0.5; });
    }

    static QQuickItem* pageItem(PageHarness& h, const QString& name)
    {
        return h.item(name, h.item("baroV"));
    }

    static QString text(PageHarness& h, const QString& name)
    {
        return pageItem(h, name)->property("text").toString();
    }

private slots:
    void sampleFillsTheTexts_data()
    {
        Columns::add<bool, double, double>("fix", "cog", "sog");
        QTest::newRow("no position") << false << 0.0 << 0.0;
        QTest::newRow("at rest: the position alone") << true << 0.0 << 0.0;
        QTest::newRow("under way: always two lines") << true << 200.0 << 5.5;
    }

    void sampleFillsTheTexts()
    {
        QFETCH(bool, fix);
        QFETCH(double, cog);
        QFETCH(double, sog);
        PageHarness h;
        // Wider than high: the graph page would put course and speed on the same line.
        QVERIFY(startLarge(h));
        if (fix)
            h.backEnd()->setPositionData(QPointF(3.25, -12.5), sog, cog, Serial);
        QSignalSpy updates(h.backEnd(), &BackEnd::dataUpdated);
        h.sample(T0, 1009.4);
        QCOMPARE(updates.count(), 1);
        const QString position = updates.at(0).at(1).toString();
        const QString cogsog = updates.at(0).at(2).toString();
        QCOMPARE(text(h, "textDate"), updates.at(0).at(0).toString());
        QCOMPARE(text(h, "textPressure"), QStringLiteral("1009.4 mb"));
        QCOMPARE(text(h, "textPreLevel"), QStringLiteral("Sea Level Pressure (QNH)"));
        QVERIFY(pageItem(h, "rowPressure")->isVisible());
        QQuickItem* pos = pageItem(h, "textPos");
        if (!fix) {
            QVERIFY(!pos->isVisible());
        } else if (cogsog == "no") {
            QVERIFY(pos->isVisible());
            QCOMPARE(pos->property("text").toString(), position);
        } else {
            QVERIFY(pos->isVisible());
            QCOMPARE(pos->property("text").toString(), position + "\n" + cogsog);
        }
        checkClean(h);
    }

    void withoutPositionTheLineTakesNoRoom()
    {
        PageHarness h;
        QVERIFY(startLarge(h));
        h.sample(T0, 1009.4);
        QQuickItem* date = pageItem(h, "textDate");
        QQuickItem* pos = pageItem(h, "textPos");
        QQuickItem* level = pageItem(h, "textPreLevel");
        QVERIFY(!pos->isVisible());
        QCOMPARE(level->y(), date->y() + date->height());

        h.backEnd()->setPositionData(QPointF(3.25, -12.5), 5.5, 200.0, Serial);
        h.sample(T0 + 2, 1009.4); // tick 0 writes nothing and says nothing
        h.sample(T0 + 4, 1009.4);
        QVERIFY(pos->isVisible());
        QTRY_VERIFY(level->y() >= date->y() + date->height() + pos->height() - 0.5);
        QVERIFY(pos->height() > 0);
        checkClean(h);
    }

    void longPressureTextsShrinkRatherThanClip_data()
    {
        Columns::add<int, int, int, QString>("unit", "precision", "width", "expected");
        QTest::newRow("mb, wide") << 0 << 1 << 800 << "1013.3 mb";
        QTest::newRow("inHg, high precision, wide") << 3 << 2 << 800 << "29.921 inHg";
        QTest::newRow("inHg, high precision, narrow") << 3 << 2 << 360 << "29.921 inHg";
        QTest::newRow("mmHg, narrow") << 4 << 1 << 360 << "760.0 mmHg";
    }

    void longPressureTextsShrinkRatherThanClip()
    {
        QFETCH(int, unit);
        QFETCH(int, precision);
        QFETCH(int, width);
        QFETCH(QString, expected);
        PageHarness h;
        h.writeSetting("unitPre", unit);
        h.writeSetting("precision", precision);
        QVERIFY(startLarge(h, width, 640));
        h.sample(T0, 1013.25);
        QQuickItem* value = pageItem(h, "textPressure");
        QCOMPARE(value->property("text").toString(), expected);
        // The whole text, drawn smaller than the 1000 pixels it starts from, within its room.
        QVERIFY(!value->property("truncated").toBool());
        const int drawn = value->property("fontInfo").toMap().value("pixelSize").toInt();
        QVERIFY2(drawn < 1000 && drawn > 10, qPrintable(QString::number(drawn)));
        QVERIFY2(value->property("contentWidth").toDouble() <= value->width() + 0.5,
                 qPrintable(QString("%1 > %2").arg(value->property("contentWidth").toDouble()).arg(value->width())));
        QVERIFY(value->x() >= 10 - 0.5);
        QVERIFY(value->x() + value->width() <= h.window()->width());
        // No higher than the text it holds.
        QTRY_VERIFY(value->height() <= value->property("contentHeight").toDouble() + 0.5);
        // The arrow keeps to a fifth of the page's width and stays inside it.
        QQuickItem* arrow = pageItem(h, "imgTrend");
        QVERIFY(arrow->width() <= h.item("baroH")->width() / 5 + 0.5);
        QVERIFY(arrow->mapToScene(QPointF(arrow->width(), 0)).x() <= h.window()->width() - 10 + 0.5);
        checkClean(h);
    }

    void aLongerTextIsDrawnSmaller()
    {
        PageHarness h;
        h.writeSetting("precision", 0);
        QVERIFY(startLarge(h, 500, 640));
        QQuickItem* value = pageItem(h, "textPressure");
        h.sample(T0, 1013.25);
        const int shortText = value->property("fontInfo").toMap().value("pixelSize").toInt();
        h.backEnd()->setSetting("unitPre", 3);
        h.backEnd()->setSetting("precision", 2);
        h.sample(T0 + 2, 1013.25); // tick 0 writes nothing and says nothing
        h.sample(T0 + 4, 1013.25);
        QCOMPARE(value->property("text").toString(), QStringLiteral("29.921 inHg"));
        const int longText = value->property("fontInfo").toMap().value("pixelSize").toInt();
        QVERIFY2(longText < shortText, qPrintable(QString("%1 vs %2").arg(longText).arg(shortText)));
        checkClean(h);
    }

    void trendOutsideTheClassesKeepsTheArrow()
    {
        PageHarness h;
        QVERIFY(startLarge(h));
        QVERIFY(h.insertRow("BARO3H", T0 - 3600, 1011.5));
        h.sample(T0, 1012.0);
        QQuickItem* arrow = pageItem(h, "imgTrend");
        const QUrl rising("qrc:/Images/Trend_Rising~universal.png");
        QCOMPARE(arrow->property("source").toUrl(), rising);
        for (int value : {0, 5, -5, 10, -9}) {
            PageHarness::call(h.item("baroV"), "showTrend", {value});
            QCOMPARE(arrow->property("source").toUrl(), rising);
        }
        PageHarness::call(h.item("baroV"), "showTrend", {-3});
        QCOMPARE(arrow->property("source").toUrl(), QUrl("qrc:/Images/Trend_Falling Fast~universal.png"));
        // The graph page keeps its arrow the same way.
        PageHarness::call(h.item("baroH"), "showTrend", {7});
        QCOMPARE(h.find("imgTrend", h.item("baroH"))->property("source").toUrl(), rising);
        checkClean(h);
    }

    void noPressureHidesTheRowAndSaysSo()
    {
        PageHarness h;
        QVERIFY(startLarge(h));
        h.sample(T0, 1012.0);
        h.sampleWithoutPressure(T0 + 2);
        QVERIFY(!pageItem(h, "rowPressure")->isVisible());
        QQuickItem* caption = pageItem(h, "textPreLevel");
        QVERIFY(caption->isVisible());
        QCOMPARE(caption->property("text").toString(), QStringLiteral("No pressure data available"));
        h.backEnd()->setSetting("preDisplay", 1);
        h.sample(T0 + 4, 1012.0);
        QVERIFY(pageItem(h, "rowPressure")->isVisible());
        // Nothing on this page shows the arrow again: it was never hidden, only its row.
        QVERIFY(pageItem(h, "imgTrend")->isVisible());
        QCOMPARE(caption->property("text").toString(), QStringLiteral("Station Level Pressure (QFE)"));
        checkClean(h);
    }
};

QTEST_MAIN(TestBaroV)
#include "tst_barov.moc"
