// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Controls.Material 2.15
import QtQuick.Layouts 1.15
import QtQuick.Dialogs 1.3

// The nine tables of the log, by span. A choice tells the container which table to show;
// the delete button empties every table after a question.
Item {
    id: fileDataPage

    // The list's index, 0 to 8, which is the table index the log works with.
    signal fileSelected(int fileNb)

    // Back from the rows by the keyboard: the list takes the keys again, on the table it left.
    function focusList() {
        fileList.forceActiveFocus(Qt.OtherFocusReason)
    }

    MessageDialog {
        id: areYouSure
        objectName: "areYouSure"
        visible: false
        text: qsTr("Are you sure you want to delete ALL data ?")
        icon: StandardIcon.Question
        standardButtons: StandardButton.Ok | StandardButton.Cancel
        onAccepted: {
            if (answered)
                return
            answered = true
            areYouSure.visible = false
            dataSource.emptyAllTables()
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

        ToolButton {
            id: deleteAll
            objectName: "deleteAll"
            Layout.alignment: Qt.AlignRight
            Layout.margins: 10
            icon.source: "qrc:/Images/delete.png"
            icon.color: "transparent"
            icon.width: 32
            icon.height: 32
            ToolTip.visible: hovered
            ToolTip.delay: 500
            ToolTip.text: qsTr("Delete all data")
            Accessible.role: Accessible.Button
            Accessible.name: qsTr("Delete all data")
            onClicked: areYouSure.ask()
        }

        ListView {
            id: fileList
            objectName: "fileList"
            Layout.fillWidth: true
            Layout.fillHeight: true
            currentIndex: -1
            spacing: 10
            clip: true
            highlightMoveDuration: 0
            Accessible.role: Accessible.List
            Accessible.name: qsTr("Log tables")
            // The arrows move through the tables (the list's own keys); these open the one
            // chosen, as a click on it does.
            activeFocusOnTab: true
            Keys.onPressed: {
                if (event.key === Qt.Key_Return || event.key === Qt.Key_Enter || event.key === Qt.Key_Space) {
                    event.accepted = true
                    if (!event.isAutoRepeat && currentItem)
                        currentItem.choose()
                }
            }

            // fileNb counts from 1 and is read by nobody: the choice sends the index.
            model: ListModel {
                ListElement { fileNb: 1; desc: qsTr("30m (2 secs interval)") }
                ListElement { fileNb: 2; desc: qsTr("3h (6 secs interval)") }
                ListElement { fileNb: 3; desc: qsTr("6h (12 secs interval)") }
                ListElement { fileNb: 4; desc: qsTr("12h (24 secs interval)") }
                ListElement { fileNb: 5; desc: qsTr("1d (48 secs interval)") }
                ListElement { fileNb: 6; desc: qsTr("2d (96 secs interval)") }
                ListElement { fileNb: 7; desc: qsTr("4d (192 secs interval)") }
                ListElement { fileNb: 8; desc: qsTr("8d (384 secs interval)") }
                ListElement { fileNb: 9; desc: qsTr("16d (768 secs interval)") }
            }

            highlight: Rectangle {
                color: "lightsteelblue"
                radius: 5
            }

            delegate: Text {
                id: entry
                objectName: "fileEntry" + index
                width: fileList.width
                text: desc
                font.pixelSize: 18
                color: fileDataPage.Material.foreground
                horizontalAlignment: Text.AlignHCenter
                Accessible.role: Accessible.ListItem
                Accessible.name: desc
                Accessible.selectable: true
                Accessible.selected: ListView.isCurrentItem
                Accessible.onPressAction: entry.choose()

                function choose() {
                    fileList.currentIndex = index
                    fileList.forceActiveFocus()
                    fileDataPage.fileSelected(index)
                }

                MouseArea {
                    anchors.fill: parent
                    onClicked: entry.choose()
                }
            }
        }
    }
}
