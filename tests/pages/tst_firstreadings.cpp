// SPDX-License-Identifier: GPL-3.0-or-later
#include "PageDriver.h"
#include "PageHarness.h"
#include "PageInput.h"
#include "tests/nmea/DeviceSim.h"

#include "app/BackEnd.h"

#include <QtCore/QFileInfo>
#include <QtCore/QRegularExpression>
#include <QtQuick/QQuickItem>
#include <QtQuick/QQuickWindow>
#include <QtTest/QtTest>

using namespace PageDriver;

// A new user's first minutes: from a first start to the pressure of the simulated device on
// the graph page, with the simulator started by hand and nothing but the window after that.
class TestFirstReadings : public QObject
{
    Q_OBJECT

private:
    // The entry of an open combo box's list that shows `text`, scrolled to as a hand would;
    // null if the list has none.
    static QQuickItem* listEntry(QObject* combo, const QString& text)
    {
        auto* popup = combo->property("popup").value<QObject*>();
        auto* list = popup ? popup->property("contentItem").value<QQuickItem*>() : nullptr;
        if (!list || !list->inherits("QQuickListView"))
            return nullptr;
        // The entry for a typed path is the last one.
        QMetaObject::invokeMethod(list, "positionViewAtEnd");
        auto* content = list->property("contentItem").value<QQuickItem*>();
        const auto entries = content ? content->childItems() : QList<QQuickItem*>();
        for (QQuickItem* entry : entries) {
            if (entry->isVisible() && entry->property("text").toString() == text)
                return entry;
        }
        return nullptr;
    }

    // What the pages themselves said; the serial source has words of its own.
    static QStringList pageWarnings(PageHarness& h)
    {
        QStringList left;
        for (const QString& message : h.unexpectedMessages()) {
            if (message.startsWith(QLatin1String("qrc:")) || message.contains(QLatin1String("QML")))
                left << message;
        }
        return left;
    }

private slots:
    void simulatedDeviceFromTheWindowAlone()
    {
        // The tick runs as in the application.
        PageHarness h(true);
        DeviceSim device;
        // More than the two blocks the serial source drops after it opens.
        const QString path = device.start({QStringLiteral("--interval"), QStringLiteral("200"),
                                           QStringLiteral("--pressure"), QStringLiteral("1007.5"),
                                           QStringLiteral("--link"), h.folder().filePath(QStringLiteral("skerry"))});
        QCOMPARE(path, h.folder().filePath(QStringLiteral("skerry")));
        // A first start: no settings at all.
        QVERIFY(!QFileInfo::exists(h.folder().filePath(QStringLiteral("brinholt.ini"))));
        QVERIFY(h.start(true, QStringLiteral("en")));
        // The graph page waits: the tick finds no pressure, and the pressure row stays hidden.
        QSignalSpy ticks(h.backEnd(), &BackEnd::dataUpdated);
        QTRY_VERIFY_WITH_TIMEOUT(!ticks.isEmpty(), 5000);
        QCOMPARE(ticks.first().at(3).toString(), QStringLiteral("NONE"));
        QCOMPARE(h.item(QStringLiteral("rowPressure"))->isVisible(), false);

        press(h, QStringLiteral("settingsButton"));
        QTRY_COMPARE(h.loadedPage()->objectName(), QStringLiteral("settingsPage"));
        press(h, QStringLiteral("buttonConnections"));
        QTRY_COMPARE(h.loadedPage()->objectName(), QStringLiteral("connectionsPage"));
        QQuickItem* page = h.loadedPage();

        press(h, QStringLiteral("swSerial"));
        QCOMPARE(prop(page, "swSerial", "checked").toBool(), true);
        // The simulator is no port the system lists: its path is typed beside the list.
        QObject* combo = control(page, "serialPort");
        QVERIFY(combo);
        press(h, QStringLiteral("serialPort"));
        QObject* popup = combo->property("popup").value<QObject*>();
        QVERIFY(popup);
        QTRY_VERIFY(popup->property("opened").toBool());
        QQuickItem* other = listEntry(combo, QStringLiteral("Other device…"));
        QVERIFY(other);
        QVERIFY(PageInput::click(h.window(), nullptr, other));
        QTRY_VERIFY(!popup->property("visible").toBool());
        QCOMPARE(prop(page, "serialPort", "currentText").toString(), QStringLiteral("Other device…"));
        QTRY_VERIFY(prop(page, "serialDevicePath", "visible").toBool());
        press(h, QStringLiteral("serialDevicePath"));
        for (const QChar c : path)
            QTest::keyClick(h.window(), c.toLatin1());
        QCOMPARE(prop(page, "serialDevicePath", "text").toString(), path);

        // Leaving by the bar saves and starts the serial input.
        QVERIFY(leave(h));
        QCOMPARE(loaderSource(h), QUrl(QStringLiteral("qrc:/BaroSwipe")));
        QCOMPARE(stored(h, "SettingSerialPort").toString(), path);
        QCOMPARE(stored(h, "SettingUseSerial").toInt(), 1);

        // The next ticks bring the device's pressure to the graph page.
        ticks.clear();
        const auto pressureTick = [&ticks] {
            for (const QList<QVariant>& tick : ticks) {
                if (tick.at(3).toString() != QLatin1String("NONE"))
                    return tick.at(3).toString();
            }
            return QString();
        };
        QTRY_VERIFY_WITH_TIMEOUT(!pressureTick().isEmpty(), 20000);
        QCOMPARE(h.backEnd()->getPressureSource(), QStringLiteral("From serial connection"));
        QObject* shown = h.find(QStringLiteral("textPressure"), h.item(QStringLiteral("baroH")));
        QVERIFY(shown);
        QTRY_COMPARE(shown->property("text").toString(), ticks.last().at(3).toString());
        QVERIFY(h.item(QStringLiteral("rowPressure"))->isVisible());
        const QString text = shown->property("text").toString();
        // The simulator's weather strays a few hectopascals from the pressure it was given.
        const QRegularExpressionMatch number = QRegularExpression(QStringLiteral("\\d+(\\.\\d+)?")).match(text);
        QVERIFY2(number.hasMatch(), qPrintable(text));
        const double hPa = number.captured().toDouble();
        QVERIFY2(hPa > 1000.0 && hPa < 1015.0, qPrintable(text));

        // Back on the page, the device is still the one chosen, though no list offers it.
        press(h, QStringLiteral("settingsButton"));
        QTRY_COMPARE(h.loadedPage()->objectName(), QStringLiteral("settingsPage"));
        press(h, QStringLiteral("buttonConnections"));
        QTRY_COMPARE(h.loadedPage()->objectName(), QStringLiteral("connectionsPage"));
        QCOMPARE(prop(h.loadedPage(), "serialPort", "currentText").toString(), path);
        QVERIFY(leave(h));
        QCOMPARE(stored(h, "SettingSerialPort").toString(), path);
        QVERIFY2(pageWarnings(h).isEmpty(), qPrintable(pageWarnings(h).join(QLatin1Char('\n'))));
    }
};

QTEST_MAIN(TestFirstReadings)
#include "tst_firstreadings.moc"
