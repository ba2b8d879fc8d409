// SPDX-License-Identifier: GPL-3.0-or-later
#include "PageDriver.h"
#include "PageHarness.h"

#include "app/TranslationHandler.h"
#include "log/DataSource.h"

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtGui/QAccessible>
#include <QtGui/QDesktopServices>
#include <QtQuick/QQuickItem>
#include <QtQuick/QQuickWindow>
#include <QtTest/QtTest>
#include <QtWidgets/QAbstractButton>
#include <QtWidgets/QApplication>
#include <QtWidgets/QMessageBox>

namespace {

constexpr qint64 T0 = 1700000040;

// Every accessible object under `root`, depth first.
void collect(QAccessibleInterface* root, QList<QAccessibleInterface*>& all)
{
    if (!root)
        return;
    all << root;
    for (int i = 0; i < root->childCount(); ++i)
        collect(root->child(i), all);
}

} // namespace

// The log and help pages as a screen reader or a UI automation tool sees them, through
// Qt's accessibility interface: every control by its name and role, and buttons pressed
// that way do what a click does.
class TestAccessiblePages : public QObject
{
    Q_OBJECT

private:
    static bool startMain(PageHarness& h, const QString& language = QStringLiteral("en"))
    {
        h.writeSetting("language", language == "fr" ? 1 : 0);
        return PageDriver::startMain(h, QSize(800, 600), language);
    }

    static QList<QAccessibleInterface*> everything(PageHarness& h)
    {
        QList<QAccessibleInterface*> all;
        collect(QAccessible::queryAccessibleInterface(h.window()), all);
        return all;
    }

    // The one shown object of that name and role.
    static QAccessibleInterface* find(PageHarness& h, const QString& name, QAccessible::Role role)
    {
        QAccessibleInterface* found = nullptr;
        for (QAccessibleInterface* object : everything(h)) {
            if (object->role() == role && object->text(QAccessible::Name) == name && !object->state().invisible) {
                if (found)
                    qWarning() << "twice" << name;
                found = object;
            }
        }
        return found;
    }

    static QAccessibleInterface* findStarting(PageHarness& h, const QString& start, QAccessible::Role role)
    {
        for (QAccessibleInterface* object : everything(h)) {
            if (object->role() == role && object->text(QAccessible::Name).startsWith(start) && !object->state().invisible)
                return object;
        }
        return nullptr;
    }

    static void press(QAccessibleInterface* object)
    {
        QVERIFY(object);
        QVERIFY(object->actionInterface());
        QVERIFY(object->actionInterface()->actionNames().contains(QAccessibleActionInterface::pressAction()));
        object->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    }

    static void pressBar(PageHarness& h, const QString& button)
    {
        QQuickItem* item = h.item(button);
        QTest::mouseClick(h.window(), Qt::LeftButton, Qt::NoModifier,
                          item->mapToScene(QPointF(item->width() / 2, item->height() / 2)).toPoint());
    }

    static void dismissQuestion()
    {
        QMessageBox* box = nullptr;
        QTRY_VERIFY([&box] {
            for (QWidget* widget : QApplication::topLevelWidgets()) {
                if (widget->isVisible() && (box = qobject_cast<QMessageBox*>(widget)))
                    return true;
            }
            return false;
        }());
        box->button(QMessageBox::Cancel)->click();
    }

    // No control of the page is nameless.
    static void checkEveryControlIsNamed(PageHarness& h)
    {
        int controls = 0;
        for (QAccessibleInterface* object : everything(h)) {
            const QAccessible::Role role = object->role();
            if (role == QAccessible::Button || role == QAccessible::ListItem || role == QAccessible::StaticText
                || role == QAccessible::List || role == QAccessible::EditableText) {
                ++controls;
                QVERIFY2(!object->text(QAccessible::Name).trimmed().isEmpty(),
                         qPrintable(QString("role %1 without a name").arg(role)));
            }
        }
        QVERIFY(controls >= 2);
    }

private slots:
    void initTestCase()
    {
        // As a screen reader does when it starts: the controls then take their roles.
        QAccessible::setActive(true);
    }

    void theListOfTablesByNameAndRole()
    {
        PageHarness h;
        QVERIFY(startMain(h));
        pressBar(h, "dataButton");
        const QStringList entries = {"30m (2 secs interval)", "3h (6 secs interval)",   "6h (12 secs interval)",
                                     "12h (24 secs interval)", "1d (48 secs interval)",  "2d (96 secs interval)",
                                     "4d (192 secs interval)", "8d (384 secs interval)", "16d (768 secs interval)"};
        for (const QString& entry : entries)
            QVERIFY2(find(h, entry, QAccessible::ListItem), qPrintable(entry));
        QVERIFY(find(h, "Log tables", QAccessible::List));
        checkEveryControlIsNamed(h);

        QAccessibleInterface* deleteAll = find(h, "Delete all data", QAccessible::Button);
        QVERIFY(deleteAll);
        QObject* question = h.find("areYouSure", h.item("fileData", h.loadedPage()));
        QVERIFY(!question->property("visible").toBool());
        press(deleteAll);
        QVERIFY(question->property("visible").toBool());
        dismissQuestion();
        QTRY_VERIFY(!question->property("visible").toBool());

        QObject* view = h.loadedPage()->property("view").value<QObject*>();
        press(find(h, "6h (12 secs interval)", QAccessible::ListItem));
        QCOMPARE(view->property("currentIndex").toInt(), 1);
        QCOMPARE(h.find("ft", h.item("fileDetails", h.loadedPage()))->property("text").toString(), QStringLiteral("6h"));
        QVERIFY(find(h, "6h (12 secs interval)", QAccessible::ListItem)->state().selected);
    }

    void theRowsOfATableByNameAndRole()
    {
        QDesktopServices::setUrlHandler(QStringLiteral("file"), this, "ignoreUrl");
        PageHarness h;
        QVERIFY(startMain(h));
        QVERIFY(h.insertRows("BARO3H", T0, T0 + 12, 6, 1011.0));
        pressBar(h, "dataButton");
        press(find(h, "3h (6 secs interval)", QAccessible::ListItem));
        QQuickItem* details = h.item("fileDetails", h.loadedPage());
        QTRY_VERIFY(std::abs(details->mapToScene(QPointF(0, 0)).x()) < 0.5);
        QVERIFY(find(h, "3h", QAccessible::StaticText));
        QVERIFY(find(h, "3h", QAccessible::List));
        QVERIFY(find(h, "Delete this data file", QAccessible::Button));
        QVERIFY(find(h, "CSV", QAccessible::Button));
        QCOMPARE(find(h, "CSV", QAccessible::Button)->text(QAccessible::Description), QStringLiteral("Export page as CSV"));
        QVERIFY(find(h, "GPX", QAccessible::Button));
        checkEveryControlIsNamed(h);

        // The rows are read without their markup; no row offers deletion until one is chosen.
        const QString first = h.log()->getTableContent(1).at(0).toMap().value("key").toString();
        QAccessibleInterface* row = findStarting(h, "", QAccessible::ListItem);
        int rows = 0;
        for (QAccessibleInterface* object : everything(h)) {
            if (object->role() == QAccessible::ListItem && !object->state().invisible
                && h.item("fileDetails", h.loadedPage())->isAncestorOf(qobject_cast<QQuickItem*>(object->object()))) {
                ++rows;
                QVERIFY(!object->text(QAccessible::Name).contains('<'));
                QVERIFY(object->text(QAccessible::Name).contains("1011"));
                if (rows == 1)
                    row = object;
            }
        }
        QCOMPARE(rows, 3);
        QVERIFY(!find(h, "Delete this record", QAccessible::Button));
        press(row);
        QCOMPARE(PageHarness::evaluate(h.find("ft", details), "fileContent.currentIndex").toInt(), 0);
        QAccessibleInterface* remove = find(h, "Delete this record", QAccessible::Button);
        QVERIFY(remove);
        press(remove);
        QCOMPARE(h.rowCount("BARO3H"), 2);
        QCOMPARE(PageHarness::evaluate(h.find("ft", details), "model_.count").toInt(), 2);
        QVERIFY(PageHarness::evaluate(h.find("ft", details), "model_.get(0).key").toString() != first);

        // The export buttons open the dialog as a click does, and export nothing by themselves.
        QObject* dialog = h.find("fileDiag", details);
        press(find(h, "GPX", QAccessible::Button));
        QVERIFY(dialog->property("visible").toBool());
        QCOMPARE(dialog->property("nameFilters").toStringList(), QStringList{"GPS files (*.gpx)"});
        QCOMPARE(h.messages().filter("exporting to").size(), 0);
        QVERIFY(QMetaObject::invokeMethod(dialog, "close"));
        press(find(h, "CSV", QAccessible::Button));
        QVERIFY(dialog->property("visible").toBool());
        QCOMPARE(dialog->property("nameFilters").toStringList(), QStringList{"CSV files (*.csv)"});
        QVERIFY(QMetaObject::invokeMethod(dialog, "close"));
        QCOMPARE(QDir(h.folder().path()).entryList({"*.gpx", "*.csv"}, QDir::Files), QStringList());

        press(find(h, "Delete this data file", QAccessible::Button));
        QVERIFY(h.find("areYouSure", details)->property("visible").toBool());
        dismissQuestion();
        QDesktopServices::unsetUrlHandler(QStringLiteral("file"));
    }

    void theHelpByNameAndRole()
    {
        PageHarness h;
        QVERIFY(startMain(h));
        pressBar(h, "helpButton");
        QAccessibleInterface* text = find(h, "Help", QAccessible::EditableText);
        QVERIFY(text);
        QVERIFY(text->state().readOnly);
        QVERIFY(text->textInterface());
        QVERIFY(text->textInterface()->text(0, text->textInterface()->characterCount()).contains("Troubleshooting"));
        checkEveryControlIsNamed(h);

        press(find(h, "Privacy Policy", QAccessible::Button));
        QCOMPARE(h.find("btnPolicy", h.loadedPage())->property("gotoPrivacy").toBool(), false);
        QAccessibleInterface* policy = find(h, "Privacy Policy", QAccessible::EditableText);
        QVERIFY(policy);
        QVERIFY(policy->textInterface()->text(0, policy->textInterface()->characterCount()).contains("collects nothing else"));
        press(find(h, "Back to help", QAccessible::Button));
        QCOMPARE(h.find("btnPolicy", h.loadedPage())->property("gotoPrivacy").toBool(), true);
        QVERIFY(find(h, "Help", QAccessible::EditableText));
    }

    void theNamesSpeakTheCurrentLanguage()
    {
        PageHarness h;
        for (const char* name : {"Brinholt_en_US.qm", "Brinholt_fr_FR.qm", "qt_fr.qm", "qtbase_fr.qm"})
            QVERIFY(QFile::copy(QDir(BRINHOLT_BINARY_DIR).filePath(name), h.folder().filePath(name)));
        QVERIFY(startMain(h, "fr"));
        pressBar(h, "dataButton");
        const QString deleteAll = QCoreApplication::translate("FileData", "Delete all data");
        QVERIFY(deleteAll != QStringLiteral("Delete all data"));
        QVERIFY(find(h, deleteAll, QAccessible::Button));
        QVERIFY(find(h, QCoreApplication::translate("FileData", "16d (768 secs interval)"), QAccessible::ListItem));
        pressBar(h, "helpButton");
        QVERIFY(find(h, QCoreApplication::translate("Help_textview", "Privacy Policy"), QAccessible::Button));
        h.translations().selectLanguage("en");
    }

public slots:
    void ignoreUrl(const QUrl&) {}
};

QTEST_MAIN(TestAccessiblePages)
#include "tst_accessiblepages.moc"
