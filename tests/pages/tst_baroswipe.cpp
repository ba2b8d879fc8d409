// SPDX-License-Identifier: GPL-3.0-or-later
#include "PageDriver.h"
#include "PageHarness.h"

#include <QtQuick/QQuickItem>
#include <QtQuick/QQuickWindow>
#include <QtTest/QtTest>

using namespace PageDriver;

// The swipe between the graph and the large display, which the split screen setting allows.
class TestBaroSwipe : public QObject
{
    Q_OBJECT

private:
    static bool startSwipe(PageHarness& h, int splitScreen)
    {
        h.writeSetting("splitScreen", splitScreen);
        return PageDriver::startMain(h, QSize(800, 600)) && h.find("view") && h.item("indicator");
    }

    // A finger's drag across the middle of the page, where no control takes the press.
    static void swipe(PageHarness& h, int dx, const QString& page = QStringLiteral("baroH"))
    {
        QQuickItem* row = h.item("rowPressure", h.item(page));
        // From the side the finger leaves, so the whole drag stays in the window.
        const QPointF middle = row->mapToScene(QPointF(row->width() / 2, row->height() / 2));
        const QPoint from(dx < 0 ? h.window()->width() - 50 : 50, int(middle.y()));
        QTest::mousePress(h.window(), Qt::LeftButton, Qt::NoModifier, from);
        const int steps = 15;
        for (int i = 1; i <= steps; ++i)
            QTest::mouseMove(h.window(), from + QPoint(dx * i / steps, 0), 15);
        QTest::mouseRelease(h.window(), Qt::LeftButton, Qt::NoModifier, from + QPoint(dx, 0), 15);
    }

    static int index(PageHarness& h)
    {
        return h.find("view")->property("currentIndex").toInt();
    }

private slots:
    void withoutSplitScreenTheSwipeDoesNotReact()
    {
        PageHarness h;
        QVERIFY(startSwipe(h, 0));
        QCOMPARE(index(h), 0);
        QVERIFY(!h.find("view")->property("interactive").toBool());
        QVERIFY(!h.item("indicator")->isVisible());
        swipe(h, -600);
        QTest::qWait(400);
        QCOMPARE(index(h), 0);
        QVERIFY(std::abs(h.item("baroH")->mapToScene(QPointF(0, 0)).x()) < 0.5);
        checkClean(h);
    }

    void withSplitScreenTheSwipeReachesTheLargeDisplay()
    {
        PageHarness h;
        QVERIFY(startSwipe(h, 1));
        QVERIFY(h.find("view")->property("interactive").toBool());
        QQuickItem* indicator = h.item("indicator");
        QVERIFY(indicator->isVisible());
        QVERIFY(indicator->property("interactive").toBool());
        QCOMPARE(indicator->property("count").toInt(), 2);
        swipe(h, -600);
        QTRY_COMPARE(index(h), 1);
        QCOMPARE(indicator->property("currentIndex").toInt(), 1);
        QTRY_VERIFY(std::abs(h.item("baroV")->mapToScene(QPointF(0, 0)).x()) < 0.5);
        h.sample(1700000040, 1012.0); // the large display's row has a size once it has a text
        swipe(h, 600, "baroV");
        QTRY_COMPARE(index(h), 0);
        checkClean(h);
    }

    void theIndicatorMovesTheView()
    {
        PageHarness h;
        QVERIFY(startSwipe(h, 1));
        QQuickItem* indicator = h.item("indicator");
        // The second dot lies in the right half of the indicator.
        QTest::mouseClick(h.window(), Qt::LeftButton, Qt::NoModifier,
                          indicator->mapToScene(QPointF(indicator->width() * 0.75, indicator->height() / 2)).toPoint());
        QTRY_COMPARE(index(h), 1);
        checkClean(h);
    }

    void narrowerThanHighReturnsToTheGraph()
    {
        PageHarness h;
        QVERIFY(startSwipe(h, 1));
        swipe(h, -600);
        QTRY_COMPARE(index(h), 1);
        // Still wider than high: the large display stays.
        h.window()->resize(700, 600);
        QTRY_COMPARE(h.item("view")->width(), 700.0);
        QCOMPARE(index(h), 1);
        h.window()->resize(400, 600);
        QTRY_COMPARE(index(h), 0);
        checkClean(h);
    }
};

QTEST_MAIN(TestBaroSwipe)
#include "tst_baroswipe.moc"
