import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Controls.Material 2.15
import QtQuick.Layouts 1.15
import backend 1.0

// Texts name their context: the page is published without the .qml suffix, and a bare
// qsTr call bound to a property then looks in the wrong context and stays in English.

// What the user chooses for the look, the units and the pressure shown. The controls are
// filled from the settings at creation and written back when the page goes away.
ScrollView {
    id: settingsRect
    objectName: "settingsPage"
    clip: true

    property Loader loader
    property bool isAndroidOrIos: Qt.platform.os === "android" || Qt.platform.os === "ios"
    // Handlers stay silent until the controls hold the stored values.
    property bool ready: false

    // Metres to US survey feet.
    readonly property real feetPerMetre: 3.0 * 39.37 / 36.0
    readonly property bool hasBackend: typeof backend !== "undefined" && backend !== null
    readonly property bool darkTheme: Material.theme === Material.Dark

    contentWidth: Math.max(pageColumn.implicitWidth, settingsRect.availableWidth)
    contentHeight: Math.max(pageColumn.implicitHeight, settingsRect.availableHeight)

    function saveAll() {
        if (!hasBackend)
            return
        backend.setSetting("language", comboLangage.currentIndex)
        backend.setSetting("SettingSplineLine", spline.checked ? 1 : 0)
        backend.setSetting("theme", comboTheme.currentIndex)
        backend.setSetting("timeZone", comboTimeZone.currentIndex)
        backend.setSetting("timeFormat", comboTimeFormat.currentIndex)
        backend.setSetting("formatMMDD", comboDateFormat.currentIndex)
        backend.setSetting("unitSpeed", comboSpeedUnit.currentIndex)
        backend.setSetting("unitEle", comboElevationUnits.currentIndex)
        backend.setSetting("unitPre", comboPreUnit.currentIndex)
        backend.setSetting("precision", comboPrecision.currentIndex)
        backend.setSetting("locFormat", comboFormatLocation.currentIndex)
        var metres = elevation.realValue
        if (comboElevationUnits.currentIndex !== 0)
            metres = metres / feetPerMetre
        backend.setSetting("elevation", metres)
        backend.setSetting("preDisplay", comboPressureLevel.currentIndex)
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
        backend.setSetting("offset", backend.convertToHpa(offset.realValue))
        warningSettings.save()
        backend.syncSettings()
    }

    // On a change of pressure unit: the offset keeps its meaning in the new unit. The old
    // unit is still the stored one when the value is read, and is replaced before the box
    // takes its new decimals.
    function showOffset() {
        var off = backend.convertToHpa(offset.realValue)
        backend.setSetting("unitPre", comboPreUnit.currentIndex)
        offset.decimals = comboPreUnit.currentIndex === 3 ? 3 : 2
        offset.value = backend.convertToOther(off) * (comboPreUnit.currentIndex === 3 ? 1000.0 : 100.0)
    }

    function showPressure() {
        if (!hasBackend)
            return
        var metres = elevation.realValue
        if (comboElevationUnits.currentIndex !== 0)
            metres = metres / feetPerMetre
        stationPressure.text = backend.getFormatedPressure(comboPreUnit.currentIndex,
                                                           backend.convertToHpa(offset.realValue),
                                                           comboPressureLevel.currentIndex, metres)
    }

    function applyTheme(index) {
        var dark = index === 1 || (index === 2 && backend.isSystemDarkMode())
        window.Material.theme = dark ? Material.Dark : Material.Light
        window.Material.accent = dark ? "yellow" : "blue"
    }

    // The offset block lies side by side on a wide page and stacked on a tall one.
    function layoutOffset() {
        var wide = settingsRect.width > settingsRect.height
        offsetGrid.flow = wide ? GridLayout.LeftToRight : GridLayout.TopToBottom
        var align = wide ? Qt.AlignHCenter : Qt.AlignLeft
        lab.Layout.alignment = align
        stationPressure.Layout.alignment = align
    }

    onWidthChanged: layoutOffset()
    onHeightChanged: layoutOffset()

    Connections {
        target: hasBackend ? backend : null
        function onDataUpdated() {
            showPressure()
        }
    }

    ColumnLayout {
        id: pageColumn
        width: settingsRect.contentWidth
        spacing: 0

        Image {
            id: imgQuillmere
            objectName: "imgQuillmere"
            source: "qrc:/Images/USB_banner.png"
            Layout.preferredWidth: window.width
            Layout.preferredHeight: window.width * 218 / 1800
            fillMode: Image.PreserveAspectFit
            verticalAlignment: Image.AlignTop
            smooth: true
            mipmap: true
            clip: true

            MouseArea {
                objectName: "makerLink"
                x: 0
                width: parent.width * 800 / 1800
                height: parent.height
                cursorShape: Qt.PointingHandCursor
                onClicked: Qt.openUrlExternally("https://www.quillmere.com/")
            }
            MouseArea {
                objectName: "deviceLink"
                x: parent.width - width
                width: parent.width * 485 / 1800
                height: parent.height
                cursorShape: Qt.PointingHandCursor
                onClicked: Qt.openUrlExternally("https://www.quillmere.com/skerry")
            }
        }

        Label {
            id: versionText
            objectName: "versionText"
            Layout.topMargin: 20
            Layout.alignment: Qt.AlignHCenter
            font.pixelSize: comboLangage.font.pixelSize
            text: hasBackend ? "Version " + backend.getVersion() : ""
        }

        GridLayout {
            id: grid
            objectName: "settingsGrid"
            Layout.margins: 20
            Layout.alignment: Qt.AlignHCenter
            rowSpacing: 10
            columnSpacing: 10
            columns: Math.max(1, Math.floor(window.width / (hasBackend ? backend.getColWidth() : 1)))

            ColumnLayout {
                SettingsText {
                    id: comboLangageCaption
                    text: qsTranslate("settings", "Langage")
                }
                ComboBox {
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
                        saveAll()
                        // The catalogues are about to change under this page, which is then
                        // replaced: nothing it does from here on may reach the settings.
                        ready = false
                        translateHandler.selectLanguage(currentIndex === 0 ? "en" : "fr")
                    }
                }
            }
            ColumnLayout {
                SettingsText {
                    id: comboThemeCaption
                    text: qsTranslate("settings", "Theme")
                }
                ComboBox {
                    id: comboTheme
                    objectName: "comboTheme"
                    Layout.fillWidth: true
                    model: [qsTranslate("settings", "Light"), qsTranslate("settings", "Dark"), qsTranslate("settings", "Device")]
                    Accessible.name: comboThemeCaption.text
                    onCurrentIndexChanged: {
                        if (ready)
                            applyTheme(currentIndex)
                    }
                }
            }
            ColumnLayout {
                SettingsText {
                    id: comboTimeZoneCaption
                    text: qsTranslate("settings", "Time zone")
                }
                ComboBox {
                    id: comboTimeZone
                    objectName: "comboTimeZone"
                    Layout.fillWidth: true
                    model: [qsTranslate("settings", "UTC"), qsTranslate("settings", "Device")]
                    Accessible.name: comboTimeZoneCaption.text
                }
            }
            ColumnLayout {
                SettingsText {
                    id: comboDateFormatCaption
                    text: qsTranslate("settings", "Date format")
                }
                ComboBox {
                    id: comboDateFormat
                    objectName: "comboDateFormat"
                    Layout.fillWidth: true
                    model: [qsTranslate("settings", "dd mm"), qsTranslate("settings", "mm dd")]
                    Accessible.name: comboDateFormatCaption.text
                }
            }
            ColumnLayout {
                SettingsText {
                    id: comboTimeFormatCaption
                    text: qsTranslate("settings", "Time format")
                }
                ComboBox {
                    id: comboTimeFormat
                    objectName: "comboTimeFormat"
                    Layout.fillWidth: true
                    model: [qsTranslate("settings", "24h"), qsTranslate("settings", "12h")]
                    Accessible.name: comboTimeFormatCaption.text
                }
            }
            ColumnLayout {
                SettingsText {
                    id: comboSpeedUnitCaption
                    text: qsTranslate("settings", "Speed format")
                }
                ComboBox {
                    id: comboSpeedUnit
                    objectName: "comboSpeedUnit"
                    Layout.fillWidth: true
                    model: [qsTranslate("settings", "kts"), qsTranslate("settings", "km/h"), qsTranslate("settings", "mph")]
                    Accessible.name: comboSpeedUnitCaption.text
                }
            }
            ColumnLayout {
                SettingsText {
                    id: comboPreUnitCaption
                    text: qsTranslate("settings", "Pressure units")
                }
                ComboBox {
                    id: comboPreUnit
                    objectName: "comboPreUnit"
                    Layout.fillWidth: true
                    model: ["mb", "hPa", "kPa", "inHg", "mmHg"]
                    Accessible.name: comboPreUnitCaption.text
                    onCurrentIndexChanged: {
                        if (!ready)
                            return
                        showOffset()
                        warningSettings.showInUnit(comboPreUnit.currentIndex)
                        showPressure()
                    }
                }
            }
            ColumnLayout {
                SettingsText {
                    id: comboPrecisionCaption
                    text: qsTranslate("settings", "Precision display")
                }
                ComboBox {
                    id: comboPrecision
                    objectName: "comboPrecision"
                    Layout.fillWidth: true
                    model: [qsTranslate("settings", "Low"), qsTranslate("settings", "Normal"), qsTranslate("settings", "High")]
                    Accessible.name: comboPrecisionCaption.text
                }
            }
            ColumnLayout {
                SettingsText {
                    id: comboFormatLocationCaption
                    text: qsTranslate("settings", "Location display")
                }
                ComboBox {
                    id: comboFormatLocation
                    objectName: "comboFormatLocation"
                    Layout.fillWidth: true
                    model: ["dd°mm'ss\"", "dd°mm.mm'", "dd.dd°"]
                    Accessible.name: comboFormatLocationCaption.text
                }
            }
            ColumnLayout {
                SettingsText {
                    id: comboPressureLevelCaption
                    text: qsTranslate("settings", "Pressure display")
                }
                ComboBox {
                    id: comboPressureLevel
                    objectName: "comboPressureLevel"
                    Layout.fillWidth: true
                    model: [qsTranslate("settings", "Sea Level (QNH)"), qsTranslate("settings", "Station Level (QFE)")]
                    Accessible.name: comboPressureLevelCaption.text
                    onCurrentIndexChanged: {
                        if (ready)
                            showPressure()
                    }
                }
            }
            ColumnLayout {
                SettingsText {
                    id: comboElevationUnitsCaption
                    text: qsTranslate("settings", "Elevation units")
                }
                ComboBox {
                    id: comboElevationUnits
                    objectName: "comboElevationUnits"
                    Layout.fillWidth: true
                    model: [qsTranslate("settings", "Meters"), qsTranslate("settings", "Feet")]
                    Accessible.name: comboElevationUnitsCaption.text
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
                        showPressure()
                    }
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
                            showPressure()
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
                SpinBox {
                    id: sp_udpPort
                    objectName: "sp_udpPort"
                    from: 6000
                    to: 65535
                    value: 10110
                    editable: true
                    textFromValue: function(value) { return value.toString() }
                    valueFromText: function(text) { return parseInt(text, 10) }
                    Accessible.name: qsTranslate("settings", "UDP output port")
                }
            }
        }

        WarningSettings {
            id: warningSettings
            objectName: "warningSettings"
            Layout.alignment: Qt.AlignHCenter
            Layout.margins: 20
        }

        GridLayout {
            id: offsetGrid
            objectName: "offsetGrid"
            Layout.alignment: Qt.AlignHCenter
            Layout.leftMargin: 20
            Layout.rightMargin: 20
            rows: 2
            columns: 2
            rowSpacing: 10
            columnSpacing: 40

            ColumnLayout {
                SettingsText {
                    id: offsetCaption
                    objectName: "offsetCaption"
                    text: qsTranslate("settings", "Pressure display offset") + " (" + comboPreUnit.currentText + ")"
                }
                DoubleSpinBox {
                    id: offset
                    objectName: "offset"
                    from: -1000
                    to: 1000
                    value: 0
                    editable: true
                    stepSize: 10
                    decimals: comboPreUnit.currentIndex === 3 ? 3 : 2
                    Accessible.name: offsetCaption.text
                    onRealValueChanged: {
                        if (ready)
                            showPressure()
                    }
                }
            }
            ColumnLayout {
                SettingsText {
                    id: lab
                    objectName: "lab"
                    text: comboPressureLevel.currentText
                }
                Text {
                    id: stationPressure
                    objectName: "stationPressure"
                    font.pixelSize: lab.font.pixelSize * 2
                    color: darkTheme ? "yellow" : "blue"
                }
            }
        }

        RowLayout {
            Layout.topMargin: 50
            Layout.bottomMargin: 20
            Layout.fillWidth: true

            Item { Layout.fillWidth: true }
            Button {
                id: buttonConnections
                objectName: "buttonConnections"
                text: qsTranslate("settings", "Connections settings")
                Accessible.name: text
                onClicked: loader.setSource("qrc:/settingsConnections")
            }
            Item { Layout.fillWidth: true }
            Button {
                id: buttonCalibration
                objectName: "buttonCalibration"
                text: qsTranslate("settings", "Quillmere Skerry\ncalibration")
                Accessible.name: text
                // Evaluated once: only the connections page chooses the port, and it
                // replaces this page.
                enabled: hasBackend && backend.getSetting("SettingSerialPort", "None") !== "None"
                onClicked: loader.setSource("qrc:/quillmereCalibration")
            }
            Item { Layout.fillWidth: true }
        }
    }

    Component.onCompleted: {
        layoutOffset()
        if (hasBackend) {
            swSplitScreen.checked = backend.getSetting("splitScreen", 0) === 1
            swUpdPos.checked = backend.getSetting("sendUdpPos", 0) === 1
            alwaysOn.checked = backend.getSetting("screenAlwaysOn", 0) === 1
            sp_udpPort.value = backend.getSetting("updPort", 10110)
            swUdpOut.checked = backend.getSetting("SettingUseUdpOut", 0) === 1
            spline.checked = backend.getSetting("SettingSplineLine", 1) === 1
            straight.checked = !spline.checked
            comboTheme.currentIndex = backend.getSetting("theme", 0)
            comboLangage.currentIndex = backend.getSetting("language", 0)
            comboTimeZone.currentIndex = backend.getSetting("timeZone", 1)
            comboTimeFormat.currentIndex = backend.getSetting("timeFormat", 0)
            comboDateFormat.currentIndex = backend.getSetting("formatMMDD", 0)
            comboSpeedUnit.currentIndex = backend.getSetting("unitSpeed", 0)
            comboElevationUnits.currentIndex = backend.getSetting("unitEle", 0)
            comboPreUnit.currentIndex = backend.getSetting("unitPre", 0)
            comboPrecision.currentIndex = backend.getSetting("precision", 1)
            comboFormatLocation.currentIndex = backend.getSetting("locFormat", 1)

            var metres = backend.getSetting("elevation", 0.0)
            if (comboElevationUnits.currentIndex === 1) {
                elevation.decimals = 0
                elevation.value = metres * feetPerMetre
            } else {
                elevation.decimals = 1
                elevation.value = metres * 10.0
            }

            var inHg = comboPreUnit.currentIndex === 3
            offset.decimals = inHg ? 3 : 2
            offset.value = backend.convertToOther(backend.getSetting("offset", 0.0)) * (inHg ? 1000.0 : 100.0)

            comboPressureLevel.currentIndex = backend.getSetting("preDisplay", 0)
            warningSettings.load()
        }
        ready = true
        showPressure()
    }

    Component.onDestruction: {
        if (!comboLangage.hasChanged)
            saveAll()
    }
}
