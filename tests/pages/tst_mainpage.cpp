// SPDX-License-Identifier: GPL-3.0-or-later
#include "PageDriver.h"
#include "PageHarness.h"
#include "tests/support/Columns.h"
#include "tests/support/HostTheme.h"
#include "tests/support/ScreenSize.h"

#include "app/BackEnd.h"
#include "app/TranslationHandler.h"
#include "log/DataSource.h"

#include <QtCore/QDir>
#include <QtCore/QElapsedTimer>
#include <QtCore/QFile>
#include <QtCore/QPointer>
#include <QtCore/QRegularExpression>
#include <QtCore/QTranslator>
#include <QtGui/QColor>
#include <QtGui/QScreen>
#include <QtQuick/QQuickItem>
#include <QtQuick/QQuickWindow>
#include <QtTest/QtTest>
#include <qpa/qwindowsysteminterface.h>

#include <memory>

using namespace PageDriver;

namespace {

constexpr qint64 T0 = 1700000040;

const QColor Blue("blue");
const QColor Yellow("yellow");

} // namespace

// The main window: the bar, the theme, the language reload and the application state.
class TestMainPage : public QObject
{
    Q_OBJECT

private:
    static QColor accent(PageHarness& h)
    {
        return PageHarness::evaluate(h.window(), "Material.accent").value<QColor>();
    }

    static QString icon(PageHarness& h, const QString& button)
    {
        return PageHarness::evaluate(h.find(button), "icon.source").toUrl().toString();
    }

    static void press(PageHarness& h, const QString& button)
    {
        QQuickItem* item = h.item(button);
        QTest::mouseClick(h.window(), Qt::LeftButton, Qt::NoModifier,
                          item->mapToScene(QPointF(item->width() / 2, item->height() / 2)).toPoint());
    }

private slots:
    void firstStartCentresSeventyPercentOfTheScreen_data()
    {
        ScreenSize::addFirstStartRows();
    }

    void firstStartCentresSeventyPercentOfTheScreen()
    {
        QFETCH(QSize, screen);
        const auto size = ScreenSize::unlessOwn(screen);
        PageHarness h;
        QVERIFY(h.start());
        const QRect geometry = h.window()->screen()->geometry();
        if (screen.isValid())
            QCOMPARE(geometry.size(), screen);
        ScreenSize::checkFirstStartGeometry(*h.window(), geometry.size());
        if (QTest::currentTestFailed())
            return;
        QCOMPARE(h.window()->title(), QStringLiteral("Brinholt"));
        QCOMPARE(h.messages().filter("main page loaded, OS is").size(), 1);
        QCOMPARE(loaderSource(h), QUrl("qrc:/BaroSwipe"));
        checkClean(h);
    }

    void themeRules_data()
    {
        Columns::add<int, QColor, bool>("theme", "hostText", "dark");
        QTest::newRow("light whatever the host") << 0 << QColor(Qt::white) << false;
        QTest::newRow("dark whatever the host") << 1 << QColor(Qt::black) << true;
        QTest::newRow("device, host dark") << 2 << QColor(230, 230, 230) << true;
        QTest::newRow("device, host light") << 2 << QColor(Qt::black) << false;
        QTest::newRow("device, yellow text is no dark mode") << 2 << QColor(Qt::yellow) << false;
    }

    void themeRules()
    {
        QFETCH(int, theme);
        QFETCH(QColor, hostText);
        QFETCH(bool, dark);
        HostTheme host;
        host.setWindowText(hostText);
        PageHarness h;
        h.writeSetting("theme", theme);
        QVERIFY(startMain(h));
        QCOMPARE(isDark(h), dark);
        QCOMPARE(accent(h), dark ? Yellow : Blue);
        QCOMPARE(icon(h, "baroButton"), dark ? QStringLiteral("qrc:/Images/tab_graph_yellow~universal.png")
                                              : QStringLiteral("qrc:/Images/tab_graph_blue~universal.png"));
        QCOMPARE(icon(h, "dataButton"), dark ? QStringLiteral("qrc:/Images/Data_yellow~universal.png")
                                              : QStringLiteral("qrc:/Images/Data_blue~universal.png"));
        QCOMPARE(icon(h, "settingsButton"), dark ? QStringLiteral("qrc:/Images/settings_tab_yellow~universal.png")
                                                  : QStringLiteral("qrc:/Images/settings_tab~universal.png"));
        QCOMPARE(icon(h, "helpButton"), dark ? QStringLiteral("qrc:/Images/help_tab_yellow~universal.png")
                                              : QStringLiteral("qrc:/Images/help_tab~universal.png"));
        // The pages follow the window.
        QCOMPARE(h.find("textPos", h.item("baroH"))->property("color").value<QColor>(), dark ? Yellow : Blue);
        checkClean(h);
    }

    void deviceThemeFollowsTheHostWithinOneTick()
    {
        // The ticks are driven here; the tick's own timer is tested with the back end.
        HostTheme host;
        host.setWindowText(Qt::black);
        PageHarness h;
        h.writeSetting("theme", 2);
        QVERIFY(startMain(h));
        QVERIFY(!isDark(h));
        QSignalSpy changes(h.backEnd(), &BackEnd::systemThemeChanged);
        // The first tick always tells the theme; it is light.
        h.sampleWithoutPressure(T0);
        QCOMPARE(changes.count(), 1);
        QVERIFY(!isDark(h));

        // The page does not watch the host itself: the change waits for the next tick, and
        // that tick brings it.
        host.setWindowText(QColor(240, 240, 240));
        QCoreApplication::processEvents();
        QVERIFY(!isDark(h));
        h.sampleWithoutPressure(T0 + 2);
        QCOMPARE(changes.count(), 2);
        QVERIFY(isDark(h));
        QCOMPARE(accent(h), Yellow);
        QCOMPARE(icon(h, "baroButton"), QStringLiteral("qrc:/Images/tab_graph_yellow~universal.png"));
        QCOMPARE(h.chart()->property("backgroundColor").value<QColor>(),
                 PageHarness::evaluate(h.window(), "Material.background").value<QColor>());

        host.setWindowText(Qt::black);
        h.sampleWithoutPressure(T0 + 4);
        QVERIFY(!isDark(h));
        QCOMPARE(accent(h), Blue);
        checkClean(h);
    }

    void systemThemeSignalSetsTheWindow()
    {
        PageHarness h;
        h.writeSetting("theme", 0);
        QVERIFY(startMain(h));
        emit h.backEnd()->systemThemeChanged(1);
        QVERIFY(isDark(h));
        QCOMPARE(accent(h), Yellow);
        emit h.backEnd()->systemThemeChanged(0);
        QVERIFY(!isDark(h));
        QCOMPARE(accent(h), Blue);
        // Anything but 0 is dark.
        emit h.backEnd()->systemThemeChanged(7);
        QVERIFY(isDark(h));
        checkClean(h);
    }

    void theBarLoadsThePages_data()
    {
        Columns::add<QString, QString>("button", "source");
        QTest::newRow("graph") << "baroButton" << "qrc:/BaroSwipe";
        QTest::newRow("log") << "dataButton" << "qrc:/FilesSwipe";
        QTest::newRow("settings") << "settingsButton" << "qrc:/settings";
        QTest::newRow("help") << "helpButton" << "qrc:/Help_textview";
    }

    void theBarLoadsThePages()
    {
        QFETCH(QString, button);
        QFETCH(QString, source);
        PageHarness h;
        QVERIFY(startMain(h));
        press(h, button);
        QCOMPARE(loaderSource(h), QUrl(source));
        QQuickItem* page = h.loadedPage();
        QVERIFY(page);
        QVERIFY(page->isVisible());
        if (button == "settingsButton")
            QCOMPARE(page->property("loader").value<QObject*>(), h.find("loader"));
        checkClean(h);
    }

    void eachPressMakesTheGraphAnew()
    {
        PageHarness h;
        QVERIFY(startMain(h));
        h.sample(T0, 1012.0);
        QPointer<QQuickItem> first = h.loadedPage();
        QVERIFY(first);
        QCOMPARE(h.messages().count("serie created"), 1);
        press(h, "baroButton");
        QTRY_VERIFY(first.isNull());
        QVERIFY(h.loadedPage());
        QCOMPARE(h.messages().count("serie created"), 2);
        // A new page keeps nothing of the old one: its texts wait for the next sample.
        QCOMPARE(h.find("textDate", h.item("baroH"))->property("text").toString(), QString());
        checkClean(h);
    }

    void missingPageLeavesTheAreaEmpty()
    {
        PageHarness h;
        QVERIFY(startMain(h));
        QVERIFY(h.loadedPage());
        PageHarness::evaluate(h.window(), QStringLiteral("loadPage(\"qrc:/noSuchPage\")"));
        QCOMPARE(h.loadedPage(), nullptr);
        QVERIFY(loaderSource(h).isEmpty());
        // The bar still works.
        press(h, "baroButton");
        QVERIFY(h.loadedPage());
        QCOMPARE(loaderSource(h), QUrl("qrc:/BaroSwipe"));
        checkClean(h);
    }

    void languageChangeRebuildsTheSettingsPage()
    {
        PageHarness h;
        QVERIFY(copyCatalogues(h.folder().path()));
        QVERIFY(startMain(h));
        press(h, "settingsButton");
        QPointer<QQuickItem> english = h.loadedPage();
        QVERIFY(english);

        // The settings page asks for the language; the window answers by building it anew.
        h.translations().selectLanguage("fr");
        QCOMPARE(h.messages().count("language changed to fr"), 1);
        QCOMPARE(loaderSource(h), QUrl("qrc:/settings"));
        QQuickItem* french = h.loadedPage();
        QVERIFY(french);
        QVERIFY(french != english.data());
        QVERIFY(french->isVisible());
        QTRY_VERIFY(english.isNull());
        QCOMPARE(french->property("loader").value<QObject*>(), h.find("loader"));
        const QString seaLevel = QCoreApplication::translate("BaroH", "Sea Level Pressure (QNH)");
        QVERIFY2(seaLevel != QStringLiteral("Sea Level Pressure (QNH)"), "the French catalogue is not in use");
        QCOMPARE(prop(french, "comboLangageCaption", "text").toString(), QStringLiteral("Langue"));

        // The next page loaded speaks French.
        press(h, "baroButton");
        QQuickItem* graph = h.item("baroH");
        QVERIFY(graph);
        QCOMPARE(h.find("textPreLevel", graph)->property("text").toString(), seaLevel);
        QCOMPARE(h.find("button30m", graph)->property("text").toString(),
                 QCoreApplication::translate("BaroH", "30m"));
        QVERIFY(h.find("button30m", graph)->property("text").toString() != QStringLiteral("30m"));
        h.translations().selectLanguage("en");
        checkClean(h);
    }

    void applicationStateReachesTheBackEnd()
    {
        PageHarness h;
        QVERIFY(startMain(h));
        h.sample(T0, 1012.0);
        // Active first, whatever the platform started in: that marks nothing.
        QWindowSystemInterface::handleApplicationStateChanged(Qt::ApplicationActive);
        QWindowSystemInterface::flushWindowSystemEvents();
        QVERIFY(h.backEnd()->getPauseTime().isNull());

        const QDateTime before = QDateTime::currentDateTimeUtc();
        QWindowSystemInterface::handleApplicationStateChanged(Qt::ApplicationInactive);
        QWindowSystemInterface::flushWindowSystemEvents();
        const QDateTime after = QDateTime::currentDateTimeUtc();
        QCOMPARE(QGuiApplication::applicationState(), Qt::ApplicationInactive);
        // Leaving the active state marks the moment, in UTC.
        const QDateTime paused = h.backEnd()->getPauseTime();
        QVERIFY(paused.isValid());
        QCOMPARE(paused.timeSpec(), Qt::UTC);
        QVERIFY(paused >= before && paused <= after);

        // Logging goes on in the background.
        QSignalSpy updates(h.backEnd(), &BackEnd::dataUpdated);
        h.sample(T0 + 2, 1012.0);
        h.sample(T0 + 4, 1012.0);
        QCOMPARE(updates.count(), 1);

        // Coming back marks nothing.
        QTest::qWait(20);
        QWindowSystemInterface::handleApplicationStateChanged(Qt::ApplicationActive);
        QWindowSystemInterface::flushWindowSystemEvents();
        QCOMPARE(QGuiApplication::applicationState(), Qt::ApplicationActive);
        QCOMPARE(h.backEnd()->getPauseTime(), paused);
        checkClean(h);
    }
};

QTEST_MAIN(TestMainPage)
#include "tst_mainpage.moc"
