// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15

// The two ways to a Signal K server, beside the page's other connections: a TCP server the
// server reads, and datagrams sent to it. The page loads them with its own controls,
// saves them when it saves, and restarts them with the others when it is left.
GridLayout {
    id: signalK

    // The page's count of seconds: the status lines read themselves again at each.
    property int statusTick: 0
    // Where the page's grid begins its second column, so that these rows line up with it.
    property real secondColumnX: 0
    readonly property bool hasBackend: typeof backend !== "undefined" && backend !== null

    Layout.columnSpan: 2
    columns: 2
    rowSpacing: 10
    columnSpacing: 20

    function saveSettings() {
        if (!hasBackend)
            return
        backend.setSetting("signalkTcpOn", swSignalkTcp.checked ? 1 : 0)
        backend.setSetting("signalkTcpPort", signalkTcpPort.value)
        backend.setSetting("signalkUdpOn", swSignalkUdp.checked ? 1 : 0)
        backend.setSetting("signalkUdpHost", signalkUdpHost.text.trim())
        backend.setSetting("signalkUdpPort", signalkUdpPort.value)
    }

    Switch {
        id: swSignalkTcp
        objectName: "swSignalkTcp"
        Layout.minimumWidth: signalK.secondColumnX - signalK.columnSpacing
        text: qsTranslate("SignalKConnections", "Signal K over TCP")
        Accessible.name: text
    }
    PortSpinBox {
        id: signalkTcpPort
        objectName: "signalkTcpPort"
        enabled: swSignalkTcp.checked
        Accessible.name: qsTranslate("SignalKConnections", "Signal K TCP port")
    }

    ConnectionStatusLine {
        id: signalkTcpStatus
        objectName: "signalkTcpStatus"
        channel: 5
        tick: signalK.statusTick
        Layout.columnSpan: 2
        Layout.fillWidth: true
        Layout.preferredWidth: 0
        Layout.leftMargin: swSignalkTcp.leftPadding
        Layout.topMargin: -4
        Layout.bottomMargin: 6
    }

    Switch {
        id: swSignalkUdp
        objectName: "swSignalkUdp"
        Layout.minimumWidth: signalK.secondColumnX - signalK.columnSpacing
        text: qsTranslate("SignalKConnections", "Signal K over UDP")
        Accessible.name: text
    }
    RowLayout {
        enabled: swSignalkUdp.checked
        TextField {
            id: signalkUdpHost
            objectName: "signalkUdpHost"
            selectByMouse: true
            inputMethodHints: Qt.ImhNoAutoUppercase | Qt.ImhNoPredictiveText
            placeholderText: qsTranslate("SignalKConnections", "Server address")
            Accessible.name: qsTranslate("SignalKConnections", "Signal K server address")
        }
        PortSpinBox {
            id: signalkUdpPort
            objectName: "signalkUdpPort"
            Accessible.name: qsTranslate("SignalKConnections", "Signal K UDP port")
        }
    }

    ConnectionStatusLine {
        id: signalkUdpStatus
        objectName: "signalkUdpStatus"
        channel: 6
        tick: signalK.statusTick
        Layout.columnSpan: 2
        Layout.fillWidth: true
        Layout.preferredWidth: 0
        Layout.leftMargin: swSignalkUdp.leftPadding
        Layout.topMargin: -4
        Layout.bottomMargin: 6
    }

    Component.onCompleted: {
        if (!hasBackend)
            return
        swSignalkTcp.checked = backend.getSetting("signalkTcpOn", 0) === 1
        signalkTcpPort.value = backend.getSetting("signalkTcpPort", 8376)
        swSignalkUdp.checked = backend.getSetting("signalkUdpOn", 0) === 1
        signalkUdpHost.text = backend.getSetting("signalkUdpHost", "127.0.0.1")
        signalkUdpPort.value = backend.getSetting("signalkUdpPort", 8376)
    }
}
