// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/support/Columns.h"
#include "util/DataFolder.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QTemporaryDir>
#include <QtTest/QtTest>

// Which copy keeps its data where: the installed layout against every other.
class TestDataFolderChoice : public QObject
{
    Q_OBJECT

private:
    static void makeFile(const QString& path, const QByteArray& bytes)
    {
        QDir().mkpath(QFileInfo(path).absolutePath());
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
        file.write(bytes);
    }

    static QByteArray contents(const QString& path)
    {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

private slots:
    void theLayoutDecides_data()
    {
        Columns::add<QString, QStringList, bool>("executableFolder", "folders", "installed");
        QTest::newRow("bin beside share/brinholt is installed")
                << "usr/bin" << QStringList{"usr/bin", "usr/share/brinholt"} << true;
        QTest::newRow("a local prefix is installed too")
                << "home/u/.local/bin" << QStringList{"home/u/.local/bin", "home/u/.local/share/brinholt"} << true;
        QTest::newRow("bin without share/brinholt is not") << "usr/bin" << QStringList{"usr/bin", "usr/share"} << false;
        QTest::newRow("a build tree is not") << "build" << QStringList{"build", "share/brinholt"} << false;
        QTest::newRow("a folder not named bin is not, whatever lies beside it")
                << "opt/brinholt" << QStringList{"opt/brinholt", "opt/share/brinholt"} << false;
        QTest::newRow("share/brinholt as a file is not")
                << "usr/bin" << QStringList{"usr/bin", "usr/share"} << false;
    }

    void theLayoutDecides()
    {
        QFETCH(QString, executableFolder);
        QFETCH(QStringList, folders);
        QFETCH(bool, installed);
        QTemporaryDir root;
        for (const QString& folder : folders)
            QVERIFY(QDir(root.path()).mkpath(folder));
        if (QString(QTest::currentDataTag()).contains("as a file"))
            makeFile(root.filePath("usr/share/brinholt"), "x");
        QCOMPARE(DataFolder::isInstalled(root.filePath(executableFolder)), installed);
    }

    void theTestsOwnBinFolderIsNoInstallation()
    {
        // tests/bin of the build tree is named bin, but has no share/brinholt beside it.
        QCOMPARE(QDir(QCoreApplication::applicationDirPath()).dirName(), QStringLiteral("bin"));
        QVERIFY(!DataFolder::isInstalled(QCoreApplication::applicationDirPath()));
    }

    void theUserFolderFollowsXdgDataHome()
    {
        QTemporaryDir home;
        const QByteArray oldHome = qgetenv("HOME");
        const QByteArray oldXdg = qgetenv("XDG_DATA_HOME");
        qputenv("HOME", home.path().toLocal8Bit());
        qputenv("XDG_DATA_HOME", home.filePath("xdg").toLocal8Bit());
        const QString withXdg = DataFolder::userFolder();
        qunsetenv("XDG_DATA_HOME");
        const QString withoutXdg = DataFolder::userFolder();
        qputenv("HOME", oldHome);
        if (oldXdg.isNull())
            qunsetenv("XDG_DATA_HOME");
        else
            qputenv("XDG_DATA_HOME", oldXdg);
        QCOMPARE(withXdg, home.filePath("xdg/brinholt"));
        QCOMPARE(withoutXdg, home.filePath(".local/share/brinholt"));
    }

    void anInstalledCopyMakesItsFolderAndBringsTheCatalogues()
    {
        QTemporaryDir root;
        QVERIFY(QDir(root.path()).mkpath("usr/bin"));
        makeFile(root.filePath("usr/share/brinholt/translations/Brinholt_fr_FR.qm"), "first");
        const QString data = root.filePath("home/.local/share/brinholt");
        QVERIFY(DataFolder::prepare(root.filePath("usr/bin"), data));
        QCOMPARE(contents(data + "/Brinholt_fr_FR.qm"), QByteArray("first"));
        QVERIFY(!QFile::exists(data + "/Brinholt_en_US.qm"));

        // An upgrade's catalogue replaces the one copied before.
        makeFile(root.filePath("usr/share/brinholt/translations/Brinholt_fr_FR.qm"), "second");
        QVERIFY(DataFolder::prepare(root.filePath("usr/bin"), data));
        QCOMPARE(contents(data + "/Brinholt_fr_FR.qm"), QByteArray("second"));
    }

    void anyOtherCopyIsLeftAlone()
    {
        QTemporaryDir root;
        QVERIFY(QDir(root.path()).mkpath("build"));
        const QString data = root.filePath("elsewhere");
        QVERIFY(DataFolder::prepare(root.filePath("build"), data));
        QVERIFY(!QFileInfo::exists(data));
    }

    void aFolderThatCannotBeMadeIsReported()
    {
        QTemporaryDir root;
        QVERIFY(QDir(root.path()).mkpath("usr/bin"));
        QVERIFY(QDir(root.path()).mkpath("usr/share/brinholt"));
        makeFile(root.filePath("blocker"), "a file where a folder should go");
        QTest::ignoreMessage(QtWarningMsg, qPrintable("data folder cannot be made " + root.filePath("blocker/brinholt")));
        QVERIFY(!DataFolder::prepare(root.filePath("usr/bin"), root.filePath("blocker/brinholt")));
    }
};

QTEST_MAIN(TestDataFolderChoice)
#include "tst_datafolder.moc"
