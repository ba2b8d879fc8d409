// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "nmea/SignalKStatus.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QString>

// The line the Connections page shows under each way of the Signal K output.
class SignalKStatusText
{
    Q_DECLARE_TR_FUNCTIONS(SignalKStatusText)

public:
    SignalKStatusText() = delete;

    static QString describe(const SignalKStatus& status);
};
