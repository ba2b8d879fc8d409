// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/BackEnd.h"
#include "app/TranslationHandler.h"
#include "tests/support/Columns.h"
#include "tests/support/MessageLog.h"
#include "tests/support/TestDataFolder.h"
#include "util/Util.h"

#include <QtCore/QDateTime>
#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QLocale>
#include <QtCore/QSettings>
#include <QtCore/QTemporaryDir>
#include <QtCore/QTextStream>
#include <QtCore/QVariantMap>
#include <QtTest/QtTest>

#include <cmath>
#include <ctime>
#include <limits>
#include <memory>

namespace {

// 14:03:22 UTC on 5 November 2026, the moment of the worked date examples.
QDateTime exampleMoment()
{
    return QDateTime(QDate(2026, 11, 5), QTime(14, 3, 22), Qt::UTC);
}

bool writeFile(const QString& path, const QByteArray& content)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return false;
    return file.write(content) == content.size();
}

QByteArray readFile(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return QByteArray();
    return file.readAll();
}

} // namespace

class TestUtil : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanupTestCase();

    void formatPosition_data();
    void formatPosition();
    void formatLatitude_data();
    void formatLatitude();
    void formatLongitude_data();
    void formatLongitude();
    void formatDegres_data();
    void formatDegres();
    void notANumber();
    void formatDir3Int_data();
    void formatDir3Int();
    void formatDir3Double_data();
    void formatDir3Double();

    void convertDateTime_data();
    void convertDateTime();
    void convertDateFormat_data();
    void convertDateFormat();
    void formatDateLong_data();
    void formatDateLong();
    void formatDateTimeLong_data();
    void formatDateTimeLong();
    void formatDateIso_data();
    void formatDateIso();
    void formatDateBaro_data();
    void formatDateBaro();

    void formatSpeed_data();
    void formatSpeed();
    void formatPressure_data();
    void formatPressure();

    void settingChangeShowsAtNextCall();
    void defaultsWithoutBackend();

    void copyDirSameFolder();
    void copyDirMissingSource();
    void copyDirMissingDestination();
    void copyDirCreatesSubfolders();
    void copyDirKeepsExistingTarget();
    void copyDirMoveReplacesTarget();

private:
    // "none" leaves every catalogue out, so "deg" stays the bare word.
    void useLanguage(const QString& code);
    void applySettings(const QVariantMap& settings);

    std::unique_ptr<TestDataFolder> folder;
    std::unique_ptr<BackEnd> back;
    std::unique_ptr<TranslationHandler> translation;
};

void TestUtil::initTestCase()
{
    // Eight hours behind UTC all year round, so the local-time rows hold on any machine.
    qputenv("TZ", "PST8");
    tzset();

    folder = std::make_unique<TestDataFolder>();
    // The language switch finds its catalogues by bare name in the data folder.
    for (const char* name : {"Brinholt_en_US.qm", "Brinholt_fr_FR.qm", "qt_fr.qm", "qtbase_fr.qm"}) {
        const QString from = QStringLiteral(BRINHOLT_BINARY_DIR "/") + QLatin1String(name);
        QVERIFY2(QFile::copy(from, folder->filePath(QLatin1String(name))), qPrintable(from));
    }
    // No NMEA input: no receiver thread reads the global backend that a test swaps out.
    {
        QSettings ini(folder->filePath(QStringLiteral("brinholt.ini")), QSettings::IniFormat);
        ini.setValue(QStringLiteral("SettingSerialPort"), QStringLiteral("None"));
    }
    back = std::make_unique<BackEnd>();
    QCOMPARE(backend, back.get());
    QVERIFY(!back->getReceiver());
}

void TestUtil::init()
{
    backend->getSettings()->clear();
    translation.reset();
    QLocale::setDefault(QLocale(QStringLiteral("en_US")));
    useLanguage(QStringLiteral("en"));
}

void TestUtil::cleanupTestCase()
{
    translation.reset();
    back.reset();
    folder.reset();
}

void TestUtil::useLanguage(const QString& code)
{
    translation.reset();
    QLocale::setDefault(QLocale(QStringLiteral("en_US")));
    if (code == QLatin1String("none"))
        return;
    translation = std::make_unique<TranslationHandler>(nullptr);
    translation->selectLanguage(code);
}

void TestUtil::applySettings(const QVariantMap& settings)
{
    for (auto it = settings.cbegin(); it != settings.cend(); ++it)
        back->setSetting(it.key(), it.value());
}

// ---- Positions and directions ---------------------------------------------------------

void TestUtil::formatPosition_data()
{
    Columns::add<QString, QVariant, double, double, QString>(
            "language", "locFormat", "longitude", "latitude", "expected");

    const QVariant absent;
    QTest::newRow("seattle in degrees minutes seconds")
        << "en" << QVariant(0) << -122.3321 << 47.6062 << " 47°36'22\"N  122°19'55\"W";
    QTest::newRow("seattle in decimal minutes")
        << "en" << QVariant(1) << -122.3321 << 47.6062 << " 47°36.37'N  122°19.93'W";
    QTest::newRow("seattle in decimal degrees")
        << "en" << QVariant(2) << -122.3321 << 47.6062 << "47.6062°N 122.3321°W";
    QTest::newRow("absent format is decimal minutes")
        << "en" << absent << -122.3321 << 47.6062 << " 47°36.37'N  122°19.93'W";
    QTest::newRow("format 7 behaves as decimal degrees")
        << "en" << QVariant(7) << -122.3321 << 47.6062 << "47.6062°N 122.3321°W";
    QTest::newRow("no catalogue shows the word deg")
        << "none" << QVariant(1) << -122.3321 << 47.6062 << " 47deg36.37'N  122deg19.93'W";
    QTest::newRow("french seconds keep plain digits")
        << "fr" << QVariant(0) << -122.3321 << 47.6062 << " 47°36'22\"N  122°19'55\"W";
    QTest::newRow("french decimal minutes take a comma")
        << "fr" << QVariant(1) << -122.3321 << 47.6062 << " 47°36,37'N  122°19,93'W";
    QTest::newRow("french decimal degrees take a comma")
        << "fr" << QVariant(2) << -122.3321 << 47.6062 << "47,6062°N 122,3321°W";
}

void TestUtil::formatPosition()
{
    QFETCH(QString, language);
    QFETCH(QVariant, locFormat);
    QFETCH(double, longitude);
    QFETCH(double, latitude);
    QFETCH(QString, expected);

    useLanguage(language);
    if (locFormat.isValid())
        back->setSetting(QStringLiteral("locFormat"), locFormat);
    QCOMPARE(Util::formatPosition(longitude, latitude), expected);
}

void TestUtil::formatLatitude_data()
{
    Columns::add<QString, int, double, QString>("language", "locFormat", "latitude", "expected");

    QTest::newRow("latitude zero prints south") << "en" << 1 << 0.0 << " 00°00.00'S";
    QTest::newRow("latitude zero prints south in seconds") << "en" << 0 << 0.0 << " 00°00'00\"S";
    QTest::newRow("southern latitude loses its sign") << "en" << 1 << -33.25 << " 33°15.00'S";
    QTest::newRow("minutes of 59.996 show 60.00 and the degrees stay")
        << "en" << 1 << 10.0 + 59.996 / 60.0 << " 10°60.00'N";
    QTest::newRow("47.99999 gives 47 degrees and 60.00 minutes") << "en" << 1 << 47.99999 << " 47°60.00'N";
    QTest::newRow("seconds truncate 10.99999 to 10 59 59") << "en" << 0 << 10.99999 << " 10°59'59\"N";
    QTest::newRow("no catalogue shows the word deg") << "none" << 1 << 47.6062 << " 47deg36.37'N";
    QTest::newRow("beyond 90 prints as it is") << "en" << 2 << 95.5 << "95.5000°N";
}

void TestUtil::formatLatitude()
{
    QFETCH(QString, language);
    QFETCH(int, locFormat);
    QFETCH(double, latitude);
    QFETCH(QString, expected);

    useLanguage(language);
    back->setSetting(QStringLiteral("locFormat"), locFormat);
    QCOMPARE(Util::formatLatitude(latitude), expected);
}

void TestUtil::formatLongitude_data()
{
    Columns::add<double, QString>("longitude", "expected");

    // Decimal degrees show the folded value plainly.
    QTest::newRow("longitude zero prints west") << 0.0 << "0.0000°W";
    QTest::newRow("180 prints east") << 180.0 << "180.0000°E";
    QTest::newRow("-180 prints west") << -180.0 << "180.0000°W";
    QTest::newRow("180.5 folds to 179.5 west") << 180.5 << "179.5000°W";
    QTest::newRow("-180.5 folds to 179.5 east") << -180.5 << "179.5000°E";
    QTest::newRow("725 folds to 5 east") << 725.0 << "5.0000°E";
    QTest::newRow("-725 folds to 5 west") << -725.0 << "5.0000°W";
    QTest::newRow("360 prints 0 west") << 360.0 << "0.0000°W";
    QTest::newRow("-360 prints 0 east") << -360.0 << "0.0000°E";
    QTest::newRow("western longitude loses its sign") << -0.5 << "0.5000°W";
}

void TestUtil::formatLongitude()
{
    QFETCH(double, longitude);
    QFETCH(QString, expected);

    back->setSetting(QStringLiteral("locFormat"), 2);
    QCOMPARE(Util::formatLongitude(longitude), expected);
}

void TestUtil::formatDegres_data()
{
    Columns::add<int, double, QString>("locFormat", "value", "expected");

    QTest::newRow("seconds form marks a negative value") << 0 << -5.5 << "-05°30'00\"";
    QTest::newRow("seconds form keeps three degree digits") << 0 << 123.0 << " 123°00'00\"";
    QTest::newRow("minutes form marks a negative value") << 1 << -5.5 << "-05°30.00'";
    QTest::newRow("minutes form pads 5.5 minutes to 05.50") << 1 << 5.5 / 60.0 << " 00°05.50'";
    QTest::newRow("minutes form keeps three degree digits") << 1 << 123.5 << " 123°30.00'";
    QTest::newRow("degrees form shows its own minus") << 2 << -5.5 << "-5.5000°";
    QTest::newRow("degrees form has no sign position") << 2 << 5.5 << "5.5000°";
}

void TestUtil::formatDegres()
{
    QFETCH(int, locFormat);
    QFETCH(double, value);
    QFETCH(QString, expected);

    back->setSetting(QStringLiteral("locFormat"), locFormat);
    QCOMPARE(Util::formatDegres(value), expected);
}

void TestUtil::notANumber()
{
    const double nan = std::numeric_limits<double>::quiet_NaN();
    QVERIFY(Util::formatLatitude(nan).endsWith(QLatin1Char('S')));
    QVERIFY(Util::formatLongitude(nan).endsWith(QLatin1Char('E')));
}

void TestUtil::formatDir3Int_data()
{
    Columns::add<int, QString>("value", "expected");

    QTest::newRow("7 gives 007") << 7 << "007";
    QTest::newRow("245 gives 245") << 245 << "245";
    QTest::newRow("0 gives 000") << 0 << "000";
}

void TestUtil::formatDir3Int()
{
    QFETCH(int, value);
    QFETCH(QString, expected);

    QCOMPARE(Util::formatDir3(value), expected);
}

void TestUtil::formatDir3Double_data()
{
    Columns::add<QString, double, int, QString>("language", "value", "decimals", "expected");

    QTest::newRow("45.5 with one decimal gives 045.5") << "en" << 45.5 << 1 << "045.5";
    QTest::newRow("two decimals pad to six places") << "en" << 5.25 << 2 << "005.25";
    QTest::newRow("a longer text is not cut") << "en" << -145.5 << 1 << "-145.5";
    QTest::newRow("french decimals take a comma") << "fr" << 45.5 << 1 << "045,5";
    QTest::newRow("no decimals rounds a half up") << "en" << 2.5 << 0 << "003";
    QTest::newRow("no decimals rounds down below a half") << "en" << 244.49 << 0 << "244";
    QTest::newRow("minus a half rounds towards plus infinity") << "en" << -0.5 << 0 << "000";
}

void TestUtil::formatDir3Double()
{
    QFETCH(QString, language);
    QFETCH(double, value);
    QFETCH(int, decimals);
    QFETCH(QString, expected);

    useLanguage(language);
    QCOMPARE(Util::formatDir3(value, decimals), expected);
}

// ---- Dates and times ------------------------------------------------------------------

void TestUtil::convertDateTime_data()
{
    Columns::add<QVariant, int, int>("timeZone", "expectedZoneKind", "expectedHour");

    QTest::newRow("time zone 0 is UTC") << QVariant(0) << int(Qt::UTC) << 14;
    QTest::newRow("time zone 1 is local") << QVariant(1) << int(Qt::LocalTime) << 6;
    QTest::newRow("time zone 2 behaves as 1") << QVariant(2) << int(Qt::LocalTime) << 6;
    QTest::newRow("absent time zone is local") << QVariant() << int(Qt::LocalTime) << 6;
}

void TestUtil::convertDateTime()
{
    QFETCH(QVariant, timeZone);
    QFETCH(int, expectedZoneKind);
    QFETCH(int, expectedHour);

    if (timeZone.isValid())
        back->setSetting(QStringLiteral("timeZone"), timeZone);
    const QDateTime converted = Util::convertDateTime(exampleMoment());
    QCOMPARE(int(converted.timeSpec()), expectedZoneKind);
    QCOMPARE(converted.time().hour(), expectedHour);
    QCOMPARE(converted.toMSecsSinceEpoch(), exampleMoment().toMSecsSinceEpoch());
}

void TestUtil::convertDateFormat_data()
{
    Columns::add<int, QString, QString>("formatMMDD", "format", "expected");

    QTest::newRow("long weekday format at 1 puts the day first")
        << 1 << "dddd MMMM d yyyy" << "dddd d MMMM yyyy";
    QTest::newRow("long weekday format at 0 stays") << 0 << "dddd MMMM d yyyy" << "dddd MMMM d yyyy";
    QTest::newRow("long weekday format with a tail stays at 0")
        << 0 << "dddd MMMM d yyyy HH:mm" << "dddd MMMM d yyyy HH:mm";
    QTest::newRow("long weekday format with a tail stays at 1")
        << 1 << "dddd MMMM d yyyy HH:mm" << "dddd MMMM d yyyy HH:mm";

    QTest::newRow("MM/dd at 1 becomes dd/MM") << 1 << "MM/dd/yyyy" << "dd/MM/yyyy";
    QTest::newRow("M/dd at 1 becomes dd/M") << 1 << "M/dd/yy" << "dd/M/yy";
    QTest::newRow("M/d at 1 becomes d/M") << 1 << "M/d/yy" << "d/M/yy";
    QTest::newRow("dd/MM at 1 stays") << 1 << "dd/MM/yyyy" << "dd/MM/yyyy";
    QTest::newRow("MMM dd at 1 stays") << 1 << "MMM dd" << "MMM dd";

    QTest::newRow("dd MMM at 0 becomes MMM dd") << 0 << "dd MMM yyyy" << "MMM dd yyyy";
    QTest::newRow("dd MM at 0 becomes MM dd") << 0 << "dd MM yyyy" << "MM dd yyyy";
    QTest::newRow("dd/MMM at 0 becomes MMM/dd") << 0 << "dd/MMM/yyyy" << "MMM/dd/yyyy";
    QTest::newRow("dd/MM at 0 becomes MM/dd") << 0 << "dd/MM/yyyy" << "MM/dd/yyyy";
    QTest::newRow("d/M at 0 becomes M/d") << 0 << "d/M/yy" << "M/d/yy";
    QTest::newRow("dd/M at 0 matches nothing and stays") << 0 << "dd/M/yy" << "dd/M/yy";
    QTest::newRow("MM/dd at 0 stays") << 0 << "MM/dd/yyyy" << "MM/dd/yyyy";
    QTest::newRow("any value but 1 takes the month-first table") << 5 << "dd/MM/yyyy" << "MM/dd/yyyy";
    QTest::newRow("unknown format stays") << 0 << "yyyy-MM-dd" << "yyyy-MM-dd";
}

void TestUtil::convertDateFormat()
{
    QFETCH(int, formatMMDD);
    QFETCH(QString, format);
    QFETCH(QString, expected);

    back->setSetting(QStringLiteral("formatMMDD"), formatMMDD);
    QCOMPARE(Util::convertDateFormat(format), expected);
}

void TestUtil::formatDateLong_data()
{
    Columns::add<QVariantMap, QDateTime, QString>("settings", "moment", "expected");

    const QDateTime earlyMorning(QDate(2026, 11, 5), QTime(3, 0, 0), Qt::UTC);
    QTest::newRow("default order puts the month first")
        << QVariantMap{{"timeZone", 0}} << exampleMoment() << "11/05/2026";
    QTest::newRow("order 1 puts the day first")
        << QVariantMap{{"timeZone", 0}, {"formatMMDD", 1}} << exampleMoment() << "05/11/2026";
    QTest::newRow("local time takes the local date")
        << QVariantMap{{"timeZone", 1}} << earlyMorning << "11/04/2026";
}

void TestUtil::formatDateLong()
{
    QFETCH(QVariantMap, settings);
    QFETCH(QDateTime, moment);
    QFETCH(QString, expected);

    applySettings(settings);
    QCOMPARE(Util::formatDateLong(moment), expected);
}

void TestUtil::formatDateTimeLong_data()
{
    Columns::add<QVariantMap, QString>("settings", "expected");

    QTest::newRow("24-hour clock in UTC")
        << QVariantMap{{"timeZone", 0}} << "11/05/2026 14:03 UTC";
    QTest::newRow("12-hour clock in UTC")
        << QVariantMap{{"timeZone", 0}, {"timeFormat", 1}} << "11/05/2026 2:03 pm UTC";
    QTest::newRow("day first in UTC")
        << QVariantMap{{"timeZone", 0}, {"formatMMDD", 1}} << "05/11/2026 14:03 UTC";
    QTest::newRow("local time has the local zone name")
        << QVariantMap{{"timeZone", 1}} << "11/05/2026 06:03 PST";
}

void TestUtil::formatDateTimeLong()
{
    QFETCH(QVariantMap, settings);
    QFETCH(QString, expected);

    applySettings(settings);
    QCOMPARE(Util::formatDateTimeLong(exampleMoment()), expected);
}

void TestUtil::formatDateIso_data()
{
    Columns::add<int, QString>("timeZone", "expected");

    QTest::newRow("UTC ends in Z") << 0 << "2026-11-05T14:03:22Z";
    QTest::newRow("local time shows the local clock and no zone") << 1 << "2026-11-05T06:03:22";
}

void TestUtil::formatDateIso()
{
    QFETCH(int, timeZone);
    QFETCH(QString, expected);

    back->setSetting(QStringLiteral("timeZone"), timeZone);
    QCOMPARE(Util::formatDateIso(exampleMoment()), expected);
}

void TestUtil::formatDateBaro_data()
{
    Columns::add<QString, QVariantMap, QDateTime, QString>("language", "settings", "moment", "expected");

    const QDateTime morning(QDate(2026, 11, 5), QTime(9, 5, 7), Qt::UTC);
    QTest::newRow("day first 24-hour clock")
        << "en" << QVariantMap{{"timeZone", 0}, {"formatMMDD", 0}, {"timeFormat", 0}} << exampleMoment()
        << "14:03:22 (UTC) 05 Nov 2026";
    QTest::newRow("month first 24-hour clock")
        << "en" << QVariantMap{{"timeZone", 0}, {"formatMMDD", 1}, {"timeFormat", 0}} << exampleMoment()
        << "14:03:22 (UTC) Nov 05, 2026";
    QTest::newRow("day first 12-hour clock")
        << "en" << QVariantMap{{"timeZone", 0}, {"formatMMDD", 0}, {"timeFormat", 1}} << exampleMoment()
        << "2:03:22 pm (UTC) 05 Nov 2026";
    QTest::newRow("month first 12-hour clock")
        << "en" << QVariantMap{{"timeZone", 0}, {"formatMMDD", 1}, {"timeFormat", 1}} << exampleMoment()
        << "2:03:22 pm (UTC) Nov 05, 2026";
    QTest::newRow("eight hours behind UTC shows the offset")
        << "en" << QVariantMap{{"timeZone", 1}} << exampleMoment() << "06:03:22 (UTC-08:00) 05 Nov 2026";
    QTest::newRow("time zone 2 behaves as 1")
        << "en" << QVariantMap{{"timeZone", 2}} << exampleMoment() << "06:03:22 (UTC-08:00) 05 Nov 2026";
    QTest::newRow("24-hour clock pads the hour")
        << "en" << QVariantMap{{"timeZone", 0}} << morning << "09:05:07 (UTC) 05 Nov 2026";
    QTest::newRow("12-hour clock does not pad the hour")
        << "en" << QVariantMap{{"timeZone", 0}, {"timeFormat", 1}} << morning << "9:05:07 am (UTC) 05 Nov 2026";
    QTest::newRow("the first of the month shows two digits")
        << "en" << QVariantMap{{"timeZone", 0}} << QDateTime(QDate(2026, 11, 1), QTime(14, 3, 22), Qt::UTC)
        << "14:03:22 (UTC) 01 Nov 2026";
    QTest::newRow("time format 0 read as text is the 24-hour clock")
        << "en" << QVariantMap{{"timeZone", 0}, {"timeFormat", "0"}} << exampleMoment()
        << "14:03:22 (UTC) 05 Nov 2026";
    // Compared as a variant, not as a number: a text that is no number is not 0.
    QTest::newRow("time format that is no number is the 12-hour clock")
        << "en" << QVariantMap{{"timeZone", 0}, {"timeFormat", "x"}} << exampleMoment()
        << "2:03:22 pm (UTC) 05 Nov 2026";
    QTest::newRow("any other time format is the 12-hour clock")
        << "en" << QVariantMap{{"timeZone", 0}, {"timeFormat", 2}} << exampleMoment()
        << "2:03:22 pm (UTC) 05 Nov 2026";
    QTest::newRow("french month has its full stop")
        << "fr" << QVariantMap{{"timeZone", 0}} << exampleMoment() << "14:03:22 (UTC) 05 nov. 2026";
    QTest::newRow("french month first")
        << "fr" << QVariantMap{{"timeZone", 0}, {"formatMMDD", 1}} << exampleMoment()
        << "14:03:22 (UTC) nov. 05, 2026";
}

void TestUtil::formatDateBaro()
{
    QFETCH(QString, language);
    QFETCH(QVariantMap, settings);
    QFETCH(QDateTime, moment);
    QFETCH(QString, expected);

    useLanguage(language);
    applySettings(settings);
    QCOMPARE(Util::formatDateBaro(moment), expected);
    QCOMPARE(Util::formatDateTimeSecs(moment), expected);
}

// ---- Pressures and speeds -------------------------------------------------------------

void TestUtil::formatSpeed_data()
{
    Columns::add<QString, QVariant, double, QString>("language", "unitSpeed", "speed", "expected");

    const double fiveKnots = 5.0 * 1.852 / 3.6;
    QTest::newRow("knots") << "en" << QVariant(0) << fiveKnots << "5.0 kts";
    QTest::newRow("absent unit is knots") << "en" << QVariant() << fiveKnots << "5.0 kts";
    QTest::newRow("kilometres per hour") << "en" << QVariant(1) << 10.0 << "36.0 km/h";
    QTest::newRow("miles per hour") << "en" << QVariant(2) << 10.0 << "22.4 mph";
    QTest::newRow("unit 3 gives the empty string") << "en" << QVariant(3) << 10.0 << "";
    QTest::newRow("speed zero keeps the blank before the label") << "en" << QVariant(0) << 0.0 << "0.0 kts";
    QTest::newRow("french knots take a comma") << "fr" << QVariant(0) << fiveKnots << "5,0 nds";
    QTest::newRow("french kilometres per hour take a comma") << "fr" << QVariant(1) << 10.0 << "36,0 km/h";
    QTest::newRow("french miles per hour take a comma") << "fr" << QVariant(2) << 10.0 << "22,4 mi/h";
}

void TestUtil::formatSpeed()
{
    QFETCH(QString, language);
    QFETCH(QVariant, unitSpeed);
    QFETCH(double, speed);
    QFETCH(QString, expected);

    useLanguage(language);
    if (unitSpeed.isValid())
        back->setSetting(QStringLiteral("unitSpeed"), unitSpeed);
    QCOMPARE(Util::formatSpeed(speed), expected);
}

void TestUtil::formatPressure_data()
{
    Columns::add<QString, QVariantMap, bool, QString>("language", "settings", "withUnit", "expected");

    const auto unit = [](int unitPre, int precision = 1) {
        return QVariantMap{{"unitPre", unitPre}, {"precision", precision}};
    };
    QTest::newRow("1013.27 in mb") << "en" << unit(0) << true << "1013.3 mb";
    QTest::newRow("1013.27 in hPa") << "en" << unit(1) << true << "1013.3 hPa";
    QTest::newRow("1013.27 in kPa") << "en" << unit(2) << true << "101.3 kPa";
    QTest::newRow("1013.27 in inHg") << "en" << unit(3) << true << "29.92 inHg";
    QTest::newRow("1013.27 in mmHg") << "en" << unit(4) << true << "760.0 mmHg";
    QTest::newRow("absent settings give mb with one decimal") << "en" << QVariantMap() << true << "1013.3 mb";
    QTest::newRow("unknown unit gives the bare hPa number") << "en" << unit(9) << true << "1013.3";

    QTest::newRow("mb without unit") << "en" << unit(0) << false << "1013.3";
    QTest::newRow("hPa without unit") << "en" << unit(1) << false << "1013.3";
    QTest::newRow("kPa without unit is still converted") << "en" << unit(2) << false << "101.3";
    QTest::newRow("inHg without unit is still converted") << "en" << unit(3) << false << "29.92";
    QTest::newRow("mmHg without unit is still converted") << "en" << unit(4) << false << "760.0";

    QTest::newRow("precision 0 in inHg gives one decimal") << "en" << unit(3, 0) << true << "29.9 inHg";
    QTest::newRow("precision 0 in mb gives none") << "en" << unit(0, 0) << true << "1013 mb";
    QTest::newRow("precision 2 in hPa") << "en" << unit(1, 2) << true << "1013.27 hPa";

    QTest::newRow("french mb keeps the full stop") << "fr" << unit(0) << true << "1013.3 mb";
    QTest::newRow("french inHg keeps the full stop") << "fr" << unit(3) << true << "29.92 inHg";
}

void TestUtil::formatPressure()
{
    QFETCH(QString, language);
    QFETCH(QVariantMap, settings);
    QFETCH(bool, withUnit);
    QFETCH(QString, expected);

    useLanguage(language);
    applySettings(settings);
    QCOMPARE(Util::formatPressure(1013.27, withUnit), expected);
}

// ---- Settings are read at each call ---------------------------------------------------

void TestUtil::settingChangeShowsAtNextCall()
{
    back->setSetting(QStringLiteral("locFormat"), 2);
    QCOMPARE(Util::formatLatitude(47.6062), QStringLiteral("47.6062°N"));
    back->setSetting(QStringLiteral("locFormat"), 0);
    QCOMPARE(Util::formatLatitude(47.6062), QStringLiteral(" 47°36'22\"N"));

    back->setSetting(QStringLiteral("unitPre"), 2);
    QCOMPARE(Util::formatPressure(1013.27, true), QStringLiteral("101.3 kPa"));
    back->setSetting(QStringLiteral("unitPre"), 4);
    QCOMPARE(Util::formatPressure(1013.27, true), QStringLiteral("760.0 mmHg"));
}

void TestUtil::defaultsWithoutBackend()
{
    // Settings that would change every text below, so that only the defaults can pass.
    applySettings({{"locFormat", 2}, {"unitPre", 3}, {"unitSpeed", 1}, {"timeZone", 0},
                   {"timeFormat", 1}, {"formatMMDD", 1}, {"precision", 2}});
    BackEnd* saved = backend;
    backend = nullptr;
    const QString latitude = Util::formatLatitude(47.6062);
    const QString pressure = Util::formatPressure(1013.27, true);
    const QString speed = Util::formatSpeed(0.0);
    const QString baro = Util::formatDateBaro(exampleMoment());
    const QString dateTime = Util::formatDateTimeLong(exampleMoment());
    const QString format = Util::convertDateFormat(QStringLiteral("dd/MM/yyyy"));
    backend = saved;

    QCOMPARE(latitude, QStringLiteral(" 47°36.37'N"));
    QCOMPARE(pressure, QStringLiteral("1013.3 mb"));
    QCOMPARE(speed, QStringLiteral("0.0 kts"));
    QCOMPARE(baro, QStringLiteral("06:03:22 (UTC-08:00) 05 Nov 2026"));
    QCOMPARE(dateTime, QStringLiteral("11/05/2026 06:03 PST"));
    QCOMPARE(format, QStringLiteral("MM/dd/yyyy"));
}

// ---- Folder copy ----------------------------------------------------------------------

void TestUtil::copyDirSameFolder()
{
    QTemporaryDir dir;
    QVERIFY(writeFile(dir.filePath(QStringLiteral("a.txt")), "a"));
    MessageLog log;
    QVERIFY(!Util::copyDir(dir.path(), dir.path(), false));
    QVERIFY(!Util::copyDir(dir.path(), dir.path(), true));
    QVERIFY2(log.messages().isEmpty(), qPrintable(log.messages().join(QLatin1Char('|'))));
    QCOMPARE(readFile(dir.filePath(QStringLiteral("a.txt"))), QByteArray("a"));
}

void TestUtil::copyDirMissingSource()
{
    QTemporaryDir destination;
    MessageLog log;
    QVERIFY(!Util::copyDir(destination.filePath(QStringLiteral("absent")), destination.path(), false));
    QVERIFY(log.messages().isEmpty());
}

void TestUtil::copyDirMissingDestination()
{
    QTemporaryDir source;
    QVERIFY(writeFile(source.filePath(QStringLiteral("a.txt")), "a"));
    QTemporaryDir parent;
    const QString destination = parent.filePath(QStringLiteral("absent"));
    MessageLog log;
    QVERIFY(!Util::copyDir(source.path(), destination, false));
    QCOMPARE(log.messages(), QStringList{QStringLiteral("invalid destination directory")});
    QVERIFY(!QDir(destination).exists());
}

void TestUtil::copyDirCreatesSubfolders()
{
    QTemporaryDir source;
    QVERIFY(QDir(source.path()).mkpath(QStringLiteral("sub/deeper")));
    QVERIFY(writeFile(source.filePath(QStringLiteral("top.txt")), "top"));
    QVERIFY(writeFile(source.filePath(QStringLiteral("sub/a.txt")), "a"));
    QVERIFY(writeFile(source.filePath(QStringLiteral("sub/deeper/b.txt")), "b"));
    QTemporaryDir destination;

    MessageLog log;
    QVERIFY(Util::copyDir(source.path(), destination.path(), false));
    QVERIFY(log.messages().isEmpty());
    QCOMPARE(readFile(destination.filePath(QStringLiteral("top.txt"))), QByteArray("top"));
    QCOMPARE(readFile(destination.filePath(QStringLiteral("sub/a.txt"))), QByteArray("a"));
    QCOMPARE(readFile(destination.filePath(QStringLiteral("sub/deeper/b.txt"))), QByteArray("b"));
    // A copy leaves the source whole.
    QCOMPARE(readFile(source.filePath(QStringLiteral("sub/deeper/b.txt"))), QByteArray("b"));
}

void TestUtil::copyDirKeepsExistingTarget()
{
    QTemporaryDir source;
    QVERIFY(writeFile(source.filePath(QStringLiteral("a.txt")), "new"));
    QVERIFY(writeFile(source.filePath(QStringLiteral("b.txt")), "b"));
    QTemporaryDir destination;
    QVERIFY(writeFile(destination.filePath(QStringLiteral("a.txt")), "old"));

    QVERIFY(Util::copyDir(source.path(), destination.path(), false));
    QCOMPARE(readFile(destination.filePath(QStringLiteral("a.txt"))), QByteArray("old"));
    QCOMPARE(readFile(destination.filePath(QStringLiteral("b.txt"))), QByteArray("b"));
    QCOMPARE(readFile(source.filePath(QStringLiteral("a.txt"))), QByteArray("new"));
}

void TestUtil::copyDirMoveReplacesTarget()
{
    QTemporaryDir source;
    QVERIFY(QDir(source.path()).mkpath(QStringLiteral("sub")));
    QVERIFY(writeFile(source.filePath(QStringLiteral("a.txt")), "new"));
    QVERIFY(writeFile(source.filePath(QStringLiteral("sub/c.txt")), "c"));
    QTemporaryDir destination;
    QVERIFY(writeFile(destination.filePath(QStringLiteral("a.txt")), "old"));

    QVERIFY(Util::copyDir(source.path(), destination.path(), true));
    QCOMPARE(readFile(destination.filePath(QStringLiteral("a.txt"))), QByteArray("new"));
    QCOMPARE(readFile(destination.filePath(QStringLiteral("sub/c.txt"))), QByteArray("c"));
    QVERIFY(!QFile::exists(source.filePath(QStringLiteral("a.txt"))));
    QVERIFY(!QFile::exists(source.filePath(QStringLiteral("sub/c.txt"))));
    // The source folders stay behind, emptied of files.
    QVERIFY(QDir(source.filePath(QStringLiteral("sub"))).exists());
}

QTEST_MAIN(TestUtil)
#include "tst_util.moc"
