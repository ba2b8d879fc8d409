// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QtCore/QObject>
#include <QtCore/QString>

#include <optional>

// Calls the navigator's attention to a falling barometer. Fed after each firing that
// writes a row, with the raw falls over three hours and over one hour (positive when the
// pressure went down), or with nothing for a span the log has no row for: a fresh start
// or a gap never raises a warning.
class PressureWarning : public QObject
{
    Q_OBJECT
    Q_PROPERTY(int level READ getLevel NOTIFY levelChanged)
    Q_PROPERTY(bool acknowledged READ isAcknowledged NOTIFY acknowledgedChanged)

public:
    enum Level { None = 0, Warning = 1, Alarm = 2 };
    Q_ENUM(Level)

    // All in hPa. The defaults are the official "falling quickly" and "falling very
    // rapidly" bounds over three hours, and the sailors' two hPa within the hour.
    struct Thresholds
    {
        double warning3h = 3.6;
        double alarm3h = 6.0;
        double alarm1h = 2.0;
    };
    // A level goes only once the fall is this far below the bound that raised it, so a
    // reading that wavers around a bound does not make the level flap.
    static constexpr double ClearMargin = 0.5;

    explicit PressureWarning(QObject* parent = nullptr);

    // The level that follows `current` for these falls; with no fall known at all the
    // level stays as it is.
    static Level judge(Level current, std::optional<double> fall3h, std::optional<double> fall1h,
                       const Thresholds& thresholds);
    // The thresholds and the switch as the settings hold them, read at each call.
    static Thresholds thresholdsFromSettings();
    static bool enabledInSettings();

    // `now` in seconds since the epoch: the time the level is said to hold since.
    void evaluate(std::optional<double> fall3h, std::optional<double> fall1h, qint64 now);

    Q_INVOKABLE int getLevel() const { return level; }
    Q_INVOKABLE bool isAcknowledged() const { return acknowledged; }
    // The falls of the last evaluation in hPa; NaN where there was none.
    Q_INVOKABLE double getFall3h() const { return lastFall3h; }
    Q_INVOKABLE double getFall1h() const { return lastFall1h; }
    // Seconds since the epoch at which the present level began; 0 while there is none.
    Q_INVOKABLE qint64 getSince() const { return since; }
    // Seconds since the epoch of the last change of level, the end of one included.
    qint64 getLastChange() const { return lastChange; }
    // The level's name for the user, in the current language.
    Q_INVOKABLE QString levelText() const;
    // The falls and since when, in the user's unit and date format.
    Q_INVOKABLE QString detailText() const;
    Q_INVOKABLE void acknowledge();

signals:
    void levelChanged(int level);
    // After every evaluation, changed or not: the falls move on.
    void evaluated();
    void acknowledgedChanged(bool acknowledged);

private:
    void setLevel(Level next, qint64 now);

    Level level = None;
    bool acknowledged = false;
    double lastFall3h = 0.0;
    double lastFall1h = 0.0;
    qint64 since = 0;
    qint64 lastChange = 0;
};
