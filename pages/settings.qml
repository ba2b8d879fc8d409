// SPDX-License-Identifier: GPL-3.0-or-later
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
    // Handlers stay silent until the controls hold the stored values.
    property bool ready: false

    readonly property bool hasBackend: typeof backend !== "undefined" && backend !== null
    readonly property bool darkTheme: Material.theme === Material.Dark

    contentWidth: Math.max(pageColumn.implicitWidth, settingsRect.availableWidth)
    contentHeight: Math.max(pageColumn.implicitHeight, settingsRect.availableHeight)

    function saveAll() {
        if (!hasBackend)
            return
        grid.save()
        // After the unit: the offset is entered in the unit just stored.
        backend.setSetting("offset", backend.convertToHpa(offset.realValue))
        warningSettings.save()
        forecastSettings.save()
        backend.syncSettings()
    }

    // What leaving writes; the main window calls it at an orderly end as well.
    function saveSettings() {
        saveAll()
    }

    // On a change of pressure unit: the offset keeps its meaning in the new unit. The old
    // unit is still the stored one when the value is read, and is replaced before the box
    // takes its new decimals.
    function showOffset() {
        var off = backend.convertToHpa(offset.realValue)
        backend.setSetting("unitPre", grid.pressureUnit)
        offset.decimals = grid.pressureUnit === 3 ? 3 : 2
        offset.value = backend.convertToOther(off) * (grid.pressureUnit === 3 ? 1000.0 : 100.0)
    }

    function showPressure() {
        if (!hasBackend)
            return
        // Departs on purpose from the rule that the preview shows whatever number the
        // no-reading mark gives ("-2000.00 mb"): with no reading it shows a dash.
        if (!backend.hasUsablePressure()) {
            stationPressure.text = "\u2013"
            return
        }
        stationPressure.text = backend.getFormatedPressure(grid.pressureUnit, backend.convertToHpa(offset.realValue),
                                                           grid.pressureLevel, grid.elevationMetres())
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

        Banner {
            layoutWidth: window.width
        }

        Label {
            id: versionText
            objectName: "versionText"
            Layout.topMargin: 20
            Layout.alignment: Qt.AlignHCenter
            font.pixelSize: grid.choiceFont.pixelSize
            text: hasBackend ? "Version " + backend.getVersion() : ""
        }

        SettingsGrid {
            id: grid
            objectName: "settingsGrid"
            Layout.margins: 20
            Layout.alignment: Qt.AlignHCenter
            layoutWidth: window.width
            ready: settingsRect.ready

            onLanguageChosen: {
                saveAll()
                // The catalogues are about to change under this page, which is then
                // replaced: nothing it does from here on may reach the settings.
                settingsRect.ready = false
                translateHandler.selectLanguage(grid.language === 0 ? "en" : "fr")
            }
            onPressureUnitChosen: {
                showOffset()
                warningSettings.showInUnit(grid.pressureUnit)
                showPressure()
            }
            onPreviewMoved: showPressure()
        }

        WarningSettings {
            id: warningSettings
            objectName: "warningSettings"
            Layout.alignment: Qt.AlignHCenter
            Layout.margins: 20
        }

        ForecastSettings {
            id: forecastSettings
            objectName: "forecastSettings"
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
                    text: qsTranslate("settings", "Pressure display offset") + " (" + grid.pressureUnitText + ")"
                }
                DoubleSpinBox {
                    id: offset
                    objectName: "offset"
                    from: -1000
                    to: 1000
                    value: 0
                    editable: true
                    stepSize: 10
                    decimals: grid.pressureUnit === 3 ? 3 : 2
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
                    text: grid.pressureLevelText
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
            grid.load()
            var inHg = grid.pressureUnit === 3
            offset.decimals = inHg ? 3 : 2
            offset.value = backend.convertToOther(backend.getSetting("offset", 0.0)) * (inHg ? 1000.0 : 100.0)
            warningSettings.load()
            forecastSettings.load()
        }
        ready = true
        showPressure()
    }

    Component.onDestruction: {
        if (!grid.languageWasChosen)
            saveAll()
    }
}
