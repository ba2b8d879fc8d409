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
    <name>BaroH</name>
    <message>
        <source>WWWW</source>
        <translation>WWWW</translation>
    </message>
    <message>
        <source>Sea Level Pressure (QNH)</source>
        <translation>Pression au niveau de la mer (QNH)</translation>
    </message>
    <message>
        <source>Station Level Pressure (QFE)</source>
        <translation>Pression à la station (QFE)</translation>
    </message>
    <message>
        <source>No pressure data available</source>
        <translation>Aucune donnée de pression disponible</translation>
    </message>
    <message>
        <source>30m</source>
        <translation>30 min</translation>
    </message>
    <message>
        <source>%dm</source>
        <translation>%d min</translation>
    </message>
    <message>
        <source>3h</source>
        <translation>3h</translation>
    </message>
    <message>
        <source>%dh</source>
        <translation>%d h</translation>
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
        <translation>1j</translation>
    </message>
    <message>
        <source>2d</source>
        <translation>2j</translation>
    </message>
    <message>
        <source>4d</source>
        <translation>4j</translation>
    </message>
    <message>
        <source>%dd</source>
        <translation>%d j</translation>
    </message>
    <message>
        <source>8d</source>
        <translation>8j</translation>
    </message>
    <message>
        <source>16d</source>
        <translation>16j</translation>
    </message>
</context>
<context>
    <name>BaroV</name>
    <message>
        <source>Sea Level Pressure (QNH)</source>
        <translation>Pression au niveau de la mer (QNH)</translation>
    </message>
    <message>
        <source>Station Level Pressure (QFE)</source>
        <translation>Pression à la station (QFE)</translation>
    </message>
    <message>
        <source>No pressure data available</source>
        <translation>Aucune donnée de pression disponible</translation>
    </message>
</context>
<context>
    <name>DataSource</name>
    <message>
        <source>Device</source>
        <translation>Appareil</translation>
    </message>
    <message>
        <source>ft</source>
        <translation>pi</translation>
    </message>
    <message>
        <source>m</source>
        <translation>m</translation>
    </message>
    <message>
        <source>Date (%1);Latitude;Longitude;Station pressure (%3);Sea Level Pressure (%3);Offset (%3);Elevation (%2);COG(T);SOG(kts)</source>
        <translation>Date (%1);Latitude;Longitude;Pression station (%3);Pression niveau mer (%3);Correction (%3);Altitude (%2);COG(V);SOG(nds)</translation>
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
        <translation>Voulez-vous vraiment effacer TOUTES les données ?</translation>
    </message>
    <message>
        <source>Delete all data</source>
        <translation>Effacer toutes les données</translation>
    </message>
    <message>
        <source>Log tables</source>
        <translation>Tables de l&apos;historique</translation>
    </message>
    <message>
        <source>30m (2 secs interval)</source>
        <translation>30 min (une mesure toutes les 2 s)</translation>
    </message>
    <message>
        <source>3h (6 secs interval)</source>
        <translation>3h (une mesure toutes les 6 s)</translation>
    </message>
    <message>
        <source>6h (12 secs interval)</source>
        <translation>6h (une mesure toutes les 12 s)</translation>
    </message>
    <message>
        <source>12h (24 secs interval)</source>
        <translation>12h (une mesure toutes les 24 s)</translation>
    </message>
    <message>
        <source>1d (48 secs interval)</source>
        <translation>1j (une mesure toutes les 48 s)</translation>
    </message>
    <message>
        <source>2d (96 secs interval)</source>
        <translation>2j (une mesure toutes les 96 s)</translation>
    </message>
    <message>
        <source>4d (192 secs interval)</source>
        <translation>4j (une mesure toutes les 192 s)</translation>
    </message>
    <message>
        <source>8d (384 secs interval)</source>
        <translation>8j (une mesure toutes les 384 s)</translation>
    </message>
    <message>
        <source>16d (768 secs interval)</source>
        <translation>16j (une mesure toutes les 768 s)</translation>
    </message>
</context>
<context>
    <name>FileDetails</name>
    <message>
        <source>30m</source>
        <translation>30 min</translation>
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
        <translation>1j</translation>
    </message>
    <message>
        <source>2d</source>
        <translation>2j</translation>
    </message>
    <message>
        <source>4d</source>
        <translation>4j</translation>
    </message>
    <message>
        <source>8d</source>
        <translation>8j</translation>
    </message>
    <message>
        <source>16d</source>
        <translation>16j</translation>
    </message>
    <message>
        <source>Are you sure you want to delete ALL data in this table ?</source>
        <translation>Voulez-vous vraiment effacer TOUTES les données de cette table ?</translation>
    </message>
    <message>
        <source>Please choose a file</source>
        <translation>Veuillez choisir un fichier</translation>
    </message>
    <message>
        <source>Export page as CSV</source>
        <translation>Exporter la page en CSV</translation>
    </message>
    <message>
        <source>Export page as GPX</source>
        <translation>Exporter la page en GPX</translation>
    </message>
    <message>
        <source>Delete this data file</source>
        <translation>Effacer ce fichier de données</translation>
    </message>
    <message>
        <source>Delete this record</source>
        <translation>Effacer cette mesure</translation>
    </message>
    <message>
        <source>No table chosen</source>
        <translation>Aucune table choisie</translation>
    </message>
</context>
<context>
    <name>Help_textview</name>
    <message>
        <source>Privacy Policy</source>
        <translation>Politique de confidentialité</translation>
    </message>
    <message>
        <source>Back to help</source>
        <translation>Retour à l&apos;aide</translation>
    </message>
    <message>
        <source>Help</source>
        <translation>Aide</translation>
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
