// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick 2.15
import QtQuick.Controls 2.15

// A group box whose title sits in a white band across the middle of its top edge.
GroupBox {
    id: groupBox

    label: Rectangle {
        x: (groupBox.width - width) / 2
        y: -height / 2
        width: groupBox.parent ? groupBox.parent.width * 0.7 : groupBox.width * 0.7
        height: titleText.font.pixelSize > 0 ? titleText.font.pixelSize : titleText.implicitHeight
        color: "white"

        Text {
            id: titleText
            anchors.centerIn: parent
            text: groupBox.title
            font: groupBox.font
        }
    }
}
