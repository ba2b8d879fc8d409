// SPDX-License-Identifier: GPL-3.0-or-later
#include <QtCore/QDateTime>
#include <QtCore/QDir>
#include <QtCore/QElapsedTimer>
#include <QtCore/QFileInfo>
#include <QtCore/QProcess>
#include <QtCore/QRegularExpression>
#include <QtCore/QSettings>
#include <QtCore/QTemporaryDir>
#include <QtSql/QSqlDatabase>
#include <QtSql/QSqlQuery>
#include <QtTest/QtTest>

#include <cmath>
#include <csignal>

// The demo as scripts/run --demo starts it, headless: the simulator's readings reach the
// scratch log and carry on from the history there, the pressure-fall warning shows at once,
// and the simulator goes with the window.
class TestDemo : public QObject
{
    Q_OBJECT

private:
    static bool alive(qint64 pid) { return QFileInfo::exists(QString("/proc/%1").arg(pid)) && !isZombie(pid); }

    static bool isZombie(qint64 pid)
    {
        QFile stat(QString("/proc/%1/stat").arg(pid));
        if (!stat.open(QIODevice::ReadOnly))
            return false;
        const QByteArray text = stat.readAll();
        const int close = text.lastIndexOf(')');
        return close > 0 && text.mid(close + 2, 1) == "Z";
    }

    static QVariant scalar(const QString& path, const QString& statement)
    {
        QVariant value;
        {
            QSqlDatabase db = QSqlDatabase::addDatabase("QSQLITE", "DEMO_TEST");
            db.setDatabaseName(path);
            db.setConnectOptions("QSQLITE_OPEN_READONLY;QSQLITE_BUSY_TIMEOUT=2000");
            if (db.open()) {
                QSqlQuery query(db);
                if (query.exec(statement) && query.next())
                    value = query.value(0);
            }
        }
        QSqlDatabase::removeDatabase("DEMO_TEST");
        return value;
    }

    // TIME and PRE of the rows of BARO30M after `after`, oldest first.
    static QVector<QPair<qint64, double>> pressuresAfter(const QString& path, qint64 after)
    {
        QVector<QPair<qint64, double>> rows;
        {
            QSqlDatabase db = QSqlDatabase::addDatabase("QSQLITE", "DEMO_TEST");
            db.setDatabaseName(path);
            db.setConnectOptions("QSQLITE_OPEN_READONLY;QSQLITE_BUSY_TIMEOUT=2000");
            if (db.open()) {
                QSqlQuery query(db);
                query.exec(QString("SELECT TIME, PRE FROM BARO30M WHERE TIME > %1 ORDER BY TIME").arg(after));
                while (query.next())
                    rows.append({query.value(0).toLongLong(), query.value(1).toDouble()});
            }
        }
        QSqlDatabase::removeDatabase("DEMO_TEST");
        return rows;
    }

    bool waitForOutput(QProcess& proc, QString& output, const QString& text, int timeoutMs)
    {
        QElapsedTimer timer;
        timer.start();
        while (!output.contains(text)) {
            if (timer.elapsed() > timeoutMs || proc.state() == QProcess::NotRunning)
                return false;
            proc.waitForReadyRead(200);
            output += QString::fromLocal8Bit(proc.readAll());
        }
        return true;
    }

private slots:
    void theDemoRecordsTheSimulatorAndEndsItWithTheWindow()
    {
        QTemporaryDir temp;
        const QString scratch = temp.filePath("demo");
        QProcess demo;
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.insert("BRINHOLT_DEMO_DIR", scratch);
        // The user's own folders: the demo must leave them alone.
        env.insert("HOME", temp.filePath("home"));
        env.insert("XDG_DATA_HOME", temp.filePath("home/data"));
        env.insert("LC_ALL", "en_GB.UTF-8");
        env.insert("QT_QPA_PLATFORM", "offscreen");
        env.insert("QT_QUICK_BACKEND", "software");
        QDir().mkpath(temp.filePath("home"));
        demo.setProcessEnvironment(env);
        demo.setProcessChannelMode(QProcess::MergedChannels);
        const qint64 before = QDateTime::currentSecsSinceEpoch();
        demo.start(QStringLiteral(BRINHOLT_SOURCE_DIR "/scripts/demo"), {QStringLiteral(BRINHOLT_BINARY_DIR)});
        QVERIFY(demo.waitForStarted(10000));

        QString output;
        QVERIFY2(waitForOutput(demo, output, "demo: folder", 60000), qPrintable(output));
        const QRegularExpressionMatch ids =
                QRegularExpression("demo: folder (\\S+) simulator (\\d+) brinholt (\\d+)").match(output);
        QVERIFY2(ids.hasMatch(), qPrintable(output));
        QCOMPARE(ids.captured(1), QDir(scratch).absolutePath());
        const qint64 simulator = ids.captured(2).toLongLong();
        const qint64 app = ids.captured(3).toLongLong();
        const qint64 started = QDateTime::currentSecsSinceEpoch();
        QVERIFY(alive(simulator));

        const QString db = QDir(scratch).filePath("brinholt.db");
        // Every table holds history older than the application.
        for (const char* table : {"BARO30M", "BARO3H", "BARO6H", "BAR12H", "BARO1D", "BARO2D", "BARO4D", "BARO8D",
                                  "BAR16D"}) {
            const int rows = scalar(db, QString("SELECT COUNT(*) FROM %1 WHERE TIME <= %2").arg(table).arg(started))
                                     .toInt();
            QVERIFY2(rows > 800, table);
        }
        QVERIFY(scalar(db, "SELECT MIN(TIME) FROM BAR16D").toLongLong() < before - 15 * 86400);
        QSettings ini(QDir(scratch).filePath("brinholt.ini"), QSettings::IniFormat);
        QCOMPARE(ini.value("SettingSerialPort").toString(), QDir(scratch).filePath("skerry"));

        // The device's readings arrive within a few ticks of 2 s.
        QElapsedTimer timer;
        timer.start();
        int live = 0;
        while (timer.elapsed() < 40000) {
            live = scalar(db, QString("SELECT COUNT(*) FROM BARO30M WHERE TIME > %1 AND PRE > 990 AND PRE < 1040")
                                      .arg(started))
                           .toInt();
            if (live >= 3)
                break;
            demo.waitForReadyRead(500);
            output += QString::fromLocal8Bit(demo.readAll());
        }
        QVERIFY2(live >= 3, qPrintable(output));
        QVERIFY(alive(app));

        // The history runs on into the device's readings: from the history's last minute
        // through the device's first rows, no step bigger than the sentence's resolution
        // (a tenth of a hPa in the MDA that comes last) and the drift.
        const QVector<QPair<qint64, double>> rows = pressuresAfter(db, before - 60);
        QVERIFY(rows.size() > 20);
        QVERIFY(rows.first().first < started && rows.last().first > started);
        for (int i = 1; i < rows.size(); ++i)
            QVERIFY2(std::abs(rows.at(i).second - rows.at(i - 1).second) < 0.15,
                     qPrintable(QString("%1 then %2 at %3").arg(rows.at(i - 1).second).arg(rows.at(i).second)
                                        .arg(rows.at(i).first)));

        // The pressure-fall warning shows within the device's first minute: before the
        // thirtieth tick of 2 s has logged its row. Not the alarm.
        int rowsAtWarning = -1;
        timer.restart();
        while (timer.elapsed() < 90000) {
            output += QString::fromLocal8Bit(demo.readAll());
            if (output.contains("pressure fall level Warning")) {
                rowsAtWarning = scalar(db, QString("SELECT COUNT(*) FROM BARO30M WHERE TIME > %1").arg(started)).toInt();
                break;
            }
            demo.waitForReadyRead(200);
        }
        QVERIFY2(rowsAtWarning >= 0, qPrintable(output));
        QVERIFY2(rowsAtWarning <= 30, qPrintable(QString::number(rowsAtWarning)));
        QVERIFY2(!output.contains("pressure fall level Alarm"), qPrintable(output));

        // The window goes (an orderly end, as closing it gives), and the simulator with it.
        ::kill(pid_t(app), SIGTERM);
        QVERIFY2(demo.waitForFinished(30000), qPrintable(output));
        output += QString::fromLocal8Bit(demo.readAll());
        QCOMPARE(demo.exitCode(), 0);
        QVERIFY2(output.contains("backend deleted"), qPrintable(output));
        timer.restart();
        while (alive(simulator) && timer.elapsed() < 10000)
            QTest::qWait(100);
        QVERIFY(!alive(simulator));

        // Nothing was written to the user's own data folder.
        QVERIFY(!QFileInfo::exists(temp.filePath("home/data/brinholt")));
        QVERIFY(!QFileInfo::exists(temp.filePath("home/.local/share/brinholt")));
    }
};

QTEST_MAIN(TestDemo)
#include "tst_demo.moc"
