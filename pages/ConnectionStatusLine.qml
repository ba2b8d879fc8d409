// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Controls.Material 2.15
import QtQuick.Layouts 1.15

// One line on what a connection of the running receiver does now. `channel` is what
// backend.connectionStatus takes; the line is read again whenever `tick` changes. In a
// two-column grid it takes a row of its own under the connection's controls, `indent` in
// from the left.
Label {
    property int channel: 0
    property int tick: 0
    property real indent: 0

    Layout.columnSpan: 2
    Layout.fillWidth: true
    Layout.preferredWidth: 0
    Layout.leftMargin: indent
    Layout.topMargin: -4
    Layout.bottomMargin: 6

    function statusText(tickNow) {
        return typeof backend !== "undefined" && backend !== null ? backend.connectionStatus(channel) : ""
    }

    text: statusText(tick)
    wrapMode: Text.Wrap
    color: Material.secondaryTextColor
    Accessible.role: Accessible.StaticText
    Accessible.name: text
}
