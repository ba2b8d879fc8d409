// SPDX-License-Identifier: GPL-3.0-or-later
#include "LogTables.h"
#include "Pixels.h"
#include "Screenshots.h"
#include "tests/support/AppProcess.h"
#include "tests/support/Columns.h"
#include "tests/support/TestDataFolder.h"

#include <QtCore/QDateTime>
#include <QtCore/QDir>
#include <QtCore/QSettings>
#include <QtCore/QTimer>
#include <QtGui/QGuiApplication>
#include <QtGui/QImage>
#include <QtGui/QPixmap>
#include <QtGui/QScreen>
#include <QtNetwork/QUdpSocket>
#include <QtSql/QSqlDatabase>
#include <QtSql/QSqlQuery>
#include <QtTest/QtTest>

#include <cmath>
#include <csignal>

namespace {

constexpr int WindowWidth = 1200;
constexpr int WindowHeight = 760;

// The weather of the pictures: pressure climbing by two and a half hectopascals over the
// last three hours, with a swell on it; `age` in seconds before now.
double weather(qint64 age)
{
    return 1011.6 - age * (2.5 / 10800.0) + 0.6 * std::sin(age / 360.0);
}

QByteArray sentence(const QByteArray& body)
{
    quint8 sum = 0;
    for (char c : body)
        sum ^= quint8(c);
    return "$" + body + "*" + QByteArray::number(sum, 16).toUpper().rightJustified(2, '0') + "\r\n";
}

// A log as the application writes it, reaching up to the present second.
bool prepareLog(const QString& path, qint64 now)
{
    bool ok = true;
    {
        QSqlDatabase db = QSqlDatabase::addDatabase("QSQLITE", "SCREENS");
        db.setDatabaseName(path);
        ok = db.open();
        QSqlQuery query(db);
        db.transaction();
        for (int i = 0; ok && i < LogTables::Names.size(); ++i) {
            ok = query.exec(QString("CREATE TABLE %1 (TIME INTEGER primary key, LON FLOAT, LAT FLOAT, COG FLOAT, "
                                    "SOG FLOAT, PRE FLOAT, ELE FLOAT, OFS FLOAT)")
                                    .arg(LogTables::Names.at(i)));
            const qint64 span = LogTables::reach(i);
            const qint64 first = now - qMin<qint64>(span, 3 * 3600 + 600);
            for (qint64 t = now - 2; ok && t > first; t -= LogTables::Intervals.at(i)) {
                ok = query.exec(QString("INSERT INTO %1 VALUES (%2, -4.504, 48.258, 215.0, 6.2, %3, 0, 0)")
                                        .arg(LogTables::Names.at(i))
                                        .arg(t)
                                        .arg(weather(now - t), 0, 'f', 3));
            }
        }
        db.commit();
        db.close();
    }
    QSqlDatabase::removeDatabase("SCREENS");
    return ok;
}

} // namespace

// The real executable on an X display, fed by a device on UDP, photographed in both themes,
// in both languages and at three sizes.
class TestGraphScreens : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        BRINHOLT_SCREENSHOTS_NEED_X();
    }

    // A size of zero is the first start: no stored geometry, 70% of the screen, centred.
    void graphPage_data()
    {
        Columns::add<int, int, QSize, QString, QColor>("theme", "language", "size", "file", "background");
        const QSize wide(WindowWidth, WindowHeight);
        const QSize narrow(420, 700);
        QTest::newRow("light") << 0 << 0 << wide << "graph-light.png" << QColor("#FAFAFA");
        QTest::newRow("dark") << 1 << 0 << wide << "graph-dark.png" << QColor("#303030");
        QTest::newRow("light, French, first start") << 0 << 1 << QSize() << "graph-first-fr-light.png" << QColor("#FAFAFA");
        QTest::newRow("dark, first start") << 1 << 0 << QSize() << "graph-first-dark.png" << QColor("#303030");
        QTest::newRow("light, narrow") << 0 << 0 << narrow << "graph-narrow-light.png" << QColor("#FAFAFA");
        QTest::newRow("dark, French, narrow") << 1 << 1 << narrow << "graph-narrow-fr-dark.png" << QColor("#303030");
    }

    void graphPage()
    {
        QFETCH(int, theme);
        QFETCH(int, language);
        QFETCH(QSize, size);
        QFETCH(QString, file);
        QFETCH(QColor, background);

        QScreen* screen = QGuiApplication::primaryScreen();
        const QRect window = size.isValid()
                ? QRect(QPoint(0, 0), size)
                : QRect(QPoint(int(screen->size().width() / 2 - screen->size().width() * 0.35),
                               int(screen->size().height() / 2 - screen->size().height() * 0.35)),
                        QSize(int(screen->size().width() * 0.7), int(screen->size().height() * 0.7)));

        TestDataFolder folder;
        const qint64 now = QDateTime::currentSecsSinceEpoch();
        QVERIFY(prepareLog(folder.filePath("brinholt.db"), now));

        // A free port for the device's sentences, on this machine only.
        quint16 port = 0;
        {
            QUdpSocket probe;
            QVERIFY(probe.bind(QHostAddress(QHostAddress::LocalHost), 0));
            port = probe.localPort();
        }
        {
            QSettings ini(folder.filePath("brinholt.ini"), QSettings::IniFormat);
            ini.setValue("language", language);
            ini.setValue("formatMMDD", 0);
            ini.setValue("theme", theme);
            if (size.isValid()) {
                ini.setValue("windowWidth", size.width());
                ini.setValue("windowHeight", size.height());
                ini.setValue("windowX", 0);
                ini.setValue("windowY", 0);
            }
            ini.setValue("SettingUseUdp", 1);
            ini.setValue("SettingUdpPort", port);
        }

        QUdpSocket device;
        QTimer feed;
        QObject::connect(&feed, &QTimer::timeout, [&device, port] {
            const QDateTime utc = QDateTime::currentDateTimeUtc();
            const double hPa = weather(0);
            device.writeDatagram(sentence("IIMMB," + QByteArray::number(hPa * 0.02953, 'f', 4) + ",I,"
                                          + QByteArray::number(hPa / 1000.0, 'f', 5) + ",B"),
                                 QHostAddress::LocalHost, port);
            device.writeDatagram(sentence("GPRMC," + utc.toString("hhmmss.00").toLatin1()
                                          + ",A,4815.480,N,00430.240,W,6.2,215.0,"
                                          + utc.toString("ddMMyy").toLatin1() + ",,,A"),
                                 QHostAddress::LocalHost, port);
        });
        feed.start(500);

        AppProcess app(folder.path());
        app.environment().insert("QT_QPA_PLATFORM", "xcb");
        // Drawn with OpenGL (Mesa under Xvfb): the software scene graph leaves out the
        // Material buttons' backgrounds, and the pictures are to show the desktop's look.
        app.environment().remove("QT_QUICK_BACKEND");
        app.environment().insert("LC_ALL", "en_GB.UTF-8");
        QVERIFY(app.start());
        QVERIFY2(app.waitForLog("main page loaded", 30000), qPrintable(app.log().join('\n')));
        // Two ticks: the pressure and the chart are up.
        QTest::qWait(5000);

        const QImage shot =
                screen->grabWindow(0, window.x(), window.y(), window.width(), window.height()).toImage();
        QVERIFY(!shot.isNull());
        QVERIFY(Screenshots::save(shot, file));

        QVERIFY(app.stop(SIGTERM, 20000));
        QCOMPARE(app.process().exitCode(), 0);
        QStringList warnings;
        for (const QString& line : app.log()) {
            if (line.contains("qrc:/") || line.contains("QML") || line.contains("Error") || line.contains("TypeError"))
                warnings << line;
        }
        QVERIFY2(warnings.isEmpty(), qPrintable(warnings.join('\n')));

        // The page's own background, the banner above it, the curve and the pressure in red.
        const int banner = window.width() * 218 / 1800;
        QCOMPARE(shot.pixelColor(3, banner + 4), background);
        QVERIFY(shot.pixelColor(3, 3).blue() > shot.pixelColor(3, 3).red());
        const int red = Pixels::near(shot, QColor("#E63219"), 40);
        QVERIFY2(red > 2000, qPrintable(QString::number(red)));
    }
};

QTEST_MAIN(TestGraphScreens)
#include "tst_graphscreens.moc"
