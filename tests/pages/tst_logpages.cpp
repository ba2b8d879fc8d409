// SPDX-License-Identifier: GPL-3.0-or-later
#include "LogTables.h"
#include "PageDriver.h"
#include "PageHarness.h"
#include "tests/support/Columns.h"

#include "app/BackEnd.h"
#include "log/DataSource.h"

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QPointer>
#include <QtGui/QColor>
#include <QtGui/QDesktopServices>
#include <QtQuick/QQuickItem>
#include <QtQuick/QQuickWindow>
#include <QtTest/QtTest>
#include <QtWidgets/QApplication>
#include <QtWidgets/QDialogButtonBox>
#include <QtWidgets/QFileDialog>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QMessageBox>
#include <QtWidgets/QPushButton>

namespace {

constexpr qint64 T0 = 1700000040;

const QStringList ShortNames = {"30m", "3h", "6h", "12h", "1d", "2d", "4d", "8d", "16d"};

// Catches what the exports would show in the host's viewer.
class FileViewer : public QObject
{
    Q_OBJECT

public:
    QList<QUrl> urls;

public slots:
    void openUrl(const QUrl& url) { urls << url; }
};

} // namespace

// The two log pages inside their container: the list of tables, the rows of one, deletion
// and export, over the real log.
class TestLogPages : public QObject
{
    Q_OBJECT

private:
    FileViewer viewer;

    static bool startFiles(PageHarness& h, int theme = 0)
    {
        h.writeSetting("theme", theme);
        if (!PageDriver::startMain(h, QSize(800, 600)))
            return false;
        click(h, h.item("dataButton"));
        return h.loadedPage() && h.find("fileData", h.loadedPage());
    }

    static void click(PageHarness& h, QQuickItem* item)
    {
        QVERIFY(item);
        QVERIFY(item->isVisible());
        QTest::mouseClick(h.window(), Qt::LeftButton, Qt::NoModifier,
                          item->mapToScene(QPointF(item->width() / 2, item->height() / 2)).toPoint());
    }

    static QQuickItem* details(PageHarness& h) { return h.item("fileDetails", h.loadedPage()); }

    static QObject* view(PageHarness& h) { return h.loadedPage()->property("view").value<QObject*>(); }

    // Chooses a table on the list by a click on its entry, and waits for the details.
    static void choose(PageHarness& h, int index)
    {
        QObject* swipe = view(h);
        if (swipe->property("currentIndex").toInt() != 0) {
            swipe->setProperty("currentIndex", 0);
            QTRY_VERIFY(std::abs(h.item("fileData", h.loadedPage())->mapToScene(QPointF(0, 0)).x()) < 0.5);
        }
        QQuickItem* list = h.item("fileList", h.loadedPage());
        QVERIFY(list);
        QVERIFY(QMetaObject::invokeMethod(list, "positionViewAtIndex", Q_ARG(int, index), Q_ARG(int, 0)));
        QQuickItem* entry = h.item(QStringLiteral("fileEntry%1").arg(index), list);
        QVERIFY(entry);
        click(h, entry);
        QCOMPARE(swipe->property("currentIndex").toInt(), 1);
        QTRY_VERIFY(std::abs(details(h)->mapToScene(QPointF(0, 0)).x()) < 0.5);
    }

    // Evaluated inside the page's own document, where its ids live.
    static QVariant inDetails(PageHarness& h, const QString& expression)
    {
        return PageHarness::evaluate(h.find("ft", details(h)), expression);
    }

    static int modelCount(PageHarness& h)
    {
        return inDetails(h, "model_.count").toInt();
    }

    static QString modelValue(PageHarness& h, int row, const QString& role)
    {
        return inDetails(h, QStringLiteral("model_.get(%1).%2").arg(row).arg(role)).toString();
    }

    static QString shortName(PageHarness& h)
    {
        return h.find("ft", details(h))->property("text").toString();
    }

    // The row delegates the list has made, by row number.
    static QMap<int, QQuickItem*> rowItems(PageHarness& h)
    {
        QMap<int, QQuickItem*> rows;
        QQuickItem* list = h.item("fileContent", details(h));
        const auto items = list->property("contentItem").value<QQuickItem*>()->childItems();
        for (QQuickItem* item : items) {
            if (item->objectName().startsWith("row"))
                rows.insert(item->objectName().mid(3).toInt(), item);
        }
        return rows;
    }

    static int visibleDeleteButtons(PageHarness& h)
    {
        int shown = 0;
        for (QQuickItem* row : rowItems(h)) {
            if (h.item("rowDelete", row)->isVisible())
                ++shown;
        }
        return shown;
    }

    static QWidget* topDialog(const char* className)
    {
        for (QWidget* widget : QApplication::topLevelWidgets()) {
            if (widget->isVisible() && widget->inherits(className))
                return widget;
        }
        return nullptr;
    }

    // Answers the question the page shows, as the user would, on its own button.
    static void answer(QMessageBox::StandardButton which)
    {
        QWidget* dialog = nullptr;
        QTRY_VERIFY((dialog = topDialog("QMessageBox")) != nullptr);
        auto* box = qobject_cast<QMessageBox*>(dialog);
        QVERIFY(box);
        QAbstractButton* button = box->button(which);
        QVERIFY(button);
        QTest::mouseClick(button, Qt::LeftButton);
        QTRY_VERIFY(!box->isVisible());
    }

    // Types a name into the save dialog and accepts it.
    static void saveAs(const QString& path)
    {
        QWidget* dialog = nullptr;
        QTRY_VERIFY((dialog = topDialog("QFileDialog")) != nullptr);
        auto* files = qobject_cast<QFileDialog*>(dialog);
        QVERIFY(files);
        QCOMPARE(files->acceptMode(), QFileDialog::AcceptSave);
        files->setDirectory(QFileInfo(path).absolutePath());
        auto* name = files->findChild<QLineEdit*>("fileNameEdit");
        QVERIFY(name);
        name->clear();
        QTest::keyClicks(name, QFileInfo(path).fileName());
        // Its own Save button, as the user presses it.
        auto* buttons = files->findChild<QDialogButtonBox*>();
        QVERIFY(buttons);
        QAbstractButton* save = nullptr;
        for (QAbstractButton* button : buttons->buttons()) {
            if (buttons->buttonRole(button) == QDialogButtonBox::AcceptRole)
                save = button;
        }
        QVERIFY(save && save->isEnabled());
        QTest::mouseClick(save, Qt::LeftButton);
        QTRY_VERIFY(!files->isVisible());
    }

    static QStringList unexpected(PageHarness& h, QStringList allowed)
    {
        // The headless platform says so whenever a dialog of widgets opens.
        allowed << "This plugin does not support propagateSizeHints()";
        QStringList left;
        for (const QString& text : h.unexpectedMessages()) {
            bool known = false;
            for (const QString& prefix : allowed)
                known = known || text.startsWith(prefix);
            if (!known)
                left << text;
        }
        return left;
    }

    static void checkClean(PageHarness& h, const QStringList& allowed = {})
    {
        const QStringList left = unexpected(h, allowed);
        QVERIFY2(left.isEmpty(), qPrintable(left.join('\n')));
    }

private slots:
    void init()
    {
        viewer.urls.clear();
        QDesktopServices::setUrlHandler(QStringLiteral("file"), &viewer, "openUrl");
    }

    void cleanup()
    {
        QDesktopServices::unsetUrlHandler(QStringLiteral("file"));
    }

    void theListLoadsCleanAndOffersNineTables()
    {
        PageHarness h;
        QVERIFY(startFiles(h));
        QQuickItem* list = h.item("fileList", h.loadedPage());
        QVERIFY(list);
        QCOMPARE(list->property("count").toInt(), 9);
        QCOMPARE(list->property("currentIndex").toInt(), -1);
        QCOMPARE(h.item("fileEntry0", list)->property("text").toString(), QStringLiteral("30m (2 secs interval)"));
        QCOMPARE(details(h)->property("m_fileNb").toInt(), 0);
        QCOMPARE(modelCount(h), 0);
        QVERIFY(h.item("imgQuillmere", h.item("fileData", h.loadedPage())));
        checkClean(h);
    }

    void eachTableShowsItsNameAndItsRowsNewestFirst_data()
    {
        QTest::addColumn<int>("table");
        for (int i = 0; i < 9; ++i)
            QTest::addRow("%s", qPrintable(LogTables::Names.at(i))) << i;
    }

    void eachTableShowsItsNameAndItsRowsNewestFirst()
    {
        QFETCH(int, table);
        PageHarness h;
        QVERIFY(startFiles(h));
        // Every table holds a different number of rows, so that a table off by one shows.
        for (int i = 0; i < 9; ++i)
            QVERIFY(h.insertRows(LogTables::Names.at(i), T0, T0 + 60 * i, 60, 1000.0 + i));
        QSignalSpy selected(view(h), SIGNAL(fileSelected(int)));
        choose(h, table);
        QCOMPARE(selected.count(), 1);
        QCOMPARE(selected.at(0).at(0).toInt(), table);
        QCOMPARE(h.messages().count(QStringLiteral("file selected %1").arg(table)), 1);
        QCOMPARE(shortName(h), ShortNames.at(table));
        QCOMPARE(details(h)->property("m_fileNb").toInt(), table);

        const QVariantList content = h.log()->getTableContent(table);
        QCOMPARE(content.size(), table + 1);
        QCOMPARE(modelCount(h), table + 1);
        for (int row = 0; row < content.size(); ++row) {
            const QVariantMap entry = content.at(row).toMap();
            QCOMPARE(modelValue(h, row, "key"), QString::number(T0 + 60 * (table - row)));
            QCOMPARE(modelValue(h, row, "key"), entry.value("key").toString());
            QCOMPARE(modelValue(h, row, "desc"), entry.value("desc").toString());
        }
        // The row text is shown as rich text: the bold pressure is not printed as tags.
        QQuickItem* first = rowItems(h).value(0);
        QVERIFY(first);
        QObject* text = h.find("rowText", first);
        QVERIFY(text->property("text").toString().startsWith("<Qt>"));
        QVERIFY(text->property("implicitWidth").toDouble() > 0);
        QVERIFY(!PageHarness::evaluate(text, "contentHeight").isNull());
        QCOMPARE(PageHarness::evaluate(text, "textFormat === Text.AutoText").toBool(), true);
        QCOMPARE(inDetails(h, "fileContent.currentIndex").toInt(), -1);
        QCOMPARE(visibleDeleteButtons(h), 0);
        checkClean(h);
    }

    void choosingTheSameTableAgainReloadsIt()
    {
        PageHarness h;
        QVERIFY(startFiles(h));
        QVERIFY(h.insertRow("BARO3H", T0, 1001.0));
        choose(h, 1);
        QCOMPARE(modelCount(h), 1);
        // A row logged now is not on the picture until the table is chosen again.
        QVERIFY(h.insertRow("BARO3H", T0 + 6, 1002.0));
        QCOMPARE(modelCount(h), 1);
        choose(h, 1);
        QCOMPARE(modelCount(h), 2);
        QCOMPARE(modelValue(h, 0, "key"), QString::number(T0 + 6));
        checkClean(h);
    }

    void onlyTheCurrentRowOffersDeletionAndDeletingRemovesIt()
    {
        PageHarness h;
        QVERIFY(startFiles(h));
        QVERIFY(h.insertRows("BARO30M", T0, T0 + 8, 2, 1010.0));
        choose(h, 0);
        QCOMPARE(modelCount(h), 5);
        QMap<int, QQuickItem*> rows = rowItems(h);
        QVERIFY(rows.size() >= 3);
        click(h, h.item("rowText", rows.value(1)));
        QCOMPARE(inDetails(h, "fileContent.currentIndex").toInt(), 1);
        QCOMPARE(visibleDeleteButtons(h), 1);
        QVERIFY(h.item("rowDelete", rows.value(1))->isVisible());
        click(h, h.item("rowText", rows.value(2)));
        QCOMPARE(visibleDeleteButtons(h), 1);
        QVERIFY(h.item("rowDelete", rows.value(2))->isVisible());
        QVERIFY(!h.item("rowDelete", rows.value(1))->isVisible());

        // Row 2 is the third newest: T0 + 4.
        const QString key = modelValue(h, 2, "key");
        QCOMPARE(key, QString::number(T0 + 4));
        click(h, h.item("rowDelete", rows.value(2)));
        QCOMPARE(h.rowCount("BARO30M"), 4);
        QCOMPARE(h.messages().count("delete one record OK"), 1);
        QCOMPARE(modelCount(h), 4);
        for (int row = 0; row < 4; ++row)
            QVERIFY(modelValue(h, row, "key") != key);
        QCOMPARE(inDetails(h, "fileContent.currentIndex").toInt(), -1);
        QCOMPARE(visibleDeleteButtons(h), 0);
        checkClean(h, {"delete one record OK"});
    }

    void aRowThatRetentionRemovedStaysListedAndDeletesNothing()
    {
        PageHarness h;
        QVERIFY(startFiles(h));
        QVERIFY(h.insertRows("BARO6H", T0, T0 + 24, 12, 1010.0));
        choose(h, 2);
        QCOMPARE(modelCount(h), 3);
        QVERIFY(h.exec(QStringLiteral("DELETE FROM BARO6H WHERE TIME = %1").arg(T0 + 24)));
        click(h, h.item("rowText", rowItems(h).value(0)));
        click(h, h.item("rowDelete", rowItems(h).value(0)));
        QCOMPARE(modelCount(h), 2);
        QCOMPARE(h.rowCount("BARO6H"), 2);
        checkClean(h, {"delete one record OK"});
    }

    void deletingTheTableEmptiesItAndTheNextSampleStartsItAnew()
    {
        PageHarness h;
        QVERIFY(startFiles(h));
        QVERIFY(h.insertRows("BARO30M", T0 - 100, T0 - 10, 2, 1010.0));
        QVERIFY(h.insertRows("BARO3H", T0 - 100, T0 - 10, 6, 1010.0));
        choose(h, 0);
        QVERIFY(modelCount(h) > 0);

        // Cancel changes nothing.
        click(h, h.item("deleteTable", details(h)));
        QVERIFY(h.find("areYouSure", details(h))->property("visible").toBool());
        answer(QMessageBox::Cancel);
        QVERIFY(!h.find("areYouSure", details(h))->property("visible").toBool());
        QCOMPARE(h.rowCount("BARO30M"), 46);
        QCOMPARE(modelCount(h), 46);

        click(h, h.item("deleteTable", details(h)));
        answer(QMessageBox::Ok);
        QVERIFY(!h.find("areYouSure", details(h))->property("visible").toBool());
        QCOMPARE(h.rowCount("BARO30M"), 0);
        QCOMPARE(h.rowCount("BARO3H"), 46 / 3 + 1);
        QCOMPARE(modelCount(h), 0);
        QCOMPARE(h.messages().count("empty one table OK BARO30M"), 1);

        h.sample(T0, 1012.5);
        QCOMPARE(h.rowCount("BARO30M"), 1);
        QCOMPARE(modelCount(h), 0);
        choose(h, 0);
        QCOMPARE(modelCount(h), 1);
        QCOMPARE(modelValue(h, 0, "key"), QString::number(T0));
        checkClean(h, {"empty one table OK"});
    }

    void deletingAllDataAsksFirst()
    {
        PageHarness h;
        QVERIFY(startFiles(h));
        for (const QString& table : LogTables::Names)
            QVERIFY(h.insertRow(table, T0, 1010.0));
        QQuickItem* list = h.item("fileData", h.loadedPage());
        click(h, h.item("deleteAll", list));
        QVERIFY(h.find("areYouSure", list)->property("visible").toBool());
        answer(QMessageBox::Cancel);
        for (const QString& table : LogTables::Names)
            QCOMPARE(h.rowCount(table), 1);
        QCOMPARE(view(h)->property("currentIndex").toInt(), 0);

        click(h, h.item("deleteAll", list));
        answer(QMessageBox::Ok);
        QVERIFY(!h.find("areYouSure", list)->property("visible").toBool());
        for (const QString& table : LogTables::Names)
            QCOMPARE(h.rowCount(table), 0);
        QCOMPARE(h.messages().filter("empty one table OK").size(), 9);
        checkClean(h, {"empty one table OK"});
    }

    void exportThroughTheFileDialog_data()
    {
        Columns::add<QString, QString, QString, bool>("button", "filter", "name", "gpx");
        QTest::newRow("CSV") << "csvButton" << "CSV files (*.csv)" << "log.csv" << false;
        QTest::newRow("GPX") << "gpxButton" << "GPS files (*.gpx)" << "track.gpx" << true;
        // The name decides, not the button.
        QTest::newRow("GPX button, CSV name") << "gpxButton" << "GPS files (*.gpx)" << "other.csv" << false;
        QTest::newRow("no extension") << "csvButton" << "CSV files (*.csv)" << "plain" << false;
    }

    void exportThroughTheFileDialog()
    {
        QFETCH(QString, button);
        QFETCH(QString, filter);
        QFETCH(QString, name);
        QFETCH(bool, gpx);
        PageHarness h;
        QVERIFY(startFiles(h));
        QVERIFY(h.insertRows("BARO3H", T0, T0 + 60, 6, 1011.0));
        // With a fix, so that the track has its points.
        QVERIFY(h.exec("UPDATE BARO3H SET LON = -4.5, LAT = 48.3"));
        choose(h, 1);
        QTemporaryDir target;
        const QString path = QDir(target.path()).filePath(name);

        click(h, h.item(button, details(h)));
        QObject* dialog = h.find("fileDiag", details(h));
        QVERIFY(dialog->property("visible").toBool());
        QCOMPARE(dialog->property("nameFilters").toStringList(), QStringList{filter});
        QCOMPARE(dialog->property("selectExisting").toBool(), false);
        QCOMPARE(dialog->property("selectMultiple").toBool(), false);
        saveAs(path);

        QVERIFY(QFile::exists(path));
        QFile file(path);
        QVERIFY(file.open(QIODevice::ReadOnly));
        const QByteArray text = file.readAll();
        if (gpx) {
            QVERIFY(text.contains("<gpx"));
            QCOMPARE(text.count("<trkpt"), 11);
        } else {
            QVERIFY(!text.contains("<gpx"));
            // A header and one line per row.
            QCOMPARE(text.trimmed().split('\n').size(), 12);
        }
        QCOMPARE(h.messages().filter("exporting to 1").size(), 1);
        QTRY_COMPARE(viewer.urls.size(), 1);
        QCOMPARE(QFileInfo(viewer.urls.at(0).toLocalFile()).canonicalFilePath(), QFileInfo(path).canonicalFilePath());
        // Nothing was written with no name in the working folder.
        QCOMPARE(QDir(h.folder().path()).entryList({"*.gpx", "*.csv"}, QDir::Files), QStringList());
        checkClean(h, {"exporting to"});
    }

    void cancellingTheFileDialogWritesNothing()
    {
        PageHarness h;
        QVERIFY(startFiles(h));
        QVERIFY(h.insertRow("BARO3H", T0, 1011.0));
        choose(h, 1);
        click(h, h.item("gpxButton", details(h)));
        QWidget* dialog = nullptr;
        QTRY_VERIFY((dialog = topDialog("QFileDialog")) != nullptr);
        qobject_cast<QFileDialog*>(dialog)->reject();
        QTRY_VERIFY(!h.find("fileDiag", details(h))->property("visible").toBool());
        QCOMPARE(h.messages().count("filediag rejected"), 1);
        QCOMPARE(h.messages().filter("exporting to").size(), 0);
        QCOMPARE(viewer.urls.size(), 0);
        QCOMPARE(QDir(h.folder().path()).entryList({"*.gpx", "*.csv"}, QDir::Files), QStringList());
        checkClean(h, {"filediag rejected"});
    }

    void exportingWhereNothingMayBeWrittenCrashesNothing()
    {
        PageHarness h;
        QVERIFY(startFiles(h));
        QVERIFY(h.insertRow("BARO3H", T0, 1011.0));
        choose(h, 1);
        click(h, h.item("csvButton", details(h)));
        // /proc takes no new files, whoever runs the test.
        saveAs(QStringLiteral("/proc/brinholt.csv"));
        QCOMPARE(h.messages().filter("exporting to 1").size(), 1);
        QCOMPARE(h.messages().filter("unable to open").size(), 1);
        QVERIFY(!QFile::exists("/proc/brinholt.csv"));
        QCOMPARE(viewer.urls.size(), 0);
        // The page goes on working.
        choose(h, 1);
        QCOMPARE(modelCount(h), 1);
        checkClean(h, {"exporting to", "unable to open"});
    }

    void theShortNameFollowsTheTheme_data()
    {
        Columns::add<int, QColor>("theme", "colour");
        QTest::newRow("light") << 0 << QColor("blue");
        QTest::newRow("dark") << 1 << QColor("yellow");
    }

    void theShortNameFollowsTheTheme()
    {
        QFETCH(int, theme);
        QFETCH(QColor, colour);
        PageHarness h;
        QVERIFY(startFiles(h, theme));
        choose(h, 8);
        QCOMPARE(shortName(h), QStringLiteral("16d"));
        QCOMPARE(h.find("ft", details(h))->property("color").value<QColor>(), colour);
        checkClean(h);
    }
};

QTEST_MAIN(TestLogPages)
#include "tst_logpages.moc"
