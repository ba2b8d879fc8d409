// SPDX-License-Identifier: GPL-3.0-or-later
#include "nmea/SignalKOutput.h"

#include "nmea/SignalKLink.h"
#include "util/SanitizerSync.h"

#include <QtCore/QThread>

SignalKOutput::SignalKOutput(QObject* parent)
    : QObject(parent)
{
    qRegisterMetaType<SignalKStatus>();
    tcpStatus.channel = SignalKStatus::TcpServer;
    udpStatus.channel = SignalKStatus::UdpDatagrams;
}

SignalKOutput::~SignalKOutput()
{
    stop();
}

void SignalKOutput::stop()
{
    ++generation;
    tcpStatus = SignalKStatus();
    tcpStatus.channel = SignalKStatus::TcpServer;
    udpStatus = SignalKStatus();
    udpStatus.channel = SignalKStatus::UdpDatagrams;
    if (!thread)
        return;
    // The link and its sockets are deleted on their own thread as its loop ends.
    thread->quit();
    thread->wait();
    SanitizerSync::acquire(thread);
    delete thread;
    thread = nullptr;
    link = nullptr;
}

void SignalKOutput::restart()
{
    stop();
    const SignalKLink::Settings settings = SignalKLink::settingsNow();
    if (!settings.tcpOn && !settings.udpOn)
        return;
    link = new SignalKLink(settings);
    thread = new QThread();
    link->moveToThread(thread);
    connect(thread, &QThread::finished, link, &QObject::deleteLater);
    connect(thread, &QThread::finished, thread, [t = thread] { SanitizerSync::release(t); }, Qt::DirectConnection);
    const int made = generation;
    connect(
            link, &SignalKLink::statusChanged, this,
            [this, made](const SignalKStatus& status) { take(made, status); }, Qt::QueuedConnection);
    thread->start(QThread::InheritPriority);
    QMetaObject::invokeMethod(link, &SignalKLink::start, Qt::QueuedConnection);
}

void SignalKOutput::take(int fromGeneration, const SignalKStatus& status)
{
    SanitizerSync::acquire(&SignalKLink::staticMetaObject);
    if (fromGeneration != generation)
        return;
    if (status.channel == SignalKStatus::TcpServer)
        tcpStatus = status;
    else
        udpStatus = status;
    emit statusChanged(status.channel);
}

SignalKStatus SignalKOutput::status(SignalKStatus::Channel channel) const
{
    return channel == SignalKStatus::TcpServer ? tcpStatus : udpStatus;
}
