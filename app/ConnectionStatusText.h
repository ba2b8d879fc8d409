// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "nmea/ConnectionStatus.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QString>

// The one line the Connections page shows beside a connection: what it does now and, where
// a retry or a restart decides, what it will do next.
class ConnectionStatusText
{
    Q_DECLARE_TR_FUNCTIONS(ConnectionStatusText)

public:
    ConnectionStatusText() = delete;

    // `lastSentenceMs` and `nowMs` on the monotonic Clock; -1 for no sentence yet.
    static QString describe(const ConnectionStatus& status, qint64 lastSentenceMs, qint64 nowMs);

    // Why an attempt failed, in the user's words.
    static QString reasonText(const ConnectionStatus& status);
};
