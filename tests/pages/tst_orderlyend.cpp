// SPDX-License-Identifier: GPL-3.0-or-later
#include "PageDriver.h"
#include "PageHarness.h"

#include "app/BackEnd.h"

#include <QtQuick/QQuickItem>
#include <QtTest/QtTest>

using namespace PageDriver;

// An orderly end with a settings page on show: the page's edits reach the file, as leaving
// the page would write them, and nothing is restarted on the way out.
class TestOrderlyEnd : public QObject
{
    Q_OBJECT

private:
    static int count(const QStringList& lines, const QString& text)
    {
        int n = 0;
        for (const QString& line : lines)
            n += line.contains(text) ? 1 : 0;
        return n;
    }

    static QQuickItem* open(PageHarness& h, const char* button, const char* pageName)
    {
        press(h, QString::fromLatin1(button));
        QQuickItem* page = h.loadedPage();
        return page && page->objectName() == QLatin1String(pageName) ? page : nullptr;
    }

private slots:
    void settingsPageEditsSurviveTheEnd()
    {
        PageHarness h;
        QVERIFY(startMain(h));
        QQuickItem* page = open(h, "settingsButton", "settingsPage");
        QVERIFY(page);
        QObject* precision = h.find(QStringLiteral("comboPrecision"), page);
        QVERIFY(precision);
        QVERIFY(precision->setProperty("currentIndex", 2));
        QVERIFY(!stored(h, "precision").isValid());

        h.stop();

        QCOMPARE(stored(h, "precision").toInt(), 2);
        // Everything else the page writes on leaving is there too, with its default.
        QCOMPARE(stored(h, "SettingSplineLine").toInt(), 1);
        QCOMPARE(stored(h, "timeZone").toInt(), 1);
        QCOMPARE(stored(h, "offset").toDouble(), 0.0);
    }

    void connectionsPageEditsSurviveTheEndWithoutARestart()
    {
        PageHarness h;
        // Held at 6000 by the page's box: leaving writes 6000 back.
        h.writeSetting("SettingTcpIpPort", 5000);
        QVERIFY(startMain(h));
        QVERIFY(open(h, "settingsButton", "settingsPage"));
        QQuickItem* page = open(h, "buttonConnections", "connectionsPage");
        QVERIFY(page);
        set(page, "swUdp", "checked", true);
        set(page, "udpInputPort", "value", 23456);
        const int locationStarts = count(h.messages(), QStringLiteral("trying to start location services"));

        h.stop();

        QCOMPARE(stored(h, "SettingUseUdp").toInt(), 1);
        QCOMPARE(stored(h, "SettingUdpPort").toInt(), 23456);
        QCOMPARE(stored(h, "SettingTcpIpPort").toInt(), 6000);
        // Leaving would have restarted position and NMEA input; the end does not.
        QCOMPARE(count(h.messages(), QStringLiteral("trying to start location services")), locationStarts);
        QCOMPARE(count(h.messages(), QStringLiteral("udp source")), 0);
    }

    void leavingTheConnectionsPageStillRestarts()
    {
        PageHarness h;
        QVERIFY(startMain(h));
        QVERIFY(open(h, "settingsButton", "settingsPage"));
        QQuickItem* page = open(h, "buttonConnections", "connectionsPage");
        QVERIFY(page);
        set(page, "swUdp", "checked", true);
        const int locationStarts = count(h.messages(), QStringLiteral("trying to start location services"));
        QVERIFY(leave(h));
        QVERIFY(h.backEnd()->getReceiver());
        QCOMPARE(count(h.messages(), QStringLiteral("trying to start location services")), locationStarts + 1);
    }
};

QTEST_MAIN(TestOrderlyEnd)
#include "tst_orderlyend.moc"
