// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/support/AppProcess.h"
#include "tests/support/TestDataFolder.h"

#include <QtCore/QProcess>
#include <QtCore/QSettings>
#include <QtSql/QSqlDatabase>
#include <QtSql/QSqlQuery>
#include <QtTest/QtTest>

#include <csignal>

// The real executable reading the simulated pressure device on a pseudo-terminal, and
// logging what it sends.
class TestSerialDeviceE2E : public QObject
{
    Q_OBJECT

private:
    static QList<double> pressures(const QString& path, const QString& table)
    {
        QList<double> values;
        {
            QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("E2E_SERIAL"));
            db.setDatabaseName(path);
            if (db.open()) {
                QSqlQuery query(db);
                query.exec(QStringLiteral("SELECT PRE FROM %1 ORDER BY TIME").arg(table));
                while (query.next())
                    values << query.value(0).toDouble();
            }
        }
        QSqlDatabase::removeDatabase(QStringLiteral("E2E_SERIAL"));
        return values;
    }

private slots:
    void simulatedDevicePressureIsLogged()
    {
        TestDataFolder folder;
        QProcess device;
        device.start(QStringLiteral(BRINHOLT_BINARY_DIR "/brinholt-devicesim"),
                     {QStringLiteral("--interval"), QStringLiteral("500"), QStringLiteral("--seed"),
                      QStringLiteral("5"), QStringLiteral("--pressure"), QStringLiteral("1005.0"),
                      QStringLiteral("--link"), folder.filePath(QStringLiteral("skerry"))});
        QVERIFY(device.waitForStarted(5000));
        QVERIFY(device.waitForReadyRead(5000));
        const QString path = QString::fromUtf8(device.readLine()).trimmed();
        QCOMPARE(path, folder.filePath(QStringLiteral("skerry")));

        {
            QSettings ini(folder.filePath(QStringLiteral("brinholt.ini")), QSettings::IniFormat);
            ini.setValue(QStringLiteral("language"), 0);
            ini.setValue(QStringLiteral("SettingSerialPort"), path);
            ini.setValue(QStringLiteral("SettingUseSerial"), 1);
        }

        AppProcess app(folder.path());
        QVERIFY(app.start());
        QVERIFY2(app.waitForLog(QStringLiteral("serial port started"), 30000), qPrintable(app.log().join('\n')));
        QTest::qWait(8000);
        QVERIFY(app.stop(SIGTERM, 30000));
        device.write("quit\n");
        device.waitForFinished(3000);

        const QStringList log = app.log();
        QVERIFY2(log.filter(QStringLiteral("opened successfully")).size() == 1, qPrintable(log.join('\n')));
        QCOMPARE(log.filter(QStringLiteral("error occured on port")).size(), 0);

        const QString db = folder.filePath(QStringLiteral("brinholt.db"));
        const QList<double> recent = pressures(db, QStringLiteral("BARO30M"));
        QVERIFY2(recent.size() >= 2, qPrintable(QString::number(recent.size())));
        for (double value : recent)
            QVERIFY2(value > 990.0 && value < 1020.0, qPrintable(QString::number(value)));
        // The first tick with a reading writes every table.
        QCOMPARE(pressures(db, QStringLiteral("BAR16D")).size(), 1);
        QVERIFY(qAbs(pressures(db, QStringLiteral("BAR16D")).first() - recent.first()) < 1e-9);
    }
};

QTEST_MAIN(TestSerialDeviceE2E)
#include "tst_serialdevice_e2e.moc"
