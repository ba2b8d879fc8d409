// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/SettingsMirror.h"
#include "app/StateAssembler.h"
#include "log/LogHost.h"
#include "nmea/CalibrationLink.h"
#include "nmea/ConnectionStatusBoard.h"
#include "nmea/NmeaSourceType.h"
#include "nmea/ReadingSink.h"
#include "nmea/ReceiverHost.h"
#include "util/AgeTimer.h"
#include "util/Pressure.h"
#include "util/SeqLock.h"
#include "util/StatePublisher.h"
#include "util/WarningState.h"

#include <QtCore/QDateTime>
#include <QtCore/QObject>
#include <QtCore/QPointF>
#include <QtCore/QSet>
#include <QtCore/QString>
#include <QtCore/QStringList>
#include <QtCore/QTimer>
#include <QtCore/QUrl>
#include <QtCore/QVariant>
#include <QtPositioning/QGeoPositionInfo>
#include <QtSensors/QPressureSensor>

#include <atomic>
#include <functional>
#include <utility>

class QGeoPositionInfoSource;
class QQmlApplicationEngine;
class QSettings;
class DataSource;
class NmeaReceiver;
class NmeaSenderUdp;

// The present state of the instrument: the latest reading of each source, the settings,
// the sampling tick and the NMEA receiver. It is what NMEA input and the log reach of the
// application: the one made last installs itself as their sink and host.
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
    QSettings* getSettings() const override { return settings; }
    QString getAppPath() const override { return appPath; }
    // The NMEA receiver now running, or null; it lives on its own thread.
    NmeaReceiver* getReceiver() const { return receiver; }
    const ConnectionStatusBoard& getConnectionStatusBoard() const { return connectionStatusBoard; }
    // The sender of the internal sensor and location paths, or null.
    NmeaSenderUdp* getSenderUdp() const { return senderUdp; }
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
    void slot_startIosBarometer();

public:
    Q_INVOKABLE double getCurrentPressure() override;
    // Whether the tick would take getCurrentPressure() as a reading.
    Q_INVOKABLE bool hasUsablePressure();
    Q_INVOKABLE QVariant getSetting(QString key, QVariant def) override;
    Q_INVOKABLE void setSetting(QString key, QVariant val);
    Q_INVOKABLE QString getFormatedPressure(int unit, double offset, int levelType, double levelValue);
    Q_INVOKABLE void pauseService(bool b);
    Q_INVOKABLE QString getVersion();
    Q_INVOKABLE QString getHelpHtml();
    Q_INVOKABLE QUrl getHelpBaseUrl();
    Q_INVOKABLE QUrl getHelpUrl();
    Q_INVOKABLE bool isSystemDarkMode();
    Q_INVOKABLE void setPreviousTheme(int i);
    Q_INVOKABLE bool isPhone();
    Q_INVOKABLE double convertToHpa(double value);
    Q_INVOKABLE double convertToOther(double value) override;
    Q_INVOKABLE void changeAlwaysOn();
    Q_INVOKABLE bool checkPermissionPart1();
    Q_INVOKABLE bool checkPermissionPart2();
    Q_INVOKABLE bool checkPermissionPart3();
    Q_INVOKABLE bool askPermissionPart1();
    Q_INVOKABLE bool askPermissionPart2();
    Q_INVOKABLE bool askPermissionPart3();
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
    Q_INVOKABLE qlonglong getCurrentTime();
    Q_INVOKABLE void clearAllFix();
    Q_INVOKABLE QString getFormatedPressureMb(double m_pressure);
    Q_INVOKABLE void requestCurrentCalibration();
    Q_INVOKABLE void resetBarometer();
    Q_INVOKABLE double getSerialPressure();
    // One line on what a connection of the running receiver does now: `which` is 1 serial,
    // 2 TCP, 3 UDP input (as NmeaSourceType), 4 UDP output.
    Q_INVOKABLE QString connectionStatus(int which);

    // The dark-mode answer for a window text colour: each of red, blue and green at least 129.
    static bool isDarkText(const QColor& windowText);
    // One entry of the port list: the name, a blank and the description, which may be empty.
    static QString serialPortEntry(const QString& portName, const QString& description);

    // The serial ports as name and description, in the order the system gives them.
    using PortList = QList<std::pair<QString, QString>>;
    static PortList systemPorts();
    // Puts another list in place of the system's, for tests: the system lists no
    // pseudo-terminal, and a machine may have no port at all.
    void setPortLister(std::function<PortList()> lister);

private:
    // One source's position, course and speed. The receiver's thread writes them while the
    // tick reads them; `fixLock` keeps the four consistent without making the tick wait.
    struct Fix
    {
        std::atomic<bool> hasFix{false};
        std::atomic<double> longitude{0.0};
        std::atomic<double> latitude{0.0};
        std::atomic<double> cog{0.0};
        std::atomic<double> sog{0.0};
    };
    struct ChosenFix
    {
        bool found = false;
        QPointF position;
        double cog = 0.0;
        double sog = 0.0;
    };

    // The reading the tick would take: the first usable source in order, with its age.
    struct Reading
    {
        double value = Pressure::None;
        int source = -1;
        qint64 ageMs = 0;
    };
    Reading currentReading() const;
    static QString sourceText(int source);
    void publishTick(const StateAssembler::Tick& tick);

    ChosenFix chooseFix() const;
    void stepTickCounter();
    QString displayPressure(double pressure);
    // The UDP step of the internal position paths.
    void sendInternalPosition();

    std::function<PortList()> portLister = &BackEnd::systemPorts;
    QTimer timerData;
    QTimer timerSensor;
    QTimer timerOperation;
    QSettings* settings = nullptr;
    // What the receiver's thread reads through getSetting.
    SettingsMirror settingsMirror;
    std::atomic<double> pressure[NmeaSourceCount] = {Pressure::None, Pressure::None, Pressure::None, Pressure::None};
    // Level in the two low bits, acknowledgement in the third, the time above: one word, so
    // that the output tick never sees half of a change.
    std::atomic<qint64> warningState{0};
    AgeTimer pressureAge[NmeaSourceCount];
    int tickCounter = 768;
    QSet<QString> doubleKeys;
    QSet<QString> stringKeys;
    QQmlApplicationEngine* engine = nullptr;
    // hasFix, position, cog and sog of each source.
    Fix fixes[NmeaSourceCount];
    mutable SeqLock fixLock;
    bool sensorStarted = false;
    QGeoPositionInfoSource* positionSource = nullptr;
    QPressureSensor pressureSensor;
    NmeaSenderUdp* senderUdp = nullptr;
    QString appPath = QStringLiteral("./");
    int previousTheme = -1;
    QDateTime pauseTime;
    NmeaReceiver* receiver = nullptr;
    // What the receiver's connections are doing, for the Connections page.
    ConnectionStatusBoard connectionStatusBoard;
    StatePublisher statePublisher;
};

extern BackEnd* backend;
// The log the tick writes into, set beside `backend` by whoever makes the log.
extern DataSource* dataSource;
