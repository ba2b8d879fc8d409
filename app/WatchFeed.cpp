// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/WatchFeed.h"

#include "app/WatchJson.h"
#include "util/Clock.h"

#include <QtCore/QMetaObject>

#include <chrono>

namespace {
// A barogram is for the logbook: a minute old is fresh enough, and a phone that asks for
// all of them again and again costs the main thread one drawing of each a minute at most.
constexpr qint64 BarogramLifetimeMs = 60000;
}

struct WatchFeed::Shared
{
    struct Picture
    {
        QByteArray bytes;
        qint64 madeMs = 0;
        bool pending = false;
    };

    std::mutex lock;
    std::condition_variable changed;
    bool closed = false;

    std::shared_ptr<const Span> spans[SpanCount];
    quint64 spanWanted[SpanCount] = {};
    bool spanPending[SpanCount] = {};
    int spanReads = 0;

    // By table, then PNG or PDF, then without or with the last fix.
    Picture pictures[SpanCount][2][2];

    QString textsLanguage;
    QString textsWanted;
    QByteArray texts;
    bool textsPending = false;
};

WatchFeed::WatchFeed(Sources sources, QObject* parent)
    : QObject(parent)
    , sources(std::move(sources))
    , shared(std::make_shared<Shared>())
{
}

WatchFeed::~WatchFeed()
{
    close();
}

void WatchFeed::close()
{
    {
        std::lock_guard<std::mutex> guard(shared->lock);
        shared->closed = true;
    }
    shared->changed.notify_all();
}

void WatchFeed::open()
{
    std::lock_guard<std::mutex> guard(shared->lock);
    shared->closed = false;
}

int WatchFeed::spanReads() const
{
    std::lock_guard<std::mutex> guard(shared->lock);
    return shared->spanReads;
}

bool WatchFeed::ask(const std::function<bool()>& ready, bool& pending, const std::function<void()>& work,
                    int timeoutMs)
{
    std::unique_lock<std::mutex> guard(shared->lock);
    if (shared->closed)
        return false;
    if (ready())
        return true;
    // One piece of work in flight for the same thing, however many ask.
    if (!pending) {
        pending = true;
        // Dropped unseen if this object goes first: the askers are woken by close().
        QMetaObject::invokeMethod(this, work, Qt::QueuedConnection);
    }
    const bool answered = shared->changed.wait_for(guard, std::chrono::milliseconds(timeoutMs),
                                                   [&] { return shared->closed || ready(); });
    return answered && !shared->closed;
}

std::shared_ptr<const WatchFeed::Span> WatchFeed::span(int chartNb, quint64 sequence, int timeoutMs)
{
    if (chartNb < 0 || chartNb >= SpanCount)
        return nullptr;
    Shared& state = *shared;
    std::shared_ptr<const Span> found;
    const auto ready = [&] {
        state.spanWanted[chartNb] = qMax(state.spanWanted[chartNb], sequence);
        found = state.spans[chartNb];
        return found && found->sequence >= sequence;
    };
    const auto work = [this, chartNb] {
        // On the main thread, where no tick can come between the reading and the storing:
        // every state published so far is one this chart is up to date with.
        const QByteArray json = WatchJson::span(sources.span(chartNb));
        {
            std::lock_guard<std::mutex> guard(shared->lock);
            auto made = std::make_shared<Span>();
            made->sequence = shared->spanWanted[chartNb];
            made->json = json;
            shared->spans[chartNb] = std::move(made);
            shared->spanPending[chartNb] = false;
            ++shared->spanReads;
        }
        shared->changed.notify_all();
    };
    return ask(ready, state.spanPending[chartNb], work, timeoutMs) ? found : nullptr;
}

QByteArray WatchFeed::barogram(int table, bool pdf, bool withLastFix, int timeoutMs)
{
    if (table < 0 || table >= SpanCount)
        return QByteArray();
    Shared::Picture& picture = shared->pictures[table][pdf ? 1 : 0][withLastFix ? 1 : 0];
    QByteArray bytes;
    const auto ready = [&] {
        if (picture.bytes.isEmpty() || Clock::monotonicMs() - picture.madeMs > BarogramLifetimeMs)
            return false;
        bytes = picture.bytes;
        return true;
    };
    const auto work = [this, &picture, table, pdf, withLastFix] {
        const QByteArray drawn = sources.barogram(table, pdf, withLastFix);
        {
            std::lock_guard<std::mutex> guard(shared->lock);
            picture.bytes = drawn;
            picture.madeMs = Clock::monotonicMs();
            picture.pending = false;
        }
        shared->changed.notify_all();
    };
    return ask(ready, picture.pending, work, timeoutMs) ? bytes : QByteArray();
}

QByteArray WatchFeed::texts(const QString& language, int timeoutMs)
{
    Shared& state = *shared;
    QByteArray found;
    const auto ready = [&] {
        state.textsWanted = language;
        if (state.texts.isEmpty() || state.textsLanguage != language)
            return false;
        found = state.texts;
        return true;
    };
    const auto work = [this] {
        // Should the language change between the asking and this, the texts are wrong for
        // one tick: the next state names the other language, and they are made anew.
        const QByteArray made = sources.texts();
        {
            std::lock_guard<std::mutex> guard(shared->lock);
            shared->texts = made;
            shared->textsLanguage = shared->textsWanted;
            shared->textsPending = false;
        }
        shared->changed.notify_all();
    };
    return ask(ready, state.textsPending, work, timeoutMs) ? found : QByteArray();
}
