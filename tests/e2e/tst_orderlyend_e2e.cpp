// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/pages/PageDriver.h"
#include "tests/pages/PageHarness.h"
#include "tests/support/AppProcess.h"
#include "tests/support/Columns.h"
#include "tests/support/TestDataFolder.h"

#include <QtCore/QElapsedTimer>
#include <QtCore/QFileInfo>
#include <QtCore/QProcess>
#include <QtCore/QSettings>
#include <QtCore/QStandardPaths>
#include <QtCore/QThread>
#include <QtGui/QFont>
#include <QtWidgets/QApplication>
#include <QtQuick/QQuickItem>
#include <QtQuick/QQuickWindow>
#include <QtTest/QtTest>

#include <csignal>

using namespace PageDriver;

namespace {

// Large enough that the settings page's buttons show without scrolling.
const QSize WindowSize(1200, 1400);

QPoint centreInWindow(QQuickItem* item)
{
    return item->mapToScene(QPointF(item->width() / 2, item->height() / 2)).toPoint();
}

int count(const QStringList& lines, const QString& text)
{
    int n = 0;
    for (const QString& line : lines)
        n += line.contains(text) ? 1 : 0;
    return n;
}

} // namespace

// The real executable in a real window on a virtual display, clicked by a mouse from
// outside to a settings page, then ended by a signal: what the page would write on leaving
// reaches the file, nothing is restarted, and the end is as clean as from the graph page.
class TestOrderlyEndFromOutside : public QObject
{
    Q_OBJECT

public:
    explicit TestOrderlyEndFromOutside(const QString& displayName)
        : displayName(displayName)
    {
    }

private:
    QString displayName;
    QPoint settingsButton;
    QPoint connectionsButton;

    bool click(QPoint where)
    {
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.insert("DISPLAY", displayName);
        QProcess xdotool;
        xdotool.setProcessEnvironment(env);
        // From elsewhere first: a window that opens under a resting pointer gets no motion.
        xdotool.start("xdotool", {"mousemove", QString::number(where.x() + 40), QString::number(where.y() - 40),
                                  "sleep", "0.1", "mousemove", QString::number(where.x()),
                                  QString::number(where.y()), "sleep", "0.1", "click", "1"});
        return xdotool.waitForFinished(10000) && xdotool.exitCode() == 0;
    }

    // A page just shown may not have laid itself out when the first click comes: a user
    // clicks again, and so does this.
    bool clickUntilShown(AppProcess& app, QPoint where, const QString& page)
    {
        for (int attempt = 0; attempt < 10; ++attempt) {
            if (!click(where))
                return false;
            if (app.waitForLog("page shown " + page, 1000))
                return true;
        }
        return false;
    }

private slots:
    void initTestCase()
    {
        QVERIFY2(!QStandardPaths::findExecutable("xdotool").isEmpty(), "xdotool missing: scripts/install-deps");
        QVERIFY2(!displayName.isEmpty(), "no virtual display: Xvfb missing (scripts/install-deps)");

        // Where the buttons are: the same pages at the same size on the same display, loaded
        // here with the application's font.
        QFont font = QApplication::font();
        font.setCapitalization(QFont::MixedCase);
        QApplication::setFont(font);
        PageHarness h;
        QVERIFY(startMain(h, WindowSize));
        QQuickItem* bar = h.item("settingsButton");
        QVERIFY(bar);
        settingsButton = centreInWindow(bar);
        press(h, "settingsButton");
        QQuickItem* toConnections = h.item("buttonConnections");
        QVERIFY(toConnections);
        connectionsButton = centreInWindow(toConnections);
        QVERIFY2(connectionsButton.y() < h.loadedPage()->height(), "the button would need scrolling");
        qInfo() << "settings button at" << settingsButton << "connections button at" << connectionsButton;
    }

    void endBySignalKeepsThePageEdits_data()
    {
        Columns::add<int, QString>("clicks", "page");
        QTest::newRow("graph page") << 0 << QString("BaroSwipe");
        QTest::newRow("settings page") << 1 << QString("settings");
        QTest::newRow("connections page") << 2 << QString("settingsConnections");
    }

    void endBySignalKeepsThePageEdits()
    {
        QFETCH(int, clicks);
        QFETCH(QString, page);
        TestDataFolder folder;
        {
            QSettings ini(folder.filePath("brinholt.ini"), QSettings::IniFormat);
            ini.setValue("language", 0);
            ini.setValue("formatMMDD", 0);
            ini.setValue("windowWidth", WindowSize.width());
            ini.setValue("windowHeight", WindowSize.height());
            ini.setValue("windowX", 0);
            ini.setValue("windowY", 0);
            // Both held at their box's lower bound by the pages: leaving writes them back so.
            ini.setValue("SettingTcpIpPort", 5000);
            ini.setValue("elevation", 2500.0);
        }
        AppProcess app(folder.path());
        app.environment().insert("QT_QPA_PLATFORM", "xcb");
        app.environment().insert("DISPLAY", displayName);
        app.environment().insert("QT_FONT_DPI", "96");
        QVERIFY(app.start());
        QVERIFY2(app.waitForLog("main page loaded", 30000), qPrintable(app.log().join('\n')));
        if (clicks >= 1)
            QVERIFY2(clickUntilShown(app, settingsButton, "settings"), qPrintable(app.log().join('\n')));
        if (clicks >= 2)
            QVERIFY2(clickUntilShown(app, connectionsButton, page), qPrintable(app.log().join('\n')));
        const int linesBefore = app.log().size();
        const int locationStarts = count(app.log(), "trying to start location services");

        QElapsedTimer ending;
        ending.start();
        QVERIFY2(app.stop(SIGTERM, 10000), qPrintable(app.log().join('\n')));
        qInfo().noquote() << "ended in" << ending.elapsed() << "ms from" << page;
        QCOMPARE(app.process().exitStatus(), QProcess::NormalExit);
        QCOMPARE(app.process().exitCode(), 0);

        const QStringList log = app.log();
        const QStringList after = log.mid(linesBefore);
        QVERIFY2(count(after, "backend deleted") == 1, qPrintable(after.join('\n')));
        QCOMPARE(count(log, "trying to start location services"), locationStarts);
        for (const QString& line : after) {
            QVERIFY2(!line.contains("opened successfully") && !line.contains("source activated")
                             && !line.contains("QThread") && !line.contains("ASSERT"),
                     qPrintable(line));
        }

        const QSettings ini(folder.filePath("brinholt.ini"), QSettings::IniFormat);
        QCOMPARE(ini.value("windowWidth").toInt(), WindowSize.width());
        // The settings page keeps metres in a box that ends at 1000.0 m; on the way to the
        // connections page it was left, and saved.
        QCOMPARE(ini.value("elevation").toDouble(), clicks >= 1 ? 1000.0 : 2500.0);
        QCOMPARE(ini.contains("precision"), clicks >= 1);
        QCOMPARE(ini.value("SettingTcpIpPort").toInt(), clicks == 2 ? 6000 : 5000);
        QCOMPARE(ini.contains("SettingUseUdpOut"), clicks == 2);
    }
};

// The test's own pages run on the virtual display too, so that they are laid out as the
// application's are: it has to exist before the application object.
int main(int argc, char* argv[])
{
    int number = 120;
    while (QFileInfo::exists(QString("/tmp/.X11-unix/X%1").arg(number))
           || QFileInfo::exists(QString("/tmp/.X%1-lock").arg(number)))
        ++number;
    const QString displayName = QString(":%1").arg(number);
    QProcess display;
    display.start("Xvfb", {displayName, "-screen", "0", "1600x1600x24", "-dpi", "96", "-nolisten", "tcp"});
    bool up = display.waitForStarted(10000);
    for (int i = 0; up && i < 100 && !QFileInfo::exists(QString("/tmp/.X11-unix/X%1").arg(number)); ++i)
        QThread::msleep(100);
    up = up && QFileInfo::exists(QString("/tmp/.X11-unix/X%1").arg(number));
    if (up) {
        qputenv("QT_QPA_PLATFORM", "xcb");
        qputenv("DISPLAY", displayName.toLocal8Bit());
        qputenv("QT_FONT_DPI", "96");
    }
    int status = 0;
    {
        QApplication app(argc, argv);
        TestOrderlyEndFromOutside test(up ? displayName : QString());
        status = QTest::qExec(&test, argc, argv);
    }
    display.terminate();
    display.waitForFinished(5000);
    return status;
}
#include "tst_orderlyend_e2e.moc"
