// SPDX-License-Identifier: GPL-3.0-or-later
// Opening the rows of a full table on the log page: the log's text of every row, the page's
// model filled from it, and the first frame of the list, as a click on the table list does.

#include "tests/pages/PageHarness.h"

#include <QtCore/QCoreApplication>
#include <QtQuick/QQuickItem>
#include <QtQuick/QQuickWindow>
#include <QtWidgets/QApplication>

#include <benchmark/benchmark.h>

namespace {

constexpr qint64 Start = 1793000000;
PageHarness* harness = nullptr;

void quiet(QtMsgType, const QMessageLogContext&, const QString&) {}

QObject* fileData()
{
    return harness->find(QStringLiteral("fileData"), harness->loadedPage());
}

// Table 1, three hours at one row per 6 seconds: 1,800 rows.
void BM_openRowList(benchmark::State& state)
{
    QObject* list = fileData();
    QQuickItem* details = harness->item(QStringLiteral("fileDetails"), harness->loadedPage());
    for (auto _ : state) {
        QMetaObject::invokeMethod(list, "fileSelected", Q_ARG(int, 1));
        // The frame that shows the list.
        harness->window()->grabWindow();
        state.PauseTiming();
        harness->loadedPage()->property("view").value<QObject*>()->setProperty("currentIndex", 0);
        QCoreApplication::processEvents();
        state.ResumeTiming();
    }
    // Inside the page's own document, where its model lives.
    state.counters["rows"] = PageHarness::evaluate(harness->find(QStringLiteral("ft"), details), QStringLiteral("model_.count")).toInt();
}
BENCHMARK(BM_openRowList)->Unit(benchmark::kMillisecond)->UseRealTime();

} // namespace

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("QT_QUICK_BACKEND", "software");
    QApplication app(argc, argv);
    PageHarness h;
    harness = &h;
    h.writeSetting("windowWidth", 1000);
    h.writeSetting("windowHeight", 700);
    h.writeSetting("windowX", 0);
    h.writeSetting("windowY", 0);
    if (!h.start())
        return 1;
    h.insertRows(QStringLiteral("BARO3H"), Start, Start + 6 * 1799, 6, 1012.0);
    QMetaObject::invokeMethod(h.item(QStringLiteral("dataButton")), "clicked");
    QCoreApplication::processEvents();
    if (!fileData())
        return 1;
    qInstallMessageHandler(quiet);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    qInstallMessageHandler(nullptr);
    harness = nullptr;
    return 0;
}
