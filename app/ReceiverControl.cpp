// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ReceiverControl.h"

#include "app/ConnectionStatusText.h"
#include "app/SettingsAccess.h"
#include "nmea/NmeaReceiver.h"
#include "util/Clock.h"
#include "util/SanitizerSync.h"
#include "util/SettingKeys.h"

#include <QtCore/QThread>

ReceiverControl::ReceiverControl(const SettingsAccess& settings)
    : settings(settings)
{
}

void ReceiverControl::start()
{
    // The old receiver ends by itself once its thread has quit; nobody waits for that.
    if (running) {
        running->quitThread();
        running = nullptr;
    }
    statusBoard.follow(nullptr);
    // No default for the port here: an absent key is empty text, which is not "None", so
    // a first start makes a receiver with no sources.
    const bool wanted = settings.value(SettingKey::SerialPort).toString() != QLatin1String("None")
            || settings.value(SettingKey::UseTcp, SettingDefault::UseTcp).toInt() != 0
            || settings.value(SettingKey::UseUdp, SettingDefault::UseUdp).toInt() != 0
            || settings.value(SettingKey::UseUdpOut, SettingDefault::UseUdpOut).toInt() != 0;
    if (!wanted)
        return;
    running = new NmeaReceiver();
    auto* thread = new QThread();
    running->moveToThread(thread);
    statusBoard.follow(running);
    QObject::connect(running, &NmeaReceiver::finished, thread, &QThread::quit);
    QObject::connect(thread, &QThread::finished, running, &QObject::deleteLater);
    QObject::connect(thread, &QThread::finished, thread, &QObject::deleteLater);
    QObject::connect(thread, &QThread::finished, thread, [thread] { SanitizerSync::release(thread); },
                     Qt::DirectConnection);
    thread->start(QThread::InheritPriority);
    running->startReceiving();
}

void ReceiverControl::stop()
{
    if (!running)
        return;
    QThread* thread = running->thread();
    running->quitThread();
    running = nullptr;
    if (thread->wait(10000))
        SanitizerSync::acquire(thread);
}

QString ReceiverControl::status(int which) const
{
    if (which < ConnectionStatus::SerialInput || which > ConnectionStatus::UdpOutput)
        return QString();
    const auto channel = static_cast<ConnectionStatus::Channel>(which);
    return ConnectionStatusText::describe(statusBoard.status(channel), statusBoard.lastSentenceMs(channel),
                                          Clock::monotonicMs());
}
