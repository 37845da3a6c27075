<?xml version="1.0" encoding="utf-8"?>
<!-- SPDX-License-Identifier: MIT -->
<!DOCTYPE TS>
<TS version="2.1" language="en" sourcelanguage="en">
<context>
  <name>Client</name>
  <message>
    <source>VIRELOv2 App</source>
    <translation>VIRELOv2 App</translation>
  </message>
  <message>
    <source>Air Selection / Setup</source>
    <translation>Air Selection / Setup</translation>
  </message>
</context>
<context>
  <name>Client_Conf</name>
  <message>
    <source>&lt;&lt; Back</source>
    <translation>&lt; Back</translation>
  </message>
</context>
<context>
  <name>Client_Conf_StatIP</name>
  <message>
    <source>* is mandatory!</source>
    <translation>* is mandatory!</translation>
  </message>
  <message>
    <source>&lt;&lt; Back</source>
    <translation>&lt; Back</translation>
  </message>
  <message>
    <source>Adress Mode:</source>
    <translation>Adress Mode:</translation>
  </message>
  <message>
    <source>DNS No. 1:</source>
    <translation>DNS No. 1:</translation>
  </message>
  <message>
    <source>DNS No. 2:</source>
    <translation>DNS No. 2:</translation>
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
    <translation>IP Address: *</translation>
  </message>
  <message>
    <source>Netmask: *</source>
    <translation>Netmask: *</translation>
  </message>
  <message>
    <source>SAVE</source>
    <translation>SAVE</translation>
  </message>
  <message>
    <source>Speaker WLAN Settings</source>
    <translation>Speaker WLAN Settings</translation>
  </message>
</context>
<context>
  <name>Client_Group</name>
  <message>
    <source>&lt;&lt; Back</source>
    <translation>&lt; Back</translation>
  </message>
</context>
<context>
  <name>Client_Overview</name>
  <message>
    <source>&lt;&lt; Back</source>
    <translation>&lt; Back</translation>
  </message>
  <message>
    <source>Group &gt;&gt;</source>
    <translation>Group &gt;&gt;</translation>
  </message>
  <message>
    <source>Loudspeaker / Group</source>
    <translation>Loudspeaker / Group</translation>
  </message>
  <message>
    <source>Quit</source>
    <translation>Quit</translation>
  </message>
  <message>
    <source>The Speakers and your device have to be in the same WLAN!</source>
    <translation>The Speakers and your device have to be in the same WLAN!</translation>
  </message>
  <message>
    <source>Update &gt;&gt;</source>
    <translation>Update &gt;&gt;</translation>
  </message>
  <message>
    <source>WiFi &gt;&gt;</source>
    <translation>WiFi &gt;&gt;</translation>
  </message>
</context>
<context>
  <name>Client_Settings_Air</name>
  <message>
    <source>Quit</source>
    <translation>Quit</translation>
  </message>
</context>
<context>
  <name>Client_Settings_Group</name>
  <message>
    <source>Quit</source>
    <translation>Quit</translation>
  </message>
</context>
<context>
  <name>Client_Update</name>
  <message>
    <source>&lt;&lt; Back</source>
    <translation>&lt; Back</translation>
  </message>
</context>
<context>
  <name>Client_WLANs</name>
  <message>
    <source>&lt;&lt; Back</source>
    <translation>&lt; Back</translation>
  </message>
  <message>
    <source>Info</source>
    <translation>Info</translation>
  </message>
  <message>
    <source>Next &gt;&gt;</source>
    <translation>Next &gt;</translation>
  </message>
  <message>
    <source>No Speakers found</source>
    <translation>No Speakers found</translation>
  </message>
  <message>
    <source>Please select your private WLAN
  </source>
    <translation>Please select your private WLAN</translation>
  </message>
  <message>
    <source>Reset!</source>
    <translation>Reset!</translation>
  </message>
  <message>
    <source>Select WLAN</source>
    <translation>Select WLAN</translation>
  </message>
  <message>
    <source>Signal</source>
    <translation>Signal</translation>
  </message>
  <message>
    <source>WiFi Name</source>
    <translation>WLAN Name</translation>
  </message>
</context>
</TS>
