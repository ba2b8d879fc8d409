// SPDX-License-Identifier: GPL-3.0-or-later
#include "Halves.h"

#include "util/TendencyWords.h"

#include <QtCore/QTranslator>
#include <QtTest/QtTest>

#include <optional>

Q_DECLARE_METATYPE(TendencyWords::Word)

namespace {
// An even change, so that no turn within the hours plays a part.
ThreeHourPoints even(double change)
{
    return halves(change / 2.0, change / 2.0);
}
}

// The glossary's words for a three-hour change, each bound pinned to the tenth of a hPa.
class TestTendencyWords : public QObject
{
    Q_OBJECT

private slots:
    void eachBoundOfTheSize_data()
    {
        QTest::addColumn<double>("change");
        QTest::addColumn<TendencyWords::Word>("expected");
        using W = TendencyWords;
        QTest::newRow("no change is steady") << 0.0 << W::Steady;
        QTest::newRow("0.04 rounds to steady") << 0.04 << W::Steady;
        QTest::newRow("-0.04 rounds to steady") << -0.04 << W::Steady;
        QTest::newRow("0.06 rounds to 0.1: rising slowly") << 0.06 << W::RisingSlowly;
        QTest::newRow("0.1 is rising slowly") << 0.1 << W::RisingSlowly;
        QTest::newRow("-0.1 is falling slowly") << -0.1 << W::FallingSlowly;
        QTest::newRow("1.5 is still slowly") << 1.5 << W::RisingSlowly;
        QTest::newRow("-1.5 is still slowly") << -1.5 << W::FallingSlowly;
        QTest::newRow("1.54 rounds to 1.5: slowly") << 1.54 << W::RisingSlowly;
        QTest::newRow("1.56 rounds to 1.6: rising") << 1.56 << W::Rising;
        QTest::newRow("1.6 is rising") << 1.6 << W::Rising;
        QTest::newRow("-1.6 is falling") << -1.6 << W::Falling;
        QTest::newRow("3.5 is still rising") << 3.5 << W::Rising;
        QTest::newRow("-3.5 is still falling") << -3.5 << W::Falling;
        QTest::newRow("3.6 is rising quickly") << 3.6 << W::RisingQuickly;
        QTest::newRow("-3.6 is falling quickly") << -3.6 << W::FallingQuickly;
        QTest::newRow("6.0 is still quickly") << 6.0 << W::RisingQuickly;
        QTest::newRow("-6.0 is still quickly") << -6.0 << W::FallingQuickly;
        QTest::newRow("-6.04 rounds to 6.0: quickly") << -6.04 << W::FallingQuickly;
        QTest::newRow("6.06 rounds to 6.1: very rapidly") << 6.06 << W::RisingVeryRapidly;
        QTest::newRow("6.1 is rising very rapidly") << 6.1 << W::RisingVeryRapidly;
        QTest::newRow("-6.1 is falling very rapidly") << -6.1 << W::FallingVeryRapidly;
        QTest::newRow("-12.0 is falling very rapidly") << -12.0 << W::FallingVeryRapidly;
    }

    void eachBoundOfTheSize()
    {
        QFETCH(double, change);
        QFETCH(TendencyWords::Word, expected);
        QCOMPARE(TendencyWords::classify(even(change)), expected);
        // Without the middle point the size alone speaks, and says the same.
        ThreeHourPoints ends = even(change);
        ends.middle.reset();
        QCOMPARE(TendencyWords::classify(ends), expected);
    }

    void aTurnWithinTheHours_data()
    {
        QTest::addColumn<double>("firstHalf");
        QTest::addColumn<double>("secondHalf");
        QTest::addColumn<TendencyWords::Word>("expected");
        using W = TendencyWords;
        QTest::newRow("fell, then rose 0.5: now rising") << -1.0 << 0.5 << W::NowRising;
        QTest::newRow("fell, then rose 0.4: the size speaks") << -1.0 << 0.4 << W::FallingSlowly;
        QTest::newRow("steady, then rose 0.5: now rising") << 0.0 << 0.5 << W::NowRising;
        QTest::newRow("rose 0.1, then 0.5: no turn") << 0.1 << 0.5 << W::RisingSlowly;
        QTest::newRow("fell 3, then rose 2: now rising though lower") << -3.0 << 2.0 << W::NowRising;
        QTest::newRow("steady, then rose 4: now rising") << 0.0 << 4.0 << W::NowRising;
        QTest::newRow("rose, then fell 0.5: now falling") << 1.0 << -0.5 << W::NowFalling;
        QTest::newRow("rose, then fell 0.4: the size speaks") << 1.0 << -0.4 << W::RisingSlowly;
        QTest::newRow("steady, then fell 0.5: now falling") << 0.0 << -0.5 << W::NowFalling;
        QTest::newRow("fell 0.1, then 0.5: no turn") << -0.1 << -0.5 << W::FallingSlowly;
        QTest::newRow("steady, then fell 4.2: now falling") << 0.0 << -4.2 << W::NowFalling;
    }

    void aTurnWithinTheHours()
    {
        QFETCH(double, firstHalf);
        QFETCH(double, secondHalf);
        QFETCH(TendencyWords::Word, expected);
        QCOMPARE(TendencyWords::classify(halves(firstHalf, secondHalf)), expected);
    }

    void withoutTheMiddleNoTurnIsSeen()
    {
        ThreeHourPoints points = halves(-1.0, 0.5);
        points.middle.reset();
        QCOMPARE(TendencyWords::classify(points), TendencyWords::FallingSlowly);
    }

    void wordsInBothLanguages()
    {
        const QList<TendencyWords::Word> all = {TendencyWords::Steady,          TendencyWords::RisingSlowly,
                                                 TendencyWords::Rising,          TendencyWords::RisingQuickly,
                                                 TendencyWords::RisingVeryRapidly, TendencyWords::FallingSlowly,
                                                 TendencyWords::Falling,         TendencyWords::FallingQuickly,
                                                 TendencyWords::FallingVeryRapidly, TendencyWords::NowRising,
                                                 TendencyWords::NowFalling};
        const QStringList english = {"steady",         "rising slowly",  "rising",
                                     "rising quickly", "rising very rapidly", "falling slowly",
                                     "falling",        "falling quickly", "falling very rapidly",
                                     "now rising",     "now falling"};
        const QStringList french = {QString::fromUtf8("stationnaire"),    QString::fromUtf8("en hausse lente"),
                                    QString::fromUtf8("en hausse"),       QString::fromUtf8("en hausse rapide"),
                                    QString::fromUtf8("en hausse très rapide"), QString::fromUtf8("en baisse lente"),
                                    QString::fromUtf8("en baisse"),       QString::fromUtf8("en baisse rapide"),
                                    QString::fromUtf8("en baisse très rapide"), QString::fromUtf8("maintenant en hausse"),
                                    QString::fromUtf8("maintenant en baisse")};
        for (int i = 0; i < all.size(); ++i)
            QCOMPARE(TendencyWords::text(all.at(i)), english.at(i));

        QTranslator translator;
        QVERIFY(translator.load(QStringLiteral(BRINHOLT_BINARY_DIR "/Brinholt_fr_FR.qm")));
        QCoreApplication::installTranslator(&translator);
        QStringList seen;
        for (TendencyWords::Word word : all)
            seen << TendencyWords::text(word);
        QCoreApplication::removeTranslator(&translator);
        QCOMPARE(seen, french);
    }
};

QTEST_GUILESS_MAIN(TestTendencyWords)
#include "tst_tendencywords.moc"
