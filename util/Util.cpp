// SPDX-License-Identifier: GPL-3.0-or-later
#include "util/Util.h"

#include "util/DataFolder.h"
#include "util/SettingKeys.h"
#include "util/SettingsReader.h"
#include "util/Truncation.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QDebug>
#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QList>
#include <QtCore/QLocale>
#include <QtCore/QPair>
#include <QtCore/QSettings>
#include <QtCore/QStringList>
#include <QtCore/QtGlobal>

#include <cmath>
#include <limits>

namespace {

#ifdef Q_OS_MACOS
constexpr int BundleLevels = 3;
#else
constexpr int BundleLevels = 0;
#endif

// The formatting routines keep their own copy of the factors on purpose, apart from the
// shared ones in util/Pressure.h: a change there must not move the texts shown here.
constexpr double InHgPerHpa = 0.029529983071445;
constexpr double MmHgPerHpa = 0.75006157584566;

QVariant setting(const QString& key, const QVariant& def)
{
    return SettingsReader::read(key, def);
}

int intSetting(const QString& key, int def)
{
    return setting(key, def).toInt();
}

// Replaces `prefix` at the head of `format` by `replacement`, keeping the rest.
bool replacePrefix(QString& format, const QString& prefix, const QString& replacement)
{
    if (!format.startsWith(prefix))
        return false;
    format.replace(0, prefix.size(), replacement);
    return true;
}

} // namespace

QString Util::currentPath()
{
    const QString path = QCoreApplication::applicationDirPath();
    qWarning().noquote() << "applicationDirPath" << path;
    if (DataFolder::isInstalled(path))
        return DataFolder::userFolder();
    return ascend(path, BundleLevels);
}

QString Util::ascend(const QString& path, int levels)
{
    QDir dir(path);
    for (int i = 0; i < levels; ++i)
        dir.cdUp(); // at the root this fails and the root stays, which is what we want
    return dir.absolutePath();
}

QString Util::formatPosition(const double& longitude, const double& latitude)
{
    return formatLatitude(latitude) + QStringLiteral(" ") + formatLongitude(longitude);
}

QString Util::formatLatitude(const double& latitude)
{
    if (latitude > 0.0)
        return formatDegres(latitude) + QStringLiteral("N");
    // Zero is south: the equator prints as 0 S, handed on as negative zero.
    return formatDegres(-latitude) + QStringLiteral("S");
}

QString Util::formatLongitude(const double& longitude)
{
    double value = longitude;
    if (value > 0.0) {
        while (value > 360.0)
            value += -360.0;
        if (180.0 >= value)
            return formatDegres(value) + QStringLiteral("E");
        return formatDegres(360.0 - value) + QStringLiteral("W");
    }
    // Zero is west, like the equator is south.
    while (-360.0 > value)
        value += 360.0;
    if (value >= -180.0)
        return formatDegres(-value) + QStringLiteral("W");
    return formatDegres(value + 360.0) + QStringLiteral("E");
}

QString Util::formatDegres(const double& value)
{
    const int locFormat = intSetting(SettingKey::LocFormat, SettingDefault::LocFormat);
    QString text;
    if (locFormat == 0) {
        // Truncated at every step: 10.99999 stays 10 degrees 59 minutes 59 seconds.
        const qint32 seconds = Truncation::towardZero<qint32>(std::fabs(value * 3600.0));
        text = QStringLiteral("%1%2deg%3'%4\"")
                   .arg(0.0 > value ? QStringLiteral("-") : QStringLiteral(" "), 0)
                   .arg(seconds / 3600, 2, 10, QLatin1Char('0'))
                   .arg((seconds / 60) % 60, 2, 10, QLatin1Char('0'))
                   .arg(seconds % 60, 2, 10, QLatin1Char('0'));
    } else if (locFormat == 1) {
        const double magnitude = std::fabs(value);
        double degrees = 0.0;
        const double fraction = std::modf(magnitude, &degrees);
        // No carry into the degrees: minutes that round up to 60 print as 60.00.
        text = QStringLiteral("%L1%L2deg%L3'")
                   .arg(-value > value ? QLatin1Char('-') : QLatin1Char(' '), 0, QLatin1Char(' '))
                   .arg(Truncation::towardZero<qlonglong>(degrees), 2, 10, QLatin1Char('0'))
                   .arg(fraction * 60.0, 5, 'f', 2, QLatin1Char('0'));
    } else {
        text = QStringLiteral("%L1deg").arg(value, 0, 'f', 4, QLatin1Char(' '));
    }
    // The degree sign comes from the catalogues alone.
    return text.replace(QStringLiteral("deg"), QObject::tr("deg"), Qt::CaseSensitive);
}

QString Util::formatDir3(const int& value)
{
    return QStringLiteral("%1").arg(value, 3, 10, QLatin1Char('0'));
}

QString Util::formatDir3(const double& value, const int& decimals)
{
    if (decimals != 0)
        return QStringLiteral("%L1")
            .arg(value, 0, 'f', decimals, QLatin1Char(' '))
            .rightJustified(decimals + 4, QLatin1Char('0'), false);
    return formatDir3(qRound(value));
}

QDateTime Util::convertDateTime(const QDateTime& dateTime)
{
    const int timeZone = intSetting(SettingKey::TimeZone, SettingDefault::TimeZone);
    return dateTime.toTimeSpec(timeZone == 0 ? Qt::UTC : Qt::LocalTime);
}

QString Util::convertDateFormat(const QString& format)
{
    const int formatMMDD = intSetting(SettingKey::FormatMMDD, SettingDefault::FormatMMDD);
    if (format == QLatin1String("dddd MMMM d yyyy"))
        return formatMMDD == 1 ? QStringLiteral("dddd d MMMM yyyy") : format;

    // Backwards on purpose: 1 moves the day to the front here, while formatDateBaro and the
    // settings page take 1 as month first. The longer prefixes must be tried first.
    static const QList<QPair<QString, QString>> dayFirst = {
        {QStringLiteral("MM/dd"), QStringLiteral("dd/MM")},
        {QStringLiteral("M/dd"), QStringLiteral("dd/M")},
        {QStringLiteral("M/d"), QStringLiteral("d/M")},
    };
    static const QList<QPair<QString, QString>> monthFirst = {
        {QStringLiteral("dd MMM"), QStringLiteral("MMM dd")},
        {QStringLiteral("dd MM"), QStringLiteral("MM dd")},
        {QStringLiteral("dd/MMM"), QStringLiteral("MMM/dd")},
        {QStringLiteral("dd/MM"), QStringLiteral("MM/dd")},
        {QStringLiteral("d/M"), QStringLiteral("M/d")},
    };

    QString result = format;
    for (const auto& rule : formatMMDD == 1 ? dayFirst : monthFirst) {
        if (replacePrefix(result, rule.first, rule.second))
            break;
    }
    return result;
}

QString Util::formatDateLong(const QDateTime& dateTime)
{
    const QDate date = convertDateTime(dateTime).date();
    return date.toString(convertDateFormat(QStringLiteral("dd/MM/yyyy")));
}

QString Util::formatDateTimeLong(const QDateTime& dateTime)
{
    const int timeFormat = intSetting(SettingKey::TimeFormat, SettingDefault::TimeFormat);
    const QDateTime local = convertDateTime(dateTime);
    // The closing blank of the date format parts the date from the time.
    const QString datePart = local.date().toString(convertDateFormat(QStringLiteral("dd/MM/yyyy ")));
    const QString timePart =
        local.toString(timeFormat == 0 ? QStringLiteral("HH:mm t") : QStringLiteral("h:mm ap t"));
    return datePart + timePart;
}

QString Util::formatDateIso(const QDateTime& dateTime)
{
    return convertDateTime(dateTime).toString(Qt::ISODate);
}

QString Util::formatDateBaro(const QDateTime& dateTime)
{
    const QDateTime local = convertDateTime(dateTime);
    // Through a fixed offset the zone reads "UTC" or "UTC+01:00", never a zone's abbreviation.
    const QString zone = local.toOffsetFromUtc(local.offsetFromUtc()).toString(QStringLiteral("t"));

    // Here 1 means month first, as the settings page labels it.
    const bool monthFirst = intSetting(SettingKey::FormatMMDD, SettingDefault::FormatMMDD) == 1;
    const bool clock24 = setting(SettingKey::TimeFormat, SettingDefault::TimeFormat) == QVariant(0);
    QString format;
    if (monthFirst)
        format = clock24 ? QStringLiteral("hh:mm:ss (%1) %2 dd, yyyy")
                         : QStringLiteral("h:mm:ss ap (%1) %2 dd, yyyy");
    else
        format = clock24 ? QStringLiteral("hh:mm:ss (%1) dd %2 yyyy")
                         : QStringLiteral("h:mm:ss ap (%1) dd %2 yyyy");

    // The month comes from the default locale, which follows the chosen language.
    return local.toString(format)
        .arg(zone, 0, QLatin1Char(' '))
        .arg(QLocale().monthName(local.date().month(), QLocale::ShortFormat));
}

QString Util::formatDateTimeSecs(const QDateTime& dateTime)
{
    return formatDateBaro(dateTime);
}

QString Util::formatSpeed(const double& speed)
{
    double value = 0.0;
    QString label;
    switch (intSetting(SettingKey::UnitSpeed, SettingDefault::UnitSpeed)) {
    case 0:
        value = speed * 3.6 / 1.852;
        label = QObject::tr("kts");
        break;
    case 1:
        value = speed * 3.6;
        label = QObject::tr("km/h");
        break;
    case 2:
        value = speed * 2.23694;
        label = QObject::tr("mph");
        break;
    default:
        return QString();
    }
    return QStringLiteral("%L1 ").arg(value, 0, 'f', 1, QLatin1Char(' ')) + label;
}

QString Util::formatPressure(const double& pressure, const bool& withUnit)
{
    const int precision = intSetting(SettingKey::Precision, SettingDefault::Precision);
    const int unitPre = intSetting(SettingKey::UnitPre, SettingDefault::UnitPre);

    QString label;
    double value = pressure;
    int decimals = precision;
    switch (unitPre) {
    case 0:
        label = QStringLiteral(" mb");
        break;
    case 1:
        label = QStringLiteral(" hPa");
        break;
    case 2:
        label = QStringLiteral(" kPa");
        value = pressure / 10.0;
        break;
    case 3:
        label = QStringLiteral(" inHg");
        value = pressure * InHgPerHpa;
        decimals = precision + 1;
        break;
    case 4:
        label = QStringLiteral(" mmHg");
        value = pressure * MmHgPerHpa;
        break;
    default:
        break;
    }
    if (!withUnit)
        label.clear();

    // Plain %1, not %L1: a pressure keeps its full stop in every language.
    return QStringLiteral("%1").arg(value, 0, 'f', decimals, QLatin1Char(' ')) + label;
}

bool Util::copyDir(const QString& source, const QString& destination, const bool& move)
{
    QDir sourceDir(source);
    if (!sourceDir.exists())
        return false;
    if (!QDir(destination).exists()) {
        qWarning().noquote() << "invalid destination directory";
        return false;
    }
    if (source == destination)
        return false;

    const QString separator = QDir::separator();
    const QStringList folders = sourceDir.entryList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Unsorted);
    for (const QString& name : folders) {
        const QString destinationPath = destination + separator + name;
        // Made through the source's QDir: a relative destination resolves against the source here.
        sourceDir.mkpath(destinationPath);
        const QString sourcePath = source + separator + name;
        copyDir(sourcePath, destinationPath, move);
    }

    const QStringList files = sourceDir.entryList(QDir::Files, QDir::Unsorted);
    for (const QString& name : files) {
        const QString sourcePath = source + separator + name;
        const QString destinationPath = destination + separator + name;
        if (!move) {
            // QFile::copy never replaces: a file already there is kept.
            QFile::copy(sourcePath, destinationPath);
        } else if (!QFile::rename(sourcePath, destinationPath)) {
            // Moving overwrites.
            QFile::remove(destinationPath);
            QFile::rename(sourcePath, destinationPath);
        }
    }
    return true;
}
