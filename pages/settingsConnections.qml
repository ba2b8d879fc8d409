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
    // A stored device that the list lacks but that is there all the same (a pseudo-terminal,
    // a multiplexer's link): shown after the listed ports while the page is open.
    property string unlistedDevice: ""

    contentWidth: Math.max(pageColumn.implicitWidth, settingsRect.availableWidth)
    contentHeight: Math.max(pageColumn.implicitHeight, settingsRect.availableHeight)

    // The widest entry, as far as the backend lets a text widen a box, plus the box's own parts.
    function comboWidth(combo, entries) {
        var widest = 0
        for (var i = 0; i < entries.length; ++i)
            widest = Math.max(widest, backend.getHorizontalAdvance(entries[i]))
        var indicator = combo.indicator ? combo.indicator.width : 0
        return widest + indicator + combo.leftPadding + combo.rightPadding
    }

    // The port as the receiver reads it: the first word of the stored entry.
    function portName(entry) {
        return entry.split(" ").filter(function(word) { return word.length > 0 })[0] || ""
    }

    // A typed path is stored as typed, whether or not it is there yet: the serial source
    // keeps trying it as it does a device that is unplugged.
    function chosenSerialPort() {
        if (serialPort.currentIndex === -1)
            return "None"
        if (serialPort.otherDeviceChosen) {
            var typed = serialDevicePath.text.trim()
            return typed === "" ? "None" : typed
        }
        return serialPort.currentText
    }

    // The choices alone, without the restart: what an orderly end of the program writes.
    function saveSettings() {
        if (!hasBackend)
            return
        backend.setSetting("SettingSerialPort", chosenSerialPort())
        backend.setSetting("SettingUsePos", swPos.checked ? 1 : 0)
        backend.setSetting("SettingUseSerial", swSerial.checked ? 1 : 0)
        backend.setSetting("SettingPosSource", posInternal.checked ? 1 : 2)
        backend.setSetting("SettingSerialSpeed", serialSpeed.currentText)
        backend.setSetting("SettingSerialNbBits", serialNbBits.currentIndex)
        backend.setSetting("SettingSerialParity", serialParity.currentIndex)
        backend.setSetting("SettingSerialStopBit", serialStopBit.currentIndex)
        backend.setSetting("SettingSerialControl", serialControl.currentIndex)
        backend.setSetting("SettingTcpIpAddress", tcpIpAddress.text)
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
            RowLayout {
                enabled: swSerial.checked
                ColumnLayout {
                    KeyComboBox {
                        id: serialPort
                        objectName: "serialPort"
                        // The last entry lets a path be typed for a device the system does not list.
                        readonly property bool otherDeviceChosen: currentIndex >= 0 && currentIndex === count - 1
                        model: serialPorts.concat(unlistedDevice !== "" ? [unlistedDevice] : [],
                                                  [qsTranslate("settingsConnections", "Other device…")])
                        Accessible.name: qsTranslate("settingsConnections", "Serial port")
                    }
                    TextField {
                        id: serialDevicePath
                        objectName: "serialDevicePath"
                        visible: serialPort.otherDeviceChosen
                        Layout.fillWidth: true
                        selectByMouse: true
                        inputMethodHints: Qt.ImhNoAutoUppercase | Qt.ImhNoPredictiveText
                        placeholderText: qsTranslate("settingsConnections", "Device path")
                        Accessible.name: qsTranslate("settingsConnections", "Path of the serial device")
                    }
                }
                KeyComboBox {
                    id: serialSpeed
                    objectName: "serialSpeed"
                    model: ["1200", "2400", "4800", "9600", "19200", "38400", "57600", "115200"]
                    Accessible.name: qsTranslate("settingsConnections", "Speed")
                }
                ColumnLayout {
                    KeyComboBox {
                        id: serialParity
                        objectName: "serialParity"
                        model: [qsTranslate("settingsConnections", "No Parity"), qsTranslate("settingsConnections", "Even Parity"), qsTranslate("settingsConnections", "Odd Parity"), qsTranslate("settingsConnections", "Space Parity"),
                                qsTranslate("settingsConnections", "Mark Parity")]
                        Accessible.name: qsTranslate("settingsConnections", "Parity")
                    }
                    KeyComboBox {
                        id: serialNbBits
                        objectName: "serialNbBits"
                        Layout.minimumWidth: serialParity.Layout.minimumWidth
                        model: [qsTranslate("settingsConnections", "8 Bits"), qsTranslate("settingsConnections", "7 Bits"), qsTranslate("settingsConnections", "6 Bits"), qsTranslate("settingsConnections", "5 Bits")]
                        Accessible.name: qsTranslate("settingsConnections", "Data bits")
                    }
                }
                ColumnLayout {
                    KeyComboBox {
                        id: serialStopBit
                        objectName: "serialStopBit"
                        Layout.minimumWidth: serialControl.Layout.minimumWidth
                        model: [qsTranslate("settingsConnections", "1 Bit"), qsTranslate("settingsConnections", "1.5 Bit"), qsTranslate("settingsConnections", "2 Bits")]
                        Accessible.name: qsTranslate("settingsConnections", "Stop bits")
                    }
                    KeyComboBox {
                        id: serialControl
                        objectName: "serialControl"
                        model: [qsTranslate("settingsConnections", "No Control"), qsTranslate("settingsConnections", "Hardware"), qsTranslate("settingsConnections", "Software")]
                        Accessible.name: qsTranslate("settingsConnections", "Flow control")
                    }
                }
            }

            // What the running receiver does with it; the switch and the fields above take
            // effect only when the page is left.
            ConnectionStatusLine {
                id: serialStatus
                objectName: "serialStatus"
                channel: 1
                tick: settingsRect.statusTick
                Layout.columnSpan: 2
                Layout.fillWidth: true
                Layout.preferredWidth: 0
                Layout.leftMargin: swPos.leftPadding
                Layout.topMargin: -4
                Layout.bottomMargin: 6
            }

            Switch {
                id: swTcp
                objectName: "swTcp"
                text: qsTranslate("settingsConnections", "TCP NMEA input")
                Accessible.name: text
            }
            RowLayout {
                enabled: swTcp.checked
                Rectangle {
                    Layout.preferredWidth: tcpIpAddress.implicitWidth + 16
                    Layout.preferredHeight: tcpIpPort.implicitHeight
                    color: "transparent"
                    border.width: 1
                    border.color: tcpIpAddress.activeFocus ? Material.accent : Material.hintTextColor
                    radius: 2

                    TextInput {
                        id: tcpIpAddress
                        objectName: "tcpIpAddress"
                        anchors.centerIn: parent
                        inputMask: "999.999.999.999"
                        activeFocusOnTab: true
                        font: serialPort.font
                        color: enabled ? Material.foreground : Material.hintTextColor
                        selectByMouse: true
                        Accessible.role: Accessible.EditableText
                        Accessible.name: qsTranslate("settingsConnections", "TCP address")
                        onActiveFocusChanged: {
                            if (activeFocus)
                                cursorPosition = 0
                        }
                        // Departs on purpose from the rule that the focus goes to the parent
                        // whenever editing finishes: when it finishes because the focus went
                        // on, by Tab or a click, the focus stays where it went, or Tab could
                        // never leave the field.
                        onEditingFinished: {
                            if (activeFocus)
                                parent.forceActiveFocus()
                        }
                        Keys.onReturnPressed: parent.forceActiveFocus()
                        Keys.onEnterPressed: parent.forceActiveFocus()
                    }
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
                Layout.columnSpan: 2
                Layout.fillWidth: true
                Layout.preferredWidth: 0
                Layout.leftMargin: swPos.leftPadding
                Layout.topMargin: -4
                Layout.bottomMargin: 6
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
                Layout.columnSpan: 2
                Layout.fillWidth: true
                Layout.preferredWidth: 0
                Layout.leftMargin: swPos.leftPadding
                Layout.topMargin: -4
                Layout.bottomMargin: 6
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
                Layout.columnSpan: 2
                Layout.fillWidth: true
                Layout.preferredWidth: 0
                Layout.leftMargin: swPos.leftPadding
                Layout.topMargin: -4
                Layout.bottomMargin: 6
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

        var port = backend.getSetting("SettingSerialPort", "None")
        var found = port === "None" ? -1 : serialPort.find(port)
        if (found >= 0 && found < serialPorts.length) {
            serialPort.currentIndex = found
        } else if (port !== "None" && backend.isCharacterDevice(portName(port))) {
            // Departs on purpose from the rule that a stored port missing from the list falls
            // back to its first entry: the system lists no pseudo-terminal, so a device that
            // is there is kept as it was stored. One that is nowhere still falls back.
            unlistedDevice = port
            serialPort.currentIndex = serialPorts.length
        } else {
            // The typing entry is no port: with none listed the box stays empty.
            serialPort.currentIndex = serialPorts.length > 0 ? 0 : -1
        }

        var posSource = backend.getSetting("SettingPosSource", 1)
        posInternal.checked = posSource === 1
        posNmea.checked = posSource === 2

        serialSpeed.currentIndex = serialSpeed.find(backend.getSetting("SettingSerialSpeed", 9600))
        serialNbBits.currentIndex = backend.getSetting("SettingSerialNbBits", 0)
        serialParity.currentIndex = backend.getSetting("SettingSerialParity", 0)
        serialStopBit.currentIndex = backend.getSetting("SettingSerialStopBit", 0)
        serialControl.currentIndex = backend.getSetting("SettingSerialControl", 0)

        swPos.checked = backend.getSetting("SettingUsePos", 1) === 1
        swSerial.checked = backend.getSetting("SettingUseSerial", 0) === 1
        swTcp.checked = backend.getSetting("SettingUseTcp", 0) === 1
        swUdp.checked = backend.getSetting("SettingUseUdp", 0) === 1
        swUdpOut.checked = backend.getSetting("SettingUseUdpOut", 0) === 1

        tcpIpAddress.text = backend.getSetting("SettingTcpIpAddress", "127.000.000.001")
        tcpIpPort.value = backend.getSetting("SettingTcpIpPort", 10110)
        udpInputPort.value = backend.getSetting("SettingUdpPort", 10110)
        swUpdPos.checked = backend.getSetting("sendUdpPos", 0) === 1
        swUdpMda.checked = backend.getSetting("sendUdpMda", 0) === 1
        sp_udpPort.value = backend.getSetting("updPort", 10110)

        serialPort.Layout.minimumWidth = comboWidth(serialPort, serialPort.model)
        serialSpeed.Layout.minimumWidth = comboWidth(serialSpeed, serialSpeed.model)
        serialParity.Layout.minimumWidth = comboWidth(serialParity, serialParity.model)
        serialControl.Layout.minimumWidth = comboWidth(serialControl, serialControl.model)
    }

    Component.onDestruction: saveAll()
}
