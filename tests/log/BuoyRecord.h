// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QtCore/QMap>
#include <QtCore/QString>
#include <QtCore/QVector>

#include <optional>

// Hourly sea-level pressure of a moored weather buoy, interpolated in a straight line
// between two observations an hour apart; nothing across a missing hour.
class BuoyRecord
{
public:
    // The record of the first half of 2012 that the storm tests replay.
    static QString firstHalfOf2012();
    // Seconds since the epoch of midnight (or the hour) UTC of a day of 2012.
    static qint64 utc(int month, int day, int hour = 0);

    // A stretch of the record, [from, to), known for its storm or for its calm.
    struct Span
    {
        const char* name;
        qint64 from;
        qint64 to;
        bool stormy;
    };
    // The storms a sailor remembers from that half-year, and the calm weeks between them.
    static QVector<Span> namedSpans();

    bool load(const QString& path);
    std::optional<double> at(qint64 time) const;

    qint64 first() const { return observations.firstKey(); }
    // The replay's firings fall every `step` seconds from the first observation on.
    qint64 onGrid(qint64 time, qint64 step) const
    {
        return first() + (time - first() + step - 1) / step * step;
    }
    qint64 last() const { return observations.lastKey(); }

private:
    QMap<qint64, double> observations;
};
