// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/support/FreePort.h"
#include "tests/support/HttpClient.h"
#include "tests/support/LogFixture.h"

#include "app/WatchJson.h"
#include "app/WatchPage.h"
#include "app/WatchRoutes.h"
#include "log/DataSource.h"
#include "util/StatePublisher.h"

#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtCore/QSettings>
#include <QtCore/QTemporaryDir>
#include <QtNetwork/QTcpServer>
#include <QtTest/QtTest>

#include <atomic>
#include <cmath>
#include <future>
#include <vector>

#include <sys/socket.h>
#include <unistd.h>

// The watch page's server on loopback, over a published state of the test's and a feed
// whose log is a stand-in that counts what it is asked: every path and its type, the
// methods refused, the paths that would name files, the state as JSON, the sharing of a
// span's chart between phones, and the status line.
class TestWatchPage : public QObject
{
    Q_OBJECT

private:
    StatePublisher publisher;
    std::atomic<int> spanCalls{0};
    std::atomic<int> barogramCalls{0};
    std::atomic<bool> lastBarogramHadFix{true};
    std::unique_ptr<WatchPage> page;
    quint16 port = 0;

    WatchFeed::Sources sources()
    {
        WatchFeed::Sources made;
        made.span = [this](int chartNb) {
            ++spanCalls;
            ChartSpan span;
            span.chartNb = chartNb;
            span.now = 1700000000;
            span.min = 1010.0;
            span.max = 1014.0;
            span.secondsPerUnit = chartNb == 0 ? 60.0 : chartNb <= 5 ? 3600.0 : 86400.0;
            span.series = {{QPointF(0.0, 1013.25), QPointF(-1.5, 1012.5)}, {QPointF(-9.0, 1011.0)}};
            return span;
        };
        made.barogram = [this](int, bool pdf, bool withLastFix) {
            ++barogramCalls;
            lastBarogramHadFix = withLastFix;
            return pdf ? QByteArray("%PDF-1.4 drawn") : QByteArray("\x89PNG\r\n\x1a\n drawn");
        };
        made.texts = &WatchDocument::texts;
        return made;
    }

    static ShownState sample()
    {
        ShownState state;
        state.tickTime = 1700000000123;
        state.date = QStringLiteral("Tue 14 Nov 2023 22:13:20");
        state.position = QStringLiteral("47°12.345'N 002°56.789'W");
        state.cogsog = QStringLiteral("COG 245° T - SOG 6.2 kts");
        state.pressureText = QStringLiteral("1013.3 hPa");
        state.rawPressure = 1012.9;
        state.shownPressureHpa = 1013.25;
        state.shownPressure = 1013.25;
        state.unit = 1;
        state.unitText = QStringLiteral("hPa");
        state.levelText = QStringLiteral("Sea Level Pressure (QNH)");
        state.source = 1;
        state.sourceText = QStringLiteral("From serial connection");
        state.trend = -3;
        state.change3h = -4.44;
        state.warningLevel = 1;
        state.warningFall3h = 4.44;
        state.warningSince = 1699999000;
        state.warningText = QStringLiteral("Warning: falling quickly");
        state.warningDetail = QStringLiteral("4.4 hPa in 3 h since 22:00");
        state.hasFix = true;
        state.latitude = 47.20575;
        state.longitude = -2.946483;
        state.cog = 245.0;
        state.sog = 6.2;
        state.theme = 1;
        state.language = QStringLiteral("en");
        return state;
    }

    static QJsonObject json(const HttpReply& reply) { return QJsonDocument::fromJson(reply.body).object(); }

private slots:
    void initTestCase()
    {
        // What the language switch sets in the application.
        QLocale::setDefault(QLocale(QStringLiteral("en_US")));
    }

    void init()
    {
        StatePublisher::install(&publisher);
        spanCalls = 0;
        barogramCalls = 0;
        page = std::make_unique<WatchPage>(sources());
        port = FreePort::tcp();
        QVERIFY(port != 0);
        page->apply(true, port, true);
        QCOMPARE(page->server().state(), WatchServer::State::Serving);
        publisher.publish(sample());
    }

    void cleanup()
    {
        page.reset();
        StatePublisher::withdraw(&publisher);
    }

    void everyPathHasItsType_data()
    {
        QTest::addColumn<QByteArray>("path");
        QTest::addColumn<int>("status");
        QTest::addColumn<QByteArray>("type");
        QTest::addColumn<QByteArray>("begins");

        QTest::newRow("the page") << QByteArray("/") << 200 << QByteArray("text/html; charset=utf-8")
                                  << QByteArray("<!-- SPDX");
        QTest::newRow("the state") << QByteArray("/api/now") << 200
                                   << QByteArray("application/json; charset=utf-8") << QByteArray("{");
        QTest::newRow("the first span") << QByteArray("/api/table/0") << 200
                                        << QByteArray("application/json; charset=utf-8") << QByteArray("{");
        QTest::newRow("the last span") << QByteArray("/api/table/8") << 200
                                       << QByteArray("application/json; charset=utf-8") << QByteArray("{");
        QTest::newRow("a barogram as PNG") << QByteArray("/barogram/BARO3H.png") << 200 << QByteArray("image/png")
                                           << QByteArray("\x89PNG");
        QTest::newRow("a barogram as PDF") << QByteArray("/barogram/BAR16D.pdf") << 200
                                           << QByteArray("application/pdf") << QByteArray("%PDF");
        QTest::newRow("the query is no part of the path") << QByteArray("/api/now?x=1") << 200
                                                          << QByteArray("application/json; charset=utf-8")
                                                          << QByteArray("{");
    }

    void everyPathHasItsType()
    {
        QFETCH(QByteArray, path);
        QFETCH(int, status);
        QFETCH(QByteArray, type);
        QFETCH(QByteArray, begins);
        const HttpReply reply = HttpClient::pumping([&] { return HttpClient::get(port, path); });
        QCOMPARE(reply.status, status);
        QCOMPARE(reply.header("Content-Type"), type);
        QCOMPARE(reply.header("Cache-Control"), QByteArray("no-store"));
        QVERIFY2(reply.header("Content-Security-Policy").startsWith("default-src 'none'"), reply.head.constData());
        QVERIFY2(reply.body.startsWith(begins), reply.body.left(80).constData());
    }

    void headGivesTheHeadAlone()
    {
        const HttpReply full = HttpClient::pumping([&] { return HttpClient::get(port, "/"); });
        const HttpReply head = HttpClient::pumping([&] { return HttpClient::get(port, "/", "HEAD"); });
        QCOMPARE(head.status, 200);
        QCOMPARE(head.header("Content-Type"), QByteArray("text/html; charset=utf-8"));
        QCOMPARE(head.header("Content-Length").toInt(), full.body.size());
        QVERIFY(head.body.isEmpty());
    }

    void everyOtherMethodIsRefused_data()
    {
        QTest::addColumn<QByteArray>("method");
        for (const char* method : {"POST", "PUT", "DELETE", "PATCH", "OPTIONS", "TRACE", "PROPFIND"})
            QTest::newRow(method) << QByteArray(method);
    }

    void everyOtherMethodIsRefused()
    {
        QFETCH(QByteArray, method);
        const HttpReply reply = HttpClient::exchange(
                port, method + " /api/now HTTP/1.1\r\nHost: 127.0.0.1\r\nContent-Length: 5\r\n\r\nlevel");
        QCOMPARE(reply.status, 405);
        QCOMPARE(reply.header("Allow"), QByteArray("GET, HEAD"));
        // Nothing was asked of the log or the main thread.
        QCOMPARE(spanCalls.load(), 0);
        QCOMPARE(barogramCalls.load(), 0);
    }

    void noPathNamesAFile_data()
    {
        QTest::addColumn<QByteArray>("path");
        QTest::newRow("parent folders") << QByteArray("/../../etc/passwd");
        QTest::newRow("the file itself") << QByteArray("/etc/passwd");
        QTest::newRow("percent-encoded dots") << QByteArray("/%2e%2e/%2e%2e/etc/passwd");
        QTest::newRow("percent-encoded slashes") << QByteArray("/..%2f..%2fetc%2fpasswd");
        QTest::newRow("encoded twice") << QByteArray("/%252e%252e/%252e%252e/etc/passwd");
        QTest::newRow("overlong UTF-8 dots") << QByteArray("/%c0%ae%c0%ae/%c0%ae%c0%ae/etc/passwd");
        QTest::newRow("backslashes") << QByteArray("/..\\..\\etc\\passwd");
        QTest::newRow("behind a real path") << QByteArray("/api/now/../../etc/passwd");
        QTest::newRow("as a barogram") << QByteArray("/barogram/../../etc/passwd.png");
        QTest::newRow("a table by a name of its own") << QByteArray("/barogram/passwd.pdf");
        QTest::newRow("a table out of range") << QByteArray("/api/table/9");
        QTest::newRow("a table with two digits") << QByteArray("/api/table/00");
        QTest::newRow("a table with a sign") << QByteArray("/api/table/-1");
        QTest::newRow("the form in capitals") << QByteArray("/barogram/BARO30M.PNG");
        QTest::newRow("invalid UTF-8") << QByteArray("/\xff\xfe\xc3\x28/%ff%c3%28");
    }

    void noPathNamesAFile()
    {
        QFETCH(QByteArray, path);
        const HttpReply reply = HttpClient::exchange(port, "GET " + path + " HTTP/1.1\r\nHost: 127.0.0.1\r\n\r\n");
        QVERIFY2(reply.status == 404 || reply.status == 400, qPrintable(QString::number(reply.status)));
        QVERIFY(!reply.body.contains("root:"));
        QCOMPARE(barogramCalls.load(), 0);
    }

    void theStateIsTheTickOfTheWindow()
    {
        const QJsonObject now = json(HttpClient::get(port, "/api/now"));
        QCOMPARE(quint64(now.value("sequence").toDouble()), publisher.current()->sequence);
        QCOMPARE(now.value("tickTime").toDouble(), 1700000000123.0);
        const QJsonObject display = now.value("display").toObject();
        QCOMPARE(display.value("date").toString(), QStringLiteral("Tue 14 Nov 2023 22:13:20"));
        QCOMPARE(display.value("pressure").toString(), QStringLiteral("1013.3 hPa"));
        QCOMPARE(display.value("level").toString(), QStringLiteral("Sea Level Pressure (QNH)"));
        QCOMPARE(display.value("position").toString(), QStringLiteral("47°12.345'N 002°56.789'W"));
        QCOMPARE(display.value("cogsog").toString(), QStringLiteral("COG 245° T - SOG 6.2 kts"));
        QCOMPARE(display.value("tendency").toString(), QStringLiteral("-4.4 mb / 3h"));
        QCOMPARE(display.value("warning").toString(), QStringLiteral("Warning: falling quickly"));
        QCOMPARE(display.value("warningDetail").toString(), QStringLiteral("4.4 hPa in 3 h since 22:00"));
        const QJsonObject pressure = now.value("pressure").toObject();
        QCOMPARE(pressure.value("hPa").toDouble(), 1013.25);
        QCOMPARE(pressure.value("rawHpa").toDouble(), 1012.9);
        QCOMPARE(pressure.value("unit").toString(), QStringLiteral("hPa"));
        QVERIFY(pressure.value("readingTime").isNull());
        QCOMPARE(now.value("trend").toInt(), -3);
        QCOMPARE(now.value("change3hHpa").toDouble(), -4.44);
        QVERIFY(now.value("change1hHpa").isNull());
        const QJsonObject warning = now.value("warning").toObject();
        QCOMPARE(warning.value("level").toInt(), 1);
        QCOMPARE(warning.value("since").toDouble(), 1699999000.0);
        const QJsonObject position = now.value("position").toObject();
        QCOMPARE(position.value("latitude").toDouble(), 47.20575);
        QCOMPARE(position.value("longitude").toDouble(), -2.946483);
        // Knots on the window, metres per second for programs.
        QVERIFY(std::abs(position.value("sogMs").toDouble() - 6.2 * 1852.0 / 3600.0) < 1e-9);
        QCOMPARE(now.value("theme").toString(), QStringLiteral("dark"));
        QCOMPARE(now.value("language").toString(), QStringLiteral("en"));

        // The next tick is served as soon as it is published.
        ShownState next = sample();
        next.pressureText = QStringLiteral("NONE");
        publisher.publish(next);
        const QJsonObject later = json(HttpClient::get(port, "/api/now"));
        QCOMPARE(quint64(later.value("sequence").toDouble()), quint64(now.value("sequence").toDouble()) + 1);
        QVERIFY(later.value("display").toObject().value("pressure").isNull());
    }

    void withoutThePositionNothingTellsWhereTheBoatIs()
    {
        page->apply(true, port, false);
        const HttpReply now = HttpClient::get(port, "/api/now");
        QCOMPARE(now.status, 200);
        for (const QByteArray& told : {QByteArray("47"), QByteArray("002"), QByteArray("COG"), QByteArray("SOG"),
                                       QByteArray("latitude"), QByteArray("sogMs")})
            QVERIFY2(!now.body.contains(told), told.constData());
        QCOMPARE(json(now).value("positionServed").toBool(), false);
        const HttpReply document = HttpClient::pumping([&] { return HttpClient::get(port, "/"); });
        QVERIFY(!document.body.contains("47°12.345"));
        QCOMPARE(HttpClient::pumping([&] { return HttpClient::get(port, "/barogram/BARO1D.png"); }).status, 200);
        QCOMPARE(lastBarogramHadFix.load(), false);

        page->apply(true, port, true);
        QVERIFY(HttpClient::get(port, "/api/now").body.contains("47°12.345"));
    }

    void aSpanIsReadOncePerTickForAllPhones()
    {
        std::vector<std::future<HttpReply>> phones;
        for (int i = 0; i < 8; ++i)
            phones.push_back(std::async(std::launch::async, [this] { return HttpClient::get(port, "/api/table/3"); }));
        QTRY_VERIFY(std::all_of(phones.begin(), phones.end(), [](std::future<HttpReply>& phone) {
            return phone.wait_for(std::chrono::milliseconds(0)) == std::future_status::ready;
        }));
        for (std::future<HttpReply>& phone : phones) {
            const QJsonObject span = json(phone.get());
            QCOMPARE(span.value("table").toInt(), 3);
            QCOMPARE(span.value("series").toArray().size(), 2);
            QCOMPARE(span.value("series").toArray().at(0).toArray().at(0).toArray().at(1).toDouble(), 1013.25);
            QCOMPARE(span.value("secondsPerUnit").toDouble(), 3600.0);
        }
        QCOMPARE(spanCalls.load(), 1);
        QCOMPARE(page->feed().spanReads(), 1);

        // Another span is its own reading; the same one waits for the next tick.
        QCOMPARE(HttpClient::pumping([&] { return HttpClient::get(port, "/api/table/4"); }).status, 200);
        QCOMPARE(HttpClient::pumping([&] { return HttpClient::get(port, "/api/table/3"); }).status, 200);
        QCOMPARE(spanCalls.load(), 2);
        publisher.publish(sample());
        QCOMPARE(HttpClient::pumping([&] { return HttpClient::get(port, "/api/table/3"); }).status, 200);
        QCOMPARE(spanCalls.load(), 3);
    }

    void aBusyMainThreadCostsThePhoneAnAnswerNotTheOtherWayRound()
    {
        // This thread is the main thread, and it waits here without turning its event loop:
        // the chart cannot be read, and the request gives up rather than hang.
        const HttpReply reply = HttpClient::get(port, "/api/table/6");
        QCOMPARE(reply.status, 503);
        // The state needs no main thread at all.
        QCOMPARE(HttpClient::get(port, "/api/now").status, 200);
        // Once the event loop turns, the same span is there.
        QCOMPARE(HttpClient::pumping([&] { return HttpClient::get(port, "/api/table/6"); }).status, 200);
    }

    void thePageCarriesItsTextsAndTheLastTick()
    {
        ShownState hostile = sample();
        hostile.date = QStringLiteral("</script><script>alert(1)</script>");
        publisher.publish(hostile);
        const HttpReply reply = HttpClient::pumping([&] { return HttpClient::get(port, "/"); });
        QCOMPARE(reply.status, 200);
        QVERIFY(reply.body.contains("<html lang=\"en\">"));
        QVERIFY(reply.body.contains("Sound alarms on this phone"));
        QVERIFY(reply.body.contains("Brinholt has stopped answering"));
        QVERIFY(reply.body.contains("\"sequence\":" + QByteArray::number(publisher.current()->sequence)));
        // A text of the state cannot end the script it is carried in.
        QVERIFY(!reply.body.contains("</script><script>alert"));
        QVERIFY(reply.body.contains("<\\/script><script>alert(1)<\\/script>"));
        // Nothing is loaded from anywhere else: the one address is the name of SVG's
        // vocabulary, which is never fetched.
        QVERIFY(!QByteArray(reply.body).replace("\"http://www.w3.org/2000/svg\"", "").contains("http"));
        QVERIFY(!reply.body.contains("//fonts"));
        QVERIFY(!reply.body.contains("@import"));
    }

    void theStatusLineTellsWhatTheServerDoes()
    {
        QCOMPARE(page->statusText(), QStringLiteral("serving on port %1, no phone connected").arg(port));
        QCOMPARE(HttpClient::get(port, "/api/now").status, 200);
        QCOMPARE(page->statusText(), QStringLiteral("serving on port %1, 1 phone connected").arg(port));
        const int fd = HttpClient::connectFrom(port, "127.0.0.2");
        QVERIFY(fd >= 0);
        const QByteArray request = "GET /api/now HTTP/1.1\r\nHost: x\r\nConnection: close\r\n\r\n";
        QCOMPARE(::send(fd, request.constData(), size_t(request.size()), MSG_NOSIGNAL), ssize_t(request.size()));
        QVERIFY(HttpClient::closedByPeer(fd, 10000));
        ::close(fd);
        QCOMPARE(page->statusText(), QStringLiteral("serving on port %1, 2 phones connected").arg(port));

        page->apply(false, port, true);
        QCOMPARE(page->statusText(), QStringLiteral("off"));
        QCOMPARE(HttpClient::connectFrom(port), -1);

        QTcpServer holder;
        QVERIFY(holder.listen(QHostAddress::AnyIPv4, port));
        page->apply(true, port, true);
        QCOMPARE(page->server().state(), WatchServer::State::InUse);
        QCOMPARE(page->statusText(), QStringLiteral("port %1 is in use").arg(port));
        holder.close();
        page->apply(true, port, true);
        QCOMPARE(page->server().state(), WatchServer::State::Serving);
    }

    void theSettingsDecideAndOffIsTheDefault()
    {
        QTemporaryDir folder;
        QSettings settings(folder.filePath("brinholt.ini"), QSettings::IniFormat);
        page->apply(settings);
        QCOMPARE(page->server().state(), WatchServer::State::Off);
        QCOMPARE(page->server().port(), quint16(port));
        QCOMPARE(HttpClient::connectFrom(port), -1);

        settings.setValue("watchPageOn", 1);
        settings.setValue("watchPagePort", port);
        page->apply(settings);
        QCOMPARE(page->server().state(), WatchServer::State::Serving);
        QVERIFY(!HttpClient::get(port, "/api/now").body.contains("latitude"));
        settings.setValue("watchPagePosition", 1);
        page->apply(settings);
        QVERIFY(HttpClient::get(port, "/api/now").body.contains("latitude"));

        // A port below the first that needs no privilege is held at it.
        settings.setValue("watchPagePort", 80);
        page->apply(settings);
        QCOMPARE(page->server().port(), quint16(1024));
    }

    void aServerThatGoesOnKeepsItsPhones()
    {
        const int fd = HttpClient::connectFrom(port);
        QVERIFY(fd >= 0);
        page->apply(true, port, false);
        const QByteArray request = "GET /api/now HTTP/1.1\r\nHost: x\r\nConnection: close\r\n\r\n";
        QCOMPARE(::send(fd, request.constData(), size_t(request.size()), MSG_NOSIGNAL), ssize_t(request.size()));
        char buffer[32] = {};
        QVERIFY(::recv(fd, buffer, 12, MSG_WAITALL) == 12);
        QCOMPARE(QByteArray(buffer), QByteArray("HTTP/1.1 200"));
        ::close(fd);
    }

    void theTableNamesAreTheLogs()
    {
        QStringList names;
        for (const char* name : WatchRoutes::TableNames)
            names << QString::fromLatin1(name);
        LogFixture log;
        QCOMPARE(names, log.log().getTableNames());
    }
};

QTEST_MAIN(TestWatchPage)
#include "tst_watchpage.moc"
