// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QtCore/QString>

// The keys of brinholt.ini, which users' files already hold: never rename one. Each default
// is the value its readers pass for a missing key; where readers differ on purpose, each
// reader's own default is named after it.
namespace SettingKey {

inline const QString Version = QStringLiteral("version");
inline const QString Language = QStringLiteral("language");
inline const QString FormatMMDD = QStringLiteral("formatMMDD");
inline const QString Theme = QStringLiteral("theme");
inline const QString Elevation = QStringLiteral("elevation");
inline const QString Offset = QStringLiteral("offset");
inline const QString PreDisplay = QStringLiteral("preDisplay");
inline const QString UnitPre = QStringLiteral("unitPre");
inline const QString Precision = QStringLiteral("precision");
inline const QString UnitEle = QStringLiteral("unitEle");
inline const QString UnitSpeed = QStringLiteral("unitSpeed");
inline const QString TimeZone = QStringLiteral("timeZone");
inline const QString TimeFormat = QStringLiteral("timeFormat");
inline const QString LocFormat = QStringLiteral("locFormat");
inline const QString PosSource = QStringLiteral("SettingPosSource");
inline const QString UsePos = QStringLiteral("SettingUsePos");
inline const QString UseSerial = QStringLiteral("SettingUseSerial");
inline const QString SerialPort = QStringLiteral("SettingSerialPort");
inline const QString SerialSpeed = QStringLiteral("SettingSerialSpeed");
inline const QString SerialPortSpeed = QStringLiteral("SettingSerialPortSpeed");
inline const QString SerialControl = QStringLiteral("SettingSerialControl");
inline const QString SerialParity = QStringLiteral("SettingSerialParity");
inline const QString SerialNbBits = QStringLiteral("SettingSerialNbBits");
inline const QString SerialStopBit = QStringLiteral("SettingSerialStopBit");
inline const QString UseTcp = QStringLiteral("SettingUseTcp");
inline const QString TcpIpAddress = QStringLiteral("SettingTcpIpAddress");
inline const QString TcpIpPort = QStringLiteral("SettingTcpIpPort");
inline const QString UseUdp = QStringLiteral("SettingUseUdp");
inline const QString UdpPort = QStringLiteral("SettingUdpPort");
inline const QString UseUdpOut = QStringLiteral("SettingUseUdpOut");
inline const QString SendUdpPos = QStringLiteral("sendUdpPos");
inline const QString SendUdpMda = QStringLiteral("sendUdpMda");
// Spelled so on purpose: "udpPort" is no key of ours.
inline const QString UpdPort = QStringLiteral("updPort");
// The pressure-fall warning: on or off, and its three bounds in hPa.
inline const QString WarningOn = QStringLiteral("warningOn");
inline const QString WarningFall3h = QStringLiteral("warningFall3h");
inline const QString AlarmFall3h = QStringLiteral("alarmFall3h");
inline const QString AlarmFall1h = QStringLiteral("alarmFall1h");
// The watch page on the boat's network: on or off, its port, and whether it tells where
// the boat is.
inline const QString WatchPageOn = QStringLiteral("watchPageOn");
inline const QString WatchPagePort = QStringLiteral("watchPagePort");
inline const QString WatchPagePosition = QStringLiteral("watchPagePosition");
// The rule-of-thumb forecast: on or off, and the hemisphere it is read for (0 from the last
// fix, 1 north, 2 south).
inline const QString ForecastOn = QStringLiteral("forecastOn");
inline const QString ForecastHemisphere = QStringLiteral("forecastHemisphere");
// The Signal K output: a TCP server a Signal K server reads, and datagrams sent to one.
inline const QString SignalKTcpOn = QStringLiteral("signalkTcpOn");
inline const QString SignalKTcpPort = QStringLiteral("signalkTcpPort");
inline const QString SignalKUdpOn = QStringLiteral("signalkUdpOn");
inline const QString SignalKUdpHost = QStringLiteral("signalkUdpHost");
inline const QString SignalKUdpPort = QStringLiteral("signalkUdpPort");

} // namespace SettingKey

namespace SettingDefault {

inline const QString Version = QStringLiteral("1.0");

constexpr int Language = 0;
constexpr int LanguageAtStartup = -1;
constexpr int FormatMMDD = 0;
constexpr int FormatMMDDAtStartup = -1;
constexpr int Theme = 0;
constexpr double Elevation = 0.0;
constexpr double Offset = 0.0;
// The tick reads the offset with an integer zero; as a double it is the same.
constexpr int OffsetAtTick = 0;
constexpr int PreDisplay = 0;
constexpr int UnitPre = 0;
constexpr int Precision = 1;
constexpr int UnitEle = 0;
constexpr int UnitSpeed = 0;
constexpr int TimeZone = 1;
// The CSV export alone counts a missing zone as UTC.
constexpr int TimeZoneAtExport = 0;
constexpr int TimeFormat = 0;
constexpr int LocFormat = 1;
constexpr int PosSource = 1;
constexpr int UsePos = 1;
constexpr int UseSerial = 0;
// BackEnd::startNmea reads the port with no default at all: absent, it is empty, not this.
inline const QString SerialPort = QStringLiteral("None");
constexpr int SerialPortSpeed = 9600;
constexpr int SerialControl = 0;
constexpr int SerialParity = 0;
constexpr int SerialNbBits = 0;
constexpr int SerialStopBit = 0;
constexpr int UseTcp = 0;
inline const QString TcpIpAddress = QStringLiteral("127.000.000.001");
constexpr int TcpIpPort = 10110;
constexpr int UseUdp = 0;
constexpr int UdpPort = 10110;
constexpr int UseUdpOut = 0;
constexpr int SendUdpPos = 0;
constexpr int SendUdpMda = 0;
constexpr int UpdPort = 10110;
// The internal sensor's broadcast alone falls back to another port.
constexpr int UpdPortAtSensor = 5999;
constexpr int WarningOn = 1;
constexpr int WatchPageOn = 0;
constexpr int WatchPagePort = 8088;
constexpr int WatchPagePortLowest = 1024;
constexpr int WatchPagePortHighest = 65535;
constexpr int WatchPagePosition = 0;
// Off until asked for: a forecast on the display could surprise.
constexpr int ForecastOn = 0;
constexpr int ForecastHemisphere = 0;
constexpr int SignalKTcpOn = 0;
// No Signal K server takes this port for itself: its own stream is on 8375, its web
// interface on 3000 and its NMEA 0183 output on 10110.
constexpr int SignalKTcpPort = 8376;
constexpr int SignalKUdpOn = 0;
inline const QString SignalKUdpHost = QStringLiteral("127.0.0.1");
constexpr int SignalKUdpPort = 8376;

} // namespace SettingDefault
