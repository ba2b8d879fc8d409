// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/BackEnd.h"
#include "log/DataSource.h"
#include "tests/support/TestDataFolder.h"
#include "util/Clock.h"

#include <QtCore/QFileInfo>
#include <QtCore/QProcess>
#include <QtCore/QSettings>
#include <QtCore/QRandomGenerator>
#include <QtSql/QSqlDatabase>
#include <QtSql/QSqlQuery>
#include <QtTest/QtTest>

#include <csignal>

// A writer killed at any moment keeps every row it reported written, in a sound file.
class TestKillWriter : public QObject
{
    Q_OBJECT

private:
    // Starts the writer in `folder`, kills it once it has reported `rows` rows, and puts in
    // `reported` every row it reported, the last ones read after its death included. What
    // went wrong, or nothing.
    static QString runAndKill(const TestDataFolder& folder, int rows, QList<qint64>* reported)
    {
        QProcess writer;
        writer.setWorkingDirectory(folder.path());
        writer.start(QCoreApplication::applicationDirPath() + "/brinholt_logwriter", {"1793000000"});
        if (!writer.waitForStarted())
            return QStringLiteral("the writer did not start: ") + writer.errorString();
        QByteArray pending;
        while (reported->size() < rows) {
            if (!writer.waitForReadyRead(10000))
                return QStringLiteral("the writer stopped reporting rows");
            pending += writer.readAllStandardOutput();
            int end;
            while ((end = pending.indexOf('\n')) >= 0) {
                *reported << pending.left(end).toLongLong();
                pending.remove(0, end + 1);
            }
        }
        ::kill(pid_t(writer.processId()), SIGKILL);
        if (!writer.waitForFinished(10000))
            return QStringLiteral("the killed writer did not end");
        pending += writer.readAllStandardOutput();
        for (const QByteArray& line : pending.split('\n')) {
            if (!line.isEmpty())
                *reported << line.toLongLong();
        }
        return QString();
    }

private slots:
    void killedWriterLosesNoReportedRow_data()
    {
        QTest::addColumn<int>("rowsBeforeKill");
        QTest::newRow("killed right after the first firing") << 1;
        QRandomGenerator random(20261121);
        for (int i = 0; i < 6; ++i) {
            const int n = 5 + int(random.bounded(400));
            QTest::addRow("killed after %d firings", n) << n;
        }
    }

    void writeAheadLogOfAKilledWriterIsTakenInAtTheNextStart();

    void killedWriterLosesNoReportedRow()
    {
        QFETCH(int, rowsBeforeKill);
        TestDataFolder folder;
        QList<qint64> reported;
        const QString failure = runAndKill(folder, rowsBeforeKill, &reported);
        QVERIFY2(failure.isEmpty(), qPrintable(failure));

        QSqlDatabase db = QSqlDatabase::addDatabase("QSQLITE", "CHECK");
        {
            db.setDatabaseName(folder.filePath("brinholt.db"));
            QVERIFY(db.open());
            QSqlQuery query(db);
            QVERIFY(query.exec("PRAGMA integrity_check"));
            QVERIFY(query.next());
            QCOMPARE(query.value(0).toString(), QStringLiteral("ok"));
            for (const QString& table : {"BARO30M", "BARO3H", "BAR16D"}) {
                QSet<qint64> stored;
                QVERIFY(query.exec(QString("SELECT TIME FROM %1").arg(table)));
                while (query.next())
                    stored.insert(query.value(0).toLongLong());
                for (qint64 time : qAsConst(reported))
                    QVERIFY2(stored.contains(time), qPrintable(QString("%1 lost row %2").arg(table).arg(time)));
            }
        }
        db = QSqlDatabase();
        QSqlDatabase::removeDatabase("CHECK");
    }
};

void TestKillWriter::writeAheadLogOfAKilledWriterIsTakenInAtTheNextStart()
{
    TestDataFolder folder;
    {
        QSettings ini(folder.filePath("brinholt.ini"), QSettings::IniFormat);
        ini.setValue("SettingSerialPort", "None");
    }
    // Killed early in its first minutes of clock: the newest rows are in the log beside the
    // file, not yet in the file itself.
    QList<qint64> reported;
    const QString failure = runAndKill(folder, 30, &reported);
    QVERIFY2(failure.isEmpty(), qPrintable(failure));
    QVERIFY(reported.size() >= 30);
    const QString path = folder.filePath("brinholt.db");
    QVERIFY(QFileInfo(path + "-wal").size() > 0);

    const qint64 next = reported.last() + 10;
    {
        BackEnd back;
        DataSource log(nullptr);
        dataSource = &log;
        Clock::setFixedSecsSinceEpoch(next);
        QVERIFY(log.addData(768, 1.0, 2.0, 3.0, 4.0, 1001.0));
        dataSource = nullptr;
    }
    backend = nullptr;
    QSqlDatabase::removeDatabase("DB_BRINHOLT");
    Clock::reset();
    // Closed in order: the log has been folded into the file and is gone.
    QVERIFY(!QFileInfo::exists(path + "-wal"));

    QSqlDatabase db = QSqlDatabase::addDatabase("QSQLITE", "CHECK");
    {
        db.setDatabaseName(path);
        QVERIFY(db.open());
        QSqlQuery query(db);
        QVERIFY(query.exec("PRAGMA integrity_check") && query.next());
        QCOMPARE(query.value(0).toString(), QStringLiteral("ok"));
        QSet<qint64> stored;
        QVERIFY(query.exec("SELECT TIME FROM BARO30M"));
        while (query.next())
            stored.insert(query.value(0).toLongLong());
        for (qint64 time : reported)
            QVERIFY2(stored.contains(time), qPrintable(QString("lost row %1").arg(time)));
        QVERIFY(stored.contains(next));
    }
    db = QSqlDatabase();
    QSqlDatabase::removeDatabase("CHECK");
}

QTEST_MAIN(TestKillWriter)
#include "tst_killwriter.moc"
