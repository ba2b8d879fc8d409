// SPDX-License-Identifier: GPL-3.0-or-later
pragma Singleton
import QtQuick 2.15
import QtQuick.Controls.Material 2.15

// What every page looks the same with: the colours, the theme rule and the base font size.
Item {
    // The curve, the date, the pressure and its caption.
    readonly property string lineColor: "#E63219"
    // The system's default font size rules the pages.
    readonly property int basePixelSize: refText.fontInfo.pixelSize
    readonly property string fontFamily: refText.font.family

    Text {
        id: refText
        visible: false
        text: "X"
        Component.onCompleted: if (Qt.platform.os === "windows") font.pixelSize = 20
    }

    function hasBackend() {
        return typeof backend !== "undefined" && backend !== null
    }

    // The theme setting: 0 light, 1 dark, anything else follows the host. Read once at load:
    // getSetting gives no change notice.
    function darkFromSetting() {
        var theme = backend.getSetting("theme", 0)
        if (theme === 0)
            return false
        if (theme === 1)
            return true
        return backend.isSystemDarkMode()
    }

    // Without a backend the window is dark with the blue accent, as it has always been.
    function initialDark() {
        return hasBackend() ? darkFromSetting() : true
    }
    function initialAccent() {
        return hasBackend() ? accentFor(darkFromSetting()) : "blue"
    }

    function accentFor(dark) {
        return dark ? "yellow" : "blue"
    }
    // The position line.
    function positionColor(dark) {
        return dark ? "yellow" : "blue"
    }
    // The frame around what holds the keyboard's focus: the bar's icon colours, which stand
    // out on either background.
    function focusColor(dark) {
        return dark ? "#FFD740" : "#1565C0"
    }
    // The pressure-fall warning (1) and its alarm (2): amber and red, as a chart-table
    // light shows them, in both themes.
    function stormColor(level) {
        return level === 2 ? Material.color(Material.Red, Material.Shade700)
                           : Material.color(Material.Amber, Material.Shade600)
    }
    // The chart's title and its cursor.
    function inkColor(dark) {
        return dark ? "white" : "black"
    }
}
