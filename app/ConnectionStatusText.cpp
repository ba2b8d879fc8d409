// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ConnectionStatusText.h"

#include "util/Pressure.h"


namespace {

// Whole seconds, rounded down: "2 s ago" from 2000 ms to 2999 ms.
qint64 seconds(qint64 ms)
{
    return ms > 0 ? ms / 1000 : 0;
}

// An interval or a delay, rounded up, so that a wait is never said to be shorter.
qint64 secondsUp(qint64 ms)
{
    return ms > 0 ? (ms + 999) / 1000 : 0;
}

} // namespace

QString ConnectionStatusText::reasonText(const ConnectionStatus& status)
{
    switch (status.reason) {
    case ConnectionStatus::PermissionDenied:
        if (status.channel == ConnectionStatus::SerialInput)
            return tr("permission denied (add your user to the dialout group, then log in again)");
        return tr("permission denied");
    case ConnectionStatus::NoSuchDevice:
        return tr("no such device");
    case ConnectionStatus::Refused:
        return tr("connection refused");
    case ConnectionStatus::HostNotFound:
        return tr("host not found");
    case ConnectionStatus::TimedOut:
        return tr("no answer within 5 s");
    case ConnectionStatus::AddressInUse:
        return tr("port already in use");
    case ConnectionStatus::Lost:
    case ConnectionStatus::Other:
    case ConnectionStatus::NoReason:
        break;
    }
    // The system's own words, untranslated, are better than none.
    return status.errorText.isEmpty() ? tr("unknown error") : status.errorText;
}

QString ConnectionStatusText::describe(const ConnectionStatus& status, qint64 lastSentenceMs, qint64 nowMs)
{
    const QString port = QString::number(status.number);
    const QString hostAndPort = status.where + QLatin1Char(':') + port;
    const QString every = QString::number(secondsUp(status.milliseconds));
    // A sentence as old as a reading may be still counts as reading; past that the source
    // no longer feeds the instrument, and the line says for how long it has been silent.
    const bool fresh = lastSentenceMs >= 0 && nowMs - lastSentenceMs < Pressure::ReadingLifetimeMs;
    const QString ago = QString::number(seconds(nowMs - lastSentenceMs));
    const QString silent = QString::number(seconds(nowMs - qMax(lastSentenceMs, status.sinceMs)));

    switch (status.phase) {
    case ConnectionStatus::Off:
        return tr("off");
    case ConnectionStatus::NoPort:
        return tr("on, but no port chosen");
    case ConnectionStatus::Delayed:
        return tr("starts in %1 s, after the serial input")
                .arg(secondsUp(status.milliseconds - (nowMs - status.sinceMs)));
    case ConnectionStatus::Opening:
        switch (status.channel) {
        case ConnectionStatus::SerialInput:
            return tr("opening %1").arg(status.where);
        case ConnectionStatus::TcpInput:
            return tr("connecting to %1").arg(hostAndPort);
        case ConnectionStatus::UdpInput:
            return tr("opening port %1").arg(port);
        case ConnectionStatus::UdpOutput:
            return tr("starting");
        }
        break;
    case ConnectionStatus::Open:
        switch (status.channel) {
        case ConnectionStatus::SerialInput:
            if (fresh)
                return tr("reading %1 at %2 baud, last sentence %3 s ago").arg(status.where, port, ago);
            return tr("%1 open at %2 baud, but no sentence for %3 s").arg(status.where, port, silent);
        case ConnectionStatus::TcpInput:
            if (fresh)
                return tr("connected to %1, last sentence %2 s ago").arg(hostAndPort, ago);
            return tr("connected to %1, but no sentence for %2 s").arg(hostAndPort, silent);
        case ConnectionStatus::UdpInput:
            if (fresh)
                return tr("listening on port %1, last sentence %2 s ago").arg(port, ago);
            return tr("listening on port %1, but no sentence for %2 s").arg(port, silent);
        case ConnectionStatus::UdpOutput:
            if (status.number == 0)
                return tr("no broadcast address found: no network that can broadcast is up");
            // Two forms are all that English and French need.
            if (status.number == 1)
                return tr("sending to 1 broadcast address");
            return tr("sending to %1 broadcast addresses").arg(port);
        }
        break;
    case ConnectionStatus::Retrying:
        switch (status.channel) {
        case ConnectionStatus::SerialInput:
            if (status.reason == ConnectionStatus::Lost)
                return tr("%1 lost (%2); retrying every %3 s").arg(status.where, reasonText(status), every);
            return tr("cannot open %1: %2; retrying every %3 s").arg(status.where, reasonText(status), every);
        case ConnectionStatus::TcpInput:
            if (status.reason == ConnectionStatus::Lost)
                return tr("connection to %1 lost, retrying every %2 s").arg(hostAndPort, every);
            return tr("cannot connect to %1: %2; retrying every %3 s").arg(hostAndPort, reasonText(status), every);
        case ConnectionStatus::UdpInput:
            if (status.reason == ConnectionStatus::Lost)
                return tr("listening on port %1 stopped, retrying every %2 s").arg(port, every);
            return tr("cannot listen on port %1: %2; retrying every %3 s").arg(port, reasonText(status), every);
        case ConnectionStatus::UdpOutput:
            break;
        }
        break;
    case ConnectionStatus::GivenUp:
        switch (status.channel) {
        case ConnectionStatus::TcpInput:
            return tr("cannot connect to %1: %2, not retried; leave this page to try again")
                    .arg(hostAndPort, reasonText(status));
        case ConnectionStatus::UdpInput:
            return tr("cannot listen on port %1: %2, not retried; leave this page to try again")
                    .arg(port, reasonText(status));
        case ConnectionStatus::SerialInput:
        case ConnectionStatus::UdpOutput:
            break;
        }
        break;
    }
    return QString();
}
