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
    <name>Banner</name>
    <message>
        <source>Quillmere web site</source>
        <translation>Site web de Quillmere</translation>
    </message>
    <message>
        <source>Skerry web page</source>
        <translation>Page web du Skerry</translation>
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
    <message>
        <source>Barogram</source>
        <translation>Barogramme</translation>
    </message>
    <message>
        <source>Save a barogram of this span</source>
        <translation>Enregistrer un barogramme de cette période</translation>
    </message>
</context>
<context>
    <name>BaroSwipe</name>
    <message>
        <source>Graph or large display</source>
        <translation>Graphique ou grand affichage</translation>
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
    <name>Barogram</name>
    <message>
        <source>30 minutes</source>
        <translation>30 minutes</translation>
    </message>
    <message>
        <source>3 hours</source>
        <translation>3 heures</translation>
    </message>
    <message>
        <source>6 hours</source>
        <translation>6 heures</translation>
    </message>
    <message>
        <source>12 hours</source>
        <translation>12 heures</translation>
    </message>
    <message>
        <source>1 day</source>
        <translation>1 jour</translation>
    </message>
    <message>
        <source>2 days</source>
        <translation>2 jours</translation>
    </message>
    <message>
        <source>4 days</source>
        <translation>4 jours</translation>
    </message>
    <message>
        <source>8 days</source>
        <translation>8 jours</translation>
    </message>
    <message>
        <source>16 days</source>
        <translation>16 jours</translation>
    </message>
    <message>
        <source>Barogram of %1</source>
        <translation>Barogramme sur %1</translation>
    </message>
    <message>
        <source>From %1 to %2</source>
        <translation>Du %1 au %2</translation>
    </message>
    <message>
        <source>No readings in this span</source>
        <translation>Aucune mesure sur cette période</translation>
    </message>
    <message>
        <source>Lowest %1 %3, highest %2 %3</source>
        <translation>Minimum %1 %3, maximum %2 %3</translation>
    </message>
    <message>
        <source>Tendency %1</source>
        <translation>Tendance %1</translation>
    </message>
    <message>
        <source>Last fix %1</source>
        <translation>Dernière position %1</translation>
    </message>
    <message>
        <source>Pressure-fall alarm</source>
        <translation>Alarme de baisse de pression</translation>
    </message>
    <message>
        <source>Pressure-fall warning</source>
        <translation>Alerte de baisse de pression</translation>
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
        <translation>Utilisation : brinholt [--export TABLE FICHIER | --help | --version]

Sans option, Brinholt ouvre sa fenêtre.
  --export TABLE FICHIER  écrit une table du journal dans FICHIER sans ouvrir la fenêtre ;
                          l&apos;extension choisit la forme : .csv, .gpx, .png ou .pdf.
                          TABLE est BARO30M, BARO3H, BARO6H, BAR12H, BARO1D, BARO2D,
                          BARO4D, BARO8D ou BAR16D, ou son numéro de 0 à 8.
  --help                  affiche ce texte.
  --version               affiche la version.</translation>
    </message>
    <message>
        <source>--export needs a table and a file name.</source>
        <translation>--export demande une table et un nom de fichier.</translation>
    </message>
    <message>
        <source>Unknown table %1: use BARO30M, BARO3H, BARO6H, BAR12H, BARO1D, BARO2D, BARO4D, BARO8D, BAR16D or 0 to 8.</source>
        <translation>Table inconnue %1 : utilisez BARO30M, BARO3H, BARO6H, BAR12H, BARO1D, BARO2D, BARO4D, BARO8D, BAR16D ou un numéro de 0 à 8.</translation>
    </message>
    <message>
        <source>Unknown extension of %1: use .csv, .gpx, .png or .pdf.</source>
        <translation>Extension inconnue pour %1 : utilisez .csv, .gpx, .png ou .pdf.</translation>
    </message>
    <message>
        <source>Cannot write %1.</source>
        <translation>Impossible d&apos;écrire %1.</translation>
    </message>
</context>
<context>
    <name>ConnectionStatusText</name>
    <message>
        <source>permission denied (add your user to the dialout group, then log in again)</source>
        <translation>permission refusée (ajoutez votre utilisateur au groupe dialout, puis reconnectez-vous)</translation>
    </message>
    <message>
        <source>permission denied</source>
        <translation>permission refusée</translation>
    </message>
    <message>
        <source>no such device</source>
        <translation>périphérique introuvable</translation>
    </message>
    <message>
        <source>connection refused</source>
        <translation>connexion refusée</translation>
    </message>
    <message>
        <source>host not found</source>
        <translation>hôte introuvable</translation>
    </message>
    <message>
        <source>no answer within 5 s</source>
        <translation>aucune réponse en 5 s</translation>
    </message>
    <message>
        <source>port already in use</source>
        <translation>port déjà utilisé</translation>
    </message>
    <message>
        <source>unknown error</source>
        <translation>erreur inconnue</translation>
    </message>
    <message>
        <source>off</source>
        <translation>désactivée</translation>
    </message>
    <message>
        <source>on, but no port chosen</source>
        <translation>activée, mais aucun port choisi</translation>
    </message>
    <message>
        <source>starts in %1 s, after the serial input</source>
        <translation>démarre dans %1 s, après l&apos;entrée série</translation>
    </message>
    <message>
        <source>opening %1</source>
        <translation>ouverture de %1</translation>
    </message>
    <message>
        <source>connecting to %1</source>
        <translation>connexion à %1</translation>
    </message>
    <message>
        <source>opening port %1</source>
        <translation>ouverture du port %1</translation>
    </message>
    <message>
        <source>starting</source>
        <translation>démarrage</translation>
    </message>
    <message>
        <source>reading %1 at %2 baud, last sentence %3 s ago</source>
        <translation>lecture de %1 à %2 bauds, dernière phrase il y a %3 s</translation>
    </message>
    <message>
        <source>%1 open at %2 baud, but no sentence for %3 s</source>
        <translation>%1 ouvert à %2 bauds, mais aucune phrase depuis %3 s</translation>
    </message>
    <message>
        <source>connected to %1, last sentence %2 s ago</source>
        <translation>connecté à %1, dernière phrase il y a %2 s</translation>
    </message>
    <message>
        <source>connected to %1, but no sentence for %2 s</source>
        <translation>connecté à %1, mais aucune phrase depuis %2 s</translation>
    </message>
    <message>
        <source>listening on port %1, last sentence %2 s ago</source>
        <translation>à l&apos;écoute sur le port %1, dernière phrase il y a %2 s</translation>
    </message>
    <message>
        <source>listening on port %1, but no sentence for %2 s</source>
        <translation>à l&apos;écoute sur le port %1, mais aucune phrase depuis %2 s</translation>
    </message>
    <message>
        <source>no broadcast address found: no network that can broadcast is up</source>
        <translation>aucune adresse de diffusion : aucun réseau capable de diffuser n&apos;est actif</translation>
    </message>
    <message>
        <source>sending to 1 broadcast address</source>
        <translation>envoi vers 1 adresse de diffusion</translation>
    </message>
    <message>
        <source>sending to %1 broadcast addresses</source>
        <translation>envoi vers %1 adresses de diffusion</translation>
    </message>
    <message>
        <source>%1 lost (%2); retrying every %3 s</source>
        <translation>%1 perdu (%2) ; nouvel essai toutes les %3 s</translation>
    </message>
    <message>
        <source>cannot open %1: %2; retrying every %3 s</source>
        <translation>impossible d&apos;ouvrir %1 : %2 ; nouvel essai toutes les %3 s</translation>
    </message>
    <message>
        <source>connection to %1 lost, retrying every %2 s</source>
        <translation>connexion à %1 perdue, nouvel essai toutes les %2 s</translation>
    </message>
    <message>
        <source>cannot connect to %1: %2; retrying every %3 s</source>
        <translation>impossible de se connecter à %1 : %2 ; nouvel essai toutes les %3 s</translation>
    </message>
    <message>
        <source>listening on port %1 stopped, retrying every %2 s</source>
        <translation>écoute sur le port %1 interrompue, nouvel essai toutes les %2 s</translation>
    </message>
    <message>
        <source>cannot listen on port %1: %2; retrying every %3 s</source>
        <translation>impossible d&apos;écouter sur le port %1 : %2 ; nouvel essai toutes les %3 s</translation>
    </message>
    <message>
        <source>cannot connect to %1: %2, not retried; leave this page to try again</source>
        <translation>impossible de se connecter à %1 : %2, pas de nouvel essai ; quittez cette page pour réessayer</translation>
    </message>
    <message>
        <source>cannot listen on port %1: %2, not retried; leave this page to try again</source>
        <translation>impossible d&apos;écouter sur le port %1 : %2, pas de nouvel essai ; quittez cette page pour réessayer</translation>
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
    <name>PressureWarning</name>
    <message>
        <source>Pressure falling quickly</source>
        <translation>Pression en baisse rapide</translation>
    </message>
    <message>
        <source>Pressure falling very rapidly</source>
        <translation>Pression en baisse très rapide</translation>
    </message>
    <message>
        <source>%1 %2 in three hours</source>
        <translation>%1 %2 en trois heures</translation>
    </message>
    <message>
        <source>%1 %2 in the last hour</source>
        <translation>%1 %2 dans la dernière heure</translation>
    </message>
    <message>
        <source>Fall of %1, since %2</source>
        <translation>Baisse de %1, depuis %2</translation>
    </message>
    <message>
        <source> and </source>
        <translation> et </translation>
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
    <name>WarningSettings</name>
    <message>
        <source>Pressure-fall warning</source>
        <translation>Alerte de baisse de pression</translation>
    </message>
    <message>
        <source>Warn of a falling barometer</source>
        <translation>Alerter d&apos;une baisse du baromètre</translation>
    </message>
    <message>
        <source>Warning: fall in three hours</source>
        <translation>Avertissement : baisse en trois heures</translation>
    </message>
    <message>
        <source>Alarm: fall in three hours</source>
        <translation>Alarme : baisse en trois heures</translation>
    </message>
    <message>
        <source>Alarm: fall in one hour</source>
        <translation>Alarme : baisse en une heure</translation>
    </message>
</context>
<context>
    <name>WarningStrip</name>
    <message>
        <source>Acknowledged</source>
        <translation>Acquittée</translation>
    </message>
    <message>
        <source>Acknowledge</source>
        <translation>Acquitter</translation>
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
        <translation>Graphique</translation>
    </message>
    <message>
        <source>Data</source>
        <translation>Données</translation>
    </message>
    <message>
        <source>Settings</source>
        <translation>Réglages</translation>
    </message>
    <message>
        <source>Help</source>
        <translation>Aide</translation>
    </message>
</context>
<context>
    <name>quillmereCalibration</name>
    <message>
        <source>Quillmere Skerry calibration</source>
        <translation>Étalonnage du Quillmere Skerry</translation>
    </message>
    <message>
        <source>Operation failed</source>
        <translation>Échec de l&apos;opération</translation>
    </message>
    <message>
        <source>Operation timeout, probably no&lt;br&gt;Quillmere Skerry is connected</source>
        <translation>Délai dépassé, probablement aucun&lt;br&gt;Quillmere Skerry n&apos;est connecté</translation>
    </message>
    <message>
        <source>Set Skerry sensor offset (mb)</source>
        <translation>Correction du capteur Skerry (mb)</translation>
    </message>
    <message>
        <source>Station Level (QFE)</source>
        <translation>Niveau de la station (QFE)</translation>
    </message>
    <message>
        <source>Set sensor pressure slope (mb/bar)</source>
        <translation>Pente de pression du capteur (mb/bar)</translation>
    </message>
    <message>
        <source>Calibrate</source>
        <translation>Étalonner</translation>
    </message>
    <message>
        <source>Factory reset</source>
        <translation>Réglages d&apos;usine</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Annuler</translation>
    </message>
    <message>
        <source>No current pressure: Calibrate waits until a reading arrives</source>
        <translation>Aucune pression actuelle : Étalonner attend l&apos;arrivée d&apos;une mesure</translation>
    </message>
</context>
<context>
    <name>settings</name>
    <message>
        <source>Langage</source>
        <translation>Langue</translation>
    </message>
    <message>
        <source>English</source>
        <translation>Anglais</translation>
    </message>
    <message>
        <source>French</source>
        <translation>Français</translation>
    </message>
    <message>
        <source>Theme</source>
        <translation>Thème</translation>
    </message>
    <message>
        <source>Light</source>
        <translation>Clair</translation>
    </message>
    <message>
        <source>Dark</source>
        <translation>Sombre</translation>
    </message>
    <message>
        <source>Device</source>
        <translation>Appareil</translation>
    </message>
    <message>
        <source>Time zone</source>
        <translation>Fuseau horaire</translation>
    </message>
    <message>
        <source>UTC</source>
        <translation>UTC</translation>
    </message>
    <message>
        <source>Date format</source>
        <translation>Format de date</translation>
    </message>
    <message>
        <source>dd mm</source>
        <translation>jj mm</translation>
    </message>
    <message>
        <source>mm dd</source>
        <translation>mm jj</translation>
    </message>
    <message>
        <source>Time format</source>
        <translation>Format de l&apos;heure</translation>
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
        <translation>Unité de vitesse</translation>
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
    <message>
        <source>Pressure units</source>
        <translation>Unité de pression</translation>
    </message>
    <message>
        <source>Precision display</source>
        <translation>Précision affichée</translation>
    </message>
    <message>
        <source>Low</source>
        <translation>Basse</translation>
    </message>
    <message>
        <source>Normal</source>
        <translation>Normale</translation>
    </message>
    <message>
        <source>High</source>
        <translation>Haute</translation>
    </message>
    <message>
        <source>Location display</source>
        <translation>Affichage de la position</translation>
    </message>
    <message>
        <source>Pressure display</source>
        <translation>Pression affichée</translation>
    </message>
    <message>
        <source>Sea Level (QNH)</source>
        <translation>Niveau de la mer (QNH)</translation>
    </message>
    <message>
        <source>Station Level (QFE)</source>
        <translation>Niveau de la station (QFE)</translation>
    </message>
    <message>
        <source>Elevation units</source>
        <translation>Unité d&apos;altitude</translation>
    </message>
    <message>
        <source>Meters</source>
        <translation>Mètres</translation>
    </message>
    <message>
        <source>Feet</source>
        <translation>Pieds</translation>
    </message>
    <message>
        <source>Elevation (meters)</source>
        <translation>Altitude (mètres)</translation>
    </message>
    <message>
        <source>Elevation (feet)</source>
        <translation>Altitude (pieds)</translation>
    </message>
    <message>
        <source>Line style</source>
        <translation>Style de courbe</translation>
    </message>
    <message>
        <source>Straight</source>
        <translation>Droite</translation>
    </message>
    <message>
        <source>Spline</source>
        <translation>Lissée</translation>
    </message>
    <message>
        <source>Data on two screens</source>
        <translation>Données sur deux écrans</translation>
    </message>
    <message>
        <source>Keep screen always on</source>
        <translation>Garder l&apos;écran allumé</translation>
    </message>
    <message>
        <source>UDP NMEA output</source>
        <translation>Sortie NMEA UDP</translation>
    </message>
    <message>
        <source>Also send position (RMC)</source>
        <translation>Envoyer aussi la position (RMC)</translation>
    </message>
    <message>
        <source>UDP output port</source>
        <translation>Port de sortie UDP</translation>
    </message>
    <message>
        <source>Pressure display offset</source>
        <translation>Correction de la pression affichée</translation>
    </message>
    <message>
        <source>Connections settings</source>
        <translation>Réglages des connexions</translation>
    </message>
    <message>
        <source>Quillmere Skerry
calibration</source>
        <translation>Étalonnage du
Quillmere Skerry</translation>
    </message>
</context>
<context>
    <name>settingsConnections</name>
    <message>
        <source>Connections</source>
        <translation>Connexions</translation>
    </message>
    <message>
        <source>Position</source>
        <translation>Position</translation>
    </message>
    <message>
        <source>Internal</source>
        <translation>Interne</translation>
    </message>
    <message>
        <source>NMEA</source>
        <translation>NMEA</translation>
    </message>
    <message>
        <source>Serial NMEA input</source>
        <translation>Entrée NMEA série</translation>
    </message>
    <message>
        <source>Serial port</source>
        <translation>Port série</translation>
    </message>
    <message>
        <source>Speed</source>
        <translation>Vitesse</translation>
    </message>
    <message>
        <source>No Parity</source>
        <translation>Sans parité</translation>
    </message>
    <message>
        <source>Even Parity</source>
        <translation>Parité paire</translation>
    </message>
    <message>
        <source>Odd Parity</source>
        <translation>Parité impaire</translation>
    </message>
    <message>
        <source>Space Parity</source>
        <translation>Parité espace</translation>
    </message>
    <message>
        <source>Mark Parity</source>
        <translation>Parité marque</translation>
    </message>
    <message>
        <source>Parity</source>
        <translation>Parité</translation>
    </message>
    <message>
        <source>8 Bits</source>
        <translation>8 bits</translation>
    </message>
    <message>
        <source>7 Bits</source>
        <translation>7 bits</translation>
    </message>
    <message>
        <source>6 Bits</source>
        <translation>6 bits</translation>
    </message>
    <message>
        <source>5 Bits</source>
        <translation>5 bits</translation>
    </message>
    <message>
        <source>Data bits</source>
        <translation>Bits de données</translation>
    </message>
    <message>
        <source>1 Bit</source>
        <translation>1 bit</translation>
    </message>
    <message>
        <source>1.5 Bit</source>
        <translation>1,5 bit</translation>
    </message>
    <message>
        <source>2 Bits</source>
        <translation>2 bits</translation>
    </message>
    <message>
        <source>Stop bits</source>
        <translation>Bits d&apos;arrêt</translation>
    </message>
    <message>
        <source>No Control</source>
        <translation>Sans contrôle</translation>
    </message>
    <message>
        <source>Hardware</source>
        <translation>Matériel</translation>
    </message>
    <message>
        <source>Software</source>
        <translation>Logiciel</translation>
    </message>
    <message>
        <source>Flow control</source>
        <translation>Contrôle de flux</translation>
    </message>
    <message>
        <source>TCP NMEA input</source>
        <translation>Entrée NMEA TCP</translation>
    </message>
    <message>
        <source>TCP address</source>
        <translation>Adresse TCP</translation>
    </message>
    <message>
        <source>TCP port</source>
        <translation>Port TCP</translation>
    </message>
    <message>
        <source>UDP NMEA input</source>
        <translation>Entrée NMEA UDP</translation>
    </message>
    <message>
        <source>UDP input port</source>
        <translation>Port d&apos;entrée UDP</translation>
    </message>
    <message>
        <source>UDP NMEA output</source>
        <translation>Sortie NMEA UDP</translation>
    </message>
    <message>
        <source>UDP output port</source>
        <translation>Port de sortie UDP</translation>
    </message>
    <message>
        <source>Also send position (RMC)</source>
        <translation>Envoyer aussi la position (RMC)</translation>
    </message>
    <message>
        <source>Also send MDA</source>
        <translation>Envoyer aussi MDA</translation>
    </message>
    <message>
        <source>Other device…</source>
        <translation>Autre périphérique…</translation>
    </message>
    <message>
        <source>Device path</source>
        <translation>Chemin du périphérique</translation>
    </message>
    <message>
        <source>Path of the serial device</source>
        <translation>Chemin du périphérique série</translation>
    </message>
</context>
</TS>
