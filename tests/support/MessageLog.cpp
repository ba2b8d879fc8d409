// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/support/MessageLog.h"

#include <atomic>

namespace {
std::atomic<MessageLog*> current{nullptr};
}

MessageLog::MessageLog()
{
    // Published only once `previous` is known, since another thread may log at any time.
    previous = qInstallMessageHandler(&MessageLog::handle);
    current.store(this, std::memory_order_release);
}

MessageLog::~MessageLog()
{
    current.store(nullptr, std::memory_order_release);
    qInstallMessageHandler(previous);
}

void MessageLog::handle(QtMsgType type, const QMessageLogContext& context, const QString& message)
{
    MessageLog* log = current.load(std::memory_order_acquire);
    if (!log)
        return;
    {
        std::lock_guard<std::mutex> locker(log->mutex);
        log->recorded.append(message);
    }
    if (log->previous)
        log->previous(type, context, message);
}

QStringList MessageLog::messages() const
{
    std::lock_guard<std::mutex> locker(mutex);
    return recorded;
}

int MessageLog::count(const QString& text) const
{
    std::lock_guard<std::mutex> locker(mutex);
    int n = 0;
    for (const QString& message : recorded)
        n += message.contains(text) ? 1 : 0;
    return n;
}

void MessageLog::clear()
{
    std::lock_guard<std::mutex> locker(mutex);
    recorded.clear();
}
