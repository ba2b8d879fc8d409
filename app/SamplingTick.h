// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/StateAssembler.h"

#include <QtCore/QObject>
#include <QtCore/QString>

class DataSource;
class PositionIntake;
class ReadingStore;
class SettingsAccess;
class StatePublisher;

// What happens every two seconds on the main thread: the theme poll, the best position and
// pressure, the row for the log, the four strings for the pages and the published state.
class SamplingTick : public QObject
{
    Q_OBJECT

public:
    // `log` is the global that whoever makes the log sets, read at each tick.
    SamplingTick(const SettingsAccess& settings, const ReadingStore& readings, const PositionIntake& positions,
                 StatePublisher& publisher, DataSource* const& log);

    void run();
    // The dark-mode answer the next tick with theme 2 compares against.
    void setPreviousTheme(int theme) { previousTheme = theme; }

signals:
    void systemThemeChanged(int theme);
    void noPressureAvailable();
    void dataUpdated(QString date, QString position, QString cogsog, QString pressure);

private:
    void pollTheme();
    // Counts elapsed seconds in steps of the tick: 768, 0, 2, ..., 766, 768, 0, ...
    void stepTickCounter();
    void publish(const StateAssembler::Tick& tick);

    const SettingsAccess& settings;
    const ReadingStore& readings;
    const PositionIntake& positions;
    StatePublisher& publisher;
    DataSource* const& log;
    int tickCounter = 768;
    int previousTheme = -1;
};
