#include <QtCore/QFile>
#include <QtCore/QTranslator>
#include <QtTest/QtTest>

// The catalogues as built beside the executable: the degree sign and the units must be in
// them, or the program shows the bare words.
class TestCatalogues : public QObject
{
    Q_OBJECT

private slots:
    void translation_data();
    void translation();
};

void TestCatalogues::translation_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QString>("context");
    QTest::addColumn<QString>("source");
    QTest::addColumn<QString>("expected");

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

QTEST_GUILESS_MAIN(TestCatalogues)
#include "tst_catalogues.moc"
