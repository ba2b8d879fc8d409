// SPDX-License-Identifier: GPL-3.0-or-later
// brinholt-devicesim: a stand-in for the USB pressure device on a pseudo-terminal.
//
// Prints the path to give the application as its serial port, then runs until stdin
// closes or "quit" is read. Commands on stdin, one a line:
//   silent on|off   noise on|off   noend on|off   err on|off
//   pressure HPA    vanish    return    send TEXT    quit
//   sync TOKEN      prints "sync TOKEN" once every command before it is in effect
#include "tools/DeviceSimulator.h"

#include <QtCore/QCommandLineParser>
#include <QtCore/QCoreApplication>
#include <QtCore/QDateTime>
#include <QtCore/QSocketNotifier>
#include <QtCore/QTextStream>
#include <QtCore/QTimer>

#include <optional>

#include <unistd.h>

namespace {

QTextStream& out()
{
    static QTextStream stream(stdout);
    return stream;
}

void printPath(const QString& path)
{
    out() << path << Qt::endl;
}

bool isOn(const QString& word)
{
    return word == QLatin1String("on") || word == QLatin1String("1") || word.isEmpty();
}

// The command line: every option by its name.
void addOptions(QCommandLineParser& parser)
{
    parser.setApplicationDescription(QStringLiteral(
            "Simulates the USB pressure device on a pseudo-terminal. Commands on stdin: silent on|off, "
            "noise on|off, noend on|off, err on|off, pressure HPA, vanish, return, send TEXT, quit."));
    parser.addHelpOption();
    parser.addOptions({
            {QStringLiteral("interval"), QStringLiteral("Milliseconds between readings (1000)."), QStringLiteral("ms"),
             QStringLiteral("1000")},
            {QStringLiteral("seed"), QStringLiteral("Seed of the weather (from the clock)."), QStringLiteral("n")},
            {QStringLiteral("pressure"), QStringLiteral("Mean pressure in hPa (1013.25)."), QStringLiteral("hPa"),
             QStringLiteral("1013.25")},
            {QStringLiteral("reply-delay"), QStringLiteral("Milliseconds before a command is answered (50)."),
             QStringLiteral("ms"), QStringLiteral("50")},
            {QStringLiteral("link"), QStringLiteral("Keep a symbolic link at this path pointing at the terminal."),
             QStringLiteral("path")},
            {QStringLiteral("scenario"),
             QStringLiteral("Weather: steady, or depression (a low already coming in: about 4.4 hPa "
                            "down over the last 3 hours, 4 hPa more over the next 4.5, then a rise)."),
             QStringLiteral("name"), QStringLiteral("steady")},
            {QStringLiteral("silent"), QStringLiteral("Send nothing and answer nothing.")},
            {QStringLiteral("err"), QStringLiteral("Answer every command with ERR.")},
            {QStringLiteral("noise"), QStringLiteral("Send line noise around the sentences.")},
            {QStringLiteral("no-end"), QStringLiteral("Send sentences without a line end.")},
            {QStringLiteral("vanish-after"), QStringLiteral("Close the device's side after this many ms."),
             QStringLiteral("ms")},
            {QStringLiteral("return-after"), QStringLiteral("Come back this many ms after vanishing."),
             QStringLiteral("ms")},
    });
}

// Nothing when the scenario is no known name, which has then been told on stderr.
std::optional<DeviceSimulator::Options> optionsFrom(const QCommandLineParser& parser)
{
    DeviceSimulator::Options options;
    options.intervalMs = qMax(1, parser.value(QStringLiteral("interval")).toInt());
    options.seed = parser.isSet(QStringLiteral("seed")) ? parser.value(QStringLiteral("seed")).toUInt()
                                                        : static_cast<quint32>(QDateTime::currentMSecsSinceEpoch());
    options.basePressure = parser.value(QStringLiteral("pressure")).toDouble();
    options.replyDelayMs = qMax(0, parser.value(QStringLiteral("reply-delay")).toInt());
    options.linkPath = parser.value(QStringLiteral("link"));
    const QString scenario = parser.value(QStringLiteral("scenario"));
    if (!DeviceSimulator::scenarioFromName(scenario, &options.scenario)) {
        QTextStream(stderr) << "unknown scenario " << scenario << Qt::endl;
        return std::nullopt;
    }
    options.silent = parser.isSet(QStringLiteral("silent"));
    options.answerErr = parser.isSet(QStringLiteral("err"));
    options.noise = parser.isSet(QStringLiteral("noise"));
    options.noLineEnd = parser.isSet(QStringLiteral("no-end"));
    return options;
}

// One command line read on stdin.
void obey(DeviceSimulator& simulator, const QString& line)
{
    const QString word = line.section(QLatin1Char(' '), 0, 0);
    const QString rest = line.section(QLatin1Char(' '), 1);
    if (word == QLatin1String("silent"))
        simulator.setSilent(isOn(rest));
    else if (word == QLatin1String("noise"))
        simulator.setNoise(isOn(rest));
    else if (word == QLatin1String("noend"))
        simulator.setNoLineEnd(isOn(rest));
    else if (word == QLatin1String("err"))
        simulator.setAnswerErr(isOn(rest));
    else if (word == QLatin1String("pressure"))
        simulator.setBasePressure(rest.toDouble());
    else if (word == QLatin1String("vanish"))
        simulator.vanish();
    else if (word == QLatin1String("return"))
        simulator.comeBack();
    else if (word == QLatin1String("send"))
        simulator.sendRaw(rest.toUtf8() + "\r\n");
    else if (word == QLatin1String("sync"))
        out() << "sync " << rest << Qt::endl;
    else if (word == QLatin1String("quit"))
        QCoreApplication::quit();
}

} // namespace

int main(int argc, char* argv[])
{
    QCoreApplication app(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("brinholt-devicesim"));

    QCommandLineParser parser;
    addOptions(parser);
    parser.process(app);

    const std::optional<DeviceSimulator::Options> options = optionsFrom(parser);
    if (!options)
        return 2;
    DeviceSimulator simulator(*options);
    if (!simulator.open()) {
        QTextStream(stderr) << "no pseudo-terminal available" << Qt::endl;
        return 1;
    }
    printPath(simulator.devicePath());
    QObject::connect(&simulator, &DeviceSimulator::pathChanged, &app, [](const QString& path) { printPath(path); });

    if (parser.isSet(QStringLiteral("vanish-after"))) {
        const int returnMs =
                parser.isSet(QStringLiteral("return-after")) ? parser.value(QStringLiteral("return-after")).toInt() : -1;
        QTimer::singleShot(parser.value(QStringLiteral("vanish-after")).toInt(), &simulator, [&simulator, returnMs] {
            simulator.vanish();
            if (returnMs >= 0)
                QTimer::singleShot(returnMs, &simulator, [&simulator] { simulator.comeBack(); });
        });
    }

    QSocketNotifier input(STDIN_FILENO, QSocketNotifier::Read);
    QByteArray pending;
    QObject::connect(&input, &QSocketNotifier::activated, &app, [&] {
        char chunk[1024];
        const ssize_t n = ::read(STDIN_FILENO, chunk, sizeof chunk);
        if (n <= 0) {
            input.setEnabled(false);
            QCoreApplication::quit();
            return;
        }
        pending.append(chunk, static_cast<int>(n));
        int end;
        while ((end = pending.indexOf('\n')) >= 0) {
            const QString line = QString::fromUtf8(pending.left(end)).trimmed();
            pending.remove(0, end + 1);
            obey(simulator, line);
        }
    });

    return QCoreApplication::exec();
}
