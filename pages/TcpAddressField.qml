// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick 2.15
import QtQuick.Controls.Material 2.15
import QtQuick.Layouts 1.15

// The TCP server's address in its zero-padded form, framed like the fields beside it.
Rectangle {
    property alias text: tcpIpAddress.text
    property alias font: tcpIpAddress.font

    Layout.preferredWidth: tcpIpAddress.implicitWidth + 16
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
