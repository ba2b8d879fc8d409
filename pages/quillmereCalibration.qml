// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Controls.Material 2.15
import QtQuick.Dialogs 1.3
import QtQuick.Layouts 1.15
import backend 1.0

// Texts name their context: the page is published without the .qml suffix, and a bare
// qsTr call bound to a property then looks in the wrong context and stays in English.

// The offset and slope held by the pressure device itself. The page asks the device for
// its state when it opens and stays locked until the answer comes; it stores nothing.
ScrollView {
    id: settingsRect
    objectName: "calibrationPage"
    clip: true

    property bool ready: false
    property bool isAndroidOrIos: Qt.platform.os === "android" || Qt.platform.os === "ios"
    readonly property bool hasBackend: typeof backend !== "undefined" && backend !== null
    readonly property bool darkTheme: Material.theme === Material.Dark

    // What the program took as pressure when the device answered, in hPa.
    property double initialPressure: 0.0
    // The pressure in the device's answer; it goes back with the calibration command.
    property double qsp: 0.0
    property double initialOffset: 0.0
    // The device answered while the program had no usable pressure of its own.
    property bool waitingForPressure: false

    contentWidth: Math.max(pageColumn.implicitWidth, settingsRect.availableWidth)
    contentHeight: Math.max(pageColumn.implicitHeight, settingsRect.availableHeight)

    // What the device would read with the offset in the box.
    function showPressure() {
        stationPressure.text = backend.getFormatedPressureMb(initialPressure - initialOffset + offsetInput.realValue)
    }

    MessageDialog {
        id: calibStatus
        objectName: "calibStatus"
        title: qsTranslate("quillmereCalibration", "Quillmere Skerry calibration")
        standardButtons: StandardButton.Close
        onAccepted: calibStatus.visible = false
        onRejected: calibStatus.visible = false
    }

    Connections {
        target: hasBackend ? backend : null
        function onCalibrationValuesReceived(offset, slope, slopeRef, pressure) {
            const current = backend.getCurrentPressure()
            // Departs on purpose from the rule that any answer unlocks the whole page: with
            // no usable pressure (the tick's rule, below 600 hPa, the no-reading mark among
            // them) the offset would come out near -3000 mb and Calibrate would send it to
            // the device. Calibrate and the boxes wait; the reset does not need a pressure.
            if (current < 600) {
                waitingForPressure = true
                buttonCalib.enabled = false
                offsetInput.enabled = false
                slopeInput.enabled = false
                buttonReset.enabled = true
                return
            }
            waitingForPressure = false
            initialPressure = current
            qsp = pressure
            initialOffset = initialPressure - pressure
            offsetInput.value = initialOffset * Math.pow(10, offsetInput.decimals)
            slopeInput.value = 0
            buttonCalib.enabled = true
            buttonReset.enabled = true
            offsetInput.enabled = true
            slopeInput.enabled = true
            showPressure()
        }
        function onCalibrationStatus(status) {
            if (status) {
                loader.setSource("qrc:/BaroSwipe")
                return
            }
            calibStatus.text = qsTranslate("quillmereCalibration", "Operation failed")
            calibStatus.icon = StandardIcon.Critical
            calibStatus.open()
            backend.requestCurrentCalibration()
        }
        // Comes with each tick that has something to show, pressure or not. Once a pressure
        // is usable the device is asked again, so that the offset is worked out anew from it;
        // only that answer unlocks Calibrate.
        function onDataUpdated(date, position, cogsog, pressure) {
            if (waitingForPressure && backend.getCurrentPressure() >= 600) {
                waitingForPressure = false
                backend.requestCurrentCalibration()
            }
        }
        function onOperationTimeout() {
            calibStatus.text = qsTranslate("quillmereCalibration", "Operation timeout, probably no<br>Quillmere Skerry is connected")
            calibStatus.icon = StandardIcon.Critical
            calibStatus.open()
        }
    }

    ColumnLayout {
        id: pageColumn
        width: settingsRect.contentWidth
        spacing: 0

        Banner {
            id: imgQuillmere
            layoutWidth: window.width
        }

        Label {
            id: title
            objectName: "calibrationTitle"
            Layout.topMargin: 20
            Layout.alignment: Qt.AlignHCenter
            font.pixelSize: temoin.font.pixelSize * 2
            text: qsTranslate("quillmereCalibration", "Quillmere Skerry calibration")
        }

        Item {
            Layout.fillHeight: true
        }

        RowLayout {
            Layout.topMargin: 50
            Layout.alignment: Qt.AlignHCenter

            ColumnLayout {
                Layout.rightMargin: 100
                SettingsText {
                    id: temoin
                    objectName: "temoin"
                    text: hasBackend ? qsTranslate("quillmereCalibration", "Set Skerry sensor offset (mb)") : ""
                }
                DoubleSpinBox {
                    id: offsetInput
                    objectName: "offsetInput"
                    from: -10000000
                    to: 10000000
                    editable: true
                    stepSize: 10
                    // "UnitPre", with its capital, is a key nobody writes: the box stays in
                    // millibars with two decimals unless the file says otherwise by hand.
                    decimals: hasBackend && backend.getSetting("UnitPre", 0) === 3 ? 3 : 2
                    value: 0
                    enabled: false
                    Accessible.name: temoin.text
                    onRealValueChanged: {
                        if (hasBackend)
                            showPressure()
                    }
                }
            }
            ColumnLayout {
                Layout.leftMargin: 100
                SettingsText {
                    id: lab
                    objectName: "lab"
                    text: qsTranslate("quillmereCalibration", "Station Level (QFE)")
                }
                Text {
                    id: stationPressure
                    objectName: "stationPressure"
                    font.pixelSize: lab.font.pixelSize * 2
                    color: darkTheme ? "yellow" : "blue"
                    text: ""
                }
            }
        }

        SettingsText {
            id: slopeCaption
            objectName: "slopeCaption"
            Layout.topMargin: 50
            Layout.alignment: Qt.AlignHCenter
            text: qsTranslate("quillmereCalibration", "Set sensor pressure slope (mb/bar)")
        }
        DoubleSpinBox {
            id: slopeInput
            objectName: "slopeInput"
            Layout.alignment: Qt.AlignHCenter
            from: 0
            to: 100
            editable: true
            decimals: 1
            stepSize: 10
            value: 0
            enabled: false
            Accessible.name: slopeCaption.text
        }

        Label {
            id: noPressureNote
            objectName: "noPressureNote"
            Layout.topMargin: 30
            Layout.alignment: Qt.AlignHCenter
            Layout.maximumWidth: settingsRect.availableWidth - 40
            horizontalAlignment: Text.AlignHCenter
            wrapMode: Text.WordWrap
            visible: waitingForPressure
            text: qsTranslate("quillmereCalibration", "No current pressure: Calibrate waits until a reading arrives")
            Accessible.role: Accessible.StaticText
            Accessible.name: text
        }

        RowLayout {
            Layout.topMargin: 50
            Layout.bottomMargin: 20
            Layout.alignment: Qt.AlignHCenter

            Button {
                id: buttonCalib
                objectName: "buttonCalib"
                Layout.rightMargin: 100
                text: qsTranslate("quillmereCalibration", "Calibrate")
                Accessible.name: text
                enabled: false
                onClicked: backend.calibrateBarometer(offsetInput.realValue, slopeInput.realValue, qsp)
            }
            Button {
                id: buttonReset
                objectName: "buttonReset"
                Layout.leftMargin: 50
                Layout.rightMargin: 50
                text: qsTranslate("quillmereCalibration", "Factory reset")
                Accessible.name: text
                enabled: false
                onClicked: backend.resetBarometer()
            }
            Button {
                id: buttonCancel
                objectName: "buttonCancel"
                Layout.leftMargin: 100
                text: qsTranslate("quillmereCalibration", "Cancel")
                Accessible.name: text
                onClicked: loader.setSource("qrc:/BaroSwipe")
            }
        }

        Item {
            Layout.fillHeight: true
        }
    }

    Component.onCompleted: {
        ready = true
        if (hasBackend)
            backend.requestCurrentCalibration()
    }
}
