// SPDX-License-Identifier: GPL-3.0-or-later
#include "PageDriver.h"
#include "PageHarness.h"
#include "tests/support/FreePort.h"
#include "tests/support/HttpClient.h"

#include "app/BackEnd.h"
#include "app/TranslationHandler.h"
#include "app/WatchPage.h"
#include "log/DataSource.h"

#include <QtCharts/QXYSeries>

#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtNetwork/QTcpServer>
#include <QtQuick/QQuickItem>
#include <QtTest/QSignalSpy>
#include <QtTest/QtTest>

using namespace PageDriver;

// The watch page beside the window, over the real BackEnd and log: its controls on the
// Connections page (off by default, switched on and off by leaving the page, its line
// telling what it does), and what it serves against what the window shows.
class TestWatchPageWindow : public QObject
{
    Q_OBJECT

private:
    static QQuickItem* open(PageHarness& h)
    {
        PageHarness::evaluate(h.window(), QStringLiteral("loader.setSource(\"qrc:/settingsConnections\", "
                                                         "{\"serialPorts\": []})"));
        QQuickItem* page = h.loadedPage();
        return page && page->objectName() == QLatin1String("connectionsPage") ? page : nullptr;
    }

    static QString status(PageHarness& h) { return prop(h.loadedPage(), "watchPageStatus", "text").toString(); }

private slots:
    void offByDefault()
    {
        PageHarness h;
        h.writeSetting("SettingSerialPort", QStringLiteral("None"));
        QVERIFY(startMain(h));
        QCOMPARE(h.backEnd()->getWatchPage().server().state(), WatchServer::State::Off);
        QQuickItem* page = open(h);
        QVERIFY(page);
        QCOMPARE(prop(page, "swWatchPage", "checked").toBool(), false);
        QCOMPARE(prop(page, "watchPagePort", "value").toInt(), 8088);
        QCOMPARE(prop(page, "swWatchPagePosition", "checked").toBool(), false);
        QCOMPARE(prop(page, "watchPagePort", "enabled").toBool(), false);
        QVERIFY(h.find(QStringLiteral("watchPageNotice"))
                        ->property("text")
                        .toString()
                        .contains(QStringLiteral("anyone on that network can read it, and only read it")));
        QTRY_COMPARE(status(h), QStringLiteral("off"));
        QVERIFY(leave(h));
        QCOMPARE(stored(h, "watchPageOn").toInt(), 0);
        QCOMPARE(stored(h, "watchPagePort").toInt(), 8088);
        QCOMPARE(stored(h, "watchPagePosition").toInt(), 0);
        QCOMPARE(h.backEnd()->getWatchPage().server().state(), WatchServer::State::Off);
        checkClean(h);
    }

    void switchedOnAndOffFromThePage()
    {
        const quint16 port = FreePort::tcp();
        QVERIFY(port);
        PageHarness h;
        h.writeSetting("SettingSerialPort", QStringLiteral("None"));
        QVERIFY(startMain(h));
        QQuickItem* page = open(h);
        QVERIFY(page);
        set(page, "swWatchPage", "checked", true);
        set(page, "watchPagePort", "value", port);
        QCOMPARE(prop(page, "watchPagePort", "enabled").toBool(), true);
        // Nothing listens before the page is left.
        QTest::qWait(200);
        QCOMPARE(HttpClient::connectFrom(port), -1);
        QVERIFY(leave(h));
        QCOMPARE(stored(h, "watchPageOn").toInt(), 1);
        QCOMPARE(stored(h, "watchPagePort").toInt(), int(port));

        const HttpReply now = HttpClient::get(port, "/api/now");
        QCOMPARE(now.status, 200);
        QCOMPARE(QJsonDocument::fromJson(now.body).object().value("positionServed").toBool(), false);

        // The page tells what runs, and counts the phone that asked.
        page = open(h);
        QVERIFY(page);
        QTRY_COMPARE(status(h), QStringLiteral("serving on port %1, 1 phone connected").arg(port));
        set(page, "swWatchPagePosition", "checked", true);
        QVERIFY(leave(h));
        QCOMPARE(stored(h, "watchPagePosition").toInt(), 1);
        QCOMPARE(QJsonDocument::fromJson(HttpClient::get(port, "/api/now").body).object().value("positionServed").toBool(),
                 true);

        page = open(h);
        QVERIFY(page);
        set(page, "swWatchPage", "checked", false);
        QVERIFY(leave(h));
        QCOMPARE(stored(h, "watchPageOn").toInt(), 0);
        QCOMPARE(HttpClient::connectFrom(port), -1);
        checkClean(h);
    }

    void thePortStaysWhereNoPrivilegeIsNeeded()
    {
        PageHarness h;
        h.writeSetting("SettingSerialPort", QStringLiteral("None"));
        h.writeSetting("watchPagePort", 80);
        QVERIFY(startMain(h));
        QQuickItem* page = open(h);
        QVERIFY(page);
        QCOMPARE(prop(page, "watchPagePort", "value").toInt(), 1024);
        set(page, "watchPagePort", "value", 70000);
        QCOMPARE(prop(page, "watchPagePort", "value").toInt(), 65535);
        QVERIFY(leave(h));
        QCOMPARE(stored(h, "watchPagePort").toInt(), 65535);
        checkClean(h);
    }

    void aPortInUseIsSaid()
    {
        const quint16 port = FreePort::tcp();
        QVERIFY(port);
        QTcpServer holder;
        QVERIFY(holder.listen(QHostAddress::AnyIPv4, port));
        PageHarness h;
        h.writeSetting("SettingSerialPort", QStringLiteral("None"));
        h.writeSetting("watchPageOn", 1);
        h.writeSetting("watchPagePort", port);
        QVERIFY(startMain(h));
        QVERIFY(open(h));
        QTRY_COMPARE(status(h), QStringLiteral("port %1 is in use").arg(port));
        checkClean(h);
    }

    void itServesWhatTheWindowShowsAtTheSameTick()
    {
        constexpr qint64 T0 = 1700000040;
        const quint16 port = FreePort::tcp();
        QVERIFY(port);
        PageHarness h;
        h.writeSetting("SettingSerialPort", QStringLiteral("None"));
        h.writeSetting("watchPageOn", 1);
        h.writeSetting("watchPagePort", port);
        h.writeSetting("watchPagePosition", 1);
        h.writeSetting("unitPre", 3);
        h.writeSetting("elevation", 12.0);
        QVERIFY(startMain(h));
        QVERIFY(h.insertRows("BARO30M", T0 - 600, T0 - 200, 2, 1012.0));
        QVERIFY(h.insertRows("BARO30M", T0 - 100, T0 - 2, 2, 1012.4));
        h.backEnd()->setPositionData(QPointF(-2.946483, 47.20575), 6.2, 245.0, Serial);
        h.sample(T0, 1012.6);

        QQuickItem* graph = h.item("baroH");
        QVERIFY(graph);
        const auto shown = [&](const char* name) { return h.find(QLatin1String(name), graph)->property("text").toString(); };
        const QJsonObject now = QJsonDocument::fromJson(HttpClient::get(port, "/api/now").body).object();
        const QJsonObject display = now.value("display").toObject();
        QCOMPARE(display.value("date").toString(), shown("textDate"));
        QCOMPARE(display.value("pressure").toString(), shown("textPressure"));
        QCOMPARE(display.value("level").toString(), shown("textPreLevel"));
        // The window is wider than tall: position and course on one line.
        QCOMPARE(display.value("position").toString() + QLatin1Char(' ') + display.value("cogsog").toString(),
                 shown("textPos"));
        QCOMPARE(now.value("pressure").toObject().value("unit").toString(), QStringLiteral("inHg"));

        // The span's chart is the window's curve, point for point, with its breaks; and reading
        // it moves nothing on the window.
        QSignalSpy redrawn(h.log(), &DataSource::chartUpdated);
        const QJsonObject span = QJsonDocument::fromJson(
                HttpClient::pumping([&] { return HttpClient::get(port, "/api/table/0"); }).body).object();
        QCOMPARE(HttpClient::pumping([&] { return HttpClient::get(port, "/api/table/5"); }).status, 200);
        QCOMPARE(HttpClient::pumping([&] { return HttpClient::get(port, "/barogram/BARO4D.png"); }).status, 200);
        QCOMPARE(redrawn.count(), 0);
        const QJsonArray stretches = span.value("series").toArray();
        QCOMPARE(stretches.size(), h.seriesCount() - 1);
        for (int n = 0; n < stretches.size(); ++n) {
            const QVector<QPointF> window = h.series(n)->pointsVector();
            const QJsonArray points = stretches.at(n).toArray();
            QCOMPARE(points.size(), window.size());
            for (int i = 0; i < points.size(); ++i)
                QCOMPARE(QPointF(points.at(i).toArray().at(0).toDouble(), points.at(i).toArray().at(1).toDouble()),
                         window.at(i));
        }
        QObject* axisY = PageHarness::byId(graph, QStringLiteral("axisY"));
        QVERIFY(axisY);
        QCOMPARE(span.value("min").toDouble(), axisY->property("min").toDouble());
        QCOMPARE(span.value("max").toDouble(), axisY->property("max").toDouble());

        // The next tick is there as soon as the window has it. (The tick after the first is
        // the counter's wrap, which logs and shows nothing new.)
        h.sample(T0 + 2, 1013.9);
        h.sample(T0 + 4, 1013.9);
        const QJsonObject next = QJsonDocument::fromJson(HttpClient::get(port, "/api/now").body).object();
        QCOMPARE(quint64(next.value("sequence").toDouble()), quint64(now.value("sequence").toDouble()) + 2);
        QCOMPARE(next.value("display").toObject().value("pressure").toString(), shown("textPressure"));
        QVERIFY(next.value("display").toObject().value("pressure").toString() != display.value("pressure").toString());
        checkClean(h);
    }

    void theLineSpeaksFrench()
    {
        PageHarness h;
        QVERIFY(copyCatalogues(h.folder().path()));
        h.writeSetting("language", 1);
        h.writeSetting("SettingSerialPort", QStringLiteral("None"));
        QVERIFY(startMain(h, QSize(800, 600), QStringLiteral("fr")));
        QQuickItem* page = open(h);
        QVERIFY(page);
        QTRY_COMPARE(status(h), QStringLiteral("arrêtée"));
        QCOMPARE(prop(page, "swWatchPage", "text").toString(), QStringLiteral("Page de quart sur le réseau"));
        QVERIFY(leave(h));
        h.translations().selectLanguage("en");
    }
};

QTEST_MAIN(TestWatchPageWindow)
#include "tst_watchpagewindow.moc"
