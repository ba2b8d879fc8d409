// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/support/AppProcess.h"
#include "tests/support/HttpClient.h"
#include "tests/support/NetworkNamespace.h"

#include <QtCore/QDir>
#include <QtCore/QElapsedTimer>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtCore/QProcess>
#include <QtCore/QRegularExpression>
#include <QtCore/QSettings>
#include <QtCore/QStandardPaths>
#include <QtCore/QTemporaryDir>
#include <QtNetwork/QTcpServer>
#include <QtNetwork/QTcpSocket>
#include <QtTest/QtTest>

#include <csignal>

// The watch page in a real browser: Debian's Chromium, headless, against the real
// executable fed by the device simulator over a log of sixteen days, both inside a private
// network namespace (the browser reaches out to the internet by itself otherwise). At the
// size of a phone and of a tablet, light, dark and at night, in English and in French, the
// document shows the application's values and its warning strip; the screenshots are kept
// in <build>/screenshots for a person to look at.
class TestWatchPageE2e : public QObject
{
    Q_OBJECT

private:
    static constexpr quint16 Port = 8088;

    // The data folder, the simulated device and the application.
    struct Boat
    {
        QTemporaryDir folder;
        QProcess simulator;
        std::unique_ptr<AppProcess> app;

        ~Boat()
        {
            // Only while it runs: a process that has ended has no id, and a signal to none
            // goes to the whole group.
            if (app && app->process().state() != QProcess::NotRunning)
                app->stop(SIGTERM, 20000);
            simulator.closeWriteChannel();
            if (!simulator.waitForFinished(5000))
                simulator.kill();
            simulator.waitForFinished(5000);
        }
    };

    static QString tool(const char* name) { return QDir(QStringLiteral(BRINHOLT_BINARY_DIR)).filePath(QLatin1String(name)); }

    static QByteArray withChecksum(const QByteArray& body)
    {
        char sum = 0;
        for (const char c : body.mid(1))
            sum ^= c;
        return body + '*' + QByteArray::number(uchar(sum), 16).rightJustified(2, '0').toUpper();
    }

    // A log that ends in a low already coming in, settings that read the simulator, and the
    // watch page on; `extra` on top.
    static bool launch(Boat& boat, const QVariantMap& extra)
    {
        const QString device = boat.folder.filePath(QStringLiteral("skerry"));
        QProcess demolog;
        demolog.start(tool("brinholt-demolog"), {boat.folder.path(), QStringLiteral("--scenario"),
                                                 QStringLiteral("depression"), QStringLiteral("--serial-port"), device});
        if (!demolog.waitForFinished(60000) || demolog.exitCode() != 0)
            return false;
        {
            QSettings ini(boat.folder.filePath(QStringLiteral("brinholt.ini")), QSettings::IniFormat);
            ini.setValue(QStringLiteral("SettingUsePos"), 1);
            ini.setValue(QStringLiteral("SettingPosSource"), 2);
            for (auto it = extra.cbegin(); it != extra.cend(); ++it)
                ini.setValue(it.key(), it.value());
        }
        boat.simulator.setProcessChannelMode(QProcess::MergedChannels);
        boat.simulator.start(tool("brinholt-devicesim"), {QStringLiteral("--link"), device, QStringLiteral("--scenario"),
                                                          QStringLiteral("depression")});
        QElapsedTimer timer;
        timer.start();
        while (!QFileInfo::exists(device) && timer.elapsed() < 10000)
            QTest::qWait(50);
        boat.app = std::make_unique<AppProcess>(boat.folder.path());
        return QFileInfo::exists(device) && boat.app->start();
    }

    static QJsonObject now()
    {
        return QJsonDocument::fromJson(HttpClient::get(Port, "/api/now").body).object();
    }

    static QJsonObject display(const QJsonObject& state) { return state.value("display").toObject(); }

    // One run of the browser; `mode` is "--dump-dom" or "--screenshot=<file>".
    static QByteArray browse(const QString& url, const QSize& size, const QString& mode, int budgetMs = 5000)
    {
        QTemporaryDir profile;
        QProcess browser;
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.insert(QStringLiteral("HOME"), profile.path());
        browser.setProcessEnvironment(env);
        browser.start(QStringLiteral("chromium"),
                      {QStringLiteral("--headless"), QStringLiteral("--no-sandbox"), QStringLiteral("--disable-gpu"),
                       QStringLiteral("--disable-quic"), QStringLiteral("--no-first-run"),
                       QStringLiteral("--disable-background-networking"), QStringLiteral("--disable-component-update"),
                       QStringLiteral("--disable-sync"), QStringLiteral("--user-data-dir=") + profile.filePath("data"),
                       QStringLiteral("--hide-scrollbars"), QStringLiteral("--force-device-scale-factor=2"),
                       QStringLiteral("--window-size=%1,%2").arg(size.width()).arg(size.height()),
                       QStringLiteral("--virtual-time-budget=%1").arg(budgetMs), mode, url});
        // The test's own event loop turns meanwhile: a server of the test's may be the one asked.
        QElapsedTimer timer;
        timer.start();
        while (!browser.waitForFinished(50) && timer.elapsed() < 60000)
            QCoreApplication::processEvents();
        if (browser.state() != QProcess::NotRunning) {
            browser.kill();
            browser.waitForFinished(5000);
        }
        return browser.readAllStandardOutput();
    }

    // The text of the element with this id, as the document holds it.
    static QString textOf(const QByteArray& dom, const char* id)
    {
        const QRegularExpression element(QStringLiteral("id=\"%1\"[^>]*>([^<]*)<").arg(QLatin1String(id)));
        const QString text = element.match(QString::fromUtf8(dom)).captured(1);
        return QString(text).replace(QStringLiteral("&amp;"), QStringLiteral("&"));
    }

    static QString tagOf(const QByteArray& dom, const char* id)
    {
        const QRegularExpression tag(QStringLiteral("<[a-z]+ id=\"%1\"([^>]*)>").arg(QLatin1String(id)));
        return tag.match(QString::fromUtf8(dom)).captured(1);
    }

    static QString screenshots()
    {
        const QString folder = QDir(QStringLiteral(BRINHOLT_BINARY_DIR)).filePath(QStringLiteral("screenshots"));
        QDir().mkpath(folder);
        return folder;
    }

private slots:
    void initTestCase()
    {
        QVERIFY2(!QStandardPaths::findExecutable(QStringLiteral("chromium")).isEmpty(),
                 "chromium is missing: scripts/install-deps installs it");
    }

    void offByDefaultNothingListens()
    {
        BRINHOLT_IN_PRIVATE_NETWORK(QString());
        QTemporaryDir folder;
        AppProcess app(folder.path());
        QVERIFY(app.start());
        QVERIFY2(app.waitForLog(QStringLiteral("dataSource created"), 30000), qPrintable(app.log().join('\n')));
        QTest::qWait(500);
        QCOMPARE(HttpClient::connectFrom(Port), -1);
        QVERIFY(app.stop(SIGTERM, 20000));
        QSettings ini(folder.filePath(QStringLiteral("brinholt.ini")), QSettings::IniFormat);
        QVERIFY(!ini.contains(QStringLiteral("watchPageOn")) || ini.value(QStringLiteral("watchPageOn")).toInt() == 0);
    }

    void thePageOnAPhoneAndATablet_data()
    {
        QTest::addColumn<int>("theme");
        QTest::addColumn<int>("language");
        QTest::addColumn<double>("alarmFall3h");
        QTest::addColumn<int>("level");
        QTest::addColumn<QString>("query");
        QTest::addColumn<QString>("look");
        // The history falls 4.4 hPa in its last three hours: past the warning's 3.6 hPa, and
        // past the alarm where its bound is lowered below that.
        QTest::newRow("light-en") << 0 << 0 << 6.0 << 1 << QString() << QStringLiteral("light");
        QTest::newRow("dark-fr") << 1 << 1 << 3.0 << 2 << QString() << QStringLiteral("dark");
        QTest::newRow("night-en") << 1 << 0 << 6.0 << 1 << QStringLiteral("?night=1") << QStringLiteral("night");
    }

    void thePageOnAPhoneAndATablet()
    {
        BRINHOLT_IN_PRIVATE_NETWORK(QString());
        QFETCH(int, theme);
        QFETCH(int, language);
        QFETCH(double, alarmFall3h);
        QFETCH(int, level);
        QFETCH(QString, query);
        QFETCH(QString, look);
        Boat boat;
        QVERIFY(launch(boat, {{"watchPageOn", 1}, {"watchPagePosition", 1}, {"theme", theme}, {"language", language},
                              {"alarmFall3h", alarmFall3h}}));
        QTRY_VERIFY_WITH_TIMEOUT(now().value("warning").toObject().value("level").toInt() == level, 90000);
        // A fix, as a GPS on the serial line gives it.
        const QByteArray rmc = withChecksum("$GPRMC,120000.00,A,4712.345,N,00256.789,W,6.2,245.0,141123,,,A");
        QTRY_VERIFY_WITH_TIMEOUT((boat.simulator.write("send " + rmc + "\n"),
                                  !display(now()).value("position").toString().isEmpty()),
                                 20000);

        const QString url = QStringLiteral("http://127.0.0.1:%1/%2").arg(Port).arg(query);
        for (const auto& [name, size] : {std::pair<const char*, QSize>{"phone", QSize(390, 844)},
                                         std::pair<const char*, QSize>{"tablet", QSize(820, 1180)}}) {
            const QJsonObject before = now();
            const QByteArray dom = browse(url, size, QStringLiteral("--dump-dom"));
            const QJsonObject after = now();
            QVERIFY2(dom.contains("id=\"pressure\""), dom.left(400).constData());
            // The document shows a tick that the application published while it was loaded.
            const auto published = [&](const char* id, const char* key) {
                const QString shown = textOf(dom, id);
                const bool found = shown == display(before).value(QLatin1String(key)).toString()
                        || shown == display(after).value(QLatin1String(key)).toString();
                if (!found)
                    qWarning().noquote() << id << "shows" << shown;
                return found;
            };
            QVERIFY(published("pressure", "pressure"));
            QVERIFY(published("level", "level"));
            QVERIFY(published("tendency", "tendency"));
            QVERIFY(published("stripLevel", "warning"));
            QVERIFY(published("stripDetail", "warningDetail"));
            QVERIFY(textOf(dom, "position").startsWith(display(after).value("position").toString()));
            QVERIFY(dom.contains(language == 0 ? "<html lang=\"en\"" : "<html lang=\"fr\""));
            QVERIFY2(dom.contains(QStringLiteral("<body class=\"%1\">").arg(look).toUtf8()), qPrintable(look));
            // The warning strip, in the level's colours.
            const QString strip = tagOf(dom, "strip");
            QVERIFY2(strip.contains(QStringLiteral("data-level=\"%1\"").arg(level)), qPrintable(strip));
            QVERIFY2(strip.contains(level == 2 ? QStringLiteral("strip shown alarm") : QStringLiteral("strip shown\"")),
                     qPrintable(strip));
            // The chart of the first span came from /api/table/0 and has its curve.
            QVERIFY2(!tagOf(dom, "chart").contains(QStringLiteral("data-sequence=\"0\"")), qPrintable(tagOf(dom, "chart")));
            QVERIFY(dom.contains("<polyline"));
            QVERIFY(dom.contains(language == 0 ? ">16d</button>" : ">16j</button>"));
            QVERIFY(dom.contains(language == 0 ? "Sound alarms on this phone" : "Faire sonner les alarmes sur ce téléphone"));
            QVERIFY(!textOf(dom, "stale").isEmpty());
            QVERIFY(!tagOf(dom, "stale").contains(QStringLiteral("shown")));

            const QString picture = QDir(screenshots()).filePath(QStringLiteral("watch-%1-%2.png").arg(look, QLatin1String(name)));
            QFile::remove(picture);
            browse(url, size, QStringLiteral("--screenshot=") + picture);
            QVERIFY2(QFileInfo(picture).size() > 10000, qPrintable(picture));
        }
    }

    // The page as Brinholt served it, after Brinholt has gone: the page's own questions
    // find nobody, and it says so.
    void whenBrinholtStopsThePageSaysSo()
    {
        BRINHOLT_IN_PRIVATE_NETWORK(QString());
        Boat boat;
        QVERIFY(launch(boat, {{"watchPageOn", 1}, {"language", 0}}));
        QTRY_VERIFY_WITH_TIMEOUT(!display(now()).value("pressure").toString().isEmpty(), 60000);
        const QByteArray served = HttpClient::get(Port, "/").body;
        QVERIFY(served.contains("Brinholt has stopped answering"));
        QVERIFY(boat.app->stop(SIGKILL, 10000));

        // In its place, on its port, only the page it served: every question is met with a
        // closed connection.
        QTcpServer stand;
        QVERIFY(stand.listen(QHostAddress::LocalHost, Port));
        connect(&stand, &QTcpServer::newConnection, &stand, [&] {
            while (QTcpSocket* socket = stand.nextPendingConnection()) {
                connect(socket, &QTcpSocket::readyRead, socket, [socket, served] {
                    if (socket->readAll().startsWith("GET / ")) {
                        socket->write("HTTP/1.1 200 OK\r\nContent-Type: text/html; charset=utf-8\r\nContent-Length: "
                                      + QByteArray::number(served.size()) + "\r\nConnection: close\r\n\r\n" + served);
                        socket->disconnectFromHost();
                    } else {
                        socket->abort();
                    }
                });
            }
        });
        // Three ticks and a half of the page's own time go by without an answer.
        const QByteArray dom = browse(QStringLiteral("http://127.0.0.1:%1/").arg(Port), QSize(390, 844),
                                      QStringLiteral("--dump-dom"), 12000);
        QVERIFY2(tagOf(dom, "stale").contains(QStringLiteral("stale shown")), qPrintable(tagOf(dom, "stale")));
        QCOMPARE(textOf(dom, "stale"), QStringLiteral("Brinholt has stopped answering"));
        // What it last knew stays, greyed, under the notice.
        QVERIFY(tagOf(dom, "values").contains(QStringLiteral("stale-values")));
        QVERIFY(!textOf(dom, "pressure").isEmpty());
    }
};

QTEST_MAIN(TestWatchPageE2e)
#include "tst_watchpage_e2e.moc"
