// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Controls.Material 2.15
import QtQuick.Layouts 1.15
import QtQuick.Dialogs 1.3

// The rows of the table chosen on the list, newest first, with export and deletion. The
// list is a picture taken at the choice: rows logged later join it at the next choice.
Item {
    id: fileDetailsPage

    property int m_fileNb: 0

    readonly property bool darkTheme: Material.theme === Material.Dark

    // The export buttons only choose the filter and show the dialog; the dialog's acceptance
    // exports, to the name the user gave.
    function chooseFile(filter) {
        fileDiag.nameFilters = [filter]
        fileDiag.visible = true
    }

    // The keys of an export button do what a click on its mouse area does. Taken before the
    // button sees them: its own click handler must stay out of reach.
    function chooseFileByKey(event, filter) {
        if (event.key === Qt.Key_Space || event.key === Qt.Key_Return || event.key === Qt.Key_Enter) {
            event.accepted = true
            if (!event.isAutoRepeat)
                chooseFile(filter)
        }
    }

    // A table just chosen: its rows take the keys.
    function focusRows() {
        fileContent.forceActiveFocus(Qt.OtherFocusReason)
    }

    Connections {
        target: fileDetailsPage.SwipeView.view
        function onFileSelected(fileNb) {
            var names = [qsTr("30m"), qsTr("3h"), qsTr("6h"), qsTr("12h"), qsTr("1d"),
                         qsTr("2d"), qsTr("4d"), qsTr("8d"), qsTr("16d")]
            ft.text = fileNb >= 0 && fileNb < names.length ? names[fileNb] : ""
            m_fileNb = fileNb
            model_.clear()
            var rows = dataSource.getTableContent(fileNb)
            for (var i = 0; i < rows.length; i++)
                model_.append({"key": rows[i]["key"], "desc": rows[i]["desc"]})
            fileContent.currentIndex = -1
        }
    }

    MessageDialog {
        id: areYouSure
        objectName: "areYouSure"
        visible: false
        text: qsTr("Are you sure you want to delete ALL data in this table ?")
        icon: StandardIcon.Question
        standardButtons: StandardButton.Ok | StandardButton.Cancel
        onAccepted: {
            if (answered)
                return
            answered = true
            areYouSure.visible = false
            dataSource.emptyOneTable(m_fileNb)
            model_.clear()
        }
        onRejected: {
            answered = true
            areYouSure.visible = false
        }
        // The dialog of widgets tells its answer twice; the question is answered once.
        property bool answered: true
        function ask() {
            answered = false
            visible = true
        }
    }

    FileDialog {
        id: fileDiag
        objectName: "fileDiag"
        visible: false
        title: qsTr("Please choose a file")
        selectExisting: false
        selectMultiple: false
        folder: shortcuts.documents
        onAccepted: dataSource.exportFile(m_fileNb, fileUrl.toString())
        onRejected: {
            fileDiag.visible = false
            console.log("filediag rejected")
        }
    }

    ListModel {
        id: model_
        objectName: "model_"
    }

    ColumnLayout {
        anchors.fill: parent
        anchors.margins: 10
        spacing: 0

        Banner {
            id: imgQuillmere
            Layout.leftMargin: -10
            Layout.rightMargin: -10
            Layout.topMargin: -10
            layoutWidth: window.width
        }

        RowLayout {
            Layout.fillWidth: true
            Layout.margins: 10
            Layout.alignment: Qt.AlignRight

            Text {
                id: ft
                objectName: "ft"
                Layout.fillWidth: true
                font.pixelSize: csvButton.font.pixelSize
                font.bold: true
                color: fileDetailsPage.darkTheme ? "yellow" : "blue"
                verticalAlignment: Text.AlignVCenter
                Accessible.role: Accessible.StaticText
                Accessible.name: ft.text !== "" ? ft.text : qsTr("No table chosen")
            }

            RoundButton {
                id: csvButton
                objectName: "csvButton"
                text: "CSV"
                ToolTip.visible: hovered
                ToolTip.delay: 500
                ToolTip.text: qsTr("Export page as CSV")
                Accessible.role: Accessible.Button
                Accessible.name: "CSV"
                Accessible.description: qsTr("Export page as CSV")
                Accessible.onPressAction: fileDetailsPage.chooseFile("CSV files (*.csv)")
                Keys.onPressed: fileDetailsPage.chooseFileByKey(event, "CSV files (*.csv)")

                MouseArea {
                    anchors.fill: parent
                    hoverEnabled: false
                    onClicked: fileDetailsPage.chooseFile("CSV files (*.csv)")
                }
            }

            RoundButton {
                id: gpxButton
                objectName: "gpxButton"
                text: "GPX"
                ToolTip.visible: hovered
                ToolTip.delay: 500
                ToolTip.text: qsTr("Export page as GPX")
                Accessible.role: Accessible.Button
                Accessible.name: "GPX"
                Accessible.description: qsTr("Export page as GPX")
                Accessible.onPressAction: fileDetailsPage.chooseFile("GPS files (*.gpx)")
                Keys.onPressed: fileDetailsPage.chooseFileByKey(event, "GPS files (*.gpx)")
                // Never reached by a click: the mouse area below takes it.
                onClicked: dataSource.exportGpx(m_fileNb)

                MouseArea {
                    anchors.fill: parent
                    hoverEnabled: false
                    onClicked: fileDetailsPage.chooseFile("GPS files (*.gpx)")
                }
            }

            ToolButton {
                id: deleteTable
                objectName: "deleteTable"
                icon.source: "qrc:/Images/delete.png"
                icon.color: "transparent"
                icon.width: 28
                icon.height: 28
                ToolTip.visible: hovered
                ToolTip.delay: 500
                ToolTip.text: qsTr("Delete this data file")
                Accessible.role: Accessible.Button
                Accessible.name: qsTr("Delete this data file")
                onClicked: areYouSure.ask()
            }
        }

        ListView {
            id: fileContent
            objectName: "fileContent"
            Layout.fillWidth: true
            Layout.fillHeight: true
            clip: true
            currentIndex: -1
            spacing: csvButton.font.pixelSize * 0.75
            model: model_
            highlightMoveDuration: 0
            ScrollBar.vertical: ScrollBar {
                policy: ScrollBar.AlwaysOn
            }
            highlight: Rectangle {
                color: "lightsteelblue"
                radius: 5
            }
            Accessible.role: Accessible.List
            Accessible.name: ft.text !== "" ? ft.text : qsTr("No table chosen")
            // The arrows move a row at a time (the list's own keys); these move further, and
            // Delete does what the current row's button does.
            activeFocusOnTab: true
            Keys.onPressed: {
                var page = Math.max(1, Math.floor(height / ((currentItem ? currentItem.height : 1) + spacing)))
                if (event.key === Qt.Key_PageDown)
                    moveCurrent(page)
                else if (event.key === Qt.Key_PageUp)
                    moveCurrent(-page)
                else if (event.key === Qt.Key_Home)
                    moveCurrent(-count)
                else if (event.key === Qt.Key_End)
                    moveCurrent(count)
                else if (event.key === Qt.Key_Delete && currentItem)
                    currentItem.remove()
                else
                    return
                event.accepted = true
            }

            // With no row current, down starts at the first and up at the last.
            function moveCurrent(rows) {
                if (count === 0)
                    return
                var from = currentIndex >= 0 ? currentIndex : (rows > 0 ? -1 : count)
                currentIndex = Math.max(0, Math.min(count - 1, from + rows))
            }

            delegate: Item {
                id: row
                objectName: "row" + index
                width: fileContent.width - 20
                height: Math.max(rowText.implicitHeight, rowDelete.implicitHeight)

                function choose() {
                    fileContent.currentIndex = index
                    fileContent.forceActiveFocus()
                }

                // The row's own names are gone with it: what is needed after is held first.
                function remove() {
                    var list = fileContent
                    dataSource.removeKey(m_fileNb, key)
                    model_.remove(index)
                    list.currentIndex = -1
                    // The button goes with its row; the keys stay on the list.
                    list.forceActiveFocus(Qt.OtherFocusReason)
                }

                Text {
                    id: rowText
                    objectName: "rowText"
                    anchors.left: parent.left
                    anchors.right: rowDelete.left
                    anchors.verticalCenter: parent.verticalCenter
                    leftPadding: 6
                    text: desc
                    textFormat: Text.AutoText
                    wrapMode: Text.Wrap
                    font.pixelSize: csvButton.font.pixelSize
                    color: fileDetailsPage.Material.foreground
                    Accessible.role: Accessible.ListItem
                    Accessible.name: rowText.text.replace(/<[^>]*>/g, " ").replace(/\s+/g, " ").trim()
                    Accessible.selectable: true
                    Accessible.selected: row.ListView.isCurrentItem
                    Accessible.onPressAction: row.choose()

                    MouseArea {
                        anchors.fill: parent
                        onClicked: row.choose()
                    }
                }

                ToolButton {
                    id: rowDelete
                    objectName: "rowDelete"
                    anchors.right: parent.right
                    anchors.verticalCenter: parent.verticalCenter
                    visible: row.ListView.isCurrentItem
                    icon.source: "qrc:/Images/delete.png"
                    icon.color: "transparent"
                    icon.width: 24
                    icon.height: 24
                    ToolTip.visible: hovered
                    ToolTip.delay: 500
                    ToolTip.text: qsTr("Delete this record")
                    Accessible.role: Accessible.Button
                    Accessible.name: qsTr("Delete this record")
                    // Not a stop of Tab: inside the list it would keep the list's focus for
                    // itself. Delete on the list does the same.
                    focusPolicy: Qt.NoFocus
                    onClicked: row.remove()
                }
            }
        }
    }
}
