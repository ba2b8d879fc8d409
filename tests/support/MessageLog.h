// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QtCore/QStringList>
#include <QtCore/QtMessageHandler>

#include <mutex>

// Records every message Qt logs while it lives (from any thread), for tests that check a
// diagnostic was or was not written. Messages still reach the previous handler.
class MessageLog
{
public:
    MessageLog();
    ~MessageLog();
    Q_DISABLE_COPY(MessageLog)

    QStringList messages() const;
    // Number of messages that contain `text`.
    int count(const QString& text) const;
    void clear();

private:
    static void handle(QtMsgType type, const QMessageLogContext& context, const QString& message);

    // A standard mutex, so that ThreadSanitizer sees it: Qt's own is not instrumented.
    mutable std::mutex mutex;
    QStringList recorded;
    QtMessageHandler previous = nullptr;
};
