// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Controls.Material 2.15
import QtQuick.Layouts 1.15
import backend 1.0

// The settings page's choices, as many to a row as the width allows. Each choice is read
// from its key when the page opens and written back when it goes away; the page is told of
// the changes that move its pressure preview.
GridLayout {
    id: grid

    // The width the choices are laid out against.
    property real layoutWidth: 0
    // Handlers stay silent until the choices hold the stored values.
    property bool ready: false

    readonly property alias languageWasChosen: comboLangage.hasChanged
    readonly property alias language: comboLangage.currentIndex
    readonly property alias choiceFont: comboLangage.font
    readonly property alias pressureUnit: comboPreUnit.currentIndex
    readonly property alias pressureUnitText: comboPreUnit.currentText
    readonly property alias pressureLevel: comboPressureLevel.currentIndex
    readonly property alias pressureLevelText: comboPressureLevel.currentText

    // Metres to US survey feet.
    readonly property real feetPerMetre: 3.0 * 39.37 / 36.0
    readonly property bool isAndroidOrIos: Qt.platform.os === "android" || Qt.platform.os === "ios"

    // The choices that are no more than an index under a key, with the key's default.
    readonly property var plainChoices: [
        [comboTheme, "theme", 0], [comboLangage, "language", 0], [comboTimeZone, "timeZone", 1],
        [comboTimeFormat, "timeFormat", 0], [comboDateFormat, "formatMMDD", 0],
        [comboSpeedUnit, "unitSpeed", 0], [comboElevationUnits, "unitEle", 0],
        [comboPreUnit, "unitPre", 0], [comboPrecision, "precision", 1],
        [comboFormatLocation, "locFormat", 1], [comboPressureLevel, "preDisplay", 0]
    ]

    signal languageChosen()
    signal pressureUnitChosen()
    signal previewMoved()

    function elevationMetres() {
        return comboElevationUnits.currentIndex === 0 ? elevation.realValue : elevation.realValue / feetPerMetre
    }

    function load() {
        swSplitScreen.checked = backend.getSetting("splitScreen", 0) === 1
        swUpdPos.checked = backend.getSetting("sendUdpPos", 0) === 1
        alwaysOn.checked = backend.getSetting("screenAlwaysOn", 0) === 1
        sp_udpPort.value = backend.getSetting("updPort", 10110)
        swUdpOut.checked = backend.getSetting("SettingUseUdpOut", 0) === 1
        spline.checked = backend.getSetting("SettingSplineLine", 1) === 1
        straight.checked = !spline.checked
        for (var i = 0; i < plainChoices.length; ++i)
            plainChoices[i][0].currentIndex = backend.getSetting(plainChoices[i][1], plainChoices[i][2])

        var metres = backend.getSetting("elevation", 0.0)
        var feet = comboElevationUnits.currentIndex === 1
        elevation.decimals = feet ? 0 : 1
        elevation.value = feet ? metres * feetPerMetre : metres * 10.0
    }

    // What the page's own handlers need first (the language, before the catalogues change)
    // is saved like everything else; "screenAlwaysOn" tells the backend when it changes.
    function save() {
        for (var i = 0; i < plainChoices.length; ++i)
            backend.setSetting(plainChoices[i][1], plainChoices[i][0].currentIndex)
        backend.setSetting("SettingSplineLine", spline.checked ? 1 : 0)
        backend.setSetting("elevation", elevationMetres())
        if (udpOutput.visible) {
            backend.setSetting("SettingUseUdpOut", swUdpOut.checked ? 1 : 0)
            backend.setSetting("updPort", sp_udpPort.value)
            backend.setSetting("sendUdpPos", swUpdPos.checked ? 1 : 0)
        }
        backend.setSetting("splitScreen", swSplitScreen.checked ? 1 : 0)
        var storedAlwaysOn = backend.getSetting("screenAlwaysOn", 0)
        var alwaysOnNow = alwaysOn.checked ? 1 : 0
        backend.setSetting("screenAlwaysOn", alwaysOnNow)
        if (storedAlwaysOn !== alwaysOnNow)
            backend.changeAlwaysOn()
    }

    function applyTheme(index) {
        var dark = index === 1 || (index === 2 && backend.isSystemDarkMode())
        window.Material.theme = dark ? Material.Dark : Material.Light
        window.Material.accent = dark ? "yellow" : "blue"
    }

    rowSpacing: 10
    columnSpacing: 10
    columns: Math.max(1, Math.floor(layoutWidth / (typeof backend !== "undefined" && backend ? backend.getColWidth() : 1)))

    ColumnLayout {
        SettingsText {
            id: comboLangageCaption
            text: qsTranslate("settings", "Langage")
        }
        KeyComboBox {
            id: comboLangage
            objectName: "comboLangage"
            property bool hasChanged: false
            Layout.fillWidth: true
            model: [qsTranslate("settings", "English"), qsTranslate("settings", "French")]
            Accessible.name: comboLangageCaption.text
            onCurrentIndexChanged: {
                if (!ready || hasChanged)
                    return
                hasChanged = true
                languageChosen()
            }
        }
    }
    SettingsComboBox {
        id: comboTheme
        objectName: "comboTheme"
        caption: qsTranslate("settings", "Theme")
        model: [qsTranslate("settings", "Light"), qsTranslate("settings", "Dark"), qsTranslate("settings", "Device")]
        onCurrentIndexChanged: {
            if (ready)
                applyTheme(currentIndex)
        }
    }
    SettingsComboBox {
        id: comboTimeZone
        objectName: "comboTimeZone"
        caption: qsTranslate("settings", "Time zone")
        model: [qsTranslate("settings", "UTC"), qsTranslate("settings", "Device")]
    }
    SettingsComboBox {
        id: comboDateFormat
        objectName: "comboDateFormat"
        caption: qsTranslate("settings", "Date format")
        model: [qsTranslate("settings", "dd mm"), qsTranslate("settings", "mm dd")]
    }
    SettingsComboBox {
        id: comboTimeFormat
        objectName: "comboTimeFormat"
        caption: qsTranslate("settings", "Time format")
        model: [qsTranslate("settings", "24h"), qsTranslate("settings", "12h")]
    }
    SettingsComboBox {
        id: comboSpeedUnit
        objectName: "comboSpeedUnit"
        caption: qsTranslate("settings", "Speed format")
        model: [qsTranslate("settings", "kts"), qsTranslate("settings", "km/h"), qsTranslate("settings", "mph")]
    }
    SettingsComboBox {
        id: comboPreUnit
        objectName: "comboPreUnit"
        caption: qsTranslate("settings", "Pressure units")
        model: ["mb", "hPa", "kPa", "inHg", "mmHg"]
        onCurrentIndexChanged: {
            if (ready)
                pressureUnitChosen()
        }
    }
    SettingsComboBox {
        id: comboPrecision
        objectName: "comboPrecision"
        caption: qsTranslate("settings", "Precision display")
        model: [qsTranslate("settings", "Low"), qsTranslate("settings", "Normal"), qsTranslate("settings", "High")]
    }
    SettingsComboBox {
        id: comboFormatLocation
        objectName: "comboFormatLocation"
        caption: qsTranslate("settings", "Location display")
        model: ["dd°mm'ss\"", "dd°mm.mm'", "dd.dd°"]
    }
    SettingsComboBox {
        id: comboPressureLevel
        objectName: "comboPressureLevel"
        caption: qsTranslate("settings", "Pressure display")
        model: [qsTranslate("settings", "Sea Level (QNH)"), qsTranslate("settings", "Station Level (QFE)")]
        onCurrentIndexChanged: {
            if (ready)
                previewMoved()
        }
    }
    SettingsComboBox {
        id: comboElevationUnits
        objectName: "comboElevationUnits"
        caption: qsTranslate("settings", "Elevation units")
        model: [qsTranslate("settings", "Meters"), qsTranslate("settings", "Feet")]
        onCurrentIndexChanged: {
            if (!ready)
                return
            var val = elevation.realValue
            if (currentIndex === 0) {
                elevation.decimals = 1
                elevation.value = val * 10 / feetPerMetre
            } else {
                elevation.decimals = 0
                elevation.value = val * feetPerMetre
            }
            previewMoved()
        }
    }
    ColumnLayout {
        SettingsText {
            id: elevationCaption
            objectName: "elevationCaption"
            text: comboElevationUnits.currentIndex === 0 ? qsTranslate("settings", "Elevation (meters)") : qsTranslate("settings", "Elevation (feet)")
        }
        DoubleSpinBox {
            id: elevation
            objectName: "elevation"
            Layout.fillWidth: true
            from: 0
            to: 10000
            editable: true
            decimals: comboElevationUnits.currentIndex === 0 ? 1 : 0
            Accessible.name: elevationCaption.text
            onRealValueChanged: {
                if (ready)
                    previewMoved()
            }
        }
    }
    ColumnLayout {
        SettingsText { text: qsTranslate("settings", "Line style") }
        RowLayout {
            RadioButton {
                id: straight
                objectName: "straight"
                text: qsTranslate("settings", "Straight")
                Accessible.name: text
            }
            RadioButton {
                id: spline
                objectName: "spline"
                text: qsTranslate("settings", "Spline")
                Accessible.name: text
            }
        }
    }
    Switch {
        id: swSplitScreen
        objectName: "swSplitScreen"
        text: qsTranslate("settings", "Data on two screens")
        Accessible.name: text
    }
    // Kept for the phone builds; read and written, never shown on the desktop.
    Switch {
        id: alwaysOn
        objectName: "alwaysOn"
        visible: isAndroidOrIos
        text: qsTranslate("settings", "Keep screen always on")
        Accessible.name: text
    }
    ColumnLayout {
        id: udpOutput
        objectName: "udpOutput"
        visible: isAndroidOrIos
        Switch {
            id: swUdpOut
            objectName: "swUdpOut"
            text: qsTranslate("settings", "UDP NMEA output")
            Accessible.name: text
        }
        Switch {
            id: swUpdPos
            objectName: "swUpdPos"
            text: qsTranslate("settings", "Also send position (RMC)")
            Accessible.name: text
        }
        PortSpinBox {
            id: sp_udpPort
            objectName: "sp_udpPort"
            Accessible.name: qsTranslate("settings", "UDP output port")
        }
    }
}
