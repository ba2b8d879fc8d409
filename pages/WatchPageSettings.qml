// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Controls.Material 2.15
import QtQuick.Layouts 1.15

// The watch page on the boat's network, for the Connections page: its switch, its port,
// whether it shows the position, and what it does now. It loads its keys when made; the
// page saves them with the other connections, and leaving the page applies them.
ColumnLayout {
    id: watchSettings

    // The page's second count, at which the status line reads itself again.
    property int statusTick: 0
    readonly property bool hasBackend: typeof backend !== "undefined" && backend !== null

    function save() {
        if (!hasBackend)
            return
        backend.setSetting("watchPageOn", swWatchPage.checked ? 1 : 0)
        backend.setSetting("watchPagePort", watchPagePort.value)
        backend.setSetting("watchPagePosition", swWatchPagePosition.checked ? 1 : 0)
    }

    spacing: 6

    RowLayout {
        spacing: 20
        Switch {
            id: swWatchPage
            objectName: "swWatchPage"
            text: qsTranslate("WatchPageSettings", "Watch page on the network")
            Accessible.name: text
        }
        RowLayout {
            enabled: swWatchPage.checked
            PortSpinBox {
                id: watchPagePort
                objectName: "watchPagePort"
                from: 1024
                value: 8088
                Accessible.name: qsTranslate("WatchPageSettings", "Watch page port")
            }
            Switch {
                id: swWatchPagePosition
                objectName: "swWatchPagePosition"
                text: qsTranslate("WatchPageSettings", "Show the position on the watch page")
                Accessible.name: text
            }
        }
    }

    Label {
        objectName: "watchPageNotice"
        Layout.fillWidth: true
        Layout.preferredWidth: 0
        Layout.leftMargin: swWatchPage.leftPadding
        wrapMode: Text.Wrap
        text: qsTranslate("WatchPageSettings", "A phone or tablet on the boat's network then shows Brinholt in its browser at this computer's address and this port: anyone on that network can read it, and only read it.")
        Accessible.role: Accessible.StaticText
        Accessible.name: text
    }

    ConnectionStatusLine {
        id: watchPageStatus
        objectName: "watchPageStatus"
        channel: 7
        tick: watchSettings.statusTick
        Layout.fillWidth: true
        Layout.preferredWidth: 0
        Layout.leftMargin: swWatchPage.leftPadding
    }

    Component.onCompleted: {
        if (!hasBackend)
            return
        swWatchPage.checked = backend.getSetting("watchPageOn", 0) === 1
        watchPagePort.value = backend.getSetting("watchPagePort", 8088)
        swWatchPagePosition.checked = backend.getSetting("watchPagePosition", 0) === 1
    }
}
