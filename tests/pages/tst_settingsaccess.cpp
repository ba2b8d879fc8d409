// SPDX-License-Identifier: GPL-3.0-or-later
#include "PageDriver.h"
#include "PageHarness.h"
#include "tests/support/Columns.h"

#include "app/BackEnd.h"
#include "app/TranslationHandler.h"

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QRegularExpression>
#include <QtCore/QTranslator>
#include <QtGui/QAccessible>
#include <QtGui/QColor>
#include <QtQuick/QQuickItem>
#include <QtQuick/QQuickWindow>
#include <QtTest/QtTest>

using namespace PageDriver;

namespace {

struct Control
{
    QString name;
    QAccessible::Role role;
};

// The controls of each page, found by what a screen reader says of them, in English. The
// combo and spin boxes go by their captions, switches and buttons by their texts.
const QList<Control> MainBar = {
    {"Graph", QAccessible::Button},
    {"Data", QAccessible::Button},
    {"Settings", QAccessible::Button},
    {"Help", QAccessible::Button},
};

const QList<Control> SettingsControls = {
    {"Langage", QAccessible::ComboBox},
    {"Theme", QAccessible::ComboBox},
    {"Time zone", QAccessible::ComboBox},
    {"Date format", QAccessible::ComboBox},
    {"Time format", QAccessible::ComboBox},
    {"Speed format", QAccessible::ComboBox},
    {"Pressure units", QAccessible::ComboBox},
    {"Precision display", QAccessible::ComboBox},
    {"Location display", QAccessible::ComboBox},
    {"Pressure display", QAccessible::ComboBox},
    {"Elevation units", QAccessible::ComboBox},
    {"Elevation (meters)", QAccessible::SpinBox},
    {"Straight", QAccessible::RadioButton},
    {"Spline", QAccessible::RadioButton},
    {"Data on two screens", QAccessible::CheckBox},
    {"Pressure display offset (mb)", QAccessible::SpinBox},
    {"Connections settings", QAccessible::Button},
    {"Quillmere Skerry\ncalibration", QAccessible::Button},
};

const QList<Control> ConnectionsControls = {
    {"Position", QAccessible::CheckBox},
    {"Internal", QAccessible::RadioButton},
    {"NMEA", QAccessible::RadioButton},
    {"Serial NMEA input", QAccessible::CheckBox},
    {"Serial port", QAccessible::ComboBox},
    {"Speed", QAccessible::ComboBox},
    {"Parity", QAccessible::ComboBox},
    {"Data bits", QAccessible::ComboBox},
    {"Stop bits", QAccessible::ComboBox},
    {"Flow control", QAccessible::ComboBox},
    {"TCP NMEA input", QAccessible::CheckBox},
    {"TCP address", QAccessible::EditableText},
    {"TCP port", QAccessible::SpinBox},
    {"UDP NMEA input", QAccessible::CheckBox},
    {"UDP input port", QAccessible::SpinBox},
    {"UDP NMEA output", QAccessible::CheckBox},
    {"UDP output port", QAccessible::SpinBox},
    {"Also send position (RMC)", QAccessible::CheckBox},
};

const QList<Control> CalibrationControls = {
    {"Set Skerry sensor offset (mb)", QAccessible::SpinBox},
    {"Set sensor pressure slope (mb/bar)", QAccessible::SpinBox},
    {"Calibrate", QAccessible::Button},
    {"Factory reset", QAccessible::Button},
    {"Cancel", QAccessible::Button},
};

void collect(QAccessibleInterface* node, QList<QAccessibleInterface*>& into, int depth = 0)
{
    if (!node || depth > 60)
        return;
    into << node;
    for (int i = 0; i < node->childCount(); ++i)
        collect(node->child(i), into, depth + 1);
}

} // namespace

// The settings pages and the bar of the main window through Qt's accessibility interface,
// as a screen reader or a UI automation tool sees them, in English and in French; and every
// page in both languages and both themes with no QML warning.
class TestSettingsAccess : public QObject
{
    Q_OBJECT

private:
    static bool startMain(PageHarness& h, const QString& language = QStringLiteral("en"))
    {
        return PageDriver::startMain(h, QSize(1000, 800), language);
    }

    static QAccessibleInterface* findControl(PageHarness& h, const QString& name, QAccessible::Role role)
    {
        QList<QAccessibleInterface*> all;
        collect(QAccessible::queryAccessibleInterface(h.window()), all);
        for (QAccessibleInterface* node : all) {
            if (node->isValid() && node->role() == role && node->text(QAccessible::Name) == name)
                return node;
        }
        return nullptr;
    }

    static QString describe(PageHarness& h)
    {
        QList<QAccessibleInterface*> all;
        collect(QAccessible::queryAccessibleInterface(h.window()), all);
        QStringList lines;
        for (QAccessibleInterface* node : all) {
            if (!node->text(QAccessible::Name).isEmpty())
                lines << QStringLiteral("%1 [%2]").arg(node->text(QAccessible::Name)).arg(int(node->role()), 0, 16);
        }
        return lines.join(QLatin1Char('\n'));
    }

    static bool pressByAccessibility(PageHarness& h, const QString& name, QAccessible::Role role)
    {
        QAccessibleInterface* control = findControl(h, name, role);
        if (!control || !control->actionInterface())
            return false;
        const QString action = role == QAccessible::CheckBox ? QAccessibleActionInterface::toggleAction()
                                                             : QAccessibleActionInterface::pressAction();
        if (!control->actionInterface()->actionNames().contains(action))
            return false;
        control->actionInterface()->doAction(action);
        return true;
    }

    static void checkControls(PageHarness& h, const QList<Control>& controls, const char* context)
    {
        for (const Control& control : controls) {
            const QString name = context ? QCoreApplication::translate(context, control.name.toUtf8().constData())
                                         : control.name;
            QVERIFY2(findControl(h, name, control.role),
                     qPrintable(QStringLiteral("no %1 named \"%2\" among:\n%3").arg(int(control.role)).arg(name, describe(h))));
        }
    }

private slots:
    void initTestCase()
    {
        QAccessible::setActive(true);
    }

    void everyControlIsFoundByNameAndRole()
    {
        PageHarness h;
        h.writeSetting("SettingSerialPort", QStringLiteral("None"));
        QVERIFY(startMain(h));
        checkControls(h, MainBar, nullptr);

        // The bar, pressed the way a screen reader presses.
        QVERIFY(pressByAccessibility(h, "Settings", QAccessible::Button));
        QCOMPARE(loaderSource(h), QUrl("qrc:/settings"));
        QTRY_COMPARE(h.loadedPage()->objectName(), QStringLiteral("settingsPage"));
        checkControls(h, SettingsControls, nullptr);
        // A switch toggles, as a click would.
        QVERIFY(pressByAccessibility(h, "Data on two screens", QAccessible::CheckBox));
        QCOMPARE(PageHarness::byId(h.loadedPage(), "swSplitScreen")->property("checked").toBool(), true);

        QVERIFY(pressByAccessibility(h, "Connections settings", QAccessible::Button));
        QCOMPARE(loaderSource(h), QUrl("qrc:/settingsConnections"));
        QTRY_COMPARE(h.loadedPage()->objectName(), QStringLiteral("connectionsPage"));
        QCOMPARE(h.backEnd()->getSetting("splitScreen", 0).toInt(), 1);
        checkControls(h, ConnectionsControls, nullptr);
        QVERIFY(pressByAccessibility(h, "Position", QAccessible::CheckBox));
        QCOMPARE(PageHarness::byId(h.loadedPage(), "swPos")->property("checked").toBool(), false);

        QVERIFY(pressByAccessibility(h, "Graph", QAccessible::Button));
        QCOMPARE(loaderSource(h), QUrl("qrc:/BaroSwipe"));
        QCOMPARE(h.backEnd()->getSetting("SettingUsePos", 1).toInt(), 0);

        PageHarness::evaluate(h.window(), QStringLiteral("loader.setSource(\"qrc:/quillmereCalibration\")"));
        QTRY_COMPARE(h.loadedPage()->objectName(), QStringLiteral("calibrationPage"));
        checkControls(h, CalibrationControls, nullptr);
        QVERIFY(pressByAccessibility(h, "Cancel", QAccessible::Button));
        QCOMPARE(loaderSource(h), QUrl("qrc:/BaroSwipe"));

        QVERIFY(pressByAccessibility(h, "Data", QAccessible::Button));
        QCOMPARE(loaderSource(h), QUrl("qrc:/FilesSwipe"));
        // The help page may not be built; the press must still do what a click does.
        QVERIFY(pressByAccessibility(h, "Help", QAccessible::Button));
        if (QFile::exists(":/Help_textview"))
            QCOMPARE(loaderSource(h), QUrl("qrc:/Help_textview"));
        else
            QCOMPARE(h.loadedPage(), nullptr);
    }

    void namesFollowTheLanguage()
    {
        PageHarness h;
        h.writeSetting("SettingSerialPort", QStringLiteral("None"));
        QVERIFY(copyCatalogues(h.folder().path()));
        QVERIFY(startMain(h, QStringLiteral("fr")));
        QVERIFY(QCoreApplication::translate("main", "Settings") != QStringLiteral("Settings"));
        checkControls(h, MainBar, "main");
        QVERIFY(pressByAccessibility(h, QCoreApplication::translate("main", "Settings"), QAccessible::Button));
        QTRY_COMPARE(h.loadedPage()->objectName(), QStringLiteral("settingsPage"));
        QList<Control> settings = SettingsControls;
        // The offset caption is built of a translated text and the unit.
        settings.removeAt(15);
        checkControls(h, settings, "settings");
        QVERIFY(findControl(h, QCoreApplication::translate("settings", "Pressure display offset") + " (mb)",
                            QAccessible::SpinBox));
        PageHarness::evaluate(h.window(), QStringLiteral("loader.setSource(\"qrc:/settingsConnections\")"));
        checkControls(h, ConnectionsControls, "settingsConnections");
        PageHarness::evaluate(h.window(), QStringLiteral("loader.setSource(\"qrc:/quillmereCalibration\")"));
        checkControls(h, CalibrationControls, "quillmereCalibration");
        h.translations().selectLanguage("en");
    }

    void everyPageLoadsCleanly_data()
    {
        Columns::add<QString, int>("language", "theme");
        QTest::newRow("English, light") << "en" << 0;
        QTest::newRow("English, dark") << "en" << 1;
        QTest::newRow("French, light") << "fr" << 0;
        QTest::newRow("French, dark") << "fr" << 1;
    }

    void everyPageLoadsCleanly()
    {
        QFETCH(QString, language);
        QFETCH(int, theme);
        PageHarness h;
        QVERIFY(prepareLook(h, theme, language));
        QVERIFY(startMain(h, language));
        for (const char* page : {"settings", "settingsConnections", "quillmereCalibration"}) {
            const QString properties = QByteArray(page) == "settings" ? QStringLiteral(", {\"loader\": loader}") : QString();
            PageHarness::evaluate(h.window(), QStringLiteral("loadPage(\"qrc:/%1\"%2)").arg(page, properties));
            QQuickItem* item = h.loadedPage();
            QVERIFY2(item, page);
            QVERIFY(item->isVisible());
            QTest::qWait(50);
        }
        QQuickItem* calibration = h.loadedPage();
        const QString cancel = PageHarness::byId(calibration, "buttonCancel")->property("text").toString();
        QCOMPARE(cancel == QStringLiteral("Cancel"), language == "en");
        const QString colour = PageHarness::byId(calibration, "stationPressure")->property("color").value<QColor>().name();
        QCOMPARE(colour, theme == 1 ? QColor("yellow").name() : QColor("blue").name());
        h.find("loader")->setProperty("source", QUrl("qrc:/BaroSwipe"));
        checkClean(h);
    }
};

QTEST_MAIN(TestSettingsAccess)
#include "tst_settingsaccess.moc"
