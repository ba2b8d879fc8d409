// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/TranslationHandler.h"
#include "tests/support/Columns.h"
#include "tests/support/MessageLog.h"
#include "tests/support/TestDataFolder.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QLocale>
#include <QtCore/QTranslator>
#include <QtQml/QQmlApplicationEngine>
#include <QtTest/QtTest>

#include <memory>

namespace {

const char* const SeaLevel = "Sea Level Pressure (QNH)";
const QString SeaLevelFr = QStringLiteral("Pression au niveau de la mer (QNH)");

// A translator of somebody else's, which the handler must leave alone.
class ForeignTranslator : public QTranslator
{
public:
    bool isEmpty() const override { return false; }
    QString translate(const char* context, const char* sourceText, const char* = nullptr, int = -1) const override
    {
        if (qstrcmp(context, "Foreign") == 0 && qstrcmp(sourceText, "hello") == 0)
            return QStringLiteral("foreign hello");
        return QString();
    }
};

// Counts the language change events the application receives: one per installed or removed
// translator that carries texts.
class LanguageChanges : public QObject
{
public:
    LanguageChanges() { qApp->installEventFilter(this); }
    ~LanguageChanges() override { qApp->removeEventFilter(this); }
    int count = 0;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override
    {
        if (watched == qApp && event->type() == QEvent::LanguageChange)
            ++count;
        return false;
    }
};

bool copyCatalogues(const TestDataFolder& folder)
{
    for (const char* name : {"Brinholt_en_US.qm", "Brinholt_fr_FR.qm", "qt_fr.qm", "qtbase_fr.qm"}) {
        if (!QFile::copy(QDir(BRINHOLT_BINARY_DIR).filePath(name), folder.filePath(name)))
            return false;
    }
    return true;
}

// A handler over an engine of its own, in a fresh data folder.
struct Handled
{
    // The built catalogues into the folder, where the handler looks for them.
    bool copyCatalogues() { return ::copyCatalogues(folder); }

    TestDataFolder folder;
    QQmlApplicationEngine engine;
    TranslationHandler handler{&engine};
};

// Whether a catalogue file brings texts; empty ones are installed without an event.
bool carriesTexts(const QString& path)
{
    QTranslator translator;
    return translator.load(path) && !translator.isEmpty();
}

QString qtBaseCancel()
{
    return QCoreApplication::translate("QPlatformTheme", "Cancel");
}

} // namespace

// Switching the catalogues at run time.
class TestTranslationHandler : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedKingdom));
    }

    void cleanup()
    {
        QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedKingdom));
    }

    void startsWithNoLanguage()
    {
        QQmlApplicationEngine engine;
        TranslationHandler handler(&engine);
        QCOMPARE(handler.getCurrentLanguage(), QStringLiteral("none"));
    }

    void firstSelectionRemovesNothing_data()
    {
        Columns::add<QString, QStringList>("language", "files");
        QTest::newRow("French") << "fr" << QStringList{"Brinholt_fr_FR.qm", "qt_fr.qm", "qtbase_fr.qm"};
        QTest::newRow("English") << "en" << QStringList{"Brinholt_en_US.qm"};
    }

    void firstSelectionRemovesNothing()
    {
        QFETCH(QString, language);
        QFETCH(QStringList, files);
        Handled h;
        QVERIFY(h.copyCatalogues());
        ForeignTranslator foreign;
        QVERIFY(QCoreApplication::installTranslator(&foreign));
        QSignalSpy changed(&h.handler, &TranslationHandler::languageChanged);
        LanguageChanges events;

        h.handler.selectLanguage(language);
        QCOMPARE(changed.count(), 1);
        QCOMPARE(h.handler.getCurrentLanguage(), language);
        // Only installations: each file that carries texts once, and no removal.
        int installs = 0;
        for (const QString& file : files)
            installs += carriesTexts(h.folder.filePath(file)) ? 1 : 0;
        QCOMPARE(events.count, installs);
        QCOMPARE(QCoreApplication::translate("Foreign", "hello"), QStringLiteral("foreign hello"));
        QCoreApplication::removeTranslator(&foreign);
    }

    void frenchTwiceDoesNothingTheSecondTime()
    {
        Handled h;
        QVERIFY(h.copyCatalogues());
        QSignalSpy changed(&h.handler, &TranslationHandler::languageChanged);
        h.handler.selectLanguage("fr");
        QCOMPARE(changed.count(), 1);
        QCOMPARE(QCoreApplication::translate("BaroH", SeaLevel), SeaLevelFr);

        MessageLog messages;
        LanguageChanges events;
        h.handler.selectLanguage("fr");
        QCOMPARE(changed.count(), 1);
        QCOMPARE(events.count, 0);
        QCOMPARE(messages.count("translator"), 0);
        QCOMPARE(h.handler.getCurrentLanguage(), QStringLiteral("fr"));
        QCOMPARE(QCoreApplication::translate("BaroH", SeaLevel), SeaLevelFr);
    }

    void frenchThenEnglishLeavesOnlyTheApplicationCatalogue()
    {
        Handled h;
        QVERIFY(h.copyCatalogues());
        QSignalSpy changed(&h.handler, &TranslationHandler::languageChanged);
        h.handler.selectLanguage("fr");
        QCOMPARE(QCoreApplication::translate("BaroH", SeaLevel), SeaLevelFr);
        QCOMPARE(qtBaseCancel(), QStringLiteral("Annuler"));
        QCOMPARE(QLocale().name(), QStringLiteral("fr_FR"));

        h.handler.selectLanguage("en");
        QCOMPARE(changed.count(), 2);
        QCOMPARE(h.handler.getCurrentLanguage(), QStringLiteral("en"));
        QCOMPARE(QLocale().name(), QStringLiteral("en_US"));
        // The library's texts are back in English, and so are ours...
        QCOMPARE(qtBaseCancel(), QStringLiteral("Cancel"));
        QCOMPARE(QCoreApplication::translate("BaroH", SeaLevel), QString::fromLatin1(SeaLevel));
        // ...through the English catalogue, which is in place: it has its own degree sign.
        QCOMPARE(QCoreApplication::translate("BackEnd", "deg"), QStringLiteral("°"));
    }

    void englishThenFrenchSwapsBack()
    {
        Handled h;
        QVERIFY(h.copyCatalogues());
        h.handler.selectLanguage("en");
        MessageLog messages;
        h.handler.selectLanguage("fr");
        QCOMPARE(QCoreApplication::translate("BaroH", SeaLevel), SeaLevelFr);
        QCOMPARE(qtBaseCancel(), QStringLiteral("Annuler"));
        QCOMPARE(messages.count("translator brinholt empty ? false"), 1);
        QCOMPARE(messages.count("translator qtbase empty ? false"), 1);
        // The three lines come in this order, the application's catalogue last.
        const QStringList lines = messages.messages().filter("translator ");
        QCOMPARE(lines.size(), 3);
        QVERIFY(lines.at(0).startsWith("translator qtbase empty ?"));
        QVERIFY(lines.at(1).startsWith("translator qt empty ?"));
        QVERIFY(lines.at(2).startsWith("translator brinholt empty ?"));
    }

    void unknownCodeIsOnlySignalled()
    {
        Handled h;
        QVERIFY(h.copyCatalogues());
        h.handler.selectLanguage("fr");
        QSignalSpy changed(&h.handler, &TranslationHandler::languageChanged);
        LanguageChanges events;
        MessageLog messages;
        h.handler.selectLanguage("de");
        QCOMPARE(changed.count(), 1);
        QCOMPARE(h.handler.getCurrentLanguage(), QStringLiteral("fr"));
        QCOMPARE(events.count, 0);
        QCOMPARE(messages.count("translator"), 0);
        QCOMPARE(QLocale().name(), QStringLiteral("fr_FR"));
        QCOMPARE(QCoreApplication::translate("BaroH", SeaLevel), SeaLevelFr);
        QCOMPARE(qtBaseCancel(), QStringLiteral("Annuler"));
        // Asked again, it is still not the current language, so it is signalled again.
        h.handler.selectLanguage("de");
        QCOMPARE(changed.count(), 2);
    }

    void withoutCataloguesTheSwitchStillHappens()
    {
        Handled h; // with no catalogue in its folder
        QSignalSpy changed(&h.handler, &TranslationHandler::languageChanged);
        MessageLog messages;
        h.handler.selectLanguage("fr");
        QCOMPARE(changed.count(), 1);
        QCOMPARE(h.handler.getCurrentLanguage(), QStringLiteral("fr"));
        QCOMPARE(messages.count("translator qtbase empty ? true"), 1);
        QCOMPARE(messages.count("translator qt empty ? true"), 1);
        QCOMPARE(messages.count("translator brinholt empty ? true"), 1);
        // The texts stay in English, the numbers follow the new locale.
        QCOMPARE(QCoreApplication::translate("BaroH", SeaLevel), QString::fromLatin1(SeaLevel));
        QCOMPARE(QLocale().toString(1.5), QStringLiteral("1,5"));
        h.handler.selectLanguage("en");
        QCOMPARE(changed.count(), 2);
        QCOMPARE(QLocale().toString(1.5), QStringLiteral("1.5"));
    }

    void livePagesAreRetranslated()
    {
        Handled h;
        QVERIFY(h.copyCatalogues());
        h.engine.loadData("import QtQml 2.15\n"
                          "QtObject { property string caption: qsTranslate(\"BaroH\", \"Sea Level Pressure (QNH)\") }");
        QCOMPARE(h.engine.rootObjects().size(), 1);
        QObject* page = h.engine.rootObjects().first();
        QCOMPARE(page->property("caption").toString(), QString::fromLatin1(SeaLevel));
        h.handler.selectLanguage("fr");
        QCOMPARE(page->property("caption").toString(), SeaLevelFr);
        h.handler.selectLanguage("en");
        QCOMPARE(page->property("caption").toString(), QString::fromLatin1(SeaLevel));
    }
};

QTEST_MAIN(TestTranslationHandler)
#include "tst_translationhandler.moc"
