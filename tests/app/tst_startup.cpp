// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/Startup.h"
#include "tests/support/Columns.h"
#include "tests/support/TestDataFolder.h"
#include "util/Util.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QSettings>
#include <QtTest/QtTest>

// The decisions start-up takes before the first page: data folder, language, date order.
class TestStartup : public QObject
{
    Q_OBJECT

private slots:
    void dataFolderIsTheExecutablesFolder()
    {
        QCOMPARE(Util::currentPath(), QDir(QCoreApplication::applicationDirPath()).absolutePath());
        QVERIFY(!Util::currentPath().endsWith('/'));
    }

    void ascendStopsAtTheRoot_data()
    {
        Columns::add<QString, int, QString>("path", "levels", "expected");
        QTest::newRow("an executable at the top of a shallow path ends at the root")
                << "/Brinholt" << 3 << "/";
        QTest::newRow("the root stays the root") << "/" << 3 << "/";
        QTest::newRow("no levels keeps the folder") << "/opt/brinholt" << 0 << "/opt/brinholt";
    }

    void ascendStopsAtTheRoot()
    {
        QFETCH(QString, path);
        QFETCH(int, levels);
        QFETCH(QString, expected);
        QCOMPARE(Util::ascend(path, levels), expected);
    }

    void ascendLeavesABundle()
    {
        // cdUp only moves into folders that exist, so build the bundle for real.
        QTemporaryDir top;
        const QString inside = top.path() + "/Brinholt.app/Contents/MacOS";
        QVERIFY(QDir().mkpath(inside));
        QCOMPARE(Util::ascend(inside, 3), QDir(top.path()).absolutePath());
    }

    void firstStartDecidesByHostLanguage_data()
    {
        Columns::add<int, QString, int, int>("host", "language", "storedLanguage", "storedDateOrder");
        QTest::newRow("a French host starts in French with date order 1")
                << int(QLocale::French) << "fr" << 1 << 1;
        QTest::newRow("an English host starts in English with date order 0")
                << int(QLocale::English) << "en" << 0 << 0;
        QTest::newRow("a German host starts in English with date order 0")
                << int(QLocale::German) << "en" << 0 << 0;
    }

    void firstStartDecidesByHostLanguage()
    {
        QFETCH(int, host);
        QFETCH(QString, language);
        QFETCH(int, storedLanguage);
        QFETCH(int, storedDateOrder);
        TestDataFolder folder;
        QCOMPARE(Startup::decideLanguage(QLocale::Language(host)), language);
        // Written to disk by the time the decision returns.
        QSettings ini(folder.filePath("brinholt.ini"), QSettings::IniFormat);
        QCOMPARE(ini.value("language").toInt(), storedLanguage);
        QCOMPARE(ini.value("formatMMDD").toInt(), storedDateOrder);
    }

    void storedLanguageDecides_data()
    {
        Columns::add<int, int, QString>("stored", "host", "language");
        QTest::newRow("0 is English even on a French host") << 0 << int(QLocale::French) << "en";
        QTest::newRow("1 is French") << 1 << int(QLocale::English) << "fr";
        QTest::newRow("7 is taken for French") << 7 << int(QLocale::English) << "fr";
        QTest::newRow("a negative value other than -1 is French") << -3 << int(QLocale::English) << "fr";
    }

    void storedLanguageDecides()
    {
        QFETCH(int, stored);
        QFETCH(int, host);
        QFETCH(QString, language);
        TestDataFolder folder;
        {
            QSettings ini("./brinholt.ini", QSettings::IniFormat);
            ini.setValue("language", stored);
        }
        QCOMPARE(Startup::decideLanguage(QLocale::Language(host)), language);
        QSettings ini("./brinholt.ini", QSettings::IniFormat);
        QCOMPARE(ini.value("language").toInt(), stored);
    }

    void storedDateOrderIsLeftAlone_data()
    {
        Columns::add<int, int>("language", "dateOrder");
        QTest::newRow("0 kept with French") << 1 << 0;
        QTest::newRow("1 kept with English") << 0 << 1;
        QTest::newRow("an out-of-range 5 kept") << 0 << 5;
    }

    void storedDateOrderIsLeftAlone()
    {
        QFETCH(int, language);
        QFETCH(int, dateOrder);
        TestDataFolder folder;
        {
            QSettings ini("./brinholt.ini", QSettings::IniFormat);
            ini.setValue("language", language);
            ini.setValue("formatMMDD", dateOrder);
        }
        Startup::decideLanguage(QLocale::French);
        QSettings ini("./brinholt.ini", QSettings::IniFormat);
        QCOMPARE(ini.value("formatMMDD").toInt(), dateOrder);
    }

    void dateOrderMinusOneIsDecidedAgain()
    {
        TestDataFolder folder;
        {
            QSettings ini("./brinholt.ini", QSettings::IniFormat);
            ini.setValue("language", 1);
            ini.setValue("formatMMDD", -1);
        }
        Startup::decideLanguage(QLocale::English);
        QSettings ini("./brinholt.ini", QSettings::IniFormat);
        QCOMPARE(ini.value("formatMMDD").toInt(), 1);
    }
};

QTEST_MAIN(TestStartup)
#include "tst_startup.moc"
