<?xml version="1.0" encoding="utf-8"?>
<!-- SPDX-License-Identifier: MIT -->
<!DOCTYPE TS>
<TS version="2.1" language="de" sourcelanguage="en">
<context>
  <name>Client</name>
  <message>
    <source>VIRELOv2 App</source>
    <translation>VIRELOv2 App</translation>
  </message>
  <message>
    <source>Air Selection / Setup</source>
    <translation>Air-Auswahl / Einrichtung</translation>
  </message>
</context>
<context>
  <name>Client_Conf</name>
  <message>
    <source>&lt;&lt; Back</source>
    <translation>&lt;&lt; Zurück</translation>
  </message>
  <message>
    <source>Add/Static/Network</source>
    <translation>Netzwerk hinzufügen</translation>
  </message>
  <message>
    <source>Clicking on SAVE will reboot your
VIRELO Air-Speakers!</source>
    <translation>Klicken auf OK lässt Ihre
VIRELO Airs neu starten!</translation>
  </message>
  <message>
    <source>DHCP/Static</source>
    <translation>DHCP/Statisch</translation>
  </message>
  <message>
    <source>DeviceName could not be set</source>
    <translation>Der Gerätename konnte nicht geändert werden</translation>
  </message>
  <message>
    <source>IP Addr:</source>
    <translation>IP-Adresse:</translation>
  </message>
  <message>
    <source>Info</source>
    <translation>Info</translation>
  </message>
  <message>
    <source>MAC:</source>
    <translation>MAC:</translation>
  </message>
  <message>
    <source>Model:</source>
    <translation>Modell:</translation>
  </message>
  <message>
    <source>Name:</source>
    <translation>Name:</translation>
  </message>
  <message>
    <source>OK</source>
    <translation>OK</translation>
  </message>
  <message>
    <source>Passwd:</source>
    <translation>Passwort:</translation>
  </message>
  <message>
    <source>SAVE</source>
    <translation>OK</translation>
  </message>
  <message>
    <source>SAVE will reboot
your Speakers!</source>
    <translation>OK startet Ihre
Lautsprecher neu!</translation>
  </message>
  <message>
    <source>Speaker WLAN Settings</source>
    <translation>WLAN-Einstellungen des Lautsprechers</translation>
  </message>
  <message>
    <source>Successfully added Device to WiFi Network.

 Please get back to your WiFi Network and start VIRELOv2 App again!</source>
    <translation>Das Gerät wurde in das WLAN aufgenommen.

 Bitte wechseln Sie zurück in Ihr WLAN und starten Sie die VIRELOv2 App neu!</translation>
  </message>
  <message>
    <source>Vers:</source>
    <translation>Version:</translation>
  </message>
  <message>
    <source>WLAN:</source>
    <translation>WLAN:</translation>
  </message>
</context>
<context>
  <name>Client_Conf_StatIP</name>
  <message>
    <source>* is mandatory!</source>
    <translation>* ist ein Pflichtfeld!</translation>
  </message>
  <message>
    <source>&lt;&lt; Back</source>
    <translation>&lt;&lt; Zurück</translation>
  </message>
  <message>
    <source>Adress Mode:</source>
    <translation>Adressmodus:</translation>
  </message>
  <message>
    <source>DNS No. 1:</source>
    <translation>DNS Nr. 1:</translation>
  </message>
  <message>
    <source>DNS No. 2:</source>
    <translation>DNS Nr. 2:</translation>
  </message>
  <message>
    <source>Domain:</source>
    <translation>Domain:</translation>
  </message>
  <message>
    <source>Gateway:</source>
    <translation>Gateway:</translation>
  </message>
  <message>
    <source>IP Address: *</source>
    <translation>IP-Adresse: *</translation>
  </message>
  <message>
    <source>Netmask: *</source>
    <translation>Netzmaske: *</translation>
  </message>
  <message>
    <source>SAVE</source>
    <translation>OK</translation>
  </message>
  <message>
    <source>Speaker WLAN Settings</source>
    <translation>WLAN-Einstellungen des Lautsprechers</translation>
  </message>
</context>
<context>
  <name>Client_Group</name>
  <message>
    <source>-</source>
    <translation>-</translation>
  </message>
  <message>
    <source>&lt;&lt; Back</source>
    <translation>&lt;&lt; Zurück</translation>
  </message>
  <message>
    <source>VIRELO Air Group Configuration</source>
    <translation>VIRELO Air – Gruppenkonfiguration</translation>
  </message>
  <message>
    <source>VIRELO Group</source>
    <translation>VIRELO-Gruppe</translation>
  </message>
  <message>
    <source>Add to Group</source>
    <translation>Zur Gruppe hinzufügen</translation>
  </message>
  <message>
    <source>Available</source>
    <translation>Verfügbar</translation>
  </message>
  <message>
    <source>Click &quot;Create Group&quot;!</source>
    <translation>Auf „Gruppe erstellen“ klicken!</translation>
  </message>
  <message>
    <source>Create Group</source>
    <translation>Gruppe erstellen</translation>
  </message>
  <message>
    <source>Dissolve Group</source>
    <translation>Gruppe auflösen</translation>
  </message>
  <message>
    <source>Group dissolved</source>
    <translation>Gruppe aufgelöst</translation>
  </message>
  <message>
    <source>Group member</source>
    <translation>Gruppenmitglied</translation>
  </message>
  <message>
    <source>Group name:</source>
    <translation>Gruppenname:</translation>
  </message>
  <message>
    <source>Group:</source>
    <translation>Gruppe:</translation>
  </message>
  <message>
    <source>Info</source>
    <translation>Info</translation>
  </message>
  <message>
    <source>Master:</source>
    <translation>Master:</translation>
  </message>
  <message>
    <source>OK</source>
    <translation>OK</translation>
  </message>
  <message>
    <source>Other Air Speakers:</source>
    <translation>Weitere Air-Lautsprecher:</translation>
  </message>
  <message>
    <source>Remove from Group</source>
    <translation>Aus Gruppe entfernen</translation>
  </message>
  <message>
    <source>Status</source>
    <translation>Status</translation>
  </message>
</context>
<context>
  <name>Client_Hood</name>
  <message>
    <source>DEBUG</source>
    <translation>DEBUG</translation>
  </message>
  <message>
    <source>Restart App to turn on debugging</source>
    <translation>Für DEBUG Tab App neu starten!</translation>
  </message>
  <message>
    <source>Speaker:</source>
    <translation>Lautsprecher:</translation>
  </message>
  <message>
    <source>Time Delay:</source>
    <translation>Time Delay:</translation>
  </message>
</context>
<context>
  <name>Client_Overview</name>
  <message>
    <source>&lt;&lt; Back</source>
    <translation>&lt;&lt; Zurück</translation>
  </message>
  <message>
    <source>&lt;b&gt;Found </source>
    <translation>&lt;b&gt;Gefunden: </translation>
  </message>
  <message>
    <source>&lt;b&gt;Reading Status...&lt;/b&gt;</source>
    <translation>&lt;b&gt;Lese Status...&lt;/b&gt;</translation>
  </message>
  <message>
    <source>&lt;b&gt;Searching Speakers...&lt;/b&gt;</source>
    <translation>&lt;b&gt;Suche Lautsprecher...&lt;/b&gt;</translation>
  </message>
  <message>
    <source>&lt;b&gt;Searching...&lt;/b&gt;</source>
    <translation>&lt;b&gt;Suche...&lt;/b&gt;</translation>
  </message>
  <message>
    <source>&lt;b&gt;Speakers Found: </source>
    <translation>&lt;b&gt;Lautsprecher gefunden: </translation>
  </message>
  <message>
    <source>Group</source>
    <translation>Gruppe</translation>
  </message>
  <message>
    <source>Group &gt;&gt;</source>
    <translation>Gruppe &gt;&gt;</translation>
  </message>
  <message>
    <source>Is your Group</source>
    <translation>Ihre Gruppe</translation>
  </message>
  <message>
    <source>Loudspeaker / Group</source>
    <translation>Lautsprecher / Gruppe</translation>
  </message>
  <message>
    <source>Model</source>
    <translation>Modell</translation>
  </message>
  <message>
    <source>Quit</source>
    <translation>Beenden</translation>
  </message>
  <message>
    <source>Status</source>
    <translation>Status</translation>
  </message>
  <message>
    <source>The Speakers and your device have to be in the same WLAN!</source>
    <translation>Die Lautsprecher und Ihr Gerät müssen im selben WLAN sein!</translation>
  </message>
  <message>
    <source>Update &gt;&gt;</source>
    <translation>Update &gt;&gt;</translation>
  </message>
  <message>
    <source>WiFi &gt;&gt;</source>
    <translation>WLAN &gt;&gt;</translation>
  </message>
  <message>
    <source>in WiFi</source>
    <translation>im WLAN</translation>
  </message>
  <message>
    <source>in your WiFi</source>
    <translation>in Ihrem WLAN</translation>
  </message>
  <message>
    <source>is Cell Master</source>
    <translation>Zellen-Master</translation>
  </message>
  <message>
    <source>is a Member</source>
    <translation>Mitglied</translation>
  </message>
  <message>
    <source>is group Master</source>
    <translation>Master</translation>
  </message>
</context>
<context>
  <name>Client_Settings_Air</name>
  <message>
    <source> </source>
    <translation> </translation>
  </message>
  <message>
    <source>Active Input:</source>
    <translation>Aktiver Eingang:</translation>
  </message>
  <message>
    <source>Automatic</source>
    <translation>Automatik</translation>
  </message>
  <message>
    <source>Bass +1</source>
    <translation>Bass +1</translation>
  </message>
  <message>
    <source>Bass +2</source>
    <translation>Bass +2</translation>
  </message>
  <message>
    <source>Bass -1</source>
    <translation>Bass -1</translation>
  </message>
  <message>
    <source>Bass Level:</source>
    <translation>Basspegel:</translation>
  </message>
  <message>
    <source>Bass Normal</source>
    <translation>Bass normal</translation>
  </message>
  <message>
    <source>Beep!</source>
    <translation>Piep!</translation>
  </message>
  <message>
    <source>Bluetooth</source>
    <translation>Bluetooth</translation>
  </message>
  <message>
    <source>Coaxial (1)</source>
    <translation>Coax (1)</translation>
  </message>
  <message>
    <source>Corner</source>
    <translation>Ecke</translation>
  </message>
  <message>
    <source>Dampened</source>
    <translation>Bedämpft</translation>
  </message>
  <message>
    <source>Free</source>
    <translation>Frei</translation>
  </message>
  <message>
    <source>Lock</source>
    <translation>Sperren</translation>
  </message>
  <message>
    <source>Mute</source>
    <translation>Stumm</translation>
  </message>
  <message>
    <source>Normal Room</source>
    <translation>Normaler Raum</translation>
  </message>
  <message>
    <source>Optical (2)</source>
    <translation>Optisch (2)</translation>
  </message>
  <message>
    <source>Reverb</source>
    <translation>Hallig</translation>
  </message>
  <message>
    <source>Room Type:</source>
    <translation>Raumtyp:</translation>
  </message>
  <message>
    <source>Speaker Position:</source>
    <translation>Position:</translation>
  </message>
  <message>
    <source>Speaker:</source>
    <translation>Lautsprecher:</translation>
  </message>
  <message>
    <source>Strong Reverb</source>
    <translation>Sehr hallig</translation>
  </message>
  <message>
    <source>Strongly Dampened</source>
    <translation>Stark bedämpft</translation>
  </message>
  <message>
    <source>Volume:</source>
    <translation>Lautstärke:</translation>
  </message>
  <message>
    <source>Wall</source>
    <translation>Wand</translation>
  </message>
  <message>
    <source>WiFi</source>
    <translation>WiFI</translation>
  </message>
</context>
<context>
  <name>Client_Settings_Debug</name>
  <message>
    <source>Debugging output</source>
    <translation>Debug-Ausgabe</translation>
  </message>
</context>
<context>
  <name>Client_Settings_Empty</name>
  <message>
    <source>Unknow Speaker type... :-(</source>
    <translation>Unbekannter Lautsprechertyp... :-(</translation>
  </message>
</context>
<context>
  <name>Client_Settings_Group</name>
  <message>
    <source>Automatic</source>
    <translation>Automatik</translation>
  </message>
  <message>
    <source>Coax SPDIF</source>
    <translation>SPDIF (Coax)</translation>
  </message>
  <message>
    <source>Mute</source>
    <translation>Stumm</translation>
  </message>
  <message>
    <source>Optical SPDIF</source>
    <translation>SPDIF (optisch)</translation>
  </message>
  <message>
    <source>Quit</source>
    <translation>Beenden</translation>
  </message>
  <message>
    <source>Selected Group:</source>
    <translation>Gewählte Gruppe:</translation>
  </message>
  <message>
    <source>Selected Input</source>
    <translation>Gewählter Eingang</translation>
  </message>
  <message>
    <source>Volume: 0 / 100</source>
    <translation>Lautstärke: 0 / 100</translation>
  </message>
  <message>
    <source>WiFi</source>
    <translation>WiFi</translation>
  </message>
</context>
<context>
  <name>Client_Settings_Sub</name>
  <message>
    <source> </source>
    <translation></translation>
  </message>
  <message>
    <source>12 dB/oct</source>
    <translation>12 dB/Oct</translation>
  </message>
  <message>
    <source>18 dB/oct</source>
    <translation>18 dB/Oct</translation>
  </message>
  <message>
    <source>24 dB/oct</source>
    <translation>24 dB/Oct</translation>
  </message>
  <message>
    <source>6 dB/oct</source>
    <translation>6 dB/Oct</translation>
  </message>
  <message>
    <source>Beep!</source>
    <translation>Piep!</translation>
  </message>
  <message>
    <source>Coax</source>
    <translation>Coax</translation>
  </message>
  <message>
    <source>Filter Off</source>
    <translation>Filter aus</translation>
  </message>
  <message>
    <source>Frequency:</source>
    <translation>Frequenz:</translation>
  </message>
  <message>
    <source>HighPass:</source>
    <translation>Hochpass:</translation>
  </message>
  <message>
    <source>Input:</source>
    <translation>Eingang:</translation>
  </message>
  <message>
    <source>Inverse</source>
    <translation>Invertiert</translation>
  </message>
  <message>
    <source>LFE/Line</source>
    <translation>LFE/Line</translation>
  </message>
  <message>
    <source>Lock</source>
    <translation>Sperren</translation>
  </message>
  <message>
    <source>Mute</source>
    <translation>Stumm</translation>
  </message>
  <message>
    <source>Normal</source>
    <translation>Normal</translation>
  </message>
  <message>
    <source>Phase:</source>
    <translation>Phase:</translation>
  </message>
  <message>
    <source>Polarity:</source>
    <translation>Polarität:</translation>
  </message>
  <message>
    <source>Slope:</source>
    <translation>Steilheit:</translation>
  </message>
  <message>
    <source>Speaker</source>
    <translation>Lautsprecher</translation>
  </message>
  <message>
    <source>Speaker:</source>
    <translation>Gerät:</translation>
  </message>
  <message>
    <source>Volume:</source>
    <translation>Lautstärke:</translation>
  </message>
  <message>
    <source>WiFi/LAN</source>
    <translation>WiFi/LAN</translation>
  </message>
  <message>
    <source>XLR</source>
    <translation>XLR</translation>
  </message>
</context>
<context>
  <name>Client_Settings_Sub_EQ</name>
  <message>
    <source>Device:</source>
    <translation>Gerät:</translation>
  </message>
  <message>
    <source>Freq:</source>
    <translation>Frequenz:</translation>
  </message>
</context>
<context>
  <name>Client_Settings_Sub_Profiles</name>
  <message>
    <source>Device:</source>
    <translation>Gerät:</translation>
  </message>
  <message>
    <source>Profile 1</source>
    <translation>Profil 1</translation>
  </message>
  <message>
    <source>Profile 2</source>
    <translation>Profil 2</translation>
  </message>
  <message>
    <source>Profile 3</source>
    <translation>Profil 3</translation>
  </message>
  <message>
    <source>SAVE</source>
    <translation>OK</translation>
  </message>
</context>
<context>
  <name>Client_Update</name>
  <message>
    <source>- Bytes</source>
    <translation>- Bytes</translation>
  </message>
  <message>
    <source>&lt;&lt; Back</source>
    <translation>&lt;&lt; Zurück</translation>
  </message>
  <message>
    <source>Check</source>
    <translation>Prüfen</translation>
  </message>
  <message>
    <source>Checksum verification!</source>
    <translation>Prüfsumme wird geprüft!</translation>
  </message>
  <message>
    <source>Click Check Button!</source>
    <translation>Auf „Prüfen“ klicken!</translation>
  </message>
  <message>
    <source>Done!</source>
    <translation>Fertig!</translation>
  </message>
  <message>
    <source>Download URL:</source>
    <translation>Download-URL:</translation>
  </message>
  <message>
    <source>Download finished!</source>
    <translation>Download abgeschlossen!</translation>
  </message>
  <message>
    <source>Downloading...</source>
    <translation>Download läuft...</translation>
  </message>
  <message>
    <source>Error: Checksum Error</source>
    <translation>Fehler: Prüfsumme falsch</translation>
  </message>
  <message>
    <source>Error: Download Error</source>
    <translation>Fehler: Download fehlgeschlagen</translation>
  </message>
  <message>
    <source>Error: File doesnt exist</source>
    <translation>Fehler: Datei nicht vorhanden</translation>
  </message>
  <message>
    <source>Error: Flash Error</source>
    <translation>Fehler: Flashen fehlgeschlagen</translation>
  </message>
  <message>
    <source>Error: Update error</source>
    <translation>Fehler: Update fehlgeschlagen</translation>
  </message>
  <message>
    <source>Error: Update not running</source>
    <translation>Fehler: Kein Update aktiv</translation>
  </message>
  <message>
    <source>FLASH!</source>
    <translation>FLASHEN!</translation>
  </message>
  <message>
    <source>File Size:</source>
    <translation>Dateigröße:</translation>
  </message>
  <message>
    <source>OK</source>
    <translation>OK</translation>
  </message>
  <message>
    <source>Other Error :-(</source>
    <translation>Sonstiger Fehler :-(</translation>
  </message>
  <message>
    <source>Progress:</source>
    <translation>Fortschritt:</translation>
  </message>
  <message>
    <source>Speaker:</source>
    <translation>Lautsprecher:</translation>
  </message>
  <message>
    <source>Status:</source>
    <translation>Status:</translation>
  </message>
  <message>
    <source>Update Speaker Firmware</source>
    <translation>Lautsprecher-Firmware aktualisieren</translation>
  </message>
  <message>
    <source>Update:</source>
    <translation>Update:</translation>
  </message>
  <message>
    <source>Updating...!</source>
    <translation>Update läuft...!</translation>
  </message>
  <message>
    <source>Version:</source>
    <translation>Version:</translation>
  </message>
</context>
<context>
  <name>Client_WLANs</name>
  <message>
    <source>&lt;&lt; Back</source>
    <translation>&lt;&lt; Zurück</translation>
  </message>
  <message>
    <source>Info</source>
    <translation>Info</translation>
  </message>
  <message>
    <source>Next &gt;&gt;</source>
    <translation>Weiter &gt;&gt;</translation>
  </message>
  <message>
    <source>No Speakers found</source>
    <translation>Keine Lautsprecher gefunden</translation>
  </message>
  <message>
    <source>Please select your private WLAN
  </source>
    <translation>Bitte wählen Sie Ihr privates WLAN aus
  </translation>
  </message>
  <message>
    <source>Reset!</source>
    <translation>Zurücksetzen!</translation>
  </message>
  <message>
    <source>Select WLAN</source>
    <translation>WLAN auswählen</translation>
  </message>
  <message>
    <source>Signal</source>
    <translation>Signal</translation>
  </message>
  <message>
    <source>WiFi Name</source>
    <translation>WLAN-Name</translation>
  </message>
</context>
<context>
  <name>Web_File</name>
  <message>
    <source>OK</source>
    <translation>OK</translation>
  </message>
  <message>
    <source>Update</source>
    <translation>Update</translation>
  </message>
</context>
</TS>
