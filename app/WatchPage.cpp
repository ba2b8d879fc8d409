// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/WatchPage.h"

#include "log/Barogram.h"
#include "log/DataSource.h"
#include "util/SettingKeys.h"

#include <QtCore/QBuffer>
#include <QtCore/QSettings>

namespace {

// The log is looked up at each call: it is made after the back end and may go first.
WatchFeed::Sources logSources(DataSource* const* log)
{
    WatchFeed::Sources sources;
    sources.span = [log](int chartNb) {
        if (DataSource* dataSource = *log)
            return dataSource->readChart(chartNb);
        ChartSpan none;
        none.chartNb = chartNb;
        return none;
    };
    sources.barogram = [log](int table, bool pdf, bool withLastFix) {
        DataSource* dataSource = *log;
        if (!dataSource)
            return QByteArray();
        QBuffer buffer;
        buffer.open(QIODevice::WriteOnly);
        const Barogram barogram(*dataSource, table, withLastFix);
        const bool written = pdf ? barogram.writePdf(buffer) : barogram.writePng(buffer);
        return written ? buffer.data() : QByteArray();
    };
    sources.texts = &WatchDocument::texts;
    return sources;
}

} // namespace

WatchPage::WatchPage(DataSource* const& log, QObject* parent)
    : WatchPage(logSources(&log), parent)
{
}

WatchPage::WatchPage(WatchFeed::Sources sources, QObject* parent)
    : QObject(parent)
    , copies(std::move(sources))
    , routes(copies, document)
    , http([this](const QByteArray&, const QByteArray& path) { return routes.answer(path); })
{
}

WatchPage::~WatchPage()
{
    stop();
}

void WatchPage::apply(QSettings& settings)
{
    apply(settings.value(SettingKey::WatchPageOn, SettingDefault::WatchPageOn).toInt() == 1,
          settings.value(SettingKey::WatchPagePort, SettingDefault::WatchPagePort).toInt(),
          settings.value(SettingKey::WatchPagePosition, SettingDefault::WatchPagePosition).toInt() == 1);
}

void WatchPage::apply(bool on, int port, bool withPosition)
{
    routes.setPositionServed(withPosition);
    const int chosen = qBound(SettingDefault::WatchPagePortLowest, port, SettingDefault::WatchPagePortHighest);
    if (!on) {
        stop();
        return;
    }
    if (http.state() == WatchServer::State::Serving && http.port() == chosen)
        return;
    stop();
    copies.open();
    http.start(quint16(chosen));
}

void WatchPage::stop()
{
    // A request waiting for the main thread, which is this one, is let go first: stopping
    // waits for every request to end.
    copies.close();
    http.stop();
}

QString WatchPage::statusText() const
{
    const QString port = QString::number(http.port());
    switch (http.state()) {
    case WatchServer::State::Off:
        return tr("off");
    case WatchServer::State::InUse:
        return tr("port %1 is in use").arg(port);
    case WatchServer::State::Failed:
        return tr("cannot serve on port %1: %2").arg(port, http.error());
    case WatchServer::State::Serving:
        break;
    }
    // Two forms are all that English and French need, beside none.
    const int phones = http.recentClients();
    if (phones == 0)
        return tr("serving on port %1, no phone connected").arg(port);
    if (phones == 1)
        return tr("serving on port %1, 1 phone connected").arg(port);
    return tr("serving on port %1, %2 phones connected").arg(port).arg(phones);
}
