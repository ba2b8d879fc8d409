// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QtCore/QtGlobal>

#include <atomic>
#include <limits>

// A QElapsedTimer that one thread may restart while another asks its age. It reads the
// monotonic Clock, so tests can age it without waiting.
class AgeTimer
{
public:
    void invalidate();
    void restart();
    bool isValid() const;
    // Milliseconds since the last restart; meaningless while invalid.
    qint64 elapsed() const;

private:
    static constexpr qint64 Invalid = std::numeric_limits<qint64>::min();
    std::atomic<qint64> startMs{Invalid};
};
