#include "util/Util.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QDebug>
#include <QtCore/QDir>

namespace {
#ifdef Q_OS_MACOS
constexpr int BundleLevels = 3;
#else
constexpr int BundleLevels = 0;
#endif
}

QString Util::currentPath()
{
    const QString path = QCoreApplication::applicationDirPath();
    qWarning().noquote() << "applicationDirPath" << path;
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
    return QString::number(latitude);
}

QString Util::formatLongitude(const double& longitude)
{
    return QString::number(longitude);
}

QString Util::formatDegres(const double& value)
{
    return QString::number(value);
}

QString Util::formatDir3(const int& value)
{
    return QStringLiteral("%1").arg(value, 3, 10, QLatin1Char('0'));
}

QString Util::formatDir3(const double& value, const int& decimals)
{
    return QString::number(value, 'f', decimals);
}

QDateTime Util::convertDateTime(const QDateTime& dateTime)
{
    return dateTime;
}

QString Util::convertDateFormat(const QString& format)
{
    return format;
}

QString Util::formatDateLong(const QDateTime& dateTime)
{
    return dateTime.toString();
}

QString Util::formatDateTimeLong(const QDateTime& dateTime)
{
    return dateTime.toString();
}

QString Util::formatDateIso(const QDateTime& dateTime)
{
    return dateTime.toString(Qt::ISODate);
}

QString Util::formatDateBaro(const QDateTime& dateTime)
{
    return dateTime.toString();
}

QString Util::formatDateTimeSecs(const QDateTime& dateTime)
{
    return formatDateBaro(dateTime);
}

QString Util::formatSpeed(const double& speed)
{
    return QString::number(speed);
}

QString Util::formatPressure(const double& pressure, const bool& withUnit)
{
    return QString::number(pressure, 'f', 2) + (withUnit ? QStringLiteral(" hPa") : QString());
}

bool Util::copyDir(const QString& source, const QString& destination, const bool& move)
{
    Q_UNUSED(source)
    Q_UNUSED(destination)
    Q_UNUSED(move)
    return false;
}
