// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ReadingStore.h"

#include <QtCore/QCoreApplication>

ReadingStore::Reading ReadingStore::current() const
{
    for (int type = Internal; type <= Udp; ++type) {
        const double value = pressure[type].load(std::memory_order_relaxed);
        if (value > 0.0 && age[type].isValid()) {
            const qint64 ageMs = age[type].elapsed();
            if (ageMs < Pressure::ReadingLifetimeMs)
                return Reading{value, type, ageMs};
        }
    }
    return Reading{};
}

double ReadingStore::latest(int type) const
{
    return pressure[type].load(std::memory_order_relaxed);
}

QString ReadingStore::sourceText(int source)
{
    switch (source) {
    case Internal:
        return QCoreApplication::translate("BackEnd", "From internal pressure sensor");
    case Serial:
        return QCoreApplication::translate("BackEnd", "From serial connection");
    case Tcp:
        return QCoreApplication::translate("BackEnd", "From TCP connection");
    case Udp:
        return QCoreApplication::translate("BackEnd", "From UDP connection");
    default:
        return QCoreApplication::translate("BackEnd", "No pressure available");
    }
}
