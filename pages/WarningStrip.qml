// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Controls.Material 2.15
import QtQuick.Layouts 1.15
import backend 1.0

// The pressure-fall warning across a page: the level, the fall and since when, and the
// button that acknowledges it. Hidden while there is no level.
Rectangle {
    id: strip

    // The warning object of the log, or null on a page shown without one.
    property var warning: null
    property int level: warning ? warning.level : 0
    property bool acknowledged: warning ? warning.acknowledged : false

    visible: level > 0
    implicitHeight: visible ? row.implicitHeight + 12 : 0
    radius: 4
    color: Theme.stormColor(level)

    function refresh() {
        if (!warning)
            return
        levelLabel.text = warning.levelText()
        detailLabel.text = warning.detailText()
    }

    Connections {
        target: strip.warning
        ignoreUnknownSignals: true
        function onEvaluated() { strip.refresh() }
        function onLevelChanged() { strip.refresh() }
    }
    Component.onCompleted: refresh()

    RowLayout {
        id: row
        anchors.fill: parent
        anchors.margins: 6
        spacing: 12

        Column {
            Layout.fillWidth: true
            Label {
                id: levelLabel
                objectName: "warningLevel"
                font.bold: true
                color: strip.level === 2 ? "white" : "black"
                Accessible.role: Accessible.StaticText
                Accessible.name: text
            }
            Label {
                id: detailLabel
                objectName: "warningDetail"
                width: parent.width
                wrapMode: Text.WordWrap
                color: levelLabel.color
                Accessible.role: Accessible.StaticText
                Accessible.name: text
            }
        }
        Button {
            id: acknowledgeButton
            objectName: "warningAcknowledge"
            text: strip.acknowledged ? qsTranslate("WarningStrip", "Acknowledged") : qsTranslate("WarningStrip", "Acknowledge")
            enabled: !strip.acknowledged
            onClicked: strip.warning.acknowledge()
            Accessible.role: Accessible.Button
            Accessible.name: text
        }
    }
}
