<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en_US">
<context>
    <name>BackEnd</name>
    <message>
        <source>deg</source>
        <translation>°</translation>
    </message>
    <message>
        <source>From internal pressure sensor</source>
        <translation>From internal pressure sensor</translation>
    </message>
    <message>
        <source>From serial connection</source>
        <translation>From serial connection</translation>
    </message>
    <message>
        <source>From TCP connection</source>
        <translation>From TCP connection</translation>
    </message>
    <message>
        <source>From UDP connection</source>
        <translation>From UDP connection</translation>
    </message>
    <message>
        <source>No pressure available</source>
        <translation>No pressure available</translation>
    </message>
</context>
<context>
    <name>Banner</name>
    <message>
        <source>Quillmere web site</source>
        <translation>Quillmere web site</translation>
    </message>
    <message>
        <source>Skerry web page</source>
        <translation>Skerry web page</translation>
    </message>
</context>
<context>
    <name>BaroH</name>
    <message>
        <source>WWWW</source>
        <translation>WWWW</translation>
    </message>
    <message>
        <source>Sea Level Pressure (QNH)</source>
        <translation>Sea Level Pressure (QNH)</translation>
    </message>
    <message>
        <source>Station Level Pressure (QFE)</source>
        <translation>Station Level Pressure (QFE)</translation>
    </message>
    <message>
        <source>No pressure data available</source>
        <translation>No pressure data available</translation>
    </message>
    <message>
        <source>30m</source>
        <translation>30m</translation>
    </message>
    <message>
        <source>%dm</source>
        <translation>%dm</translation>
    </message>
    <message>
        <source>3h</source>
        <translation>3h</translation>
    </message>
    <message>
        <source>%dh</source>
        <translation>%dh</translation>
    </message>
    <message>
        <source>6h</source>
        <translation>6h</translation>
    </message>
    <message>
        <source>12h</source>
        <translation>12h</translation>
    </message>
    <message>
        <source>1d</source>
        <translation>1d</translation>
    </message>
    <message>
        <source>2d</source>
        <translation>2d</translation>
    </message>
    <message>
        <source>4d</source>
        <translation>4d</translation>
    </message>
    <message>
        <source>%dd</source>
        <translation>%dd</translation>
    </message>
    <message>
        <source>8d</source>
        <translation>8d</translation>
    </message>
    <message>
        <source>16d</source>
        <translation>16d</translation>
    </message>
    <message>
        <source>Barogram</source>
        <translation>Barogram</translation>
    </message>
    <message>
        <source>Save a barogram of this span</source>
        <translation>Save a barogram of this span</translation>
    </message>
</context>
<context>
    <name>BaroSwipe</name>
    <message>
        <source>Graph or large display</source>
        <translation>Graph or large display</translation>
    </message>
</context>
<context>
    <name>BaroV</name>
    <message>
        <source>Sea Level Pressure (QNH)</source>
        <translation>Sea Level Pressure (QNH)</translation>
    </message>
    <message>
        <source>Station Level Pressure (QFE)</source>
        <translation>Station Level Pressure (QFE)</translation>
    </message>
    <message>
        <source>No pressure data available</source>
        <translation>No pressure data available</translation>
    </message>
</context>
<context>
    <name>Barogram</name>
    <message>
        <source>30 minutes</source>
        <translation>30 minutes</translation>
    </message>
    <message>
        <source>3 hours</source>
        <translation>3 hours</translation>
    </message>
    <message>
        <source>6 hours</source>
        <translation>6 hours</translation>
    </message>
    <message>
        <source>12 hours</source>
        <translation>12 hours</translation>
    </message>
    <message>
        <source>1 day</source>
        <translation>1 day</translation>
    </message>
    <message>
        <source>2 days</source>
        <translation>2 days</translation>
    </message>
    <message>
        <source>4 days</source>
        <translation>4 days</translation>
    </message>
    <message>
        <source>8 days</source>
        <translation>8 days</translation>
    </message>
    <message>
        <source>16 days</source>
        <translation>16 days</translation>
    </message>
    <message>
        <source>Barogram of %1</source>
        <translation>Barogram of %1</translation>
    </message>
    <message>
        <source>From %1 to %2</source>
        <translation>From %1 to %2</translation>
    </message>
    <message>
        <source>No readings in this span</source>
        <translation>No readings in this span</translation>
    </message>
    <message>
        <source>Lowest %1 %3, highest %2 %3</source>
        <translation>Lowest %1 %3, highest %2 %3</translation>
    </message>
    <message>
        <source>Tendency %1</source>
        <translation>Tendency %1</translation>
    </message>
    <message>
        <source>Last fix %1</source>
        <translation>Last fix %1</translation>
    </message>
    <message>
        <source>Pressure-fall alarm</source>
        <translation>Pressure-fall alarm</translation>
    </message>
    <message>
        <source>Pressure-fall warning</source>
        <translation>Pressure-fall warning</translation>
    </message>
</context>
<context>
    <name>CommandLine</name>
    <message>
        <source>Usage: brinholt [--export TABLE FILE | --help | --version]

Without options Brinholt opens its window.
  --export TABLE FILE  write a log table to FILE without opening the window;
                       the extension chooses the form: .csv, .gpx, .png or .pdf.
                       TABLE is BARO30M, BARO3H, BARO6H, BAR12H, BARO1D, BARO2D,
                       BARO4D, BARO8D or BAR16D, or its number 0 to 8.
  --help               show this text.
  --version            show the version.</source>
        <translation>Usage: brinholt [--export TABLE FILE | --help | --version]

Without options Brinholt opens its window.
  --export TABLE FILE  write a log table to FILE without opening the window;
                       the extension chooses the form: .csv, .gpx, .png or .pdf.
                       TABLE is BARO30M, BARO3H, BARO6H, BAR12H, BARO1D, BARO2D,
                       BARO4D, BARO8D or BAR16D, or its number 0 to 8.
  --help               show this text.
  --version            show the version.</translation>
    </message>
    <message>
        <source>--export needs a table and a file name.</source>
        <translation>--export needs a table and a file name.</translation>
    </message>
    <message>
        <source>Unknown table %1: use BARO30M, BARO3H, BARO6H, BAR12H, BARO1D, BARO2D, BARO4D, BARO8D, BAR16D or 0 to 8.</source>
        <translation>Unknown table %1: use BARO30M, BARO3H, BARO6H, BAR12H, BARO1D, BARO2D, BARO4D, BARO8D, BAR16D or 0 to 8.</translation>
    </message>
    <message>
        <source>Unknown extension of %1: use .csv, .gpx, .png or .pdf.</source>
        <translation>Unknown extension of %1: use .csv, .gpx, .png or .pdf.</translation>
    </message>
    <message>
        <source>Cannot write %1.</source>
        <translation>Cannot write %1.</translation>
    </message>
</context>
<context>
    <name>ConnectionStatusText</name>
    <message>
        <source>permission denied (add your user to the dialout group, then log in again)</source>
        <translation>permission denied (add your user to the dialout group, then log in again)</translation>
    </message>
    <message>
        <source>permission denied</source>
        <translation>permission denied</translation>
    </message>
    <message>
        <source>no such device</source>
        <translation>no such device</translation>
    </message>
    <message>
        <source>connection refused</source>
        <translation>connection refused</translation>
    </message>
    <message>
        <source>host not found</source>
        <translation>host not found</translation>
    </message>
    <message>
        <source>no answer within 5 s</source>
        <translation>no answer within 5 s</translation>
    </message>
    <message>
        <source>port already in use</source>
        <translation>port already in use</translation>
    </message>
    <message>
        <source>unknown error</source>
        <translation>unknown error</translation>
    </message>
    <message>
        <source>off</source>
        <translation>off</translation>
    </message>
    <message>
        <source>on, but no port chosen</source>
        <translation>on, but no port chosen</translation>
    </message>
    <message>
        <source>starts in %1 s, after the serial input</source>
        <translation>starts in %1 s, after the serial input</translation>
    </message>
    <message>
        <source>opening %1</source>
        <translation>opening %1</translation>
    </message>
    <message>
        <source>connecting to %1</source>
        <translation>connecting to %1</translation>
    </message>
    <message>
        <source>opening port %1</source>
        <translation>opening port %1</translation>
    </message>
    <message>
        <source>starting</source>
        <translation>starting</translation>
    </message>
    <message>
        <source>reading %1 at %2 baud, last sentence %3 s ago</source>
        <translation>reading %1 at %2 baud, last sentence %3 s ago</translation>
    </message>
    <message>
        <source>%1 open at %2 baud, but no sentence for %3 s</source>
        <translation>%1 open at %2 baud, but no sentence for %3 s</translation>
    </message>
    <message>
        <source>connected to %1, last sentence %2 s ago</source>
        <translation>connected to %1, last sentence %2 s ago</translation>
    </message>
    <message>
        <source>connected to %1, but no sentence for %2 s</source>
        <translation>connected to %1, but no sentence for %2 s</translation>
    </message>
    <message>
        <source>listening on port %1, last sentence %2 s ago</source>
        <translation>listening on port %1, last sentence %2 s ago</translation>
    </message>
    <message>
        <source>listening on port %1, but no sentence for %2 s</source>
        <translation>listening on port %1, but no sentence for %2 s</translation>
    </message>
    <message>
        <source>no broadcast address found: no network that can broadcast is up</source>
        <translation>no broadcast address found: no network that can broadcast is up</translation>
    </message>
    <message>
        <source>sending to 1 broadcast address</source>
        <translation>sending to 1 broadcast address</translation>
    </message>
    <message>
        <source>sending to %1 broadcast addresses</source>
        <translation>sending to %1 broadcast addresses</translation>
    </message>
    <message>
        <source>%1 lost (%2); retrying every %3 s</source>
        <translation>%1 lost (%2); retrying every %3 s</translation>
    </message>
    <message>
        <source>cannot open %1: %2; retrying every %3 s</source>
        <translation>cannot open %1: %2; retrying every %3 s</translation>
    </message>
    <message>
        <source>connection to %1 lost, retrying every %2 s</source>
        <translation>connection to %1 lost, retrying every %2 s</translation>
    </message>
    <message>
        <source>cannot connect to %1: %2; retrying every %3 s</source>
        <translation>cannot connect to %1: %2; retrying every %3 s</translation>
    </message>
    <message>
        <source>listening on port %1 stopped, retrying every %2 s</source>
        <translation>listening on port %1 stopped, retrying every %2 s</translation>
    </message>
    <message>
        <source>cannot listen on port %1: %2; retrying every %3 s</source>
        <translation>cannot listen on port %1: %2; retrying every %3 s</translation>
    </message>
    <message>
        <source>cannot connect to %1: %2, not retried; leave this page to try again</source>
        <translation>cannot connect to %1: %2, not retried; leave this page to try again</translation>
    </message>
    <message>
        <source>cannot listen on port %1: %2, not retried; leave this page to try again</source>
        <translation>cannot listen on port %1: %2, not retried; leave this page to try again</translation>
    </message>
</context>
<context>
    <name>DataSource</name>
    <message>
        <source>Device</source>
        <translation>Device</translation>
    </message>
    <message>
        <source>ft</source>
        <translation>ft</translation>
    </message>
    <message>
        <source>m</source>
        <translation>m</translation>
    </message>
    <message>
        <source>Date (%1);Latitude;Longitude;Station pressure (%3);Sea Level Pressure (%3);Offset (%3);Elevation (%2);COG(T);SOG(kts)</source>
        <translation>Date (%1);Latitude;Longitude;Station pressure (%3);Sea Level Pressure (%3);Offset (%3);Elevation (%2);COG(T);SOG(kts)</translation>
    </message>
    <message>
        <source>deg</source>
        <translation>°</translation>
    </message>
</context>
<context>
    <name>FileData</name>
    <message>
        <source>Are you sure you want to delete ALL data ?</source>
        <translation>Are you sure you want to delete ALL data ?</translation>
    </message>
    <message>
        <source>Delete all data</source>
        <translation>Delete all data</translation>
    </message>
    <message>
        <source>Log tables</source>
        <translation>Log tables</translation>
    </message>
    <message>
        <source>30m (2 secs interval)</source>
        <translation>30m (2 secs interval)</translation>
    </message>
    <message>
        <source>3h (6 secs interval)</source>
        <translation>3h (6 secs interval)</translation>
    </message>
    <message>
        <source>6h (12 secs interval)</source>
        <translation>6h (12 secs interval)</translation>
    </message>
    <message>
        <source>12h (24 secs interval)</source>
        <translation>12h (24 secs interval)</translation>
    </message>
    <message>
        <source>1d (48 secs interval)</source>
        <translation>1d (48 secs interval)</translation>
    </message>
    <message>
        <source>2d (96 secs interval)</source>
        <translation>2d (96 secs interval)</translation>
    </message>
    <message>
        <source>4d (192 secs interval)</source>
        <translation>4d (192 secs interval)</translation>
    </message>
    <message>
        <source>8d (384 secs interval)</source>
        <translation>8d (384 secs interval)</translation>
    </message>
    <message>
        <source>16d (768 secs interval)</source>
        <translation>16d (768 secs interval)</translation>
    </message>
</context>
<context>
    <name>FileDetails</name>
    <message>
        <source>30m</source>
        <translation>30m</translation>
    </message>
    <message>
        <source>3h</source>
        <translation>3h</translation>
    </message>
    <message>
        <source>6h</source>
        <translation>6h</translation>
    </message>
    <message>
        <source>12h</source>
        <translation>12h</translation>
    </message>
    <message>
        <source>1d</source>
        <translation>1d</translation>
    </message>
    <message>
        <source>2d</source>
        <translation>2d</translation>
    </message>
    <message>
        <source>4d</source>
        <translation>4d</translation>
    </message>
    <message>
        <source>8d</source>
        <translation>8d</translation>
    </message>
    <message>
        <source>16d</source>
        <translation>16d</translation>
    </message>
    <message>
        <source>Are you sure you want to delete ALL data in this table ?</source>
        <translation>Are you sure you want to delete ALL data in this table ?</translation>
    </message>
    <message>
        <source>Please choose a file</source>
        <translation>Please choose a file</translation>
    </message>
    <message>
        <source>Export page as CSV</source>
        <translation>Export page as CSV</translation>
    </message>
    <message>
        <source>Export page as GPX</source>
        <translation>Export page as GPX</translation>
    </message>
    <message>
        <source>Delete this data file</source>
        <translation>Delete this data file</translation>
    </message>
    <message>
        <source>Delete this record</source>
        <translation>Delete this record</translation>
    </message>
    <message>
        <source>No table chosen</source>
        <translation>No table chosen</translation>
    </message>
</context>
<context>
    <name>Help_textview</name>
    <message>
        <source>Privacy Policy</source>
        <translation>Privacy Policy</translation>
    </message>
    <message>
        <source>Back to help</source>
        <translation>Back to help</translation>
    </message>
    <message>
        <source>Help</source>
        <translation>Help</translation>
    </message>
</context>
<context>
    <name>PressureWarning</name>
    <message>
        <source>Pressure falling quickly</source>
        <translation>Pressure falling quickly</translation>
    </message>
    <message>
        <source>Pressure falling very rapidly</source>
        <translation>Pressure falling very rapidly</translation>
    </message>
    <message>
        <source>%1 %2 in three hours</source>
        <translation>%1 %2 in three hours</translation>
    </message>
    <message>
        <source>%1 %2 in the last hour</source>
        <translation>%1 %2 in the last hour</translation>
    </message>
    <message>
        <source>Fall of %1, since %2</source>
        <translation>Fall of %1, since %2</translation>
    </message>
    <message>
        <source> and </source>
        <translation> and </translation>
    </message>
</context>
<context>
    <name>QObject</name>
    <message>
        <source>deg</source>
        <translation>°</translation>
    </message>
    <message>
        <source>kts</source>
        <translation>kts</translation>
    </message>
    <message>
        <source>km/h</source>
        <translation>km/h</translation>
    </message>
    <message>
        <source>mph</source>
        <translation>mph</translation>
    </message>
</context>
<context>
    <name>WarningSettings</name>
    <message>
        <source>Pressure-fall warning</source>
        <translation>Pressure-fall warning</translation>
    </message>
    <message>
        <source>Warn of a falling barometer</source>
        <translation>Warn of a falling barometer</translation>
    </message>
    <message>
        <source>Warning: fall in three hours</source>
        <translation>Warning: fall in three hours</translation>
    </message>
    <message>
        <source>Alarm: fall in three hours</source>
        <translation>Alarm: fall in three hours</translation>
    </message>
    <message>
        <source>Alarm: fall in one hour</source>
        <translation>Alarm: fall in one hour</translation>
    </message>
</context>
<context>
    <name>WarningStrip</name>
    <message>
        <source>Acknowledged</source>
        <translation>Acknowledged</translation>
    </message>
    <message>
        <source>Acknowledge</source>
        <translation>Acknowledge</translation>
    </message>
</context>
<context>
    <name>main</name>
    <message>
        <source>Brinholt</source>
        <translation>Brinholt</translation>
    </message>
    <message>
        <source>Graph</source>
        <translation>Graph</translation>
    </message>
    <message>
        <source>Data</source>
        <translation>Data</translation>
    </message>
    <message>
        <source>Settings</source>
        <translation>Settings</translation>
    </message>
    <message>
        <source>Help</source>
        <translation>Help</translation>
    </message>
</context>
<context>
    <name>quillmereCalibration</name>
    <message>
        <source>Quillmere Skerry calibration</source>
        <translation>Quillmere Skerry calibration</translation>
    </message>
    <message>
        <source>Operation failed</source>
        <translation>Operation failed</translation>
    </message>
    <message>
        <source>Operation timeout, probably no&lt;br&gt;Quillmere Skerry is connected</source>
        <translation>Operation timeout, probably no&lt;br&gt;Quillmere Skerry is connected</translation>
    </message>
    <message>
        <source>Set Skerry sensor offset (mb)</source>
        <translation>Set Skerry sensor offset (mb)</translation>
    </message>
    <message>
        <source>Station Level (QFE)</source>
        <translation>Station Level (QFE)</translation>
    </message>
    <message>
        <source>Set sensor pressure slope (mb/bar)</source>
        <translation>Set sensor pressure slope (mb/bar)</translation>
    </message>
    <message>
        <source>Calibrate</source>
        <translation>Calibrate</translation>
    </message>
    <message>
        <source>Factory reset</source>
        <translation>Factory reset</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Cancel</translation>
    </message>
    <message>
        <source>No current pressure: Calibrate waits until a reading arrives</source>
        <translation>No current pressure: Calibrate waits until a reading arrives</translation>
    </message>
</context>
<context>
    <name>settings</name>
    <message>
        <source>Langage</source>
        <translation>Langage</translation>
    </message>
    <message>
        <source>English</source>
        <translation>English</translation>
    </message>
    <message>
        <source>French</source>
        <translation>French</translation>
    </message>
    <message>
        <source>Theme</source>
        <translation>Theme</translation>
    </message>
    <message>
        <source>Light</source>
        <translation>Light</translation>
    </message>
    <message>
        <source>Dark</source>
        <translation>Dark</translation>
    </message>
    <message>
        <source>Device</source>
        <translation>Device</translation>
    </message>
    <message>
        <source>Time zone</source>
        <translation>Time zone</translation>
    </message>
    <message>
        <source>UTC</source>
        <translation>UTC</translation>
    </message>
    <message>
        <source>Date format</source>
        <translation>Date format</translation>
    </message>
    <message>
        <source>dd mm</source>
        <translation>dd mm</translation>
    </message>
    <message>
        <source>mm dd</source>
        <translation>mm dd</translation>
    </message>
    <message>
        <source>Time format</source>
        <translation>Time format</translation>
    </message>
    <message>
        <source>24h</source>
        <translation>24h</translation>
    </message>
    <message>
        <source>12h</source>
        <translation>12h</translation>
    </message>
    <message>
        <source>Speed format</source>
        <translation>Speed format</translation>
    </message>
    <message>
        <source>kts</source>
        <translation>kts</translation>
    </message>
    <message>
        <source>km/h</source>
        <translation>km/h</translation>
    </message>
    <message>
        <source>mph</source>
        <translation>mph</translation>
    </message>
    <message>
        <source>Pressure units</source>
        <translation>Pressure units</translation>
    </message>
    <message>
        <source>Precision display</source>
        <translation>Precision display</translation>
    </message>
    <message>
        <source>Low</source>
        <translation>Low</translation>
    </message>
    <message>
        <source>Normal</source>
        <translation>Normal</translation>
    </message>
    <message>
        <source>High</source>
        <translation>High</translation>
    </message>
    <message>
        <source>Location display</source>
        <translation>Location display</translation>
    </message>
    <message>
        <source>Pressure display</source>
        <translation>Pressure display</translation>
    </message>
    <message>
        <source>Sea Level (QNH)</source>
        <translation>Sea Level (QNH)</translation>
    </message>
    <message>
        <source>Station Level (QFE)</source>
        <translation>Station Level (QFE)</translation>
    </message>
    <message>
        <source>Elevation units</source>
        <translation>Elevation units</translation>
    </message>
    <message>
        <source>Meters</source>
        <translation>Meters</translation>
    </message>
    <message>
        <source>Feet</source>
        <translation>Feet</translation>
    </message>
    <message>
        <source>Elevation (meters)</source>
        <translation>Elevation (meters)</translation>
    </message>
    <message>
        <source>Elevation (feet)</source>
        <translation>Elevation (feet)</translation>
    </message>
    <message>
        <source>Line style</source>
        <translation>Line style</translation>
    </message>
    <message>
        <source>Straight</source>
        <translation>Straight</translation>
    </message>
    <message>
        <source>Spline</source>
        <translation>Spline</translation>
    </message>
    <message>
        <source>Data on two screens</source>
        <translation>Data on two screens</translation>
    </message>
    <message>
        <source>Keep screen always on</source>
        <translation>Keep screen always on</translation>
    </message>
    <message>
        <source>UDP NMEA output</source>
        <translation>UDP NMEA output</translation>
    </message>
    <message>
        <source>Also send position (RMC)</source>
        <translation>Also send position (RMC)</translation>
    </message>
    <message>
        <source>UDP output port</source>
        <translation>UDP output port</translation>
    </message>
    <message>
        <source>Pressure display offset</source>
        <translation>Pressure display offset</translation>
    </message>
    <message>
        <source>Connections settings</source>
        <translation>Connections settings</translation>
    </message>
    <message>
        <source>Quillmere Skerry
calibration</source>
        <translation>Quillmere Skerry
calibration</translation>
    </message>
</context>
<context>
    <name>settingsConnections</name>
    <message>
        <source>Connections</source>
        <translation>Connections</translation>
    </message>
    <message>
        <source>Position</source>
        <translation>Position</translation>
    </message>
    <message>
        <source>Internal</source>
        <translation>Internal</translation>
    </message>
    <message>
        <source>NMEA</source>
        <translation>NMEA</translation>
    </message>
    <message>
        <source>Serial NMEA input</source>
        <translation>Serial NMEA input</translation>
    </message>
    <message>
        <source>Serial port</source>
        <translation>Serial port</translation>
    </message>
    <message>
        <source>Speed</source>
        <translation>Speed</translation>
    </message>
    <message>
        <source>No Parity</source>
        <translation>No Parity</translation>
    </message>
    <message>
        <source>Even Parity</source>
        <translation>Even Parity</translation>
    </message>
    <message>
        <source>Odd Parity</source>
        <translation>Odd Parity</translation>
    </message>
    <message>
        <source>Space Parity</source>
        <translation>Space Parity</translation>
    </message>
    <message>
        <source>Mark Parity</source>
        <translation>Mark Parity</translation>
    </message>
    <message>
        <source>Parity</source>
        <translation>Parity</translation>
    </message>
    <message>
        <source>8 Bits</source>
        <translation>8 Bits</translation>
    </message>
    <message>
        <source>7 Bits</source>
        <translation>7 Bits</translation>
    </message>
    <message>
        <source>6 Bits</source>
        <translation>6 Bits</translation>
    </message>
    <message>
        <source>5 Bits</source>
        <translation>5 Bits</translation>
    </message>
    <message>
        <source>Data bits</source>
        <translation>Data bits</translation>
    </message>
    <message>
        <source>1 Bit</source>
        <translation>1 Bit</translation>
    </message>
    <message>
        <source>1.5 Bit</source>
        <translation>1.5 Bit</translation>
    </message>
    <message>
        <source>2 Bits</source>
        <translation>2 Bits</translation>
    </message>
    <message>
        <source>Stop bits</source>
        <translation>Stop bits</translation>
    </message>
    <message>
        <source>No Control</source>
        <translation>No Control</translation>
    </message>
    <message>
        <source>Hardware</source>
        <translation>Hardware</translation>
    </message>
    <message>
        <source>Software</source>
        <translation>Software</translation>
    </message>
    <message>
        <source>Flow control</source>
        <translation>Flow control</translation>
    </message>
    <message>
        <source>TCP NMEA input</source>
        <translation>TCP NMEA input</translation>
    </message>
    <message>
        <source>TCP address</source>
        <translation>TCP address</translation>
    </message>
    <message>
        <source>TCP port</source>
        <translation>TCP port</translation>
    </message>
    <message>
        <source>UDP NMEA input</source>
        <translation>UDP NMEA input</translation>
    </message>
    <message>
        <source>UDP input port</source>
        <translation>UDP input port</translation>
    </message>
    <message>
        <source>UDP NMEA output</source>
        <translation>UDP NMEA output</translation>
    </message>
    <message>
        <source>UDP output port</source>
        <translation>UDP output port</translation>
    </message>
    <message>
        <source>Also send position (RMC)</source>
        <translation>Also send position (RMC)</translation>
    </message>
    <message>
        <source>Also send MDA</source>
        <translation>Also send MDA</translation>
    </message>
    <message>
        <source>Other device…</source>
        <translation>Other device…</translation>
    </message>
    <message>
        <source>Device path</source>
        <translation>Device path</translation>
    </message>
    <message>
        <source>Path of the serial device</source>
        <translation>Path of the serial device</translation>
    </message>
</context>
</TS>
