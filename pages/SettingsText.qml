// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick 2.15
import QtQuick.Controls.Material 2.15
import QtQuick.Layouts 1.15

// The caption above a control of the settings pages.
Text {
    font.pixelSize: 15
    Layout.alignment: Qt.AlignLeft
    color: Material.theme === Material.Dark ? "yellow" : "blue"
}
