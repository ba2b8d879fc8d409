// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/SignalWatcher.h"

#include <QtCore/QSocketNotifier>

#include <csignal>
#include <fcntl.h>
#include <sys/socket.h>
#include <unistd.h>

namespace {
// The handler may only write to a descriptor; the notifier reads it in the event loop.
int signalPipe[2] = {-1, -1};

extern "C" void onTerminationSignal(int signalNumber)
{
    const unsigned char byte = static_cast<unsigned char>(signalNumber);
    [[maybe_unused]] const ssize_t written = ::write(signalPipe[0], &byte, 1);
}
}

SignalWatcher::SignalWatcher(QObject* parent)
    : QObject(parent)
{
    if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, signalPipe) != 0)
        return;
    ::fcntl(signalPipe[0], F_SETFL, O_NONBLOCK);
    notifier = new QSocketNotifier(signalPipe[1], QSocketNotifier::Read, this);
    connect(notifier, &QSocketNotifier::activated, this, &SignalWatcher::readSignal);

    struct sigaction action = {};
    action.sa_handler = onTerminationSignal;
    sigemptyset(&action.sa_mask);
    action.sa_flags = SA_RESTART;
    ::sigaction(SIGINT, &action, nullptr);
    ::sigaction(SIGTERM, &action, nullptr);
}

SignalWatcher::~SignalWatcher()
{
    if (!notifier)
        return;
    std::signal(SIGINT, SIG_DFL);
    std::signal(SIGTERM, SIG_DFL);
    delete notifier;
    ::close(signalPipe[0]);
    ::close(signalPipe[1]);
    signalPipe[0] = signalPipe[1] = -1;
}

void SignalWatcher::readSignal()
{
    unsigned char byte = 0;
    if (::read(signalPipe[1], &byte, 1) == 1)
        emit terminationRequested(byte);
}
