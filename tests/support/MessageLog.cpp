#include "support/MessageLog.h"

#include <QtCore/QMutexLocker>

#include <atomic>

namespace {
std::atomic<MessageLog*> current{nullptr};
}

MessageLog::MessageLog()
{
    current.store(this);
    previous = qInstallMessageHandler(&MessageLog::handle);
}

MessageLog::~MessageLog()
{
    qInstallMessageHandler(previous);
    current.store(nullptr);
}

void MessageLog::handle(QtMsgType type, const QMessageLogContext& context, const QString& message)
{
    MessageLog* log = current.load();
    if (!log)
        return;
    {
        QMutexLocker locker(&log->mutex);
        log->recorded.append(message);
    }
    if (log->previous)
        log->previous(type, context, message);
}

QStringList MessageLog::messages() const
{
    QMutexLocker locker(&mutex);
    return recorded;
}

int MessageLog::count(const QString& text) const
{
    QMutexLocker locker(&mutex);
    int n = 0;
    for (const QString& message : recorded)
        n += message.contains(text) ? 1 : 0;
    return n;
}

void MessageLog::clear()
{
    QMutexLocker locker(&mutex);
    recorded.clear();
}
