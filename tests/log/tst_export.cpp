// SPDX-License-Identifier: GPL-3.0-or-later
#include "ReaderFixture.h"

#include "app/BackEnd.h"
#include "log/DataSource.h"
#include "tests/support/Columns.h"

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QProcess>
#include <QtCore/QSettings>
#include <QtCore/QStandardPaths>
#include <QtCore/QTranslator>
#include <QtTest/QtTest>

#include <ctime>

namespace {

const QString EnglishHeader = QStringLiteral(
        "Date (UTC),Latitude,Longitude,Station pressure (mb),Sea Level Pressure (mb),Offset (mb),"
        "Elevation (m),COG(T),SOG(kts)");
const QString ExampleLine = QStringLiteral("14:03:22 (UTC) 05 Nov 2026,47.60620,-122.33210,1012.8,1014.0,0.5,10.00,245,6.4");

const QString GpxRoot = QStringLiteral(
        "<gpx xmlns=\"http://www.topografix.com/GPX/1/1\" "
        "xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\" "
        "xsi:schemaLocation=\"http://www.topografix.com/GPX/1/1 http://www.topografix.com/GPX/1/1/gpx.xsd\" "
        "xmlns:quillmere=\"https://quillmere.com\" version=\"1.1\" creator=\"brinholt\">");

QByteArray readAll(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return QByteArray("<missing>");
    return file.readAll();
}

QStringList lines(const QString& path)
{
    QStringList result = QString::fromLatin1(readAll(path)).split(QLatin1Char('\n'));
    if (!result.isEmpty() && result.last().isEmpty())
        result.removeLast();
    return result;
}

QStringList exportFiles()
{
    return QDir::current().entryList({QStringLiteral("export_*")}, QDir::Files);
}

// The files of the data folder, less the write-ahead log and its index that the open log
// keeps beside its file.
QStringList folderFiles()
{
    QStringList files = QDir::current().entryList(QDir::Files | QDir::NoDotAndDotDot);
    files.removeAll(QStringLiteral("brinholt.db-wal"));
    files.removeAll(QStringLiteral("brinholt.db-shm"));
    return files;
}

// Exit status of xmllint, which never goes to the network here.
int xmllint(const QStringList& arguments, QString* output)
{
    QProcess process;
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(QStringLiteral("xmllint"), QStringList{QStringLiteral("--noout"), QStringLiteral("--nonet")} + arguments);
    if (!process.waitForFinished(60000))
        return -1;
    *output = QString::fromLocal8Bit(process.readAll());
    return process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
}

// A catalogue for the CSV header with characters inside and outside ISO 8859-1.
class HeaderTranslator : public QTranslator
{
public:
    QString translate(const char* context, const char* sourceText, const char*, int) const override
    {
        if (qstrcmp(context, "DataSource") != 0)
            return QString();
        const QByteArray source(sourceText);
        if (source.startsWith("Date (%1)"))
            return QString::fromUtf8("Datum (%1);Breite;Länge;Stationsdruck (%3);Druck auf Meereshöhe (%3);"
                                     "Versatz (%3);Höhe (%2);Kurs €;Fahrt (kn)");
        if (source == "Device")
            return QString::fromUtf8("Gerät");
        if (source == "ft")
            return QString::fromUtf8("Fuß");
        return QString();
    }

    bool isEmpty() const override { return false; }
};

// The example row, moved in time and place.
LogRow exampleAt(qint64 time, double lon, double lat, double ele = 10.0)
{
    LogRow row = ReaderFixture::exampleRow();
    row.time = time;
    row.lon = lon;
    row.lat = lat;
    row.ele = ele;
    return row;
}

void exampleSettings(ReaderFixture& fx)
{
    fx.setSetting(QStringLiteral("timeZone"), 0);
    fx.setSetting(QStringLiteral("unitPre"), 0);
    fx.setSetting(QStringLiteral("unitEle"), 0);
    fx.setSetting(QStringLiteral("precision"), 1);
    fx.setSetting(QStringLiteral("formatMMDD"), 0);
    fx.setSetting(QStringLiteral("timeFormat"), 0);
}

// The CSV export of chart 1 as `name` in the test's folder; its path.
QString exportCsv(ReaderFixture& fx, const QString& name)
{
    const QString target = fx.path(name);
    fx.log().exportCsv(1, target);
    return target;
}

// Puts the example row in BARO3H and exports that table to `name` in the data folder, as
// CSV or as GPX; the file's path.

QString exportExample(ReaderFixture& fx, const QString& name, bool gpx = false)
{
    fx.insert(1, ReaderFixture::exampleRow());
    if (!gpx)
        return exportCsv(fx, name);
    const QString target = fx.path(name);
    fx.log().exportGpx(1, target);
    return target;
}

// The lines of the example's CSV with the example settings but `key` set to `value`.
QStringList exampleCsvWith(const char* key, int value)
{
    ReaderFixture fx;
    exampleSettings(fx);
    fx.setSetting(QString::fromLatin1(key), value);
    return lines(exportExample(fx, QStringLiteral("example.csv")));
}

} // namespace

// The export entry, the CSV writer and the GPX writer.
class TestExport : public QObject
{
    Q_OBJECT

private:
    static constexpr qint64 Now = ReaderFixture::ExampleTime;

private slots:
    void initTestCase()
    {
        // Eight hours behind UTC all year round, so that the device's zone is never UTC.
        qputenv("TZ", "PST8");
        tzset();
        QVERIFY2(!QStandardPaths::findExecutable(QStringLiteral("xmllint")).isEmpty(), "xmllint is needed");
    }

    // ---- Dispatch -------------------------------------------------------------------

    void fileSchemeAloneExportsNothing()
    {
        ReaderFixture fx;
        fx.insert(1, ReaderFixture::exampleRow());
        fx.messages.clear();
        fx.log().exportFile(1, QStringLiteral("file://"));
        QCOMPARE(fx.messages.messages(), QStringList{QStringLiteral("exporting to 1 file://")});
        QCOMPARE(folderFiles(), QStringList{QStringLiteral("brinholt.db")});
        QVERIFY(fx.viewer.urls.isEmpty());
    }

    void pathWithoutPrefixIsTakenAsItStands()
    {
        ReaderFixture fx;
        fx.insert(1, ReaderFixture::exampleRow());
        const QString target = fx.path(QStringLiteral("plain.csv"));
        fx.log().exportFile(1, target);
        QCOMPARE(lines(target).value(0), EnglishHeader);
        QCOMPARE(fx.viewer.urls.size(), 1);
        QCOMPARE(fx.viewer.urls.first().toString(), QStringLiteral("file:///") + target);
    }

    void fileSchemeInTheMiddleIsRemovedToo()
    {
        ReaderFixture fx;
        fx.insert(1, ReaderFixture::exampleRow());
        fx.log().exportFile(1, QDir::currentPath() + QStringLiteral("/afile://b.csv"));
        QVERIFY(QFile::exists(fx.path(QStringLiteral("ab.csv"))));
        QCOMPARE(lines(fx.path(QStringLiteral("ab.csv"))).size(), 2);
    }

    void dialogUrlGivesAnAbsolutePath()
    {
        ReaderFixture fx;
        fx.insert(1, ReaderFixture::exampleRow());
        const QString target = fx.path(QStringLiteral("track.gpx"));
        fx.messages.clear();
        fx.log().exportFile(1, QStringLiteral("file://") + target);
        QCOMPARE(fx.messages.messages(), QStringList{QStringLiteral("exporting to 1 file://") + target});
        QCOMPARE(lines(target).value(0), GpxRoot);
        // Four slashes: "file:///" before an absolute path.
        QCOMPARE(fx.viewer.urls.value(0).toString(), QStringLiteral("file:///") + target);
    }

    void nameDecidesTheFormat_data()
    {
        Columns::add<QString, bool>("name", "gpx");
        QTest::newRow("lower-case .gpx gives GPX") << QStringLiteral("a.gpx") << true;
        QTest::newRow("upper-case .GPX gives CSV") << QStringLiteral("a.GPX") << false;
        QTest::newRow("no extension gives CSV") << QStringLiteral("a") << false;
        QTest::newRow("another extension gives CSV") << QStringLiteral("a.txt") << false;
        QTest::newRow(".csv gives CSV") << QStringLiteral("a.csv") << false;
    }

    void nameDecidesTheFormat()
    {
        QFETCH(QString, name);
        QFETCH(bool, gpx);
        ReaderFixture fx;
        fx.insert(1, ReaderFixture::exampleRow());
        fx.log().exportFile(1, QStringLiteral("file://") + fx.path(name));
        QCOMPARE(lines(fx.path(name)).value(0), gpx ? GpxRoot : EnglishHeader);
        // Nothing is added to the name.
        QCOMPARE(folderFiles().size(), 2);
    }

    // ---- CSV --------------------------------------------------------------------------

    void csvExampleInEnglish_data()
    {
        // Only 1 is French: any other stored value, a stale or hand-edited one included,
        // gives the comma-separated file with decimal points.
        Columns::ints("language", {{"language 0", 0}, {"language 7 is the English form", 7}});
    }

    void csvExampleInEnglish()
    {
        QFETCH(int, language);
        ReaderFixture fx;
        exampleSettings(fx);
        fx.setSetting(QStringLiteral("language"), language);
        const QString target = exportExample(fx, QStringLiteral("example.csv"));
        QCOMPARE(readAll(target), (EnglishHeader + QLatin1Char('\n') + ExampleLine + QLatin1Char('\n')).toLatin1());
    }

    void csvExampleInFrench()
    {
        ReaderFixture fx;
        exampleSettings(fx);
        fx.setSetting(QStringLiteral("language"), 1);
        QLocale::setDefault(QLocale(QStringLiteral("fr_FR")));
        const QString target = exportExample(fx, QStringLiteral("exemple.csv"));
        // No catalogue is loaded: the header stays in its source text, with its ";".
        QCOMPARE(lines(target),
                 (QStringList{QStringLiteral("Date (UTC);Latitude;Longitude;Station pressure (mb);"
                                             "Sea Level Pressure (mb);Offset (mb);Elevation (m);COG(T);SOG(kts)"),
                              QStringLiteral("14:03:22 (UTC) 05 nov, 2026;47,60620;-122,33210;1012,8;1014,0;0,5;"
                                             "10,00;245;6,4")}));
    }

    void csvExampleMonthFirst()
    {
        QCOMPARE(exampleCsvWith("formatMMDD", 1).value(1),
                 QStringLiteral("14:03:22 (UTC) Nov 05  2026,47.60620,-122.33210,1012.8,1014.0,0.5,10.00,245,6.4"));
    }

    void csvOfAnEmptyTableIsTheHeaderAloneAndIsOpened()
    {
        ReaderFixture fx;
        const QString target = fx.path(QStringLiteral("empty.csv"));
        fx.log().exportCsv(4, target);
        QCOMPARE(readAll(target), (EnglishHeader + QLatin1Char('\n')).toLatin1());
        QCOMPARE(fx.viewer.urls.size(), 1);
        QCOMPARE(fx.viewer.urls.first().toString(), QStringLiteral("file:///") + target);
    }

    void csvHeaderSaysUtcWhileRowsCarryTheDevicesZone()
    {
        ReaderFixture fx;
        QVERIFY(!fx.backend().getSettings()->contains(QStringLiteral("timeZone")));
        const QString target = exportExample(fx, QStringLiteral("zone.csv"));
        QCOMPARE(lines(target).value(0), EnglishHeader);
        QVERIFY2(lines(target).value(1).startsWith(QStringLiteral("06:03:22 (UTC-08:00) 05 Nov 2026,")),
                 qPrintable(lines(target).value(1)));
    }

    void csvHeaderOfTheDevicesZone()
    {
        ReaderFixture fx;
        fx.setSetting(QStringLiteral("timeZone"), 1);
        const QString target = exportCsv(fx, QStringLiteral("zone.csv"));
        QVERIFY2(lines(target).value(0).startsWith(QStringLiteral("Date (Device),Latitude,")),
                 qPrintable(lines(target).value(0)));
    }

    void csvUnknownPressureUnitHasNoWordAndHectopascals()
    {
        QCOMPARE(exampleCsvWith("unitPre", 7),
                 (QStringList{QStringLiteral("Date (UTC),Latitude,Longitude,Station pressure (),Sea Level Pressure (),"
                                             "Offset (),Elevation (m),COG(T),SOG(kts)"),
                              ExampleLine}));
    }

    void csvPressureUnitWords_data()
    {
        Columns::add<int, QString, QString>("unitPre", "word", "pressures");
        QTest::newRow("hPa") << 1 << QStringLiteral("hPa") << QStringLiteral("1012.8,1014.0,0.5");
        QTest::newRow("kPa") << 2 << QStringLiteral("kPa") << QStringLiteral("101.3,101.4,0.1");
        QTest::newRow("inHg") << 3 << QStringLiteral("inHg") << QStringLiteral("29.91,29.94,0.01");
        QTest::newRow("mmHg") << 4 << QStringLiteral("mmHg") << QStringLiteral("759.7,760.6,0.4");
    }

    void csvPressureUnitWords()
    {
        QFETCH(int, unitPre);
        QFETCH(QString, word);
        QFETCH(QString, pressures);
        const QStringList csv = exampleCsvWith("unitPre", unitPre);
        QCOMPARE(csv.value(0),
                 QStringLiteral("Date (UTC),Latitude,Longitude,Station pressure (%1),Sea Level Pressure (%1),"
                                "Offset (%1),Elevation (m),COG(T),SOG(kts)")
                         .arg(word));
        QCOMPARE(csv.value(1),
                 QStringLiteral("14:03:22 (UTC) 05 Nov 2026,47.60620,-122.33210,%1,10.00,245,6.4").arg(pressures));
    }

    void csvFeetChangeTheHeaderAndTheElevationButNotTheReduction()
    {
        QCOMPARE(exampleCsvWith("unitEle", 1),
                 (QStringList{QStringLiteral("Date (UTC),Latitude,Longitude,Station pressure (mb),Sea Level Pressure (mb),"
                                             "Offset (mb),Elevation (ft),COG(T),SOG(kts)"),
                              QStringLiteral("14:03:22 (UTC) 05 Nov 2026,47.60620,-122.33210,1012.8,1014.0,0.5,32.81,245,6.4")}));
    }

    void csvNegativeLatitudeKeepsItsSign()
    {
        ReaderFixture fx;
        exampleSettings(fx);
        fx.insert(1, exampleAt(Now, 151.2153, -33.8568));
        const QString target = exportCsv(fx, QStringLiteral("south.csv"));
        QVERIFY2(lines(target).value(1).startsWith(QStringLiteral("14:03:22 (UTC) 05 Nov 2026,-33.85680,151.21530,")),
                 qPrintable(lines(target).value(1)));
    }

    void csvHeaderTranslationGoesThroughTheLatin1Codec()
    {
        ReaderFixture fx;
        fx.setSetting(QStringLiteral("timeZone"), 1);
        fx.setSetting(QStringLiteral("unitEle"), 1);
        HeaderTranslator translator;
        QCoreApplication::installTranslator(&translator);
        const QString target = exportCsv(fx, QStringLiteral("codec.csv"));
        QCoreApplication::removeTranslator(&translator);
        // Characters of ISO 8859-1 are one byte each; the euro sign is not in it.
        QCOMPARE(readAll(target),
                 QByteArray("Datum (Ger\xe4t),Breite,L\xe4nge,Stationsdruck (mb),Druck auf Meeresh\xf6he (mb),"
                            "Versatz (mb),H\xf6he (Fu\xdf),Kurs ?,Fahrt (kn)\n"));
    }

    void csvRowsNewestFirstWithCourseRoundedAndNoFixAsZero()
    {
        ReaderFixture fx;
        exampleSettings(fx);
        LogRow older = exampleAt(Now - 6, 0.0, 0.0, 0.0);
        older.cog = 245.5;
        older.sog = 0.04;
        LogRow newer = exampleAt(Now, 2.5, 1.25, 0.0);
        newer.cog = 6.6;
        fx.insert(1, {older, newer});
        const QString target = exportCsv(fx, QStringLiteral("rows.csv"));
        const QStringList text = lines(target);
        QCOMPARE(text.size(), 3);
        QCOMPARE(text.at(1), QStringLiteral("14:03:22 (UTC) 05 Nov 2026,1.25000,2.50000,1012.8,1012.8,0.5,0.00,007,6.4"));
        QCOMPARE(text.at(2), QStringLiteral("14:03:16 (UTC) 05 Nov 2026,0.00000,0.00000,1012.8,1012.8,0.5,0.00,246,0.0"));
    }

    void csvDefaultNameLiesInTheCurrentFolder()
    {
        ReaderFixture fx;
        fx.insert(2, ReaderFixture::exampleRow());
        fx.log().exportCsv(2);
        QCOMPARE(exportFiles(), QStringList{QStringLiteral("export_BARO6H.csv")});
        QCOMPARE(lines(fx.path(QStringLiteral("export_BARO6H.csv"))).size(), 2);
        QCOMPARE(fx.viewer.urls.size(), 1);
        const QUrl url = fx.viewer.urls.first();
        QCOMPARE(url.scheme(), QStringLiteral("file"));
        QVERIFY(url.toString().startsWith(QStringLiteral("file:///") + QDir::currentPath() + QLatin1Char('/')));
        QCOMPARE(QFileInfo(url.path()).canonicalFilePath(),
                 QFileInfo(fx.path(QStringLiteral("export_BARO6H.csv"))).canonicalFilePath());
    }

    void csvOverwritesAnExistingFile()
    {
        ReaderFixture fx;
        const QString target = fx.path(QStringLiteral("old.csv"));
        QFile old(target);
        QVERIFY(old.open(QIODevice::WriteOnly));
        old.write(QByteArray(10000, 'x'));
        old.close();
        fx.log().exportCsv(0, target);
        QCOMPARE(readAll(target), (EnglishHeader + QLatin1Char('\n')).toLatin1());
    }

    void failedQueryTouchesNoFile_data()
    {
        Columns::add<bool, int, QString>("gpx", "table", "name");
        QTest::newRow("CSV") << false << 4 << QStringLiteral("BARO1D");
        QTest::newRow("GPX uses the CSV wording") << true << 1 << QStringLiteral("BARO3H");
    }

    void failedQueryTouchesNoFile()
    {
        QFETCH(bool, gpx);
        QFETCH(int, table);
        QFETCH(QString, name);
        ReaderFixture fx;
        fx.execute(QStringLiteral("DROP TABLE ") + name);
        fx.messages.clear();
        if (gpx)
            fx.log().exportGpx(table);
        else
            fx.log().exportCsv(table);
        QCOMPARE(fx.messages.messages().size(), 1);
        QVERIFY(fx.messages.messages().first().startsWith(QStringLiteral("db query error in Csv ")));
        QVERIFY(fx.messages.messages().first().endsWith(QStringLiteral(" SELECT * FROM %1 ORDER BY TIME DESC").arg(name)));
        QVERIFY(exportFiles().isEmpty());
        QVERIFY(fx.viewer.urls.isEmpty());
        // The lock was released.
        fx.insert(0, ReaderFixture::exampleRow());
        QVERIFY(!fx.log().calcInfo(QPointF(0.0, 1013.0), 0).isEmpty());
    }

    void csvFileThatCannotBeOpenedIsLogged()
    {
        ReaderFixture fx;
        const QString target = fx.path(QStringLiteral("no/such/folder.csv"));
        fx.messages.clear();
        fx.log().exportCsv(1, target);
        QCOMPARE(fx.messages.messages().size(), 1);
        QVERIFY2(fx.messages.messages().first().startsWith(QStringLiteral("unable to open ") + target + QLatin1Char(' ')),
                 qPrintable(fx.messages.messages().first()));
        QVERIFY(fx.messages.messages().first().length() > QStringLiteral("unable to open ").length() + target.length() + 1);
        QVERIFY(fx.viewer.urls.isEmpty());
        fx.insert(0, ReaderFixture::exampleRow());
        QVERIFY(!fx.log().calcInfo(QPointF(0.0, 1013.0), 0).isEmpty());
    }

    // ---- GPX ------------------------------------------------------------------------

    void gpxExampleFile()
    {
        ReaderFixture fx;
        fx.insert(1, ReaderFixture::exampleRow());
        const QString target = fx.path(QStringLiteral("example.gpx"));
        fx.messages.clear();
        fx.log().exportGpx(1, target);
        QCOMPARE(lines(target), (QStringList{GpxRoot,
                                             QStringLiteral("<trk>"),
                                             QStringLiteral("<name>BARO3H</name>"),
                                             QStringLiteral("<trkseg>"),
                                             QStringLiteral("<trkpt lat=\"47.6062000000\" lon=\"-122.3321000000\">"),
                                             QStringLiteral("<ele>10.00</ele>"),
                                             QStringLiteral("<time>2026-11-05T14:03:22Z</time>"),
                                             QStringLiteral("</trkpt>"),
                                             QStringLiteral("</trkseg>"),
                                             QStringLiteral("</trk>"),
                                             QStringLiteral("</gpx>")}));
        // Byte for byte: one line feed after each of the eleven lines, nothing else.
        QCOMPARE(readAll(target), (lines(target).join(QLatin1Char('\n')) + QLatin1Char('\n')).toLatin1());
        QCOMPARE(readAll(target).count('\n'), 11);
        QVERIFY(fx.messages.messages().isEmpty());
        QCOMPARE(fx.viewer.urls.value(0).toString(), QStringLiteral("file:///") + target);
    }

    void gpxOfRowsWithoutAFixHasNoTrackPointsAndIsOpened()
    {
        ReaderFixture fx;
        fx.insert(1, {exampleAt(Now, 0.0, 0.0), exampleAt(Now - 6, 0.0, 0.0)});
        const QString target = fx.path(QStringLiteral("nofix.gpx"));
        fx.log().exportGpx(1, target);
        QCOMPARE(lines(target), (QStringList{GpxRoot, QStringLiteral("<trk>"), QStringLiteral("<name>BARO3H</name>"),
                                             QStringLiteral("<trkseg>"), QStringLiteral("</trkseg>"),
                                             QStringLiteral("</trk>"), QStringLiteral("</gpx>")}));
        QCOMPARE(fx.viewer.urls.size(), 1);
    }

    void gpxSkipsRowsOnTheEquatorOrThePrimeMeridian()
    {
        ReaderFixture fx;
        fx.insert(1, {exampleAt(Now, 0.0, 47.5), exampleAt(Now - 6, -122.5, 0.0), exampleAt(Now - 12, 1e-12, 47.5),
                      exampleAt(Now - 18, -122.5, -1e-12), exampleAt(Now - 24, 2e-12, -2e-12),
                      exampleAt(Now - 30, -122.5, 47.5)});
        const QString target = fx.path(QStringLiteral("skips.gpx"));
        fx.log().exportGpx(1, target);
        const QStringList text = lines(target);
        QCOMPARE(text.filter(QStringLiteral("<trkpt ")),
                 (QStringList{QStringLiteral("<trkpt lat=\"-0.0000000000\" lon=\"0.0000000000\">"),
                              QStringLiteral("<trkpt lat=\"47.5000000000\" lon=\"-122.5000000000\">")}));
        QCOMPARE(text.filter(QStringLiteral("<time>")),
                 (QStringList{QStringLiteral("<time>2026-11-05T14:02:58Z</time>"),
                              QStringLiteral("<time>2026-11-05T14:02:52Z</time>")}));
    }

    void gpxElevationStaysInMetres()
    {
        ReaderFixture fx;
        fx.setSetting(QStringLiteral("unitEle"), 1);
        const QString target = exportExample(fx, QStringLiteral("feet.gpx"), true);
        QCOMPARE(lines(target).value(5), QStringLiteral("<ele>10.00</ele>"));
    }

    void gpxInFrenchKeepsFullStops()
    {
        ReaderFixture fx;
        fx.setSetting(QStringLiteral("language"), 1);
        QLocale::setDefault(QLocale(QStringLiteral("fr_FR")));
        const QString target = exportExample(fx, QStringLiteral("exemple.gpx"), true);
        QCOMPARE(lines(target).mid(4, 3),
                 (QStringList{QStringLiteral("<trkpt lat=\"47.6062000000\" lon=\"-122.3321000000\">"),
                              QStringLiteral("<ele>10.00</ele>"), QStringLiteral("<time>2026-11-05T14:03:22Z</time>")}));
    }

    void gpxNameIsWhatTheCallerGave()
    {
        ReaderFixture fx;
        fx.insert(1, ReaderFixture::exampleRow());
        fx.log().exportGpx(1, fx.path(QStringLiteral("track.xml")));
        QVERIFY(QFile::exists(fx.path(QStringLiteral("track.xml"))));
        QVERIFY(!QFile::exists(fx.path(QStringLiteral("track.xml.gpx"))));
        QVERIFY(exportFiles().isEmpty());

        fx.log().exportGpx(1);
        QCOMPARE(exportFiles(), QStringList{QStringLiteral("export_BARO3H.gpx")});
        QCOMPARE(lines(fx.path(QStringLiteral("export_BARO3H.gpx"))).value(2), QStringLiteral("<name>BARO3H</name>"));
        QCOMPARE(fx.viewer.urls.size(), 2);
        QCOMPARE(QFileInfo(fx.viewer.urls.at(1).path()).canonicalFilePath(),
                 QFileInfo(fx.path(QStringLiteral("export_BARO3H.gpx"))).canonicalFilePath());
    }

    void gpxTrackPointsRunNewestFirst()
    {
        ReaderFixture fx;
        fx.fillTable(0, 20, Now);
        const QString target = fx.path(QStringLiteral("order.gpx"));
        fx.log().exportGpx(0, target);
        const QStringList times = lines(target).filter(QStringLiteral("<time>"));
        QCOMPARE(times.size(), 20);
        QCOMPARE(times.first(), QStringLiteral("<time>2026-11-05T14:03:22Z</time>"));
        QCOMPARE(times.last(), QStringLiteral("<time>2026-11-05T14:02:44Z</time>"));
    }

    void gpxIsWellFormedAndValid_data()
    {
        Columns::add<int, bool>("rows", "withFix");
        QTest::newRow("empty table") << 0 << true;
        QTest::newRow("table without a fix") << 5 << false;
        QTest::newRow("full table") << 1800 << true;
    }

    void gpxIsWellFormedAndValid()
    {
        QFETCH(int, rows);
        QFETCH(bool, withFix);
        ReaderFixture fx;
        if (withFix) {
            fx.fillTable(1, rows, Now);
        } else {
            for (int i = 0; i < rows; ++i)
                fx.insert(1, exampleAt(Now - 6 * i, 0.0, 0.0));
        }
        const QString target = fx.path(QStringLiteral("check.gpx"));
        fx.log().exportGpx(1, target);
        QCOMPARE(lines(target).filter(QStringLiteral("<trkpt ")).size(), withFix ? rows : 0);

        QString output;
        QVERIFY2(xmllint({target}, &output) == 0, qPrintable(output));
        const QString schema = QStringLiteral(BRINHOLT_SOURCE_DIR "/tests/log/data/gpx-1.1.xsd");
        QVERIFY2(xmllint({QStringLiteral("--schema"), schema, target}, &output) == 0, qPrintable(output));
    }

    void gpxFileThatCannotBeOpenedIsSilent()
    {
        ReaderFixture fx;
        fx.insert(1, ReaderFixture::exampleRow());
        fx.messages.clear();
        fx.log().exportGpx(1, fx.path(QStringLiteral("no/such/folder.gpx")));
        QCOMPARE(fx.messages.messages(), QStringList());
        QVERIFY(fx.viewer.urls.isEmpty());
        QVERIFY(!fx.log().calcInfo(QPointF(0.0, 1013.0), 1).isEmpty());
    }
};

QTEST_MAIN(TestExport)
#include "tst_export.moc"
