// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "util/ShownState.h"

#include <QtCore/QPointF>
#include <QtCore/QString>

class DataSource;
class QSettings;

// Gathers what one tick showed into a ShownState: the tick's own facts, the settings that
// say how the pressure is shown, and what the log knows of the trend and the warning.
// Main thread only, after the tick has written its row.
class StateAssembler
{
public:
    struct Tick
    {
        qint64 time = 0;
        // Whether the tick emitted dataUpdated, and its four strings.
        bool shown = false;
        QString date;
        QString position;
        QString cogsog;
        QString pressureText;
        // The usable reading in hPa, its NmeaSourceType and age; source -1 with none.
        double reading = ShownState::Unknown;
        int source = -1;
        QString sourceText;
        qint64 readingAgeMs = 0;
        bool logged = false;
        bool hasFix = false;
        QPointF fix;
        double cog = 0.0;
        double sog = 0.0;
        // The system's answer, 0 light or 1 dark, for a theme that follows it.
        int systemTheme = 0;
    };

    // `previous` gives the strings a tick that showed nothing leaves on the pages.
    static ShownState assemble(const Tick& tick, const ShownState& previous, const QSettings& settings,
                               DataSource* log);
};
