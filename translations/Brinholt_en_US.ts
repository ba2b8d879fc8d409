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
    <name>main</name>
    <message>
        <source>Brinholt</source>
        <translation>Brinholt</translation>
    </message>
</context>
</TS>
