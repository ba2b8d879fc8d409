// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/WarningAnnouncer.h"

#include "app/AlarmSound.h"
#include "app/BackEnd.h"
#include "app/DesktopNotifier.h"
#include "log/PressureWarning.h"


WarningAnnouncer::WarningAnnouncer(PressureWarning& warning, DesktopNotifier& notifier, AlarmSound& sound,
                                   QObject* parent)
    : QObject(parent)
    , warning(warning)
    , notifier(notifier)
    , sound(sound)
{
    connect(&warning, &PressureWarning::levelChanged, this, &WarningAnnouncer::levelChanged);
    connect(&warning, &PressureWarning::acknowledgedChanged, this, [this](bool acknowledged) {
        this->sound.follow(this->warning.getLevel(), acknowledged);
        publish();
    });
}

void WarningAnnouncer::publish()
{
    if (backend)
        backend->publishWarning(WarningState{warning.getLevel(), warning.isAcknowledged(), warning.getLastChange()});
}

void WarningAnnouncer::levelChanged(int level)
{
    publish();
    sound.follow(level, warning.isAcknowledged());
    if (level == PressureWarning::None)
        notifier.withdraw();
    else
        notifier.notify(warning.levelText(), warning.detailText(), level == PressureWarning::Alarm);
}
