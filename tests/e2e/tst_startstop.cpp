// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/support/AppProcess.h"
#include "tests/support/TestDataFolder.h"

#include <QtCore/QFile>
#include <QtCore/QSettings>
#include <QtSql/QSqlDatabase>
#include <QtSql/QSqlQuery>
#include <QtTest/QtTest>

#include <csignal>

// The real executable: first start, the files it leaves, and an orderly end on a signal.
class TestStartStop : public QObject
{
    Q_OBJECT

private:
    static QStringList createStatements(const QString& path)
    {
        QStringList statements;
        {
            QSqlDatabase db = QSqlDatabase::addDatabase("QSQLITE", "E2E");
            db.setDatabaseName(path);
            if (db.open()) {
                QSqlQuery query(db);
                query.exec("SELECT sql FROM sqlite_master WHERE type='table' ORDER BY rowid");
                while (query.next())
                    statements << query.value(0).toString();
            }
        }
        QSqlDatabase::removeDatabase("E2E");
        return statements;
    }

private slots:
    void firstStartWritesSettingsAndLogThenEndsCleanlyOnSigterm_data()
    {
        QTest::addColumn<int>("signalNumber");
        QTest::newRow("SIGTERM") << int(SIGTERM);
        QTest::newRow("SIGINT") << int(SIGINT);
    }

    void firstStartWritesSettingsAndLogThenEndsCleanlyOnSigterm()
    {
        QFETCH(int, signalNumber);
        TestDataFolder folder;
        AppProcess app(folder.path());
        app.environment().insert("LC_ALL", "en_GB.UTF-8");
        QVERIFY(app.start());
        QVERIFY2(app.waitForLog("main page loaded", 30000), qPrintable(app.log().join('\n')));

        const QSettings first(folder.filePath("brinholt.ini"), QSettings::IniFormat);
        QCOMPARE(first.value("language").toString(), QStringLiteral("0"));
        QCOMPARE(first.value("formatMMDD").toString(), QStringLiteral("0"));

        QStringList expected;
        for (const char* table : {"BARO30M", "BARO3H", "BARO6H", "BAR12H", "BARO1D", "BARO2D", "BARO4D",
                                  "BARO8D", "BAR16D"}) {
            expected << QString("CREATE TABLE %1 (TIME INTEGER primary key, LON FLOAT, LAT FLOAT, COG FLOAT, "
                                "SOG FLOAT, PRE FLOAT, ELE FLOAT, OFS FLOAT)")
                                .arg(table);
        }
        QCOMPARE(createStatements(folder.filePath("brinholt.db")), expected);

        QVERIFY(app.stop(signalNumber, 20000));
        QCOMPARE(app.process().exitStatus(), QProcess::NormalExit);
        QCOMPARE(app.process().exitCode(), 0);
        const QStringList log = app.log();
        QVERIFY2(log.contains("datasource deleted") && log.contains("backend deleted"), qPrintable(log.join('\n')));
        QVERIFY(log.indexOf("datasource deleted") < log.indexOf("backend deleted"));

        QSettings ini(folder.filePath("brinholt.ini"), QSettings::IniFormat);
        QCOMPARE(ini.value("version").toString(), QStringLiteral("3.0.0"));
        for (const char* key : {"windowWidth", "windowHeight", "windowX", "windowY"})
            QVERIFY2(ini.contains(key), key);
        QVERIFY(ini.value("windowWidth").toInt() > 0);
    }

    void firstStartOnAFrenchHostLoadsFrenchBeforeThePage()
    {
        TestDataFolder folder;
        AppProcess app(folder.path());
        app.environment().insert("LC_ALL", "fr_FR.UTF-8");
        QVERIFY(app.start());
        QVERIFY2(app.waitForLog("main page loaded", 30000), qPrintable(app.log().join('\n')));
        const QStringList log = app.log();
        const int catalogue = log.indexOf(QRegularExpression("^translator brinholt empty \\? false$"));
        QVERIFY2(catalogue >= 0, qPrintable(log.join('\n')));
        QVERIFY(catalogue < log.indexOf(QRegularExpression(".*main page loaded.*")));
        QVERIFY(log.contains("translator qt empty ? false"));
        QVERIFY(log.contains("translator qtbase empty ? false"));
        QVERIFY(app.stop(SIGTERM, 20000));
        QSettings ini(folder.filePath("brinholt.ini"), QSettings::IniFormat);
        QCOMPARE(ini.value("language").toInt(), 1);
        QCOMPARE(ini.value("formatMMDD").toInt(), 1);
    }

    void savedGeometryIsUsedOnTheNextStart()
    {
        TestDataFolder folder;
        {
            QSettings ini(folder.filePath("brinholt.ini"), QSettings::IniFormat);
            ini.setValue("language", 0);
            ini.setValue("windowWidth", 640);
            ini.setValue("windowHeight", 480);
            ini.setValue("windowX", 33);
            ini.setValue("windowY", 44);
        }
        AppProcess app(folder.path());
        QVERIFY(app.start());
        QVERIFY2(app.waitForLog("windows size 640 480", 30000), qPrintable(app.log().join('\n')));
        QVERIFY(app.stop(SIGTERM, 20000));
        QSettings ini(folder.filePath("brinholt.ini"), QSettings::IniFormat);
        QCOMPARE(ini.value("windowWidth").toInt(), 640);
        QCOMPARE(ini.value("windowHeight").toInt(), 480);
    }

    void garbageSettingsFileStillStarts()
    {
        TestDataFolder folder;
        {
            QFile file(folder.filePath("brinholt.ini"));
            QVERIFY(file.open(QIODevice::WriteOnly));
            const char garbage[] = "\x00\xff[[[\nlanguage=\x80\nwindowWidth=wide\n";
            file.write(garbage, sizeof garbage - 1);
        }
        AppProcess app(folder.path());
        QVERIFY(app.start());
        QVERIFY2(app.waitForLog("main page loaded", 30000), qPrintable(app.log().join('\n')));
        QVERIFY(app.stop(SIGTERM, 20000));
        QCOMPARE(app.process().exitCode(), 0);
        QSettings ini(folder.filePath("brinholt.ini"), QSettings::IniFormat);
        QCOMPARE(ini.value("version").toString(), QStringLiteral("3.0.0"));
        QVERIFY(ini.contains("formatMMDD"));
    }

    void logFileThatIsNotADatabaseStillStarts()
    {
        TestDataFolder folder;
        {
            QFile file(folder.filePath("brinholt.db"));
            QVERIFY(file.open(QIODevice::WriteOnly));
            file.write(QByteArray(2048, 'z'));
        }
        AppProcess app(folder.path());
        QVERIFY(app.start());
        QVERIFY2(app.waitForLog("main page loaded", 30000), qPrintable(app.log().join('\n')));
        QVERIFY(app.stop(SIGTERM, 20000));
        QCOMPARE(app.process().exitCode(), 0);
    }
};

QTEST_MAIN(TestStartStop)
#include "tst_startstop.moc"
