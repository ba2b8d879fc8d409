// SPDX-License-Identifier: GPL-3.0-or-later
#include "ReaderFixture.h"

#include "log/DataSource.h"

#include <QtCharts/QLineSeries>
#include <QtCore/QElapsedTimer>
#include <QtTest/QtTest>

#include <atomic>
#include <chrono>
#include <functional>
#include <thread>

using QtCharts::QLineSeries;

// The one lock of the log: who waits for it, who gives up at once, and who never takes it.
class TestLocking : public QObject
{
    Q_OBJECT

private:
    static constexpr qint64 Now = ReaderFixture::ExampleTime;

    static void putRows(ReaderFixture& fx)
    {
        LogRow row = ReaderFixture::exampleRow();
        fx.insert(0, row);
        row.ele = 0.0;
        row.ofs = 0.0;
        row.time = Now - 3600;
        row.pre = 1012.0;
        fx.insert(1, row);
        row.time = Now - 10800;
        row.pre = 1011.34;
        fx.insert(1, row);
        row.time = Now;
        row.pre = 1013.0;
        fx.insert(1, row);
        fx.setPressure(1013.0);
    }

private slots:
    void chartHandlerMayCallWhatTakesNoLock()
    {
        ReaderFixture fx;
        putRows(fx);
        // Sets the time of the latest sample and the class: one hour 1012.0 -> 1013.0.
        fx.setClock(Now + 2);
        QVERIFY(fx.log().addData(2, 0.0, 0.0, 0.0, 0.0, 1013.0));
        fx.setClock(Now);

        int calls = 0;
        int trend = 0;
        QString tendency;
        QVector<QPointF> points;
        QObject context;
        connect(&fx.log(), &DataSource::chartUpdated, &context, [&](QVariant, double, double, int seriesCount) {
            ++calls;
            for (int n = 0; n < seriesCount; ++n) {
                QLineSeries line;
                fx.log().update(&line, n);
                points += line.pointsVector();
            }
            trend = fx.log().getTrend();
            tendency = fx.log().getTrend3h();
        });
        {
            Watchdog watchdog(20000, "updateChart with update, getTrend and getTrend3h in its handler");
            fx.log().updateChart(1);
        }
        QCOMPARE(calls, 1);
        // Three rows hours apart: three stretches of one point each.
        QCOMPARE(points, (QVector<QPointF>{QPointF(0.0, 1013.0), QPointF(-1.0, 1012.0), QPointF(-3.0, 1011.34)}));
        QCOMPARE(trend, 4);
        QCOMPARE(tendency, QStringLiteral("<div align='left'>1.7 mb / 3h</div>"));
    }

    void cursorTextGivesUpAtOnceWhileTheChartHoldsTheLock()
    {
        ReaderFixture fx;
        putRows(fx);
        QString text = QStringLiteral("not called");
        qint64 waited = -1;
        QObject context;
        connect(&fx.log(), &DataSource::chartUpdated, &context, [&](QVariant, double, double, int) {
            fx.messages.clear();
            QElapsedTimer timer;
            timer.start();
            text = fx.log().calcInfo(QPointF(0.0, 1013.0), 1);
            waited = timer.elapsed();
        });
        {
            Watchdog watchdog(20000, "calcInfo inside the handler of chartUpdated");
            fx.log().updateChart(1);
        }
        QCOMPARE(text, QString());
        QVERIFY(waited >= 0 && waited < 1000);
        QCOMPARE(fx.messages.messages(), QStringList{QStringLiteral("unable to lock mutex")});

        // Once the chart is done, the same call has its text.
        fx.messages.clear();
        QVERIFY(!fx.log().calcInfo(QPointF(0.0, 1013.0), 1).isEmpty());
        QCOMPARE(fx.messages.count(QStringLiteral("unable to lock mutex")), 0);
    }

    void exportsHoldTheLockWhileTheViewerOpens_data()
    {
        QTest::addColumn<bool>("gpx");
        QTest::newRow("CSV") << false;
        QTest::newRow("GPX") << true;
    }

    void exportsHoldTheLockWhileTheViewerOpens()
    {
        QFETCH(bool, gpx);
        ReaderFixture fx;
        putRows(fx);
        QString text = QStringLiteral("not called");
        fx.viewer.onOpen = [&](const QUrl&) {
            fx.messages.clear();
            text = fx.log().calcInfo(QPointF(0.0, 1013.0), 1);
        };
        {
            Watchdog watchdog(20000, "calcInfo while an export opens its file");
            if (gpx)
                fx.log().exportGpx(1, fx.path(QStringLiteral("held.gpx")));
            else
                fx.log().exportCsv(1, fx.path(QStringLiteral("held.csv")));
        }
        QCOMPARE(fx.viewer.urls.size(), 1);
        QCOMPARE(text, QString());
        QCOMPARE(fx.messages.messages(), QStringList{QStringLiteral("unable to lock mutex")});
    }

    void blockingOperationsWaitForTheLock_data()
    {
        QTest::addColumn<QString>("operation");
        for (const char* name : {"addData", "updateChart", "getValueAt", "getTableContent", "removeKey",
                                 "emptyOneTable", "emptyAllTables", "exportCsv", "exportGpx"})
            QTest::newRow(name) << QString::fromLatin1(name);
    }

    // While the chart's handler runs, an operation started on another thread must wait
    // for the lock, and finish as soon as the chart lets go of it.
    void blockingOperationsWaitForTheLock()
    {
        QFETCH(QString, operation);
        ReaderFixture fx;
        putRows(fx);

        const QMap<QString, std::function<void()>> operations = {
            {QStringLiteral("addData"), [&] { fx.log().addData(4, 0.0, 0.0, 0.0, 0.0, 1013.0); }},
            {QStringLiteral("updateChart"), [&] { fx.log().updateChart(0); }},
            {QStringLiteral("getValueAt"), [&] { fx.log().getValueAt(0.0, 0, QVariant(Now)); }},
            {QStringLiteral("getTableContent"), [&] { fx.log().getTableContent(1); }},
            {QStringLiteral("removeKey"), [&] { fx.log().removeKey(0, QString::number(Now)); }},
            {QStringLiteral("emptyOneTable"), [&] { fx.log().emptyOneTable(2); }},
            {QStringLiteral("emptyAllTables"), [&] { fx.log().emptyAllTables(); }},
            {QStringLiteral("exportCsv"), [&] { fx.log().exportCsv(1, fx.path(QStringLiteral("wait.csv"))); }},
            {QStringLiteral("exportGpx"), [&] { fx.log().exportGpx(1, fx.path(QStringLiteral("wait.gpx"))); }},
        };
        const std::function<void()> run = operations.value(operation);
        QVERIFY(run);

        std::atomic<bool> started{false};
        std::atomic<bool> done{false};
        bool doneWhileHeld = true;
        std::thread worker;
        QObject context;
        connect(&fx.log(), &DataSource::chartUpdated, &context, [&](QVariant, double, double, int) {
            if (worker.joinable())
                return;
            worker = std::thread([&] {
                started = true;
                run();
                done = true;
            });
            while (!started)
                std::this_thread::yield();
            std::this_thread::sleep_for(std::chrono::milliseconds(300));
            doneWhileHeld = done;
        });
        {
            Watchdog watchdog(20000, "an operation waiting for the chart's lock");
            fx.log().updateChart(1);
            worker.join();
        }
        QVERIFY(!doneWhileHeld);
        QVERIFY(done);
    }
};

QTEST_MAIN(TestLocking)
#include "tst_locking.moc"
