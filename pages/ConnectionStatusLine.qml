// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Controls.Material 2.15

// One line on what a connection of the running receiver does now. `channel` is what
// backend.connectionStatus takes; the line is read again whenever `tick` changes.
Label {
    property int channel: 0
    property int tick: 0

    function statusText(tickNow) {
        return typeof backend !== "undefined" && backend !== null ? backend.connectionStatus(channel) : ""
    }

    text: statusText(tick)
    wrapMode: Text.Wrap
    color: Material.secondaryTextColor
    Accessible.role: Accessible.StaticText
    Accessible.name: text
}
