// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QtCore/QObject>

class AlarmSound;
class DesktopNotifier;
class PressureWarning;

// Tells the navigator when the pressure-fall level changes: a desktop notification at
// each new level, and the alarm's sound until it is acknowledged. It also hands each
// change to BackEnd, where the UDP output picks it up for its ALR sentence.
class WarningAnnouncer : public QObject
{
    Q_OBJECT

public:
    WarningAnnouncer(PressureWarning& warning, DesktopNotifier& notifier, AlarmSound& sound,
                     QObject* parent = nullptr);

private:
    void levelChanged(int level);
    void publish();

    PressureWarning& warning;
    DesktopNotifier& notifier;
    AlarmSound& sound;
};
