// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/PositionIntake.h"

#include "app/InternalBroadcast.h"
#include "app/SettingsAccess.h"
#include "util/SettingKeys.h"

#include <QtCore/QDebug>
#include <QtPositioning/QGeoPositionInfo>
#include <QtPositioning/QGeoPositionInfoSource>

#include <utility>

namespace {
// The location service gives metres per second; knots are kept.
double knots(double metresPerSecond)
{
    return metresPerSecond * 3.6 / 1.852;
}
}

PositionIntake::PositionIntake(QObject& owner, const SettingsAccess& settings, InternalBroadcast& broadcast,
                               std::function<void(QGeoPositionInfoSource&)> follow)
    : owner(owner)
    , settings(settings)
    , broadcast(broadcast)
    , follow(std::move(follow))
{
}

void PositionIntake::setPositionData(const QPointF& position, double sog, double cog, int type)
{
    if (type < Internal || type > Udp)
        return;
    SeqLock::WriteGuard guard(fixLock);
    Fix& fix = fixes[type];
    fix.hasFix.store(true, std::memory_order_relaxed);
    fix.longitude.store(position.x(), std::memory_order_relaxed);
    fix.latitude.store(position.y(), std::memory_order_relaxed);
    fix.cog.store(cog, std::memory_order_relaxed);
    fix.sog.store(sog, std::memory_order_relaxed);
}

void PositionIntake::clear(Fix& fix)
{
    fix.hasFix.store(false, std::memory_order_relaxed);
    fix.longitude.store(0.0, std::memory_order_relaxed);
    fix.latitude.store(0.0, std::memory_order_relaxed);
}

void PositionIntake::clearHasFix(int type)
{
    if (type < Internal || type > Udp)
        return;
    SeqLock::WriteGuard guard(fixLock);
    clear(fixes[type]);
}

void PositionIntake::clearAllFix()
{
    SeqLock::WriteGuard guard(fixLock);
    for (Fix& fix : fixes)
        clear(fix);
}

PositionIntake::Chosen PositionIntake::choose() const
{
    Chosen chosen;
    fixLock.read([&] {
        chosen = Chosen();
        for (const Fix& fix : fixes) {
            if (fix.hasFix.load(std::memory_order_relaxed)) {
                chosen.found = true;
                chosen.position = QPointF(fix.longitude.load(std::memory_order_relaxed),
                                          fix.latitude.load(std::memory_order_relaxed));
                chosen.cog = fix.cog.load(std::memory_order_relaxed);
                chosen.sog = fix.sog.load(std::memory_order_relaxed);
                return;
            }
        }
    });
    return chosen;
}

void PositionIntake::startLocationServices()
{
    bool wanted = false;
    if (settings.value(SettingKey::PosSource, SettingDefault::PosSource).toInt() == 1)
        wanted = settings.value(SettingKey::UsePos, SettingDefault::UsePos).toInt() != 0;

    if (!wanted) {
        if (positionSource) {
            positionSource->stopUpdates();
            delete positionSource;
            positionSource = nullptr;
        }
        return;
    }

    qWarning().noquote() << "trying to start location services";
    if (!positionSource) {
        positionSource = QGeoPositionInfoSource::createDefaultSource(&owner);
        if (!positionSource)
            return;
    }
    positionSource->setPreferredPositioningMethods(QGeoPositionInfoSource::SatellitePositioningMethods);
    if (positionSource->preferredPositioningMethods() != QGeoPositionInfoSource::SatellitePositioningMethods)
        positionSource->setPreferredPositioningMethods(QGeoPositionInfoSource::AllPositioningMethods);
    positionSource->setUpdateInterval(1000);
    follow(*positionSource);
    positionSource->startUpdates();
    qWarning().noquote() << "location services started";
}

void PositionIntake::takeUpdate(const QGeoPositionInfo& update)
{
    if (!update.isValid() || !update.hasAttribute(QGeoPositionInfo::HorizontalAccuracy)) {
        qWarning().noquote() << "no fix";
        clearHasFix(Internal);
        return;
    }
    // Exactly 200 m is still good enough.
    if (update.attribute(QGeoPositionInfo::HorizontalAccuracy) > 200.0) {
        clearHasFix(Internal);
        if (positionSource)
            positionSource->requestUpdate(0);
        return;
    }

    const QGeoCoordinate coordinate = update.coordinate();
    const double course = update.hasAttribute(QGeoPositionInfo::Direction)
            ? update.attribute(QGeoPositionInfo::Direction)
            : 0.0;
    const double speed = update.hasAttribute(QGeoPositionInfo::GroundSpeed)
            ? knots(update.attribute(QGeoPositionInfo::GroundSpeed))
            : 0.0;
    setPositionData(QPointF(coordinate.longitude(), coordinate.latitude()), speed, course, Internal);

    sendInternalPosition();
}

void PositionIntake::takePhoneFix(double longitude, double latitude, double course, double speed)
{
    const double sog = speed < 0.0 ? 0.0 : knots(speed);
    setPositionData(QPointF(longitude, latitude), sog, course < 0.0 ? 0.0 : course, Internal);
    sendInternalPosition();
}

void PositionIntake::sendInternalPosition()
{
    const Fix& fix = fixes[Internal];
    QPointF where;
    double speed = 0.0;
    double course = 0.0;
    fixLock.read([&] {
        where = QPointF(fix.longitude.load(std::memory_order_relaxed), fix.latitude.load(std::memory_order_relaxed));
        speed = fix.sog.load(std::memory_order_relaxed);
        course = fix.cog.load(std::memory_order_relaxed);
    });
    broadcast.sendPosition(where, speed, course);
}
