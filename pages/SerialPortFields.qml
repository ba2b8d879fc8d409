// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15

// The serial line's port and framing on the Connections page. It loads and saves its own
// keys; the page says when.
RowLayout {
    id: serialFields

    // The ports the machine offers, as the list shows them.
    property var ports: []
    // A stored device that the list lacks but that is there all the same (a pseudo-terminal,
    // a multiplexer's link): shown after the listed ports while the page is open.
    property string unlistedDevice: ""
    readonly property alias portFont: serialPort.font

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

    function load() {
        var port = backend.getSetting("SettingSerialPort", "None")
        var found = port === "None" ? -1 : serialPort.find(port)
        if (found >= 0 && found < ports.length) {
            serialPort.currentIndex = found
        } else if (port !== "None" && backend.isCharacterDevice(portName(port))) {
            // Departs on purpose from the rule that a stored port missing from the list falls
            // back to its first entry: the system lists no pseudo-terminal, so a device that
            // is there is kept as it was stored. One that is nowhere still falls back.
            unlistedDevice = port
            serialPort.currentIndex = ports.length
        } else {
            // The typing entry is no port: with none listed the box stays empty.
            serialPort.currentIndex = ports.length > 0 ? 0 : -1
        }

        serialSpeed.currentIndex = serialSpeed.find(backend.getSetting("SettingSerialSpeed", 9600))
        serialNbBits.currentIndex = backend.getSetting("SettingSerialNbBits", 0)
        serialParity.currentIndex = backend.getSetting("SettingSerialParity", 0)
        serialStopBit.currentIndex = backend.getSetting("SettingSerialStopBit", 0)
        serialControl.currentIndex = backend.getSetting("SettingSerialControl", 0)

        serialPort.Layout.minimumWidth = comboWidth(serialPort, serialPort.model)
        serialSpeed.Layout.minimumWidth = comboWidth(serialSpeed, serialSpeed.model)
        serialParity.Layout.minimumWidth = comboWidth(serialParity, serialParity.model)
        serialControl.Layout.minimumWidth = comboWidth(serialControl, serialControl.model)
    }

    function save() {
        backend.setSetting("SettingSerialPort", chosenSerialPort())
        backend.setSetting("SettingSerialSpeed", serialSpeed.currentText)
        backend.setSetting("SettingSerialNbBits", serialNbBits.currentIndex)
        backend.setSetting("SettingSerialParity", serialParity.currentIndex)
        backend.setSetting("SettingSerialStopBit", serialStopBit.currentIndex)
        backend.setSetting("SettingSerialControl", serialControl.currentIndex)
    }

    ColumnLayout {
        KeyComboBox {
            id: serialPort
            objectName: "serialPort"
            // The last entry lets a path be typed for a device the system does not list.
            readonly property bool otherDeviceChosen: currentIndex >= 0 && currentIndex === count - 1
            model: ports.concat(unlistedDevice !== "" ? [unlistedDevice] : [],
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
