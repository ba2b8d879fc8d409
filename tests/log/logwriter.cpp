// SPDX-License-Identifier: GPL-3.0-or-later
// Writes rows into the log in the working directory as fast as it can and reports each
// one that addData said was written, so that a test can kill it at any moment.
#include "app/BackEnd.h"
#include "log/DataSource.h"
#include "util/Clock.h"

#include <QtCore/QCoreApplication>

#include <cstdio>

int main(int argc, char* argv[])
{
    QCoreApplication app(argc, argv);
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {});
    const qint64 start = argc > 1 ? QByteArray(argv[1]).toLongLong() : 1793000000;
    BackEnd back;
    DataSource log(nullptr);
    dataSource = &log;
    for (qint64 second = start;; ++second) {
        Clock::setFixedSecsSinceEpoch(second);
        if (log.addData(768, 1.0, 2.0, 3.0, 4.0, 1000.0 + (second % 100) / 10.0)) {
            std::printf("%lld\n", static_cast<long long>(second));
            std::fflush(stdout);
        }
    }
}
