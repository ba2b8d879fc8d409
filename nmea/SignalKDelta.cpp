// SPDX-License-Identifier: GPL-3.0-or-later
#include "nmea/SignalKDelta.h"

#include "nmea/NmeaSourceType.h"
#include "util/ShownState.h"

#include <QtCore/QDateTime>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>

#include <cmath>

const QString SignalKDelta::Source = QStringLiteral("brinholt");
const QString SignalKDelta::PressurePath = QStringLiteral("environment.outside.pressure");
const QString SignalKDelta::ThreeHoursDeltaPath = QStringLiteral("environment.outside.pressure.threeHoursDelta");
const QString SignalKDelta::OneHourDeltaPath = QStringLiteral("environment.outside.pressure.oneHourDelta");
const QString SignalKDelta::TendencyPath = QStringLiteral("environment.outside.pressure.trend.tendency");
const QString SignalKDelta::TrendClassPath = QStringLiteral("environment.outside.pressure.trend.oneHourClass");
const QString SignalKDelta::WordsPath = QStringLiteral("environment.outside.pressure.trend.words");
const QString SignalKDelta::CharacteristicPath = QStringLiteral("environment.outside.pressure.trend.characteristic");
const QString SignalKDelta::NotificationPath = QStringLiteral("notifications.environment.outside.pressure");

namespace {

constexpr int NoTrend = -10;

QString timestamp(qint64 ms)
{
    return QDateTime::fromMSecsSinceEpoch(ms, Qt::UTC).toString(Qt::ISODateWithMs);
}

// hPa to Pa, kept to a tenth of a pascal so that the text holds no binary noise.
double pascals(double hPa)
{
    return std::round(hPa * 1000.0) / 10.0;
}

QJsonObject update(qint64 ms, const QString& kind, const QJsonArray& entries)
{
    return QJsonObject{{QStringLiteral("$source"), SignalKDelta::Source},
                       {QStringLiteral("timestamp"), timestamp(ms)},
                       {kind, entries}};
}

QJsonObject entry(const QString& path, const QJsonValue& value)
{
    return QJsonObject{{QStringLiteral("path"), path}, {QStringLiteral("value"), value}};
}

QByteArray message(const QJsonArray& updates)
{
    return QJsonDocument(QJsonObject{{QStringLiteral("updates"), updates}}).toJson(QJsonDocument::Compact);
}

QJsonObject scale(double lower, double upper)
{
    return QJsonObject{{QStringLiteral("lower"), lower}, {QStringLiteral("upper"), upper},
                       {QStringLiteral("type"), QStringLiteral("linear")}};
}

// The meta of a change over `span`, in pascals, newest minus older.
QJsonObject change(const QString& span, const QString& shortSpan, double scaleTop)
{
    return QJsonObject{
            {QStringLiteral("units"), QStringLiteral("Pa")},
            {QStringLiteral("description"), QStringLiteral("Pressure change over the last %1, newest minus %1 ago").arg(span)},
            {QStringLiteral("displayName"), QStringLiteral("Pressure change in %1").arg(shortSpan)},
            {QStringLiteral("shortName"), shortSpan},
            {QStringLiteral("displayScale"), scale(-scaleTop, scaleTop)}};
}

} // namespace

QByteArray SignalKDelta::meta(qint64 nowMs)
{
    // In English, as the server's own descriptions are: the meta goes once per connection,
    // and the language may change after.
    const QJsonObject pressure{
            {QStringLiteral("units"), QStringLiteral("Pa")},
            {QStringLiteral("description"),
             QStringLiteral("Current outside air ambient pressure at the barometer (station pressure), with the "
                            "calibration offset and without reduction to sea level")},
            {QStringLiteral("displayName"), QStringLiteral("Barometer")},
            {QStringLiteral("shortName"), QStringLiteral("Baro")},
            {QStringLiteral("displayScale"), scale(95000.0, 105000.0)},
            // A reading is used for a minute at most.
            {QStringLiteral("timeout"), 60}};
    const QJsonObject threeHours = change(QStringLiteral("three hours"), QStringLiteral("3 h"), 1000.0);
    const QJsonObject oneHour = change(QStringLiteral("one hour"), QStringLiteral("1 h"), 500.0);
    const QJsonObject tendency{
            {QStringLiteral("description"), QStringLiteral("Direction of the pressure over the last three hours")},
            {QStringLiteral("displayName"), QStringLiteral("Pressure tendency")},
            {QStringLiteral("shortName"), QStringLiteral("Tendency")},
            {QStringLiteral("enum"), QJsonArray{QStringLiteral("RISING"), QStringLiteral("FALLING")}}};
    const QJsonObject trendClass{
            {QStringLiteral("description"),
             QStringLiteral("Trend of the last hour, scaled to three hours: 1 steady, 2 rising (1 hPa or more), 3 "
                            "rising fast (2 hPa or more), 4 rising very fast (3 hPa or more); negative when falling")},
            {QStringLiteral("displayName"), QStringLiteral("Pressure trend")},
            {QStringLiteral("shortName"), QStringLiteral("Trend")},
            {QStringLiteral("enum"), QJsonArray{-4, -3, -2, -1, 1, 2, 3, 4}}};
    const QJsonObject words{
            {QStringLiteral("description"),
             QStringLiteral("The three-hour tendency in the marine forecast's words with the change, in the "
                            "language and unit shown by Brinholt")},
            {QStringLiteral("displayName"), QStringLiteral("Barometer tendency")},
            {QStringLiteral("shortName"), QStringLiteral("Tendency")}};
    const QJsonObject characteristic{
            {QStringLiteral("description"),
             QStringLiteral("WMO pressure characteristic (code table 0200) of the last three hours")},
            {QStringLiteral("displayName"), QStringLiteral("Pressure characteristic")},
            {QStringLiteral("shortName"), QStringLiteral("Char.")},
            {QStringLiteral("enum"), QJsonArray{0, 1, 2, 3, 4, 5, 6, 7, 8}}};
    const QJsonArray entries{entry(PressurePath, pressure),     entry(ThreeHoursDeltaPath, threeHours),
                             entry(OneHourDeltaPath, oneHour),   entry(TendencyPath, tendency),
                             entry(TrendClassPath, trendClass), entry(WordsPath, words),
                             entry(CharacteristicPath, characteristic)};
    return message(QJsonArray{update(nowMs, QStringLiteral("meta"), entries)});
}

QByteArray SignalKDelta::next(const ShownState& state)
{
    const bool usable = std::isfinite(state.rawPressure);
    // The device and the sensor alone: a network reading may be the server's own.
    const bool own = usable && (state.source == Serial || state.source == Internal)
            && std::isfinite(state.stationPressureHpa);
    const bool hasChange3h = usable && std::isfinite(state.change3h);
    const bool hasChange1h = usable && std::isfinite(state.change1h);

    QJsonArray values;
    auto put = [&](const QString& path, bool known, const QJsonValue& value) {
        if (!known && !told.remove(path))
            return;
        if (known)
            told.insert(path);
        values.append(entry(path, known ? value : QJsonValue()));
    };
    put(PressurePath, own, pascals(state.stationPressureHpa));
    put(ThreeHoursDeltaPath, hasChange3h, pascals(state.change3h));
    put(OneHourDeltaPath, hasChange1h, pascals(state.change1h));
    put(TendencyPath, hasChange3h, state.change3h >= 0.0 ? QStringLiteral("RISING") : QStringLiteral("FALLING"));
    put(TrendClassPath, usable && state.trend != NoTrend, state.trend);
    put(WordsPath, usable && !state.tendencyWords.isEmpty(), state.tendencyWords);
    put(CharacteristicPath, usable && state.characteristic >= 0, state.characteristic);
    ownPressure = own;

    QJsonArray updates;
    if (!values.isEmpty())
        updates.append(update(usable && state.readingTime > 0 ? state.readingTime : state.tickTime,
                              QStringLiteral("values"), values));

    const int level = state.warningLevel;
    if (level > 0 || lastLevel > 0) {
        QJsonArray method;
        if (level > 0)
            method.append(QStringLiteral("visual"));
        // An acknowledged alarm stays in sight but no longer sounds.
        if (level == 2 && !state.warningAcknowledged)
            method.append(QStringLiteral("sound"));
        QString text = tr("The pressure-fall warning has ended");
        if (level > 0)
            text = state.warningDetail.isEmpty() ? state.warningText
                                                 : state.warningText + QStringLiteral(". ") + state.warningDetail;
        const QString stateName = level == 2 ? QStringLiteral("alarm")
                                             : level == 1 ? QStringLiteral("warn") : QStringLiteral("normal");
        const QJsonObject notification{{QStringLiteral("state"), stateName},
                                       {QStringLiteral("method"), method},
                                       {QStringLiteral("message"), text}};
        updates.append(update(state.tickTime, QStringLiteral("values"), QJsonArray{entry(NotificationPath, notification)}));
    }
    lastLevel = level;

    if (updates.isEmpty())
        return QByteArray();
    return message(updates);
}
