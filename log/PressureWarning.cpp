// SPDX-License-Identifier: GPL-3.0-or-later
#include "log/PressureWarning.h"

#include "log/LogHost.h"
#include "util/SettingKeys.h"
#include "util/Util.h"

#include <QtCore/QDateTime>
#include <QtCore/QDebug>
#include <QtCore/QMetaEnum>
#include <QtCore/QSettings>

#include <cmath>
#include <limits>

namespace {
constexpr double NoFall = std::numeric_limits<double>::quiet_NaN();

bool atLeast(std::optional<double> fall, double bound)
{
    return fall && *fall >= bound;
}

bool above(std::optional<double> fall, double bound)
{
    return fall && *fall > bound;
}

QString fallText(double fall)
{
    return std::isnan(fall) ? QStringLiteral("none") : QString::number(fall, 'f', 1);
}
}

PressureWarning::PressureWarning(QObject* parent)
    : QObject(parent)
    , lastFall3h(NoFall)
    , lastFall1h(NoFall)
{
}

PressureWarning::Level PressureWarning::judge(Level current, std::optional<double> fall3h,
                                              std::optional<double> fall1h, const Thresholds& t)
{
    if (!fall3h && !fall1h)
        return current;

    const bool raisesAlarm = above(fall3h, t.alarm3h) || atLeast(fall1h, t.alarm1h);
    const bool holdsAlarm = above(fall3h, t.alarm3h - ClearMargin) || above(fall1h, t.alarm1h - ClearMargin);
    if (raisesAlarm || (current == Alarm && holdsAlarm))
        return Alarm;

    // Coming down from the alarm, the warning is one that already stood.
    const bool raisesWarning = atLeast(fall3h, t.warning3h);
    const bool holdsWarning = above(fall3h, t.warning3h - ClearMargin);
    if (raisesWarning || (current != None && holdsWarning))
        return Warning;
    return None;
}

PressureWarning::Thresholds PressureWarning::thresholdsFromSettings()
{
    Thresholds t;
    const LogHost* host = LogHost::installed();
    if (!host)
        return t;
    const QSettings* settings = host->getSettings();
    t.warning3h = settings->value(SettingKey::WarningFall3h, t.warning3h).toDouble();
    t.alarm3h = settings->value(SettingKey::AlarmFall3h, t.alarm3h).toDouble();
    t.alarm1h = settings->value(SettingKey::AlarmFall1h, t.alarm1h).toDouble();
    return t;
}

bool PressureWarning::enabledInSettings()
{
    const LogHost* host = LogHost::installed();
    return !host || host->getSettings()->value(SettingKey::WarningOn, SettingDefault::WarningOn).toInt() == 1;
}

void PressureWarning::evaluate(std::optional<double> fall3h, std::optional<double> fall1h, qint64 now)
{
    lastFall3h = fall3h.value_or(NoFall);
    lastFall1h = fall1h.value_or(NoFall);
    const Level next = enabledInSettings() ? judge(level, fall3h, fall1h, thresholdsFromSettings()) : None;
    setLevel(next, now);
    emit evaluated();
}

void PressureWarning::setLevel(Level next, qint64 now)
{
    if (next == level)
        return;
    // A stronger level wants the navigator again; a weaker one was seen already; an ended
    // one leaves nothing to acknowledge.
    const bool raised = next > level;
    level = next;
    since = next == None ? 0 : now;
    lastChange = now;
    qWarning().noquote() << "pressure fall level" << QMetaEnum::fromType<Level>().valueToKey(level)
                         << "3h" << fallText(lastFall3h) << "1h" << fallText(lastFall1h);
    if ((raised || next == None) && acknowledged) {
        acknowledged = false;
        emit acknowledgedChanged(acknowledged);
    }
    emit levelChanged(level);
}

QString PressureWarning::levelText() const
{
    switch (level) {
    case Warning:
        return tr("Pressure falling quickly");
    case Alarm:
        return tr("Pressure falling very rapidly");
    default:
        return QString();
    }
}

QString PressureWarning::detailText() const
{
    LogHost* host = LogHost::installed();
    const QString unit = host ? host->getPressureUnit() : QStringLiteral("hPa");
    // A difference converts by the unit's factor alone.
    auto inUnit = [host](double hpa) { return host ? host->convertToOther(hpa) : hpa; };
    QStringList parts;
    if (!std::isnan(lastFall3h))
        parts << tr("%1 %2 in three hours").arg(inUnit(lastFall3h), 0, 'f', 1).arg(unit);
    if (!std::isnan(lastFall1h))
        parts << tr("%1 %2 in the last hour").arg(inUnit(lastFall1h), 0, 'f', 1).arg(unit);
    const QDateTime start = QDateTime::fromSecsSinceEpoch(since, Qt::UTC);
    return tr("Fall of %1, since %2").arg(parts.join(tr(" and ")), Util::formatDateTimeLong(start));
}

void PressureWarning::acknowledge()
{
    if (level == None || acknowledged)
        return;
    acknowledged = true;
    emit acknowledgedChanged(acknowledged);
}
