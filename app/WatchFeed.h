// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "log/ChartSpan.h"

#include <QtCore/QByteArray>
#include <QtCore/QObject>
#include <QtCore/QString>

#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>

// What the watch page needs of the main thread, handed to the server's threads as copies:
// the chart of a span, the barogram, and the page's texts in the application's language.
// A server thread asks; the work is posted to the main thread, where the log lives; the
// asker waits for the copy, but never longer than it says, so a busy or blocked main
// thread costs a phone an error and never the other way round. A span is computed at most
// once per published state however many phones ask, and a barogram at most once a minute.
class WatchFeed : public QObject
{
    Q_OBJECT

public:
    static constexpr int SpanCount = 9;

    // All on the main thread: the chart of a table, a barogram as PNG or PDF bytes (with or
    // without the last fix), and the page's texts as a JSON object.
    struct Sources
    {
        std::function<ChartSpan(int chartNb)> span;
        std::function<QByteArray(int table, bool pdf, bool withLastFix)> barogram;
        std::function<QByteArray()> texts;
    };

    // A span's chart for one published state, as JSON, never changed once made.
    struct Span
    {
        quint64 sequence = 0;
        QByteArray json;
    };

    // Made on the main thread, and it lives there.
    explicit WatchFeed(Sources sources, QObject* parent = nullptr);
    ~WatchFeed() override;

    // Any thread. Null when the main thread did not answer within `timeoutMs`.
    std::shared_ptr<const Span> span(int chartNb, quint64 sequence, int timeoutMs);
    QByteArray barogram(int table, bool pdf, bool withLastFix, int timeoutMs);
    // The texts for `language` (a locale name as the published state gives it).
    QByteArray texts(const QString& language, int timeoutMs);

    // Wakes every asker with nothing and refuses all further asking, until open(); main
    // thread, before the server is stopped.
    void close();
    void open();

    // How many times a span was read from the log: for tests of the sharing.
    int spanReads() const;

private:
    struct Shared;
    // Unless `ready` (called under the lock) holds already, has `work` run on the main
    // thread, unless it is `pending` there already, and waits for `ready`.
    bool ask(const std::function<bool()>& ready, bool& pending, const std::function<void()>& work, int timeoutMs);

    Sources sources;
    std::shared_ptr<Shared> shared;
};
