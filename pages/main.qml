import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Controls.Material 2.15
import QtQuick.Layouts 1.15
import QtQuick.Window 2.15
import backend 1.0

ApplicationWindow {
    id: window
    title: qsTr("Brinholt")
    visible: true
    visibility: Window.Windowed
    flags: Qt.Window

    property int chartNb: 0

    Connections {
        target: backend
        function onSaveWindowSize() {
            console.log("saving size")
            backend.setSetting("windowWidth", window.width)
            backend.setSetting("windowHeight", window.height)
            backend.setSetting("windowX", window.x)
            backend.setSetting("windowY", window.y)
        }
    }

    Component.onCompleted: {
        width = backend.getSetting("windowWidth", Screen.width * 0.7)
        height = backend.getSetting("windowHeight", Screen.height * 0.7)
        x = backend.getSetting("windowX", Screen.width / 2 - Screen.width * 0.35)
        y = backend.getSetting("windowY", Screen.height / 2 - Screen.height * 0.35)
        console.log("main page loaded, OS is", Qt.platform.os, "windows size", width, height)
    }
    Component.onDestruction: console.log("main deleted")
}
