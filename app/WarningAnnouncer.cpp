#include "app/WarningAnnouncer.h"

#include "app/AlarmSound.h"
#include "app/BackEnd.h"
#include "app/DesktopNotifier.h"
#include "log/PressureWarning.h"
#include "util/Util.h"

#include <QtCore/QDateTime>

#include <cmath>

WarningAnnouncer::WarningAnnouncer(PressureWarning& warning, DesktopNotifier& notifier, AlarmSound& sound,
                                   QObject* parent)
    : QObject(parent)
    , warning(warning)
    , notifier(notifier)
    , sound(sound)
{
    connect(&warning, &PressureWarning::levelChanged, this, &WarningAnnouncer::levelChanged);
    connect(&warning, &PressureWarning::acknowledgedChanged, this,
            [this](bool acknowledged) { this->sound.follow(this->warning.getLevel(), acknowledged); });
}

QString WarningAnnouncer::bodyText() const
{
    const QString unit = backend ? backend->getPressureUnit() : QStringLiteral("hPa");
    // A difference converts by the unit's factor alone.
    auto inUnit = [](double hpa) { return backend ? backend->convertToOther(hpa) : hpa; };
    QStringList parts;
    if (!std::isnan(warning.getFall3h()))
        parts << tr("%1 %2 in three hours").arg(inUnit(warning.getFall3h()), 0, 'f', 1).arg(unit);
    if (!std::isnan(warning.getFall1h()))
        parts << tr("%1 %2 in the last hour").arg(inUnit(warning.getFall1h()), 0, 'f', 1).arg(unit);
    const QDateTime since = QDateTime::fromSecsSinceEpoch(warning.getSince(), Qt::UTC);
    return tr("Fall of %1, since %2").arg(parts.join(tr(" and "))).arg(Util::formatDateTimeLong(since));
}

void WarningAnnouncer::levelChanged(int level)
{
    sound.follow(level, warning.isAcknowledged());
    if (level == PressureWarning::None)
        notifier.withdraw();
    else
        notifier.notify(warning.levelText(), bodyText(), level == PressureWarning::Alarm);
}
