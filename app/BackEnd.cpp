// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/BackEnd.h"

#include "app/PressureUnits.h"
#include "app/SignalKStatusText.h"
#include "nmea/NmeaSourceSerial.h"
#include "util/Pressure.h"
#include "util/SettingKeys.h"
#include "util/SettingsReader.h"

#include <QtCore/QDebug>
#include <QtCore/QSettings>
#include <QtPositioning/QGeoPositionInfoSource>

BackEnd* backend = nullptr;
DataSource* dataSource = nullptr;

namespace {

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

int unitSetting(const SettingsAccess& settings)
{
    return settings.value(SettingKey::UnitPre, SettingDefault::UnitPre).toInt();
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
    forwardSignals();

    timerData.setInterval(2000);
    timerData.setTimerType(Qt::PreciseTimer);
    connect(&timerData, &QTimer::timeout, this, &BackEnd::slot_timerData, Qt::UniqueConnection);

    settingsAccess.open(this, appPath);
    settingsAccess.value(SettingKey::Version, SettingDefault::Version);
    settingsAccess.set(SettingKey::Version, getVersion());

    startLocationServices();

    sensor.start([this](QPressureSensor& pressureSensor) {
        connect(&pressureSensor, &QSensor::readingChanged, this, &BackEnd::slot_pressureReading,
                Qt::UniqueConnection);
    });

    timerData.start();

    startNmea();

    qWarning().noquote() << "BackEnd created";
}

BackEnd::BackEnd(SettingsOnly)
    : QObject(nullptr)
{
    backend = this;
    installAsHost(this);
    forwardSignals();
    settingsAccess.open(this, appPath);
}

BackEnd::~BackEnd()
{
    emit saveWindowSize();
    // No request may still be answered from what goes below.
    watchPage.apply(false, 0, false);
    signalKOutput.stop();
    // The receiver's thread reads settings through this object: it must be gone before
    // they are, or a last sentence at shutdown would read freed memory.
    receiverControl.stop();
    withdrawAsHost(this);
    settingsAccess.close();
    qWarning().noquote() << "backend deleted";
}

void BackEnd::forwardSignals()
{
    connect(&tick, &SamplingTick::systemThemeChanged, this, &BackEnd::systemThemeChanged);
    connect(&tick, &SamplingTick::noPressureAvailable, this, &BackEnd::noPressureAvailable);
    connect(&tick, &SamplingTick::dataUpdated, this, &BackEnd::dataUpdated);
    connect(&calibration, &CalibrationDialogue::sendCalibration, this, &BackEnd::sendCalibration);
    connect(&calibration, &CalibrationDialogue::calibrationValuesReceived, this,
            &BackEnd::calibrationValuesReceived);
    connect(&calibration, &CalibrationDialogue::operationTimeout, this, &BackEnd::operationTimeout);
}

void BackEnd::followPositions(QGeoPositionInfoSource& source)
{
    connect(&source, &QGeoPositionInfoSource::positionUpdated, this, &BackEnd::slot_internalPositionUpdated,
            Qt::UniqueConnection);
}

// ---- Readings -------------------------------------------------------------------------

void BackEnd::setCurrentPressure(const double& value, const NmeaSourceType& type)
{
    readings.store(value, type);
}

double BackEnd::getCurrentPressure()
{
    return readings.current().value;
}

bool BackEnd::hasUsablePressure()
{
    return !(getCurrentPressure() < Pressure::UsableFrom);
}

double BackEnd::getSerialPressure()
{
    return readings.latest(Serial);
}

QString BackEnd::getPressureSource()
{
    return ReadingStore::sourceText(readings.current().source);
}

void BackEnd::slot_pressureReading()
{
    sensor.takeReading();
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

// ---- Units ----------------------------------------------------------------------------

QString BackEnd::getPressureUnit()
{
    return QString::fromLatin1(Pressure::unitName(unitSetting(settingsAccess)));
}

double BackEnd::convertToHpa(double value)
{
    return PressureUnits::toHpa(value, unitSetting(settingsAccess));
}

double BackEnd::convertToOther(double value)
{
    return PressureUnits::fromHpa(value, unitSetting(settingsAccess));
}

QString BackEnd::getFormatedPressure(int unit, double offset, int levelType, double levelValue)
{
    return PressureUnits::preview(getCurrentPressure(), unit, offset, levelType, levelValue);
}

QString BackEnd::getFormatedPressureMb(double m_pressure)
{
    return PressureUnits::inMb(m_pressure);
}

// ---- Position -------------------------------------------------------------------------

void BackEnd::setPositionData(const QPointF& position, const double& sog, const double& cog,
                              const NmeaSourceType& type)
{
    positions.setPositionData(position, sog, cog, type);
}

void BackEnd::clearHasFix(const NmeaSourceType& type)
{
    positions.clearHasFix(type);
}

void BackEnd::clearAllFix()
{
    positions.clearAllFix();
}

QPointF BackEnd::getPosition() const
{
    return positions.choose().position;
}

std::pair<double, double> BackEnd::getCogSog() const
{
    const PositionIntake::Chosen chosen = positions.choose();
    return {chosen.cog, chosen.sog};
}

void BackEnd::startLocationServices()
{
    positions.startLocationServices();
}

void BackEnd::slot_internalPositionUpdated(QGeoPositionInfo g)
{
    positions.takeUpdate(g);
}

void BackEnd::setIosGpsData(double longitude, double latitude, double course, double speed)
{
    positions.takePhoneFix(longitude, latitude, course, speed);
}

// ---- The tick -------------------------------------------------------------------------

void BackEnd::slot_timerData()
{
    tick.run();
}

void BackEnd::setPreviousTheme(int i)
{
    tick.setPreviousTheme(i);
}

void BackEnd::pauseService(bool b)
{
    if (!b)
        pauseTime = QDateTime::currentDateTimeUtc();
}

// ---- Settings -------------------------------------------------------------------------

QVariant BackEnd::getSetting(QString key, QVariant def)
{
    return settingsAccess.get(key, def);
}

void BackEnd::setSetting(QString key, QVariant val)
{
    settingsAccess.set(key, val);
}

void BackEnd::syncSettings()
{
    settingsAccess.sync();
}

// ---- Device calibration ---------------------------------------------------------------

void BackEnd::requestCurrentCalibration()
{
    calibration.requestCurrentCalibration();
}

void BackEnd::calibrateBarometer(double offset, double slope, double pressure)
{
    calibration.calibrateBarometer(offset, slope, pressure);
}

void BackEnd::resetBarometer()
{
    calibration.resetBarometer();
}

void BackEnd::slot_calibrationValues(QString message)
{
    calibration.takeAnswer(message);
}

void BackEnd::connectCalibration(NmeaSourceSerial& source)
{
    connect(this, &BackEnd::sendCalibration, &source, &NmeaSource::slot_sendMessage, Qt::QueuedConnection);
    connect(&source, &NmeaSourceSerial::calibrationStatus, this, &BackEnd::calibrationStatus, Qt::QueuedConnection);
    connect(&source, &NmeaSourceSerial::calibrationValues, this, &BackEnd::slot_calibrationValues,
            Qt::QueuedConnection);
}

// ---- NMEA input -----------------------------------------------------------------------

void BackEnd::startNmea()
{
    watchPage.apply(*settingsAccess.object());
    signalKOutput.restart();
    receiverControl.start();
}

QString BackEnd::connectionStatus(int which)
{
    if (which == WatchPage::StatusChannel)
        return watchPage.statusText();
    if (which == SignalKStatus::TcpServer || which == SignalKStatus::UdpDatagrams)
        return SignalKStatusText::describe(signalKOutput.status(static_cast<SignalKStatus::Channel>(which)));
    return receiverControl.status(which);
}

// ---- Documents ------------------------------------------------------------------------

QString BackEnd::getHelpHtml()
{
    return documents.helpHtml();
}

QUrl BackEnd::getHelpBaseUrl()
{
    return documents.helpBaseUrl();
}

QUrl BackEnd::getHelpUrl()
{
    return documents.helpUrl();
}

QString BackEnd::getPrivacyPolicy()
{
    return documents.privacyPolicy();
}

// ---- Host queries ---------------------------------------------------------------------

int BackEnd::getColWidth()
{
    return HostQueries::colWidth();
}

int BackEnd::getHorizontalAdvance(QString string)
{
    return HostQueries::horizontalAdvance(string);
}

void BackEnd::setPortLister(std::function<PortList()> lister)
{
    host.setPortLister(std::move(lister));
}

bool BackEnd::isCharacterDevice(QString path)
{
    return HostQueries::isCharacterDevice(path);
}

QStringList BackEnd::getSerialPorts()
{
    return host.serialPorts();
}

bool BackEnd::androidPermissionAlreadyAsked1()
{
    return host.permissionAsked(1);
}

bool BackEnd::androidPermissionAlreadyAsked2()
{
    return host.permissionAsked(2);
}

bool BackEnd::androidPermissionAlreadyAsked3()
{
    return host.permissionAsked(3);
}
