// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/CalibrationDialogue.h"
#include "app/HelpDocuments.h"
#include "app/HostQueries.h"
#include "app/InternalBroadcast.h"
#include "app/InternalSensor.h"
#include "app/PositionIntake.h"
#include "app/ReadingStore.h"
#include "app/ReceiverControl.h"
#include "app/SamplingTick.h"
#include "app/SettingsAccess.h"
#include "app/WatchPage.h"
#include "log/LogHost.h"
#include "nmea/CalibrationLink.h"
#include "nmea/ConnectionStatusBoard.h"
#include "nmea/NmeaSourceType.h"
#include "nmea/ReadingSink.h"
#include "nmea/ReceiverHost.h"
#include "nmea/SignalKOutput.h"
#include "util/StatePublisher.h"
#include "util/WarningState.h"

#include <QtCore/QDateTime>
#include <QtCore/QObject>
#include <QtCore/QPointF>
#include <QtCore/QString>
#include <QtCore/QStringList>
#include <QtCore/QTimer>
#include <QtCore/QUrl>
#include <QtCore/QVariant>
#include <QtPositioning/QGeoPositionInfo>

#include <atomic>
#include <functional>
#include <utility>

class QGeoPositionInfoSource;
class QQmlApplicationEngine;
class QSettings;
class DataSource;
class NmeaReceiver;
class NmeaSenderUdp;

// The log the tick writes into, set beside `backend` by whoever makes the log.
extern DataSource* dataSource;

// The present state of the instrument, as the pages and the layers below meet it: the
// latest reading of each source, the settings, the sampling tick and the NMEA receiver. It
// names what they call and forwards each call to the part that owns the concern. The one
// made last installs itself as the sink and host of NMEA input and the log.
class BackEnd : public QObject, public ReadingSink, public ReceiverHost, public CalibrationLink, public LogHost
{
    Q_OBJECT

public:
    explicit BackEnd(QQmlApplicationEngine* engine = nullptr);
    // Settings and the data folder only: no location service, sensor, tick or receiver,
    // for work done from the command line while the instrument may be running elsewhere.
    struct SettingsOnly {};
    explicit BackEnd(SettingsOnly);
    ~BackEnd() override;

    // Readings. These are called from the receiver's thread as well as the main thread.
    void setCurrentPressure(const double& value, const NmeaSourceType& type) override;
    void setPositionData(const QPointF& position, const double& sog, const double& cog,
                         const NmeaSourceType& type) override;
    void clearHasFix(const NmeaSourceType& type) override;
    QPointF getPosition() const override;
    // Course, then speed, of the source that has the position.
    std::pair<double, double> getCogSog() const override;

    // The pressure-fall warning as the UDP output tells it: published on the main thread at
    // each change, read by the receiver's output tick.
    void publishWarning(const WarningState& state);
    WarningState getWarningState() const override;

    // A phone host's position entry: longitude, latitude, course in degrees and speed in
    // metres per second. The desktop never calls it.
    void setIosGpsData(double longitude, double latitude, double course, double speed);

    // The long-lived settings object, for the readers that go to it directly.
    QSettings* getSettings() const override { return settingsAccess.object(); }
    QString getAppPath() const override { return appPath; }
    // The NMEA receiver now running, or null; it lives on its own thread.
    NmeaReceiver* getReceiver() const { return receiverControl.receiver(); }
    const ConnectionStatusBoard& getConnectionStatusBoard() const { return receiverControl.board(); }
    WatchPage& getWatchPage() { return watchPage; }
    SignalKOutput& getSignalKOutput() { return signalKOutput; }
    // The sender of the internal sensor and location paths, or null.
    NmeaSenderUdp* getSenderUdp() const { return broadcast.sender(); }
    // When the application last left the active state, in UTC; null before that.
    QDateTime getPauseTime() const { return pauseTime; }

    // What the last tick showed, for the views that are not pages; any thread may read it.
    const StatePublisher& getStatePublisher() const { return statePublisher; }
    StatePublisher& getStatePublisher() { return statePublisher; }

    // Queued both ways: the source lives on its receiver's thread.
    void connectCalibration(NmeaSourceSerial& source) override;

signals:
    void sendCalibration(QString message);
    void calibrationValuesReceived(double offset, double slope, double slopeRef, double pressure);
    void saveWindowSize();
    void dataUpdated(QString date, QString position, QString cogsog, QString pressure);
    void systemThemeChanged(int theme);
    void showFirstAuthorization();
    void showSecondAuthorization();
    void calibrationStatus(bool status);
    void noPressureAvailable();
    void operationTimeout();

public slots:
    void slot_timerData();
    void slot_internalPositionUpdated(QGeoPositionInfo g);
    void slot_pressureReading();
    void slot_calibrationValues(QString message);
    void slot_startIosBarometer() {}

public:
    Q_INVOKABLE double getCurrentPressure() override;
    // Whether the tick would take getCurrentPressure() as a reading.
    Q_INVOKABLE bool hasUsablePressure();
    Q_INVOKABLE QVariant getSetting(QString key, QVariant def) override;
    Q_INVOKABLE void setSetting(QString key, QVariant val);
    Q_INVOKABLE QString getFormatedPressure(int unit, double offset, int levelType, double levelValue);
    Q_INVOKABLE void pauseService(bool b);
    Q_INVOKABLE QString getVersion() { return QStringLiteral("3.0.0"); }
    Q_INVOKABLE QString getHelpHtml();
    Q_INVOKABLE QUrl getHelpBaseUrl();
    Q_INVOKABLE QUrl getHelpUrl();
    Q_INVOKABLE bool isSystemDarkMode() { return HostQueries::isSystemDarkMode(); }
    Q_INVOKABLE void setPreviousTheme(int i);
    Q_INVOKABLE bool isPhone() { return false; }
    Q_INVOKABLE double convertToHpa(double value);
    Q_INVOKABLE double convertToOther(double value) override;
    Q_INVOKABLE void changeAlwaysOn() {}
    Q_INVOKABLE bool checkPermissionPart1() { return true; }
    Q_INVOKABLE bool checkPermissionPart2() { return true; }
    Q_INVOKABLE bool checkPermissionPart3() { return true; }
    Q_INVOKABLE bool askPermissionPart1() { return true; }
    Q_INVOKABLE bool askPermissionPart2() { return true; }
    Q_INVOKABLE bool askPermissionPart3() { return true; }
    Q_INVOKABLE void startLocationServices();
    Q_INVOKABLE void syncSettings();
    Q_INVOKABLE bool androidPermissionAlreadyAsked1();
    Q_INVOKABLE bool androidPermissionAlreadyAsked2();
    Q_INVOKABLE bool androidPermissionAlreadyAsked3();
    Q_INVOKABLE QString getPrivacyPolicy();
    Q_INVOKABLE int getColWidth();
    Q_INVOKABLE QStringList getSerialPorts();
    // Whether the port name, taken as the serial port takes it (a bare name lives in /dev),
    // is a character device once links are followed: a device the list may lack, such as a
    // pseudo-terminal, is still one a serial source can open.
    Q_INVOKABLE bool isCharacterDevice(QString path);
    Q_INVOKABLE int getHorizontalAdvance(QString string);
    Q_INVOKABLE void startNmea();
    Q_INVOKABLE QString getPressureSource();
    Q_INVOKABLE QString getPressureUnit() override;
    Q_INVOKABLE void calibrateBarometer(double offset, double slope, double pressure);
    Q_INVOKABLE qlonglong getCurrentTime() { return QDateTime::currentSecsSinceEpoch(); }
    Q_INVOKABLE void clearAllFix();
    Q_INVOKABLE QString getFormatedPressureMb(double m_pressure);
    Q_INVOKABLE void requestCurrentCalibration();
    Q_INVOKABLE void resetBarometer();
    Q_INVOKABLE double getSerialPressure();
    // One line on what a connection of the running receiver does now: `which` is 1 serial,
    // 2 TCP, 3 UDP input (as NmeaSourceType), 4 UDP output; 5 and 6 the Signal K output
    // over TCP and UDP; 7 the watch page.
    Q_INVOKABLE QString connectionStatus(int which);

    // The dark-mode answer for a window text colour: each of red, blue and green at least 129.
    static bool isDarkText(const QColor& windowText) { return HostQueries::isDarkText(windowText); }
    // One entry of the port list: the name, a blank and the description, which may be empty.
    static QString serialPortEntry(const QString& portName, const QString& description)
    {
        return HostQueries::serialPortEntry(portName, description);
    }

    // The serial ports as name and description, in the order the system gives them.
    using PortList = HostQueries::PortList;
    static PortList systemPorts() { return HostQueries::systemPorts(); }
    // Puts another list in place of the system's, for tests: the system lists no
    // pseudo-terminal, and a machine may have no port at all.
    void setPortLister(std::function<PortList()> lister);

private:
    // Connects the location service's updates to slot_internalPositionUpdated, once.
    void followPositions(QGeoPositionInfoSource& source);
    // The parts' signals are the façade's.
    void forwardSignals();

    QTimer timerData;
    QQmlApplicationEngine* engine = nullptr;
    QString appPath = QStringLiteral("./");
    SettingsAccess settingsAccess;
    ReadingStore readings;
    InternalBroadcast broadcast{settingsAccess};
    PositionIntake positions{*this, settingsAccess, broadcast,
                             [this](QGeoPositionInfoSource& source) { followPositions(source); }};
    InternalSensor sensor{readings, broadcast};
    StatePublisher statePublisher;
    SamplingTick tick{settingsAccess, readings, positions, statePublisher, dataSource};
    CalibrationDialogue calibration;
    HelpDocuments documents{settingsAccess, appPath};
    HostQueries host{settingsAccess};
    ReceiverControl receiverControl{settingsAccess};
    // Level in the two low bits, acknowledgement in the third, the time above: one word, so
    // that the output tick never sees half of a change.
    std::atomic<qint64> warningState{0};
    QDateTime pauseTime;
    // Started, stopped and restarted with the connections, by startNmea.
    WatchPage watchPage{dataSource};
    // Restarted with the receiver; stopped before anything it reads goes.
    SignalKOutput signalKOutput;
};

extern BackEnd* backend;
