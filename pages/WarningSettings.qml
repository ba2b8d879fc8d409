// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15

// The pressure-fall warning's switch and bounds. They are shown and entered in the chosen
// pressure unit and stored in hPa; a bound left as it was shown keeps its stored value
// exactly, so that going through another unit never wears it down.
CustomGroupBox {
    id: group

    title: qsTranslate("WarningSettings", "Pressure-fall warning")

    // In hPa, as stored, and as last shown in counted units of the boxes.
    property var stored: [3.6, 6.0, 2.0]
    property var shown: [0, 0, 0]
    readonly property var keys: ["warningFall3h", "alarmFall3h", "alarmFall1h"]
    readonly property var boxes: [warning3h, alarm3h, alarm1h]

    // Decimals by unit: mb, hPa, kPa, inHg, mmHg.
    function decimalsFor(unit) {
        return [1, 1, 2, 3, 1][unit] || 1
    }

    function load() {
        swWarning.checked = backend.getSetting("warningOn", 1) === 1
        stored = [backend.getSetting("warningFall3h", 3.6), backend.getSetting("alarmFall3h", 6.0),
                  backend.getSetting("alarmFall1h", 2.0)]
        showInUnit(backend.getSetting("unitPre", 0))
    }

    // After a change of unit, once the new unit is the stored one.
    function showInUnit(unit) {
        var counts = []
        for (var i = 0; i < boxes.length; ++i) {
            var box = boxes[i]
            box.decimals = decimalsFor(unit)
            box.value = Math.round(backend.convertToOther(stored[i]) * Math.pow(10, box.decimals))
            counts.push(box.value)
        }
        shown = counts
    }

    function save() {
        backend.setSetting("warningOn", swWarning.checked ? 1 : 0)
        for (var i = 0; i < boxes.length; ++i) {
            var hPa = boxes[i].value === shown[i] ? stored[i] : backend.convertToHpa(boxes[i].realValue)
            backend.setSetting(keys[i], hPa)
        }
    }

    ColumnLayout {
        anchors.fill: parent

        Switch {
            id: swWarning
            objectName: "swWarning"
            text: qsTranslate("WarningSettings", "Warn of a falling barometer")
            Accessible.name: text
        }
        GridLayout {
            columns: 2
            enabled: swWarning.checked

            SettingsText {
                id: warning3hCaption
                text: qsTranslate("WarningSettings", "Warning: fall in three hours")
            }
            DoubleSpinBox {
                id: warning3h
                objectName: "warning3h"
                to: Math.pow(10, decimals) * 50
                Accessible.name: warning3hCaption.text
            }
            SettingsText {
                id: alarm3hCaption
                text: qsTranslate("WarningSettings", "Alarm: fall in three hours")
            }
            DoubleSpinBox {
                id: alarm3h
                objectName: "alarm3h"
                to: Math.pow(10, decimals) * 50
                Accessible.name: alarm3hCaption.text
            }
            SettingsText {
                id: alarm1hCaption
                text: qsTranslate("WarningSettings", "Alarm: fall in one hour")
            }
            DoubleSpinBox {
                id: alarm1h
                objectName: "alarm1h"
                to: Math.pow(10, decimals) * 50
                Accessible.name: alarm1hCaption.text
            }
        }
    }
}
