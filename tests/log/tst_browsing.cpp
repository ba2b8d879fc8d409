// SPDX-License-Identifier: GPL-3.0-or-later
#include "ReaderFixture.h"

#include "log/DataSource.h"
#include "util/Util.h"

#include <QtTest/QtTest>

#include <cmath>

// The log pages' list of rows, and the deletion of one row, one table or all.
class TestBrowsing : public QObject
{
    Q_OBJECT

private:
    static constexpr qint64 Now = ReaderFixture::ExampleTime;

    static QString desc(const QVariant& entry)
    {
        return entry.toMap().value(QStringLiteral("desc")).toString();
    }

    static QString key(const QVariant& entry)
    {
        return entry.toMap().value(QStringLiteral("key")).toString();
    }

private slots:
    void emptyTableGivesAnEmptyList()
    {
        ReaderFixture fx;
        QCOMPARE(fx.log().getTableContent(2), QVariantList());
    }

    void entryOfTheExampleRow()
    {
        ReaderFixture fx;
        fx.setSetting(QStringLiteral("timeZone"), 0);
        fx.setSetting(QStringLiteral("formatMMDD"), 0);
        fx.setSetting(QStringLiteral("timeFormat"), 0);
        fx.setSetting(QStringLiteral("precision"), 1);
        fx.setSetting(QStringLiteral("unitPre"), 0);
        fx.setSetting(QStringLiteral("locFormat"), 2);
        fx.setSetting(QStringLiteral("unitSpeed"), 0);
        fx.insert(1, ReaderFixture::exampleRow());

        const QVariantList list = fx.log().getTableContent(1);
        QCOMPARE(list.size(), 1);
        const QVariantMap entry = list.first().toMap();
        QCOMPARE(entry.keys(), (QStringList{QStringLiteral("desc"), QStringLiteral("key")}));
        QCOMPARE(entry.value(QStringLiteral("key")).userType(), int(QMetaType::QString));
        QCOMPARE(key(list.first()), QStringLiteral("1793887402"));
        // No catalogue is loaded, so the degree sign is the word "deg". The speed is the
        // stored knots taken for metres per second: 6.38 * 3.6 / 1.852.
        QCOMPARE(desc(list.first()),
                 QStringLiteral("<Qt>14:03:22 (UTC) 05 Nov 2026\n<br><b>1014.0 mb</b> 47.6062degN 122.3321degW"
                                "<br>COG 245deg T - SOG 12.4 kts"));
    }

    void entryIsBuiltFromTheFormattersInLocalTime()
    {
        ReaderFixture fx;
        LogRow row = ReaderFixture::exampleRow();
        row.cog = 7.9;
        fx.insert(0, row);
        const QString expected = QStringLiteral("<Qt>")
                + Util::formatDateTimeSecs(QDateTime::fromSecsSinceEpoch(row.time)) + QStringLiteral("\n")
                + QStringLiteral("<br><b>")
                + Util::formatPressure(DataSource::seaLevelPressure(row.pre + row.ofs, row.ele), true)
                + QStringLiteral("</b> ") + Util::formatPosition(row.lon, row.lat) + QStringLiteral("<br>")
                + QStringLiteral("COG 007deg T - SOG ") + Util::formatSpeed(row.sog);
        QCOMPARE(desc(fx.log().getTableContent(0).first()), expected);
    }

    void courseIsTruncatedAndSpeedIsNotConverted()
    {
        ReaderFixture fx;
        fx.setSetting(QStringLiteral("unitSpeed"), 1);
        LogRow row = ReaderFixture::exampleRow();
        row.cog = 245.9;
        fx.insert(0, row);
        const QString text = desc(fx.log().getTableContent(0).first());
        QVERIFY2(text.contains(QStringLiteral("COG 245deg T - SOG ")), qPrintable(text));
        // 6.38 "metres per second" in km/h.
        QVERIFY2(text.endsWith(QStringLiteral("SOG 23.0 km/h")), qPrintable(text));
    }

    void everyRowNewestFirst()
    {
        ReaderFixture fx;
        fx.fillTable(1, 1800, Now);
        const QVariantList list = fx.log().getTableContent(1);
        QCOMPARE(list.size(), 1800);
        QCOMPARE(key(list.first()), QString::number(Now));
        QCOMPARE(key(list.at(1)), QString::number(Now - 6));
        QCOMPARE(key(list.last()), QString::number(Now - 1799 * 6));
        for (const QVariant& entry : list)
            QVERIFY(desc(entry).startsWith(QStringLiteral("<Qt>")));
    }

    void offsetOfTheMomentOfLoggingStaysInTheList()
    {
        ReaderFixture fx;
        fx.setSetting(QStringLiteral("offset"), 1.0);
        fx.setPressure(1012.0);
        QVERIFY(fx.log().addData(768, 0.0, 0.0, 0.0, 0.0, 1012.0));
        fx.setSetting(QStringLiteral("offset"), 0.0);

        const QString text = desc(fx.log().getTableContent(0).first());
        QVERIFY2(text.contains(QStringLiteral("<br><b>1013.0 mb</b> ")), qPrintable(text));
        QVERIFY2(text.contains(QStringLiteral("<b>") + Util::formatPressure(1013.0, true) + QStringLiteral("</b>")),
                 qPrintable(text));
    }

    void levelOfTheListFollowsTheSetting()
    {
        ReaderFixture fx;
        fx.insert(0, rowAt(Now, 1000.0, 100.0, 0.0));
        fx.setSetting(QStringLiteral("preDisplay"), 1);
        const QString station = desc(fx.log().getTableContent(0).first());
        QVERIFY2(station.contains(QStringLiteral("<b>1000.0 mb</b>")), qPrintable(station));

        fx.setSetting(QStringLiteral("preDisplay"), 0);
        const QString seaLevel = desc(fx.log().getTableContent(0).first());
        const double reduced = 1000.0 / std::pow(100.0 * -22.55687745833333 / 1000000 + 1.0, 5.2561);
        QVERIFY2(seaLevel.contains(QStringLiteral("<b>%1 mb</b>").arg(reduced, 0, 'f', 1)), qPrintable(seaLevel));
        QVERIFY(station != seaLevel);
    }

    void removingAMissingKeyReportsSuccessAndDeletesNothing()
    {
        ReaderFixture fx;
        fx.insert(0, {rowAt(Now, 1013.0), rowAt(Now - 2, 1013.0)});
        fx.messages.clear();
        fx.log().removeKey(0, QString::number(Now - 1));
        QCOMPARE(fx.messages.messages(), QStringList{QStringLiteral("delete one record OK")});
        QCOMPARE(fx.rowCount(0), 2);
    }

    void removingAKeyDeletesThatRowAlone()
    {
        ReaderFixture fx;
        fx.insert(0, {rowAt(Now, 1013.0), rowAt(Now - 2, 1013.0), rowAt(Now - 4, 1013.0)});
        fx.insert(1, rowAt(Now - 2, 1013.0));
        fx.messages.clear();
        fx.log().removeKey(0, QString::number(Now - 2));
        QCOMPARE(fx.messages.messages(), QStringList{QStringLiteral("delete one record OK")});
        QCOMPARE(fx.times(0), (QVector<qint64>{Now, Now - 4}));
        QCOMPARE(fx.rowCount(1), 1);
    }

    void removingAnUnusableKeyIsLogged()
    {
        ReaderFixture fx;
        fx.insert(0, rowAt(Now, 1013.0));
        fx.messages.clear();
        fx.log().removeKey(0, QStringLiteral("soon"));
        QCOMPARE(fx.messages.messages().size(), 1);
        QVERIFY(fx.messages.messages().first().startsWith(QStringLiteral("db query error")));
        QVERIFY(fx.messages.messages().first().contains(QStringLiteral("DELETE FROM BARO30M WHERE TIME = soon;")));
        QCOMPARE(fx.rowCount(0), 1);
    }

    void emptyingOneTableLeavesTheOthers()
    {
        ReaderFixture fx;
        fx.insert(2, {rowAt(Now, 1013.0), rowAt(Now - 12, 1013.0)});
        fx.insert(3, rowAt(Now, 1013.0));
        fx.messages.clear();
        fx.log().emptyOneTable(2);
        QCOMPARE(fx.messages.messages(), QStringList{QStringLiteral("empty one table OK BARO6H")});
        QCOMPARE(fx.rowCount(2), 0);
        QCOMPARE(fx.rowCount(3), 1);
    }

    void emptyingAMissingTableIsLogged()
    {
        ReaderFixture fx;
        fx.execute(QStringLiteral("DROP TABLE BARO8D"));
        fx.messages.clear();
        fx.log().emptyOneTable(7);
        QCOMPARE(fx.messages.messages().size(), 1);
        QVERIFY(fx.messages.messages().first().startsWith(QStringLiteral("db query error")));
        QVERIFY(fx.messages.messages().first().contains(QStringLiteral("DELETE FROM BARO8D")));
    }

    void emptyingAllTablesGoesTableByTableAndTheTickRefillsThem()
    {
        ReaderFixture fx;
        fx.setPressure(1013.0);
        QVERIFY(fx.log().addData(768, 0.0, 0.0, 0.0, 0.0, 1013.0));
        for (int table = 0; table < 9; ++table)
            QCOMPARE(fx.rowCount(table), 1);

        fx.messages.clear();
        fx.log().emptyAllTables();
        QStringList expected;
        for (int table = 0; table < 9; ++table)
            expected << QStringLiteral("empty one table OK ") + ReaderFixture::tableName(table);
        QCOMPARE(fx.messages.messages(), expected);
        for (int table = 0; table < 9; ++table)
            QCOMPARE(fx.rowCount(table), 0);

        // The next firing writes its table as usual.
        fx.setClock(Now + 2);
        QVERIFY(fx.log().addData(2, 0.0, 0.0, 0.0, 0.0, 1013.0));
        QCOMPARE(fx.rowCount(0), 1);
        for (int table = 1; table < 9; ++table)
            QCOMPARE(fx.rowCount(table), 0);

        // The first tick of the next cycle fills the others.
        fx.setClock(Now + 4);
        QVERIFY(fx.log().addData(768, 0.0, 0.0, 0.0, 0.0, 1013.0));
        QCOMPARE(fx.rowCount(0), 2);
        for (int table = 1; table < 9; ++table)
            QCOMPARE(fx.rowCount(table), 1);
    }

    void deletionLeavesTheTrendAlone()
    {
        ReaderFixture fx;
        LogRow hourAgo = rowAt(Now - 3600, 1012.0);
        fx.insert(1, hourAgo);
        fx.setPressure(1013.0);
        QVERIFY(fx.log().addData(8, 0.0, 0.0, 0.0, 0.0, 1013.0));
        QCOMPARE(fx.log().getTrend(), 4);
        fx.log().removeKey(1, QString::number(Now - 3600));
        fx.log().emptyOneTable(1);
        fx.log().emptyAllTables();
        QCOMPARE(fx.log().getTrend(), 4);
    }
};

QTEST_MAIN(TestBrowsing)
#include "tst_browsing.moc"
