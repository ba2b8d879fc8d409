// SPDX-License-Identifier: GPL-3.0-or-later
#include "LogTables.h"
#include "PageDriver.h"
#include "PageHarness.h"
#include "Pixels.h"
#include "Screenshots.h"
#include "tests/support/Columns.h"

#include "app/BackEnd.h"
#include "app/TranslationHandler.h"
#include "nmea/NmeaSourceType.h"

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtGui/QGuiApplication>
#include <QtGui/QImage>
#include <QtNetwork/QHostAddress>
#include <QtNetwork/QUdpSocket>
#include <QtQuick/QQuickItem>
#include <QtQuick/QQuickWindow>
#include <QtTest/QtTest>

#include <cmath>

using namespace PageDriver;

namespace {

// 14:03:20 UTC on 5 November 2026, an even second.
constexpr qint64 Now = 1793887400;

constexpr int Width = 1000;
constexpr int Height = 633;

// A front coming in: pressure falling by four hectopascals over the last day, with a swell.
double weather(qint64 age)
{
    return 1009.4 + age * (4.0 / 86400.0) + 0.4 * std::sin(age / 2700.0);
}

} // namespace

// The log and help pages photographed on an X display, light and dark, over a prepared
// log; the pictures land in <build>/screenshots. With BRINHOLT_HELP_IMAGES set to a folder,
// the pictures of the manual are written there as well (scripts/help-images).
class TestPageScreens : public QObject
{
    Q_OBJECT

private:
    QString helpImages;
    static inline quint16 udpPort = 0;

    static bool prepare(PageHarness& h, int theme, const QString& language, bool udpInput = false)
    {
        h.writeSetting("windowWidth", Width);
        h.writeSetting("windowHeight", Height);
        h.writeSetting("windowX", 0);
        h.writeSetting("windowY", 0);
        h.writeSetting("theme", theme);
        h.writeSetting("language", language == "fr" ? 1 : 0);
        h.writeSetting("timeZone", 0);
        h.writeSetting("elevation", 4.0);
        // A UDP input on a port of its own, for the picture of the connections.
        if (udpInput) {
            h.writeSetting("SettingUseUdp", 1);
            h.writeSetting("SettingUdpPort", udpPort);
        }
        {
            // The English catalogue too: it turns "deg" into the degree sign.
            for (const char* name : {"Brinholt_en_US.qm", "Brinholt_fr_FR.qm", "qt_fr.qm", "qtbase_fr.qm"}) {
                if (!QFile::copy(QDir(BRINHOLT_BINARY_DIR).filePath(name), h.folder().filePath(name)))
                    return false;
            }
        }
        if (!h.start(true, language))
            return false;
        // The log as the application writes it: a boat on passage, spacing and span per table.
        bool ok = h.exec("BEGIN");
        for (int i = 0; ok && i < LogTables::Names.size(); ++i) {
            const qint64 span = LogTables::reach(i);
            for (qint64 t = Now - LogTables::Intervals.at(i); ok && t > Now - qMin<qint64>(span, 86400 * 2); t -= LogTables::Intervals.at(i)) {
                const double hours = (Now - t) / 3600.0;
                ok = h.exec(QStringLiteral("INSERT INTO %1 VALUES (%2, %3, %4, 212.0, 6.1, %5, 4.0, 0)")
                                    .arg(LogTables::Names.at(i))
                                    .arg(t)
                                    .arg(-4.62 + hours * 0.031, 0, 'f', 5)
                                    .arg(48.21 + hours * 0.047, 0, 'f', 5)
                                    .arg(weather(Now - t), 0, 'f', 3));
            }
        }
        ok = h.exec("COMMIT") && ok;
        h.backEnd()->setPositionData(QPointF(-4.62, 48.21), 6.1 * 1852.0 / 3600.0, 212.0, Serial);
        return ok;
    }

    static void click(PageHarness& h, QQuickItem* item)
    {
        QVERIFY(item);
        QTest::mouseClick(h.window(), Qt::LeftButton, Qt::NoModifier,
                          item->mapToScene(QPointF(item->width() / 2, item->height() / 2)).toPoint());
    }

    QImage shoot(PageHarness& h, const QString& name, const QString& helpName = QString())
    {
        // Let the last frame settle.
        QTest::qWait(400);
        const QImage shot = h.window()->grabWindow();
        if (shot.isNull())
            return shot;
        if (!Screenshots::save(shot, name))
            return QImage();
        if (!helpName.isEmpty() && !helpImages.isEmpty())
            shot.save(QDir(helpImages).filePath(helpName));
        return shot;
    }

private slots:
    void initTestCase()
    {
        BRINHOLT_SCREENSHOTS_NEED_X();
        helpImages = qEnvironmentVariable("BRINHOLT_HELP_IMAGES");
        QUdpSocket probe;
        QVERIFY(probe.bind(QHostAddress(QHostAddress::LocalHost), quint16(0)));
        udpPort = probe.localPort();
        QVERIFY(udpPort >= 6000);
    }

    void pages_data()
    {
        Columns::add<int, QString, QColor, QColor>("theme", "suffix", "background", "accent");
        QTest::newRow("light") << 0 << "light" << QColor("#FAFAFA") << QColor("blue");
        QTest::newRow("dark") << 1 << "dark" << QColor("#303030") << QColor("yellow");
    }

    void pages()
    {
        QFETCH(int, theme);
        QFETCH(QString, suffix);
        QFETCH(QColor, background);
        QFETCH(QColor, accent);
        const bool light = theme == 0;

        PageHarness h;
        QVERIFY(prepare(h, theme, "en", true));
        h.sample(Now, weather(0));
        QTest::qWait(300);
        // The graph on its three hours, for the manual only, with the mouse away from the chart.
        if (light && !helpImages.isEmpty()) {
            click(h, h.item("button3h"));
            QTest::mouseMove(h.window(), QPoint(Width - 5, Height - 5));
            QVERIFY(!shoot(h, "graph-" + suffix + ".png", "graph.png").isNull());
        }

        click(h, h.item("dataButton"));
        const QImage tables = shoot(h, "log-tables-" + suffix + ".png", light ? "log-tables.png" : QString());
        QVERIFY(!tables.isNull());
        QCOMPARE(tables.pixelColor(4, Height - 80), background);
        // The banner runs to the edges.
        QVERIFY(tables.pixelColor(2, 2) != background);

        QQuickItem* list = h.item("fileList", h.loadedPage());
        click(h, h.item("fileEntry1", list));
        QQuickItem* details = h.item("fileDetails", h.loadedPage());
        QTRY_VERIFY(std::abs(details->mapToScene(QPointF(0, 0)).x()) < 0.5);
        QQuickItem* content = h.item("fileContent", details);
        // One row chosen, so that its delete button shows.
        QVERIFY(QMetaObject::invokeMethod(content, "positionViewAtIndex", Q_ARG(int, 0), Q_ARG(int, 0)));
        QQuickItem* firstRow = nullptr;
        for (QQuickItem* item : content->property("contentItem").value<QQuickItem*>()->childItems()) {
            if (item->objectName() == "row1")
                firstRow = item;
        }
        QVERIFY(firstRow);
        click(h, h.item("rowText", firstRow));
        const QImage rows = shoot(h, "log-rows-" + suffix + ".png", light ? "log-rows.png" : QString());
        QVERIFY(!rows.isNull());
        // The short name of the table in the theme's colour.
        QVERIFY2(Pixels::near(rows, accent, 60) > 30, qPrintable(QString::number(Pixels::near(rows, accent, 60))));
        // The highlight of the chosen row.
        QVERIFY(Pixels::near(rows, QColor("lightsteelblue"), 8) > 2000);

        // The connections with a live UDP input, as the manual shows them.
        click(h, h.item("settingsButton"));
        PageDriver::press(h, "buttonConnections");
        QQuickItem* udpStatus = h.item("udpStatus", h.loadedPage());
        QVERIFY(udpStatus);
        QUdpSocket sender;
        const QByteArray sentence = "$WIMDA,29.9127,I,1.0130,B,,,,,,,,,,,,,,,,*68\r\n";
        QTRY_VERIFY_WITH_TIMEOUT((sender.writeDatagram(sentence, QHostAddress::LocalHost, udpPort), udpStatus->property("text").toString().contains("last sentence")), 15000);
        const QImage connections = shoot(h, "connections-" + suffix + ".png", light ? "connections.png" : QString());
        QVERIFY(!connections.isNull());

        click(h, h.item("helpButton"));
        const QImage help = shoot(h, "help-" + suffix + ".png");
        QVERIFY(!help.isNull());
        QCOMPARE(help.pixelColor(3, Height - 100).lightness() > 128, light);
        checkClean(h, {"udp source activated", "empty datagram data received", "nmea source deleted"});
    }

    void frenchPolicy_data() { pages_data(); }

    void frenchPolicy()
    {
        QFETCH(int, theme);
        QFETCH(QString, suffix);
        QFETCH(QColor, background);
        PageHarness h;
        QVERIFY(prepare(h, theme, "fr"));
        click(h, h.item("helpButton"));
        click(h, h.item("btnPolicy", h.loadedPage()));
        QVERIFY(h.find("btnPolicy", h.loadedPage())->property("text").toString() != QStringLiteral("Back to help"));
        const QImage policy = shoot(h, "policy-fr-" + suffix + ".png");
        QVERIFY(!policy.isNull());
        QCOMPARE(policy.pixelColor(3, Height - 100), background);
        h.translations().selectLanguage("en");
        checkClean(h);
    }
};

QTEST_MAIN(TestPageScreens)
#include "tst_pagescreens.moc"
