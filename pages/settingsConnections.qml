// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Controls.Material 2.15
import QtQuick.Layouts 1.15
import backend 1.0

// Texts name their context: the page is published without the .qml suffix, and a bare
// qsTr call bound to a property then looks in the wrong context and stays in English.

// Where readings come from and where they go. Nothing takes effect while the page is open:
// leaving it saves the choices and restarts position and NMEA input with them.
ScrollView {
    id: settingsRect
    objectName: "connectionsPage"
    clip: true

    property bool ready: false
    property bool isAndroidOrIos: Qt.platform.os === "android" || Qt.platform.os === "ios"
    readonly property bool hasBackend: typeof backend !== "undefined" && backend !== null
    // Counts the seconds the page is open; the status lines read themselves again at each.
    property int statusTick: 0
    // The ports the machine offers, as the list shows them; read once, when the page opens.
    property var serialPorts: hasBackend ? backend.getSerialPorts() : []

    contentWidth: Math.max(pageColumn.implicitWidth, settingsRect.availableWidth)
    contentHeight: Math.max(pageColumn.implicitHeight, settingsRect.availableHeight)

    // The choices alone, without the restart: what an orderly end of the program writes.
    function saveSettings() {
        if (!hasBackend)
            return
        serialFields.save()
        backend.setSetting("SettingUsePos", swPos.checked ? 1 : 0)
        backend.setSetting("SettingUseSerial", swSerial.checked ? 1 : 0)
        backend.setSetting("SettingPosSource", posInternal.checked ? 1 : 2)
        backend.setSetting("SettingTcpIpAddress", tcpAddress.text)
        backend.setSetting("SettingTcpIpPort", tcpIpPort.value)
        backend.setSetting("SettingUdpPort", udpInputPort.value)
        backend.setSetting("updPort", sp_udpPort.value)
        backend.setSetting("sendUdpPos", swUpdPos.checked ? 1 : 0)
        backend.setSetting("SettingUseTcp", swTcp.checked ? 1 : 0)
        backend.setSetting("SettingUseUdp", swUdp.checked ? 1 : 0)
        backend.setSetting("SettingUseUdpOut", swUdpOut.checked ? 1 : 0)
        backend.setSetting("sendUdpMda", swUdpMda.checked ? 1 : 0)
        watchPage.save()
        signalKConnections.saveSettings()
        backend.syncSettings()
    }

    function saveAll() {
        if (!hasBackend)
            return
        saveSettings()
        // Whatever changed, no fix of the old sources may outlive them.
        backend.clearAllFix()
        backend.startLocationServices()
        backend.startNmea()
    }

    ColumnLayout {
        id: pageColumn
        width: settingsRect.contentWidth
        spacing: 0

        Banner {
            layoutWidth: window.width
        }

        Label {
            id: title
            objectName: "connectionsTitle"
            Layout.topMargin: 20
            Layout.alignment: Qt.AlignHCenter
            font.pixelSize: swPos.font.pixelSize * 2
            text: qsTranslate("settingsConnections", "Connections")
        }

        GridLayout {
            id: grid
            objectName: "connectionsGrid"
            Layout.margins: 10
            Layout.alignment: Qt.AlignHCenter
            columns: 2
            rowSpacing: 10
            columnSpacing: 20

            Switch {
                id: swPos
                objectName: "swPos"
                text: qsTranslate("settingsConnections", "Position")
                Accessible.name: text
            }
            RowLayout {
                enabled: swPos.checked
                RadioButton {
                    id: posInternal
                    objectName: "posInternal"
                    text: qsTranslate("settingsConnections", "Internal")
                    Accessible.name: text
                }
                RadioButton {
                    id: posNmea
                    objectName: "posNmea"
                    text: qsTranslate("settingsConnections", "NMEA")
                    Accessible.name: text
                }
            }

            Switch {
                id: swSerial
                objectName: "swSerial"
                text: qsTranslate("settingsConnections", "Serial NMEA input")
                Accessible.name: text
            }
            SerialPortFields {
                id: serialFields
                enabled: swSerial.checked
                ports: serialPorts
            }

            // What the running receiver does with it; the switch and the fields above take
            // effect only when the page is left.
            ConnectionStatusLine {
                id: serialStatus
                objectName: "serialStatus"
                channel: 1
                tick: settingsRect.statusTick
                indent: swPos.leftPadding
            }

            Switch {
                id: swTcp
                objectName: "swTcp"
                text: qsTranslate("settingsConnections", "TCP NMEA input")
                Accessible.name: text
            }
            RowLayout {
                enabled: swTcp.checked
                TcpAddressField {
                    id: tcpAddress
                    Layout.preferredHeight: tcpIpPort.implicitHeight
                    font: serialFields.portFont
                }
                PortSpinBox {
                    id: tcpIpPort
                    objectName: "tcpIpPort"
                    Accessible.name: qsTranslate("settingsConnections", "TCP port")
                }
            }

            ConnectionStatusLine {
                id: tcpStatus
                objectName: "tcpStatus"
                channel: 2
                tick: settingsRect.statusTick
                indent: swPos.leftPadding
            }

            Switch {
                id: swUdp
                objectName: "swUdp"
                text: qsTranslate("settingsConnections", "UDP NMEA input")
                Accessible.name: text
            }
            PortSpinBox {
                id: udpInputPort
                objectName: "udpInputPort"
                enabled: swUdp.checked
                Accessible.name: qsTranslate("settingsConnections", "UDP input port")
            }

            ConnectionStatusLine {
                id: udpStatus
                objectName: "udpStatus"
                channel: 3
                tick: settingsRect.statusTick
                indent: swPos.leftPadding
            }

            Switch {
                id: swUdpOut
                objectName: "swUdpOut"
                text: qsTranslate("settingsConnections", "UDP NMEA output")
                Accessible.name: text
            }
            RowLayout {
                enabled: swUdpOut.checked
                PortSpinBox {
                    id: sp_udpPort
                    objectName: "sp_udpPort"
                    Accessible.name: qsTranslate("settingsConnections", "UDP output port")
                }
                Switch {
                    id: swUpdPos
                    objectName: "swUpdPos"
                    text: qsTranslate("settingsConnections", "Also send position (RMC)")
                    Accessible.name: text
                }
                // For navigation software that reads pressure only from MDA sentences.
                Switch {
                    id: swUdpMda
                    objectName: "swUdpMda"
                    text: qsTranslate("settingsConnections", "Also send MDA")
                    Accessible.name: text
                }
            }

            ConnectionStatusLine {
                id: udpOutStatus
                objectName: "udpOutStatus"
                channel: 4
                tick: settingsRect.statusTick
                indent: swPos.leftPadding
            }

            SignalKConnections { id: signalKConnections; statusTick: settingsRect.statusTick; secondColumnX: udpInputPort.x }
        }

        WatchPageSettings { id: watchPage; objectName: "watchPageSettings"; statusTick: settingsRect.statusTick; Layout.fillWidth: true; Layout.leftMargin: grid.x; Layout.rightMargin: 10; Layout.bottomMargin: 10 }

        Item {
            Layout.fillHeight: true
        }

        Timer {
            interval: 1000
            running: true
            repeat: true
            onTriggered: settingsRect.statusTick++
        }
    }

    Component.onCompleted: {
        ready = true
        if (!hasBackend)
            return

        serialFields.load()

        var posSource = backend.getSetting("SettingPosSource", 1)
        posInternal.checked = posSource === 1
        posNmea.checked = posSource === 2

        swPos.checked = backend.getSetting("SettingUsePos", 1) === 1
        swSerial.checked = backend.getSetting("SettingUseSerial", 0) === 1
        swTcp.checked = backend.getSetting("SettingUseTcp", 0) === 1
        swUdp.checked = backend.getSetting("SettingUseUdp", 0) === 1
        swUdpOut.checked = backend.getSetting("SettingUseUdpOut", 0) === 1

        tcpAddress.text = backend.getSetting("SettingTcpIpAddress", "127.000.000.001")
        tcpIpPort.value = backend.getSetting("SettingTcpIpPort", 10110)
        udpInputPort.value = backend.getSetting("SettingUdpPort", 10110)
        swUpdPos.checked = backend.getSetting("sendUdpPos", 0) === 1
        swUdpMda.checked = backend.getSetting("sendUdpMda", 0) === 1
        sp_udpPort.value = backend.getSetting("updPort", 10110)
    }

    Component.onDestruction: saveAll()
}
