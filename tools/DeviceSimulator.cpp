// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/DeviceSimulator.h"

#include <QtCore/QFile>
#include <QtCore/QList>
#include <QtCore/QSocketNotifier>

#include <cerrno>
#include <cmath>
#include <fcntl.h>
#include <stdlib.h>
#include <termios.h>
#include <unistd.h>

namespace {

constexpr double Pi = 3.14159265358979323846;

// Raw, so that nothing in the terminal layer rewrites the bytes in either direction.
void makeRaw(int fd)
{
    termios settings{};
    if (tcgetattr(fd, &settings) == 0) {
        cfmakeraw(&settings);
        tcsetattr(fd, TCSANOW, &settings);
    }
}

} // namespace

DeviceSimulator::DeviceSimulator(const Options& options, QObject* parent)
    : QObject(parent)
    , options(options)
    , random(options.seed)
{
    sendTimer.setInterval(options.intervalMs);
    connect(&sendTimer, &QTimer::timeout, this, &DeviceSimulator::sendPressure);
}

DeviceSimulator::~DeviceSimulator()
{
    closeTerminal();
    if (!options.linkPath.isEmpty())
        QFile::remove(options.linkPath);
}

bool DeviceSimulator::open()
{
    masterFd = posix_openpt(O_RDWR | O_NOCTTY | O_NONBLOCK);
    if (masterFd < 0)
        return false;
    if (grantpt(masterFd) != 0 || unlockpt(masterFd) != 0) {
        ::close(masterFd);
        masterFd = -1;
        return false;
    }
    slavePath = QString::fromLocal8Bit(ptsname(masterFd));
    slaveHoldFd = ::open(ptsname(masterFd), O_RDWR | O_NOCTTY | O_NONBLOCK);
    if (slaveHoldFd >= 0)
        makeRaw(slaveHoldFd);
    makeRaw(masterFd);

    if (!options.linkPath.isEmpty()) {
        QFile::remove(options.linkPath);
        QFile::link(slavePath, options.linkPath);
    }

    readNotifier = new QSocketNotifier(masterFd, QSocketNotifier::Read, this);
    connect(readNotifier, &QSocketNotifier::activated, this, &DeviceSimulator::readCommands);
    sendTimer.start();
    return true;
}

QString DeviceSimulator::devicePath() const
{
    return options.linkPath.isEmpty() ? slavePath : options.linkPath;
}

void DeviceSimulator::closeTerminal()
{
    sendTimer.stop();
    delete readNotifier;
    readNotifier = nullptr;
    if (slaveHoldFd >= 0)
        ::close(slaveHoldFd);
    slaveHoldFd = -1;
    if (masterFd >= 0)
        ::close(masterFd);
    masterFd = -1;
    incoming.clear();
}

void DeviceSimulator::vanish()
{
    closeTerminal();
    // As a device's name goes when it is unplugged. Left behind, the link would lead to the
    // next terminal that any process opens under the same number.
    if (!options.linkPath.isEmpty())
        QFile::remove(options.linkPath);
}

bool DeviceSimulator::comeBack()
{
    closeTerminal();
    if (!open())
        return false;
    emit pathChanged(devicePath());
    return true;
}

double DeviceSimulator::currentPressure() const
{
    // One sample is one second of weather, whatever the interval, with a bounded drift.
    const double raw = options.basePressure + weather(options.scenario, static_cast<double>(samples)) + drift;
    // Slope in millibars per bar, pivoting on the reference pressure.
    return raw + calOffset + calSlope * (raw - calReference) / 1000.0;
}

double DeviceSimulator::weather(Scenario scenario, double seconds)
{
    // The twice-daily atmospheric tide, under any weather.
    const double tide = 1.2 * std::sin(2.0 * Pi * seconds / (12.0 * 3600.0));
    if (scenario == Scenario::Steady)
        return tide + 6.0 * std::sin(2.0 * Pi * seconds / (36.0 * 3600.0));
    // One smooth trough, `since` seconds after its fall began: gentle at first, steepest a
    // quarter of the way through, and back where it started once the low has gone by.
    const auto trough = [](double since) {
        const double span = DepressionHours * 3600.0;
        if (since <= 0.0 || since >= span)
            return 0.0;
        return -DepressionDepth * (1.0 - std::cos(2.0 * Pi * since / span)) / 2.0;
    };
    const double lead = DepressionLeadHours * 3600.0;
    return tide + trough(seconds + lead) - trough(lead);
}

bool DeviceSimulator::scenarioFromName(const QString& name, Scenario* scenario)
{
    if (name == QLatin1String("steady"))
        *scenario = Scenario::Steady;
    else if (name == QLatin1String("depression"))
        *scenario = Scenario::Depression;
    else
        return false;
    return true;
}

QByteArray DeviceSimulator::checksum(const QByteArray& body)
{
    unsigned sum = 0;
    for (int i = 1; i < body.size(); ++i)
        sum ^= static_cast<unsigned char>(body.at(i));
    return QByteArray::number(sum, 16).rightJustified(2, '0').toUpper();
}

QByteArray DeviceSimulator::sentence(const QByteArray& body)
{
    return body + '*' + checksum(body);
}

QByteArray DeviceSimulator::noiseBytes(int count)
{
    // Anything but the characters that start a sentence or end a line.
    std::uniform_int_distribution<int> byte(1, 255);
    QByteArray bytes;
    while (bytes.size() < count) {
        const char c = static_cast<char>(byte(random));
        if (c != '$' && c != '!' && c != '\r' && c != '\n' && c != '\\')
            bytes.append(c);
    }
    return bytes;
}

void DeviceSimulator::sendPressure()
{
    ++samples;
    // About a tenth of a hectopascal in an hour: a sensor's wander, never enough to raise
    // or end a pressure-fall warning by itself.
    std::normal_distribution<double> step(0.0, 0.002);
    drift = qBound(-4.0, drift + step(random), 4.0);
    if (options.silent || options.noPressure || masterFd < 0)
        return;

    const double hPa = currentPressure();
    const QByteArray bars = QByteArray::number(hPa / 1000.0, 'f', 5);
    const QByteArray inches = QByteArray::number(hPa * 0.029529983071445, 'f', 2);
    writeLine(sentence("$WIXDR,P," + bars + ",B,Barometer"));
    writeLine(sentence("$WIMDA," + inches + ",I," + QByteArray::number(hPa / 1000.0, 'f', 4)
                       + ",B,,,,,,,,,,,,,,,,"));
    if (options.noise)
        writeBytes(noiseBytes(12) + "\r\n");
}

void DeviceSimulator::writeLine(const QByteArray& line)
{
    QByteArray bytes = line;
    if (options.noise)
        bytes.prepend(noiseBytes(2));
    if (!options.noLineEnd)
        bytes.append("\r\n");
    writeBytes(bytes);
}

void DeviceSimulator::writeBytes(const QByteArray& bytes)
{
    if (masterFd < 0)
        return;
    // Nobody reading: the terminal's queue fills and the rest is dropped, as a device
    // talking to an unopened port loses it.
    const ssize_t written = ::write(masterFd, bytes.constData(), static_cast<size_t>(bytes.size()));
    Q_UNUSED(written)
}

void DeviceSimulator::sendRaw(const QByteArray& bytes)
{
    writeBytes(bytes);
}

void DeviceSimulator::readCommands()
{
    char chunk[512];
    for (;;) {
        const ssize_t n = ::read(masterFd, chunk, sizeof chunk);
        if (n <= 0)
            break;
        incoming.append(chunk, static_cast<int>(n));
    }
    int end;
    while ((end = incoming.indexOf('\n')) >= 0) {
        QByteArray line = incoming.left(end);
        incoming.remove(0, end + 1);
        if (line.endsWith('\r'))
            line.chop(1);
        if (!line.isEmpty())
            handleCommand(line);
    }
    // A command never ended: keep the buffer bounded.
    if (incoming.size() > 4096)
        incoming.clear();
}

void DeviceSimulator::handleCommand(const QByteArray& line)
{
    emit commandReceived(line);
    if (options.silent || !line.startsWith("$PWEGB,"))
        return;
    const int star = line.lastIndexOf('*');
    const QByteArray body = star >= 0 ? line.left(star) : line;
    const bool checksumOk = star >= 0 && line.mid(star + 1, 2).toUpper() == checksum(body);
    if (options.answerErr || !checksumOk) {
        reply("$PWEGB,ERR");
        return;
    }
    const QList<QByteArray> fields = body.split(',');
    if (body == "$PWEGB,CAL?") {
        const QByteArray report = "$PWEGB,CAL," + QByteArray::number(calOffset, 'f', 2) + ','
                + QByteArray::number(calSlope, 'g', 6) + ',' + QByteArray::number(calReference, 'f', 2) + ','
                + QByteArray::number(currentPressure(), 'f', 2);
        reply(report);
    } else if (fields.value(1) == "UCAL" && fields.size() == 5) {
        bool okOffset = false, okSlope = false, okPressure = false;
        const double offset = fields.at(2).toDouble(&okOffset);
        const double slope = fields.at(3).toDouble(&okSlope);
        const double reference = fields.at(4).toDouble(&okPressure);
        if (!okOffset || !okSlope || !okPressure) {
            reply("$PWEGB,ERR");
            return;
        }
        calOffset = offset;
        calSlope = slope;
        calReference = reference;
        reply("$PWEGB,OK");
    } else if (body == "$PWEGB,FRST") {
        calOffset = FactoryOffset;
        calSlope = FactorySlope;
        calReference = FactoryReference;
        reply("$PWEGB,OK");
    } else {
        reply("$PWEGB,ERR");
    }
}

void DeviceSimulator::reply(const QByteArray& body)
{
    const QByteArray line = sentence(body);
    QTimer::singleShot(options.replyDelayMs, this, [this, line] { writeLine(line); });
}
