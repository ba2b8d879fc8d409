// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/SignalKStatusText.h"

QString SignalKStatusText::describe(const SignalKStatus& status)
{
    const QString port = QString::number(status.port);
    switch (status.phase) {
    case SignalKStatus::Off:
        return tr("off");
    case SignalKStatus::Listening:
        // Two forms are all that English and French need.
        if (status.clients == 0)
            return tr("listening on port %1, no client connected").arg(port);
        if (status.clients == 1)
            return tr("listening on port %1, 1 client connected").arg(port);
        return tr("listening on port %1, %2 clients connected").arg(port, QString::number(status.clients));
    case SignalKStatus::Retrying: {
        const QString every = QString::number((status.retryMs + 999) / 1000);
        if (status.addressInUse)
            return tr("port %1 is in use; retrying every %2 s").arg(port, every);
        return tr("cannot listen on port %1: %2; retrying every %3 s").arg(port, status.errorText, every);
    }
    case SignalKStatus::Sending:
        return tr("sending to %1:%2").arg(status.host, port);
    case SignalKStatus::BadAddress:
        return tr("%1 is not an IP address; nothing is sent").arg(status.host);
    case SignalKStatus::SendFailed:
        return tr("cannot send to %1:%2: %3").arg(status.host, port, status.errorText);
    }
    return QString();
}
