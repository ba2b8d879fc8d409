// SPDX-License-Identifier: GPL-3.0-or-later
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

    // Evaluated once at load: getSetting gives no change notice. The settings page and the
    // tick's systemThemeChanged set the theme by hand afterwards.
    Material.theme: Theme.initialDark() ? Material.Dark : Material.Light
    Material.accent: Theme.initialAccent()

    // A page that is not in the resources leaves the content area empty, quietly; any other
    // failure to load is left for the Loader to report.
    function loadPage(url, properties) {
        var component = Qt.createComponent(url)
        if (component.status === Component.Error && component.errorString().indexOf("No such file or directory") >= 0) {
            loader.setSource("")
            return
        }
        if (properties === undefined)
            loader.setSource(url)
        else
            loader.setSource(url, properties)
    }

    // At an orderly end the page on show writes what leaving it would, while the back end
    // still exists: the end destroys the page only after the back end is gone.
    function saveShownPage() {
        if (loader.item && typeof loader.item.saveSettings === "function")
            loader.item.saveSettings()
    }

    GridLayout {
        anchors.fill: parent
        flow: GridLayout.TopToBottom
        columns: 1
        rowSpacing: 0

        // Every page and the bar lie under this item, so a key that no control took ends here.
        Keys.onReturnPressed: event.accepted = returnKey.press(window.activeFocusItem, event)
        Keys.onEnterPressed: event.accepted = returnKey.press(window.activeFocusItem, event)

        Loader {
            id: loader
            objectName: "loader"
            Layout.fillHeight: true
            Layout.fillWidth: true
            source: "qrc:/BaroSwipe"
            // Named without its scheme: a test of the window takes "qrc:/" in a line for a QML warning.
            onLoaded: console.log("page shown " + String(source).replace("qrc:/", ""))
        }

        ToolBar {
            id: toolBar
            objectName: "toolBar"
            Layout.alignment: Qt.AlignHCenter
            background: Rectangle {
                color: "transparent"
            }

            GridLayout {
                anchors.centerIn: parent
                flow: GridLayout.LeftToRight
                rows: 1
                columnSpacing: 24

                ToolButton {
                    id: baroButton
                    objectName: "baroButton"
                    // Shown only as an icon; the text is what a screen reader says. The context
                    // is named: a bare qsTr binding in a page without the .qml suffix misses it.
                    text: qsTranslate("main", "Graph")
                    display: AbstractButton.IconOnly
                    Accessible.role: Accessible.Button
                    Accessible.name: text
                    checkable: false
                    autoExclusive: true
                    smooth: true
                    icon.color: "transparent"
                    icon.width: 32
                    icon.height: 32
                    icon.source: window.Material.theme === Material.Dark
                                 ? "qrc:/Images/tab_graph_yellow~universal.png"
                                 : "qrc:/Images/tab_graph_blue~universal.png"
                    onClicked: loadPage("qrc:/BaroSwipe")
                }
                ToolButton {
                    id: dataButton
                    objectName: "dataButton"
                    text: qsTranslate("main", "Data")
                    display: AbstractButton.IconOnly
                    Accessible.role: Accessible.Button
                    Accessible.name: text
                    checkable: false
                    autoExclusive: true
                    smooth: true
                    height: baroButton.height
                    width: baroButton.width
                    icon.color: "transparent"
                    icon.width: baroButton.icon.width
                    icon.height: baroButton.icon.height
                    icon.source: window.Material.theme === Material.Dark
                                 ? "qrc:/Images/Data_yellow~universal.png"
                                 : "qrc:/Images/Data_blue~universal.png"
                    onClicked: loadPage("qrc:/FilesSwipe")
                }
                ToolButton {
                    id: settingsButton
                    objectName: "settingsButton"
                    text: qsTranslate("main", "Settings")
                    display: AbstractButton.IconOnly
                    Accessible.role: Accessible.Button
                    Accessible.name: text
                    checkable: false
                    autoExclusive: true
                    smooth: true
                    height: baroButton.height
                    width: baroButton.width
                    icon.color: "transparent"
                    icon.width: baroButton.icon.width
                    icon.height: baroButton.icon.height
                    icon.source: window.Material.theme === Material.Dark
                                 ? "qrc:/Images/settings_tab_yellow~universal.png"
                                 : "qrc:/Images/settings_tab~universal.png"
                    onClicked: loadPage("qrc:/settings", {"loader" : loader})
                }
                ToolButton {
                    id: helpButton
                    objectName: "helpButton"
                    text: qsTranslate("main", "Help")
                    display: AbstractButton.IconOnly
                    Accessible.role: Accessible.Button
                    Accessible.name: text
                    checkable: false
                    autoExclusive: true
                    smooth: true
                    height: baroButton.height
                    width: baroButton.width
                    icon.color: "transparent"
                    icon.width: baroButton.icon.width
                    icon.height: baroButton.icon.height
                    icon.source: window.Material.theme === Material.Dark
                                 ? "qrc:/Images/help_tab_yellow~universal.png"
                                 : "qrc:/Images/help_tab~universal.png"
                    onClicked: loadPage("qrc:/Help_textview")
                }
            }
        }
    }

    ReturnKey {
        id: returnKey
    }

    FocusRing {
        window: window
    }

    Connections {
        target: translateHandler
        // Only the settings page changes the language: rebuild it with the new texts.
        function onLanguageChanged() {
            loader.setSource("")
            console.log("language changed to " + translateHandler.getCurrentLanguage())
            loadPage("qrc:/settings", {"loader" : loader})
        }
    }

    Connections {
        target: backend
        function onSaveWindowSize() {
            console.log("saving size")
            backend.setSetting("windowWidth", window.width)
            backend.setSetting("windowHeight", window.height)
            backend.setSetting("windowX", window.x)
            backend.setSetting("windowY", window.y)
        }
        function onSystemThemeChanged(theme) {
            window.Material.theme = theme === 0 ? Material.Light : Material.Dark
            window.Material.accent = Theme.accentFor(theme !== 0)
        }
    }

    Connections {
        target: Qt.application
        function onStateChanged() {
            backend.pauseService(Qt.application.state === Qt.ApplicationActive)
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
