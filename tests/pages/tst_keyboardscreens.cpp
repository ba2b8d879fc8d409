// SPDX-License-Identifier: GPL-3.0-or-later
#include "PageDriver.h"
#include "PageHarness.h"
#include "Screenshots.h"
#include "tests/support/Columns.h"

#include <QtCore/QDir>
#include <QtGui/QColor>
#include <QtGui/QGuiApplication>
#include <QtGui/QImage>
#include <QtQuick/QQuickItem>
#include <QtQuick/QQuickWindow>
#include <QtTest/QtTest>

#include <cmath>

using namespace PageDriver;

// The frame around what the keyboard has reached, photographed on a virtual X display in
// both themes: it must stand out where the control shows no focus of its own. The pictures
// land in <build>/screenshots.
class TestKeyboardScreens : public QObject
{
    Q_OBJECT

private:
    // How many pixels of `colour` lie in the band of `width` just outside `area`.
    static int band(const QImage& image, const QRect& area, int width, const QColor& colour)
    {
        const QRect outer = area.adjusted(-width, -width, width, width);
        int n = 0;
        for (int y = outer.top(); y <= outer.bottom(); ++y) {
            for (int x = outer.left(); x <= outer.right(); ++x) {
                if (area.contains(x, y) || !image.rect().contains(x, y))
                    continue;
                const QColor c = image.pixelColor(x, y);
                if (std::abs(c.red() - colour.red()) < 24 && std::abs(c.green() - colour.green()) < 24
                    && std::abs(c.blue() - colour.blue()) < 24)
                    ++n;
            }
        }
        return n;
    }

    static QImage shot(PageHarness& h, const QString& file)
    {
        QTest::qWait(150);
        const QImage image = h.window()->grabWindow();
        Screenshots::save(image, file);
        return image;
    }

    static bool tabTo(PageHarness& h, QQuickItem* item)
    {
        for (int i = 0; i < 40; ++i) {
            QTest::keyClick(h.window(), Qt::Key_Tab);
            QQuickItem* focused = h.window()->activeFocusItem();
            if (focused == item || (focused && item->isAncestorOf(focused)))
                return true;
        }
        return false;
    }

private slots:
    void initTestCase()
    {
        BRINHOLT_SCREENSHOTS_NEED_X();
    }

    void frame_data()
    {
        Columns::add<int, QColor, QString>("theme", "colour", "control");
        // The icon of the bar, whose button has no background, and the list of tables.
        for (const char* control : {"dataButton", "fileList"}) {
            QTest::addRow("%s light", control) << 0 << QColor("#1565C0") << control;
            QTest::addRow("%s dark", control) << 1 << QColor("#FFD740") << control;
        }
    }

    void frame()
    {
        QFETCH(int, theme);
        QFETCH(QColor, colour);
        QFETCH(QString, control);
        PageHarness h;
        h.writeSetting("theme", theme);
        QVERIFY(startMain(h, QSize(800, 600)));
        // A bare X server has no window manager to give the window the keys.
        h.window()->requestActivate();
        QVERIFY(QTest::qWaitForWindowActive(h.window()));
        if (control == "fileList") {
            press(h, "dataButton");
            QTest::qWait(100);
        }
        QQuickItem* item = h.item(control);
        QVERIFY(item);
        const QRect area = item->mapRectToScene(QRectF(0, 0, item->width(), item->height())).toAlignedRect();
        const QString name = QStringLiteral("focus-%1-%2").arg(control, theme == 1 ? "dark" : "light");

        const int before = band(shot(h, name + "-none.png"), area, 4, colour);
        QVERIFY(tabTo(h, item));
        const int after = band(shot(h, name + ".png"), area, 4, colour);
        // All round, at least one line of the frame's width.
        QVERIFY2(after - before > 2 * (area.width() + area.height()),
                 qPrintable(QStringLiteral("%1 before, %2 after").arg(before).arg(after)));
        checkClean(h);
    }
};

QTEST_MAIN(TestKeyboardScreens)
#include "tst_keyboardscreens.moc"
