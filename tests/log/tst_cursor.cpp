// SPDX-License-Identifier: GPL-3.0-or-later
#include "ReaderFixture.h"

#include "log/DataSource.h"
#include "tests/support/Columns.h"
#include "util/Util.h"

#include <QtTest/QtTest>

#include <cmath>

static const QString SevenBlanks = QStringLiteral("&nbsp;&nbsp;&nbsp;&nbsp;&nbsp;&nbsp;&nbsp;");

// getValueAt and calcInfo: from a point under the mouse to a value and a title.
class TestCursor : public QObject
{
    Q_OBJECT

private:
    static constexpr qint64 Now = ReaderFixture::ExampleTime;

    static double secondsPerUnit(int table)
    {
        return table == 0 ? 60.0 : (table <= 5 ? 3600.0 : 86400.0);
    }

    // The y at x of the moment `time`, with x = 0 at Now.
    static double valueAt(ReaderFixture& fx, int table, qint64 time)
    {
        const double x = (time - Now) / secondsPerUnit(table);
        const QPointF point = fx.log().getValueAt(x, table, QVariant(Now));
        if (point.x() != x)
            qFatal("x changed");
        return point.y();
    }

private slots:
    void onARowGivesThatRowInTheCurrentLevelAndUnit_data()
    {
        Columns::add<int, int, double>("preDisplay", "unitPre", "expected");
        const double station = 1012.31 + 0.5;
        const double seaLevel = station / std::pow(10.0 * -22.55687745833333 / 1000000 + 1.0, 5.2561);
        QTest::newRow("sea level in mb") << 0 << 0 << qRound(seaLevel * 100) / 100.0;
        QTest::newRow("station level in mb") << 1 << 0 << 1012.81;
        QTest::newRow("station level in inHg") << 1 << 3 << qRound(station * 0.029529983071445 * 100) / 100.0;
        QTest::newRow("sea level in mmHg") << 0 << 4 << qRound(seaLevel * 0.75006157584566 * 100) / 100.0;
    }

    void onARowGivesThatRowInTheCurrentLevelAndUnit()
    {
        QFETCH(int, preDisplay);
        QFETCH(int, unitPre);
        QFETCH(double, expected);
        ReaderFixture fx;
        fx.setSetting(QStringLiteral("preDisplay"), preDisplay);
        fx.setSetting(QStringLiteral("unitPre"), unitPre);
        fx.insert(1, {rowAt(Now, 1000.0), rowAt(Now - 1800, 1012.31, 10.0, 0.5), rowAt(Now - 1806, 1020.0)});
        const QPointF point = fx.log().getValueAt(-0.5, 1, QVariant(Now));
        QCOMPARE(point.x(), -0.5);
        QCOMPARE(point.y(), expected);
        QVERIFY(expected > 0.0);
    }

    void betweenTwoRowsTwoSecondsApartGivesTheNewer()
    {
        ReaderFixture fx;
        fx.insert(0, {rowAt(Now, 1013.1), rowAt(Now - 2, 1013.2), rowAt(Now - 4, 1013.3)});
        QCOMPARE(valueAt(fx, 0, Now - 3), 1013.2);
        QCOMPARE(valueAt(fx, 0, Now - 1), 1013.1);
        QCOMPARE(valueAt(fx, 0, Now - 4), 1013.3);
    }

    void xIsTurnedIntoWholeSecondsFromTheStartDate()
    {
        ReaderFixture fx;
        fx.insert(0, {rowAt(Now, 1013.1), rowAt(Now - 2, 1013.2)});
        // -1.6 s rounds to -2: exactly the older row. -1.4 s rounds to -1: between them.
        QCOMPARE(fx.log().getValueAt(-1.6 / 60.0, 0, QVariant(Now)).y(), 1013.2);
        QCOMPARE(fx.log().getValueAt(-1.4 / 60.0, 0, QVariant(Now)).y(), 1013.1);
        // The start date is read as a 64-bit integer, whatever the variant holds.
        QCOMPARE(fx.log().getValueAt(-2 / 60.0, 0, QVariant(QString::number(Now))).y(), 1013.2);
    }

    void breakInTheLogGivesTheMark_data()
    {
        Columns::add<int, int, bool>("table", "gap", "hasValue");
        const int limits[] = {62, 66, 72, 84, 108, 156, 252, 300, 300};
        for (int table = 0; table < 9; ++table) {
            const QString name = ReaderFixture::tableName(table);
            QTest::addRow("%s: %d s between rows gives the newer", qPrintable(name), limits[table] - 1)
                    << table << limits[table] - 1 << true;
            QTest::addRow("%s: %d s between rows gives the mark", qPrintable(name), limits[table])
                    << table << limits[table] << false;
        }
    }

    void breakInTheLogGivesTheMark()
    {
        QFETCH(int, table);
        QFETCH(int, gap);
        QFETCH(bool, hasValue);
        ReaderFixture fx;
        fx.insert(table, {rowAt(Now, 1013.1), rowAt(Now - gap, 1013.2)});
        const QPointF point = fx.log().getValueAt(-1.0 / secondsPerUnit(table), table, QVariant(Now));
        QCOMPARE(point.y(), hasValue ? 1013.1 : -1000.0);
    }

    void anyPointBetweenRowsOfBar16dGivesTheMark()
    {
        ReaderFixture fx;
        fx.insert(8, {rowAt(Now, 1013.1), rowAt(Now - 768, 1013.2), rowAt(Now - 1536, 1013.3)});
        for (qint64 back : {1, 100, 384, 767, 769, 1535})
            QCOMPARE(valueAt(fx, 8, Now - back), -1000.0);
        QCOMPARE(valueAt(fx, 8, Now), 1013.1);
        QCOMPARE(valueAt(fx, 8, Now - 768), 1013.2);
    }

    void outsideTheRowsGivesTheMark()
    {
        ReaderFixture fx;
        fx.insert(0, {rowAt(Now - 10, 1013.1), rowAt(Now - 12, 1013.2)});
        QCOMPARE(valueAt(fx, 0, Now - 9), -1000.0);
        QCOMPARE(valueAt(fx, 0, Now), -1000.0);
        QCOMPARE(valueAt(fx, 0, Now - 13), -1000.0);
        QCOMPARE(valueAt(fx, 1, Now - 10), -1000.0);
    }

    void emptyTableGivesTheMark()
    {
        ReaderFixture fx;
        QCOMPARE(valueAt(fx, 3, Now), -1000.0);
    }

    void markStaysNegativeInEveryUnit_data()
    {
        Columns::add<int, double>("unitPre", "mark");
        QTest::newRow("mb") << 0 << -1000.0;
        QTest::newRow("kPa") << 2 << -100.0;
        QTest::newRow("inches of mercury give -29.53") << 3 << -29.53;
        QTest::newRow("mmHg") << 4 << -750.06;
    }

    void markStaysNegativeInEveryUnit()
    {
        QFETCH(int, unitPre);
        QFETCH(double, mark);
        ReaderFixture fx;
        fx.setSetting(QStringLiteral("unitPre"), unitPre);
        fx.insert(0, rowAt(Now, 1013.0));
        QCOMPARE(valueAt(fx, 0, Now + 60), mark);
    }

    void titleHandsHectopascalsToTheFormatter()
    {
        ReaderFixture fx;
        fx.setSetting(QStringLiteral("unitPre"), 2);
        fx.setSetting(QStringLiteral("precision"), 2);
        fx.setSetting(QStringLiteral("timeZone"), 0);
        fx.insert(0, rowAt(Now, 1013.2));
        const QString text = fx.log().calcInfo(QPointF(0.0, 101.32), 0);
        QVERIFY2(text.startsWith(Util::formatPressure(1013.2, true) + SevenBlanks), qPrintable(text));
        // 1013.2 hPa in kPa with two decimals.
        QVERIFY2(text.startsWith(QStringLiteral("101.32 kPa") + SevenBlanks), qPrintable(text));
    }

    void titleIsPressureBlanksAndDate()
    {
        ReaderFixture fx;
        fx.setSetting(QStringLiteral("timeZone"), 0);
        fx.setSetting(QStringLiteral("precision"), 1);
        fx.insert(1, {rowAt(Now, 1013.0), rowAt(Now - 1800, 1014.0)});
        const QString text = fx.log().calcInfo(QPointF(-0.5, 1014.01), 1);
        const QDateTime at = QDateTime::fromSecsSinceEpoch(Now - 1800).toTimeSpec(Qt::UTC);
        QCOMPARE(text, Util::formatPressure(1014.01, true) + SevenBlanks + Util::formatDateTimeSecs(at));
        QCOMPARE(text, QStringLiteral("1014.0 mb") + SevenBlanks + QStringLiteral("13:33:22 (UTC) 05 Nov 2026"));
    }

    void titleCountsFromTheNewestRowNotFromTheChartsStart()
    {
        ReaderFixture fx;
        fx.insert(0, {rowAt(Now, 1013.0), rowAt(Now - 2, 1013.0)});
        // Pressure has stopped: the chart's x = 0 is ten minutes after the newest row.
        fx.setClock(Now + 600);
        qint64 start = 0;
        QObject context;
        QObject::connect(&fx.log(), &DataSource::chartUpdated, &context,
                         [&](QVariant now, double, double, int) { start = now.toLongLong(); });
        fx.log().updateChart(0);
        QCOMPARE(start, Now + 600);

        const QPointF point = fx.log().getValueAt(-10.0, 0, QVariant(start));
        QCOMPARE(point.y(), 1013.0);
        const QString text = fx.log().calcInfo(point, 0);
        const QDateTime textTime = QDateTime::fromSecsSinceEpoch(Now - 600).toTimeSpec(Qt::UTC);
        QVERIFY2(text.endsWith(SevenBlanks + Util::formatDateTimeSecs(textTime)), qPrintable(text));
    }

    void titleTimeIsTruncatedTowardZero()
    {
        ReaderFixture fx;
        fx.insert(0, rowAt(Now, 1013.0));
        // 0.3 s before the newest row: truncation gives the second before it.
        const QString text = fx.log().calcInfo(QPointF(-0.3 / 60.0, 1013.0), 0);
        const QDateTime expected = QDateTime::fromSecsSinceEpoch(Now - 1).toTimeSpec(Qt::UTC);
        QVERIFY2(text.endsWith(SevenBlanks + Util::formatDateTimeSecs(expected)), qPrintable(text));
    }

    void titleOfAnEmptyTableIsEmpty()
    {
        ReaderFixture fx;
        fx.messages.clear();
        QCOMPARE(fx.log().calcInfo(QPointF(0.0, 1013.0), 4), QString());
        QCOMPARE(fx.messages.messages(), QStringList());
    }

    void titleQueryFailureIsLogged()
    {
        ReaderFixture fx;
        fx.execute(QStringLiteral("DROP TABLE BARO2D"));
        fx.messages.clear();
        QCOMPARE(fx.log().calcInfo(QPointF(0.0, 1013.0), 5), QString());
        QCOMPARE(fx.messages.count(QStringLiteral("db query error")), 1);
        QVERIFY(fx.messages.messages().first().contains(
                QStringLiteral("SELECT TIME FROM BARO2D ORDER BY TIME DESC LIMIT 1;")));
    }
};

QTEST_MAIN(TestCursor)
#include "tst_cursor.moc"
