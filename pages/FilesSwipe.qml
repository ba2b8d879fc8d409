// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15
import backend 1.0

// The log: the list of tables, then the rows of the one chosen. Only the way back from the
// rows to the list can be swiped.
ColumnLayout {
    id: filesSwipe
    anchors.fill: parent
    spacing: 0

    property alias view: view

    SwipeView {
        id: view
        objectName: "view"
        Layout.fillWidth: true
        Layout.fillHeight: true
        currentIndex: 0
        interactive: false
        clip: true
        // Not a stop of its own on the way of Tab: it would hand the focus back to the
        // control last used inside it, and Tab would go round without the first ones. The
        // view turns this on by itself, under its focus policy.
        activeFocusOnTab: false

        signal fileSelected(int fileNb)

        // Set a moment after the index settles, so that the swipe in progress is not cut.
        onCurrentIndexChanged: interactiveTimer.startFor(50)

        // The page out of sight is out of the way of Tab as well.
        FileData {
            id: fileData
            objectName: "fileData"
            enabled: SwipeView.isCurrentItem
            onFileSelected: {
                console.log("file selected " + fileNb)
                view.fileSelected(fileNb)
                view.currentIndex = 1
                fileDetails.focusRows()
            }
        }
        FileDetails {
            id: fileDetails
            objectName: "fileDetails"
            enabled: SwipeView.isCurrentItem
            // The keyboard's way back to the list, where a swipe is the pointer's.
            Keys.onEscapePressed: {
                view.currentIndex = 0
                fileData.focusList()
            }
        }
    }

    // A QML timer counts from the last animation frame, and so fires early while the swipe
    // animates; it is started again for whatever is left, until the time has really passed.
    Timer {
        id: interactiveTimer
        interval: 50
        repeat: false
        property double due: 0

        function startFor(ms) {
            due = Date.now() + ms
            interval = ms
            restart()
        }

        onTriggered: {
            var left = due - Date.now()
            if (left > 0) {
                interval = left
                restart()
                return
            }
            view.interactive = view.currentIndex === 1
        }
    }
}
