// SPDX-License-Identifier: GPL-3.0-or-later
#include "BuoyRecord.h"

#include <QtCore/QByteArray>
#include <QtCore/QDateTime>
#include <QtCore/QFile>
#include <QtCore/QList>

#include <cctype>
#include <iterator>

QString BuoyRecord::firstHalfOf2012()
{
    return QStringLiteral(BRINHOLT_SOURCE_DIR "/../shared/data/buoy_44005_2012_H1.txt");
}

qint64 BuoyRecord::utc(int month, int day, int hour)
{
    return QDateTime(QDate(2012, month, day), QTime(hour, 0), Qt::UTC).toSecsSinceEpoch();
}

QVector<BuoyRecord::Span> BuoyRecord::namedSpans()
{
    return {
        {"storm of 12 January", utc(1, 12), utc(1, 13), true},
        {"storm of 27 January", utc(1, 27), utc(1, 28), true},
        {"storm of 24-25 February", utc(2, 24), utc(2, 26), true},
        {"storm of 3 March", utc(3, 3), utc(3, 4), true},
        {"calm 1-10 February", utc(2, 1), utc(2, 11), false},
        {"calm 10-27 March", utc(3, 10), utc(3, 28), false},
        {"calm 29 March-22 April", utc(3, 29), utc(4, 23), false},
        {"calm 11-28 May", utc(5, 11), utc(5, 29), false},
        {"calm June", utc(6, 1), utc(6, 30), false},
    };
}

bool BuoyRecord::load(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text))
        return false;
    while (!file.atEnd()) {
        const QList<QByteArray> f = file.readLine().simplified().split(' ');
        if (f.size() < 13 || !std::isdigit(static_cast<unsigned char>(f.at(0).at(0))))
            continue;
        const QDateTime when(QDate(f.at(0).toInt(), f.at(1).toInt(), f.at(2).toInt()),
                             QTime(f.at(3).toInt(), f.at(4).toInt()), Qt::UTC);
        const double pressure = f.at(12).toDouble();
        if (pressure < 9000.0)
            observations.insert(when.toSecsSinceEpoch(), pressure);
    }
    return !observations.isEmpty();
}

std::optional<double> BuoyRecord::at(qint64 time) const
{
    auto after = observations.lowerBound(time);
    if (after != observations.end() && after.key() == time)
        return after.value();
    if (after == observations.begin() || after == observations.end())
        return std::nullopt;
    auto before = std::prev(after);
    if (after.key() - before.key() != 3600)
        return std::nullopt;
    return before.value() + (after.value() - before.value()) * double(time - before.key()) / 3600.0;
}
