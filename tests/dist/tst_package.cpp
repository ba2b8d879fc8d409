// SPDX-License-Identifier: GPL-3.0-or-later
#include <QtCore/QDir>
#include <QtCore/QDirIterator>
#include <QtCore/QElapsedTimer>
#include <QtCore/QProcess>
#include <QtCore/QRegularExpression>
#include <QtCore/QSettings>
#include <QtCore/QTemporaryDir>
#include <QtTest/QtTest>

#include <csignal>

// The Debian package, made from this build, unpacked without root rights into a folder of
// the test's, checked with the distribution's own tools, and its executable started.
class TestPackage : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir work;
    QString deb;
    QString root;

    struct Run
    {
        int code = -1;
        QString output;
    };

    static Run run(const QString& program, const QStringList& arguments, int timeoutMs = 120000,
                   const QString& folder = QString())
    {
        QProcess proc;
        proc.setProcessChannelMode(QProcess::MergedChannels);
        if (!folder.isEmpty())
            proc.setWorkingDirectory(folder);
        proc.start(program, arguments);
        Run result;
        if (!proc.waitForFinished(timeoutMs)) {
            proc.kill();
            proc.waitForFinished();
            result.output = QStringLiteral("%1 did not finish").arg(program);
            return result;
        }
        result.output = QString::fromLocal8Bit(proc.readAll());
        result.code = proc.exitStatus() == QProcess::NormalExit ? proc.exitCode() : -1;
        return result;
    }

    QString field(const QString& name)
    {
        return run("dpkg-deb", {"-f", deb, name}).output.trimmed();
    }

    // Every settings or log file under `folder`.
    static QStringList dataFiles(const QString& folder)
    {
        QStringList found;
        QDirIterator it(folder, {"brinholt.ini", "brinholt.db"}, QDir::Files | QDir::Hidden,
                        QDirIterator::Subdirectories);
        while (it.hasNext())
            found << it.next();
        found.sort();
        return found;
    }

private slots:
    void initTestCase()
    {
        QVERIFY(work.isValid());
        const Run pack = run("cpack", {"-G", "DEB", "--config", BRINHOLT_BINARY_DIR "/CPackConfig.cmake", "-B",
                                       work.filePath("pack")},
                             600000, BRINHOLT_BINARY_DIR);
        QVERIFY2(pack.code == 0, qPrintable(pack.output));
        const QStringList debs = QDir(work.filePath("pack")).entryList({"*.deb"}, QDir::Files);
        QCOMPARE(debs, QStringList{"brinholt_3.0.0_amd64.deb"});
        deb = work.filePath("pack/" + debs.first());
        root = work.filePath("root");
        const Run unpack = run("dpkg-deb", {"-x", deb, root});
        QVERIFY2(unpack.code == 0, qPrintable(unpack.output));
    }

    void filesInPlace_data()
    {
        QTest::addColumn<QString>("path");
        for (const char* path :
             {"usr/bin/brinholt", "usr/bin/brinholt-devicesim", "usr/share/brinholt/translations/Brinholt_en_US.qm",
              "usr/share/brinholt/translations/Brinholt_fr_FR.qm",
              "usr/share/applications/com.quillmere.brinholt.desktop",
              "usr/share/icons/hicolor/scalable/apps/com.quillmere.brinholt.svg",
              "usr/share/icons/hicolor/16x16/apps/com.quillmere.brinholt.png",
              "usr/share/icons/hicolor/32x32/apps/com.quillmere.brinholt.png",
              "usr/share/icons/hicolor/48x48/apps/com.quillmere.brinholt.png",
              "usr/share/icons/hicolor/64x64/apps/com.quillmere.brinholt.png",
              "usr/share/icons/hicolor/128x128/apps/com.quillmere.brinholt.png",
              "usr/share/icons/hicolor/256x256/apps/com.quillmere.brinholt.png",
              "usr/share/metainfo/com.quillmere.brinholt.metainfo.xml", "usr/share/man/man1/brinholt.1.gz",
              "usr/share/man/man1/brinholt-devicesim.1.gz", "usr/share/doc/brinholt/copyright",
              "usr/share/doc/brinholt/changelog.gz"})
            QTest::newRow(path) << QString(path);
    }

    void filesInPlace()
    {
        QFETCH(QString, path);
        const QFileInfo info(QDir(root).filePath(path));
        QVERIFY2(info.isFile(), qPrintable(info.filePath()));
        QVERIFY(info.size() > 0);
        if (path.startsWith("usr/bin/"))
            QVERIFY(info.isExecutable());
    }

    void iconsHaveTheirSize()
    {
        for (int size : {16, 22, 24, 32, 48, 64, 128, 256}) {
            const QImage icon(QDir(root).filePath(
                    QString("usr/share/icons/hicolor/%1x%1/apps/com.quillmere.brinholt.png").arg(size)));
            QCOMPARE(icon.size(), QSize(size, size));
        }
    }

    void desktopEntryIsValid()
    {
        const Run check = run("desktop-file-validate",
                              {QDir(root).filePath("usr/share/applications/com.quillmere.brinholt.desktop")});
        QCOMPARE(check.code, 0);
        QVERIFY2(check.output.trimmed().isEmpty(), qPrintable(check.output));
    }

    void metainfoIsValid()
    {
        const Run check = run("appstreamcli", {"validate", "--no-net", "--pedantic",
                                               QDir(root).filePath("usr/share/metainfo/com.quillmere.brinholt.metainfo.xml")});
        QVERIFY2(check.code == 0, qPrintable(check.output));
        QVERIFY2(!check.output.contains(QRegularExpression("^[EWI]: ", QRegularExpression::MultilineOption)),
                 qPrintable(check.output));
    }

    // Free software under the GPL, version 3 or later, said the same way everywhere.
    void licenceIsTheGplEverywhere()
    {
        QFile copyright(QDir(root).filePath("usr/share/doc/brinholt/copyright"));
        QVERIFY(copyright.open(QIODevice::ReadOnly));
        const QString terms = QString::fromUtf8(copyright.readAll());
        QVERIFY(terms.startsWith("Format: https://www.debian.org/doc/packaging-manuals/copyright-format/1.0/\n"));
        QVERIFY2(terms.contains("\nFiles: *\nCopyright: 2026 Quillmere\nLicense: GPL-3.0-or-later\n"), qPrintable(terms));
        QVERIFY(terms.contains("\nLicense: GPL-3.0-or-later\n This program is free software"));

        QFile metainfo(QDir(root).filePath("usr/share/metainfo/com.quillmere.brinholt.metainfo.xml"));
        QVERIFY(metainfo.open(QIODevice::ReadOnly));
        QVERIFY(metainfo.readAll().contains("<project_license>GPL-3.0-or-later</project_license>"));

        QFile licence(BRINHOLT_SOURCE_DIR "/LICENSE");
        QFile common("/usr/share/common-licenses/GPL-3");
        QVERIFY(licence.open(QIODevice::ReadOnly));
        QVERIFY(common.open(QIODevice::ReadOnly));
        QCOMPARE(licence.readAll(), common.readAll());

        QStringList unmarked;
        int sources = 0;
        for (const char* folder : {"app", "log", "nmea", "util", "pages", "tools", "tests", "bench"}) {
            QDirIterator it(QStringLiteral(BRINHOLT_SOURCE_DIR "/") + folder, {"*.cpp", "*.h", "*.qml"}, QDir::Files,
                            QDirIterator::Subdirectories);
            while (it.hasNext()) {
                QFile file(it.next());
                QVERIFY(file.open(QIODevice::ReadOnly));
                ++sources;
                if (!file.read(200).contains("SPDX-License-Identifier: GPL-3.0-or-later"))
                    unmarked << file.fileName();
            }
        }
        QVERIFY(sources > 100);
        QVERIFY2(unmarked.isEmpty(), qPrintable(unmarked.join('\n')));
    }

    void lintianFindsNoError()
    {
        const Run check = run("lintian", {"--tag-display-limit", "0", deb}, 300000);
        QVERIFY2(!check.output.contains(QRegularExpression("^E: ", QRegularExpression::MultilineOption)),
                 qPrintable(check.output));
        QVERIFY2(check.code == 0, qPrintable(check.output));
        if (!check.output.trimmed().isEmpty())
            qInfo().noquote() << "lintian:" << check.output;
    }

    void dependenciesNameTheRuntimeModules()
    {
        const QStringList depends = field("Depends").split(QRegularExpression(",\\s*"));
        QStringList names;
        for (const QString& d : depends)
            names << d.section(' ', 0, 0);
        // Found by dpkg-shlibdeps from what is linked...
        for (const char* linked : {"libqt5core5a", "libqt5quick5", "libqt5charts5", "libqt5serialport5", "libmicrohttpd12", "libc6"})
            QVERIFY2(names.contains(linked), qPrintable(depends.join(", ")));
        // ...and named by hand for what is only loaded.
        for (const char* loaded :
             {"qml-module-qtquick2", "qml-module-qtquick-controls2", "qml-module-qtquick-templates2",
              "qml-module-qtquick-layouts", "qml-module-qtquick-window2", "qml-module-qtquick-dialogs",
              "qml-module-qtcharts", "qml-module-qtqml-models2", "libqt5sql5-sqlite", "qttranslations5-l10n"})
            QVERIFY2(names.contains(loaded), loaded);
        QCOMPARE(field("Package"), QStringLiteral("brinholt"));
        QCOMPARE(field("Version"), QStringLiteral("3.0.0"));
        QCOMPARE(field("Architecture"), QStringLiteral("amd64"));
    }

    void theInstalledCopyKeepsItsDataPerUser()
    {
        const QString home = work.filePath("home");
        const QString xdg = work.filePath("xdg");
        const QString elsewhere = work.filePath("elsewhere");
        QDir().mkpath(home);
        QDir().mkpath(elsewhere);
        QProcess app;
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.insert("HOME", home);
        env.insert("XDG_DATA_HOME", xdg);
        env.insert("LC_ALL", "fr_FR.UTF-8");
        env.insert("QT_QPA_PLATFORM", "offscreen");
        env.insert("QT_QUICK_BACKEND", "software");
        app.setProcessEnvironment(env);
        app.setProcessChannelMode(QProcess::MergedChannels);
        app.setWorkingDirectory(elsewhere);
        app.start(QDir(root).filePath("usr/bin/brinholt"), QStringList());
        QVERIFY(app.waitForStarted(10000));
        QString log;
        QElapsedTimer timer;
        timer.start();
        while (!log.contains("main page loaded") && timer.elapsed() < 60000 && app.state() == QProcess::Running) {
            app.waitForReadyRead(200);
            log += QString::fromLocal8Bit(app.readAll());
        }
        QVERIFY2(log.contains("main page loaded"), qPrintable(log));
        QVERIFY2(log.contains("translator brinholt empty ? false"), qPrintable(log));
        QVERIFY2(log.contains("translator qtbase empty ? false"), qPrintable(log));

        ::kill(pid_t(app.processId()), SIGTERM);
        QVERIFY(app.waitForFinished(30000));
        log += QString::fromLocal8Bit(app.readAll());
        QCOMPARE(app.exitStatus(), QProcess::NormalExit);
        QCOMPARE(app.exitCode(), 0);
        QVERIFY2(log.contains("backend deleted"), qPrintable(log));

        const QString data = QDir(xdg).filePath("brinholt");
        QCOMPARE(dataFiles(work.path()),
                 (QStringList{QDir(data).filePath("brinholt.db"), QDir(data).filePath("brinholt.ini")}));
        QSettings ini(QDir(data).filePath("brinholt.ini"), QSettings::IniFormat);
        QCOMPARE(ini.value("language").toInt(), 1);
        QCOMPARE(ini.value("version").toString(), QStringLiteral("3.0.0"));
    }
};

QTEST_MAIN(TestPackage)
#include "tst_package.moc"
