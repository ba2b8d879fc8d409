// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/Composition.h"
#include "tests/support/MessageLog.h"
#include "tests/support/ScreenSize.h"
#include "tests/support/TestDataFolder.h"

#include <QtCore/QSettings>
#include <QtGui/QGuiApplication>
#include <QtGui/QScreen>
#include <QtQml/QQmlApplicationEngine>
#include <QtQuick/QQuickWindow>
#include <QtSql/QSqlDatabase>
#include <QtTest/QtTest>

#include <memory>
#include <QtWidgets/QApplication>

// The main page loaded for real over the real BackEnd and DataSource, as start-up does.
class TestMainWindow : public QObject
{
    Q_OBJECT

private:
    struct Application
    {
        TestDataFolder folder;
        QQmlApplicationEngine engine;
        Composition composition{engine};

        void start()
        {
            composition.build();
            composition.load();
        }

        QQuickWindow* window() const
        {
            return engine.rootObjects().isEmpty() ? nullptr
                                                  : qobject_cast<QQuickWindow*>(engine.rootObjects().first());
        }

        // What shutdown does after the event loop: the log first, then the BackEnd.
        void stop()
        {
            composition.tearDown();
        }

        ~Application()
        {
            stop();
            QSqlDatabase::removeDatabase("DB_BRINHOLT");
        }
    };

    static QStringList qmlWarnings(const MessageLog& messages)
    {
        QStringList warnings;
        for (const QString& message : messages.messages()) {
            if (message.contains("qrc:/") || message.contains("QML") || message.contains("ReferenceError")
                || message.contains("TypeError"))
                warnings << message;
        }
        return warnings;
    }

private slots:
    void initTestCase()
    {
        Composition::registerTypes();
    }

    void firstStartCentresSeventyPercentOfTheScreen_data()
    {
        ScreenSize::addFirstStartRows();
    }

    void firstStartCentresSeventyPercentOfTheScreen()
    {
        QFETCH(QSize, screen);
        const auto size = ScreenSize::unlessOwn(screen);
        MessageLog messages;
        Application app;
        app.start();
        QQuickWindow* window = app.window();
        QVERIFY(window);
        QCOMPARE(window->title(), QStringLiteral("Brinholt"));
        const QSize host = QGuiApplication::primaryScreen()->size();
        if (screen.isValid())
            QCOMPARE(host, screen);
        ScreenSize::checkFirstStartGeometry(*window, host);
        if (QTest::currentTestFailed())
            return;
        QVERIFY(messages.count("main page loaded, OS is") == 1);
        QVERIFY2(qmlWarnings(messages).isEmpty(), qPrintable(qmlWarnings(messages).join('\n')));
    }

    void closingTheWindowSavesTheGeometryOfThatMoment()
    {
        MessageLog messages;
        Application app;
        app.start();
        QQuickWindow* window = app.window();
        QVERIFY(window);
        QVERIFY(QTest::qWaitForWindowExposed(window));
        window->setGeometry(57, 61, 703, 509);
        // Closing the window must end the event loop by itself, as it does for the user.
        bool closedByWindow = false;
        QTimer::singleShot(0, window, [window] { window->close(); });
        QTimer::singleShot(10000, qApp, [] { QCoreApplication::exit(99); });
        connect(qApp, &QGuiApplication::lastWindowClosed, this, [&] { closedByWindow = true; });
        QCOMPARE(QApplication::exec(), 0);
        QVERIFY(closedByWindow);
        app.stop();
        QVERIFY(messages.count("saving size") == 1);
        QSettings ini(app.folder.filePath("brinholt.ini"), QSettings::IniFormat);
        QCOMPARE(ini.value("windowWidth").toInt(), 703);
        QCOMPARE(ini.value("windowHeight").toInt(), 509);
        QCOMPARE(ini.value("windowX").toInt(), 57);
        QCOMPARE(ini.value("windowY").toInt(), 61);
        QVERIFY2(qmlWarnings(messages).isEmpty(), qPrintable(qmlWarnings(messages).join('\n')));
    }

    void storedGeometryIsRestored()
    {
        Application app;
        {
            QSettings ini(app.folder.filePath("brinholt.ini"), QSettings::IniFormat);
            ini.setValue("windowWidth", 800);
            ini.setValue("windowHeight", 500);
            ini.setValue("windowX", 12);
            ini.setValue("windowY", 34);
        }
        app.start();
        QQuickWindow* window = app.window();
        QVERIFY(window);
        QCOMPARE(window->geometry(), QRect(12, 34, 800, 500));
    }
};

QTEST_MAIN(TestMainWindow)
#include "tst_mainwindow.moc"
