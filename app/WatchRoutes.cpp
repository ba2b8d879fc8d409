// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/WatchRoutes.h"

#include "app/WatchDocument.h"
#include "app/WatchFeed.h"
#include "app/WatchJson.h"
#include "util/StatePublisher.h"

const char* const WatchRoutes::TableNames[9] = {"BARO30M", "BARO3H", "BARO6H", "BAR12H", "BARO1D",
                                                "BARO2D",  "BARO4D", "BARO8D", "BAR16D"};

namespace {

const QByteArray Json = "application/json; charset=utf-8";

WatchResponse busy()
{
    return WatchResponse::text(503, "Brinholt is busy; ask again.");
}

// "/api/table/3" gives 3; anything but one digit from 0 to 8 after the prefix gives -1.
int tableNumber(const QByteArray& path, const QByteArray& prefix)
{
    if (!path.startsWith(prefix) || path.size() != prefix.size() + 1)
        return -1;
    const char digit = path.at(prefix.size());
    return digit >= '0' && digit <= '8' ? digit - '0' : -1;
}

int tableNamed(const QByteArray& name)
{
    for (int i = 0; i < 9; ++i) {
        if (name == WatchRoutes::TableNames[i])
            return i;
    }
    return -1;
}

} // namespace

WatchRoutes::WatchRoutes(WatchFeed& feed, const WatchDocument& document)
    : feed(feed)
    , document(document)
{
}

std::shared_ptr<const ShownState> WatchRoutes::state() const
{
    const StatePublisher* publisher = StatePublisher::installed();
    return publisher ? publisher->current() : std::make_shared<const ShownState>();
}

WatchResponse WatchRoutes::answer(const QByteArray& path) const
{
    if (path == "/")
        return page();
    if (path == "/api/now")
        return now();
    const int chartNb = tableNumber(path, "/api/table/");
    if (chartNb >= 0)
        return table(chartNb);
    if (path.startsWith("/barogram/")) {
        const QByteArray file = path.mid(int(qstrlen("/barogram/")));
        const bool png = file.endsWith(".png");
        const bool pdf = file.endsWith(".pdf");
        const int named = png || pdf ? tableNamed(file.left(file.size() - 4)) : -1;
        if (named >= 0)
            return barogram(named, pdf);
    }
    return WatchResponse::text(404, "Nothing here.");
}

WatchResponse WatchRoutes::page() const
{
    const std::shared_ptr<const ShownState> shown = state();
    const QByteArray texts = feed.texts(shown->language, SpanWaitMs);
    if (texts.isEmpty())
        return busy();
    WatchResponse response;
    response.contentType = "text/html; charset=utf-8";
    response.body = document.page(texts, WatchJson::state(*shown, positionServed()));
    return response;
}

WatchResponse WatchRoutes::now() const
{
    WatchResponse response;
    response.contentType = Json;
    response.body = WatchJson::state(*state(), positionServed());
    return response;
}

WatchResponse WatchRoutes::table(int chartNb) const
{
    const std::shared_ptr<const WatchFeed::Span> span = feed.span(chartNb, state()->sequence, SpanWaitMs);
    if (!span)
        return busy();
    WatchResponse response;
    response.contentType = Json;
    response.body = span->json;
    return response;
}

WatchResponse WatchRoutes::barogram(int table, bool pdf) const
{
    const QByteArray bytes = feed.barogram(table, pdf, positionServed(), BarogramWaitMs);
    if (bytes.isEmpty())
        return busy();
    WatchResponse response;
    response.contentType = pdf ? "application/pdf" : "image/png";
    response.body = bytes;
    response.fileName = QByteArray("barogram_") + TableNames[table] + (pdf ? ".pdf" : ".png");
    return response;
}
