// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/support/FreePort.h"
#include "tests/support/HttpClient.h"
#include "tests/support/LogFixture.h"
#include "tests/support/NmeaTestKit.h"

#include "app/BackEnd.h"
#include "app/WatchPage.h"
#include "log/DataSource.h"

#include <QtCore/QElapsedTimer>
#include <QtCore/QRandomGenerator>
#include <QtTest/QtTest>

#include <future>
#include <vector>

#include <sys/socket.h>
#include <unistd.h>

// The watch page against clients that mean harm, over the real back end and log with the
// real tick running: each is refused or closed cleanly, the tick logs a row at every
// firing all the while, and what the server held is given back.
class TestWatchHostile : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<LogFixture> fixture;
    quint16 port = 0;
    int rowsBefore = 0;
    QElapsedTimer running;

    // Runs `attack` on a thread of its own while the main thread goes on ticking.
    template <typename F>
    static auto meanwhile(F attack)
    {
        auto done = std::async(std::launch::async, attack);
        while (done.wait_for(std::chrono::milliseconds(5)) != std::future_status::ready)
            QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
        return done.get();
    }

    static bool refusedOrClosed(const HttpReply& reply)
    {
        return (reply.status >= 400 && reply.status < 500) || reply.closedEarly || !reply.connected;
    }

    static void sendAll(int fd, const QByteArray& bytes)
    {
        ::send(fd, bytes.constData(), size_t(bytes.size()), MSG_NOSIGNAL | MSG_DONTWAIT);
    }

    // The server still answers a well-behaved phone, from an address of its own.
    bool stillServes()
    {
        return meanwhile([this] {
            const int fd = HttpClient::connectFrom(port, "127.0.0.250");
            if (fd < 0)
                return false;
            sendAll(fd, "GET /api/now HTTP/1.1\r\nHost: x\r\nConnection: close\r\n\r\n");
            char head[12] = {};
            const bool answered = ::recv(fd, head, sizeof head, MSG_WAITALL) == sizeof head
                    && QByteArray(head, sizeof head) == "HTTP/1.1 200";
            ::close(fd);
            return answered;
        });
    }

    WatchServer& server() { return fixture->backEnd().getWatchPage().server(); }

private slots:
    void initTestCase()
    {
        fixture = std::make_unique<LogFixture>();
        port = FreePort::tcp();
        QVERIFY(port);
        fixture->backEnd().getWatchPage().apply(true, port, true);
        QCOMPARE(server().state(), WatchServer::State::Serving);
        fixture->backEnd().setCurrentPressure(1013.0, Serial);
        // The first rows, and the memory of a server that has answered already.
        QTRY_VERIFY_WITH_TIMEOUT(fixture->rowCount("BARO30M") >= 2, 10000);
        QVERIFY(stillServes());
        QCOMPARE(meanwhile([this] { return HttpClient::get(port, "/barogram/BAR16D.png"); }).status, 200);
        rowsBefore = fixture->rowCount("BARO30M");
        running.start();
    }

    void aHeaderOfOneMegabyte()
    {
        const HttpReply reply = meanwhile([this] {
            return HttpClient::exchange(port, "GET / HTTP/1.1\r\nHost: x\r\nX-Big: " + QByteArray(1024 * 1024, 'a')
                                                      + "\r\n\r\n");
        });
        QVERIFY2(refusedOrClosed(reply), reply.head.constData());
        QVERIFY(stillServes());
    }

    void aRequestLineOfAHundredKilobytes()
    {
        const HttpReply reply = meanwhile([this] {
            return HttpClient::exchange(port, "GET /" + QByteArray(100 * 1024, 'a') + " HTTP/1.1\r\nHost: x\r\n\r\n");
        });
        QVERIFY2(refusedOrClosed(reply), reply.head.constData());
        QVERIFY(stillServes());
    }

    void tooManyHeaders()
    {
        QByteArray request = "GET /api/now HTTP/1.1\r\nHost: x\r\n";
        for (int i = 0; i < 200; ++i)
            request += "X-" + QByteArray::number(i) + ": 1\r\n";
        const HttpReply reply = meanwhile([&] { return HttpClient::exchange(port, request + "\r\n"); });
        QCOMPARE(reply.status, 431);
    }

    void fiveHundredConnectionsHeld()
    {
        std::vector<int> held = meanwhile([this] {
            std::vector<int> fds;
            for (int i = 0; i < 500; ++i) {
                // From many addresses, so that the bound on all clients is reached as well
                // as the bound on one address.
                const QByteArray from = "127.0.1." + QByteArray::number(1 + i % 50);
                const int fd = HttpClient::connectFrom(port, from.constData());
                if (fd >= 0)
                    fds.push_back(fd);
            }
            return fds;
        });
        const int closed = meanwhile([&] {
            int count = 0;
            for (int fd : held)
                count += HttpClient::closedByPeer(fd, 20) ? 1 : 0;
            return count;
        });
        // What the server keeps is bounded; the rest was closed at once, not left hanging.
        QVERIFY2(server().connections() <= server().limits().clients, qPrintable(QString::number(server().connections())));
        QVERIFY2(closed >= int(held.size()) - server().limits().clients, qPrintable(QString::number(closed)));
        for (int fd : held)
            ::close(fd);
        QTRY_COMPARE(server().connections(), 0);
        QVERIFY(stillServes());
    }

    void aClientThatReadsNothing()
    {
        const int fd = HttpClient::connectFrom(port, "127.0.0.7");
        QVERIFY(fd >= 0);
        // Barograms asked for again and again, and never read: the answers pile up in the
        // socket's buffers until the server's write waits.
        for (int i = 0; i < 40; ++i)
            sendAll(fd, "GET /barogram/BAR16D.png HTTP/1.1\r\nHost: x\r\n\r\n");
        QTest::qWait(3000);
        QVERIFY(stillServes());
        ::close(fd);
        QTRY_COMPARE(server().connections(), 0);
    }

    void randomBytes()
    {
        QByteArray noise(64 * 1024, '\0');
        QRandomGenerator generator(23);
        for (char& byte : noise)
            byte = char(generator.bounded(256));
        const HttpReply reply = meanwhile([&] { return HttpClient::exchange(port, noise); });
        QVERIFY2(refusedOrClosed(reply), reply.head.constData());
        QVERIFY(stillServes());
    }

    void invalidUtf8()
    {
        const HttpReply reply = meanwhile(
                [this] { return HttpClient::exchange(port, "GET /\xff\xfe\xc3\x28 HTTP/1.1\r\nHost: \xc3\x28\xa0\xa1\r\n\r\n"); });
        QVERIFY2(refusedOrClosed(reply), reply.head.constData());
        QVERIFY(stillServes());
    }

    // All the while the tick went on logging, one row of the 30-minute table at each firing
    // of 2 s; and the server gave back what the attacks made it hold.
    void theInstrumentWentOnAndTheMemoryCameBack()
    {
        // Every connection is gone, and the allocator has let go of what it could.
        QTRY_COMPARE(server().connections(), 0);
        const qint64 residentBefore = NmeaTestKit::residentKb();
        const int rows = fixture->rowCount("BARO30M") - rowsBefore;
        const qint64 firings = running.elapsed() / 2000;
        QVERIFY2(rows >= firings - 1, qPrintable(QStringLiteral("%1 rows in %2 firings").arg(rows).arg(firings)));

        // The same attacks again leave resident memory where it was.
        aHeaderOfOneMegabyte();
        aRequestLineOfAHundredKilobytes();
        fiveHundredConnectionsHeld();
        randomBytes();
        QTRY_COMPARE(server().connections(), 0);
        const qint64 grown = NmeaTestKit::residentKb() - residentBefore;
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
        // The sanitizers keep freed blocks and shadow memory: resident memory measures them.
        Q_UNUSED(grown)
#else
        QVERIFY2(grown < 4 * 1024, qPrintable(QStringLiteral("grew %1 kB").arg(grown)));
#endif
    }

    void cleanupTestCase()
    {
        fixture->backEnd().getWatchPage().apply(false, port, false);
        fixture.reset();
    }
};

QTEST_MAIN(TestWatchHostile)
#include "tst_watchhostile.moc"
