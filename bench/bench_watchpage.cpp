// SPDX-License-Identifier: GPL-3.0-or-later
// The watch page's server on loopback: requests per second for /api/now and for the page,
// each on one kept-alive connection as a phone's browser keeps it; and what the running
// application costs the processor while no phone asks, with the page on and with it off.

#include "tests/support/FreePort.h"
#include "tests/support/HttpClient.h"
#include "tests/support/LogFixture.h"

#include "app/BackEnd.h"
#include "app/WatchPage.h"
#include "util/StatePublisher.h"

#include <QtCore/QElapsedTimer>
#include <QtCore/QEventLoop>
#include <QtCore/QTimer>
#include <QtWidgets/QApplication>

#include <benchmark/benchmark.h>

#include <sys/resource.h>
#include <sys/socket.h>
#include <unistd.h>

namespace {

LogFixture* fixture = nullptr;
quint16 port = 0;

void quiet(QtMsgType, const QMessageLogContext&, const QString&)
{
}

// One request on a kept connection; false when the answer did not come whole.
bool ask(int fd, const QByteArray& request, QByteArray& buffer)
{
    if (::send(fd, request.constData(), size_t(request.size()), MSG_NOSIGNAL) != request.size())
        return false;
    buffer.clear();
    qint64 wanted = -1;
    char chunk[65536];
    for (;;) {
        const int end = buffer.indexOf("\r\n\r\n");
        if (wanted < 0 && end >= 0) {
            const int at = buffer.indexOf("Content-Length: ");
            wanted = end + 4 + buffer.mid(at + 16, buffer.indexOf('\r', at) - at - 16).toLongLong();
        }
        if (wanted >= 0 && buffer.size() >= wanted)
            return buffer.startsWith("HTTP/1.1 200");
        const ssize_t got = ::recv(fd, chunk, sizeof chunk, 0);
        if (got <= 0)
            return false;
        buffer.append(chunk, int(got));
    }
}

void requestsPerSecond(benchmark::State& state, const QByteArray& path)
{
    const int fd = HttpClient::connectFrom(port);
    const QByteArray request = "GET " + path + " HTTP/1.1\r\nHost: 127.0.0.1\r\n\r\n";
    QByteArray answer;
    for (auto _ : state) {
        if (!ask(fd, request, answer)) {
            state.SkipWithError("no whole answer");
            break;
        }
    }
    ::close(fd);
    state.SetItemsProcessed(state.iterations());
    state.SetBytesProcessed(state.iterations() * answer.size());
}

void BM_apiNow(benchmark::State& state)
{
    requestsPerSecond(state, "/api/now");
}
BENCHMARK(BM_apiNow)->UseRealTime();

void BM_page(benchmark::State& state)
{
    requestsPerSecond(state, "/");
}
BENCHMARK(BM_page)->UseRealTime();

double processorSeconds()
{
    rusage usage {};
    getrusage(RUSAGE_SELF, &usage);
    return double(usage.ru_utime.tv_sec + usage.ru_stime.tv_sec)
            + double(usage.ru_utime.tv_usec + usage.ru_stime.tv_usec) / 1e6;
}

// Ten seconds of the running application, five ticks that log a row each, with no client;
// the processor time it took per second of the clock.
void BM_idle(benchmark::State& state)
{
    const bool on = state.range(0) == 1;
    fixture->backEnd().getWatchPage().apply(on, port, true);
    double used = 0.0;
    double elapsed = 0.0;
    for (auto _ : state) {
        fixture->backEnd().setCurrentPressure(1013.0, Serial);
        const double before = processorSeconds();
        QElapsedTimer clock;
        clock.start();
        QEventLoop loop;
        QTimer::singleShot(10000, &loop, &QEventLoop::quit);
        loop.exec();
        used += processorSeconds() - before;
        elapsed += clock.elapsed() / 1000.0;
    }
    state.counters["cpu_ms_per_s"] = 1000.0 * used / elapsed;
    state.SetLabel(on ? "watch page on" : "watch page off");
    fixture->backEnd().getWatchPage().apply(true, port, true);
}
BENCHMARK(BM_idle)->Arg(0)->Arg(1)->Iterations(2)->Unit(benchmark::kSecond);

} // namespace

int main(int argc, char** argv)
{
    QApplication app(argc, argv);
    qInstallMessageHandler(quiet);
    LogFixture log;
    fixture = &log;
    port = FreePort::tcp();
    fixture->backEnd().getWatchPage().apply(true, port, true);
    // A tick published, and the page's texts made once on this thread, as a first phone has them made.
    fixture->backEnd().setCurrentPressure(1013.0, Serial);
    fixture->backEnd().slot_timerData();
    HttpClient::pumping([] { return HttpClient::get(port, "/"); });
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    fixture = nullptr;
    return 0;
}
