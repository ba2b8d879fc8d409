// SPDX-License-Identifier: GPL-3.0-or-later
#include "PageDriver.h"
#include "PageHarness.h"
#include "tests/support/HttpClient.h"

#include "app/BackEnd.h"
#include "app/TranslationHandler.h"
#include "app/WatchPage.h"

#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtNetwork/QTcpServer>
#include <QtQuick/QQuickItem>
#include <QtTest/QtTest>

using namespace PageDriver;

// The watch page's controls on the Connections page, over the real BackEnd: off by
// default, switched on and off by leaving the page, and its line telling what it does.
class TestWatchPageSettings : public QObject
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
        const quint16 port = HttpClient::freePort();
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
        const quint16 port = HttpClient::freePort();
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

QTEST_MAIN(TestWatchPageSettings)
#include "tst_watchpagesettings.moc"
