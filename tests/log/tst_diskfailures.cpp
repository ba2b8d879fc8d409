// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/BackEnd.h"
#include "log/DataSource.h"
#include "tests/support/MessageLog.h"
#include "tests/support/MountNamespace.h"
#include "util/Clock.h"

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QHash>
#include <QtCore/QProcess>
#include <QtCore/QSettings>
#include <QtSql/QSqlDatabase>
#include <QtSql/QSqlQuery>
#include <QtTest/QtTest>

// The log on a disk that fills up and on a folder that cannot be written, each on a small
// tmpfs of the test's own in a private mount namespace.
class TestDiskFailures : public QObject
{
    Q_OBJECT

private:
    static constexpr qint64 Now = 1793000000;

    static void writeQuietSettings(const QString& folder)
    {
        QSettings ini(QDir(folder).filePath("brinholt.ini"), QSettings::IniFormat);
        ini.setValue("SettingSerialPort", "None");
        ini.setValue("SettingUseSerial", 0);
        ini.setValue("SettingUseTcp", 0);
        ini.setValue("SettingUseUdp", 0);
        ini.setValue("SettingUseUdpOut", 0);
    }

    // Tables a firing with this counter value writes.
    static int tablesAt(const DataSource& log, int tick)
    {
        int n = 0;
        for (int interval : log.getTableIntervals())
            n += (tick >= interval && tick % interval == 0) ? 1 : 0;
        return n;
    }

    // TIME and PRE of every row of every table, read through a connection of the test's.
    static QHash<QString, double> rows(const QString& path, const QStringList& tables, QString* integrity = nullptr)
    {
        QHash<QString, double> all;
        {
            QSqlDatabase db = QSqlDatabase::addDatabase("QSQLITE", "ROWS");
            db.setDatabaseName(path);
            db.open();
            QSqlQuery query(db);
            for (const QString& table : tables) {
                query.exec(QString("SELECT TIME, PRE FROM %1").arg(table));
                while (query.next())
                    all.insert(table + ':' + query.value(0).toString(), query.value(1).toDouble());
            }
            if (integrity && query.exec("PRAGMA integrity_check") && query.next())
                *integrity = query.value(0).toString();
        }
        QSqlDatabase::removeDatabase("ROWS");
        return all;
    }

private slots:
    void fullDiskFailsEachWriteAndWritingResumesWhenSpaceReturns()
    {
        BRINHOLT_ON_PRIVATE_TMPFS(320);
        const QString folder = MountNamespace::folder();
        QVERIFY(QDir::setCurrent(folder));
        writeQuietSettings(folder);
        Clock::setFixedSecsSinceEpoch(Now);
        {
            BackEnd b;
            DataSource log(nullptr);
            dataSource = &log;
            QVERIFY(log.canKeepRows());
            qint64 second = Now;
            int tick = 768;
            auto fire = [&] {
                Clock::setFixedSecsSinceEpoch(second);
                const bool written = log.addData(tick, -4.5, 48.25, 271.0, 6.5, 1000.0 + (second % 97) / 10.0);
                const int tables = tablesAt(log, tick);
                tick = tick < 767 ? tick + 2 : 0;
                second += 2;
                return std::make_pair(written, tables);
            };

            for (int i = 0; i < 120; ++i) {
                const auto result = fire();
                QCOMPARE(result.first, result.second > 0);
            }
            const QHash<QString, double> before = rows("brinholt.db", log.getTableNames());
            QVERIFY(before.size() > 120);

            // Fill what is left of the disk.
            QFile filler(QDir(folder).filePath("filler"));
            QVERIFY(filler.open(QIODevice::WriteOnly));
            const QByteArray block(1024, 'f');
            while (filler.write(block) == block.size() && filler.flush()) {
            }
            filler.close();

            MessageLog messages;
            int expected = 0;
            for (int i = 0; i < 100; ++i)
                expected += fire().second;
            const QHash<QString, double> whileFull = rows("brinholt.db", log.getTableNames());
            const int failed = messages.count("db update error");
            QVERIFY2(failed > 0, "the full disk never refused a row");
            // Every insert either left its row or said why not.
            QCOMPARE(whileFull.size() - before.size() + failed, expected);
            for (const QString& line : messages.messages()) {
                if (line.startsWith("db update error"))
                    QVERIFY2(line.contains("full", Qt::CaseInsensitive), qPrintable(line));
            }

            // Space comes back; nothing is restarted.
            QVERIFY(QFile::remove(QDir(folder).filePath("filler")));
            messages.clear();
            int afterwards = 0;
            for (int i = 0; i < 60; ++i) {
                const auto result = fire();
                QCOMPARE(result.first, result.second > 0);
                afterwards += result.second;
            }
            QCOMPARE(messages.count("db update error"), 0);

            QString integrity;
            const QHash<QString, double> end = rows("brinholt.db", log.getTableNames(), &integrity);
            QCOMPARE(integrity, QStringLiteral("ok"));
            QCOMPARE(end.size(), whileFull.size() + afterwards);
            for (auto it = before.cbegin(); it != before.cend(); ++it) {
                QVERIFY2(end.contains(it.key()), qPrintable(it.key()));
                QCOMPARE(end.value(it.key()), it.value());
            }
            dataSource = nullptr;
        }
        backend = nullptr;
        QSqlDatabase::removeDatabase("DB_BRINHOLT");
    }

    void readOnlyFolderStartsAndShowsLiveReadings()
    {
        BRINHOLT_ON_PRIVATE_TMPFS(256);
        const QString folder = MountNamespace::folder();
        writeQuietSettings(folder);
        QCOMPARE(QProcess::execute("mount", {"-o", "remount,ro", folder}), 0);
        QVERIFY(QDir::setCurrent(folder));
        {
            MessageLog messages;
            BackEnd b;
            DataSource log(nullptr);
            dataSource = &log;
            QVERIFY(!log.canKeepRows());
            QCOMPARE(messages.count("data folder not writable, no pressure log is kept: " + folder), 1);

            QSignalSpy updates(&b, &BackEnd::dataUpdated);
            b.setCurrentPressure(1013.0, Serial);
            b.slot_timerData();
            b.slot_timerData();
            QCOMPARE(updates.count(), 2);
            QVERIFY2(updates.at(0).at(3).toString().startsWith("1013.0"), qPrintable(updates.at(0).at(3).toString()));
            dataSource = nullptr;
        }
        backend = nullptr;
        QSqlDatabase::removeDatabase("DB_BRINHOLT");
        QVERIFY(!QFileInfo::exists(QDir(folder).filePath("brinholt.db")));
    }
};

QTEST_MAIN(TestDiskFailures)
#include "tst_diskfailures.moc"
