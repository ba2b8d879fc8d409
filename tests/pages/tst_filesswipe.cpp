// SPDX-License-Identifier: GPL-3.0-or-later
#include "PageDriver.h"
#include "PageHarness.h"

#include <QtCore/QElapsedTimer>
#include <QtQuick/QQuickItem>
#include <QtQuick/QQuickWindow>
#include <QtTest/QtTest>

using namespace PageDriver;

// Notes when a signal first came, on a clock that the test starts.
class Stamp : public QObject
{
    Q_OBJECT

public:
    explicit Stamp(const QElapsedTimer& clock)
        : clock(clock)
    {
    }
    qint64 at = -1;

public slots:
    void mark()
    {
        if (at < 0)
            at = clock.elapsed();
    }

private:
    const QElapsedTimer& clock;
};

// The log's container: the list of tables, then the rows of the one chosen, and only the way
// back can be swiped.
class TestFilesSwipe : public QObject
{
    Q_OBJECT

private:
    static QQuickItem* startFiles(PageHarness& h)
    {
        if (!PageDriver::startMain(h, QSize(800, 600)))
            return nullptr;
        QQuickItem* button = h.item("dataButton");
        QTest::mouseClick(h.window(), Qt::LeftButton, Qt::NoModifier,
                          button->mapToScene(QPointF(button->width() / 2, button->height() / 2)).toPoint());
        return h.loadedPage();
    }

private slots:
    void aChoiceShowsTheDetailsAndOnlyThenAllowsTheSwipeBack()
    {
        PageHarness h;
        QQuickItem* page = startFiles(h);
        QVERIFY(page);
        QCOMPARE(h.find("loader")->property("source").toUrl(), QUrl("qrc:/FilesSwipe"));
        QObject* view = page->property("view").value<QObject*>();
        QVERIFY(view);
        QCOMPARE(view, h.find("view", page));
        QCOMPARE(view->property("currentIndex").toInt(), 0);
        QVERIFY(!view->property("interactive").toBool());

        QElapsedTimer clock;
        clock.start();
        Stamp moved(clock);
        Stamp unlocked(clock);
        connect(view, SIGNAL(currentIndexChanged()), &moved, SLOT(mark()));
        connect(view, SIGNAL(interactiveChanged()), &unlocked, SLOT(mark()));
        QSignalSpy selected(view, SIGNAL(fileSelected(int)));
        QObject* fileData = h.find("fileData", page);
        QVERIFY(fileData);
        QVERIFY(QMetaObject::invokeMethod(fileData, "fileSelected", Q_ARG(int, 4)));
        QCOMPARE(selected.count(), 1);
        QCOMPARE(selected.at(0).at(0).toInt(), 4);
        QCOMPARE(h.messages().count("file selected 4"), 1);
        QCOMPARE(view->property("currentIndex").toInt(), 1);
        // The swipe back is allowed a moment after the index settles.
        QVERIFY(!view->property("interactive").toBool());
        QTRY_VERIFY(view->property("interactive").toBool());
        QVERIFY(moved.at >= 0 && unlocked.at >= 0);
        QVERIFY2(unlocked.at - moved.at >= 45, qPrintable(QString("%1 %2").arg(moved.at).arg(unlocked.at)));
        checkClean(h);
    }

    void swipingBackToTheListEndsTheSwipeAfterFiftyMilliseconds()
    {
        PageHarness h;
        QQuickItem* page = startFiles(h);
        QVERIFY(page);
        QObject* view = page->property("view").value<QObject*>();
        QVERIFY(QMetaObject::invokeMethod(h.find("fileData", page), "fileSelected", Q_ARG(int, 0)));
        QTRY_VERIFY(view->property("interactive").toBool());
        QTRY_VERIFY(std::abs(h.item("fileDetails", page)->mapToScene(QPointF(0, 0)).x()) < 0.5);

        // A finger drags the details away to the right.
        QElapsedTimer clock;
        clock.start();
        Stamp back(clock);
        Stamp locked(clock);
        connect(view, SIGNAL(currentIndexChanged()), &back, SLOT(mark()));
        connect(view, SIGNAL(interactiveChanged()), &locked, SLOT(mark()));
        const QPoint from(200, 300);
        QTest::mousePress(h.window(), Qt::LeftButton, Qt::NoModifier, from);
        for (int i = 1; i <= 15; ++i)
            QTest::mouseMove(h.window(), from + QPoint(500 * i / 15, 0), 15);
        QTest::mouseRelease(h.window(), Qt::LeftButton, Qt::NoModifier, from + QPoint(500, 0), 15);
        QTRY_COMPARE(view->property("currentIndex").toInt(), 0);
        QTRY_VERIFY(!view->property("interactive").toBool());
        QVERIFY2(locked.at - back.at >= 45, qPrintable(QString("%1 %2").arg(back.at).arg(locked.at)));
        // From the list, no swipe leads forward again.
        QTest::mousePress(h.window(), Qt::LeftButton, Qt::NoModifier, QPoint(600, 300));
        for (int i = 1; i <= 15; ++i)
            QTest::mouseMove(h.window(), QPoint(600 - 500 * i / 15, 300), 15);
        QTest::mouseRelease(h.window(), Qt::LeftButton, Qt::NoModifier, QPoint(100, 300), 15);
        QTest::qWait(300);
        QCOMPARE(view->property("currentIndex").toInt(), 0);
        checkClean(h);
    }
};

QTEST_MAIN(TestFilesSwipe)
#include "tst_filesswipe.moc"
