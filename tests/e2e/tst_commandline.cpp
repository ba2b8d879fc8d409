// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/support/AppProcess.h"
#include "tests/support/Columns.h"

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QSettings>
#include <QtCore/QTemporaryDir>
#include <QtGui/QImage>
#include <QtSql/QSqlDatabase>
#include <QtSql/QSqlQuery>
#include <QtTest/QtTest>

// The command line of the real executable: help, version, and exports without a window.
class TestCommandLine : public QObject
{
    Q_OBJECT

private:
    static constexpr qint64 Newest = 1793887402;

    // A log of the application's own form, with 30 rows in BARO30M, made beside the copy.
    static void prepareLog(const QString& folder)
    {
        {
            QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("prepare"));
            db.setDatabaseName(QDir(folder).filePath(QStringLiteral("brinholt.db")));
            QVERIFY(db.open());
            QSqlQuery query(db);
            for (const char* name : {"BARO30M", "BARO3H", "BARO6H", "BAR12H", "BARO1D", "BARO2D", "BARO4D",
                                     "BARO8D", "BAR16D"})
                QVERIFY(query.exec(QStringLiteral("CREATE TABLE %1 (TIME INTEGER primary key, LON FLOAT, LAT FLOAT, "
                                                  "COG FLOAT, SOG FLOAT, PRE FLOAT, ELE FLOAT, OFS FLOAT)")
                                           .arg(QLatin1String(name))));
            for (int i = 0; i < 30; ++i)
                QVERIFY(query.exec(QStringLiteral("INSERT INTO BARO30M VALUES (%1, -4.5, 48.25, 90.0, 5.5, %2, 0, 0)")
                                           .arg(Newest - 2 * i)
                                           .arg(1012.5 - i * 0.1)));
            db.close();
        }
        QSqlDatabase::removeDatabase(QStringLiteral("prepare"));
    }

    struct Run
    {
        int status = -1;
        QString output;
    };

    static Run run(const QString& folder, const QStringList& arguments)
    {
        AppProcess app(folder);
        Run result;
        if (!app.start(arguments))
            return result;
        if (!app.process().waitForFinished(60000))
            return result;
        result.status = app.process().exitCode();
        result.output = QString::fromLocal8Bit(app.process().readAll());
        return result;
    }

private slots:
    void versionAndHelpNeedNoWindow()
    {
        QTemporaryDir folder;
        Run version = run(folder.path(), {QStringLiteral("--version")});
        QCOMPARE(version.status, 0);
        QVERIFY2(version.output.contains(QStringLiteral("Brinholt 3.0.0\n")), qPrintable(version.output));
        QVERIFY2(version.output.contains(QStringLiteral("GNU GPL version 3 or later")), qPrintable(version.output));
        Run help = run(folder.path(), {QStringLiteral("--help")});
        QCOMPARE(help.status, 0);
        QVERIFY(help.output.contains(QStringLiteral("--export TABLE FILE")));
        // No page was loaded: the window never opened.
        QVERIFY(!help.output.contains(QStringLiteral("BackEnd created")));
    }

    void exportsByExtension_data()
    {
        Columns::add<QString, QString>("table", "name");
        QTest::newRow("CSV by name") << QStringLiteral("BARO30M") << QStringLiteral("out.csv");
        QTest::newRow("GPX by number") << QStringLiteral("0") << QStringLiteral("out.gpx");
        QTest::newRow("PNG in any case") << QStringLiteral("baro30m") << QStringLiteral("out.png");
        QTest::newRow("PDF") << QStringLiteral("BARO30M") << QStringLiteral("out.PDF");
    }

    void exportsByExtension()
    {
        QFETCH(QString, table);
        QFETCH(QString, name);
        QTemporaryDir folder;
        QTemporaryDir elsewhere;
        prepareLog(folder.path());
        const QString file = elsewhere.filePath(name);
        const Run result = run(folder.path(), {QStringLiteral("--export"), table, file});
        QVERIFY2(result.status == 0, qPrintable(result.output));
        QFile written(file);
        QVERIFY(written.open(QIODevice::ReadOnly));
        const QByteArray bytes = written.readAll();
        const QString suffix = QFileInfo(file).suffix().toLower();
        if (suffix == QStringLiteral("csv")) {
            QCOMPARE(bytes.count('\n'), 31);
            QVERIFY(bytes.startsWith("Date (UTC),Latitude,Longitude,"));
            QVERIFY(bytes.contains(",1012.5,1012.5,"));
        } else if (suffix == QStringLiteral("gpx")) {
            QCOMPARE(bytes.count("<trkpt"), 30);
        } else if (suffix == QStringLiteral("png")) {
            QCOMPARE(QImage::fromData(bytes).size(), QSize(1600, 1000));
        } else {
            QVERIFY(bytes.startsWith("%PDF-"));
        }
        // The log stayed in the data folder and nothing was left in the other.
        QCOMPARE(QDir(elsewhere.path()).entryList(QDir::Files), QStringList{name});
    }

    void frenchSettingsGiveTheFrenchHeader()
    {
        QTemporaryDir folder;
        prepareLog(folder.path());
        {
            QSettings ini(QDir(folder.path()).filePath(QStringLiteral("brinholt.ini")), QSettings::IniFormat);
            ini.setValue(QStringLiteral("language"), 1);
        }
        const QString file = QDir(folder.path()).filePath(QStringLiteral("fr.csv"));
        QCOMPARE(run(folder.path(), {QStringLiteral("--export"), QStringLiteral("BARO30M"), file}).status, 0);
        QFile written(file);
        QVERIFY(written.open(QIODevice::ReadOnly));
        const QByteArray header = written.readLine();
        QVERIFY2(header.startsWith("Date (UTC);Latitude;Longitude;Pression"), header.constData());
        QVERIFY(written.readLine().contains(";1012,5;1012,5;"));
    }

    void badArgumentsSayWhyAndFail_data()
    {
        Columns::add<QStringList, int, QString>("arguments", "status", "message");
        QTest::newRow("unknown table") << QStringList{"--export", "BARO5H", "/tmp/x.csv"} << 2
                                       << QStringLiteral("Unknown table BARO5H");
        QTest::newRow("table number out of range") << QStringList{"--export", "9", "/tmp/x.csv"} << 2
                                                   << QStringLiteral("Unknown table 9");
        QTest::newRow("unknown extension") << QStringList{"--export", "BARO3H", "/tmp/x.xls"} << 2
                                           << QStringLiteral("Unknown extension");
        QTest::newRow("no file name") << QStringList{"--export", "BARO3H"} << 2
                                      << QStringLiteral("--export needs a table and a file name");
        QTest::newRow("unwritable file") << QStringList{"--export", "BARO3H", "/proc/brinholt/x.csv"} << 1
                                         << QStringLiteral("Cannot write /proc/brinholt/x.csv");
    }

    void badArgumentsSayWhyAndFail()
    {
        QFETCH(QStringList, arguments);
        QFETCH(int, status);
        QFETCH(QString, message);
        QTemporaryDir folder;
        const Run result = run(folder.path(), arguments);
        QCOMPARE(result.status, status);
        QVERIFY2(result.output.contains(message), qPrintable(result.output));
    }
};

QTEST_GUILESS_MAIN(TestCommandLine)
#include "tst_commandline.moc"
