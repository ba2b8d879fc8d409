// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/support/Columns.h"

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QRegularExpression>
#include <QtCore/QTranslator>
#include <QtTest/QtTest>

// The catalogues as built beside the executable: the degree sign and the units must be in
// them, or the program shows the bare words; and so must every text of every page and of
// every component a page is built from.
class TestCatalogues : public QObject
{
    Q_OBJECT

private slots:
    void translation_data();
    void translation();
    void everyPageTextIsInBothCatalogues_data();
    void everyPageTextIsInBothCatalogues();
    void cataloguesHaveNoUnfinishedEntry();
};

void TestCatalogues::translation_data()
{
    Columns::add<QString, QString, QString, QString>("file", "context", "source", "expected");

    const QString fr = QStringLiteral("Brinholt_fr_FR.qm");
    const QString en = QStringLiteral("Brinholt_en_US.qm");
    QTest::newRow("french deg is the degree sign") << fr << "QObject" << "deg" << "°";
    QTest::newRow("french kts is nds") << fr << "QObject" << "kts" << "nds";
    QTest::newRow("french km/h") << fr << "QObject" << "km/h" << "km/h";
    QTest::newRow("french mph is mi/h") << fr << "QObject" << "mph" << "mi/h";
    QTest::newRow("french deg of the display line") << fr << "BackEnd" << "deg" << "°";
    QTest::newRow("french deg of the log list") << fr << "DataSource" << "deg" << "°";
    QTest::newRow("french internal sensor")
        << fr << "BackEnd" << "From internal pressure sensor" << "Depuis le capteur de pression interne";
    QTest::newRow("french serial connection")
        << fr << "BackEnd" << "From serial connection" << "Depuis la connexion série";
    QTest::newRow("french TCP connection") << fr << "BackEnd" << "From TCP connection" << "Depuis la connexion TCP";
    QTest::newRow("french UDP connection") << fr << "BackEnd" << "From UDP connection" << "Depuis la connexion UDP";
    QTest::newRow("french no pressure")
        << fr << "BackEnd" << "No pressure available" << "Aucune pression disponible";

    QTest::newRow("french zone word of the CSV header") << fr << "DataSource" << "Device" << "Appareil";
    QTest::newRow("french feet of the CSV header") << fr << "DataSource" << "ft" << "pi";
    QTest::newRow("french CSV header keeps its three fields and semicolons")
            << fr << "DataSource"
            << "Date (%1);Latitude;Longitude;Station pressure (%3);Sea Level Pressure (%3);Offset (%3);"
               "Elevation (%2);COG(T);SOG(kts)"
            << "Date (%1);Latitude;Longitude;Pression station (%3);Pression niveau mer (%3);Correction (%3);"
               "Altitude (%2);COG(V);SOG(nds)";
    QTest::newRow("english deg is the degree sign") << en << "QObject" << "deg" << "°";
    QTest::newRow("english deg of the display line") << en << "BackEnd" << "deg" << "°";
    QTest::newRow("english deg of the log list") << en << "DataSource" << "deg" << "°";
    QTest::newRow("english kts stays kts") << en << "QObject" << "kts" << "kts";
}

void TestCatalogues::translation()
{
    QFETCH(QString, file);
    QFETCH(QString, context);
    QFETCH(QString, source);
    QFETCH(QString, expected);

    const QString path = QStringLiteral(BRINHOLT_BINARY_DIR "/") + file;
    QVERIFY2(QFile::exists(path), qPrintable(path));
    QTranslator translator;
    QVERIFY(translator.load(path));
    QCOMPARE(translator.translate(context.toUtf8().constData(), source.toUtf8().constData()), expected);
}

void TestCatalogues::everyPageTextIsInBothCatalogues_data()
{
    Columns::add<QString, QString, QString>("catalogue", "context", "source");
    // qsTr("text") in the file's own context, or qsTranslate("context", "text").
    const QRegularExpression text(QStringLiteral("qs(?:Tr|Translate)\\((?:\"(\\w+)\", )?\"((?:[^\"\\\\]|\\\\.)*)\"\\)"));
    const QDir pages(QStringLiteral(BRINHOLT_SOURCE_DIR "/pages"));
    const QStringList files = pages.entryList({QStringLiteral("*.qml")}, QDir::Files, QDir::Name);
    QVERIFY(files.size() > 20);
    int found = 0;
    for (const QString& name : files) {
        QFile file(pages.filePath(name));
        QVERIFY(file.open(QIODevice::ReadOnly));
        const QString page = name.chopped(4);
        auto matches = text.globalMatch(QString::fromUtf8(file.readAll()));
        while (matches.hasNext()) {
            const QRegularExpressionMatch match = matches.next();
            const QString context = match.captured(1).isEmpty() ? page : match.captured(1);
            QString source = match.captured(2);
            source.replace(QStringLiteral("\\n"), QStringLiteral("\n")).replace(QStringLiteral("\\\""), QStringLiteral("\""));
            for (const char* catalogue : {"Brinholt_en_US.qm", "Brinholt_fr_FR.qm"})
                QTest::addRow("%s %s: %s", catalogue, qPrintable(page), qPrintable(source)) << catalogue << context << source;
            ++found;
        }
    }
    QVERIFY(found > 100);
}

void TestCatalogues::everyPageTextIsInBothCatalogues()
{
    QFETCH(QString, catalogue);
    QFETCH(QString, context);
    QFETCH(QString, source);
    QTranslator translator;
    QVERIFY(translator.load(QDir(QStringLiteral(BRINHOLT_BINARY_DIR)).filePath(catalogue)));
    const QString translated = translator.translate(context.toUtf8().constData(), source.toUtf8().constData());
    QVERIFY2(!translated.isEmpty(), "no translation");
    if (catalogue.contains(QLatin1String("en_US")))
        QCOMPARE(translated, source);
}

void TestCatalogues::cataloguesHaveNoUnfinishedEntry()
{
    for (const char* ts : {"Brinholt_en_US.ts", "Brinholt_fr_FR.ts"}) {
        QFile file(QStringLiteral(BRINHOLT_SOURCE_DIR "/translations/%1").arg(QLatin1String(ts)));
        QVERIFY(file.open(QIODevice::ReadOnly));
        const QByteArray text = file.readAll();
        QVERIFY2(!text.contains("type=\"unfinished\""), ts);
        QVERIFY2(!text.contains("type=\"vanished\""), ts);
        QVERIFY2(!text.contains("<translation></translation>"), ts);
    }
}

QTEST_GUILESS_MAIN(TestCatalogues)
#include "tst_catalogues.moc"
