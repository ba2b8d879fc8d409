// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ReadingStore.h"
#include "util/Clock.h"

#include <QtTest/QtTest>

#include <atomic>
#include <thread>

// The latest pressure of each source: which one wins, for how long, and the marks.
class TestReadingStore : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        Clock::reset();
        Clock::setFixedMonotonicMs(1000000);
    }

    void cleanup() { Clock::reset(); }

    void emptyStoreHasNoReading()
    {
        const ReadingStore store;
        const ReadingStore::Reading reading = store.current();
        QCOMPARE(reading.value, Pressure::None);
        QCOMPARE(reading.source, -1);
        for (int type = Internal; type <= Udp; ++type)
            QCOMPARE(store.latest(type), Pressure::None);
    }

    void lowestSourceWins_data()
    {
        QTest::addColumn<QList<int>>("live");
        QTest::addColumn<int>("winner");
        QTest::newRow("internal over all") << QList<int>{Udp, Tcp, Serial, Internal} << int(Internal);
        QTest::newRow("serial over TCP and UDP") << QList<int>{Udp, Serial, Tcp} << int(Serial);
        QTest::newRow("TCP over UDP") << QList<int>{Udp, Tcp} << int(Tcp);
        QTest::newRow("UDP alone") << QList<int>{Udp} << int(Udp);
    }

    void lowestSourceWins()
    {
        QFETCH(QList<int>, live);
        QFETCH(int, winner);
        ReadingStore store;
        for (int type : live)
            store.store(1000.0 + type, type);
        const ReadingStore::Reading reading = store.current();
        QCOMPARE(reading.source, winner);
        QCOMPARE(reading.value, 1000.0 + winner);
    }

    void readingLivesJustUnderAMinute_data()
    {
        QTest::addColumn<int>("source");
        QTest::addColumn<qint64>("age");
        QTest::addColumn<bool>("counts");
        QTest::newRow("fresh") << int(Serial) << qint64(0) << true;
        QTest::newRow("59999 ms still counts") << int(Serial) << qint64(59999) << true;
        QTest::newRow("60000 ms no longer") << int(Serial) << qint64(60000) << false;
        QTest::newRow("the internal sensor's the same") << int(Internal) << qint64(60000) << false;
        QTest::newRow("and UDP's") << int(Udp) << qint64(59999) << true;
    }

    void readingLivesJustUnderAMinute()
    {
        QFETCH(int, source);
        QFETCH(qint64, age);
        QFETCH(bool, counts);
        ReadingStore store;
        store.store(1013.25, source);
        Clock::advanceMonotonicMs(age);
        const ReadingStore::Reading reading = store.current();
        QCOMPARE(reading.source, counts ? source : -1);
        QCOMPARE(reading.value, counts ? 1013.25 : Pressure::None);
        if (counts)
            QCOMPARE(reading.ageMs, age);
        // However old, the value stands.
        QCOMPARE(store.latest(source), 1013.25);
    }

    void staleWinnerGivesWayToTheNext()
    {
        ReadingStore store;
        store.store(1001.0, Serial);
        Clock::advanceMonotonicMs(30000);
        store.store(1002.0, Udp);
        QCOMPARE(store.current().source, int(Serial));
        Clock::advanceMonotonicMs(30000);
        QCOMPARE(store.current().source, int(Udp));
        QCOMPARE(store.current().value, 1002.0);
        QCOMPARE(store.current().ageMs, qint64(30000));
    }

    void marksNeverCount()
    {
        ReadingStore store;
        store.store(1001.0, Tcp);
        store.store(1002.0, Serial);
        // A source that stops writes the mark: its reading is gone at once.
        store.store(Pressure::None, Serial);
        QCOMPARE(store.current().source, int(Tcp));
        QCOMPARE(store.latest(Serial), Pressure::None);
        // Zero is stored and aged, but is never a reading.
        store.store(0.0, Internal);
        QCOMPARE(store.latest(Internal), 0.0);
        QCOMPARE(store.current().source, int(Tcp));
    }

    void lowReadingIsStillAReading()
    {
        // Usable or not is the tick's test, not the store's.
        ReadingStore store;
        store.store(500.0, Udp);
        QCOMPARE(store.current().value, 500.0);
    }

    void otherTypesAreIgnored()
    {
        ReadingStore store;
        store.store(1000.0, -1);
        store.store(1000.0, NmeaSourceCount);
        QCOMPARE(store.current().source, -1);
        for (int type = Internal; type <= Udp; ++type)
            QCOMPARE(store.latest(type), Pressure::None);
    }

    void sourceTexts_data()
    {
        QTest::addColumn<int>("source");
        QTest::addColumn<QString>("text");
        QTest::newRow("internal") << int(Internal) << QStringLiteral("From internal pressure sensor");
        QTest::newRow("serial") << int(Serial) << QStringLiteral("From serial connection");
        QTest::newRow("TCP") << int(Tcp) << QStringLiteral("From TCP connection");
        QTest::newRow("UDP") << int(Udp) << QStringLiteral("From UDP connection");
        QTest::newRow("none") << -1 << QStringLiteral("No pressure available");
    }

    void sourceTexts()
    {
        QFETCH(int, source);
        QFETCH(QString, text);
        QCOMPARE(ReadingStore::sourceText(source), text);
    }

    // A source writing on its own thread while another reads: the reader sees only values
    // that were written, from the source that wrote them.
    void writerAndReaderOnTwoThreads()
    {
        Clock::reset();
        ReadingStore store;
        store.store(1000.0, Tcp);
        std::atomic<bool> done{false};
        std::thread writer([&] {
            for (int i = 0; i < 20000; ++i)
                store.store(1000.0 + (i % 2), Tcp);
            done.store(true);
        });
        int reads = 0;
        int wrong = 0;
        while (!done.load() || reads == 0) {
            const ReadingStore::Reading reading = store.current();
            if (reading.source != Tcp || (reading.value != 1000.0 && reading.value != 1001.0))
                ++wrong;
            ++reads;
        }
        writer.join();
        QCOMPARE(wrong, 0);
    }
};

QTEST_GUILESS_MAIN(TestReadingStore)
#include "tst_readingstore.moc"
