// SPDX-License-Identifier: GPL-3.0-or-later
// brinholt-demolog: a fresh data folder with sixteen days of made-up history in its log,
// and settings that read the device simulator.
//
//   brinholt-demolog <folder> [--end SECS] [--pressure HPA] [--scenario NAME] [--serial-port PATH]
#include "tools/DemoLog.h"

#include <QtCore/QCommandLineParser>
#include <QtCore/QCoreApplication>
#include <QtCore/QDateTime>
#include <QtCore/QTextStream>

int main(int argc, char* argv[])
{
    QCoreApplication app(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("brinholt-demolog"));
    // The application's own start-up lines are of no use here.
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {});

    QCommandLineParser parser;
    parser.setApplicationDescription(
            QStringLiteral("Makes a log with sixteen days of history in a fresh data folder, for trying Brinholt."));
    parser.addHelpOption();
    parser.addPositionalArgument(QStringLiteral("folder"), QStringLiteral("The data folder to fill."));
    const QCommandLineOption end(QStringLiteral("end"), QStringLiteral("Time of the newest row (now)."),
                                 QStringLiteral("secs"));
    const QCommandLineOption pressure(QStringLiteral("pressure"), QStringLiteral("Pressure at the newest row (1013.25)."),
                                      QStringLiteral("hPa"), QStringLiteral("1013.25"));
    const QCommandLineOption serialPort(QStringLiteral("serial-port"),
                                        QStringLiteral("Settings that read the pressure device at this path."),
                                        QStringLiteral("path"));
    const QCommandLineOption scenario(QStringLiteral("scenario"),
                                      QStringLiteral("The device simulator's weather that the history runs into: "
                                                     "steady or depression (steady)."),
                                      QStringLiteral("name"), QStringLiteral("steady"));
    parser.addOptions({end, pressure, scenario, serialPort});
    parser.process(app);
    if (parser.positionalArguments().size() != 1)
        parser.showHelp(2);
    DeviceSimulator::Scenario weather = DeviceSimulator::Scenario::Steady;
    if (!DeviceSimulator::scenarioFromName(parser.value(scenario), &weather)) {
        QTextStream(stderr) << "brinholt-demolog: unknown scenario " << parser.value(scenario) << Qt::endl;
        return 2;
    }

    const qint64 newest = parser.isSet(end) ? parser.value(end).toLongLong() : QDateTime::currentSecsSinceEpoch();
    QString error;
    if (!DemoLog::write(parser.positionalArguments().constFirst(), newest, parser.value(pressure).toDouble(), weather,
                        parser.value(serialPort), &error)) {
        QTextStream(stderr) << "brinholt-demolog: " << error << Qt::endl;
        return 1;
    }
    return 0;
}
