// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/BackEnd.h"

#include "app/ConnectionStatusText.h"
#include "log/DataSource.h"
#include "nmea/Nmea0183.h"
#include "nmea/NmeaReceiver.h"
#include "nmea/NmeaSenderUdp.h"
#include "nmea/NmeaSourceSerial.h"
#include "util/Clock.h"
#include "util/Pressure.h"
#include "util/SanitizerSync.h"
#include "util/SettingKeys.h"
#include "util/SettingsReader.h"
#include "util/Truncation.h"
#include "util/Util.h"

#include <QtCore/QDebug>
#include <QtCore/QFile>
#include <QtCore/QSettings>
#include <QtCore/QThread>
#include <QtCore/QtMath>
#include <QtPositioning/QGeoPositionInfoSource>
#include <QtGui/QFontMetrics>
#include <QtGui/QPalette>
#include <qpa/qplatformtheme.h>
#include <private/qguiapplication_p.h>
#include <QtSensors/QPressureReading>
#include <QtSerialPort/QSerialPortInfo>
#include <QtWidgets/QApplication>

#include <cmath>

#include <sys/stat.h>

BackEnd* backend = nullptr;
DataSource* dataSource = nullptr;

namespace {

constexpr qint64 ReadingLifetimeMs = Pressure::ReadingLifetimeMs;

// Util's settings: those of whichever BackEnd is the global one at the moment of the call,
// and the caller's default while there is none (before start-up has made one).
class CurrentBackEndSettings : public SettingsReader
{
public:
    QVariant value(const QString& key, const QVariant& def) const override
    {
        if (!backend || !backend->getSettings())
            return def;
        return backend->getSettings()->value(key, def);
    }
};

const CurrentBackEndSettings currentBackEndSettings;

// NMEA input and the log reach the application only through these. Installed first, as
// the constructor's own startNmea sets a worker thread asking them; withdrawn once this
// object's receiver has stopped, so that an older receiver still ending finds none rather
// than a freed object.
void installAsHost(BackEnd* back)
{
    ReadingSink::install(back);
    ReceiverHost::install(back);
    CalibrationLink::install(back);
    LogHost::install(back);
    StatePublisher::install(&back->getStatePublisher());
}

void withdrawAsHost(BackEnd* back)
{
    ReadingSink::withdraw(back);
    ReceiverHost::withdraw(back);
    CalibrationLink::withdraw(back);
    LogHost::withdraw(back);
    StatePublisher::withdraw(&back->getStatePublisher());
}

bool isSource(int type)
{
    return type >= Internal && type <= Udp;
}

// Keys getSetting gives as a double; the last three are the pressure-fall warning's bounds.
QSet<QString> doubleSettingKeys()
{
    return {SettingKey::Elevation, SettingKey::Offset, SettingKey::WarningFall3h,
            SettingKey::AlarmFall3h, SettingKey::AlarmFall1h};
}

} // namespace

BackEnd::BackEnd(QQmlApplicationEngine* engine)
    : QObject(nullptr)
    , engine(engine)
{
    qWarning().noquote() << "BackEnd starting";
    backend = this;
    SettingsReader::install(&currentBackEndSettings);
    installAsHost(this);
    appPath = QStringLiteral("./");
    tickCounter = 768;

    doubleKeys = doubleSettingKeys();
    stringKeys = {SettingKey::SerialPort, SettingKey::SerialSpeed,
                  SettingKey::TcpIpAddress};

    timerData.setInterval(2000);
    timerData.setTimerType(Qt::PreciseTimer);
    connect(&timerData, &QTimer::timeout, this, &BackEnd::slot_timerData, Qt::UniqueConnection);

    settings = new QSettings(appPath + QStringLiteral("brinholt.ini"), QSettings::IniFormat, this);

    settings->value(SettingKey::Version, SettingDefault::Version);
    settings->setValue(SettingKey::Version, getVersion());
    settingsMirror.load(*settings);

    startLocationServices();

    if (pressureSensor.connectToBackend()) {
        connect(&pressureSensor, &QSensor::readingChanged, this, &BackEnd::slot_pressureReading,
                Qt::UniqueConnection);
        timerSensor.setSingleShot(true);
        timerSensor.setTimerType(Qt::PreciseTimer);
        timerSensor.setInterval(800);
        connect(&timerSensor, &QTimer::timeout, &pressureSensor, &QSensor::start, Qt::UniqueConnection);
        pressureSensor.start();
        sensorStarted = true;
    } else {
        qWarning().noquote() << "no pressure sensor";
    }

    timerOperation.setSingleShot(true);
    timerOperation.setInterval(5000);
    connect(&timerOperation, &QTimer::timeout, this, &BackEnd::operationTimeout);

    timerData.start();

    startNmea();

    qWarning().noquote() << "BackEnd created";
}

void BackEnd::publishWarning(const WarningState& state)
{
    warningState.store((state.changedAt << 3) | (state.acknowledged ? 4 : 0) | (state.level & 3),
                       std::memory_order_release);
}

WarningState BackEnd::getWarningState() const
{
    const qint64 packed = warningState.load(std::memory_order_acquire);
    return WarningState{int(packed & 3), (packed & 4) != 0, packed >> 3};
}

BackEnd::BackEnd(SettingsOnly)
    : QObject(nullptr)
{
    backend = this;
    installAsHost(this);
    appPath = QStringLiteral("./");
    doubleKeys = doubleSettingKeys();
    stringKeys = {SettingKey::SerialPort, SettingKey::SerialSpeed, SettingKey::TcpIpAddress};
    settings = new QSettings(appPath + QStringLiteral("brinholt.ini"), QSettings::IniFormat, this);
    settingsMirror.load(*settings);
}

BackEnd::~BackEnd()
{
    emit saveWindowSize();
    // The receiver's thread reads settings through this object: it must be gone before
    // they are, or a last sentence at shutdown would read freed memory.
    if (receiver) {
        QThread* thread = receiver->thread();
        receiver->quitThread();
        receiver = nullptr;
        if (thread->wait(10000))
            SanitizerSync::acquire(thread);
    }
    withdrawAsHost(this);
    settings->sync();
    delete settings;
    settings = nullptr;
    qWarning().noquote() << "backend deleted";
}

// ---- Readings -------------------------------------------------------------------------

void BackEnd::setCurrentPressure(const double& value, const NmeaSourceType& type)
{
    if (!isSource(type))
        return;
    pressure[type].store(value, std::memory_order_relaxed);
    if (value < 0.0)
        pressureAge[type].invalidate();
    else
        pressureAge[type].restart();
}

BackEnd::Reading BackEnd::currentReading() const
{
    for (int type = Internal; type <= Udp; ++type) {
        const double value = pressure[type].load(std::memory_order_relaxed);
        if (value > 0.0 && pressureAge[type].isValid()) {
            const qint64 age = pressureAge[type].elapsed();
            if (age < ReadingLifetimeMs)
                return Reading{value, type, age};
        }
    }
    return Reading{};
}

double BackEnd::getCurrentPressure()
{
    return currentReading().value;
}

bool BackEnd::hasUsablePressure()
{
    return !(getCurrentPressure() < Pressure::UsableFrom);
}

void BackEnd::setPositionData(const QPointF& position, const double& sog, const double& cog,
                              const NmeaSourceType& type)
{
    if (!isSource(type))
        return;
    SeqLock::WriteGuard guard(fixLock);
    Fix& fix = fixes[type];
    fix.hasFix.store(true, std::memory_order_relaxed);
    fix.longitude.store(position.x(), std::memory_order_relaxed);
    fix.latitude.store(position.y(), std::memory_order_relaxed);
    fix.cog.store(cog, std::memory_order_relaxed);
    fix.sog.store(sog, std::memory_order_relaxed);
}

void BackEnd::clearHasFix(const NmeaSourceType& type)
{
    if (!isSource(type))
        return;
    SeqLock::WriteGuard guard(fixLock);
    Fix& fix = fixes[type];
    fix.hasFix.store(false, std::memory_order_relaxed);
    fix.longitude.store(0.0, std::memory_order_relaxed);
    fix.latitude.store(0.0, std::memory_order_relaxed);
}

void BackEnd::clearAllFix()
{
    SeqLock::WriteGuard guard(fixLock);
    for (Fix& fix : fixes) {
        fix.hasFix.store(false, std::memory_order_relaxed);
        fix.longitude.store(0.0, std::memory_order_relaxed);
        fix.latitude.store(0.0, std::memory_order_relaxed);
    }
}

BackEnd::ChosenFix BackEnd::chooseFix() const
{
    ChosenFix chosen;
    fixLock.read([&] {
        chosen = ChosenFix();
        for (const Fix& fix : fixes) {
            if (fix.hasFix.load(std::memory_order_relaxed)) {
                chosen.found = true;
                chosen.position = QPointF(fix.longitude.load(std::memory_order_relaxed),
                                          fix.latitude.load(std::memory_order_relaxed));
                chosen.cog = fix.cog.load(std::memory_order_relaxed);
                chosen.sog = fix.sog.load(std::memory_order_relaxed);
                return;
            }
        }
    });
    return chosen;
}

QPointF BackEnd::getPosition() const
{
    return chooseFix().position;
}

std::pair<double, double> BackEnd::getCogSog() const
{
    const ChosenFix chosen = chooseFix();
    return {chosen.cog, chosen.sog};
}

// ---- The tick -------------------------------------------------------------------------

void BackEnd::slot_timerData()
{
    if (settings->value(SettingKey::Theme, SettingDefault::Theme).toInt() == 2) {
        const int answer = isSystemDarkMode() ? 1 : 0;
        if (answer != previousTheme) {
            previousTheme = answer;
            emit systemThemeChanged(answer);
        }
    }

    const QString date = Util::formatDateTimeSecs(QDateTime::currentDateTimeUtc());

    const ChosenFix chosen = chooseFix();

    // Exact zero in both components is the one position that is taken for none.
    const QString position = (!chosen.found || (chosen.position.x() == 0.0 && chosen.position.y() == 0.0))
            ? QStringLiteral("No Position")
            : Util::formatPosition(chosen.position.x(), chosen.position.y());

    QString cogsog = QStringLiteral("COG ") + Util::formatDir3(Truncation::towardZero<int>(chosen.cog))
            + tr("deg") + QStringLiteral(" T - SOG ") + Util::formatSpeed(chosen.sog * 1.852 / 3.6);
    if (std::fabs(chosen.cog) <= 1e-12 && std::fabs(chosen.sog) <= 1e-12)
        cogsog = QStringLiteral("no");

    StateAssembler::Tick tick;
    // The log's clock, so that a replay's state carries the replay's time.
    tick.time = Clock::currentSecsSinceEpoch() * 1000;
    tick.date = date;
    tick.position = position;
    tick.cogsog = cogsog;
    tick.hasFix = chosen.found;
    tick.fix = chosen.position;
    tick.cog = chosen.cog;
    tick.sog = chosen.sog;
    tick.systemTheme = previousTheme == 1 ? 1 : 0;

    const Reading reading = currentReading();
    const double current = reading.value;
    if (current < Pressure::UsableFrom) {
        stepTickCounter();
        emit noPressureAvailable();
        emit dataUpdated(date, position, cogsog, QStringLiteral("NONE"));
        tick.shown = true;
        tick.pressureText = QStringLiteral("NONE");
        publishTick(tick);
        return;
    }

    const QString pressureText = displayPressure(current);
    const bool written = dataSource != nullptr
            && dataSource->addData(tickCounter, chosen.position.x(), chosen.position.y(), chosen.cog,
                                   chosen.sog, getCurrentPressure());
    // A log that cannot keep rows would otherwise hold the displays still for good.
    if (written || (dataSource != nullptr && !dataSource->canKeepRows())) {
        emit dataUpdated(date, position, cogsog, pressureText);
        tick.shown = true;
    }
    stepTickCounter();

    tick.pressureText = pressureText;
    tick.reading = current;
    tick.source = reading.source;
    tick.sourceText = sourceText(reading.source);
    tick.readingAgeMs = reading.ageMs;
    tick.logged = written;
    publishTick(tick);
}

void BackEnd::publishTick(const StateAssembler::Tick& tick)
{
    statePublisher.publish(StateAssembler::assemble(tick, *statePublisher.current(), *settings, dataSource));
}

void BackEnd::stepTickCounter()
{
    if (tickCounter < 767)
        tickCounter += 2;
    else
        tickCounter = 0;
}

QString BackEnd::displayPressure(double reading)
{
    const double elevation = settings->value(SettingKey::Elevation, SettingDefault::Elevation).toDouble();
    const int preDisplay = settings->value(SettingKey::PreDisplay, SettingDefault::PreDisplay).toInt();
    // Read as an integer default on purpose: an absent key is integer zero.
    const double offset = settings->value(SettingKey::Offset, SettingDefault::OffsetAtTick).toDouble();
    double value = reading + offset;
    if (preDisplay != 1)
        value /= Pressure::seaLevelFactor(elevation);
    return Util::formatPressure(value, true);
}

// ---- Settings -------------------------------------------------------------------------

QVariant BackEnd::getSetting(QString key, QVariant def)
{
    // The receiver's thread reads the copy; the QSettings object is the main thread's.
    const QVariant value = QThread::currentThread() == thread() ? settings->value(key, def)
                                                                : settingsMirror.value(key, def);
    if (doubleKeys.contains(key))
        return QVariant(value.toDouble());
    if (stringKeys.contains(key))
        return QVariant(value.toString());
    return QVariant(value.toInt());
}

void BackEnd::setSetting(QString key, QVariant val)
{
    settings->setValue(key, val);
    settingsMirror.setValue(key, val);
}

void BackEnd::syncSettings()
{
    settings->sync();
}

QString BackEnd::getVersion()
{
    return QStringLiteral("3.0.0");
}

void BackEnd::pauseService(bool b)
{
    if (!b)
        pauseTime = QDateTime::currentDateTimeUtc();
}

// ---- Pressure model -------------------------------------------------------------------

double BackEnd::getSerialPressure()
{
    return pressure[Serial].load(std::memory_order_relaxed);
}

QString BackEnd::getPressureSource()
{
    return sourceText(currentReading().source);
}

QString BackEnd::sourceText(int source)
{
    switch (source) {
    case Internal:
        return tr("From internal pressure sensor");
    case Serial:
        return tr("From serial connection");
    case Tcp:
        return tr("From TCP connection");
    case Udp:
        return tr("From UDP connection");
    default:
        return tr("No pressure available");
    }
}

QString BackEnd::getPressureUnit()
{
    static const char* const names[] = {"mb", "hPa", "kPa", "inHg", "mmHg"};
    const int unit = settings->value(SettingKey::UnitPre, SettingDefault::UnitPre).toInt();
    if (unit < 0 || unit > 4)
        return QString();
    return QString::fromLatin1(names[unit]);
}

double BackEnd::convertToHpa(double value)
{
    switch (settings->value(SettingKey::UnitPre, SettingDefault::UnitPre).toInt()) {
    case Pressure::Kpa:
        return value * Pressure::HpaPerKpa;
    case Pressure::InHg:
        return value / Pressure::InHgPerHpa;
    case Pressure::MmHg:
        return value / Pressure::MmHgPerHpa;
    default:
        return value;
    }
}

double BackEnd::convertToOther(double value)
{
    switch (settings->value(SettingKey::UnitPre, SettingDefault::UnitPre).toInt()) {
    case Pressure::Kpa:
        return value / Pressure::HpaPerKpa;
    case Pressure::InHg:
        return value * Pressure::InHgPerHpa;
    case Pressure::MmHg:
        return value * Pressure::MmHgPerHpa;
    default:
        return value;
    }
}

QString BackEnd::getFormatedPressure(int unit, double offset, int levelType, double levelValue)
{
    double value = getCurrentPressure() + offset;
    QString suffix;
    int decimals = 2;
    switch (unit) {
    case Pressure::Mb:
        suffix = QStringLiteral(" mb");
        break;
    case Pressure::Hpa:
        suffix = QStringLiteral(" hPa");
        break;
    case Pressure::Kpa:
        value /= Pressure::HpaPerKpa;
        suffix = QStringLiteral(" kPa");
        break;
    case Pressure::InHg:
        value *= Pressure::InHgPerHpa;
        suffix = QStringLiteral(" inHg");
        decimals = 3;
        break;
    case Pressure::MmHg:
        value *= Pressure::MmHgPerHpa;
        suffix = QStringLiteral(" mmHg");
        break;
    default:
        break;
    }
    if (levelType != 1)
        value /= Pressure::seaLevelFactor(levelValue);
    return QStringLiteral("%1").arg(value, 0, 'f', decimals, QLatin1Char(' ')) + suffix;
}

QString BackEnd::getFormatedPressureMb(double m_pressure)
{
    return QStringLiteral("%1").arg(m_pressure, 0, 'f', 2, QLatin1Char(' ')) + QStringLiteral(" mb");
}

void BackEnd::slot_pressureReading()
{
    pressureSensor.stop();
    if (QPressureReading* reading = pressureSensor.reading())
        setCurrentPressure(reading->pressure() / 100.0, Internal);

    if (settings->value(SettingKey::UseUdpOut, SettingDefault::UseUdpOut).toInt() == 1) {
        if (!senderUdp)
            senderUdp = new NmeaSenderUdp();
        // Whichever source wins, with the user's offset, and always at sea level.
        double value = getCurrentPressure() + settings->value(SettingKey::Offset, SettingDefault::Offset).toDouble();
        const double elevation = settings->value(SettingKey::Elevation, SettingDefault::Elevation).toDouble();
        if (std::fabs(elevation) > 1e-12)
            value /= Pressure::seaLevelFactor(elevation);
        // 5999 here and 10110 at every other reader of the key: kept as it is on purpose.
        const int port = settings->value(SettingKey::UpdPort, SettingDefault::UpdPortAtSensor).toInt();
        senderUdp->sendPressure(value, port);
    } else if (senderUdp) {
        delete senderUdp;
        senderUdp = nullptr;
    }

    timerSensor.start();
}

// ---- Position intake ------------------------------------------------------------------

void BackEnd::startLocationServices()
{
    bool wanted = false;
    if (settings->value(SettingKey::PosSource, SettingDefault::PosSource).toInt() == 1)
        wanted = settings->value(SettingKey::UsePos, SettingDefault::UsePos).toInt() != 0;

    if (!wanted) {
        // The last internal position stays until something clears it.
        if (positionSource) {
            positionSource->stopUpdates();
            delete positionSource;
            positionSource = nullptr;
        }
        return;
    }

    qWarning().noquote() << "trying to start location services";
    if (!positionSource) {
        positionSource = QGeoPositionInfoSource::createDefaultSource(this);
        if (!positionSource)
            return;
    }
    positionSource->setPreferredPositioningMethods(QGeoPositionInfoSource::SatellitePositioningMethods);
    if (positionSource->preferredPositioningMethods() != QGeoPositionInfoSource::SatellitePositioningMethods)
        positionSource->setPreferredPositioningMethods(QGeoPositionInfoSource::AllPositioningMethods);
    positionSource->setUpdateInterval(1000);
    connect(positionSource, &QGeoPositionInfoSource::positionUpdated, this,
            &BackEnd::slot_internalPositionUpdated, Qt::UniqueConnection);
    positionSource->startUpdates();
    qWarning().noquote() << "location services started";
}

void BackEnd::slot_internalPositionUpdated(QGeoPositionInfo g)
{
    if (!g.isValid() || !g.hasAttribute(QGeoPositionInfo::HorizontalAccuracy)) {
        qWarning().noquote() << "no fix";
        clearHasFix(Internal);
        return;
    }
    // Exactly 200 m is still good enough.
    if (g.attribute(QGeoPositionInfo::HorizontalAccuracy) > 200.0) {
        clearHasFix(Internal);
        if (positionSource)
            positionSource->requestUpdate(0);
        return;
    }

    const QGeoCoordinate coordinate = g.coordinate();
    const double course = g.hasAttribute(QGeoPositionInfo::Direction)
            ? g.attribute(QGeoPositionInfo::Direction)
            : 0.0;
    // The service gives metres per second; knots are kept.
    const double speed = g.hasAttribute(QGeoPositionInfo::GroundSpeed)
            ? g.attribute(QGeoPositionInfo::GroundSpeed) * 3.6 / 1.852
            : 0.0;
    setPositionData(QPointF(coordinate.longitude(), coordinate.latitude()), speed, course, Internal);

    sendInternalPosition();
}

void BackEnd::setIosGpsData(double longitude, double latitude, double course, double speed)
{
    const double knots = speed < 0.0 ? 0.0 : speed * 3.6 / 1.852;
    setPositionData(QPointF(longitude, latitude), knots, course < 0.0 ? 0.0 : course, Internal);
    sendInternalPosition();
}

void BackEnd::sendInternalPosition()
{
    const bool wanted = settings->value(SettingKey::UseUdpOut, SettingDefault::UseUdpOut).toInt() == 1
            && settings->value(SettingKey::SendUdpPos, SettingDefault::SendUdpPos).toInt() == 1;
    if (wanted) {
        // The sensor path may make the sender anew after this deletes it; the two do not
        // coordinate.
        if (!senderUdp)
            senderUdp = new NmeaSenderUdp();
        const int port = settings->value(SettingKey::UpdPort, SettingDefault::UpdPort).toInt();
        const Fix& fix = fixes[Internal];
        QPointF where;
        double speed = 0.0;
        double course = 0.0;
        fixLock.read([&] {
            where = QPointF(fix.longitude.load(std::memory_order_relaxed),
                            fix.latitude.load(std::memory_order_relaxed));
            speed = fix.sog.load(std::memory_order_relaxed);
            course = fix.cog.load(std::memory_order_relaxed);
        });
        senderUdp->sendPosition(where, speed, course, port);
    } else if (senderUdp) {
        delete senderUdp;
        senderUdp = nullptr;
    }
}

// ---- Device calibration ---------------------------------------------------------------

void BackEnd::requestCurrentCalibration()
{
    const QString message = Nmea0183::createMessageGetCalibration();
    timerOperation.start();
    emit sendCalibration(message);
}

void BackEnd::calibrateBarometer(double offset, double slope, double pressure)
{
    const QString message = Nmea0183::createMessageCalibration(offset, slope, pressure);
    qWarning().noquote() << message;
    emit sendCalibration(message);
}

void BackEnd::resetBarometer()
{
    emit sendCalibration(Nmea0183::createMessageResetBarometer());
}

void BackEnd::connectCalibration(NmeaSourceSerial& source)
{
    connect(this, &BackEnd::sendCalibration, &source, &NmeaSource::slot_sendMessage, Qt::QueuedConnection);
    connect(&source, &NmeaSourceSerial::calibrationStatus, this, &BackEnd::calibrationStatus, Qt::QueuedConnection);
    connect(&source, &NmeaSourceSerial::calibrationValues, this, &BackEnd::slot_calibrationValues,
            Qt::QueuedConnection);
}

void BackEnd::slot_calibrationValues(QString message)
{
    // A malformed reply is dropped without a word; the page learns of it by the time-out.
    if (!message.contains(QLatin1Char('*')) || !message.contains(QLatin1Char(',')))
        return;
    const QStringList fields = message.split(QLatin1Char('*'), Qt::KeepEmptyParts)
                                       .first()
                                       .split(QLatin1Char(','), Qt::KeepEmptyParts);
    if (fields.size() < 6)
        return;
    timerOperation.stop();
    qWarning().noquote() << "QSP received from calibrationr request" << fields.at(4).toDouble();
    const double offset = fields.at(2).toDouble();
    // Halves away from zero: -102.5 is passed on as -103.
    const double slope = std::round(fields.at(3).toDouble());
    const double slopeRef = fields.at(4).toDouble();
    const double devicePressure = fields.at(5).toDouble();
    emit calibrationValuesReceived(offset, slope, slopeRef, devicePressure);
}

// ---- NMEA input -----------------------------------------------------------------------

void BackEnd::startNmea()
{
    // The old receiver ends by itself once its thread has quit; nobody waits for that.
    if (receiver) {
        receiver->quitThread();
        receiver = nullptr;
    }
    connectionStatusBoard.follow(nullptr);
    // No default for the port here: an absent key is empty text, which is not "None", so
    // a first start makes a receiver with no sources.
    const bool wanted = settings->value(SettingKey::SerialPort).toString() != QLatin1String("None")
            || settings->value(SettingKey::UseTcp, SettingDefault::UseTcp).toInt() != 0
            || settings->value(SettingKey::UseUdp, SettingDefault::UseUdp).toInt() != 0
            || settings->value(SettingKey::UseUdpOut, SettingDefault::UseUdpOut).toInt() != 0;
    if (!wanted)
        return;
    receiver = new NmeaReceiver();
    auto* thread = new QThread();
    receiver->moveToThread(thread);
    connectionStatusBoard.follow(receiver);
    connect(receiver, &NmeaReceiver::finished, thread, &QThread::quit);
    connect(thread, &QThread::finished, receiver, &QObject::deleteLater);
    connect(thread, &QThread::finished, thread, &QObject::deleteLater);
    connect(thread, &QThread::finished, thread, [thread] { SanitizerSync::release(thread); },
            Qt::DirectConnection);
    thread->start(QThread::InheritPriority);
    receiver->startReceiving();
}

QString BackEnd::connectionStatus(int which)
{
    if (which < ConnectionStatus::SerialInput || which > ConnectionStatus::UdpOutput)
        return QString();
    const auto channel = static_cast<ConnectionStatus::Channel>(which);
    return ConnectionStatusText::describe(connectionStatusBoard.status(channel),
                                          connectionStatusBoard.lastSentenceMs(channel), Clock::monotonicMs());
}

// ---- Help and privacy documents -------------------------------------------------------

namespace {

// The whole document as text, cut at its first NUL; empty when the resource is missing.
QString readDocument(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return QString();
    const QByteArray bytes = file.readAll();
    file.close();
    return QString(bytes);
}

} // namespace

QString BackEnd::getHelpHtml()
{
    QString html = readDocument(QStringLiteral(":/Help/English/DesktopHelp.htm"));
    // The order matters: small text must end one step up, not two.
    html.replace(QStringLiteral("<img "), QStringLiteral("&nbsp;<img "));
    html.replace(QStringLiteral(" large;"), QStringLiteral(" x-large;"));
    html.replace(QStringLiteral(" small;"), QStringLiteral(" large;"));
    html.replace(QStringLiteral("src=\"./Brinholt Help_files/"), QStringLiteral("src=\"/Help/English/"));
    return html;
}

QUrl BackEnd::getHelpBaseUrl()
{
    return QUrl::fromLocalFile(appPath + QStringLiteral("help_files"));
}

QUrl BackEnd::getHelpUrl()
{
    if (getSetting(SettingKey::Language, SettingDefault::Language).toInt() != 0)
        return QUrl::fromLocalFile(appPath + QStringLiteral("help_files/French/Brinholt_help_vQT_FRENCH.htm"));
    return QUrl::fromLocalFile(appPath + QStringLiteral("help_files/English/Brinholt_help_vQT.htm"));
}

QString BackEnd::getPrivacyPolicy()
{
    const bool english = getSetting(SettingKey::Language, SettingDefault::Language).toInt() == 0;
    QString html = readDocument(english ? QStringLiteral(":/Help/English/brinholt_privacy_policy_en.html")
                                        : QStringLiteral(":/Help/French/brinholt_privacy_policy_fr.html"));
    html.replace(QStringLiteral("<img "), QStringLiteral("&nbsp;<img "));
    html.replace(QStringLiteral(" small;"), QStringLiteral(" medium;"));
    // Read again: the language may have changed since the document was chosen.
    if (getSetting(SettingKey::Language, SettingDefault::Language).toInt() != 0)
        html.replace(QStringLiteral("src=\""), QStringLiteral("src=\"/Help/French/"));
    else
        html.replace(QStringLiteral("src=\""), QStringLiteral("src=\"/Help/English/"));
    return html;
}

// ---- Host queries ---------------------------------------------------------------------

bool BackEnd::isDarkText(const QColor& windowText)
{
    return windowText.red() >= 129 && windowText.blue() >= 129 && windowText.green() >= 129;
}

bool BackEnd::isSystemDarkMode()
{
    const QPlatformTheme* theme = QGuiApplicationPrivate::platformTheme();
    const QPalette* palette = theme ? theme->palette(QPlatformTheme::SystemPalette) : nullptr;
    if (!palette)
        return false;
    return isDarkText(palette->color(QPalette::Current, QPalette::WindowText));
}

void BackEnd::setPreviousTheme(int i)
{
    previousTheme = i;
}

bool BackEnd::isPhone()
{
    return false;
}

int BackEnd::getColWidth()
{
    return QApplication::fontMetrics().horizontalAdvance(
            QStringLiteral("this is the size of very big big big big column"));
}

int BackEnd::getHorizontalAdvance(QString string)
{
    const QFontMetrics metrics = QApplication::fontMetrics();
    return qMin(metrics.horizontalAdvance(string),
                metrics.horizontalAdvance(QStringLiteral("this is enough wide xxxxxxxxxxx")));
}

QString BackEnd::serialPortEntry(const QString& portName, const QString& description)
{
    return portName + QLatin1Char(' ') + description;
}

BackEnd::PortList BackEnd::systemPorts()
{
    PortList ports;
    const auto available = QSerialPortInfo::availablePorts();
    for (const QSerialPortInfo& info : available)
        ports.append({info.portName(), info.description()});
    return ports;
}

void BackEnd::setPortLister(std::function<PortList()> lister)
{
    portLister = std::move(lister);
}

bool BackEnd::isCharacterDevice(QString path)
{
    if (path.isEmpty())
        return false;
    // The same rule by which QSerialPort turns a port name into the file it opens.
    if (!path.startsWith(QLatin1Char('/')) && !path.startsWith(QLatin1String("./"))
        && !path.startsWith(QLatin1String("../")))
        path.prepend(QLatin1String("/dev/"));
    struct stat info {};
    return ::stat(QFile::encodeName(path).constData(), &info) == 0 && S_ISCHR(info.st_mode);
}

QStringList BackEnd::getSerialPorts()
{
    QStringList entries;
    const PortList ports = portLister();
    for (const auto& [name, description] : ports)
        entries.append(serialPortEntry(name, description));
    return entries;
}

qlonglong BackEnd::getCurrentTime()
{
    return QDateTime::currentSecsSinceEpoch();
}

void BackEnd::changeAlwaysOn()
{
}

bool BackEnd::checkPermissionPart1()
{
    return true;
}

bool BackEnd::checkPermissionPart2()
{
    return true;
}

bool BackEnd::checkPermissionPart3()
{
    return true;
}

bool BackEnd::askPermissionPart1()
{
    return true;
}

bool BackEnd::askPermissionPart2()
{
    return true;
}

bool BackEnd::askPermissionPart3()
{
    return true;
}

bool BackEnd::androidPermissionAlreadyAsked1()
{
    return settings->value(QStringLiteral("androidPermissionAsked1"), 0).toInt() == 1;
}

bool BackEnd::androidPermissionAlreadyAsked2()
{
    return settings->value(QStringLiteral("androidPermissionAsked2"), 0).toInt() == 1;
}

bool BackEnd::androidPermissionAlreadyAsked3()
{
    return settings->value(QStringLiteral("androidPermissionAsked3"), 0).toInt() == 1;
}

void BackEnd::slot_startIosBarometer()
{
}
