// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "nmea/NmeaSourceType.h"
#include "util/SeqLock.h"

#include <QtCore/QPointF>

#include <atomic>
#include <functional>

class InternalBroadcast;
class QGeoPositionInfo;
class QGeoPositionInfoSource;
class QObject;
class SettingsAccess;

// Position, course and speed of each source, and the host's location service that feeds
// the internal one. The receiver's thread writes its sources' fixes while the main thread
// reads them: the SeqLock keeps the four values of a fix consistent and never makes the
// reader wait.
class PositionIntake
{
public:
    // The fix of the first source in order that has one; zeros and not found otherwise.
    struct Chosen
    {
        bool found = false;
        QPointF position;
        double cog = 0.0;
        double sog = 0.0;
    };

    // The location service is made a child of `owner`, and `follow` connects its updates
    // (uniquely, as it is called at every start).
    PositionIntake(QObject& owner, const SettingsAccess& settings, InternalBroadcast& broadcast,
                   std::function<void(QGeoPositionInfoSource&)> follow);

    // Speed before course, as the sentence items hand them.
    void setPositionData(const QPointF& position, double sog, double cog, int type);
    // Course and speed stay; only the position and its flag go.
    void clearHasFix(int type);
    void clearAllFix();
    Chosen choose() const;

    // Starts or stops the service as the settings ask. The last internal position stays
    // when it stops, until something clears it.
    void startLocationServices();
    // An update of the service: a fix good to 200 m is taken and broadcast, anything else
    // clears the internal one.
    void takeUpdate(const QGeoPositionInfo& update);
    // A phone host's entry; speed in metres per second.
    void takePhoneFix(double longitude, double latitude, double course, double speed);

private:
    struct Fix
    {
        std::atomic<bool> hasFix{false};
        std::atomic<double> longitude{0.0};
        std::atomic<double> latitude{0.0};
        std::atomic<double> cog{0.0};
        std::atomic<double> sog{0.0};
    };

    static void clear(Fix& fix);
    // The UDP step of the internal paths.
    void sendInternalPosition();

    QObject& owner;
    const SettingsAccess& settings;
    InternalBroadcast& broadcast;
    std::function<void(QGeoPositionInfoSource&)> follow;
    Fix fixes[NmeaSourceCount];
    mutable SeqLock fixLock;
    QGeoPositionInfoSource* positionSource = nullptr;
};
