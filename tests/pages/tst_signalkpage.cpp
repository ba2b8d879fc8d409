// SPDX-License-Identifier: GPL-3.0-or-later
// The Signal K part of the Connections page: its controls, their keys, the restart when the
// page is left, and the status lines, in both languages.
#include "PageDriver.h"
#include "PageHarness.h"
#include "tests/support/NetworkNamespace.h"

#include "app/BackEnd.h"
#include "app/TranslationHandler.h"

#include <QtNetwork/QTcpSocket>
#include <QtQuick/QQuickItem>
#include <QtTest/QtTest>

using namespace PageDriver;

class TestSignalKPage : public QObject
{
    Q_OBJECT

private:
    // The Connections page, as the settings page opens it; with `language`, the window is
    // started first.
    static QQuickItem* open(PageHarness& h, const QString& language = QString())
    {
        if (!language.isEmpty() && !startMain(h, QSize(800, 600), language))
            return nullptr;
        PageHarness::evaluate(h.window(), QStringLiteral("loader.setSource(\"qrc:/settingsConnections\")"));
        QQuickItem* page = h.loadedPage();
        return page && page->objectName() == QLatin1String("connectionsPage") ? page : nullptr;
    }

private slots:
    void controlsStartAtTheirDefaults()
    {
        PageHarness h;
        QQuickItem* page = open(h, QStringLiteral("en"));
        QVERIFY(page);
        QCOMPARE(prop(page, "swSignalkTcp", "checked").toBool(), false);
        QCOMPARE(prop(page, "swSignalkTcp", "text").toString(), QStringLiteral("Signal K over TCP"));
        QCOMPARE(prop(page, "signalkTcpPort", "value").toInt(), 8376);
        QCOMPARE(prop(page, "swSignalkUdp", "checked").toBool(), false);
        QCOMPARE(prop(page, "signalkUdpHost", "text").toString(), QStringLiteral("127.0.0.1"));
        QCOMPARE(prop(page, "signalkUdpPort", "value").toInt(), 8376);
        QCOMPARE(prop(page, "signalkTcpStatus", "text").toString(), QStringLiteral("off"));
        QCOMPARE(prop(page, "signalkUdpStatus", "text").toString(), QStringLiteral("off"));
        // Each group follows its switch.
        QCOMPARE(prop(page, "signalkTcpPort", "enabled").toBool(), false);
        QCOMPARE(prop(page, "signalkUdpHost", "enabled").toBool(), false);
        set(page, "swSignalkTcp", "checked", true);
        QCOMPARE(prop(page, "signalkTcpPort", "enabled").toBool(), true);
        set(page, "swSignalkUdp", "checked", true);
        QCOMPARE(prop(page, "signalkUdpHost", "enabled").toBool(), true);
        QCOMPARE(prop(page, "signalkUdpPort", "enabled").toBool(), true);
        set(page, "swSignalkTcp", "checked", false);
        set(page, "swSignalkUdp", "checked", false);
        QVERIFY(leave(h));
        checkClean(h);
    }

    void choicesTakeEffectWhenThePageIsLeft()
    {
        // The server listens on every interface and the datagrams go out: only where
        // nothing can leave.
        BRINHOLT_IN_PRIVATE_NETWORK(QString());
        PageHarness h;
        QQuickItem* page = open(h, QStringLiteral("en"));
        QVERIFY(page);
        set(page, "swSignalkTcp", "checked", true);
        set(page, "signalkTcpPort", "value", 9123);
        set(page, "swSignalkUdp", "checked", true);
        set(page, "signalkUdpHost", "text", QStringLiteral(" 198.18.0.2 "));
        set(page, "signalkUdpPort", "value", 9124);
        // Nothing runs while the page is open.
        QTest::qWait(500);
        QCOMPARE(prop(page, "signalkTcpStatus", "text").toString(), QStringLiteral("off"));
        QVERIFY(leave(h));
        QCOMPARE(stored(h, QStringLiteral("signalkTcpOn")).toInt(), 1);
        QCOMPARE(stored(h, QStringLiteral("signalkTcpPort")).toInt(), 9123);
        QCOMPARE(stored(h, QStringLiteral("signalkUdpOn")).toInt(), 1);
        QCOMPARE(stored(h, QStringLiteral("signalkUdpHost")).toString(), QStringLiteral("198.18.0.2"));
        QCOMPARE(stored(h, QStringLiteral("signalkUdpPort")).toInt(), 9124);
        QTcpSocket client;
        client.connectToHost(QHostAddress::LocalHost, 9123);
        QTRY_COMPARE(client.state(), QAbstractSocket::ConnectedState);

        page = open(h);
        QVERIFY(page);
        QCOMPARE(prop(page, "signalkTcpPort", "value").toInt(), 9123);
        QCOMPARE(prop(page, "signalkUdpHost", "text").toString(), QStringLiteral("198.18.0.2"));
        QTRY_COMPARE(prop(page, "signalkTcpStatus", "text").toString(),
                     QStringLiteral("listening on port 9123, 1 client connected"));
        QTRY_COMPARE(prop(page, "signalkUdpStatus", "text").toString(), QStringLiteral("sending to 198.18.0.2:9124"));
        set(page, "swSignalkTcp", "checked", false);
        set(page, "swSignalkUdp", "checked", false);
        QVERIFY(leave(h));
        QTRY_COMPARE(client.state(), QAbstractSocket::UnconnectedState);
        QCOMPARE(h.backEnd()->connectionStatus(5), QStringLiteral("off"));
        checkClean(h);
    }

    void speaksFrench()
    {
        PageHarness h;
        QVERIFY(copyCatalogues(h.folder().path()));
        h.writeSetting("language", 1);
        h.writeSetting("signalkUdpOn", 1);
        h.writeSetting("signalkUdpHost", QStringLiteral("bateau.local"));
        QQuickItem* page = open(h, QStringLiteral("fr"));
        QVERIFY(page);
        QCOMPARE(prop(page, "swSignalkTcp", "text").toString(), QStringLiteral("Signal K par TCP"));
        QCOMPARE(prop(page, "swSignalkUdp", "text").toString(), QStringLiteral("Signal K par UDP"));
        QCOMPARE(prop(page, "signalkTcpStatus", "text").toString(), QStringLiteral("désactivée"));
        QTRY_COMPARE(prop(page, "signalkUdpStatus", "text").toString(),
                     QStringLiteral("bateau.local n'est pas une adresse IP ; rien n'est envoyé"));
        set(page, "swSignalkUdp", "checked", false);
        QVERIFY(leave(h));
        h.translations().selectLanguage("en");
    }
};

QTEST_MAIN(TestSignalKPage)
#include "tst_signalkpage.moc"
