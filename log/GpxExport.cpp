// SPDX-License-Identifier: GPL-3.0-or-later
#include "log/GpxExport.h"

#include <QtCore/QDateTime>
#include <QtSql/QSqlQuery>

#include <cmath>

namespace {
// The quillmere namespace is the maker's mark only; no element uses it.
const QString RootTag = QStringLiteral(
        "<gpx xmlns=\"http://www.topografix.com/GPX/1/1\""
        " xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\""
        " xsi:schemaLocation=\"http://www.topografix.com/GPX/1/1 http://www.topografix.com/GPX/1/1/gpx.xsd\""
        " xmlns:quillmere=\"https://quillmere.com\""
        " version=\"1.1\" creator=\"brinholt\">");
}

GpxExport::GpxExport(QIODevice* device)
{
    stream.setDevice(device);
    stream.setCodec("ISO 8859-1");
}

void GpxExport::writeHead(const QString& trackName)
{
    stream << RootTag << Qt::endl;
    stream << "<trk>" << Qt::endl;
    stream << "<name>" << trackName << "</name>" << Qt::endl;
    stream << "<trkseg>" << Qt::endl;
}

void GpxExport::writeRow(const QSqlQuery& row)
{
    const double lon = row.value(1).toDouble();
    const double lat = row.value(2).toDouble();
    // Rows logged with no fix hold 0, 0; a real position on the equator or the prime
    // meridian goes with them.
    if (std::fabs(lon) <= 1e-12)
        return;
    if (std::fabs(lat) <= 1e-12)
        return;

    const qint64 time = row.value(0).toLongLong();
    const double ele = row.value(6).toDouble();

    stream << "<trkpt lat=\"" << QStringLiteral("%1").arg(lat, 0, 'f', 10, QLatin1Char(' '))
           << "\" lon=\"" << QStringLiteral("%1").arg(lon, 0, 'f', 10, QLatin1Char(' ')) << "\">" << Qt::endl;
    // Metres always: GPX knows no other unit.
    stream << QStringLiteral("<ele>%1</ele>").arg(ele, 0, 'f', 2, QLatin1Char(' ')) << Qt::endl;
    stream << "<time>" << QDateTime::fromSecsSinceEpoch(time).toUTC().toString(Qt::ISODate) << "</time>"
           << Qt::endl;
    stream << "</trkpt>" << Qt::endl;
}

void GpxExport::writeTail()
{
    stream << "</trkseg>" << Qt::endl;
    stream << "</trk>" << Qt::endl;
    stream << "</gpx>" << Qt::endl;
}
