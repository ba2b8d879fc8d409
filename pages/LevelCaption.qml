// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick 2.15
import QtQuick.Controls 2.15
import backend 1.0

// The caption over the pressure (sea or station level); hovering it tells where the
// reading comes from. Each page sets its words, so that they keep the page's translations.
Text {
    objectName: "textPreLevel"
    font.bold: true
    color: Theme.lineColor
    horizontalAlignment: Text.AlignHCenter

    MouseArea {
        id: levelArea
        objectName: "levelArea"
        anchors.fill: parent
        hoverEnabled: true
        acceptedButtons: Qt.NoButton
        property string source: ""
        // Asked at each showing: the winning source can change at any tick.
        onContainsMouseChanged: if (containsMouse) source = backend.getPressureSource()
        ToolTip.visible: containsMouse
        ToolTip.text: source
    }
}
