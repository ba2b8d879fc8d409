#include "tests/support/TestDataFolder.h"

#include <QtCore/QProcess>
#include <QtCore/QRandomGenerator>
#include <QtSql/QSqlDatabase>
#include <QtSql/QSqlQuery>
#include <QtTest/QtTest>

#include <csignal>

// A writer killed at any moment keeps every row it reported written, in a sound file.
class TestKillWriter : public QObject
{
    Q_OBJECT

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

    void killedWriterLosesNoReportedRow()
    {
        QFETCH(int, rowsBeforeKill);
        TestDataFolder folder;
        QProcess writer;
        writer.setWorkingDirectory(folder.path());
        writer.start(QCoreApplication::applicationDirPath() + "/brinholt_logwriter", {"1793000000"});
        QVERIFY2(writer.waitForStarted(), qPrintable(writer.errorString()));

        QList<qint64> reported;
        QByteArray pending;
        while (reported.size() < rowsBeforeKill) {
            QVERIFY2(writer.waitForReadyRead(10000), "the writer stopped reporting rows");
            pending += writer.readAllStandardOutput();
            int end;
            while ((end = pending.indexOf('\n')) >= 0) {
                reported << pending.left(end).toLongLong();
                pending.remove(0, end + 1);
            }
        }
        ::kill(pid_t(writer.processId()), SIGKILL);
        QVERIFY(writer.waitForFinished(10000));
        pending += writer.readAllStandardOutput();
        for (const QByteArray& line : pending.split('\n')) {
            if (!line.isEmpty())
                reported << line.toLongLong();
        }

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

QTEST_MAIN(TestKillWriter)
#include "tst_killwriter.moc"
