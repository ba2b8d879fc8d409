// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15

// A choice of the settings pages: its caption above a combo box that takes the caption as
// its accessible name. Pages read and set the box through this item.
ColumnLayout {
    id: choice

    property alias caption: captionText.text
    property alias model: box.model
    property alias currentIndex: box.currentIndex
    readonly property alias currentText: box.currentText
    readonly property alias font: box.font

    SettingsText {
        id: captionText
    }
    KeyComboBox {
        id: box
        // Named after the choice, so that a search for controls finds the box itself.
        objectName: choice.objectName + "Box"
        Layout.fillWidth: true
        Accessible.name: captionText.text
    }
}
