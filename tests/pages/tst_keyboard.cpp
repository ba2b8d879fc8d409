// SPDX-License-Identifier: GPL-3.0-or-later
#include "PageDevice.h"
#include "PageDriver.h"
#include "PageHarness.h"

#include "app/BackEnd.h"
#include "log/DataSource.h"
#include "tools/DeviceSimulator.h"

#include <QtCharts/QXYSeries>
#include <QtCore/QDir>
#include <QtGui/QDesktopServices>
#include <QtGui/QGuiApplication>
#include <QtQuick/QQuickItem>
#include <QtQuick/QQuickWindow>
#include <QtTest/QtTest>
#include <QtWidgets/QApplication>
#include <qpa/qwindowsysteminterface.h>

#include <cmath>

using namespace PageDriver;

// Lists of names compared as one line each, so that a failure shows both in full.
#define COMPARE_NAMES(actual, expected) QCOMPARE((actual).join(QLatin1Char(' ')), (expected).join(QLatin1Char(' ')))

namespace {

constexpr qint64 T0 = 1700000040;

const QStringList Bar = {"baroButton", "dataButton", "settingsButton", "helpButton"};

} // namespace

// Every page worked from the keyboard alone, in the real window over the real back end:
// Tab goes round the controls in reading order and frames the one it reaches; Space, Return
// and Enter act; the arrows move through the tables and the rows.
class TestKeyboard : public QObject
{
    Q_OBJECT

private:
    static void key(PageHarness& h, Qt::Key k, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        QTest::keyClick(h.window(), k, modifiers);
    }

    // The stop of Tab the focus is in (a list's current row holds the focus of the list); the
    // text field of a spin box stands for the box.
    static QQuickItem* controlOf(QQuickItem* item)
    {
        while (item && !item->activeFocusOnTab())
            item = item->parentItem();
        QQuickItem* owner = item ? item->parentItem() : nullptr;
        if (owner && owner->property("contentItem").value<QQuickItem*>() == item
            && owner->property("focusPolicy").isValid())
            return owner;
        return item;
    }

    static QQuickItem* focused(PageHarness& h) { return controlOf(h.window()->activeFocusItem()); }

    static QString focusedName(PageHarness& h)
    {
        QQuickItem* item = focused(h);
        return item ? item->objectName() : QStringLiteral("(nothing)");
    }

    static QRectF sceneRect(QQuickItem* item)
    {
        return item->mapRectToScene(QRectF(0, 0, item->width(), item->height()));
    }

    // What is wrong with the way the focused control shows, or nothing.
    static QString frameFault(PageHarness& h)
    {
        QQuickItem* control = focused(h);
        QQuickItem* frame = h.item("focusRing");
        if (!control || !frame)
            return QStringLiteral("no control or no frame");
        // A control of the style knows the keyboard gave it the focus.
        if (h.window()->activeFocusItem() == control && control->property("visualFocus").isValid()
            && !control->property("visualFocus").toBool())
            return QStringLiteral("not shown as focused by the keyboard");
        if (!frame->isVisible())
            return QStringLiteral("no frame");
        // Round the control, as far as the window reaches.
        const QRectF window(QPointF(0, 0), h.window()->size());
        const QRectF framed = sceneRect(frame);
        const QRectF area = sceneRect(control);
        if (!framed.contains(area.intersected(window)) || framed.width() > area.width() + 12
            || framed.height() > area.height() + 12)
            return QStringLiteral("frame elsewhere");
        // It is scrolled into the part of the page that shows.
        QQuickItem* page = h.loadedPage();
        const QRectF shown = page && page->isAncestorOf(control) ? sceneRect(page) : window;
        if (!shown.adjusted(-0.5, -0.5, 0.5, 0.5).contains(area))
            return QStringLiteral("out of sight");
        return QString();
    }

    // Once round the window with Tab (or Shift+Tab), from the stop after the focus: the names
    // of the controls reached, each marked if it does not show its focus. The round ends when
    // the first stop comes again.
    static QStringList round(PageHarness& h, bool backwards = false)
    {
        QStringList names;
        QQuickItem* first = nullptr;
        for (int i = 0; i < 80; ++i) {
            key(h, backwards ? Qt::Key_Backtab : Qt::Key_Tab);
            QQuickItem* control = focused(h);
            if (!control)
                return names << QStringLiteral("(focus lost)");
            if (control == first)
                return names;
            if (!first)
                first = control;
            const QString fault = frameFault(h);
            names << (fault.isEmpty() ? control->objectName() : control->objectName() + " (" + fault + ")");
        }
        return names << QStringLiteral("(no end)");
    }

    // The round, turned to start at `start`.
    static QStringList roundFrom(PageHarness& h, const QString& start, bool backwards = false)
    {
        QStringList names = round(h, backwards);
        const int at = names.indexOf(start);
        if (at < 0)
            return names;
        return names.mid(at) + names.mid(0, at);
    }

    // Tab until the control named `name` has the focus.
    static QQuickItem* tabTo(PageHarness& h, const QString& name)
    {
        for (int i = 0; i < 80; ++i) {
            key(h, Qt::Key_Tab);
            if (focusedName(h) == name)
                return focused(h);
        }
        return nullptr;
    }

    static bool startMain(PageHarness& h, int theme = 0)
    {
        h.writeSetting("theme", theme);
        return PageDriver::startMain(h, QSize(800, 600));
    }

    // A page of the bar, chosen with the keys.
    static void open(PageHarness& h, const QString& button, Qt::Key with = Qt::Key_Return)
    {
        QVERIFY2(tabTo(h, button), qPrintable(button));
        key(h, with);
    }

    static QWidget* topDialog(const char* className)
    {
        for (QWidget* widget : QApplication::topLevelWidgets()) {
            if (widget->isVisible() && widget->inherits(className))
                return widget;
        }
        return nullptr;
    }

    // A dialog of widgets has closed: the window manager gives the main window the keys back,
    // which the headless platform does not do by itself.
    static void backToWindow(PageHarness& h)
    {
        QWindowSystemInterface::handleWindowActivated(h.window(), Qt::ActiveWindowFocusReason);
        QWindowSystemInterface::flushWindowSystemEvents();
        QCOMPARE(QGuiApplication::focusWindow(), static_cast<QWindow*>(h.window()));
    }

    static QObject* swipe(PageHarness& h) { return h.loadedPage()->property("view").value<QObject*>(); }
    static QQuickItem* details(PageHarness& h) { return h.item("fileDetails", h.loadedPage()); }
    static QVariant inDetails(PageHarness& h, const QString& expression)
    {
        return PageHarness::evaluate(h.find("ft", details(h)), expression);
    }

    // Messages the page tests allow beside the page's own.
    static void checkCleanBut(PageHarness& h, QStringList allowed)
    {
        // The headless platform says so whenever a dialog of widgets opens.
        allowed << "This plugin does not support propagateSizeHints()";
        PageDriver::checkClean(h, allowed);
    }

private slots:
    void initTestCase()
    {
        // Nothing a test opens may reach a viewer.
        QDesktopServices::setUrlHandler(QStringLiteral("file"), this, "ignoreUrl");
    }

    void cleanupTestCase() { QDesktopServices::unsetUrlHandler(QStringLiteral("file")); }

    void theGraphPageAndTheBar()
    {
        PageHarness h;
        QVERIFY(startMain(h));
        QStringList names = roundFrom(h, "makerLink");
        // Where the barogram button stands in its row is the layout's business; it is reached once.
        QCOMPARE(names.count("buttonBarogram"), 1);
        names.removeAll("buttonBarogram");
        const QStringList expected = QStringList({"makerLink", "deviceLink", "button30m", "button3h", "button6h",
                                                 "button12h", "button1d", "button2d", "button4d", "button8d",
                                                 "button16d", "chartKeys"})
                                     + Bar;
        COMPARE_NAMES(names, expected);
        // Shift+Tab goes the same way back.
        QStringList back = roundFrom(h, "helpButton", true);
        back.removeAll("buttonBarogram");
        std::reverse(back.begin(), back.end());
        COMPARE_NAMES(back, expected);

        // A link of the banner opens with Return as with a click.
        QVERIFY(tabTo(h, "deviceLink"));
        key(h, Qt::Key_Return);
        QCOMPARE(h.openedUrls().size(), 1);
        QCOMPARE(h.openedUrls().at(0).host(), QStringLiteral("www.quillmere.com"));
        QVERIFY(tabTo(h, "makerLink"));
        key(h, Qt::Key_Space);
        QCOMPARE(h.openedUrls().size(), 2);

        // The bar: Return, Space and Enter each change the page.
        open(h, "dataButton");
        QCOMPARE(loaderSource(h), QUrl("qrc:/FilesSwipe"));
        open(h, "settingsButton", Qt::Key_Space);
        QCOMPARE(loaderSource(h), QUrl("qrc:/settings"));
        open(h, "helpButton", Qt::Key_Enter);
        QCOMPARE(loaderSource(h), QUrl("qrc:/Help_textview"));
        open(h, "baroButton");
        QCOMPARE(loaderSource(h), QUrl("qrc:/BaroSwipe"));
        checkClean(h);
    }

    void theRangeButtonsAndTheChart()
    {
        PageHarness h;
        QVERIFY(startMain(h));
        QVERIFY(h.insertRows("BARO30M", T0 - 1200, T0 - 2, 2, 1011.5));
        h.sample(T0, 1011.5);
        QObject* chart = h.chart();
        QObject* axisX = PageHarness::byId(chart, "axisX");

        QQuickItem* threeHours = tabTo(h, "button3h");
        QVERIFY(threeHours);
        key(h, Qt::Key_Return);
        QCOMPARE(chart->property("chartNb").toInt(), 1);
        QCOMPARE(axisX->property("min").toDouble(), -3.0);
        QVERIFY(threeHours->property("checked").toBool());
        key(h, Qt::Key_Backtab);
        QCOMPARE(focusedName(h), QStringLiteral("button30m"));
        key(h, Qt::Key_Space);
        QCOMPARE(chart->property("chartNb").toInt(), 0);
        QCOMPARE(axisX->property("min").toDouble(), -30.0);
        QVERIFY(!threeHours->property("checked").toBool());

        // The arrows move the reading cursor along the curve, half a minute a step here.
        QVERIFY(tabTo(h, "chartKeys"));
        QtCharts::QXYSeries* helper = h.series(h.seriesCount() - 1);
        QVERIFY(!helper->isVisible());
        key(h, Qt::Key_Left);
        QVERIFY(helper->isVisible());
        QPointF point = chart->property("m_point").toPointF();
        QVERIFY2(std::abs(point.x() + 0.5) < 1e-6, qPrintable(QString::number(point.x())));
        QCOMPARE(point.y(), 1011.5);
        QCOMPARE(chart->property("title").toString(), h.log()->calcInfo(point, 0));
        key(h, Qt::Key_Left);
        key(h, Qt::Key_Left);
        key(h, Qt::Key_Right);
        QVERIFY(std::abs(chart->property("m_point").toPointF().x() + 1.0) < 1e-6);

        // Plus and minus zoom as the wheel does; Escape shows the whole chart again.
        key(h, Qt::Key_Plus);
        QVERIFY(std::abs(chart->property("zoomLevel").toDouble() - 1.1) < 1e-9);
        QVERIFY(PageHarness::evaluate(chart, "isZoomed()").toBool());
        const double before = axisX->property("min").toDouble();
        key(h, Qt::Key_Left, Qt::ShiftModifier);
        QVERIFY(axisX->property("min").toDouble() < before);
        key(h, Qt::Key_Minus);
        QVERIFY(std::abs(chart->property("zoomLevel").toDouble() - 1.0) < 1e-9);
        key(h, Qt::Key_Plus);
        key(h, Qt::Key_Escape);
        QCOMPARE(chart->property("zoomLevel").toDouble(), 1.0);
        QVERIFY(!PageHarness::evaluate(chart, "isZoomed()").toBool());
        QVERIFY(!helper->isVisible());
        // Unzoomed, Shift and an arrow leave the chart where it ends: now.
        key(h, Qt::Key_Left, Qt::ShiftModifier);
        QCOMPARE(axisX->property("max").toDouble(), 0.0);
        checkClean(h);
    }

    void theLargeDisplay()
    {
        PageHarness h;
        h.writeSetting("splitScreen", 1);
        QVERIFY(startMain(h));
        QObject* view = h.find("view");
        QStringList names = roundFrom(h, "makerLink");
        names.removeAll("buttonBarogram");
        COMPARE_NAMES(names.mid(names.indexOf("chartKeys")), QStringList({"chartKeys", "indicator"}) + Bar);

        QVERIFY(tabTo(h, "indicator"));
        key(h, Qt::Key_Right);
        QCOMPARE(view->property("currentIndex").toInt(), 1);
        // Now the large display is the page, and the graph is out of the way of Tab.
        QTRY_VERIFY(std::abs(h.item("baroV")->mapToScene(QPointF(0, 0)).x()) < 0.5);
        COMPARE_NAMES(roundFrom(h, "makerLink"), QStringList({"makerLink", "deviceLink", "indicator"}) + Bar);
        QVERIFY(tabTo(h, "makerLink"));
        QVERIFY(h.item("baroV")->isAncestorOf(h.window()->activeFocusItem()));
        QVERIFY(tabTo(h, "indicator"));
        key(h, Qt::Key_Left);
        QCOMPARE(view->property("currentIndex").toInt(), 0);
        key(h, Qt::Key_Return);
        QCOMPARE(view->property("currentIndex").toInt(), 1);
        key(h, Qt::Key_Space);
        QCOMPARE(view->property("currentIndex").toInt(), 0);
        checkClean(h);
    }

    void theTablesAndTheirRows()
    {
        PageHarness h;
        QVERIFY(startMain(h));
        QVERIFY(h.insertRows("BARO6H", T0, T0 + 48, 12, 1009.0));
        open(h, "dataButton");
        COMPARE_NAMES(roundFrom(h, "makerLink"), QStringList({"makerLink", "deviceLink", "deleteAll", "fileList"}) + Bar);

        // The arrows move through the tables; Return opens the one chosen.
        QQuickItem* list = tabTo(h, "fileList");
        QVERIFY(list);
        QCOMPARE(list->property("currentIndex").toInt(), -1);
        key(h, Qt::Key_Down);
        QCOMPARE(list->property("currentIndex").toInt(), 0);
        key(h, Qt::Key_Down);
        key(h, Qt::Key_Down);
        key(h, Qt::Key_Down);
        key(h, Qt::Key_Up);
        QCOMPARE(list->property("currentIndex").toInt(), 2);
        QCOMPARE(swipe(h)->property("currentIndex").toInt(), 0);
        key(h, Qt::Key_Return);
        QCOMPARE(swipe(h)->property("currentIndex").toInt(), 1);
        QCOMPARE(h.find("ft", details(h))->property("text").toString(), QStringLiteral("6h"));
        QCOMPARE(inDetails(h, "m_fileNb").toInt(), 2);
        QCOMPARE(inDetails(h, "model_.count").toInt(), 5);

        // The rows take the keys at once, and show it.
        QCOMPARE(focusedName(h), QStringLiteral("fileContent"));
        QTRY_COMPARE(frameFault(h), QString());
        QQuickItem* rows = focused(h);
        QCOMPARE(rows->property("currentIndex").toInt(), -1);
        key(h, Qt::Key_Down);
        QCOMPARE(rows->property("currentIndex").toInt(), 0);
        key(h, Qt::Key_Down);
        key(h, Qt::Key_Down);
        key(h, Qt::Key_Up);
        QCOMPARE(rows->property("currentIndex").toInt(), 1);
        key(h, Qt::Key_End);
        QCOMPARE(rows->property("currentIndex").toInt(), 4);
        key(h, Qt::Key_Home);
        QCOMPARE(rows->property("currentIndex").toInt(), 0);
        key(h, Qt::Key_PageDown);
        QVERIFY(rows->property("currentIndex").toInt() > 1);
        key(h, Qt::Key_PageUp);
        QCOMPARE(rows->property("currentIndex").toInt(), 0);
        key(h, Qt::Key_Down);

        // The list is one stop, its current row's delete button none: Delete does what it does.
        COMPARE_NAMES(roundFrom(h, "makerLink"), QStringList({"makerLink", "deviceLink", "csvButton", "gpxButton",
                                                        "deleteTable", "fileContent"})
                                                    + Bar);
        QVERIFY(h.item("rowDelete", rows->property("currentItem").value<QQuickItem*>())->isVisible());
        const QString second = inDetails(h, "model_.get(1).key").toString();
        QVERIFY(tabTo(h, "fileContent"));
        QCOMPARE(rows->property("currentIndex").toInt(), 1);
        key(h, Qt::Key_Delete);
        QCOMPARE(h.rowCount("BARO6H"), 4);
        QCOMPARE(inDetails(h, "model_.count").toInt(), 4);
        QVERIFY(inDetails(h, "model_.get(1).key").toString() != second);
        QCOMPARE(focusedName(h), QStringLiteral("fileContent"));
        QCOMPARE(rows->property("currentIndex").toInt(), -1);

        // Escape goes back to the list, on the table it left; Space opens it again.
        key(h, Qt::Key_Escape);
        QCOMPARE(swipe(h)->property("currentIndex").toInt(), 0);
        QCOMPARE(focusedName(h), QStringLiteral("fileList"));
        QCOMPARE(list->property("currentIndex").toInt(), 2);
        // The frame follows the list as it swipes in.
        QTRY_COMPARE(frameFault(h), QString());
        key(h, Qt::Key_Down);
        key(h, Qt::Key_Space);
        QCOMPARE(swipe(h)->property("currentIndex").toInt(), 1);
        QCOMPARE(h.find("ft", details(h))->property("text").toString(), QStringLiteral("12h"));
        checkCleanBut(h, {"delete one record OK"});
    }

    void theDeleteButtonsAskFirst()
    {
        PageHarness h;
        QVERIFY(startMain(h));
        QVERIFY(h.insertRows("BARO3H", T0, T0 + 12, 6, 1011.0));
        QVERIFY(h.insertRows("BARO1D", T0, T0 + 96, 48, 1011.0));
        open(h, "dataButton");
        QVERIFY(tabTo(h, "fileList"));
        key(h, Qt::Key_Down);
        key(h, Qt::Key_Down);
        key(h, Qt::Key_Enter);
        QCOMPARE(inDetails(h, "model_.count").toInt(), 3);
        QTRY_VERIFY(std::abs(details(h)->mapToScene(QPointF(0, 0)).x()) < 0.5);

        // Escape on the question keeps the table; Return answers yes.
        QObject* question = h.find("areYouSure", details(h));
        QVERIFY(tabTo(h, "deleteTable"));
        key(h, Qt::Key_Return);
        QVERIFY(question->property("visible").toBool());
        QWidget* box = nullptr;
        QTRY_VERIFY((box = topDialog("QMessageBox")) != nullptr);
        QTest::keyClick(box, Qt::Key_Escape);
        QTRY_VERIFY(!question->property("visible").toBool());
        QCOMPARE(h.rowCount("BARO3H"), 3);
        backToWindow(h);
        QCOMPARE(focusedName(h), QStringLiteral("deleteTable"));
        key(h, Qt::Key_Space);
        QTRY_VERIFY((box = topDialog("QMessageBox")) != nullptr);
        QTest::keyClick(box, Qt::Key_Return);
        QTRY_VERIFY(!question->property("visible").toBool());
        QCOMPARE(h.rowCount("BARO3H"), 0);
        QCOMPARE(inDetails(h, "model_.count").toInt(), 0);
        QCOMPARE(h.rowCount("BARO1D"), 3);
        backToWindow(h);

        // The list's own button empties every table.
        key(h, Qt::Key_Escape);
        QVERIFY(tabTo(h, "deleteAll"));
        key(h, Qt::Key_Space);
        QTRY_VERIFY((box = topDialog("QMessageBox")) != nullptr);
        QTest::keyClick(box, Qt::Key_Return);
        QTRY_COMPARE(h.rowCount("BARO1D"), 0);
        checkCleanBut(h, {"empty one table OK"});
    }

    void theExportButtonsOnlyOpenTheDialog()
    {
        PageHarness h;
        QVERIFY(startMain(h));
        QVERIFY(h.insertRows("BARO30M", T0, T0 + 4, 2, 1011.0));
        open(h, "dataButton");
        QVERIFY(tabTo(h, "fileList"));
        key(h, Qt::Key_Down);
        key(h, Qt::Key_Return);
        QTRY_VERIFY(std::abs(details(h)->mapToScene(QPointF(0, 0)).x()) < 0.5);
        QObject* dialog = h.find("fileDiag", details(h));

        QVERIFY(tabTo(h, "gpxButton"));
        key(h, Qt::Key_Space);
        QVERIFY(dialog->property("visible").toBool());
        QCOMPARE(dialog->property("nameFilters").toStringList(), QStringList({"GPS files (*.gpx)"}));
        QWidget* files = nullptr;
        QTRY_VERIFY((files = topDialog("QFileDialog")) != nullptr);
        QTest::keyClick(files, Qt::Key_Escape);
        QTRY_VERIFY(!dialog->property("visible").toBool());
        QCOMPARE(h.messages().count("filediag rejected"), 1);
        backToWindow(h);

        QVERIFY(tabTo(h, "csvButton"));
        key(h, Qt::Key_Return);
        QVERIFY(dialog->property("visible").toBool());
        QCOMPARE(dialog->property("nameFilters").toStringList(), QStringList({"CSV files (*.csv)"}));
        QTRY_VERIFY((files = topDialog("QFileDialog")) != nullptr);
        QTest::keyClick(files, Qt::Key_Escape);
        QTRY_VERIFY(!dialog->property("visible").toBool());

        // Nothing was exported with no name.
        QCOMPARE(h.messages().filter("exporting to").size(), 0);
        QCOMPARE(QDir(h.folder().path()).entryList({"*.gpx", "*.csv"}, QDir::Files), QStringList());
        checkCleanBut(h, {"filediag rejected"});
    }

    void theSettingsPage()
    {
        PageHarness h;
        QVERIFY(startMain(h));
        open(h, "settingsButton");
        QCOMPARE(loaderSource(h), QUrl("qrc:/settings"));
        QQuickItem* page = h.loadedPage();
        // Without a serial port the calibration button is off, and Tab passes it by.
        QVERIFY(!control(page, "buttonCalibration")->property("enabled").toBool());
        COMPARE_NAMES(roundFrom(h, "makerLink"),
                 QStringList({"makerLink", "deviceLink", "comboLangage", "comboThemeBox", "comboTimeZoneBox",
                              "comboDateFormatBox", "comboTimeFormatBox", "comboSpeedUnitBox", "comboPreUnitBox",
                              "comboPrecisionBox", "comboFormatLocationBox", "comboPressureLevelBox",
                              "comboElevationUnitsBox", "elevation", "straight", "spline", "swSplitScreen",
                              "swWarning", "warning3h", "alarm3h", "alarm1h", "swForecast", "offset",
                              "buttonConnections"})
                         + Bar);

        // A combo box opens on Return, the arrows choose, Return takes the choice.
        QQuickItem* timeZone = tabTo(h, "comboTimeZoneBox");
        QVERIFY(timeZone);
        QCOMPARE(timeZone->property("currentIndex").toInt(), 1);
        QObject* popup = timeZone->property("popup").value<QObject*>();
        key(h, Qt::Key_Return);
        QTRY_VERIFY(popup->property("visible").toBool());
        key(h, Qt::Key_Up);
        key(h, Qt::Key_Return);
        QTRY_VERIFY(!popup->property("visible").toBool());
        QCOMPARE(timeZone->property("currentIndex").toInt(), 0);

        // A spin box counts with the arrows.
        QVERIFY(tabTo(h, "elevation"));
        key(h, Qt::Key_Up);
        key(h, Qt::Key_Up);
        QCOMPARE(prop(page, "elevation", "realValue").toDouble(), 2.0);

        // A radio button is chosen with Return, a switch turns over with Space or Enter.
        QQuickItem* straight = tabTo(h, "straight");
        QVERIFY(straight);
        QVERIFY(!straight->property("checked").toBool());
        key(h, Qt::Key_Return);
        QVERIFY(straight->property("checked").toBool());
        QVERIFY(!prop(page, "spline", "checked").toBool());
        key(h, Qt::Key_Return);
        QVERIFY(straight->property("checked").toBool());
        QQuickItem* split = tabTo(h, "swSplitScreen");
        QVERIFY(split);
        key(h, Qt::Key_Space);
        QVERIFY(split->property("checked").toBool());
        QQuickItem* warning = tabTo(h, "swWarning");
        key(h, Qt::Key_Enter);
        QVERIFY(!warning->property("checked").toBool());
        key(h, Qt::Key_Enter);
        QVERIFY(warning->property("checked").toBool());

        // Leaving by the keys saves what the keys chose.
        open(h, "baroButton");
        QCOMPARE(loaderSource(h), QUrl("qrc:/BaroSwipe"));
        QCOMPARE(stored(h, "timeZone").toInt(), 0);
        QCOMPARE(stored(h, "elevation").toDouble(), 2.0);
        checkStored(h, {{"SettingSplineLine", 0}, {"splitScreen", 1}, {"warningOn", 1}});
        checkClean(h);
    }

    void theConnectionsPage()
    {
        PageHarness h;
        QVERIFY(startMain(h));
        open(h, "settingsButton");
        open(h, "buttonConnections");
        QCOMPARE(loaderSource(h), QUrl("qrc:/settingsConnections"));
        QQuickItem* page = h.loadedPage();
        // The groups of the inputs that are off are passed by.
        COMPARE_NAMES(roundFrom(h, "makerLink"), QStringList({"makerLink", "deviceLink", "swPos", "posInternal", "posNmea",
                                                         "swSerial", "swTcp", "swUdp", "swUdpOut", "swSignalkTcp",
                                                         "swSignalkUdp", "swWatchPage"})
                                                    + Bar);

        QQuickItem* tcp = tabTo(h, "swTcp");
        QVERIFY(tcp);
        key(h, Qt::Key_Space);
        QVERIFY(tcp->property("checked").toBool());
        key(h, Qt::Key_Tab);
        QCOMPARE(focusedName(h), QStringLiteral("tcpIpAddress"));
        QCOMPARE(frameFault(h), QString());
        key(h, Qt::Key_Tab);
        QCOMPARE(focusedName(h), QStringLiteral("tcpIpPort"));
        QVERIFY(tabTo(h, "swTcp"));
        key(h, Qt::Key_Return);
        QVERIFY(!tcp->property("checked").toBool());

        QQuickItem* serial = tabTo(h, "swSerial");
        key(h, Qt::Key_Return);
        QVERIFY(serial->property("checked").toBool());
        QStringList names = roundFrom(h, "swSerial");
        COMPARE_NAMES(names.mid(0, 7), QStringList({"swSerial", "serialPort", "serialSpeed", "serialParity", "serialNbBits",
                                               "serialStopBit", "serialControl"}));
        QVERIFY(tabTo(h, "swSerial"));
        key(h, Qt::Key_Space);
        QVERIFY(!serial->property("checked").toBool());

        QQuickItem* nmea = tabTo(h, "posNmea");
        key(h, Qt::Key_Space);
        QVERIFY(nmea->property("checked").toBool());
        QVERIFY(!prop(page, "posInternal", "checked").toBool());
        QQuickItem* position = tabTo(h, "swPos");
        key(h, Qt::Key_Return);
        QVERIFY(!position->property("checked").toBool());

        open(h, "baroButton");
        checkStored(h, {{"SettingPosSource", 2}, {"SettingUsePos", 0}, {"SettingUseTcp", 0}});
        checkClean(h);
    }

    void theCalibrationPage()
    {
        PageHarness h;
        DeviceSimulator device(PageDevice::options(h));
        QVERIFY(PageDevice::startReading(h, device));

        open(h, "settingsButton");
        open(h, "buttonCalibration");
        QCOMPARE(loaderSource(h), QUrl("qrc:/quillmereCalibration"));
        QQuickItem* page = h.loadedPage();
        QTRY_VERIFY_WITH_TIMEOUT(prop(page, "offsetInput", "enabled").toBool(), 3000);

        // Every control that is on, in reading order.
        QStringList expected{"makerLink", "deviceLink"};
        for (const char* id : {"offsetInput", "slopeInput", "buttonCalib", "buttonReset", "buttonCancel"}) {
            QObject* object = control(page, id);
            if (object->property("enabled").toBool() && object->property("visible").toBool())
                expected << QString::fromLatin1(id);
        }
        QVERIFY(expected.contains("buttonCancel"));
        COMPARE_NAMES(roundFrom(h, "makerLink"), expected + Bar);

        QVERIFY(tabTo(h, "slopeInput"));
        key(h, Qt::Key_Up);
        QCOMPARE(prop(page, "slopeInput", "realValue").toDouble(), 1.0);
        const QString shown = prop(page, "stationPressure", "text").toString();
        QVERIFY(tabTo(h, "offsetInput"));
        key(h, Qt::Key_Up);
        QVERIFY(prop(page, "stationPressure", "text").toString() != shown);

        // Cancel leads back, with nothing sent to the device.
        QSignalSpy commands(&device, &DeviceSimulator::commandReceived);
        QVERIFY(tabTo(h, "buttonCancel"));
        key(h, Qt::Key_Return);
        QCOMPARE(loaderSource(h), QUrl("qrc:/BaroSwipe"));
        QTest::qWait(200);
        QCOMPARE(commands.count(), 0);
        QStringList faults;
        for (const QString& message : h.unexpectedMessages()) {
            if (message.startsWith(QLatin1String("qrc:")) || message.contains(QLatin1String("QML")))
                faults << message;
        }
        QVERIFY2(faults.isEmpty(), qPrintable(faults.join('\n')));
    }

    void theHelpPage()
    {
        PageHarness h;
        QVERIFY(startMain(h));
        open(h, "helpButton");
        COMPARE_NAMES(roundFrom(h, "btnPolicy"), QStringList({"btnPolicy", "scrollv"}) + Bar);

        QQuickItem* policy = tabTo(h, "btnPolicy");
        QVERIFY(policy);
        key(h, Qt::Key_Return);
        QCOMPARE(policy->property("gotoPrivacy").toBool(), false);
        QCOMPARE(policy->property("text").toString(), QStringLiteral("Back to help"));
        key(h, Qt::Key_Space);
        QCOMPARE(policy->property("gotoPrivacy").toBool(), true);
        QCOMPARE(policy->property("text").toString(), QStringLiteral("Privacy Policy"));

        // The text is read with the keys.
        QQuickItem* text = tabTo(h, "scrollv");
        QVERIFY(text);
        QObject* flick = text->property("contentItem").value<QObject*>();
        const double end = flick->property("contentHeight").toDouble() - flick->property("height").toDouble();
        QVERIFY(end > 1000);
        QCOMPARE(flick->property("contentY").toDouble(), 0.0);
        key(h, Qt::Key_Down);
        const double line = flick->property("contentY").toDouble();
        QVERIFY(line > 0);
        key(h, Qt::Key_PageDown);
        QVERIFY(flick->property("contentY").toDouble() > line + 100);
        key(h, Qt::Key_End);
        QCOMPARE(flick->property("contentY").toDouble(), end);
        key(h, Qt::Key_Up);
        QVERIFY(flick->property("contentY").toDouble() < end);
        key(h, Qt::Key_Home);
        QCOMPARE(flick->property("contentY").toDouble(), 0.0);
        checkClean(h);
    }

    // The pointer gives the focus as ever, and no frame shows for it; the keys bring it back.
    void aClickShowsNoFrame()
    {
        PageHarness h;
        QVERIFY(startMain(h));
        QVERIFY(h.insertRows("BARO3H", T0, T0 + 12, 6, 1011.0));
        QQuickItem* frame = h.item("focusRing");
        QVERIFY(frame);
        press(h, "dataButton");
        QVERIFY(!frame->isVisible());
        press(h, "fileEntry1");
        QTRY_VERIFY(std::abs(details(h)->mapToScene(QPointF(0, 0)).x()) < 0.5);
        QCOMPARE(focusedName(h), QStringLiteral("fileContent"));
        QVERIFY(!frame->isVisible());
        QQuickItem* firstRow = h.item("rowText", h.item("row0", details(h)));
        QVERIFY(firstRow);
        QVERIFY(PageInput::click(h.window(), h.loadedPage(), firstRow));
        QCOMPARE(h.item("fileContent")->property("currentIndex").toInt(), 0);
        QCOMPARE(focusedName(h), QStringLiteral("fileContent"));
        QVERIFY(!frame->isVisible());
        key(h, Qt::Key_Down);
        QCOMPARE(focusedName(h), QStringLiteral("fileContent"));
        QVERIFY(frame->isVisible());
        checkClean(h);
    }

public slots:
    void ignoreUrl(const QUrl&) {}
};

QTEST_MAIN(TestKeyboard)
#include "tst_keyboard.moc"
