<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="fr_FR">
<context>
    <name>BackEnd</name>
    <message>
        <source>deg</source>
        <translation>°</translation>
    </message>
    <message>
        <source>From internal pressure sensor</source>
        <translation>Depuis le capteur de pression interne</translation>
    </message>
    <message>
        <source>From serial connection</source>
        <translation>Depuis la connexion série</translation>
    </message>
    <message>
        <source>From TCP connection</source>
        <translation>Depuis la connexion TCP</translation>
    </message>
    <message>
        <source>From UDP connection</source>
        <translation>Depuis la connexion UDP</translation>
    </message>
    <message>
        <source>No pressure available</source>
        <translation>Aucune pression disponible</translation>
    </message>
</context>
<context>
    <name>DataSource</name>
    <message>
        <source>Device</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>ft</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>m</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Date (%1);Latitude;Longitude;Station pressure (%3);Sea Level Pressure (%3);Offset (%3);Elevation (%2);COG(T);SOG(kts)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>deg</source>
        <translation>°</translation>
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
        <translation>nds</translation>
    </message>
    <message>
        <source>km/h</source>
        <translation>km/h</translation>
    </message>
    <message>
        <source>mph</source>
        <translation>mi/h</translation>
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
