// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QObject>
#include <QtCore/QString>
#include <QtCore/QTimer>

#include <random>

class QSocketNotifier;

// Plays the USB pressure device on a pseudo-terminal: pressure as XDR and MDA sentences at
// a fixed interval, and the $PWEGB calibration dialogue. It can be made to misbehave, so
// that the application's handling of a bad or lost device can be watched without one.
class DeviceSimulator : public QObject
{
    Q_OBJECT

public:
    // The weather the device measures.
    enum class Scenario {
        Steady,     // a slow swing, the tide and a random drift
        Depression, // a low already coming in: the fall goes on for hours, then a rise
    };

    struct Options
    {
        Scenario scenario = Scenario::Steady;
        int intervalMs = 1000;
        quint32 seed = 1;
        double basePressure = 1013.25;
        int replyDelayMs = 50;
        // A symbolic link to the current terminal, gone while the device is away, so that
        // the path is the same when it comes back.
        QString linkPath;
        bool silent = false;
        // A dead sensor: no pressure sentences, while the calibration dialogue still answers.
        bool noPressure = false;
        bool answerErr = false;
        bool noise = false;
        bool noLineEnd = false;
    };

    explicit DeviceSimulator(const Options& options, QObject* parent = nullptr);
    ~DeviceSimulator() override;

    // Opens the terminal pair; false if the system has none to give.
    bool open();
    // The path the application opens: the link if there is one, else the terminal itself.
    QString devicePath() const;
    QString terminalPath() const { return slavePath; }
    bool isPresent() const { return masterFd >= 0; }

    // Misbehaviour, switched at run time.
    void setSilent(bool on) { options.silent = on; }
    void setNoPressure(bool on) { options.noPressure = on; }
    void setAnswerErr(bool on) { options.answerErr = on; }
    void setNoise(bool on) { options.noise = on; }
    void setNoLineEnd(bool on) { options.noLineEnd = on; }
    void setBasePressure(double hPa) { options.basePressure = hPa; }
    // Closes the device's side, as pulling the plug does.
    void vanish();
    // A new terminal, behind the same link if there is one.
    bool comeBack();
    // Sends raw bytes as they are (tests use it for deliberately broken lines).
    void sendRaw(const QByteArray& bytes);

    // The calibration the device holds.
    double offset() const { return calOffset; }
    double slope() const { return calSlope; }
    double reference() const { return calReference; }
    // The pressure the device measures now, calibration applied, in hectopascals.
    double currentPressure() const;

    // The weather `seconds` after the start, in hPa from the base pressure, without the
    // drift: nothing at the start itself. Before it (negative seconds) it is what the
    // device would have measured then, which is how the demo's log ends.
    static double weather(Scenario scenario, double seconds);
    static bool scenarioFromName(const QString& name, Scenario* scenario);

    // The low takes the place of the slow swing: a trough this deep and this long, whose
    // fall began this long before the start. The last three hours before the start then
    // fall by about 4.4 hPa (the pressure-fall warning) and no hour by 2 hPa (the alarm).
    static constexpr double DepressionDepth = 12.0;
    static constexpr double DepressionHours = 18.0;
    static constexpr double DepressionLeadHours = 5.0;

    static QByteArray checksum(const QByteArray& body);
    static QByteArray sentence(const QByteArray& body);

    static constexpr double FactoryOffset = 0.0;
    static constexpr double FactorySlope = 0.0;
    static constexpr double FactoryReference = 1013.25;

signals:
    void pathChanged(const QString& path);
    void commandReceived(const QByteArray& line);

private:
    void sendPressure();
    void readCommands();
    void handleCommand(const QByteArray& line);
    void reply(const QByteArray& body);
    void writeLine(const QByteArray& line);
    void writeBytes(const QByteArray& bytes);
    QByteArray noiseBytes(int count);
    void closeTerminal();

    Options options;
    int masterFd = -1;
    // Held open so that the terminal stays raw and the line has no hang-up while the
    // application is away.
    int slaveHoldFd = -1;
    QString slavePath;
    QSocketNotifier* readNotifier = nullptr;
    QTimer sendTimer;
    QByteArray incoming;
    std::mt19937 random;
    double drift = 0.0;
    qint64 samples = 0;
    double calOffset = FactoryOffset;
    double calSlope = FactorySlope;
    double calReference = FactoryReference;
};
