// SPDX-License-Identifier: GPL-3.0-or-later
#include "log/CsvExport.h"

#include "log/DataSource.h"
#include "log/LogHost.h"
#include "util/Pressure.h"
#include "util/SettingKeys.h"
#include "util/Util.h"

#include <QtCore/QDateTime>
#include <QtCore/QSettings>
#include <QtSql/QSqlQuery>

namespace {
constexpr double FeetPerMetre = 3.280833333333333;
}

CsvExport::CsvExport(QIODevice* device)
{
    QSettings* settings = LogHost::installed()->getSettings();
    language = settings->value(SettingKey::Language, SettingDefault::Language).toInt();
    // Defaults to UTC here, unlike the date routine that formats the rows; the header may
    // therefore name another zone than the rows carry.
    timeZone = settings->value(SettingKey::TimeZone, SettingDefault::TimeZoneAtExport).toInt();
    unitEle = settings->value(SettingKey::UnitEle, SettingDefault::UnitEle).toInt();
    pressureUnit = QString::fromLatin1(
            Pressure::unitName(settings->value(SettingKey::UnitPre, SettingDefault::UnitPre).toInt()));

    stream.setDevice(device);
    stream.setCodec("ISO 8859-1");
}

void CsvExport::writeHeader()
{
    const QString zone = timeZone == 0 ? QStringLiteral("UTC") : tr("Device");
    const QString elevationUnit = unitEle == 1 ? tr("ft") : tr("m");
    QString header = tr("Date (%1);Latitude;Longitude;Station pressure (%3);Sea Level Pressure (%3);"
                        "Offset (%3);Elevation (%2);COG(T);SOG(kts)")
                             .arg(zone, 0, QLatin1Char(' '))
                             .arg(elevationUnit, 0, QLatin1Char(' '))
                             .arg(pressureUnit, 0, QLatin1Char(' '));
    if (language != 1)
        header.replace(QLatin1Char(';'), QLatin1Char(','));
    stream << header << Qt::endl;
}

void CsvExport::writeRow(const QSqlQuery& row)
{
    const qint64 time = row.value(0).toLongLong();
    const double lon = row.value(1).toDouble();
    const double lat = row.value(2).toDouble();
    const double cog = row.value(3).toDouble();
    const double sog = row.value(4).toDouble();
    const double pre = row.value(5).toDouble();
    const double ele = row.value(6).toDouble();
    const double ofs = row.value(7).toDouble();

    const double station = pre + ofs;
    // Both levels always stand in the file, whatever the display shows; elevation in metres.
    const double seaLevel = DataSource::seaLevelPressure(station, ele);
    const double elevation = unitEle == 1 ? ele * FeetPerMetre : ele;

    const QString date = Util::formatDateTimeSecs(QDateTime::fromSecsSinceEpoch(time).toUTC())
                                 .replace(QLatin1Char(','), QLatin1Char(' '));
    const QStringList fields = {
        date,
        QStringLiteral("%1").arg(lat, 0, 'f', 5, QLatin1Char(' ')),
        QStringLiteral("%1").arg(lon, 0, 'f', 5, QLatin1Char(' ')),
        Util::formatPressure(station, false),
        Util::formatPressure(seaLevel, false),
        Util::formatPressure(ofs, false),
        QStringLiteral("%1").arg(elevation, 0, 'f', 2, QLatin1Char(' ')),
        Util::formatDir3(qRound(cog)),
        // Knots, whatever the speed unit of the display.
        QStringLiteral("%1").arg(sog, 0, 'f', 1, QLatin1Char(' ')),
    };
    stream << localised(fields.join(QLatin1Char(';'))) << Qt::endl;
}

QString CsvExport::localised(QString line) const
{
    if (language == 1)
        return line.replace(QLatin1Char('.'), QLatin1Char(','));
    return line.replace(QLatin1Char(';'), QLatin1Char(','));
}
